#pragma once

#include <QDateTime>
#include <QElapsedTimer>
#include <QJsonArray>
#include <QJsonObject>
#include <QObject>
#include <QThread>
#include <array>
#include <functional>
#include <memory>

#include "bench/footage/footage.h"
#include "bench/lcd/lcdview.h"
#include "bench/panel/finger.h"
#include "bench/panel/touchpanel.h"
#include "bench/supervise/rootfolder.h"
#include "bench/supervise/screengallery.h"
#include "bench/supervise/screenreport.h"
#include "bench/supervise/shellwatch.h"
#include "bench/supervise/snapshots.h"
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
  ~Bench() override;

  /// Starts everything. `scenario`: a file that the recorder plays, or empty. False with one sentence in `error`.
  bool Start(const QString& scenario, QString* error);

  /// How a recording of use begins, and its replay: with the seed of all that is random, and with `clock` as this
  /// machine's. A replay also says what comes on the card, and nobody else gives input. Before Start(), or while the
  /// camera is off.
  void Begin(quint32 seed, const QDateTime& clock, const QObject* replay = nullptr);

  /// It is no longer: this machine's clock again.
  void EndRecord() { mClock = {}; }

  /// A member of the state that somebody above knows.
  void TellAlso(const QString& member, const std::function<QJsonValue()>& tell) { mOthers.append({member, tell}); }

  /// A camera (0 front, 1 rear) sees a video, or what a camera of this machine sees, in place of the road. Before
  /// Start(). False with one sentence in `error`.
  bool ShowFootage(int camera, const QString& path, QString* error);

  /// Ends everything, in order.
  void Stop();

  /// Does what came from outside: the members of docs/bench.md. `owner`: see Finger.
  Reply Touch(const QJsonObject& request, const QObject* owner);
  Reply Event(const QJsonObject& request, const QObject* owner = nullptr);
  Reply Action(const QJsonObject& request, const QObject* owner = nullptr);
  /// The file of a picture, for the card. A large one takes its time, beside everything else: then it is `done`.
  void OwnPicture(const QByteArray& file, const std::function<void(const Reply&)>& done,
                  const QObject* owner = nullptr);
  Reply Snapshot(const QJsonObject& request);
  Reply Scenario(const QJsonObject& request);
  void RestartInterface();

  QJsonObject State() const;

  /// What a person sees in one word each: "screen", "own", "event" (names, or null), "dark" (the backlight is off),
  /// and "busy" while the card is being filled or emptied.
  QJsonObject Shown() const;
  QString Language() const { return mSupervisor.Language(); }  ///< of the interface
  QImage Drawn() const { return mLcd.Raw(); }

  /// Milliseconds since Start(), and those that were left out.
  qint64 SessionMs() const { return mSession.isValid() ? mSession.elapsed() + mSkipped : 0; }

  /// Ends recorder and interface, then does `then`, at whose end somebody has to call SwitchOn(). Meanwhile nobody can
  /// do anything: `why` says it in one sentence. Refused while the camera is off, or in a replay.
  Reply SwitchOff(const char* why, const std::function<void()>& then);
  /// Both start again. `memory`: see Recorder::Remember().
  void SwitchOn(const QJsonObject& memory = {});

  /// Leaves out `ms` of the session, or puts them back in: the camera's clock follows.
  void SkipTime(qint64 ms);

  /// Puts on the card what Stored() told.
  void Store(const QJsonObject& what);

  /// Every action and every status event.
  static QJsonObject Actions();

  /// Whether there is such an action and the arguments suit it. False with one sentence in `error`.
  static bool CheckAction(const QString& name, const QJsonObject& arguments, QString* error);

  /// The scenarios that are part of the program.
  static QJsonArray Scenarios();

  QString Root(const char* below) const { return mRoot.Path(below); }
  EventLog& Log() { return mLog; }
  LcdView& Lcd() { return mLcd; }
  Finger& TheFinger() { return mFinger; }
  ScreenGallery& Gallery() { return mGallery; }

signals:
  void StateChanged();
  void Clicked();      ///< the key click sounds
  void ScreenShown();  ///< the interface has shown its first screen
  /// It will never: it has ended five times, or there is no X server. One sentence.
  void GaveUp(const QString& sentence);
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

  void Connect();
  void InterfaceEnded();
  void TakeDiagnostic(const QString& line);
  void Note(const QString& sentence);
  Reply StartRecorder();
  void StopRecorder();
  Reply RestartRecorder();
  Reply MountPanel(const Mounting& mounting);
  Reply Speak(const QString& language);
  Reply DoOwn(const OwnAction& action, const QJsonObject& arguments);
  QJsonArray Armed() const;
  QJsonObject Unavailable() const;
  Reply PutPicture(const QByteArray& bmp, QString error);
  Reply CheckOwner(const QObject* owner) const;
  Reply PlayScenario(const QJsonObject& request, const QString& what);
  void Interrupt(const QObject* owner);
  void HaveEnded();
  void GoBack();
  void SnapshotEnded(const QString& problem, const QJsonObject& memory);
  void TouchForScenario(const QJsonObject& request);
  void PictureForScenario(const QString& path);
  void ActForScenario(const QJsonObject& request);
  void ShowVideo();

  const RootFolder& mRoot;
  EventLog mLog;
  Supervisor mSupervisor;
  ShellWatch mShell;
  std::unique_ptr<Footage> mFootage[2];  // null: the road
  LcdView mLcd;
  TouchPanel mPanel;
  Finger mFinger;
  ScreenReport mReport;
  Snapshots mSnapshots;
  ScreenGallery mGallery;
  std::unique_ptr<Recorder> mRecorder;  // null: stopped
  std::unique_ptr<QThread> mPainter;    // null: no picture is being read
  bool mHasShown = false;
  int mTries = 0;                    // of the interface that ended before its first screen
  QStringList mWords, mWordsBefore;  // of this try and of the one before
  const char* mOff = nullptr;        // why the camera is off, in one sentence; null: it is on
  std::function<void()> mWhenOff;    // what is to be done when it is
  QJsonObject mMemory;               // of the recorder, before it goes back
  QDateTime mClock;                  // null: this machine's
  const QObject* mReplay = nullptr;  // null: input is anybody's
  QList<std::pair<QString, std::function<QJsonValue()>>> mOthers;  // members of the state
  QElapsedTimer mSession;
  qint64 mSkipped = 0;  // ms of the session that were left out
};
