#include "gui/setup/mainmenu2.h"

#include "gui/screen/screenhost.h"
#include "gui/screen/screenof.h"
#include "gui/settings/config.h"
#include "gui/setup/firmwareversion.h"
#include "gui/setup/motionentry.h"
#include "gui/setup/voltageentry.h"

SCREEN(MAINMENU2, MainMenu2)

constexpr MainMenu2::Tile MainMenu2::kTiles[] = {
    {1, 1, Door{gMainMenu2.AudioSetting, AUDIOSETTING}},
    {1, 2, Door{gMainMenu2.FileDelete, FILEDELMETHOD}},
    {1, 3, Door{gMainMenu2.TimeSetting, TIMELAYOUT}},
    {2, 1, Action{gMainMenu2.TouchCompensation, Press<&MainMenu2::PressTouchCompensation>}},
    {2, 2, Action{gMainMenu2.MotionSetting, Press<&MainMenu2::AskMotionSetting>}},
    {2, 3,
     Action{gMainMenu2.VoltageCompensation, Press<&MainMenu2::PressVoltageCompensation>, IsVoltageCompensationOffered}},
};

MainMenu2::MainMenu2(QWidget* parent) : TileScreen(parent, gMainMenu2.Title, kTiles) {
  AddFirmwareVersion(this);
}

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
