#pragma once

#include "gui/screen/tilescreen.h"

/// How the battery is protected while parked. GUI thread.
class LowVolDetectionSetting : public TileScreen {
  Q_OBJECT

public:
  explicit LowVolDetectionSetting(QWidget* parent);

  void TimeoutEvent() override;

private:
  static const Tile kTiles[];

  void PressVoltageCompensation();
};
