#pragma once

#include <QList>
#include <QSize>
#include <QString>
#include <QStringList>
#include <stdexcept>

/// What is wrong with a table or a picture, in one sentence.
class PictureError : public std::runtime_error {
public:
  explicit PictureError(const QString& sentence) : std::runtime_error(sentence.toStdString()) {}
};

/// One picture of the interface.
struct PictureRow {
  int line = 0;  ///< in the table
  bool isTranslated = false;
  QString path;         ///< below the picture folder, or absolute
  QSize size;           ///< pixels
  QStringList caption;  ///< its parts
  QString icon;         ///< a glyph's name, "glyph+badge", "draw:figure", or empty
  QString style;        ///< "tile"
  QString state;        ///< "dis"; empty: the usual one
  int step = 0;         ///< the value is the step-th ..
  int steps = 0;        ///< .. of so many; 0: it is none of a cycle
};

/// Reads the table, a CSV file whose fields hold no comma and no quote. The captions are those of column
/// caption_LANGUAGE, of column caption without a language. Throws PictureError that names the line.
QList<PictureRow> ReadPictureTable(const QString& file, const QString& language = QString());
