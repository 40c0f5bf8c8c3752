#include "recorder/firmware/parts.h"

#include "recorder/base/files.h"

namespace recorder {
namespace {
constexpr int kFastClock = 1000;  // ms; the interface looks no more often
}  // namespace

Parts::Parts(const QString& root)
    : hub{sink, root, Delays(), SettingStore(root + QLatin1String(kIniFile)), Clock(root + QLatin1String(kClock))} {
  restart.setSingleShot(true);
  restart.callOnTimeout([this] { emit sink.RestartWanted(); });
  fastClock.setInterval(kFastClock);
  fastClock.callOnTimeout([this] { KeepClock(); });
}

void Parts::KeepClock() {
  if (!hub.clock.Save()) sink.Note(QStringLiteral("The clock cannot be kept."));
  emit sink.StateChanged();
}

}  // namespace recorder
