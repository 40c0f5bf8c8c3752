#include "gui/firmware/commands.h"

#include <iterator>

#include "platform/sysctrl.h"

namespace {
using enum CommandKind;

constexpr Command kCommands[] = {
    {SEND_SWITCH_DISPLAY, ViewMode, 0},
    {SEND_LCD_AUTO_OFF, Value, SFIELD_SET_LCD_AUTO_OFF},
    {SEND_LCD_BRIGHT, Value, SFIELD_SET_LCD_BRIGHT},
    {SEND_LCD_WAIT_DIS, Value, SFIELD_SET_LCD_WAIT_DIS},
    {SEND_SET_LED_MODE, Value, SFIELD_SET_LED_MODE},
    {SEND_LED_FILE_UPDATE, Value, SFIELD_SET_LED_FILE_UPDATE},
    {SEND_SET_RESOLUTION, Nothing, 0},
    {SEND_SET_FPS, Nothing, 0},
    {SEND_SET_GAIN, Nothing, 0},
    {SEND_SET_GAIN2, Nothing, 0},
    {SEND_SET_GSENSOR_TRG_LVL, Nothing, 0},
    {SEND_SET_GPS_SPEED_DISPLAY, Nothing, 0},
    {SEND_SET_PARKING_MODE_ON, Nothing, 0},
    {SEND_SET_PARK_LVL, Nothing, 0},
    {SEND_SET_MOTION_LVL, Nothing, 0},
    {SEND_CHK_PARK_LVL, Nothing, 0},
    {SEND_SET_POWER_CUT_LVL, Nothing, 0},
    {SEND_SET_POWER_CUT_TIME, Nothing, 0},
    {SEND_SET_BUZER_FLAG, Value, SFIELD_SET_AUDIO_OUT_MUTE},
    {SEND_SET_EVENT_BUZER, Value, SFIELD_SET_EVENT_BUZER},
    {SEND_SET_SPK_VOLUME, Value, SFIELD_SET_AUDIO_OUT_GAIN},
    {SEND_SET_ACC_VOLUME, Value, SFIELD_SET_ACC_VOLUME},
    {SEND_SET_VOLUME, Value, SFIELD_SET_AUDIO_IN_GAIN},
    {SEND_SET_EFILE_DEL_METHOD, Nothing, 0},
    {SEND_SET_N_FILE_RATE, Nothing, 0},
    {SEND_SET_E_FILE_RATE, Nothing, 0},
    {SEND_SET_P_FILE_RATE, Nothing, 0},
    {SEND_SET_TIME_SET_FLAG, Nothing, 0},
    {SEND_SET_YEAR, Nothing, 0},
    {SEND_SET_MONTH, Nothing, 0},
    {SEND_SET_DAY, Nothing, 0},
    {SEND_SET_HOUR, Nothing, 0},
    {SEND_SET_MIN, Nothing, 0},
    {SEND_SET_GMT, Nothing, 0},
    {SEND_PLAY_VIDEO, Path, SFIELD_PLAY_VIDEO},
    {SEND_RECORD_STOP, Nothing, 0},
    {SEND_CONTROL_VIDEO, Value, SFIELD_CONTROL_VIDEO},
    {SEND_VIDEO_REC_START, Value, SFIELD_VIDEO_REC_START},
    {SEND_VIDEO_REC_STOP, Value, SFIELD_VIDEO_REC_STOP},
    {SEND_SET_CHK_TEMP, Nothing, 0},
    {SEND_SETTING_COMPLETE, SetupBlock, SFIELD_SET_SETUP_COMPLETE},
    {SEND_SYSTEM_RESET, Nothing, 0},
    {SEND_SET_MODEL, Nothing, 0},
    {SEND_SET_DATA_AREA, Nothing, 0},
    {SEND_GET_VOLTAGE, QueryFloat, SFIELD_GET_VOLTAGE},
    {SEND_SET_SYSTEM_SD_FORMAT, Value, SFIELD_SET_SYSTEM_SD_FORMAT},
    {SEND_SET_SYSTEM_RESTART, Value, SFIELD_SYS_RESTART},
    {SEND_SET_ENTRY_PREVIEW, Value, SFIELD_SYS_ENTRY_PREVIEW},
    {SEND_GET_LCD_AUTO_VALUE, QueryInt, SFIELD_GET_AUTO_LCD_VALUE},
    {SEND_GET_ACC, QueryInt, SFIELD_GET_ACC},
    {SEND_SET_VIEWCHANGE, Value, SFIELD_SET_VIEWCHANGE},
    {SEND_SET_SEEK_PLAY, Value, SFIELD_SET_SEEK_PLAY},
    {SEND_SET_MIRRORING, Value, SFIELD_SET_PREVIEW_MIRRORING},
    {SEND_SET_MOVING_PIP, Value, SFIELD_SET_MOVING_PIP},
    {SEND_VOLTAGE_COMPENSATION, Value, SFIELD_VOLTAGE_COMPENSATION},
    {SEND_MOTION_SETTING, Value, SFIELD_SET_MOTION_SETTING},
    {SEND_SWITCH_DISP_FOR_MOTION, ViewModeForMotion, 0},
    {SEND_MOTION_SETTING_FRONT, MotionFront, SFIELD_SET_MOTION_SETTING},
    {SEND_MOTION_SETTING_REAR, MotionRear, SFIELD_SET_MOTION_SETTING_REAR},
    {SEND_GET_PARKING_MODE_EVENT_FILE, QueryInt, SFIELD_GET_PARKING_MODE_EVENT_FILE},
    {SEND_GET_PARKING_MODE_MOTION_FILE, QueryInt, SFIELD_GET_PARKING_MODE_MOTION_FILE},
    {SEND_SET_CURRENT_RECORDING_FILE_DETECT, Value, SFIELD_SET_CURRENT_RECORDING_FILE_DETECT},
    {SEND_SET_USER_DATA_INIT, Value, SFIELD_SET_USER_DATA_INIT},
    {SEND_SET_SYSTEM_SD_CHECK, Value, SFIELD_SET_SYSTEM_SD_CHECK},
    {SEND_SET_REARCAM_ONOFF, Value, SFIELD_SET_REARCAM_ONOFF},
    {SEND_SET_SD_CHECK, Value, SFIELD_SET_USER_SDCHECK},
    {SEND_SET_TOUCH_COM_END, Value, SFIELD_TOUCH_COMP_END},
};

constexpr bool InOrder() {
  int next = 0;
  for (const Command& command : kCommands)
    if (command.event != next++) return false;
  return next == SEND_SET_TOUCH_COM_END + 1;
}
static_assert(InOrder(), "a row stands at its event");
}  // namespace

Command CommandOf(Send_Event event) {
  if (event < 0 || event >= int(std::size(kCommands))) return {event, Nothing, 0};
  return kCommands[event];
}

unsigned ViewField(int mode) {
  if (mode == 0) return SFIELD_SET_VIEWPIP;
  return mode == 2 ? SFIELD_SET_VIEWREAR : SFIELD_SET_VIEWFRONT;
}
