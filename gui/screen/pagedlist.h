#pragma once

#include <QPoint>

#include "gui/screen/basewidget.h"
#include "gui/screen/longpress.h"

class QLabel;
class QPainter;

/// A list of pages of five rows with a column of scroll keys at the right: a page or several pages up and down, again
/// and again while the finger stays down. GUI thread.
class PagedList : public BaseWidget {
  Q_OBJECT

public:
  static constexpr int kRows = 5;  ///< of a page

  bool GetIsEndOfListUp() const { return mIsEndOfListUp; }
  bool GetIsEndOfListDown() const { return mIsEndOfListDown; }

public slots:
  /// The finger has left the panel.
  void touchReleaseEvent(bool released);

protected:
  /// A key that is held scrolls again every `repeatMs`. `clicks`: one that is touched, and scrolls, makes a sound.
  PagedList(QWidget* parent, int repeatMs, bool clicks);

  /// Shows the rows of mCurPage.
  virtual void ShowPage() = 0;

  /// Starts on the first page of a list of `count` items: works out mAllPage, mCurPage and mScrollLevel.
  void ProcessPageOperation(int count);
  void SetPageDisplay();
  void ScrollUp(bool jump);
  void ScrollDown(bool jump);

  /// True when (x, y) is on a scroll key: then it has scrolled. The keys end with `bottom`, y of the screen's rows.
  bool TouchScrollKey(int x, int y, int bottom);
  QList<TouchArea> ScrollAreas(int bottom) const;  ///< those that scroll now

  /// The area of row 0..4, and the place of its picture.
  static QRect RowRect(int row);

  void PaintScrollColumn(QPainter& painter, const QRect& exposed) const;

  int mCurPage = 0;  ///< from 1; 0 when the list is empty
  int mAllPage = 0;
  int mScrollLevel = 2;  ///< pages of a jump

private:
  struct Key;
  static const Key kKeys[];

  void SetScrollEndFlag();
  void SetScrollTypeProperties();

  QLabel* mCurPageNumberLabel;
  QLabel* mAllPageNumberLabel;
  bool mIsEndOfListUp = true;
  bool mIsEndOfListDown = true;
  QString mFileScrollUpImgPath, mFileScrollDownImgPath, mPageScrollUpImgPath, mPageScrollDownImgPath;
  LongPress mLongPress;
  bool mClicks;
};
