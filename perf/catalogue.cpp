// perf-catalogue COUNT: what the catalogue of a card of COUNT recordings costs beside a minimal C program. Prints JSON.
#include <fcntl.h>
#include <malloc.h>
#include <sys/stat.h>
#include <unistd.h>

#include <QCoreApplication>
#include <QDateTime>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QTextStream>
#include <QtEndian>
#include <algorithm>
#include <vector>

#include "gui/base/devicepath.h"
#include "gui/recordings/recfilethread.h"
#include "gui/recordings/recordingfilemanager.h"

namespace {
constexpr int kScans = 15;
constexpr int kMostTraced = 50000;  // recordings: a traced call takes twenty times as long
constexpr int kSeconds = 60;        // of each recording
constexpr char kRoot[] = "DASHCAM_ROOT";

[[noreturn]] void Fail(const char* sentence) {
  QTextStream(stderr) << "perf: " << sentence << '\n';
  std::exit(1);
}

/// An AVI of which only what the catalogue reads is there, with the recorder's trailer.
QByteArray Recording() {
  QByteArray avi(1024, '\0');
  avi.replace(0, 4, "RIFF").replace(8, 8, "AVI LIST").replace(20, 8, "hdrlavih");
  qToLittleEndian<quint32>(56, avi.data() + 28);
  qToLittleEndian<quint32>(30, avi.data() + 132);
  qToLittleEndian<quint32>(30 * kSeconds, avi.data() + 140);
  return avi.replace(1020, 4, QByteArray("\0\1^\0", 4));
}

/// Recordings of all kinds and both cameras, one each second; the folder has them in another order.
void FillCard(const QString& card, int count) {
  const QByteArray recording = Recording();
  const char* const kinds[] = {"rec", "rec", "rec", "pmr", "evt", "ndf"};
  const QDateTime first(QDate(2023, 1, 1), QTime(12, 0), Qt::UTC);
  for (int i = 0; i < count; ++i) {
    const qint64 second = qint64{i} * 7919 % count;
    const QDateTime start = first.addSecs(second);
    const QByteArray name = QFile::encodeName(
        QStringLiteral("%1/%2%3_%4.avi")
            .arg(card, QLatin1String(kinds[i % 6]), QString::number(i % 2), start.toString("yyyyMMdd_HHmmss")));
    const int file = open(name.constData(), O_CREAT | O_EXCL | O_WRONLY | O_CLOEXEC, 0600);
    const timespec modified{time_t(start.toSecsSinceEpoch() + kSeconds), 0};
    const timespec times[] = {modified, modified};
    if (file < 0 || write(file, recording.constData(), size_t(recording.size())) != recording.size() ||
        futimens(file, times) != 0)
      Fail("a recording cannot be written");
    close(file);
  }
}

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

double Median(std::vector<double> values) {
  std::sort(values.begin(), values.end());
  return values[values.size() / 2];
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
  FillCard(card, count);
  std::vector<double> scans, bareScans;
  for (int i = 0; i < kScans; ++i) {
    bareScans.push_back(BareScan(card));
    RecordingFileManager manager;
    scans.push_back(Scan(&manager));
  }
  const double before = Heap();
  RecordingFileManager manager;
  if (!manager.ReadFileList(QLatin1String(device::kCard))) Fail("nothing is found on the card");
  const double bytes = (Heap() - before) / count;
  const FileItemList* front = manager.GetFileItem(ALL_ASCENDING_FRONT);
  const FileItemList* rear = manager.GetFileItem(ALL_ASCENDING_REAR);
  if (front->size() + rear->size() != count || front->at(0).recTime != kSeconds) Fail("the catalogue is wrong");
  const QJsonObject figures{{"scan", Median(scans)},
                            {"bare", Median(bareScans)},
                            {"bytes", bytes},
                            {"calls", count > kMostTraced ? 0 : SystemCalls(root.path())}};
  QTextStream(stdout) << QJsonDocument(figures).toJson();
  return 0;
}
