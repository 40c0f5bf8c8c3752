#include "recorder/recording.h"

namespace recorder {

void Recording::Begin() {
  mOn = true;
  mVoice.Speak(mHub.delays.voice);
  emit mHub.recorder.VideoChanged();
}

void Recording::End(int why) {
  mOn = false;
  if (why == kSave || why == kCard) mVoice.Speak(mHub.delays.stopVoice);
  emit mHub.recorder.VideoChanged();
}

}  // namespace recorder
