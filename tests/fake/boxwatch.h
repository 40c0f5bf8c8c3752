#pragma once

#include <QCoreApplication>
#include <QEvent>

#include "gui/screen/basewidget.h"
#include "gui/screen/widgetmanager.h"

/// Counts how often the screen on top is painted without a box of its own while this lives: the flash that a driver
/// sees when a box is taken away before the next one is there.
class BoxWatch : public QObject {
public:
  BoxWatch() { qApp->installEventFilter(this); }
  int bare = 0;

protected:
  bool eventFilter(QObject* object, QEvent* event) override {
    const BaseWidget* screen = gWidgetManager.GetCurrentWidget();
    if (event->type() == QEvent::Paint && object == screen && !screen->GetShowMessageBoxFlag()) ++bare;
    return false;
  }
};
