// The window's rules for a touch, in their order, and the question for a format of the card.
#include <linux/input.h>

#include <QLabel>
#include <QSignalSpy>

#include "gui/screen/messagebox.h"
#include "gui/touch/touchthread.h"
#include "tests/fake/paintspy.h"
#include "tests/fake/windowtest.h"

static TestRoot root;

class MainWindowTouchTest : public WindowTest {
  Q_OBJECT

private:
  static QStringList TouchLines() { return Asked().filter(QStringLiteral(" touch ")); }
  // A menu that has asked for a format.
  DummyScreen* AskForFormat(int flag) {
    DummyScreen* menu = Open(MAINMENU);
    if (flag & 1) Setting().resolution = 1;
    if (flag & 2) Setting().fps = 1;
    menu->EntryPreview();
    Fake().asked.clear();
    return menu;
  }
  // The panel's records of a sample with the finger down, and of its end. The panel is mounted turned.
  void TouchAt(int x, int y) {
    TouchThread* panel = mWindow->GetTouchThread();
    panel->Take(EV_ABS, ABS_X, y);
    panel->Take(EV_ABS, ABS_Y, x);
    panel->Take(EV_ABS, ABS_PRESSURE, 1);
  }
  void TouchEnds() { mWindow->GetTouchThread()->Take(EV_ABS, ABS_PRESSURE, 0); }
  static QString TextOf(const char* label) { return Top()->findChild<QLabel*>(QLatin1String(label))->text(); }
  static constexpr int kYesX = 100, kNoX = 300, kRowY = 230;

private slots:
  void init() { Start(root); }
  void cleanup() { Stop(); }

  void aTouchReachesTheScreen() {
    mWindow->touchEvent(TOUCH_PRESS, 10, 20);
    mWindow->touchEvent(TOUCH_RELEASE, 479, 319);
    mWindow->touchEvent(TOUCH_AUTO, 0, 0);
    QCOMPARE(Asked(), (QStringList{"PREVIEW touch 1 10 20", "PREVIEW touch 0 479 319", "PREVIEW touch 2 0 0"}));
  }

  // ---- 1: touches that are ignored altogether

  void aTouchWithoutAnyScreenIsIgnored() {
    CloseAll();
    mWindow->SetIsIngParkingModeOn(true);
    Tap(10, 20);
    QCOMPARE(Asked(), QStringList());
    QCOMPARE(Armed("mTimParkingModeLcdOff"), -1);
    QCOMPARE(Armed("mTimSystemRecStart"), -1);
  }
  void aTouchIsIgnored_data() {
    QTest::addColumn<bool>("voice");
    QTest::newRow("while a prompt plays") << true;
    QTest::newRow("while a recording is made by hand") << false;
  }
  void aTouchIsIgnored() {
    QFETCH(bool, voice);
    Open(MAINMENU);
    mWindow->SetIsIngParkingModeOn(true);
    mWindow->LcdOff();
    Fake().asked.clear();
    gIsPlayingVoice = voice;
    mWindow->SetIsDetectRecording(!voice);
    Tap(10, 20);
    QVERIFY(mWindow->GetIsLcdOff());
    QCOMPARE(Asked(), QStringList());
    QCOMPARE(Armed("mTimParkingModeLcdOff"), -1);
    QCOMPARE(Armed("mTimSystemRecStart"), -1);
  }
  // Without it a prompt whose end is never reported would make the panel dead for ever.
  void aPromptHoldsTouchesBackForTenSecondsAtMost() {
    QCOMPARE(Armed("mTimPlayingVoice"), -1);
    mWindow->SetIsPlayingVoice(true);
    QCOMPARE(Armed("mTimPlayingVoice"), 10000);  // from its beginning, not from the first touch
    auto* timer = mWindow->findChild<QTimer*>("mTimPlayingVoice");
    timer->setInterval(5000);  // a further touch must not put it off
    Tap(10, 20);
    QCOMPARE(Armed("mTimPlayingVoice"), 5000);
    QCOMPARE(TouchLines(), QStringList());
    timer->start(0);
    QTRY_VERIFY(!gIsPlayingVoice);
    QVERIFY(!timer->isActive());
    Tap(10, 20);
    QCOMPARE(TouchLines().size(), 1);
  }
  void theEndOfAPromptEndsTheTenSeconds() {
    mWindow->SetIsPlayingVoice(true);
    mWindow->recvEvent(RECV_ZEL_STATUS_VOICE_PLAY_END, 1);
    QCOMPARE(Armed("mTimPlayingVoice"), -1);
    QVERIFY(!gIsPlayingVoice);
  }
  void aFreeTouchStartsNoTenSeconds() {
    Tap(10, 20);
    QCOMPARE(Armed("mTimPlayingVoice"), -1);
  }

  // ---- 2: the LCD stays on while somebody touches a parked camera

  void aTouchPutsOffTheParkingLcdOff_data() { AddScreenRows(kKeepLcdOn); }
  void aTouchPutsOffTheParkingLcdOff() {
    QFETCH(int, id);
    QFETCH(bool, excepted);
    if (id != PREVIEW) Open(WidgetId(id));
    mWindow->SetIsIngParkingModeOn(true);
    Tap(10, 20);
    QCOMPARE(Armed("mTimParkingModeLcdOff"), excepted ? -1 : 8000);
  }
  void aTouchLeavesTheParkingLcdOffOtherwise_data() {
    QTest::addColumn<bool>("parked");
    QTest::addColumn<bool>("countdown");
    QTest::newRow("not parked") << false << false;
    QTest::newRow("countdown") << true << true;
  }
  void aTouchLeavesTheParkingLcdOffOtherwise() {
    QFETCH(bool, parked);
    QFETCH(bool, countdown);
    mWindow->SetIsIngParkingModeOn(parked);
    mWindow->SetIsLowVolCount(countdown);
    Tap(10, 20);
    QCOMPARE(Armed("mTimParkingModeLcdOff"), -1);
    QCOMPARE(TouchLines().size(), 1);
  }

  // ---- 3: ten minutes without a touch lead back to the preview

  void aTouchPutsOffTheIdleReturn_data() { AddScreenRows({PREVIEW, SCREENSAVER, PFILEGRAPH}); }
  void aTouchPutsOffTheIdleReturn() {
    QFETCH(int, id);
    QFETCH(bool, excepted);
    if (id != PREVIEW) Open(WidgetId(id));
    Tap(10, 20);
    QCOMPARE(Armed("mTimSystemRecStart"), excepted ? -1 : 600000);
  }
  void everyTouchPutsItOffAnew() {
    Open(MAINMENU);
    Tap(10, 20);
    mWindow->findChild<QTimer*>("mTimSystemRecStart")->setInterval(1000);
    Tap(10, 20);
    QCOMPARE(Armed("mTimSystemRecStart"), 600000);
  }

  // ---- 4: a dark LCD is only woken

  void aTouchOnADarkLcdOnlyWakesIt() {
    Open(MAINMENU);
    mWindow->SetIsIngParkingModeOn(true);
    mWindow->LcdOff();
    Fake().asked.clear();
    Tap(10, 20);
    QVERIFY(!mWindow->GetIsLcdOff());
    QVERIFY(Top()->isVisible());
    QCOMPARE(Asked(), QStringList{"sh echo 50000 > /proc/pwm/pwm0"});
    QCOMPARE(Armed("mTimParkingModeLcdOff"), 8000);
    QCOMPARE(Armed("mTimSystemRecStart"), 600000);
    Tap(10, 20);
    QCOMPARE(TouchLines(), QStringList{"MAINMENU touch 1 10 20"});
  }
  void aTouchOnADarkLcdDoesNotAnswerTheFormatQuestion() {
    AskForFormat(1);
    mWindow->LcdOff();
    Fake().asked.clear();
    Tap(kNoX, kRowY);
    QCOMPARE(gNeedFormatFlag, 1);
    QCOMPARE(OwnBox(), int{RESOLUTION_SETTING_CHANGE_NEED_FORMAT});
  }

  void aTouchEndsTheScreenSaver() {
    Open(MAINMENU);
    const QPointer<BaseWidget> saver = Open(SCREENSAVER);
    Tap(10, 20);
    QVERIFY(!saver);
    QCOMPARE(TopId(), MAINMENU);
    QVERIFY(Top()->isVisible());
    QCOMPARE(TouchLines(), QStringList());
  }

  // ---- 5: the question for a format

  void theBordersOfTheAnswers_data() {
    QTest::addColumn<int>("x");
    QTest::addColumn<int>("y");
    QTest::addColumn<QString>("answer");
    for (const int y : {0, 213, 214, 230, 259, 260, 319})
      for (const int x : {0, 55, 56, 100, 229, 230, 240, 250, 251, 300, 424, 425, 479}) {
        QString answer = "none";
        if (y >= 214 && y <= 259 && x >= 56 && x <= 229) answer = "yes";
        if (y >= 214 && y <= 259 && x >= 251 && x <= 424) answer = "no";
        QTest::addRow("%d,%d", x, y) << x << y << answer;
      }
  }
  void theBordersOfTheAnswers() {
    QFETCH(int, x);
    QFETCH(int, y);
    QFETCH(QString, answer);
    AskForFormat(2);
    Tap(x, y);
    QCOMPARE(TouchLines(), QStringList());
    QCOMPARE(gNeedFormatFlag, answer == "no" ? 0 : 2);
    QCOMPARE(OwnBox(), answer == "none"  ? int{FRAME_SETTING_CHANGE_NEED_FORMAT}
                       : answer == "yes" ? int{VIDEO_REC_STOP}
                                         : -1);
    QCOMPARE(Asked(), answer == "yes" ? QStringList{"8620 3"} : QStringList());
    QCOMPARE(Armed("mTimFormatStart"), answer == "yes" ? 10000 : -1);
  }
  void aTouchGoesOnWithoutTheQuestion() {
    gNeedFormatFlag = 1;  // no box
    Tap(kNoX, kRowY);
    QCOMPARE(gNeedFormatFlag, 1);
    QCOMPARE(TouchLines().size(), 1);
  }
  void aTouchOnAnotherBoxAnswersNothing_data() {
    QTest::addColumn<int>("flag");
    QTest::newRow("no question") << 0;
    QTest::newRow("a question that another box has replaced") << 1;
  }
  void aTouchOnAnotherBoxAnswersNothing() {
    QFETCH(int, flag);
    gNeedFormatFlag = flag;
    Top()->PaintMessageBox(SETUP_SAVING, false, 0, 0);
    Tap(kYesX, kRowY);
    Tap(kNoX, kRowY);
    QCOMPARE(OwnBox(), int{SETUP_SAVING});
    QCOMPARE(gNeedFormatFlag, flag);
    QCOMPARE(Asked(), QStringList());
  }
  // A notice covers both buttons: whoever taps it has not read what lies below.
  void aNoticeOverTheQuestionTakesTheTouch_data() {
    QTest::addColumn<int>("message");
    QTest::addColumn<int>("ms");
    QTest::newRow("standing") << int{R_HW_ERROR} << 0;
    QTest::newRow("timed") << int{R_NO_SD} << 2000;
  }
  void aNoticeOverTheQuestionTakesTheTouch() {
    QFETCH(int, message);
    QFETCH(int, ms);
    AskForFormat(3);
    Top()->PaintMessageBox(message, true, 3, ms);
    Tap(140, 236);
    QCOMPARE(EventBox(), ms == 0 ? -1 : message);
    QCOMPARE(OwnBox(), int{RES_FRAME_SETTING_CHANGE_NEED_FORMAT});
    QCOMPARE(Asked(), QStringList());
    QCOMPARE(gNeedFormatFlag, 3);
    if (ms > 0) Top()->TimeoutRecvMessageBoxTimer();
    Tap(140, 236);
    QCOMPARE(Asked(), QStringList{"8620 3"});
  }
  void theQuestionOverANoticeIsAnswered() {
    Open(MAINMENU);
    Top()->PaintMessageBox(R_HW_ERROR, true, 3, 0);
    Setting().resolution = 1;
    Top()->EntryPreview();
    Tap(kNoX, kRowY);
    QCOMPARE(OwnBox(), -1);
    QCOMPARE(EventBox(), int{R_HW_ERROR});
    Tap(kNoX, kRowY);
    QCOMPARE(EventBox(), -1);
    QCOMPARE(TouchLines(), QStringList());
  }
  void noLeavesTheSettingsAsTheyAreAndFreesTheScreen() {
    AskForFormat(1);
    Tap(kNoX, kRowY);
    QCOMPARE(Setting().resolution, 1);
    Tap(kNoX, kRowY);
    QCOMPARE(TouchLines(), QStringList{"MAINMENU touch 1 300 230"});
  }
  void yesShowsTheBoxBeforeItStopsRecording() {
    AskForFormat(1);
    QVERIFY(QTest::qWaitForWindowExposed(mWindow.get()));
    PaintSpy<MessageBox> boxes;
    int seen = 0;
    Fake().meanwhile = [&](const QString& line) {
      if (line != "8620 3") return;
      ++seen;
      QCOMPARE(OwnBox(), int{VIDEO_REC_STOP});
      QCOMPARE(ArmedOnTop("mMessageBoxTimer"), -1);
      QVERIFY(boxes.count > 0);
      QCOMPARE(Armed("mTimFormatStart"), 10000);
    };
    Tap(kYesX, kRowY);
    QCOMPARE(seen, 1);
    QCOMPARE(gNeedFormatFlag, 1);
  }
  // The box that says "recording stops" has no buttons, but lies where the answers were.
  void afterYesNoTouchCounts() {
    AskForFormat(1);
    Tap(kYesX, kRowY);
    Tap(kNoX, kRowY);
    Tap(kYesX, kRowY);
    Tap(10, 10);
    QCOMPARE(gNeedFormatFlag, 1);
    QCOMPARE(Asked(), QStringList{"8620 3"});
  }

  void theFormatStartsWhenThePromptEnds_data() {
    QTest::addColumn<int>("flag");
    QTest::newRow("resolution") << 1;
    QTest::newRow("frame rate") << 2;
    QTest::newRow("both") << 3;
  }
  void theFormatStartsWhenThePromptEnds() {
    QFETCH(int, flag);
    DummyScreen* menu = AskForFormat(flag);
    mWindow->SetIsIngParkingModeOn(true);
    Tap(kYesX, kRowY);
    QCOMPARE(Armed("mTimParkingModeLcdOff"), 8000);
    QSignalSpy next(menu, &BaseWidget::nextWidget);
    Fake().meanwhile = [&](const QString& line) {
      if (!line.startsWith("8612 ")) return;
      QCOMPARE(OwnBox(), -1);
      QCOMPARE(Armed("mTimParkingModeLcdOff"), -1);
      QCOMPARE(next.size(), 0);
    };
    Fake().asked.clear();
    mWindow->recvEvent(RECV_ZEL_STATUS_VOICE_PLAY_END, 1);
    QCOMPARE(Fake().Commands(), QStringList{QStringLiteral("8612 %1").arg(flag)});
    QCOMPARE(gNeedFormatFlag, 0);
    QCOMPARE(next.size(), 1);
    QCOMPARE(next.first().first().value<WidgetId>(), SDFORMAT);
    QCOMPARE(TopId(), SDFORMAT);

    // Once only: neither the next prompt nor the fall-back formats again.
    Fake().asked.clear();
    QCOMPARE(Armed("mTimFormatStart"), -1);
    mWindow->recvEvent(RECV_ZEL_STATUS_VOICE_PLAY_END, 1);
    mWindow->GetFormatQuestion().Start();
    QCOMPARE(Fake().Commands(), QStringList());
    QCOMPARE(next.size(), 1);
  }
  void theFormatStartsAfterTenSecondsWithoutAPrompt() {
    DummyScreen* menu = AskForFormat(3);
    Tap(kYesX, kRowY);
    QSignalSpy next(menu, &BaseWidget::nextWidget);
    Fake().asked.clear();
    mWindow->GetFormatQuestion().Start();
    QCOMPARE(Asked().first(), QStringLiteral("8612 3"));
    QCOMPARE(gNeedFormatFlag, 0);
    QCOMPARE(OwnBox(), -1);
    QCOMPARE(next.size(), 1);
    Fake().asked.clear();
    mWindow->recvEvent(RECV_ZEL_STATUS_VOICE_PLAY_END, 1);
    QCOMPARE(Fake().Commands(), QStringList());
  }
  // Parking has a follow-up of its own: neither takes the other's place.
  void parkingThatBeginsMeanwhileDelaysNothing() {
    AskForFormat(1);
    Tap(kYesX, kRowY);
    mWindow->recvEvent(RECV_ZEL_STATUS_PARK_MODE_IN, 1);
    QCOMPARE(Armed("mTimEventTimer"), 2000);
    QCOMPARE(Armed("mTimFormatStart"), 10000);
    mWindow->TimeoutEventTimer();
    QVERIFY(!Fake().Commands().contains("8612 1"));
    mWindow->GetFormatQuestion().Start();
    QVERIFY(Fake().Commands().contains("8612 1"));
    QCOMPARE(TopId(), SDFORMAT);
  }
  void aPromptThatEndsOtherwiseFormatsNothing() {
    AskForFormat(1);
    mWindow->recvEvent(RECV_ZEL_STATUS_VOICE_PLAY_END, 1);
    QCOMPARE(Fake().Commands(), QStringList());
    QCOMPARE(gNeedFormatFlag, 1);
    QCOMPARE(OwnBox(), int{RESOLUTION_SETTING_CHANGE_NEED_FORMAT});
  }
  void theFormatStartsEvenWithoutAScreen() {
    AskForFormat(1);
    Tap(kYesX, kRowY);
    CloseAll();
    Fake().asked.clear();
    mWindow->recvEvent(RECV_ZEL_STATUS_VOICE_PLAY_END, 1);
    QCOMPARE(Asked(), QStringList{"8612 1"});
  }

  // ---- a standing box of an event

  void aTouchClosesABoxThatNothingElseCloses() {
    Open(MAINMENU);
    mWindow->recvEvent(RECV_ZEL_STATUS_HW_ERROR, 3);
    QCOMPARE(EventBox(), int{R_HW_ERROR});
    Tap(10, 20);
    QCOMPARE(EventBox(), -1);
    QCOMPARE(TouchLines(), QStringList());
    Tap(10, 20);
    QCOMPARE(TouchLines(), QStringList{"MAINMENU touch 1 10 20"});
  }
  void aBoxThatClosesItselfTakesTheTouch() {
    mWindow->recvEvent(RECV_ZEL_STATUS_NO_SD, 1);
    Tap(10, 20);
    QCOMPARE(EventBox(), int{R_NO_SD});
    QCOMPARE(TouchLines(), QStringList());
  }

  // ---- what the panel tells without the window

  void theCalibrationHearsThePanel() {
    Open(MAINMENU);
    mWindow->StartWidget(TOUCHCOMP, nullptr);
    TouchAt(100, 120);
    QCOMPARE(TextOf("lblComment2"), QStringLiteral("2 / 9"));
    TouchAt(0, 0);  // the finger is still there
    QCOMPARE(TextOf("lblComment2"), QStringLiteral("2 / 9"));
    TouchEnds();
    TouchAt(200, 120);
    QCOMPARE(TextOf("lblComment2"), QStringLiteral("3 / 9"));
  }
  void aStandingBoxOnTheCalibrationClosesAtATouch() {
    mWindow->StartWidget(TOUCHCOMP, nullptr);
    mWindow->recvEvent(RECV_ZEL_STATUS_HW_ERROR, 3);
    TouchAt(100, 120);
    TouchEnds();
    QCOMPARE(EventBox(), -1);
    QCOMPARE(TextOf("lblComment2"), QStringLiteral("1 / 9"));
  }
  void theCalibrationIsNeverInTheDark_data() {
    QTest::addColumn<int>("door");
    QTest::newRow("a menu") << int{MAINMENU};
    QTest::newRow("the preview") << int{PREVIEW};
  }
  void theCalibrationIsNeverInTheDark() {
    QFETCH(int, door);
    if (door != PREVIEW) Open(WidgetId(door));
    mWindow->SetIsIngParkingModeOn(true);
    mWindow->LcdOff();
    Fake().asked.clear();
    mWindow->StartWidget(TOUCHCOMP, nullptr);
    QVERIFY(!mWindow->GetIsLcdOff());
    QVERIFY(Top()->isVisible());
    QVERIFY(Asked().contains("sh echo 50000 > /proc/pwm/pwm0"));
    QCOMPARE(Armed("mTimParkingModeLcdOff"), -1);
    mWindow->TimeoutParkingModeLcdOff();
    QVERIFY(!mWindow->GetIsLcdOff());
  }
  void aTouchInTheDarkOnTheCalibrationOnlyWakes() {
    mWindow->StartWidget(TOUCHCOMP, nullptr);
    mWindow->LcdOff();
    TouchAt(100, 120);
    TouchEnds();
    QVERIFY(!mWindow->GetIsLcdOff());
    QCOMPARE(TextOf("lblComment2"), QStringLiteral("1 / 9"));
  }
  void aStandingBoxOnTheTouchTestClosesAtATouch() {
    mWindow->SetIsCurrentShowTouchMotion(true);
    mWindow->SetIsTouchMotionVer(true);
    mWindow->StartWidget(TOUCHTEST, nullptr);
    mWindow->recvEvent(RECV_ZEL_STATUS_HW_ERROR, 3);
    TouchAt(100, 120);
    QCOMPARE(EventBox(), -1);
    QCOMPARE(TextOf("beforeCoord"), QString());
    TouchAt(100, 120);
    QCOMPARE(TextOf("beforeCoord"), QStringLiteral("X: 100 Y: 120"));
    mWindow->SetIsTouchMotionVer(false);
  }
  void theTouchTestHearsEverySample() {
    gEnvirnmentSettings.mTouchValue.Store({2, 0, 0, 1, 10, 5});
    Open(MAINMENU);
    mWindow->SetIsCurrentShowTouchMotion(true);
    mWindow->SetIsTouchMotionVer(true);
    mWindow->StartWidget(TOUCHTEST, nullptr);
    for (const int x : {100, 101}) {
      TouchAt(x, 120);
      QCOMPARE(TextOf("beforeCoord"), QStringLiteral("X: %1 Y: 120").arg(x));
      QCOMPARE(TextOf("afterCoord"), QStringLiteral("X: %1 Y: 125").arg(2 * x + 10));
    }
    TouchEnds();
    Top()->recvEvent(RECV_ZEL_STATUS_LCD_KEY, 0);
    QCOMPARE(TopId(), MAINMENU);
    TouchAt(100, 120);
    QCOMPARE(TouchLines(), QStringList{"MAINMENU touch 1 210 125"});
    gEnvirnmentSettings.mTouchValue.Store(kFactoryTouchValue);
  }
};

QTEST_MAIN(MainWindowTouchTest)
#include "mainwindow_touch_test.moc"
