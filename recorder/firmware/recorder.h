#pragma once

#include <QDateTime>
#include <QJsonArray>
#include <QJsonObject>
#include <QObject>
#include <QString>
#include <memory>

#include "recorder/base/delays.h"
#include "recorder/base/picture.h"
#include "recorder/base/videoplane.h"
#include "recorder/firmware/actions.h"
#include "recorder/service/reply.h"

namespace recorder {
class CommandServer;
class Scenario;
struct Parts;
}  // namespace recorder

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
  using Delays = recorder::Delays;

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

  /// What it knows and no file does, for a recorder that is to go on as this one: the rear camera, the battery, a
  /// parking under way, GPS and speed, the accessory power.
  QJsonObject Memory() const;
  /// Goes on so; an interface hears of it when it starts. What makes no sense, or is missing, stays as it is. After
  /// Start().
  void Remember(const QJsonObject& memory);

  /// Removes the queue and the segment from the machine. For the end of the bench, when the interface has ended.
  static void RemoveTransport();

  /// Sends status event `event` (1..38, RECV_ZEL_STATUS_EVENT) with `value` to the interface. False for another event,
  /// or when the queue is full. Never blocks.
  bool SendStatus(int event, int value);

  /// Does one of the bench's actions (a button): see Actions(). False, with one sentence in `error`, for an unknown
  /// name or a bad argument, or when it cannot be done now.
  bool Do(const QString& name, const QJsonObject& arguments, QString* error);

  /// SendStatus() and Do() with what is replied to whoever asked: 409 when the interface could not be told.
  Reply Tell(int event, int value);
  Reply Act(const QString& name, const QJsonObject& arguments);

  /// Puts a picture of the driver's on the card, a BMP file, and restarts the device: the interface takes it at its
  /// start alone. False, with one sentence in `error`, when there is no card, or it cannot be written.
  bool PutOwnPicture(const QByteArray& bmp, QString* error);

  /// Every action: [{"name", "group", "label", "arguments": [{"name", "min", "max", "default"} or {"name",
  /// "choices"}]}] A number is whole unless the argument says "fraction": true. An argument may be left out when it
  /// says "optional": true. Choices are texts.
  static QJsonArray Actions();

  /// Every status event: [{"event", "name"}]
  static QJsonArray Events();

  /// What actions have prepared and is still to come: [{"action", "arguments", "disarm"}], its arguments as they are
  /// now, and the request of the same action that undoes it.
  QJsonArray Armed() const;

  /// The actions that cannot be done now, each with one sentence: {"parkOut": "The car is not parked."}
  QJsonObject Unavailable() const;

  /// Plays the scenario of `file`: one JSON object a line, {"ms", "event", "value"}, {"ms", "action", its arguments},
  /// {"ms", "touch": {"x", "y", ...}}, {"ms", "say": a sentence} or {"ms", "picture": the name of a file beside it}; ms
  /// (0..86400000) count from the interface's first command, or from now when that has come already. The whole file is
  /// checked first: false, with one sentence that names the line. It replaces a scenario that is being played. `check`:
  /// the actions that it may have; those that are not the recorder's are left to whoever hears ActionWanted().
  bool PlayScenario(const QString& file, QString* error, recorder::ActionCheck check = recorder::CheckAction);

  /// The same, from now on, with the text of a scenario that stands nowhere, and how it is called.
  bool PlayScenario(const QByteArray& text, const QString& name, QString* error,
                    recorder::ActionCheck check = recorder::CheckAction);

  /// What is being played, or was.
  recorder::Scenario& TheScenario() { return *mScenario; }
  const recorder::Scenario& TheScenario() const { return *mScenario; }

  /// The recorder's whole state, for a person and for tests: settings, decoded setup block, cameras, power, card, ...
  QJsonObject State() const;

  /// The card is being filled or emptied: it goes on while the event loop runs.
  bool IsCardBusy() const;

  VideoPlane Video() const;
  QJsonObject VideoState() const;  ///< the same for a person and for tests

signals:
  /// One entry of the log: {"kind": "command"|"event"|"action"|"voice"|"note", "name", "field" or "event", "value",
  /// "result",
  /// ...}
  ///   command: "name" of the field, "field", "value" (4 bytes) or "data" (hex), "result", "answer" of a query
  ///   event:   "name", "event", "value", "result" (0, or -1: not sent)
  ///   action:  "name", "arguments", "result", "error" when refused
  ///   voice:   "name" is what the recorder says, aloud
  ///   note:    "name" is one sentence
  void Logged(const QJsonObject& entry);
  void StateChanged();
  void VideoChanged();
  /// This is on the card now: {"name", ...} a recording, {"from", "to"} a time at which nothing was recorded.
  void Stored(const QJsonObject& what);
  /// A scenario is about to send an event ({"event", "value"}), or to do an action ({"name", its arguments}), which may
  /// be one that is not the recorder's.
  void EventWanted(const QJsonObject& request);
  void ActionWanted(const QJsonObject& request);
  /// A scenario wants a touch ({"action", "x", "y", ...}), or a picture of the driver's on the card: its file.
  void TouchWanted(const QJsonObject& request);
  void PictureWanted(const QString& path);
  /// The firmware restarts the device: the interface must be ended and started again.
  void RestartWanted();
  /// An update begins: the interface must be ended. It comes back by RestartWanted().
  void InterfaceEndWanted();

private:
  void Connect();
  void Greet();

  std::unique_ptr<recorder::Parts> mParts;
  std::unique_ptr<recorder::Scenario> mScenario;
  std::unique_ptr<recorder::CommandServer> mServer;
  bool mIsEventLost = false;    // one could not be sent
  bool mGreeted = false;        // an interface has made its first query in this run
  bool mScenarioWaits = false;  // for that
};
