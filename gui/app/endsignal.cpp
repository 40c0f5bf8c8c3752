#include "gui/app/endsignal.h"

#include <signal.h>
#include <sys/eventfd.h>
#include <unistd.h>

#include <QCoreApplication>
#include <QSocketNotifier>
#include <cstdint>

namespace {
int gAsked = -1;  // an eventfd: readable once a signal has come

// Only what a signal handler may do.
void Tell(int) {
  const std::uint64_t one = 1;
  [[maybe_unused]] const ssize_t written = write(gAsked, &one, sizeof one);
}
}  // namespace

void EndOnSignal() {
  gAsked = eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK);
  if (gAsked < 0) return;
  auto* notifier = new QSocketNotifier(gAsked, QSocketNotifier::Read, qApp);
  QObject::connect(notifier, &QSocketNotifier::activated, qApp, [notifier] {
    notifier->setEnabled(false);
    QCoreApplication::exit(0);  // quit() would ask the window, which never closes
  });
  struct sigaction action {};
  action.sa_handler = Tell;
  action.sa_flags = SA_RESTART;
  for (const int number : {SIGTERM, SIGINT}) sigaction(number, &action, nullptr);
}
