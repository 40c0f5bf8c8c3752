#pragma once

#include <QTimer>

#include "recorder/base/hub.h"
#include "recorder/base/sink.h"
#include "recorder/card/card.h"
#include "recorder/card/clipfacts.h"
#include "recorder/card/stock.h"
#include "recorder/device/cameras.h"
#include "recorder/device/frontled.h"
#include "recorder/device/power.h"
#include "recorder/device/voice.h"
#include "recorder/firmware/update.h"
#include "recorder/link/statuschannel.h"
#include "recorder/recording/manualevent.h"
#include "recorder/recording/parking.h"
#include "recorder/recording/playback.h"
#include "recorder/recording/recording.h"

namespace recorder {

/// What the recorder knows and only passes on.
struct Facts {
  int gps = 2;    ///< 0 none, 1 searching, 2 fix
  int speed = 0;  ///< km/h
  bool accModel = false;
  int failing = 0;  ///< commands that are refused from now on
};

/// The recorder taken apart.
struct Parts {
  explicit Parts(const QString& root);

  void KeepClock();  ///< tells the interface the time; what cannot be kept is noted

  StatusChannel status;
  Sink sink{status};
  Hub hub;
  CameraSource source = DrawStripes;
  Cameras cameras{hub};
  Power power{hub};
  Voice voice{hub};
  FrontLed frontLed{hub};
  Card card{hub};
  ClipMaker clips{[this](int camera, qint64 ms, Picture* picture) { source(camera, ms, picture); }};  // of a replay
  Recording recording{hub, voice, cameras, card};
  Playback playback{hub, card};
  Parking parking{hub, cameras, recording};
  ManualEvent manualEvent{hub, recording};
  Update update{hub};
  Facts facts;
  QTimer restart;    // to the restart of the device
  QTimer fastClock;  // to the next time that a clock which runs faster is told
};

}  // namespace recorder
