#include "gui/setup/filedeletemethod.h"

#include "gui/screen/screenof.h"
#include "gui/settings/config.h"
#include "gui/settings/settings.h"

SCREEN(FILEDELMETHOD, FileDeleteMethod)

namespace {
constexpr int kByTime = 1;  // efile_del_method

// Both go to the recorder with all the other settings.
constexpr TileOption kMethod{.pictures = &gFileDeleteMethod.Method,
                             .field = &Setting_Config::efile_del_method,
                             .id = Set_Cfg_Efile_Del_Method,
                             .count = 2};
constexpr TileOption kProtectFile{.pictures = &gFileDeleteMethod.ProtectFile,
                                  .field = &Setting_Config::protect_file,
                                  .id = Set_Cfg_ProtectFile,
                                  .count = 4,
                                  .step = 10};

bool IsByType(const TileScreen&) {
  return gEnvirnmentSettings.mSetting.efile_del_method == 0;
}
}  // namespace

constexpr FileDeleteMethod::Tile FileDeleteMethod::kTiles[] = {
    {1, 1, Option{kMethod, Press<&FileDeleteMethod::PressMethod>}},
    {1, 2, Door{gFileDeleteMethod.Memory, FILEMANAGEMENT, IsByType}},
    {1, 3, Option{kProtectFile, Press<&FileDeleteMethod::PressProtectFile>}},
};

FileDeleteMethod::FileDeleteMethod(QWidget* parent) : TileScreen(parent, gFileDeleteMethod.Title, kTiles) {}

void FileDeleteMethod::PressMethod() {
  const Setting_Config& setting = gEnvirnmentSettings.mSetting;
  if (setting.parking_mode_on == 0 && setting.drv_shock_lvl == 0) {  // there is one kind of recordings only
    PaintMessageBox(NO_MEMORY_SETTING, false, 0, kNoticeMs);
    SetOption(kMethod, kByTime);
    return;
  }
  Advance(kMethod, rect());  // the shares are offered or not
}

void FileDeleteMethod::PressProtectFile() {
  Advance(kProtectFile, rect());
}
