#include "recorder/voice.h"

#include <algorithm>

namespace recorder {

Voice::Voice(Hub& hub) : mHub(hub) {
  mEnd.setSingleShot(true);
  mEnd.callOnTimeout([this] {
    if (!mSuppressed) mHub.Send(RECV_ZEL_STATUS_VOICE_PLAY_END);
    emit mHub.recorder.StateChanged();
  });
}

void Voice::Speak(int ms) {
  mEnd.start(std::max(ms, mEnd.remainingTime()));
}

bool Voice::EndNow() {
  mEnd.stop();
  return mHub.Send(RECV_ZEL_STATUS_VOICE_PLAY_END);
}

QJsonObject Voice::State() const {
  return {{QStringLiteral("speaking"), mEnd.isActive()}, {QStringLiteral("endSuppressed"), mSuppressed}};
}

}  // namespace recorder
