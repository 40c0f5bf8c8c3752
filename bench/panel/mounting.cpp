#include "bench/panel/mounting.h"

#include <QFile>
#include <QFileInfo>
#include <cmath>

#include "recorder/base/files.h"

namespace {
constexpr QPointF kMiddle(240, 160);
constexpr qint64 kLongest = 40;  // bytes of the file
}  // namespace

QPointF Mounting::Felt(QPointF at) const {
  const double turn = skew / 100.0;
  const double size = 1 - std::abs(turn);
  const QPointF from = at - kMiddle;
  return kMiddle + QPointF(size * from.x() + turn * from.y() + x, size * from.y() - turn * from.x() + y);
}

Mounting Mounting::Read(const QString& path) {
  QFile file(path);
  if (!QFileInfo(file).isFile() || !file.open(QIODevice::ReadOnly)) return {};
  const QList<QByteArray> numbers = file.read(kLongest).trimmed().split(' ');
  if (numbers.size() != 4) return {};
  bool good = true;
  const auto take = [&](int i, int least, int most) {
    bool isNumber = false;
    const int number = numbers[i].toInt(&isNumber);
    good = good && isNumber && number >= least && number <= most;
    return number;
  };
  const Mounting mounting{take(0, -kMostSkew, kMostSkew), take(1, kLeastX, kMostX), take(2, kLeastY, kMostY),
                          take(3, 0, kMostNoise)};
  return good ? mounting : Mounting();
}

bool Mounting::Write(const QString& file) const {
  return recorder::WriteWhole(file, QStringLiteral("%1 %2 %3 %4\n").arg(skew).arg(x).arg(y).arg(noise).toLatin1());
}
