#include "pictures/picturetable.h"

#include <QFile>
#include <QRegularExpression>
#include <QSet>

namespace {
enum Field { Path, Width, Height, Screen, Meaning, Caption, Icon, StyleState, Step, Invented, FieldCount };
constexpr char kHead[] = "path,width,height,screen,meaning,caption,icon,style,step,invented";
constexpr char kCaption[] = "caption_";  // and the language: further columns
constexpr int kMostPixels = 480;         // in either direction

int Number(const QString& text, const char* what) {
  bool good = false;
  const int number = text.toInt(&good);
  if (!good || number < 1 || number > kMostPixels)
    throw PictureError(QStringLiteral("its %1 is no number from 1 to %2").arg(QLatin1String(what)).arg(kMostPixels));
  return number;
}

// Where a language's captions are.
int CaptionColumn(const QString& head, const QString& language) {
  const QStringList columns = head.split(u',');
  if (columns.mid(0, FieldCount) != QString::fromLatin1(kHead).split(u','))
    throw PictureError(QStringLiteral("line 1 is not: %1").arg(QLatin1String(kHead)));
  for (const QString& column : columns.mid(FieldCount))
    if (!column.startsWith(QLatin1String(kCaption)))
      throw PictureError(QStringLiteral("line 1: %1 is no column").arg(column));
  if (language.isEmpty()) return Caption;
  const auto column = columns.indexOf(QLatin1String(kCaption) + language);
  if (column < 0)
    throw PictureError(QStringLiteral("line 1: there is no column %1").arg(QLatin1String(kCaption) + language));
  return int(column);
}

PictureRow RowOf(const QString& text, int columns, int caption) {
  static const QRegularExpression kPath(QStringLiteral("^/?([A-Za-z0-9_ .]+/)*[A-Za-z0-9_ .]+\\.bmp$"));
  const QStringList fields = text.split(u',');
  if (fields.size() != columns)
    throw PictureError(QStringLiteral("it has %1 fields, not %2").arg(fields.size()).arg(columns));
  PictureRow row;
  row.path = fields[Path];
  if (!kPath.match(row.path).hasMatch() || row.path.contains(QLatin1String("..")))
    throw PictureError(QStringLiteral("its path is none of a .bmp file"));
  row.size = {Number(fields[Width], "width"), Number(fields[Height], "height")};
  row.caption = fields[caption].split(u'|', Qt::SkipEmptyParts);
  row.icon = fields[Icon];
  row.style = fields[StyleState].section(u':', 0, 0);
  row.state = fields[StyleState].section(u':', 1);
  if (!fields[Step].isEmpty()) {
    row.step = Number(fields[Step].section(u'/', 0, 0), "step");
    row.steps = Number(fields[Step].section(u'/', 1), "number of steps");
    if (row.step > row.steps) throw PictureError(QStringLiteral("its step is beyond the last"));
  }
  return row;
}
}  // namespace

QList<PictureRow> ReadPictureTable(const QString& file, const QString& language) {
  QFile table(file);
  if (!table.open(QIODevice::ReadOnly)) throw PictureError(QStringLiteral("%1 cannot be read").arg(file));
  const QString head = QString::fromUtf8(table.readLine()).trimmed();
  const int caption = CaptionColumn(head, language);
  const int columns = int(head.count(u',')) + 1;
  QList<PictureRow> rows;
  QSet<QString> paths;
  for (int line = 2; !table.atEnd(); ++line) {
    const QString text = QString::fromUtf8(table.readLine()).remove(u'\n').remove(u'\r');
    if (text.isEmpty()) continue;
    try {
      rows << RowOf(text, columns, caption);
      if (paths.contains(rows.last().path)) throw PictureError(QStringLiteral("its path has been used already"));
    } catch (const PictureError& error) {
      throw PictureError(QStringLiteral("line %1: %2").arg(line).arg(QString::fromUtf8(error.what())));
    }
    rows.last().line = line;
    rows.last().isTranslated = !language.isEmpty();
    paths << rows.last().path;
  }
  return rows;
}
