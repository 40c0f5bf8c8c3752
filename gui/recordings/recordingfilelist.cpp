#include "gui/recordings/recordingfilelist.h"

#include <QPaintEvent>
#include <QPainter>
#include <QPointer>

#include "gui/base/eventgate.h"
#include "gui/base/picture.h"
#include "gui/base/shell.h"
#include "gui/recordings/playfileinfo.h"
#include "gui/recordings/recordingfileitem.h"
#include "gui/screen/formatquestion.h"
#include "gui/screen/messagebox.h"
#include "gui/screen/screenhost.h"
#include "gui/screen/screenof.h"
#include "gui/settings/config.h"
#include "gui/settings/settings.h"

SCREEN(RECORDINGLIST, RecordingFileList)

namespace {
constexpr int kScrollRepeatMs = 10;
constexpr int kScrollBottom = 320;  // the reader tells 320 for the panel's edge: here the lowest key has it
constexpr QRect kTitle(80, 0, 320, 60);
constexpr QPoint kHome(0, 0), kKind(80, 0), kCamera(220, 0), kOrder(310, 0), kBack(400, 0);
}  // namespace

struct RecordingFileList::Key {
  QRect area;
  const char* name;
  void (RecordingFileList::*press)();
};
const RecordingFileList::Key RecordingFileList::kKeys[] = {
    {QRect(QPoint(1, 1), QPoint(79, 59)), "home", &RecordingFileList::PressHome},
    {QRect(QPoint(81, 1), QPoint(219, 59)), "kind", &RecordingFileList::ToggleKind},
    {QRect(QPoint(221, 1), QPoint(309, 59)), "camera", &RecordingFileList::ToggleCamera},
    {QRect(QPoint(311, 1), QPoint(399, 59)), "order", &RecordingFileList::ToggleOrder},
    {QRect(QPoint(401, 1), QPoint(479, 59)), "back", &RecordingFileList::PressBack},
};

RecordingFileList::RecordingFileList(QWidget* parent)
    : PagedList(parent, kScrollRepeatMs, false), mRecordingFileManager(gMainWindow->GetRecordingFileManager()) {
  for (int row = 0; row < kRows; ++row) {
    mFileItemWidget[size_t(row)] = new RecordingFileItem(this);
    mFileItemWidget[size_t(row)]->setGeometry(RowRect(row));
  }
  SetToggleDisplay();
  SetListItem(ALL_ASCENDING_FRONT);
}

void RecordingFileList::SetListItem(int index) {
  mListType = index;
  mCurFileItem = mRecordingFileManager ? mRecordingFileManager->GetFileItem(index) : nullptr;
  if (mRecordingFileManager) mRecordingFileManager->SetCurItem(mCurFileItem);
  ProcessPageOperation(mCurFileItem ? int(mCurFileItem->size()) : 0);
  ShowPage();
  SetPageDisplay();
}

void RecordingFileList::ShowPage() {
  for (int row = 0; row < kRows; ++row) {
    const qsizetype index = qsizetype{mCurPage - 1} * kRows + row;
    const bool known = mCurFileItem && mCurPage > 0 && index < mCurFileItem->size();
    mFileItemWidget[size_t(row)]->Repaint(known ? std::optional(mCurFileItem->at(index)) : std::nullopt);
  }
}

// ---- toggles

void RecordingFileList::SetToggleDisplay() {
  mFileTypeImgPath = gFileList.Kind.Image[mFileType].ReleaseImage;
  mCameraTypeImgPath = gFileList.Camera.Image[mCameraType].ReleaseImage;
  mOrderTypeImgPath = gFileList.Order.Image[mOrderType].ReleaseImage;
}

void RecordingFileList::ProcessListToggle(int which) {
  int& value = which == 0 ? mFileType : which == 1 ? mCameraType : mOrderType;
  value = (value + 1) % (which == 0 ? 5 : 2);
  SetToggleDisplay();
  repaint(kTitle);
  FileTypeCheck();
}

void RecordingFileList::FileTypeCheck() {
  SetListItem(mFileType * 4 + mOrderType * 2 + mCameraType);
}

// ---- touches

void RecordingFileList::touchEvent(int, int x, int y) {
  if (TouchScrollKey(x, y, kScrollBottom)) return;
  for (const Key& key : kKeys) {
    if (!key.area.contains(x, y)) continue;
    (this->*key.press)();
    return;
  }
  for (int row = 0; row < kRows; ++row) {
    if (!RowRect(row).adjusted(1, 1, 0, 0).contains(x, y)) continue;
    PlayBack(row);
    return;
  }
}

QList<TouchArea> RecordingFileList::KeyAreas() const {
  QList<TouchArea> areas = ScrollAreas(kScrollBottom);
  for (const Key& key : kKeys) areas.append({key.area, QLatin1String(key.name)});
  for (int row = 0; row < kRows; ++row)
    if (PlayableIn(row) >= 0) areas.append({RowRect(row).adjusted(1, 1, 0, 0), QStringLiteral("row %1").arg(row + 1)});
  return areas;
}

int RecordingFileList::PlayableIn(int row) const {
  if (!mCurFileItem || mCurPage < 1) return -1;
  const int index = (mCurPage - 1) * kRows + row;
  return index < mCurFileItem->size() && !mCurFileItem->at(index).recStopFlag ? index : -1;
}

void RecordingFileList::PlayBack(int row) {
  const int index = PlayableIn(row);
  if (index < 0) return;
  PlayClick();
  Next(PLAYER, new PlayFileInfo(this, mListType, index));
}

// Shows a box at once. False when the screen has gone meanwhile.
bool RecordingFileList::ShowBox(int messageId) {
  const QPointer<RecordingFileList> here(this);
  PaintMessageBox(messageId, false, 0, 0);
  gEventGate.ProcessEvents();
  return here;
}

void RecordingFileList::PressBack() {
  if (!ShowBox(VIDEO_REC_START)) return;
  SendEvent(SEND_VIDEO_REC_START, 0, QString());
  DelMessageBox();
  gMainWindow->SetParkingModeLcdOffTimer();
  Back();
}

void RecordingFileList::PressHome() {
  if (!gEnvirnmentSettings.compareSettingValue()) {
    if (!ShowBox(VIDEO_REC_START)) return;
    SendEvent(SEND_VIDEO_REC_START, 0, QString());
    LeaveForPreview();
    return;
  }
  mNeedFormatFlag = FormatQuestion::Need();
  if (!ShowBox(FormatQuestion::MessageOf(mNeedFormatFlag)) || mNeedFormatFlag != 0) return;
  gEnvirnmentSettings.settingSetup();
  gEnvirnmentSettings.AllSetSettingConfig();
  SendEvent(SEND_SETTING_COMPLETE, 0, QString());
  SendEvent(SEND_VIDEO_REC_START, 0, QString());
  LeaveForPreview();
}

void RecordingFileList::LeaveForPreview() {
  gEnvirnmentSettings.mSetting.time_set_flag = 0;
  gEnvirnmentSettings.mOldSetting.time_set_flag = 0;
  DelMessageBox();
  gMainWindow->SetParkingModeLcdOffTimer();
  Jump(PREVIEW);
}

void RecordingFileList::MessageBoxHandler(int, int x, int y, int messageId) {
  if (mNeedFormatFlag == 0 || messageId != FormatQuestion::MessageOf(mNeedFormatFlag)) return;
  const MessageBox::Button button = MessageBox::ButtonAt(x, y);
  if (button == MessageBox::Button::None) return;
  const int format = std::exchange(mNeedFormatFlag, 0);
  DelMessageBox();
  if (button == MessageBox::Button::Right) return;
  gMainWindow->StopParkingModeLcdOffTimer();
  SendEvent(SEND_SET_SYSTEM_SD_FORMAT, format, QString());
  Next(SDFORMAT);
}

// ---- painting

void RecordingFileList::paintEvent(QPaintEvent* event) {
  QPainter painter(this);
  const QRect exposed = event->rect();
  if (exposed.top() < kTitle.bottom()) {
    painter.drawPixmap(kHome, Picture(QStringLiteral("common/home_normal.bmp")));
    painter.drawPixmap(kKind, Picture(mFileTypeImgPath));
    painter.drawPixmap(kCamera, Picture(mCameraTypeImgPath));
    painter.drawPixmap(kOrder, Picture(mOrderTypeImgPath));
    painter.drawPixmap(kBack, Picture(QStringLiteral("common/back_normal.bmp")));
  }
  PaintScrollColumn(painter, exposed);
}
