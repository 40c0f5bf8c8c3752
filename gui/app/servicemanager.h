#pragma once

#include <sys/socket.h>
#include <sys/un.h>

#include <QObject>

class ScreenHost;

/// Tells the service manager, by datagrams to $NOTIFY_SOCKET, how the interface is: READY=1 once the first picture is
/// on the screen, WATCHDOG=1 twice in the time that $WATCHDOG_USEC allows for as long as the GUI thread handles its
/// events, STOPPING=1 at the end. Does nothing without $NOTIFY_SOCKET. GUI thread.
class ServiceManager : public QObject {
  Q_OBJECT

public:
  /// Before `window` is shown.
  explicit ServiceManager(ScreenHost* window);
  /// Tells the end.
  ~ServiceManager() override;

  bool eventFilter(QObject* object, QEvent* event) override;

private:
  bool ReadAddress();
  void StartWatchdog(ScreenHost* window);
  void Send(const char* state);

  sockaddr_un mAddress{};
  socklen_t mLength = 0;
  int mSocket = -1;
};
