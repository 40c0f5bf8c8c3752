#include "recorder/base/settingstore.h"

#include <QDateTime>
#include <QFileInfo>
#include <QMap>
#include <QSettings>
#include <QStringList>
#include <QtEndian>
#include <charconv>
#include <cmath>
#include <cstring>

#include "recorder/base/files.h"

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

// The fields of the packed block. An Area is a 64-bit map and fills two settings, the high word's and the next one; the
// twelve Volts fill twelve.
enum class Kind { Byte, Word, Signed, Unsigned, Zone, Volts, Area };
constexpr int kNotKept = -1;

struct BlockField {
  int offset;
  const char* name;
  Kind kind;
  int setting;  // the (first) Setting_Id it is kept as, or kNotKept
};

constexpr int kTimeSetOffset = 20;
constexpr int kModelOffset = 19;
constexpr int kLevels = 12;

constexpr BlockField kBlock[] = {
    {0, "major_ver", Kind::Byte, Set_Cfg_Major_Ver},
    {1, "minor_ver", Kind::Byte, Set_Cfg_Minor_Ver},
    {2, "fps", Kind::Byte, Set_Cfg_Fps},
    {3, "gmt", Kind::Byte, kNotKept},
    {4, "volume", Kind::Byte, Set_Cfg_Volume},
    {5, "gsensor_trg_lvl", Kind::Byte, Set_Cfg_Gsensor_Trg_lvl},
    {6, "parking_mode_on", Kind::Byte, Set_Cfg_Parking_Mode_On},
    {7, "resolution", Kind::Byte, Set_Cfg_Resolution},
    {8, "park_lvl", Kind::Byte, Set_Cfg_Park_lvl},
    {9, "gain", Kind::Byte, Set_Cfg_Gain},
    {10, "data_area", Kind::Byte, kNotKept},
    {11, "motion_lvl", Kind::Byte, Set_Cfg_Motion_lvl},
    {12, "event_buzer", Kind::Byte, Set_Cfg_Event_Buzer},
    {13, "efile_del_method", Kind::Byte, Set_Cfg_Efile_Del_Method},
    {14, "n_file_rate", Kind::Byte, Set_Cfg_N_File_Rate},
    {15, "e_file_rate", Kind::Byte, Set_Cfg_E_File_Rate},
    {16, "p_file_rate", Kind::Byte, Set_Cfg_P_File_Rate},
    {17, "gps_speed_display", Kind::Byte, Set_Cfg_Gps_Speed_Display},
    {18, "display", Kind::Byte, Set_Cfg_Display},
    {kModelOffset, "model", Kind::Byte, kNotKept},
    {kTimeSetOffset, "time_set_flag", Kind::Byte, kNotKept},
    // The clock is taken apart, all five or none.
    {21, "year", Kind::Word, kNotKept},
    {23, "month", Kind::Byte, kNotKept},
    {24, "day", Kind::Byte, kNotKept},
    {25, "hour", Kind::Byte, kNotKept},
    {26, "min", Kind::Byte, kNotKept},
    {27, "gain2", Kind::Byte, Set_Cfg_Gain2},
    {28, "buzer_flag", Kind::Byte, Set_Cfg_Buzer_Flag},
    {29, "spk_volume", Kind::Byte, Set_Cfg_Spk_Volume},
    {30, "minor_ver2", Kind::Byte, Set_Cfg_Minor_Ver2},
    {31, "acc_volume", Kind::Byte, Set_Cfg_Acc_Volume},
    {32, "chk_park_lvl", Kind::Byte, Set_Cfg_Chk_Park_lvl},
    {33, "power_cut_lvl", Kind::Byte, Set_Cfg_Power_Cut_lvl},
    {34, "power_cut_time", Kind::Byte, Set_Cfg_Power_Cur_Time},
    {35, "power", Kind::Byte, Set_Cfg_Power_Cut_lvl_Type},
    {36, "chk_temp", Kind::Byte, kNotKept},
    {37, "lcd_auto_off", Kind::Byte, Set_Cfg_Lcd_Auto_Off},
    {38, "lcd_bright", Kind::Byte, Set_Cfg_Lcd_Bright},
    {39, "lcd_wait_dis", Kind::Byte, Set_Cfg_Lcd_Wait_Dis},
    {40, "led_display", Kind::Byte, Set_Cfg_Setting_Change},
    {41, "gmt_hour", Kind::Zone, Set_Cfg_Gmt},
    {45, "gmt_min", Kind::Signed, kNotKept},
    {49, "protect_file", Kind::Unsigned, Set_Cfg_ProtectFile},
    {53, "rear_cam_power", Kind::Unsigned, Set_Cfg_RearCamPower},
    {57, "low_volt_cut", Kind::Volts, Set_Cfg_LowVolCut_1},
    {105, "motion_area1", Kind::Area, Set_Cfg_MotionArea1High},
    {113, "motion_area2", Kind::Area, Set_Cfg_MotionArea2High},
    {121, "park_file_volume", Kind::Signed, Set_Cfg_Park_File_Volume},
    {125, "manual_volt_use", Kind::Signed, Set_Cfg_Manual_Volt_Use},
};

constexpr int SizeOf(Kind kind) {
  switch (kind) {
    case Kind::Byte:
      return 1;
    case Kind::Word:
      return 2;
    case Kind::Volts:
      return kLevels * 4;
    case Kind::Area:
      return 8;
    default:
      return 4;
  }
}

constexpr bool BlockIsGapless() {
  int offset = 0;
  for (const BlockField& field : kBlock) {
    if (field.offset != offset) return false;
    offset += SizeOf(field.kind);
  }
  return offset == SettingStore::kBlockSize;
}
static_assert(BlockIsGapless());

template <typename Number>
Number Little(const char* bytes) {
  return qFromLittleEndian<Number>(bytes);
}

// A number that is none is a level that is off.
float Volts(const char* bytes) {
  const float volts = Little<float>(bytes);
  return std::isfinite(volts) ? volts : 0.0F;
}

double Whole(const BlockField& field, const char* bytes) {
  switch (field.kind) {
    case Kind::Byte:
      return Little<quint8>(bytes);
    case Kind::Word:
      return Little<quint16>(bytes);
    case Kind::Zone:
      return Little<qint8>(bytes);  // the interface fills only the lowest byte of the four
    case Kind::Unsigned:            // kept as the int that the INI file holds
    default:
      return Little<qint32>(bytes);
  }
}

// The shortest text that reads back as exactly this float: 12.4, not 12.3999996.
QString FloatText(float value) {
  char text[32];
  const std::to_chars_result end = std::to_chars(text, text + sizeof text, value);
  return QString::fromLatin1(text, static_cast<qsizetype>(end.ptr - text));
}

}  // namespace

SettingStore::SettingStore(const QString& file) : mFile(file) {
  Reset();
}

void SettingStore::SetClock(int year, int month, int day, int hour, int minute) {
  Set(Set_Cfg_Year, year);
  Set(Set_Cfg_Month, month);
  Set(Set_Cfg_Day, day);
  Set(Set_Cfg_Hour, hour);
  Set(Set_Cfg_Min, minute);
}

void SettingStore::Reset() {
  mUnsaved = true;
  for (const Key& key : kKeys) mValues[key.id] = key.standard;
  const QDateTime now = QDateTime::currentDateTime();
  SetClock(now.date().year(), now.date().month(), now.date().day(), now.time().hour(), now.time().minute());
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

bool SettingStore::TakeBlock(const QByteArray& block, QString* error) {
  if (block.size() != kBlockSize) {
    *error = QStringLiteral("A setup block of %1 bytes, not %2.").arg(block.size()).arg(kBlockSize);
    return false;
  }
  if (const int model = static_cast<unsigned char>(block[kModelOffset]); model != kModel) {
    *error = QStringLiteral("A setup block of model %1, not %2.").arg(model).arg(kModel);
    return false;
  }
  mUnsaved = true;
  mBefore = std::exchange(mBlock, QJsonObject());
  mTakenClock.reset();
  for (const BlockField& field : kBlock) {
    const char* bytes = block.constData() + field.offset;
    const QString name = QLatin1String(field.name);
    if (field.kind == Kind::Volts) {
      QJsonArray levels;
      for (int level = 0; level < kLevels; ++level) {
        const float volts = Volts(bytes + 4 * level);
        levels.append(FloatText(volts).toDouble());
        mValues[field.setting + level] = volts;
      }
      mBlock.insert(name, levels);
    } else if (field.kind == Kind::Area) {
      mBlock.insert(name, QStringLiteral("0x%1").arg(Little<quint64>(bytes), 16, 16, QLatin1Char('0')));
      mValues[field.setting] = Little<qint32>(bytes + 4);
      mValues[field.setting + 1] = Little<qint32>(bytes);
    } else {
      const double value = Whole(field, bytes);
      mBlock.insert(name, value);
      if (field.setting != kNotKept) mValues[field.setting] = value;
    }
  }
  const auto part = [this](const char* name) { return mBlock.value(QLatin1String(name)).toInt(); };
  const QDateTime clock(QDate(part("year"), part("month"), part("day")), QTime(part("hour"), part("min")));
  if (block[kTimeSetOffset] == 1 && clock.isValid()) {
    SetClock(part("year"), part("month"), part("day"), part("hour"), part("min"));
    mTakenClock = clock;
  }
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
