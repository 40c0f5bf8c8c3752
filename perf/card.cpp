#include "perf/card.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <QDateTime>
#include <QFile>
#include <QtEndian>

namespace {
/// An AVI of which only what the catalogue reads is there, with the recorder's trailer.
QByteArray Recording() {
  QByteArray avi(1024, '\0');
  avi.replace(0, 4, "RIFF").replace(8, 8, "AVI LIST").replace(20, 8, "hdrlavih");
  qToLittleEndian<quint32>(56, avi.data() + 28);
  qToLittleEndian<quint32>(30, avi.data() + 132);
  qToLittleEndian<quint32>(30 * kRecordingSeconds, avi.data() + 140);
  return avi.replace(1020, 4, QByteArray("\0\1^\0", 4));
}
}  // namespace

bool FillCard(const QString& folder, int count) {
  const QByteArray recording = Recording();
  const char* const kinds[] = {"rec", "rec", "rec", "pmr", "evt", "ndf"};
  const QDateTime first(QDate(2023, 1, 1), QTime(12, 0), Qt::UTC);
  for (int i = 0; i < count; ++i) {
    const QDateTime start = first.addSecs(qint64{i} * 7919 % count);
    const QByteArray name = QFile::encodeName(
        QStringLiteral("%1/%2%3_%4.avi")
            .arg(folder, QLatin1String(kinds[i % 6]), QString::number(i % 2), start.toString("yyyyMMdd_HHmmss")));
    const int file = open(name.constData(), O_CREAT | O_EXCL | O_WRONLY | O_CLOEXEC, 0600);
    const timespec modified{time_t(start.toSecsSinceEpoch() + kRecordingSeconds), 0};
    const timespec times[] = {modified, modified};
    const bool good = file >= 0 && write(file, recording.constData(), size_t(recording.size())) == recording.size() &&
                      futimens(file, times) == 0;
    if (file >= 0) close(file);
    if (!good) return false;
  }
  return true;
}
