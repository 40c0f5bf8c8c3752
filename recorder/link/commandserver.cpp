#include "recorder/link/commandserver.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QtEndian>
#include <cerrno>
#include <cstring>

#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

namespace recorder {
namespace {

constexpr qint64 kHeader = 8;
constexpr qint64 kLargestPacket = 4096;
// More than one interface and a few tools; what comes beyond is turned away.
constexpr int kMostConnections = 16;

QString Reason(const char* what) {
  return QStringLiteral("%1: %2.").arg(QLatin1String(what), QString::fromLocal8Bit(std::strerror(errno)));
}

bool SomebodyListens(const sockaddr_un& address) {
  const int socket = ::socket(AF_UNIX, SOCK_SEQPACKET | SOCK_NONBLOCK | SOCK_CLOEXEC, 0);
  if (socket < 0) return false;
  // EAGAIN: so busy that it cannot take us now.
  const bool listens =
      connect(socket, reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0 || errno == EAGAIN;
  close(socket);
  return listens;
}

}  // namespace

CommandServer::CommandServer(Handler handler, Note note) : mHandler(std::move(handler)), mNote(std::move(note)) {}

CommandServer::~CommandServer() {
  for (const auto& connection : mConnections) close(connection.first);
  if (mSocket < 0) return;
  mNotifier.reset();
  close(mSocket);
  unlink(mPath.constData());
}

bool CommandServer::Listen(const QString& path, QString* error) {
  const QByteArray file = QFile::encodeName(path);
  const QByteArray folder = QFile::encodeName(QFileInfo(path).path());
  sockaddr_un address{};
  address.sun_family = AF_UNIX;
  if (file.size() >= static_cast<qsizetype>(sizeof address.sun_path)) {
    *error = QStringLiteral("The path of the command socket is longer than %1 bytes: %2.")
                 .arg(sizeof address.sun_path - 1)
                 .arg(path);
    return false;
  }
  std::memcpy(address.sun_path, file.constData(), static_cast<size_t>(file.size()));
  // The camera's folder is for this user alone; the machine's own /run is everybody's.
  const bool isOurs = QDir::cleanPath(QFileInfo(path).path()) != QLatin1String("/run");
  if (!QDir().mkpath(QFileInfo(path).path()) || (isOurs && chmod(folder.constData(), 0700) < 0)) {
    *error = Reason("The folder of the command socket cannot be made");
    return false;
  }
  if (SomebodyListens(address)) {
    *error = QStringLiteral("Another recorder is running: it listens at %1.").arg(path);
    return false;
  }
  unlink(file.constData());  // of a recorder that has died
  const int socket = ::socket(AF_UNIX, SOCK_SEQPACKET | SOCK_NONBLOCK | SOCK_CLOEXEC, 0);
  // The socket's file takes its mode from the socket.
  if (socket < 0 || fchmod(socket, 0600) < 0 ||
      bind(socket, reinterpret_cast<const sockaddr*>(&address), sizeof address) < 0 ||
      listen(socket, kMostConnections) < 0) {
    *error = Reason("The command socket cannot be opened");
    if (socket >= 0) close(socket);
    return false;
  }
  mSocket = socket;
  mPath = file;
  mNotifier = std::make_unique<QSocketNotifier>(mSocket, QSocketNotifier::Read);
  QObject::connect(mNotifier.get(), &QSocketNotifier::activated, mNotifier.get(), [this] { Accept(); });
  return true;
}

void CommandServer::Accept() {
  const int socket = accept4(mSocket, nullptr, nullptr, SOCK_NONBLOCK | SOCK_CLOEXEC);
  if (socket < 0) return;
  if (Connections() >= kMostConnections) {
    close(socket);
    mNote(QStringLiteral("A connection was turned away: there are %1 already.").arg(kMostConnections));
    return;
  }
  Connection& connection = mConnections[socket];
  connection.notifier = std::make_unique<QSocketNotifier>(socket, QSocketNotifier::Read);
  QObject::connect(connection.notifier.get(), &QSocketNotifier::activated, connection.notifier.get(),
                   [this, socket] { Serve(socket); });
}

// One packet; a client that sends more is served again when the others had their turn.
void CommandServer::Serve(int socket) {
  char packet[kLargestPacket];
  const qint64 size = recv(socket, packet, sizeof packet, MSG_DONTWAIT | MSG_TRUNC);
  if (size < 0 && (errno == EAGAIN || errno == EINTR)) return;
  if (size <= 0) return Close(socket);
  const Answer answer = AnswerOf(mConnections[socket].client, packet, size);
  QByteArray bytes(kHeader, '\0');
  qToLittleEndian<qint32>(answer.result, bytes.data());
  qToLittleEndian<quint32>(static_cast<quint32>(answer.data.size()), bytes.data() + 4);
  bytes += answer.data;
  if (send(socket, bytes.constData(), static_cast<size_t>(bytes.size()), MSG_DONTWAIT | MSG_NOSIGNAL) == bytes.size())
    return;
  mNote(QStringLiteral("A connection was closed: it does not take its answers."));
  Close(socket);
}

CommandServer::Answer CommandServer::AnswerOf(Client& client, const char* packet, qint64 size) {
  if (size < kHeader || size > kLargestPacket) {
    mNote(QStringLiteral("A packet of %1 bytes is no request.").arg(size));
    return {};
  }
  const quint32 length = qFromLittleEndian<quint32>(packet + 4);
  if (length != size - kHeader) {
    mNote(QStringLiteral("A request says that it carries %1 bytes, and carries %2.").arg(length).arg(size - kHeader));
    return {};
  }
  Answer answer = mHandler(client, qFromLittleEndian<quint32>(packet), QByteArray(packet + kHeader, length));
  answer.data.truncate(length);
  return answer;
}

void CommandServer::Close(int socket) {
  const auto found = mConnections.find(socket);
  if (found == mConnections.end()) return;
  // Closed from within its own notifier's signal: the notifier goes when that has ended.
  found->second.notifier->setEnabled(false);
  found->second.notifier.release()->deleteLater();
  mConnections.erase(found);
  close(socket);
}

}  // namespace recorder
