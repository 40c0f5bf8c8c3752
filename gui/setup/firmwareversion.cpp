#include "gui/setup/firmwareversion.h"

#include "gui/screen/label.h"
#include "gui/settings/settings.h"

namespace {
constexpr LabelRow kVersion{"mFwVerLabel", {305, 41, 80, 13}, 11, {177, 177, 177}};
}

QString FirmwareVersion() {
  const Setting_Config& setting = gEnvirnmentSettings.mSetting;
  return QString::asprintf("FW Ver.%d.%d.%d", setting.major_ver, setting.minor_ver, setting.minor_ver2);
}

QLabel* AddFirmwareVersion(QWidget* screen) {
  return AddLabel(screen, kVersion, FirmwareVersion());
}
