#include "gui/settings/settings.h"

#include <QDataStream>
#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QSettings>
#include <algorithm>
#include <cmath>

#include "gui/base/atomicfile.h"
#include "gui/base/devicepath.h"
#include "gui/base/shell.h"
#include "gui/settings/settingkeys.h"

Settings gEnvirnmentSettings;
QString config_firm_path = QLatin1String(device::kConfigFirm);
QString config_init_path = QLatin1String(device::kConfigInit);

namespace {
constexpr int kFactoryMapHigh = -61441;  // 0xFFFF0FFF: bits 44..47 of a fresh map are clear
constexpr int kFactoryMapLow = -1;

constexpr qint64 kLargestIni = 65536;  // bytes; all keys take about 1,200

// The file itself: a link to it stays. One that leads in a circle gives way to a file.
QString FileOf(const QString& path) {
  const QString file = DevicePath(path);
  const QString behind = BehindLinks(file);
  return behind.isEmpty() ? file : behind;
}

// A damaged file system can put anything in the place of a file: reading a pipe never ends, and gigabytes do not fit. A
// missing file is one for QSettings to see: it would take the next one, within the same millisecond, for the last.
bool IsReadable(const QString& file) {
  const QFileInfo info(file);
  return !info.exists() || (info.isFile() && info.size() <= kLargestIni);
}

// QSettings knows a file that it has read by its size and its time in milliseconds, which can be the same after a quick
// save.
void MakeNewer(const QString& file, const QDateTime& before) {
  QFile written(file);
  if (QFileInfo(file).lastModified() <= before && written.open(QIODevice::ReadWrite))
    written.setFileTime(before.addMSecs(1), QFileDevice::FileModificationTime);
}

// To be read; what cannot be read holds no key.
QSettings Open(const QString& path) {
  const QString file = FileOf(path);
  return {IsReadable(file) ? file : QProcess::nullDevice(), QSettings::IniFormat};
}

// What a file holds for a setting, unless the newer values have it.
QVariant Held(const QSettings& file, const IniValues& newer, const SettingKey& row) {
  const auto value = newer.constFind(row.key);
  return value != newer.cend() ? *value : file.value(QLatin1String(row.key));
}

// Reads all of the file: its status then says whether it is damaged.
bool HoldsASetting(const QSettings& file) {
  const QStringList keys = file.allKeys();
  return std::ranges::any_of(SettingKeys(),
                             [&](const SettingKey& row) { return keys.contains(QLatin1String(row.key)); });
}

// `otherwise` when the file has no such key, or no number for it.
int ToInt(const QVariant& held, int otherwise) {
  bool isNumber = false;
  const int value = held.toInt(&isNumber);
  return isNumber ? value : otherwise;
}

// The same; a file can say "nan", with which nothing would ever be equal.
float ToFloat(const QVariant& held, float otherwise) {
  bool isNumber = false;
  const float volts = held.toFloat(&isNumber);
  return isNumber && std::isfinite(volts) ? volts : otherwise;
}

// The row of a setting that is a whole number, or that is none; null for any other.
const SettingKey* RowOf(Setting_Id id, bool isFloat) {
  const SettingKey* row = FindSettingKey(id);
  return row && (row->place == SettingPlace::LowVoltCut) == isFloat ? row : nullptr;
}

// A motion map is kept as two signed words.
std::uint64_t Map(int high, int low) {
  return std::uint64_t{std::uint32_t(high)} << 32 | std::uint32_t(low);
}

std::uint64_t& MapOf(Setting_Config& setting, int word) {
  return word < 2 ? setting.motion_area1 : setting.motion_area2;
}

int GetWord(const Setting_Config& setting, int word) {
  const std::uint64_t map = word < 2 ? setting.motion_area1 : setting.motion_area2;
  return int(std::uint32_t(word % 2 == 0 ? map >> 32 : map));
}

void SetWord(Setting_Config& setting, int word, int value) {
  std::uint64_t& map = MapOf(setting, word);
  map = word % 2 == 0 ? Map(value, int(std::uint32_t(map))) : Map(int(std::uint32_t(map >> 32)), value);
}
}  // namespace

// ---- the INI files

void Settings::Load(const QSettings& file, const IniValues& newer) {
  for (const SettingKey& row : SettingKeys()) {
    const QVariant held = Held(file, newer, row);
    const auto read = [&](int& value) { value = ToInt(held, value); };
    switch (row.place) {
      case SettingPlace::Field:
        read(mSetting.*row.field);
        break;
      case SettingPlace::LowVoltCut:
        mSetting.low_volt_cut[row.index] = ToFloat(held, mSetting.low_volt_cut[row.index]);
        break;
      case SettingPlace::MotionWord:
        SetWord(mSetting, row.index, ToInt(held, GetWord(mSetting, row.index)));
        break;
      case SettingPlace::Mirroring:
        read(mMirroring);
        break;
      case SettingPlace::MovingPip:
        read(mMovingPip);
        break;
    }
  }
}

// A value that the file has already costs no write: flash wears out.
void Settings::Change(const QSettings& own, const SettingKey& row, const QVariant& value) {
  QVariant held = Held(own, mUnsaved, row);
  if (!held.convert(value.metaType()) || held != value) mUnsaved.insert(row.key, value);
}

// All changes in one write. Over a file that cannot be read nothing is written: the settings that are not among the
// changes would be lost.
void Settings::Save() {
  SaveCalibration();
  if (mUnsaved.isEmpty()) return;
  const QString file = DevicePath(config_firm_path);
  QByteArray text;
  const FileRead read = ReadFile(file, kLargestIni + 1, &text);
  if (read == FileRead::Failed) return;
  // What stands there and cannot be the own file gives way; what a link leads to stays, whatever it is.
  if (read == FileRead::NoFile || text.size() > kLargestIni) {
    QFile::remove(file);
    text.clear();
  }
  IniValues values = mUnsaved;
  if (!IsPlainIni(text)) {  // not the interface's own text: what it says is written anew
    const QSettings own = Open(config_firm_path);
    for (const SettingKey& row : SettingKeys()) {
      QVariant held = Held(own, mUnsaved, row);
      // the number alone: a text can hold line ends
      const bool isFloat = row.place == SettingPlace::LowVoltCut;
      if (held.convert(QMetaType(isFloat ? QMetaType::Float : QMetaType::Int))) values.insert(row.key, held);
    }
    text.clear();
  }
  const QFileInfo place(file);
  const QDateTime before = place.lastModified();
  QDir().mkpath(place.path());
  if (!WriteAtomically(file, WithIniValues(text, values))) return;
  mUnsaved.clear();
  MakeNewer(file, before);
}

void Settings::InitSettingConfig() {
  RemoveCutWrite(DevicePath(config_firm_path));
  const QSettings recorder = Open(config_init_path);
  if (!HoldsASetting(recorder) || recorder.status() != QSettings::NoError) Load(Open(config_firm_path), mUnsaved);
  Load(recorder, {});
  if (mSetting.lcd_auto_off == 0) mSetting.lcd_auto_off = 1;  // 0 is never kept at a start
  AllSetSettingConfig();
}

void Settings::AllGetSettingConfig() {
  const QSettings file = Open(config_firm_path);
  if (!HoldsASetting(file)) return;
  Load(file, mUnsaved);
  mOldSetting = mSetting;
}

void Settings::AllSetSettingConfig() {
  const QSettings file = Open(config_firm_path);
  const auto value = [this](const SettingKey& row) -> QVariant {
    switch (row.place) {
      case SettingPlace::Field:
        return mSetting.*row.field;
      case SettingPlace::LowVoltCut:
        return mSetting.low_volt_cut[row.index];
      case SettingPlace::MotionWord:
        return GetWord(mSetting, row.index);
      case SettingPlace::Mirroring:
        return mMirroring;
      case SettingPlace::MovingPip:
        return mMovingPip;
    }
    return {};
  };
  for (const SettingKey& row : SettingKeys()) Change(file, row, value(row));
  Save();
  mOldSetting = mSetting;
}

int Settings::GetSettingConfig(Setting_Id id) const {
  const SettingKey* row = RowOf(id, false);
  return row ? ToInt(Held(Open(config_firm_path), mUnsaved, *row), 0) : 0;
}

int Settings::GetFWSettingConfig(Setting_Id id) const {
  const SettingKey* row = RowOf(id, false);
  return row ? ToInt(Held(Open(config_init_path), {}, *row), 0) : 0;
}

float Settings::GetSettingConfigF(Setting_Id id) const {
  const SettingKey* row = RowOf(id, true);
  return row ? ToFloat(Held(Open(config_firm_path), mUnsaved, *row), 0) : 0;
}

float Settings::GetFWSettingConfigF(Setting_Id id) const {
  const SettingKey* row = RowOf(id, true);
  return row ? ToFloat(Held(Open(config_init_path), {}, *row), 0) : 0;
}

void Settings::SetSettingConfig(Setting_Id id, int value) {
  const SettingKey* row = RowOf(id, false);
  if (!row) return;
  if (row->rule != SettingRule::Memory) {
    Change(Open(config_firm_path), *row, value);
    Save();
  }
  if (row->rule != SettingRule::FileOnly) mSetting.*row->field = value;
}

void Settings::SetSettingConfigF(Setting_Id id, float value) {
  if (const SettingKey* row = RowOf(id, true)) mSetting.low_volt_cut[row->index] = value;
}

void Settings::SettingMirroringAndMovingPipValue(bool load) {
  if (load) {
    mMirroring = GetSettingConfig(Set_Cfg_Mirroring);
    mMovingPip = GetSettingConfig(Set_Cfg_MovingPip);
    return;
  }
  SetSettingConfig(Set_Cfg_Mirroring, mMirroring);
  SetSettingConfig(Set_Cfg_MovingPip, mMovingPip);
  SyncFiles();
}

void Settings::INIMotionSettingValue(bool load, int camera, int frontHigh, int frontLow, int rearHigh, int rearLow) {
  const auto row = [](Setting_Id id) -> const SettingKey& { return *FindSettingKey(id); };
  if (load) {
    const QSettings file = Open(config_init_path);
    const auto word = [&](Setting_Id id, int factory) {
      return file.value(QLatin1String(row(id).key), factory).toInt();
    };
    const auto map = [&](Setting_Id high, Setting_Id low) {
      return Map(word(high, kFactoryMapHigh), word(low, kFactoryMapLow));
    };
    mSetting.motion_area1 = map(Set_Cfg_MotionArea1High, Set_Cfg_MotionArea1Low);
    mSetting.motion_area2 = map(Set_Cfg_MotionArea2High, Set_Cfg_MotionArea2Low);
    return;
  }
  const QSettings file = Open(config_firm_path);
  const bool front = camera == 1;
  Change(file, row(front ? Set_Cfg_MotionArea1High : Set_Cfg_MotionArea2High), front ? frontHigh : rearHigh);
  Change(file, row(front ? Set_Cfg_MotionArea1Low : Set_Cfg_MotionArea2Low), front ? frontLow : rearLow);
  SyncFiles();
  Save();
}

// ---- changes, the setup block

bool Settings::compareSettingValue() const {
  return std::ranges::any_of(SettingKeys(), [this](const SettingKey& row) {
    if (!row.compared) return false;
    if (row.place == SettingPlace::Field) return mSetting.*row.field != mOldSetting.*row.field;
    return mSetting.low_volt_cut[row.index] != mOldSetting.low_volt_cut[row.index];
  });
}

void Settings::settingSetup() {
  constexpr std::uint8_t kModel = 200;
  const Setting_Config& from = mSetting;
  const auto byte = [](int value) { return std::uint8_t(value); };
  Setup_Value to{};
  to.major_ver = byte(from.major_ver);
  to.minor_ver = byte(from.minor_ver);
  to.minor_ver2 = byte(from.minor_ver2);
  to.model = kModel;
  to.fps = byte(from.fps);
  to.resolution = byte(from.resolution);
  to.gain = byte(from.drv_rec_brightness);
  to.gain2 = byte(from.drv_rec_brightness2);
  to.gsensor_trg_lvl = byte(from.drv_shock_lvl);
  to.gps_speed_display = byte(from.gps_speed_display);
  to.display = byte(from.display);
  to.parking_mode_on = byte(from.parking_mode_on);
  to.chk_park_lvl = byte(from.park_entry_lvl);
  to.park_lvl = byte(from.park_shock_lvl);
  to.motion_lvl = byte(from.motion_lvl);
  to.power_cut_lvl = byte(from.power_cut_lvl);
  to.power_cut_time = byte(from.power_cut_time);
  to.power = byte(from.gPower_cut_lvl_type);
  to.volume = byte(from.volume);
  to.event_buzer = byte(from.event_buzer);
  to.buzer_flag = byte(from.buzer_flag);
  to.spk_volume = byte(from.spk_volume);
  to.acc_volume = byte(from.acc_volume);
  to.efile_del_method = byte(from.efile_del_method);
  to.n_file_rate = byte(from.n_file_rate);
  to.e_file_rate = byte(from.e_file_rate);
  to.p_file_rate = byte(from.p_file_rate);
  to.lcd_auto_off = byte(from.lcd_auto_off);
  to.lcd_bright = byte(from.lcd_bright);
  to.lcd_wait_dis = byte(from.lcd_wait_dis);
  to.led_display = byte(from.led_mode);
  to.time_set_flag = byte(from.time_set_flag);
  to.year = std::uint16_t(from.year);
  to.month = byte(from.month);
  to.day = byte(from.day);
  to.hour = byte(from.hour);
  to.min = byte(from.min);
  to.gmt_hour = byte(from.gmt);
  to.protect_file = std::uint32_t(from.protect_file);
  to.rear_cam_power = std::uint32_t(from.rear_cam_power);
  for (int i = 0; i < 12; ++i) to.low_volt_cut[i] = from.low_volt_cut[i];
  to.motion_area1 = from.motion_area1;
  to.motion_area2 = from.motion_area2;
  to.park_file_volume = from.park_file_volume;
  to.manual_volt_use = from.manual_volt_use;
  mSetup_value = to;
}

// ---- the touch calibration

namespace {
constexpr qsizetype kTouchBytes = 6 * sizeof(double);
constexpr qsizetype kTuningBytes = 18 * sizeof(qint32);

QByteArray BytesOf(const Touch_Value& touch) {
  QByteArray bytes;
  QDataStream stream(&bytes, QIODevice::WriteOnly);
  stream.setByteOrder(QDataStream::LittleEndian);
  stream << touch.alphaX << touch.alphaY << touch.betaX << touch.betaY << touch.deltaX << touch.deltaY;
  return bytes;
}

QByteArray BytesOf(const int (&x)[9], const int (&y)[9]) {
  QByteArray bytes;
  QDataStream stream(&bytes, QIODevice::WriteOnly);
  stream.setByteOrder(QDataStream::LittleEndian);
  for (int i = 0; i < 9; ++i) stream << qint32{x[i]} << qint32{y[i]};
  return bytes;
}

// With coefficients that are no numbers, or that put the whole panel on one line, no key could be touched.
bool IsUsable(const Touch_Value& touch) {
  const double values[] = {touch.alphaX, touch.alphaY, touch.betaX, touch.betaY, touch.deltaX, touch.deltaY};
  return std::ranges::all_of(values, [](double value) { return std::isfinite(value); }) &&
         touch.alphaX * touch.betaY - touch.alphaY * touch.betaX != 0;
}

constexpr qsizetype kLargestCalibration =
    4096;  // bytes; what lies beyond is not read, and gone with the next calibration

/// One of the two calibration files: created when missing, filled when empty.
class CalibrationFile {
public:
  CalibrationFile(const char* path, const QByteArray& factory) : mFile(DevicePath(QLatin1String(path))) {
    const FileRead read = ReadFile(mFile, kLargestCalibration, &mBytes);
    mIsKnown = read == FileRead::Whole || read == FileRead::Missing;
    if (mIsKnown && mBytes.isEmpty()) Write(factory);
  }

  const QByteArray& Bytes() const { return mBytes; }

  /// In place of the first bytes; the rest of a longer file stays. False when that fails: the file is as it was.
  bool Write(const QByteArray& bytes) {
    if (!mIsKnown) return false;
    mBytes = bytes + mBytes.mid(bytes.size());
    const bool written = WriteAtomically(mFile, mBytes);
    SyncFiles();
    return written;
  }

private:
  QString mFile;
  QByteArray mBytes;
  bool mIsKnown = false;
};
}  // namespace

void Settings::SettingTouchValue(bool load) {
  CalibrationFile file(device::kTouchCoefficients, BytesOf(kFactoryTouchValue));
  if (!load) {
    mIsTouchUnsaved = !file.Write(BytesOf(mTouchValue.Load()));
    return;
  }
  Touch_Value touch = kFactoryTouchValue;
  if (!IsExistTouchTXT() && file.Bytes().size() >= kTouchBytes) {
    QDataStream stream(file.Bytes());
    stream.setByteOrder(QDataStream::LittleEndian);
    stream >> touch.alphaX >> touch.alphaY >> touch.betaX >> touch.betaY >> touch.deltaX >> touch.deltaY;
  }
  mTouchValue.Store(IsUsable(touch) ? touch : kFactoryTouchValue);
}

void Settings::SettingTouchTuningValue(bool load) {
  CalibrationFile file(device::kTouchTuning, BytesOf(kTouchTargetX, kTouchTargetY));
  if (!load) {
    mIsTuningUnsaved = !file.Write(BytesOf(inputX, inputY));
    return;
  }
  std::ranges::copy(kTouchTargetX, inputX);
  std::ranges::copy(kTouchTargetY, inputY);
  if (file.Bytes().size() < kTuningBytes) return;
  QDataStream stream(file.Bytes());
  stream.setByteOrder(QDataStream::LittleEndian);
  for (int i = 0; i < 9; ++i) stream >> inputX[i] >> inputY[i];
}

void Settings::SaveCalibration() {
  if (mIsTouchUnsaved) SettingTouchValue(false);
  if (mIsTuningUnsaved) SettingTouchTuningValue(false);
}

bool Settings::IsExistTouchTXT() {
  const QString request = QLatin1String(device::kTouchReset);
  if (!QFile::exists(DevicePath(request))) return false;
  RunShell(QStringLiteral("rm %1").arg(ShellPath(request)));
  SyncFiles();
  return true;
}
