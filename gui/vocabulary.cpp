#include "gui/main.h"  // its meta object comes with the moc output of this library
