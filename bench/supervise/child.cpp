#include "bench/supervise/child.h"

#include <signal.h>
#include <sys/prctl.h>
#include <unistd.h>

#include <algorithm>

namespace {
constexpr int kPause = 1000;     // milliseconds from one start to the next
constexpr int kPatience = 2000;  // milliseconds from the request to end to the killing
constexpr qsizetype kLongestLine = 16 * 1024;
}  // namespace

Child::Child(const QString& program, const QStringList& arguments, int farewell, QObject* parent) : QObject(parent) {
  mProcess.setProgram(program);
  mProcess.setArguments(arguments);
  mProcess.setStandardInputFile(QProcess::nullDevice());
  const pid_t bench = getpid();
  mProcess.setChildProcessModifier([bench, farewell] {
    setpgid(0, 0);
    prctl(PR_SET_PDEATHSIG, farewell);
    if (getppid() != bench) _exit(1);  // the bench died before that
  });
  mLaunch.setSingleShot(true);
  mLaunch.callOnTimeout([this] { Launch(); });
  mPatience.setSingleShot(true);
  mPatience.setInterval(kPatience);
  mPatience.callOnTimeout([this] { mProcess.kill(); });
  connect(&mProcess, &QProcess::started, this, [this] {
    ++mStarts;
    emit Started();
  });
  connect(&mProcess, &QProcess::finished, this, [this](int code, QProcess::ExitStatus status) {
    const bool crashed = status == QProcess::CrashExit;
    Over((crashed ? QStringLiteral("signal %1") : QStringLiteral("exit code %1")).arg(code));
  });
  connect(&mProcess, &QProcess::errorOccurred, this, [this](QProcess::ProcessError error) {
    if (error == QProcess::FailedToStart) Over(QStringLiteral("it cannot be started"));
  });
  connect(&mProcess, &QProcess::readyReadStandardOutput, this, [this] { Read(QProcess::StandardOutput); });
  connect(&mProcess, &QProcess::readyReadStandardError, this, [this] { Read(QProcess::StandardError); });
}

Child::~Child() {
  Stop();
  WaitForEnd();
}

void Child::Start() {
  mIsWanted = true;
  if (mProcess.state() != QProcess::NotRunning || mLaunch.isActive()) return;
  const qint64 since = mSinceLaunch.isValid() ? mSinceLaunch.elapsed() : kPause;
  mLaunch.start(static_cast<int>(std::max<qint64>(0, kPause - since)));
}

void Child::Launch() {
  mSinceLaunch.start();
  for (QByteArray& rest : mRest) rest.clear();
  mProcess.start(QIODevice::ReadOnly);
}

void Child::Restart() {
  if (mProcess.state() == QProcess::NotRunning) return Start();
  mProcess.terminate();
  mPatience.start();
}

void Child::Stop() {
  mIsWanted = false;
  mLaunch.stop();
  if (mProcess.state() == QProcess::NotRunning) return;
  mProcess.terminate();
  mPatience.start();
}

void Child::WaitForEnd() {
  if (mProcess.state() == QProcess::NotRunning || mProcess.waitForFinished(kPatience)) return;
  mProcess.kill();
  mProcess.waitForFinished(kPatience);
}

void Child::Over(const QString& how) {
  Read(QProcess::StandardOutput);
  Read(QProcess::StandardError);
  mPatience.stop();
  mEnded = how;
  emit Finished();
  if (mIsWanted) Start();
}

void Child::Read(QProcess::ProcessChannel channel) {
  const bool isOutput = channel == QProcess::StandardOutput;
  QByteArray& rest = mRest[isOutput ? 0 : 1];
  rest += isOutput ? mProcess.readAllStandardOutput() : mProcess.readAllStandardError();
  const auto tell = [this, isOutput](const QByteArray& bytes) {
    const QString line = QString::fromUtf8(bytes.left(kLongestLine)).trimmed();
    if (line.isEmpty()) return;
    if (isOutput)
      emit Output(line);
    else
      emit Diagnostic(line);
  };
  for (qsizetype end = rest.indexOf('\n'); end >= 0; end = rest.indexOf('\n')) {
    const QByteArray line = rest.left(end);
    rest.remove(0, end + 1);
    tell(line);
  }
  if (rest.size() > kLongestLine) tell(std::exchange(rest, QByteArray()));
}
