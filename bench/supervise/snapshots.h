#pragma once

#include <QJsonArray>
#include <QJsonObject>
#include <QObject>
#include <QString>
#include <QThread>
#include <atomic>
#include <functional>
#include <memory>

/// The camera as it was, under a name: copies of its files, below the root's folder `snapshots`, each with a note of
/// what the recorder had in mind. Files are copied by a thread, and nobody waits for it; one thing at a time.
class Snapshots : public QObject {
  Q_OBJECT

public:
  static constexpr int kMost = 20;

  /// The root is furnished. A camera that was left half way back was put right by Recover().
  explicit Snapshots(const QString& root, QObject* parent = nullptr);
  ~Snapshots() override;  ///< what is under way is given up

  /// Undoes what a bench that was killed has left half done below `root`. Before anything else is done there.
  static void Recover(const QString& root);

  /// 1..40 letters, digits, spaces, '-' and '_', no space at either end.
  static bool IsName(const QString& name);

  /// [{"name", "time" (ms since 1970), "bytes"}], the oldest first.
  QJsonArray List() const;

  /// {"what": "save", "restore" or "remove", "name"}; null: nothing is under way.
  QJsonValue Work() const { return mWork; }

  /// Each begins its work; it ends with Ended(). False, with one sentence in `error`: it cannot be done now.
  bool Save(const QString& name, const QJsonObject& memory, QString* error);
  bool Remove(const QString& name, QString* error);
  /// Copies the files to where the camera can take them over; then Ready(), or Ended() when that failed.
  bool Fetch(const QString& name, QString* error);

  /// After Ready(), when recorder and interface have ended: the camera's files are these from now on, or what they
  /// were.
  void TakeOver();

signals:
  void Changed();
  void Ready();
  /// `problem`: one sentence, empty without one. After TakeOver(), `memory`: of the camera as it is now again.
  void Ended(const QString& problem, const QJsonObject& memory);

private:
  struct Snapshot {
    QString name;
    qint64 time = 0;
    qint64 bytes = 0;
    QJsonObject memory;
  };
  using Task = std::function<QString()>;  // one sentence, or empty

  void Read();
  const Snapshot* Find(const QString& name) const;
  bool IsFree(QString* error) const;
  bool Has(const QString& name, QString* error) const;
  QString Folder(const QString& name) const;
  void Begin(const char* what, const QString& name, const Task& task, const std::function<void(QString)>& then);
  void End(const QString& problem, const QJsonObject& memory = {});
  QString Copy(const QString& from, const QString& to, qint64* bytes) const;

  QString mRoot;
  QList<Snapshot> mSnapshots;
  QJsonValue mWork;
  std::unique_ptr<QThread> mThread;
  std::atomic<bool> mIsGivenUp = false;
  QString mFetched;  // its name
};
