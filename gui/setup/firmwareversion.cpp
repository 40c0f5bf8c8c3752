#include "gui/setup/firmwareversion.h"

#include <QFontMetrics>
#include <QLabel>

#include "gui/screen/label.h"
#include "gui/settings/settings.h"

namespace {
constexpr LabelRow kVersion{"mFwVerLabel", {305, 41, 80, 13}, 11, {177, 177, 177}};
constexpr int kSmallest = 8;  // pixels

// A version that is cut is another version: where narrower letters are not enough they are smaller, too.
QFont FaceOf(QFont face, const QString& version) {
  const int width = kVersion.box.width();
  for (int px = kVersion.px; px >= kSmallest; --px) {
    face.setPixelSize(px);
    face = FittingFont(face, version, width);
    if (QFontMetrics(face).horizontalAdvance(version) <= width) break;
  }
  return face;
}
}  // namespace

void AddFirmwareVersion(QWidget* screen) {
  const Setting_Config& setting = gEnvirnmentSettings.mSetting;
  const QString version =
      QString::asprintf("FW Ver.%d.%d.%d", setting.major_ver, setting.minor_ver, setting.minor_ver2);
  QLabel* label = AddLabel(screen, kVersion, version);
  label->setFont(FaceOf(label->font(), version));
}
