#pragma once

#include <QTimer>

#include "recorder/recording/recording.h"

namespace recorder {

/// The manual event recording, under way as long as its marker file exists. The interface takes no touch meanwhile, so
/// the marker never outlives the recorder.
class ManualEvent {
public:
  ManualEvent(Hub& hub, Recording& recording);
  ~ManualEvent();
  ManualEvent(const ManualEvent&) = delete;
  ManualEvent& operator=(const ManualEvent&) = delete;

  /// Begins a recording, unless one is under way. False when the marker cannot be written.
  bool Begin();

  bool IsOn() const { return mEnd.isActive(); }

private:
  void End();

  Hub& mHub;
  Recording& mRecording;
  QTimer mEnd;
};

}  // namespace recorder
