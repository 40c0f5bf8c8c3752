#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QRegularExpression>
#include <QStandardPaths>
#include <QThread>

#include "perf/fail.h"
#include "perf/measurements.h"
#include "perf/stage.h"
#include "perf/table.h"

namespace {
constexpr QPoint kMenuKey(265, 33), kDriving(80, 255), kBrightness(400, 125), kHome(40, 30), kViewKey(40, 33);
constexpr int kRestMs = 800, kNoticeMs = 2500;

/// The calls of a program that change the files of the camera's card and flash, by a tracer.
class Trace {
public:
  struct Writes {
    int opened = 0, synced = 0, syncedFolders = 0, renamed = 0, removed = 0;
    double bytes = 0;
  };

  Trace(const QString& tracer, const Stage& stage, const Program& program)
      : mRoot(stage.Path("/")), mFile(stage.Path("/run/trace")) {
    mTracer.setProcessChannelMode(QProcess::MergedChannels);
    mTracer.start(
        tracer,
        {"-f", "-y", "-o", mFile.fileName(), "-e",
         "trace=open,openat,creat,write,writev,pwrite64,fsync,fdatasync,rename,renameat,renameat2,unlink,unlinkat",
         "-p", QString::number(program.Id())});
    while (!mTracer.readAll().contains("attached"))
      if (!mTracer.waitForReadyRead(5000)) Fail("the tracer does not attach");
  }
  ~Trace() {
    mTracer.terminate();
    mTracer.waitForFinished();
  }

  /// Since the last call.
  Writes Take() {
    Writes writes;
    if (!mFile.isOpen() && !mFile.open(QIODevice::ReadOnly)) Fail("the tracer writes nothing");
    static const QRegularExpression open(QStringLiteral("(?:openat|open|creat)\\(.*\"([^\"]*)\".*(?:O_WRONLY|O_RDWR)")),
        write(QStringLiteral(" p?writev?(?:64)?\\(\\d+<([^>]*)>.*, (\\d+)(?: <unf|\\) )")),
        sync(QStringLiteral(" f(?:data)?sync\\(\\d+<([^>]*)>")),
        rename(QStringLiteral(" rename(?:at2?)?\\(.*\"([^\"]*)\"")),
        remove(QStringLiteral(" unlink(?:at)?\\(.*\"([^\"]*)\""));
    for (const QByteArray& bytes : mFile.readAll().split('\n')) {
      const QString line = QString::fromUtf8(bytes);
      const auto isOf = [&](const QRegularExpression& call, QRegularExpressionMatch* match) {
        *match = call.match(line);
        return match->hasMatch() && IsKept(match->captured(1));
      };
      QRegularExpressionMatch match;
      if (line.contains(QLatin1String("= -1 "))) continue;
      if (isOf(open, &match)) ++writes.opened;
      if (isOf(write, &match)) writes.bytes += match.captured(2).toDouble();
      if (isOf(sync, &match)) ++(QFileInfo(match.captured(1)).isDir() ? writes.syncedFolders : writes.synced);
      if (isOf(rename, &match)) ++writes.renamed;
      if (isOf(remove, &match)) ++writes.removed;
    }
    return writes;
  }

private:
  /// Whether a path is on the camera's card or flash: below the root, and no device, pipe or kernel file.
  bool IsKept(const QString& path) const {
    if (!path.startsWith(mRoot)) return false;
    const QString folder = path.mid(mRoot.size()).section(u'/', 0, 0);
    return folder != QLatin1String("dev") && folder != QLatin1String("proc") && folder != QLatin1String("run");
  }

  QString mRoot;
  QFile mFile;
  QProcess mTracer;
};

void AddRows(Table& table, const QString& key, const QString& what, const Trace::Writes& writes) {
  const auto add = [&](const char* end, const char* name, double value, Goal goal, const QString& remark = {}) {
    table.AddValue(qPrintable(key + QLatin1String(end)), what + QLatin1String(name), "", value, goal, remark);
  };
  add("-files", "files opened", writes.opened, {Goal::Exactly, 1},
      QStringLiteral("(%1 renamed, %2 removed)").arg(writes.renamed).arg(writes.removed));
  add("-bytes", "bytes", writes.bytes, {});
  add("-syncs", "fsync of a file", writes.synced, {Goal::Exactly, 1});
  add("-folder-syncs", "fsync of a folder", writes.syncedFolders, {Goal::Exactly, 1});
}
}  // namespace

void MeasureSaving(Stage& stage, Table& table) {
  const QString tracer = QStandardPaths::findExecutable(QStringLiteral("strace"));
  if (tracer.isEmpty()) {
    QTextStream(stderr) << "What an option writes is not counted: there is no strace.\n";
    return;
  }
  const std::unique_ptr<Program> gui = stage.StartInterface();
  stage.Tap(kMenuKey);
  stage.Tap(kDriving);
  QThread::msleep(kRestMs);
  Trace trace(tracer, stage, *gui);
  trace.Take();
  stage.Tap(kBrightness);
  stage.Tap(kHome);
  QThread::msleep(kRestMs);
  AddRows(table, QStringLiteral("option"), QStringLiteral("an option and the home key: "), trace.Take());
  QThread::msleep(kNoticeMs);
  trace.Take();
  stage.Tap(kViewKey);
  QThread::msleep(kRestMs);
  AddRows(table, QStringLiteral("view"), QStringLiteral("the view key: "), trace.Take());
}
