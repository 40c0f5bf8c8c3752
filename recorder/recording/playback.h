#pragma once

#include <QElapsedTimer>
#include <QJsonObject>
#include <QTimer>
#include <memory>

#include "recorder/card/card.h"
#include "recorder/card/clipreader.h"

namespace recorder {

/// Plays a recording of the card on the video plane, and tells where it is: at once, and each time that another second
/// has begun; at the end the length, and then that it is the end.
class Playback {
public:
  /// What the interface wants.
  enum Control { kStop = 0, kResume = 1, kPause = 2 };

  Playback(Hub& hub, const Card& card);
  ~Playback();

  /// Begins to play, in place of what was played. `path` is the camera's: "/mnt/mmc/" and a name. What goes wrong is
  /// told by a status event.
  void Play(const QByteArray& path);

  /// False for a number that is none.
  bool Do(int control);

  /// Goes to `ms`, at most the last picture. Nothing is played: nothing happens.
  void Seek(int ms);

  void Stop();

  /// The picture that shows; null: nothing is played.
  std::shared_ptr<const Picture> Shown() const { return mReader ? mReader->Taken() : nullptr; }
  QJsonObject State() const;

private:
  void Advance(bool afresh);
  void Wait(bool afresh);
  void End(int status);
  void Tell(qint64 ms);

  Hub& mHub;
  const Card& mCard;
  QByteArray mName;
  std::unique_ptr<ClipReader> mReader;
  QTimer mNext;          // to the next picture
  QElapsedTimer mClock;  // since the picture at mFrom
  qint64 mFrom = 0;
  qint64 mTold = -1;  // the second told last
  bool mPaused = false;
  bool mEnded = false;  // the last picture shows on
};

}  // namespace recorder
