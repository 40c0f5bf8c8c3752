#pragma once

#include "gui/screen/tilescreen.h"

/// The front LED: how it shows its patterns, and the ways to their list and to a new number. GUI thread.
class FrontLed : public TileScreen {
  Q_OBJECT

public:
  explicit FrontLed(QWidget* parent);

private:
  static const Tile kTiles[];

  void PressList();
  void PressMode();
};
