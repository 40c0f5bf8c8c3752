#include "gui/setup/voltagecompensation.h"

#include "tests/fake/boxwatch.h"
#include "tests/fake/screentest.h"

static TestRoot root;

class VoltageCompensationTest : public ScreenTest {
  Q_OBJECT

  static constexpr QPoint kBefore{80, 255}, kAfter{400, 255};

  void Open() {
    mHost->Show(LOWVOLDETECTIONSETTING, new BaseWidget(mHost.get()));
    mHost->Show(VOLTAGECOMPENSATION, new VoltageCompensation(mHost.get()));
    HostFake::Clear();
  }
  static void TapAt(QPoint at) { Tap(at.x(), at.y()); }
  static void Fire(const char* name) {
    QTimerEvent over(Timer(name)->timerId());
    QCoreApplication::sendEvent(Timer(name), &over);
  }
  // From the tile to the running measurement.
  static void Start(QPoint tile) {
    TapAt(tile);
    TapLeftButton();
    Fire("mMessageBoxTimer");
    Fire("mEventTimer");
  }
  static void Run() {
    for (int second = 0; second < 11; ++second) Fire("timLoadingProgress");
  }
  static void Measure(QPoint tile) {
    Start(tile);
    Run();
    if (Armed("mMessageBoxTimer") >= 0) Fire("mMessageBoxTimer");
  }
  static QString Send(int step) { return QStringLiteral("SEND_VOLTAGE_COMPENSATION %1").arg(step); }
  static QString Click() { return QStringLiteral("sh aplay /opt/ipnc/voice/touch.wav &"); }
  static int BarWidth() {
    const QImage bar = Seen(QRect(40, 138, 400, 1));
    int width = 0;
    while (width < 400 && bar.pixelColor(width, 0) == QColor(64, 200, 224)) ++width;
    return width;
  }
  static void AddOrders() {
    QTest::addColumn<bool>("beforeFirst");
    QTest::newRow("before, after") << true;
    QTest::newRow("after, before") << false;
  }

private slots:
  void init() { StartHost(); }
  void cleanup() { mHost.reset(); }

  void thePage() {
    Open();
    QVERIFY(IsDrawn({80, 0}, "voltagecompensation/title.bmp"));
    QVERIFY(IsDrawn({0, 190}, "voltagecompensation/before_normal.bmp"));
    QVERIFY(IsDrawn({320, 190}, "voltagecompensation/after_normal.bmp"));
    QVERIFY(IsDrawn({36, 116}, "voltagecompensation/progress_bg.bmp"));
    QCOMPARE(BarWidth(), 0);
  }
  void homeGoesStraightToThePreview() {
    Setting().motion_lvl = 2;  // nothing is saved
    Open();
    Tap(40, 30);
    QCOMPARE(Asked(), QStringList(QStringLiteral("jump PREVIEW")));
  }
  void backGoesBack() {
    Open();
    Tap(440, 30);
    QCOMPARE(Asked(), QStringList(QStringLiteral("back")));
  }
  void theMiddleOfTheRowIsInert() {
    Open();
    for (const int x : {160, 161, 240, 319, 320}) Tap(x, 255);
    Tap(80, 190);
    QCOMPARE(Asked(), QStringList());
  }
  void aQuestionComesFirst_data() { AddOrders(); }
  void aQuestionComesFirst() {
    QFETCH(bool, beforeFirst);
    Open();
    TapAt(beforeFirst ? kBefore : kAfter);
    QCOMPARE(Asked(), QStringList(Click()));
    QCOMPARE(Box(), beforeFirst ? int{IS_BEFORE_VOLCOM_START} : int{IS_AFTER_VOLCOM_START});
    TapRightButton();
    QCOMPARE(Box(), -1);
    QCOMPARE(Asked().size(), 1);
    TapAt(beforeFirst ? kBefore : kAfter);
    TapLeftButton();
    QCOMPARE(Box(), beforeFirst ? int{BEFORE_VOLCOM_START} : int{AFTER_VOLCOM_START});
    QCOMPARE(Armed("mMessageBoxTimer"), 1500);
    QCOMPARE(Armed("mEventTimer"), 1500);
    HostFake::Clear();
    Fire("mEventTimer");
    QCOMPARE(Asked(), QStringList(Send(beforeFirst ? 1 : 3)));
    QCOMPARE(Armed("timLoadingProgress"), 1000);
  }
  void aMeasurementTakesElevenTicks_data() { AddOrders(); }
  void aMeasurementTakesElevenTicks() {
    QFETCH(bool, beforeFirst);
    Open();
    QVERIFY(!TopScreen()->TouchAreas().isEmpty());
    Start(beforeFirst ? kBefore : kAfter);
    QVERIFY(TopScreen()->TouchAreas().isEmpty());
    QVERIFY(IsDrawn(beforeFirst ? QPoint(0, 190) : QPoint(320, 190),
                    beforeFirst ? "voltagecompensation/before_dis.bmp" : "voltagecompensation/after_dis.bmp"));
    HostFake::Clear();
    for (int second = 1; second <= 10; ++second) {
      for (const QPoint at : {QPoint(40, 30), QPoint(440, 30), kBefore, kAfter}) TapAt(at);  // nothing reacts
      Fire("timLoadingProgress");
      QCOMPARE(BarWidth(), 40 * second);
      QCOMPARE(Armed("timLoadingProgress"), 1000);
      QCOMPARE(Asked(), QStringList());
    }
    Fire("timLoadingProgress");
    QCOMPARE(Armed("timLoadingProgress"), -1);
    QCOMPARE(Asked(), QStringList(Send(beforeFirst ? 2 : 4)));
    QCOMPARE(Box(), beforeFirst ? int{VOLCOM_COMPLETE_BEFORE} : int{VOLCOM_COMPLETE_AFTER});
    QCOMPARE(Armed("mMessageBoxTimer"), 1500);
    Fire("mMessageBoxTimer");
    QCOMPARE(BarWidth(), 0);
    QCOMPARE(Armed("timRecvResult"), -1);
    // It cannot be measured again.
    HostFake::Clear();
    TapAt(beforeFirst ? kBefore : kAfter);
    QCOMPARE(Asked(), QStringList());
    QCOMPARE(Box(), -1);
    Tap(440, 30);
    QCOMPARE(Asked(), QStringList(QStringLiteral("back")));
  }
  void afterBothTheVerdictIsAwaited_data() { AddOrders(); }
  void afterBothTheVerdictIsAwaited() {
    QFETCH(bool, beforeFirst);
    Open();
    Measure(beforeFirst ? kBefore : kAfter);
    Start(beforeFirst ? kAfter : kBefore);
    HostFake::Clear();
    Run();
    QCOMPARE(Asked(), QStringList(Send(beforeFirst ? 4 : 2)));
    QCOMPARE(Box(), int{VOLCOM_ALL_COMPLETE});
    QCOMPARE(Armed("mMessageBoxTimer"), -1);
    QCOMPARE(Armed("timRecvResult"), 5000);
    QCOMPARE(BarWidth(), 0);
    for (const QPoint at : {QPoint(40, 30), QPoint(440, 30), kBefore, kAfter}) TapAt(at);
    QCOMPARE(Asked().size(), 1);
  }
  void theVerdict_data() {
    QTest::addColumn<int>("value");
    QTest::addColumn<int>("box");
    QTest::newRow("success") << 1 << int{VOLCOM_RESULT_SUCCESS};
    QTest::newRow("failure") << 0 << int{VOLCOM_RESULT_FAIL};
    QTest::newRow("neither") << 7 << -1;
  }
  void theVerdict() {
    QFETCH(int, value);
    QFETCH(int, box);
    Open();
    Measure(kBefore);
    Measure(kAfter);
    TopScreen()->recvEvent(RECV_ZEL_STATUS_VOLT_SET, value);
    QCOMPARE(Armed("timRecvResult"), -1);
    QCOMPARE(Box(), box);
    if (box >= 0) QCOMPARE(Armed("mMessageBoxTimer"), 2000);
    QCOMPARE(Armed("mEventTimer"), 2000);
    HostFake::Clear();
    Fire("mEventTimer");
    QCOMPARE(Asked(), QStringList(QStringLiteral("back")));
    QCOMPARE(TopId(), LOWVOLDETECTIONSETTING);
  }
  void theVerdictTakesThePlaceOfTheWaiting_data() {
    QTest::addColumn<int>("value");
    QTest::newRow("success") << 1;
    QTest::newRow("failure") << 0;
    QTest::newRow("none") << -1;
  }
  void theVerdictTakesThePlaceOfTheWaiting() {
    QFETCH(int, value);
    Open();
    Measure(kBefore);
    Measure(kAfter);
    QCoreApplication::processEvents();
    QCOMPARE(Box(), int{VOLCOM_ALL_COMPLETE});
    const BoxWatch watch;
    if (value < 0)
      Fire("timRecvResult");
    else
      TopScreen()->recvEvent(RECV_ZEL_STATUS_VOLT_SET, value);
    QCoreApplication::processEvents();
    QCOMPARE(Box(), value == 1 ? int{VOLCOM_RESULT_SUCCESS} : int{VOLCOM_RESULT_FAIL});
    QCOMPARE(watch.bare, 0);
  }
  void withoutAVerdictItHasFailed() {
    Open();
    Measure(kAfter);
    Measure(kBefore);
    HostFake::Clear();
    Fire("timRecvResult");
    QCOMPARE(Armed("timRecvResult"), -1);
    QCOMPARE(Box(), int{VOLCOM_RESULT_FAIL});
    QCOMPARE(Armed("mMessageBoxTimer"), 2000);
    QCOMPARE(Armed("mEventTimer"), -1);
    // The screen stays, and can be left.
    Fire("mMessageBoxTimer");
    QCOMPARE(TopId(), VOLTAGECOMPENSATION);
    Tap(440, 30);
    QCOMPARE(Asked(), QStringList(QStringLiteral("back")));
  }
  void otherEventsAreIgnored() {
    Open();
    TopScreen()->recvEvent(RECV_ZEL_STATUS_SD_CHECK, 1);
    QCOMPARE(Box(), -1);
    TopScreen()->SetEvent(4711, 10);
    Fire("mEventTimer");
    QCOMPARE(Asked(), QStringList());
  }
};

QTEST_MAIN(VoltageCompensationTest)
#include "voltagecompensation_test.moc"
