#pragma once

#include <functional>
#include <span>

#include "gui/vocabulary/vocabulary.h"

class Camera;

/// One state of a screen: a file name, what it shows, and how the camera gets there from the live preview, by touches
/// and events wherever a person could.
struct State {
  WidgetId screen;
  const char* name;
  const char* shows;
  std::function<void(Camera&)> enter;
};

/// Every state in which a screen paints something else.
std::span<const State> States();
