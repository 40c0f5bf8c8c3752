// perf-measure FILE: measures the real interface on an X server of its own against the simulated recorder, next to a
// bare Qt program in the same run. Prints a table and writes the figures as JSON.
#include <fcntl.h>
#include <sys/mman.h>
#include <unistd.h>

#include <QCoreApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QRect>
#include <QTextStream>
#include <QThread>
#include <QtEndian>
#include <algorithm>
#include <cstring>
#include <functional>
#include <vector>

#include "bench/panel/touchpanel.h"
#include "bench/supervise/rootfolder.h"
#include "gui/vocabulary/vocabulary.h"
#include "recorder/firmware/recorder.h"

namespace {
constexpr int kStarts = 15, kTouches = 1000, kEvents = 300, kIdleSeconds = 60;
constexpr int kLookUs = 100;  // between two looks at the screen: a busy wait would take one of the machine's cores
constexpr QRect kViewKey(4, 3, 71, 60), kClock(38, 284, 192, 32), kVoltage(394, 284, 78, 32),
    kMiddle(120, 130, 240, 60), kBareLabel(100, 140, 300, 40);

[[noreturn]] void Fail(const char* sentence) {
  QTextStream(stderr) << "perf: " << sentence << '\n';
  std::exit(1);
}

double Part(std::vector<double> values, double part) {
  std::sort(values.begin(), values.end());
  return values[std::min(values.size() - 1, size_t(double(values.size()) * part))];
}

/// The X server and what is on its screen, mapped: looking costs no system call.
class Screen {
public:
  explicit Screen(const QString& folder) {
    mServer.setStandardErrorFile(QProcess::nullDevice());
    mServer.start(QStringLiteral("Xvfb"),
                  {"-displayfd", "1", "-screen", "0", "480x320x24", "-fbdir", folder, "-nolisten", "tcp"});
    while (!mServer.canReadLine())
      if (!mServer.waitForReadyRead(10000)) Fail("no X server");
    mDisplay = QLatin1Char(':') + QString::fromLatin1(mServer.readLine().trimmed());
    const int file = open(qPrintable(folder + QStringLiteral("/Xvfb_screen0")), O_RDONLY | O_CLOEXEC);
    const off_t size = lseek(file, 0, SEEK_END);
    mMap = static_cast<const uchar*>(mmap(nullptr, size_t(size), PROT_READ, MAP_SHARED, file, 0));
    if (mMap == MAP_FAILED) Fail("no framebuffer");
    const auto word = [this](int i) { return qFromBigEndian<quint32>(mMap + i * 4); };
    mPixels = mMap + word(0) + qsizetype{word(19)} * 12;
    mLine = word(12);
  }
  ~Screen() {
    mServer.terminate();
    mServer.waitForFinished();
  }

  QString Display() const { return mDisplay; }
  quint32 Pixel(int x, int y) const {
    return qFromLittleEndian<quint32>(mPixels + qsizetype{y} * mLine + x * 4) & 0xFFFFFF;
  }
  bool Has(const QRect& where, const std::function<bool(quint32)>& wanted) const {
    for (int y = where.top(); y <= where.bottom(); ++y)
      for (int x = where.left(); x <= where.right(); ++x)
        if (wanted(Pixel(x, y))) return true;
    return false;
  }
  QByteArray Copy(const QRect& where) const {
    QByteArray copy;
    for (int y = where.top(); y <= where.bottom(); ++y)
      copy.append(reinterpret_cast<const char*>(mPixels + qsizetype{y} * mLine + where.left() * 4), where.width() * 4);
    return copy;
  }

private:
  QProcess mServer;
  QString mDisplay;
  const uchar* mMap = nullptr;
  const uchar* mPixels = nullptr;
  qsizetype mLine = 0;
};

/// The recorder in a thread of its own, so that it answers while this one looks at the screen.
class RecorderThread : public QThread {
public:
  explicit RecorderThread(const QString& root) : mRoot(root) { start(); }
  ~RecorderThread() override {
    quit();
    wait();
    Recorder::RemoveTransport();
  }
  void Send(int event) {
    QMetaObject::invokeMethod(mRecorder.loadRelaxed(),
                              [this, event] { mRecorder.loadRelaxed()->SendStatus(event, 0); });
  }
  void WaitUntilReady() {
    while (!mRecorder.loadAcquire()) QThread::msleep(1);
  }

protected:
  void run() override {
    Recorder recorder(mRoot);
    QString error;
    if (!recorder.Start(&error)) Fail(qPrintable(error));
    mRecorder.storeRelease(&recorder);
    exec();
    mRecorder.storeRelease(nullptr);
  }

private:
  QString mRoot;
  QAtomicPointer<Recorder> mRecorder;
};

/// A program on the screen. It ends with the object.
class Program {
public:
  Program(const QString& program, const QProcessEnvironment& environment) {
    mProcess.setProcessEnvironment(environment);
    mProcess.setStandardErrorFile(QProcess::nullDevice());
    mClock.start();
    mProcess.start(program, QStringList());
  }
  ~Program() {
    mProcess.kill();
    mProcess.waitForFinished();
  }

  /// Milliseconds from the start until `isThere`.
  double Until(const std::function<bool()>& isThere) {
    while (!isThere()) {
      if (mClock.elapsed() > 20000) Fail("a program does not come up");
      QThread::usleep(kLookUs);
    }
    return double(mClock.nsecsElapsed()) / 1e6;
  }
  /// Resident memory, KiB.
  double Memory() const {
    for (const QByteArray& line : Proc("status").split('\n'))
      if (line.startsWith("VmRSS:")) return line.mid(6).trimmed().split(' ').first().toDouble();
    Fail("no memory figure");
  }
  /// Processor time of all its threads, nanoseconds.
  qint64 ProcessorTime() const {
    qint64 sum = 0;
    const QString tasks = QStringLiteral("/proc/%1/task").arg(mProcess.processId());
    for (const QString& task : QDir(tasks).entryList(QDir::Dirs | QDir::NoDotAndDotDot))
      sum += Read(tasks + QLatin1Char('/') + task + QStringLiteral("/schedstat")).split(' ').first().toLongLong();
    return sum;
  }

private:
  static QByteArray Read(const QString& path) {
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
  }
  QByteArray Proc(const char* name) const {
    return Read(QStringLiteral("/proc/%1/%2").arg(mProcess.processId()).arg(QLatin1String(name)));
  }

  QProcess mProcess;
  QElapsedTimer mClock;
};

/// The figures, in the order in which they were taken.
class Figures {
public:
  void Add(const QString& name, double value, const char* unit, const QString& remark = {}) {
    mJson.insert(name + QLatin1Char(' ') + QLatin1String(unit), value);
    mTable +=
        QStringLiteral("%1 %2 %3  %4\n").arg(name, -44).arg(value, 10, 'f', 2).arg(QLatin1String(unit), -7).arg(remark);
  }
  void Print() const { QTextStream(stdout) << mTable; }
  bool Write(const QString& file) const {
    QFile json(file);
    return json.open(QIODevice::WriteOnly) && json.write(QJsonDocument(mJson).toJson()) > 0;
  }

private:
  QJsonObject mJson;
  QString mTable;
};

QString Times(double value, double other, double goal) {
  return QStringLiteral("%1 x (goal %2 x)").arg(value / other, 0, 'f', 2).arg(goal);
}

void MeasureStart(Figures& figures, Screen& screen, const QProcessEnvironment& environment) {
  const auto isBareThere = [&] {
    return screen.Pixel(0, 0) == 0xFFFFFF && screen.Has(kBareLabel, [](quint32 pixel) { return (pixel & 0xFF) < 100; });
  };
  const auto isWhite = [](quint32 pixel) { return pixel > 0xE0E0E0; };
  const auto isPreviewThere = [&] {
    return screen.Pixel(6, 5) == 0x141112 && screen.Has(kClock, isWhite) && screen.Has(kVoltage, isWhite);
  };
  std::vector<double> bareStart, start, bareMemory, memory;
  for (int i = 0; i < kStarts; ++i) {
    {
      Program bare(QStringLiteral(BINARY_DIR "/perf/perf-bare"), environment);
      bareStart.push_back(bare.Until(isBareThere));
      QThread::msleep(300);
      bareMemory.push_back(bare.Memory());
    }
    Program gui(QStringLiteral(BINARY_DIR "/gui/dashcam-gui"), environment);
    start.push_back(gui.Until(isPreviewThere));
    QThread::msleep(300);
    memory.push_back(gui.Memory());
  }
  figures.Add(QStringLiteral("start, bare Qt program"), Part(bareStart, 0.5), "ms");
  figures.Add(QStringLiteral("start to the first complete preview"), Part(start, 0.5), "ms",
              Times(Part(start, 0.5), Part(bareStart, 0.5), 1.5));
  figures.Add(QStringLiteral("memory, bare Qt program"), Part(bareMemory, 0.5), "KiB");
  figures.Add(QStringLiteral("memory on the preview"), Part(memory, 0.5), "KiB",
              Times(Part(memory, 0.5), Part(bareMemory, 0.5), 1.3));
}

// Milliseconds from `act` until the pixels of `where` have changed.
double UntilChanged(const Screen& screen, const QRect& where, const std::function<void()>& act) {
  const QByteArray before = screen.Copy(where);
  QElapsedTimer clock;
  clock.start();
  act();
  while (screen.Copy(where) == before) {
    if (clock.elapsed() > 5000) Fail("nothing changes on the screen");
    QThread::usleep(kLookUs);
  }
  return double(clock.nsecsElapsed()) / 1e6;
}

void MeasureAnswers(Figures& figures, Screen& screen, TouchPanel& panel, RecorderThread& recorder) {
  std::vector<double> touches, boxes;
  QString error;
  for (int i = 0; i < kTouches; ++i) {
    touches.push_back(UntilChanged(screen, kViewKey, [&] { panel.Press(40, 33, &error); }));
    QThread::msleep(3);
    panel.Release(&error);
    QThread::msleep(7);
  }
  for (int i = 0; i < kEvents; ++i) {
    const int event = i % 2 == 0 ? RECV_ZEL_STATUS_MUTE_ON : RECV_ZEL_STATUS_MUTE_OFF;
    boxes.push_back(UntilChanged(screen, kMiddle, [&] { recorder.Send(event); }));
    QThread::msleep(10);
  }
  figures.Add(QStringLiteral("touch record to pixels, median of 1000"), Part(touches, 0.5), "ms");
  figures.Add(QStringLiteral("touch record to pixels, p99"), Part(touches, 0.99), "ms",
              QStringLiteral("(goal below 16.67)"));
  figures.Add(QStringLiteral("status event to box, median"), Part(boxes, 0.5), "ms");
  figures.Add(QStringLiteral("status event to box, p99"), Part(boxes, 0.99), "ms");
}

void MeasureIdle(Figures& figures, const Program& gui) {
  QThread::sleep(10);  // the last box closes, the overlay hides
  const qint64 before = gui.ProcessorTime();
  QThread::sleep(kIdleSeconds);
  const double seconds = double(gui.ProcessorTime() - before) / 1e9;
  figures.Add(QStringLiteral("processor time in an idle minute"), seconds, "s",
              QStringLiteral("%1 % of a core (goal below 0.2)").arg(seconds * 100 / kIdleSeconds, 0, 'f', 3));
}

void MeasurePainting(Figures& figures) {
  QProcess repaint;
  repaint.setStandardErrorFile(QProcess::nullDevice());
  repaint.start(QStringLiteral(BINARY_DIR "/perf/perf-repaint"), QStringList());
  if (!repaint.waitForFinished(60000) || repaint.exitCode() != 0) Fail("the paint times cannot be taken");
  const QJsonObject times = QJsonDocument::fromJson(repaint.readAllStandardOutput()).object();
  const auto time = [&times](const char* name) { return times.value(QLatin1String(name)).toDouble(); };
  const double copy = time("memcpy");
  figures.Add(QStringLiteral("copy of one frame"), copy, "us");
  figures.Add(QStringLiteral("full repaint of the preview"), time("preview"), "us", Times(time("preview"), copy, 5));
  figures.Add(QStringLiteral("full repaint of the clock page"), time("clock page"), "us",
              Times(time("clock page"), copy, 5));
  figures.Add(QStringLiteral("full repaint of a menu"), time("menu"), "us", Times(time("menu"), copy, 5));
  figures.Add(QStringLiteral("another page of 50,000 recordings"), time("page") / 1000, "ms",
              QStringLiteral("(goal below 16.67)"));
  figures.Add(QStringLiteral("the other camera's 50,000"), time("toggle") / 1000, "ms",
              QStringLiteral("(goal below 16.67)"));
  figures.Add(QStringLiteral("repaint of one key"), time("key"), "us", Times(time("key"), copy, 1.3));
}

void MeasureCatalogue(Figures& figures) {
  double callsBefore = 0;
  int countBefore = 0;
  for (const int count : {1000, 10000, 50000, 200000}) {
    QProcess catalogue;
    catalogue.setStandardErrorFile(QProcess::nullDevice());
    catalogue.start(QStringLiteral(BINARY_DIR "/perf/perf-catalogue"), {QString::number(count)});
    if (!catalogue.waitForFinished(300000) || catalogue.exitCode() != 0) Fail("the catalogue cannot be measured");
    const QJsonObject taken = QJsonDocument::fromJson(catalogue.readAllStandardOutput()).object();
    const auto figure = [&taken](const char* name) { return taken.value(QLatin1String(name)).toDouble(); };
    figures.Add(QStringLiteral("scan of %1 recordings, minimal C program").arg(count), figure("bare"), "ms");
    figures.Add(QStringLiteral("scan of %1 recordings").arg(count), figure("scan"), "ms",
                Times(figure("scan"), figure("bare"), 1.15));
    if (count == 50000) {
      if (figure("calls") > 0)
        figures.Add(QStringLiteral("system calls for each recording"),
                    (figure("calls") - callsBefore) / (count - countBefore), "",
                    QStringLiteral("(goal below 5.1: opened, asked for its time, read twice, closed)"));
      figures.Add(QStringLiteral("memory for each recording"), figure("bytes"), "bytes",
                  QStringLiteral("(goal below 320)"));
    }
    callsBefore = figure("calls");
    countBefore = count;
  }
  QProcess list;
  list.setStandardErrorFile(QProcess::nullDevice());
  list.start(QStringLiteral(BINARY_DIR "/perf/perf-list"), {QStringLiteral("10000")});
  if (!list.waitForFinished(60000) || list.exitCode() != 0) Fail("the way to the list cannot be measured");
  const QJsonObject taken = QJsonDocument::fromJson(list.readAllStandardOutput()).object();
  const double ms = taken.value(QLatin1String("list")).toDouble();
  figures.Add(QStringLiteral("yes to the list of 10,000 recordings, without the recorder's second"), ms, "ms",
              Times(ms, taken.value(QLatin1String("scan")).toDouble(), 1.2));
}
}  // namespace

int main(int argc, char** argv) {
  QCoreApplication application(argc, argv);
  if (argc != 2) Fail("usage: perf-measure FILE");
  RootFolder root;
  QString error;
  if (!root.Choose(QString(), &error) || !root.Take(&error) ||
      !root.Furnish(QStringLiteral(BINARY_DIR "/pictures"), &error))
    Fail(qPrintable(error));
  qputenv("PLATFORM_KEY", QByteArray::number(root.PlatformKey()));
  QDir().mkpath(root.Path("/run"));
  Screen screen(root.Path("/run"));
  TouchPanel panel;
  if (!panel.Open(root.Path("/dev/input/event0"), &error)) Fail(qPrintable(error));
  RecorderThread recorder(root.Path());
  recorder.WaitUntilReady();
  QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
  environment.insert(QStringLiteral("DASHCAM_ROOT"), root.Path());
  environment.insert(QStringLiteral("DISPLAY"), screen.Display());
  environment.insert(QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("xcb"));
  environment.insert(QStringLiteral("PATH"), root.Path("/bin:") + environment.value(QStringLiteral("PATH")));

  Figures figures;
  MeasureStart(figures, screen, environment);
  {
    Program gui(QStringLiteral(BINARY_DIR "/gui/dashcam-gui"), environment);
    gui.Until([&screen] { return screen.Pixel(6, 5) == 0x141112; });
    QThread::msleep(500);
    MeasureAnswers(figures, screen, panel, recorder);
    MeasureIdle(figures, gui);
  }
  MeasurePainting(figures);
  MeasureCatalogue(figures);
  figures.Print();
  if (!figures.Write(QString::fromLocal8Bit(argv[1]))) Fail("the figures cannot be written");
  return 0;
}
