#pragma once

#include <QStringList>
#include <memory>

#include "recorder/base/picture.h"

/// What the video plane of the LCD shows, behind the interface.
struct VideoPlane {
  enum class View { Pip = 0, Front = 1, Rear = 2 };
  View view = View::Pip;
  bool mirrored = false;  ///< the rear picture is mirrored
  int pipCorner = 0;      ///< where the small picture stands: 0 right bottom, 1 right top, 2 left top, 3 left bottom
  bool rearAlive = true;  ///< false: the rear camera is unplugged or switched off; its picture is black
  bool recording = true;  ///< a recording is under way
  /// The picture of the recording that is being played, in place of the cameras; null: none is.
  std::shared_ptr<const Picture> played;
  /// What the firmware shows during its update, in front of all, with full backlight: files of this machine, from the
  /// back to the front, each as wide as the LCD and at its bottom. Empty: no update.
  QStringList update;
};
