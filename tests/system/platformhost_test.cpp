// Our substitute for the platform library, against recorders that are good, silent, gone, or liars.
#include <fcntl.h>
#include <poll.h>
#include <sched.h>
#include <sys/eventfd.h>
#include <sys/ipc.h>
#include <sys/msg.h>
#include <sys/shm.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <sys/wait.h>
#include <unistd.h>

#include <QDateTime>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTemporaryDir>
#include <QTemporaryFile>
#include <QTest>
#include <QtEndian>
#include <algorithm>
#include <atomic>
#include <cerrno>
#include <climits>
#include <csignal>
#include <cstddef>
#include <cstring>
#include <functional>
#include <future>
#include <mutex>
#include <thread>
#include <vector>

#include "platform/Msg_Def.h"
#include "platform/devmgr_interface.h"
#include "platform/gui_interface.h"
#include "platform/sysctrl.h"
#include "tests/fake/signalto.h"
#include "tests/system/patience.h"

namespace {

constexpr int kSegmentBytes = 16 * 12288;
constexpr int kMostData = 4088;
constexpr uid_t kSomebodyElse = 65534;

QByteArray Word(quint32 word) {
  QByteArray bytes(4, '\0');
  qToLittleEndian(word, bytes.data());
  return bytes;
}

/// A packet: two words and the data.
QByteArray Packet(quint32 first, const QByteArray& data) {
  return Word(first) + Word(quint32(data.size())) + data;
}

quint32 FieldOf(const QByteArray& request) {
  return qFromLittleEndian<quint32>(request.constData());
}

void SendTo(int socket, const QByteArray& packet) {
  send(socket, packet.constData(), size_t(packet.size()), MSG_NOSIGNAL);
}

sockaddr_un Address(const QString& path) {
  sockaddr_un address{};
  address.sun_family = AF_UNIX;
  const QByteArray name = QFile::encodeName(path);
  if (name.size() >= qsizetype(sizeof address.sun_path)) qFatal("the path is too long: %s", name.constData());
  std::memcpy(address.sun_path, name.constData(), size_t(name.size()));
  return address;
}

/// A socket that listens at `path`.
int Listener(const QString& path, int backlog) {
  const int listener = socket(AF_UNIX, SOCK_SEQPACKET | SOCK_CLOEXEC, 0);
  const sockaddr_un address = Address(path);
  if (bind(listener, reinterpret_cast<const sockaddr*>(&address), sizeof address) < 0 || listen(listener, backlog) < 0)
    qFatal("cannot listen at %s", qPrintable(path));
  return listener;
}

/// The recorder's end: a thread that hands every packet to `answer`, which does with the socket what it likes.
class Peer {
public:
  using Answer = std::function<void(int socket, const QByteArray& request)>;

  Peer(const QString& path, Answer answer)
      : mPath(path), mAnswer(std::move(answer)), mEnd(eventfd(0, EFD_CLOEXEC)), mListener(Listener(path, 16)) {
    // The signals of the tests are for the callers.
    sigset_t signal;
    sigset_t old;
    sigemptyset(&signal);
    sigaddset(&signal, SIGUSR1);
    pthread_sigmask(SIG_BLOCK, &signal, &old);
    mThread = std::thread([this] { Run(); });
    pthread_sigmask(SIG_SETMASK, &old, nullptr);
  }
  ~Peer() {
    eventfd_write(mEnd, 1);
    mThread.join();
    for (int connection : mConnections) close(connection);
    close(mListener);
    close(mEnd);
    QFile::remove(mPath);
  }
  Peer(const Peer&) = delete;
  Peer& operator=(const Peer&) = delete;

  /// Connections that were ever made.
  int Connections() const { return mCount; }

  /// The requests so far.
  QList<QByteArray> Requests() const {
    const std::lock_guard lock(mMutex);
    return mRequests;
  }
  /// How many of them `answer` has done with.
  int Answered() const { return mAnswered; }

private:
  void Run() {
    for (;;) {
      std::vector<pollfd> waiting{{mEnd, POLLIN, 0}, {mListener, POLLIN, 0}};
      for (int connection : mConnections) waiting.push_back({connection, POLLIN, 0});
      poll(waiting.data(), waiting.size(), -1);
      if (waiting[0].revents) return;
      for (size_t i = 2; i < waiting.size(); ++i)
        if (waiting[i].revents) Serve(waiting[i].fd);
      if (waiting[1].revents) {
        mConnections.push_back(accept4(mListener, nullptr, nullptr, SOCK_CLOEXEC));
        ++mCount;
      }
    }
  }
  void Serve(int connection) {
    QByteArray request(65536, '\0');
    const ssize_t size = recv(connection, request.data(), size_t(request.size()), 0);
    if (size <= 0) {
      std::erase(mConnections, connection);
      close(connection);
      return;
    }
    request.truncate(size);
    {
      const std::lock_guard lock(mMutex);
      mRequests << request;
    }
    mAnswer(connection, request);
    ++mAnswered;
  }

  const QString mPath;
  const Answer mAnswer;
  const int mEnd;
  const int mListener;
  std::vector<int> mConnections;  // of the thread
  std::atomic<int> mCount = 0;
  std::atomic<int> mAnswered = 0;
  mutable std::mutex mMutex;
  QList<QByteArray> mRequests;
  std::thread mThread;
};

/// A recorder of its own process, without threads: it answers with the request's data in capitals, one connection after
/// the other.
class RecorderProcess {
public:
  explicit RecorderProcess(const QString& path) : mPath(path) {
    const int listener = Listener(path, 16);
    mProcess = fork();
    if (mProcess == 0) Serve(listener);
    close(listener);
  }
  ~RecorderProcess() {
    SignalTo(mProcess, SIGKILL);
    waitpid(mProcess, nullptr, 0);
    QFile::remove(mPath);
  }
  RecorderProcess(const RecorderProcess&) = delete;
  RecorderProcess& operator=(const RecorderProcess&) = delete;

  /// Whether it stands still now.
  bool Stop() const {
    int status = 0;
    SignalTo(mProcess, SIGSTOP);
    return waitpid(mProcess, &status, WUNTRACED) == mProcess && WIFSTOPPED(status);
  }
  void Continue() const { SignalTo(mProcess, SIGCONT); }

private:
  [[noreturn]] static void Serve(int listener) {
    for (;;) {
      const int connection = accept4(listener, nullptr, nullptr, SOCK_CLOEXEC);
      if (connection < 0) _exit(1);
      char packet[64];
      for (ssize_t size; (size = recv(connection, packet, sizeof packet, 0)) > 0;) {
        std::memset(packet, 0, 4);  // the result
        std::transform(packet + 8, packet + size, packet + 8, [](char letter) { return char(letter & ~0x20); });
        send(connection, packet, size_t(size), MSG_NOSIGNAL);
      }
      close(connection);
    }
  }

  const QString mPath;
  pid_t mProcess = -1;
};

void Silence(int, const QByteArray&) {}

/// Answers with the result 0 and the request's own data.
void Echo(int socket, const QByteArray& request) {
  SendTo(socket, Packet(0, request.mid(8)));
}

/// Answers every request with this packet.
Peer::Answer Always(const QByteArray& packet) {
  return [packet](int socket, const QByteArray&) { SendTo(socket, packet); };
}

/// ControlSystemData whose data is `*data`, in place.
int Control(int field, QByteArray* data) {
  return ControlSystemData(field, data->data(), int(data->size()));
}

int ControlInt(int field, int value = 0) {
  return ControlSystemData(field, &value, sizeof value);
}

/// What `step` writes to the standard error.
QByteArray ErrorOf(const std::function<void()>& step) {
  QTemporaryFile file;
  if (!file.open()) qFatal("no temporary file");
  const int old = dup(STDERR_FILENO);
  dup2(file.handle(), STDERR_FILENO);
  step();
  dup2(old, STDERR_FILENO);
  close(old);
  QFile written(file.fileName());
  return written.open(QIODevice::ReadOnly) ? written.readAll() : QByteArray("?");
}

/// Whether the text is one line, of the library.
bool IsOneLine(const QByteArray& text) {
  return text.startsWith("platform: ") && text.endsWith('\n') && text.count('\n') == 1;
}

std::atomic<int> signalsSeen = 0;

/// What a forked process gives back as its exit code.
int InAnotherProcess(const std::function<int()>& step) {
  const pid_t child = fork();
  if (child == 0) _exit(step());
  int status = 0;
  while (waitpid(child, &status, 0) < 0 && errno == EINTR) {
  }
  return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

}  // namespace

class PlatformHostTest : public QObject {
  Q_OBJECT

private:
  const quint32 mKey = 0x47000000 + 2 * quint32(getpid());  // twice: the segment's key is the next one
  std::unique_ptr<QTemporaryDir> mRoot;
  std::unique_ptr<Peer> mPeer;

  QString Socket() const { return mRoot->filePath(QStringLiteral("run/recorder.sock")); }
  void Listen(Peer::Answer answer) {
    mPeer.reset();
    mPeer = std::make_unique<Peer>(Socket(), std::move(answer));
  }
  QString TraceTo(const char* name) {
    const QString file = mRoot->filePath(QLatin1String(name));
    qputenv("PLATFORM_TRACE", QFile::encodeName(file));
    return file;
  }
  static QList<QByteArray> LinesOf(const QString& file) {
    QFile trace(file);
    if (!trace.open(QIODevice::ReadOnly)) return {"no file"};
    QList<QByteArray> lines = trace.readAll().split('\n');
    if (!lines.takeLast().isEmpty()) lines << "no end of the line";
    return lines;
  }
  void RemoveTransport() const {
    msgctl(msgget(key_t(mKey), 0), IPC_RMID, nullptr);
    shmctl(shmget(key_t(mKey + 1), 0, 0), IPC_RMID, nullptr);
  }
  static shmid_ds StateOfSegment(int mid) {
    shmid_ds state{};
    if (shmctl(mid, IPC_STAT, &state) < 0) qFatal("no segment");
    return state;
  }
  static msqid_ds StateOfQueue(int queue) {
    msqid_ds state{};
    if (msgctl(queue, IPC_STAT, &state) < 0) qFatal("no queue");
    return state;
  }

private slots:
  void initTestCase();
  void init();
  void cleanup();

  // commands
  void aRequestIsWordsAndData_data();
  void aRequestIsWordsAndData();
  void aQueryIsAnsweredInPlace();
  void anAnswerChangesOnlyAsManyBytesAsItHas_data();
  void anAnswerChangesOnlyAsManyBytesAsItHas();
  void anyResultOfTheRecorderIsHandedOn_data();
  void anyResultOfTheRecorderIsHandedOn();
  void anImpossibleRequestIsNotSent_data();
  void anImpossibleRequestIsNotSent();
  void aLyingAnswerIsRefused_data();
  void aLyingAnswerIsRefused();
  void oneConnectionServesAllRequests();
  void withoutARecorderEveryCommandFailsAtOnce_data();
  void withoutARecorderEveryCommandFailsAtOnce();
  void aRecorderThatTakesNobodyFailsTheCommandAtOnce();
  void aSilentRecorderFailsTheCommandInTime();
  void aSilentRecorderFailsTheCommandsOfAllThreadsInTime();
  void aStoppedRecorderFailsTheCommandInTimeAndServesAgain();
  void aRecorderThatHangsUpFailsTheCommandAtOnce();
  void aRecorderThatStopsReadingDoesNotEndTheProcess();
  void aRecorderThatComesBackIsFound();
  void aLateAnswerIsNotTakenForTheNext();
  void aSecondAnswerIsNotTakenForTheNext();
  void twoThreadsGetTheirOwnAnswers();
  void signalsDoNotDisturbACommand();
  void theLongestPathOfTheSocketIsUsed_data();
  void theLongestPathOfTheSocketIsUsed();
  void failedCommandsLeaveNoOpenFile();
  void aShellCommandDoesNotInheritTheConnection();

  // trace
  void everyCommandIsALineOfTheTrace();
  void theTraceIsAppended();
  void theTraceOfSeveralProcessesHasWholeLines();
  void aTraceThatCannotBeWrittenIsSaidOnce();
  void aTraceThatNobodyReadsDoesNotHoldTheCommand();

  // queue and segment
  void theQueueIsCreatedForThisUserOnly();
  void anOldQueueIsKeptAndEmptied();
  void theQueueOfSomebodyElseIsRefused();
  void theSegmentIsCreatedForThisUserOnly();
  void theSegmentIsAttachedOnce();
  void aRemovedSegmentIsReplaced();
  void aSegmentOfAnotherSizeIsRefused_data();
  void aSegmentOfAnotherSizeIsRefused();
  void theSegmentOfSomebodyElseIsRefused();
  void theKeyIsANumber_data();
  void theKeyIsANumber();
  void anUnusableKeyIsRefused_data();
  void anUnusableKeyIsRefused();
  void withoutAKeyTheUsualOneIsUsed();
  void onlyBytesOfTheSegmentAreRead_data();
  void onlyBytesOfTheSegmentAreRead();
  void onlyBytesOfTheSegmentAreWritten_data();
  void onlyBytesOfTheSegmentAreWritten();
  void anAddressWithoutDataCopiesNothing_data();
  void anAddressWithoutDataCopiesNothing();
  void aReadWithoutBufferIsRefused();
  void onlyTheAttachedSegmentIsReached_data();
  void onlyTheAttachedSegmentIsReached();

  // the rest
  void hardwareCallsOnlyTellRightFromWrong_data();
  void hardwareCallsOnlyTellRightFromWrong();
  void thePageTellsTheLayoutOfAMessage();
  void thePageTellsTheNumbers_data();
  void thePageTellsTheNumbers();
};

void PlatformHostTest::initTestCase() {
  int value = 5;
  QVERIFY2(ShareMemReadByMid(-1, 0, &value, sizeof value) < 0, "nothing is attached yet");
  QVERIFY2(ShareMemReadByMid(0, 0, &value, sizeof value) < 0, "nothing is attached yet");
  QCOMPARE(value, 5);
}

void PlatformHostTest::init() {
  mRoot = std::make_unique<QTemporaryDir>();
  QVERIFY(QDir(mRoot->path()).mkdir(QStringLiteral("run")));
  qputenv("DASHCAM_ROOT", QFile::encodeName(mRoot->path()));
  qputenv("PLATFORM_KEY", QByteArray::number(mKey));
  qunsetenv("PLATFORM_TRACE");
}

void PlatformHostTest::cleanup() {
  mPeer.reset();
  RemoveTransport();
}

// ---- commands

void PlatformHostTest::aRequestIsWordsAndData_data() {
  QTest::addColumn<int>("field");
  QTest::addColumn<QByteArray>("data");
  QTest::addColumn<QByteArray>("start");  // of the packet, in hex
  QTest::newRow("one byte") << int(SFIELD_REG_CLIENT) << QByteArray(1, '\x01') << QByteArray("842100000100000001");
  QTest::newRow("an int") << int(SFIELD_SET_AUDIO_OUT_GAIN) << QByteArray("\x03\0\0\0", 4)
                          << QByteArray("9a2100000400000003000000");
  QTest::newRow("a motion map") << int(SFIELD_SET_MOTION_SETTING) << QByteArray(8, '\x81')
                                << QByteArray("e0210000080000008181818181818181");
  QTest::newRow("a path") << int(SFIELD_PLAY_VIDEO) << QByteArray(50, 'p') << QByteArray("8a2100003200000070");
  QTest::newRow("the setup block") << int(SFIELD_SET_SETUP_COMPLETE) << QByteArray(129, '\xff')
                                   << QByteArray("d221000081000000ff");
  QTest::newRow("as much as fits") << 1 << QByteArray(kMostData, 'x') << QByteArray("01000000f80f000078");
  QTest::newRow("the largest field") << INT_MAX << QByteArray(4, 'f') << QByteArray("ffffff7f0400000066666666");
}

void PlatformHostTest::aRequestIsWordsAndData() {
  QFETCH(int, field);
  QFETCH(QByteArray, data);
  QFETCH(QByteArray, start);
  Listen(Echo);
  QByteArray inPlace = data;
  QCOMPARE(Control(field, &inPlace), 0);
  QCOMPARE(inPlace, data);
  QCOMPARE(mPeer->Requests().size(), 1);
  const QByteArray request = mPeer->Requests().constFirst();
  QCOMPARE(request.size(), 8 + data.size());
  QCOMPARE(request.first(start.size() / 2).toHex(), start);
  QCOMPARE(request.mid(8), data);
}

void PlatformHostTest::aQueryIsAnsweredInPlace() {
  // 12.5 as a float is 0x41480000.
  Listen(Always(Packet(0, QByteArray::fromHex("00004841"))));
  float volts = 0;
  QCOMPARE(ControlSystemData(SFIELD_GET_VOLTAGE, &volts, sizeof volts), 0);
  QCOMPARE(volts, 12.5F);
}

void PlatformHostTest::anAnswerChangesOnlyAsManyBytesAsItHas_data() {
  QTest::addColumn<QByteArray>("answer");
  QTest::addColumn<QByteArray>("after");
  QTest::newRow("none") << QByteArray() << QByteArray("abcd");
  QTest::newRow("one") << QByteArray("1") << QByteArray("1bcd");
  QTest::newRow("three") << QByteArray("123") << QByteArray("123d");
  QTest::newRow("all") << QByteArray("1234") << QByteArray("1234");
}

void PlatformHostTest::anAnswerChangesOnlyAsManyBytesAsItHas() {
  QFETCH(QByteArray, answer);
  QFETCH(QByteArray, after);
  Listen(Always(Packet(0, answer)));
  QByteArray data = "abcd";
  QCOMPARE(Control(1, &data), 0);
  QCOMPARE(data, after);
}

void PlatformHostTest::anyResultOfTheRecorderIsHandedOn_data() {
  QTest::addColumn<int>("result");
  for (int result : {0, 1, 7, INT_MAX, -1, -5, INT_MIN}) QTest::addRow("%d", result) << result;
}

void PlatformHostTest::anyResultOfTheRecorderIsHandedOn() {
  QFETCH(int, result);
  Listen(Always(Packet(quint32(result), "1234")));
  for (int call = 0; call < 2; ++call) {
    QByteArray data = "abcd";
    QCOMPARE(Control(1, &data), result);
    QCOMPARE(data, result < 0 ? "abcd" : "1234");
  }
  QCOMPARE(mPeer->Connections(), 1);  // a refusal is an answer like any other
}

void PlatformHostTest::anImpossibleRequestIsNotSent_data() {
  QTest::addColumn<int>("field");
  QTest::addColumn<bool>("hasData");
  QTest::addColumn<int>("length");
  QTest::addColumn<bool>("sent");
  QTest::newRow("negative length") << 1 << true << -1 << false;
  QTest::newRow("most negative length") << 1 << true << INT_MIN << false;
  QTest::newRow("one byte too many") << 1 << true << kMostData + 1 << false;
  QTest::newRow("far too many") << 1 << true << INT_MAX << false;
  QTest::newRow("no data, one byte") << 1 << false << 1 << false;
  QTest::newRow("no data, negative length") << 1 << false << -1 << false;
  QTest::newRow("negative field") << -1 << true << 4 << false;
  QTest::newRow("data, no bytes") << 1 << true << 0 << true;
  QTest::newRow("no data, no bytes") << 1 << false << 0 << true;
}

void PlatformHostTest::anImpossibleRequestIsNotSent() {
  QFETCH(int, field);
  QFETCH(bool, hasData);
  QFETCH(int, length);
  QFETCH(bool, sent);
  Listen(Always(Packet(0, "")));
  QByteArray data(kMostData + 1, 'd');
  const int result = ControlSystemData(field, hasData ? data.data() : nullptr, length);
  QCOMPARE(result, sent ? 0 : -EINVAL);
  QCOMPARE(data, QByteArray(kMostData + 1, 'd'));
  QCOMPARE(ControlInt(2), 0);  // behind it, so that what was sent has arrived
  QCOMPARE(mPeer->Requests().size(), sent ? 2 : 1);
  if (sent) QCOMPARE(mPeer->Requests().constFirst(), Packet(quint32(field), ""));
}

void PlatformHostTest::aLyingAnswerIsRefused_data() {
  QTest::addColumn<QByteArray>("answer");
  QTest::newRow("empty") << QByteArray();
  QTest::newRow("one byte") << QByteArray(1, '\0');
  QTest::newRow("half a header") << QByteArray(4, '\0');
  QTest::newRow("a header but for a byte") << QByteArray(7, '\0');
  QTest::newRow("more than asked for") << Packet(0, "12345");
  QTest::newRow("more than says its length") << Word(0) + Word(3) + "1234";
  QTest::newRow("less than says its length") << Word(0) + Word(4) + "123";
  QTest::newRow("length without data") << Word(0) + Word(4);
  QTest::newRow("data without length") << Word(0) + Word(0) + "1234";
  QTest::newRow("enormous length") << Word(0) + Word(0xFFFFFFFF) + "1234";
  QTest::newRow("length that is 4 after a wrap") << Word(0) + Word(0xFFFFFFFC) + "1234";
  QTest::newRow("a packet of more than the largest") << Packet(0, QByteArray(4089, '1'));
  QTest::newRow("a huge packet") << Packet(0, QByteArray(60000, '1'));
  QTest::newRow("a huge packet that says 4") << Word(0) + Word(4) + QByteArray(60000, '1');
  QTest::newRow("a refusal with a wrong length") << Word(0xFFFFFFFF) + Word(9);
}

void PlatformHostTest::aLyingAnswerIsRefused() {
  QFETCH(QByteArray, answer);
  Listen([&](int socket, const QByteArray& request) {
    FieldOf(request) == 1 ? SendTo(socket, answer) : SendTo(socket, Packet(0, "good"));
  });
  QByteArray data = "abcd";
  QCOMPARE(Control(1, &data), answer.isEmpty() ? -ECONNRESET : -EPROTO);
  QCOMPARE(data, "abcd");
  QCOMPARE(Control(2, &data), 0);
  QCOMPARE(data, "good");
  QCOMPARE(mPeer->Connections(), 2);
}

void PlatformHostTest::oneConnectionServesAllRequests() {
  Listen(Echo);
  for (int i = 0; i < 20; ++i) QCOMPARE(ControlInt(i), 0);
  QCOMPARE(mPeer->Requests().size(), 20);
  QCOMPARE(mPeer->Connections(), 1);
}

void PlatformHostTest::withoutARecorderEveryCommandFailsAtOnce_data() {
  QTest::addColumn<QString>("instead");
  QTest::addColumn<int>("result");
  QTest::newRow("nothing") << QString() << -ENOENT;
  QTest::newRow("the socket of a dead one") << QStringLiteral("socket") << -ECONNREFUSED;
  QTest::newRow("a plain file") << QStringLiteral("file") << -ECONNREFUSED;
  QTest::newRow("a socket of another type") << QStringLiteral("stream") << -EPROTOTYPE;
}

void PlatformHostTest::withoutARecorderEveryCommandFailsAtOnce() {
  QFETCH(QString, instead);
  QFETCH(int, result);
  int stream = -1;
  if (instead == QLatin1String("socket")) close(Listener(Socket(), 1));
  if (instead == QLatin1String("file")) {
    QFile file(Socket());
    QVERIFY(file.open(QIODevice::WriteOnly));
  }
  if (instead == QLatin1String("stream")) {
    stream = socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
    const sockaddr_un address = Address(Socket());
    QVERIFY(bind(stream, reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0 && listen(stream, 1) == 0);
  }
  QElapsedTimer clock;
  clock.start();
  for (int call = 0; call < 40; ++call) {
    QByteArray data = "abcd";
    QCOMPARE(Control(1, &data), result);
    QCOMPARE(data, "abcd");
  }
  if (stream >= 0) close(stream);
  QVERIFY(clock.elapsed() < 10000);  // 20000 if each waited its whole time
}

void PlatformHostTest::aRecorderThatTakesNobodyFailsTheCommandAtOnce() {
  const int listener = Listener(Socket(), 0);
  const sockaddr_un address = Address(Socket());
  QList<int> others;
  int result = 0;
  while (result == 0) {
    others << socket(AF_UNIX, SOCK_SEQPACKET | SOCK_NONBLOCK | SOCK_CLOEXEC, 0);
    result = ::connect(others.constLast(), reinterpret_cast<const sockaddr*>(&address), sizeof address);
  }
  QElapsedTimer clock;
  clock.start();
  for (int call = 0; call < 40; ++call) QCOMPARE(ControlInt(1), -EAGAIN);
  for (int other : others) close(other);
  close(listener);
  QVERIFY(clock.elapsed() < 10000);
}

void PlatformHostTest::aSilentRecorderFailsTheCommandInTime() {
  Listen(Silence);
  QByteArray data = "abcd";
  QElapsedTimer clock;
  clock.start();
  QCOMPARE(Control(1, &data), -ETIMEDOUT);
  const qint64 ms = clock.elapsed();
  QVERIFY2(ms >= 490 && ms < 5000, QByteArray::number(ms).constData());
  QCOMPARE(data, "abcd");
}

void PlatformHostTest::aSilentRecorderFailsTheCommandsOfAllThreadsInTime() {
  Listen(Silence);
  QElapsedTimer clock;
  clock.start();
  std::vector<std::thread> threads;
  std::atomic<int> failed = 0;
  for (int i = 0; i < 16; ++i) {
    threads.emplace_back([&] { failed += ControlInt(1) == -ETIMEDOUT; });
  }
  for (std::thread& thread : threads) thread.join();
  QCOMPARE(failed, 16);
  QVERIFY(clock.elapsed() < 5000);  // 8000 if each had its whole time after the others'
}

void PlatformHostTest::aStoppedRecorderFailsTheCommandInTimeAndServesAgain() {
  const RecorderProcess recorder(Socket());
  QByteArray data = "first";
  QCOMPARE(Control(1, &data), 0);
  QCOMPARE(data, "FIRST");
  QVERIFY(recorder.Stop());
  QElapsedTimer clock;
  clock.start();
  for (int call = 0; call < 3; ++call) {  // the first on the connection there is, the others on new ones
    data = "never";
    QCOMPARE(Control(2, &data), -ETIMEDOUT);
    QCOMPARE(data, "never");
  }
  QVERIFY(clock.elapsed() < 5000);
  recorder.Continue();  // now it answers those, too
  data = "again";
  QCOMPARE(Control(3, &data), 0);
  QCOMPARE(data, "AGAIN");
}

void PlatformHostTest::aRecorderThatHangsUpFailsTheCommandAtOnce() {
  Listen([](int socket, const QByteArray&) { shutdown(socket, SHUT_RDWR); });
  QElapsedTimer clock;
  clock.start();
  for (int call = 0; call < 40; ++call) {
    QByteArray data = "abcd";
    QCOMPARE(Control(1, &data), -ECONNRESET);
    QCOMPARE(data, "abcd");
  }
  QVERIFY(clock.elapsed() < 10000);
  QCOMPARE(mPeer->Requests().size(), 40);  // none is sent a second time: it may have been carried out
}

void PlatformHostTest::aRecorderThatStopsReadingDoesNotEndTheProcess() {
  std::promise<void> done;  // broken when a comparison fails: that ends the wait, too
  Listen([until = done.get_future().share()](int socket, const QByteArray& request) {
    if (FieldOf(request) == 1) shutdown(socket, SHUT_RD);
    Echo(socket, request);
    if (FieldOf(request) == 1) until.wait();
  });
  QCOMPARE(ControlInt(1), 0);
  QCOMPARE(ControlInt(2), -EPIPE);
  done.set_value();
  QCOMPARE(ControlInt(2), 0);
}

void PlatformHostTest::aRecorderThatComesBackIsFound() {
  for (int run = 0; run < 3; ++run) {
    Listen(Always(Packet(quint32(run), "")));
    QCOMPARE(ControlInt(1), run);
    QCOMPARE(ControlInt(2), run);
    QCOMPARE(mPeer->Connections(), 1);
    mPeer.reset();
    QCOMPARE(ControlInt(3), -ENOENT);
    QCOMPARE(ControlInt(4), -ENOENT);
  }
}

void PlatformHostTest::aLateAnswerIsNotTakenForTheNext() {
  int first = -1;  // an open end of the first request's connection
  Listen([&](int socket, const QByteArray& request) {
    if (FieldOf(request) == 1) {
      first = dup(socket);
      return;
    }
    SendTo(first, Packet(111, "late"));
    close(first);
    SendTo(socket, Packet(222, "good"));
  });
  QByteArray data = "abcd";
  QCOMPARE(Control(1, &data), -ETIMEDOUT);
  QCOMPARE(Control(2, &data), 222);
  QCOMPARE(data, "good");
}

void PlatformHostTest::aSecondAnswerIsNotTakenForTheNext() {
  Listen([&](int socket, const QByteArray& request) {
    SendTo(socket, Packet(FieldOf(request), "good"));
    SendTo(socket, Packet(111, "more"));
  });
  for (int field = 1; field <= 5; ++field) {
    QByteArray data = "abcd";
    QCOMPARE(Control(field, &data), field);
    QCOMPARE(data, "good");
    QTRY_COMPARE(mPeer->Answered(), field);  // the second answer lies there
  }
}

void PlatformHostTest::twoThreadsGetTheirOwnAnswers() {
  std::atomic<int> overlaps = 0;
  Listen([&](int socket, const QByteArray& request) {
    char byte;
    if (recv(socket, &byte, 1, MSG_PEEK | MSG_DONTWAIT) >= 0) ++overlaps;
    SendTo(socket, Packet(FieldOf(request), request.mid(8).toUpper()));
  });
  std::atomic<int> good = 0;
  const auto ask = [&](int field, const QByteArray& letters) {
    for (int i = 0; i < 300; ++i) {
      QByteArray data = letters;
      good += Control(field, &data) == field && data == letters.toUpper();
    }
  };
  std::thread one(ask, 1, "abcdefgh");
  std::thread two(ask, 2, "wxyz");
  one.join();
  two.join();
  QCOMPARE(good, 600);
  QCOMPARE(overlaps, 0);
  QCOMPARE(mPeer->Connections(), 1);
}

void PlatformHostTest::signalsDoNotDisturbACommand() {
  struct sigaction action {};  // without SA_RESTART
  action.sa_handler = [](int) { ++signalsSeen; };
  struct sigaction old {};
  sigaction(SIGUSR1, &action, &old);
  const pthread_t caller = pthread_self();
  Listen([&](int socket, const QByteArray& request) {
    for (int i = 0; i < 50; ++i) {
      const int seen = signalsSeen;
      pthread_kill(caller, SIGUSR1);
      while (signalsSeen == seen) std::this_thread::yield();
    }
    Echo(socket, request);
  });
  QCOMPARE(ControlInt(1), 0);
  QCOMPARE(signalsSeen, 50);
  sigaction(SIGUSR1, &old, nullptr);
}

void PlatformHostTest::theLongestPathOfTheSocketIsUsed_data() {
  QTest::addColumn<int>("size");
  QTest::addColumn<int>("result");
  QTest::newRow("107") << 107 << 0;
  QTest::newRow("108") << 108 << -ENAMETOOLONG;
  QTest::newRow("far too long") << 3000 << -ENAMETOOLONG;
}

void PlatformHostTest::theLongestPathOfTheSocketIsUsed() {
  QFETCH(int, size);
  QFETCH(int, result);
  QString folder = mRoot->path();
  const qsizetype missing = size - QStringLiteral("/run/recorder.sock").size() - folder.size();
  QVERIFY(missing > 1);
  folder += u'/' + QString(missing - 1, u'r');
  qputenv("DASHCAM_ROOT", QFile::encodeName(folder));
  if (result == 0) {
    QVERIFY(QDir().mkpath(folder + QStringLiteral("/run")));
    mPeer = std::make_unique<Peer>(folder + QStringLiteral("/run/recorder.sock"), Echo);
  }
  QCOMPARE(ControlInt(1), result);
}

void PlatformHostTest::failedCommandsLeaveNoOpenFile() {
  const QDir files(QStringLiteral("/proc/self/fd"));
  const qsizetype before = files.entryList(QDir::Files | QDir::System).size();
  QVERIFY(before > 2);
  for (int i = 0; i < 10; ++i) QCOMPARE(ControlInt(1), -ENOENT);
  QCOMPARE(files.entryList(QDir::Files | QDir::System).size(), before);

  Listen(Always("lie"));
  for (int i = 0; i < 10; ++i) QCOMPARE(ControlInt(1), -EPROTO);
  mPeer.reset();
  QCOMPARE(files.entryList(QDir::Files | QDir::System).size(), before);
}

void PlatformHostTest::aShellCommandDoesNotInheritTheConnection() {
  Listen(Echo);
  QCOMPARE(ControlInt(1), 0);
  int sockets = 0;
  for (const QString& name : QDir(QStringLiteral("/proc/self/fd")).entryList(QDir::Files | QDir::System)) {
    const int fd = name.toInt();
    struct stat state {};
    if (fd <= STDERR_FILENO || fstat(fd, &state) < 0 || !S_ISSOCK(state.st_mode)) continue;
    ++sockets;
    QVERIFY2(fcntl(fd, F_GETFD) & FD_CLOEXEC, qPrintable(name));
  }
  QVERIFY(sockets >= 2);  // both ends
}

// ---- trace

void PlatformHostTest::everyCommandIsALineOfTheTrace() {
  const QString file = TraceTo("trace");
  Listen([](int socket, const QByteArray& request) {
    FieldOf(request) == 1 ? SendTo(socket, Packet(5, "good")) : SendTo(socket, Packet(quint32(-7), ""));
  });
  const qint64 before = QDateTime::currentMSecsSinceEpoch();
  QByteArray data = QByteArray::fromHex("00ff7f0a");
  QCOMPARE(Control(1, &data), 5);
  QCOMPARE(data, "good");
  QCOMPARE(ControlSystemData(2, nullptr, 0), -7);
  QCOMPARE(ControlSystemData(3, &data, -4), -EINVAL);
  mPeer.reset();
  QCOMPARE(ControlSystemData(4, data.data(), 1), -ENOENT);
  const qint64 after = QDateTime::currentMSecsSinceEpoch();

  const QList<QByteArray> expected{R"("field": 1, "length": 4, "data": "00ff7f0a", "result": 5})",
                                   R"("field": 2, "length": 0, "data": "", "result": -7})",
                                   R"("field": 3, "length": -4, "data": "", "result": -22})",
                                   R"("field": 4, "length": 1, "data": "67", "result": -2})"};
  const QList<QByteArray> lines = LinesOf(file);
  QCOMPARE(lines.size(), expected.size());
  qint64 last = before;
  for (qsizetype i = 0; i < lines.size(); ++i) {
    const QJsonObject line = QJsonDocument::fromJson(lines[i]).object();
    const auto ms = qint64(line[QLatin1String("ms")].toDouble());
    QVERIFY2(ms >= last && ms <= after, lines[i].constData());
    last = ms;
    QCOMPARE(lines[i], "{\"ms\": " + QByteArray::number(ms) + ", " + expected[i]);
  }
}

void PlatformHostTest::theTraceIsAppended() {
  const QString file = TraceTo("trace");
  QFile old(file);
  QVERIFY(old.open(QIODevice::WriteOnly));
  old.write("an old line\n");
  old.close();
  ControlInt(1);
  ControlInt(2);
  const QList<QByteArray> lines = LinesOf(file);
  QCOMPARE(lines.size(), 3);
  QCOMPARE(lines[0], "an old line");
}

void PlatformHostTest::theTraceOfSeveralProcessesHasWholeLines() {
  const QString file = TraceTo("trace");
  const auto write = [](int field) {
    QByteArray data(kMostData, char(field));
    for (int i = 0; i < 40; ++i) Control(field, &data);
    return 0;
  };
  std::vector<pid_t> children;
  for (int field = 1; field <= 4; ++field) {
    const pid_t child = fork();
    if (child == 0) _exit(write(field));
    children.push_back(child);
  }
  for (pid_t child : children) QCOMPARE(waitpid(child, nullptr, 0), child);

  QMap<int, int> count;
  for (const QByteArray& text : LinesOf(file)) {
    const QJsonObject line = QJsonDocument::fromJson(text).object();
    const int field = line[QLatin1String("field")].toInt();
    QCOMPARE(line[QLatin1String("data")].toString().toLatin1(), QByteArray(kMostData, char(field)).toHex());
    ++count[field];
  }
  QCOMPARE(count, (QMap<int, int>{{1, 40}, {2, 40}, {3, 40}, {4, 40}}));
}

void PlatformHostTest::aTraceThatCannotBeWrittenIsSaidOnce() {
  TraceTo("no such folder/trace");
  Listen(Echo);
  int result = -1;
  const QByteArray said = ErrorOf([&] { result = ControlInt(1) | ControlInt(2); });
  QCOMPARE(result, 0);
  QVERIFY2(IsOneLine(said), said.constData());
}

void PlatformHostTest::aTraceThatNobodyReadsDoesNotHoldTheCommand() {
  const QString file = TraceTo("fifo");
  QCOMPARE(mkfifo(QFile::encodeName(file).constData(), 0600), 0);
  Listen(Echo);
  QCOMPARE(ControlInt(1), 0);
}

// ---- queue and segment

void PlatformHostTest::theQueueIsCreatedForThisUserOnly() {
  QCOMPARE(msgget(key_t(mKey), 0), -1);
  const int queue = Gui_InitMessage();
  QVERIFY(queue >= 0);
  QCOMPARE(msgget(key_t(mKey), 0), queue);
  QCOMPARE(int(StateOfQueue(queue).msg_perm.mode & 0777), 0600);
}

void PlatformHostTest::anOldQueueIsKeptAndEmptied() {
  const int queue = msgget(key_t(mKey), IPC_CREAT | 0600);
  struct {
    long type;
    char bytes[200];
  } message{GUI_ID, {}};
  for (size_t size : {size_t(GUI_MSG_SIZE), size_t(0), size_t(4), sizeof message.bytes}) {
    for (long type : {1L, 2L, 17L, 100000L}) {
      message.type = type;
      QCOMPARE(msgsnd(queue, &message, size, IPC_NOWAIT), 0);
    }
  }
  QCOMPARE(Gui_InitMessage(), queue);
  QCOMPARE(int(StateOfQueue(queue).msg_qnum), 0);
}

void PlatformHostTest::theQueueOfSomebodyElseIsRefused() {
  const int queue = msgget(key_t(mKey), IPC_CREAT | 0666);
  msqid_ds state = StateOfQueue(queue);
  state.msg_perm.uid = kSomebodyElse;
  QCOMPARE(msgctl(queue, IPC_SET, &state), 0);
  const GUI_MSG_BUF message{GUI_ID, 0, 0, 0, 0, 0, 0, 0};
  QCOMPARE(msgsnd(queue, &message, GUI_MSG_SIZE, IPC_NOWAIT), 0);
  int result = 0;
  const QByteArray said = ErrorOf([&] { result = Gui_InitMessage(); });
  QCOMPARE(result, -EACCES);
  QVERIFY2(IsOneLine(said), said.constData());
  QCOMPARE(int(StateOfQueue(queue).msg_qnum), 1);
}

void PlatformHostTest::theSegmentIsCreatedForThisUserOnly() {
  QCOMPARE(shmget(key_t(mKey + 1), 0, 0), -1);
  const int mid = Gui_InitSharedMemory();
  QVERIFY(mid >= 0);
  QCOMPARE(shmget(key_t(mKey + 1), 0, 0), mid);
  QCOMPARE(int(StateOfSegment(mid).shm_perm.mode & 0777), 0600);
  QCOMPARE(int(StateOfSegment(mid).shm_segsz), kSegmentBytes);
}

void PlatformHostTest::theSegmentIsAttachedOnce() {
  const int mid = Gui_InitSharedMemory();
  QCOMPARE(Gui_InitSharedMemory(), mid);
  QCOMPARE(int(StateOfSegment(mid).shm_nattch), 1);
}

void PlatformHostTest::aRemovedSegmentIsReplaced() {
  const int first = Gui_InitSharedMemory();
  int value = 0x1234567;
  QCOMPARE(ShareMemWriteByMid(first, 0, &value, sizeof value), 0);
  QCOMPARE(shmctl(first, IPC_RMID, nullptr), 0);

  const int second = Gui_InitSharedMemory();
  QVERIFY(second >= 0);
  QVERIFY(second != first);
  QCOMPARE(ShareMemReadByMid(second, 0, &value, sizeof value), 0);
  QCOMPARE(value, 0);
  QVERIFY(ShareMemReadByMid(first, 0, &value, sizeof value) < 0);
  shmid_ds state{};
  QCOMPARE(shmctl(first, IPC_STAT, &state), -1);  // it went with its last attachment
}

void PlatformHostTest::aSegmentOfAnotherSizeIsRefused_data() {
  QTest::addColumn<int>("size");
  QTest::newRow("one slot") << 12288;
  QTest::newRow("a byte less") << kSegmentBytes - 1;
  QTest::newRow("a byte more") << kSegmentBytes + 1;
  QTest::newRow("twice as much") << 2 * kSegmentBytes;
}

void PlatformHostTest::aSegmentOfAnotherSizeIsRefused() {
  QFETCH(int, size);
  const int mid = shmget(key_t(mKey + 1), size_t(size), IPC_CREAT | 0600);
  QVERIFY(mid >= 0);
  int result = 0;
  const QByteArray said = ErrorOf([&] { result = Gui_InitSharedMemory(); });
  QCOMPARE(result, -EINVAL);
  QVERIFY2(IsOneLine(said), said.constData());
  QCOMPARE(int(StateOfSegment(mid).shm_segsz), size);
  int value = 5;
  QVERIFY(ShareMemReadByMid(mid, 0, &value, sizeof value) < 0);
  QCOMPARE(value, 5);
}

void PlatformHostTest::theSegmentOfSomebodyElseIsRefused() {
  const int mid = shmget(key_t(mKey + 1), kSegmentBytes, IPC_CREAT | 0666);
  shmid_ds state = StateOfSegment(mid);
  state.shm_perm.uid = kSomebodyElse;
  QCOMPARE(shmctl(mid, IPC_SET, &state), 0);
  int result = 0;
  const QByteArray said = ErrorOf([&] { result = Gui_InitSharedMemory(); });
  QCOMPARE(result, -EACCES);
  QVERIFY2(IsOneLine(said), said.constData());
}

void PlatformHostTest::theKeyIsANumber_data() {
  QTest::addColumn<QByteArray>("text");
  QTest::addColumn<quint32>("key");
  const quint32 high = mKey | 0x80000000;
  QTest::newRow("decimal") << QByteArray::number(mKey) << mKey;
  QTest::newRow("decimal beyond an int") << QByteArray::number(high) << high;
  QTest::newRow("decimal with leading zeros") << "000" + QByteArray::number(mKey) << mKey;
  QTest::newRow("0x") << "0x" + QByteArray::number(mKey, 16) << mKey;
  QTest::newRow("0X") << "0X" + QByteArray::number(high, 16).toUpper() << high;
  QTest::newRow("0x with leading zeros") << "0x0000" + QByteArray::number(mKey, 16) << mKey;
}

void PlatformHostTest::theKeyIsANumber() {
  QFETCH(QByteArray, text);
  QFETCH(quint32, key);
  qputenv("PLATFORM_KEY", text);
  const int queue = Gui_InitMessage();
  const int mid = Gui_InitSharedMemory();
  QVERIFY(queue >= 0);
  QVERIFY(mid >= 0);
  const int queueOfKey = msgget(key_t(key), 0);
  const int segmentOfNext = shmget(key_t(key + 1), 0, 0);
  msgctl(queue, IPC_RMID, nullptr);
  shmctl(mid, IPC_RMID, nullptr);
  QCOMPARE(queueOfKey, queue);
  QCOMPARE(segmentOfNext, mid);
}

void PlatformHostTest::anUnusableKeyIsRefused_data() {
  QTest::addColumn<QByteArray>("text");
  for (const char* text : {"",
                           " ",
                           "key",
                           "12a",
                           "1e3",
                           "-5",
                           "+5",
                           " 5",
                           "5 ",
                           "5\n",
                           "0x",
                           "x5",
                           "0xG",
                           "0x-5",
                           "0x0x5",
                           "0",
                           "0x0",
                           "4294967295",
                           "0xFFFFFFFF",
                           "4294967296",
                           "0x100000000",
                           "99999999999999999999"})
    QTest::addRow("'%s'", text) << QByteArray(text);
}

void PlatformHostTest::anUnusableKeyIsRefused() {
  QFETCH(QByteArray, text);
  qputenv("PLATFORM_KEY", text);
  int queue = 0;
  int mid = 0;
  const QByteArray saidOfQueue = ErrorOf([&] { queue = Gui_InitMessage(); });
  const QByteArray saidOfSegment = ErrorOf([&] { mid = Gui_InitSharedMemory(); });
  QCOMPARE(queue, -EINVAL);
  QCOMPARE(mid, -EINVAL);
  QVERIFY2(saidOfQueue.startsWith("platform: PLATFORM_KEY ") && saidOfQueue.endsWith(text + '\n'), saidOfQueue);
  QCOMPARE(saidOfSegment, saidOfQueue);
}

// In a namespace of its own: an interface that runs on this machine has that key, too.
void PlatformHostTest::withoutAKeyTheUsualOneIsUsed() {
  qunsetenv("PLATFORM_KEY");
  const int code = InAnotherProcess([] {
    if (unshare(CLONE_NEWIPC) < 0 && unshare(CLONE_NEWUSER | CLONE_NEWIPC) < 0) return 77;
    const int queue = Gui_InitMessage();
    const int mid = Gui_InitSharedMemory();
    if (queue < 0 || mid < 0) return 1;
    return queue == msgget(0x44434755, 0) && mid == shmget(0x44434756, 0, 0) ? 0 : 2;
  });
  if (code == 77) QSKIP("this machine gives no namespace");
  QCOMPARE(code, 0);
}

namespace {
/// Every edge of the segment.
void AddPlaces() {
  QTest::addColumn<int>("offset");
  QTest::addColumn<int>("length");
  QTest::addColumn<bool>("inside");
  QTest::newRow("first int") << 0 << 4 << true;
  QTest::newRow("last int") << kSegmentBytes - 4 << 4 << true;
  QTest::newRow("last byte") << kSegmentBytes - 1 << 1 << true;
  QTest::newRow("an int over two slots") << 12286 << 4 << true;
  QTest::newRow("all of it") << 0 << kSegmentBytes << true;
  QTest::newRow("nothing") << 0 << 0 << true;
  QTest::newRow("nothing at the end") << kSegmentBytes << 0 << true;
  QTest::newRow("nothing behind the end") << kSegmentBytes + 1 << 0 << false;
  QTest::newRow("one past the end") << kSegmentBytes - 3 << 4 << false;
  QTest::newRow("one byte at the end") << kSegmentBytes << 1 << false;
  QTest::newRow("one more than all") << 0 << kSegmentBytes + 1 << false;
  QTest::newRow("all of it from the second byte") << 1 << kSegmentBytes << false;
  QTest::newRow("negative offset") << -1 << 4 << false;
  QTest::newRow("negative offset, no bytes") << -4 << 0 << false;
  QTest::newRow("most negative offset") << INT_MIN << 4 << false;
  QTest::newRow("negative length") << 0 << -1 << false;
  QTest::newRow("negative length in the middle") << 100 << -4 << false;
  QTest::newRow("most negative length") << 0 << INT_MIN << false;
  QTest::newRow("both negative") << INT_MIN << INT_MIN << false;
  QTest::newRow("a sum that wraps to negative") << INT_MAX << 1 << false;
  QTest::newRow("a sum that wraps to -2") << INT_MAX << INT_MAX << false;
  QTest::newRow("largest length in the middle") << 100 << INT_MAX << false;
}

QByteArray Pattern() {
  QByteArray bytes(kSegmentBytes, '\0');
  for (int i = 0; i < kSegmentBytes; ++i) bytes[i] = char(i * 7 + i / 256);
  return bytes;
}
}  // namespace

void PlatformHostTest::onlyBytesOfTheSegmentAreRead_data() {
  AddPlaces();
}

void PlatformHostTest::onlyBytesOfTheSegmentAreRead() {
  QFETCH(int, offset);
  QFETCH(int, length);
  QFETCH(bool, inside);
  const int mid = Gui_InitSharedMemory();
  QByteArray pattern = Pattern();
  QCOMPARE(ShareMemWriteByMid(mid, 0, pattern.data(), kSegmentBytes), 0);

  const QByteArray before(kSegmentBytes + 64, '#');
  QByteArray buffer = before;
  const int result = ShareMemReadByMid(mid, offset, buffer.data(), length);
  QCOMPARE(result < 0, !inside);
  if (inside) QCOMPARE(result, 0);
  QCOMPARE(buffer, inside ? pattern.mid(offset, length) + before.mid(length) : before);
}

void PlatformHostTest::onlyBytesOfTheSegmentAreWritten_data() {
  AddPlaces();
}

void PlatformHostTest::onlyBytesOfTheSegmentAreWritten() {
  QFETCH(int, offset);
  QFETCH(int, length);
  QFETCH(bool, inside);
  const int mid = Gui_InitSharedMemory();
  QByteArray expected = Pattern();
  QCOMPARE(ShareMemWriteByMid(mid, 0, expected.data(), kSegmentBytes), 0);

  QByteArray data(kSegmentBytes + 64, '#');
  const int result = ShareMemWriteByMid(mid, offset, data.data(), length);
  QCOMPARE(result < 0, !inside);
  if (inside) {
    QCOMPARE(result, 0);
    expected.replace(offset, length, data.first(length));
  }
  // As another process sees it.
  const void* other = shmat(mid, nullptr, SHM_RDONLY);
  const QByteArray seen(static_cast<const char*>(other), kSegmentBytes);
  shmdt(other);
  QVERIFY(seen == expected);
}

void PlatformHostTest::anAddressWithoutDataCopiesNothing_data() {
  AddPlaces();
}

void PlatformHostTest::anAddressWithoutDataCopiesNothing() {
  QFETCH(int, offset);
  QFETCH(int, length);
  QFETCH(bool, inside);
  const int mid = Gui_InitSharedMemory();
  QByteArray pattern = Pattern();
  QCOMPARE(ShareMemWriteByMid(mid, 0, pattern.data(), kSegmentBytes), 0);
  const int result = ShareMemWriteByMid(mid, offset, nullptr, length);
  QCOMPARE(result < 0, !inside);
  if (inside) QCOMPARE(result, 0);
  QByteArray seen(kSegmentBytes, '\0');
  QCOMPARE(ShareMemReadByMid(mid, 0, seen.data(), kSegmentBytes), 0);
  QVERIFY(seen == pattern);
}

void PlatformHostTest::aReadWithoutBufferIsRefused() {
  const int mid = Gui_InitSharedMemory();
  QVERIFY(ShareMemReadByMid(mid, 0, nullptr, 4) < 0);
  QVERIFY(ShareMemReadByMid(mid, 0, nullptr, 0) < 0);
}

void PlatformHostTest::onlyTheAttachedSegmentIsReached_data() {
  QTest::addColumn<int>("step");  // from the attached one's id
  QTest::newRow("the next id") << 1;
  QTest::newRow("the id before") << -1;
  QTest::newRow("-1") << INT_MIN;
}

void PlatformHostTest::onlyTheAttachedSegmentIsReached() {
  QFETCH(int, step);
  const int mid = Gui_InitSharedMemory();
  const int wrong = step == INT_MIN ? -1 : mid + step;
  int value = 5;
  QCOMPARE(ShareMemWriteByMid(mid, 0, &value, sizeof value), 0);
  int other = 6;
  QVERIFY(ShareMemReadByMid(wrong, 0, &other, sizeof other) < 0);
  QCOMPARE(other, 6);
  QVERIFY(ShareMemWriteByMid(wrong, 0, &other, sizeof other) < 0);
  QVERIFY(ShareMemWriteByMid(wrong, 0, nullptr, sizeof other) < 0);
  QCOMPARE(ShareMemReadByMid(mid, 0, &value, sizeof value), 0);
  QCOMPARE(value, 5);
}

// ---- the rest

void PlatformHostTest::hardwareCallsOnlyTellRightFromWrong_data() {
  QTest::addColumn<int>("result");
  QTest::addColumn<bool>("accepted");
  int block[4] = {10, 20, 30, 0};
  QTest::newRow("driver 7") << SysDrvInit(7) << true;
  QTest::newRow("driver 0") << SysDrvInit(0) << true;
  QTest::newRow("driver -1") << SysDrvInit(-1) << false;
  QTest::newRow("client 2") << DevMgr_RegClient(2) << true;
  QTest::newRow("client -1") << DevMgr_RegClient(-1) << false;
  for (int request = DEV_REG_CLIENT; request < DEV_MAX; ++request)
    QTest::addRow("device %d", request) << DevMgr_Control(request, block, sizeof block) << true;
  QTest::newRow("device -1") << DevMgr_Control(-1, block, sizeof block) << false;
  QTest::newRow("device 5") << DevMgr_Control(DEV_MAX, block, sizeof block) << false;
  QTest::newRow("device, no data") << DevMgr_Control(DEV_START_MONITORING, nullptr, 0) << true;
  QTest::newRow("device, bytes without data") << DevMgr_Control(DEV_START_MONITORING, nullptr, 1) << false;
  QTest::newRow("device, negative length") << DevMgr_Control(DEV_START_MONITORING, block, -1) << false;
  QTest::newRow("LCD line on") << ipnc_gio_write(46, 1) << true;
  QTest::newRow("LCD line off") << ipnc_gio_write(46, 0) << true;
  QTest::newRow("line -1") << ipnc_gio_write(-1, 1) << false;
  QTest::newRow("value 2") << ipnc_gio_write(46, 2) << false;
  QTest::newRow("value -1") << ipnc_gio_write(46, -1) << false;
}

void PlatformHostTest::hardwareCallsOnlyTellRightFromWrong() {
  QFETCH(int, result);
  QFETCH(bool, accepted);
  QCOMPARE(result < 0, !accepted);
  if (accepted) QCOMPARE(result, 0);
}

// docs/platform-host.md, by which somebody writes another recorder.
namespace {
QString Page() {
  QFile page(QStringLiteral(SOURCE_DIR "/docs/platform-host.md"));
  return page.open(QIODevice::ReadOnly) ? QString::fromUtf8(page.readAll()).simplified() : QString();
}
}  // namespace

void PlatformHostTest::thePageTellsTheLayoutOfAMessage() {
  const QString page = Page();
  const std::pair<const char*, size_t> fields[] = {
      {"cmd", offsetof(GUI_MSG_BUF, cmd)},       {"src", offsetof(GUI_MSG_BUF, src)},
      {"shmid", offsetof(GUI_MSG_BUF, shmid)},   {"length", offsetof(GUI_MSG_BUF, length)},
      {"offset", offsetof(GUI_MSG_BUF, offset)}, {"ack", offsetof(GUI_MSG_BUF, ack)},
      {"ret", offsetof(GUI_MSG_BUF, ret)},
  };
  for (const auto& [name, offset] : fields)
    QVERIFY2(page.contains(QStringLiteral("| %1 | `%2` |").arg(offset - sizeof(long)).arg(QLatin1String(name))), name);
  QCOMPARE(offsetof(GUI_MSG_BUF, ret) + sizeof(int) - sizeof(long), size_t(GUI_MSG_SIZE));  // padding may follow
}

void PlatformHostTest::thePageTellsTheNumbers_data() {
  QTest::addColumn<QString>("sentence");
  QTest::newRow("size of a message") << QStringLiteral("are given %1.").arg(int(GUI_MSG_SIZE));
  QTest::newRow("segment")
      << QStringLiteral("16 slots of %1 bytes, %2 in all").arg(int(GUI_SLOT_SIZE)).arg(kSegmentBytes);
  QTest::newRow("slot of a sender") << QStringLiteral("(`src` − 2) · %1").arg(int(GUI_SLOT_SIZE));
  QTest::newRow("last sender") << QStringLiteral("sender's id, 2..%1.").arg(kSegmentBytes / GUI_SLOT_SIZE + 1);
  QTest::newRow("receiver") << QStringLiteral("receiver's id: %1, the interface").arg(int(GUI_ID));
  QTest::newRow("reply")
      << QStringLiteral("%1: the sender wants a reply, %2: none").arg(int(GUI_ACK_YES)).arg(int(GUI_ACK_NO));
  QTest::newRow("kinds of replies") << QStringLiteral("%1: no reply, %2: a reply without data, %3: a reply with data")
                                           .arg(int(GUI_RET_NORET))
                                           .arg(int(GUI_RET_NODATA))
                                           .arg(int(GUI_RET_DATA));
  QTest::newRow("most data") << QStringLiteral("length of the data, 0..%1").arg(kMostData);
  QTest::newRow("setup block")
      << QStringLiteral("%1 carries the setup block of 129 bytes").arg(int(SFIELD_SET_SETUP_COMPLETE));
  QTest::newRow("path") << QStringLiteral("%1 a path of 50 bytes").arg(int(SFIELD_PLAY_VIDEO));
  QTest::newRow("motion maps") << QStringLiteral("%1 and %2 a motion map of 8 bytes")
                                      .arg(int(SFIELD_SET_MOTION_SETTING))
                                      .arg(int(SFIELD_SET_MOTION_SETTING_REAR));
  QTest::newRow("voltage") << QStringLiteral("%1 (a 4-byte float, volts)").arg(int(SFIELD_GET_VOLTAGE));
}

void PlatformHostTest::thePageTellsTheNumbers() {
  QFETCH(QString, sentence);
  QVERIFY2(Page().contains(sentence), qPrintable(sentence));
}

QTEST_GUILESS_MAIN(PlatformHostTest)
#include "platformhost_test.moc"
