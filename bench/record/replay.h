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

  /// Reads and checks a recording that can be replayed. False, with one sentence in `error`, when it is none.
  static bool Read(const QString& path, RecordFile* file, QString* error);

  /// Whether a line that a replay has printed is a difference, not its last sentence.
  static bool IsDifference(const QString& line);

  /// `bench` has not started.
  Replay(Bench& bench, const RecordFile& file, const Options& options, QObject* parent = nullptr);
  ~Replay() override;

  /// With the bench.
  void Start();

  /// {"pause": true} holds it before the next input, as soon as the finger is up, until {"pause": false}; {"step":
  /// true} gives that one without the waiting of a person, and holds it before the one after. The time that it is held
  /// is no input's.
  Reply Control(const QJsonObject& request);

  /// The member `replaying` of the bench's state.
  QJsonObject State() const;

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

  qint64 Elapsed() const { return mSession.elapsed() - mHeld; }
  bool IsHeld() const;
  bool Hold();
  void TakeLog(const QJsonObject& log);
  void Go();
  bool IsAwaiting() const;
  bool EndsSoon() const;
  bool HaveAllCome() const;
  bool IsMet(QString* why);
  qint64 Least(qint64 gap) const;
  void SayMissing();
  Reply GiveAgain(const RecordEntry& input);
  void Give(const QString& unmet);
  void Store();
  void Differ(const QString& sentence);
  void SavePictures();
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
  qint64 mGiven = 0;      // Elapsed() when that was given
  QElapsedTimer mSession, mMet;
  int mMargin;  // ms that an input waits longer than it did
  bool mIsPaused = false;
  bool mIsStep = false;  // the next input is given although it is paused
  qint64 mHeld = 0;      // ms of the session in which it was held
  qint64 mLooked = 0;    // ms of the session at the last look
  int mInputs = 0;       // that were given
  int mDifferences = 0;
};
