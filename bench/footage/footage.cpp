#include "bench/footage/footage.h"

#include <QMutexLocker>
#include <algorithm>

namespace {
constexpr int kFirstMs = 10000;
constexpr int kWantedMs = 1000;      // the recorder takes four pictures a second
constexpr qint64 kLook = 10000;      // microseconds between two looks at a camera
constexpr qint64 kLeastStep = 2000;  // from one picture to the next, whatever the file says
constexpr qint64 kLongestStep = 10000000;
constexpr qint64 kLate = 500000;  // a machine that is too slow shows all pictures, slower
}  // namespace

Footage::~Footage() {
  {
    const QMutexLocker lock(&mMutex);
    mIsEnding = true;
    mChanged.wakeAll();
  }
  if (mThread) mThread->wait();
}

bool Footage::Open(const QString& path, QString* error) {
  mPath = path;
  mFilm = std::make_unique<Film>(mIsEnding);
  if (!mFilm->Open(path, error) || !ReadFirst(error)) return false;
  mThread.reset(QThread::create([this] { Run(); }));
  mThread->start();
  return true;
}

// A camera needs a moment for it.
bool Footage::ReadFirst(QString* error) {
  Film::Result result = mFilm->Next();
  for (QDeadlineTimer patience(kFirstMs); result == Film::Result::NotYet && !patience.hasExpired();
       result = mFilm->Next())
    QThread::usleep(kLook);
  if (result == Film::Result::Good) {
    mPicture = mFilm->Taken();
    return true;
  }
  *error = QStringLiteral("%1 has no picture that can be decoded.").arg(mPath);
  return false;
}

QImage Footage::Picture() {
  const QMutexLocker lock(&mMutex);
  if (mWanted.hasExpired()) mChanged.wakeAll();
  mWanted.setRemainingTime(kWantedMs);
  return mPicture;
}

// ---- in the thread

void Footage::Run() {
  mClock.start();
  int pictures = 1;  // the first one is there
  while (Play(&pictures) && pictures > 0) {
    if (pictures == 1) return;  // it is no video, and stays
    // From its begin: not every file can be sought in.
    QString error;
    mFilm = std::make_unique<Film>(mIsEnding);
    if (!mFilm->Open(mPath, &error)) break;
    mBegin = mShown + mStep;
    pictures = 0;
  }
  if (!mIsEnding) emit Broke(QStringLiteral("%1 cannot be read any more: its last picture stays.").arg(mPath));
}

// To the film's end; false when there is nothing more to come.
bool Footage::Play(int* pictures) {
  while (true) {
    const Film::Result result = mFilm->Next();
    if (result == Film::Result::End) return true;
    if (result == Film::Result::Broken) return false;
    *pictures += result == Film::Result::Good ? 1 : 0;
    if (!(result == Film::Result::Good ? Show() : Wait(kLook))) return false;
  }
}

// When its time has come and somebody looks.
bool Footage::Show() {
  const qint64 now = Now();
  if (mFilm->IsCamera()) mBegin = now - mFilm->At();
  if (const qint64 wait = mBegin + mFilm->At() - now; wait > kLongestStep || wait < -kLate) mBegin = now - mFilm->At();
  const qint64 due = mBegin + mFilm->At();
  if (!Wait(mFilm->IsCamera() ? 0 : std::max(due - now, kLeastStep))) return false;
  mStep = std::clamp<qint64>(due - mShown, 0, kLongestStep);
  mShown = due;
  const QMutexLocker lock(&mMutex);
  mPicture = mFilm->Taken();
  return AwaitWish();
}

bool Footage::Wait(qint64 microseconds) {
  const QMutexLocker lock(&mMutex);
  QDeadlineTimer deadline(Qt::PreciseTimer);
  deadline.setPreciseRemainingTime(0, microseconds * 1000, Qt::PreciseTimer);
  while (!mIsEnding && !deadline.hasExpired()) mChanged.wait(&mMutex, deadline);
  return !mIsEnding;
}

// Meanwhile the film stands still.
bool Footage::AwaitWish() {
  const qint64 before = Now();
  while (!mIsEnding && mWanted.hasExpired()) mChanged.wait(&mMutex);
  const qint64 pause = Now() - before;
  mBegin += pause;
  mShown += pause;
  return !mIsEnding;
}
