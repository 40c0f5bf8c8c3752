#pragma once

#include "gui/screen/tilescreen.h"

/// How old recordings make place for new ones. GUI thread.
class FileDeleteMethod : public TileScreen {
  Q_OBJECT

public:
  explicit FileDeleteMethod(QWidget* parent);

private:
  static const Tile kTiles[];

  void PressMethod();
  void PressProtectFile();
};
