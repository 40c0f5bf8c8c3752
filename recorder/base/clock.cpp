#include "recorder/base/clock.h"

#include <QFile>
#include <QFileInfo>
#include <cmath>

#include "recorder/base/files.h"

namespace recorder {
namespace {
constexpr qint64 kLongest = 16;              // bytes of the file
constexpr qint64 kFarthest = 10000000000LL;  // seconds

qint64 Seconds(qint64 ms) {
  return std::llround(static_cast<double>(ms) / 1000);
}
}  // namespace

Clock::Clock(const QString& file) : mFile(file) {
  QFile offset(mFile);
  qint64 seconds = 0;
  if (QFileInfo(offset).isFile() && offset.open(QIODevice::ReadOnly))
    seconds = offset.read(kLongest).trimmed().toLongLong();
  if (std::abs(seconds) <= kFarthest) mOffset = seconds * 1000;
}

qint64 Clock::Offset() const {
  return Seconds(mOffset + Gained());
}

void Clock::SetMachine(const QDateTime& now, bool wasTaken) {
  mShift = QDateTime::currentDateTime().msecsTo(now);
  if (wasTaken) mOffset -= mShift;
}

bool Clock::Skip(qint64 ms) {
  mShift += ms;
  mOffset += ms * (mSpeed - 1);
  return Save();
}

void Clock::SetSpeed(int speed) {
  mOffset += Gained();
  mSince.start();
  mSpeed = speed;
}

bool Clock::Set(const QDateTime& now) {
  return Move(Machine().msecsTo(now));
}

bool Clock::SetReal() {
  return Move(0);
}

bool Clock::Move(qint64 offset) {
  mOffset = offset;
  mSince.start();
  return Save();
}

bool Clock::Save() const {
  const qint64 seconds = Seconds(mOffset + Gained() + mShift);
  return WriteWhole(mFile, (seconds < 0 ? QByteArray() : QByteArray("+")) + QByteArray::number(seconds) + '\n');
}

}  // namespace recorder
