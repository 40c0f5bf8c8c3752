#pragma once

#include <QDeadlineTimer>
#include <QElapsedTimer>
#include <QImage>
#include <QMutex>
#include <QObject>
#include <QThread>
#include <QWaitCondition>
#include <atomic>
#include <memory>

#include "bench/footage/film.h"

/// What a camera sees in place of the road: a video, again and again, or a camera of this machine. It is decoded in a
/// thread of its own, at its own speed, and only while somebody asks for its picture.
class Footage : public QObject {
  Q_OBJECT

public:
  Footage() = default;
  ~Footage() override;

  /// Reads the first picture; 20 s at most. False with one sentence in `error`. Once.
  bool Open(const QString& path, QString* error);

  /// What is to be seen now: 480 × 320 RGB32. It goes on for a second. After Open(), from any thread.
  QImage Picture();

signals:
  /// It stays at its last picture from now on. One sentence; from the thread of its own.
  void Broke(const QString& sentence);

private:
  bool ReadFirst(QString* error);
  void Run();
  bool Play(int* pictures);
  bool Show();
  bool Wait(qint64 microseconds);
  bool AwaitWish();
  qint64 Now() const { return mClock.nsecsElapsed() / 1000; }

  QString mPath;
  std::atomic<bool> mIsEnding = false;
  std::unique_ptr<Film> mFilm;  // of the thread, as soon as it runs
  std::unique_ptr<QThread> mThread;
  QElapsedTimer mClock;
  // Microseconds of the clock: when the film began, when its last picture was due, and how long after the one before.
  qint64 mBegin = 0, mShown = 0, mStep = 0;
  QMutex mMutex;  // of what follows
  QWaitCondition mChanged;
  QDeadlineTimer mWanted;
  QImage mPicture;
};
