#include "recorder/manualevent.h"

#include <QFile>

#include "recorder/files.h"

namespace recorder {

ManualEvent::ManualEvent(Hub& hub) : mHub(hub) {
  mEnd.setSingleShot(true);
  mEnd.callOnTimeout([this] { End(); });
}

ManualEvent::~ManualEvent() {
  if (IsOn()) QFile::remove(mHub.Path(kManualEvent));
}

bool ManualEvent::Begin() {
  if (IsOn()) return true;
  if (!WriteWhole(mHub.Path(kManualEvent), QByteArray())) return false;
  mEnd.start(mHub.delays.manualEvent);
  return true;
}

void ManualEvent::End() {
  QFile::remove(mHub.Path(kManualEvent));
  mHub.Note(QStringLiteral("The manual event recording has ended."));
  emit mHub.recorder.StateChanged();
}

}  // namespace recorder
