#pragma once

#include <QTimer>

#include "recorder/base/sink.h"

namespace recorder {

/// The recorder's voice. The interface ignores every touch until it hears that a confirmation has ended, so the end is
/// told always, also of a voice that is muted.
class Voice {
public:
  explicit Voice(Sink& sink);

  /// Says something that ends in `ms`. What is being said is cut off, but the end never comes earlier for that.
  void Speak(int ms);

  /// Ends what is being said, and tells; also when nothing is said. False when the queue is full.
  bool EndNow();

  /// While suppressed, no end is told.
  void Suppress(bool suppressed) { mSuppressed = suppressed; }

  QJsonObject State() const;

private:
  Sink& mSink;
  QTimer mEnd;
  bool mSuppressed = false;
};

}  // namespace recorder
