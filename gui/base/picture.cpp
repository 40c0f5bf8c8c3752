#include "gui/base/picture.h"

#include <QCache>
#include <QFile>
#include <QImage>

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

// By way of QImage: a pixmap that reads a file itself is kept a second time, in a cache of Qt's own. Null as well for a
// file that could be read in part: its picture would have a hole. `isThere`: the file is, whatever could be read of it.
QPixmap Read(const QString& path, bool* isThere) {
  QFile file(DevicePath(path));
  QImage image;
  const bool isRead = file.open(QIODevice::ReadOnly) && image.load(&file, nullptr) && file.error() == QFile::NoError;
  *isThere = isRead || file.exists();
  return isRead ? QPixmap::fromImage(image) : QPixmap();
}
}  // namespace

QPixmap Picture(const QString& path) {
  if (const QPixmap* known = Decoded().object(path)) return *known;
  const QString images = QLatin1String(device::kImages);
  const QString file = path.startsWith(u'/') ? path : images + path;
  const QString translated = images + Language() + u'/' + (file.startsWith(images) ? file.mid(images.size()) : file);
  QPixmap picture;
  bool isWhole = true;  // it is null for want of a file alone
  for (const QString& place : IsSourceLanguage() ? QStringList{file} : QStringList{translated, file}) {
    if (!picture.isNull()) break;
    bool isThere = false;
    picture = Read(place, &isThere);
    isWhole = isWhole && !(picture.isNull() && isThere);
  }
  if (picture.isNull()) qDebug("picture: missing: %s", qPrintable(file));
  if (!isWhole) return picture;  // there was no memory or no descriptor for it: the next painting tries again
  Decoded().insert(path, new QPixmap(picture), BytesOf(picture) + 1);
  return picture;
}

void ForgetPictures() {
  Decoded().clear();
}

bool Covers(const QPixmap& picture, QSize area) {
  return !picture.hasAlpha() && picture.width() >= area.width() && picture.height() >= area.height();
}
