#include "gui/led/ledfilelist.h"

#include <QPaintEvent>
#include <QPainter>
#include <QPointer>
#include <algorithm>

#include "gui/base/eventgate.h"
#include "gui/base/picture.h"
#include "gui/led/ledfileitem.h"
#include "gui/screen/messagebox.h"
#include "gui/screen/screenof.h"
#include "gui/settings/config.h"

SCREEN(LEDFILELIST, LedFileList)

namespace {
constexpr int kScrollRepeatMs = 100;
constexpr int kScrollBottom = 319;
constexpr int kShortNoticeMs = 1500;
constexpr QPoint kHome(0, 0), kTitle(80, 0), kDelete(220, 0), kSave(310, 0), kBack(400, 0);
constexpr int kHeaderHeight = 60;
constexpr int kCheckBoxLeft = 351, kCheckBoxRight = 390;
}  // namespace

struct LedFileList::Key {
  QRect area;
  const char* name;
  void (LedFileList::*press)();
};
const LedFileList::Key LedFileList::kKeys[] = {
    {QRect(QPoint(1, 1), QPoint(79, 59)), "home", &LedFileList::PressHome},
    {QRect(QPoint(221, 1), QPoint(309, 59)), "delete", &LedFileList::PressDelete},
    {QRect(QPoint(311, 1), QPoint(399, 59)), "save", &LedFileList::PressSave},
    {QRect(QPoint(401, 1), QPoint(479, 59)), "back", &LedFileList::PressBack},
};

LedFileList::LedFileList(QWidget* parent)
    : PagedList(parent, kScrollRepeatMs, true), mCurFileItem(gLedFileManager.GetLedFileItem()) {
  for (int row = 0; row < kRows; ++row) {
    mFileItemWidget[size_t(row)] = new LedFileItem(this);
    mFileItemWidget[size_t(row)]->setGeometry(RowRect(row));
  }
  gLedFileManager.AddLedListWidget();
  SetListItem();
}

void LedFileList::SetListItem() {
  CountCheckBoxes();
  ProcessPageOperation(int(mCurFileItem->size()));
  ShowPage();
  SetPageDisplay();
}

void LedFileList::ShowPage() {
  const bool exclusive = gLedFileManager.GetIsCheckedSecurityLed();
  for (int row = 0; row < kRows; ++row) {
    const qsizetype index = qsizetype{mCurPage} * kRows - kRows + row;
    const bool known = mCurPage > 0 && index < mCurFileItem->size();
    mFileItemWidget[size_t(row)]->Repaint(known ? &mCurFileItem->at(index) : nullptr, exclusive && index > 0);
  }
}

void LedFileList::CountCheckBoxes() {
  mCheckBoxCount = int(std::count_if(mCurFileItem->begin(), mCurFileItem->end(),
                                     [](const Led_File_Item& item) { return item.checked == 1; }));
}

// ---- touches

QRect LedFileList::CheckBoxArea(int row) {
  const QRect line = RowRect(row).adjusted(0, 1, 0, -2);
  return {QPoint(kCheckBoxLeft, line.top()), QPoint(kCheckBoxRight, line.bottom())};
}

QList<TouchArea> LedFileList::KeyAreas() const {
  QList<TouchArea> areas;
  if (!gLedFileManager.GetIsCheckedSecurityLed()) areas = ScrollAreas(kScrollBottom);
  for (const Key& key : kKeys) areas.append({key.area, QLatin1String(key.name)});
  for (int row = 0; row < kRows; ++row)
    if (ItemIn(row) >= 0) areas.append({CheckBoxArea(row), QStringLiteral("row %1").arg(row + 1)});
  return areas;
}

int LedFileList::ItemIn(int row) const {
  const int index = mCurPage * kRows - kRows + row;
  if (index < 0 || index >= mCurFileItem->size()) return -1;
  return gLedFileManager.GetIsCheckedSecurityLed() && index > 0 ? -1 : index;
}

void LedFileList::touchEvent(int, int x, int y) {
  if (!gLedFileManager.GetIsCheckedSecurityLed() && TouchScrollKey(x, y, kScrollBottom)) return;
  for (const Key& key : kKeys) {
    if (!key.area.contains(x, y)) continue;
    (this->*key.press)();
    return;
  }
  for (int row = 0; row < kRows; ++row) {
    if (!CheckBoxArea(row).contains(x, y)) continue;
    SetCheckBox(row);
    return;
  }
}

void LedFileList::SetCheckBox(int row) {
  const int index = ItemIn(row);
  if (index < 0) return;
  Led_File_Item& item = (*mCurFileItem)[index];
  item.checked = item.checked == 1 ? 0 : 1;
  item.checkBox = item.checked == 1 ? gLedFileList.Checked : gLedFileList.Unchecked;
  if (index == 0) gLedFileManager.SetIsCheckedSecurityLed(item.checked == 1);
  if (index == 1) gLedFileManager.SetIsCheckedKorvoBlack(item.checked == 1);
  CountCheckBoxes();
  ShowPage();
  SetPageDisplay();
}

void LedFileList::PressDelete() {
  if (mCheckBoxCount == 0)
    PaintMessageBox(NOTHING_CHECKED_LED_FILE, false, 0, kShortNoticeMs);
  else if (gLedFileManager.GetIsCheckedSecurityLed())
    PaintMessageBox(NOT_DELETE_SECURITY_LED, false, 0, kShortNoticeMs);
  else if (gLedFileManager.GetIsCheckedKorvoBlack())
    PaintMessageBox(NOT_DELETE_KORVO_BLACK, false, 0, kShortNoticeMs);
  else
    PaintMessageBox(LED_FILE_UPDATE_DELETE, false, mCheckBoxCount, 0);
}

void LedFileList::PressSave() {
  if (mCheckBoxCount == 0)
    PaintMessageBox(NOTHING_CHECKED_LED_FILE, false, 0, kShortNoticeMs);
  else if (gLedFileManager.GetIsCheckedSecurityLed())
    PaintMessageBox(SECURITY_LED_CHECKED, false, 0, 0);
  else
    PaintMessageBox(LED_FILE_UPDATE_SAVE, false, mCheckBoxCount, 0);
}

void LedFileList::MessageBoxHandler(int, int x, int y, int messageId) {
  const bool deletion = messageId == LED_FILE_UPDATE_DELETE;
  if (!deletion && messageId != LED_FILE_UPDATE_SAVE && messageId != SECURITY_LED_CHECKED) return;
  const MessageBox::Button button = MessageBox::ButtonAt(x, y);
  if (button == MessageBox::Button::Left) Write(deletion);
  if (button == MessageBox::Button::Right) DelMessageBox();
}

void LedFileList::Write(bool deletion) {
  PaintMessageBox(deletion ? FILE_DELETING : FILE_SAVING, false, 0, 0);
  const QPointer<LedFileList> here(this);
  gEventGate.ProcessEvents();
  if (!here) return;
  gLedFileManager.UpdateLedFile(deletion ? 1 : 0, mCurFileItem);
  SetListItem();
  if (!gLedFileManager.WritingLedFile(deletion)) {
    PaintMessageBox(deletion ? FILE_DELETE_FAIL : FILE_SAVE_FAIL, false, 0, kShortNoticeMs);
    return;
  }
  PaintMessageBox(deletion ? FILE_DELETE : FILE_SAVE, false, 0, kShortNoticeMs);
  gEventGate.ProcessEvents();
  if (here) SendEvent(SEND_LED_FILE_UPDATE, 0, QString());
}

// ---- painting

void LedFileList::paintEvent(QPaintEvent* event) {
  QPainter painter(this);
  const QRect exposed = event->rect();
  if (exposed.top() < kHeaderHeight) {
    painter.drawPixmap(kHome, Picture(QStringLiteral("common/home_normal.bmp")));
    painter.drawPixmap(kTitle, Picture(gLedFileList.Title));
    painter.drawPixmap(kDelete, Picture(gLedFileList.Delete.ReleaseImage));
    painter.drawPixmap(kSave, Picture(gLedFileList.Save.ReleaseImage));
    painter.drawPixmap(kBack, Picture(QStringLiteral("common/back_normal.bmp")));
  }
  PaintScrollColumn(painter, exposed);
}
