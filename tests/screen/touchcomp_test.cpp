#include "gui/touch/touchcomp.h"

#include <QDataStream>
#include <QDir>
#include <climits>
#include <cstdlib>

#include "gui/touch/touchmotion.h"
#include "tests/fake/screentest.h"

static TestRoot root;

class TouchCompTest : public ScreenTest {
  Q_OBJECT

  static constexpr char kFile[] = "/opt/touch.zel";
  static constexpr char kTable[] = "/opt/touch_tuning.zel";
  static Touch_Value Map() { return gEnvirnmentSettings.mTouchValue.Load(); }
  static bool IsFactory() {
    return Map().alphaX == kFactoryTouchValue.alphaX && Map().deltaY == kFactoryTouchValue.deltaY;
  }
  static QString Comment() { return Label("lblComment")->text(); }
  static QString Count() { return Label("lblComment2")->text(); }

  void Open() {
    mHost->Show(MAINMENU, new BaseWidget(mHost.get()));
    mHost->Show(TOUCHCOMP, new TouchComp(mHost.get()));
    HostFake::Clear();
  }
  // As the window does: a box comes first.
  static void Touch(int x, int y) {
    if (!TopScreen()->TakenByBox(TOUCH_PRESS, -1, -1)) Top<TouchComp>()->settingTouchPanel(x, y);
  }
  // The panel is as the screen, but for `beside` in the second pass.
  static void Collect() {
    for (int i = 0; i < 9; ++i) Touch(kTouchTargetX[i], kTouchTargetY[i]);
  }
  static void Verify(int hits, int besideX = 41, int besideY = 0) {
    for (int i = 0; i < 9; ++i) {
      const bool hit = i < hits;
      Touch(kTouchTargetX[i] + (hit ? 0 : besideX), kTouchTargetY[i] + (hit ? 0 : besideY));
    }
  }
  static void Fire(const char* name) {
    QTimerEvent over(Timer(name)->timerId());
    QCoreApplication::sendEvent(Timer(name), &over);
  }
  static void NextAttempt() {
    Fire("mMessageBoxTimer");
    Fire("mEventTimer");
  }

private slots:
  void init() {
    StartHost();
    QDir(root.Path(QStringLiteral("/"))).mkpath(QStringLiteral("opt"));
    root.Remove(kFile);
    root.Remove(kTable);
    gEnvirnmentSettings.SettingTouchValue(true);
    gEnvirnmentSettings.SettingTouchTuningValue(true);
    HostFake::Clear();
  }
  void cleanup() { mHost.reset(); }

  void nineTargetsAreShownInTurn() {
    Open();
    for (int i = 0; i < 9; ++i) {
      QCOMPARE(Count(), QStringLiteral("%1 / 9").arg(i + 1));
      const QPoint at(kTouchTargetX[i] - 40, kTouchTargetY[i] - 35);
      QVERIFY2(IsDrawn(at, "touchcompensation/touch_compensation_icon_1_normal_ex.bmp"), qPrintable(Count()));
      QVERIFY(Comment().startsWith(QStringLiteral("좌표보정을 시작합니다.")));
      HostFake::Clear();
      Touch(kTouchTargetX[i], kTouchTargetY[i]);
      QCOMPARE(Asked(), QStringList(QStringLiteral("sh aplay /opt/ipnc/voice/touch.wav &")));
    }
    QCOMPARE(Count(), QStringLiteral("1 / 9"));
    QVERIFY(Comment().startsWith(QStringLiteral("보정 결과를")));
    QCOMPARE(Map().alphaX, 1.0);
    QCOMPARE(Map().betaX, 0.0);
    QCOMPARE(Map().deltaX, 0.0);
  }
  void textsFitTheirPanels() {
    Open();
    for (int pass = 0; pass < 2; ++pass) {
      for (const char* name : {"lblComment", "lblComment2"}) {
        const QLabel* label = Label(name);
        QVERIFY(label->rect().contains(
            QFontMetrics(label->font()).boundingRect(label->rect(), Qt::AlignCenter, label->text().remove(u'\r'))));
      }
      Collect();
    }
  }
  void hitsDecide_data() {
    QTest::addColumn<int>("hits");
    QTest::addColumn<bool>("accepted");
    QTest::newRow("nine") << 9 << true;
    QTest::newRow("seven") << 7 << true;
    QTest::newRow("six") << 6 << false;
    QTest::newRow("none") << 0 << false;
  }
  void hitsDecide() {
    QFETCH(int, hits);
    QFETCH(bool, accepted);
    Open();
    Collect();
    Verify(hits);
    QCOMPARE(Box(), accepted ? int{TOUCH_COM_SUCCESS} : int{TOUCH_COM_FAIL_RETRY});
    QCOMPARE(Armed("mMessageBoxTimer"), 2000);
    QCOMPARE(Armed("mEventTimer"), 2000);
  }
  void aTargetHasItsBounds_data() {
    QTest::addColumn<int>("x");
    QTest::addColumn<int>("y");
    QTest::addColumn<bool>("hit");
    for (const int x : {-40, 40}) QTest::addRow("%d 0", x) << x << 0 << true;
    for (const int y : {-35, 35}) QTest::addRow("0 %d", y) << 0 << y << true;
    QTest::newRow("corner") << 40 << 35 << true;
    for (const int x : {-41, 41}) QTest::addRow("%d 0", x) << x << 0 << false;
    for (const int y : {-36, 36}) QTest::addRow("0 %d", y) << 0 << y << false;
  }
  void aTargetHasItsBounds() {
    QFETCH(int, x);
    QFETCH(int, y);
    QFETCH(bool, hit);
    Open();
    Collect();
    Verify(6, x, y);  // the other three decide
    QCOMPARE(Box(), hit ? int{TOUCH_COM_SUCCESS} : int{TOUCH_COM_FAIL_RETRY});
  }
  void successIsSavedAndLeft() {
    mHost->needTouchComp = 1;
    Open();
    Collect();
    HostFake::Clear();
    Verify(9);
    QByteArray bytes;
    QDataStream stream(&bytes, QIODevice::WriteOnly);
    stream.setByteOrder(QDataStream::LittleEndian);
    stream << 1.0 << 0.0 << 0.0 << 1.0 << 0.0 << 0.0;
    QCOMPARE(root.Read(kFile), bytes);
    QCOMPARE(root.Read(kTable).size(), 72);
    HostFake::Clear();
    Fire("mEventTimer");
    QCOMPARE(Asked(), (QStringList{QStringLiteral("parking timer"), QStringLiteral("back")}));
    QCOMPARE(mHost->needTouchComp, 2);
    QCOMPARE(TopId(), MAINMENU);
    QCOMPARE(Map().alphaX, 1.0);  // it stays
  }
  void theTableHoldsWhereTheTargetsWereHit() {
    Open();
    Collect();
    Verify(7, 60, 10);
    for (int i = 0; i < 9; ++i) {
      QCOMPARE(gEnvirnmentSettings.inputX[i], kTouchTargetX[i] + (i < 7 ? 0 : 60));
      QCOMPARE(gEnvirnmentSettings.inputY[i], kTouchTargetY[i] + (i < 7 ? 0 : 10));
    }
  }
  void thereAreFourAttempts() {
    Open();
    for (int attempt = 1; attempt <= 3; ++attempt) {
      Collect();
      Verify(0);
      QCOMPARE(Box(), int{TOUCH_COM_FAIL_RETRY});
      QVERIFY(Comment().startsWith(QStringLiteral("좌표보정을 시작합니다.")));
      QCOMPARE(Map().alphaX, 1.0);  // until the next fit
      Touch(1, 1);                  // the box is up
      QCOMPARE(Count(), QStringLiteral("1 / 9"));
      NextAttempt();
      QCOMPARE(TopId(), TOUCHCOMP);
    }
    Collect();
    Verify(6);
    QCOMPARE(Box(), int{TOUCH_COM_FAIL});
    QVERIFY(IsFactory());
    HostFake::Clear();
    Fire("mEventTimer");
    QVERIFY(Asked().contains(QStringLiteral("back")));
    QCOMPARE(TopId(), MAINMENU);
    QVERIFY(IsFactory());
  }
  void thePowerKeyLeavesAtTheSecondPress_data() {
    QTest::addColumn<int>("touches");
    QTest::newRow("at once") << 0;
    QTest::newRow("in the first pass") << 5;
    QTest::newRow("in the second pass") << 12;
  }
  void thePowerKeyLeavesAtTheSecondPress() {
    QFETCH(int, touches);
    mHost->needTouchComp = 1;
    Open();
    for (int i = 0; i < touches; ++i) Touch(kTouchTargetX[i % 9], kTouchTargetY[i % 9]);
    TopScreen()->recvEvent(RECV_ZEL_STATUS_LCD_KEY, 0);
    QCOMPARE(Box(), int{TOUCH_COM_ESCAPE});
    QCOMPARE(Armed("mMessageBoxTimer"), -1);
    const QString count = Count();
    HostFake::Clear();
    Touch(100, 100);  // goes on
    QCOMPARE(Box(), -1);
    QCOMPARE(Asked(), QStringList());
    QCOMPARE(Count(), count);
    TopScreen()->recvEvent(RECV_ZEL_STATUS_LCD_KEY, 0);
    HostFake::Clear();
    TopScreen()->recvEvent(RECV_ZEL_STATUS_LCD_KEY, 0);
    QVERIFY(Asked().contains(QStringLiteral("parking timer")));
    QCOMPARE(TopId(), MAINMENU);
    QCOMPARE(mHost->needTouchComp, 2);
    QVERIFY(IsFactory());
  }
  void anotherDoorLosesTheMapThatWasNotAccepted() {
    Open();
    Collect();
    Verify(0);
    QCOMPARE(Map().alphaX, 1.0);
    mHost->Jumped(PREVIEW);
    QVERIFY(IsFactory());
  }
  // A request on the card had brought the factory's map back in memory: the file still holds the bad one.
  void leavingWithoutSuccessBringsBackTheMapOfTheEntry_data() {
    QTest::addColumn<QString>("way");
    for (const char* way : {"power key", "four failures", "another door"})
      QTest::newRow(way) << QString::fromLatin1(way);
  }
  void leavingWithoutSuccessBringsBackTheMapOfTheEntry() {
    QFETCH(QString, way);
    gEnvirnmentSettings.mTouchValue.Store({2, 0, 0, 2, 5, 5});
    gEnvirnmentSettings.SettingTouchValue(false);
    gEnvirnmentSettings.mTouchValue.Store(kFactoryTouchValue);
    const int table = gEnvirnmentSettings.inputX[3] = 417;
    Open();
    for (int attempt = 1; attempt <= (way == "four failures" ? 4 : 1); ++attempt) {
      Collect();
      Verify(0);
      if (attempt < 4 && way == "four failures") NextAttempt();
    }
    if (way == "power key")
      for (int i = 0; i < 2; ++i) TopScreen()->recvEvent(RECV_ZEL_STATUS_LCD_KEY, 0);
    if (way == "four failures") Fire("mEventTimer");
    if (way == "another door") mHost->Jumped(PREVIEW);
    QVERIFY(TopId() != TOUCHCOMP);
    QVERIFY(IsFactory());
    QCOMPARE(gEnvirnmentSettings.inputX[3], table);
  }
  void thePowerKeyAfterSuccessKeepsTheNewMap() {
    Open();
    Collect();
    Verify(9);
    for (int i = 0; i < 2; ++i) TopScreen()->recvEvent(RECV_ZEL_STATUS_LCD_KEY, 0);
    QCOMPARE(TopId(), MAINMENU);
    QCOMPARE(Map().alphaX, 1.0);
  }
  void touchesThatCannotBeFittedKeepTheMap_data() {
    QTest::addColumn<int>("step");
    QTest::newRow("one point") << 0;
    QTest::newRow("a line") << 10;
  }
  void touchesThatCannotBeFittedKeepTheMap() {
    QFETCH(int, step);
    Open();
    for (int i = 0; i < 9; ++i) Touch(100 + step * i, 100 + step * i);
    QVERIFY(IsFactory());
    QVERIFY(Comment().startsWith(QStringLiteral("보정 결과를")));
    for (int i = 0; i < 9; ++i) Touch(100, 100);
    QCOMPARE(Box(), int{TOUCH_COM_FAIL_RETRY});
  }
  void touchesBeyondAnyPanelKeepTheMap_data() {
    QTest::addColumn<int>("far");
    for (const int value : {1001, -1001, INT_MAX, INT_MIN}) QTest::addRow("%d", value) << value;
  }
  void touchesBeyondAnyPanelKeepTheMap() {
    QFETCH(int, far);
    Open();
    for (int i = 0; i < 9; ++i) Touch(i == 4 ? far : kTouchTargetX[i], kTouchTargetY[i]);
    QVERIFY(IsFactory());
    for (int i = 0; i < 9; ++i) Touch(far, far);
    QVERIFY(std::abs(gEnvirnmentSettings.inputX[8]) <= 1000000);
    QVERIFY(std::abs(gEnvirnmentSettings.inputY[8]) <= 1000000);
    QCOMPARE(Box(), int{TOUCH_COM_FAIL_RETRY});
  }
  void aMapThatComesToNoNumberHitsNothing() {
    Open();
    Collect();
    gEnvirnmentSettings.mTouchValue.Store({1e308, 1e308, -1e308, -1e308, 0, 0});
    Verify(9);
    QCOMPARE(Box(), int{TOUCH_COM_FAIL_RETRY});
  }
  void thePowerKeyDuringANotice_data() {
    QTest::addColumn<int>("hits");
    QTest::newRow("it fits: it is left") << 9;
    QTest::newRow("it does not: the question stays") << 0;
  }
  void thePowerKeyDuringANotice() {
    QFETCH(int, hits);
    Open();
    Collect();
    Verify(hits);
    TopScreen()->recvEvent(RECV_ZEL_STATUS_LCD_KEY, 0);
    QCOMPARE(Box(), int{TOUCH_COM_ESCAPE});
    QCOMPARE(Armed("mMessageBoxTimer"), -1);  // the notice's time does not end the question
    Fire("mEventTimer");
    QCOMPARE(TopId(), hits == 9 ? MAINMENU : TOUCHCOMP);
    if (hits == 9) return;
    QCOMPARE(Box(), int{TOUCH_COM_ESCAPE});
    Touch(100, 100);
    QCOMPARE(Box(), -1);
  }
  void leavingAfterTheFitWasSavedKeepsIt() {
    Open();
    Collect();
    Verify(9);
    mHost->Jumped(PREVIEW);
    QCOMPARE(Map().alphaX, 1.0);
  }
  void touchesOnTheWindowDoNothing() {
    Open();
    Tap(100, 100);
    TopScreen()->recvEvent(RECV_ZEL_STATUS_SD_CHECK, 1);
    QCOMPARE(Count(), QStringLiteral("1 / 9"));
    QCOMPARE(Box(), -1);
  }
  void anEventsBoxHoldsTouchesBack() {
    Open();
    TopScreen()->PaintMessageBox(R_MUTE_ON, true, 0, 2000);
    Touch(100, 100);
    QCOMPARE(Count(), QStringLiteral("1 / 9"));
    TopScreen()->DelRecvMessageBox();
    TopScreen()->PaintMessageBox(R_HW_ERROR, true, 1, 0);
    Touch(100, 100);  // a standing one closes at a touch
    QVERIFY(!TopScreen()->GetShowRecvMessageBoxFlag());
    QCOMPARE(Count(), QStringLiteral("1 / 9"));
  }

  // ---- the touch test

  void theTouchTestShowsBothPointsAndTheTrail() {
    mHost->Show(MAINMENU, new BaseWidget(mHost.get()));
    mHost->Show(TOUCHTEST, new TouchMotion(mHost.get()));
    QVERIFY(IsPlain(QRect(0, 80, 480, 240), kGround));
    Top<TouchMotion>()->setCoord(300, 200, 100, 150);
    QCOMPARE(Label("beforeCoord")->text(), QStringLiteral("X: 300 Y: 200"));
    QCOMPARE(Label("afterCoord")->text(), QStringLiteral("X: 100 Y: 150"));
    QVERIFY(IsPlain(QRect(98, 148, 4, 4), QColor(64, 200, 224)));
    Tap(250, 160);
    QCOMPARE(Label("beforeCoord")->text(), QStringLiteral("X: 250 Y: 160"));
    QCOMPARE(Label("afterCoord")->text(), QStringLiteral("X: 250 Y: 160"));
    Top<TouchMotion>()->touchMotionRecv(1, 2, 3, 4);
    QCOMPARE(Label("afterCoord")->text(), QStringLiteral("X: 250 Y: 160"));
    for (int i = 0; i < TouchMotion::kLongestTrail - 1; ++i) Top<TouchMotion>()->setCoord(0, 0, 400, 300);
    QVERIFY(IsPlain(QRect(98, 148, 4, 4), kGround));  // the trail has its end
    QVERIFY(IsPlain(QRect(248, 158, 4, 4), QColor(64, 200, 224)));
    QVERIFY(QFontMetrics(Label("afterCoord")->font()).horizontalAdvance(QStringLiteral("X: -1000 Y: -1000")) <= 220);
  }
  void thePowerKeyEndsTheTouchTest() {
    mHost->Show(MAINMENU, new BaseWidget(mHost.get()));
    mHost->Show(TOUCHTEST, new TouchMotion(mHost.get()));
    mHost->isShowTouchMotion = true;
    HostFake::Clear();
    TopScreen()->recvEvent(RECV_ZEL_STATUS_SD_CHECK, 1);
    QCOMPARE(Asked(), QStringList());
    TopScreen()->recvEvent(RECV_ZEL_STATUS_LCD_KEY, 0);
    QVERIFY(!mHost->isShowTouchMotion);
    QCOMPARE(Asked(), (QStringList{QStringLiteral("parking timer"), QStringLiteral("back")}));
  }
  void anotherDoorEndsTheTouchTestToo() {
    mHost->Show(MAINMENU, new BaseWidget(mHost.get()));
    mHost->Show(TOUCHTEST, new TouchMotion(mHost.get()));
    mHost->isShowTouchMotion = true;
    mHost->Jumped(MAINMENU);
    QVERIFY(!mHost->isShowTouchMotion);
  }
};

QTEST_MAIN(TouchCompTest)
#include "touchcomp_test.moc"
