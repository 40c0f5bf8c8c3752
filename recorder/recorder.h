#pragma once

#include <QDateTime>
#include <QJsonArray>
#include <QJsonObject>
#include <QObject>
#include <QString>
#include <QStringList>
#include <memory>

#include "recorder/picture.h"

namespace recorder {
struct Parts;
}

/// What the video plane of the LCD shows, behind the interface.
struct VideoPlane {
  enum class View { Pip = 0, Front = 1, Rear = 2 };
  View view = View::Pip;
  bool mirrored = false;  ///< the rear picture is mirrored
  int pipCorner = 0;      ///< where the small picture stands: 0 right bottom, 1 right top, 2 left top, 3 left bottom
  bool rearAlive = true;  ///< false: the rear camera is unplugged or switched off; its picture is black
  bool recording = true;  ///< a recording is under way
  /// The picture of the recording that is being played, in place of the cameras; null: none is.
  std::shared_ptr<const Picture> played;
  /// What the firmware shows during its update, in front of all, with full backlight: files of this machine, from the
  /// back to the front, each as wide as the LCD and at its bottom. Empty: no update.
  QStringList update;
};

/// The simulated recorder firmware: everything that the interface talks to over the platform library's transport, and
/// the files that the firmware leaves below the root. It knows no screen. One thread, the one it was made in.
///
/// Any of recorder and interface may be started first, end and come back:
/// - the queue and the segment are created by whoever needs them first. A recorder that starts only empties the queue
///   and never removes it: a living interface waits on that very queue and would never hear of another one;
/// - the socket file is replaced when the recorder that made it is dead; the interface connects anew by itself;
/// - each connection's first query of the voltage is taken for a started interface: it is told the state;
/// - the settings are those of the last INI file, which always holds what the recorder holds.
class Recorder : public QObject {
  Q_OBJECT

public:
  /// How long the firmware takes, in milliseconds; each above 0.
  struct Delays {
    int voice = 1500;         ///< a spoken confirmation
    int stopVoice = 2000;     ///< the voice after a recording was stopped
    int manualEvent = 10000;  ///< a manual event recording
    int powerOff = 30000;     ///< from the low-voltage countdown to the power-off
    int restart = 2000;       ///< from the notice of a restart to the restart
    int drift = 60000;        ///< one swing of the supply voltage
    int lcdStep = 7000;       ///< between two levels of the automatic backlight
    int picture = 250;        ///< between two pictures of a recording; they are 250 ms of its time apart
    int clip = 20000;         ///< a recording, of its own time: 1000..60000; one of an impact or movement takes half
    int format = 3000;        ///< the format of the card
    int check = 2000;         ///< the check of the card
    int verdict = 1500;       ///< from the second voltage measurement to the verdict
    int playSecond = 1000;    ///< a second of a recording that is played
    int update = 500;         ///< half a blink of an update; it takes 14 of them
  };

  /// `root` is the folder that stands for the device's file system; without a slash at its end.
  explicit Recorder(const QString& root, QObject* parent = nullptr);

  /// Closes the socket and removes its file. The queue and the segment stay, for the recorder that comes next.
  ~Recorder() override;

  /// Other delays than the usual ones. Before Start().
  void SetDelays(const Delays& delays);

  /// What the cameras see; moving stripes unless given. Before Start().
  void SetCameras(const CameraSource& cameras);

  /// Writes the files that the firmware leaves before the interface starts, creates the queue and the segment (their
  /// key: environment PLATFORM_KEY), and listens for commands. False, with one sentence in `error`, when that is
  /// impossible, or when another recorder listens below the same root: its files and its queue are left alone.
  bool Start(QString* error);

  /// Fills a card that no recorder has formatted yet with the recordings of the last days, 362 of them; the last one
  /// ends at `until`, without it now. False, with one sentence in `error`, when it is too small.
  bool FillNewCard(QString* error, const QDateTime& until = {});

  /// What a recording of use and its replay need, so that the same happens at the same time:
  /// takes `now` for this machine's clock. `wasTaken`: a recorder below this root did so before. Before Start().
  void SetMachineClock(const QDateTime& now, bool wasTaken);
  /// Moves that clock on by `ms`, or back: a replay leaves time out.
  void SkipTime(qint64 ms);
  /// Nothing is recorded: a replay puts on the card what was. Before Start().
  void FollowReplay();
  /// Puts on the card what Stored() told. False, with one sentence in `error`, when it is no such thing.
  bool Store(const QJsonObject& what, QString* error);

  /// Removes the queue and the segment from the machine. For the end of the bench, when the interface has ended.
  static void RemoveTransport();

  /// Sends status event `event` (1..38, RECV_ZEL_STATUS_EVENT) with `value` to the interface. False for another event,
  /// or when the queue is full. Never blocks.
  bool SendStatus(int event, int value);

  /// Does one of the bench's actions (a button): see Actions(). False, with one sentence in `error`, for an unknown
  /// name or a bad argument, or when it cannot be done now.
  bool Do(const QString& name, const QJsonObject& arguments, QString* error);

  /// Puts a picture of the driver's on the card, a BMP file, and restarts the device: the interface takes it at its
  /// start alone. False, with one sentence in `error`, when there is no card, or it cannot be written.
  bool PutOwnPicture(const QByteArray& bmp, QString* error);

  /// Every action: [{"name", "group", "label", "arguments": [{"name", "min", "max", "default"} or {"name",
  /// "choices"}]}] A number is whole unless the argument says "fraction": true. An argument may be left out when it
  /// says "optional": true. Choices are texts.
  static QJsonArray Actions();

  /// Plays the scenario of `file`: one JSON object a line, {"ms", "event", "value"}, {"ms", "action", its arguments} or
  /// {"ms", "touch": {"x", "y"}}; ms (0..86400000) count from the interface's first command, or from now when that has
  /// come already. The whole file is checked first: false, with one sentence that names the line. It replaces a
  /// scenario that is being played.
  bool PlayScenario(const QString& file, QString* error);

  /// The recorder's whole state, for a person and for tests: settings, decoded setup block, cameras, power, card, ...
  QJsonObject State() const;

  VideoPlane Video() const;

signals:
  /// One entry of the log: {"kind": "command"|"event"|"action"|"note", "name", "field" or "event", "value", "result",
  /// ...}
  ///   command: "name" of the field, "field", "value" (4 bytes) or "data" (hex), "result", "answer" of a query
  ///   event:   "name", "event", "value", "result" (0, or -1: not sent)
  ///   action:  "name", "arguments", "result", "error" when refused
  ///   note:    "name" is one sentence
  void Logged(const QJsonObject& entry);
  void StateChanged();
  void VideoChanged();
  /// This is on the card now: {"name", ...} a recording, {"from", "to"} a time at which nothing was recorded.
  void Stored(const QJsonObject& what);
  /// A scenario is about to send an event ({"event", "value"}), or to do an action ({"name", its arguments}).
  void EventWanted(const QJsonObject& request);
  void ActionWanted(const QJsonObject& request);
  /// A scenario wants a tap on the screen, x 0..479 and y 0..319.
  void TapWanted(int x, int y);
  /// The firmware restarts the device: the interface must be ended and started again.
  void RestartWanted();
  /// An update begins: the interface must be ended. It comes back by RestartWanted().
  void InterfaceEndWanted();

private:
  std::unique_ptr<recorder::Parts> mParts;
};
