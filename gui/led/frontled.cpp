#include "gui/led/frontled.h"

#include "gui/led/ledfilemanager.h"
#include "gui/screen/screenof.h"
#include "gui/settings/config.h"
#include "gui/settings/settings.h"

SCREEN(FRONTLED, FrontLed)

namespace {

// The display mode is stored under this number.
constexpr TileOption kMode{.pictures = &gFrontLed.Mode,
                           .field = &Setting_Config::led_mode,
                           .id = Set_Cfg_Setting_Change,
                           .count = 3,
                           .command = SEND_SET_LED_MODE};
}  // namespace

constexpr FrontLed::Tile FrontLed::kTiles[] = {
    {1, 1, Door{gFrontLed.NumberSave, NUMBERSETLAYOUT}},
    {1, 2, Action{gFrontLed.FileList, Press<&FrontLed::PressList>}},
    {1, 3, Option{kMode, Press<&FrontLed::PressMode>}},
};

FrontLed::FrontLed(QWidget* parent) : TileScreen(parent, gFrontLed.Title, kTiles) {}

void FrontLed::PressList() {
  if (gEnvirnmentSettings.mSetting.led_mode == 0)
    PaintMessageBox(LED_LIST_NOT_ENTRY, false, 0, kNoticeMs);
  else if (!gLedFileManager.getExistsLedFileFlag())
    PaintMessageBox(NOTHING_LED_FILE, false, 0, kNoticeMs);
  else
    Next(LEDFILELIST);
}

void FrontLed::PressMode() {
  Advance(kMode, {320, 60, 130, 160});  // the tiles of the modes differ only there
}
