#pragma once

#include <QJsonValue>
#include <QStringList>
#include <QTimer>

#include "recorder/base/hub.h"

namespace recorder {

/// An update of the firmware: the interface is away, and the firmware itself shows on the LCD how far it is. It ends
/// with the marker that tells the interface of it, and a restart.
class Update {
public:
  explicit Update(Hub& hub);

  /// Begins one that leaves the file `marker`; not while one is under way.
  void Begin(const char* marker);

  /// The recorder ends: an update under way is given up, and the interface comes back.
  void Finish();

  bool IsRunning() const { return mTimer.isActive(); }

  /// What the LCD shows, files of this machine, from the back to the front; each as wide as the LCD and at its bottom.
  /// None: the LCD is the interface's.
  QStringList Pictures() const;

  /// The phase, 0 it begins, 1 it runs, 2 it has ended; null: none.
  QJsonValue State() const;

private:
  int Phase() const;
  void Step();

  Hub& mHub;
  QTimer mTimer;
  int mStep = 0;
  const char* mMarker = nullptr;
};

}  // namespace recorder
