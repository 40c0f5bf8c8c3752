// perf-catalogue COUNT: what the catalogue of a card of COUNT recordings costs beside a minimal C program. Prints JSON.
#include <fcntl.h>
#include <malloc.h>
#include <unistd.h>

#include <QCoreApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QTextStream>
#include <algorithm>
#include <vector>

#include "gui/base/devicepath.h"
#include "gui/recordings/recfilethread.h"
#include "gui/recordings/recordingfilemanager.h"
#include "perf/card.h"
#include "perf/fail.h"

namespace {
constexpr int kScans = 15;
constexpr int kMostCold = 10000;    // recordings: reading all of a larger card takes minutes
constexpr int kMostTraced = 50000;  // recordings: a traced call takes twenty times as long
constexpr char kRoot[] = "DASHCAM_ROOT";

/// Milliseconds of a scan, on a thread of its own as in the interface.
double Scan(RecordingFileManager* manager) {
  RecFileThread thread(nullptr, manager);
  QElapsedTimer clock;
  clock.start();
  thread.start();
  thread.wait();
  return double(clock.nsecsElapsed()) / 1e6;
}

double BareScan(const QString& card) {
  QProcess bare;
  bare.start(QStringLiteral(BINARY_DIR "/perf/perf-catalogue-bare"), {card});
  if (!bare.waitForFinished(60000) || bare.exitCode() != 0) Fail("the minimal program does not run");
  return bare.readAllStandardOutput().split(' ').first().toDouble();
}

/// What the files of the card hold is read from the disk next time; their names and times stay in memory.
void Forget(const QString& card) {
  sync();  // what was not written stays
  const QDir folder(card);
  for (const QString& name : folder.entryList(QDir::Files)) {
    const int file = open(folder.filePath(name).toLocal8Bit().constData(), O_RDONLY | O_CLOEXEC);
    if (file < 0 || posix_fadvise(file, 0, 0, POSIX_FADV_DONTNEED) != 0) Fail("a recording cannot be forgotten");
    close(file);
  }
}

QJsonArray Array(const std::vector<double>& values) {
  QJsonArray array;
  for (const double value : values) array.append(value);
  return array;
}

/// The system calls of a scan, those of the program's start and end included; 0 when nothing here can count them.
double SystemCalls(const QString& root) {
  const QString tracer = QStandardPaths::findExecutable(QStringLiteral("strace"));
  if (tracer.isEmpty()) return 0;
  QProcess trace;
  const QString counts = root + QStringLiteral("/calls");
  trace.start(tracer, {"-f", "-c", "-U", "name,calls", "-o", counts, QCoreApplication::applicationFilePath(), "scan"});
  QFile file(counts);
  if (!trace.waitForFinished(120000) || trace.exitCode() != 0 || !file.open(QIODevice::ReadOnly)) return 0;
  for (const QByteArray& line : file.readAll().split('\n'))
    if (line.startsWith("total")) return line.simplified().split(' ').last().toDouble();
  return 0;
}

/// Bytes on the heap.
double Heap() {
  const auto info = mallinfo2();
  return double(info.uordblks + info.hblkhd);
}
}  // namespace

int main(int argc, char** argv) {
  QCoreApplication application(argc, argv);
  const int count = argc == 2 ? QByteArray(argv[1]).toInt() : 0;
  qInstallMessageHandler([](QtMsgType, const QMessageLogContext&, const QString&) {});
  if (count == 0 && qEnvironmentVariableIsSet(kRoot)) {  // under the tracer
    RecordingFileManager manager;
    Scan(&manager);
    return 0;
  }
  if (count < 1) Fail("usage: perf-catalogue COUNT");

  QTemporaryDir root;
  qputenv(kRoot, root.path().toLocal8Bit());
  const QString card = DevicePath(QLatin1String(device::kCard));
  if (!QDir().mkpath(card)) Fail("no folder for the card");
  if (!FillCard(card, count)) Fail("a recording cannot be written");
  std::vector<double> scans, bareScans, coldScans, coldBareScans;
  for (int i = 0; i < kScans; ++i) {
    bareScans.push_back(BareScan(card));
    RecordingFileManager manager;
    scans.push_back(Scan(&manager));
  }
  for (int i = 0; i < kScans && count <= kMostCold; ++i) {
    Forget(card);
    coldBareScans.push_back(BareScan(card));
    Forget(card);
    RecordingFileManager manager;
    coldScans.push_back(Scan(&manager));
  }
  const double before = Heap();
  RecordingFileManager manager;
  if (!manager.ReadFileList(QLatin1String(device::kCard))) Fail("nothing is found on the card");
  const double bytes = (Heap() - before) / count;
  const FileItemList* front = manager.GetFileItem(ALL_ASCENDING_FRONT);
  const FileItemList* rear = manager.GetFileItem(ALL_ASCENDING_REAR);
  if (front->size() + rear->size() != count || front->at(0).recTime != kRecordingSeconds)
    Fail("the catalogue is wrong");
  const QJsonObject figures{{"scans", Array(scans)},
                            {"bares", Array(bareScans)},
                            {"coldScans", Array(coldScans)},
                            {"coldBares", Array(coldBareScans)},
                            {"bytes", bytes},
                            {"calls", count > kMostTraced ? 0 : SystemCalls(root.path())}};
  QTextStream(stdout) << QJsonDocument(figures).toJson();
  return 0;
}
