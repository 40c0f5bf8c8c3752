// What the window does with each status event of the recorder before the screen gets it.
#include <QSignalSpy>

#include "gui/screen/messagebox.h"
#include "tests/fake/paintspy.h"
#include "tests/fake/windowtest.h"

static TestRoot root;

class MainWindowEventsTest : public WindowTest {
  Q_OBJECT

private:
  static constexpr int kValue = 3;
  void Receive(int event, int value) { mWindow->recvEvent(event, value); }
  static QString Forwarded(const char* screen, int event, int value) {
    return QStringLiteral("%1 event %2 %3").arg(QLatin1String(screen)).arg(event).arg(value);
  }
  static QStringList EventLines() { return Asked().filter(QStringLiteral(" event ")); }
  bool IsOn(QPointer<BaseWidget> screen) const { return screen && screen->isVisible(); }

private slots:
  void init() { Start(root); }
  void cleanup() { Stop(); }

  // ---- message and time-out of every event, on the preview and on another screen

  void everyEventRaisesItsMessageAndGoesOn_data() {
    QTest::addColumn<int>("event");
    QTest::addColumn<int>("message");
    QTest::addColumn<int>("ms");
    QTest::addColumn<int>("screen");
    const struct {
      int event, message, ms;
    } rows[] = {
        {RECV_ZEL_STATUS_GUI_INIT, -1, -1},
        {RECV_ZEL_STATUS_SYS_RESTART, R_SYS_RESTART, 2000},
        {RECV_ZEL_STATUS_NEED_REARCAM, R_NEED_REARCAM, 2000},
        {RECV_ZEL_STATUS_LCD_OFF, R_LCD_OFF, 2000},
        {RECV_ZEL_STATUS_SYS_EXIT, R_SYS_EXIT, 2000},
        {RECV_ZEL_STATUS_NO_SD, R_NO_SD, 2000},
        {RECV_ZEL_STATUS_SD_ERROR, -1, -1},
        {RECV_ZEL_STATUS_SD_FORMAT_INF, R_SD_FORMAT_INF, 2000},
        {RECV_ZEL_STATUS_HW_ERROR, R_HW_ERROR, -1},
        {RECV_ZEL_STATUS_REARCAM_ERROR, R_REARCAM_ERROR, 2000},
        {RECV_ZEL_STATUS_RTC_ERROR, R_RTC_ERROR, 2000},
        {RECV_ZEL_STATUS_GPS_CONNECT, -1, -1},
        {RECV_ZEL_STATUS_MUTE_ON, R_MUTE_ON, 2000},
        {RECV_ZEL_STATUS_MUTE_OFF, R_MUTE_OFF, 2000},
        {RECV_ZEL_STATUS_PARK_MODE_IN, R_PARK_MODE_IN, 2000},
        {RECV_ZEL_STATUS_PARK_MODE_OUT, -1, -1},  // not parked; parked: below
        {RECV_ZEL_STATUS_UNDER_VOLTAGE, R_UNDER_VOLTAGE, 2000},
        {RECV_ZEL_STATUS_NORMAL_VOLTAGE, R_NORMAL_VOLTAGE, 2000},
        {RECV_ZEL_STATUS_OVER_TEMP, R_OVER_TEMP, 2000},
        {RECV_ZEL_STATUS_NORMAL_TEMP, R_NORMAL_TEMP, 2000},
        {RECV_ZEL_STATUS_RECORD_STOP, -1, -1},
        {RECV_ZEL_STATUS_ACC_VOICE, R_ACC_VOICE, 2000},
        {RECV_ZEL_STATUS_SD_FORMAT_RESULT, -1, -1},
        {RECV_ZEL_STATUS_POWER_OFF, R_POWER_OFF, 2000},
        {RECV_ZEL_STATUS_SPEED, -1, -1},
        {RECV_ZEL_STATUS_REARCAM_CONNECT, R_REARCAM_CONNECT, 2000},
        {RECV_ZEL_STATUS_PLAY_STATUS, -1, -1},
        {RECV_ZEL_STATUS_PLAY_CUR, -1, -1},
        {RECV_ZEL_STATUS_LCD_KEY, -1, -1},
        {RECV_ZEL_STATUS_VOICE_PLAY_END, -1, -1},
        {RECV_ZEL_STATUS_CAM_CNT, -1, -1},
        {RECV_ZEL_STATUS_FRONTLED_ERROR, R_FRONTLED_ERROR, 2000},
        {RECV_ZEL_STATUS_RECORD_START, -1, -1},
        {RECV_ZEL_STATUS_REARCAM_DISCONNECT, R_REARCAM_DISCONNECT, 2000},
        {RECV_ZEL_STATUS_VOLT_SET, -1, -1},
        {RECV_ZEL_STATUS_LOW_VOLTAGE_POWER_OFF_COUNT, -1, -1},
        {RECV_ZEL_STATUS_SD_CHECK, -1, -1},
        {RECV_ZEL_STATUS_ACC_SUPPORT, -1, -1},
        {RECV_ZEL_STATUS_PARK_INFO_CLOSE, -1, -1},
        {39, -1, -1},
        {-1, -1, -1},
    };
    for (const auto& row : rows)
      for (const int screen : {PREVIEW, MAINMENU})
        QTest::addRow("%d %s on %s", row.event, NameOf(RECV_ZEL_STATUS_EVENT(row.event)), NameOf(WidgetId(screen)))
            << row.event << row.message << row.ms << screen;
  }
  void everyEventRaisesItsMessageAndGoesOn() {
    QFETCH(int, event);
    QFETCH(int, message);
    QFETCH(int, ms);
    QFETCH(int, screen);
    if (screen != PREVIEW) Open(WidgetId(screen));
    QSignalSpy awake(mWindow.get(), &MainWindow::previewEnable);
    connect(mWindow.get(), &MainWindow::previewEnable, mWindow.get(), [] { QCOMPARE(EventBox(), -1); });
    Receive(event, kValue);
    QCOMPARE(EventBox(), message);
    QCOMPARE(OwnBox(), -1);
    QCOMPARE(ArmedOnTop("mRecvMessageBoxTimer"), ms);
    QCOMPARE(EventLines(), QStringList{Forwarded(NameOf(WidgetId(screen)), event, kValue)});
    // The preview is shown before its box; other screens are shown anyway.
    QCOMPARE(awake.size(), screen == PREVIEW && message >= 0 ? 1 : 0);
    if (!awake.isEmpty()) QCOMPARE(awake.first().first().toBool(), true);
    QCOMPARE(Fake().Commands(), QStringList());
  }
  void theBoxIsUpWhenTheScreenGetsTheEvent() {
    mPreview->duringEvent = [] { QCOMPARE(EventBox(), int{R_NO_SD}); };
    Receive(RECV_ZEL_STATUS_NO_SD, kValue);
    QVERIFY(!mPreview->duringEvent);
  }
  void theBoxIsPaintedBeforeTheNextStep() {
    QVERIFY(QTest::qWaitForWindowExposed(mWindow.get()));
    PaintSpy<MessageBox> boxes;
    mPreview->duringEvent = [&] { QVERIFY(boxes.count > 0); };
    Receive(RECV_ZEL_STATUS_NO_SD, kValue);
    QVERIFY(!mPreview->duringEvent);
  }

  void aHardwareErrorStaysUntilItIsClosed() {
    Receive(RECV_ZEL_STATUS_HW_ERROR, 42);
    QCOMPARE(EventBox(), int{R_HW_ERROR});
    QCOMPARE(ArmedOnTop("mRecvMessageBoxTimer"), -1);
  }
  void theCardErrorIsThePreviewsAlone() {
    Receive(RECV_ZEL_STATUS_HW_ERROR, 8);
    QCOMPARE(EventBox(), -1);
    QCOMPARE(EventLines(), QStringList{"PREVIEW event 8 8"});
  }

  // ---- what else the events change

  void theGpsStateIsKept() {
    for (const int state : {2, 1, 0}) {
      Receive(RECV_ZEL_STATUS_GPS_CONNECT, state);
      QCOMPARE(gIsConnectGps, state);
    }
  }
  void theIgnitionModelIsKept() {
    Receive(RECV_ZEL_STATUS_ACC_SUPPORT, 5);
    QVERIFY(gIsAccVer);
    Receive(RECV_ZEL_STATUS_ACC_SUPPORT, 0);
    QVERIFY(!gIsAccVer);
  }
  void aFailedFrontLedIsKept() {
    Receive(RECV_ZEL_STATUS_FRONTLED_ERROR, 1);
    QCOMPARE(gInitFrontLed, 0);
  }
  void rearCameraComesAndGoes() {
    Receive(RECV_ZEL_STATUS_REARCAM_DISCONNECT, 1);
    QCOMPARE(gCountOfCamera, 1);
    QCOMPARE(Armed("mTimEventTimer"), 2000);
    QCOMPARE(Setting().display, 0);
    Receive(RECV_ZEL_STATUS_REARCAM_CONNECT, 1);
    QCOMPARE(gCountOfCamera, 2);
  }
  void oneCameraAloneShowsTheFront() {
    Receive(RECV_ZEL_STATUS_CAM_CNT, 1);
    QCOMPARE(gCountOfCamera, 1);
    QCOMPARE(Setting().display, 1);
    QCOMPARE(gEnvirnmentSettings.GetSettingConfig(Set_Cfg_Display), 1);
    QCOMPARE(Fake().Commands(), QStringList());
  }
  void oneCameraAloneWritesNothingWhenTheFrontIsShown() {
    Setting().display = 1;
    Receive(RECV_ZEL_STATUS_CAM_CNT, 1);
    QVERIFY(!root.Exists("/opt/gui/ini/config_firm.ini"));
  }
  void twoCamerasLeaveTheView() {
    gCountOfCamera = 1;
    Setting().display = 2;
    Receive(RECV_ZEL_STATUS_CAM_CNT, 2);
    QCOMPARE(gCountOfCamera, 2);
    QCOMPARE(Setting().display, 2);
    QVERIFY(!root.Exists("/opt/gui/ini/config_firm.ini"));
  }

  // ---- parking

  void parkModeInIsShownAndFollowedUp() {
    Receive(RECV_ZEL_STATUS_PARK_MODE_IN, kValue);
    QVERIFY(mWindow->GetIsIngParkingModeOn());
    QCOMPARE(EventBox(), int{R_PARK_MODE_IN});
    QCOMPARE(Armed("mTimEventTimer"), 2000);
    QCOMPARE(Armed("mTimParkingModeLcdOff"), 8000);
  }
  void parkModeInWithoutParkingModeIsQuiet() {
    Setting().parking_mode_on = 0;
    Receive(RECV_ZEL_STATUS_PARK_MODE_IN, kValue);
    QVERIFY(mWindow->GetIsIngParkingModeOn());
    QCOMPARE(EventBox(), -1);
    QCOMPARE(Armed("mTimEventTimer"), 2000);
    QCOMPARE(EventLines(), QStringList{"PREVIEW event 14 3"});
  }
  void secondParkModeInDoesNothing() {
    mWindow->SetIsIngParkingModeOn(true);
    Receive(RECV_ZEL_STATUS_PARK_MODE_IN, kValue);
    QVERIFY(mWindow->GetIsIngParkingModeOn());
    QCOMPARE(EventBox(), -1);
    QCOMPARE(Armed("mTimEventTimer"), -1);
    QCOMPARE(Armed("mTimParkingModeLcdOff"), -1);
    QCOMPARE(EventLines(), QStringList{"PREVIEW event 14 3"});
  }
  void parkModeOutIsLeftToThePreview() {
    mWindow->SetIsIngParkingModeOn(true);
    QVERIFY(QTest::qWaitForWindowExposed(mWindow.get()));
    PaintSpy<DummyScreen> screens;
    QSignalSpy awake(mWindow.get(), &MainWindow::previewEnable);
    connect(mWindow.get(), &MainWindow::previewEnable, mPreview, [this] { mPreview->update(); });
    mPreview->duringEvent = [&] { QVERIFY2(screens.count > 0, "the preview is on the panel by then"); };
    Receive(RECV_ZEL_STATUS_PARK_MODE_OUT, kValue);
    QVERIFY(!mPreview->duringEvent);
    QVERIFY(!mWindow->GetIsIngParkingModeOn());
    QCOMPARE(EventBox(), -1);
    QCOMPARE(awake.size(), 1);
    QCOMPARE(Armed("mTimEventTimer"), 2000);
    QCOMPARE(EventLines(), QStringList{"PREVIEW event 15 3"});
  }
  void parkModeOutIsShownOnOtherScreens() {
    Open(MAINMENU);
    mWindow->SetIsIngParkingModeOn(true);
    Receive(RECV_ZEL_STATUS_PARK_MODE_OUT, kValue);
    QCOMPARE(EventBox(), int{R_PARK_MODE_OUT});
    QCOMPARE(ArmedOnTop("mRecvMessageBoxTimer"), 2000);
    QCOMPARE(Armed("mTimEventTimer"), 2000);
  }
  void parkModeOutWithoutParkingModeIsQuiet() {
    Open(MAINMENU);
    Setting().parking_mode_on = 0;
    mWindow->SetIsIngParkingModeOn(true);
    Receive(RECV_ZEL_STATUS_PARK_MODE_OUT, kValue);
    QVERIFY(!mWindow->GetIsIngParkingModeOn());
    QCOMPARE(EventBox(), -1);
    QCOMPARE(Armed("mTimEventTimer"), 2000);
  }
  void parkModeOutWhileNotParkedDoesNothing() {
    Open(MAINMENU);
    Receive(RECV_ZEL_STATUS_PARK_MODE_OUT, kValue);
    QCOMPARE(EventBox(), -1);
    QCOMPARE(Armed("mTimEventTimer"), -1);
    QCOMPARE(EventLines(), QStringList{"MAINMENU event 15 3"});
  }

  // ---- a message wakes what sleeps and comes to the front

  void aMessageEndsTheScreenSaver() {
    Open(SCREENSAVER);
    Receive(RECV_ZEL_STATUS_NO_SD, kValue);
    QCOMPARE(TopId(), PREVIEW);
    QCOMPARE(EventBox(), int{R_NO_SD});
    QVERIFY(IsOn(mPreview));
    QCOMPARE(EventLines(), QStringList{"PREVIEW event 5 3"});
  }
  void aMessageClosesTheParkingReport() {
    Open(PFILEGRAPH);
    Receive(RECV_ZEL_STATUS_NO_SD, kValue);
    QCOMPARE(TopId(), PREVIEW);
    QCOMPARE(EventBox(), int{R_NO_SD});
  }
  void everyMessageEndsTheScreenSaverAndNothingElseDoes_data() { everyEventRaisesItsMessageAndGoesOn_data(); }
  void everyMessageEndsTheScreenSaverAndNothingElseDoes() {
    QFETCH(int, event);
    QFETCH(int, message);
    QFETCH(int, ms);
    QFETCH(int, screen);
    if (screen != PREVIEW) Open(WidgetId(screen));
    const QPointer<BaseWidget> saver = Open(SCREENSAVER);
    Receive(event, kValue);
    const bool wakes = message >= 0 || event == RECV_ZEL_STATUS_LCD_KEY;
    QCOMPARE(saver.isNull(), wakes);
    QCOMPARE(TopId(), wakes ? WidgetId(screen) : SCREENSAVER);
    QCOMPARE(EventBox(), message);
    QCOMPARE(ArmedOnTop("mRecvMessageBoxTimer"), ms);
  }
  void parkingEndsTheScreenSaver() {
    for (const int event : {RECV_ZEL_STATUS_PARK_MODE_IN, RECV_ZEL_STATUS_PARK_MODE_OUT}) {
      const QPointer<BaseWidget> saver = Open(SCREENSAVER);
      Receive(event, kValue);
      QVERIFY(!saver);
      QCOMPARE(TopId(), PREVIEW);
      QCOMPARE(EventLines().last(), Forwarded("PREVIEW", event, kValue));
    }
  }
  // The saver is gone after the first step back; the second one is the report's.
  void aMessageEndsASaverOverTheParkingReport() {
    Open(PFILEGRAPH);
    Open(SCREENSAVER);
    Receive(RECV_ZEL_STATUS_NO_SD, kValue);
    QCOMPARE(TopId(), PREVIEW);
    QCOMPARE(gWidgetManager.GetStackDepth(), 0);
    QCOMPARE(EventBox(), int{R_NO_SD});
    QCOMPARE(EventLines(), QStringList{"PREVIEW event 5 3"});
  }
  void aMessageOverASaverOverAMenuIsTheMenus() {
    Open(MAINMENU);
    Open(SCREENSAVER);
    QSignalSpy awake(mWindow.get(), &MainWindow::previewEnable);
    Receive(RECV_ZEL_STATUS_NO_SD, kValue);
    QCOMPARE(TopId(), MAINMENU);
    QCOMPARE(EventBox(), int{R_NO_SD});
    QCOMPARE(awake.size(), 0);
  }
  void anEventWithoutMessageLeavesTheScreenSaver() {
    Open(SCREENSAVER);
    Receive(RECV_ZEL_STATUS_SPEED, 80);
    QCOMPARE(TopId(), SCREENSAVER);
    QCOMPARE(EventLines(), QStringList{"SCREENSAVER event 24 80"});
  }
  void aMessageSwitchesTheLcdOn() {
    mWindow->LcdOff();
    Fake().asked.clear();
    Receive(RECV_ZEL_STATUS_NO_SD, kValue);
    QVERIFY(!mWindow->GetIsLcdOff());
    QVERIFY(IsOn(mPreview));
    QCOMPARE(Asked(), (QStringList{"sh echo 50000 > /proc/pwm/pwm0", "PREVIEW event 5 3"}));
    QCOMPARE(EventBox(), int{R_NO_SD});
  }
  void aMessageSwitchesTheLcdOnOverTheParkingReport() {
    Open(PFILEGRAPH);
    mWindow->LcdOff();
    Receive(RECV_ZEL_STATUS_NO_SD, kValue);
    QVERIFY(!mWindow->GetIsLcdOff());
    QCOMPARE(TopId(), PREVIEW);
    QVERIFY(IsOn(mPreview));
  }
  void anEventWithoutMessageLeavesTheLcdOff() {
    mWindow->LcdOff();
    Receive(RECV_ZEL_STATUS_SPEED, 80);
    QVERIFY(mWindow->GetIsLcdOff());
  }

  void aMessagePutsOffTheParkingLcdOff_data() { AddScreenRows(kKeepLcdOn); }
  void aMessagePutsOffTheParkingLcdOff() {
    QFETCH(int, id);
    QFETCH(bool, excepted);
    if (id == SCREENSAVER || id == PFILEGRAPH) return;  // a message leaves these
    if (id != PREVIEW) Open(WidgetId(id));
    mWindow->SetIsIngParkingModeOn(true);
    Receive(RECV_ZEL_STATUS_NO_SD, kValue);
    QCOMPARE(Armed("mTimParkingModeLcdOff"), excepted ? -1 : 8000);
  }
  void aMessageLeavesTheParkingLcdOffOtherwise_data() {
    QTest::addColumn<bool>("parked");
    QTest::addColumn<bool>("countdown");
    QTest::addColumn<bool>("recording");
    QTest::newRow("not parked") << false << false << false;
    QTest::newRow("countdown") << true << true << false;
    QTest::newRow("recording") << true << false << true;
  }
  void aMessageLeavesTheParkingLcdOffOtherwise() {
    QFETCH(bool, parked);
    QFETCH(bool, countdown);
    QFETCH(bool, recording);
    mWindow->SetIsIngParkingModeOn(parked);
    mWindow->SetIsLowVolCount(countdown);
    mWindow->SetIsDetectRecording(recording);
    Receive(RECV_ZEL_STATUS_NO_SD, kValue);
    QCOMPARE(EventBox(), int{R_NO_SD});
    QCOMPARE(Armed("mTimParkingModeLcdOff"), -1);
  }

  // ---- no screen

  void anEventWithoutAnyScreenIsHandledAsFarAsItGoes() {
    CloseAll();
    for (int event = 0; event <= 38; ++event) Receive(event, 1);
    QCOMPARE(gCountOfCamera, 1);
    QVERIFY(gIsAccVer);
    QVERIFY(mWindow->GetIsLowVolCount());
    QVERIFY(!Top());
    QCOMPARE(EventLines(), QStringList());
  }
  void aSaverWithNothingBelowGivesWayToAFreshPreview() {
    CloseAll();
    Open(SCREENSAVER);
    Receive(RECV_ZEL_STATUS_NO_SD, kValue);
    QCOMPARE(TopId(), PREVIEW);
    QCOMPARE(EventBox(), int{R_NO_SD});
  }

  // ---- the LCD key

  void theLcdKeyClicksAndSwitches() {
    Receive(RECV_ZEL_STATUS_LCD_KEY, 1);
    QVERIFY(mWindow->GetIsLcdOff());
    QVERIFY(!IsOn(mPreview));
    QCOMPARE(Asked(),
             (QStringList{"sh aplay /opt/ipnc/voice/touch.wav", "sh echo 0 > /proc/pwm/pwm0", "PREVIEW event 28 1"}));
    Fake().asked.clear();
    Receive(RECV_ZEL_STATUS_LCD_KEY, 0);
    QVERIFY(!mWindow->GetIsLcdOff());
    QVERIFY(IsOn(mPreview));
    QCOMPARE(Asked(), (QStringList{"sh aplay /opt/ipnc/voice/touch.wav", "sh echo 50000 > /proc/pwm/pwm0",
                                   "PREVIEW event 28 0"}));
  }
  void theLcdKeyIsSilentWhileTheCardIsFormatted() {
    Open(SDFORMAT);
    Receive(RECV_ZEL_STATUS_LCD_KEY, 1);
    QVERIFY(mWindow->GetIsLcdOff());
    QCOMPARE(Asked(), (QStringList{"sh echo 0 > /proc/pwm/pwm0", "SDFORMAT event 28 1"}));
  }
  void theLcdKeyLeavesTheScreenSaver() {
    Open(SCREENSAVER);
    Receive(RECV_ZEL_STATUS_LCD_KEY, 1);
    QCOMPARE(TopId(), PREVIEW);
    QVERIFY(mWindow->GetIsLcdOff());
    QVERIFY(!IsOn(mPreview));
  }
  void theLcdKeyIsTheScreensOwnOnSome_data() {
    QTest::addColumn<int>("id");
    QTest::addColumn<bool>("touchTest");
    QTest::addColumn<bool>("recording");
    QTest::newRow("motion areas") << int{MOTIONSETTING} << false << false;
    QTest::newRow("touch calibration") << int{TOUCHCOMP} << false << false;
    QTest::newRow("touch test version") << int{TOUCHTEST} << true << false;
    QTest::newRow("touch test version, preview") << int{PREVIEW} << true << false;
    QTest::newRow("manual recording") << int{PREVIEW} << false << true;
  }
  void theLcdKeyIsTheScreensOwnOnSome() {
    QFETCH(int, id);
    QFETCH(bool, touchTest);
    QFETCH(bool, recording);
    if (id != PREVIEW) Open(WidgetId(id));
    mWindow->SetIsTouchMotionVer(touchTest);
    mWindow->SetIsDetectRecording(recording);
    Receive(RECV_ZEL_STATUS_LCD_KEY, 1);
    QVERIFY(!mWindow->GetIsLcdOff());
    QCOMPARE(Asked(), QStringList{Forwarded(NameOf(WidgetId(id)), RECV_ZEL_STATUS_LCD_KEY, 1)});
  }

  // ---- the end of a voice prompt

  void theEndOfAPromptFreesTheTouches() {
    gIsPlayingVoice = true;
    Receive(RECV_ZEL_STATUS_VOICE_PLAY_END, 1);
    QVERIFY(!gIsPlayingVoice);
    QCOMPARE(Asked(), QStringList{"PREVIEW event 29 1"});
  }
  void theEndOfTheSavePromptRestartsRecordingAndEndsThere() {
    DummyScreen* menu = Open(MAINMENU);
    Setting().gmt = 9;
    menu->EntryPreview();
    QVERIFY(menu->GetRestartRecStartFlag());
    Fake().asked.clear();
    const QPointer<BaseWidget> gone = menu;
    gIsPlayingVoice = true;
    Receive(RECV_ZEL_STATUS_VOICE_PLAY_END, 1);
    QVERIFY(!gone);
    QVERIFY(!gIsPlayingVoice);
    QCOMPARE(TopId(), PREVIEW);
    QCOMPARE(Asked(), (QStringList{"8619 0", "sleep 1000000"}));
  }
};

QTEST_MAIN(MainWindowEventsTest)
#include "mainwindow_events_test.moc"
