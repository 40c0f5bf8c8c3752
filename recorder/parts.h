#pragma once

#include "recorder/cameras.h"
#include "recorder/card.h"
#include "recorder/clipfacts.h"
#include "recorder/commandserver.h"
#include "recorder/frontled.h"
#include "recorder/manualevent.h"
#include "recorder/parking.h"
#include "recorder/playback.h"
#include "recorder/power.h"
#include "recorder/recording.h"
#include "recorder/scenario.h"
#include "recorder/statuschannel.h"
#include "recorder/stock.h"
#include "recorder/update.h"

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
  Parts(Recorder& recorder, const QString& root);

  /// An interface has made its first query: tells it the state, and begins a scenario that waits for it.
  void Greet();

  Hub hub;
  CameraSource source = DrawStripes;
  StatusChannel status;
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
  QTimer restart;  // to the restart of the device
  Scenario scenario{hub};
  bool greeted = false;  // an interface has made its first query in this run
  CommandServer server;
};

}  // namespace recorder
