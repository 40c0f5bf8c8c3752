#include "gui/screen/label.h"

#include <QFontMetrics>
#include <QLabel>

namespace {
constexpr int kNarrowest = 88;  // percent of the font's width that can still be read at a glance
}

QFont FittingFont(QFont font, const QString& text, int width) {
  for (int stretch = QFont::Unstretched; stretch >= kNarrowest; --stretch) {
    font.setStretch(stretch);
    if (QFontMetrics(font).boundingRect({0, 0, width, 0}, Qt::TextSingleLine, text).width() <= width) break;
  }
  return font;
}

void SetLabel(QLabel* label, const LabelRow& row) {
  label->setObjectName(QLatin1String(row.name));
  label->setGeometry(row.box);
  QFont face = label->font();
  face.setPixelSize(row.px);
  face.setBold(row.bold);
  label->setFont(face);
  QPalette ink = label->palette();
  ink.setColor(QPalette::WindowText, row.ink);
  label->setPalette(ink);
  label->setTextFormat(Qt::PlainText);
  label->setAlignment(row.align | Qt::AlignVCenter);
}

QLabel* AddLabel(QWidget* screen, const LabelRow& row, const QString& text) {
  auto* label = new QLabel(screen);
  SetLabel(label, row);
  label->setText(text);
  return label;
}
