#pragma once

#include <fcntl.h>
#include <sys/stat.h>

#include <QDateTime>
#include <QtEndian>

#include "tests/fake/testroot.h"

/// Recordings on the card of a test's root.
namespace card {

/// The head of an AVI as the recorder writes it, `frames` at `rate` a second, without any frame; then the trailer.
inline QByteArray Avi(quint32 frames, quint32 rate = 1, const QByteArray& trailer = QByteArray(4, '\0')) {
  QByteArray bytes;
  const auto number = [&bytes](quint32 value) {
    const quint32 little = qToLittleEndian(value);
    bytes.append(reinterpret_cast<const char*>(&little), sizeof little);
  };
  bytes.append("RIFF");
  number(200);
  bytes.append("AVI LIST");
  number(192);
  bytes.append("hdrlavih");
  number(56);
  bytes.append(56, '\0');  // the main header
  bytes.append("LIST");
  number(116);
  bytes.append("strlstrh");
  number(56);
  bytes.append("vidsMJPG").append(12, '\0');  // up to the scale
  number(1);
  number(rate);
  number(0);
  number(frames);
  return bytes.append(20, '\0').append(trailer);
}

/// Puts a recording on the card, written `at` seconds after 1970.
inline void Put(const TestRoot& root, const QString& name, qint64 at, const QByteArray& bytes = Avi(30)) {
  const QString path = QStringLiteral("/mnt/mmc/") + name;
  root.Write(path, bytes);
  const timespec times[2] = {{at, 0}, {at, 0}};
  if (utimensat(AT_FDCWD, QFile::encodeName(root.Path(path)).constData(), times, 0) != 0) qFatal("utimensat");
}

/// `count` normal recordings of the front camera, one a minute from 2023-01-01 12:00, the newest last.
inline void PutMany(const TestRoot& root, int count, char camera = '0') {
  const QDateTime start(QDate(2023, 1, 1), QTime(12, 0));
  for (int i = 0; i < count; ++i) {
    const QDateTime at = start.addSecs(60 * i);
    Put(root,
        QStringLiteral("rec%1_%2.avi").arg(QLatin1Char(camera)).arg(at.toString(QStringLiteral("yyyyMMdd_HHmmss"))),
        at.toSecsSinceEpoch());
  }
}

/// No recording and no stop record.
inline void Clear(const TestRoot& root) {
  QDir folder(root.Path(QStringLiteral("/mnt/mmc")));
  const QStringList names = folder.entryList(QDir::Files);
  for (const QString& name : names) folder.remove(name);
  root.Remove(QStringLiteral("/mnt/mmc/Setup/record_stop.info"));
}

}  // namespace card
