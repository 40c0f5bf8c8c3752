#pragma once

#include <QElapsedTimer>
#include <QJsonObject>
#include <QRegion>
#include <QTimer>

#include "bench/camera/bench.h"

/// One that watches the bench. Nothing is sent to a client that has not taken what it got before: what it misses
/// meanwhile is gathered. One that gives no sign of life for long is given up.
class LiveClient : public QObject {
  Q_OBJECT

public:
  /// Milliseconds.
  struct Patience {
    int ping = 20000;     ///< from one question for a sign of life to the next
    int silence = 60000;  ///< without any
  };

  LiveClient(Bench& bench, const Patience& patience);

  /// Whether it wants pictures.
  virtual bool IsWatching() const { return false; }

  /// Something of the picture has changed.
  virtual void PictureChanged(const QRegion&) {}

  /// Whether it wants to be told how soon the interface answers.
  virtual bool WantsLatency() const { return false; }
  virtual void SendLatency(const QJsonObject&) {}

  /// Sends the picture as far as it has changed, if the client keeps up.
  virtual void SendPicture() {}

  /// Whether it has taken everything so far.
  bool KeepsUp() const { return Waiting() == 0; }

  /// Sends state and log, as far as they have changed.
  void SendNews(const QJsonObject& state);

  void SendClick();

signals:
  void WatchChanged();
  void Sent(bool isPicture, qint64 bytes);
  void Left();

protected:
  /// An object with a type.
  void Send(const QJsonObject& message);

  /// It has given a sign of life.
  void Lives() { mSinceSign.start(); }

  Bench& mBench;

private:
  virtual void Write(const QString& type, const QByteArray& message) = 0;
  virtual qint64 Waiting() const = 0;  // bytes that it has not taken
  virtual void Ping() = 0;             // asks for a sign of life
  virtual void GiveUp() = 0;

  QTimer mPing;
  QElapsedTimer mSinceSign;
  QJsonObject mState;  // that was sent last
  qint64 mLog = 0;     // the newest entry that was sent
};
