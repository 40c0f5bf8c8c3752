#include "bench/record/secondbench.h"

#include <signal.h>

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QJsonArray>
#include <QJsonObject>
#include <QRegularExpression>
#include <algorithm>

#include "bench/record/recordfile.h"
#include "bench/record/replay.h"
#include "bench/supervise/child.h"

namespace {
constexpr int kMost = 100;  // differences and pictures that are told
constexpr char kSent[] = "sent.jsonl";
constexpr char kDifferences[] = "differences";
constexpr char kAddress[] = "Dash camera: ";
constexpr char kError[] = "dashcam-bench: ";
constexpr char kPath[] = "/api/replay/%1%2.png";

QString PathOf(int input, const char* which) {
  return QString::fromLatin1(kPath).arg(input).arg(QLatin1String(which));
}

// Writes a recording that can be replayed.
Reply Keep(const QString& folder, const QByteArray& recording) {
  const QString path = folder + u'/' + QLatin1String(kSent);
  QFile file(path);
  if (!QDir().mkpath(folder) || !file.open(QIODevice::WriteOnly) || file.write(recording) != recording.size() ||
      !file.flush())
    return Reply::NotNow(QStringLiteral("The recording cannot be written below the root folder."));
  RecordFile read;
  QString error;
  return Replay::Read(path, &read, &error) ? Reply() : Reply::Bad(error.replace(path, QLatin1String(kSent)));
}

QJsonValue TextOrNull(const QString& text) {
  return text.isEmpty() ? QJsonValue() : QJsonValue(text);
}
}  // namespace

SecondBench::SecondBench(const QString& folder, QObject* parent) : QObject(parent), mHome(folder) {
  QDir(mHome).removeRecursively();  // of a bench that was killed
}

SecondBench::~SecondBench() {
  if (mReader) mReader->wait();
  if (mChild) mChild->disconnect(this);
  delete mChild;  // it is ended
  QDir(mHome).removeRecursively();
}

void SecondBench::Start(const QByteArray& recording, bool isFast, const std::function<void(const Reply&)>& done) {
  if (mReader) return done(Reply::NotNow(QStringLiteral("Another recording is being read.")));
  const QString folder = QStringLiteral("%1/%2").arg(mHome).arg(++mSent);
  const auto reply = std::make_shared<Reply>();
  mReader.reset(QThread::create([folder, recording, reply] { *reply = Keep(folder, recording); }));
  connect(mReader.get(), &QThread::finished, this, [this, folder, isFast, reply, done] {
    mReader->wait();
    mReader.reset();
    if (reply->IsGood())
      Replace(folder, isFast);
    else
      QDir(folder).removeRecursively();
    done(*reply);
  });
  mReader->start();
}

void SecondBench::Replace(const QString& folder, bool isFast) {
  if (!mFolder.isEmpty() && !mChild) QDir(mFolder).removeRecursively();
  mFolder = folder;
  mIsFast = isFast;
  mAddress.clear();
  mSummary.clear();
  mDifferences.clear();
  mNumbers.clear();
  mPictures.clear();
  mIsNext = mChild != nullptr;
  if (mChild)
    End();
  else
    Launch();
  emit Changed();
}

void SecondBench::Launch() {
  mIsNext = false;
  QStringList arguments{QStringLiteral("--replay"),      mFolder + u'/' + QLatin1String(kSent),
                        QStringLiteral("--port"),        QStringLiteral("0"),
                        QStringLiteral("--differences"), mFolder + u'/' + QLatin1String(kDifferences)};
  if (mIsFast) arguments << QStringLiteral("--fast");
  mChild = new Child(QCoreApplication::applicationFilePath(), arguments, SIGTERM, this);
  connect(mChild, &Child::Output, this, &SecondBench::TakeOutput);
  connect(mChild, &Child::Diagnostic, this, &SecondBench::TakeError);
  connect(mChild, &Child::Finished, this, &SecondBench::Finished);
  mRunning = mFolder;
  mChild->Start();
}

// One that has not begun has nothing to end.
void SecondBench::End() {
  mChild->Stop();
  if (mChild->IsOver()) Finished();
}

// It is not started again.
void SecondBench::Finished() {
  mChild->Stop();
  mChild->deleteLater();
  mChild = nullptr;
  if (mRunning == mFolder)
    FindPictures();
  else
    QDir(mRunning).removeRecursively();
  if (mIsNext) Launch();
  emit Changed();
}

Reply SecondBench::Stop() {
  if (!mChild) return Reply::NotNow(QStringLiteral("No recording is being replayed."));
  mIsNext = false;
  End();
  return {};
}

// What the one before the newest still says is nobody's.
void SecondBench::TakeOutput(const QString& line) {
  if (mRunning != mFolder) return;
  if (line.startsWith(QLatin1String(kAddress)))
    mAddress = line.mid(qsizetype{sizeof kAddress} - 1);
  else if (!Replay::IsDifference(line))
    mSummary = line;
  else if (mDifferences.size() < kMost)
    mDifferences << line;
  FindPictures();
  emit Changed();
}

void SecondBench::TakeError(const QString& line) {
  // Why it could not be.
  if (mRunning == mFolder && line.startsWith(QLatin1String(kError))) mSummary = line.mid(qsizetype{sizeof kError} - 1);
}

void SecondBench::FindPictures() {
  const QDir folder(mFolder + u'/' + QLatin1String(kDifferences));
  for (const QString& name : folder.entryList(QDir::Files)) {
    static const QRegularExpression expected(
        QRegularExpression::anchoredPattern(QStringLiteral("before-input-([0-9]{1,9})-expected\\.png")));
    const int number = expected.match(name).captured(1).toInt();
    if (number == 0 || mNumbers.contains(number) || mNumbers.size() == kMost) continue;
    mNumbers << number;
    mPictures[PathOf(number, "")] = folder.filePath(QStringLiteral("before-input-%1.png").arg(number));
    mPictures[PathOf(number, "-expected")] = folder.filePath(name);
  }
  std::sort(mNumbers.begin(), mNumbers.end());
}

QJsonValue SecondBench::State() const {
  if (mFolder.isEmpty()) return {};
  QJsonArray pictures;
  for (const int number : mNumbers)
    pictures.append(QJsonObject{{QStringLiteral("drawn"), PathOf(number, "").mid(1)},
                                {QStringLiteral("expected"), PathOf(number, "-expected").mid(1)}});
  return QJsonObject{{QStringLiteral("address"), TextOrNull(mAddress)},
                     {QStringLiteral("running"), mChild != nullptr},
                     {QStringLiteral("summary"), TextOrNull(mSummary)},
                     {QStringLiteral("differences"), QJsonArray::fromStringList(mDifferences)},
                     {QStringLiteral("pictures"), pictures}};
}
