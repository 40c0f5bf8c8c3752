#pragma once

#include <QDateTime>
#include <QElapsedTimer>
#include <QJsonArray>
#include <QJsonObject>
#include <QObject>
#include <array>
#include <memory>

#include "bench/lcd/lcdview.h"
#include "bench/panel/finger.h"
#include "bench/panel/touchpanel.h"
#include "bench/supervise/rootfolder.h"
#include "bench/supervise/screenreport.h"
#include "bench/supervise/shellwatch.h"
#include "bench/supervise/supervisor.h"
#include "recorder/firmware/recorder.h"
#include "recorder/service/eventlog.h"
#include "recorder/service/reply.h"

/// The camera around the interface: recorder, LCD, touch panel, shell, and the interface itself.
class Bench : public QObject {
  Q_OBJECT

public:
  /// `interface`: its program. `root`: taken and furnished; it outlives the bench. `language`: that the interface
  /// begins in.
  Bench(const QString& interface, const RootFolder& root, const QString& language, QObject* parent = nullptr);

  /// Starts everything. `scenario`: a file that the recorder plays, or empty. False with one sentence in `error`.
  bool Start(const QString& scenario, QString* error);

  /// How a recording of use begins, and its replay: with the seed of all that is random, and with `clock` as this
  /// machine's. A replay also says what comes on the card, and nobody else gives input. Before Start().
  void Begin(quint32 seed, const QDateTime& clock, const QObject* replay = nullptr);

  /// Ends everything, in order.
  void Stop();

  /// Does what came from outside: the members of docs/bench.md. `owner`: see Finger.
  Reply Touch(const QJsonObject& request, const QObject* owner);
  Reply Event(const QJsonObject& request, const QObject* owner = nullptr);
  Reply Action(const QJsonObject& request, const QObject* owner = nullptr);
  Reply OwnPicture(const QByteArray& file, const QObject* owner = nullptr);  ///< the file of a picture, for the card
  void RestartInterface() { mSupervisor.RestartInterface(); }

  QJsonObject State() const;

  /// What a person sees in one word each: "screen", "own", "event" (names, or null), "dark" (the backlight is off).
  QJsonObject Shown() const;
  QImage Drawn() const { return mLcd.Raw(); }

  /// Milliseconds since Start(), and those that were left out.
  qint64 SessionMs() const { return mSession.isValid() ? mSession.elapsed() + mSkipped : 0; }

  /// Leaves out `ms` of the session, or puts them back in: the camera's clock follows.
  void SkipTime(qint64 ms);

  /// Puts on the card what Stored() told.
  void Store(const QJsonObject& what);

  /// Every action and every status event.
  static QJsonObject Actions();

  EventLog& Log() { return mLog; }
  LcdView& Lcd() { return mLcd; }
  Finger& TheFinger() { return mFinger; }

signals:
  void StateChanged();
  void Clicked();      ///< the key click sounds
  void ScreenShown();  ///< the interface has shown its first screen
  /// An event, or an action, is about to be done: the members as of Event() and Action().
  void EventTaken(const QJsonObject& request);
  void ActionTaken(const QJsonObject& request);
  void PictureTaken(const QByteArray& bmp);  ///< the same for a picture
  void Stored(const QJsonObject& what);      ///< see Recorder

private:
  struct OwnAction;
  using OwnValues = std::array<double, 4>;  // of the arguments, in the order of the table
  static const OwnAction kOwnActions[];

  static const OwnAction* FindOwn(const QString& name);
  static bool CheckAction(const QString& name, const QJsonObject& arguments, QString* error);

  void Connect();
  void InterfaceEnded();
  void TakeDiagnostic(const QString& line);
  void Note(const QString& sentence);
  Reply StartRecorder();
  Reply StopRecorder();
  Reply RestartRecorder();
  Reply KillInterface();
  Reply MountPanel(const Mounting& mounting);
  Reply Speak(const QString& language);
  Reply DoOwn(const OwnAction& action, const QJsonObject& arguments);
  Reply CheckOwner(const QObject* owner) const;
  void TapForScenario(int x, int y);
  void ActForScenario(const QJsonObject& request);
  void ShowVideo();

  const RootFolder& mRoot;
  EventLog mLog;
  Supervisor mSupervisor;
  ShellWatch mShell;
  LcdView mLcd;
  TouchPanel mPanel;
  Finger mFinger;
  ScreenReport mReport;
  std::unique_ptr<Recorder> mRecorder;  // null: stopped
  bool mHasShown = false;
  QDateTime mClock;                  // null: this machine's
  const QObject* mReplay = nullptr;  // null: input is anybody's
  QElapsedTimer mSession;
  qint64 mSkipped = 0;  // ms of the session that were left out
};
