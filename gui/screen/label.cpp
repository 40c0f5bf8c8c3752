#include "gui/screen/label.h"

#include <QLabel>

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
