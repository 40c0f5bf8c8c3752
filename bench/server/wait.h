#pragma once

#include <QObject>
#include <QTimer>

#include "bench/camera/bench.h"
#include "bench/server/asker.h"

/// Somebody waits for a screen or a box to be up. It goes with the connection, after its answer or when they have left.
class Wait : public QObject {
  Q_OBJECT

public:
  struct Wish {
    QString screen;   ///< empty: any
    QString box;      ///< of the screen or of an event; empty: any or none; "none": none is up
    int timeout = 0;  ///< ms
  };

  /// Takes {"screen", "box", "timeout"}.
  static Reply Take(const QJsonObject& request, Wish* wish);

  Wait(Bench& bench, const Wish& wish, const Asker& asker);

private:
  void Look();
  void GiveUp();
  void End(const Answer& answer);

  Bench& mBench;
  Wish mWish;
  Asker mAsker;
  QTimer mTimeout;
};
