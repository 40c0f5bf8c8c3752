#pragma once

#include "recorder/base/hub.h"
#include "recorder/base/videoplane.h"

namespace recorder {

/// The two cameras, and what the LCD shows of them.
class Cameras {
public:
  explicit Cameras(Hub& hub) : mHub(hub) {}

  /// The rear camera gets power; shows what the settings say.
  void Start();

  /// Shows what the settings say.
  void Follow();

  void Show(VideoPlane::View view);
  void SetMirrored(bool mirrored);
  void SetPipCorner(int corner);  ///< 0..3
  void SetRearPower(bool on);     ///< the driver's switch; kept in the settings

  /// The driver's switch counts while the car is parked; a driving car powers the rear camera.
  void Parked(bool parked);

  /// Plugs or unplugs the rear camera and tells the interface. False when the queue is full.
  bool PlugRear(bool plugged);

  /// The same without telling.
  void SetPlugged(bool plugged);

  int Count() const { return mPlugged ? 2 : 1; }
  QJsonObject State() const;
  /// All of the plane but the recording.
  const VideoPlane& Video() const { return mVideo; }

private:
  void Changed();

  Hub& mHub;
  VideoPlane mVideo;
  bool mPlugged = true;
  bool mPowered = true;
};

}  // namespace recorder
