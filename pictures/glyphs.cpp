#include "pictures/glyphs.h"

#include <QFile>
#include <QFontDatabase>
#include <QRawFont>
#include <QRegularExpression>

#include "pictures/picturetable.h"

namespace {
constexpr char kIconFont[] = "/usr/share/fonts/truetype/materialdesignicons-webfont/materialdesignicons-webfont.ttf";
constexpr char kIconNames[] = "/usr/share/fonts-materialdesignicons-webfont/css/materialdesignicons.css";
constexpr const char* kCaptionFonts[] = {"/usr/share/fonts/truetype/nanum/NanumBarunGothic.ttf",
                                         "/usr/share/fonts/truetype/nanum/NanumBarunGothicBold.ttf"};
}  // namespace

Glyphs::Glyphs() {
  for (const char* font : kCaptionFonts)
    if (QFontDatabase::addApplicationFont(QLatin1String(font)) < 0)
      throw PictureError(QStringLiteral("%1 is missing (package fonts-nanum)").arg(QLatin1String(font)));
  QFile names(QLatin1String{kIconNames});
  if (!names.open(QIODevice::ReadOnly) || !QFile::exists(QLatin1String(kIconFont)))
    throw PictureError(QStringLiteral("the icon font is missing (package fonts-materialdesignicons-webfont)"));
  // .mdi-home:before { content: "\F2DC"; }
  static const QRegularExpression kRule(
      QStringLiteral("\\.mdi-([a-z0-9-]+)::?before\\s*\\{\\s*content:\\s*\"\\\\([0-9A-Fa-f]+)\""));
  const QString css = QString::fromUtf8(names.readAll());
  for (auto rule = kRule.globalMatch(css); rule.hasNext();) {
    const auto match = rule.next();
    mCharacters.insert(match.captured(1), match.captured(2).toUInt(nullptr, 16));
  }
}

QPainterPath Glyphs::Outline(const QString& name, double em) const {
  const QRawFont font(QLatin1String(kIconFont), em, QFont::PreferNoHinting);
  const char32_t character = mCharacters.value(name);
  const QString text = QString::fromUcs4(&character, 1);
  const auto indexes = font.glyphIndexesForString(text);
  if (character == 0 || indexes.isEmpty() || indexes.first() == 0)
    throw PictureError(QStringLiteral("there is no glyph \"%1\"").arg(name));
  QPainterPath outline = font.pathForGlyph(indexes.first());
  outline.translate(-outline.boundingRect().center());
  outline.setFillRule(Qt::WindingFill);
  return outline;
}
