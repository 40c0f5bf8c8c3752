#include "gui/setup/motionsetting.h"

#include <QPaintEvent>
#include <QPainter>

#include "gui/base/eventgate.h"
#include "gui/base/picture.h"
#include "gui/screen/messagebox.h"
#include "gui/screen/screenhost.h"
#include "gui/screen/screenof.h"
#include "gui/settings/config.h"
#include "gui/settings/settings.h"

SCREEN(MOTIONSETTING, MotionSetting)

namespace {
constexpr int kCellWidth = 60, kCellHeight = 53;
constexpr int kTopRowFrom = 6;  // column; the others of the top row are never watched or not offered
constexpr std::uint64_t kNeverWatched = 0xFULL << 44;  // the four leftmost cells of the top row
constexpr QPoint kMark(10, 10);                        // in its cell
constexpr int kLine = 2;

constexpr int BitOf(int cell) {
  return MotionSetting::kCells - 1 - cell;
}
}  // namespace

MotionSetting::MotionSetting(QWidget* parent)
    : BaseWidget(parent),
      mFront(gEnvirnmentSettings.mSetting.display == 1),
      MotionSettingValue(
          (mFront ? gEnvirnmentSettings.mSetting.motion_area1 : gEnvirnmentSettings.mSetting.motion_area2) &
          ~kNeverWatched) {
  for (int cell = 0; cell < kCells; ++cell)
    checkMotionDisble[size_t(cell)] = getAbit(MotionSettingValue, BitOf(cell)) == 0;
}

std::uint64_t MotionSetting::setBit(std::uint64_t value, int bitIndex, int on) {
  const std::uint64_t bit = 1ULL << bitIndex;
  return on == 1 ? value | bit : value & ~bit;
}

int MotionSetting::getAbit(std::uint64_t value, int bitIndex) {
  return int(value >> bitIndex & 1);
}

const char* MotionSetting::ulongToBinary(std::uint64_t value) {
  static std::array<char, 65> digits{};
  for (int i = 0; i < 64; ++i) digits[size_t(i)] = char('0' + getAbit(value, 63 - i));
  return digits.data();
}

// ---- touches

// The lines between the cells belong to none; -1 there.
int MotionSetting::CellAt(int x, int y) {
  const int column = x / kCellWidth, row = y / kCellHeight;
  if (x < 0 || y < 0 || column >= kColumns || row >= kRows || x % kCellWidth == 0 || y % kCellHeight == 0) return -1;
  return row == 0 && column < kTopRowFrom ? -1 : row * kColumns + column;
}

void MotionSetting::touchEvent(int, int x, int y) {
  if (const int cell = CellAt(x, y); cell >= 0) Toggle(cell);
}

QList<TouchArea> MotionSetting::KeyAreas() const {
  QList<TouchArea> areas;
  for (int cell = 0; cell < kCells; ++cell) {
    const QRect area(cell % kColumns * kCellWidth + 1, cell / kColumns * kCellHeight + 1, kCellWidth - 1,
                     kCellHeight - 1);
    if (CellAt(area.x(), area.y()) == cell) areas.append({area, QStringLiteral("cell %1").arg(cell)});
  }
  return areas;
}

void MotionSetting::Toggle(int cell) {
  bool& disabled = checkMotionDisble[size_t(cell)];
  disabled = !disabled;
  MotionSettingValue = setBit(MotionSettingValue, BitOf(cell), disabled ? 0 : 1);
  repaint();
}

// What was answered is being saved, or a format of the card is asked for: those boxes wait for their end. Left before
// that, the screen would take the restart of recording with it.
void MotionSetting::recvEvent(int event, int) {
  const bool own = mMessageId == MOTION_SETTING_APPLY || mMessageId == MOTION_SETTING_TO_MENU;
  if (event != RECV_ZEL_STATUS_LCD_KEY || (mIsShowMessageBox && !own)) return;
  PaintMessageBox(MOTION_SETTING_APPLY, false, 0, 0);
}

void MotionSetting::MessageBoxHandler(int, int x, int y, int messageId) {
  if (messageId != MOTION_SETTING_APPLY && messageId != MOTION_SETTING_TO_MENU) return;
  const MessageBox::Button button = MessageBox::ButtonAt(x, y);
  if (button == MessageBox::Button::None) return;
  const bool yes = button == MessageBox::Button::Left;
  if (messageId == MOTION_SETTING_APPLY && yes) {
    Apply();
  } else if (messageId == MOTION_SETTING_APPLY) {
    PaintMessageBox(MOTION_SETTING_TO_MENU, false, 0, 0);
    gEventGate.ProcessEvents();
  } else if (yes) {
    Back();
  } else {
    DelMessageBox();
  }
}

void MotionSetting::Apply() {
  SetGlobalMotionSettingValue();
  SendEvent(mFront ? SEND_MOTION_SETTING_FRONT : SEND_MOTION_SETTING_REAR, 0, QString());
  EntryPreview();
}

void MotionSetting::SetGlobalMotionSettingValue() {
  Setting_Config& setting = gEnvirnmentSettings.mSetting;
  (mFront ? setting.motion_area1 : setting.motion_area2) = MotionSettingValue;
  const auto store = [](Setting_Id id, std::uint64_t word) {
    gEnvirnmentSettings.SetSettingConfig(id, int(std::uint32_t(word)));
  };
  store(mFront ? Set_Cfg_MotionArea1High : Set_Cfg_MotionArea2High, MotionSettingValue >> 32);
  store(mFront ? Set_Cfg_MotionArea1Low : Set_Cfg_MotionArea2Low, MotionSettingValue);
}

void MotionSetting::TimeoutEvent() {
  BaseWidget::TimeoutEvent();
  if (TakeEventId() == ENTRY_PREVIEW) Jump(PREVIEW);
}

// ---- painting

// Whole pixels: a soft edge over video would show as a red fringe.
void MotionSetting::paintEvent(QPaintEvent* event) {
  QPainter painter(this);
  const Color& trans = gColor.Trans;
  painter.fillRect(event->rect(), gMainWindow->GetIsLcdOff() ? QColor(Qt::black) : QColor(trans.r, trans.g, trans.b));
  for (int column = 1; column < kColumns; ++column)
    painter.fillRect(column * kCellWidth - 1, 0, kLine, height(), Qt::white);
  for (int row = 1; row < kRows; ++row) painter.fillRect(0, row * kCellHeight - 1, width(), kLine, Qt::white);
  for (const QRect& side : {QRect(1, 0, kLine, height()), QRect(width() - kLine, 0, kLine, height()),
                            QRect(0, 0, width(), kLine), QRect(0, height() - kLine, width(), kLine)})
    painter.fillRect(side, Qt::white);
  const QPixmap mark = Picture(QStringLiteral("motionsetting/motion_off.bmp"));
  for (int cell = 0; cell < kCells; ++cell)
    if (checkMotionDisble[size_t(cell)])
      painter.drawPixmap(kMark + QPoint(cell % kColumns * kCellWidth, cell / kColumns * kCellHeight), mark);
}
