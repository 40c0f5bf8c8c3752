#include "recorder/base/setupblock.h"

#include <QJsonArray>
#include <QtEndian>
#include <charconv>
#include <cmath>

#include "gui/vocabulary/vocabulary.h"

namespace recorder {
namespace {

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
  return offset == SetupBlock::kSize;
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

}  // namespace

QString FloatText(float value) {
  char text[32];
  const std::to_chars_result end = std::to_chars(text, text + sizeof text, value);
  return QString::fromLatin1(text, static_cast<qsizetype>(end.ptr - text));
}

std::optional<SetupBlock> SetupBlock::Read(const QByteArray& bytes, QString* error) {
  if (bytes.size() != kSize) {
    *error = QStringLiteral("A setup block of %1 bytes, not %2.").arg(bytes.size()).arg(kSize);
    return {};
  }
  if (const int model = static_cast<unsigned char>(bytes[kModelOffset]); model != kModel) {
    *error = QStringLiteral("A setup block of model %1, not %2.").arg(model).arg(kModel);
    return {};
  }
  SetupBlock block;
  for (const BlockField& field : kBlock) {
    const char* at = bytes.constData() + field.offset;
    const QString name = QLatin1String(field.name);
    if (field.kind == Kind::Volts) {
      QJsonArray levels;
      for (int level = 0; level < kLevels; ++level) {
        const float volts = Volts(at + 4 * level);
        levels.append(FloatText(volts).toDouble());
        block.settings[field.setting + level] = volts;
      }
      block.fields.insert(name, levels);
    } else if (field.kind == Kind::Area) {
      block.fields.insert(name, QStringLiteral("0x%1").arg(Little<quint64>(at), 16, 16, QLatin1Char('0')));
      block.settings[field.setting] = Little<qint32>(at + 4);
      block.settings[field.setting + 1] = Little<qint32>(at);
    } else {
      const double value = Whole(field, at);
      block.fields.insert(name, value);
      if (field.setting != kNotKept) block.settings[field.setting] = value;
    }
  }
  const auto part = [&block](const char* name) { return block.fields.value(QLatin1String(name)).toInt(); };
  const QDateTime clock(QDate(part("year"), part("month"), part("day")), QTime(part("hour"), part("min")));
  if (bytes[kTimeSetOffset] == 1 && clock.isValid()) block.clock = clock;
  return block;
}

}  // namespace recorder
