#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>

static_assert(std::endian::native == std::endian::little, "the setup block is written as it lies in memory");

/// The settings as the recorder takes them with SFIELD_SET_SETUP_COMPLETE: a wire format, little-endian, no padding.
struct [[gnu::packed]] Setup_Value {
  std::uint8_t major_ver;
  std::uint8_t minor_ver;
  std::uint8_t fps;
  std::uint8_t gmt;  // always 0: the zone is in gmt_hour
  std::uint8_t volume;
  std::uint8_t gsensor_trg_lvl;
  std::uint8_t parking_mode_on;
  std::uint8_t resolution;
  std::uint8_t park_lvl;
  std::uint8_t gain;
  std::uint8_t data_area;  // always 0
  std::uint8_t motion_lvl;
  std::uint8_t event_buzer;
  std::uint8_t efile_del_method;
  std::uint8_t n_file_rate;
  std::uint8_t e_file_rate;
  std::uint8_t p_file_rate;
  std::uint8_t gps_speed_display;
  std::uint8_t display;
  std::uint8_t model;  // always 200
  std::uint8_t time_set_flag;
  std::uint16_t year;
  std::uint8_t month;
  std::uint8_t day;
  std::uint8_t hour;
  std::uint8_t min;
  std::uint8_t gain2;
  std::uint8_t buzer_flag;
  std::uint8_t spk_volume;
  std::uint8_t minor_ver2;
  std::uint8_t acc_volume;
  std::uint8_t chk_park_lvl;
  std::uint8_t power_cut_lvl;
  std::uint8_t power_cut_time;
  std::uint8_t power;
  std::uint8_t chk_temp;  // always 0
  std::uint8_t lcd_auto_off;
  std::uint8_t lcd_bright;
  std::uint8_t lcd_wait_dis;
  std::uint8_t led_display;
  std::int32_t gmt_hour;  // the low byte of the zone; the upper bytes are 0
  std::int32_t gmt_min;   // always 0
  std::uint32_t protect_file;
  std::uint32_t rear_cam_power;
  float low_volt_cut[12];
  std::uint64_t motion_area1;
  std::uint64_t motion_area2;
  std::int32_t park_file_volume;
  std::int32_t manual_volt_use;
};
static_assert(sizeof(Setup_Value) == 129);
static_assert(offsetof(Setup_Value, major_ver) == 0);
static_assert(offsetof(Setup_Value, minor_ver) == 1);
static_assert(offsetof(Setup_Value, fps) == 2);
static_assert(offsetof(Setup_Value, gmt) == 3);
static_assert(offsetof(Setup_Value, volume) == 4);
static_assert(offsetof(Setup_Value, gsensor_trg_lvl) == 5);
static_assert(offsetof(Setup_Value, parking_mode_on) == 6);
static_assert(offsetof(Setup_Value, resolution) == 7);
static_assert(offsetof(Setup_Value, park_lvl) == 8);
static_assert(offsetof(Setup_Value, gain) == 9);
static_assert(offsetof(Setup_Value, data_area) == 10);
static_assert(offsetof(Setup_Value, motion_lvl) == 11);
static_assert(offsetof(Setup_Value, event_buzer) == 12);
static_assert(offsetof(Setup_Value, efile_del_method) == 13);
static_assert(offsetof(Setup_Value, n_file_rate) == 14);
static_assert(offsetof(Setup_Value, e_file_rate) == 15);
static_assert(offsetof(Setup_Value, p_file_rate) == 16);
static_assert(offsetof(Setup_Value, gps_speed_display) == 17);
static_assert(offsetof(Setup_Value, display) == 18);
static_assert(offsetof(Setup_Value, model) == 19);
static_assert(offsetof(Setup_Value, time_set_flag) == 20);
static_assert(offsetof(Setup_Value, year) == 21);
static_assert(offsetof(Setup_Value, month) == 23);
static_assert(offsetof(Setup_Value, day) == 24);
static_assert(offsetof(Setup_Value, hour) == 25);
static_assert(offsetof(Setup_Value, min) == 26);
static_assert(offsetof(Setup_Value, gain2) == 27);
static_assert(offsetof(Setup_Value, buzer_flag) == 28);
static_assert(offsetof(Setup_Value, spk_volume) == 29);
static_assert(offsetof(Setup_Value, minor_ver2) == 30);
static_assert(offsetof(Setup_Value, acc_volume) == 31);
static_assert(offsetof(Setup_Value, chk_park_lvl) == 32);
static_assert(offsetof(Setup_Value, power_cut_lvl) == 33);
static_assert(offsetof(Setup_Value, power_cut_time) == 34);
static_assert(offsetof(Setup_Value, power) == 35);
static_assert(offsetof(Setup_Value, chk_temp) == 36);
static_assert(offsetof(Setup_Value, lcd_auto_off) == 37);
static_assert(offsetof(Setup_Value, lcd_bright) == 38);
static_assert(offsetof(Setup_Value, lcd_wait_dis) == 39);
static_assert(offsetof(Setup_Value, led_display) == 40);
static_assert(offsetof(Setup_Value, gmt_hour) == 41);
static_assert(offsetof(Setup_Value, gmt_min) == 45);
static_assert(offsetof(Setup_Value, protect_file) == 49);
static_assert(offsetof(Setup_Value, rear_cam_power) == 53);
static_assert(offsetof(Setup_Value, low_volt_cut) == 57);
static_assert(offsetof(Setup_Value, motion_area1) == 105);
static_assert(offsetof(Setup_Value, motion_area2) == 113);
static_assert(offsetof(Setup_Value, park_file_volume) == 121);
static_assert(offsetof(Setup_Value, manual_volt_use) == 125);
