#pragma once

#include <QWebSocket>
#include <functional>
#include <memory>

#include "bench/server/liveclient.h"

/// A page that watches the bench and works it, over its WebSocket.
class PageClient : public LiveClient {
  Q_OBJECT

public:
  /// A client that watches gets the whole picture first.
  PageClient(std::unique_ptr<QWebSocket> socket, Bench& bench, const Patience& patience);
  ~PageClient() override;

  bool IsWatching() const override { return mIsWatching; }
  void PictureChanged(const QRegion& where) override;
  void SendPicture() override;
  bool WantsLatency() const override { return mWantsLatency; }
  void SendLatency(const QJsonObject& latency) override;

private:
  void Write(const QString& type, const QByteArray& message) override;
  qint64 Waiting() const override { return mSocket->bytesToWrite(); }
  void Ping() override { mSocket->ping(); }
  void GiveUp() override { mSocket->abort(); }
  void Take(const QString& message);
  Reply Do(const QString& type, const QJsonObject& members);
  Reply Switch(const QJsonObject& request, bool* is, const std::function<void()>& changed);
  Reply Watch(const QJsonObject& request);
  Reply TellLatency(const QJsonObject& request);

  std::unique_ptr<QWebSocket> mSocket;
  bool mIsWatching = true;
  bool mWantsLatency = false;
  QJsonObject mLatency;             // that was sent last
  QRegion mUnsent{0, 0, 480, 320};  // of the picture
};
