#include "gui/setup/mainmenu2.h"

#include <QPointer>

#include "gui/base/eventgate.h"
#include "gui/base/globals.h"
#include "gui/base/shell.h"
#include "gui/screen/messagebox.h"
#include "gui/screen/screenhost.h"
#include "gui/settings/config.h"
#include "gui/settings/settings.h"
#include "gui/setup/firmwareversion.h"

namespace {
constexpr int kNoticeMs = 2000;
constexpr int kFrontView = 1, kRearView = 2;

bool IsVoltageCompensationOffered() {
  return gNeedVolCom;
}
}  // namespace

constexpr MainMenu2::Tile MainMenu2::kTiles[] = {
    {.row = 1, .column = 1, .key = &gMainMenu2.AudioSetting, .next = AUDIOSETTING},
    {.row = 1, .column = 2, .key = &gMainMenu2.FileDelete, .next = FILEDELMETHOD},
    {.row = 1, .column = 3, .key = &gMainMenu2.TimeSetting, .next = TIMELAYOUT},
    {.row = 2, .column = 1, .key = &gMainMenu2.TouchCompensation, .press = Press<&MainMenu2::PressTouchCompensation>},
    {.row = 2, .column = 2, .key = &gMainMenu2.MotionSetting, .press = Press<&MainMenu2::AskMotionSetting>},
    {.row = 2,
     .column = 3,
     .key = &gMainMenu2.VoltageCompensation,
     .press = Press<&MainMenu2::StartVoltageCompensation>,
     .offered = IsVoltageCompensationOffered},
};

MainMenu2::MainMenu2(QWidget* parent)
    : TileScreen(parent, gMainMenu2.Title, kTiles), mFwVerLabel(AddFirmwareVersion(this)) {}

void MainMenu2::PressTouchCompensation() {
  gMainWindow->StopParkingModeLcdOffTimer();
  Next(TOUCHCOMP);
}

// ------------------------------------------------------------------------------------------------------- motion
// setting

void MainMenu2::AskMotionSetting() {
  PaintMessageBox(MOTION_SETTING_ENTRY, false, 0, 0);
}

void MainMenu2::MessageBoxHandler(int, int x, int y, int messageId) {
  if (messageId != MOTION_SETTING_ENTRY) return;
  const MessageBox::Button button = MessageBox::ButtonAt(x, y);
  if (button == MessageBox::Button::None) return;
  DelMessageBox();
  if (button == MessageBox::Button::Left)
    EnterMotionSetting(kFrontView);
  else
    EnterRearMotionSetting();
}

void MainMenu2::EnterRearMotionSetting() {
  const Setting_Config& setting = gEnvirnmentSettings.mSetting;
  if (gCountOfCamera == 1)
    Refuse(MOTION_SETTING_ENTRY_NOT_REAR);
  else if (setting.rear_cam_power == 0 && gMainWindow->GetIsIngParkingModeOn() && setting.parking_mode_on != 0)
    Refuse(REAR_CAM_POWER_OFF_MSG);
  else
    EnterMotionSetting(kRearView);
}

void MainMenu2::Refuse(int messageId) {
  PlayClick();
  PaintMessageBox(messageId, false, 0, kNoticeMs);
  gEventGate.ProcessEvents();
}

void MainMenu2::EnterMotionSetting(int display) {
  gEnvirnmentSettings.SetSettingConfig(Set_Cfg_Display, display);
  SendEvent(SEND_SWITCH_DISP_FOR_MOTION, display, QString());
  Next(MOTIONSETTING);
}

// ------------------------------------------------------------------------------------------------ voltage compensation

void MainMenu2::StartVoltageCompensation() {
  PaintMessageBox(VOL_COMPENSATION_START, false, 0, kNoticeMs);
  const QPointer<MainMenu2> here(this);
  gEventGate.ProcessEvents();
  if (!here) return;
  SendEvent(SEND_VOLTAGE_COMPENSATION, 0, QString());
  SetEvent(VOL_COMPENSATION_START, kNoticeMs);
}

void MainMenu2::TimeoutEvent() {
  BaseWidget::TimeoutEvent();
  if (TakeEventId() == VOL_COMPENSATION_START) Next(VOLTAGECOMPENSATION);
}
