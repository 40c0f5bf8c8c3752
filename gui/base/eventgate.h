#pragma once

#include <QPointer>
#include <deque>
#include <functional>

class QTimer;

/// One touch, release or status event at a time.
///
/// Showing a box means letting Qt paint in the middle of a handler, and holding back the window system's input does not
/// hold back queued signals or timers. So whatever arrives while a handler lets Qt paint waits here and is
/// handled, in order, when the handler has ended. GUI thread.
class EventGate {
public:
  /// True when the caller may go on. False when it has to wait: `again` is called in order later, unless
  /// `receiver` has gone by then.
  bool Enter(QObject* receiver, std::function<void()> again);

  /// For the slot of a timer: true when it may go on; false when it has to wait: the timer then comes again in 1 ms.
  bool Enter(QTimer* timer);

  /// Lets Qt paint and deliver; touches, releases, status events and timers that arrive meanwhile wait.
  void ProcessEvents();

private:
  struct Waiting {
    QPointer<QObject> receiver;
    std::function<void()> again;
  };
  void Drain();

  std::deque<Waiting> mWaiting;
  int mClosed = 0;         // depth of ProcessEvents
  bool mDraining = false;  // the one that enters now comes from mWaiting
  bool mDrainArmed = false;
};

extern EventGate gEventGate;
