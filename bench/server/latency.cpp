#include "bench/server/latency.h"

#include <algorithm>
#include <cmath>

namespace {
constexpr size_t kMostTouches = 1000;  // touches
constexpr qint64 kSlowest = 1000000;   // microseconds; what comes later has another reason

QJsonValue Milliseconds(double ms) {
  return ms < 0 ? QJsonValue() : QJsonValue(std::round(ms * 10) / 10);
}
}  // namespace

Latency::Latency(Bench& bench, QObject* parent) : QObject(parent) {
  mClock.start();
  connect(&bench.Log(), &EventLog::Added, this, &Latency::Take);
  connect(&bench.Lcd(), &LcdView::Drawn, this, [this] { Measure(&Touch::pixels); });
}

// A query is no answer to anybody: the interface asks by itself.
void Latency::Take(const QJsonObject& entry) {
  const QString kind = entry.value(QLatin1String("kind")).toString();
  if (kind == QLatin1String("command") && !entry.contains(QLatin1String("answer"))) return Measure(&Touch::command);
  if (kind != QLatin1String("touch") || entry.value(QLatin1String("name")) != QLatin1String("press")) return;
  mSinceTouch.start();
  mTouches.emplace_back();
  if (mTouches.size() > kMostTouches) mTouches.pop_front();
}

void Latency::Measure(double Touch::*what) {
  if (mTouches.empty() || mTouches.back().*what >= 0) return;
  const qint64 since = mSinceTouch.nsecsElapsed() / 1000;
  if (since <= kSlowest) mTouches.back().*what = static_cast<double>(since) / 1000;
}

void Latency::CountSent(bool isPicture, qint64 bytes) {
  if (mNow.number != ThisSecond()) mBefore = std::exchange(mNow, Second{ThisSecond()});
  mNow.pictures += isPicture ? 1 : 0;
  mNow.bytes += bytes;
}

QJsonValue Latency::Over(double Touch::*what) const {
  std::vector<double> all;
  for (const Touch& touch : mTouches)
    if (touch.*what >= 0) all.push_back(touch.*what);
  if (all.empty()) return {};
  std::sort(all.begin(), all.end());
  const auto least = [&all](double part) {  // that so many of them reach
    const auto rank = static_cast<size_t>(std::ceil(part * static_cast<double>(all.size())));
    return Milliseconds(all[rank - 1]);
  };
  return QJsonObject{{QStringLiteral("median"), least(0.5)},
                     {QStringLiteral("p95"), least(0.95)},
                     {QStringLiteral("p99"), least(0.99)},
                     {QStringLiteral("max"), least(1)}};
}

QJsonObject Latency::Describe() const {
  const Touch last = mTouches.empty() ? Touch() : mTouches.back();
  const qint64 full = ThisSecond() - 1;
  const Second second = mNow.number == full ? mNow : mBefore.number == full ? mBefore : Second();
  return {{QStringLiteral("last"), QJsonObject{{QStringLiteral("command"), Milliseconds(last.command)},
                                               {QStringLiteral("pixels"), Milliseconds(last.pixels)}}},
          {QStringLiteral("touches"), static_cast<qint64>(mTouches.size())},
          {QStringLiteral("command"), Over(&Touch::command)},
          {QStringLiteral("pixels"), Over(&Touch::pixels)},
          {QStringLiteral("pictures"), second.pictures},
          {QStringLiteral("bytes"), second.bytes}};
}
