#include "tour/stretched.h"

#include <QStringList>

namespace {
// Letters of many languages, and no Korean one.
QString Longer(const QString& line) {
  return line + QStringLiteral("äéîñoøüß").repeated(6).left((line.size() * 35 + 99) / 100);
}
}  // namespace

Stretched::Stretched() {
  if (!mEnglish.load(QStringLiteral(":/translations/dashcam_en.qm"))) qFatal("no English texts");
}

QString Stretched::translate(const char* context, const char* source, const char* disambiguation, int count) const {
  QString text = mEnglish.translate(context, source, disambiguation, count);
  // A date's format is no text.
  if (text.contains(QLatin1String("yyyy")) || text.contains(QLatin1String("HH"))) return text;
  const QChar ends = text.contains(u'\n') ? u'\n' : u'_';
  QStringList lines = text.split(ends);
  for (QString& line : lines) line = Longer(line);
  return lines.join(ends);
}
