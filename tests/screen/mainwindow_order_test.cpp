// One touch or event at a time: what arrives in the middle of a handler waits, and keeps its order; a touch that was
// made before the top changed is dropped.
#include "gui/base/eventgate.h"
#include "tests/fake/windowtest.h"

static TestRoot root;

class MainWindowOrderTest : public WindowTest {
  Q_OBJECT

private:
  static constexpr int kYesX = 100, kNoX = 300, kRowY = 230;

private slots:
  void init() { Start(root); }
  void cleanup() { Stop(); }

  // An event's box lets Qt paint twice; both times the next events are at the door.
  void eventsAreHandledInTheOrderOfTheirArrival() {
    PostEvent(RECV_ZEL_STATUS_MUTE_ON, 2);
    PostEvent(RECV_ZEL_STATUS_SPEED, 3);
    PostTouch(7, 8);  // before it had any box on top
    PostEvent(RECV_ZEL_STATUS_MUTE_OFF, 4);
    mWindow->recvEvent(RECV_ZEL_STATUS_NO_SD, 1);
    QCOMPARE(Asked(), QStringList{"PREVIEW event 5 1"});
    QTRY_COMPARE(Asked(),
                 (QStringList{"PREVIEW event 5 1", "PREVIEW event 12 2", "PREVIEW event 24 3", "PREVIEW event 13 4"}));
    QCOMPARE(EventBox(), int{R_MUTE_OFF});
  }
  void touchesAreHandledInTheOrderOfTheirArrival() {
    mPreview->duringTouch = [this] {
      PostTouch(2, 2);
      PostEvent(RECV_ZEL_STATUS_SPEED, 3);
      PostTouch(4, 4);
      gEventGate.ProcessEvents();
      Fake().asked << "done";
    };
    Tap(1, 1);
    QTRY_COMPARE(Asked(), (QStringList{"PREVIEW touch 1 1 1", "done", "PREVIEW touch 1 2 2", "PREVIEW event 24 3",
                                       "PREVIEW touch 1 4 4"}));
  }

  // Saving shows a box first: a prompt that ends just then must not restart recording before it was stopped.
  void aPromptThatEndsWhileSavingWaitsForTheWholeOfIt() {
    DummyScreen* menu = Open(MAINMENU);
    const QPointer<BaseWidget> gone = menu;
    Setting().gmt = 9;
    menu->duringTouch = [menu] { menu->EntryPreview(); };
    PostEvent(RECV_ZEL_STATUS_VOICE_PLAY_END, 1);
    Tap(1, 1);
    QVERIFY(gone);
    const QStringList saved = Fake().Commands();
    QCOMPARE(saved.size(), 2);
    QCOMPARE(saved[0], QStringLiteral("8620 2"));
    QVERIFY(saved[1].startsWith("8658 "));
    QCOMPARE(gEnvirnmentSettings.GetSettingConfig(Set_Cfg_Gmt), 9);
    QTRY_VERIFY(!gone);
    QCOMPARE(Fake().Commands().mid(2), QStringList{"8619 0"});
    QCOMPARE(TopId(), PREVIEW);
  }

  // The answer "yes" shows a box first: the card must not be formatted before recording was told to stop.
  void aPromptThatEndsWhileTheAnswerIsShownWaitsForTheStop() {
    DummyScreen* menu = Open(MAINMENU);
    Setting().resolution = 1;
    menu->EntryPreview();
    Fake().asked.clear();
    PostEvent(RECV_ZEL_STATUS_VOICE_PLAY_END, 1);
    Tap(kYesX, kRowY);
    QCOMPARE(Fake().Commands(), QStringList{"8620 3"});
    QTRY_COMPARE(Fake().Commands().mid(0, 2), (QStringList{"8620 3", "8612 1"}));
  }
  void aSecondYesWhileTheAnswerIsShownIsDropped() {
    DummyScreen* menu = Open(MAINMENU);
    Setting().resolution = 1;
    menu->EntryPreview();
    Fake().asked.clear();
    PostTouch(kYesX, kRowY);
    PostTouch(kNoX, kRowY);
    PostEvent(RECV_ZEL_STATUS_SPEED, 1);  // behind them
    Tap(kYesX, kRowY);
    QTRY_VERIFY(Asked().contains("MAINMENU event 24 1"));
    QCOMPARE(Fake().Commands(), QStringList{"8620 3"});
    QCOMPARE(gNeedFormatFlag, 1);
  }

  // The screen learns that parking has ended while it has; the parking that follows comes afterwards.
  void parkingThatBeginsAgainComesAfterParkingThatEnded() {
    Open(MAINMENU);
    mWindow->SetIsIngParkingModeOn(true);
    static_cast<DummyScreen*>(Top())->duringEvent = [this] { QVERIFY(!mWindow->GetIsIngParkingModeOn()); };
    PostEvent(RECV_ZEL_STATUS_PARK_MODE_IN, 1);
    mWindow->recvEvent(RECV_ZEL_STATUS_PARK_MODE_OUT, 1);
    QVERIFY(!mWindow->GetIsIngParkingModeOn());
    QTRY_COMPARE(Asked(), (QStringList{"MAINMENU event 15 1", "MAINMENU event 14 1"}));
    QVERIFY(mWindow->GetIsIngParkingModeOn());
  }
  void anEventWhileASaverOverAReportIsUnwoundWaits() {
    Open(PFILEGRAPH);
    Open(SCREENSAVER);
    PostEvent(RECV_ZEL_STATUS_MUTE_ON, 2);
    mWindow->recvEvent(RECV_ZEL_STATUS_NO_SD, 1);
    QCOMPARE(TopId(), PREVIEW);
    QCOMPARE(EventBox(), int{R_NO_SD});
    QTRY_COMPARE(EventBox(), int{R_MUTE_ON});
  }
  void theIdleReturnIsNotDisturbed() {
    Open(PLAYER);
    PostEvent(RECV_ZEL_STATUS_NO_SD, 1);
    PostTouch(9, 9);
    mWindow->TimeoutSystemRecStart();
    QCOMPARE(Asked(), (QStringList{"8663 0", "8619 0"}));
    QTRY_COMPARE(Asked().mid(2), QStringList{"PLAYER event 5 1"});
  }

  // ---- touches that are older than what is on top

  // The recorder takes its time to answer; a second tap of a hasty driver comes meanwhile.
  void aTapMadeWhileTheWayOutWaitsForTheRecorderIsDropped_data() {
    QTest::addColumn<QString>("way");
    for (const char* way : {"back", "jump", "next"}) QTest::newRow(way) << QString::fromLatin1(way);
  }
  void aTapMadeWhileTheWayOutWaitsForTheRecorderIsDropped() {
    QFETCH(QString, way);
    DummyScreen* menu = Open(MAINMENU);
    menu->duringTouch = [&] {
      menu->SendEvent(SEND_CONTROL_VIDEO, 0, QString());
      if (way == "back") menu->Back();
      if (way == "jump") menu->Jump(PREVIEW);
      if (way == "next") menu->Next(DRIVINGSETTING);
    };
    const int resolution = Setting().resolution;
    Fake().meanwhile = [this](const QString& line) {
      if (line == "8587 0") PostTouch(80, 125);
    };
    Tap(1, 1);
    QCOMPARE(TopId(), way == "next" ? DRIVINGSETTING : PREVIEW);
    for (int i = 0; i < 5; ++i) QCoreApplication::processEvents();
    QCOMPARE(Asked(), (QStringList{"MAINMENU touch 1 1 1", "8587 0"}));
    QCOMPARE(Setting().resolution, resolution);
    PostTouch(80, 125);
    for (int i = 0; i < 5; ++i) QCoreApplication::processEvents();
    QVERIFY(Asked().size() > 2);
  }
  void fastTapsOnOneScreenAllCountThoughTheRecorderIsSlow() {
    DummyScreen* menu = Open(MAINMENU);
    menu->duringTouch = [&] { menu->SendEvent(SEND_CONTROL_VIDEO, 0, QString()); };
    Fake().meanwhile = [this](const QString& line) {
      for (int i = 0; i < 22 && line == "8587 0"; ++i) PostTouch(i, i);
    };
    Tap(1, 1);
    QTRY_COMPARE(Asked().filter(" touch ").size(), 23);
  }
  void aTapMadeBeforeABoxCameIsNotForTheBox() {
    DummyScreen* menu = Open(MAINMENU);
    PostTouch(140, 236);
    menu->PaintMessageBox(R_HW_ERROR, true, 1, 0);
    for (int i = 0; i < 5; ++i) QCoreApplication::processEvents();
    QCOMPARE(EventBox(), int{R_HW_ERROR});
    PostTouch(140, 236);
    QTRY_COMPARE(EventBox(), -1);
    QCOMPARE(Asked(), QStringList());
  }
  void aTapMadeInTheDarkIsNotForWhatLightsUp() {
    Open(MAINMENU);
    mWindow->LcdOff();
    PostTouch(10, 10);
    PostTouch(11, 11);
    Fake().asked.clear();
    QTRY_VERIFY(!mWindow->GetIsLcdOff());
    for (int i = 0; i < 5; ++i) QCoreApplication::processEvents();
    QCOMPARE(Asked(), QStringList{"sh echo 50000 > /proc/pwm/pwm0"});
  }
  void aTapThatWaitsWhileTheGateIsClosedIsJudgedByItsOwnTime() {
    DummyScreen* menu = Open(MAINMENU);
    menu->duringTouch = [&] {
      PostTouch(2, 2);
      gEventGate.ProcessEvents();  // it waits from here on
      menu->Back();
    };
    Tap(1, 1);
    for (int i = 0; i < 5; ++i) QCoreApplication::processEvents();
    QCOMPARE(Asked(), QStringList{"MAINMENU touch 1 1 1"});
  }

  void aTapDuringTheSecondBeforeThePreviewIsDropped() {
    DummyScreen* menu = Open(MAINMENU);
    Setting().gmt = 9;
    menu->EntryPreview();
    Fake().asked.clear();
    Fake().meanwhile = [this](const QString& line) {
      if (line != "sleep 1000000") return;
      PostTouch(100, 230);
      PostEvent(RECV_ZEL_STATUS_SPEED, 1);
      PostTouch(101, 231);
    };
    mWindow->recvEvent(RECV_ZEL_STATUS_VOICE_PLAY_END, 1);
    QCOMPARE(TopId(), PREVIEW);
    QTRY_COMPARE(Asked(), (QStringList{"8619 0", "sleep 1000000", "PREVIEW event 24 1"}));
    for (int i = 0; i < 5; ++i) QCoreApplication::processEvents();
    QCOMPARE(Asked().last(), QStringLiteral("PREVIEW event 24 1"));
  }
  void aTapDuringTheClickOfTheLcdKeyIsDropped() {
    Fake().meanwhile = [this](const QString& line) {
      if (!line.startsWith("sh aplay")) return;
      PostTouch(10, 10);
      PostEvent(RECV_ZEL_STATUS_SPEED, 1);
    };
    mWindow->recvEvent(RECV_ZEL_STATUS_LCD_KEY, 1);
    QTRY_COMPARE(Asked().last(), QStringLiteral("PREVIEW event 24 1"));
    for (int i = 0; i < 5; ++i) QCoreApplication::processEvents();
    QVERIFY2(mWindow->GetIsLcdOff(), "the tap would have woken it");
  }
  void anEventDuringABlockingStepComesAfterTheHandler() {
    Fake().meanwhile = [this](const QString& line) {
      if (line.startsWith("sh aplay")) PostEvent(RECV_ZEL_STATUS_NO_SD, 1);
    };
    mWindow->recvEvent(RECV_ZEL_STATUS_LCD_KEY, 1);
    QVERIFY(mWindow->GetIsLcdOff());
    QCOMPARE(Asked(),
             (QStringList{"sh aplay /opt/ipnc/voice/touch.wav", "sh echo 0 > /proc/pwm/pwm0", "PREVIEW event 28 1"}));
    QTRY_COMPARE(EventBox(), int{R_NO_SD});
    QVERIFY(!mWindow->GetIsLcdOff());
  }

  void whatWaitsWhenTheWindowGoesIsForgotten() {
    mPreview->duringTouch = [this] {
      PostEvent(RECV_ZEL_STATUS_NO_SD, 1);
      gEventGate.ProcessEvents();
    };
    Tap(1, 1);
    mWindow.reset();
    Fake().asked.clear();
    for (int i = 0; i < 5; ++i) QCoreApplication::processEvents();
    QCOMPARE(Asked(), QStringList());
    Start(root);  // and the next window is free
    Tap(1, 1);
    QCOMPARE(Asked(), QStringList{"PREVIEW touch 1 1 1"});
  }
};

QTEST_MAIN(MainWindowOrderTest)
#include "mainwindow_order_test.moc"
