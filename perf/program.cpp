#include "perf/program.h"

#include <sys/prctl.h>

#include <QDir>
#include <QFile>
#include <csignal>

#include "perf/fail.h"

namespace {
QByteArray Read(const QString& path) {
  QFile file(path);
  return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

/// The number behind a word at the beginning of a line.
double Line(const QByteArray& text, const char* word) {
  for (const QByteArray& line : text.split('\n'))
    if (line.startsWith(word)) return line.mid(qsizetype(qstrlen(word))).trimmed().split(' ').first().toDouble();
  return 0;
}
}  // namespace

Program::Program(const QString& program, const QStringList& arguments, const QProcessEnvironment& environment) {
  mProcess.setProcessEnvironment(environment);
  mProcess.setStandardOutputFile(QProcess::nullDevice());
  mProcess.setStandardErrorFile(QProcess::nullDevice());
  mProcess.setChildProcessModifier([] { prctl(PR_SET_PDEATHSIG, SIGKILL); });
  mProcess.start(program, arguments);
  if (!mProcess.waitForStarted()) Fail(program + QStringLiteral(" does not start"));
}

Program::~Program() {
  mProcess.kill();
  mProcess.waitForFinished();
}

QByteArray Program::Proc(const char* name) const {
  return Read(QStringLiteral("/proc/%1/%2").arg(Id()).arg(QLatin1String(name)));
}

double Program::Resident() const {
  return Line(Proc("smaps_rollup"), "Rss:");
}

double Program::PrivateDirty() const {
  return Line(Proc("smaps_rollup"), "Private_Dirty:");
}

double Program::SumOfThreads(const char* name, double (*figure)(const QByteArray&)) const {
  const QString tasks = QStringLiteral("/proc/%1/task/").arg(Id());
  double sum = 0;
  for (const QString& task : QDir(tasks).entryList(QDir::Dirs | QDir::NoDotAndDotDot))
    sum += figure(Read(tasks + task + QLatin1Char('/') + QLatin1String(name)));
  return sum;
}

double Program::ProcessorTime() const {
  return SumOfThreads("schedstat", [](const QByteArray& text) { return text.split(' ').first().toDouble(); });
}

double Program::Sleeps() const {
  return SumOfThreads("status", [](const QByteArray& text) { return Line(text, "voluntary_ctxt_switches:"); });
}
