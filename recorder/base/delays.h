#pragma once

namespace recorder {

/// How long the firmware takes, in milliseconds; each above 0.
struct Delays {
  int voice = 1500;         ///< a spoken confirmation
  int stopVoice = 2000;     ///< the voice after a recording was stopped
  int manualEvent = 10000;  ///< a manual event recording
  int powerOff = 30000;     ///< from the low-voltage countdown to the power-off
  int restart = 2000;       ///< from the notice of a restart to the restart
  int drift = 60000;        ///< one swing of the supply voltage
  int lcdStep = 7000;       ///< between two levels of the automatic backlight
  int picture = 250;        ///< between two pictures of a recording; they are 250 ms of its time apart
  int clip = 20000;         ///< a recording, of its own time: 1000..60000; one of an impact or movement takes half
  int format = 3000;        ///< the format of the card
  int check = 2000;         ///< the check of the card
  int verdict = 1500;       ///< from the second voltage measurement to the verdict
  int playSecond = 1000;    ///< a second of a recording that is played
  int update = 500;         ///< half a blink of an update; it takes 14 of them
};

}  // namespace recorder
