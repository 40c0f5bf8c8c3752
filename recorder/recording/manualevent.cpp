#include "recorder/recording/manualevent.h"

#include <QFile>
#include <algorithm>

#include "recorder/base/files.h"

namespace recorder {

ManualEvent::ManualEvent(Hub& hub, Recording& recording) : mHub(hub), mRecording(recording) {
  mEnd.setSingleShot(true);
  mEnd.callOnTimeout([this] { End(); });
}

ManualEvent::~ManualEvent() {
  if (IsOn()) QFile::remove(mHub.Path(kManualEvent));
}

bool ManualEvent::Begin() {
  if (IsOn()) return true;
  if (!WriteWhole(mHub.Path(kManualEvent), QByteArray())) return false;
  const int speed = mHub.clock.Speed();
  // However fast the time runs, all its pictures have come with the second tick of the recording.
  mEnd.start(speed == 1 ? mHub.delays.manualEvent : std::max(mHub.delays.manualEvent / speed, 2 * mHub.delays.picture));
  mRecording.Mark(Label::Kind::Protected, Label::Trigger::None);
  return true;
}

void ManualEvent::End() {
  mRecording.EndProtected();
  QFile::remove(mHub.Path(kManualEvent));
  mHub.sink.Note(QStringLiteral("The manual event recording has ended."));
  emit mHub.sink.StateChanged();
}

}  // namespace recorder
