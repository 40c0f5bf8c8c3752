#include "gui/setup/shares.h"

#include "gui/settings/settings.h"

namespace {
constexpr int kDeleteByTime = 1;

void Share(int normal, int event, int parking) {
  Setting_Config& setting = gEnvirnmentSettings.mSetting;
  setting.n_file_rate = normal;
  setting.e_file_rate = event;
  setting.p_file_rate = parking;
}

void ShareBetween(bool impacts, bool parkings) {
  if (impacts && parkings)
    Share(40, 30, 30);
  else if (impacts)
    Share(50, 50, 0);
  else if (parkings)
    Share(50, 0, 50);
  else
    gEnvirnmentSettings.mSetting.efile_del_method = kDeleteByTime;  // there is one kind only
}
}  // namespace

void ShareAfterShock(int level) {
  if (level == 0 || level == 1) ShareBetween(level == 1, gEnvirnmentSettings.mSetting.parking_mode_on != 0);
}

void ShareAfterParkingMode(int mode) {
  if (mode == 0 || mode == 1) ShareBetween(gEnvirnmentSettings.mSetting.drv_shock_lvl != 0, mode == 1);
}
