#include "gui/app/servicemanager.h"

#include <sys/time.h>
#include <unistd.h>

#include <QCoreApplication>
#include <QEvent>
#include <QTimer>
#include <algorithm>
#include <cerrno>
#include <cstddef>
#include <cstring>
#include <limits>

#include "gui/screen/screenhost.h"

namespace {
constexpr timeval kMostWait{0, 500000};  // for a manager that does not read
constexpr quint64 kHalfInMs = 2000;      // microseconds of the watchdog's time to milliseconds of its half
}  // namespace

ServiceManager::ServiceManager(ScreenHost* window) {
  if (qEnvironmentVariableIsEmpty("NOTIFY_SOCKET")) return;
  if (!ReadAddress()) {
    qWarning("service manager: NOTIFY_SOCKET is no address of a Unix socket, nothing is told");
    return;
  }
  mSocket = socket(AF_UNIX, SOCK_DGRAM | SOCK_CLOEXEC, 0);
  if (mSocket < 0) return;
  setsockopt(mSocket, SOL_SOCKET, SO_SNDTIMEO, &kMostWait, sizeof kMostWait);
  qApp->installEventFilter(this);
  StartWatchdog(window);
}

ServiceManager::~ServiceManager() {
  Send("STOPPING=1");
  if (mSocket >= 0) close(mSocket);
}

// A path, or "@" and a name that is no file's.
bool ServiceManager::ReadAddress() {
  const QByteArray name = qgetenv("NOTIFY_SOCKET");
  if ((name[0] != '/' && name[0] != '@') || name.size() < 2 || name.size() >= int(sizeof mAddress.sun_path))
    return false;
  mAddress.sun_family = AF_UNIX;
  std::memcpy(mAddress.sun_path, name.constData(), size_t(name.size()));
  if (name[0] == '@') mAddress.sun_path[0] = '\0';
  mLength = socklen_t(offsetof(sockaddr_un, sun_path) + size_t(name.size()));
  return true;
}

void ServiceManager::StartWatchdog(ScreenHost* window) {
  bool isMeant = true;
  if (qEnvironmentVariableIsSet("WATCHDOG_PID"))
    isMeant = qgetenv("WATCHDOG_PID").toLongLong() == QCoreApplication::applicationPid();
  const quint64 allowed = qgetenv("WATCHDOG_USEC").toULongLong();  // 0: none, or no number
  if (!isMeant || allowed == 0) return;
  constexpr quint64 kMost = std::numeric_limits<int>::max();
  auto* timer = new QTimer(this);
  timer->callOnTimeout([this] { Send("WATCHDOG=1"); });
  timer->start(int(std::clamp<quint64>(allowed / kHalfInMs, 1, kMost)));
  connect(window, &ScreenHost::longStepGoesOn, this, [this] { Send("WATCHDOG=1"); });
}

// The first widget that is painted begins the first picture; the window itself may lie below it, unpainted. A
// framebuffer gets the whole picture by way of the event loop, where that is queued after the painting: it comes before
// the second turn from here.
bool ServiceManager::eventFilter(QObject*, QEvent* event) {
  if (event->type() != QEvent::Paint) return false;
  qApp->removeEventFilter(this);
  QMetaObject::invokeMethod(
      this,
      [this] {
        QMetaObject::invokeMethod(
            this, [this] { Send("READY=1"); }, Qt::QueuedConnection);
      },
      Qt::QueuedConnection);
  return false;
}

void ServiceManager::Send(const char* state) {
  if (mSocket < 0) return;
  const auto* address = reinterpret_cast<const sockaddr*>(&mAddress);
  if (sendto(mSocket, state, std::strlen(state), MSG_NOSIGNAL, address, mLength) < 0)
    qWarning("service manager: %s was not told: %s", state, std::strerror(errno));
}
