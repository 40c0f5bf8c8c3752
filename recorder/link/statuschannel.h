#pragma once

#include <QString>

namespace recorder {

/// The sending end of the status messages: the System V queue, and the recorder's own slot of the segment.
///
/// The queue is never removed while recorder or interface may be running: an interface that waits on it would never
/// hear of a new one. Whoever opens it empties it instead.
class StatusChannel {
public:
  StatusChannel() = default;
  ~StatusChannel();
  StatusChannel(const StatusChannel&) = delete;
  StatusChannel& operator=(const StatusChannel&) = delete;

  /// Creates the queue and the segment, or takes those that are there, and empties the queue. False, with one sentence
  /// in `error`, when the machine refuses or they are another user's.
  bool Open(QString* error);

  /// Sends `event` with `value`; does not wait. False when the queue is full or gone.
  bool Send(int event, int value);

  /// Messages that wait in the queue; 0 when there is no queue.
  int Waiting() const;

  /// Removes queue and segment from the machine.
  static void Remove();

private:
  bool OpenQueue(QString* error);
  bool OpenSegment(QString* error);

  int mQueue = -1;
  char* mSegment = nullptr;
  int mCell = 0;  // the cell of the next payload
};

}  // namespace recorder
