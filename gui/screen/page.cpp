#include "gui/screen/page.h"

#include <QPainter>

#include "gui/base/picture.h"

void Page::Add(QPoint at, const QString& path) {
  Add(at, Picture(path));
}

void Page::Add(const QRect& room, const QPixmap& picture) {
  const QRect place(room.topLeft(), room.size().boundedTo(picture.size()));
  if (!mExposed.intersects(place)) return;
  if (!picture.hasAlpha() && mGround.intersects(place)) mGround -= place;
  mPictures.push_back({place, picture});
}

// In a single rectangle a picture is copied line by line, in a region it is blended pixel by pixel.
void Page::Paint(QPainter& painter, const QBrush& ground) const {
  for (const QRect& part : mExposed) {
    painter.setClipRect(part);
    for (const QRect& rest : mGround) painter.fillRect(rest, ground);
    for (const auto& [place, picture] : mPictures)
      if (place.intersects(part)) painter.drawPixmap(place.topLeft(), picture, QRect({}, place.size()));
  }
  painter.setClipping(false);
}
