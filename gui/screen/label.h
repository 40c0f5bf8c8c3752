#pragma once

#include <QColor>
#include <QFont>
#include <QImage>
#include <QLabel>
#include <QRect>
#include <QString>

/// A label of plain text. To lay out and to blend in letters takes longer than all the rest of most pages: painted
/// again on the same ground, it copies what became of that ground the last time. A text of
/// another language than Korean becomes smaller where it must. GUI thread.
class TextLabel : public QLabel {
public:
  explicit TextLabel(QWidget* parent);

  /// The area that its letters need, as they are painted.
  QRect Letters() const;

protected:
  void changeEvent(QEvent* event) override;
  void paintEvent(QPaintEvent* event) override;

private:
  void Measure();
  QFont PaintedFont() const;

  // What the rest was made for; an empty text: for nothing yet.
  QString mText;
  QSize mSize;
  Qt::Alignment mAlignment;
  QFont mFont;

  QRect mPlace;              // of the letters
  QImage mGround, mPicture;  // the same without and with them
};

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

/// The largest size of `font` in pixels, from its own down to 12, in which each of the texts fits so into `box`. Korean
/// texts keep their size: they were written for it. GUI thread.
int FittingSize(QFont font, const QStringList& texts, QSize box);

/// Makes a label what the row says. GUI thread.
void SetLabel(QLabel* label, const LabelRow& row);

/// The label belongs to `screen`. GUI thread.
QLabel* AddLabel(QWidget* screen, const LabelRow& row, const QString& text = QString());
