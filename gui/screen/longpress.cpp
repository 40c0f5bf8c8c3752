#include "gui/screen/longpress.h"

#include <QTimer>

#include "gui/screen/basewidget.h"
#include "gui/screen/screenhost.h"

namespace {
constexpr int kHoldMs = 500;
}

LongPress::LongPress(BaseWidget& screen, int repeatMs)
    : mScreen(screen),
      mTimLongPress(screen.NewTimer("mTimLongPress", [this] { TimeoutLongPress(); })),
      mRepeatMs(repeatMs) {}

bool LongPress::Touch(int x, int y) {
  if (!mFirstTouchCall) return false;
  mFirstTouchCall = false;
  mLongPressCoordX = x;
  mLongPressCoordY = y;
  BaseWidget::SetTimer(mTimLongPress, kHoldMs);
  return true;
}

void LongPress::Release() {
  BaseWidget::StopTimer(mTimLongPress);
  mLongPressCoordX = mLongPressCoordY = 0;
  mFirstTouchCall = true;
}

void LongPress::TimeoutLongPress() {
  mTimLongPress->stop();
  if (gMainWindow->GetTouchReleaseFlag()) {
    Release();
    return;
  }
  BaseWidget::SetTimer(mTimLongPress, mRepeatMs);
  mScreen.Touch(TOUCH_AUTO, mLongPressCoordX, mLongPressCoordY);
}
