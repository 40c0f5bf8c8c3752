#include "recorder/service/signals.h"

#include <fcntl.h>
#include <signal.h>
#include <unistd.h>

#include <QSocketNotifier>

namespace {
int gPipe[2];

// Only what a signal handler may do.
void Tell(int) {
  const char byte = 0;
  [[maybe_unused]] const ssize_t written = write(gPipe[1], &byte, sizeof byte);
}
}  // namespace

void OnEndSignal(QObject* context, std::function<void()> end) {
  if (pipe2(gPipe, O_CLOEXEC | O_NONBLOCK) < 0) return;
  auto* notifier = new QSocketNotifier(gPipe[0], QSocketNotifier::Read, context);
  QObject::connect(notifier, &QSocketNotifier::activated, context, [notifier, end = std::move(end)] {
    notifier->setEnabled(false);
    end();
  });
  struct sigaction action {};
  action.sa_handler = Tell;
  for (const int number : {SIGINT, SIGTERM, SIGHUP}) sigaction(number, &action, nullptr);
}
