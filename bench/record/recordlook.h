#pragma once

#include <QElapsedTimer>
#include <QImage>
#include <QJsonObject>
#include <QTimer>

class Bench;

/// Watches what the interface shows, for a recording of use or its replay.
class RecordLook : public QObject {
public:
  explicit RecordLook(const Bench& bench, QObject* parent = nullptr);

  /// What is shown now: "screen", "own", "event" (the names of screen and boxes, or null), "dark" (the backlight is
  /// off), and "picture", its digest; that is left out while it changes.
  QJsonObject Seen();

  /// The digest of what is drawn now.
  const QString& Picture();

private:
  void Look();

  const Bench& mBench;
  QTimer mTimer;
  QImage mRaw;
  QString mScreen;
  QString mPicture;      // its digest
  QElapsedTimer mSince;  // it has not changed since then
};
