#include "bench/record/replay.h"

#include <QDir>
#include <QJsonArray>

#include "bench/record/recordfile.h"
#include "bench/record/recordroot.h"
#include "bench/supervise/rootfolder.h"
#include "tests/fuzz/readers/reader.h"

namespace {
QByteArray Written(const RecordFile& file) {
  QByteArray bytes = file.FirstLine();
  for (const RecordEntry& entry : file.entries) bytes += entry.Line();
  return bytes;
}

// No file of the root state leaves the root, and those that can be written are there as they are told.
void RequireRoot(const RecordFile& file) {
  const QString root = Root().Path(QStringLiteral("/replayed"));
  const QJsonArray files = file.root.value(QLatin1String("files")).toArray();
  REQUIRE(files.size() <= 200);
  for (const QJsonValue& each : files) {
    const QString path = each[QLatin1String("path")].toString();
    REQUIRE(QDir::cleanPath(root + path) == root + path && path.size() > 1 && RootFolder::IsOfCamera(path));
  }
  if (files.isEmpty() || !file.root.value(QLatin1String("card")).toArray().isEmpty()) return;
  QString error;
  const bool isGood = recordroot::Restore(file.root, root, &error);
  REQUIRE(isGood ? error.isEmpty() : IsSentence(error));
  if (isGood && files.size() == 1)
    REQUIRE(Root().Read(QStringLiteral("/replayed") + files[0][QLatin1String("path")].toString()) ==
            QByteArray::fromBase64(files[0][QLatin1String("data")].toString().toLatin1()));
  QDir(root).removeRecursively();
}
}  // namespace

void TakeReplay(const QByteArray& bytes) {
  const QString path = Root().Path(QStringLiteral("/tmp/use.jsonl"));
  Root().Write(QStringLiteral("/tmp/use.jsonl"), bytes);
  RecordFile file;
  QString error;
  if (!Replay::Read(path, &file, &error)) {
    REQUIRE(IsSentence(error));
    return;
  }
  REQUIRE(file.HasInput() && file.clock.isValid() && !file.root.isEmpty());
  qint64 ms = 0;
  for (qsizetype i = 0; i < file.entries.size(); ++i) {
    const RecordEntry& entry = file.entries[i];
    REQUIRE(entry.ms >= std::exchange(ms, entry.ms) && entry.ms <= qint64{7} * 86400000);
    REQUIRE(entry.kind != RecordEntry::Kind::End || i == file.entries.size() - 1);
    entry.Essence();
  }
  RequireRoot(file);

  Root().Write(QStringLiteral("/tmp/use.jsonl"), Written(file));
  RecordFile again;
  REQUIRE(Replay::Read(path, &again, &error));
  REQUIRE(Written(again) == Written(file));
}
