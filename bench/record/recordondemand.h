#pragma once

#include <QJsonObject>
#include <QObject>
#include <memory>

#include "recorder/service/reply.h"

class Bench;
class RecordWriter;
class RootFolder;

/// A recording of use that a page wants, in a file below the root. It begins with the start of the camera, which is
/// switched off and on for it.
class RecordOnDemand : public QObject {
  Q_OBJECT

public:
  static constexpr qint64 kMost = 64 << 20;  ///< bytes: no replay reads more

  /// `isTaken`: the bench has recorded since its own start.
  RecordOnDemand(Bench& bench, const RootFolder& root, bool isTaken, QObject* parent = nullptr);
  ~RecordOnDemand() override;

  /// {"on": true} begins, {"on": false} ends.
  Reply Take(const QJsonObject& request);

  /// What was recorded, or is so far; empty: nothing.
  QByteArray File() const;

  /// {"on", "seconds", "inputs", "bytes"}; null: nothing was recorded.
  QJsonValue State() const;

private:
  void Begin();
  void End(const QString& note);
  QJsonObject Describe(bool on) const;

  Bench& mBench;
  const RootFolder& mRoot;
  const bool mIsTaken;
  QString mPath;
  std::unique_ptr<RecordWriter> mWriter;  // null: nothing is being recorded
  QJsonValue mLast;                       // of the recording that has ended
};
