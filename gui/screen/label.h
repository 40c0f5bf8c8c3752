#pragma once

#include <QColor>
#include <QRect>
#include <QString>

class QFont;
class QLabel;
class QWidget;

/// A label of a screen: plain text on a transparent ground, centred between top and bottom of its box.
struct LabelRow {
  const char* name;  ///< object name
  QRect box;
  int px;  ///< font size in pixels
  QColor ink;
  Qt::AlignmentFlag align = Qt::AlignLeft;
  bool bold = false;
};

/// `font` in which `text` fits into `width` pixels: as wide as it can be, down to 88 %. GUI thread.
QFont FittingFont(QFont font, const QString& text, int width);

/// Makes a label what the row says. GUI thread.
void SetLabel(QLabel* label, const LabelRow& row);

/// The label belongs to `screen`. GUI thread.
QLabel* AddLabel(QWidget* screen, const LabelRow& row, const QString& text = QString());
