// Tiles of the menu and option screens, and the cells of the power-cut table.
#include "pictures/palette.h"
#include "pictures/styles.h"

using namespace palette;

namespace {
const QRect kCard(2, 2, 156, 126);
}  // namespace

// Rows 10 to 33 stay free: a label may stand there.
void DrawTile(Canvas& canvas, const PictureRow& row) {
  const bool dis = row.state == QLatin1String("dis");
  const QColor& ground = dis ? kDis : kSurface;
  const QColor& ink = dis ? kTextDis : kText;
  canvas.Fill(kCard, ground);
  canvas.Icon(row.icon, {80, 63}, 54, ink, ground, dis);
  canvas.Text({6, 92, 148, 28}, row.caption[0], 20, QFont::Bold, ink);
}

void DrawTileValue(Canvas& canvas, const PictureRow& row) {
  const bool off = row.state == QLatin1String("off");
  canvas.Fill(kCard, kSurface);
  canvas.Text({6, 9, 148, 24}, row.caption[0], 17, QFont::Normal, kText2);
  canvas.Icon(row.icon, {80, 58}, 42, off ? kTextDis : kText, kSurface, off);
  canvas.Text({6, 82, 148, 28}, row.caption[1], 22, QFont::Bold, off ? kText2 : kAccent);
  DrawSteps(canvas, row, {16, 3}, 115);
}

void DrawCell(Canvas& canvas, const PictureRow& row) {
  const QRect volts(4, 36, 72, 34);
  canvas.Fill(canvas.All().adjusted(2, 2, -2, -2), kSurface);
  canvas.Text({4, 9, 72, 20}, row.caption[0], 15, QFont::Normal, kText2);
  if (row.state == QLatin1String("off")) {
    canvas.Text(volts, row.caption[1], 22, QFont::Bold, kText2);
    return;
  }
  canvas.Text(volts, row.caption[1], 27, QFont::Bold, kText);
  canvas.Text({4, 70, 72, 20}, QStringLiteral("V"), 15, QFont::Normal, kText2);
}
