#include "bench/record/recordondemand.h"

#include <QFile>
#include <QRandomGenerator>

#include "bench/camera/bench.h"
#include "bench/record/recordroot.h"
#include "bench/record/recordwriter.h"
#include "bench/supervise/rootfolder.h"
#include "recorder/service/members.h"

namespace {
constexpr char kFile[] = "/run/recording.jsonl";
constexpr char kBegins[] = "The camera is switched off and on: a recording begins.";
}  // namespace

RecordOnDemand::RecordOnDemand(Bench& bench, const RootFolder& root, bool isTaken, QObject* parent)
    : QObject(parent), mBench(bench), mRoot(root), mIsTaken(isTaken), mPath(root.Path(kFile)) {
  for (const char* rest : {"", ".part"}) QFile::remove(mPath + QLatin1String(rest));  // of an earlier bench
  mBench.TellAlso(QStringLiteral("record"), [this] { return State(); });
}

RecordOnDemand::~RecordOnDemand() = default;

Reply RecordOnDemand::Take(const QJsonObject& request) {
  Members members(request);
  const bool on = members.Flag("on");
  if (const QString error = members.Error(); !error.isEmpty()) return Reply::Bad(error);
  if (mIsTaken) return Reply::NotNow(QStringLiteral("The bench records since its start, by --record."));
  if (on && mWriter) return Reply::NotNow(QStringLiteral("What happens is being recorded already."));
  if (on) return mBench.SwitchOff(kBegins, [this] { Begin(); });
  if (!mWriter) return Reply::NotNow(QStringLiteral("Nothing is being recorded."));
  End({});
  return {};
}

// The camera is off: what its root has now is what a replay begins with.
void RecordOnDemand::Begin() {
  RecordFile begin;
  begin.seed = QRandomGenerator::global()->generate();
  begin.language = mBench.Language();
  begin.root = recordroot::Describe(mRoot.Path(), false);
  begin.clock = QDateTime::currentDateTime();
  mBench.Begin(begin.seed, begin.clock);
  mWriter = std::make_unique<RecordWriter>(mBench);
  mWriter->EndAt(kMost);
  connect(
      mWriter.get(), &RecordWriter::Failed, this, [this](const QString& why) { End(why); }, Qt::QueuedConnection);
  QFile::remove(mPath);
  mLast = {};
  if (QString error; !mWriter->Open(mPath, true, begin, &error)) End(error);
  mBench.SwitchOn();
}

// `note`: why it has ended by itself.
void RecordOnDemand::End(const QString& note) {
  if (!mWriter) return;
  disconnect(mWriter.get(), nullptr, this, nullptr);
  mWriter->Finish();
  mLast = mWriter->Inputs() > 0 ? QJsonValue(Describe(false)) : QJsonValue();
  mWriter.reset();
  mBench.EndRecord();
  if (!note.isEmpty()) mBench.Log().Add("note", note);
  emit mBench.StateChanged();
}

// A line that is just being written is left out.
QByteArray RecordOnDemand::File() const {
  QFile file(mPath);
  const QByteArray bytes = file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
  return bytes.left(bytes.lastIndexOf('\n') + 1);
}

QJsonObject RecordOnDemand::Describe(bool on) const {
  return {{QStringLiteral("on"), on},
          {QStringLiteral("seconds"), mBench.SessionMs() / 1000},
          {QStringLiteral("inputs"), mWriter->Inputs()},
          {QStringLiteral("bytes"), mWriter->Bytes()}};
}

QJsonValue RecordOnDemand::State() const {
  return mWriter ? QJsonValue(Describe(true)) : mLast;
}
