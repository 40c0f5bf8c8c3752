#pragma once

#include <QString>

#include "recorder/base/clock.h"
#include "recorder/base/delays.h"
#include "recorder/base/settingstore.h"
#include "recorder/base/sink.h"

namespace recorder {

/// What every part of the recorder has at hand.
struct Hub {
  Sink& sink;
  QString root;
  Delays delays;
  SettingStore settings;
  Clock clock;

  /// The file of this machine that stands for a path of the device.
  QString Path(const char* path) const { return root + QLatin1String(path); }
};

}  // namespace recorder
