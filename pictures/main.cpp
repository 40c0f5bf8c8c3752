// picture-generator TABLE DIR [LANGUAGE...]        draws every picture below DIR, and a LANGUAGE's own ones
// picture-generator TABLE --sheets DIR [LANGUAGE]  draws them on contact sheets instead, for a person to look at
#include <QDir>
#include <QFileInfo>
#include <QGuiApplication>
#include <QImageWriter>
#include <QTextStream>
#include <algorithm>

#include "pictures/canvas.h"
#include "pictures/palette.h"
#include "pictures/picturetable.h"
#include "pictures/styles.h"

namespace {
// On a 16-bit panel these colours are the key colour (255, 0, 8), through which video shows.
bool IsKeyColour(QRgb pixel) {
  return qRed(pixel) >= 248 && qGreen(pixel) < 4;
}

void CheckColours(const QImage& picture) {
  for (int y = 0; y < picture.height(); ++y)
    for (int x = 0; x < picture.width(); ++x)
      if (IsKeyColour(picture.pixel(x, y)))
        throw PictureError(QStringLiteral("pixel (%1, %2) has the key colour").arg(x).arg(y));
}

QImage Draw(const PictureRow& row, const Glyphs& glyphs) {
  try {
    Canvas canvas(row.size, glyphs, row.isTranslated);
    DrawPicture(canvas, row);
    QImage picture = canvas.Take();
    CheckColours(picture);
    return picture;
  } catch (const PictureError& error) {
    throw PictureError(QStringLiteral("line %1, %2: %3").arg(row.line).arg(row.path, QString::fromUtf8(error.what())));
  }
}

void Save(const QImage& picture, const QString& file, const char* format) {
  if (!QDir().mkpath(QFileInfo(file).absolutePath())) throw PictureError(file + QStringLiteral(" cannot be written"));
  QImageWriter writer(file, format);
  if (!writer.write(picture)) throw PictureError(file + QStringLiteral(" cannot be written"));
}

constexpr char kImages[] = "/opt/gui/images/";

void WritePictures(const QList<PictureRow>& rows, const Glyphs& glyphs, const QString& root) {
  for (const PictureRow& row : rows)
    Save(Draw(row, glyphs), root + (row.path.startsWith(u'/') ? row.path : QLatin1String(kImages) + row.path), "bmp");
}

// Those with another caption than in `rows`.
void WriteTranslated(const QList<PictureRow>& rows, const QList<PictureRow>& translated, const Glyphs& glyphs,
                     const QString& folder) {
  for (qsizetype i = 0; i < rows.size(); ++i)
    if (translated[i].caption != rows[i].caption)
      Save(Draw(translated[i], glyphs), QDir::cleanPath(folder + u'/' + translated[i].path), "bmp");
}

void WriteSheets(const QList<PictureRow>& rows, const Glyphs& glyphs, const QString& folder) {
  constexpr QSize kSheet(1500, 1000);
  constexpr int kGap = 10;
  QImage sheet;
  int sheets = 0, x = 0, y = 0, rowHeight = 0;
  const auto flush = [&] {
    if (!sheet.isNull()) Save(sheet, QStringLiteral("%1/sheet%2.png").arg(folder).arg(++sheets), "png");
    sheet = QImage(kSheet, QImage::Format_RGB32);
    sheet.fill(QColor(120, 60, 120));
    x = y = kGap;
    rowHeight = 0;
  };
  flush();
  for (const PictureRow& row : rows) {
    const QImage picture = Draw(row, glyphs);
    if (x + picture.width() + kGap > kSheet.width()) {
      x = kGap;
      y += rowHeight + kGap;
      rowHeight = 0;
    }
    if (y + picture.height() + kGap > kSheet.height()) flush();
    QPainter(&sheet).drawImage(x, y, picture);
    x += picture.width() + kGap;
    rowHeight = std::max(rowHeight, picture.height());
  }
  flush();
}
}  // namespace

int main(int argc, char** argv) {
  qputenv("QT_QPA_PLATFORM", "offscreen");
  qputenv("QT_FONT_DPI", "72");
  qputenv("QT_ENABLE_HIGHDPI_SCALING", "0");
  QGuiApplication application(argc, argv);
  const QStringList arguments = QGuiApplication::arguments();
  const bool sheets = arguments.value(2) == QLatin1String("--sheets");
  if (arguments.size() < (sheets ? 4 : 3) || (sheets && arguments.size() > 5)) {
    QTextStream(stderr) << "Usage: picture-generator TABLE DIR [LANGUAGE...]\n"
                           "       picture-generator TABLE --sheets DIR [LANGUAGE]\n";
    return 2;
  }
  try {
    const Glyphs glyphs;
    if (sheets) {
      WriteSheets(ReadPictureTable(arguments[1], arguments.value(4)), glyphs, arguments[3]);
      return 0;
    }
    const QList<PictureRow> rows = ReadPictureTable(arguments[1]);
    WritePictures(rows, glyphs, arguments[2]);
    for (const QString& language : arguments.mid(3))
      WriteTranslated(rows, ReadPictureTable(arguments[1], language), glyphs,
                      arguments[2] + QLatin1String(kImages) + language);
  } catch (const PictureError& error) {
    QTextStream(stderr) << arguments[1] << ": " << error.what() << ".\n";
    return 1;
  }
  return 0;
}
