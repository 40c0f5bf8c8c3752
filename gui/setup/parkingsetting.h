#pragma once

#include <memory>

#include "gui/screen/tilescreen.h"

class PFileInfo;

/// The options of parking, and the way to the report of the last one. GUI thread.
class ParkingSetting : public TileScreen {
  Q_OBJECT

public:
  explicit ParkingSetting(QWidget* parent);
  ~ParkingSetting() override;

  void MessageBoxHandler(int type, int x, int y, int messageId) override;

private:
  static const Tile kTiles[];

  void AskMotionSetting();
  void PaintPfileInfo();

  std::unique_ptr<PFileInfo> pFile;  // the report that is shown
};
