#pragma once

#include <QList>

#include "recorder/base/hub.h"

namespace recorder {

/// The LED matrix on the camera's front: five rows, through which the patterns of its list run column by column.
class FrontLed {
public:
  explicit FrontLed(Hub& hub) : mHub(hub) {}

  /// Reads the list anew. One that is none leaves the matrix dark, with a sentence in the log.
  void Read();

  /// "mode" 0 off, 1 one pattern after the other, 2 at random; "entries": what is shown, each with "name" and
  /// "columns", two hex digits a column, bit 0 its top row. The security pattern is shown alone.
  QJsonObject State() const;

private:
  struct Pattern {
    QString name;
    QByteArray columns;
  };
  static bool Take(const QByteArray& list, QList<Pattern>* shown);

  Hub& mHub;
  QList<Pattern> mShown;
};

}  // namespace recorder
