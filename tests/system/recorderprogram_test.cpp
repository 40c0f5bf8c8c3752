// The recorder as a program of its own, as a person, a script and an interface meet it.
#include <poll.h>
#include <signal.h>
#include <sys/msg.h>
#include <sys/prctl.h>
#include <sys/shm.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

#include <QElapsedTimer>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QLocalServer>
#include <QLocalSocket>
#include <QProcess>
#include <QTest>
#include <cstring>
#include <memory>
#include <vector>

#include "gui/vocabulary/vocabulary.h"
#include "platform/Msg_Def.h"
#include "platform/gui_interface.h"
#include "platform/sysctrl.h"
#include "recorder/firmware/recorder.h"
#include "tests/fake/signalto.h"
#include "tests/fake/testroot.h"
#include "tests/system/patience.h"

static const TestRoot root;

namespace {
constexpr char kSocket[] = "/run/recorder-control.sock";
constexpr char kScenario[] = "/scenario.jsonl";
constexpr int kPatience = 30000;  // ms

// A line that the recorder takes and answers, whatever was before.
constexpr char kGoodLine[] = R"({"type": "state", "id": 7})";

struct Program {
  explicit Program(const QStringList& arguments) {
    process.setChildProcessModifier([] { prctl(PR_SET_PDEATHSIG, SIGKILL); });
    process.start(QStringLiteral(BINARY_DIR "/recorder/dashcam-recorder"), arguments);
  }
  ~Program() {
    if (process.state() == QProcess::NotRunning) return;
    process.kill();
    process.waitForFinished(kPatience);
  }
  Program(const Program&) = delete;
  Program& operator=(const Program&) = delete;

  // Waits for the line that says that it takes commands.
  bool IsUp() {
    while (!process.canReadLine())
      if (!process.waitForReadyRead(kPatience)) return false;
    line = process.readLine().trimmed();
    return line.startsWith("Recorder: ");
  }

  // The exit code; what it said is in `said` then.
  int Ended() {
    if (!process.waitForFinished(kPatience) || process.exitStatus() != QProcess::NormalExit) return -1;
    said = QString::fromUtf8(process.readAllStandardError());
    return process.exitCode();
  }

  QProcess process;
  QByteArray line;
  QString said;
};

bool IsOneSentence(const QString& text) {
  return text.startsWith(QLatin1String("dashcam-recorder: ")) && text.endsWith(QLatin1String(".\n")) &&
         text.count(u'\n') == 1;
}

// A client that has no event loop.
class Client {
public:
  explicit Client(const QString& path = root.Path(QLatin1String(kSocket))) {
    mSocket.connectToServer(path);
    mSocket.waitForConnected(kPatience);
  }

  bool IsConnected() const { return mSocket.state() == QLocalSocket::ConnectedState; }

  void Send(const QByteArray& bytes) {
    mSocket.write(bytes);
    while (mSocket.bytesToWrite() > 0 && mSocket.waitForBytesWritten(kPatience)) continue;
  }

  // The next line, an object; empty: the recorder has closed the connection, or said nothing.
  QJsonObject Take() {
    while (!mSocket.canReadLine())
      if (!mSocket.waitForReadyRead(kPatience)) return {};
    return QJsonDocument::fromJson(mSocket.readLine()).object();
  }

  QJsonObject Ask(const QByteArray& line) {
    Send(line + '\n');
    return Take();
  }

  int Status(const QByteArray& line) {
    const QJsonObject answer = Ask(line);
    return answer.value(QLatin1String("ok")).toBool() ? 200 : answer.value(QLatin1String("status")).toInt(-1);
  }

  bool IsClosed() { return !IsConnected() || mSocket.waitForDisconnected(kPatience); }

  QJsonObject State() {
    return Ask(kGoodLine).value(QLatin1String("state")).toObject().value(QLatin1String("recorder")).toObject();
  }

  // Whether the recorder's state has this value before long.
  bool Shows(const char* name, const QJsonValue& value) {
    for (QDeadlineTimer limit(kPatience); !limit.hasExpired(); QTest::qWait(20))
      if (State().value(QLatin1String(name)) == value) return true;
    return false;
  }

  // Whether the log has an entry of this kind and name before long.
  bool Logs(const char* kind, const QString& name) {
    for (QDeadlineTimer limit(kPatience); !limit.hasExpired(); QTest::qWait(20))
      for (const QJsonValue& value : Ask(R"({"type": "log"})").value(QLatin1String("entries")).toArray()) {
        const QJsonObject entry = value.toObject();
        if (entry.value(QLatin1String("kind")) == QLatin1String(kind) && entry.value(QLatin1String("name")) == name)
          return true;
      }
    return false;
  }

private:
  QLocalSocket mSocket;
};
}  // namespace

class RecorderProgramTest : public QObject {
  Q_OBJECT

  std::unique_ptr<Program> mProgram;
  int mQueue = -1;
  int mSegment = -1;

  void Start(const QStringList& more = {}) {
    mProgram = std::make_unique<Program>(QStringList{QStringLiteral("--root"), root.Path(QString())} + more);
    QVERIFY2(mProgram->IsUp(), mProgram->process.readAllStandardError().constData());
  }

  // Whether this event comes, as the interface gets it.
  bool Comes(int event, int value) const {
    for (QDeadlineTimer limit(kPatience); !limit.hasExpired(); QTest::qWait(10)) {
      GUI_MSG_BUF message{};
      int got = 0;
      while (msgrcv(mQueue, &message, GUI_MSG_SIZE, GUI_ID, IPC_NOWAIT) == GUI_MSG_SIZE)
        if (message.cmd == event && ShareMemReadByMid(mSegment, message.offset, &got, message.length) >= 0 &&
            got == value)
          return true;
    }
    return false;
  }

  static QByteArray Int(int value) { return QByteArray(reinterpret_cast<const char*>(&value), sizeof value); }

  // The first query of an interface that starts.
  static int AskVoltage() {
    QByteArray volts(4, '\0');
    return ControlSystemData(SFIELD_GET_VOLTAGE, volts.data(), 4);
  }

private slots:
  void initTestCase() {
    qputenv("PLATFORM_KEY", QByteArray::number(0x46000000 + getpid()));
    mQueue = Gui_InitMessage();
    mSegment = Gui_InitSharedMemory();
    QVERIFY(mQueue >= 0 && mSegment >= 0);
    // A card with something on it is not filled.
    root.Write("/mnt/mmc/rec0_20260131_235959.avi", "a recording");
  }
  void cleanupTestCase() { Recorder::RemoveTransport(); }
  void cleanup() {
    mProgram.reset();
    root.Remove(QLatin1String(kSocket));  // of one that was killed
  }

  void wrongOptions_data() {
    QTest::addColumn<QStringList>("arguments");
    QTest::newRow("unknown") << QStringList{"--port", "1"};
    QTest::newRow("argument") << QStringList{"--root", root.Path(QString()), "drive"};
    QTest::newRow("no root") << QStringList{"--root", ""};
    QTest::newRow("no socket") << QStringList{"--root", root.Path(QString()), "--socket="};
    QTest::newRow("no value") << QStringList{"--scenario"};
  }
  void wrongOptions() {
    QFETCH(QStringList, arguments);
    Program program(arguments);
    QCOMPARE(program.Ended(), 2);
    QVERIFY2(IsOneSentence(program.said), qPrintable(program.said));
  }

  void withoutARootNothingIsTouched() {
    const QByteArray before = qgetenv("DASHCAM_ROOT");
    qunsetenv("DASHCAM_ROOT");
    Program program({});
    QCOMPARE(program.Ended(), 2);
    qputenv("DASHCAM_ROOT", before);
    QVERIFY2(IsOneSentence(program.said) && program.said.contains("--root"), qPrintable(program.said));
  }

  void theRootMayComeByTheEnvironment() {
    Program program({});
    QVERIFY(program.IsUp());
    QCOMPARE(program.line, "Recorder: " + root.Path(QLatin1String(kSocket)).toUtf8());
  }

  void saysItsOptionsAndItsVersion() {
    Program help({"--help"});
    QCOMPARE(help.Ended(), 0);
    QVERIFY(help.process.readAllStandardOutput().startsWith("Usage: dashcam-recorder "));
    Program version({"--version"});
    QCOMPARE(version.Ended(), 0);
    const QString said = QString::fromUtf8(version.process.readAllStandardOutput());
    QVERIFY2(QRegularExpression("\\Adashcam-recorder [0-9]+\\.[0-9.]+\n\\z").match(said).hasMatch(), qPrintable(said));
  }

  void anActionIsDone() {
    Start();
    Client client;
    QCOMPARE(client.Ask(R"({"type": "action", "name": "speed", "kmh": 87, "id": 5})"),
             (QJsonObject{{"type", "answer"}, {"id", 5}, {"ok", true}}));
    QCOMPARE(client.State().value("speed"), 87);
    QVERIFY(client.Logs("action", "speed"));
    QVERIFY(Comes(RECV_ZEL_STATUS_SPEED, 87));
  }

  void anEventReachesTheInterface() {
    Start();
    Client client;
    QCOMPARE(client.Status(R"({"type": "event", "event": 11, "value": -4})"), 200);
    QVERIFY(Comes(11, -4));
    QCOMPARE(client.Status(R"({"type": "event", "event": 39})"), 400);
  }

  // The queue takes so many; nobody reads it here.
  void anEventThatFindsNoRoomIsRefused() {
    Start();
    Client client;
    int status = 200;
    for (int i = 0; i < 100000 && status == 200; ++i) status = client.Status(R"({"type": "event", "event": 24})");
    QCOMPARE(status, 409);
    QCOMPARE(client.Status(R"({"type": "action", "name": "speed", "kmh": 1})"), 409);
    Gui_InitMessage();  // empties it
  }

  void anInterfaceIsAnswered() {
    Start();
    Client client;
    QCOMPARE(AskVoltage(), 0);
    QVERIFY(Comes(RECV_ZEL_STATUS_CAM_CNT, 2));
    QVERIFY(client.Logs("note", "An interface has started."));
    QVERIFY(ControlSystemData(SFIELD_SET_VIEWREAR, Int(1).data(), 4) >= 0);
    const QJsonObject answer = client.Ask(kGoodLine);
    QCOMPARE(answer.value("state").toObject().value("video").toObject().value("view"), "rear");
  }

  void theStateIsThatOfTheBench() {
    Start();
    Client client;
    const QJsonObject state = client.Ask(kGoodLine).value("state").toObject();
    QCOMPARE(state.keys(), (QStringList{"armed", "log", "recorder", "root", "unavailable", "video"}));
    QCOMPARE(state.value("root"), QJsonValue(QFileInfo(root.Path(QString())).canonicalFilePath()));
    const QJsonObject all = client.Ask(R"({"type": "actions"})");
    QCOMPARE(all.value("actions").toArray(), Recorder::Actions());
    QCOMPARE(all.value("events").toArray().size(), 38);
  }

  void theLogIsTold() {
    Start();
    Client client;
    for (int kmh : {1, 2, 3})
      client.Ask("{\"type\": \"action\", \"name\": \"speed\", \"kmh\": " + QByteArray::number(kmh) + "}");
    const qint64 last = client.Ask(R"({"type": "log"})").value("last").toInteger();
    QVERIFY(last >= 6);  // an event and an action each
    const QJsonArray entries =
        client.Ask("{\"type\": \"log\", \"since\": " + QByteArray::number(last - 1) + "}").value("entries").toArray();
    QCOMPARE(entries.size(), 1);
    QCOMPARE(entries[0].toObject().value("arguments").toObject().value("kmh"), 3);
  }

  void whoWatchesIsTold() {
    Start();
    Client watcher, other;
    QCOMPARE(watcher.Status(R"({"type": "watch", "on": true})"), 200);
    QCOMPARE(watcher.Take().value("type"), "state");
    QCOMPARE(other.Status(R"({"type": "action", "name": "speed", "kmh": 66})"), 200);
    bool state = false, log = false;
    while (!state || !log) {
      const QJsonObject message = watcher.Take();
      QVERIFY(!message.isEmpty());
      state = state || message.value("state").toObject().value("recorder").toObject().value("speed") == 66;
      for (const QJsonValue& entry : message.value("entries").toArray())
        log = log || entry.toObject().value("arguments").toObject().value("kmh") == 66;
    }
  }

  void aScenarioBeginsWithTheInterface() {
    root.Write(kScenario, R"({"ms": 0, "action": "speed", "kmh": 44})"
                          "\n"
                          R"({"ms": 1, "touch": {"x": 80, "y": 125}})"
                          "\n");
    Start({"--scenario", root.Path(kScenario)});
    Client client;
    QCOMPARE(client.State().value("speed"), 0);
    QCOMPARE(AskVoltage(), 0);
    QVERIFY(client.Shows("speed", 44));
    QVERIFY(client.Logs("note", "There is no touch panel here: a tap is left out."));
    root.Write(kScenario, R"({"ms": 0, "event": 24, "value": 45})");
    QCOMPARE(client.Status("{\"type\": \"scenario\", \"file\": \"" + root.Path(kScenario).toUtf8() + "\"}"), 200);
    QVERIFY(Comes(24, 45));
  }

  void aBadScenarioIsRefused() {
    root.Write(kScenario, "{\"ms\": -1}\n");
    Program program({"--root", root.Path(QString()), "--scenario", root.Path(kScenario)});
    QCOMPARE(program.Ended(), 1);
    QVERIFY2(IsOneSentence(program.said) && program.said.contains("Line 1"), qPrintable(program.said));
    QVERIFY(!root.Exists(kSocket));
    Start();
    Client client;
    for (const QByteArray& file : QByteArrayList{root.Path(kScenario).toUtf8(), "/dev/zero", "nowhere", ""})
      QCOMPARE(client.Status("{\"type\": \"scenario\", \"file\": \"" + file + "\"}"), 400);
  }

  void aRestartIsTold() {
    Start();
    Client client;
    QCOMPARE(client.Status(R"({"type": "action", "name": "factoryReset"})"), 200);
    QVERIFY(client.Logs("note", "The device restarts: the interface is to be started again."));
  }

  void hostileLines_data() {
    QTest::addColumn<QByteArray>("line");
    QTest::newRow("text") << QByteArray("speed 87");
    QTest::newRow("number") << QByteArray("87");
    QTest::newRow("array") << QByteArray("[{}]");
    QTest::newRow("cut off") << QByteArray(R"({"type": "state")");
    QTest::newRow("two") << QByteArray(R"({"type": "state"}{"type": "state"})");
    QTest::newRow("no type") << QByteArray("{}");
    QTest::newRow("type is a number") << QByteArray(R"({"type": 1})");
    QTest::newRow("the bench's") << QByteArray(R"({"type": "touch", "action": "tap", "x": 1, "y": 1})");
    QTest::newRow("id is a text") << QByteArray(R"({"type": "state", "id": "1"})");
    QTest::newRow("id is a fraction") << QByteArray(R"({"type": "state", "id": 1.5})");
    QTest::newRow("unknown member") << QByteArray(R"({"type": "state", "all": true})");
    QTest::newRow("watch what") << QByteArray(R"({"type": "watch"})");
    QTest::newRow("since ever") << QByteArray(R"({"type": "log", "since": -1})");
    QTest::newRow("no name") << QByteArray(R"({"type": "action"})");
    QTest::newRow("unknown action") << QByteArray(R"({"type": "action", "name": "fly"})");
    QTest::newRow("argument out of range") << QByteArray(R"({"type": "action", "name": "speed", "kmh": 301})");
    QTest::newRow("argument too much") << QByteArray(R"({"type": "action", "name": "powerKey", "kmh": 1})");
    QTest::newRow("long action") << "{\"type\": \"action\", \"name\": \"" + QByteArray(2000, 'a') + "\"}";
    QTest::newRow("event is a text") << QByteArray(R"({"type": "event", "event": "11"})");
    QTest::newRow("value too large") << QByteArray(R"({"type": "event", "event": 11, "value": 2147483648})");
    QTest::newRow("no UTF-8") << QByteArray("{\"type\": \"\xff\xfe\"}");
    QTest::newRow("zero bytes") << QByteArray("{\"type\": \"state\0\"}", 18);
    QTest::newRow("deep") << QByteArray(60000, '[');
    QTest::newRow("longest") << "{\"type\": \"" + QByteArray(65536 - 13, 'a') + "\"}";
  }
  void hostileLines() {
    QFETCH(QByteArray, line);
    Start();
    Client client;
    const QJsonObject answer = client.Ask(line);
    QCOMPARE(answer.value("status"), 400);
    const QString error = answer.value("error").toString();
    QVERIFY2(error.size() > 10 && error.endsWith(u'.') && !error.contains(u'\n') && error.size() < 200,
             qPrintable(error));
    QCOMPARE(client.Status(kGoodLine), 200);
  }

  void aLineWithoutEndEndsTheConnection() {
    Start();
    Client client;
    client.Send(QByteArray(70000, 'x'));
    QCOMPARE(client.Take().value("status"), 413);
    QVERIFY(client.IsClosed());
    QCOMPARE(Client().Status(kGoodLine), 200);
  }

  void emptyLinesAreNone() {
    Start();
    Client client;
    client.Send("\n \r\n\n");
    QCOMPARE(client.Ask(QByteArray(kGoodLine) + "\r").value("id"), 7);
  }

  void whatIsSentBeforeLeavingIsDone() {
    Start();
    Client().Send(R"({"type": "action", "name": "speed", "kmh": 99})"
                  "\n");
    QVERIFY(Client().Shows("speed", 99));
  }

  void aClientTooManyIsRefused() {
    Start();
    std::vector<std::unique_ptr<Client>> clients;
    for (int i = 0; i < 16; ++i) {
      clients.push_back(std::make_unique<Client>());
      QCOMPARE(clients.back()->Status(kGoodLine), 200);
    }
    Client late;
    QCOMPARE(late.Take().value("status"), 409);
    QVERIFY(late.IsClosed());
    QCOMPARE(clients.front()->Status(kGoodLine), 200);
    clients.clear();
    QTRY_COMPARE_WITH_TIMEOUT(Client().Status(kGoodLine), 200, kPatience);
  }

  // It asks and asks and takes no answer.
  void aClientThatTakesNothingIsGivenUp() {
    Start();
    const int socket = ::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    const QByteArray path = root.Path(QLatin1String(kSocket)).toLocal8Bit();
    std::memcpy(address.sun_path, path.constData(), static_cast<size_t>(path.size()));
    QCOMPARE(::connect(socket, reinterpret_cast<const sockaddr*>(&address), sizeof address), 0);
    // The answers to all of these would be a hundred megabytes.
    const QByteArray lines = QByteArray("{\"type\": \"actions\"}\n").repeated(100);
    for (int i = 0; i < 100; ++i) send(socket, lines.constData(), static_cast<size_t>(lines.size()), MSG_NOSIGNAL);
    pollfd end{socket, 0, 0};
    QCOMPARE(poll(&end, 1, kPatience), 1);
    QVERIFY(end.revents & POLLHUP);
    close(socket);
    QCOMPARE(Client().Status(kGoodLine), 200);
    QFile status(QStringLiteral("/proc/%1/status").arg(mProgram->process.processId()));
    QVERIFY(status.open(QIODevice::ReadOnly));
    const auto most = QRegularExpression("VmHWM:\\s*([0-9]+) kB").match(QString::fromLatin1(status.readAll()));
    QVERIFY(most.hasMatch());
    QVERIFY2(most.captured(1).toInt() < 80000, qPrintable(most.captured(0)));
  }

  void aSecondRecorderIsRefused() {
    Start();
    Program second({"--root", root.Path(QString()), "--socket", root.Path("/second.sock")});
    QCOMPARE(second.Ended(), 1);
    QVERIFY2(IsOneSentence(second.said) && second.said.contains("Another recorder"), qPrintable(second.said));
    QVERIFY(!root.Exists("/second.sock"));
    QCOMPARE(Client().Status(kGoodLine), 200);
    QCOMPARE(AskVoltage(), 0);
  }

  void onlyThisUserMayCome() {
    Start();
    for (const char* file : {kSocket, "/run/recorder.sock"}) {
      struct stat state {};
      QCOMPARE(stat(qPrintable(root.Path(QLatin1String(file))), &state), 0);
      QCOMPARE(state.st_mode & 07777, mode_t{0600});
    }
  }

  void theSocketMayBeElsewhere() {
    const QString path = root.Path("/elsewhere.sock");
    Start({"--socket", path});
    QCOMPARE(Client(path).Status(kGoodLine), 200);
    QVERIFY(!root.Exists(kSocket));
  }

  void whatIsNoSocketStays() {
    root.Write("/letter", "a letter");
    Program program({"--root", root.Path(QString()), "--socket", root.Path("/letter")});
    QCOMPARE(program.Ended(), 1);
    QVERIFY2(IsOneSentence(program.said), qPrintable(program.said));
    QCOMPARE(root.Read("/letter"), QByteArray("a letter"));
  }

  void aSocketThatSomebodyHasStays() {
    QLocalServer server;
    QVERIFY(server.listen(root.Path("/theirs.sock")));
    Program program({"--root", root.Path(QString()), "--socket", root.Path("/theirs.sock")});
    QCOMPARE(program.Ended(), 1);
    QVERIFY2(IsOneSentence(program.said) && program.said.contains("Another program"), qPrintable(program.said));
    QVERIFY(root.Exists("/theirs.sock"));
  }

  void aSocketThatCannotBeIsTold_data() {
    QTest::addColumn<QString>("path");
    QTest::newRow("no folder") << root.Path("/nowhere/recorder.sock");
    QTest::newRow("too long") << root.Path("/" + QString(120, 'x'));
  }
  void aSocketThatCannotBeIsTold() {
    QFETCH(QString, path);
    Program program({"--root", root.Path(QString()), "--socket", path});
    QCOMPARE(program.Ended(), 1);
    QVERIFY2(IsOneSentence(program.said), qPrintable(program.said));
  }

  void aSignalEndsIt_data() {
    QTest::addColumn<int>("number");
    for (const int number : {SIGINT, SIGTERM, SIGHUP}) QTest::newRow(strsignal(number)) << number;
  }
  void aSignalEndsIt() {
    QFETCH(int, number);
    Start();
    Client client;
    QCOMPARE(client.Status(kGoodLine), 200);
    QVERIFY(SignalTo(static_cast<pid_t>(mProgram->process.processId()), number));
    QCOMPARE(mProgram->Ended(), 0);
    QCOMPARE(mProgram->said, QString());
    QVERIFY(client.IsClosed());
    for (const char* file : {kSocket, "/run/recorder.sock"}) QVERIFY2(!root.Exists(QLatin1String(file)), file);
  }

  void whatADeadOneLeftIsReplaced() {
    Start();
    mProgram->process.kill();
    QVERIFY(mProgram->process.waitForFinished(kPatience));
    QVERIFY(root.Exists(kSocket));
    Start();
    QCOMPARE(Client().Status(kGoodLine), 200);
  }

  // A fresh card comes with recordings, as the bench's does.
  void aNewCardIsFilled() {
    const QString fresh = root.Path("/fresh");
    {
      Program program({"--root", fresh});
      QVERIFY(program.IsUp());
    }
    QCOMPARE(QDir(fresh + "/mnt/mmc").entryList({"*.avi"}, QDir::Files).size(), 362);
  }
};

QTEST_GUILESS_MAIN(RecorderProgramTest)
#include "recorderprogram_test.moc"
