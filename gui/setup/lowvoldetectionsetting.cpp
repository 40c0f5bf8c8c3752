#include "gui/setup/lowvoldetectionsetting.h"

#include "gui/screen/screenof.h"
#include "gui/settings/config.h"
#include "gui/settings/settings.h"
#include "gui/setup/voltageentry.h"

SCREEN(LOWVOLDETECTIONSETTING, LowVolDetectionSetting)

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
    {1, 1, Door{gLowVolDetectionSettingConfig.PowerCut, POWERCUTSETTING}},
    {1, 2, Option{kCutoffTime}},
    {1, 3,
     Action{gLowVolDetectionSettingConfig.VolCompensation, Press<&LowVolDetectionSetting::PressVoltageCompensation>,
            IsVoltageCompensationOffered}},
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
