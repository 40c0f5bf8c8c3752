#pragma once

#include "platform/sysctrl.h"

namespace platformcheck {

/// What may come of a command on a camera that works.
enum class CommandKind {
  Set,    ///< it is always carried out
  State,  ///< the recorder may refuse it in some states
  Query,  ///< it is answered in place
  Erase,  ///< as State; it loses something of the driver's and is only sent with --erase
};

struct Command {
  SYSTEM_CONTROL field;
  const char* name;
  int bytes;
  CommandKind kind;
  int value;  ///< the first int of the data
};

/// The largest data of a command.
inline constexpr int kMostBytes = 129;

/// Every command of the interface, with the sizes that it has there.
inline constexpr Command kCommands[] = {
    {SFIELD_REG_CLIENT, "SFIELD_REG_CLIENT", 1, CommandKind::Set, 0},
    {SFIELD_SET_VIEWFRONT, "SFIELD_SET_VIEWFRONT", 4, CommandKind::Set, 1},
    {SFIELD_SET_VIEWREAR, "SFIELD_SET_VIEWREAR", 4, CommandKind::Set, 2},
    {SFIELD_SET_VIEWPIP, "SFIELD_SET_VIEWPIP", 4, CommandKind::Set, 0},
    {SFIELD_PLAY_VIDEO, "SFIELD_PLAY_VIDEO", 50, CommandKind::State, 0},
    {SFIELD_CONTROL_VIDEO, "SFIELD_CONTROL_VIDEO", 4, CommandKind::State, 0},
    {SFIELD_SET_VIDEO_FRAMRATE, "SFIELD_SET_VIDEO_FRAMRATE", 4, CommandKind::State, 0},
    {SFIELD_SET_AUDIO_IN_GAIN, "SFIELD_SET_AUDIO_IN_GAIN", 4, CommandKind::Set, 1},
    {SFIELD_SET_AUDIO_OUT_GAIN, "SFIELD_SET_AUDIO_OUT_GAIN", 4, CommandKind::Set, 1},
    {SFIELD_SET_SYSTEM_SD_CHECK, "SFIELD_SET_SYSTEM_SD_CHECK", 4, CommandKind::State, 0},
    {SFIELD_SET_SYSTEM_SD_FORMAT, "SFIELD_SET_SYSTEM_SD_FORMAT", 4, CommandKind::Erase, 0},
    {SFIELD_VIDEO_REC_START, "SFIELD_VIDEO_REC_START", 4, CommandKind::State, 0},
    {SFIELD_VIDEO_REC_STOP, "SFIELD_VIDEO_REC_STOP", 4, CommandKind::State, 0},
    {SFIELD_SET_AUDIO_OUT_MUTE, "SFIELD_SET_AUDIO_OUT_MUTE", 4, CommandKind::Set, 0},
    {SFIELD_SET_EVENT_BUZER, "SFIELD_SET_EVENT_BUZER", 4, CommandKind::Set, 0},
    {SFIELD_SET_ACC_VOLUME, "SFIELD_SET_ACC_VOLUME", 4, CommandKind::Set, 0},
    {SFIELD_SET_LCD_AUTO_OFF, "SFIELD_SET_LCD_AUTO_OFF", 4, CommandKind::Set, 0},
    {SFIELD_SET_LCD_BRIGHT, "SFIELD_SET_LCD_BRIGHT", 4, CommandKind::Set, 2},
    {SFIELD_SET_LCD_WAIT_DIS, "SFIELD_SET_LCD_WAIT_DIS", 4, CommandKind::Set, 0},
    {SFIELD_SET_SETUP_COMPLETE, "SFIELD_SET_SETUP_COMPLETE", 129, CommandKind::Erase, 0},
    {SFIELD_GET_VOLTAGE, "SFIELD_GET_VOLTAGE", 4, CommandKind::Query, 0},
    {SFIELD_SET_LED_MODE, "SFIELD_SET_LED_MODE", 4, CommandKind::Set, 0},
    {SFIELD_SET_LED_FILE_UPDATE, "SFIELD_SET_LED_FILE_UPDATE", 4, CommandKind::State, 0},
    {SFIELD_SYS_RESTART, "SFIELD_SYS_RESTART", 4, CommandKind::Erase, 0},
    {SFIELD_SYS_ENTRY_PREVIEW, "SFIELD_SYS_ENTRY_PREVIEW", 4, CommandKind::State, 0},
    {SFIELD_GET_AUTO_LCD_VALUE, "SFIELD_GET_AUTO_LCD_VALUE", 4, CommandKind::Query, 0},
    {SFIELD_GET_ACC, "SFIELD_GET_ACC", 4, CommandKind::Query, 0},
    {SFIELD_SET_VIEWCHANGE, "SFIELD_SET_VIEWCHANGE", 4, CommandKind::State, 0},
    {SFIELD_SET_SEEK_PLAY, "SFIELD_SET_SEEK_PLAY", 4, CommandKind::State, 0},
    {SFIELD_VOLTAGE_COMPENSATION, "SFIELD_VOLTAGE_COMPENSATION", 4, CommandKind::Erase, 0},
    {SFIELD_SET_PREVIEW_MIRRORING, "SFIELD_SET_PREVIEW_MIRRORING", 4, CommandKind::State, 0},
    {SFIELD_SET_MOVING_PIP, "SFIELD_SET_MOVING_PIP", 4, CommandKind::State, 0},
    {SFIELD_SET_MOTION_SETTING, "SFIELD_SET_MOTION_SETTING", 4, CommandKind::State, 0},
    {SFIELD_SET_MOTION_SETTING, "SFIELD_SET_MOTION_SETTING", 8, CommandKind::Set, 0},
    {SFIELD_SET_MOTION_SETTING_REAR, "SFIELD_SET_MOTION_SETTING_REAR", 8, CommandKind::Set, 0},
    {SFIELD_GET_PARKING_MODE_EVENT_FILE, "SFIELD_GET_PARKING_MODE_EVENT_FILE", 4, CommandKind::Query, 0},
    {SFIELD_GET_PARKING_MODE_MOTION_FILE, "SFIELD_GET_PARKING_MODE_MOTION_FILE", 4, CommandKind::Query, 0},
    {SFIELD_SET_CURRENT_RECORDING_FILE_DETECT, "SFIELD_SET_CURRENT_RECORDING_FILE_DETECT", 4, CommandKind::State, 0},
    {SFIELD_SET_USER_DATA_INIT, "SFIELD_SET_USER_DATA_INIT", 4, CommandKind::Erase, 0},
    {SFIELD_SET_REARCAM_ONOFF, "SFIELD_SET_REARCAM_ONOFF", 4, CommandKind::State, 1},
    {SFIELD_SET_USER_SDCHECK, "SFIELD_SET_USER_SDCHECK", 4, CommandKind::State, 0},
    {SFIELD_TOUCH_COMP_END, "SFIELD_TOUCH_COMP_END", 4, CommandKind::Set, 0},
};

}  // namespace platformcheck
