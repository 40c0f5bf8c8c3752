#include "bench/panel/finger.h"

Finger::Finger(TouchPanel& panel, EventLog& log, QObject* parent) : QObject(parent), mPanel(panel), mLog(log) {
  mTap.setSingleShot(true);
  mTap.callOnTimeout([this] { Release(); });
}

Reply Finger::Tap(const Spot& spot, int ms, const QObject* owner) {
  Release();
  Reply reply = Press(spot, owner);
  if (reply.IsGood()) mTap.start(ms);
  return reply;
}

Reply Finger::Press(const Spot& spot, const QObject* owner) {
  if (mTap.isActive()) Release();
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
  mPanel.Drain();
  emit Changed();
}
