#pragma once

#include "gui/screen/tilescreen.h"

/// The options of sound: the spoken guidance, the microphone, and two alarms. GUI thread.
class AudioSetting : public TileScreen {
  Q_OBJECT

public:
  explicit AudioSetting(QWidget* parent);

private:
  static const Tile kTiles[];

  void PressVoice();
  void SetVoiceOff(bool off);
  void PressMicrophone();
};
