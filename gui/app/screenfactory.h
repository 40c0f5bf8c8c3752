#pragma once

#include <span>

#include "gui/vocabulary/vocabulary.h"

class BaseWidget;
class MainWindow;
class QObject;

/// One screen that can be shown.
struct ScreenRow {
  WidgetId id;
  const char* name;  ///< of its class
  BaseWidget* (*make)(MainWindow* window, QObject* arg);
};

/// Every screen there is: the one place that names them all.
std::span<const ScreenRow> Screens();

/// Builds the screen of `id`. Null when there is none: that is said on the diagnostic output.
BaseWidget* MakeScreen(WidgetId id, MainWindow* window, QObject* arg);
