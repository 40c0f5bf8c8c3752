#pragma once

#include "gui/screen/tilescreen.h"

/// The menu of the device: its LCD, LED, clock, panel and sound, and the reset of the settings. GUI thread.
class BlackboxManagement : public TileScreen {
  Q_OBJECT

public:
  explicit BlackboxManagement(QWidget* parent);

  void MessageBoxHandler(int type, int x, int y, int messageId) override;

private:
  static const Tile kTiles[];

  void PressLed();
  void PressTouchCompensation();
  void AskUserDataInit();
};
