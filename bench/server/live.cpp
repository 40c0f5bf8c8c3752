#include "bench/server/live.h"

#include <algorithm>

namespace {
constexpr int kNews = 100;    // milliseconds from one state to the next
constexpr int kPicture = 33;  // from one picture to the next
constexpr int kLatency = 1000;
}  // namespace

Live::Live(Bench& bench, QObject* parent) : QObject(parent), mBench(bench), mLatency(bench) {
  mNews.setSingleShot(true);
  mNews.callOnTimeout([this] { SendNews(); });
  mPicture.setInterval(kPicture);
  mPicture.callOnTimeout([this] {
    for (const auto& client : mClients) client->SendPicture();
  });
  mTellLatency.setInterval(kLatency);
  mTellLatency.callOnTimeout([this] {
    const QJsonObject latency = mLatency.Describe();
    for (const auto& client : mClients) client->SendLatency(latency);
  });
  connect(&mBench, &Bench::StateChanged, this, &Live::NewsCame);
  connect(&mBench, &Bench::Clicked, this, [this] {
    for (const auto& client : mClients) client->SendClick();
  });
  connect(&mBench.Lcd(), &LcdView::Changed, this, [this](const QRegion& where) {
    for (const auto& client : mClients) client->PictureChanged(where);
  });
}

void Live::Add(std::unique_ptr<LiveClient> added) {
  LiveClient* client = added.get();
  mClients.push_back(std::move(added));
  connect(client, &LiveClient::WatchChanged, this, &Live::WatchChanged);
  connect(client, &LiveClient::Sent, &mLatency, &Latency::CountSent);
  // Not in the middle of its own doings.
  connect(
      client, &LiveClient::Left, this, [this, client] { Remove(client); }, Qt::QueuedConnection);
  WatchChanged();
  client->SendNews(mBench.State());
}

void Live::Remove(LiveClient* client) {
  std::erase_if(mClients, [client](const auto& each) { return each.get() == client; });
  WatchChanged();
}

void Live::WatchChanged() {
  const auto isAny = [this](auto&& is) { return std::any_of(mClients.begin(), mClients.end(), is); };
  const bool on = isAny([](const auto& client) { return client->IsWatching(); });
  const bool tells = isAny([](const auto& client) { return client->WantsLatency(); });
  if (tells && !mTellLatency.isActive()) mTellLatency.start();
  if (!tells) mTellLatency.stop();
  mBench.Lcd().Watch(on);
  if (on && !mPicture.isActive()) mPicture.start();
  if (!on) mPicture.stop();
}

void Live::NewsCame() {
  if (mClients.empty() || mNews.isActive()) return;
  const qint64 since = mSinceNews.isValid() ? mSinceNews.elapsed() : kNews;
  mNews.start(static_cast<int>(std::max<qint64>(0, kNews - since)));
}

void Live::SendNews() {
  mSinceNews.start();
  const QJsonObject state = mBench.State();
  bool haveAll = true;
  for (const auto& client : mClients) {
    if (client->KeepsUp())
      client->SendNews(state);
    else
      haveAll = false;
  }
  if (!haveAll) mNews.start(kNews);
}
