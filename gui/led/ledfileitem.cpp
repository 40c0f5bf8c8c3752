#include "gui/led/ledfileitem.h"

#include <QLabel>
#include <QPainter>
#include <QTextCodec>

#include "gui/base/picture.h"
#include "gui/screen/label.h"
#include "gui/settings/config.h"

namespace {
constexpr QPoint kIcon(8, 3), kCheckBox(351, 5);
constexpr QColor kLocked(156, 156, 156);

QColor Ink() {
  const Color& text = gColor.PreviewText;
  return {text.r, text.g, text.b};
}
}  // namespace

LedFileItem::LedFileItem(QWidget* parent)
    : QWidget(parent), mNameLabel(AddLabel(this, {"mNameLabel", {64, 0, 280, 50}, gFont.Size.List, Ink()})) {}

QString LedFileItem::NameOf(const Led_File_Item& item) {
  return QTextCodec::codecForName("eucKR")->toUnicode(item.nickName.toLatin1());
}

void LedFileItem::Repaint(const Led_File_Item* item, bool locked) {
  mCurItem.reset();
  if (item) mCurItem = *item;
  const QString name = item ? NameOf(*item) : QString();
  mNameLabel->setText(mNameLabel->fontMetrics().elidedText(name, Qt::ElideRight, mNameLabel->width()));
  QPalette ink = mNameLabel->palette();
  ink.setColor(QPalette::WindowText, locked ? kLocked : Ink());
  mNameLabel->setPalette(ink);
  update();
}

void LedFileItem::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  if (!mCurItem) {
    const Color& bg = gColor.Bg;
    painter.fillRect(rect(), QColor(bg.r, bg.g, bg.b));
    return;
  }
  painter.drawPixmap(0, 0, Picture(mCurItem->iconBg));
  painter.drawPixmap(kIcon, Picture(mCurItem->icon));
  painter.drawPixmap(kCheckBox, Picture(mCurItem->checkBox));
}
