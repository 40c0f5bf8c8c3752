#include "gui/setup/lcdsetting.h"

#include "gui/base/shell.h"
#include "gui/screen/screenhost.h"
#include "gui/screen/screenof.h"
#include "gui/settings/config.h"
#include "gui/settings/settings.h"

SCREEN(LCDSETTING, LcdSetting)

namespace {
constexpr int kAlwaysOn = 4;  // lcd_auto_off

// An LCD that never goes off has no screen saver.
void FollowSecond(int second) {
  if (second != kAlwaysOn) return;
  gEnvirnmentSettings.mSetting.lcd_wait_dis = 0;
  gEnvirnmentSettings.SetSettingConfig(Set_Cfg_Lcd_Wait_Dis, 0);
  gMainWindow->SendEvent(SEND_LCD_WAIT_DIS, 0, QString());
}

constexpr TileOption kSecond{.pictures = &gLcdSetting.Second,
                             .field = &Setting_Config::lcd_auto_off,
                             .id = Set_Cfg_Lcd_Auto_Off,
                             .count = 5,
                             .least = 1,
                             .command = SEND_LCD_AUTO_OFF,
                             .effect = FollowSecond};
constexpr TileOption kLcdBrightness{.pictures = &gLcdSetting.Brightness,
                                    .field = &Setting_Config::lcd_bright,
                                    .id = Set_Cfg_Lcd_Bright,
                                    .count = 4,
                                    .command = SEND_LCD_BRIGHT};
constexpr TileOption kScreenSaver{.pictures = &gLcdSetting.ScreenSaver,
                                  .field = &Setting_Config::lcd_wait_dis,
                                  .id = Set_Cfg_Lcd_Wait_Dis,
                                  .count = 4,
                                  .command = SEND_LCD_WAIT_DIS};
}  // namespace

constexpr LcdSetting::Tile LcdSetting::kTiles[] = {
    {1, 1, Option{kSecond, Press<&LcdSetting::PressSecond>}},
    {1, 2, Option{kLcdBrightness, Press<&LcdSetting::PressBrightness>}},
    {1, 3, Option{kScreenSaver, Press<&LcdSetting::PressScreenSaver>}},
};

LcdSetting::LcdSetting(QWidget* parent) : TileScreen(parent, gLcdSetting.Title, kTiles) {}

void LcdSetting::PressSecond() {
  Advance(kSecond, TileRect(1, 1));
  repaint(TileRect(1, 3));
}

void LcdSetting::PressBrightness() {
  Advance(kLcdBrightness, TileRect(1, 2));
  gMainWindow->SetLcdBright(gEnvirnmentSettings.mSetting.lcd_bright);
}

void LcdSetting::PressScreenSaver() {
  if (gEnvirnmentSettings.mSetting.lcd_auto_off == kAlwaysOn) {
    PlayClick();
    PaintMessageBox(NOT_ON_SCREEN_SAVER, false, 0, kNoticeMs);
    SetOption(kScreenSaver, 0);
    repaint(TileRect(1, 3));
  } else {
    Advance(kScreenSaver, TileRect(1, 3));
  }
}
