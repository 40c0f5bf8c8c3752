#include "recorder/service/requests.h"

#include <QJsonDocument>
#include <algorithm>
#include <cmath>
#include <limits>

#include "gui/vocabulary/vocabulary.h"
#include "recorder/service/members.h"

namespace requests {
namespace {

constexpr int kLongestTap = 60000;  // milliseconds
constexpr int kUsualTap = 60;
constexpr int kMostPoints = 100;  // of a path
constexpr int kLongestPath = 60000;
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

Reply TakePath(const QJsonArray& points, Touch* touch) {
  int all = 0;  // ms
  for (const QJsonValue& value : points) {
    Members members(value.toObject());
    Touch::Point point;
    point.x = members.Whole("x", 0, 479);
    point.y = members.Whole("y", 0, 319);
    const bool isFirst = touch->path.isEmpty();
    point.ms = members.Whole("ms", 1, kLongestPath, isFirst ? std::optional(0) : std::nullopt);
    touch->path << point;
    all += point.ms;
    if (const QString error = members.Error(); !error.isEmpty())
      return Reply::Bad(QStringLiteral("Point %1 of the path: %2").arg(touch->path.size()).arg(error));
  }
  if (all <= kLongestPath) return {};
  return Reply::Bad(QStringLiteral("A path takes at most %1 ms.").arg(kLongestPath));
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

Reply TakeTouch(const QJsonObject& request, Touch* touch) {
  static const QStringList kinds{QStringLiteral("tap"), QStringLiteral("press"), QStringLiteral("release"),
                                 QStringLiteral("path")};
  Members members(request);
  touch->kind = static_cast<Touch::Kind>(std::max<qsizetype>(0, kinds.indexOf(members.Choice("action", kinds))));
  if (touch->kind == Touch::Kind::Path) {
    const QJsonArray points = members.List("path", 2, kMostPoints);
    const QString error = members.Error();
    return error.isEmpty() ? TakePath(points, touch) : Reply::Bad(error);
  }
  if (touch->kind != Touch::Kind::Release) {
    touch->isRaw = members.Flag("raw", false);
    touch->x = members.Whole("x", 0, touch->isRaw ? Touch::kMostRaw : 479);
    touch->y = members.Whole("y", 0, touch->isRaw ? Touch::kMostRaw : 319);
  }
  if (touch->kind == Touch::Kind::Tap) touch->ms = members.Whole("ms", 1, kLongestTap, kUsualTap);
  const QString error = members.Error();
  return error.isEmpty() ? Reply() : Reply::Bad(error);
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
