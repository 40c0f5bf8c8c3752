#pragma once

#include <QJsonArray>
#include <QJsonObject>
#include <QObject>
#include <deque>

/// The log of recorder and bench: the newest 2000 entries. Their numbers begin at 1 and have no gaps.
class EventLog : public QObject {
  Q_OBJECT

public:
  using QObject::QObject;

  /// Takes an entry ("kind", "name" and what the kind has) and gives it its number and its time.
  void Add(QJsonObject entry);

  /// One without further members.
  void Add(const char* kind, const QString& name);

  /// The number of the newest entry; 0: there is none.
  qint64 Last() const { return mLast; }

  /// The entries with a number above `since`, newest first, `most` of them.
  QJsonArray Since(qint64 since, qsizetype most) const;

  static constexpr qsizetype kMost = 2000;

signals:
  void Added(const QJsonObject& entry);

private:
  std::deque<QJsonObject> mEntries;
  qint64 mLast = 0;
};
