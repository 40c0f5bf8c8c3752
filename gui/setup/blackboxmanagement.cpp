#include "gui/setup/blackboxmanagement.h"

#include "gui/base/globals.h"
#include "gui/screen/messagebox.h"
#include "gui/screen/screenhost.h"
#include "gui/settings/config.h"
#include "gui/settings/settings.h"

namespace {
constexpr int kNoticeMs = 2000;
}

constexpr BlackboxManagement::Tile BlackboxManagement::kTiles[] = {
    {.row = 1, .column = 1, .key = &gBlackboxManagementConfig.LcdSetting, .next = LCDSETTING},
    {.row = 1,
     .column = 2,
     .key = &gBlackboxManagementConfig.LedSetting,
     .press = Press<&BlackboxManagement::PressLed>},
    {.row = 1, .column = 3, .key = &gBlackboxManagementConfig.TimeSetting, .next = TIMELAYOUT},
    {.row = 2,
     .column = 1,
     .key = &gBlackboxManagementConfig.TouchCompensation,
     .press = Press<&BlackboxManagement::PressTouchCompensation>},
    {.row = 2, .column = 2, .key = &gBlackboxManagementConfig.AudioSetting, .next = AUDIOSETTING},
    {.row = 2,
     .column = 3,
     .key = &gBlackboxManagementConfig.Initialize,
     .press = Press<&BlackboxManagement::AskUserDataInit>},
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
  DelMessageBox();
  if (button == MessageBox::Button::Right) return;
  const Setting_Config& applied = gEnvirnmentSettings.mOldSetting;
  if (!warned && applied.resolution != 0)  // a reset changes it, and then the card must be formatted
    PaintMessageBox(INITIALIZE_RESET_RES_NEED_FORMAT, false, 0, 0);
  else if (!warned && applied.fps != 0)
    PaintMessageBox(INITIALIZE_RESET_FPS_NEED_FORMAT, false, 0, 0);
  else
    SendEvent(SEND_SET_USER_DATA_INIT, 0, QString());
}
