#include "pictures/canvas.h"

#include <QFontMetricsF>

#include "pictures/palette.h"
#include "pictures/picturetable.h"

namespace {
constexpr int kSmallest = 13;  // pixels of a caption that can still be read at a glance

QColor BadgeColour(const QString& badge) {
  using namespace palette;
  static const QHash<QString, QColor> kMeanings = {
      {QStringLiteral("clock"), kWarn},       {QStringLiteral("battery-alert"), kWarn},
      {QStringLiteral("thermometer"), kWarn}, {QStringLiteral("alert"), kWarn},
      {QStringLiteral("flash"), kEvent},      {QStringLiteral("refresh"), kAccent},
      {QStringLiteral("check"), kAccent},     {QStringLiteral("run"), kAccent},
  };
  return kMeanings.value(badge, kText);
}
}  // namespace

Canvas::Canvas(QSize size, const Glyphs& glyphs, bool fits)
    : mImage(size, QImage::Format_RGB32), mGlyphs(glyphs), mFits(fits) {
  mImage.fill(palette::kBg);
  mPainter.begin(&mImage);
}

void Canvas::Frame(const QRect& box, int thick, const QColor& colour) {
  Fill({box.left(), box.top(), box.width(), thick}, colour);
  Fill({box.left(), box.bottom() + 1 - thick, box.width(), thick}, colour);
  Fill({box.left(), box.top(), thick, box.height()}, colour);
  Fill({box.right() + 1 - thick, box.top(), thick, box.height()}, colour);
}

void Canvas::Shape(const QPainterPath& path, const QColor& colour) {
  mPainter.setRenderHint(QPainter::Antialiasing, true);
  mPainter.fillPath(path, colour);
  mPainter.setRenderHint(QPainter::Antialiasing, false);
}

void Canvas::Text(const QRect& box, const QString& text, int pixels, QFont::Weight weight, const QColor& ink,
                  Qt::Alignment align) {
  QFont font(QStringLiteral("NanumBarunGothic"));
  font.setPixelSize(pixels);
  font.setWeight(weight);
  font.setStyleStrategy(QFont::NoSubpixelAntialias);
  font.setHintingPreference(QFont::PreferNoHinting);
  if (text.isEmpty()) throw PictureError(QStringLiteral("it has no caption"));
  if (!All().contains(box))
    throw PictureError(QStringLiteral("the box of \"%1\" reaches beyond the picture").arg(text));
  double width = 0, height = 0;
  const auto fits = [&] {
    const QFontMetricsF metrics(font);
    width = metrics.horizontalAdvance(text);
    height = metrics.tightBoundingRect(text).height();
    return width <= box.width() && height <= box.height();
  };
  while (!fits() && mFits && font.pixelSize() > kSmallest) font.setPixelSize(font.pixelSize() - 1);
  if (!fits())
    throw PictureError(QStringLiteral("\"%1\" is %2 x %3 pixels, its box %4 x %5")
                           .arg(text)
                           .arg(width)
                           .arg(height)
                           .arg(box.width())
                           .arg(box.height()));
  mPainter.setFont(font);
  mPainter.setPen(ink);
  mPainter.drawText(box, int(align | Qt::AlignVCenter) | Qt::TextSingleLine | Qt::TextDontClip, text);
}

void Canvas::Icon(const QString& icon, QPointF centre, double em, const QColor& ink, const QColor& ground, bool plain) {
  const auto draw = [this](const QString& glyph, double size, QPointF middle, const QColor& colour) {
    const QPainterPath outline = mGlyphs.Outline(glyph, size).translated(middle);
    if (!QRectF(All()).contains(outline.boundingRect()))
      throw PictureError(QStringLiteral("glyph \"%1\" reaches beyond the picture").arg(glyph));
    Shape(outline, colour);
  };
  draw(icon.section(u'+', 0, 0), em, centre, ink);
  const QString badge = icon.section(u'+', 1);
  if (badge.isEmpty()) return;
  const QPointF corner = centre + QPointF(0.36 * em, 0.32 * em);
  QPainterPath disc;
  disc.addEllipse(corner, 0.31 * em, 0.31 * em);
  Shape(disc, ground);
  draw(badge, em / 2, corner, plain ? ink : BadgeColour(badge));
}

QImage Canvas::Take() {
  mPainter.end();
  return mImage.convertToFormat(QImage::Format_RGB888);
}
