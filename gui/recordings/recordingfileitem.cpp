#include "gui/recordings/recordingfileitem.h"

#include <QLabel>
#include <QPainter>

#include "gui/base/picture.h"
#include "gui/screen/label.h"
#include "gui/settings/config.h"

namespace {
constexpr QPoint kIcon(8, 3);

QLabel* AddFileName(QWidget* item) {
  const Color& text = gColor.PreviewText;
  return AddLabel(item, {"mFileNameLabel", {64, 0, 328, 50}, gFont.Size.List, {text.r, text.g, text.b}});
}
}  // namespace

RecordingFileItem::RecordingFileItem(QWidget* parent)
    : QWidget(parent), mFileNameLabel(AddFileName(this)), mIconBgPath(gFileList.ItemBg) {}

QString RecordingFileItem::SettingListFileName(const FileItem& item) {
  if (!item.recStopFlag) return item.fileName;
  QString end = item.recStopData.section(u'_', 1, 1);
  if (end.size() > 2) end.insert(2, u':');
  if (end.size() > 5) end.insert(5, u':');
  return item.fileName + u'~' + end;
}

void RecordingFileItem::Repaint(const std::optional<FileItem>& item) {
  mCurItem = item;
  mIconPath = item ? item->icon : QString();
  mIconBgPath = item ? item->iconBg : gFileList.ItemBg;
  setAttribute(Qt::WA_OpaquePaintEvent, !item || Covers(Picture(mIconBgPath), size()));
  mFileNameLabel->setText(item ? SettingListFileName(*item) : QString());
  update();
}

void RecordingFileItem::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  if (!mCurItem) {
    const Color& bg = gColor.Bg;
    painter.fillRect(rect(), QColor(bg.r, bg.g, bg.b));
    return;
  }
  painter.drawPixmap(0, 0, Picture(mIconBgPath));
  painter.drawPixmap(kIcon, Picture(mIconPath));
}
