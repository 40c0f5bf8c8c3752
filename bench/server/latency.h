#pragma once

#include <QElapsedTimer>
#include <QJsonObject>
#include <QObject>
#include <deque>

#include "bench/camera/bench.h"

/// How soon the interface answers a touch, and how much those who watch are sent. Nothing runs for it: it hears what
/// comes anyway.
class Latency : public QObject {
  Q_OBJECT

public:
  explicit Latency(Bench& bench, QObject* parent = nullptr);

  /// As GET /api/latency answers.
  QJsonObject Describe() const;

  /// So many bytes go to one that watches.
  void CountSent(bool isPicture, qint64 bytes);

private:
  /// Milliseconds after the finger was put down; negative: not before the next touch, or within a second.
  struct Touch {
    double command = -1;
    double pixels = -1;
  };
  struct Second {
    qint64 number = -1;
    qint64 pictures = 0;
    qint64 bytes = 0;
  };

  void Take(const QJsonObject& entry);
  void Measure(double Touch::*what);
  QJsonValue Over(double Touch::*what) const;
  qint64 ThisSecond() const { return mClock.elapsed() / 1000; }

  std::deque<Touch> mTouches;  // the newest
  QElapsedTimer mClock, mSinceTouch;
  Second mNow, mBefore;
};
