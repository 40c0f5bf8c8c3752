#pragma once

#include <QDateTime>
#include <QString>
#include <array>
#include <cstdint>

#include "gui/base/relaxed.h"

/// The process-wide flags that the main window and the screens share. GUI thread, but for the Relaxed ones.

extern bool gNeedVolCom;      ///< voltage compensation asked for on the command line
extern QString gTouchDevice;  ///< of the command line: the touch panel's device; empty: the camera's
extern int gNeedFormatFlag;   ///< SD format question pending: 0 none, 1 resolution, 2 frame rate, 3 both
extern int gCountOfCamera;    ///< 1 or 2; 2 until the recorder says otherwise, so that the stored view survives a start
extern bool gIsPlayingVoice;  ///< a voice prompt plays: touches are ignored
extern int gIsConnectGps;     ///< 0 no receiver, 1 searching, 2 fix
extern bool gIsAccVer;        ///< the recorder knows the ignition's state
extern int gInitFrontLed;     ///< 0 once the front LED has failed
extern int gRecvLcdValue;     ///< latest automatic backlight value, PWM
extern int gOldRecvLcdValue;  ///< the one before it
extern float gRecvVoltage;    ///< latest supply voltage, volts; not a number until the recorder has told it
extern int gReturnVolume;     ///< recording volume that switching the microphone on again restores, 1..3
extern int gTouchTestStage;   ///< start-up touch test: 0 not begun, 1 and 2 factory check, 3 done, 100 test only
extern int gFirmupCount;      ///< phase of a firmware update: 0 it begins, 1 it runs, 2 it has ended
extern bool g_bIsPrevWidgetParkingSetting;  ///< the parking report was opened from the parking settings

// Written by the message thread, read and cleared by the GUI thread.
extern Relaxed<bool> gSdError;      ///< the card has an error
extern Relaxed<bool> gInitSdError;  ///< the card has had an error since the start
extern Relaxed<int> gSdErrorValue;  ///< 1 once the card has had an error
extern Relaxed<bool> gIsSdError;    ///< hardware error 8: the card must be exchanged

extern int gSysInit;                            ///< 1 when stream and overlay are ready
extern std::array<std::uint32_t, 13> gContext;  ///< the platform's context words, zero

/// Where the screens take the time from; a test puts its own here. GUI thread.
extern QDateTime (*gClock)();
