#include "recorder/card/card.h"

#include <QDir>
#include <QElapsedTimer>
#include <QFile>

#include "recorder/base/files.h"

namespace recorder {
namespace {

constexpr int kFailed = 0;  // the results of a format
constexpr int kSucceeded = 1;
constexpr int kNoCard = 1;   // the fault of a card that is not there
constexpr int kAgain = 200;  // ms
constexpr int kSlice = 8;    // ms of a refill, before everybody else has his turn

}  // namespace

Card::Card(Hub& hub) : mHub(hub), mFolder(hub.Path(kCardFiles)) {
  for (QTimer* timer : {&mFormat, &mCheck, &mAgain}) timer->setSingleShot(true);
  mSlice.callOnTimeout([this] { GoOn(); });
  mFormat.callOnTimeout([this] { EndFormat(); });
  mCheck.callOnTimeout([this] { EndCheck(); });
  mAgain.callOnTimeout([this] {
    for (const Answer& answer : std::exchange(mAnswers, {})) Tell(answer);
  });
}

void Card::Start() {
  QString error;
  if (QFile::exists(mHub.Path(kCardFilesAway)) && !PutIn(&error)) mHub.sink.Note(error);
}

void Card::Finish() {
  if (mFormat.isActive()) EndFormat();
  StopFilling();
  while (mRefill) GoOn();
  if (mCheck.isActive()) EndCheck();
}

const char* Card::Hindrance() const {
  if (!IsIn()) return "There is no card.";
  if (IsFilling()) return "The card is being filled.";
  return mFormat.isActive() || mRefill ? "The card is being formatted." : nullptr;
}

bool Card::TakeOut(QString* error) {
  if (!IsIn()) return true;
  if (mRefill) End(false);
  mState = QStringLiteral("out");
  QDir files;
  if (files.rename(mHub.Path(kCardFiles), mHub.Path(kCardFilesAway)) && files.mkpath(mHub.Path(kCardFiles)))
    return true;
  *error = QStringLiteral("The files of the card cannot be moved to %1.").arg(mHub.Path(kCardFilesAway));
  return false;
}

bool Card::PutIn(QString* error) {
  mState = QStringLiteral("good");
  if (!QFile::exists(mHub.Path(kCardFilesAway))) return true;
  // What was written while there was no card is gone with its mount point.
  QDir place(mHub.Path(kCardFiles));
  if ((!place.exists() || place.removeRecursively()) && QDir().rename(mHub.Path(kCardFilesAway), mHub.Path(kCardFiles)))
    return true;
  *error = QStringLiteral("The files of the card cannot be moved back from %1.").arg(mHub.Path(kCardFilesAway));
  return false;
}

void Card::Format() {
  StopFilling();
  if (mFormat.isActive() || mRefill) return;
  mIsFormat = true;
  mFormat.start(mHub.delays.format);
}

void Card::EndFormat() {
  mFormat.stop();
  const bool fails = !IsIn() || mFailing > 0;
  if (IsIn() && fails) --mFailing;
  if (fails) return End(false);
  Begin(0);
  GoOn();  // mostly that is all
}

void Card::Begin(int number) {
  mRefill = std::make_unique<Refill>(mFolder, number, mHub.clock.Now());
  mSlice.start(0);
}

void Card::GoOn() {
  bool good = true;
  QElapsedTimer slice;
  slice.start();
  do good = mRefill->Step();
  while (good && !mRefill->HasEnded() && !slice.hasExpired(kSlice));
  if (!good && !mIsFormat) mHub.sink.Note(QStringLiteral("The card is too small, or cannot be written."));
  if (!good || mRefill->HasEnded()) return End(good);
  emit mHub.sink.StateChanged();
}

void Card::End(bool good) {
  mSlice.stop();
  mRefill.reset();
  if (!mIsFormat) {
    emit mHub.sink.VideoChanged();
    return emit mHub.sink.StateChanged();
  }
  good = good && mFolder.StampFormat();
  if (good && mState != QLatin1String("worn")) mState = QStringLiteral("good");
  Tell({RECV_ZEL_STATUS_SD_FORMAT_RESULT, good ? kSucceeded : kFailed});
}

void Card::Check() {
  if (!mCheck.isActive()) mCheck.start(mHub.delays.check);
}

void Card::EndCheck() {
  mCheck.stop();
  const int fault = std::exchange(mFault, 0);
  Tell({RECV_ZEL_STATUS_SD_CHECK, IsIn() ? fault : kNoCard});
}

// The interface waits for it, so it is told again and again until the queue takes it.
void Card::Tell(const Answer& answer) {
  if (!mHub.sink.Send(answer.event, answer.value)) {
    mAnswers << answer;
    mAgain.start(kAgain);
  }
  emit mHub.sink.VideoChanged();
  emit mHub.sink.StateChanged();
}

void Card::Fill(int number) {
  mIsFormat = false;
  Begin(number);
  emit mHub.sink.VideoChanged();  // it records no more
}

void Card::StopFilling() {
  if (IsFilling()) End(false);
}

QJsonValue Card::Work() const {
  if (!mRefill) return {};
  return QJsonObject{{QStringLiteral("what"), mIsFormat ? QStringLiteral("format") : QStringLiteral("fill")},
                     {QStringLiteral("done"), mRefill->Done()},
                     {QStringLiteral("of"), mRefill->Steps()}};
}

bool Card::Corrupt(bool cut, QString* error) {
  const QString name = mFolder.Newest();
  QFile file(mFolder.Path(name));
  if (name.isEmpty() || !file.open(QIODevice::ReadWrite)) {
    *error = QStringLiteral("The front camera has no recording.");
    return false;
  }
  const QDateTime modified = file.fileTime(QFileDevice::FileModificationTime);
  const bool good = cut ? file.resize(file.size() / 2) : file.write(QByteArray(64, '#')) == 64;
  if (good && file.flush() && file.setFileTime(modified, QFileDevice::FileModificationTime)) return true;
  *error = QStringLiteral("The recording %1 cannot be written.").arg(name);
  return false;
}

}  // namespace recorder
