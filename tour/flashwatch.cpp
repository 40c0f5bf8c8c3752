#include "tour/flashwatch.h"

#include <QCoreApplication>
#include <QEvent>

#include "gui/screen/basewidget.h"
#include "gui/screen/widgetmanager.h"

namespace {
bool HasBox(const BaseWidget* screen) {
  return screen && (screen->GetShowMessageBoxFlag() || screen->GetShowRecvMessageBoxFlag());
}
}  // namespace

FlashWatch::FlashWatch() {
  QCoreApplication::instance()->installEventFilter(this);
}

void FlashWatch::Begin() {
  BaseWidget* top = gWidgetManager.GetCurrentWidget();
  mScreen = HasBox(top) ? top : nullptr;
  mIsBare = false;
}

void FlashWatch::End() {
  if (mIsBare && mScreen && mScreen == gWidgetManager.GetCurrentWidget() && HasBox(mScreen)) ++mFlashes;
  mScreen = nullptr;
}

bool FlashWatch::eventFilter(QObject* object, QEvent* event) {
  if (event->type() == QEvent::Paint && mScreen && object == mScreen && !HasBox(mScreen)) mIsBare = true;
  return false;
}
