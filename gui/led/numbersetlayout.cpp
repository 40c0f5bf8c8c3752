#include "gui/led/numbersetlayout.h"

#include <QLabel>
#include <QPointer>

#include "gui/base/eventgate.h"
#include "gui/base/shell.h"
#include "gui/led/ledfilemanager.h"
#include "gui/screen/label.h"
#include "gui/screen/messagebox.h"
#include "gui/screen/page.h"
#include "gui/screen/screenof.h"
#include "gui/settings/config.h"

SCREEN(NUMBERSETLAYOUT, NumberSetLayout)

namespace {
constexpr int kMostDigits = 14;
constexpr int kExcessMs = 2500;
constexpr int kKeyWidth = 80, kKeyHeight = 90;
constexpr int kKeysTop = 140;
constexpr QPoint kInput(0, 60), kSaveKey(410, 69);
constexpr QRect kSaveArea(QPoint(411, 70), QPoint(469, 128)), kDeleteArea(QPoint(401, 141), QPoint(479, 319));
constexpr LabelRow kNumber{"mInputNumLabel", {20, 60, 364, 80}, 36, {255, 255, 255}, Qt::AlignLeft, true};

// 1 to 5, and below them 6 to 0.
QRect KeyRect(int place) {
  return {kKeyWidth * (place % 5), kKeysTop + kKeyHeight * (place / 5), kKeyWidth, kKeyHeight};
}
int DigitOf(int place) {
  return (place + 1) % 10;
}
}  // namespace

NumberSetLayout::NumberSetLayout(QWidget* parent)
    : TileScreen(parent, gNumberSet.Title, {}), mInputNumLabel(AddLabel(this, kNumber)) {}

QString NumberSetLayout::Hyphenated(const QString& digits) {
  const qsizetype count = digits.size();
  QString text = digits;
  if (count < 3) return text;
  bool second = true;
  if (digits.startsWith(QLatin1String("02"))) {
    text.insert(2, u'-');
  } else if (count > 3 && digits.startsWith(u'0')) {
    text.insert(3, u'-');
  } else {
    second = false;
    if (count > 4) text.insert(4, u'-');
  }
  if (second && count > 7) text.insert(count - 3, u'-');  // before the last four digits
  return text;
}

void NumberSetLayout::PressKeypad(int digit, bool isDelete) {
  if (!isDelete && mDispNumber.size() >= kMostDigits) return;
  if (isDelete)
    mDispNumber.chop(1);
  else
    mDispNumber += QString::number(digit);
  mHyphendispNumber = Hyphenated(mDispNumber);
  mInputNumLabel->setText(mHyphendispNumber);
}

QList<TouchArea> NumberSetLayout::PageAreas() const {
  QList<TouchArea> areas{{kDeleteArea, QStringLiteral("delete")}, {kSaveArea, QStringLiteral("save")}};
  for (int place = 0; place < 10; ++place)
    areas.append({KeyRect(place).adjusted(1, 1, 0, 0), QString::number(DigitOf(place))});
  return areas;
}

void NumberSetLayout::TouchPage(int x, int y) {
  for (int place = 0; place < 10; ++place) {
    if (!KeyRect(place).adjusted(1, 1, 0, 0).contains(x, y)) continue;
    if (mDispNumber.size() < kMostDigits) PlayClick();
    PressKeypad(DigitOf(place), false);
    return;
  }
  if (kDeleteArea.contains(x, y)) {
    if (!mDispNumber.isEmpty()) PlayClick();
    PressKeypad(0, true);
  } else if (kSaveArea.contains(x, y)) {
    PressSave();
  }
}

// ---- saving

void NumberSetLayout::PressSave() {
  if (mDispNumber.isEmpty()) {
    Refuse(INVALID_INPUT_NUMBER, kNoticeMs);
    return;
  }
  const int room = gLedFileManager.GetValidLedList();
  if (room == 0)
    Refuse(LED_LIST_EXCESS, kExcessMs);
  else if (room < 0)
    Refuse(FILE_SAVE_FAIL, kNoticeMs);
  else
    PaintMessageBox(IS_INPUT_NUMBER_SAVE, false, 0, 0);
}

// Shows why not, and then forgets the number.
void NumberSetLayout::Refuse(int messageId, int ms) {
  PaintMessageBox(messageId, false, 0, ms);
  SetEvent(messageId, ms);
}

void NumberSetLayout::MessageBoxHandler(int, int x, int y, int messageId) {
  if (messageId != IS_INPUT_NUMBER_SAVE) return;
  const MessageBox::Button button = MessageBox::ButtonAt(x, y);
  if (button == MessageBox::Button::Left) SaveNumber();
  if (button == MessageBox::Button::Right) DelMessageBox();
}

void NumberSetLayout::SaveNumber() {
  if (!gLedFileManager.UpdateLedFile(mInputNumLabel->text())) {
    PaintMessageBox(FILE_SAVE_FAIL, false, 0, kNoticeMs);
    return;
  }
  PaintMessageBox(FILE_SAVE, false, 0, kNoticeMs);
  const QPointer<NumberSetLayout> here(this);
  gEventGate.ProcessEvents();
  if (!here) return;
  SendEvent(SEND_LED_FILE_UPDATE, 0, QString());
  SetEvent(FILE_SAVE, kNoticeMs);
}

void NumberSetLayout::TimeoutEvent() {
  TileScreen::TimeoutEvent();
  const int event = TakeEventId();
  if (event != LED_LIST_EXCESS && event != FILE_SAVE && event != FILE_SAVE_FAIL && event != INVALID_INPUT_NUMBER)
    return;
  mDispNumber.clear();
  mHyphendispNumber.clear();
  mInputNumLabel->clear();
}

// ---- painting

void NumberSetLayout::FillPage(Page& page) {
  page.Add(kInput, gNumberSet.InputBg);
  page.Add(kSaveKey, gNumberSet.Save.ReleaseImage);
  for (int place = 0; place < 10; ++place)
    page.Add(KeyRect(place).topLeft(), gNumberSet.Keypad.Image[DigitOf(place)].ReleaseImage);
  page.Add({kKeyWidth * 5, kKeysTop}, gNumberSet.Delete.ReleaseImage);
}
