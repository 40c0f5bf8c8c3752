#include "bench/lcd/compose.h"

#include <algorithm>
#include <cstring>

#include "bench/lcd/lcd.h"

namespace {
constexpr int kFull = 100000;
constexpr int kTile = 16;  // 30 × 20 tiles: 600 rectangles at most

QRgb Dimmed(QRgb pixel, int of256) {
  const auto part = [of256](int value) { return value * of256 / 256; };
  return qRgb(part(qRed(pixel)), part(qGreen(pixel)), part(qBlue(pixel)));
}

bool IsTileChanged(const QImage& before, const QImage& after, const QRect& tile) {
  for (int y = tile.top(); y <= tile.bottom(); ++y) {
    const qsizetype at = qsizetype{tile.left()} * 4;
    if (std::memcmp(before.constScanLine(y) + at, after.constScanLine(y) + at, size_t(tile.width()) * 4) != 0)
      return true;
  }
  return false;
}
}  // namespace

QImage Compose(const QImage& raw, const QImage& video, int backlight) {
  QImage seen(Lcd::kWidth, Lcd::kHeight, QImage::Format_RGB32);
  if (raw.isNull() || backlight <= 0) {
    seen.fill(Qt::black);
    return seen;
  }
  const int of256 = 64 + 192 * std::min(backlight, kFull) / kFull;
  const int width = seen.width();
  for (int y = 0; y < seen.height(); ++y) {
    const auto* overlay = reinterpret_cast<const QRgb*>(raw.constScanLine(y));
    const auto* behind = video.isNull() ? nullptr : reinterpret_cast<const QRgb*>(video.constScanLine(y));
    auto* to = reinterpret_cast<QRgb*>(seen.scanLine(y));
    for (int x = 0; x < width; ++x) {
      QRgb pixel = overlay[x] | 0xFF000000;
      if (pixel == kKeyColour) pixel = behind ? behind[x] | 0xFF000000 : qRgb(0, 0, 0);
      to[x] = of256 == 256 ? pixel : Dimmed(pixel, of256);
    }
  }
  return seen;
}

QImage FullScreen(const Picture& picture) {
  const QImage image(reinterpret_cast<const uchar*>(picture.pixels.data()), picture.width, picture.height,
                     qsizetype{picture.width} * 4, QImage::Format_RGB32);
  return image.scaled(Lcd::kWidth, Lcd::kHeight, Qt::IgnoreAspectRatio, Qt::SmoothTransformation)
      .convertToFormat(QImage::Format_RGB32);
}

QRegion Changed(const QImage& before, const QImage& after) {
  if (before.isNull()) return after.rect();
  QRegion changed;
  for (int y = 0; y < after.height(); y += kTile) {
    for (int x = 0; x < after.width(); x += kTile) {
      const QRect tile = QRect(x, y, kTile, kTile) & after.rect();
      if (IsTileChanged(before, after, tile)) changed += tile;
    }
  }
  return changed;
}
