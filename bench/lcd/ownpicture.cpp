#include "bench/lcd/ownpicture.h"

#include <QBuffer>
#include <QImage>
#include <QImageReader>
#include <QPainter>
#include <algorithm>

#include "bench/lcd/lcd.h"

namespace {
constexpr qint64 kMostPixels = 16 * 1024 * 1024;
constexpr QSize kScreen(Lcd::kWidth, Lcd::kHeight);
constexpr QColor kGround(38, 34, 35);

// No others: a drawing could name further files of this machine.
const char* const kFormats[] = {"bmp", "gif", "jpeg", "png"};

bool IsKnown(const QByteArray& format) {
  return std::any_of(std::begin(kFormats), std::end(kFormats), [&](const char* known) { return format == known; });
}
}  // namespace

QByteArray OwnPicture(const QByteArray& file, QString* error) {
  QBuffer bytes;
  bytes.setData(file);
  bytes.open(QIODevice::ReadOnly);
  QImageReader reader(&bytes);
  reader.setDecideFormatFromContent(true);
  if (!IsKnown(reader.format())) {
    *error = QStringLiteral("The body is no picture: BMP, GIF, JPEG and PNG are.");
    return {};
  }
  const QSize size = reader.size();
  if (size.isEmpty() || qint64{size.width()} * size.height() > kMostPixels) {
    *error = QStringLiteral("The picture has no pixels, or more than 16 million.");
    return {};
  }
  reader.setAutoTransform(true);  // as it was held
  const QImage picture = reader.read();
  if (picture.isNull()) {
    *error = QStringLiteral("The picture cannot be read: it is damaged.");
    return {};
  }
  QImage screen(kScreen, QImage::Format_RGB888);
  screen.fill(kGround);
  const QSize whole = picture.size().scaled(kScreen, Qt::KeepAspectRatio).expandedTo(QSize(1, 1));
  const QImage fitting = picture.scaled(whole, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
  QPainter(&screen).drawImage((kScreen.width() - fitting.width()) / 2, (kScreen.height() - fitting.height()) / 2,
                              fitting);
  QByteArray bmp;
  QBuffer target(&bmp);
  target.open(QIODevice::WriteOnly);
  screen.save(&target, "BMP");
  return bmp;
}
