// More than a recorder and a finger ever do, on the real interface:
//   floods MESSAGES SECONDS [--judge]
// so many status messages as fast as the queue takes them while a driver taps, then 500 touch records a second for so
// many seconds. No message is lost or comes out of order, every touch is felt, nothing grows; with --judge a touch is
// on the screen within 50 ms, too, at the 99th percentile.
#include <signal.h>
#include <sys/msg.h>
#include <sys/shm.h>

#include <QCoreApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTextStream>
#include <QThread>
#include <algorithm>
#include <atomic>
#include <thread>

#include "perf/fail.h"
#include "perf/stage.h"
#include "platform/Msg_Def.h"
#include "platform/gui_interface.h"
#include "platform/sysctrl.h"

namespace {
constexpr int kSender = 9;
constexpr QPoint kViewKey(40, 33);
constexpr QRect kViewKeyArea(4, 3, 71, 60);
constexpr int kFewestTaps = 200;
constexpr double kTouchMs = 50;    // within which a touch is on the screen
constexpr int kRecordsPerTap = 6;  // four of the press, two of the release
constexpr int kRecordsPerSecond = 500;
constexpr int kRestMs = 1000;         // a shell command of the last touch has ended
constexpr double kMoreMemory = 4096;  // KiB, what is no growth

/// The recorder's end of the status queue: messages that ask for a reply, which brings back their number.
class Sender {
public:
  explicit Sender(quint32 key) : mQueue(msgget(key_t(key), 0)) {
    const int segment = shmget(key_t(key + 1), 0, 0);
    void* const memory = segment < 0 ? nullptr : shmat(segment, nullptr, 0);
    if (mQueue < 0 || !memory || memory == reinterpret_cast<void*>(-1)) Fail("there is no status queue");
    mCells = reinterpret_cast<int*>(static_cast<char*>(memory) + kSlot);
  }

  /// The next message; false: the queue is full. A cell is used again after more messages than can be under way.
  bool Send(int event, int value) {
    const int cell = mSent % kCells;
    mCells[cell] = value;
    const GUI_MSG_BUF message{
        GUI_ID,      event,         kSender, mSent, int(sizeof value), kSlot + cell * int(sizeof value),
        GUI_ACK_YES, GUI_RET_NODATA};
    if (msgsnd(mQueue, &message, GUI_MSG_SIZE, IPC_NOWAIT) != 0) return false;
    ++mSent;
    return true;
  }
  /// Takes the replies that have come; false: there was none.
  bool TakeReplies() {
    const int before = mAnswered;
    for (GUI_MSG_BUF reply{}; msgrcv(mQueue, &reply, GUI_MSG_SIZE, kSender, IPC_NOWAIT) == GUI_MSG_SIZE; ++mAnswered)
      if (reply.shmid != mAnswered) ++mWrong;
    return mAnswered > before;
  }
  int Sent() const { return mSent; }
  int Answered() const { return mAnswered; }
  int Wrong() const { return mWrong; }

private:
  static constexpr int kSlot = (kSender - 2) * GUI_SLOT_SIZE, kCells = GUI_SLOT_SIZE / int(sizeof(int));
  int mQueue;
  int* mCells = nullptr;
  int mSent = 0, mAnswered = 0, mWrong = 0;
};

struct Burden {
  double memory;  // KiB
  qsizetype files, threads;
};

/// At rest.
Burden BurdenOf(const Program& program) {
  QThread::msleep(kRestMs);
  const QString proc = QStringLiteral("/proc/%1/").arg(program.Id());
  const auto count = [&](const char* folder) {
    return QDir(proc + QLatin1String(folder)).entryList(QDir::NoDotAndDotDot | QDir::AllEntries | QDir::System).size();
  };
  return {program.PrivateDirty(), count("fd"), count("task")};
}

/// Milliseconds from the record to the changed key.
double Tap(Stage& stage) {
  const double ms = stage.Lcd().UntilChanged(kViewKeyArea, [&] { stage.Press(kViewKey); });
  stage.Release();
  QThread::msleep(60);
  return ms;
}

double Percentile(std::vector<double> figures, double share) {
  std::sort(figures.begin(), figures.end());
  return figures[std::min(figures.size() - 1, size_t(share * double(figures.size())))];
}

int gFaults = 0;

void Hold(bool holds, const QString& otherwise) {
  if (holds) return;
  ++gFaults;
  QTextStream(stdout) << "fault: " << otherwise << '\n' << Qt::flush;
}

void HoldsNoMore(const Program& gui, const Burden& before) {
  const Burden now = BurdenOf(gui);
  Hold(now.memory < before.memory + kMoreMemory,
       QStringLiteral("memory: %1 -> %2 KiB").arg(before.memory).arg(now.memory));
  Hold(now.files == before.files, QStringLiteral("files: %1 -> %2").arg(before.files).arg(now.files));
  Hold(now.threads == before.threads, QStringLiteral("threads: %1 -> %2").arg(before.threads).arg(now.threads));
}

QJsonObject Latency(const std::vector<double>& taps) {
  return {{QStringLiteral("taps"), qint64(taps.size())},
          {QStringLiteral("median"), Percentile(taps, 0.5)},
          {QStringLiteral("p99"), Percentile(taps, 0.99)}};
}

QJsonObject FloodMessages(Stage& stage, const Program& gui, int wanted, bool judges) {
  std::vector<double> quiet, taps;
  for (int i = 0; i < 20; ++i) quiet.push_back(Tap(stage));
  const Burden before = BurdenOf(gui);
  std::atomic<bool> tapped = false;
  std::atomic<double> most = 0;
  Sender sender(stage.QueueKey());
  QElapsedTimer clock;
  clock.start();
  qint64 ms = 0;
  std::thread flood([&] {
    while (sender.Sent() < wanted || !tapped || sender.Answered() < sender.Sent()) {
      const bool more = sender.Sent() < wanted || !tapped;
      const bool sent = more && sender.Send(RECV_ZEL_STATUS_GPS_CONNECT, sender.Sent() / 100 % 3);
      if (!sender.TakeReplies() && !sent) QThread::usleep(50);
      if (clock.elapsed() - ms < 200) continue;
      ms = clock.elapsed();
      most = std::max(most.load(), gui.PrivateDirty());
    }
  });
  while (int(taps.size()) < kFewestTaps || sender.Sent() < wanted) taps.push_back(Tap(stage));
  tapped = true;
  flood.join();
  const double seconds = double(clock.elapsed()) / 1000;
  Hold(sender.Answered() == sender.Sent() && sender.Wrong() == 0,
       QStringLiteral("%1 sent, %2 answered, %3 out of order")
           .arg(sender.Sent())
           .arg(sender.Answered())
           .arg(sender.Wrong()));
  Hold(most < before.memory + kMoreMemory,
       QStringLiteral("memory: %1 -> %2 KiB meanwhile").arg(before.memory).arg(most));
  HoldsNoMore(gui, before);
  const double p99 = Percentile(taps, 0.99);
  if (judges) Hold(p99 < kTouchMs, QStringLiteral("a touch takes %1 ms").arg(p99));
  // What is seen at the end is what the last message said.
  while (!sender.Send(RECV_ZEL_STATUS_GPS_CONNECT, 2)) sender.TakeReplies();
  stage.Lcd().Settle(500);
  return {{QStringLiteral("messages"), sender.Sent()},     {QStringLiteral("seconds"), seconds},
          {QStringLiteral("quiet"), Latency(quiet)},       {QStringLiteral("flooded"), Latency(taps)},
          {QStringLiteral("memoryBefore"), before.memory}, {QStringLiteral("memoryMost"), most.load()}};
}

int ViewsIn(const QString& trace) {
  QFile file(trace);
  if (!file.open(QIODevice::ReadOnly)) Fail("there is no trace of the commands");
  int views = 0;
  for (const QByteArray& line : file.readAll().split('\n')) {
    const int field = QJsonDocument::fromJson(line).object().value(QStringLiteral("field")).toInt();
    views += field == SFIELD_SET_VIEWFRONT || field == SFIELD_SET_VIEWREAR || field == SFIELD_SET_VIEWPIP;
  }
  return views;
}

QJsonObject FloodRecords(Stage& stage, const Program& gui, const QString& trace, int seconds) {
  const Burden before = BurdenOf(gui);
  const int views = ViewsIn(trace);
  const int taps = seconds * kRecordsPerSecond / kRecordsPerTap;
  QElapsedTimer clock;
  clock.start();
  for (int i = 0; i < taps; ++i) {
    const qint64 due = qint64{i} * 1000000 * kRecordsPerTap / kRecordsPerSecond;
    QThread::usleep(ulong(std::max<qint64>(0, due - clock.nsecsElapsed() / 1000)));
    stage.Press(kViewKey);
    stage.Release();
  }
  const double took = double(clock.elapsed()) / 1000;
  // Each touch of the key saves the settings, so the last ones may be felt later.
  int felt = 0;
  for (int last = -1; felt != taps && felt != last; QThread::msleep(kRestMs)) {
    last = felt;
    felt = ViewsIn(trace) - views;
  }
  const double all = double(clock.elapsed()) / 1000;
  Hold(felt == taps, QStringLiteral("%1 touches, %2 felt").arg(taps).arg(felt));
  HoldsNoMore(gui, before);
  return {{QStringLiteral("records"), taps * kRecordsPerTap},
          {QStringLiteral("seconds"), took},
          {QStringLiteral("touches"), taps},
          {QStringLiteral("felt"), felt},
          {QStringLiteral("feltAfterSeconds"), all}};
}
}  // namespace

int main(int argc, char** argv) {
  QCoreApplication application(argc, argv);
  const QStringList arguments = QCoreApplication::arguments();
  const int messages = arguments.value(1).toInt(), seconds = arguments.value(2).toInt();
  const bool judges = arguments.value(3) == QLatin1String("--judge");
  if (messages < 1 || seconds < 1 || arguments.size() != (judges ? 4 : 3))
    Fail("usage: floods MESSAGES SECONDS [--judge]");
  qInstallMessageHandler([](QtMsgType, const QMessageLogContext&, const QString&) {});
  const QString trace = QDir::tempPath() + QStringLiteral("/floods-%1.jsonl").arg(QCoreApplication::applicationPid());
  qputenv("PLATFORM_TRACE", QFile::encodeName(trace));
  QJsonObject figures;
  {
    Stage stage;
    const std::unique_ptr<Program> gui = stage.StartInterface();
    figures[QStringLiteral("statusMessages")] = FloodMessages(stage, *gui, messages, judges);
    figures[QStringLiteral("touchRecords")] = FloodRecords(stage, *gui, trace, seconds);
  }
  QFile::remove(trace);
  figures[QStringLiteral("faults")] = gFaults;
  QTextStream(stdout) << "figures: " << QJsonDocument(figures).toJson(QJsonDocument::Compact) << '\n';
  return gFaults == 0 ? 0 : 1;
}
