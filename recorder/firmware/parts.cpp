#include "recorder/firmware/parts.h"

#include "recorder/base/files.h"

namespace recorder {

Parts::Parts(const QString& root)
    : hub{sink, root, Delays(), SettingStore(root + QLatin1String(kIniFile)), Clock(root + QLatin1String(kClock))} {
  restart.setSingleShot(true);
  restart.callOnTimeout([this] { emit sink.RestartWanted(); });
}

}  // namespace recorder
