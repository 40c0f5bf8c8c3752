#include "bench/server/answer.h"

#include <QJsonDocument>

namespace {
constexpr std::pair<int, const char*> kReasons[] = {{400, "Bad Request"},
                                                    {403, "Forbidden"},
                                                    {409, "Conflict"},
                                                    {413, "Payload Too Large"},
                                                    {431, "Request Header Fields Too Large"}};

QByteArray ReasonOf(int status) {
  for (const auto& [known, reason] : kReasons)
    if (known == status) return reason;
  return {};
}
}  // namespace

Answer Answer::Json(const QJsonObject& object) {
  Answer answer;
  answer.body = QJsonDocument(object).toJson(QJsonDocument::Compact);
  return answer;
}

Answer Answer::Of(const Reply& reply) {
  Answer answer = Json(reply.IsGood() ? QJsonObject{{QStringLiteral("ok"), true}}
                                      : QJsonObject{{QStringLiteral("error"), reply.error}});
  answer.status = reply.status;
  return answer;
}

QList<std::pair<QByteArray, QByteArray>> Answer::Headers() const {
  QList<std::pair<QByteArray, QByteArray>> headers{{"Content-Type", type},
                                                   {"Connection", "close"},
                                                   {"Cache-Control", "no-store"},
                                                   {"X-Content-Type-Options", "nosniff"},
                                                   // No page from elsewhere shows any of it, not even as a picture or
                                                   // in a frame.
                                                   {"Cross-Origin-Resource-Policy", "same-origin"},
                                                   {"Content-Security-Policy", "frame-ancestors 'none'"}};
  if (!isEndless) headers.append({"Content-Length", QByteArray::number(body.size())});
  if (!allow.isEmpty()) headers.append({"Allow", allow});
  if (!encoding.isEmpty()) headers.append({"Content-Encoding", encoding});
  if (!file.isEmpty()) headers.append({"Content-Disposition", "attachment; filename=\"" + file + '"'});
  return headers;
}

QByteArray Answer::Bytes(bool isToHead) const {
  QByteArray bytes = "HTTP/1.1 " + QByteArray::number(status) + ' ' + ReasonOf(status) + "\r\n";
  for (const auto& [name, value] : Headers()) bytes += name + ": " + value + "\r\n";
  return bytes + "\r\n" + (isToHead ? QByteArray() : body);
}
