#include "gui/base/globals.h"

#include <limits>

bool gNeedVolCom = false;
QString gTouchDevice;
int gNeedFormatFlag = 0;
int gCountOfCamera = 2;
bool gIsPlayingVoice = false;
int gIsConnectGps = 0;
bool gIsAccVer = false;
int gInitFrontLed = 1;
int gRecvLcdValue = 0;
int gOldRecvLcdValue = 0;
float gRecvVoltage = std::numeric_limits<float>::quiet_NaN();
int gReturnVolume = 1;
int gTouchTestStage = 0;
int gFirmupCount = 0;
bool g_bIsPrevWidgetParkingSetting = false;

Relaxed<bool> gSdError = false;
Relaxed<bool> gInitSdError = false;
Relaxed<int> gSdErrorValue = 0;
Relaxed<bool> gIsSdError = false;

int gSysInit = 0;
std::array<std::uint32_t, 13> gContext{};

QDateTime (*gClock)() = QDateTime::currentDateTime;
