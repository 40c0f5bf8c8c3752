#include "recorder/device/voice.h"

#include <algorithm>

namespace recorder {

Voice::Voice(Sink& sink) : mSink(sink) {
  mEnd.setSingleShot(true);
  mEnd.callOnTimeout([this] {
    if (!mSuppressed) mSink.Send(RECV_ZEL_STATUS_VOICE_PLAY_END);
    emit mSink.StateChanged();
  });
}

void Voice::Speak(int ms) {
  mEnd.start(std::max(ms, mEnd.remainingTime()));
}

bool Voice::EndNow() {
  mEnd.stop();
  return mSink.Send(RECV_ZEL_STATUS_VOICE_PLAY_END);
}

QJsonObject Voice::State() const {
  return {{QStringLiteral("speaking"), mEnd.isActive()}, {QStringLiteral("endSuppressed"), mSuppressed}};
}

}  // namespace recorder
