#pragma once

#include "recorder/voice.h"

namespace recorder {

/// Whether the recorder records.
class Recording {
public:
  /// Why the interface stops the recording.
  enum Stop { kBrowse = 1, kSave = 2, kCard = 3 };

  Recording(Hub& hub, Voice& voice) : mHub(hub), mVoice(voice) {}

  void Begin();
  /// The voice's end lets the interface go on after kSave and kCard.
  void End(int why);

  bool IsOn() const { return mOn; }

private:
  Hub& mHub;
  Voice& mVoice;
  bool mOn = true;
};

}  // namespace recorder
