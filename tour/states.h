#pragma once

#include <QByteArray>
#include <functional>
#include <vector>

#include "gui/vocabulary/vocabulary.h"

class Camera;

/// One state of a screen: a file name, what it shows, and how the camera gets there from the live preview, by touches
/// and events wherever a person could.
struct State {
  WidgetId screen;
  QByteArray name;
  const char* shows;
  std::function<void(Camera&)> enter;
};

/// Every state in which a screen paints something else. A screen without a row of its own is shown as a menu opens it.
std::vector<State> States();
