#include "gui/setup/lowvoldetectionsetting.h"

#include "gui/settings/config.h"
#include "gui/settings/settings.h"
#include "gui/setup/voltageentry.h"

namespace {
// Off, 12, 24, 48, 3 and 6 hours.
constexpr TileOption kCutoffTime{.pictures = &gLowVolDetectionSettingConfig.CutoffTime,
                                 .field = &Setting_Config::power_cut_time,
                                 .id = Set_Cfg_Power_Cur_Time,
                                 .count = 6,
                                 .command = SEND_SET_POWER_CUT_TIME,
                                 .holdsVoices = true};
}  // namespace

constexpr LowVolDetectionSetting::Tile LowVolDetectionSetting::kTiles[] = {
    {.row = 1, .column = 1, .key = &gLowVolDetectionSettingConfig.PowerCut, .next = POWERCUTSETTING},
    {.row = 1, .column = 2, .option = &kCutoffTime},
    {.row = 1,
     .column = 3,
     .key = &gLowVolDetectionSettingConfig.VolCompensation,
     .press = Press<&LowVolDetectionSetting::PressVoltageCompensation>,
     .offered = IsVoltageCompensationOffered},
};

LowVolDetectionSetting::LowVolDetectionSetting(QWidget* parent)
    : TileScreen(parent, gLowVolDetectionSettingConfig.Title, kTiles) {}

void LowVolDetectionSetting::PressVoltageCompensation() {
  StartVoltageCompensation(*this);
}

void LowVolDetectionSetting::TimeoutEvent() {
  TileScreen::TimeoutEvent();
  if (TakeEventId() == VOL_COMPENSATION_START) Next(VOLTAGECOMPENSATION);
}
