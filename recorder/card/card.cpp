#include "recorder/card/card.h"

#include <QDir>
#include <QFile>

#include "recorder/base/files.h"
#include "recorder/card/stock.h"

namespace recorder {
namespace {

constexpr int kFailed = 0;  // the results of a format
constexpr int kSucceeded = 1;
constexpr int kNoCard = 1;   // the fault of a card that is not there
constexpr int kAgain = 200;  // ms

}  // namespace

Card::Card(Hub& hub) : mHub(hub), mFolder(hub.Path(kCardFiles)) {
  for (QTimer* timer : {&mFormat, &mCheck, &mAgain}) timer->setSingleShot(true);
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
  if (mCheck.isActive()) EndCheck();
}

bool Card::TakeOut(QString* error) {
  if (!IsIn()) return true;
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
  if (!mFormat.isActive()) mFormat.start(mHub.delays.format);
}

void Card::EndFormat() {
  mFormat.stop();
  const bool good = IsIn() && !std::exchange(mFormatFails, false) && mFolder.Erase() && mFolder.StampFormat();
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

bool Card::Fill(int number, QString* error) {
  if (!IsReady()) {
    *error = QStringLiteral("There is no card, or it is being formatted.");
    return false;
  }
  if (mFolder.Erase() && WriteMany(mFolder, number, mHub.clock.Now())) return true;
  *error = QStringLiteral("The card is too small for %1 recordings.").arg(number);
  return false;
}

bool Card::Corrupt(bool cut, QString* error) {
  const QString name = IsReady() ? mFolder.Newest() : QString();
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
