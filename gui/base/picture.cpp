#include "gui/base/picture.h"

#include <QCache>

#include "gui/base/devicepath.h"

namespace {
constexpr int kCacheBytes = 8 * 1024 * 1024;

qsizetype BytesOf(const QPixmap& picture) {
  return qsizetype{picture.width()} * picture.height() * picture.depth() / 8;
}
}  // namespace

QPixmap Picture(const QString& path) {
  // Never destroyed: pixmaps must not outlive the application object, and the process ends with it.
  static auto& decoded = *new QCache<QString, QPixmap>(kCacheBytes);  // NOLINT: owned by the process
  if (const QPixmap* known = decoded.object(path)) return *known;
  const QString file = path.startsWith(u'/') ? path : QLatin1String(device::kImages) + path;
  // By way of QImage: a pixmap that reads a file itself is kept a second time, in a cache of Qt's own.
  QPixmap picture = QPixmap::fromImage(QImage(DevicePath(file)));
  if (picture.isNull()) qDebug("picture: missing: %s", qPrintable(file));
  decoded.insert(path, new QPixmap(picture), BytesOf(picture) + 1);
  return picture;
}

bool Covers(const QPixmap& picture, QSize area) {
  return !picture.hasAlpha() && picture.width() >= area.width() && picture.height() >= area.height();
}
