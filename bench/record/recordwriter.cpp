#include "bench/record/recordwriter.h"

#include <QBuffer>
#include <QImage>
#include <algorithm>

#include "bench/camera/bench.h"
#include "bench/record/recordlook.h"

namespace {
constexpr int kReaction = 250;  // milliseconds

using Kind = RecordEntry::Kind;
}  // namespace

RecordWriter::RecordWriter(Bench& bench, QObject* parent) : QObject(parent), mBench(bench) {}

RecordWriter::~RecordWriter() = default;

bool RecordWriter::Open(const QString& path, const RecordFile& begin, QString* error) {
  mFile.setFileName(path);
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
  if (mFile.isOpen()) Write({Kind::End, 0, {{QStringLiteral("seen"), mLook->Seen()}}});
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
  if (!mFile.isOpen() || WriteLine(entry.Line())) return;
  const QString reason = mFile.errorString();
  mFile.close();
  emit Failed(QStringLiteral("The recording %1 cannot be written any more: %2.").arg(mFile.fileName(), reason));
}

bool RecordWriter::WriteLine(const QByteArray& line) {
  return mFile.write(line) == line.size();
}
