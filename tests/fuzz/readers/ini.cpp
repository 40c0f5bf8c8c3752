#include <QJsonObject>
#include <cmath>

#include "gui/settings/settingkeys.h"
#include "gui/settings/settings.h"
#include "recorder/base/settingstore.h"
#include "recorder/base/setupblock.h"
#include "tests/fuzz/readers/reader.h"

namespace {
// As a double, which holds every int and every float.
double ValueOf(const Settings& settings, const SettingKey& row) {
  const Setting_Config& from = settings.mSetting;
  const std::uint64_t map = row.index < 2 ? from.motion_area1 : from.motion_area2;
  switch (row.place) {
    case SettingPlace::Field:
      return from.*row.field;
    case SettingPlace::LowVoltCut:
      return double{from.low_volt_cut[row.index]};
    case SettingPlace::MotionWord:
      return int(std::uint32_t(row.index % 2 == 0 ? map >> 32 : map));
    case SettingPlace::Mirroring:
      return settings.mMirroring;
    case SettingPlace::MovingPip:
      return settings.mMovingPip;
  }
  return NAN;
}

// Both files are new ones: what was read of a file is remembered by its name.
void SetFiles(const QByteArray& recorders, const QByteArray& own) {
  for (const QString& file : {config_init_path, config_firm_path}) Root().Remove(file);
  config_init_path = NewName("/tmp/init-%1.ini");
  config_firm_path = NewName("/opt/gui/ini/firm-%1.ini");
  if (!recorders.isEmpty()) Root().Write(config_init_path, recorders);
  if (!own.isEmpty()) Root().Write(config_firm_path, own);
}

void RequireSame(const Settings& one, const Settings& other) {
  for (const SettingKey& row : SettingKeys()) REQUIRE(ValueOf(one, row) == ValueOf(other, row));
}

// Starts with these two files. What is written then is whole, and good.
void Start(const QByteArray& recorders, const QByteArray& own) {
  SetFiles(recorders, own);
  Settings settings;
  settings.InitSettingConfig();
  for (const SettingKey& row : SettingKeys()) REQUIRE(std::isfinite(ValueOf(settings, row)));
  REQUIRE(settings.mSetting.lcd_auto_off != 0);
  REQUIRE(!settings.compareSettingValue());
  settings.INIMotionSettingValue(true, 0, 0, 0, 0, 0);
  settings.settingSetup();
  QString error;
  const QByteArray block(reinterpret_cast<const char*>(&settings.mSetup_value), sizeof settings.mSetup_value);
  REQUIRE(recorder::SetupBlock::Read(block, &error));

  settings.mSetting = settings.mOldSetting;
  SetFiles({}, Root().Read(config_firm_path));
  Settings again;
  again.AllGetSettingConfig();
  RequireSame(again, settings);
  const SettingKey& row = SettingKeys()[std::size_t(recorders.size() + own.size()) % SettingKeys().size()];
  const bool isFloat = row.place == SettingPlace::LowVoltCut;
  REQUIRE((isFloat ? double{again.GetSettingConfigF(row.id)} : again.GetSettingConfig(row.id)) == ValueOf(again, row));
}

// The recorder reads its file, too, and what it writes then is what the interface reads.
void StartRecorder(const QByteArray& bytes) {
  SetFiles(bytes, {});
  recorder::SettingStore store(Root().Path(config_init_path));
  store.Load();
  REQUIRE(store.Save());
  SetFiles({}, Root().Read(config_init_path));
  Settings settings;
  settings.AllGetSettingConfig();
  const QJsonObject values = store.Values();
  for (const SettingKey& row : SettingKeys())
    REQUIRE(float(ValueOf(settings, row)) == float(values.value(QLatin1String(row.key)).toDouble(NAN)));
}
}  // namespace

// It may be the recorder's file or the interface's own, or the recorder reads its own; the number of bytes says which
// of them does.
void TakeIni(const QByteArray& bytes) {
  switch (bytes.size() % 3) {
    case 0:
      return Start(bytes, {});
    case 1:
      return Start({}, bytes);
    default:
      return StartRecorder(bytes);
  }
}
