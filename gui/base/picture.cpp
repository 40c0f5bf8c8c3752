#include "gui/base/picture.h"

#include <QCache>

#include "gui/base/devicepath.h"
#include "gui/base/language.h"

namespace {
constexpr int kCacheBytes = 8 * 1024 * 1024;

qsizetype BytesOf(const QPixmap& picture) {
  return qsizetype{picture.width()} * picture.height() * picture.depth() / 8;
}

QCache<QString, QPixmap>& Decoded() {
  // Never destroyed: pixmaps must not outlive the application object, and the process ends with it.
  static auto& decoded = *new QCache<QString, QPixmap>(kCacheBytes);  // NOLINT: owned by the process
  return decoded;
}

// By way of QImage: a pixmap that reads a file itself is kept a second time, in a cache of Qt's own.
QPixmap Read(const QString& file) {
  return QPixmap::fromImage(QImage(DevicePath(file)));
}
}  // namespace

QPixmap Picture(const QString& path) {
  if (const QPixmap* known = Decoded().object(path)) return *known;
  const QString images = QLatin1String(device::kImages);
  const QString file = path.startsWith(u'/') ? path : images + path;
  QPixmap picture;
  if (!IsSourceLanguage())
    picture = Read(images + Language() + u'/' + (file.startsWith(images) ? file.mid(images.size()) : file));
  if (picture.isNull()) picture = Read(file);
  if (picture.isNull()) qDebug("picture: missing: %s", qPrintable(file));
  Decoded().insert(path, new QPixmap(picture), BytesOf(picture) + 1);
  return picture;
}

void ForgetPictures() {
  Decoded().clear();
}

bool Covers(const QPixmap& picture, QSize area) {
  return !picture.hasAlpha() && picture.width() >= area.width() && picture.height() >= area.height();
}
