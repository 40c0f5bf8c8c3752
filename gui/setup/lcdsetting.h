#pragma once

#include "gui/screen/tilescreen.h"

/// The options of the LCD: when it goes off, its brightness, and the screen saver. GUI thread.
class LcdSetting : public TileScreen {
  Q_OBJECT

public:
  explicit LcdSetting(QWidget* parent);

private:
  static const Tile kTiles[];

  void PressSecond();
  void PressBrightness();
  void PressScreenSaver();
};
