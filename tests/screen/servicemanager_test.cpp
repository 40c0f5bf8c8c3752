#include "gui/app/servicemanager.h"

#include <QPaintEvent>
#include <QTest>
#include <QTimer>
#include <optional>

#include "tests/fake/hostfake.h"
#include "tests/fake/managerfake.h"
#include "tests/fake/testroot.h"

static TestRoot root;

namespace {
/// A window that a widget covers, as a screen covers the real one; it notes what was told while it was painted.
class Window : public HostFake {
public:
  explicit Window(ManagerFake& manager) {
    class Screen : public QWidget {
    public:
      explicit Screen(Window* window, ManagerFake& told) : QWidget(window), mWindow(window), mTold(told) {
        setAttribute(Qt::WA_OpaquePaintEvent);
        setGeometry(window->rect());
      }
      void paintEvent(QPaintEvent*) override {
        ++mWindow->painted;
        mWindow->toldBefore += mTold.TakeAll();
      }

    private:
      Window* mWindow;
      ManagerFake& mTold;
    };
    new Screen(this, manager);
  }

  int painted = 0;
  QByteArrayList toldBefore;
};
}  // namespace

class ServiceManagerTest : public QObject {
  Q_OBJECT

private:
  const QByteArray mName = root.Path(QStringLiteral("/run/notify")).toLocal8Bit();
  std::optional<ManagerFake> mManager;
  std::unique_ptr<Window> mWindow;

  /// What is told next while events are handled.
  QByteArray Next() {
    QByteArray told;
    (void)QTest::qWaitFor([&] { return !(told = mManager->Take()).isEmpty(); }, 20000);
    return told;
  }
  bool HasTimer(const ServiceManager& service) { return service.findChild<QTimer*>(); }

private slots:
  void init() {
    qputenv("NOTIFY_SOCKET", mName);
    mManager.emplace(mName);
    mWindow = std::make_unique<Window>(*mManager);
  }
  void cleanup() {
    mWindow.reset();
    mManager.reset();
    for (const char* name : {"NOTIFY_SOCKET", "WATCHDOG_USEC", "WATCHDOG_PID"}) qunsetenv(name);
  }

  void readyIsToldOnceAndAfterTheFirstPicture() {
    ServiceManager service(mWindow.get());
    QCOMPARE(mManager->TakeAll(), QByteArrayList());
    mWindow->show();
    QTRY_VERIFY(mWindow->painted > 0);
    QCOMPARE(mWindow->toldBefore, QByteArrayList());
    QCOMPARE(Next(), QByteArray("READY=1"));
    const int painted = mWindow->painted;
    mWindow->findChild<QWidget*>()->repaint();
    QVERIFY(mWindow->painted > painted);
    for (int turn = 0; turn < 5; ++turn) QCoreApplication::processEvents();
    QCOMPARE(mManager->TakeAll() + mWindow->toldBefore, QByteArrayList());
  }
  // A framebuffer is written when the event that the painting has queued is handled.
  void readyComesAfterWhatThePaintingQueues() {
    ServiceManager service(mWindow.get());
    struct Flush : QObject {
      ManagerFake* manager = nullptr;
      QByteArrayList before;
      bool isDone = false;
      bool eventFilter(QObject*, QEvent* event) override {
        if (event->type() == QEvent::Paint) QCoreApplication::postEvent(this, new QEvent(QEvent::User));
        return false;
      }
      bool event(QEvent* event) override {
        if (event->type() != QEvent::User) return QObject::event(event);
        before += manager->TakeAll();
        isDone = true;
        return true;
      }
    } flush;
    flush.manager = &*mManager;
    mWindow->findChild<QWidget*>()->installEventFilter(
        &flush);  // after the program's: it queues behind what that queues
    mWindow->show();
    QTRY_VERIFY(flush.isDone);
    QCOMPARE(flush.before + mWindow->toldBefore, QByteArrayList());
    QCOMPARE(Next(), QByteArray("READY=1"));
  }
  void theEndIsTold() {
    { const ServiceManager service(mWindow.get()); }
    QCOMPARE(mManager->TakeAll(), (QByteArrayList{"STOPPING=1"}));
  }
  void anAddressMayBeNoFile() {
    const QByteArray name = "@dashcam-test-" + QByteArray::number(QCoreApplication::applicationPid());
    qputenv("NOTIFY_SOCKET", name);
    ManagerFake manager(name);
    { const ServiceManager service(mWindow.get()); }
    QCOMPARE(manager.TakeAll(), (QByteArrayList{"STOPPING=1"}));
  }

  void theWatchdogIsToldForAsLongAsEventsAreHandled() {
    qputenv("WATCHDOG_USEC", "40000");
    const ServiceManager service(mWindow.get());
    QCOMPARE(service.findChild<QTimer*>()->interval(), 20);
    for (int times = 0; times < 3; ++times) QCOMPARE(Next(), QByteArray("WATCHDOG=1"));
    mManager->TakeAll();
    QCOMPARE(mManager->Take(400), QByteArray());  // twenty times its interval in which no event is handled
    QCOMPARE(Next(), QByteArray("WATCHDOG=1"));
  }
  void aLongStepThatGoesOnIsAlive() {
    qputenv("WATCHDOG_USEC", "100000000");
    const ServiceManager service(mWindow.get());
    emit mWindow->longStepGoesOn();
    QCOMPARE(mManager->TakeAll(), (QByteArrayList{"WATCHDOG=1"}));
  }
  void theWatchdogsTime_data() {
    QTest::addColumn<QByteArray>("time");
    QTest::addColumn<QByteArray>("process");
    QTest::addColumn<int>("interval");
    const QByteArray own = QByteArray::number(QCoreApplication::applicationPid());
    const auto row = [](const char* name, const QByteArray& time, const QByteArray& process, int interval) {
      QTest::newRow(name) << time << process << interval;
    };
    row("10 s", "10000000", "", 5000);
    row("of this process", "10000000", own, 5000);
    row("of another process", "10000000", "1", -1);
    row("of no process", "10000000", "x", -1);
    row("none", "", own, -1);
    row("0", "0", own, -1);
    row("no number", "10 s", own, -1);
    row("negative", "-5", own, -1);
    row("beyond a number", "99999999999999999999999", own, -1);
    row("the shortest", "1", own, 1);
    row("the longest", "18446744073709551615", own, 2147483647);
  }
  void theWatchdogsTime() {
    QFETCH(QByteArray, time);
    QFETCH(QByteArray, process);
    if (!time.isEmpty()) qputenv("WATCHDOG_USEC", time);
    if (!process.isEmpty()) qputenv("WATCHDOG_PID", process);
    const ServiceManager service(mWindow.get());
    const auto* timer = service.findChild<QTimer*>();
    QTEST(timer ? timer->interval() : -1, "interval");
    if (timer) return;
    emit mWindow->longStepGoesOn();
    QCOMPARE(mManager->TakeAll(), QByteArrayList());
  }

  void withoutAManagerNothingIsDone() {
    qunsetenv("NOTIFY_SOCKET");
    qputenv("WATCHDOG_USEC", "1000");
    {
      const ServiceManager service(mWindow.get());
      QVERIFY(!HasTimer(service));
      mWindow->show();
      QTRY_VERIFY(mWindow->painted > 0);
      emit mWindow->longStepGoesOn();
      QCoreApplication::processEvents();
    }
    QCOMPARE(mManager->TakeAll() + mWindow->toldBefore, QByteArrayList());
  }
  void whatIsNoAddressIsSaid_data() {
    QTest::addColumn<QByteArray>("name");
    QTest::newRow("relative") << QByteArray("run/notify");
    QTest::newRow("no name") << QByteArray("@");
    QTest::newRow("root") << QByteArray("/");
    QTest::newRow("too long") << "/" + QByteArray(107, 'x');
    QTest::newRow("another kind") << QByteArray("vsock:2:1234");
  }
  void whatIsNoAddressIsSaid() {
    QFETCH(QByteArray, name);
    qputenv("NOTIFY_SOCKET", name);
    qputenv("WATCHDOG_USEC", "1000");
    QTest::ignoreMessage(QtWarningMsg,
                         "service manager: NOTIFY_SOCKET is no address of a Unix socket, nothing is told");
    const ServiceManager service(mWindow.get());
    QVERIFY(!HasTimer(service));
  }
  void aManagerThatIsNotThereIsNoHarm() {
    mManager.reset();
    QTest::ignoreMessage(QtWarningMsg, "service manager: STOPPING=1 was not told: No such file or directory");
    { const ServiceManager service(mWindow.get()); }
    mManager.emplace(mName);
  }
  // A full queue holds the interface up for half a second at most.
  void aManagerThatDoesNotReadIsNoHarm() {
    qputenv("WATCHDOG_USEC", "100000000");
    const ServiceManager service(mWindow.get());
    QStringList said;
    static QStringList* heard = nullptr;
    heard = &said;
    const QtMessageHandler before =
        qInstallMessageHandler([](QtMsgType, const QMessageLogContext&, const QString& line) { *heard << line; });
    for (int i = 0; i < 1000 && said.isEmpty(); ++i) emit mWindow->longStepGoesOn();
    qInstallMessageHandler(before);
    QCOMPARE(said, QStringList("service manager: WATCHDOG=1 was not told: Resource temporarily unavailable"));
    mManager->TakeAll();
  }
};

QTEST_MAIN(ServiceManagerTest)
#include "servicemanager_test.moc"
