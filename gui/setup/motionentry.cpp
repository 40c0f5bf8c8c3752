#include "gui/setup/motionentry.h"

#include "gui/base/eventgate.h"
#include "gui/base/globals.h"
#include "gui/base/shell.h"
#include "gui/screen/basewidget.h"
#include "gui/screen/messagebox.h"
#include "gui/screen/screenhost.h"
#include "gui/settings/settings.h"

namespace {
constexpr int kFrontView = 1, kRearView = 2;

void Enter(BaseWidget& screen, int display) {
  screen.DelMessageBox();
  gEnvirnmentSettings.SetSettingConfig(Set_Cfg_Display, display);
  screen.SendEvent(SEND_SWITCH_DISP_FOR_MOTION, display, QString());
  screen.Next(MOTIONSETTING);
}

void Refuse(BaseWidget& screen, int messageId) {
  PlayClick();
  screen.PaintMessageBox(messageId, false, 0, kNoticeMs);
  gEventGate.ProcessEvents();
}
}  // namespace

void AnswerMotionEntry(BaseWidget& screen, int x, int y) {
  const MessageBox::Button button = MessageBox::ButtonAt(x, y);
  if (button == MessageBox::Button::None) return;
  const Setting_Config& setting = gEnvirnmentSettings.mSetting;
  if (button == MessageBox::Button::Left)
    Enter(screen, kFrontView);
  else if (gCountOfCamera == 1)
    Refuse(screen, MOTION_SETTING_ENTRY_NOT_REAR);
  else if (setting.rear_cam_power == 0 && gMainWindow->GetIsIngParkingModeOn() && setting.parking_mode_on != 0)
    Refuse(screen, REAR_CAM_POWER_OFF_MSG);
  else
    Enter(screen, kRearView);
}
