#include "gui/live/previewlayout.h"

#include <QLabel>
#include <QTest>
#include <QThread>
#include <QTimer>
#include <limits>

#include "gui/app/commandline.h"
#include "gui/app/mainwindow.h"
#include "gui/base/globals.h"
#include "gui/base/picture.h"
#include "gui/screen/basewidget.h"
#include "gui/screen/clock.h"
#include "gui/screen/widgetmanager.h"
#include "gui/settings/settings.h"
#include "tests/fake/platformfake.h"
#include "tests/fake/testroot.h"

static TestRoot root;

namespace {
const QColor kKey(255, 0, 8);

// Touch points: the middle of each key, and a place beside all of them.
constexpr QPoint kView(40, 33), kMic(115, 33), kRear(190, 33), kMenu(265, 33), kLowerLeft(40, 96), kLowerRight(115, 96),
    kBeside(300, 200);

QDateTime FixedClock() {
  return {QDate(2023, 1, 2), QTime(12, 34, 56)};
}
QDateTime NextMinute() {
  return {QDate(2023, 1, 2), QTime(12, 35, 0)};
}
QDateTime AnotherDay() {
  return {QDate(2023, 2, 3), QTime(12, 34, 56)};
}
QDateTime AnotherHour() {
  return {QDate(2023, 1, 2), QTime(17, 34, 56)};
}
QDateTime BrokenClock() {
  return {QDate(2100, 1, 1), QTime(0, 0, 0)};
}
}  // namespace

class PreviewLayoutTest : public QObject {
  Q_OBJECT

private:
  std::unique_ptr<MainWindow> mWindow;

  PreviewLayout* Preview() const { return static_cast<PreviewLayout*>(gWidgetManager.GetCurrentWidget()); }
  QTimer* Timer(const char* name) const { return Preview()->findChild<QTimer*>(QLatin1String(name)); }
  QLabel* Label(const char* name) const { return Preview()->findChild<QLabel*>(QLatin1String(name)); }
  static Setting_Config& Setting() { return gEnvirnmentSettings.mSetting; }
  static PlatformFake& Fake() { return PlatformFake::Get(); }

  void Start() {
    mWindow.reset();
    mWindow = std::make_unique<MainWindow>(nullptr);
    mWindow->show();
    Fake().asked.clear();
  }
  void Tap(QPoint at) { mWindow->touchEvent(TOUCH_PRESS, at.x(), at.y()); }
  void Fire(const char* name, void (PreviewLayout::*slot)()) {
    QVERIFY2(Timer(name)->isActive(), name);
    (Preview()->*slot)();
  }
  int OwnBox() const { return Preview()->GetShowMessageBoxFlag() ? Preview()->GetMessageId() : -1; }
  int EventBox() const { return Preview()->GetShowRecvMessageBoxFlag() ? Preview()->GetRecvMessageId() : -1; }
  // The picture as drawn on the screen at `at` is that of the file.
  bool IsDrawn(QPoint at, const char* path) {
    const QImage wanted = Picture(QLatin1String(path)).toImage().convertToFormat(QImage::Format_RGB32);
    return !wanted.isNull() &&
           Preview()->grab(QRect(at, wanted.size())).toImage().convertToFormat(QImage::Format_RGB32) == wanted;
  }
  bool IsKeyColour(QRect area) {
    const QImage drawn = Preview()->grab(area).toImage();
    for (int y = 0; y < drawn.height(); ++y)
      for (int x = 0; x < drawn.width(); ++x)
        if (drawn.pixelColor(x, y) != kKey) return false;
    return true;
  }

private slots:
  void initTestCase() {
    GetConfig();
    ApplyFont();
  }
  void init() {
    gEnvirnmentSettings.mSetting = {};
    gEnvirnmentSettings.mOldSetting = {};
    gEnvirnmentSettings.mMirroring = gEnvirnmentSettings.mMovingPip = 0;
    Setting().display = 0;
    Setting().lcd_auto_off = 1;
    Setting().lcd_bright = 1;
    Setting().volume = 2;
    Setting().protect_file = 1;
    Setting().rear_cam_power = 1;
    Setting().parking_mode_on = 1;
    gCountOfCamera = 2;
    gIsConnectGps = gNeedFormatFlag = gTouchTestStage = 0;
    gReturnVolume = 1;
    gSdError = false;
    gIsSdError = false;
    gIsPlayingVoice = false;
    gClock = FixedClock;
    for (const char* marker : {"/tmp/ndf", "/tmp/.info.bin", "/tmp/update.zel", "/tmp/update.zel2",
                               "/mnt/mmc/touch_check.txt", "/mnt/mmc/touch_test.txt"})
      root.Remove(QLatin1String(marker));
    Fake().Clear();
    Start();
  }
  void cleanup() { mWindow.reset(); }

  // ---- status texts

  void clockVoltageAndGroundAreShownAtOnce() {
    QCOMPARE(Label("mClockLabel")->text(), QStringLiteral("2023/01/02  12:34 "));
    QCOMPARE(Label("mMainVolLabel")->text(), QStringLiteral("12.4v"));
    QVERIFY(IsKeyColour(QRect(300, 70, 180, 200)));
    QVERIFY(Label("mGpsSpeedLabel")->isHidden());
    QVERIFY(Label("mLowVolCountLabel")->isHidden());
    QVERIFY(IsKeyColour(QRect(342, 4, 134, 40)));
    QVERIFY(IsKeyColour(QRect(238, 284, 120, 32)));
  }
  void tickAsksForTheVoltageAndComesAgain() {
    QCOMPARE(Timer("mSecTimer")->interval(), 1000);
    Fire("mSecTimer", &PreviewLayout::SlotSec);
    QCOMPARE(Fake().asked, QStringList{QStringLiteral("8659 0")});
    QVERIFY(Timer("mSecTimer")->isActive());
  }
  void clockFollowsTheMinute() {
    gClock = NextMinute;
    Preview()->SlotSec();
    QCOMPARE(Label("mClockLabel")->text(), QStringLiteral("2023/01/02  12:35 "));
  }
  // Set by hand, the hour or the date can change while the minute stays.
  void clockFollowsWhateverWasSet() {
    gClock = AnotherHour;
    Preview()->SlotSec();
    QCOMPARE(Label("mClockLabel")->text(), QStringLiteral("2023/01/02  17:34 "));
    gClock = AnotherDay;
    Preview()->SlotSec();
    QCOMPARE(Label("mClockLabel")->text(), QStringLiteral("2023/02/03  12:34 "));
  }
  void brokenClockShowsTheDefaultTime() {
    gClock = BrokenClock;
    Preview()->SlotSec();
    QCOMPARE(Label("mClockLabel")->text(), QStringLiteral("2012/01/01  00:00 "));
  }
  void smallMovesOfTheVoltageAreNotShown() {
    Fake().voltage = 12.44F;
    Preview()->SlotSec();
    QCOMPARE(Label("mMainVolLabel")->text(), QStringLiteral("12.4v"));
    Fake().voltage = 12.46F;
    Preview()->SlotSec();
    QCOMPARE(Label("mMainVolLabel")->text(), QStringLiteral("12.5v"));
  }
  void aRecorderThatFallsSilentLeavesTheLastVoltage() {
    Fake().result = -1;
    Preview()->SlotSec();
    QCOMPARE(Label("mMainVolLabel")->text(), QStringLiteral("12.4v"));
  }
  void noVoltageIsShownBeforeTheRecorderHasToldOne() {
    gRecvVoltage = std::numeric_limits<float>::quiet_NaN();
    Fake().result = -1;
    Start();
    QVERIFY(Label("mMainVolLabel")->isHidden());
    QVERIFY(IsKeyColour(QRect(362, 284, 118, 32)));
    Fake().result = 0;
    Preview()->SlotSec();
    QCOMPARE(Label("mMainVolLabel")->text(), QStringLiteral("12.4v"));
    QVERIFY(Label("mMainVolLabel")->isVisible());
    QVERIFY(!IsKeyColour(QRect(362, 284, 118, 32)));
  }
  void speedIsShownWithAFixOnly() {
    mWindow->recvEvent(RECV_ZEL_STATUS_SPEED, 120);
    QVERIFY(Label("mGpsSpeedLabel")->isHidden());
    mWindow->recvEvent(RECV_ZEL_STATUS_GPS_CONNECT, 2);
    QVERIFY(!Label("mGpsSpeedLabel")->isHidden());
    QCOMPARE(Label("mGpsSpeedLabel")->text(), QStringLiteral("120 km/h"));
    QVERIFY(!IsKeyColour(QRect(238, 284, 120, 32)));
    mWindow->recvEvent(RECV_ZEL_STATUS_GPS_CONNECT, 1);
    QVERIFY(Label("mGpsSpeedLabel")->isHidden());
    QVERIFY(IsKeyColour(QRect(238, 284, 120, 32)));
  }
  void speedDisplaySwitchedOffHidesTheSpeed() {
    Setting().gps_speed_display = 1;
    gIsConnectGps = 2;
    mWindow->recvEvent(RECV_ZEL_STATUS_SPEED, 60);
    QVERIFY(Label("mGpsSpeedLabel")->isHidden());
  }
  void labelsAreNeverReadAsMarkup() {
    for (const QLabel* label : Preview()->findChildren<QLabel*>()) QCOMPARE(label->textFormat(), Qt::PlainText);
  }

  // ---- low-voltage countdown

  void countdownIsShownAndEnds() {
    mWindow->recvEvent(RECV_ZEL_STATUS_LOW_VOLTAGE_POWER_OFF_COUNT, 1);
    QCOMPARE(Label("mLowVolCountLabel")->text(), QStringLiteral("차단30"));
    QVERIFY(!Label("mLowVolCountLabel")->isHidden());
    mWindow->TimeoutLowVolPowerOffCount();
    QCOMPARE(Label("mLowVolCountLabel")->text(), QStringLiteral("차단29"));
    mWindow->recvEvent(RECV_ZEL_STATUS_LOW_VOLTAGE_POWER_OFF_COUNT, 0);
    QVERIFY(Label("mLowVolCountLabel")->isHidden());
  }
  void countdownGoesOnBehindADarkLcd() {
    mWindow->recvEvent(RECV_ZEL_STATUS_LOW_VOLTAGE_POWER_OFF_COUNT, 1);
    mWindow->recvEvent(RECV_ZEL_STATUS_LCD_KEY, 0);
    QVERIFY(mWindow->GetIsLcdOff());
    mWindow->TimeoutLowVolPowerOffCount();
    QVERIFY(!Preview()->isVisible());
    mWindow->recvEvent(RECV_ZEL_STATUS_LCD_KEY, 0);
    QVERIFY(Preview()->isVisible());
    QCOMPARE(Label("mLowVolCountLabel")->text(), QStringLiteral("차단29"));
  }
  void countdownShowsTheHiddenOverlay() {
    Preview()->HidePreview();
    mWindow->recvEvent(RECV_ZEL_STATUS_LOW_VOLTAGE_POWER_OFF_COUNT, 1);
    QVERIFY(Preview()->isVisible());
    QCOMPARE(Timer("mTimTouchWait")->interval(), 5000);
    QVERIFY(Timer("mTimTouchWait")->isActive());
    QVERIFY(Timer("mTimLcdOff")->isActive());
  }

  // ---- overlay and LCD

  void overlayHidesAfterFiveSecondsAndComesBackWithATouch() {
    QCOMPARE(Timer("mTimTouchWait")->interval(), 5000);
    Fire("mTimTouchWait", &PreviewLayout::TimeoutTouchWait);
    QVERIFY(!Preview()->isVisible());
    QVERIFY(!Timer("mSecTimer")->isActive());
    Fake().asked.clear();
    Tap(kView);  // only shows
    QVERIFY(Preview()->isVisible());
    QCOMPARE(Setting().display, 0);
    QVERIFY(Timer("mTimTouchWait")->isActive());
  }
  void touchBesideTheKeysHidesTheOverlay() {
    Tap(kBeside);
    QVERIFY(!Preview()->isVisible());
  }
  void lcdGoesOffAfterTheChosenDelay_data() {
    QTest::addColumn<int>("lcdAutoOff");
    QTest::addColumn<int>("interval");
    QTest::newRow("10 s") << 1 << 10000;
    QTest::newRow("30 s") << 2 << 30000;
    QTest::newRow("60 s") << 3 << 60000;
  }
  void lcdGoesOffAfterTheChosenDelay() {
    QFETCH(int, lcdAutoOff);
    QFETCH(int, interval);
    Setting().lcd_auto_off = lcdAutoOff;
    Tap(kMic);  // every touch arms it anew
    QCOMPARE(Timer("mTimLcdOff")->interval(), interval);
    Fake().asked.clear();
    Fire("mTimLcdOff", &PreviewLayout::TimeoutLcdOff);
    QCOMPARE(Fake().asked, QStringList{QStringLiteral("sh echo 0 > /proc/pwm/pwm0")});
    QVERIFY(mWindow->GetIsLcdOff());
    QVERIFY(!Preview()->isVisible());
    QVERIFY(!Timer("mTimTouchWait")->isActive());
  }
  void lcdNeverGoesOff_data() {
    QTest::addColumn<int>("lcdAutoOff");
    for (const int value : {0, 4, -1, 5, 7, 9, std::numeric_limits<int>::max(), std::numeric_limits<int>::min()})
      QTest::addRow("%d", value) << value;
  }
  void lcdNeverGoesOff() {
    QFETCH(int, lcdAutoOff);
    Setting().lcd_auto_off = lcdAutoOff;
    Start();
    QVERIFY(!Timer("mTimLcdOff")->isActive());
    Tap(kRear);
    QVERIFY(!Timer("mTimLcdOff")->isActive());
    Preview()->lowvolRecv(1);
    QVERIFY(!Timer("mTimLcdOff")->isActive());
    Fake().asked.clear();
    Preview()->TimeoutLcdOff();
    QVERIFY(!mWindow->GetIsLcdOff());
    QVERIFY(Fake().asked.isEmpty());
  }
  void touchWhileTheLcdIsOffOnlyWakesIt() {
    Preview()->LcdOff();
    Fake().asked.clear();
    Tap(kView);
    QVERIFY(!mWindow->GetIsLcdOff());
    QVERIFY(Preview()->isVisible());
    QCOMPARE(Setting().display, 0);
    QVERIFY(Fake().asked.contains(QStringLiteral("sh echo 50000 > /proc/pwm/pwm0")));
    QVERIFY(Timer("mTimTouchWait")->isActive());
  }
  void screenSaverTakesOverWhenChosen() {
    Setting().lcd_wait_dis = 1;
    Preview()->HidePreview();
    Fire("mTimLcdOff", &PreviewLayout::TimeoutLcdOff);
    QCOMPARE(gWidgetManager.GetCurWidgetId(), SCREENSAVER);
    QVERIFY(!mWindow->GetIsLcdOff());
    Tap(kView);  // only leaves the saver
    QCOMPARE(gWidgetManager.GetCurWidgetId(), PREVIEW);
    QVERIFY(Preview()->isVisible());
    QCOMPARE(Setting().display, 0);
  }
  void noDelayRunsBehindTheSaver() {
    Setting().lcd_wait_dis = 1;
    const QTimer *overlay = Timer("mTimTouchWait"), *lcdOff = Timer("mTimLcdOff");
    Preview()->HidePreview();
    Fire("mTimLcdOff", &PreviewLayout::TimeoutLcdOff);
    QCOMPARE(gWidgetManager.GetCurWidgetId(), SCREENSAVER);
    QVERIFY(!overlay->isActive());
    QVERIFY(!lcdOff->isActive());
    Tap(kView);
    QVERIFY(overlay->isActive());
    QVERIFY(lcdOff->isActive());
  }
  void noDelayRunsBehindAnotherScreen_data() {
    QTest::addColumn<int>("screen");
    for (const WidgetId id : {MAINMENU, TOUCHCOMP, SDFORMAT, SCREENSAVER}) QTest::newRow(NameOf(id)) << int{id};
  }
  void noDelayRunsBehindAnotherScreen() {
    QFETCH(int, screen);
    const QTimer *overlay = Timer("mTimTouchWait"), *lcdOff = Timer("mTimLcdOff");
    QVERIFY(overlay->isActive() && lcdOff->isActive());
    Preview()->Next(WidgetId(screen));
    QVERIFY(!overlay->isActive() && !lcdOff->isActive());
    mWindow->BackPressed();
    QVERIFY(overlay->isActive() && lcdOff->isActive());
  }
  // Only a touch, or the end of a box that stood, begins the delay of the LCD anew.
  void theEndOfATimedNoticeIsNoTouch() {
    mWindow->recvEvent(RECV_ZEL_STATUS_NO_SD, 1);
    Timer("mTimLcdOff")->start(1234);
    Timer("mTimTouchWait")->start(4321);
    Preview()->TimeoutRecvMessageBoxTimer();
    QCOMPARE(Timer("mTimLcdOff")->interval(), 1234);
    QCOMPARE(Timer("mTimTouchWait")->interval(), 4321);
    mWindow->recvEvent(RECV_ZEL_STATUS_NO_SD, 1);  // shows the overlay for its time
    QCOMPARE(Timer("mTimTouchWait")->interval(), 5000);
    QCOMPARE(Timer("mTimLcdOff")->interval(), 1234);
  }
  void theEndOfAStandingBoxBeginsBothDelays() {
    mWindow->recvEvent(RECV_ZEL_STATUS_HW_ERROR, 3);
    QVERIFY(!Timer("mTimLcdOff")->isActive());
    QVERIFY(!Timer("mTimTouchWait")->isActive());
    Preview()->DelRecvMessageBox();
    QCOMPARE(Timer("mTimLcdOff")->interval(), 10000);
    QVERIFY(Timer("mTimLcdOff")->isActive());
    QVERIFY(Timer("mTimTouchWait")->isActive());
  }
  void theDarkLcdHasNoDelays() {
    mWindow->LcdOff();
    QVERIFY(!Timer("mTimLcdOff")->isActive());
    QVERIFY(!Timer("mTimTouchWait")->isActive());
    mWindow->recvEvent(RECV_ZEL_STATUS_LOW_VOLTAGE_POWER_OFF_COUNT, 1);
    QVERIFY(!mWindow->GetIsLcdOff());
    QVERIFY(Timer("mTimLcdOff")->isActive());
  }
  void timersArePrecise() {
    const QList<QTimer*> timers = mWindow->findChildren<QTimer*>();
    QVERIFY(timers.size() > 20);
    for (const QTimer* timer : timers)
      if (!qobject_cast<QThread*>(timer->parent()))  // those of the reader are never started
        QVERIFY2(timer->timerType() == Qt::PreciseTimer, qPrintable(timer->objectName()));
  }
  void overlayIsBlackWhileTheLcdIsOff() {
    mWindow->SetIsLcdOff(true);
    QCOMPARE(Preview()->grab(QRect(400, 150, 1, 1)).toImage().pixelColor(0, 0), QColor(Qt::black));
    mWindow->SetIsLcdOff(false);
  }

  // ---- hot keys

  void viewKeyStepsThroughTheViews() {
    const struct {
      int display;
      const char* command;
      const char* picture;
    } steps[] = {{1, "8581 1", "preview/hotkey_view_front_normal.bmp"},
                 {2, "8582 2", "preview/hotkey_view_rear_normal.bmp"},
                 {0, "8584 0", "preview/hotkey_view_all_normal.bmp"}};
    for (const auto& step : steps) {
      Fake().asked.clear();
      Tap(kView);
      QCOMPARE(Setting().display, step.display);
      QCOMPARE(gEnvirnmentSettings.GetSettingConfig(Set_Cfg_Display), step.display);
      QCOMPARE(Fake().asked,
               (QStringList{QStringLiteral("sh aplay /opt/ipnc/voice/touch.wav &"), QLatin1String(step.command)}));
      QVERIFY2(IsDrawn(QPoint(4, 3), step.picture), step.picture);
    }
  }
  void hotKeysReactExactlyOnTheirAreas_data() {
    QTest::addColumn<QPoint>("at");
    QTest::addColumn<bool>("hit");
    for (const QPoint corner : {QPoint(5, 4), QPoint(74, 4), QPoint(5, 62), QPoint(74, 62)})
      QTest::addRow("in %d %d", corner.x(), corner.y()) << corner << true;
    for (const QPoint beside : {QPoint(4, 4), QPoint(75, 4), QPoint(5, 3), QPoint(5, 63)})
      QTest::addRow("beside %d %d", beside.x(), beside.y()) << beside << false;
  }
  void hotKeysReactExactlyOnTheirAreas() {
    QFETCH(QPoint, at);
    QFETCH(bool, hit);
    Tap(at);
    QCOMPARE(Setting().display, hit ? 1 : 0);
    QCOMPARE(Preview()->isVisible(), hit);
  }
  void otherKeysReactExactlyOnTheirAreas_data() {
    QTest::addColumn<QRect>("area");
    QTest::addColumn<QString>("asked");
    QTest::newRow("microphone") << QRect(QPoint(80, 4), QPoint(149, 62)) << QStringLiteral("8600 0");
    QTest::newRow("rear camera") << QRect(QPoint(155, 4), QPoint(224, 62)) << QStringLiteral("box 127");
    QTest::newRow("menu") << QRect(QPoint(230, 4), QPoint(299, 62)) << QStringLiteral("idle");
    QTest::newRow("lower left") << QRect(QPoint(5, 67), QPoint(74, 125)) << QStringLiteral("8671 1");
    QTest::newRow("lower right") << QRect(QPoint(80, 67), QPoint(149, 125)) << QStringLiteral("8676 0");
  }
  void otherKeysReactExactlyOnTheirAreas() {
    QFETCH(QRect, area);
    QFETCH(QString, asked);
    const auto hit = [&](QPoint at) {
      init();
      Tap(at);
      if (asked == QLatin1String("idle"))
        return mWindow->findChild<QTimer*>(QStringLiteral("mTimSystemRecStart"))->isActive();
      if (asked.startsWith(QLatin1String("box"))) return OwnBox() == asked.mid(4).toInt();
      return Fake().Commands().contains(asked);
    };
    for (const QPoint inside : {area.topLeft(), area.topRight(), area.bottomLeft(), area.bottomRight()})
      QVERIFY2(hit(inside), qPrintable(QStringLiteral("%1 %2").arg(inside.x()).arg(inside.y())));
    for (const QPoint outside : {area.topLeft() - QPoint(1, 0), area.topLeft() - QPoint(0, 1),
                                 area.bottomRight() + QPoint(1, 0), area.bottomRight() + QPoint(0, 1)})
      QVERIFY2(!hit(outside), qPrintable(QStringLiteral("%1 %2").arg(outside.x()).arg(outside.y())));
  }
  void viewAndRearKeysOfASingleCameraSayThatTheRearOneIsMissing() {
    gCountOfCamera = 1;
    Tap(kView);
    QCOMPARE(OwnBox(), int{DISCONNECT_REARCAM});
    Preview()->DelMessageBox();
    Tap(kRear);
    QCOMPARE(OwnBox(), int{DISCONNECT_REARCAM});
    QVERIFY(Fake().Commands().isEmpty());
    QVERIFY(Fake().Shell().contains(QStringLiteral("aplay /opt/ipnc/voice/touch.wav &")));
  }
  void singleCameraForcesTheFrontView() {
    gCountOfCamera = 1;
    Preview()->onResume();
    QCOMPARE(Setting().display, 1);
    QVERIFY(Fake().Commands().contains(QStringLiteral("8581 1")));
  }
  void viewKeyRefusesWhileTheRearCameraIsOffInParking() {
    mWindow->SetIsIngParkingModeOn(true);
    Setting().rear_cam_power = 0;
    Setting().display = 1;
    Tap(kView);
    QCOMPARE(OwnBox(), int{REAR_CAM_POWER_OFF_MSG});
    QCOMPARE(Setting().display, 1);
  }
  void strangeStoredViewCountsAsTheFront() {
    Setting().display = 7;
    QVERIFY(IsDrawn(QPoint(4, 3), "preview/hotkey_view_front_normal.bmp"));
    Tap(kView);
    QCOMPARE(Setting().display, 2);
  }
  void microphoneKeySwitchesOffAndRestoresTheVolume() {
    Setting().volume = 3;
    Tap(kMic);
    QCOMPARE(OwnBox(), int{VOLUME_OFF});
    QCOMPARE(Setting().volume, 0);
    QCOMPARE(gEnvirnmentSettings.GetSettingConfig(Set_Cfg_Volume), 0);
    QVERIFY(Fake().Commands().contains(QStringLiteral("8600 0")));
    QVERIFY(IsDrawn(QPoint(79, 3), "preview/hotkey_mic_off_normal.bmp"));
    Preview()->TimeoutMessageBoxTimer();
    Tap(kMic);
    QCOMPARE(OwnBox(), int{VOLUME_ON});
    QCOMPARE(Setting().volume, 3);
    QVERIFY(Fake().Commands().contains(QStringLiteral("8600 3")));
    QVERIFY(IsDrawn(QPoint(79, 3), "preview/hotkey_mic_on_normal.bmp"));
  }
  void microphoneSwitchedOnFirstGetsTheLowestVolume() {
    Setting().volume = 0;
    Tap(kMic);
    QCOMPARE(Setting().volume, 1);
  }
  void mirroringKeyOfTheRearView() {
    Setting().display = 2;
    QVERIFY(IsDrawn(QPoint(4, 66), "preview/hotkey_mirroring_2_normal.bmp"));
    Tap(kLowerLeft);
    QCOMPARE(gEnvirnmentSettings.mMirroring, 1);
    QCOMPARE(gEnvirnmentSettings.GetSettingConfig(Set_Cfg_Mirroring), 1);
    QCOMPARE(Fake().asked.last(), QStringLiteral("8670 1"));
    QVERIFY(IsDrawn(QPoint(4, 66), "preview/hotkey_mirroring_1_normal.bmp"));
    Tap(kLowerLeft);
    QCOMPARE(gEnvirnmentSettings.mMirroring, 0);
    QCOMPARE(Fake().asked.last(), QStringLiteral("8670 0"));
  }
  void pictureInPictureKeyGoesRoundTheCorners() {
    const char* pictures[] = {"preview/hotkey_pip_4_normal.bmp", "preview/hotkey_pip_3_normal.bmp",
                              "preview/hotkey_pip_1_normal.bmp", "preview/hotkey_pip_2_normal.bmp"};
    for (int corner = 0; corner < 4; ++corner) {
      QVERIFY2(IsDrawn(QPoint(4, 66), pictures[corner]), pictures[corner]);
      Tap(kLowerLeft);
      QCOMPARE(Fake().asked.last(), QStringLiteral("8671 %1").arg((corner + 1) % 4));
    }
    QCOMPARE(gEnvirnmentSettings.GetSettingConfig(Set_Cfg_MovingPip), 0);
  }
  void strangeStoredCornerIsDrawnAsTheFirst() {
    gEnvirnmentSettings.mMovingPip = -5;
    QVERIFY(IsDrawn(QPoint(4, 66), "preview/hotkey_pip_4_normal.bmp"));
    Tap(kLowerLeft);
    QVERIFY(gEnvirnmentSettings.mMovingPip >= 0);
  }
  void menuKeyGoesToTheMenuWithACleanTimeFlag() {
    Setting().time_set_flag = gEnvirnmentSettings.mOldSetting.time_set_flag = 1;
    const QTimer* lcdOff = Timer("mTimLcdOff");
    Tap(kMenu);
    QCOMPARE(gWidgetManager.GetCurWidgetId(), MAINMENU);
    QVERIFY(!lcdOff->isActive());
    QCOMPARE(Setting().time_set_flag, 0);
    QCOMPARE(gEnvirnmentSettings.mOldSetting.time_set_flag, 0);
    QCOMPARE(gEnvirnmentSettings.GetSettingConfig(Set_Cfg_Time_Set_Flag), 0);
  }

  // ---- the rear camera key in parking mode

  void rearCameraKeyIsForParkingOnly() {
    Tap(kRear);
    QCOMPARE(OwnBox(), int{REARCAM_SETTING_WARNING_ACC});
    QCOMPARE(Setting().rear_cam_power, 1);
  }
  void rearCameraIsSwitchedOnInParking() {
    mWindow->SetIsIngParkingModeOn(true);
    Setting().rear_cam_power = 0;
    Tap(kRear);
    QCOMPARE(OwnBox(), int{REAR_CAM_RECORD_START});
    QCOMPARE(Setting().rear_cam_power, 1);
    QVERIFY(Fake().Commands().contains(QStringLiteral("8678 1")));
    QCOMPARE(Timer("mPrepareRearcamRecordingTimer")->interval(), 10000);
    QVERIFY(Timer("mPrepareRearcamRecordingTimer")->isActive());
  }
  void rearCameraIsSwitchedOffInParkingAndTheFrontIsShown() {
    mWindow->SetIsIngParkingModeOn(true);
    Tap(kRear);
    QCOMPARE(OwnBox(), int{REAR_CAM_RECORD_STOP});
    QCOMPARE(Setting().rear_cam_power, 0);
    QCOMPARE(Setting().display, 1);
    QCOMPARE(Fake().Commands(), (QStringList{QStringLiteral("8581 1"), QStringLiteral("8678 0")}));
  }
  void rearCameraKeyShowsItsState_data() {
    QTest::addColumn<int>("cameras");
    QTest::addColumn<int>("power");
    QTest::addColumn<QByteArray>("picture");
    QTest::newRow("on") << 2 << 1 << QByteArray("preview/hotkey_rearcam_on_normal.bmp");
    QTest::newRow("off") << 2 << 0 << QByteArray("preview/hotkey_rearcam_off_normal.bmp");
    QTest::newRow("one camera, on") << 1 << 1 << QByteArray("preview/hotkey_rearcam_on_dis.bmp");
    QTest::newRow("one camera, off") << 1 << 0 << QByteArray("preview/hotkey_rearcam_off_dis.bmp");
  }
  void rearCameraKeyShowsItsState() {
    QFETCH(int, cameras);
    QFETCH(int, power);
    QFETCH(QByteArray, picture);
    gCountOfCamera = cameras;
    Setting().rear_cam_power = power;
    QVERIFY(IsDrawn(QPoint(154, 3), picture.constData()));
  }
  void rearCameraOffInParkingForcesTheFrontViewOnResume() {
    mWindow->SetIsIngParkingModeOn(true);
    Setting().rear_cam_power = 0;
    Preview()->onResume();
    QCOMPARE(Setting().display, 1);
    QVERIFY(Fake().Commands().contains(QStringLiteral("8581 1")));
  }

  // ---- manual event recording

  void detectFileKeyRecordsBlinksAndEnds() {
    root.Write(QStringLiteral("/tmp/ndf"), "x");
    Tap(kLowerRight);
    QCOMPARE(OwnBox(), int{SELECT_NDF_FILE});
    QVERIFY(Fake().Commands().contains(QStringLiteral("8676 0")));
    QVERIFY(mWindow->GetIsDetectRecording());
    QCOMPARE(Timer("mDetectRecordingTimer")->interval(), 2000);
    QVERIFY(!Timer("mTimTouchWait")->isActive());
    QVERIFY(!Timer("mTimLcdOff")->isActive());

    Fire("mDetectRecordingTimer", &PreviewLayout::TimeoutDetectRecording);
    QCOMPARE(Timer("mDetectRecordingTimer")->interval(), 500);
    QVERIFY(IsDrawn(QPoint(79, 66), "preview/hotkey_detect_file_off_normal.bmp"));
    Fire("mDetectRecordingTimer", &PreviewLayout::TimeoutDetectRecording);
    QVERIFY(IsDrawn(QPoint(79, 66), "preview/hotkey_detect_file_on_normal.bmp"));

    Preview()->touchEvent(TOUCH_PRESS, kView.x(), kView.y());
    QCOMPARE(Setting().display, 0);

    root.Remove(QStringLiteral("/tmp/ndf"));
    Fire("mDetectRecordingTimer", &PreviewLayout::TimeoutDetectRecording);
    QCOMPARE(OwnBox(), int{FINISH_MANUAL_RECORDING});
    QVERIFY(!mWindow->GetIsDetectRecording());
    QVERIFY(!Timer("mDetectRecordingTimer")->isActive());
    QVERIFY(Timer("mTimTouchWait")->isActive());
    QVERIFY(Timer("mTimLcdOff")->isActive());
  }
  // The panel is dead until the recording ends: whatever comes, the key that tells it is seen, and the LCD stays on.
  void nothingHidesARecordingMadeByHand_data() {
    QTest::addColumn<int>("event");
    QTest::addColumn<int>("value");
    QTest::newRow("countdown begins") << int{RECV_ZEL_STATUS_LOW_VOLTAGE_POWER_OFF_COUNT} << 1;
    QTest::newRow("countdown ends") << int{RECV_ZEL_STATUS_LOW_VOLTAGE_POWER_OFF_COUNT} << 0;
    QTest::newRow("notice") << int{RECV_ZEL_STATUS_MUTE_ON} << 1;
    QTest::newRow("standing notice") << int{RECV_ZEL_STATUS_HW_ERROR} << 3;
    QTest::newRow("power key") << int{RECV_ZEL_STATUS_LCD_KEY} << 1;
    QTest::newRow("parking") << int{RECV_ZEL_STATUS_PARK_MODE_IN} << 1;
  }
  void nothingHidesARecordingMadeByHand() {
    QFETCH(int, event);
    QFETCH(int, value);
    root.Write(QStringLiteral("/tmp/ndf"), "x");
    Tap(kLowerRight);
    QVERIFY(mWindow->GetIsDetectRecording());
    mWindow->recvEvent(event, value);
    for (int seconds = 0; seconds < 3; ++seconds) mWindow->TimeoutLowVolPowerOffCount();
    Preview()->TimeoutRecvMessageBoxTimer();
    Preview()->TimeoutMessageBoxTimer();
    QVERIFY(!Timer("mTimTouchWait")->isActive());
    QVERIFY(!Timer("mTimLcdOff")->isActive());
    Preview()->TimeoutTouchWait();
    Preview()->TimeoutLcdOff();
    if (event == RECV_ZEL_STATUS_PARK_MODE_IN) mWindow->TimeoutEventTimer();
    QVERIFY(Preview()->isVisible());
    QVERIFY(!mWindow->GetIsLcdOff());
    root.Remove(QStringLiteral("/tmp/ndf"));
    Fire("mDetectRecordingTimer", &PreviewLayout::TimeoutDetectRecording);
    QVERIFY(Timer("mTimTouchWait")->isActive());
    QVERIFY(Timer("mTimLcdOff")->isActive());
  }
  void detectFileKeyOfTheFrontViewStandsBelowTheViewKey() {
    Setting().display = 1;
    QVERIFY(IsDrawn(QPoint(4, 66), "preview/hotkey_detect_file_on_normal.bmp"));
    QVERIFY(IsKeyColour(QRect(79, 66, 71, 60)));
    Tap(kLowerLeft);
    QVERIFY(Fake().Commands().contains(QStringLiteral("8676 0")));
  }
  void lowerRightPlaceOfTheFrontViewIsNoKey() {
    Setting().display = 1;
    Tap(kLowerRight);
    QVERIFY(Fake().Commands().isEmpty());
    QVERIFY(!Preview()->isVisible());
  }
  void detectFileKeyDoesNothingWhenManualRecordingIsOff() {
    Setting().protect_file = 0;
    QVERIFY(IsKeyColour(QRect(79, 66, 71, 60)));
    Tap(kLowerRight);
    QVERIFY(Fake().asked.isEmpty());
    QVERIFY(Preview()->isVisible());
  }
  void detectFileKeyDoesNothingInParking() {
    mWindow->SetIsIngParkingModeOn(true);
    QVERIFY(IsKeyColour(QRect(79, 66, 71, 60)));
    Tap(kLowerRight);
    QVERIFY(Fake().asked.isEmpty());
  }
  void detectFileKeyWaitsForTheRearCamera() {
    mWindow->SetIsIngParkingModeOn(true);
    Setting().rear_cam_power = 0;
    Tap(kRear);
    Preview()->DelMessageBox();
    mWindow->SetIsIngParkingModeOn(false);
    Fake().asked.clear();
    Tap(kLowerRight);
    QCOMPARE(OwnBox(), int{PREPARING_RECAM_RECORDING});
    QVERIFY(Fake().Commands().isEmpty());
    Preview()->DelMessageBox();
    Fire("mPrepareRearcamRecordingTimer", &PreviewLayout::TimeoutPrepareRearcamRecording);
    Tap(kLowerRight);
    QVERIFY(Fake().Commands().contains(QStringLiteral("8676 0")));
  }

  // ---- the hidden way to the touch calibration

  void fiveTapsBesideTheKeysOpenTheTouchCalibration() {
    for (int tap = 0; tap < 4; ++tap) {
      Tap(kBeside);
      QCOMPARE(OwnBox(), -1);
    }
    QCOMPARE(Timer("mTouchEntryTimer")->interval(), 3000);
    Tap(kBeside);
    QCOMPARE(OwnBox(), int{HIDDEN_TOUCH_COM_ENTRY});
    QVERIFY(Preview()->isVisible());
    QVERIFY(!Timer("mTouchEntryTimer")->isActive());
    const QTimer* lcdOff = Timer("mTimLcdOff");
    Preview()->TimeoutEvent();
    QCOMPARE(gWidgetManager.GetCurWidgetId(), TOUCHCOMP);
    QVERIFY(!lcdOff->isActive());
  }
  void tapsAreCountedAnewAfterThreeSeconds() {
    for (int tap = 0; tap < 4; ++tap) Tap(kBeside);
    Fire("mTouchEntryTimer", &PreviewLayout::TimeoutTouchEntry);
    Tap(kBeside);
    QCOMPARE(OwnBox(), -1);
  }

  // ---- boxes

  void touchesAreHeldBackWhileABoxIsUp() {
    Tap(kMic);
    Tap(kView);
    QCOMPARE(Setting().display, 0);
  }
  void sdErrorAsksForAFormat() {
    gSdError = true;
    mWindow->recvEvent(RECV_ZEL_STATUS_SD_ERROR, 5);
    QCOMPARE(EventBox(), int{R_SD_ERROR_NEET_FORMAT});
    QVERIFY(!gSdError);
    QVERIFY(!Timer("mTimTouchWait")->isActive());
    QVERIFY(!Timer("mTimLcdOff")->isActive());
  }
  void sdErrorWithoutTheFlagIsNothing() {
    mWindow->recvEvent(RECV_ZEL_STATUS_SD_ERROR, 5);
    QCOMPARE(EventBox(), -1);
  }
  void formatQuestionYesFormats() {
    sdErrorAsksForAFormat();
    Fake().asked.clear();
    const QTimer* lcdOff = Timer("mTimLcdOff");
    Tap(QPoint(56, 214));
    QCOMPARE(Fake().Commands(), QStringList{QStringLiteral("8612 0")});
    QCOMPARE(gWidgetManager.GetCurWidgetId(), SDFORMAT);
    QVERIFY(!lcdOff->isActive());
  }
  void formatQuestionNoGoesOn() {
    sdErrorAsksForAFormat();
    Fake().asked.clear();
    Tap(QPoint(424, 259));
    QVERIFY(Fake().Commands().isEmpty());
    QCOMPARE(EventBox(), -1);
    QVERIFY(Timer("mTimTouchWait")->isActive());
    QVERIFY(Timer("mTimLcdOff")->isActive());
  }
  void anOwnNoticeOverTheFormatQuestionTakesTheTouch() {
    sdErrorAsksForAFormat();
    Preview()->PaintMessageBox(FINISH_MANUAL_RECORDING, false, 0, 2000);
    Fake().asked.clear();
    Tap(QPoint(100, 230));
    QVERIFY(Fake().Commands().isEmpty());
    QCOMPARE(EventBox(), int{R_SD_ERROR_NEET_FORMAT});
    Preview()->TimeoutMessageBoxTimer();
    Tap(QPoint(100, 230));
    QCOMPARE(Fake().Commands(), QStringList{QStringLiteral("8612 0")});
  }
  void formatQuestionStaysForAnyOtherTouch() {
    sdErrorAsksForAFormat();
    for (const QPoint at :
         {QPoint(55, 230), QPoint(230, 230), QPoint(250, 230), QPoint(425, 230), QPoint(100, 213), QPoint(100, 260)}) {
      Tap(at);
      QCOMPARE(EventBox(), int{R_SD_ERROR_NEET_FORMAT});
    }
    QVERIFY(!Timer("mTimTouchWait")->isActive());
    Preview()->TimeoutLcdOff();
    QVERIFY(!mWindow->GetIsLcdOff());
  }
  void wornCardIsSaidUntilTheNextTouch() {
    gIsSdError = true;
    mWindow->recvEvent(RECV_ZEL_STATUS_HW_ERROR, 8);
    QCOMPARE(EventBox(), int{R_SD_CARD_EXCHANGE_NEED});
    QVERIFY(!gIsSdError);
    Tap(kView);
    QCOMPARE(EventBox(), -1);
    QCOMPARE(Setting().display, 0);
    QVERIFY(Timer("mTimTouchWait")->isActive());
  }
  void hardwareError18IsShownWithItsValue() {
    gIsSdError = true;
    mWindow->recvEvent(RECV_ZEL_STATUS_HW_ERROR, 18);
    QCOMPARE(EventBox(), int{R_HW_ERROR});
    QVERIFY(!gIsSdError);
  }
  void hardwareErrorBoxIsNotHiddenWithTheOverlay() {
    mWindow->recvEvent(RECV_ZEL_STATUS_HW_ERROR, 3);
    Preview()->TimeoutTouchWait();
    QVERIFY(Preview()->isVisible());
  }
  void parkingEndWithoutAReportIsSaid() {
    mWindow->recvEvent(RECV_ZEL_STATUS_PARK_MODE_OUT, 0);
    QCOMPARE(EventBox(), int{R_PARK_MODE_OUT});
    QCOMPARE(gWidgetManager.GetCurWidgetId(), PREVIEW);
  }
  void parkingEndIsNotSaidWithoutParkingMode() {
    Setting().parking_mode_on = 0;
    mWindow->recvEvent(RECV_ZEL_STATUS_PARK_MODE_OUT, 0);
    QCOMPARE(EventBox(), -1);
  }
  void parkingEndShowsTheReport() {
    WriteReport();
    Preview()->HidePreview();
    mWindow->recvEvent(RECV_ZEL_STATUS_PARK_MODE_OUT, 0);
    QCOMPARE(gWidgetManager.GetCurWidgetId(), PFILEGRAPH);
  }
  void touchTestVersionOpensTheTouchTestByKey() {
    mWindow->SetIsTouchMotionVer(true);
    mWindow->recvEvent(RECV_ZEL_STATUS_LCD_KEY, 1);
    QVERIFY(mWindow->GetIsCurrentShowTouchMotion());
    QVERIFY(!mWindow->GetIsLcdOff());
  }

  // ---- checks at the start

  void startLooksForTheParkingReport() {
    QCOMPARE(Timer("mTimSeachingPfileInfo")->interval(), 2000);
    WriteReport();
    Fire("mTimSeachingPfileInfo", &PreviewLayout::TimeoutSeachingPfilInfo);
    QCOMPARE(gWidgetManager.GetCurWidgetId(), PFILEGRAPH);
  }
  void startWithoutAReportStaysOnThePreview() {
    Fire("mTimSeachingPfileInfo", &PreviewLayout::TimeoutSeachingPfilInfo);
    QCOMPARE(gWidgetManager.GetCurWidgetId(), PREVIEW);
    QVERIFY(!Timer("mTimSeachingPfileInfo")->isActive());
  }
  void startAfterAnUpdateAsksForTheCalibration_data() {
    QTest::addColumn<QString>("marker");
    QTest::newRow("update") << QStringLiteral("/tmp/update.zel");
    QTest::newRow("update 2") << QStringLiteral("/tmp/update.zel2");
  }
  void startAfterAnUpdateAsksForTheCalibration() {
    QFETCH(QString, marker);
    root.Write(marker, "x");
    Start();
    QCOMPARE(Timer("mTimNeedTouchComp")->interval(), 1000);
    QVERIFY(!Timer("mTimSeachingPfileInfo")->isActive());
    Fire("mTimNeedTouchComp", &PreviewLayout::TimeoutNeedTouchComp);
    QCOMPARE(mWindow->GetNeedTouchComBeforeSDFormat(), 1);

    QCOMPARE(gWidgetManager.GetCurWidgetId(), TOUCHCOMP);
    mWindow->SetNeedTouchComBeforeSDFormat(2);  // the calibration says that it has ended
    mWindow->BackPressed();
    QCOMPARE(mWindow->GetNeedTouchComBeforeSDFormat(), 0);
    QVERIFY(Fake().Commands().contains(QStringLiteral("8680 0")));
    QCOMPARE(Timer("mTimSeachingPfileInfo")->isActive(), marker.endsWith(u'2'));
  }
  void factoryCheckResetsTheCoefficientsAndShowsTheTouchTest() {
    root.Write(QStringLiteral("/tmp/update.zel2"), "x");
    root.Write(QStringLiteral("/mnt/mmc/touch_check.txt"), "x");
    Touch_Value other = kFactoryTouchValue;
    other.alphaX = 5;
    gEnvirnmentSettings.mTouchValue.Store(other);
    Start();
    QCOMPARE(gEnvirnmentSettings.mTouchValue.Load().alphaX, kFactoryTouchValue.alphaX);
    QCOMPARE(Timer("mTimPaintTouchTest")->interval(), 2000);
    QVERIFY(!Timer("mTimNeedTouchComp")->isActive());
    QCOMPARE(gTouchTestStage, 2);  // 1 in the constructor, 2 when it was shown first
    const QTimer* lcdOff = Timer("mTimLcdOff");
    Fire("mTimPaintTouchTest", &PreviewLayout::TimeoutPaintTouchTest);
    QVERIFY(mWindow->GetIsTouchMotionVer());
    QVERIFY(mWindow->GetIsCurrentShowTouchMotion());
    QCOMPARE(gWidgetManager.GetCurWidgetId(), TOUCHTEST);
    QVERIFY(!lcdOff->isActive());

    mWindow->BackPressed();  // from the touch test: the remaining checks
    QCOMPARE(gTouchTestStage, 3);
    QVERIFY(Timer("mTimNeedTouchComp")->isActive());
  }
  void touchTestMarkerShowsTheTouchTestOnly() {
    root.Write(QStringLiteral("/mnt/mmc/touch_test.txt"), "x");
    Start();
    QCOMPARE(gTouchTestStage, 100);
    QVERIFY(Timer("mTimPaintTouchTest")->isActive());
    Preview()->onResume();
    QCOMPARE(gTouchTestStage, 100);
  }
  void startWithABadCardAsksForAFormatAndKeepsTheBox() {
    gSdError = true;
    Start();
    QCOMPARE(EventBox(), int{R_SD_ERROR_NEET_FORMAT});
    QVERIFY(!gSdError);
    QVERIFY(!Timer("mTimTouchWait")->isActive());
    QVERIFY(!Timer("mTimLcdOff")->isActive());
    QVERIFY(!Timer("mTimSeachingPfileInfo")->isActive());
  }
  void startWithAWornCardSaysSo() {
    gIsSdError = true;
    Start();
    QCOMPARE(EventBox(), int{R_SD_CARD_EXCHANGE_NEED});
    QVERIFY(!Timer("mTimTouchWait")->isActive());
  }

  // ---- covered

  void coveredPreviewNeverShowsItself() {
    Setting().lcd_wait_dis = 1;
    PreviewLayout* preview = Preview();
    preview->TimeoutLcdOff();
    QCOMPARE(gWidgetManager.GetCurWidgetId(), SCREENSAVER);
    WriteReport();
    preview->ShowPreview();
    preview->TimeoutTouchWait();
    preview->TimeoutLcdOff();
    preview->TimeoutSeachingPfilInfo();
    preview->TimeoutNeedTouchComp();
    preview->TimeoutPaintTouchTest();
    QVERIFY(!preview->isVisible());
    QCOMPARE(gWidgetManager.GetCurWidgetId(), SCREENSAVER);
    QVERIFY(!mWindow->GetIsLcdOff());
    QVERIFY(!mWindow->GetIsTouchMotionVer());
    QCOMPARE(mWindow->GetNeedTouchComBeforeSDFormat(), 0);
    for (const char* later : {"mTimSeachingPfileInfo", "mTimNeedTouchComp", "mTimPaintTouchTest"})
      QVERIFY2(preview->findChild<QTimer*>(QLatin1String(later))->isActive(), later);
  }

private:
  void WriteReport() {
    QByteArray report;
    for (const qint32 word : {1, 1672617600, 1672617600 + 7200, 0, 0, 0})
      report.append(reinterpret_cast<const char*>(&word), sizeof word);
    root.Write(QStringLiteral("/tmp/.info.bin"), report);
  }
};

QTEST_MAIN(PreviewLayoutTest)
#include "previewlayout_test.moc"
