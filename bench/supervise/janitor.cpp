#include "bench/supervise/janitor.h"

#include <fcntl.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <QDir>
#include <QElapsedTimer>

#include "bench/supervise/device.h"
#include "bench/supervise/fakeclock.h"
#include "recorder/link/statuschannel.h"

namespace {
constexpr int kMostWait = 5000;  // milliseconds

// A session of its own: no signal of the terminal reaches it. Nobody waits for its output.
void Detach() {
  setsid();
  prctl(PR_SET_NAME, "bench-janitor");
  const int nothing = open("/dev/null", O_RDWR);
  for (const int stream : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) dup2(nothing, stream);
}

void WaitForEnd(int pipe) {
  char byte;
  while (read(pipe, &byte, sizeof byte) < 0 && errno == EINTR) {
  }
}
}  // namespace

Janitor::Janitor(const QString& root, bool removeRoot) {
  // Every process that the bench starts holds the writing end, too: it is closed when the last one has ended.
  int ends[2];
  if (pipe(ends) < 0) return;
  mProcess = fork();
  if (mProcess != 0) {
    close(ends[0]);
    mAlive = ends[1];
    return;
  }
  close(ends[1]);
  Detach();
  WaitForEnd(ends[0]);
  recorder::StatusChannel::Remove();
  fakeclock::Remove();
  QDir(removeRoot ? root : root + QLatin1String(device::kGallery)).removeRecursively();
  _exit(0);
}

Janitor::~Janitor() {
  if (mAlive >= 0) close(mAlive);
  QElapsedTimer clock;
  clock.start();
  while (mProcess > 0 && waitpid(mProcess, nullptr, WNOHANG) == 0 && clock.elapsed() < kMostWait) usleep(5000);
}
