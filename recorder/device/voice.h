#pragma once

#include <QTimer>

#include "recorder/base/hub.h"

namespace recorder {

/// What the recorder says.
enum class Prompt {
  RecordingStarts,
  RecordingStops,
  RecordingByHand,
  Impact,
  ParkingStarts,
  ParkingEnds,
  Blackspot,
  VoiceOn,     ///< off: a muted recorder cannot say it
  Volume,      ///< 0 low, 1 middle, 2 high
  Microphone,  ///< 0 off, 1 low, 2 middle, 3 high
};

/// The recorder's voice. The interface ignores every touch until it hears that a confirmation has ended, so the end is
/// told always, also of a voice that is muted; its words stand in the log, and only when they can be heard.
class Voice {
public:
  explicit Voice(Hub& hub);

  /// Says something that ends in `ms`; `level` is one of the prompt's, the nearest when there is no such one. What is
  /// being said is cut off, but the end never comes earlier for that.
  void Speak(Prompt prompt, int ms, int level = 0);

  /// Says what nobody waits for: its end is not told.
  void Say(Prompt prompt, int level = 0);

  /// Ends what is being said, and tells; also when nothing is said. False when the queue is full.
  bool EndNow();

  /// While suppressed, no end is told.
  void Suppress(bool suppressed) { mSuppressed = suppressed; }
  bool IsSuppressed() const { return mSuppressed; }

  QJsonObject State() const;

private:
  Hub& mHub;
  QTimer mEnd;
  bool mSuppressed = false;
};

}  // namespace recorder
