#include "pictures/picturetable.h"

#include <QFile>
#include <QRegularExpression>
#include <QSet>

namespace {
enum Field { Path, Width, Height, Screen, Meaning, Caption, Icon, StyleState, Step, Invented, FieldCount };
constexpr char kHead[] = "path,width,height,screen,meaning,caption,icon,style,step,invented";
constexpr int kMostPixels = 480;  // in either direction

int Number(const QString& text, const char* what) {
  bool good = false;
  const int number = text.toInt(&good);
  if (!good || number < 1 || number > kMostPixels)
    throw PictureError(QStringLiteral("its %1 is no number from 1 to %2").arg(QLatin1String(what)).arg(kMostPixels));
  return number;
}

PictureRow RowOf(const QString& text) {
  static const QRegularExpression kPath(QStringLiteral("^/?([A-Za-z0-9_ .]+/)*[A-Za-z0-9_ .]+\\.bmp$"));
  const QStringList fields = text.split(u',');
  if (fields.size() != FieldCount)
    throw PictureError(QStringLiteral("it has %1 fields, not %2").arg(fields.size()).arg(int{FieldCount}));
  PictureRow row;
  row.path = fields[Path];
  if (!kPath.match(row.path).hasMatch() || row.path.contains(QLatin1String("..")))
    throw PictureError(QStringLiteral("its path is none of a .bmp file"));
  row.size = {Number(fields[Width], "width"), Number(fields[Height], "height")};
  row.caption = fields[Caption].split(u'|', Qt::SkipEmptyParts);
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

QList<PictureRow> ReadPictureTable(const QString& file) {
  QFile table(file);
  if (!table.open(QIODevice::ReadOnly)) throw PictureError(QStringLiteral("%1 cannot be read").arg(file));
  if (table.readLine().trimmed() != kHead)
    throw PictureError(QStringLiteral("line 1 is not: %1").arg(QLatin1String(kHead)));
  QList<PictureRow> rows;
  QSet<QString> paths;
  for (int line = 2; !table.atEnd(); ++line) {
    const QString text = QString::fromUtf8(table.readLine()).remove(u'\n').remove(u'\r');
    if (text.isEmpty()) continue;
    try {
      rows << RowOf(text);
      if (paths.contains(rows.last().path)) throw PictureError(QStringLiteral("its path has been used already"));
    } catch (const PictureError& error) {
      throw PictureError(QStringLiteral("line %1: %2").arg(line).arg(QString::fromUtf8(error.what())));
    }
    rows.last().line = line;
    paths << rows.last().path;
  }
  return rows;
}
