#include "gui/setup/blackboxmanagement.h"

#include "gui/base/globals.h"
#include "gui/screen/messagebox.h"
#include "gui/screen/screenhost.h"
#include "gui/screen/screenof.h"
#include "gui/settings/config.h"
#include "gui/settings/settings.h"

SCREEN(BLACKBOXMANAGEMENT, BlackboxManagement)

namespace {}

constexpr BlackboxManagement::Tile BlackboxManagement::kTiles[] = {
    {1, 1, Door{gBlackboxManagementConfig.LcdSetting, LCDSETTING}},
    {1, 2, Action{gBlackboxManagementConfig.LedSetting, Press<&BlackboxManagement::PressLed>}},
    {1, 3, Door{gBlackboxManagementConfig.TimeSetting, TIMELAYOUT}},
    {2, 1, Action{gBlackboxManagementConfig.TouchCompensation, Press<&BlackboxManagement::PressTouchCompensation>}},
    {2, 2, Door{gBlackboxManagementConfig.AudioSetting, AUDIOSETTING}},
    {2, 3, Action{gBlackboxManagementConfig.Initialize, Press<&BlackboxManagement::AskUserDataInit>}},
};

BlackboxManagement::BlackboxManagement(QWidget* parent) : TileScreen(parent, gBlackboxManagementConfig.Title, kTiles) {}

void BlackboxManagement::PressLed() {
  if (gInitFrontLed)
    Next(FRONTLED);
  else
    PaintMessageBox(FRONTLED_ERROR, false, 0, kNoticeMs);
}

void BlackboxManagement::PressTouchCompensation() {
  gMainWindow->StopParkingModeLcdOffTimer();
  Next(TOUCHCOMP);
}

void BlackboxManagement::AskUserDataInit() {
  PaintMessageBox(USER_DATA_INIT, false, 0, 0);
}

void BlackboxManagement::MessageBoxHandler(int, int x, int y, int messageId) {
  const bool warned = messageId == INITIALIZE_RESET_RES_NEED_FORMAT || messageId == INITIALIZE_RESET_FPS_NEED_FORMAT;
  if (messageId != USER_DATA_INIT && !warned) return;
  const MessageBox::Button button = MessageBox::ButtonAt(x, y);
  if (button == MessageBox::Button::None) return;
  const bool yes = button == MessageBox::Button::Left;
  const Setting_Config& applied = gEnvirnmentSettings.mOldSetting;
  if (yes && !warned && applied.resolution != 0) {  // a reset changes it, and then the card must be formatted
    PaintMessageBox(INITIALIZE_RESET_RES_NEED_FORMAT, false, 0, 0);
  } else if (yes && !warned && applied.fps != 0) {
    PaintMessageBox(INITIALIZE_RESET_FPS_NEED_FORMAT, false, 0, 0);
  } else {
    DelMessageBox();
    if (yes) SendEvent(SEND_SET_USER_DATA_INIT, 0, QString());
  }
}
