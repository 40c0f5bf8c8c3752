#include "gui/touch/touchthread.h"

#include <fcntl.h>
#include <linux/input.h>
#include <pty.h>
#include <sys/ioctl.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <termios.h>
#include <unistd.h>

#include <QDir>
#include <QTest>
#include <QTimer>
#include <atomic>
#include <climits>
#include <cmath>
#include <csignal>
#include <limits>
#include <random>

#include "gui/base/devicepath.h"
#include "gui/base/globals.h"
#include "gui/screen/widgetmanager.h"
#include "gui/settings/settings.h"
#include "tests/fake/hostfake.h"
#include "tests/fake/testroot.h"

static TestRoot root;

namespace {
constexpr Touch_Value kAsItIs{1, 0, 0, 1, 0, 0};

/// A record of the input device: of the camera's kernel (16 bytes), or of another (24).
QByteArray Record(int type, int code, int value, int size = 16) {
  QByteArray record(size, '\xEE');
  const quint16 typeAndCode[] = {quint16(type), quint16(code)};
  const qint32 number = value;
  std::memcpy(record.data() + size - 8, typeAndCode, sizeof typeAndCode);
  std::memcpy(record.data() + size - 4, &number, sizeof number);
  return record;
}

/// A finger that comes down at (x, y) of the screen and goes up again, as the panel tells it.
QByteArray Tap(int x, int y, int size = 16) {
  return Record(EV_ABS, ABS_X, y, size) + Record(EV_ABS, ABS_Y, x, size) + Record(EV_ABS, ABS_PRESSURE, 100, size) +
         Record(EV_SYN, 0, 0, size) + Record(EV_ABS, ABS_PRESSURE, 0, size) + Record(EV_SYN, 0, 0, size);
}

std::atomic<int> interrupted = 0;
}  // namespace

/// Holds the reader up at its first touch until the test listens: it begins before its constructor returns.
class ListenedHost : public HostFake {
public:
  std::atomic<bool> listens = true;
  bool GetIsCurrentShowTouchMotion() const override {
    listens.wait(false);
    return HostFake::GetIsCurrentShowTouchMotion();
  }
};

namespace {
// What the class keeps and nothing asks for.
class Reader : public TouchThread {
public:
  using TouchThread::arMeasuredPoint;
  using TouchThread::nOldIdx;
  using TouchThread::statTouch;
  using TouchThread::stComp;
  using TouchThread::timAuto;
  using TouchThread::timLongPress;
  using TouchThread::timLongPressEvent;
  using TouchThread::timRelease;
  using TouchThread::timReleaseDelay;
  using TouchThread::TouchThread;
  using TouchThread::x;
  using TouchThread::y;
};
}  // namespace

class TouchThreadTest : public QObject {
  Q_OBJECT

private:
  std::unique_ptr<ListenedHost> mHost;
  std::unique_ptr<Reader> mReader;
  QStringList mTold;

  const QString mDevice = root.Path(device::kTouchDevice);
  int mWriter = -1;

  void Start();
  void Screen(WidgetId id) { gWidgetManager.SetCurWidgetInfo({id}); }
  void Take(const QList<QList<int>>& records) {
    for (const QList<int>& record : records) mReader->Take(record[0], record[1], record[2]);
  }
  void Down(int panelX, int panelY) { Take({{3, 0, panelX}, {3, 1, panelY}, {3, 24, 200}}); }
  void Up() { Take({{3, 24, 0}}); }
  QStringList Told() { return std::exchange(mTold, {}); }

  void MakeFifo() { QCOMPARE(mkfifo(qPrintable(mDevice), 0600), 0); }
  /// Nobody but the reader is on the other end.
  bool TryOpenFifo() {
    if (mWriter < 0) mWriter = open(qPrintable(mDevice), O_WRONLY | O_NONBLOCK);
    return mWriter >= 0;
  }
  void OpenFifo() { QTRY_VERIFY(TryOpenFifo()); }
  void Write(const QByteArray& bytes) {
    QCOMPARE(write(mWriter, bytes.constData(), size_t(bytes.size())), bytes.size());
  }
  void CloseFifo() { close(std::exchange(mWriter, -1)); }
  int Unread() const {
    int bytes = -1;
    return ioctl(mWriter, FIONREAD, &bytes) == 0 ? bytes : -1;
  }
  /// The reader's thread among those of the process, 0 when there is none.
  static int ThreadId() {
    for (const QString& id : QDir("/proc/self/task").entryList(QDir::Dirs | QDir::NoDotAndDotDot)) {
      QFile name("/proc/self/task/" + id + "/comm");
      if (name.open(QIODevice::ReadOnly) && name.readAll() == "TouchThread\n") return id.toInt();
    }
    return 0;
  }
  /// How often the thread has gone to sleep.
  static int Sleeps() {
    QFile status(QStringLiteral("/proc/self/task/%1/status").arg(ThreadId()));
    if (!status.open(QIODevice::ReadOnly)) return -1;
    const QByteArray text = status.readAll();
    return text.sliced(text.indexOf("\nvoluntary_ctxt_switches:") + 25).simplified().split(' ').first().toInt();
  }
  /// Closes the FIFO once all is read, and waits until the reader has noticed.
  void LeaveFifo() {
    QTRY_VERIFY(Unread() == 0 && IsAsleep());
    const int before = Sleeps();
    CloseFifo();
    QTRY_VERIFY(Sleeps() > before && IsAsleep());
  }
  static bool IsAsleep() {
    QFile state(QStringLiteral("/proc/self/task/%1/stat").arg(ThreadId()));
    return state.open(QIODevice::ReadOnly) && state.readAll().contains(") S ");
  }

private slots:
  void init();
  void cleanup();

  // What records mean
  void aFingerDownIsOnePressAtTheLatestPoint();
  void aFingerThatStaysDownIsNotToldAgain();
  void theNextContactIsToldAgain();
  void aPressBeforeAnyPointIsAtTheOrigin();
  void aReleaseIsToldToTheScreensThatWantIt_data();
  void aReleaseIsToldToTheScreensThatWantIt();
  void valuesKeepTheirLowNineBits_data();
  void valuesKeepTheirLowNineBits();
  void pressureKeepsItsLowNineBits_data();
  void pressureKeepsItsLowNineBits();
  void otherRecordsAreSkipped_data();
  void otherRecordsAreSkipped();
  void theCalibrationGetsPanelValues();
  void theDrawingSurfaceGetsEverySample();
  void theDrawingSurfaceNeedsBothFlags_data();
  void theDrawingSurfaceNeedsBothFlags();

  // Calibration
  void aPointIsMappedToTheScreen_data();
  void aPointIsMappedToTheScreen();
  void newCoefficientsCountFromTheNextTouch();

  // The mapping by two edges
  void anEdgeMapsAnAxis_data();
  void anEdgeMapsAnAxis();
  void edgesThatFallTogetherMapNothing();
  void fourTapsLearnTheEdges();
  void tapsOnTheOtherSideMoveTheEdgesTheSameWay();
  void aTapOutOfOrderStartsAgain_data();
  void aTapOutOfOrderStartsAgain();

  // Timers
  void aNewReaderHasNoTimerRunning();
  void theAutoTimer();
  void theReleaseTimer();
  void theReleaseDelayTimer();
  void theLongPressTimer();
  void aLongPressRepeats();
  void aPanelPointCanBeToldByHand();

  // The device
  void aDeviceThatComesIsRead_data();
  void aDeviceThatComesIsRead();
  void whatIsNoDeviceIsWaitedOut_data();
  void whatIsNoDeviceIsWaitedOut();
  void theCommandLinesDeviceIsTakenAsItIsGiven();
  void aFileIsReadToItsEnd();
  void theRestOfAFileIsNoRecord();
  void touchesComeThroughAFifo();
  void aRecordInTwoHalvesIsOne();
  void theNextWriterIsHeard();
  void withoutAWriterTheReaderSleeps();
  void halfARecordOfAGoneWriterIsForgotten();
  void aGoneWriterLiftsTheFinger();
  void aRemovedDeviceIsReadOnAndItsNextOneFound();
  void aReplacedDeviceIsFoundAndTheFingerLifted();
  void whileNothingHappensTheReaderSleeps();
  void aSignalEndsNothing();
  void aWaitThatFailsEndsNothing();
  void aDeviceOfThisMachineHasItsOwnRecords();
  void garbageIsNoHarm();
  void theThreadEndsWheneverItIsTold_data();
  void theThreadEndsWheneverItIsTold();
};

void TouchThreadTest::init() {
  mHost = std::make_unique<ListenedHost>();
  gEnvirnmentSettings.mTouchValue.Store(kAsItIs);
  Screen(PREVIEW);
  root.Write(device::kTouchDevice, {});
  Start();
  QVERIFY(mReader->wait(5000));  // at the end of its file: else it would find the device that the test makes
  QVERIFY(QFile::remove(mDevice));
}

void TouchThreadTest::Start() {
  mReader.reset();
  mHost->listens = false;
  mReader = std::make_unique<Reader>(mHost.get());
  mTold.clear();
  const auto tell = [this](const char* what, const QList<int>& numbers) {
    QString line = QLatin1String(what);
    for (int number : numbers) line += QStringLiteral(" %1").arg(number);
    mTold << line;
  };
  const TouchThread* reader = mReader.get();
  connect(reader, &TouchThread::pressEvent, this, [=](int type, int x, int y) { tell("press", {type, x, y}); });
  connect(reader, &TouchThread::autoEvent, this, [=](int type, int x, int y) { tell("auto", {type, x, y}); });
  connect(reader, &TouchThread::releaseEvent, this, [=](int type, int x, int y) { tell("release", {type, x, y}); });
  connect(reader, &TouchThread::inputTouchPanel, this, [=](int x, int y) { tell("panel", {x, y}); });
  connect(reader, &TouchThread::touchMotionPanel, this, [=](int rawX, int rawY, int x, int y) {
    tell("motion", {rawX, rawY, x, y});
  });
  connect(reader, &TouchThread::sendReleaseEvent, this, [=](bool up) { tell("list", {up}); });
  connect(reader, &TouchThread::sendTimeLayoutReleaseEvent, this, [=](bool up) { tell("time", {up}); });
  connect(reader, &TouchThread::sendLedListLayoutReleaseEvent, this, [=](bool up) { tell("led", {up}); });
  connect(reader, &TouchThread::errorEvent, this, [=](int error) { tell("error", {error}); });
  mHost->listens = true;
  mHost->listens.notify_all();
}

void TouchThreadTest::cleanup() {
  mReader.reset();
  QCoreApplication::sendPostedEvents(this);  // what was told and not asked for is not the next test's
  if (mWriter >= 0) CloseFifo();
  gTouchDevice.clear();
  QDir(root.Path(QStringLiteral("/dev"))).removeRecursively();
  QDir().mkpath(QFileInfo(mDevice).path());
  mHost.reset();
}

// ---- what records mean

void TouchThreadTest::aFingerDownIsOnePressAtTheLatestPoint() {
  QVERIFY(mReader->GetIsRelease());
  Take({{3, 0, 30}, {3, 1, 40}, {3, 0, 50}});
  QCOMPARE(Told(), QStringList());
  Take({{3, 24, 200}, {0, 0, 0}});
  QCOMPARE(Told(), QStringList("press 1 40 50"));
  QVERIFY(!mReader->GetIsRelease());
}

void TouchThreadTest::aFingerThatStaysDownIsNotToldAgain() {
  Down(30, 40);
  Told();
  Take({{3, 24, 201}});
  Down(60, 70);
  QCOMPARE(Told(), QStringList());
  QVERIFY(!mReader->GetIsRelease());
}

void TouchThreadTest::theNextContactIsToldAgain() {
  Down(30, 40);
  Up();
  QVERIFY(mReader->GetIsRelease());
  Down(60, 70);
  QCOMPARE(Told(), QStringList({"press 1 40 30", "press 1 70 60"}));
}

void TouchThreadTest::aPressBeforeAnyPointIsAtTheOrigin() {
  Take({{3, 24, 1}});
  QCOMPARE(Told(), QStringList("press 1 0 0"));
}

void TouchThreadTest::aReleaseIsToldToTheScreensThatWantIt_data() {
  QTest::addColumn<int>("screen");
  QTest::addColumn<QStringList>("told");
  for (int screen = UNKNOWN; screen < SCREENS_END; ++screen) {
    QStringList told;
    if (screen == RECORDINGLIST) told << "list 1";
    if (screen == TIMELAYOUT) told << "time 1";
    if (screen == LEDFILELIST) told << "led 1";
    QTest::newRow(NameOf(WidgetId(screen))) << screen << told;
  }
}

void TouchThreadTest::aReleaseIsToldToTheScreensThatWantIt() {
  QFETCH(int, screen);
  Screen(WidgetId(screen));
  Down(30, 40);
  QCOMPARE(Told(), QStringList(screen == TOUCHCOMP ? "panel 40 30" : "press 1 40 30"));
  Up();
  QTEST(Told(), "told");
  QVERIFY(mReader->GetIsRelease());
}

void TouchThreadTest::valuesKeepTheirLowNineBits_data() {
  QTest::addColumn<int>("value");
  QTest::addColumn<int>("kept");
  for (const auto& [value, kept] : std::initializer_list<std::pair<int, int>>{
           {0, 0}, {511, 511}, {512, 0}, {513, 1}, {1000, 488}, {-1, 511}, {INT_MAX, 511}, {INT_MIN, 0}})
    QTest::addRow("%d", value) << value << kept;
}

void TouchThreadTest::valuesKeepTheirLowNineBits() {
  QFETCH(int, value);
  QFETCH(int, kept);
  Screen(TOUCHCOMP);
  Take({{3, 0, value}, {3, 1, 7}, {3, 24, 200}, {3, 24, 0}, {3, 0, 7}, {3, 1, value}, {3, 24, 200}});
  QCOMPARE(Told(), QStringList({QStringLiteral("panel 7 %1").arg(kept), QStringLiteral("panel %1 7").arg(kept)}));
}

void TouchThreadTest::pressureKeepsItsLowNineBits_data() {
  QTest::addColumn<int>("pressure");
  QTest::addColumn<bool>("down");
  QTest::newRow("1") << 1 << true;
  QTest::newRow("511") << 511 << true;
  QTest::newRow("512") << 512 << false;
  QTest::newRow("513") << 513 << true;
  QTest::newRow("-1") << -1 << true;
  QTest::newRow("0") << 0 << false;
}

void TouchThreadTest::pressureKeepsItsLowNineBits() {
  QFETCH(int, pressure);
  QFETCH(bool, down);
  Take({{3, 24, pressure}});
  QCOMPARE(mReader->GetIsRelease(), !down);
  QCOMPARE(Told().size(), down ? 1 : 0);
}

void TouchThreadTest::otherRecordsAreSkipped_data() {
  QTest::addColumn<int>("type");
  QTest::addColumn<int>("code");
  for (int type : {0, 1, 2, 4, 5, 17, 21, 65535}) QTest::addRow("type %d", type) << type << 24;
  for (int code : {2, 3, 23, 25, 47, 53, 54, 57, 65535}) QTest::addRow("axis %d", code) << 3 << code;
}

void TouchThreadTest::otherRecordsAreSkipped() {
  QFETCH(int, type);
  QFETCH(int, code);
  Take({{3, 0, 30}, {3, 1, 40}, {type, code, 100}});
  if (type != 3) Take({{type, 0, 100}, {type, 1, 100}});
  QCOMPARE(Told(), QStringList());
  QVERIFY(mReader->GetIsRelease());
  Take({{3, 24, 200}});
  QCOMPARE(Told(), QStringList("press 1 40 30"));
  Take({{type, code, 0}});
  QVERIFY(!mReader->GetIsRelease());
}

void TouchThreadTest::theCalibrationGetsPanelValues() {
  gEnvirnmentSettings.mTouchValue.Store({2, 0, 0, 2, 5, 5});
  Screen(TOUCHCOMP);
  Down(500, 300);
  QCOMPARE(Told(), QStringList("panel 300 500"));
  Take({{3, 24, 201}});
  Up();
  QCOMPARE(Told(), QStringList());
}

void TouchThreadTest::theDrawingSurfaceGetsEverySample() {
  gEnvirnmentSettings.mTouchValue.Store({2, 0, 0, 1, 0, 5});
  mHost->isShowTouchMotion = mHost->isTouchMotionVer = true;
  Down(30, 40);
  Down(31, 41);
  Take({{3, 24, 9}});
  QCOMPARE(Told(), QStringList({"motion 40 30 80 35", "motion 41 31 82 36", "motion 41 31 82 36"}));
  QVERIFY(mReader->GetIsRelease());
  Up();
  QCOMPARE(Told(), QStringList());
}

void TouchThreadTest::theDrawingSurfaceNeedsBothFlags_data() {
  QTest::addColumn<bool>("shown");
  QTest::addColumn<bool>("test");
  QTest::newRow("not shown") << false << true;
  QTest::newRow("no test") << true << false;
}

void TouchThreadTest::theDrawingSurfaceNeedsBothFlags() {
  QFETCH(bool, shown);
  QFETCH(bool, test);
  mHost->isShowTouchMotion = shown;
  mHost->isTouchMotionVer = test;
  Down(30, 40);
  Down(31, 41);
  QCOMPARE(Told(), QStringList("press 1 40 30"));
}

// ---- calibration

void TouchThreadTest::aPointIsMappedToTheScreen_data() {
  QTest::addColumn<Touch_Value>("by");
  QTest::addColumn<int>("x");
  QTest::addColumn<int>("y");
  QTest::addColumn<QString>("press");
  const double nan = std::numeric_limits<double>::quiet_NaN(), huge = std::numeric_limits<double>::infinity();
  const auto add = [](const char* name, Touch_Value by, int x, int y, const char* point) {
    QTest::newRow(name) << by << x << y << QStringLiteral("press 1 ") + QLatin1String(point);
  };
  // alphaX, alphaY, betaX, betaY, deltaX, deltaY
  add("as it is", {1, 0, 0, 1, 0, 0}, 100, 200, "100 200");
  add("every coefficient counts", {0.5, 0.25, 0.125, 0.75, 10, 20}, 200, 100, "122 145");
  add("towards zero", {0.999, 0, 0, 0.999, 0, 0}, 100, 200, "99 199");
  add("a little below zero", {1, 0, 0, 1, -0.9, -0.9}, 0, 0, "0 0");
  add("below zero", {1, 0, 0, 1, -300, -300}, 100, 200, "0 0");
  add("last pixel", {1, 0, 0, 1, 0, 0}, 479, 319, "479 319");
  add("one beyond passes", {1, 0, 0, 1, 0, 0}, 480, 320, "480 320");
  add("less than two beyond passes", {1, 0, 0, 1, 0.99, 0.99}, 480, 320, "480 320");
  add("two beyond is the last pixel", {1, 0, 0, 1, 0, 0}, 481, 321, "479 319");
  add("far beyond is the last pixel", {1, 0, 0, 1, 0, 0}, 511, 511, "479 319");
  add("beyond an int", {1e30, 0, 0, 1e30, 0, 0}, 1, 1, "479 319");
  add("below an int", {-1e30, 0, 0, -1e30, 0, 0}, 1, 1, "0 0");
  add("infinite", {huge, 0, 0, -huge, 0, 0}, 1, 1, "479 0");
  add("no number", {nan, nan, nan, nan, nan, nan}, 1, 1, "0 0");
}

void TouchThreadTest::aPointIsMappedToTheScreen() {
  QFETCH(Touch_Value, by);
  QFETCH(int, x);
  QFETCH(int, y);
  QFETCH(QString, press);
  gEnvirnmentSettings.mTouchValue.Store(by);
  Down(y, x);
  QCOMPARE(Told(), QStringList(press));
}

void TouchThreadTest::newCoefficientsCountFromTheNextTouch() {
  Down(30, 40);
  Up();
  gEnvirnmentSettings.mTouchValue.Store({2, 0, 0, 3, 0, 0});
  Down(30, 40);
  QCOMPARE(Told(), QStringList({"press 1 40 30", "press 1 80 90"}));
}

// ---- the mapping by two edges

void TouchThreadTest::anEdgeMapsAnAxis_data() {
  QTest::addColumn<int>("value");
  QTest::addColumn<int>("y");
  QTest::addColumn<int>("x");
  QTest::newRow("25") << 25 << 0 << 451;
  QTest::newRow("300") << 300 << 320 << -142;
  QTest::newRow("162") << 162 << 159 << 155;
  QTest::newRow("20") << 20 << -5 << 462;
  QTest::newRow("12") << 12 << -15 << 480;
  QTest::newRow("234") << 234 << 243 << 0;
}

void TouchThreadTest::anEdgeMapsAnAxis() {
  QFETCH(int, value);
  mReader->setXValue(value);
  QTEST(int(mReader->y), "y");
  QCOMPARE(int(mReader->x), 0);
  mReader->setYValue(value);
  QTEST(int(mReader->x), "x");
}

void TouchThreadTest::edgesThatFallTogetherMapNothing() {
  mReader->stComp = {{30, 40}, {30, 40}};
  mReader->setXValue(100);
  mReader->setYValue(100);
  QCOMPARE(int(mReader->x), 0);
  QCOMPARE(int(mReader->y), 0);
}

void TouchThreadTest::fourTapsLearnTheEdges() {
  mReader->PressPoint(1, 51, 45);
  mReader->PressPoint(2, 451, 48);
  mReader->PressPoint(3, 56, 300);
  QCOMPARE(mReader->stComp.stOffset.x, 25);
  mReader->PressPoint(4, 460, 305);
  QCOMPARE(mReader->stComp.stOffset.x, 25 + 13);  // (51 + 56) / 2 = 53, 13 from 40
  QCOMPARE(mReader->stComp.stEnd.x, 300 + 15);    // (451 + 460) / 2 = 455
  QCOMPARE(mReader->stComp.stOffset.y, 12 + 11);  // (45 + 48) / 2 = 46
  QCOMPARE(mReader->stComp.stEnd.y, 234 + 17);    // (300 + 305) / 2 = 302
}

void TouchThreadTest::tapsOnTheOtherSideMoveTheEdgesTheSameWay() {
  mReader->PressPoint(1, 30, 25);
  mReader->PressPoint(2, 430, 25);
  mReader->PressPoint(3, 30, 275);
  mReader->PressPoint(4, 430, 275);
  QCOMPARE(mReader->stComp.stOffset.x, 35);
  QCOMPARE(mReader->stComp.stEnd.x, 310);
  QCOMPARE(mReader->stComp.stOffset.y, 22);
  QCOMPARE(mReader->stComp.stEnd.y, 244);
}

void TouchThreadTest::aTapOutOfOrderStartsAgain_data() {
  QTest::addColumn<int>("index");
  for (int index : {0, 1, 2, 4, 5, 6, -1, INT_MAX, INT_MIN}) QTest::addRow("%d after 2", index) << index;
}

void TouchThreadTest::aTapOutOfOrderStartsAgain() {
  QFETCH(int, index);
  mReader->PressPoint(1, 40, 35);
  mReader->PressPoint(2, 440, 35);
  mReader->PressPoint(index, 7, 7);
  QCOMPARE(mReader->nOldIdx, 0);
  for (const TP_POINT& point : mReader->arMeasuredPoint) QVERIFY(point.x == 0 && point.y == 0);
  mReader->PressPoint(3, 40, 285);
  mReader->PressPoint(4, 440, 285);
  QCOMPARE(mReader->stComp.stEnd.x, 300);
  mReader->PressPoint(1, 40, 35);
  QCOMPARE(mReader->nOldIdx, 1);
}

// ---- timers

void TouchThreadTest::aNewReaderHasNoTimerRunning() {
  const QList<QTimer*> timers = mReader->findChildren<QTimer*>();
  QCOMPARE(timers.size(), 6);
  for (const QTimer* timer : timers) QVERIFY(!timer->isActive());
}

namespace {
void Fire(QTimer* timer) {
  QTimerEvent event(timer->timerId());
  QCoreApplication::sendEvent(timer, &event);
}
}  // namespace

void TouchThreadTest::theAutoTimer() {
  mReader->resetAuto();
  QVERIFY(mReader->timAuto->isActive());
  QCOMPARE(mReader->timAuto->interval(), 200);
  Fire(mReader->timAuto);
  QVERIFY(!mReader->timAuto->isActive());
  QCOMPARE(mReader->statTouch, int(TOUCH_AUTO));
  QCOMPARE(Told(), QStringList());
}

void TouchThreadTest::theReleaseTimer() {
  mReader->autoTimeout();
  mReader->timRelease->start(1000);
  Fire(mReader->timRelease);
  QVERIFY(!mReader->timRelease->isActive());
  QCOMPARE(mReader->statTouch, int(TOUCH_RELEASE));
}

void TouchThreadTest::theReleaseDelayTimer() {
  mReader->setReleaseDelayTimer();
  QVERIFY(mReader->timReleaseDelay->isActive());
  QCOMPARE(mReader->timReleaseDelay->interval(), 10);
  Fire(mReader->timReleaseDelay);
  QCOMPARE(Told(), QStringList());
}

void TouchThreadTest::theLongPressTimer() {
  mReader->setLongPressTimer(700);
  QVERIFY(mReader->timLongPress->isActive());
  QCOMPARE(mReader->timLongPress->interval(), 700);
  mReader->setLongPressTimer(900);
  QCOMPARE(mReader->timLongPress->interval(), 900);
  Fire(mReader->timLongPress);
  QCOMPARE(Told(), QStringList());
}

void TouchThreadTest::aLongPressRepeats() {
  Down(30, 40);
  Told();
  mReader->setLongPressEventTimer(1500);
  QCOMPARE(mReader->timLongPressEvent->interval(), 1500);
  QCOMPARE(Told(), QStringList());
  Fire(mReader->timLongPressEvent);
  Fire(mReader->timLongPressEvent);
  QCOMPARE(Told(), QStringList({"press 2 40 30", "press 2 40 30"}));
  QVERIFY(mReader->timLongPressEvent->isActive());
  QCOMPARE(mReader->timLongPressEvent->interval(), 500);
}

void TouchThreadTest::aPanelPointCanBeToldByHand() {
  mReader->setTouchPanel(3, 4);
  QCOMPARE(Told(), QStringList("panel 3 4"));
}

// ---- the device

void TouchThreadTest::aDeviceThatComesIsRead_data() {
  QTest::addColumn<QString>("missing");
  QTest::newRow("device") << QString();
  QTest::newRow("folder") << QStringLiteral("/dev/input");
  QTest::newRow("folder above") << QStringLiteral("/dev");
}

void TouchThreadTest::aDeviceThatComesIsRead() {
  QFETCH(QString, missing);
  if (!missing.isEmpty()) QVERIFY(QDir(root.Path(missing)).removeRecursively());
  Start();
  QTRY_VERIFY(IsAsleep());
  if (missing == "/dev") {
    QVERIFY(QDir().mkdir(root.Path(missing)));
    QTRY_VERIFY(IsAsleep());
  }
  QVERIFY(QDir().mkpath(root.Path("/dev/input")));
  MakeFifo();
  OpenFifo();
  Write(Tap(100, 200));
  QTRY_COMPARE(mTold, QStringList("press 1 100 200"));
}

void TouchThreadTest::whatIsNoDeviceIsWaitedOut_data() {
  QTest::addColumn<QString>("what");
  for (const char* what : {"folder", "/dev/null", "nothing"}) QTest::newRow(what) << QString::fromLatin1(what);
}

void TouchThreadTest::whatIsNoDeviceIsWaitedOut() {
  QFETCH(QString, what);
  if (what == "folder")
    QVERIFY(QDir().mkdir(mDevice));
  else if (what == "/dev/null")
    QVERIFY(QFile::link(what, mDevice));
  else
    QVERIFY(QFile::link(root.Path("/nowhere"), mDevice));
  Start();
  QTRY_VERIFY(IsAsleep());
  QVERIFY(what == "folder" ? QDir().rmdir(mDevice) : QFile::remove(mDevice));
  MakeFifo();
  OpenFifo();
  Write(Tap(100, 200));
  QTRY_COMPARE(mTold, QStringList("press 1 100 200"));
}

void TouchThreadTest::theCommandLinesDeviceIsTakenAsItIsGiven() {
  gTouchDevice = root.Path("/tmp/panel");
  root.Write("/tmp/panel", Tap(100, 200));
  Start();
  QTRY_COMPARE(mTold, QStringList("press 1 100 200"));
}

void TouchThreadTest::aFileIsReadToItsEnd() {
  root.Write(device::kTouchDevice, Tap(100, 200) + Tap(300, 50));
  Start();
  QTRY_COMPARE(mTold, QStringList({"press 1 100 200", "press 1 300 50"}));
  QTRY_VERIFY(mReader->isFinished());
  QVERIFY(mReader->GetIsRelease());
}

void TouchThreadTest::theRestOfAFileIsNoRecord() {
  root.Write(device::kTouchDevice, Tap(100, 200) + Record(EV_ABS, ABS_PRESSURE, 100).chopped(1));
  Start();
  QTRY_VERIFY(mReader->isFinished());
  QTRY_COMPARE(mTold, QStringList("press 1 100 200"));
  QVERIFY(mReader->GetIsRelease());
}

void TouchThreadTest::touchesComeThroughAFifo() {
  MakeFifo();
  Start();
  OpenFifo();
  Write(Tap(100, 200));
  QTRY_COMPARE(mTold, QStringList("press 1 100 200"));
  Write(Tap(300, 50));
  QTRY_COMPARE(mTold, QStringList({"press 1 100 200", "press 1 300 50"}));
}

void TouchThreadTest::aRecordInTwoHalvesIsOne() {
  MakeFifo();
  Start();
  OpenFifo();
  const QByteArray tap = Tap(100, 200);
  for (const auto& [from, to] : {std::pair(0, 7), std::pair(7, 16), std::pair(16, 41)}) {
    Write(tap.sliced(from, to - from));
    QTRY_COMPARE(Unread(), 0);
  }
  QVERIFY(mReader->GetIsRelease());
  Write(tap.sliced(41));
  QTRY_COMPARE(mTold, QStringList("press 1 100 200"));
  QTRY_VERIFY(mReader->GetIsRelease());
}

void TouchThreadTest::theNextWriterIsHeard() {
  MakeFifo();
  Start();
  for (int x : {10, 20, 30}) {
    OpenFifo();
    Write(Tap(x, 200));
    QTRY_COMPARE(mTold, QStringList(QStringLiteral("press 1 %1 200").arg(x)));
    mTold.clear();
    LeaveFifo();
  }
  QVERIFY(mReader->isRunning());
}

void TouchThreadTest::withoutAWriterTheReaderSleeps() {
  MakeFifo();
  Start();
  QTRY_VERIFY(IsAsleep());
  OpenFifo();
  Write(Tap(10, 200));
  QTRY_COMPARE(mTold.size(), 1);
  LeaveFifo();
  QCOMPARE(mTold.size(), 1);
}

void TouchThreadTest::halfARecordOfAGoneWriterIsForgotten() {
  MakeFifo();
  Start();
  OpenFifo();
  Write(Tap(10, 20) + QByteArray(9, '\x03'));
  LeaveFifo();
  OpenFifo();
  Write(Tap(30, 40));
  QTRY_COMPARE(mTold, QStringList({"press 1 10 20", "press 1 30 40"}));
}

void TouchThreadTest::aGoneWriterLiftsTheFinger() {
  Screen(RECORDINGLIST);
  MakeFifo();
  Start();
  OpenFifo();
  Write(Tap(10, 20).first(48));  // down, and never up
  QTRY_COMPARE(mTold, QStringList("press 1 10 20"));
  QVERIFY(!mReader->GetIsRelease());
  CloseFifo();
  QTRY_COMPARE(mTold, QStringList({"press 1 10 20", "list 1"}));
  QVERIFY(mReader->GetIsRelease());
}

void TouchThreadTest::aRemovedDeviceIsReadOnAndItsNextOneFound() {
  MakeFifo();
  Start();
  OpenFifo();
  QVERIFY(QFile::remove(mDevice));
  Write(Tap(10, 20));
  QTRY_COMPARE(mTold, QStringList("press 1 10 20"));
  LeaveFifo();
  QVERIFY(mReader->isRunning());
  MakeFifo();
  OpenFifo();
  Write(Tap(30, 40));
  QTRY_COMPARE(mTold, QStringList({"press 1 10 20", "press 1 30 40"}));
}

void TouchThreadTest::aReplacedDeviceIsFoundAndTheFingerLifted() {
  MakeFifo();
  Start();
  OpenFifo();
  Write(Tap(10, 20).first(48));
  QTRY_COMPARE(mTold, QStringList("press 1 10 20"));
  const int old = std::exchange(mWriter, -1);
  const QByteArray next = mDevice.toLocal8Bit() + "next";
  QCOMPARE(mkfifo(next.constData(), 0600), 0);
  QCOMPARE(rename(next.constData(), qPrintable(mDevice)), 0);
  OpenFifo();
  QTRY_VERIFY(mReader->GetIsRelease());
  Write(Tap(30, 40));
  QTRY_COMPARE(mTold, QStringList({"press 1 10 20", "press 1 30 40"}));
  close(old);
}

void TouchThreadTest::whileNothingHappensTheReaderSleeps() {
  Start();
  QTRY_VERIFY(IsAsleep());
  const int before = Sleeps();
  QVERIFY(before > 0);
  QTest::qWait(500);
  QCOMPARE(Sleeps(), before);
}

void TouchThreadTest::aSignalEndsNothing() {
  struct sigaction action {};
  action.sa_handler = [](int) { ++interrupted; };  // and waiting calls come back with EINTR
  sigaction(SIGUSR1, &action, nullptr);
  MakeFifo();
  Start();
  QTRY_VERIFY(IsAsleep());
  for (int times = 1; times <= 3; ++times) {
    syscall(SYS_tgkill, getpid(), ThreadId(), SIGUSR1);
    QTRY_COMPARE(int(interrupted), times);
  }
  OpenFifo();
  Write(Tap(10, 20));
  QTRY_COMPARE(mTold, QStringList("press 1 10 20"));
}

// As it does without memory: it takes no more descriptors than a process may have.
void TouchThreadTest::aWaitThatFailsEndsNothing() {
  MakeFifo();
  Start();
  OpenFifo();
  QTRY_VERIFY(IsAsleep());
  rlimit before{};
  QCOMPARE(getrlimit(RLIMIT_NOFILE, &before), 0);
  const rlimit few{2, before.rlim_max};
  QCOMPARE(setrlimit(RLIMIT_NOFILE, &few), 0);
  Write(Tap(10, 20));
  QThread::msleep(100);
  QCOMPARE(setrlimit(RLIMIT_NOFILE, &before), 0);
  QVERIFY(mReader->isRunning());
  QTRY_COMPARE(mTold, QStringList("press 1 10 20"));
}

void TouchThreadTest::aDeviceOfThisMachineHasItsOwnRecords() {
  int master = -1, slave = -1;
  termios raw{};
  cfmakeraw(&raw);
  QCOMPARE(openpty(&master, &slave, nullptr, &raw, nullptr), 0);
  QVERIFY(QFile::link(QString::fromLocal8Bit(ttyname(slave)), mDevice));
  Start();
  mWriter = master;
  Write(Tap(100, 200, int(sizeof(input_event))));
  QTRY_COMPARE(mTold, QStringList("press 1 100 200"));
  QTRY_VERIFY(mReader->GetIsRelease());
  Write(Tap(30, 40, int(sizeof(input_event))).first(3 * int(sizeof(input_event))));
  QTRY_VERIFY(!mReader->GetIsRelease());
  close(slave);
  CloseFifo();
  QTRY_VERIFY(mReader->GetIsRelease());  // unplugged
  QTRY_VERIFY(IsAsleep());
  QVERIFY(QFile::remove(mDevice));
  MakeFifo();
  OpenFifo();
  Write(Tap(50, 60));
  QTRY_COMPARE(mTold, QStringList({"press 1 100 200", "press 1 30 40", "press 1 50 60"}));
}

void TouchThreadTest::garbageIsNoHarm() {
  std::mt19937 random(20240229);
  QByteArray bytes;
  for (int i = 0; i < 20000; ++i) {
    const bool plausible = random() % 2 == 0;
    bytes += Record(plausible ? EV_ABS : int(random() % 65536), plausible ? int(random() % 26) : int(random() % 65536),
                    random() % 4 == 0 ? 0 : int(random()));
  }
  gEnvirnmentSettings.mTouchValue.Store({1e9, -3, 0.5, 1e-9, -1e12, 7});
  root.Write(device::kTouchDevice, bytes + "end");
  Start();
  QTRY_VERIFY(mReader->isFinished());
  QTRY_VERIFY(mTold.size() > 30);
  for (const QString& line : Told()) {
    const QStringList words = line.split(u' ');
    QCOMPARE(words.mid(0, 2), QStringList({"press", "1"}));
    QVERIFY(words[2].toInt() >= 0 && words[2].toInt() <= 480 && words[3].toInt() >= 0 && words[3].toInt() <= 320);
  }
}

void TouchThreadTest::theThreadEndsWheneverItIsTold_data() {
  QTest::addColumn<QString>("when");
  for (const char* when : {"at once", "no device yet", "no writer yet", "a silent writer", "the writer has gone"})
    QTest::newRow(when) << QString::fromLatin1(when);
}

void TouchThreadTest::theThreadEndsWheneverItIsTold() {
  QFETCH(QString, when);
  if (when != "no device yet") MakeFifo();
  Start();
  if (when != "at once") QTRY_VERIFY(IsAsleep());
  if (when.contains("silent") || when.contains("gone")) {
    OpenFifo();
    Write(Tap(10, 20));
    QTRY_COMPARE(mTold.size(), 1);
  }
  if (when.contains("gone")) LeaveFifo();
  mReader->End();
  QVERIFY(mReader->isFinished());
  mReader->End();
  QVERIFY(mReader->isFinished());
}

QTEST_MAIN(TouchThreadTest)
#include "touchthread_test.moc"
