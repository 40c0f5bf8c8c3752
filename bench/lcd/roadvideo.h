#pragma once

#include <QImage>
#include <functional>

#include "recorder/base/videoplane.h"

/// The pictures of the two cameras: a road ahead by day, and the road behind in the evening light, with the car that
/// follows. Drawn, not played: the same arguments give the same picture. But a camera may see something else.
class RoadVideo {
public:
  RoadVideo();

  /// What a camera (0 front, 1 rear) sees from now on: pictures of 480 × 320 RGB32.
  void Replace(int camera, const std::function<QImage()>& picture) { mOthers[camera] = picture; }

  /// What the video plane shows `milliseconds` (0 or more) after the start: 480 × 320 RGB32.
  QImage Frame(const VideoPlane& plane, qint64 milliseconds) const;

  /// The picture of one camera (0 front, 1 rear) alone, smaller or larger: RGB32 of `size`.
  QImage Camera(int camera, qint64 milliseconds, QSize size) const;

private:
  QImage Whole(int camera, qint64 milliseconds) const;

  std::function<QImage()> mOthers[2];  // empty: the road
  QImage mAhead, mBehind;              // what never moves
  mutable QImage mSmall[2];            // the same in the size that Camera() was asked for
};
