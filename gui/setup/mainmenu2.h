#pragma once

#include "gui/screen/tilescreen.h"

/// The second menu. GUI thread.
class MainMenu2 : public TileScreen {
  Q_OBJECT

public:
  explicit MainMenu2(QWidget* parent);

  void MessageBoxHandler(int type, int x, int y, int messageId) override;
  void TimeoutEvent() override;

private:
  static const Tile kTiles[];

  void PressTouchCompensation();
  void AskMotionSetting();
  void PressVoltageCompensation();
};
