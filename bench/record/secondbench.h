#pragma once

#include <QJsonValue>
#include <QList>
#include <QMap>
#include <QObject>
#include <QStringList>
#include <QThread>
#include <functional>
#include <memory>

#include "recorder/service/reply.h"

class Child;

/// A second bench that replays a recording of use: a process of its own, which ends with this one. What it has said
/// stays until the next replay.
class SecondBench : public QObject {
  Q_OBJECT

public:
  /// `folder`: for the recording and the pictures that differ. It is made and removed.
  explicit SecondBench(const QString& folder, QObject* parent = nullptr);
  ~SecondBench() override;

  /// Replays a recording. It is read beside everything else, then it is `done`; one that is being replayed is ended
  /// first, and goes on when the new one is refused.
  void Start(const QByteArray& recording, bool isFast, const std::function<void(const Reply&)>& done);

  Reply Stop();

  /// The member `replay` of the bench's state: null when there was no replay.
  QJsonValue State() const;

  /// The file of a picture that State() names by `path`, with a slash before it; null: it names no such picture.
  QString Picture(const QString& path) const { return mPictures.value(path); }

signals:
  void Changed();

private:
  void Replace(const QString& folder, bool isFast);
  void Launch();
  void End();
  void Finished();
  void TakeOutput(const QString& line);
  void TakeError(const QString& line);
  void FindPictures();

  QString mHome;     // of all replays
  QString mRunning;  // the folder of the replay that runs
  QString mFolder;   // of the newest replay; empty: there was none
  int mSent = 0;
  std::unique_ptr<QThread> mReader;  // null: none is being read
  bool mIsFast = false;
  bool mIsNext = false;     // the newest one begins when the one before has ended
  Child* mChild = nullptr;  // null: none runs
  QString mAddress, mSummary;
  QStringList mDifferences;
  QList<int> mNumbers;               // of the pictures
  QMap<QString, QString> mPictures;  // files by path
};
