#include "recorder/base/settingstore.h"

#include <QDateTime>
#include <QFileInfo>
#include <QMap>
#include <QSettings>
#include <QStringList>
#include <cmath>
#include <utility>

#include "recorder/base/files.h"
#include "recorder/base/setupblock.h"

namespace recorder {
namespace {

constexpr qint64 kLargestIni = 65536;

struct Key {
  Setting_Id id;
  const char* key;
  double standard;
};

constexpr Key kKeys[] = {
    {Set_Cfg_Major_Ver, "fwver/major_ver", 1},
    {Set_Cfg_Minor_Ver, "fwver/minor_ver", 0},
    {Set_Cfg_Minor_Ver2, "fwver/minor_ver2", 4},
    {Set_Cfg_Fps, "drivingsetting/fps", 0},
    {Set_Cfg_Gmt, "timesetting/gmt", 9},
    {Set_Cfg_Volume, "audiosetting/volume", 2},
    {Set_Cfg_Gsensor_Trg_lvl, "drivingsetting/gsensor_trg_lvl", 2},
    {Set_Cfg_Parking_Mode_On, "parkingsetting/parking_mode_on", 2},
    {Set_Cfg_Resolution, "drivingsetting/resolution", 0},
    {Set_Cfg_Park_lvl, "parkingsetting/park_lvl", 1},
    {Set_Cfg_Gain, "drivingsetting/gain", 0},
    {Set_Cfg_Motion_lvl, "parkingsetting/motion_lvl", 1},
    {Set_Cfg_Event_Buzer, "audiosetting/event_buzer", 1},
    {Set_Cfg_Efile_Del_Method, "filedeletesetting/efile_del_method", 0},
    {Set_Cfg_N_File_Rate, "filedeletesetting/n_file_rate", 40},
    {Set_Cfg_E_File_Rate, "filedeletesetting/e_file_rate", 30},
    {Set_Cfg_P_File_Rate, "filedeletesetting/p_file_rate", 30},
    {Set_Cfg_Gps_Speed_Display, "drivingsetting/gps_speed_display", 0},
    {Set_Cfg_Display, "view/display", 0},
    {Set_Cfg_Time_Set_Flag, "timesetting/time_set_flag", 0},
    {Set_Cfg_Year, "timesetting/year", 2000},
    {Set_Cfg_Month, "timesetting/month", 1},
    {Set_Cfg_Day, "timesetting/day", 1},
    {Set_Cfg_Hour, "timesetting/hour", 0},
    {Set_Cfg_Min, "timesetting/min", 0},
    {Set_Cfg_Gain2, "drivingsetting/gain2", 0},
    {Set_Cfg_Buzer_Flag, "audiosetting/buzer_flag", 0},
    {Set_Cfg_Spk_Volume, "audiosetting/spk_volume", 1},
    {Set_Cfg_Acc_Volume, "audiosetting/acc_volume", 1},
    {Set_Cfg_Power_Cut_lvl, "parkingsetting/power_cut_lvl", 0},
    {Set_Cfg_Power_Cur_Time, "parkingsetting/power_cut_time", 0},
    {Set_Cfg_Lcd_Auto_Off, "lcdsetting/lcd_auto_off", 2},
    {Set_Cfg_Lcd_Bright, "lcdsetting/lcd_bright", 2},
    {Set_Cfg_Lcd_Wait_Dis, "lcdsetting/lcd_wait_dis", 0},
    {Set_Cfg_Chk_Park_lvl, "parkingsetting/chk_park_lvl", 1},
    {Set_Cfg_Power_Cut_lvl_Type, "parkingsetting/power_cut_lvl_type", 0},
    {Set_Cfg_Setting_Change, "ledsetting/settingchange", 0},
    {Set_Cfg_Mirroring, "view/mirroring", 0},
    {Set_Cfg_MovingPip, "view/movingpip", 0},
    {Set_Cfg_ProtectFile, "filedeletesetting/protectfile", 10},
    {Set_Cfg_RearCamPower, "parkingsetting/rear_cam_power", 1},
    {Set_Cfg_LowVolCut_1, "parkingsetting/low_volt_cut_1", 12.4F},
    {Set_Cfg_LowVolCut_2, "parkingsetting/low_volt_cut_2", 12.4F},
    {Set_Cfg_LowVolCut_3, "parkingsetting/low_volt_cut_3", 12.2F},
    {Set_Cfg_LowVolCut_4, "parkingsetting/low_volt_cut_4", 12.0F},
    {Set_Cfg_LowVolCut_5, "parkingsetting/low_volt_cut_5", 12.0F},
    {Set_Cfg_LowVolCut_6, "parkingsetting/low_volt_cut_6", 12.0F},
    {Set_Cfg_LowVolCut_7, "parkingsetting/low_volt_cut_7", 12.0F},
    {Set_Cfg_LowVolCut_8, "parkingsetting/low_volt_cut_8", 12.0F},
    {Set_Cfg_LowVolCut_9, "parkingsetting/low_volt_cut_9", 12.0F},
    {Set_Cfg_LowVolCut_10, "parkingsetting/low_volt_cut_10", 12.0F},
    {Set_Cfg_LowVolCut_11, "parkingsetting/low_volt_cut_11", 12.0F},
    {Set_Cfg_LowVolCut_12, "parkingsetting/low_volt_cut_12", 12.2F},
    {Set_Cfg_MotionArea1High, "motionmap/front_h", -61441},
    {Set_Cfg_MotionArea1Low, "motionmap/front_l", -1},
    {Set_Cfg_MotionArea2High, "motionmap/rear_h", -61441},
    {Set_Cfg_MotionArea2Low, "motionmap/rear_l", -1},
    {Set_Cfg_Park_File_Volume, "parkingsetting/park_file_volume", 0},
    {Set_Cfg_Manual_Volt_Use, "parkingsetting/manual_volt_use", 0},
};
static_assert(std::size(kKeys) == 59);

constexpr bool IsVolts(Setting_Id id) {
  return id >= Set_Cfg_LowVolCut_1 && id <= Set_Cfg_LowVolCut_12;
}

const Key* FindKey(Setting_Id id) {
  for (const Key& key : kKeys)
    if (key.id == id) return &key;
  return nullptr;
}

}  // namespace

SettingStore::SettingStore(const QString& file) : mFile(file) {
  Reset();
}

void SettingStore::SetClock(const QDateTime& clock) {
  Set(Set_Cfg_Year, clock.date().year());
  Set(Set_Cfg_Month, clock.date().month());
  Set(Set_Cfg_Day, clock.date().day());
  Set(Set_Cfg_Hour, clock.time().hour());
  Set(Set_Cfg_Min, clock.time().minute());
}

void SettingStore::Reset() {
  mUnsaved = true;
  for (const Key& key : kKeys) mValues[key.id] = key.standard;
  SetClock(QDateTime::currentDateTime());
}

void SettingStore::Load() {
  Reset();
  const std::array<double, 64> standard = mValues;
  const QFileInfo info(mFile);
  if (!info.isFile() || info.size() > kLargestIni) return;
  const QSettings file(mFile, QSettings::IniFormat);
  for (const Key& key : kKeys) {
    const QVariant value = file.value(QLatin1String(key.key));
    bool good = false;
    double number = 0;
    if (IsVolts(key.id))
      number = value.toFloat(&good);
    else
      number = value.toInt(&good);
    if (good && std::isfinite(number)) mValues[key.id] = number;
  }
  // The clock is now's; "set" is an order that was carried out.
  for (Setting_Id id : {Set_Cfg_Year, Set_Cfg_Month, Set_Cfg_Day, Set_Cfg_Hour, Set_Cfg_Min, Set_Cfg_Time_Set_Flag})
    mValues[id] = standard[id];
}

int SettingStore::Get(Setting_Id id) const {
  return FindKey(id) ? static_cast<int>(mValues[id]) : 0;
}

void SettingStore::Set(Setting_Id id, int value) {
  if (!FindKey(id)) return;
  mUnsaved = mUnsaved || mValues[id] != value;
  mValues[id] = value;
}

bool SettingStore::TakeBlock(const QByteArray& bytes, QString* error) {
  const auto block = SetupBlock::Read(bytes, error);
  if (!block) return false;
  mUnsaved = true;
  mBefore = std::exchange(mBlock, block->fields);
  for (const auto& [id, value] : block->settings) mValues[id] = value;
  mTakenClock = block->clock;
  if (mTakenClock) SetClock(*mTakenClock);
  return true;
}

bool SettingStore::Save() {
  if (!mUnsaved) return true;
  QMap<QString, QStringList> groups;
  for (const Key& key : kKeys) {
    const QString path = QLatin1String(key.key);
    const double value = mValues[key.id];
    const QString text =
        IsVolts(key.id) ? FloatText(static_cast<float>(value)) : QString::number(static_cast<qint64>(value));
    groups[path.section(u'/', 0, 0)] << path.section(u'/', 1) + u'=' + text;
  }
  QString text;
  for (auto group = groups.cbegin(); group != groups.cend(); ++group)
    text += QStringLiteral("[%1]\n%2\n\n").arg(group.key(), group.value().join(u'\n'));
  mUnsaved = !WriteWhole(mFile, text.toUtf8());
  return !mUnsaved;
}

QJsonObject SettingStore::Motion() const {
  const auto map = [this](Setting_Id high, Setting_Id low) {
    const quint64 bits = quint64{static_cast<quint32>(Get(high))} << 32 | static_cast<quint32>(Get(low));
    return QStringLiteral("%1").arg(bits, 16, 16, QLatin1Char('0'));
  };
  return {{QStringLiteral("front"), map(Set_Cfg_MotionArea1High, Set_Cfg_MotionArea1Low)},
          {QStringLiteral("rear"), map(Set_Cfg_MotionArea2High, Set_Cfg_MotionArea2Low)}};
}

QJsonObject SettingStore::Values() const {
  QJsonObject values;
  for (const Key& key : kKeys) {
    const double value = mValues[key.id];
    values.insert(QLatin1String(key.key), IsVolts(key.id) ? FloatText(static_cast<float>(value)).toDouble() : value);
  }
  return values;
}

}  // namespace recorder
