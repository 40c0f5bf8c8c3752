#pragma once

#include <QTimer>

#include "recorder/base/hub.h"
#include "recorder/card/cardfolder.h"

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
  bool IsReady() const { return IsIn() && !mFormat.isActive(); }
  bool IsIn() const { return mState != QLatin1String("out"); }

  const CardFolder& Folder() const { return mFolder; }
  void KeepNoStamp() { mFolder.KeepNoStamp(); }
  QString State() const { return mState; }
  void SetState(const char* state) { mState = QLatin1String(state); }

  /// Takes the files away, or brings them back. False, with one sentence in `error`, when they cannot be moved.
  bool TakeOut(QString* error);
  bool PutIn(QString* error);

  /// Formats the card, and tells how it went; the answers cannot be lost. One that is under way goes on.
  void Format();
  void FailNextFormat() { mFormatFails = true; }

  /// Checks the card, and tells the fault, 0 for a good one.
  void Check();
  void SetNextFault(int fault) { mFault = fault; }

  /// Puts `number` recordings on the card in place of all others. False with one sentence in `error`.
  bool Fill(int number, QString* error);

  /// Damages the newest recording of the front camera: cuts off its second half, or spoils its begin. False with one
  /// sentence in `error`.
  bool Corrupt(bool cut, QString* error);

private:
  struct Answer {
    RECV_ZEL_STATUS_EVENT event;
    int value;
  };

  void EndFormat();
  void EndCheck();
  void Tell(const Answer& answer);

  Hub& mHub;
  CardFolder mFolder;
  QString mState = QStringLiteral("good");
  QTimer mFormat;
  QTimer mCheck;
  QTimer mAgain;           // to the next try to tell
  QList<Answer> mAnswers;  // not told yet
  bool mFormatFails = false;
  int mFault = 0;
};

}  // namespace recorder
