#pragma once

#include <QElapsedTimer>
#include <QList>
#include <QObject>
#include <QPoint>
#include <QTimer>

#include "bench/panel/touchpanel.h"
#include "recorder/service/eventlog.h"
#include "recorder/service/reply.h"
#include "recorder/service/requests.h"

/// The one finger on the touch panel. What it does is logged.
class Finger : public QObject {
  Q_OBJECT

public:
  /// A place on the screen, or, when it is raw, in the panel's own units.
  struct Spot {
    int x = 0;
    int y = 0;
    bool isRaw = false;
  };

  Finger(TouchPanel& panel, EventLog& log, QObject* parent = nullptr);

  /// Puts the finger down afresh and lifts it after `ms`. `owner`: whose finger it is, see Leave().
  Reply Tap(const Spot& spot, int ms, const QObject* owner);

  /// Puts the finger down afresh at the first point, moves it in straight lines to the others, each `ms` after the one
  /// before, and lifts it after the last. At the first it rests for its `ms`. At least two points.
  Reply Follow(const QList<requests::Touch::Point>& path, const QObject* owner);

  /// Puts the finger down, or moves it when it is down. A tap or a path under way ends first.
  Reply Press(const Spot& spot, const QObject* owner);

  Reply Release();

  /// The interface has started: what nobody has read is gone, and the finger is up.
  void StartAfresh();

  /// `owner` has gone: the finger that it put down is lifted.
  void Leave(const QObject* owner);

  bool IsDown() const { return mPanel.IsDown(); }

signals:
  void Changed();
  void Touching();  ///< it is about to be put down, or to be moved

private:
  Reply Put(const Spot& spot, const QObject* owner);
  void GoOn();
  bool MoveOn();
  bool Move(QPoint to);

  TouchPanel& mPanel;
  EventLog& mLog;
  QTimer mTap;                          // to the release
  QTimer mMove;                         // to the next move on a path
  QList<requests::Touch::Point> mPath;  // under way
  qsizetype mNext = 0;                  // of its points
  qint64 mReached = 0;                  // ms when it was at the point before, or had rested at the first
  QElapsedTimer mSinceStart;            // of the path
  QPoint mAt;                           // the path's last move
  const QObject* mOwner = nullptr;
};
