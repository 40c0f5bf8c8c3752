#pragma once

#include <QTimer>
#include <memory>

#include "recorder/base/hub.h"
#include "recorder/card/refill.h"

namespace recorder {

/// The SD card: whether it is there, its format and its check.
class Card {
public:
  explicit Card(Hub& hub);

  /// Puts a card back that was out when an earlier recorder ended. Before the folders are made.
  void Start();

  /// The recorder ends: a format or check under way is over, and told.
  void Finish();

  /// Whether recordings can be written.
  bool IsReady() const { return !Hindrance(); }
  const char* Hindrance() const;  ///< why not, in one sentence; null: they can
  bool IsIn() const { return mState != QLatin1String("out"); }

  const CardFolder& Folder() const { return mFolder; }
  void KeepNoStamp() { mFolder.KeepNoStamp(); }
  QString State() const { return mState; }
  void SetState(const char* state) { mState = QLatin1String(state); }

  /// Takes the files away, or brings them back. False, with one sentence in `error`, when they cannot be moved.
  /// What is being done to the card ends.
  bool TakeOut(QString* error);
  bool PutIn(QString* error);

  /// Formats the card, and tells how it went; the answers cannot be lost. One that is under way goes on.
  void Format();
  void FailFormats(int number) { mFailing = number; }  ///< the next ones
  int FailingFormats() const { return mFailing; }

  /// Checks the card, and tells the fault, 0 for a good one.
  void Check();
  void SetNextFault(int fault) { mFault = fault; }
  int NextFault() const { return mFault; }

  /// Puts `number` recordings on a card that is ready, in place of all others: soon, while everything else goes on.
  void Fill(int number);
  bool IsFilling() const { return mRefill && !mIsFormat; }
  void StopFilling();  ///< those that are there stay

  /// How far it is: {"what": "fill" or "format", "done", "of"}; null: nothing is being done to the card.
  QJsonValue Work() const;

  /// Damages the newest recording of the front camera: cuts off its second half, or spoils its begin. False with one
  /// sentence in `error`.
  bool Corrupt(bool cut, QString* error);

private:
  struct Answer {
    RECV_ZEL_STATUS_EVENT event;
    int value;
  };

  void EndFormat();
  void Begin(int number);
  void GoOn();
  void End(bool good);
  void EndCheck();
  void Tell(const Answer& answer);

  Hub& mHub;
  CardFolder mFolder;
  QString mState = QStringLiteral("good");
  QTimer mFormat;
  QTimer mCheck;
  QTimer mSlice;                    // to the next slice of the refill
  std::unique_ptr<Refill> mRefill;  // null: none is under way
  bool mIsFormat = false;           // what is being done, or was: a format, not a filling
  QTimer mAgain;                    // to the next try to tell
  QList<Answer> mAnswers;           // not told yet
  int mFailing = 0;                 // formats
  int mFault = 0;
};

}  // namespace recorder
