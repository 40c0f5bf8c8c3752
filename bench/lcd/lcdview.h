#pragma once

#include <QImage>
#include <QObject>
#include <QRegion>
#include <QTimer>
#include <optional>

#include "bench/lcd/lcd.h"
#include "bench/lcd/roadvideo.h"
#include "recorder/base/videoplane.h"

/// The LCD as a person sees it: what the interface has drawn, the video behind it, and the backlight. It looks at the
/// framebuffer only when it is asked, or while somebody watches.
class LcdView : public QObject {
  Q_OBJECT

public:
  explicit LcdView(QObject* parent = nullptr);

  /// The framebuffer's file; the X server has written it. False with one sentence in `error`.
  bool Open(const QString& framebuffer, QString* error);
  void Close();

  /// Whether there is a picture. Without one the LCD is black.
  bool IsLive() const { return mLcd.IsOpen(); }

  void SetVideo(const std::optional<VideoPlane>& video);  ///< null: no recorder, no video
  void SetBacklight(int value);                           ///< 0 (dark) .. 100000

  /// What the cameras see.
  RoadVideo& Road() { return mRoad; }

  QImage Raw() const;  ///< what the interface has drawn
  QImage Now() const;  ///< what a person sees

  /// Tells what changes, 30 times a second at most, until nobody watches.
  void Watch(bool on);

  /// What a person saw when Changed() was emitted last.
  const QImage& Shown() const { return mShown; }

signals:
  void Drawn();  ///< the interface has drawn something; the video behind it does not count
  void Changed(const QRegion& where);

private:
  void Look();
  static qint64 VideoFrame();
  QImage Composed(const QImage& raw) const;

  Lcd mLcd;
  RoadVideo mRoad;
  std::optional<VideoPlane> mVideo;
  QImage mUpdate;  // null: none is under way
  int mBacklight = 100000;
  QTimer mLook;
  QImage mLastRaw, mShown;
  qint64 mLastFrame = -1;
};
