#include "gui/setup/powercutsetting.h"

#include <algorithm>

#include "gui/base/shell.h"
#include "gui/screen/page.h"
#include "gui/screen/screenof.h"
#include "gui/settings/config.h"
#include "gui/settings/settings.h"

SCREEN(POWERCUTSETTING, PowerCutSetting)

namespace {
// Volts, by the type of the battery; 0 is off.
constexpr float kVolts12[] = {11.0F, 11.8F, 12.0F, 12.2F, 12.4F, 12.6F, 12.8F, 13.0F, 0.0F};
constexpr float kVolts24[] = {23.0F, 23.6F, 24.0F, 24.4F, 24.8F, 27.0F, 0.0F};
constexpr int kType12 = 0, kType24 = 1;
constexpr std::array<int, PowerCutSetting::kLevels> defaultVolIndex = {4, 4, 3, 2, 2, 2, 2, 2, 2, 2, 2, 3};

constexpr QSize kCell(80, 100);
constexpr QPoint kRecommended(40, 270), kManual(276, 270);
constexpr QRect kRecommendedArea(QPoint(41, 271), QPoint(203, 309)), kManualArea(QPoint(277, 271), QPoint(439, 309));

Setting_Config& Setting() {
  return gEnvirnmentSettings.mSetting;
}
}  // namespace

PowerCutSetting::PowerCutSetting(QWidget* parent)
    : TileScreen(parent, gPowerCutSettingConfig.Title, {}), mRecommendFlag(Setting().manual_volt_use == 0) {
  InitIndex();
  SetVolImagePaths();
}

// ---- voltages

std::span<const float> PowerCutSetting::Volts() {
  if (Setting().gPower_cut_lvl_type == kType24) return kVolts24;
  return kVolts12;
}

// A stored value that is in no row is shown as the first one.
void PowerCutSetting::InitIndex() {
  const std::span<const float> volts = Volts();
  for (size_t level = 0; level < kLevels; ++level) {
    const auto found = std::find(volts.begin(), volts.end(), Setting().low_volt_cut[level]);
    mVolValueIndex[level] = found == volts.end() ? 0 : int(found - volts.begin());
  }
}

void PowerCutSetting::SetDefaultVolIndex() {
  mVolValueIndex = defaultVolIndex;
}

void PowerCutSetting::SetVolImagePath(int level) {
  const float volts = Volts()[size_t(mVolValueIndex[size_t(level)])];
  const QString name = volts == 0.0F ? QStringLiteral("non") : QString::asprintf("%.1f", double{volts});
  mVolImage[size_t(level)] = QStringLiteral("powercutsetting/%1/").arg(level + 1) + name + QStringLiteral(".bmp");
}

void PowerCutSetting::SetVolImagePaths() {
  for (int level = 0; level < kLevels; ++level) SetVolImagePath(level);
}

void PowerCutSetting::UpdateValue(int level) {
  const int type = Setting().gPower_cut_lvl_type;
  if (type == kType12 || type == kType24) {
    int& index = mVolValueIndex[size_t(level)];
    index = (index + 1) % int(Volts().size());
    Setting().low_volt_cut[level] = Volts()[size_t(index)];
  }
  // Every level is reported under this one number; the store knows the value already.
  gEnvirnmentSettings.SetSettingConfigF(Set_Cfg_Power_Cut_lvl, Setting().low_volt_cut[level]);
}

// ---- touches

QRect PowerCutSetting::CellRect(int level) {
  return {QPoint(kCell.width() * (level % 6), 60 + kCell.height() * (level / 6)), kCell};
}

QList<TouchArea> PowerCutSetting::PageAreas() const {
  if (mRecommendFlag) return {{kManualArea, QStringLiteral("manual")}};
  QList<TouchArea> areas{{kRecommendedArea, QStringLiteral("recommended")}};
  for (int level = 0; level < kLevels; ++level)
    areas.append({CellRect(level).adjusted(1, 1, 0, 0), QStringLiteral("level %1").arg(level + 1)});
  return areas;
}

void PowerCutSetting::TouchPage(int x, int y) {
  if (kRecommendedArea.contains(x, y)) {
    if (!mRecommendFlag) SetManual(false);
  } else if (kManualArea.contains(x, y)) {
    if (mRecommendFlag) SetManual(true);
  } else if (!mRecommendFlag) {
    for (int level = 0; level < kLevels; ++level)
      if (CellRect(level).adjusted(1, 1, 0, 0).contains(x, y)) PressLevel(level);
  }
}

void PowerCutSetting::PressLevel(int level) {
  PlayClick();
  UpdateValue(level);
  SetVolImagePath(level);
  repaint(CellRect(level));
}

void PowerCutSetting::SetManual(bool manual) {
  PlayClick();
  Setting().manual_volt_use = manual ? 1 : 0;
  mRecommendFlag = !manual;
  manual ? InitIndex() : SetDefaultVolIndex();
  SetVolImagePaths();
  repaint();
}

// ---- painting

void PowerCutSetting::FillPage(Page& page) {
  page.Add({0, 0}, gPowerCutSettingConfig.Bg);
  for (int level = 0; level < kLevels; ++level) page.Add(CellRect(level).topLeft(), mVolImage[size_t(level)]);
  const auto button = [&](QPoint at, const Button_Config& key, bool chosen) {
    page.Add(at, chosen ? key.ReleaseImage : key.DisableImage);
  };
  button(kRecommended, gPowerCutSettingConfig.Recommended, mRecommendFlag);
  button(kManual, gPowerCutSettingConfig.Manual, !mRecommendFlag);
}
