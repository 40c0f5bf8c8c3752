// What is touched: header, hot keys, buttons, keypad.
#include <QRegularExpression>

#include "pictures/palette.h"
#include "pictures/styles.h"

using namespace palette;

namespace {
void DrawHeaderGround(Canvas& canvas) {
  canvas.Fill(canvas.All(), kWell);
  canvas.Fill({0, 59, canvas.Width(), 1}, kLine);
}

// The screen in small, with the small picture at the sides that the figure's name says: "draw:pip-left-top".
void DrawPip(Canvas& canvas, const QString& figure, QPoint centre) {
  static const QRegularExpression kFigure(QStringLiteral("^draw:pip-(left|right)-(top|bottom)$"));
  if (!kFigure.match(figure).hasMatch()) throw PictureError(QStringLiteral("there is no figure \"%1\"").arg(figure));
  const QRect frame(centre - QPoint(17, 12), QSize(34, 24));
  QRect small(frame.topLeft() + QPoint(4, 4), QSize(14, 9));
  if (figure.contains(QLatin1String("right"))) small.moveRight(frame.right() - 4);
  if (figure.contains(QLatin1String("bottom"))) small.moveBottom(frame.bottom() - 4);
  canvas.Frame(frame, 2, kText);
  canvas.Fill(small, kAccent);
}
}  // namespace

void DrawTitle(Canvas& canvas, const PictureRow& row) {
  DrawHeaderGround(canvas);
  canvas.Text({16, 0, canvas.Width() - 20, 58}, row.caption[0], 24, QFont::Bold, kText, Qt::AlignLeft);
}

void DrawHeaderKey(Canvas& canvas, const PictureRow& row) {
  const double middle = canvas.Width() / 2.0;
  DrawHeaderGround(canvas);
  if (row.caption.isEmpty()) {
    canvas.Icon(row.icon, {middle, 29}, 36, kText, kWell);
    return;
  }
  canvas.Icon(row.icon, {middle, 20}, 26, kText, kWell);
  canvas.Text({2, 36, canvas.Width() - 4, 18}, row.caption[0], 15, QFont::Bold, kText);
}

void DrawToggle(Canvas& canvas, const PictureRow& row) {
  DrawHeaderGround(canvas);
  canvas.Fill({2, 5, canvas.Width() - 4, 49}, kSurface);
  DrawSteps(canvas, row, {14, 3}, 48);
  if (canvas.Width() == 140) {
    canvas.Icon(row.icon, {30, 26}, 28, kText, kSurface);
    canvas.Text({50, 12, 84, 28}, row.caption[0], 20, QFont::Bold, kText);
  } else {
    canvas.Icon(row.icon, {canvas.Width() / 2.0, 17}, 22, kText, kSurface);
    canvas.Text({4, 28, canvas.Width() - 8, 18}, row.caption[0], 15, QFont::Bold, kText);
  }
}

void DrawHotKey(Canvas& canvas, const PictureRow& row) {
  QColor icon = kText, caption = kText;
  if (row.state == QLatin1String("on")) icon = kAccent;
  if (row.state == QLatin1String("rec")) icon = kDanger;
  if (row.state == QLatin1String("off")) icon = caption = kText2;
  if (row.state == QLatin1String("dis")) icon = caption = kTextDis;
  canvas.Fill(canvas.All(), kWell);
  canvas.Frame(canvas.All(), 1, kLine);
  if (row.icon.startsWith(QLatin1String("draw:pip-")))
    DrawPip(canvas, row.icon, {35, 22});
  else
    canvas.Icon(row.icon, {35.5, 22}, 30, icon, kWell);
  canvas.Text({2, 39, 67, 18}, row.caption[0], 14, QFont::Bold, caption);
}

void DrawBarKey(Canvas& canvas, const PictureRow& row) {
  canvas.Fill(canvas.All(), kWell);
  canvas.Fill({0, 10, 1, 38}, kLine);
  canvas.Icon(row.icon, {40, 21}, 30, kText, kWell);
  canvas.Text({2, 38, 76, 18}, row.caption[0], 14, QFont::Bold, kText);
}

void DrawButton(Canvas& canvas, const PictureRow& row) {
  const struct {
    const char* state;
    QColor ground, ink;
  } looks[] = {{"primary", kAccent, kBlack}, {"sel", kAccent, kBlack},       {"primary-press", kDeep, kText},
               {"second", kRaised, kText},   {"second-press", kLine, kText}, {"off", kSurface, kText2}};
  for (const auto& look : looks) {
    if (row.state != QLatin1String(look.state)) continue;
    const QPointF middle(canvas.Width() / 2.0, canvas.Height() / 2.0);
    const int pixels = canvas.Height() < 46 ? 20 : 22;
    canvas.Fill(canvas.All(), look.ground);
    if (row.state == QLatin1String("off")) canvas.Frame(canvas.All(), 1, kLine);
    if (row.icon.isEmpty()) {
      canvas.Text(canvas.All(), row.caption.value(0), pixels, QFont::Bold, look.ink);
    } else if (row.caption.isEmpty()) {
      canvas.Icon(row.icon, middle, 34, look.ink, look.ground);
    } else {
      const int left = canvas.Width() / 2 - 12;
      canvas.Icon(row.icon, {middle.x() - 30, middle.y()}, 24, look.ink, look.ground);
      canvas.Text({left, 0, canvas.Width() - left, canvas.Height()}, row.caption[0], pixels, QFont::Bold, look.ink,
                  Qt::AlignLeft);
    }
  }
}

void DrawKey(Canvas& canvas, const PictureRow& row) {
  const bool primary = row.state == QLatin1String("primary");
  const QColor& ground = primary ? kAccent : kSurface;
  const QColor& ink = primary ? kBlack : kText;
  const int middle = canvas.Height() / 2;
  if (primary)
    canvas.Fill(canvas.All(), ground);
  else
    canvas.Fill(canvas.All().adjusted(2, 2, -2, -2), ground);
  if (row.icon.isEmpty()) {
    canvas.Text(canvas.All(), row.caption[0], 38, QFont::Bold, ink);
    return;
  }
  canvas.Icon(row.icon, {canvas.Width() / 2.0, middle - 10.0}, primary ? 26 : 40, ink, ground);
  canvas.Text({4, middle + (primary ? 7 : 16), canvas.Width() - 8, 22}, row.caption[0], primary ? 15 : 17, QFont::Bold,
              ink);
}

void DrawScroll(Canvas& canvas, const PictureRow& row) {
  const QRect card(2, 1, 76, 50);
  if (row.state == QLatin1String("number")) {
    canvas.Fill(card, kWell);
    canvas.Fill({24, 27, 32, 1}, kLine);
    return;
  }
  const bool dis = row.state == QLatin1String("dis");
  canvas.Fill(card, dis ? kDis : kSurface);
  canvas.Icon(row.icon, {40, 26}, 42, dis ? kRaised : kText, dis ? kDis : kSurface);
}

void DrawCheck(Canvas& canvas, const PictureRow& row) {
  canvas.Fill(canvas.All(), kSurface);
  canvas.Icon(row.icon, {20, 20}, 36, row.state == QLatin1String("on") ? kAccent : kText2, kSurface);
}

void DrawHandle(Canvas& canvas, const PictureRow& row) {
  const bool selected = row.state == QLatin1String("sel");
  const QColor& ground = selected ? kAccent : kRaised;
  QPainterPath tip(QPointF(40, 0));
  tip.lineTo(28, 12);
  tip.lineTo(52, 12);
  tip.closeSubpath();
  canvas.Shape(tip, ground);
  canvas.Fill({8, 12, 64, 32}, ground);
  canvas.Icon(row.icon, {40, 28}, 26, selected ? kBlack : kText, ground);
}
