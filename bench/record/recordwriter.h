#pragma once

#include <QElapsedTimer>
#include <QFile>
#include <QObject>
#include <memory>

#include "bench/record/recordfile.h"

class Bench;
class RecordLook;

/// Writes what happens to a recording of use, each line as it happens: a bench that is killed loses nothing. Until
/// there is an input, nothing to replay, the lines stand in a file beside it.
class RecordWriter : public QObject {
  Q_OBJECT

public:
  explicit RecordWriter(Bench& bench, QObject* parent = nullptr);
  ~RecordWriter() override;  ///< a recording without an input is removed

  /// Before the bench starts. `replaces`: the file of another recording may be there. False, with one sentence in
  /// `error`, when one is that may not, or when `path` cannot be written.
  bool Open(const QString& path, bool replaces, const RecordFile& begin, QString* error);

  /// No more than so many bytes: then it ends, and Failed() says so. Without it there is no limit.
  void EndAt(qint64 bytes) { mMost = bytes; }

  int Inputs() const { return mInputs; }
  qint64 Bytes() const { return mBytes; }

  /// The last line. Before the bench stops.
  void Finish();

signals:
  void Failed(const QString& error);  ///< one sentence; nothing more is written

private:
  void TakeLog(const QJsonObject& entry);
  void TakeInput(RecordEntry::Kind kind, const QJsonObject& request);
  void AddSeen(RecordEntry* entry, const QJsonObject& seen);
  void Write(RecordEntry entry);
  bool WriteLine(const QByteArray& line);
  void GiveUp(const QString& sentence);

  Bench& mBench;
  std::unique_ptr<RecordLook> mLook;
  QString mPath;
  QFile mFile;
  bool mHasInput = false;  // and so the file has its own name
  int mInputs = 0;
  qint64 mBytes = 0;
  qint64 mMost = 0;    // bytes; 0: any
  qint64 mLastMs = 0;  // of the last line
  QElapsedTimer mSinceInput;
  QJsonObject mTouched;  // what was shown before the last touch
};
