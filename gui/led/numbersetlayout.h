#pragma once

#include "gui/screen/tilescreen.h"

class QLabel;

/// The keypad on which a number is typed that the LED is to show. GUI thread.
class NumberSetLayout : public TileScreen {
  Q_OBJECT

public:
  explicit NumberSetLayout(QWidget* parent);

  void MessageBoxHandler(int type, int x, int y, int messageId) override;
  void TimeoutEvent() override;

  /// Digits with hyphens as telephone numbers have them: "02-1234-5678", "010-1234-5678", "1588-1234".
  static QString Hyphenated(const QString& digits);

protected:
  void FillPage(Page& page) override;
  void TouchPage(int x, int y) override;
  QList<TouchArea> PageAreas() const override;

private:
  void PressKeypad(int digit, bool isDelete);
  void PressSave();
  void SaveNumber();
  void Refuse(int messageId, int ms);

  QLabel* mInputNumLabel;
  QString mDispNumber;        // digits, at most 14
  QString mHyphendispNumber;  // as shown
};
