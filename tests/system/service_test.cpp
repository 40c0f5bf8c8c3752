// The real interface under a service manager: what it tells, and how it ends when it is asked to.
#include <signal.h>
#include <sys/prctl.h>
#include <sys/stat.h>

#include <QProcess>
#include <QSettings>
#include <QTest>
#include <optional>

#include "bench/panel/touchpanel.h"
#include "platform/sysctrl.h"
#include "recorder/firmware/recorder.h"
#include "recorder/link/commandserver.h"
#include "tests/fake/managerfake.h"
#include "tests/fake/signalto.h"
#include "tests/fake/testroot.h"
#include "tests/system/patience.h"

static const TestRoot root;

namespace {
constexpr char kOwn[] = "/opt/gui/ini/config_firm.ini";
// To an option, on to its next value, and home; and the screen that a touch leads to.
constexpr struct {
  QPoint at;
  const char* screen;
} kWay[] = {{{265, 33}, "screen MAINMENU"}, {{80, 255}, "screen DRIVINGSETTING"}, {{400, 125}, ""}, {{40, 30}, ""}};
}  // namespace

class ServiceTest : public QObject {
  Q_OBJECT

  const QByteArray mName = root.Path(QStringLiteral("/run/notify")).toLocal8Bit();
  std::optional<ManagerFake> mManager;
  QProcess mInterface;
  TouchPanel mPanel;
  QByteArray mSaid;

  pid_t Pid() const { return static_cast<pid_t>(mInterface.processId()); }
  char State() const {
    QFile file(QStringLiteral("/proc/%1/stat").arg(mInterface.processId()));
    if (!file.open(QIODevice::ReadOnly)) return 0;
    const QByteArray text = file.readAll();
    return text[text.lastIndexOf(')') + 2];
  }
  static int SavedBrightness() {
    static int reads = 0;
    const QString copy = root.Path(QStringLiteral("/tmp/saved%1.ini").arg(++reads));  // QSettings remembers files
    if (!QFile::copy(root.Path(QLatin1String(kOwn)), copy)) return -1;
    return QSettings(copy, QSettings::IniFormat).value(QStringLiteral("drivingsetting/gain"), -1).toInt();
  }
  void Start() {
    mInterface.start();
    QVERIFY(mInterface.waitForStarted());
    QVERIFY(QTest::qWaitFor([this] { return mManager->TakeAll().contains("READY=1"); }, 20000));
  }
  void Tap(QPoint at) {
    QString error;
    QVERIFY2(mPanel.Press(at.x(), at.y(), &error), qPrintable(error));
    QVERIFY2(mPanel.Release(&error), qPrintable(error));
  }

private slots:
  void initTestCase() {
    qputenv("PLATFORM_KEY", QByteArray::number(0x46200000 + 2 * (QCoreApplication::applicationPid() & 0xFFFFF)));
    // The stand-ins of its shell.
    QDir(root.Path(QStringLiteral("/"))).mkpath(QStringLiteral("bin"));
    for (const char* command : {"/bin/aplay", "/bin/sync"}) root.Write(QLatin1String(command), "#!/bin/sh\n");
    for (const char* command : {"/bin/aplay", "/bin/sync"})
      QFile::setPermissions(root.Path(QLatin1String(command)), QFile::ReadOwner | QFile::ExeOwner);
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("PATH"), root.Path(QStringLiteral("/bin:")) + qEnvironmentVariable("PATH"));
    environment.insert(QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("offscreen"));
    environment.insert(QStringLiteral("QT_FORCE_STDERR_LOGGING"), QStringLiteral("1"));
    environment.insert(QStringLiteral("NOTIFY_SOCKET"), QString::fromLocal8Bit(mName));
    environment.insert(QStringLiteral("WATCHDOG_USEC"), QStringLiteral("100000"));
    mInterface.setProcessEnvironment(environment);
    mInterface.setProgram(QStringLiteral(BINARY_DIR "/gui/dashcam-gui"));
    mInterface.setProcessChannelMode(QProcess::MergedChannels);
    connect(&mInterface, &QProcess::readyRead, this, [this] { mSaid += mInterface.readAll(); });
    mInterface.setChildProcessModifier([] { prctl(PR_SET_PDEATHSIG, SIGKILL); });
    mManager.emplace(mName);
  }
  void init() {
    QString error;
    QVERIFY2(mPanel.Open(root.Path(QStringLiteral("/dev/input/event0")), &error), qPrintable(error));
    mManager->TakeAll();
    mSaid.clear();
  }
  void cleanup() {
    mInterface.kill();
    mInterface.waitForFinished();
  }
  void cleanupTestCase() { Recorder::RemoveTransport(); }

  void aHungInterfaceIsSilent() {
    Start();
    QVERIFY(mManager->Awaits("WATCHDOG=1"));
    QVERIFY(SignalTo(Pid(), SIGSTOP));
    QTRY_COMPARE(State(), 'T');
    mManager->TakeAll();
    QCOMPARE(mManager->Take(1000), QByteArray());
    QVERIFY(SignalTo(Pid(), SIGCONT));
    QVERIFY(mManager->Awaits("WATCHDOG=1"));
  }

  void anEndIsToldAndOrderly_data() {
    QTest::addColumn<int>("number");
    QTest::newRow("SIGTERM") << SIGTERM;
    QTest::newRow("SIGINT") << SIGINT;
  }
  void anEndIsToldAndOrderly() {
    QFETCH(int, number);
    Start();
    QVERIFY(SignalTo(Pid(), number));
    QVERIFY(mManager->Awaits("STOPPING=1"));
    QVERIFY(mInterface.waitForFinished());
    QCOMPARE(mInterface.exitStatus(), QProcess::NormalExit);
    QCOMPARE(mInterface.exitCode(), 0);
  }

  // It is asked while it applies an option: recording has stopped, the option is neither saved nor sent.
  void whatIsBeingDoneIsDoneToItsEnd() {
    QList<quint32> commands;
    recorder::CommandServer server(
        [&](recorder::CommandServer::Client&, quint32 field, const QByteArray& data) {
          if (field == SFIELD_VIDEO_REC_STOP && !commands.contains(field)) SignalTo(Pid(), SIGTERM);
          commands << field;
          return recorder::CommandServer::Answer{0, data};
        },
        [](const QString&) {});
    QString error;
    QVERIFY2(server.Listen(root.Path(QStringLiteral("/run/recorder.sock")), &error), qPrintable(error));
    Start();
    const int before = SavedBrightness();
    for (const auto& [at, screen] : kWay) {
      Tap(at);
      QTRY_VERIFY2(mSaid.contains(screen), screen);
    }
    QVERIFY(QTest::qWaitFor([&] { return mInterface.state() == QProcess::NotRunning; }, 20000));
    QCOMPARE(mInterface.exitStatus(), QProcess::NormalExit);
    QCOMPARE(mInterface.exitCode(), 0);
    QVERIFY(commands.contains(SFIELD_VIDEO_REC_STOP));
    QVERIFY(SavedBrightness() != before);
    QVERIFY(mManager->Awaits("STOPPING=1"));
  }
};

QTEST_GUILESS_MAIN(ServiceTest)
#include "service_test.moc"
