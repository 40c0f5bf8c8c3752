#pragma once

#include <cstdint>

/// Every setting that the user can change. The screens that edit a field fix its values.
struct Setting_Config {
  int major_ver;
  int minor_ver;
  int minor_ver2;
  int display;
  int led_mode;
  int lcd_auto_off;
  int lcd_bright;
  int lcd_wait_dis;
  int resolution;
  int fps;
  int drv_rec_brightness;
  int drv_rec_brightness2;
  int drv_shock_lvl;
  int gps_speed_display;
  int parking_mode_on;
  int park_entry_lvl;
  int motion_lvl;
  int park_shock_lvl;
  int power_cut_lvl;
  int power_cut_time;
  int gPower_cut_lvl_type;
  int buzer_flag;
  int spk_volume;
  int volume;
  int event_buzer;
  int acc_volume;
  int time_set_flag;
  int year;
  int month;
  int day;
  int hour;
  int min;
  int gmt;
  int efile_del_method;
  int n_file_rate;
  int e_file_rate;
  int p_file_rate;
  int protect_file;
  int rear_cam_power;
  float low_volt_cut[12];      // volts
  std::uint64_t motion_area1;  // front camera, one bit for each cell
  std::uint64_t motion_area2;  // rear camera
  int park_file_volume;
  int manual_volt_use;
};
