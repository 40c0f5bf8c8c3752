#include "gui/setup/parkingsetting.h"

#include "gui/base/devicepath.h"
#include "gui/base/globals.h"
#include "gui/parking/pfileinfo.h"
#include "gui/screen/screenhost.h"
#include "gui/screen/screenof.h"
#include "gui/settings/config.h"
#include "gui/settings/settings.h"
#include "gui/setup/motionentry.h"
#include "gui/setup/shares.h"

SCREEN(PARKINGSETTING, ParkingSetting)

namespace {

constexpr TileOption kMode{.pictures = &gParkingSetting.Mode,
                           .field = &Setting_Config::parking_mode_on,
                           .id = Set_Cfg_Parking_Mode_On,
                           .count = 3,
                           .command = SEND_SET_PARKING_MODE_ON,
                           .holdsVoices = true,
                           .effect = ShareAfterParkingMode};
constexpr TileOption kParkingShock{.pictures = &gParkingSetting.Shock,
                                   .field = &Setting_Config::park_shock_lvl,
                                   .id = Set_Cfg_Park_lvl,
                                   .count = 3,
                                   .command = SEND_SET_PARK_LVL,
                                   .holdsVoices = true};
constexpr TileOption kMotion{.pictures = &gParkingSetting.Motion,
                             .field = &Setting_Config::motion_lvl,
                             .id = Set_Cfg_Motion_lvl,
                             .count = 3,
                             .command = SEND_SET_MOTION_LVL,
                             .holdsVoices = true};
constexpr TileOption kEntry{.pictures = &gParkingSetting.Entry,
                            .field = &Setting_Config::park_entry_lvl,
                            .id = Set_Cfg_Chk_Park_lvl,
                            .count = 3,
                            .command = SEND_CHK_PARK_LVL,
                            .holdsVoices = true};

// The accessory-power model knows by itself when a parking begins.
bool IsEntryThere(const TileScreen&) {
  return !gIsAccVer;
}
bool IsReportThere(const TileScreen&) {
  return gIsAccVer;
}
bool IsReportOffered(const TileScreen&) {
  return !gMainWindow->GetIsIngParkingModeOn();
}
}  // namespace

constexpr ParkingSetting::Tile ParkingSetting::kTiles[] = {
    {1, 1, Option{kMode}},
    {1, 2, Option{kParkingShock}},
    {1, 3, Option{kMotion}},
    {2, 1, Door{gParkingSetting.LowVol, LOWVOLDETECTIONSETTING}},
    {2, 2, Action{gParkingSetting.MotionSetting, Press<&ParkingSetting::AskMotionSetting>}},
    {2, 3, Option{kEntry}, IsEntryThere},
    {2, 3, Action{gParkingSetting.RecordingInfo, Press<&ParkingSetting::PaintPfileInfo>, IsReportOffered},
     IsReportThere},
};

ParkingSetting::ParkingSetting(QWidget* parent) : TileScreen(parent, gParkingSetting.Title, kTiles) {}

ParkingSetting::~ParkingSetting() = default;

void ParkingSetting::AskMotionSetting() {
  PaintMessageBox(MOTION_SETTING_ENTRY, false, 0, 0);
}

void ParkingSetting::MessageBoxHandler(int, int x, int y, int messageId) {
  if (messageId == MOTION_SETTING_ENTRY) AnswerMotionEntry(*this, x, y);
}

void ParkingSetting::PaintPfileInfo() {
  pFile = std::make_unique<PFileInfo>();
  if (pFile->openDataFile(DevicePath(device::kParkingReport))) {
    g_bIsPrevWidgetParkingSetting = true;
    Next(PFILEGRAPH, pFile.get());
    return;
  }
  pFile.reset();
  PaintMessageBox(NOT_PARKING_MODE_RECORD_INFO, false, 0, kNoticeMs);
}
