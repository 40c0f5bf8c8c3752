#include "recorder/firmware/update.h"

#include "recorder/base/files.h"

namespace recorder {
namespace {
// Steps of the timer.
constexpr int kRuns = 3;  // the first of the phase that blinks
constexpr int kEnds = 11;
constexpr int kSteps = 14;

constexpr const char* kPictures[] = {"/usr/local/etc/fwupdatestart.bmp", "/usr/local/etc/fwupdating.bmp",
                                     "/usr/local/etc/fwupdateend.bmp"};  // by phase
constexpr char kBar[] = "/usr/local/etc/bottom.bmp";
}  // namespace

Update::Update(Hub& hub) : mHub(hub) {
  mTimer.callOnTimeout([this] { Step(); });
}

void Update::Begin(const char* marker) {
  mMarker = marker;
  mStep = 0;
  mTimer.start(mHub.delays.update);
  emit mHub.sink.InterfaceEndWanted();
  emit mHub.sink.VideoChanged();
}

void Update::Finish() {
  if (!IsRunning()) return;
  mTimer.stop();
  emit mHub.sink.RestartWanted();
}

int Update::Phase() const {
  return mStep < kRuns ? 0 : mStep < kEnds ? 1 : 2;
}

QStringList Update::Pictures() const {
  if (!IsRunning()) return {};
  QStringList pictures{mHub.Path(kPictures[Phase()])};
  if (Phase() == 1 && (mStep - kRuns) % 2 == 0) pictures << mHub.Path(kBar);
  return pictures;
}

QJsonValue Update::State() const {
  return IsRunning() ? QJsonValue(Phase()) : QJsonValue();
}

void Update::Step() {
  if (++mStep == kSteps) {
    mTimer.stop();
    if (!WriteWhole(mHub.Path(mMarker), QByteArray()))
      mHub.sink.Note(QStringLiteral("The marker %1 cannot be written.").arg(QLatin1String(mMarker)));
    emit mHub.sink.RestartWanted();
  }
  emit mHub.sink.VideoChanged();
  emit mHub.sink.StateChanged();
}

}  // namespace recorder
