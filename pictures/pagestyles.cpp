// Pages, boxes, plates, rows and the pictures that stand on them.
#include "pictures/palette.h"
#include "pictures/styles.h"

using namespace palette;

namespace {
void DrawTimePage(Canvas& canvas, const QStringList& words) {
  const struct {
    QRect box;
    Qt::Alignment align;
  } places[] = {{{8, 8, 80, 49}, Qt::AlignLeft},       {{8, 73, 80, 49}, Qt::AlignLeft},
                {{8, 138, 80, 49}, Qt::AlignLeft},     {{215, 8, 30, 49}, Qt::AlignHCenter},
                {{328, 8, 30, 49}, Qt::AlignHCenter},  {{438, 8, 30, 49}, Qt::AlignHCenter},
                {{328, 73, 30, 49}, Qt::AlignHCenter}, {{438, 73, 30, 49}, Qt::AlignHCenter}};
  // 날짜 시간 시간대, then the units 년 월 일 시 분.
  for (int i = 0; i < words.size(); ++i)
    canvas.Text(places[i].box, words[i], 19, QFont::Normal, kText2, places[i].align);
}

void DrawMessagePage(Canvas& canvas, const PictureRow& row) {
  canvas.Icon(row.icon, {240, 96}, 88, kAccent, kBg);
  canvas.Text({16, 156, 448, 36}, row.caption.value(0), 27, QFont::Bold, kText);
  canvas.Text({16, 200, 448, 30}, row.caption.value(1), 20, QFont::Normal, kText2);
}
}  // namespace

void DrawBackground(Canvas& canvas, const PictureRow& row) {
  const QString& state = row.state;
  if (state == QLatin1String("dim")) canvas.Fill(canvas.All(), kWell);
  if (state == QLatin1String("paper")) canvas.Fill(canvas.All(), kPaper);
  if (state == QLatin1String("clock")) canvas.Fill({16, 16, 448, 220}, kDial);
  if (state == QLatin1String("card")) canvas.Icon(row.icon, {240, 76}, 72, kAccent, kBg);
  if (state == QLatin1String("page")) DrawMessagePage(canvas, row);
  if (state == QLatin1String("time")) DrawTimePage(canvas, row.caption);
  if (state == QLatin1String("guide")) {
    canvas.Text({16, 10, 448, 28}, row.caption.value(0), 19, QFont::Normal, kText2);
    canvas.Icon(row.icon, {240, 194}, 60, kRaised, kBg);
  }
}

void DrawBox(Canvas& canvas, const PictureRow& row) {
  const bool banner = row.state == QLatin1String("banner");
  canvas.Fill(canvas.All(), kWell);
  canvas.Frame(canvas.All(), 2, banner ? kAccent : kLine);
  if (!banner) canvas.Fill({0, 0, canvas.Width(), 4}, kAccent);
  if (row.state == QLatin1String("question")) canvas.Fill({24, 156, 392, 1}, kSurface);
}

void DrawIcon(Canvas& canvas, const PictureRow& row) {
  const QColor& ink = row.state == QLatin1String("danger") ? kDanger
                      : row.state == QLatin1String("warn") ? kWarn
                                                           : kAccent;
  canvas.Fill(canvas.All(), kWell);
  canvas.Icon(row.icon, {44, 44}, 76, ink, kWell);
}

void DrawRow(Canvas& canvas, const PictureRow&) {
  canvas.Fill({0, 0, canvas.Width(), canvas.Height() - 2}, kSurface);
}

void DrawRowIcon(Canvas& canvas, const PictureRow& row) {
  canvas.Fill(canvas.All(), kSurface);
  if (row.icon.isEmpty()) return;
  const QColor ink = row.state == QLatin1String("protect") ? kAccent
                     : row.state == QLatin1String("off")   ? kText2
                                                           : KindColour(row.state);
  const QPointF middle = row.icon.contains(u'+') ? QPointF(19, 20) : QPointF(22, 22);
  canvas.Icon(row.icon, middle, 32, ink, kSurface);
}

void DrawField(Canvas& canvas, const PictureRow& row) {
  const bool selected = row.state == QLatin1String("sel");
  canvas.Fill(canvas.All(), selected ? kDeep : kWell);
  canvas.Frame(canvas.All(), selected ? 2 : 1, selected ? kAccent : kLine);
}

void DrawPlate(Canvas& canvas, const PictureRow& row) {
  const double middle = canvas.Height() / 2.0;
  if (row.state == QLatin1String("paper")) {
    canvas.Fill(canvas.All(), kPanel);
    canvas.Frame(canvas.All(), 1, kPaperLine);
  } else if (row.state == QLatin1String("dial")) {
    canvas.Fill(canvas.All(), kDial);
    canvas.Icon(row.icon, {26, middle}, 26, kInk, kDial);
  } else if (row.state == QLatin1String("warn") && row.caption.isEmpty()) {
    canvas.Fill(canvas.All(), kWarn);
    canvas.Icon(row.icon, {20, middle}, 26, kBlack, kWarn);
  } else if (row.state == QLatin1String("warn")) {
    canvas.Fill(canvas.All(), kWarn);
    canvas.Icon(row.icon, {56, middle}, 34, kBlack, kWarn);
    canvas.Text({80, 0, canvas.Width() - 80, canvas.Height()}, row.caption[0], 22, QFont::Bold, kBlack, Qt::AlignLeft);
  } else {
    canvas.Fill(canvas.All(), kWell);
    canvas.Frame(canvas.All(), 1, kLine);
    canvas.Icon(row.icon, {17, middle}, 20, kText2, kWell);
  }
}

void DrawStatusIcon(Canvas& canvas, const PictureRow& row) {
  QColor ink = kText;
  if (row.state == QLatin1String("off")) ink = kTextDis;
  if (row.state == QLatin1String("accent")) ink = kAccent;
  if (row.state == QLatin1String("event") || row.state == QLatin1String("normal") ||
      row.state == QLatin1String("parking"))
    ink = KindColour(row.state);
  const QPointF middle(canvas.Width() / 2.0, canvas.Height() / 2.0);
  canvas.Icon(row.icon, middle, canvas.Width() * 0.75, ink, kBg);
}

void DrawAmPm(Canvas& canvas, const PictureRow& row) {
  canvas.Fill(canvas.All(), kDial);
  canvas.Text(canvas.All(), row.caption[0], 30, QFont::Bold, kInk);
}

// The last column of a kind is the page's, so that ten steps side by side can be counted.
void DrawBar(Canvas& canvas, const PictureRow& row) {
  if (row.state == QLatin1String("well")) {
    canvas.Fill(canvas.All(), kWell);
    canvas.Frame(canvas.All(), 1, kLine);
  } else if (row.state == QLatin1String("accent")) {
    canvas.Fill(canvas.All(), kAccent);
  } else if (row.state == QLatin1String("line")) {
    canvas.Fill(canvas.All(), kText);
  } else if (row.state != QLatin1String("end")) {
    canvas.Fill(canvas.All().adjusted(0, 0, -1, 0), KindColour(row.state));
  }
}

void DrawMarker(Canvas& canvas, const PictureRow&) {
  const QPointF target(40.5, 35.5);  // the centre of pixel (40, 35)
  const auto disc = [target](double radius) {
    QPainterPath path;
    path.addEllipse(target, radius, radius);
    return path;
  };
  canvas.Fill(canvas.All(), kPaper);
  canvas.Shape(disc(23.5) - disc(20.5), kDeep);
  canvas.Fill({6, 34, 68, 3}, kInk);
  canvas.Fill({39, 1, 3, 68}, kInk);
  canvas.Shape(disc(6), kEventInk);
}

void DrawMark(Canvas& canvas, const PictureRow& row) {
  canvas.Fill(canvas.All(), kWell);
  canvas.Frame(canvas.All(), 1, kText);
  canvas.Icon(row.icon, {20, 16}, 26, kWarn, kWell);
}

void DrawLogo(Canvas& canvas, const PictureRow& row) {
  canvas.Icon(row.icon, {22, canvas.Height() / 2.0}, 28, kAccent, kBg);
  canvas.Text({44, 0, canvas.Width() - 44, canvas.Height()}, row.caption[0], 22, QFont::Bold, kText, Qt::AlignLeft);
}
