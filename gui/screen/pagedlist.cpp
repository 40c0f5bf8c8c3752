#include "gui/screen/pagedlist.h"

#include <QLabel>
#include <QPainter>
#include <algorithm>

#include "gui/base/eventgate.h"
#include "gui/base/picture.h"
#include "gui/base/shell.h"
#include "gui/screen/label.h"
#include "gui/settings/config.h"

namespace {
constexpr int kTop = 60;
constexpr int kRowHeight = 52;
constexpr int kRowWidth = 400;
constexpr QRect kColumn(400, 60, 80, 260);
constexpr QPoint kNumberPlate(400, 164);
constexpr LabelRow kCurPage{"mCurPageNumberLabel", {400, 166, 80, 24}, 20, {255, 255, 255}, Qt::AlignHCenter, true};
constexpr LabelRow kAllPage{"mAllPageNumberLabel", {400, 192, 80, 22}, 16, {200, 194, 196}, Qt::AlignHCenter};
}  // namespace

struct PagedList::Key {
  QPoint place;
  QRect area;
  void (PagedList::*scroll)(bool jump);
  bool jump;
  QString PagedList::*picture;
};
const PagedList::Key PagedList::kKeys[] = {
    {{400, 60}, {QPoint(401, 61), QPoint(479, 111)}, &PagedList::ScrollUp, true, &PagedList::mPageScrollUpImgPath},
    {{400, 112}, {QPoint(401, 113), QPoint(479, 163)}, &PagedList::ScrollUp, false, &PagedList::mFileScrollUpImgPath},
    {{400, 216},
     {QPoint(401, 217), QPoint(479, 267)},
     &PagedList::ScrollDown,
     false,
     &PagedList::mFileScrollDownImgPath},
    {{400, 268},
     {QPoint(401, 269), QPoint(479, 320)},
     &PagedList::ScrollDown,
     true,
     &PagedList::mPageScrollDownImgPath},
};

PagedList::PagedList(QWidget* parent, int repeatMs, bool clicks)
    : BaseWidget(parent),
      mCurPageNumberLabel(AddLabel(this, kCurPage)),
      mAllPageNumberLabel(AddLabel(this, kAllPage)),
      mLongPress(*this, repeatMs),
      mClicks(clicks) {}

QRect PagedList::RowRect(int row) {
  return {0, kTop + kRowHeight * row, kRowWidth, kRowHeight};
}

void PagedList::ProcessPageOperation(int count) {
  mAllPage = mCurPage = 0;
  if (count > 0) {
    qDebug("remainder = %d", count % kRows);
    mAllPage = count / kRows + (count % kRows > 0 ? 1 : 0);
    mCurPage = 1;
  }
  qDebug("mAllPage = %d", mAllPage);
  mScrollLevel = mAllPage <= 19 ? 2 : mAllPage / 10 * 2;
}

void PagedList::SetScrollEndFlag() {
  mIsEndOfListUp = mAllPage < 2 || mCurPage == 1;
  mIsEndOfListDown = mAllPage < 2 || mCurPage == mAllPage;
}

void PagedList::SetScrollTypeProperties() {
  const auto up = [this](const Button_Config& key) { return mIsEndOfListUp ? key.DisableImage : key.ReleaseImage; };
  const auto down = [this](const Button_Config& key) { return mIsEndOfListDown ? key.DisableImage : key.ReleaseImage; };
  mPageScrollUpImgPath = up(gFileList.PageUp);
  mFileScrollUpImgPath = up(gFileList.FileUp);
  mFileScrollDownImgPath = down(gFileList.FileDown);
  mPageScrollDownImgPath = down(gFileList.PageDown);
}

void PagedList::SetPageDisplay() {
  SetScrollEndFlag();
  SetScrollTypeProperties();
  mCurPageNumberLabel->setText(QString::number(mCurPage));
  mAllPageNumberLabel->setText(QString::number(mAllPage));
  repaint(kColumn);
}

void PagedList::ScrollUp(bool jump) {
  if (mIsEndOfListUp) return;
  mCurPage = std::max(mCurPage - (jump ? mScrollLevel : 1), 1);
  ShowPage();
  SetPageDisplay();
}

void PagedList::ScrollDown(bool jump) {
  if (mIsEndOfListDown) return;
  mCurPage = std::min(mCurPage + (jump ? mScrollLevel : 1), mAllPage);
  ShowPage();
  SetPageDisplay();
}

bool PagedList::TouchScrollKey(int x, int y, int bottom) {
  if (y > bottom) return false;
  for (const Key& key : kKeys) {
    if (!key.area.contains(x, y)) continue;
    const int before = mCurPage;
    (this->*key.scroll)(key.jump);
    if (mLongPress.Touch(x, y) && mClicks && mCurPage != before) PlayClick();
    return true;
  }
  return false;
}

QList<TouchArea> PagedList::ScrollAreas(int bottom) const {
  QList<TouchArea> areas;
  for (const Key& key : kKeys) {
    const bool up = key.scroll == &PagedList::ScrollUp;
    if (up ? mIsEndOfListUp : mIsEndOfListDown) continue;
    const QString name = QLatin1String(key.jump ? "pages " : "page ") + QLatin1String(up ? "up" : "down");
    areas.append({key.area & rect() & QRect(QPoint(0, 0), QPoint(width(), bottom)), name});
  }
  return areas;
}

void PagedList::touchReleaseEvent(bool released) {
  if (!gEventGate.Enter(this, [this, released] { touchReleaseEvent(released); })) return;
  if (released) mLongPress.Release();
}

void PagedList::PaintScrollColumn(QPainter& painter, const QRect& exposed) const {
  if (!exposed.intersects(kColumn)) return;
  for (const Key& key : kKeys) painter.drawPixmap(key.place, Picture(this->*key.picture));
  painter.drawPixmap(kNumberPlate, Picture(gFileList.PageNumberBg));
}
