#pragma once

#include <QByteArray>
#include <QList>
#include <QTimer>
#include <array>
#include <memory>

#include "recorder/card/card.h"
#include "recorder/card/clipfacts.h"
#include "recorder/card/clipwriter.h"
#include "recorder/card/pictureencoder.h"
#include "recorder/device/cameras.h"
#include "recorder/device/voice.h"

namespace recorder {

/// Whether the recorder records, and the recordings: one after another by the cameras that are there, while the car
/// drives or is parked, with one of its own for what happens. A recording grows in memory and is on the card when it is
/// whole; one shorter than a second is none. While the clock runs faster, so do the recordings: their pictures repeat.
class Recording {
public:
  /// Why the interface stops the recording.
  enum Stop { kBrowse = 1, kSave = 2, kCard = 3 };
  static constexpr int kMost = 400;  ///< recordings on the card; more replace the oldest that are not protected

  Recording(Hub& hub, Voice& voice, Cameras& cameras, Card& card);
  ~Recording();

  void Start(const CameraSource& source);

  /// From now on nothing is recorded: a replay puts on the card what was. Before Start().
  void Follow() { mFollows = true; }

  void Begin();
  /// The voice's end lets the interface go on after kSave and kCard.
  void End(int why);

  /// The recorder ends.
  void Finish();

  /// Ends the recording under way; what follows is recorded while the car is parked, or drives.
  void SetParked(bool parked);

  /// Something has happened: the recording under way ends, and another one of this kind begins.
  void Mark(Label::Kind kind, Label::Trigger trigger);
  void EndProtected();  ///< one of the kind Protected ends

  /// The same for something that happened while parked, at `seconds` since 1970: it is on the card at once.
  void MarkPast(Label::Trigger trigger, qint64 seconds);

  /// The clock goes on by so many seconds. What would have been recorded meanwhile is on the card soon, the newest
  /// first, as much as has room there; with pictures that it shares. False when the clock cannot go there, or cannot be
  /// kept.
  bool LetPass(qint64 seconds);

  /// The supply voltage or the temperature spoils the recording under way.
  void SetCut(Label::Cut cut);

  /// While it is, the names say so.
  void SetClockBroken(bool broken) { mClockBroken = broken; }

  bool IsOn() const { return mOn && mCard.IsReady(); }
  bool IsStopped() const { return !mOn; }  ///< the interface has ended it

private:
  struct Take {
    Label label;
    int length = 0;  // pictures
    std::array<std::unique_ptr<ClipWriter>, 2> writers;
  };

  void NoteStop();
  QDateTime NextStart(int behind) const;
  Take NewTake(const Label& label, int length, int behind = 0) const;
  void Record();
  void AddPictures(int behind, bool areNew);
  void AddPicture(Take* take, int camera, bool isNew = true);
  void PutPassed();
  void FinishTake();
  void Store(const Take& take, qint64 changed);
  static qint64 EndOf(const Take& take);  // ms since 1970

  // Recordings that a time which passed has left to be made.
  struct Passed {
    Label label;  // of the next
    int clips;    // that one and those before it
  };

  Hub& mHub;
  Voice& mVoice;
  Cameras& mCameras;
  Card& mCard;
  CameraSource mSource;
  PictureEncoder mEncoder;
  Picture mPicture;
  std::array<QByteArray, 2> mShown;  // the newest picture of either camera
  QTimer mTick;
  ClipMaker mMaker;             // of what would have been recorded
  QList<Passed> mPassed;        // the newest first
  QTimer mPut;                  // to the next of these
  std::unique_ptr<Take> mTake;  // null: none is under way
  Label::Kind mKind = Label::Kind::Normal;
  bool mOn = true;
  bool mClockBroken = false;
  bool mFollows = false;
  QDateTime mStopped;                                       // null: it was not
  QDateTime mStoppedHere;                                   // by this machine's clock
  QDateTime mLastStart = QDateTime::fromSecsSinceEpoch(0);  // no two recordings of one second
  QDateTime mLastEnd = mLastStart;
  qint64 mLastChanged = 0;  // ms since 1970; no two files of one time
};

}  // namespace recorder
