#pragma once

#include <QPixmap>

#include "gui/screen/basewidget.h"
#include "gui/settings/config.h"

class QLabel;

/// What is shown instead of a dark LCD: a large clock with date, weekday, supply voltage and the states of speaker,
/// microphone and GPS; or the user's own picture alone. The window wakes it. GUI thread.
class ScreenSaver : public BaseWidget {
  Q_OBJECT

public:
  explicit ScreenSaver(QWidget* parent);

  void touchEvent(int type, int x, int y) override;
  void recvEvent(int event, int value) override;
  void onResume() override;
  void onPause() override;
  void MessageBoxHandler(int type, int x, int y, int messageId) override;

  void InitImageLoad();
  void SetCurTimeAndVolStr();
  void SetDefalutTime();

  /// The user wants an own picture, and there is none.
  static bool IsNotExistCustomImageFile();
  /// The weekday of an English one, of which three characters count, in the chosen language; empty for any other text.
  static QString TransformDate(const QString& dayName);

public slots:
  void SlotSec();

protected:
  void paintEvent(QPaintEvent* event) override;
  QList<TouchArea> KeyAreas() const override { return {{rect(), QStringLiteral("anywhere")}}; }

private:
  void InitLabel();
  bool IsCustomPicture() const;
  void SetImage(QPixmap& image, QPoint place, const QPixmap& picture);

  Date_Config mCurTime{};  // as shown, 12 hours
  Date_Config mTimeSet{};  // as read, 24 hours
  QTimer* mTimScreenSaver;
  bool mIsAM = true;
  QLabel* mLblDate = nullptr;
  QLabel* mLblDay = nullptr;
  QLabel* mLblTime = nullptr;
  QLabel* mLblVolt = nullptr;
  QString mStrDate;
  QString mStrTime;
  QString mStrVoltage;
  QPixmap mBg;
  QPixmap mImgSpeaker;
  QPixmap mImgMic;
  QPixmap mImgGps;
  QPixmap mImgVolt;
  QPixmap mImgAPM;
  bool mIsNotExistsCustomImageFile = false;
};
