#pragma once

#include <QImage>
#include <QPainter>

#include "pictures/glyphs.h"

/// One picture while it is drawn. Rectangles are whole pixels, without soft edges; icons and texts have soft edges.
class Canvas {
public:
  /// With `fits`, a text that does not fit is written smaller, down to 13 pixels.
  Canvas(QSize size, const Glyphs& glyphs, bool fits = false);

  int Width() const { return mImage.width(); }
  int Height() const { return mImage.height(); }
  QRect All() const { return mImage.rect(); }

  void Fill(const QRect& box, const QColor& colour) { mPainter.fillRect(box, colour); }
  void Frame(const QRect& box, int thick, const QColor& colour);  ///< inside `box`
  void Shape(const QPainterPath& path, const QColor& colour);

  /// One line, centred in `box` unless `align` says left. Throws PictureError when it is empty, wider or taller than
  /// the box, or when the box reaches beyond the picture.
  void Text(const QRect& box, const QString& text, int pixels, QFont::Weight weight, const QColor& ink,
            Qt::Alignment align = Qt::AlignHCenter);

  /// The glyph of `icon`, the centre of its ink at `centre`, `em` pixels large. "glyph+badge" puts a half as large
  /// badge at its right bottom, on a disc of the ground; badges that mean something have their own colour unless
  /// `plain`. Throws PictureError when a glyph is unknown or reaches beyond the picture.
  void Icon(const QString& icon, QPointF centre, double em, const QColor& ink, const QColor& ground,
            bool plain = false);

  /// The picture, 24 bits a pixel.
  QImage Take();

private:
  QImage mImage;
  QPainter mPainter;
  const Glyphs& mGlyphs;
  bool mFits;
};
