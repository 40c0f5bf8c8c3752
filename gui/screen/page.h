#pragma once

#include <QPixmap>
#include <QPoint>
#include <QRect>
#include <QRegion>
#include <vector>

class QBrush;
class QPainter;

/// The pictures of a page: painted in the order in which they were added, and a ground where none of them covers it.
/// What does not reach into `exposed` is left out. GUI thread.
class Page {
public:
  explicit Page(const QRegion& exposed) : mExposed(exposed), mGround(exposed) {}

  void Add(QPoint at, const QString& path);
  void Add(QPoint at, const QPixmap& picture) { Add(QRect(at, picture.size()), picture); }
  /// As much of the picture as there is room for.
  void Add(const QRect& room, const QPixmap& picture);
  void Paint(QPainter& painter, const QBrush& ground) const;

private:
  struct Placed {
    QRect place;
    QPixmap picture;
  };
  QRegion mExposed;
  QRegion mGround;  // what no picture covers
  std::vector<Placed> mPictures;
};
