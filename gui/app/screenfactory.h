#pragma once

#include <span>

#include "gui/vocabulary/vocabulary.h"

class BaseWidget;
class MainWindow;
class QObject;
class QWidget;

/// One screen that can be shown.
struct ScreenRow {
  WidgetId id;
  BaseWidget* (*make)(QWidget* parent, QObject* arg);
};

/// Every screen there is, in the order of their numbers.
std::span<const ScreenRow> Screens();

/// Builds the screen of `id`, and connects it with the window and the touch panel. Null when there is none: that is
/// said on the diagnostic output.
BaseWidget* MakeScreen(WidgetId id, MainWindow* window, QObject* arg);
