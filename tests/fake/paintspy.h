#pragma once

#include <QCoreApplication>
#include <QEvent>

/// Counts the paintings of all widgets of a class while it lives: what a driver has seen of them so far.
template <typename Widget>
class PaintSpy : public QObject {
public:
  PaintSpy() { qApp->installEventFilter(this); }
  int count = 0;

protected:
  bool eventFilter(QObject* object, QEvent* event) override {
    if (event->type() == QEvent::Paint && dynamic_cast<Widget*>(object)) ++count;
    return false;
  }
};
