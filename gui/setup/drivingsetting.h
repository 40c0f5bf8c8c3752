#pragma once

#include "gui/screen/tilescreen.h"

/// The options of driving: resolution, frame rate, brightness, impacts, and the speed on the preview. GUI thread.
class DrivingSetting : public TileScreen {
  Q_OBJECT

public:
  explicit DrivingSetting(QWidget* parent);

private:
  static const Tile kTiles[];
};
