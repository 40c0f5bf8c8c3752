#include "gui/touch/touchthread.h"

#include <linux/input.h>
#include <poll.h>
#include <sys/eventfd.h>
#include <unistd.h>

#include <QTimer>
#include <cerrno>
#include <cmath>
#include <cstdlib>
#include <iterator>

#include "gui/base/devicepath.h"
#include "gui/base/globals.h"
#include "gui/base/touchtime.h"
#include "gui/screen/screenhost.h"
#include "gui/screen/widgetmanager.h"
#include "gui/settings/settings.h"
#include "gui/touch/paneldevice.h"

namespace {
constexpr int kAxisBits = 0x1FF;
constexpr int kScreenWidth = 480;
constexpr int kScreenHeight = 320;
constexpr unsigned long kEndMs = 1000;
constexpr unsigned long kRetryMs = 20;
constexpr int kAutoMs = 200;
constexpr int kReleaseDelayMs = 10;
constexpr int kLongPressRepeatMs = 500;

/// A calibrated coordinate: towards zero, not below it, and 1 pixel inside the screen when it is more than 1 outside.
int OnScreen(double value, int size) {
  const double whole = std::trunc(value);
  if (!(whole >= 0)) return 0;  // also what no number comes to
  return whole > size ? size - 1 : int(whole);
}

void Restart(QTimer* timer, int ms) {
  timer->stop();
  timer->setInterval(ms);
  timer->start();
}
}  // namespace

TouchThread::TouchThread(ScreenHost* window)
    : QThread(window),
      timAuto(new QTimer(this)),
      timPress(new QTimer(this)),
      timRelease(new QTimer(this)),
      timLongPress(new QTimer(this)),
      timLongPressEvent(new QTimer(this)),
      timReleaseDelay(new QTimer(this)),
      mMainWindow(window),
      mEndSignal(eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK)) {
  connect(timRelease, &QTimer::timeout, this, &TouchThread::relTimeout);
  connect(timAuto, &QTimer::timeout, this, &TouchThread::autoTimeout);
  connect(timLongPress, &QTimer::timeout, this, &TouchThread::timeoutLongPress);
  connect(timLongPressEvent, &QTimer::timeout, this, &TouchThread::timeoutLongPressEvent);
  connect(timReleaseDelay, &QTimer::timeout, this, &TouchThread::timeoutReleaseDelay);
  start(QThread::InheritPriority);
}

TouchThread::~TouchThread() {
  End();
  close(mEndSignal);
}

void TouchThread::End() {
  eventfd_write(mEndSignal, 1);
  wait(kEndMs);
}

void TouchThread::run() {
  const QString path = gTouchDevice.isEmpty() ? DevicePath(device::kTouchDevice) : gTouchDevice;
  PanelDevice device(path.toLocal8Bit().toStdString());
  if (device.File() < 0) qWarning("touch: there is no %s, it is waited for", qPrintable(path));
  TakeStart(device);
  for (;;) {
    pollfd waited[] = {{device.File(), POLLIN, 0}, {device.Changes(), POLLIN, 0}, {mEndSignal, POLLIN, 0}};
    if (poll(waited, std::size(waited), -1) < 0) {
      if (errno != EINTR) msleep(kRetryMs);  // no memory for it: without touches the camera would be lost
      continue;
    }
    if (waited[2].revents != 0) return;
    if (waited[1].revents != 0 && device.TakeChange()) {
      Lift();
      TakeStart(device);
    } else if (waited[0].revents != 0) {
      PanelRecord record;
      switch (device.Read(&record)) {
        case PanelDevice::Got::End:
          return;
        case PanelDevice::Got::Gone:
          Lift();
          if (device.File() < 0) qWarning("touch: %s has gone, it is waited for", qPrintable(path));
          msleep(kRetryMs);  // what fails at once again must not take the processor
          break;
        case PanelDevice::Got::Nothing:
          break;
        case PanelDevice::Got::Record:
          Take(record.type, record.code, record.value);
      }
    }
  }
}

void TouchThread::TakeStart(const PanelDevice& device) {
  for (const PanelRecord& record : device.Start()) Take(record.type, record.code, record.value);
}

// The finger of a device that has gone is told by nobody any more.
void TouchThread::Lift() {
  if (!mIsRelease) Release();
}

void TouchThread::Take(int type, int code, int value) {
  if (type != EV_ABS) return;
  const int sample = value & kAxisBits;
  // The panel is mounted turned: its X axis is the screen's Y axis.
  if (code == ABS_X) y = sample;
  if (code == ABS_Y) x = sample;
  if (code == ABS_PRESSURE) sample != 0 ? Press() : Release();
}

void TouchThread::Press() {
  if (mMainWindow->GetIsCurrentShowTouchMotion() && mMainWindow->GetIsTouchMotionVer()) {
    setValue(x, y);
    emit touchMotionPanel(x, y, new_x, new_y, Now());
    return;
  }
  if (!mIsRelease) return;
  mIsRelease = false;
  if (gWidgetManager.GetCurWidgetId() == TOUCHCOMP) {
    setTouchPanel(x, y);
    return;
  }
  setValue(x, y);
  emit pressEvent(TOUCH_PRESS, new_x, new_y, Now());
}

void TouchThread::Release() {
  mIsRelease = true;
  const WidgetId screen = gWidgetManager.GetCurWidgetId();
  if (screen == RECORDINGLIST) emit sendReleaseEvent(true);
  if (screen == TIMELAYOUT) emit sendTimeLayoutReleaseEvent(true);
  if (screen == LEDFILELIST) emit sendLedListLayoutReleaseEvent(true);
}

void TouchThread::setTouchPanel(int panelX, int panelY) {
  emit inputTouchPanel(panelX, panelY, Now());
}

void TouchThread::setValue(int panelX, int panelY) {
  const Touch_Value by = gEnvirnmentSettings.mTouchValue.Load();
  new_x = OnScreen(panelX * by.alphaX + panelY * by.betaX + by.deltaX, kScreenWidth);
  new_y = OnScreen(panelX * by.alphaY + panelY * by.betaY + by.deltaY, kScreenHeight);
}

void TouchThread::setXValue(int value) {
  const int range = stComp.stEnd.x - stComp.stOffset.x;
  if (range != 0) y = (value - stComp.stOffset.x) * kScreenHeight / range;
}

void TouchThread::setYValue(int value) {
  const int range = stComp.stEnd.y - stComp.stOffset.y;
  if (range != 0) x = (stComp.stEnd.y - value) * kScreenWidth / range;
}

// An edge only ever moves outwards from zero, on whichever side of its target the taps are.
void TouchThread::PressPoint(int nIdx, int panelX, int panelY) {
  if (nIdx >= int(arMeasuredPoint.size()) || nIdx != nOldIdx + 1) {
    nOldIdx = 0;
    arMeasuredPoint.fill({});
    return;
  }
  nOldIdx = nIdx;
  arMeasuredPoint[nIdx] = {panelX, panelY};
  if (nIdx != 4) return;
  const auto& tap = arMeasuredPoint;
  stComp.stOffset.x += std::abs((tap[1].x + tap[3].x) / 2 - 40);
  stComp.stEnd.x += std::abs((tap[2].x + tap[4].x) / 2 - 440);
  stComp.stOffset.y += std::abs((tap[1].y + tap[2].y) / 2 - 35);
  stComp.stEnd.y += std::abs((tap[3].y + tap[4].y) / 2 - 285);
}

// ---- timers

void TouchThread::resetAuto() {
  Restart(timAuto, kAutoMs);
}

void TouchThread::autoTimeout() {
  timAuto->stop();
  statTouch = TOUCH_AUTO;
}

void TouchThread::relTimeout() {
  timRelease->stop();
  statTouch = TOUCH_RELEASE;
}

void TouchThread::setReleaseDelayTimer() {
  Restart(timReleaseDelay, kReleaseDelayMs);
}

void TouchThread::setLongPressTimer(int ms) {
  Restart(timLongPress, ms);
}

void TouchThread::setLongPressEventTimer(int ms) {
  Restart(timLongPressEvent, ms);
}

void TouchThread::timeoutLongPressEvent() {
  emit pressEvent(TOUCH_AUTO, new_x, new_y, Now());
  Restart(timLongPressEvent, kLongPressRepeatMs);
}
