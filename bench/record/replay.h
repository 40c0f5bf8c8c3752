#pragma once

#include <QElapsedTimer>
#include <QObject>
#include <QTimer>
#include <array>
#include <memory>

#include "bench/record/recordfile.h"
#include "recorder/service/reply.h"

class Bench;
class RecordLook;

/// Plays a recording of use: gives its inputs again, each when the interface shows what it showed then and has said and
/// asked all that came before, and tells what is different.
class Replay : public QObject {
  Q_OBJECT

public:
  struct Options {
    bool isFast = false;  ///< without the waiting of the person who was recorded
    QString differences;  ///< a folder for pictures that are different; empty: none
  };

  /// `bench` has not started.
  Replay(Bench& bench, const RecordFile& file, const Options& options, QObject* parent = nullptr);
  ~Replay() override;

  /// With the bench.
  void Start();

  int Differences() const { return mDifferences; }

  /// One sentence: how many inputs, how long, how many differences.
  QString Summary() const;

signals:
  void Differs(const QString& difference);  ///< one sentence
  void Ended();

private:
  /// Entries of one kind, which come in their order.
  struct Stream {
    RecordEntry::Kind kind;
    QList<qsizetype> expected;  // indices of the entries
    qsizetype cursor = 0;       // the next of them that has not come
  };

  void TakeLog(const QJsonObject& log);
  void Go();
  bool IsAwaiting() const;
  bool HaveAllCome() const;
  bool IsMet(QString* why);
  qint64 Least(qint64 gap) const;
  void SayMissing();
  Reply GiveAgain(const RecordEntry& input);
  void Give(const QString& unmet);
  void Store();
  void Differ(const QString& sentence);
  void SavePicture();
  QString Where() const;
  const RecordEntry& Next() const { return mEntries[mNext]; }

  Bench& mBench;
  Options mOptions;
  QList<RecordEntry> mEntries;
  std::array<Stream, 3> mStreams;
  std::unique_ptr<RecordLook> mLook;
  QTimer mGo;
  qsizetype mNext = 0;    // of the entries: the next input, or the end
  qsizetype mStored = 0;  // of the entries: those before it are on the card
  qint64 mLastMs = 0;     // of the recording: the last input
  QElapsedTimer mSession, mSinceLast, mMet;
  int mMargin;  // ms that an input waits longer than it did
  int mInputs = 0;
  int mDifferences = 0;
};
