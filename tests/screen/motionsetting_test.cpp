#include "gui/setup/motionsetting.h"

#include "tests/fake/boxwatch.h"
#include "tests/fake/screentest.h"

static TestRoot root;

class MotionSettingTest : public ScreenTest {
  Q_OBJECT

  static constexpr std::uint64_t kAll = 0xFFFF'FFFF'FFFFULL;
  static constexpr std::uint64_t kTopLeft = 0xFULL << 44;

  void Open(int display, std::uint64_t front, std::uint64_t rear) {
    Setting().display = display;
    Setting().motion_area1 = front;
    Setting().motion_area2 = rear;
    Saved() = Setting();
    mHost->Show(MAINMENU, new BaseWidget(mHost.get()));
    mHost->Show(MOTIONSETTING, new MotionSetting(mHost.get()));
    HostFake::Clear();
  }
  static bool IsOff(int cell) {
    return IsDrawn({10 + 60 * (cell % 8), 10 + 53 * (cell / 8)}, "motionsetting/motion_off.bmp");
  }
  static void TapCell(int cell) { Tap(60 * (cell % 8) + 30, 53 * (cell / 8) + 26); }
  static void PowerKey() { TopScreen()->recvEvent(RECV_ZEL_STATUS_LCD_KEY, 0); }
  static QStringList Sent() { return Asked().filter(QStringLiteral("SEND_MOTION")); }

private slots:
  void init() { StartHost(); }
  void cleanup() { mHost.reset(); }

  void bits() {
    QCOMPARE(MotionSetting::setBit(0, 63, 1), 1ULL << 63);
    QCOMPARE(MotionSetting::setBit(~0ULL, 31, 0), ~(1ULL << 31));
    QCOMPARE(MotionSetting::setBit(5, 1, 1), std::uint64_t{7});
    QCOMPARE(MotionSetting::getAbit(1ULL << 47, 47), 1);
    QCOMPARE(MotionSetting::getAbit(1ULL << 47, 46), 0);
    QCOMPARE(MotionSetting::getAbit(1ULL << 63, 63), 1);
    QCOMPARE(MotionSetting::ulongToBinary(0x8000'0000'0000'0005ULL), "1" + QByteArray(60, '0') + "101");
    QCOMPARE(MotionSetting::ulongToBinary(0), QByteArray(64, '0'));
  }
  void everyCellHasItsBit_data() {
    QTest::addColumn<int>("cell");
    for (int cell = 0; cell < 48; ++cell) QTest::addRow("%d", cell) << cell;
  }
  void everyCellHasItsBit() {
    QFETCH(int, cell);
    Open(1, 1ULL << (47 - cell), 0);
    for (int other = 0; other < 48; ++other) QCOMPARE(IsOff(other), other != cell || cell < 4);
    TapCell(cell);
    const bool reacts = cell >= 6;
    QCOMPARE(IsOff(cell), reacts || cell < 4);
    PowerKey();
    TapLeftButton();
    QCOMPARE(Setting().motion_area1, reacts || cell < 4 ? 0 : 1ULL << (47 - cell));
  }
  void linesBetweenTheCellsAreInert() {
    Open(1, kAll, 0);
    for (int column = 0; column <= 8; ++column)
      for (int y = 0; y < 320; ++y) Tap(60 * column, y);
    for (int row = 0; row <= 6; ++row)
      for (int x = 0; x < 480; ++x) Tap(x, 53 * row);
    for (int x = 0; x < 480; ++x) Tap(x, 319);
    for (int cell = 4; cell < 48; ++cell) QVERIFY(!IsOff(cell));
  }
  void cellsHaveTheirEdges() {
    Open(1, kAll, 0);
    for (int cell = 6; cell < 48; ++cell) {
      const int left = 60 * (cell % 8) + 1, top = 53 * (cell / 8) + 1;
      for (const QPoint at :
           {QPoint(left, top), QPoint(left + 58, top), QPoint(left, top + 51), QPoint(left + 58, top + 51)}) {
        const bool before = IsOff(cell);
        Tap(at.x(), at.y());
        QCOMPARE(IsOff(cell), !before);
      }
    }
  }
  void theGridIsWhiteOnTheVideo() {
    Open(1, kAll, 0);
    QVERIFY(IsPlain(QRect(70, 120, 40, 30), kKeyColour));
    for (const int x : {60, 120, 180, 240, 300, 360, 420}) QVERIFY(IsPlain(QRect(x - 1, 200, 2, 6), Qt::white));
    for (const int y : {53, 106, 159, 212, 265}) QVERIFY(IsPlain(QRect(70, y - 1, 40, 2), Qt::white));
    // Nothing soft: every pixel is white, video, or of a mark.
    const QImage seen = Seen(QRect(240, 54, 240, 260));
    for (int y = 0; y < seen.height(); ++y)
      for (int x = 0; x < seen.width(); ++x)
        QVERIFY(seen.pixelColor(x, y) == QColor(Qt::white) || seen.pixelColor(x, y) == kKeyColour);
    mHost->isLcdOff = true;
    QVERIFY(IsPlain(QRect(70, 120, 40, 30), Qt::black));
  }
  void theRearMapIsEdited() {
    Open(2, kAll, 0);
    TapCell(47);
    PowerKey();
    QCOMPARE(Box(), int{MOTION_SETTING_APPLY});
    QCOMPARE(Armed("mMessageBoxTimer"), -1);
    TapLeftButton();
    QCOMPARE(Setting().motion_area2, std::uint64_t{1});
    QCOMPARE(Setting().motion_area1, kAll);
    QCOMPARE(Sent(), QStringList(QStringLiteral("SEND_MOTION_SETTING_REAR 0")));
    QCOMPARE(gEnvirnmentSettings.GetSettingConfig(Set_Cfg_MotionArea2Low), 1);
    QCOMPARE(gEnvirnmentSettings.GetSettingConfig(Set_Cfg_MotionArea2High), 0);
  }
  void theCameraIsTheOneOfTheEntry() {
    Open(2, 0, 0);
    TapCell(47);
    Setting().display = 1;  // the rear camera has gone, or the car is parked
    PowerKey();
    TapLeftButton();
    QCOMPARE(Setting().motion_area2, std::uint64_t{1});
    QCOMPARE(Setting().motion_area1, std::uint64_t{0});
    QCOMPARE(Sent(), QStringList(QStringLiteral("SEND_MOTION_SETTING_REAR 0")));
  }
  void theFourTopLeftCellsAreNeverWatched() {
    Open(1, ~0ULL, 0);
    for (int cell = 0; cell < 8; ++cell) QCOMPARE(IsOff(cell), cell < 4);
    PowerKey();
    TapLeftButton();
    QCOMPARE(Setting().motion_area1, ~kTopLeft);  // the unused bits are kept
    QCOMPARE(gEnvirnmentSettings.GetSettingConfig(Set_Cfg_MotionArea1High), int(0xFFFF0FFFU));
    QCOMPARE(gEnvirnmentSettings.GetSettingConfig(Set_Cfg_MotionArea1Low), -1);
  }
  void everyBitComesBackFromTheIni_data() {
    QTest::addColumn<int>("display");
    QTest::addColumn<quint64>("map");
    for (const int display : {1, 2}) {
      QTest::addRow("%d: bit 63", display) << display << quint64{1ULL << 63};
      QTest::addRow("%d: bit 32", display) << display << quint64{1ULL << 32};
      QTest::addRow("%d: bit 31", display) << display << quint64{1ULL << 31};
      QTest::addRow("%d: all", display) << display << quint64{~kTopLeft};
    }
  }
  void everyBitComesBackFromTheIni() {
    QFETCH(int, display);
    QFETCH(quint64, map);
    Open(display, map, map);
    PowerKey();
    TapLeftButton();
    Setting().motion_area1 = Setting().motion_area2 = 0x1234;
    gEnvirnmentSettings.AllGetSettingConfig();
    QCOMPARE(quint64{display == 1 ? Setting().motion_area1 : Setting().motion_area2}, map);
  }
  void thePowerKeyAsksAnewOverTheSecondQuestion() {
    Open(1, kAll, 0);
    PowerKey();
    TapRightButton();
    QCOMPARE(Box(), int{MOTION_SETTING_TO_MENU});
    PowerKey();
    QCOMPARE(Box(), int{MOTION_SETTING_APPLY});
    TapRightButton();
    QCOMPARE(Box(), int{MOTION_SETTING_TO_MENU});
  }
  void theNextBoxTakesThePlaceOfTheQuestion_data() {
    QTest::addColumn<bool>("yes");
    QTest::addColumn<int>("fps");
    QTest::addColumn<int>("box");
    QTest::newRow("no") << false << 0 << int{MOTION_SETTING_TO_MENU};
    QTest::newRow("yes") << true << 0 << int{SETUP_SAVING};
    QTest::newRow("yes, and a format") << true << 1 << int{FRAME_SETTING_CHANGE_NEED_FORMAT};
  }
  void theNextBoxTakesThePlaceOfTheQuestion() {
    QFETCH(bool, yes);
    QFETCH(int, fps);
    QFETCH(int, box);
    Open(1, kAll, 0);
    Setting().gps_speed_display = Saved().gps_speed_display + 1;
    Setting().fps = Saved().fps + fps;
    PowerKey();
    QCoreApplication::processEvents();
    const BoxWatch watch;
    Tap(yes ? 140 : 340, 236);
    QCoreApplication::processEvents();
    QCOMPARE(Box(), box);
    QCOMPARE(watch.bare, 0);
  }
  void thePowerKeyDoesNotDisturbTheSaving() {
    Open(1, kAll, 0);
    Setting().gps_speed_display = Saved().gps_speed_display + 1;
    PowerKey();
    TapLeftButton();
    QCOMPARE(Box(), int{SETUP_SAVING});
    PowerKey();
    QCOMPARE(Box(), int{SETUP_SAVING});
    QVERIFY(TopScreen()->GetRestartRecStartFlag());
  }
  void thePowerKeyDoesNotHideTheQuestionForAFormat() {
    Open(1, kAll, 0);
    Setting().fps = Saved().fps + 1;
    PowerKey();
    TapLeftButton();
    QCOMPARE(Box(), int{FRAME_SETTING_CHANGE_NEED_FORMAT});
    PowerKey();
    QCOMPARE(Box(), int{FRAME_SETTING_CHANGE_NEED_FORMAT});
  }
  void cancellingChangesNothing() {
    Open(1, kAll & ~kTopLeft, 0);
    gEnvirnmentSettings.AllSetSettingConfig();
    const QByteArray before = root.Read(QStringLiteral("/opt/gui/ini/config_firm.ini"));
    TapCell(20);
    PowerKey();
    TapRightButton();
    QCOMPARE(Box(), int{MOTION_SETTING_TO_MENU});
    TapRightButton();  // goes on
    QCOMPARE(Box(), -1);
    QVERIFY(IsOff(20));
    PowerKey();
    TapRightButton();
    HostFake::Clear();
    TapLeftButton();
    QCOMPARE(Asked(), QStringList(QStringLiteral("back")));
    QCOMPARE(Setting().motion_area1, kAll & ~kTopLeft);
    QCOMPARE(root.Read(QStringLiteral("/opt/gui/ini/config_firm.ini")), before);
  }
  void withoutAChangeThePreviewComesAtOnce() {
    Open(1, kAll & ~kTopLeft, 0);
    PowerKey();
    TapLeftButton();
    QCOMPARE(Asked().last(), QStringLiteral("jump PREVIEW"));
  }
  void boxesTakeTheTouches() {
    Open(1, kAll, 0);
    PowerKey();
    TapCell(10);
    TopScreen()->DelMessageBox();
    QVERIFY(!IsOff(10));
    TopScreen()->PaintMessageBox(R_MUTE_ON, true, 0, 2000);
    TapCell(10);
    TopScreen()->DelRecvMessageBox();
    QVERIFY(!IsOff(10));
  }
  void theIdleEventGoesToThePreview() {
    Open(1, kAll, 0);
    TopScreen()->SetEvent(4711, 10);
    TopScreen()->TimeoutEvent();
    QCOMPARE(Asked(), QStringList());
    TopScreen()->SetEvent(ENTRY_PREVIEW, 10);
    TopScreen()->TimeoutEvent();
    QCOMPARE(Asked(), QStringList(QStringLiteral("jump PREVIEW")));
  }
};

QTEST_MAIN(MotionSettingTest)
#include "motionsetting_test.moc"
