#include "bench/server/requesthead.h"

#include <QList>
#include <QMap>
#include <QRegularExpression>

namespace {
using Headers = QMap<QByteArray, QList<QByteArray>>;  // by name in small letters

RequestHead Refused(int status, const char* error) {
  RequestHead head;
  head.state = RequestHead::State::Refused;
  head.status = status;
  head.error = QLatin1String(error);
  return head;
}

RequestHead NoHttp() {
  return Refused(400, "This is no HTTP request.");
}

bool IsMatch(const QRegularExpression& pattern, const QByteArray& text) {
  return pattern.match(QString::fromLatin1(text)).hasMatch();
}

// The characters that a target may have by the rules of URLs; nothing else reaches the server.
bool IsRequestLine(const QByteArray& line) {
  static const QRegularExpression pattern(QRegularExpression::anchoredPattern(
      QStringLiteral(R"((GET|HEAD|POST|PUT|DELETE|OPTIONS|PATCH) /[A-Za-z0-9._~%!$&'()*+,;=:@/?-]* HTTP/1\.[01]\r)")));
  return IsMatch(pattern, line);
}

bool ReadHeader(const QByteArray& line, Headers* headers) {
  static const QRegularExpression token(
      QRegularExpression::anchoredPattern(QStringLiteral("[A-Za-z0-9!#$%&'*+.^_`|~-]+")));
  static const QRegularExpression text(
      QRegularExpression::anchoredPattern(QStringLiteral(R"([\t\x20-\x7e\x80-\xff]*)")));
  const qsizetype colon = line.indexOf(':');
  const QByteArray name = line.left(colon);
  const QByteArray value = line.mid(colon + 1).trimmed();
  if (colon < 1 || !IsMatch(token, name) || !IsMatch(text, value)) return false;
  (*headers)[name.toLower()] << value;
  return true;
}

// "127.0.0.1:8480" and its other names. A browser leaves the port out when it is HTTP's own.
bool IsOurs(const QByteArray& host, quint16 port) {
  for (const char* name : {"127.0.0.1", "localhost", "[::1]"}) {
    if (host.toLower() == QByteArray(name) + ':' + QByteArray::number(port)) return true;
    if (port == 80 && host.toLower() == name) return true;
  }
  return false;
}

bool IsAllowed(const Headers& headers, quint16 port) {
  const QList<QByteArray> hosts = headers.value("host");
  const QList<QByteArray> origins = headers.value("origin");
  if (hosts.size() != 1 || !IsOurs(hosts[0], port)) return false;
  if (origins.isEmpty()) return true;
  constexpr char kScheme[] = "http://";
  return origins.size() == 1 && origins[0].startsWith(kScheme) && IsOurs(origins[0].mid(sizeof kScheme - 1), port);
}

// False: no length that can be trusted.
bool ReadLength(const Headers& headers, qint64* length) {
  const QList<QByteArray> lengths = headers.value("content-length");
  if (headers.contains("transfer-encoding") || lengths.size() > 1) return false;
  if (lengths.isEmpty()) return true;
  static const QRegularExpression digits(QRegularExpression::anchoredPattern(QStringLiteral("[0-9]{1,15}")));
  *length = lengths[0].toLongLong();
  return IsMatch(digits, lengths[0]);
}

// Qt's server would leave the connection of another one open.
bool IsHandshake(const Headers& headers) {
  static const QRegularExpression key(QRegularExpression::anchoredPattern(QStringLiteral("[A-Za-z0-9+/]{22}==")));
  return headers.value("sec-websocket-version").value(0) == "13" &&
         IsMatch(key, headers.value("sec-websocket-key").value(0));
}

RequestHead Judge(const QByteArray& requestLine, const Headers& headers, quint16 port) {
  if (!IsAllowed(headers, port)) return Refused(403, "Only the bench's own page may ask: foreign Host or Origin.");
  RequestHead head;
  if (!ReadLength(headers, &head.body))
    return Refused(400, "A body needs one Content-Length and no Transfer-Encoding.");
  const bool isPicture = requestLine.startsWith("POST /api/picture HTTP/");
  if (isPicture && head.body > RequestHead::kMostPicture) return Refused(413, "The picture is larger than 8 MiB.");
  const bool isRecording =
      requestLine.startsWith("POST /api/replay HTTP/") || requestLine.startsWith("POST /api/replay?");
  if (isRecording && head.body > RequestHead::kMostPicture) return Refused(413, "The recording is larger than 8 MiB.");
  if (!isPicture && !isRecording && head.body > RequestHead::kMostBody)
    return Refused(413, "The body is larger than 64 KiB.");
  head.isUpgrade = headers.contains("upgrade");
  const bool isWebSocket = requestLine.startsWith("GET /ws HTTP/") && head.body == 0 &&
                           headers.value("upgrade").value(0).compare("websocket", Qt::CaseInsensitive) == 0;
  if (head.isUpgrade && !isWebSocket) return Refused(400, "Only GET /ws can be upgraded, and only to a WebSocket.");
  if (head.isUpgrade && !IsHandshake(headers))
    return Refused(400, "A WebSocket needs version 13 and a key of 16 bytes.");
  head.state = RequestHead::State::Good;
  return head;
}
}  // namespace

RequestHead RequestHead::Read(const QByteArray& bytes, quint16 port) {
  const qsizetype line = bytes.left(kMost).indexOf('\n') + 1;
  if (line > 0 && !IsRequestLine(bytes.left(line - 1))) return NoHttp();
  const qsizetype end = bytes.indexOf("\r\n\r\n");
  if (end + 4 > kMost || (end < 0 && bytes.size() >= kMost)) return Refused(431, "The head is larger than 16 KiB.");
  if (end < 0) return {};
  Headers headers;
  for (qsizetype at = line, next = 0; at < end + 2; at = next + 2) {
    next = bytes.indexOf("\r\n", at);
    if (!ReadHeader(bytes.mid(at, next - at), &headers)) return NoHttp();
  }
  RequestHead head = Judge(bytes.left(line), headers, port);
  head.size = end + 4;
  return head;
}
