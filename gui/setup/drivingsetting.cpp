#include "gui/setup/drivingsetting.h"

#include "gui/screen/screenof.h"
#include "gui/settings/config.h"
#include "gui/settings/settings.h"
#include "gui/setup/shares.h"

SCREEN(DRIVINGSETTING, DrivingSetting)

namespace {
constexpr TileOption kResolution{.pictures = &gDrivingSetting.Resolution,
                                 .field = &Setting_Config::resolution,
                                 .id = Set_Cfg_Resolution,
                                 .count = 2,
                                 .command = SEND_SET_RESOLUTION};
constexpr TileOption kFrame{.pictures = &gDrivingSetting.Frame,
                            .field = &Setting_Config::fps,
                            .id = Set_Cfg_Fps,
                            .count = 2,
                            .command = SEND_SET_FPS};
constexpr TileOption kBrightness{.pictures = &gDrivingSetting.Brightness,
                                 .field = &Setting_Config::drv_rec_brightness,
                                 .id = Set_Cfg_Gain,
                                 .count = 3,
                                 .command = SEND_SET_GAIN};
constexpr TileOption kShock{.pictures = &gDrivingSetting.Shock,
                            .field = &Setting_Config::drv_shock_lvl,
                            .id = Set_Cfg_Gsensor_Trg_lvl,
                            .count = 4,
                            .command = SEND_SET_GSENSOR_TRG_LVL,
                            .effect = ShareAfterShock};
constexpr TileOption kSpeed{.pictures = &gDrivingSetting.SpeedDisplay,
                            .field = &Setting_Config::gps_speed_display,
                            .id = Set_Cfg_Gps_Speed_Display,
                            .count = 2,
                            .command = SEND_SET_GPS_SPEED_DISPLAY};
}  // namespace

constexpr DrivingSetting::Tile DrivingSetting::kTiles[] = {
    {1, 1, Option{kResolution}}, {1, 2, Option{kFrame}}, {1, 3, Option{kBrightness}},
    {2, 1, Option{kShock}},      {2, 2, Option{kSpeed}},
};

DrivingSetting::DrivingSetting(QWidget* parent) : TileScreen(parent, gDrivingSetting.Title, kTiles) {}
