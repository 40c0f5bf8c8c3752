#pragma once

#include <QJsonObject>
#include <QObject>
#include <QString>
#include <memory>

/// What the video plane of the LCD shows, behind the interface.
struct VideoPlane {
  enum class View { Pip = 0, Front = 1, Rear = 2 };
  View view = View::Pip;
  bool mirrored = false;   ///< the rear picture is mirrored
  int pipCorner = 0;       ///< where the small picture stands: 0 right bottom, 1 right top, 2 left top, 3 left bottom
  bool rearAlive = true;   ///< false: the rear camera is unplugged or switched off; its picture is black
  bool recording = true;   ///< a recording is under way
};

/// The simulated recorder firmware: everything that the interface talks to over the platform library's transport, and
/// the files that the firmware leaves below the root. It knows no screen. One thread, the one it was made in.
class Recorder : public QObject {
  Q_OBJECT

public:
  /// `root` is the folder that stands for the device's file system; without a slash at its end.
  explicit Recorder(const QString& root, QObject* parent = nullptr);
  ~Recorder() override;

  /// Writes the files that the firmware leaves before the interface starts, creates the queue and the segment, and
  /// listens for commands. False, with one sentence in `error`, when that is impossible.
  bool Start(QString* error);

  /// Sends status event `event` (1..38, RECV_ZEL_STATUS_EVENT) with `value` to the interface. False when the queue is full.
  bool SendStatus(int event, int value);

  /// Does one of the bench's actions (a button): see Actions(). False, with one sentence in `error`, for an unknown name
  /// or a bad argument.
  bool Do(const QString& name, const QJsonObject& arguments, QString* error);

  /// Every action: [{"name", "group", "label", "arguments": [{"name", "min", "max", "default"} or {"name", "choices"}]}]
  static QJsonArray Actions();

  /// The recorder's whole state, for a person and for tests: settings, decoded setup block, cameras, power, card, ...
  QJsonObject State() const;

  VideoPlane Video() const;

signals:
  /// One entry of the log: {"kind": "command"|"event"|"action"|"note", "name", "field" or "event", "value", "result", ...}
  void Logged(const QJsonObject& entry);
  void StateChanged();
  void VideoChanged();
  /// The firmware restarts the device: the interface must be ended and started again.
  void RestartWanted();

private:
  struct Parts;
  std::unique_ptr<Parts> mParts;
};
