// Both calibration files.
#include <algorithm>
#include <cmath>
#include <cstring>

#include "gui/settings/settings.h"
#include "tests/fuzz/readers/reader.h"

namespace {
const QString kCoefficients = QStringLiteral("/opt/touch.zel");
const QString kTuning = QStringLiteral("/opt/touch_tuning.zel");

bool IsSame(const Touch_Value& one, const Touch_Value& other) {
  return std::memcmp(&one, &other, sizeof one) == 0;
}
}  // namespace

void TakeCalibration(const QByteArray& bytes) {
  Root().Write(kCoefficients, bytes);
  Settings settings;
  settings.SettingTouchValue(true);
  const Touch_Value touch = settings.mTouchValue.Load();
  for (const double value : {touch.alphaX, touch.alphaY, touch.betaX, touch.betaY, touch.deltaX, touch.deltaY})
    REQUIRE(std::isfinite(value));
  REQUIRE(touch.alphaX * touch.betaY - touch.alphaY * touch.betaX != 0);
  // What the file has counts, or the factory's.
  const bool isFiles = bytes.size() >= qsizetype{sizeof touch} && std::memcmp(&touch, bytes.data(), sizeof touch) == 0;
  REQUIRE(isFiles || IsSame(touch, kFactoryTouchValue));

  settings.SettingTouchValue(false);
  Settings again;
  again.SettingTouchValue(true);
  REQUIRE(IsSame(again.mTouchValue.Load(), touch));
  // What stands behind them stays.
  if (bytes.size() <= 4096) REQUIRE(Root().Read(kCoefficients).mid(sizeof touch) == bytes.mid(sizeof touch));
}

void TakeTuning(const QByteArray& bytes) {
  Root().Write(kTuning, bytes);
  Settings settings;
  settings.SettingTouchTuningValue(true);
  const bool isWhole = bytes.size() >= 72;
  for (int i = 0; i < 9; ++i) {
    qint32 hit[2] = {kTouchTargetX[i], kTouchTargetY[i]};
    if (isWhole) std::memcpy(hit, bytes.constData() + qsizetype{i} * 8, sizeof hit);
    REQUIRE(settings.inputX[i] == hit[0] && settings.inputY[i] == hit[1]);
  }

  settings.SettingTouchTuningValue(false);
  Settings again;
  again.SettingTouchTuningValue(true);
  REQUIRE(std::ranges::equal(again.inputX, settings.inputX) && std::ranges::equal(again.inputY, settings.inputY));
}
