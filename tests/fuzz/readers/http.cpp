#include <QJsonDocument>
#include <QUrl>
#include <QUrlQuery>

#include "bench/server/answer.h"
#include "bench/server/query.h"
#include "bench/server/requesthead.h"
#include "tests/fuzz/readers/reader.h"

using State = RequestHead::State;

namespace {
constexpr quint16 kPort = 8480;

void RequireRefused(const RequestHead& head) {
  REQUIRE(head.status == 400 || head.status == 403 || head.status == 413 || head.status == 431);
  REQUIRE(IsSentence(head.error));
  const QByteArray answer = Answer::Of({head.status, head.error}).Bytes(false);
  REQUIRE(answer.startsWith("HTTP/1.1 " + QByteArray::number(head.status) + ' '));
  REQUIRE(QJsonDocument::fromJson(answer.mid(answer.indexOf("\r\n\r\n") + 4)).object().contains("error"));
}

void RequireGood(const RequestHead& head, const QByteArray& bytes) {
  REQUIRE(head.size <= RequestHead::kMost && bytes.left(head.size).endsWith("\r\n\r\n"));
  REQUIRE(head.body >= 0 && head.body <= RequestHead::kMostPicture);
  REQUIRE(head.body <= RequestHead::kMostBody || bytes.startsWith("POST /api/"));
  REQUIRE(!head.isUpgrade || (bytes.startsWith("GET /ws ") && head.body == 0));
  // As soon as it is whole, and whatever follows; and only at this port.
  REQUIRE(RequestHead::Read(bytes.left(head.size), kPort).state == State::Good);
  REQUIRE(RequestHead::Read(bytes.left(head.size - 1), kPort).state == State::Incomplete);
  REQUIRE(RequestHead::Read(bytes, kPort + 1).status == 403);

  const QUrl url(QString::fromLatin1(bytes.split(' ')[1]));
  QJsonObject members;
  const bool isGood = ReadQuery(url, &members);
  REQUIRE(isGood == (members.size() == QUrlQuery(url).queryItems().size()));
  for (const QJsonValue& value : members) REQUIRE(value.isString() || (value.isDouble() && value.toDouble() >= 0));
}
}  // namespace

void TakeHttp(const QByteArray& bytes) {
  const RequestHead head = RequestHead::Read(bytes, kPort);
  if (head.state == State::Refused) return RequireRefused(head);
  if (head.state == State::Good) return RequireGood(head, bytes);
  REQUIRE(bytes.size() < RequestHead::kMost && !bytes.contains("\r\n\r\n"));
}
