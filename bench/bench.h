#pragma once

#include <QJsonArray>
#include <QJsonObject>
#include <QObject>
#include <array>
#include <memory>

#include "bench/benchlog.h"
#include "bench/finger.h"
#include "bench/lcdview.h"
#include "bench/reply.h"
#include "bench/rootfolder.h"
#include "bench/screenreport.h"
#include "bench/shellwatch.h"
#include "bench/supervisor.h"
#include "bench/touchpanel.h"
#include "recorder/recorder.h"

/// The camera around the interface: recorder, LCD, touch panel, shell, and the interface itself.
class Bench : public QObject {
  Q_OBJECT

public:
  /// `interface`: its program. `root`: taken and furnished; it outlives the bench.
  Bench(const QString& interface, const RootFolder& root, QObject* parent = nullptr);

  /// Starts everything. `scenario`: a file that the recorder plays, or empty. False with one sentence in `error`.
  bool Start(const QString& scenario, QString* error);

  /// Ends everything, in order.
  void Stop();

  /// Does what came from outside: the members of docs/bench.md. `owner`: see Finger.
  Reply Touch(const QJsonObject& request, const QObject* owner);
  Reply Event(const QJsonObject& request);
  Reply Action(const QJsonObject& request);
  void RestartInterface() { mSupervisor.RestartInterface(); }

  QJsonObject State() const;

  /// Every action and every status event.
  static QJsonObject Actions();

  BenchLog& Log() { return mLog; }
  LcdView& Lcd() { return mLcd; }
  Finger& TheFinger() { return mFinger; }

signals:
  void StateChanged();
  void Clicked();      ///< the key click sounds
  void ScreenShown();  ///< the interface has shown its first screen

private:
  struct OwnArgument;
  struct OwnAction;
  using OwnValues = std::array<int, 4>;  // of the arguments, in the order of the table
  static const OwnAction kOwnActions[];

  void Connect();
  void InterfaceEnded();
  void TakeDiagnostic(const QString& line);
  void Note(const QString& sentence);
  Reply StartRecorder();
  Reply StopRecorder();
  Reply RestartRecorder();
  Reply KillInterface();
  Reply MountPanel(const Mounting& mounting);
  Reply DoOwn(const OwnAction& action, const QJsonObject& arguments);
  Reply DoRecorders(const QString& name, const QJsonObject& arguments);
  void TapForScenario(int x, int y);
  void LogRecorder(const QJsonObject& entry);
  void ShowVideo();
  QJsonValue VideoState() const;

  const RootFolder& mRoot;
  BenchLog mLog;
  Supervisor mSupervisor;
  ShellWatch mShell;
  LcdView mLcd;
  TouchPanel mPanel;
  Finger mFinger;
  ScreenReport mReport;
  std::unique_ptr<Recorder> mRecorder;  // null: stopped
  bool mIsEventLost = false;            // the recorder could not send an event
  bool mHasShown = false;
};
