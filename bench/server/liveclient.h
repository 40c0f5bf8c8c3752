#pragma once

#include <QJsonObject>
#include <QRegion>
#include <QWebSocket>
#include <memory>

#include "bench/camera/bench.h"

/// One page that watches the bench, over its WebSocket. Nothing is sent to a page that has not taken what it got
/// before: what it misses meanwhile is gathered.
class LiveClient : public QObject {
  Q_OBJECT

public:
  /// A client that watches gets the whole picture first.
  LiveClient(std::unique_ptr<QWebSocket> socket, Bench& bench);
  ~LiveClient() override;

  /// Whether it wants pictures.
  bool IsWatching() const { return mIsWatching; }

  /// Something of the picture has changed.
  void PictureChanged(const QRegion& where);

  /// Sends the picture as far as it has changed, if the client keeps up.
  void SendPicture();

  /// Whether it has taken everything so far.
  bool KeepsUp() const { return mSocket->bytesToWrite() == 0; }

  /// Sends state and log, as far as they have changed.
  void SendNews(const QJsonObject& state);

  void SendClick();

signals:
  void WatchChanged();
  void Left();

private:
  void Take(const QString& message);
  Reply Do(const QString& type, const QJsonObject& members);
  Reply Watch(const QJsonObject& request);
  void Send(const QJsonObject& message);
  std::unique_ptr<QWebSocket> mSocket;
  Bench& mBench;
  bool mIsWatching = true;
  QRegion mUnsent{0, 0, 480, 320};  // of the picture
  QJsonObject mState;               // that was sent last
  qint64 mLog = 0;                  // the newest entry that was sent
};
