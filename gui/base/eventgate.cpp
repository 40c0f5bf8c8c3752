#include "gui/base/eventgate.h"

#include <QCoreApplication>
#include <QTimer>
#include <utility>

namespace {
constexpr int kPaintMs = 100;  // far more than painting takes; a flood of events must not hold the handler up for ever
}  // namespace

EventGate gEventGate;

bool EventGate::Enter(QObject* receiver, std::function<void()> again) {
  const bool first = std::exchange(mDraining, false);
  if (mClosed == 0 && (first || mWaiting.empty())) return true;
  mWaiting.push_back({receiver, std::move(again)});
  return false;
}

bool EventGate::Enter(QTimer* timer) {
  if (mClosed == 0) return true;
  timer->start(1);
  return false;
}

void EventGate::ProcessEvents() {
  ++mClosed;
  // Until there is nothing left: one pass over the queue only gets as far as asking for the painting.
  QCoreApplication::processEvents(QEventLoop::ExcludeUserInputEvents, kPaintMs);
  --mClosed;
  Drain();
}

// The next one that waits, from the event loop, so after the handler that is running; then the one after it.
void EventGate::Drain() {
  if (mClosed > 0 || mDrainArmed || mWaiting.empty()) return;
  mDrainArmed = true;
  QTimer::singleShot(0, QCoreApplication::instance(), [this] {
    mDrainArmed = false;
    if (mClosed == 0 && !mWaiting.empty()) {
      const Waiting next = std::move(mWaiting.front());
      mWaiting.pop_front();
      if (next.receiver) {
        mDraining = true;
        next.again();
        mDraining = false;
      }
    }
    Drain();
  });
}
