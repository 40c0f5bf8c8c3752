#include "bench/panel/finger.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace {
constexpr int kMove = 20;  // milliseconds from one move on a path to the next, as a finger's

using Point = requests::Touch::Point;

// `part` of the way, 0 to 1.
QPoint Between(const Point& from, const Point& to, double part) {
  const auto between = [part](int one, int other) { return static_cast<int>(std::lround(one + part * (other - one))); };
  return {between(from.x, to.x), between(from.y, to.y)};
}
}  // namespace

Finger::Finger(TouchPanel& panel, EventLog& log, QObject* parent) : QObject(parent), mPanel(panel), mLog(log) {
  mTap.setSingleShot(true);
  mTap.callOnTimeout([this] { Release(); });
  mMove.setSingleShot(true);
  mMove.setTimerType(Qt::PreciseTimer);
  mMove.callOnTimeout([this] { GoOn(); });
}

Reply Finger::Tap(const Spot& spot, int ms, const QObject* owner) {
  Release();
  Reply reply = Press(spot, owner);
  if (reply.IsGood()) mTap.start(ms);
  return reply;
}

Reply Finger::Follow(const QList<Point>& path, const QObject* owner) {
  Release();
  mAt = {path[0].x, path[0].y};
  Reply reply = Put({mAt.x(), mAt.y()}, owner);
  if (!reply.IsGood()) return reply;
  mPath = path;
  mNext = 0;
  mReached = 0;
  mSinceStart.start();
  GoOn();
  return reply;
}

void Finger::GoOn() {
  if (!MoveOn()) Release();
}

// Every point is touched, however late this comes. False: it was the last one, or nobody reads the panel.
bool Finger::MoveOn() {
  const qint64 now = mSinceStart.elapsed();
  for (; mNext < mPath.size() && now >= mReached + mPath[mNext].ms; ++mNext) {
    mReached += mPath[mNext].ms;
    if (!Move({mPath[mNext].x, mPath[mNext].y})) return false;
  }
  if (mNext == mPath.size()) return false;
  const Point& from = mPath[std::max<qsizetype>(0, mNext - 1)];
  const Point& to = mPath[mNext];
  const qint64 since = now - mReached;
  if (!Move(Between(from, to, static_cast<double>(since) / to.ms))) return false;
  mMove.start(static_cast<int>(std::min<qint64>(kMove, to.ms - since)));
  return true;
}

// A finger that rests gives no records.
bool Finger::Move(QPoint to) {
  return std::exchange(mAt, to) == to || Put({to.x(), to.y()}, mOwner).IsGood();
}

Reply Finger::Press(const Spot& spot, const QObject* owner) {
  if (mTap.isActive() || mMove.isActive()) Release();
  return Put(spot, owner);
}

Reply Finger::Put(const Spot& spot, const QObject* owner) {
  emit Touching();
  const bool wasDown = IsDown();
  const QPoint raw = spot.isRaw ? QPoint(spot.x, spot.y) : mPanel.RawAt(spot.x, spot.y);
  if (QString error; !mPanel.PressRaw(raw.x(), raw.y(), &error)) return Reply::NotNow(error);
  QJsonObject entry{{QStringLiteral("kind"), QStringLiteral("touch")},
                    {QStringLiteral("name"), wasDown ? QStringLiteral("move") : QStringLiteral("press")},
                    {QStringLiteral("rawX"), raw.x()},
                    {QStringLiteral("rawY"), raw.y()}};
  if (!spot.isRaw) {
    entry.insert(QStringLiteral("x"), spot.x);
    entry.insert(QStringLiteral("y"), spot.y);
  }
  mOwner = owner;
  mLog.Add(entry);
  emit Changed();
  return {};
}

Reply Finger::Release() {
  mTap.stop();
  mMove.stop();
  if (!IsDown()) return {};
  if (QString error; !mPanel.Release(&error)) return Reply::NotNow(error);
  mOwner = nullptr;
  mLog.Add("touch", QStringLiteral("release"));
  emit Changed();
  return {};
}

void Finger::Leave(const QObject* owner) {
  if (mOwner == owner) Release();
}

void Finger::StartAfresh() {
  mTap.stop();
  mMove.stop();
  mPanel.Drain();
  emit Changed();
}
