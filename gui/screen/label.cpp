#include "gui/screen/label.h"

#include <QFontMetrics>
#include <QPaintEngine>
#include <QPaintEvent>
#include <QPainter>
#include <algorithm>
#include <cstring>

#include "gui/base/language.h"

namespace {
constexpr int kNarrowest = 88;  // percent of the font's width that can still be read at a glance
constexpr int kSmallest = 12;   // pixels of its size
constexpr int kOverhang = 4;    // pixels of a letter beyond its place in the line

QRect AreaOf(const QFont& font, const QString& text, QSize box) {
  return QFontMetrics(font).boundingRect({QPoint(), box}, 0, text);
}

// What a widget's painter has in `place`, a view into what it paints on; null when that is no image.
QImage PaintedIn(const QPainter& painter, const QRect& place) {
  const QPaintDevice* device = painter.paintEngine()->paintDevice();
  if (device->devType() != QInternal::Image) return {};
  const auto& page = *static_cast<const QImage*>(device);
  const QRect there = painter.deviceTransform().mapRect(place);
  if (page.depth() % 8 != 0 || !page.rect().contains(there)) return {};
  return {page.constScanLine(there.y()) + there.x() * page.depth() / 8, there.width(), there.height(),
          page.bytesPerLine(), page.format()};
}

bool AreSame(const QImage& a, const QImage& b) {
  if (a.size() != b.size() || a.format() != b.format()) return false;
  for (int y = 0; y < a.height(); ++y)
    if (std::memcmp(a.constScanLine(y), b.constScanLine(y), size_t(a.width() * a.depth() / 8)) != 0) return false;
  return true;
}
}  // namespace

TextLabel::TextLabel(QWidget* parent) : QLabel(parent) {
  setAttribute(Qt::WA_NoSystemBackground);  // it has none: nothing to be painted for it
}

void TextLabel::changeEvent(QEvent* event) {
  QLabel::changeEvent(event);
  mText.clear();
}

void TextLabel::paintEvent(QPaintEvent* event) {
  if (text().isEmpty()) return;
  QPainter painter(this);
  painter.setFont(mFont);
  if (mText != text() || mSize != size() || mAlignment != alignment()) {  // it must come soon: remembered the next time
    mText = text();
    mSize = size();
    mAlignment = alignment();
    mPlace = QRect();
    mFont = PaintedFont();
    painter.setFont(mFont);
    painter.drawText(rect(), int(mAlignment), mText);
    return;
  }
  if (mPlace.isNull()) Measure();
  if (!event->region().intersects(mPlace)) return;
  const bool isWhole = event->rect().contains(mPlace) && event->region().rectCount() == 1;
  const QImage ground = isWhole ? PaintedIn(painter, mPlace) : QImage();
  if (!ground.isNull() && AreSame(ground, mGround)) {
    painter.setCompositionMode(QPainter::CompositionMode_Source);
    painter.drawImage(mPlace, mPicture);
    return;
  }
  mGround = ground.copy();
  painter.drawText(rect(), int(mAlignment), mText);
  mPicture = ground.copy();
}

QFont TextLabel::PaintedFont() const {
  if (IsSourceLanguage()) return font();
  QFont fitting = font();
  fitting.setPixelSize(FittingSize(fitting, {text()}, size()));
  return FittingFont(fitting, text(), width());
}

QRect TextLabel::Letters() const {
  return QFontMetrics(PaintedFont()).boundingRect(rect(), int(alignment()), text());
}

void TextLabel::Measure() {
  mPlace = Letters().adjusted(-kOverhang, -kOverhang, kOverhang, kOverhang) & rect();
  mGround = mPicture = QImage();
}

QFont FittingFont(QFont font, const QString& text, int width) {
  for (int stretch = QFont::Unstretched; stretch >= kNarrowest; --stretch) {
    font.setStretch(stretch);
    if (AreaOf(font, text, {width, 0}).width() <= width) break;
  }
  return font;
}

int FittingSize(QFont font, const QStringList& texts, QSize box) {
  int size = font.pixelSize();
  if (IsSourceLanguage()) return size;
  const auto fits = [&](const QString& text) {
    font.setPixelSize(size);
    const QSize area = AreaOf(FittingFont(font, text, box.width()), text, box).size();
    return area.width() <= box.width() && area.height() <= box.height();
  };
  while (size > kSmallest && !std::ranges::all_of(texts, fits)) --size;
  return size;
}

void SetLabel(QLabel* label, const LabelRow& row) {
  label->setObjectName(QLatin1String(row.name));
  label->setGeometry(row.box);
  QFont face = label->font();
  face.setPixelSize(row.px);
  face.setBold(row.bold);
  label->setFont(face);
  QPalette ink = label->palette();
  ink.setColor(QPalette::WindowText, row.ink);
  label->setPalette(ink);
  label->setTextFormat(Qt::PlainText);
  label->setAlignment(row.align | Qt::AlignVCenter);
}

QLabel* AddLabel(QWidget* screen, const LabelRow& row, const QString& text) {
  auto* label = new TextLabel(screen);
  SetLabel(label, row);
  label->setText(text);
  return label;
}
