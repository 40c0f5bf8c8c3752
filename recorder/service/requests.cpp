#include "recorder/service/requests.h"

#include <QJsonDocument>
#include <cmath>
#include <limits>

#include "gui/vocabulary/vocabulary.h"
#include "recorder/service/members.h"

namespace requests {
namespace {

constexpr double kLargestId = 9007199254740991;  // the whole numbers of JavaScript
constexpr int kLargestAction = 1024;             // bytes

QJsonObject AnswerOf(const QJsonValue& id, const Reply& reply) {
  QJsonObject answer{{QStringLiteral("type"), QStringLiteral("answer")}, {QStringLiteral("id"), id}};
  if (reply.IsGood()) {
    answer.insert(QStringLiteral("ok"), true);
  } else {
    answer.insert(QStringLiteral("status"), reply.status);
    answer.insert(QStringLiteral("error"), reply.error);
  }
  return answer;
}

}  // namespace

QJsonObject Answer(const QByteArray& message, const Act& act) {
  const QJsonDocument document = QJsonDocument::fromJson(message);
  if (!document.isObject()) return Refusal(Reply::Bad(QStringLiteral("The message is no JSON object.")));
  QJsonObject members = document.object();
  const QString type = members.take(QStringLiteral("type")).toString();
  const QJsonValue id = members.take(QStringLiteral("id"));
  if (id.isUndefined()) return AnswerOf({}, act(type, members));
  if (id.isDouble() && std::abs(id.toDouble()) <= kLargestId && std::trunc(id.toDouble()) == id.toDouble())
    return AnswerOf(id, act(type, members));
  return Refusal(Reply::Bad(QStringLiteral("\"id\" must be a whole number.")));
}

QJsonObject Refusal(const Reply& reply) {
  return AnswerOf({}, reply);
}

Reply TakeEvent(const QJsonObject& request, int* event, int* value) {
  Members members(request);
  *event = members.Whole("event", RECV_ZEL_STATUS_SYS_RESTART, RECV_ZEL_STATUS_PARK_INFO_CLOSE);
  *value = members.Whole("value", std::numeric_limits<int>::min(), std::numeric_limits<int>::max(), 0);
  const QString error = members.Error();
  return error.isEmpty() ? Reply() : Reply::Bad(error);
}

Reply TakeAction(const QJsonObject& request, QString* name, QJsonObject* arguments) {
  // The log keeps it whole.
  if (QJsonDocument(request).toJson(QJsonDocument::Compact).size() > kLargestAction)
    return Reply::Bad(QStringLiteral("An action has at most %1 bytes.").arg(kLargestAction));
  Members members(request);
  *name = members.Text("name");
  *arguments = members.TakeRest();
  const QString error = members.Error();
  return error.isEmpty() ? Reply() : Reply::Bad(error);
}

}  // namespace requests
