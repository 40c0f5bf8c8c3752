#include "bench/record/recordwriter.h"

#include <QBuffer>
#include <QFileInfo>
#include <QImage>
#include <algorithm>
#include <cerrno>
#include <cstdio>

#include "bench/camera/bench.h"
#include "bench/record/recordlook.h"

namespace {
constexpr int kReaction = 250;        // milliseconds
constexpr qint64 kReserve = 2 << 20;  // bytes: the longest line and the last one

using Kind = RecordEntry::Kind;
}  // namespace

RecordWriter::RecordWriter(Bench& bench, QObject* parent) : QObject(parent), mBench(bench) {}

RecordWriter::~RecordWriter() {
  if (mFile.isOpen() && !mHasInput) mFile.remove();
}

bool RecordWriter::Open(const QString& path, bool replaces, const RecordFile& begin, QString* error) {
  mPath = path;
  mFile.setFileName(path + QStringLiteral(".part"));
  const QFileInfo there(path);
  if (there.exists() && !there.isFile()) {
    *error = QStringLiteral("The recording %1 cannot be written: something else has this name.").arg(path);
    return false;
  }
  if (there.exists() && !replaces) {
    *error = QStringLiteral("The recording %1 is there already: only --force replaces it.").arg(path);
    return false;
  }
  if (!mFile.open(QIODevice::WriteOnly | QIODevice::Unbuffered) || !WriteLine(begin.FirstLine())) {
    *error = QStringLiteral("The recording %1 cannot be written: %2.").arg(path, mFile.errorString());
    return false;
  }
  mLook = std::make_unique<RecordLook>(mBench);
  // Before the interface can answer it.
  connect(&mBench.TheFinger(), &Finger::Touching, this, [this] { mTouched = mLook->Seen(); });
  connect(&mBench.Log(), &EventLog::Added, this, &RecordWriter::TakeLog);
  connect(&mBench, &Bench::EventTaken, this, [this](const QJsonObject& request) { TakeInput(Kind::Event, request); });
  connect(&mBench, &Bench::ActionTaken, this, [this](const QJsonObject& request) { TakeInput(Kind::Action, request); });
  connect(&mBench, &Bench::PictureTaken, this, [this](const QByteArray& bmp) {
    QBuffer png;
    QImage::fromData(bmp).save(&png, "PNG");
    TakeInput(Kind::Picture, {{QStringLiteral("png"), QLatin1String(png.data().toBase64())}});
  });
  connect(&mBench, &Bench::Stored, this, [this](const QJsonObject& what) {
    Write({Kind::Stored, 0, {{QStringLiteral("stored"), what}}});
  });
  return true;
}

void RecordWriter::Finish() {
  if (!mFile.isOpen()) return;
  Write({Kind::End, 0, {{QStringLiteral("seen"), mLook->Seen()}}});
  if (!mHasInput)
    GiveUp(QStringLiteral("Nothing was done to the camera: there is no recording %1.").arg(mPath));
  else
    mFile.close();
}

void RecordWriter::TakeLog(const QJsonObject& entry) {
  auto recorded = RecordEntry::OfLog(entry);
  if (!recorded) return;
  // Where the finger goes on depends on how long it was down, not on what is shown.
  if (entry.value(QLatin1String("name")) == QLatin1String("press") && recorded->kind == Kind::Touch)
    AddSeen(&*recorded, mTouched);
  Write(*recorded);
}

void RecordWriter::TakeInput(Kind kind, const QJsonObject& request) {
  RecordEntry entry{kind, 0, {{QStringLiteral("request"), request}}};
  AddSeen(&entry, mLook->Seen());
  Write(entry);
}

// What was shown, unless the interface may not yet have shown what the input before has done.
void RecordWriter::AddSeen(RecordEntry* entry, const QJsonObject& seen) {
  if (!mSinceInput.isValid() || mSinceInput.hasExpired(kReaction)) entry->body.insert(QStringLiteral("seen"), seen);
  mSinceInput.start();
}

void RecordWriter::Write(RecordEntry entry) {
  entry.ms = mLastMs = std::max(mLastMs, mBench.SessionMs());  // a replay that is late puts time back in
  if (!mFile.isOpen()) return;
  const bool isFirst = entry.IsInput() && !mHasInput;
  QString reason;
  if (!WriteLine(entry.Line()))
    reason = mFile.errorString();
  else if (isFirst && std::rename(QFile::encodeName(mFile.fileName()), QFile::encodeName(mPath)) != 0)
    reason = qt_error_string(errno);
  else
    mHasInput |= isFirst;
  if (entry.IsInput()) ++mInputs;
  if (mMost > 0 && mBytes > mMost - kReserve && entry.kind != Kind::End) {
    Finish();
    emit Failed(QStringLiteral("The recording has %1 MiB: it has ended.").arg(mMost >> 20));
  }
  if (!reason.isEmpty()) GiveUp(QStringLiteral("The recording %1 cannot be written any more: %2.").arg(mPath, reason));
}

bool RecordWriter::WriteLine(const QByteArray& line) {
  mBytes += line.size();
  return mFile.write(line) == line.size();
}

void RecordWriter::GiveUp(const QString& sentence) {
  if (!mFile.isOpen()) return;
  if (mHasInput)
    mFile.close();
  else
    mFile.remove();
  emit Failed(sentence);
}
