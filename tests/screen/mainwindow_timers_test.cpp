// The window's delayed actions: follow-ups of events, LCD off while parked, idle return, low-voltage countdown.
#include <QSignalSpy>

#include "gui/base/eventgate.h"
#include "gui/screen/messagebox.h"
#include "tests/fake/paintspy.h"
#include "tests/fake/windowtest.h"

static TestRoot root;

class MainWindowTimersTest : public WindowTest {
  Q_OBJECT

private:
  void Receive(int event, int value) { mWindow->recvEvent(event, value); }
  // Parked, message gone by, timers of it stopped.
  void Park() {
    mWindow->SetIsIngParkingModeOn(true);
    mWindow->SetEvent(RECV_ZEL_STATUS_PARK_MODE_IN, 2000);
    Fake().asked.clear();
  }
  static bool StoredIsFront() { return gEnvirnmentSettings.GetSettingConfig(Set_Cfg_Display) == 1; }

private slots:
  void init() { Start(root); }
  void cleanup() { Stop(); }

  void noTimerRunsAtTheStart() {
    for (const char* name : {"mTimLcdAutoMode", "mTimParkingModeLcdOff", "mTimEventTimer", "mTimSystemRecStart",
                             "mTimLowVolPowerOffCount", "mTimPlayingVoice"})
      QVERIFY2(Armed(name) == -1, name);
  }
  void timersActThroughTheirSlots_data() {
    QTest::addColumn<QString>("timer");
    for (const char* name : {"mTimLcdAutoMode", "mTimParkingModeLcdOff", "mTimEventTimer", "mTimSystemRecStart",
                             "mTimLowVolPowerOffCount"})
      QTest::newRow(name) << name;
  }
  // What each does when it is due, and that it waits while a handler lets Qt paint.
  void timersActThroughTheirSlots() {
    QFETCH(QString, timer);
    Setting().lcd_bright = 3;
    mWindow->SetIsIngParkingModeOn(true);
    mWindow->SetEvent(RECV_ZEL_STATUS_REARCAM_DISCONNECT, 100000);
    mWindow->SetCountOfLowVolPowerOff(10);
    const auto acted = [&] {
      if (timer == "mTimLcdAutoMode") return Asked().contains("8664 0");
      if (timer == "mTimParkingModeLcdOff") return mWindow->GetIsLcdOff();
      if (timer == "mTimEventTimer") return Asked().contains("8581 1");
      if (timer == "mTimSystemRecStart") return Asked().contains("8663 0");
      return mWindow->GetCountOfLowVolPowerOff() == 9;
    };
    auto* due = mWindow->findChild<QTimer*>(timer);
    mPreview->duringTouch = [&] {
      due->start(0);
      mPreview->PaintMessageBox(SELECT_NDF_FILE, false, 0, 0);
      gEventGate.ProcessEvents();
      QVERIFY(!acted());
      QCOMPARE(Armed(qPrintable(timer)), 1);
    };
    Tap(1, 1);
    QVERIFY(!acted());
    QTRY_VERIFY(acted());
  }

  // ---- parking in

  void twoSecondsAfterParkingTheLcdGoesOff() {
    Park();
    mWindow->TimeoutEventTimer();
    QVERIFY(mWindow->GetIsLcdOff());
    QCOMPARE(Asked(), QStringList{"sh echo 0 > /proc/pwm/pwm0"});
    QCOMPARE(Armed("mTimEventTimer"), -1);
    QCOMPARE(Armed("mTimParkingModeLcdOff"), -1);
    QCOMPARE(Setting().display, 0);
  }
  void aFollowUpHappensOnce() {
    Park();
    mWindow->TimeoutEventTimer();
    mWindow->LcdOn();
    Fake().asked.clear();
    mWindow->TimeoutEventTimer();
    QCOMPARE(Asked(), QStringList());
  }
  void aNewFollowUpReplacesTheOld() {
    Park();
    mWindow->SetEvent(12345, 500);
    QCOMPARE(Armed("mTimEventTimer"), 500);
    mWindow->TimeoutEventTimer();
    QCOMPARE(Asked(), QStringList());
    QCOMPARE(Armed("mTimEventTimer"), -1);
  }
  void parkingThatEndedMeanwhileIsLeftAlone() {
    Setting().rear_cam_power = 0;
    Park();
    mWindow->SetIsIngParkingModeOn(false);
    mWindow->TimeoutEventTimer();
    QVERIFY(!mWindow->GetIsLcdOff());
    QCOMPARE(Setting().display, 0);
    QCOMPARE(Asked(), QStringList());
  }
  void parkingLeavesTheLcdOn_data() {
    QTest::addColumn<bool>("countdown");
    QTest::newRow("during the countdown") << true;
    QTest::newRow("during a recording by hand") << false;
  }
  void parkingLeavesTheLcdOn() {
    QFETCH(bool, countdown);
    Setting().rear_cam_power = 0;
    Park();
    mWindow->SetIsLowVolCount(countdown);
    mWindow->SetIsDetectRecording(!countdown);
    mWindow->TimeoutEventTimer();
    QVERIFY(!mWindow->GetIsLcdOff());
    QCOMPARE(Asked(), QStringList{"8581 1"});  // the rear camera is off all the same
  }
  void parkingSwitchesTheLcdOffButOnSome_data() { AddScreenRows(kKeepLcdOn); }
  void parkingSwitchesTheLcdOffButOnSome() {
    QFETCH(int, id);
    QFETCH(bool, excepted);
    if (id != PREVIEW) Open(WidgetId(id));
    Park();
    mWindow->TimeoutEventTimer();
    QCOMPARE(mWindow->GetIsLcdOff(), !excepted);
  }
  void parkingWithoutTheRearCameraShowsTheFront_data() {
    QTest::addColumn<int>("rearPower");
    QTest::addColumn<int>("parkingMode");
    QTest::addColumn<int>("display");
    QTest::addColumn<bool>("switches");
    QTest::newRow("both views") << 0 << 1 << 0 << true;
    QTest::newRow("rear view") << 0 << 1 << 2 << true;
    QTest::newRow("other parking mode") << 0 << 2 << 0 << true;
    QTest::newRow("front already") << 0 << 1 << 1 << false;
    QTest::newRow("no parking mode") << 0 << 0 << 0 << false;
    QTest::newRow("rear camera on") << 1 << 1 << 0 << false;
  }
  void parkingWithoutTheRearCameraShowsTheFront() {
    QFETCH(int, rearPower);
    QFETCH(int, parkingMode);
    QFETCH(int, display);
    QFETCH(bool, switches);
    Setting().rear_cam_power = rearPower;
    Setting().parking_mode_on = parkingMode;
    Setting().display = display;
    Park();
    mWindow->TimeoutEventTimer();
    QCOMPARE(Setting().display, switches ? 1 : display);
    QCOMPARE(StoredIsFront(), switches);
    QCOMPARE(Fake().Commands(), switches ? QStringList{"8581 1"} : QStringList());
  }

  // ---- parking out

  void twoSecondsAfterParkingEndsTheLcdComesOn() {
    mWindow->LcdOff();
    mWindow->SetEvent(RECV_ZEL_STATUS_PARK_MODE_OUT, 2000);
    mWindow->findChild<QTimer*>("mTimParkingModeLcdOff")->start(8000);
    Fake().asked.clear();
    mWindow->TimeoutEventTimer();
    QVERIFY(!mWindow->GetIsLcdOff());
    QCOMPARE(Armed("mTimParkingModeLcdOff"), -1);
    QCOMPARE(Asked(), QStringList{"sh echo 50000 > /proc/pwm/pwm0"});
  }
  void parkingOutWithTheLcdOnOnlyStopsTheTimer() {
    mWindow->SetEvent(RECV_ZEL_STATUS_PARK_MODE_OUT, 2000);
    mWindow->findChild<QTimer*>("mTimParkingModeLcdOff")->start(8000);
    mWindow->TimeoutEventTimer();
    QCOMPARE(Armed("mTimParkingModeLcdOff"), -1);
    QCOMPARE(Asked(), QStringList());
  }
  void parkedAgainMeanwhileStaysDark() {
    mWindow->LcdOff();
    mWindow->SetIsIngParkingModeOn(true);
    mWindow->SetEvent(RECV_ZEL_STATUS_PARK_MODE_OUT, 2000);
    mWindow->findChild<QTimer*>("mTimParkingModeLcdOff")->start(8000);
    mWindow->TimeoutEventTimer();
    QVERIFY(mWindow->GetIsLcdOff());
    QCOMPARE(Armed("mTimParkingModeLcdOff"), 8000);
  }

  // ---- the rear camera is lost

  void twoSecondsAfterTheRearCameraIsLostTheFrontIsShown() {
    Setting().display = 2;
    Receive(RECV_ZEL_STATUS_REARCAM_DISCONNECT, 1);
    QCOMPARE(Setting().display, 2);
    QTRY_VERIFY(mPreview->painted > 0);
    Fake().asked.clear();
    mPreview->painted = 0;
    Fake().meanwhile = [](const QString&) { QVERIFY(StoredIsFront()); };
    mWindow->TimeoutEventTimer();
    QCOMPARE(Setting().display, 1);
    QCOMPARE(Asked(), QStringList{"8581 1"});
    QVERIFY(mPreview->painted > 0);
  }
  void aFrontViewStaysWhenTheRearCameraIsLost() {
    Setting().display = 1;
    Receive(RECV_ZEL_STATUS_REARCAM_DISCONNECT, 1);
    Fake().asked.clear();
    mWindow->TimeoutEventTimer();
    QCOMPARE(Asked(), QStringList());
    QVERIFY(!root.Exists("/opt/gui/ini/config_firm.ini"));
  }

  void anUnknownFollowUpDoesNothing_data() {
    QTest::addColumn<int>("id");
    for (const int id : {-1, 0, 13, 16, 28, 34, 48, 50, 1000}) QTest::addRow("%d", id) << id;
  }
  void anUnknownFollowUpDoesNothing() {
    QFETCH(int, id);
    Setting().display = 2;
    mWindow->SetIsIngParkingModeOn(true);
    mWindow->SetEvent(id, 2000);
    mWindow->TimeoutEventTimer();
    QCOMPARE(Asked(), QStringList());
    QCOMPARE(Armed("mTimEventTimer"), -1);
    QVERIFY(!mWindow->GetIsLcdOff());
  }
  void aFormatThatNobodyAskedForDoesNotStart() {
    mWindow->SetEvent(RECV_ZEL_STATUS_VOICE_PLAY_END, 10000);
    gNeedFormatFlag = 1;
    mWindow->TimeoutEventTimer();
    QCOMPARE(Asked(), QStringList());
    QCOMPARE(gNeedFormatFlag, 1);
  }

  // ---- LCD off while parked

  void eightSecondsAfterTheLastTouchTheLcdGoesOff_data() { AddScreenRows(kKeepLcdOn); }
  void eightSecondsAfterTheLastTouchTheLcdGoesOff() {
    QFETCH(int, id);
    QFETCH(bool, excepted);
    if (id != PREVIEW) Open(WidgetId(id));
    mWindow->SetIsIngParkingModeOn(true);
    mWindow->SetParkingModeLcdOffTimer();
    QCOMPARE(Armed("mTimParkingModeLcdOff"), 8000);
    mWindow->TimeoutParkingModeLcdOff();
    QCOMPARE(mWindow->GetIsLcdOff(), !excepted);
    QCOMPARE(Armed("mTimParkingModeLcdOff"), -1);
  }
  void theLcdStaysOnWhenParkingHasEnded() {
    mWindow->TimeoutParkingModeLcdOff();
    QVERIFY(!mWindow->GetIsLcdOff());
  }
  void theParkingTimerNeedsAParkedCameraWithNothingElse_data() {
    QTest::addColumn<bool>("parked");
    QTest::addColumn<bool>("countdown");
    QTest::addColumn<bool>("recording");
    for (int i = 0; i < 8; ++i) QTest::addRow("%d", i) << bool(i & 1) << bool(i & 2) << bool(i & 4);
  }
  void theParkingTimerNeedsAParkedCameraWithNothingElse() {
    QFETCH(bool, parked);
    QFETCH(bool, countdown);
    QFETCH(bool, recording);
    mWindow->SetIsIngParkingModeOn(parked);
    mWindow->SetIsLowVolCount(countdown);
    mWindow->SetIsDetectRecording(recording);
    mWindow->SetParkingModeLcdOffTimer();
    QCOMPARE(Armed("mTimParkingModeLcdOff"), parked && !countdown && !recording ? 8000 : -1);
    mWindow->StopParkingModeLcdOffTimer();
    QCOMPARE(Armed("mTimParkingModeLcdOff"), -1);
  }

  // ---- the idle return

  void theIdleTimerIsSetAndStopped() {
    mWindow->SetGlobalEntryPreviewTimer();
    QCOMPARE(Armed("mTimSystemRecStart"), 600000);
    mWindow->StopGlobalEntryPreviewTimer();
    QCOMPARE(Armed("mTimSystemRecStart"), -1);
  }
  void tenMinutesWithoutATouchLeadBackToThePreview_data() { AddScreenRows({RECORDINGLIST, PLAYER}); }
  void tenMinutesWithoutATouchLeadBackToThePreview() {
    QFETCH(int, id);
    QFETCH(bool, excepted);
    Setting().gmt = 9;
    gEnvirnmentSettings.AllSetSettingConfig();
    if (id != PREVIEW) Open(WidgetId(id));
    Setting().gmt = -3;  // an edit that is not saved
    gNeedFormatFlag = 2;
    g_bIsPrevWidgetParkingSetting = true;
    mWindow->SetGlobalEntryPreviewTimer();
    Fake().asked.clear();
    QVERIFY(QTest::qWaitForWindowExposed(mWindow.get()));
    PaintSpy<MessageBox> boxes;
    Fake().meanwhile = [&](const QString&) {
      QVERIFY(boxes.count > 0);
      QCOMPARE(OwnBox(), int{ENTRY_PREVIEW});
      QCOMPARE(Setting().gmt, 9);
    };
    mWindow->TimeoutSystemRecStart();
    QCOMPARE(Armed("mTimSystemRecStart"), -1);
    QCOMPARE(gNeedFormatFlag, 0);
    QVERIFY(!g_bIsPrevWidgetParkingSetting);
    QCOMPARE(OwnBox(), int{ENTRY_PREVIEW});
    QCOMPARE(ArmedOnTop("mMessageBoxTimer"), 2000);
    QCOMPARE(Setting().gmt, 9);
    QVERIFY(!gEnvirnmentSettings.compareSettingValue());
    // Recording was stopped for browsing.
    QCOMPARE(Fake().Commands(), excepted ? (QStringList{"8663 0", "8619 0"}) : QStringList{"8663 0"});
    QCOMPARE(Armed("mTimIdleReturn"), 2000);
    QCOMPARE(TopId(), WidgetId(id));
    mWindow->TimeoutIdleReturn();
    QCOMPARE(TopId(), PREVIEW);
    QCOMPARE(Top(), mPreview);
    QVERIFY(mPreview->isVisible());
  }
  void theIdleReturnWithoutAnyScreen() {
    CloseAll();
    mWindow->TimeoutSystemRecStart();
    QCOMPARE(Fake().Commands(), QStringList{"8663 0"});
    mWindow->TimeoutIdleReturn();
    QVERIFY(!Top());
  }

  // The card was found faulty, and the driver has gone: recording was stopped for the check, and nobody answers.
  void whoeverLeftRecordingStoppedThePreviewRecords_data() {
    QTest::addColumn<QString>("way");
    for (const char* way : {"idle return", "jump", "back"}) QTest::newRow(way) << QString::fromLatin1(way);
  }
  void whoeverLeftRecordingStoppedThePreviewRecords() {
    QFETCH(QString, way);
    Open(SDMANAGEMENT);
    mWindow->SendEvent(SEND_VIDEO_REC_STOP, 3, QString());
    Top()->PaintMessageBox(R_SD_ERROR_NEET_FORMAT, false, 1, 0);
    Fake().asked.clear();
    if (way == "idle return") {
      mWindow->TimeoutSystemRecStart();
      mWindow->TimeoutIdleReturn();
    }
    if (way == "jump") Top()->Jump(PREVIEW);
    if (way == "back") Top()->Back();
    QCOMPARE(TopId(), PREVIEW);
    QCOMPARE(Fake().Commands().filter("8619"), QStringList{"8619 0"});
    Open(MAINMENU);
    Top()->Back();
    QCOMPARE(Fake().Commands().filter("8619").size(), 1);  // once
  }
  void aCameraThatRecordsIsNotToldTo() {
    Open(MAINMENU);
    mWindow->SendEvent(SEND_VIDEO_REC_STOP, 2, QString());
    mWindow->SendEvent(SEND_VIDEO_REC_START, 0, QString());
    Fake().asked.clear();
    Top()->Jump(PREVIEW);
    QCOMPARE(Fake().Commands(), QStringList());
  }
  // The notice of the idle return is up when the car is parked, or the rear camera lost.
  void theIdleReturnIsNotLostForAnEvent_data() {
    QTest::addColumn<int>("event");
    QTest::addColumn<bool>("parked");
    QTest::newRow("parking begins") << int{RECV_ZEL_STATUS_PARK_MODE_IN} << false;
    QTest::newRow("parking ends") << int{RECV_ZEL_STATUS_PARK_MODE_OUT} << true;
    QTest::newRow("the rear camera is lost") << int{RECV_ZEL_STATUS_REARCAM_DISCONNECT} << false;
  }
  void theIdleReturnIsNotLostForAnEvent() {
    QFETCH(int, event);
    QFETCH(bool, parked);
    mWindow->SetIsIngParkingModeOn(parked);
    Open(MAINMENU);
    mWindow->TimeoutSystemRecStart();
    Receive(event, 1);
    QCOMPARE(Armed("mTimIdleReturn"), 2000);
    QCOMPARE(Armed("mTimEventTimer"), 2000);
    mWindow->TimeoutEventTimer();
    mWindow->TimeoutIdleReturn();
    QCOMPARE(TopId(), PREVIEW);
    QCOMPARE(Armed("mTimIdleReturn"), -1);
  }

  // ---- the low-voltage countdown

  void theCountdownRunsForThirtySeconds() {
    QSignalSpy shown(mWindow.get(), &MainWindow::lowvolSignals);
    Receive(RECV_ZEL_STATUS_LOW_VOLTAGE_POWER_OFF_COUNT, 1);
    for (int seconds = 30; seconds >= 1; --seconds) {
      QVERIFY(mWindow->GetIsLowVolCount());
      QCOMPARE(mWindow->GetCountOfLowVolPowerOff(), seconds);
      QCOMPARE(Armed("mTimLowVolPowerOffCount"), 1000);
      QCOMPARE(shown.size(), 31 - seconds);
      QCOMPARE(shown.last().first().toInt(), 1);
      mWindow->TimeoutLowVolPowerOffCount();
    }
    QVERIFY(!mWindow->GetIsLowVolCount());
    QCOMPARE(mWindow->GetCountOfLowVolPowerOff(), 31);
    QCOMPARE(Armed("mTimLowVolPowerOffCount"), -1);
    QCOMPARE(shown.size(), 31);
    QCOMPARE(shown.last().first().toInt(), 0);
  }
  void theCountdownIsShownOnThePreviewOnly() {
    Open(MAINMENU);
    QSignalSpy shown(mWindow.get(), &MainWindow::lowvolSignals);
    Receive(RECV_ZEL_STATUS_LOW_VOLTAGE_POWER_OFF_COUNT, 1);
    mWindow->TimeoutLowVolPowerOffCount();
    QCOMPARE(mWindow->GetCountOfLowVolPowerOff(), 29);
    Receive(RECV_ZEL_STATUS_LOW_VOLTAGE_POWER_OFF_COUNT, 0);
    QCOMPARE(shown.size(), 0);
  }
  void theCountdownLeavesTheScreenSaverAndRuns() {
    Open(SCREENSAVER);
    Receive(RECV_ZEL_STATUS_LOW_VOLTAGE_POWER_OFF_COUNT, 1);
    QCOMPARE(TopId(), PREVIEW);
    QCOMPARE(mWindow->GetCountOfLowVolPowerOff(), 30);
    QVERIFY(Asked().contains("PREVIEW event 35 1"));
    for (int tick = 0; tick < 30; ++tick) mWindow->TimeoutLowVolPowerOffCount();
    QVERIFY(!mWindow->GetIsLowVolCount());
  }
  void theCountdownSwitchesTheLcdOnAndKeepsItOn() {
    mWindow->SetIsIngParkingModeOn(true);
    mWindow->LcdOff();
    mWindow->findChild<QTimer*>("mTimParkingModeLcdOff")->start(8000);
    Receive(RECV_ZEL_STATUS_LOW_VOLTAGE_POWER_OFF_COUNT, 1);
    QVERIFY(!mWindow->GetIsLcdOff());
    QCOMPARE(Armed("mTimParkingModeLcdOff"), -1);
  }
  void theParkingTimerIsStoppedOnlyWhileParked() {
    mWindow->findChild<QTimer*>("mTimParkingModeLcdOff")->start(8000);
    Receive(RECV_ZEL_STATUS_LOW_VOLTAGE_POWER_OFF_COUNT, 1);
    QCOMPARE(Armed("mTimParkingModeLcdOff"), 8000);
  }
  void theCountdownIsCalledOff_data() {
    QTest::addColumn<int>("value");
    for (const int value : {0, 2, -1}) QTest::addRow("%d", value) << value;
  }
  void theCountdownIsCalledOff() {
    QFETCH(int, value);
    QSignalSpy shown(mWindow.get(), &MainWindow::lowvolSignals);
    Receive(RECV_ZEL_STATUS_LOW_VOLTAGE_POWER_OFF_COUNT, 1);
    Receive(RECV_ZEL_STATUS_LOW_VOLTAGE_POWER_OFF_COUNT, value);
    QVERIFY(!mWindow->GetIsLowVolCount());
    QCOMPARE(mWindow->GetCountOfLowVolPowerOff(), 31);
    QCOMPARE(Armed("mTimLowVolPowerOffCount"), -1);
    QCOMPARE(shown.last().first().toInt(), 0);
    QCOMPARE(Armed("mTimParkingModeLcdOff"), -1);
  }
  void aSecondCountdownStartsAnew() {
    Receive(RECV_ZEL_STATUS_LOW_VOLTAGE_POWER_OFF_COUNT, 1);
    mWindow->TimeoutLowVolPowerOffCount();
    Receive(RECV_ZEL_STATUS_LOW_VOLTAGE_POWER_OFF_COUNT, 1);
    QCOMPARE(mWindow->GetCountOfLowVolPowerOff(), 30);
  }
  void afterTheCountdownAParkedCameraGoesDarkAgain_data() {
    QTest::addColumn<bool>("parked");
    QTest::addColumn<bool>("recording");
    QTest::addColumn<int>("ms");
    QTest::newRow("parked") << true << false << 8000;
    QTest::newRow("driving") << false << false << -1;
    QTest::newRow("recording by hand") << true << true << -1;
  }
  void afterTheCountdownAParkedCameraGoesDarkAgain() {
    QFETCH(bool, parked);
    QFETCH(bool, recording);
    QFETCH(int, ms);
    mWindow->SetIsIngParkingModeOn(parked);
    mWindow->SetIsDetectRecording(recording);
    Receive(RECV_ZEL_STATUS_LOW_VOLTAGE_POWER_OFF_COUNT, 1);
    QCOMPARE(Armed("mTimParkingModeLcdOff"), -1);
    Receive(RECV_ZEL_STATUS_LOW_VOLTAGE_POWER_OFF_COUNT, 0);
    QCOMPARE(Armed("mTimParkingModeLcdOff"), ms);
  }
};

QTEST_MAIN(MainWindowTimersTest)
#include "mainwindow_timers_test.moc"
