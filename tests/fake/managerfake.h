#pragma once

#include <poll.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <QByteArray>
#include <QFile>
#include <cstddef>
#include <cstring>

/// A service manager as the interface sees it: a socket that gets its datagrams.
class ManagerFake {
public:
  /// `name`: what $NOTIFY_SOCKET says, a path or "@" and a name.
  explicit ManagerFake(const QByteArray& name) : mName(name), mSocket(socket(AF_UNIX, SOCK_DGRAM | SOCK_CLOEXEC, 0)) {
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    std::memcpy(address.sun_path, name.constData(), size_t(name.size()));
    if (name[0] == '@') address.sun_path[0] = '\0';
    const auto length = socklen_t(offsetof(sockaddr_un, sun_path) + size_t(name.size()));
    if (bind(mSocket, reinterpret_cast<const sockaddr*>(&address), length) != 0) qFatal("no socket");
  }
  ~ManagerFake() {
    close(mSocket);
    if (mName[0] == '/') QFile::remove(QString::fromLocal8Bit(mName));
  }
  ManagerFake(const ManagerFake&) = delete;
  ManagerFake& operator=(const ManagerFake&) = delete;

  /// What was told first of all that was not taken yet; empty when nothing comes for `ms`.
  QByteArray Take(int ms = 0) {
    pollfd waited{mSocket, POLLIN, 0};
    char bytes[256];
    if (poll(&waited, 1, ms) != 1) return {};
    const ssize_t length = recv(mSocket, bytes, sizeof bytes, MSG_DONTWAIT);
    return length < 0 ? QByteArray() : QByteArray(bytes, length);
  }
  /// Takes all that was told so far.
  QByteArrayList TakeAll() {
    QByteArrayList all;
    for (QByteArray one = Take(); !one.isEmpty(); one = Take()) all << one;
    return all;
  }
  /// `state` is told within `ms`; what came before it is forgotten.
  bool Awaits(const QByteArray& state, int ms = 20000) {
    for (QByteArray one = Take(ms); !one.isEmpty(); one = Take(ms))
      if (one == state) return true;
    return false;
  }

private:
  QByteArray mName;
  int mSocket;
};
