#include "bench/server/live.h"

#include <algorithm>

namespace {
constexpr int kNews = 100;    // milliseconds from one state to the next
constexpr int kPicture = 33;  // from one picture to the next
}  // namespace

Live::Live(Bench& bench, QObject* parent) : QObject(parent), mBench(bench) {
  mNews.setSingleShot(true);
  mNews.callOnTimeout([this] { SendNews(); });
  mPicture.setInterval(kPicture);
  mPicture.callOnTimeout([this] {
    for (const auto& client : mClients) client->SendPicture();
  });
  connect(&mBench, &Bench::StateChanged, this, &Live::NewsCame);
  connect(&mBench, &Bench::Clicked, this, [this] {
    for (const auto& client : mClients) client->SendClick();
  });
  connect(&mBench.Lcd(), &LcdView::Changed, this, [this](const QRegion& where) {
    for (const auto& client : mClients) client->PictureChanged(where);
  });
}

void Live::Add(std::unique_ptr<QWebSocket> socket) {
  mClients.push_back(std::make_unique<LiveClient>(std::move(socket), mBench));
  LiveClient* client = mClients.back().get();
  connect(client, &LiveClient::WatchChanged, this, &Live::WatchChanged);
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
  const bool on =
      std::any_of(mClients.begin(), mClients.end(), [](const auto& client) { return client->IsWatching(); });
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
