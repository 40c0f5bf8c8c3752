#include "gui/setup/mainmenu2.h"

#include "gui/screen/screenhost.h"
#include "gui/settings/config.h"
#include "gui/setup/firmwareversion.h"
#include "gui/setup/motionentry.h"
#include "gui/setup/voltageentry.h"

constexpr MainMenu2::Tile MainMenu2::kTiles[] = {
    {.row = 1, .column = 1, .key = &gMainMenu2.AudioSetting, .next = AUDIOSETTING},
    {.row = 1, .column = 2, .key = &gMainMenu2.FileDelete, .next = FILEDELMETHOD},
    {.row = 1, .column = 3, .key = &gMainMenu2.TimeSetting, .next = TIMELAYOUT},
    {.row = 2, .column = 1, .key = &gMainMenu2.TouchCompensation, .press = Press<&MainMenu2::PressTouchCompensation>},
    {.row = 2, .column = 2, .key = &gMainMenu2.MotionSetting, .press = Press<&MainMenu2::AskMotionSetting>},
    {.row = 2,
     .column = 3,
     .key = &gMainMenu2.VoltageCompensation,
     .press = Press<&MainMenu2::PressVoltageCompensation>,
     .offered = IsVoltageCompensationOffered},
};

MainMenu2::MainMenu2(QWidget* parent)
    : TileScreen(parent, gMainMenu2.Title, kTiles), mFwVerLabel(AddFirmwareVersion(this)) {}

void MainMenu2::PressTouchCompensation() {
  gMainWindow->StopParkingModeLcdOffTimer();
  Next(TOUCHCOMP);
}

// ---- motion setting

void MainMenu2::AskMotionSetting() {
  PaintMessageBox(MOTION_SETTING_ENTRY, false, 0, 0);
}

void MainMenu2::MessageBoxHandler(int, int x, int y, int messageId) {
  if (messageId == MOTION_SETTING_ENTRY) AnswerMotionEntry(*this, x, y);
}

void MainMenu2::PressVoltageCompensation() {
  StartVoltageCompensation(*this);
}

void MainMenu2::TimeoutEvent() {
  BaseWidget::TimeoutEvent();
  if (TakeEventId() == VOL_COMPENSATION_START) Next(VOLTAGECOMPENSATION);
}
