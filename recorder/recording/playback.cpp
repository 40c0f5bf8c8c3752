#include "recorder/recording/playback.h"

#include <QFile>
#include <algorithm>
#include <limits>
#include <utility>

#include "recorder/base/files.h"

namespace recorder {
namespace {

enum PlayStatus { kError = 1, kOpenFailed = 2, kReadFailed = 3, kEnd = 4 };

using Result = ClipReader::Result;

int StatusOf(Result result) {
  switch (result) {
    case Result::End:
      return kEnd;
    case Result::NotOpened:
      return kOpenFailed;
    case Result::NotReadable:
      return kReadFailed;
    default:
      return kError;
  }
}

}  // namespace

Playback::Playback(Hub& hub, const Card& card) : mHub(hub), mCard(card) {
  mNext.setSingleShot(true);
  mNext.setTimerType(Qt::PreciseTimer);
  mNext.callOnTimeout([this] { Advance(false); });
}

Playback::~Playback() = default;

void Playback::Play(const QByteArray& path) {
  Stop();
  const QByteArray folder = QByteArray(kCardFiles) + '/';
  mName = path.mid(folder.size());
  if (!path.startsWith(folder) || mName.isEmpty() || mName.contains('/')) return End(kOpenFailed);
  if (mCard.IsIn() && !mCard.IsReady()) return End(kError);  // it is being formatted
  mReader = std::make_unique<ClipReader>();
  if (const Result result = mReader->Open(mCard.Folder().Path(QFile::decodeName(mName))); result != Result::Good)
    return End(StatusOf(result));
  mPaused = mEnded = false;
  mTold = -1;
  Advance(true);
}

bool Playback::Do(int control) {
  if (control < kStop || control > kPause) return false;
  if (control == kStop) {
    Stop();
  } else if (mReader && !mEnded && mPaused != (control == kPause)) {
    mPaused = control == kPause;
    Wait(true);
  }
  return true;
}

void Playback::Seek(int ms) {
  if (!mReader || mEnded || !mReader->Seek(ms)) return;
  mTold = -1;
  Advance(true);
}

void Playback::Stop() {
  mNext.stop();
  if (std::exchange(mReader, nullptr)) emit mHub.sink.VideoChanged();
}

void Playback::Advance(bool afresh) {
  const Result result = mCard.IsReady() ? mReader->Next() : Result::NotReadable;
  if (result != Result::Good) {
    if (result == Result::End) Tell(mReader->Length());
    return End(StatusOf(result));
  }
  if (mReader->At() / 1000 != mTold) Tell(mReader->At());
  emit mHub.sink.VideoChanged();
  Wait(afresh);
}

// `afresh`: the picture taken begins now, whatever was before.
void Playback::Wait(bool afresh) {
  if (mPaused) return mNext.stop();
  if (afresh) {
    mFrom = mReader->At();
    mClock.start();
  }
  const qint64 due = (mReader->Until() - mFrom) * mHub.delays.playSecond / 1000;
  mNext.start(static_cast<int>(std::max<qint64>(0, due - mClock.elapsed())));
}

// The last picture stays after a good end: the interface asks what comes next.
void Playback::End(int status) {
  mNext.stop();
  mEnded = true;
  if (status != kEnd) Stop();
  mHub.sink.Send(RECV_ZEL_STATUS_PLAY_STATUS, status);
  emit mHub.sink.StateChanged();
}

void Playback::Tell(qint64 ms) {
  mTold = ms / 1000;
  mHub.sink.Send(RECV_ZEL_STATUS_PLAY_CUR, static_cast<int>(std::min<qint64>(ms, std::numeric_limits<int>::max())));
}

QJsonObject Playback::State() const {
  if (!mReader) return {};
  return {{QStringLiteral("file"), QString::fromUtf8(mName)},
          {QStringLiteral("ms"), mReader->At()},
          {QStringLiteral("paused"), mPaused},
          {QStringLiteral("ended"), mEnded}};
}

}  // namespace recorder
