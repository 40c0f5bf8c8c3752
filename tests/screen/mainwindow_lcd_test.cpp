// The LCD: backlight levels, automatic brightness, off and on, and what is painted behind the screen.
#include <QScreen>

#include "tests/fake/windowtest.h"

static TestRoot root;

class MainWindowLcdTest : public WindowTest {
  Q_OBJECT

private:
  const QColor kKey{255, 0, 8};

  static QString Backlight(int pwm) { return QStringLiteral("sh echo %1 > /proc/pwm/pwm0").arg(pwm); }
  QColor Ground() const { return mWindow->palette().color(QPalette::Active, mWindow->backgroundRole()); }
  // What is on the panel now, without painting anything for it.
  QColor OnPanel() const { return mWindow->screen()->grabWindow(mWindow->winId()).toImage().pixelColor(240, 160); }
  void SetGround(const QColor& colour) {
    QPalette palette = mWindow->palette();
    palette.setColor(mWindow->backgroundRole(), colour);
    mWindow->setPalette(palette);
  }

private slots:
  void init() { Start(root); }
  void cleanup() { Stop(); }

  // ---- levels

  void theBacklightFollowsItsLevel_data() {
    QTest::addColumn<int>("level");
    QTest::addColumn<int>("pwm");
    QTest::newRow("low") << 0 << 10000;
    QTest::newRow("middle") << 1 << 50000;
    QTest::newRow("high") << 2 << 100000;
    QTest::newRow("unknown") << 4 << 50000;
    QTest::newRow("far off") << 1000000 << 50000;
    QTest::newRow("negative") << -1 << 50000;
  }
  void theBacklightFollowsItsLevel() {
    QFETCH(int, level);
    QFETCH(int, pwm);
    mWindow->SetLcdBright(level);
    QCOMPARE(Asked(), QStringList{Backlight(pwm)});
    QCOMPARE(Armed("mTimLcdAutoMode"), -1);
  }

  // ---- automatic brightness

  void automaticBrightnessAsksAtOnceAndThenEverySecond() {
    Setting().lcd_bright = 3;
    Fake().lcdValue = 30000;
    mWindow->SetLcdBright(3);
    QCOMPARE(Asked(), (QStringList{"8664 0", Backlight(30000)}));
    QCOMPARE(Armed("mTimLcdAutoMode"), 1000);
    QVERIFY(!mWindow->GetStartLcdAutoModeFlag());
    QCOMPARE(gRecvLcdValue, 30000);
  }
  void automaticBrightnessWritesOnChangeOnly() {
    Setting().lcd_bright = 3;
    mWindow->SetLcdBright(3);
    Fake().asked.clear();
    mWindow->TimeoutLcdAutoMode();
    QCOMPARE(Asked(), QStringList{"8664 0"});
    QCOMPARE(Armed("mTimLcdAutoMode"), 1000);
    Fake().lcdValue = 31000;
    Fake().asked.clear();
    mWindow->TimeoutLcdAutoMode();
    QCOMPARE(Asked(), (QStringList{"8664 0", Backlight(31000)}));
    QCOMPARE(gOldRecvLcdValue, 30000);
    QCOMPARE(gRecvLcdValue, 31000);
  }
  void theFirstPassWritesAnUnchangedValueToo() {
    Setting().lcd_bright = 3;
    gRecvLcdValue = Fake().lcdValue;
    mWindow->SetLcdBright(3);
    QCOMPARE(Asked(), (QStringList{"8664 0", Backlight(30000)}));
  }
  void aQueryThatFailsLeavesTheLastValue() {
    Setting().lcd_bright = 3;
    mWindow->SetLcdBright(3);
    Fake().result = -1;
    Fake().asked.clear();
    mWindow->TimeoutLcdAutoMode();
    QCOMPARE(Asked(), QStringList{"8664 0"});
    QCOMPARE(gRecvLcdValue, 30000);
    QCOMPARE(Armed("mTimLcdAutoMode"), 1000);
    Fake().result = 0;
    Fake().asked.clear();
    mWindow->TimeoutLcdAutoMode();
    QCOMPARE(Asked(), QStringList{"8664 0"});
  }
  void anLcdThatWakesWithoutAnAnswerIsAsBrightAsBefore() {
    Setting().lcd_bright = 3;
    mWindow->SetLcdBright(3);
    mWindow->LcdOff();
    Fake().result = -1;
    Fake().asked.clear();
    mWindow->LcdOn();
    QCOMPARE(Asked(), (QStringList{"8664 0", Backlight(30000)}));
  }
  void nothingIsWrittenBeforeTheFirstAnswer() {
    Setting().lcd_bright = 3;
    Fake().result = -1;
    for (int second = 0; second < 3; ++second) {
      second == 0 ? mWindow->SetLcdBright(3) : mWindow->TimeoutLcdAutoMode();
      QCOMPARE(Armed("mTimLcdAutoMode"), 1000);
    }
    QCOMPARE(Asked(), (QStringList{"8664 0", "8664 0", "8664 0"}));
    Fake().result = 0;
    Fake().asked.clear();
    mWindow->TimeoutLcdAutoMode();
    QCOMPARE(Asked(), (QStringList{"8664 0", Backlight(30000)}));
  }
  // Else nobody could ever see it again.
  void anLcdThatWasDarkIsLitThoughNoAnswerEverCame() {
    Setting().lcd_bright = 3;
    Fake().result = -1;
    mWindow->SetLcdBright(3);
    mWindow->LcdOff();
    Fake().asked.clear();
    mWindow->LcdOn();
    QCOMPARE(Asked(), (QStringList{"8664 0", Backlight(50000)}));
    Fake().asked.clear();
    mWindow->TimeoutLcdAutoMode();
    QCOMPARE(Asked(), QStringList{"8664 0"});
  }
  void automaticBrightnessEndsWithTheLcd() {
    Setting().lcd_bright = 3;
    mWindow->SetLcdBright(3);
    mWindow->LcdOff();
    Fake().asked.clear();
    mWindow->TimeoutLcdAutoMode();
    QCOMPARE(Asked(), QStringList());
    QCOMPARE(Armed("mTimLcdAutoMode"), -1);
    mWindow->LcdOn();
    QCOMPARE(Asked(), (QStringList{"8664 0", Backlight(30000)}));
    QCOMPARE(Armed("mTimLcdAutoMode"), 1000);
  }
  void automaticBrightnessEndsWithTheSetting() {
    Setting().lcd_bright = 3;
    mWindow->SetLcdBright(3);
    Setting().lcd_bright = 2;
    Fake().asked.clear();
    mWindow->TimeoutLcdAutoMode();
    QCOMPARE(Asked(), QStringList());
    QCOMPARE(Armed("mTimLcdAutoMode"), -1);
  }

  // ---- off and on

  void lcdOffIsDarkAndHidesTheScreen() {
    mWindow->LcdOff();
    QVERIFY(mWindow->GetIsLcdOff());
    QCOMPARE(Asked(), QStringList{Backlight(0)});
    QVERIFY(!mPreview->isVisible());
    QCOMPARE(mPreview->paused, 1);
  }
  void lcdOffTwiceWritesOnce() {
    mWindow->LcdOff();
    mWindow->LcdOff();
    QCOMPARE(Asked(), QStringList{Backlight(0)});
    QCOMPARE(mPreview->paused, 1);
  }
  void lcdOffLeavesTheScreenSaverFirst() {
    Open(SCREENSAVER);
    mWindow->LcdOff();
    QCOMPARE(TopId(), PREVIEW);
    QVERIFY(mWindow->GetIsLcdOff());
    QVERIFY(!mPreview->isVisible());
  }
  void lcdOffLeavesTheScreenSaverEvenWhenItIsOff() {
    mWindow->LcdOff();
    Open(SCREENSAVER);
    Fake().asked.clear();
    mWindow->LcdOff();
    QCOMPARE(TopId(), PREVIEW);
    QCOMPARE(Asked(), QStringList());
    QVERIFY(!mPreview->isVisible());
  }
  void lcdOnShowsTheScreenAtTheChosenLevel() {
    Setting().lcd_bright = 2;
    mWindow->LcdOff();
    Fake().asked.clear();
    mWindow->LcdOn();
    QVERIFY(!mWindow->GetIsLcdOff());
    QCOMPARE(Asked(), QStringList{Backlight(100000)});
    QVERIFY(mPreview->isVisible());
    QCOMPARE(mPreview->resumed, 2);
  }
  void lcdOnWhileItIsOnOnlyPutsOffTheParkingLcdOff() {
    mWindow->LcdOn();
    QCOMPARE(Armed("mTimParkingModeLcdOff"), -1);
    mWindow->SetIsIngParkingModeOn(true);
    mWindow->LcdOn();
    QCOMPARE(Armed("mTimParkingModeLcdOff"), 8000);
    QCOMPARE(Asked(), QStringList());
    QCOMPARE(mPreview->resumed, 1);
  }
  void lcdOnPutsOffTheParkingLcdOff_data() { AddScreenRows(kKeepLcdOn); }
  void lcdOnPutsOffTheParkingLcdOff() {
    QFETCH(int, id);
    QFETCH(bool, excepted);
    if (id != PREVIEW) Open(WidgetId(id));
    mWindow->SetIsLcdOff(true);
    mWindow->SetIsIngParkingModeOn(true);
    mWindow->LcdOn();
    QCOMPARE(Armed("mTimParkingModeLcdOff"), excepted ? -1 : 8000);
  }
  void theLcdWithoutAnyScreen() {
    CloseAll();
    mWindow->LcdOff();
    mWindow->LcdOn();
    QCOMPARE(Asked(), (QStringList{Backlight(0), Backlight(50000)}));
  }
  void aScreenThatComesWhileTheLcdIsOffIsShownWhenItIsOn() {
    mWindow->LcdOff();
    DummyScreen* menu = Open(MAINMENU);
    QVERIFY(!menu->isVisible());
    for (int i = 0; i < 5; ++i) QCoreApplication::processEvents();
    QVERIFY(!menu->isVisible());
    mWindow->LcdOn();
    QVERIFY(menu->isVisible());
  }
  void aScreenThatWasHiddenWithTheLcdIsThereAgainLater() {
    DummyScreen* menu = Open(MAINMENU);
    mWindow->LcdOff();
    Open(PLAYER);
    mWindow->LcdOn();
    Top()->Back();
    QCOMPARE(Top(), menu);
    QVERIFY(menu->isVisible());
  }

  // ---- the ground

  void theGroundBehindThePreviewIsTheKeyColour() {
    QCOMPARE(Ground(), kKey);
    QVERIFY(mWindow->autoFillBackground());
    mPreview->hide();
    QTRY_COMPARE(OnPanel(), kKey);
  }
  void theGroundWithoutAnyScreenIsTheKeyColour() {
    SetGround(Qt::green);
    CloseAll();
    mWindow->grab();
    QCOMPARE(Ground(), kKey);
  }
  void otherScreensLeaveTheGround() {
    Open(MAINMENU);
    SetGround(Qt::green);
    mWindow->grab();
    QCOMPARE(Ground(), QColor(Qt::green));
  }
  void theGroundIsBlackWhileTheLcdIsOff_data() {
    QTest::addColumn<int>("id");
    QTest::newRow("preview") << int{PREVIEW};
    QTest::newRow("menu") << int{MAINMENU};
  }
  void theGroundIsBlackWhileTheLcdIsOff() {
    QFETCH(int, id);
    if (id != PREVIEW) Open(WidgetId(id));
    mWindow->LcdOff();
    mWindow->grab();
    QCOMPARE(Ground(), QColor(Qt::black));
    for (const auto group : {QPalette::Active, QPalette::Inactive, QPalette::Disabled})
      QCOMPARE(mWindow->palette().color(group, mWindow->backgroundRole()), QColor(Qt::black));
  }
  // No second paint is needed: between LcdOff and the next step the driver must not see the old page.
  void thePanelIsBlackAtOnce() {
    QVERIFY(QTest::qWaitForWindowExposed(mWindow.get()));
    mPreview->hide();
    QTRY_COMPARE(OnPanel(), kKey);
    mWindow->LcdOff();
    QCOMPARE(OnPanel(), QColor(Qt::black));
    mWindow->LcdOn();
    QCOMPARE(OnPanel(), kKey);
  }
  void theGroundComesBackWithThePreview() {
    Open(MAINMENU);
    mWindow->LcdOff();
    mWindow->LcdOn();
    QCOMPARE(Ground(), QColor(Qt::black));
    Top()->Back();
    QCOMPARE(Ground(), kKey);
  }
  void paintingSettlesDown() {
    int painted = 0;
    class Counter : public QObject {
    public:
      explicit Counter(int* count) : mCount(count) {}
      bool eventFilter(QObject*, QEvent* event) override {
        if (event->type() == QEvent::Paint) ++*mCount;
        return false;
      }

    private:
      int* mCount;
    } counter(&painted);
    mWindow->installEventFilter(&counter);
    mWindow->update();
    QTRY_VERIFY(painted > 0);
    for (int i = 0; i < 20; ++i) QCoreApplication::processEvents();
    QVERIFY2(painted <= 2, "setting the ground while painting must not ask for another painting for ever");
  }
};

QTEST_MAIN(MainWindowLcdTest)
#include "mainwindow_lcd_test.moc"
