#include "tour/camera.h"

#include <linux/input.h>

#include <QCoreApplication>
#include <QLabel>
#include <QTimer>
#include <QTimerEvent>
#include <algorithm>

#include "bench/lcd/compose.h"
#include "gui/app/screenfactory.h"
#include "gui/base/globals.h"
#include "gui/led/ledfilemanager.h"
#include "gui/screen/tilescreen.h"
#include "gui/screen/widgetmanager.h"
#include "gui/settings/config.h"
#include "gui/settings/settings.h"
#include "gui/touch/touchthread.h"
#include "tests/fake/cardfake.h"
#include "tests/fake/platformfake.h"
#include "tests/fake/testroot.h"

namespace {
TestRoot deviceRoot;

constexpr int kPressure = 200;
constexpr int kFullLight = 100000;
constexpr qint64 kVideoMs = 4000;  // the moment of the road that every picture shows

QDateTime Noon() {
  return QDateTime(QDate(2026, 5, 8), QTime(13, 24, 36));
}

// The touches that lead from the preview to a screen that no door of a menu leads to.
constexpr QPoint kMenu(265, 33);
using Way = QList<QPoint>;
const struct {
  WidgetId id;
  Way touches;
} kWays[] = {
    {MAINMENU, {kMenu}},
    {RECORDINGLIST, {kMenu, kTile11, kYes}},
    {FRONTLED, {kMenu, kTile23, kTile12}},
    {NUMBERSETLAYOUT, {kMenu, kTile23, kTile12, kTile11}},
    {LEDFILELIST, {kMenu, kTile23, kTile12, kTile12}},
    {TOUCHCOMP, {kMenu, kTile23, kTile21}},
};

// By the doors of the menus, the fewest; empty when there are none.
Way WayTo(WidgetId id, MainWindow* window) {
  struct Reached {
    WidgetId id;
    Way touches;
  };
  QList<Reached> reached{{MAINMENU, {kMenu}}};
  for (qsizetype i = 0; i < reached.size(); ++i) {
    const std::unique_ptr<BaseWidget> screen(MakeScreen(reached[i].id, window, nullptr));
    const auto* menu = qobject_cast<TileScreen*>(screen.get());
    if (!menu) continue;
    for (const auto& [next, at] : menu->Doors()) {
      if (next == id) return reached[i].touches + Way{at};
      const bool isKnown =
          std::any_of(reached.begin(), reached.end(), [n = next](const Reached& r) { return r.id == n; });
      if (!isKnown) reached.append({next, reached[i].touches + Way{at}});
    }
  }
  return {};
}

// The camera of the recording that is played, by its name.
VideoPlane::View PlayedView() {
  const auto* name = gWidgetManager.GetCurrentWidget()->findChild<QLabel*>(QStringLiteral("mFileNameLabel"));
  return name->text().mid(3, 1) == u'1' ? VideoPlane::View::Rear : VideoPlane::View::Front;
}
}  // namespace

TestRoot& Camera::Root() {
  return deviceRoot;
}

Setting_Config& Camera::Setting() {
  return gEnvirnmentSettings.mSetting;
}

Camera::Camera() {
  for (const char* file : {"/tmp/.info.bin", "/tmp/picture.bmp", "/tmp/ndf", "/opt/led.zel", "/opt/touch.zel",
                           "/mnt/mmc/touch.txt", "/mnt/mmc/Setup/.format_time"})
    Root().Remove(QLatin1String(file));
  card::Clear(Root());
  PlatformFake::Get().Clear();
  gClock = Noon;
  Setting() = {};
  Setting().lcd_auto_off = Setting().lcd_bright = 1;
  Setting().major_ver = 1;
  Setting().minor_ver = 2;
  Setting().minor_ver2 = 3;
  Setting().volume = Setting().spk_volume = 2;
  Setting().rear_cam_power = Setting().parking_mode_on = Setting().protect_file = 1;
  Setting().motion_area1 = Setting().motion_area2 = ~0ULL;
  Restart();
}

void Camera::Restart() {
  mWindow.reset();
  gEnvirnmentSettings.mOldSetting = Setting();
  gEnvirnmentSettings.mMovingPip = gEnvirnmentSettings.mMirroring = 0;
  gEnvirnmentSettings.mTouchValue.Store(kFactoryTouchValue);
  gIsConnectGps = 0;
  gCountOfCamera = 2;
  gInitFrontLed = 1;
  gLedFileManager.setExistsLedFileFlag(true);
  gReturnVolume = 1;
  gNeedFormatFlag = 0;
  gTouchTestStage = 0;
  gNeedVolCom = gIsAccVer = gIsPlayingVoice = g_bIsPrevWidgetParkingSetting = false;
  gSdError = false;
  gInitSdError = false;
  gIsSdError = false;
  mWindow = std::make_unique<MainWindow>(nullptr);
  mWindow->show();
  QCoreApplication::processEvents();
}

// ---- what happens

void Camera::Take(int code, int value) {
  mFlashWatch.Begin();
  mWindow->GetTouchThread()->Take(EV_ABS, code, value);
  QCoreApplication::processEvents();
  mFlashWatch.End();
}

void Camera::Press(QPoint at) {
  const QPoint raw = mPanel.RawAt(at.x(), at.y());
  Take(ABS_X, raw.x());
  Take(ABS_Y, raw.y());
  Take(ABS_PRESSURE, kPressure);
}

void Camera::Release() {
  Take(ABS_PRESSURE, 0);
}

void Camera::Tap(QPoint at) {
  Press(at);
  Release();
}

void Camera::Event(RECV_ZEL_STATUS_EVENT event, int value) {
  mFlashWatch.Begin();
  mWindow->recvEvent(event, value);
  QCoreApplication::processEvents();
  mFlashWatch.End();
}

void Camera::Wait(const char* name) {
  const QList<QTimer*> timers = mWindow->findChildren<QTimer*>(QLatin1String(name));
  const auto running =
      std::find_if(timers.begin(), timers.end(), [](const QTimer* timer) { return timer->isActive(); });
  if (running == timers.end()) qFatal("%s does not run", name);
  mFlashWatch.Begin();
  QTimerEvent end((*running)->timerId());
  QCoreApplication::sendEvent(*running, &end);
  QCoreApplication::processEvents();
  mFlashWatch.End();
}

void Camera::Open(WidgetId id) {
  const auto known = std::find_if(std::begin(kWays), std::end(kWays), [id](const auto& row) { return row.id == id; });
  const Way way = known != std::end(kWays) ? known->touches : WayTo(id, mWindow.get());
  if (way.isEmpty()) qFatal("no way leads to %s: tour/camera.cpp, kWays", NameOf(id));
  for (const QPoint touch : way) Tap(touch);
}

// ---- what is seen

QImage Camera::Drawn() {
  QCoreApplication::processEvents();
  return mWindow->grab().toImage().convertToFormat(QImage::Format_RGB32);
}

QImage Camera::Seen(const QImage& drawn) const {
  VideoPlane video;
  video.view = VideoPlane::View(Setting().display == 1 ? 1 : Setting().display == 2 ? 2 : 0);
  video.pipCorner = gEnvirnmentSettings.mMovingPip;
  video.rearAlive = gCountOfCamera == 2;
  if (gWidgetManager.GetCurWidgetId() == PLAYER) video.view = PlayedView();
  return Compose(drawn, mRoad.Frame(video, kVideoMs), mWindow->GetIsLcdOff() ? 0 : kFullLight);
}
