#include "platform/check/recorderprocess.h"

#include <signal.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <chrono>
#include <cstdio>
#include <thread>

namespace platformcheck {
namespace {
constexpr std::chrono::seconds kEnd(5);  // for an orderly end
}

RecorderProcess::~RecorderProcess() {
  Signal(SIGCONT);
  End(SIGTERM);
}

bool RecorderProcess::Do(Order order) {
  switch (order) {
    case Order::Stop:
      return Signal(SIGSTOP);
    case Order::Continue:
      return Signal(SIGCONT);
    case Order::Kill:
      End(SIGKILL);
      return IsOurs();
    case Order::Start:
      return Start();
    case Order::Look: {
      siginfo_t end{};
      return mProcess != 0 && waitid(P_PID, id_t(mProcess), &end, WEXITED | WNOHANG | WNOWAIT) == 0 && end.si_pid == 0;
    }
  }
  return false;
}

void RecorderProcess::Restore() {
  Signal(SIGCONT);
  int status = 0;
  if (mProcess != 0 && waitpid(mProcess, &status, WNOHANG) == mProcess) {
    std::fprintf(stderr, "The recorder has ended by itself (%s %d).\n", WIFEXITED(status) ? "exit code" : "signal",
                 WIFEXITED(status) ? WEXITSTATUS(status) : WTERMSIG(status));
    Signal(SIGKILL);  // what it had started
    mProcess = 0;
  }
}

bool RecorderProcess::Start() {
  if (!IsOurs()) return false;
  if (mProcess != 0) return true;
  const std::string command = "exec " + mCommand;
  const pid_t parent = getpid();
  const pid_t process = fork();
  if (process == 0) {
    setpgid(0, 0);
    prctl(PR_SET_PDEATHSIG, SIGKILL);
    if (getppid() != parent) _exit(1);
    dup2(STDERR_FILENO, STDOUT_FILENO);  // the table is alone on the standard output
    execl("/bin/sh", "sh", "-c", command.c_str(), static_cast<char*>(nullptr));
    _exit(127);
  }
  if (process < 0) return false;
  setpgid(process, process);  // whoever comes first
  mProcess = process;
  return true;
}

bool RecorderProcess::Signal(int signal) const {
  return mProcess > 1 && killpg(mProcess, signal) == 0;
}

void RecorderProcess::End(int signal) {
  if (mProcess == 0) return;
  Signal(signal);
  const auto limit = std::chrono::steady_clock::now() + kEnd;
  while (waitpid(mProcess, nullptr, WNOHANG) == 0) {
    if (std::chrono::steady_clock::now() > limit) Signal(SIGKILL);
    std::this_thread::sleep_for(std::chrono::milliseconds(10));
  }
  mProcess = 0;
}

}  // namespace platformcheck
