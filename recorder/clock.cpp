#include "recorder/clock.h"

#include <QFile>
#include <QFileInfo>

#include "recorder/files.h"

namespace recorder {
namespace {
constexpr qint64 kLongest = 16;              // bytes of the file
constexpr qint64 kFarthest = 10000000000LL;  // seconds
}  // namespace

Clock::Clock(const QString& file) : mFile(file) {
  QFile offset(mFile);
  bool good = false;
  if (QFileInfo(offset).isFile() && offset.open(QIODevice::ReadOnly))
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
  return Save();
}

bool Clock::Save() const {
  return WriteWhole(mFile, (mOffset < 0 ? QByteArray() : QByteArray("+")) + QByteArray::number(mOffset) + '\n');
}

}  // namespace recorder
