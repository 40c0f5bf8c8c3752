#include "gui/settings/settingkeys.h"

#include <algorithm>
#include <iterator>

namespace {
using enum SettingPlace;
using enum SettingRule;

// clang-format off
constexpr SettingKey kKeys[] = {
    {Set_Cfg_Major_Ver, "fwver/major_ver", Field, &Setting_Config::major_ver, 0, FileToo, false},
    {Set_Cfg_Minor_Ver, "fwver/minor_ver", Field, &Setting_Config::minor_ver, 0, FileToo, false},
    {Set_Cfg_Minor_Ver2, "fwver/minor_ver2", Field, &Setting_Config::minor_ver2, 0, FileToo, false},
    {Set_Cfg_Fps, "drivingsetting/fps", Field, &Setting_Config::fps, 0, Memory, true},
    {Set_Cfg_Gmt, "timesetting/gmt", Field, &Setting_Config::gmt, 0, Memory, true},
    {Set_Cfg_Volume, "audiosetting/volume", Field, &Setting_Config::volume, 0, FileToo, false},
    {Set_Cfg_Gsensor_Trg_lvl, "drivingsetting/gsensor_trg_lvl", Field, &Setting_Config::drv_shock_lvl, 0, Memory, true},
    {Set_Cfg_Parking_Mode_On, "parkingsetting/parking_mode_on", Field, &Setting_Config::parking_mode_on, 0, Memory, true},
    {Set_Cfg_Resolution, "drivingsetting/resolution", Field, &Setting_Config::resolution, 0, Memory, true},
    {Set_Cfg_Park_lvl, "parkingsetting/park_lvl", Field, &Setting_Config::park_shock_lvl, 0, Memory, true},
    {Set_Cfg_Gain, "drivingsetting/gain", Field, &Setting_Config::drv_rec_brightness, 0, Memory, true},
    {Set_Cfg_Motion_lvl, "parkingsetting/motion_lvl", Field, &Setting_Config::motion_lvl, 0, Memory, true},
    {Set_Cfg_Event_Buzer, "audiosetting/event_buzer", Field, &Setting_Config::event_buzer, 0, FileToo, false},
    {Set_Cfg_Efile_Del_Method, "filedeletesetting/efile_del_method", Field, &Setting_Config::efile_del_method, 0, Memory, true},
    {Set_Cfg_N_File_Rate, "filedeletesetting/n_file_rate", Field, &Setting_Config::n_file_rate, 0, Memory, true},
    {Set_Cfg_E_File_Rate, "filedeletesetting/e_file_rate", Field, &Setting_Config::e_file_rate, 0, Memory, true},
    {Set_Cfg_P_File_Rate, "filedeletesetting/p_file_rate", Field, &Setting_Config::p_file_rate, 0, Memory, true},
    {Set_Cfg_Gps_Speed_Display, "drivingsetting/gps_speed_display", Field, &Setting_Config::gps_speed_display, 0, Memory, true},
    {Set_Cfg_Display, "view/display", Field, &Setting_Config::display, 0, FileToo, false},
    {Set_Cfg_Time_Set_Flag, "timesetting/time_set_flag", Field, &Setting_Config::time_set_flag, 0, FileToo, true},
    {Set_Cfg_Year, "timesetting/year", Field, &Setting_Config::year, 0, Memory, true},
    {Set_Cfg_Month, "timesetting/month", Field, &Setting_Config::month, 0, Memory, true},
    {Set_Cfg_Day, "timesetting/day", Field, &Setting_Config::day, 0, Memory, true},
    {Set_Cfg_Hour, "timesetting/hour", Field, &Setting_Config::hour, 0, Memory, true},
    {Set_Cfg_Min, "timesetting/min", Field, &Setting_Config::min, 0, Memory, true},
    {Set_Cfg_Gain2, "drivingsetting/gain2", Field, &Setting_Config::drv_rec_brightness2, 0, Memory, true},
    {Set_Cfg_Buzer_Flag, "audiosetting/buzer_flag", Field, &Setting_Config::buzer_flag, 0, FileToo, false},
    {Set_Cfg_Spk_Volume, "audiosetting/spk_volume", Field, &Setting_Config::spk_volume, 0, FileToo, false},
    {Set_Cfg_Acc_Volume, "audiosetting/acc_volume", Field, &Setting_Config::acc_volume, 0, FileToo, false},
    {Set_Cfg_Power_Cut_lvl, "parkingsetting/power_cut_lvl", Field, &Setting_Config::power_cut_lvl, 0, Memory, true},
    {Set_Cfg_Power_Cur_Time, "parkingsetting/power_cut_time", Field, &Setting_Config::power_cut_time, 0, Memory, true},
    {Set_Cfg_Lcd_Auto_Off, "lcdsetting/lcd_auto_off", Field, &Setting_Config::lcd_auto_off, 0, FileToo, false},
    {Set_Cfg_Lcd_Bright, "lcdsetting/lcd_bright", Field, &Setting_Config::lcd_bright, 0, FileToo, false},
    {Set_Cfg_Lcd_Wait_Dis, "lcdsetting/lcd_wait_dis", Field, &Setting_Config::lcd_wait_dis, 0, FileToo, false},
    {Set_Cfg_Chk_Park_lvl, "parkingsetting/chk_park_lvl", Field, &Setting_Config::park_entry_lvl, 0, Memory, true},
    {Set_Cfg_Power_Cut_lvl_Type, "parkingsetting/power_cut_lvl_type", Field, &Setting_Config::gPower_cut_lvl_type, 0, Memory, false},
    {Set_Cfg_Setting_Change, "ledsetting/settingchange", Field, &Setting_Config::led_mode, 0, FileToo, false},
    {Set_Cfg_Mirroring, "view/mirroring", Mirroring, nullptr, 0, FileOnly, false},
    {Set_Cfg_MovingPip, "view/movingpip", MovingPip, nullptr, 0, FileOnly, false},
    {Set_Cfg_ProtectFile, "filedeletesetting/protectfile", Field, &Setting_Config::protect_file, 0, Memory, true},
    {Set_Cfg_RearCamPower, "parkingsetting/rear_cam_power", Field, &Setting_Config::rear_cam_power, 0, FileToo, false},
    {Set_Cfg_LowVolCut_1, "parkingsetting/low_volt_cut_1", LowVoltCut, nullptr, 0, Memory, true},
    {Set_Cfg_LowVolCut_2, "parkingsetting/low_volt_cut_2", LowVoltCut, nullptr, 1, Memory, true},
    {Set_Cfg_LowVolCut_3, "parkingsetting/low_volt_cut_3", LowVoltCut, nullptr, 2, Memory, true},
    {Set_Cfg_LowVolCut_4, "parkingsetting/low_volt_cut_4", LowVoltCut, nullptr, 3, Memory, true},
    {Set_Cfg_LowVolCut_5, "parkingsetting/low_volt_cut_5", LowVoltCut, nullptr, 4, Memory, true},
    {Set_Cfg_LowVolCut_6, "parkingsetting/low_volt_cut_6", LowVoltCut, nullptr, 5, Memory, true},
    {Set_Cfg_LowVolCut_7, "parkingsetting/low_volt_cut_7", LowVoltCut, nullptr, 6, Memory, true},
    {Set_Cfg_LowVolCut_8, "parkingsetting/low_volt_cut_8", LowVoltCut, nullptr, 7, Memory, true},
    {Set_Cfg_LowVolCut_9, "parkingsetting/low_volt_cut_9", LowVoltCut, nullptr, 8, Memory, true},
    {Set_Cfg_LowVolCut_10, "parkingsetting/low_volt_cut_10", LowVoltCut, nullptr, 9, Memory, true},
    {Set_Cfg_LowVolCut_11, "parkingsetting/low_volt_cut_11", LowVoltCut, nullptr, 10, Memory, true},
    {Set_Cfg_LowVolCut_12, "parkingsetting/low_volt_cut_12", LowVoltCut, nullptr, 11, Memory, true},
    {Set_Cfg_MotionArea1High, "motionmap/front_h", MotionWord, nullptr, 0, FileOnly, false},
    {Set_Cfg_MotionArea1Low, "motionmap/front_l", MotionWord, nullptr, 1, FileOnly, false},
    {Set_Cfg_MotionArea2High, "motionmap/rear_h", MotionWord, nullptr, 2, FileOnly, false},
    {Set_Cfg_MotionArea2Low, "motionmap/rear_l", MotionWord, nullptr, 3, FileOnly, false},
    {Set_Cfg_Park_File_Volume, "parkingsetting/park_file_volume", Field, &Setting_Config::park_file_volume, 0, FileToo, false},
    {Set_Cfg_Manual_Volt_Use, "parkingsetting/manual_volt_use", Field, &Setting_Config::manual_volt_use, 0, Memory, true},
};
// clang-format on
static_assert(std::ranges::is_sorted(kKeys, std::ranges::less(), &SettingKey::id));
static_assert(std::size(kKeys) == 59);
}  // namespace

std::span<const SettingKey> SettingKeys() {
  return kKeys;
}

const SettingKey* FindSettingKey(Setting_Id id) {
  const auto* row = std::ranges::lower_bound(kKeys, id, std::ranges::less(), &SettingKey::id);
  return row != std::end(kKeys) && row->id == id ? row : nullptr;
}
