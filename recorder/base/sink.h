#pragma once

#include <QJsonObject>
#include <QObject>
#include <QString>

#include "gui/vocabulary/vocabulary.h"
#include "recorder/link/statuschannel.h"

namespace recorder {

/// Where the parts of the recorder put what they have to tell: status events for the interface, entries for the log,
/// and that something has changed. What an entry and a signal say: see Recorder, which passes them on.
class Sink : public QObject {
  Q_OBJECT

public:
  explicit Sink(StatusChannel& status) : mStatus(status) {}

  /// Sends a status event (1..38, RECV_ZEL_STATUS_EVENT), and logs it. False for another, or when the queue is full.
  bool Send(int event, int value = 0);

  /// Says one sentence in the log.
  void Note(const QString& sentence);

signals:
  void Logged(const QJsonObject& entry);
  void StateChanged();
  void VideoChanged();
  void Stored(const QJsonObject& what);
  void RestartWanted();
  void InterfaceEndWanted();

private:
  StatusChannel& mStatus;
};

}  // namespace recorder
