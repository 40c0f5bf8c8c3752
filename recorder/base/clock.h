#pragma once

#include <QDateTime>
#include <QElapsedTimer>
#include <QString>

namespace recorder {

/// The device's clock: that of this machine, moved by what the driver or the bench has set. The file says by how much,
/// so that the interface can be given the same clock, and that it is kept from one run to the next. It may run faster
/// than this machine's: the file follows with each Save().
class Clock {
public:
  /// `file` holds "+3600" or "-3600", seconds; the clock is this machine's without it.
  explicit Clock(const QString& file);

  QDateTime Now() const { return Machine().addMSecs(mOffset + Gained()); }
  qint64 Offset() const;  ///< seconds, rounded, from this machine's clock

  /// This machine's clock, or what a replay takes for it.
  QDateTime Machine() const { return QDateTime::currentDateTime().addMSecs(mShift); }

  /// Takes `now` for this machine's clock from now on. `wasTaken`: the file was written when that was so already.
  /// Save() writes it.
  void SetMachine(const QDateTime& now, bool wasTaken);

  /// Time was left out: moves both on by `ms`, back when that is below 0, the device's by as much as it would have run.
  /// False when the file cannot be written.
  bool Skip(qint64 ms);

  /// Runs so many times as fast as this machine's from now on, 1..60. The file follows with each Save().
  void SetSpeed(int speed);
  int Speed() const { return mSpeed; }

  /// Writes the file as it is held here. False when that is impossible.
  bool Save() const;

  /// Sets the clock, from the year 1970 to 2199. False when the file cannot be written.
  bool Set(const QDateTime& now);

  /// This machine's clock again.
  bool SetReal();

private:
  bool Move(qint64 offset);
  qint64 Gained() const { return mSpeed > 1 ? (mSpeed - 1) * mSince.elapsed() : 0; }

  QString mFile;
  qint64 mOffset = 0;  // ms, of the device's clock from this machine's
  qint64 mShift = 0;   // ms, of what a replay takes for this machine's clock
  int mSpeed = 1;
  QElapsedTimer mSince;  // mOffset was right, at a speed above 1
};

}  // namespace recorder
