#pragma once

#include <QByteArray>
#include <QDateTime>
#include <QSet>
#include <algorithm>

#include "recorder/card/cardfolder.h"

namespace recorder {

/// Puts small recordings on a card in place of all that are there, one in each step: a full card takes seconds.
class Refill {
public:
  /// `number` recordings of a second each come, one a minute by both cameras; the last ones end at `until`. Then all
  /// others and the list of stops go.
  Refill(const CardFolder& card, int number, const QDateTime& until);

  /// The next step. False when the card is too small or cannot be written.
  bool Step();

  bool HasEnded() const { return mDone > mNumber && mOld.isEmpty(); }
  int Done() const { return mDone; }
  int Steps() const { return std::max(mDone, mNumber + 1) + static_cast<int>(mOld.size()); }

private:
  bool Put(int index);
  bool RemoveOld();

  const CardFolder& mCard;
  QSet<QString> mOld;  // and still there
  const int mNumber;
  const QDateTime mUntil;
  QByteArray mAvi;
  int mDone = 0;
};

}  // namespace recorder
