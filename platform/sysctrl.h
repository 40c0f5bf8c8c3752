#pragma once

/// The platform library's system control: commands to the recorder firmware.

#ifdef __cplusplus
extern "C" {
#endif

/// Fields of ControlSystemData. Data is one native 4-byte int unless said otherwise.
enum SYSTEM_CONTROL {
  SFIELD_REG_CLIENT = 8580,  ///< one byte
  SFIELD_SET_VIEWFRONT = 8581,
  SFIELD_SET_VIEWREAR = 8582,
  SFIELD_SET_VIEWPIP = 8584,
  SFIELD_PLAY_VIDEO = 8586,  ///< 50 bytes: a path, ended by zero
  SFIELD_CONTROL_VIDEO = 8587,
  SFIELD_SET_VIDEO_FRAMRATE = 8596,
  SFIELD_SET_AUDIO_IN_GAIN = 8600,
  SFIELD_SET_AUDIO_OUT_GAIN = 8602,
  SFIELD_SET_SYSTEM_SD_CHECK = 8611,
  SFIELD_SET_SYSTEM_SD_FORMAT = 8612,
  SFIELD_VIDEO_REC_START = 8619,
  SFIELD_VIDEO_REC_STOP = 8620,
  SFIELD_SET_AUDIO_OUT_MUTE = 8632,
  SFIELD_SET_EVENT_BUZER = 8642,
  SFIELD_SET_ACC_VOLUME = 8650,
  SFIELD_SET_LCD_AUTO_OFF = 8654,
  SFIELD_SET_LCD_BRIGHT = 8655,
  SFIELD_SET_LCD_WAIT_DIS = 8657,
  SFIELD_SET_SETUP_COMPLETE = 8658,  ///< 129 bytes: the packed setup block
  SFIELD_GET_VOLTAGE = 8659,         ///< query: a 4-byte float, volts
  SFIELD_SET_LED_MODE = 8660,
  SFIELD_SET_LED_FILE_UPDATE = 8661,
  SFIELD_SYS_RESTART = 8662,
  SFIELD_SYS_ENTRY_PREVIEW = 8663,
  SFIELD_GET_AUTO_LCD_VALUE = 8664,  ///< query: the backlight's PWM value
  SFIELD_GET_ACC = 8665,             ///< query
  SFIELD_SET_VIEWCHANGE = 8666,
  SFIELD_SET_SEEK_PLAY = 8667,
  SFIELD_VOLTAGE_COMPENSATION = 8669,
  SFIELD_SET_PREVIEW_MIRRORING = 8670,
  SFIELD_SET_MOVING_PIP = 8671,
  SFIELD_SET_MOTION_SETTING = 8672,            ///< 8 bytes: the front motion map; or 4 bytes
  SFIELD_SET_MOTION_SETTING_REAR = 8673,       ///< 8 bytes: the rear motion map
  SFIELD_GET_PARKING_MODE_EVENT_FILE = 8674,   ///< query
  SFIELD_GET_PARKING_MODE_MOTION_FILE = 8675,  ///< query
  SFIELD_SET_CURRENT_RECORDING_FILE_DETECT = 8676,
  SFIELD_SET_USER_DATA_INIT = 8677,
  SFIELD_SET_REARCAM_ONOFF = 8678,
  SFIELD_SET_USER_SDCHECK = 8679,
  SFIELD_TOUCH_COMP_END = 8680,
};

/// Initialises the system-driver interface; called with 7. Negative on failure.
int SysDrvInit(int id);

/// Gives `length` bytes of `data` to `field` and waits for the recorder; a query is answered in place.
/// Any thread, one request at a time. Negative on failure.
int ControlSystemData(int field, void* data, int length);

/// Sets a GPIO line; 46 is the LCD's enable line. Negative on failure.
int ipnc_gio_write(int line, int value);

#ifdef __cplusplus
}
#endif
