#include "gui/screen/screenhost.h"

ScreenHost* gMainWindow = nullptr;
