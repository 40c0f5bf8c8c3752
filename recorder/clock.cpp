#include "recorder/clock.h"

#include <QFile>

#include "recorder/files.h"

namespace recorder {
namespace {
constexpr qint64 kLongest = 16;              // bytes of the file
constexpr qint64 kFarthest = 10000000000LL;  // seconds
}  // namespace

Clock::Clock(const QString& file) : mFile(file) {
  QFile offset(mFile);
  bool good = false;
  if (offset.open(QIODevice::ReadOnly) && !offset.isSequential())
    mOffset = offset.read(kLongest).trimmed().toLongLong(&good);
  if (!good || std::abs(mOffset) > kFarthest) mOffset = 0;
}

bool Clock::Set(const QDateTime& now) {
  return Move(QDateTime::currentDateTime().secsTo(now));
}

bool Clock::SetReal() {
  return Move(0);
}

bool Clock::Move(qint64 offset) {
  mOffset = offset;
  return WriteWhole(mFile, (offset < 0 ? QByteArray() : QByteArray("+")) + QByteArray::number(offset) + '\n');
}

}  // namespace recorder
