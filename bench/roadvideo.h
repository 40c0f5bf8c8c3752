#pragma once

#include <QImage>

#include "recorder/recorder.h"

/// The pictures of the two cameras: a road ahead by day, and the road behind in the evening light, with the car that
/// follows. Drawn, not played: the same arguments give the same picture.
class RoadVideo {
public:
  RoadVideo();

  /// What the video plane shows `milliseconds` (0 or more) after the start: 480 × 320 RGB32.
  QImage Frame(const VideoPlane& plane, qint64 milliseconds) const;

private:
  QImage mAhead, mBehind;  // what never moves
};
