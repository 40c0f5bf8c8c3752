#pragma once

#include <QElapsedTimer>
#include <QProcess>
#include <QTimer>

/// A program that the bench keeps running. When it ends it is started again, not more than once a second. It ends with
/// the bench, even when the bench is killed. The terminal's Ctrl+C does not reach it: the bench ends it in order.
class Child : public QObject {
  Q_OBJECT

public:
  /// `farewell`: the signal that it gets when the bench has died.
  Child(const QString& program, const QStringList& arguments, int farewell, QObject* parent = nullptr);
  ~Child() override;

  QString Program() const { return mProcess.program(); }

  /// Of the next start.
  void SetEnvironment(const QProcessEnvironment& environment) { mProcess.setProcessEnvironment(environment); }

  /// Keeps it running from now on.
  void Start();

  /// Asks it to end, kills it when it has not within 2 s; then it is started again.
  void Restart();

  /// Kills it; it is started again.
  void Kill() { mProcess.kill(); }

  /// Ends it for good, or until the next Start().
  void Stop();

  /// Waits for the end after Stop(); it is killed when it has not ended within 2 s.
  void WaitForEnd();

  /// There is no process, not even one that begins or ends.
  bool IsOver() const { return mProcess.state() == QProcess::NotRunning; }
  bool IsRunning() const { return mProcess.state() == QProcess::Running; }
  int Starts() const { return mStarts; }

  /// How it ended the last time, "exit code 1" or "signal 9"; empty: not yet.
  QString Ended() const { return mEnded; }

signals:
  void Started();
  void Finished();
  void Output(const QString& line);      ///< a line of its standard output
  void Diagnostic(const QString& line);  ///< a line of its standard error, of 16 KiB at most

private:
  void Launch();
  void Over(const QString& how);
  void Read(QProcess::ProcessChannel channel);

  QProcess mProcess;
  QTimer mLaunch;    // to the next start
  QTimer mPatience;  // to the killing
  QElapsedTimer mSinceLaunch;
  bool mIsWanted = false;
  int mStarts = 0;
  QString mEnded;
  QByteArray mRest[2];  // of either channel, not yet a whole line
};
