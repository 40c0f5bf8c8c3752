#pragma once

#include <QTimer>

#include "recorder/cameras.h"
#include "recorder/card.h"
#include "recorder/clipfacts.h"
#include "recorder/frontled.h"
#include "recorder/hub.h"
#include "recorder/manualevent.h"
#include "recorder/parking.h"
#include "recorder/playback.h"
#include "recorder/power.h"
#include "recorder/recording.h"
#include "recorder/sink.h"
#include "recorder/statuschannel.h"
#include "recorder/stock.h"
#include "recorder/update.h"
#include "recorder/voice.h"

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

  StatusChannel status;
  Sink sink{status};
  Hub hub;
  CameraSource source = DrawStripes;
  Cameras cameras{hub};
  Power power{hub};
  Voice voice{sink};
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
};

}  // namespace recorder
