#include "gui/led/frontled.h"

#include "gui/led/ledfilemanager.h"
#include "gui/settings/config.h"
#include "gui/settings/settings.h"

namespace {
constexpr int kNoticeMs = 2000;

// The display mode is stored under this number.
constexpr TileOption kMode{.pictures = &gFrontLed.Mode,
                           .field = &Setting_Config::led_mode,
                           .id = Set_Cfg_Setting_Change,
                           .count = 3,
                           .command = SEND_SET_LED_MODE};
}  // namespace

constexpr FrontLed::Tile FrontLed::kTiles[] = {
    {.row = 1, .column = 1, .key = &gFrontLed.NumberSave, .next = NUMBERSETLAYOUT},
    {.row = 1, .column = 2, .key = &gFrontLed.FileList, .press = Press<&FrontLed::PressList>},
    {.row = 1, .column = 3, .option = &kMode, .press = Press<&FrontLed::PressMode>},
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
  Advance(kMode);
  repaint(320, 60, 130, 160);  // the tiles of the modes differ only there
}
