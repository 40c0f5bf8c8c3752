#pragma once

#include <QString>

#include "recorder/clock.h"
#include "recorder/recorder.h"
#include "recorder/settingstore.h"

namespace recorder {

/// What every part of the recorder has at hand.
struct Hub {
  Recorder& recorder;
  QString root;
  Recorder::Delays delays;
  SettingStore settings;
  Clock clock;

  /// The file of this machine that stands for a path of the device.
  QString Path(const char* path) const { return root + QLatin1String(path); }

  /// Sends a status event; false when the queue is full.
  bool Send(RECV_ZEL_STATUS_EVENT event, int value = 0) { return recorder.SendStatus(event, value); }

  /// Says one sentence in the log.
  void Note(const QString& sentence) {
    emit recorder.Logged({{QStringLiteral("kind"), QStringLiteral("note")}, {QStringLiteral("name"), sentence}});
  }
};

}  // namespace recorder
