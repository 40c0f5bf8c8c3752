#include "bench/server/liveclient.h"

#include <QJsonDocument>

namespace {
constexpr qsizetype kMostEntries = 200;                   // of the log in one message
constexpr qint64 kMostWaiting = qint64{4} * 1024 * 1024;  // bytes that a client has not taken; then it is given up
constexpr qint64 kLate = qint64{1024} * 1024;             // bytes: more than one whole picture before it

QJsonObject Typed(const char* type, const char* name, const QJsonValue& value) {
  return {{QStringLiteral("type"), QLatin1String(type)}, {QLatin1String(name), value}};
}
}  // namespace

// It may have stalled, or have been cut off without a word; its place is another one's.
LiveClient::LiveClient(Bench& bench, const Patience& patience) : mBench(bench) {
  Lives();
  mPing.callOnTimeout([this, silence = patience.silence] {
    if (mSinceSign.hasExpired(silence))
      GiveUp();
    else
      Ping();
  });
  mPing.start(patience.ping);
}

void LiveClient::SendNews(const QJsonObject& state) {
  if (state != mState) Send(Typed("state", "state", state));
  mState = state;
  const qint64 last = mBench.Log().Last();
  if (last > mLog) Send(Typed("log", "entries", mBench.Log().Since(mLog, kMostEntries)));
  mLog = last;
}

void LiveClient::SendClick() {
  // A click that comes late is none.
  if (Waiting() < kLate) Send({{QStringLiteral("type"), QStringLiteral("click")}});
}

void LiveClient::Send(const QJsonObject& message) {
  if (Waiting() > kMostWaiting) return GiveUp();
  const QByteArray bytes = QJsonDocument(message).toJson(QJsonDocument::Compact);
  Write(message.value(QLatin1String("type")).toString(), bytes);
  emit Sent(false, bytes.size());
}
