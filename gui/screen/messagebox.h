#pragma once

#include <QList>
#include <QPixmap>
#include <QPoint>
#include <QString>
#include <QStringList>
#include <QWidget>

class QLabel;
struct TouchArea;

/// A notice or question over a screen: up to three lines of text on a frame, an icon, pictures of buttons. It takes no
/// touches: the screen that shows it asks ButtonAt. GUI thread.
///
///   boxType    0 notice, 1 yes and no, 2 ok and cancel, 3 ok, 4 front and rear, 5 banner; another one keeps the place
///              and size of what was shown before, and has no pictures
///   errorType  the icon, of types 1 to 4: 0 alarm, 1 caution, 2 warning, 3 error
///   strType    lines of the text less one, 0..2; "_" separates lines. A text with another number of them is not shown
///   alignType  of the lines: 1 left, 2 centred; another one keeps what was
///   pixelSize  font size in pixels
///
/// A line that is wider than its label is drawn narrower, down to 88 %.
class MessageBox : public QWidget {
  Q_OBJECT

public:
  MessageBox(QWidget* parent, int boxType, int errorType, int strType, QString text, int alignType, int pixelSize);

  /// Shows something else in the same box, in place and size of the new type.
  void SettingMessageBox(int boxType, int errorType, int strType, QString text, int alignType, int pixelSize);

  /// The button of a question at (x, y) of the screen: yes, ok or front at the left, no, cancel or rear at the right.
  enum class Button { None, Left, Right };
  static Button ButtonAt(int x, int y);

  /// Where they are, by what is written on them; only with buttons.
  QList<TouchArea> ButtonAreas() const;

  bool HasButtons() const { return box_type >= 1 && box_type <= 4; }

protected:
  void paintEvent(QPaintEvent* event) override;

private:
  struct Layout {
    QRect box;   // on the screen
    int line_x;  // of the lines, in the box
    int line_width;
    int y[3][3];  // of each line, by the number of lines less one
  };
  static const Layout kLayouts[6];

  struct Placed {
    QPoint at;
    QPixmap picture;
  };

  void InitData();
  void PlaceBox();
  void PlacePictures();
  void PlaceLines(const QString& text);
  void SetLabel(QLabel* label, int x, int y, int width, int pixelSize, QString text);

  QString dimBgPath, messageAlarmPath, messageBoxPath, messageBox2Path, messageBox3Path;
  QString btnCancelNormalPath, btnCancelPressPath, btnNoNormalPath, btnNoPressPath, btnOkNormalPath, btnOkPressPath;
  QString btnOk2NormalPath, btnOk2PressPath, btnYesNormalPath, btnYesPressPath, btnFrontNormalPath, btnRearNormalPath;
  QString messageCautionPath, messageCaution2Path, messageErrorPath, messageWarningPath;

  int box_type = 0;
  int error_type = 0;
  int str_type = 0;
  QLabel* strLabel = nullptr;
  QLabel* strLabel2 = nullptr;
  QLabel* strLabel3 = nullptr;
  int label_x = 0, label_y = 0, label_wid = 0, label_hei = 0;
  int label_x2 = 0, label_y2 = 0, label_x3 = 0, label_y3 = 0;
  QStringList sList;
  int align_type = 0;
  int px = 0;

  const Layout* mLayout = nullptr;  // of the latest box_type that has one
  QList<Placed> mPictures;          // frame, buttons and icon, decoded
};
