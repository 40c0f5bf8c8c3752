#pragma once

#include <QElapsedTimer>
#include <QFile>
#include <QObject>
#include <memory>

#include "bench/record/recordfile.h"

class Bench;
class RecordLook;

/// Writes what happens to a recording of use, each line as it happens: a bench that is killed loses nothing.
class RecordWriter : public QObject {
  Q_OBJECT

public:
  explicit RecordWriter(Bench& bench, QObject* parent = nullptr);
  ~RecordWriter() override;

  /// Before the bench starts. False, with one sentence in `error`, when `path` cannot be written.
  bool Open(const QString& path, const RecordFile& begin, QString* error);

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

  Bench& mBench;
  std::unique_ptr<RecordLook> mLook;
  QFile mFile;
  qint64 mLastMs = 0;  // of the last line
  QElapsedTimer mSinceInput;
  QJsonObject mTouched;  // what was shown before the last touch
};
