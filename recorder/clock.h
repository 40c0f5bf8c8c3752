#pragma once

#include <QDateTime>
#include <QString>

namespace recorder {

/// The device's clock: that of this machine, moved by what the driver or the bench has set. The file says by how much,
/// so that the interface can be given the same clock, and that it is kept from one run to the next.
class Clock {
public:
  /// `file` holds "+3600" or "-3600", seconds; the clock is this machine's without it.
  explicit Clock(const QString& file);

  QDateTime Now() const { return QDateTime::currentDateTime().addSecs(mOffset); }
  qint64 Offset() const { return mOffset; }  ///< seconds

  /// Writes the file as it is held here. False when that is impossible.
  bool Save() const;

  /// Sets the clock, from the year 1970 to 2199. False when the file cannot be written.
  bool Set(const QDateTime& now);

  /// This machine's clock again.
  bool SetReal();

private:
  bool Move(qint64 offset);

  QString mFile;
  qint64 mOffset = 0;
};

}  // namespace recorder
