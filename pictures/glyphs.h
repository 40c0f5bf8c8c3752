#pragma once

#include <QHash>
#include <QPainterPath>
#include <QString>

/// The packaged fonts: the icon font with its names, and the Korean face of the captions. GUI application needed.
class Glyphs {
public:
  /// Throws PictureError when a package is missing.
  Glyphs();

  /// The outline of the glyph `name` ("home") at `em` pixels, its ink centred at (0, 0). Throws PictureError for a name
  /// that the font has not.
  QPainterPath Outline(const QString& name, double em) const;

private:
  QHash<QString, char32_t> mCharacters;  // by name
};
