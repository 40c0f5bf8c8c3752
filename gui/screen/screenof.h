#pragma once

#include "gui/vocabulary/vocabulary.h"

class BaseWidget;
class QObject;
class QWidget;

/// Builds the screen of `id`; null when `arg` is not what it shows. Each screen says in its own file how it is built,
/// and one that does not say it does not link. GUI thread.
template <WidgetId id>
BaseWidget* ScreenOf(QWidget* parent, QObject* arg);

/// That of a screen which is built from nothing.
#define SCREEN(id, Class)                                \
  template <>                                            \
  BaseWidget* ScreenOf<id>(QWidget * parent, QObject*) { \
    return new Class(parent);                            \
  }
