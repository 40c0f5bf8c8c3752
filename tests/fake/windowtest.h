#pragma once

#include <QPointer>
#include <QTest>
#include <QTimer>
#include <memory>

#include "gui/app/mainwindow.h"
#include "gui/base/globals.h"
#include "gui/screen/basewidget.h"
#include "gui/screen/widgetmanager.h"
#include "gui/settings/config.h"
#include "gui/settings/settings.h"
#include "tests/fake/platformfake.h"
#include "tests/fake/testroot.h"

/// A screen that does nothing but note, in the list of the platform's fake, what the window gives it:
/// "MAINMENU touch 1 10 20", "MAINMENU event 5 3".
class DummyScreen : public BaseWidget {
public:
  DummyScreen(QWidget* parent, WidgetId id) : BaseWidget(parent), mName(QLatin1String(NameOf(id))) {}

  void touchEvent(int type, int x, int y) override {
    Note(QStringLiteral("%1 touch %2 %3 %4").arg(mName).arg(type).arg(x).arg(y));
    if (duringTouch) std::exchange(duringTouch, nullptr)();
  }
  void recvEvent(int event, int value) override {
    Note(QStringLiteral("%1 event %2 %3").arg(mName).arg(event).arg(value));
    if (duringEvent) std::exchange(duringEvent, nullptr)();
  }
  void onResume() override {
    ++resumed;
    sizeAtResume = size();
  }
  void onPause() override { ++paused; }
  void paintEvent(QPaintEvent*) override { ++painted; }

  std::function<void()> duringTouch, duringEvent;  ///< what the next touch or event does in its middle; once
  int resumed = 0, paused = 0, painted = 0;
  QSize sizeAtResume;

private:
  static void Note(const QString& line) { PlatformFake::Get().asked << line; }
  QString mName;
};

/// The base of the tests of the window: a real window, on its stack a dummy preview and what the test opens over it.
/// The slots init() and cleanup() of the test call Start() and Stop().
class WindowTest : public QObject {
protected:
  static PlatformFake& Fake() { return PlatformFake::Get(); }
  static QStringList Asked() { return PlatformFake::Get().asked; }
  static Setting_Config& Setting() { return gEnvirnmentSettings.mSetting; }

  /// Everything as after a plain start: no root files, usual settings, no flag set.
  static void ResetCamera(const TestRoot& root) {
    GetConfig();
    for (const char* path :
         {"/opt/gui/ini/config_firm.ini", "/tmp/ndf", "/tmp/.info.bin", "/tmp/update.zel", "/tmp/update.zel2",
          "/tmp/picture.bmp", "/mnt/mmc/Setup/picture.bmp", "/mnt/mmc/touch_check.txt", "/mnt/mmc/touch_test.txt",
          "/mnt/mmc/test_mode.txt", "/mnt/nand/pointercal"})
      root.Remove(QLatin1String(path));
    Setting() = {};
    Setting().lcd_auto_off = Setting().lcd_bright = 1;
    Setting().rear_cam_power = Setting().parking_mode_on = Setting().protect_file = 1;
    gEnvirnmentSettings.mOldSetting = Setting();
    ResetFlags();
  }
  /// What a new process begins with.
  static void ResetFlags() {
    gNeedFormatFlag = gIsConnectGps = gRecvLcdValue = gOldRecvLcdValue = gTouchTestStage = 0;
    gCountOfCamera = 2;
    gInitFrontLed = 1;
    gIsPlayingVoice = gIsAccVer = g_bIsPrevWidgetParkingSetting = false;
    gSdError = false;
    gIsSdError = false;
    gInitSdError = false;
    Fake().Clear();
  }
  void Start(const TestRoot& root) {
    ResetCamera(root);
    mWindow = std::make_unique<MainWindow>(nullptr);
    mWindow->takeCentralWidget();
    gWidgetManager.ResetStackedWidgetList();
    mPreview = Open(PREVIEW);
    mWindow->show();
    Fake().asked.clear();
  }
  void Stop() {
    mWindow.reset();
    QCoreApplication::processEvents();
    Fake().Clear();
  }

  /// Puts a dummy of `id` on top and has the window show it.
  DummyScreen* Open(WidgetId id) {
    auto* screen = new DummyScreen(mWindow.get(), id);
    gWidgetManager.NextWidget({id, screen});
    gWidgetManager.NextWidget({UNKNOWN, new BaseWidget(mWindow.get())});
    mWindow->BackPressed();
    return screen;
  }
  /// No screen at all.
  void CloseAll() {
    mWindow->takeCentralWidget();
    gWidgetManager.ResetStackedWidgetList();
  }

  static BaseWidget* Top() { return gWidgetManager.GetCurrentWidget(); }
  static WidgetId TopId() { return gWidgetManager.GetCurWidgetId(); }
  static int OwnBox() { return Top() && Top()->GetShowMessageBoxFlag() ? Top()->GetMessageId() : -1; }
  static int EventBox() { return Top() && Top()->GetShowRecvMessageBoxFlag() ? Top()->GetRecvMessageId() : -1; }

  /// Interval of one of the window's timers in ms; -1 when it does not run.
  int Armed(const char* name) const {
    const auto* timer = mWindow->findChild<QTimer*>(QLatin1String(name), Qt::FindDirectChildrenOnly);
    if (!timer) qFatal("no timer %s", name);
    return timer->isActive() ? timer->interval() : -1;
  }
  /// The same of a timer of the screen on top.
  static int ArmedOnTop(const char* name) {
    const auto* timer = Top()->findChild<QTimer*>(QLatin1String(name), Qt::FindDirectChildrenOnly);
    if (!timer) qFatal("no timer %s", name);
    return timer->isActive() ? timer->interval() : -1;
  }

  /// As the worker threads do: in the event loop's queue.
  void PostEvent(int event, int value) {
    QMetaObject::invokeMethod(
        mWindow.get(), [w = mWindow.get(), event, value, received = Now()] { w->recvEvent(event, value, received); },
        Qt::QueuedConnection);
  }
  void PostTouch(int x, int y) {
    QMetaObject::invokeMethod(
        mWindow.get(), [w = mWindow.get(), x, y, seen = Now()] { w->touchEvent(TOUCH_PRESS, x, y, seen); },
        Qt::QueuedConnection);
  }
  void Tap(int x, int y) { mWindow->touchEvent(TOUCH_PRESS, x, y); }

  /// A row for every screen; `excepted` says which ones the rule leaves out.
  static void AddScreenRows(std::initializer_list<WidgetId> excepted) {
    QTest::addColumn<int>("id");
    QTest::addColumn<bool>("excepted");
    for (int id = PREVIEW; id < SCREENS_END; ++id)
      QTest::newRow(NameOf(WidgetId(id)))
          << id << (std::find(excepted.begin(), excepted.end(), WidgetId(id)) != excepted.end());
  }
  static constexpr std::initializer_list<WidgetId> kKeepLcdOn = {RECORDINGLIST, PLAYER, SDFORMAT, TOUCHTEST, TOUCHCOMP};

  std::unique_ptr<MainWindow> mWindow;
  DummyScreen* mPreview = nullptr;
};
