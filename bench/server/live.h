#pragma once

#include <QElapsedTimer>
#include <QTimer>
#include <memory>
#include <vector>

#include "bench/server/latency.h"
#include "bench/server/liveclient.h"

/// Those that watch the bench. Without one nothing is looked at and nothing is put together.
class Live : public QObject {
  Q_OBJECT

public:
  explicit Live(Bench& bench, QObject* parent = nullptr);

  /// A new one, after its handshake.
  void Add(std::unique_ptr<LiveClient> client);

  /// How soon the interface answers; see GET /api/latency.
  QJsonObject Described() const { return mLatency.Describe(); }

private:
  void Remove(LiveClient* client);
  void SendNews();
  void WatchChanged();
  void NewsCame();

  Bench& mBench;
  std::vector<std::unique_ptr<LiveClient>> mClients;
  QTimer mNews;  // to the next state and log
  QElapsedTimer mSinceNews;
  QTimer mPicture;  // to the next picture
  Latency mLatency;
  QTimer mTellLatency;
};
