#pragma once

#include <QJsonObject>
#include <functional>

#include "recorder/service/reply.h"

/// What recorder and bench understand alike when somebody asks something of them.
namespace requests {

/// Does what a message wants: its type, and its members beside type and id.
using Act = std::function<Reply(const QString& type, const QJsonObject& members)>;

/// The answer to a message of a client, {"type", "id", members}:
/// {"type": "answer", "id", "ok": true} or {"type": "answer", "id", "status", "error"}.
QJsonObject Answer(const QByteArray& message, const Act& act);

/// The same for what is no message at all.
QJsonObject Refusal(const Reply& reply);

/// Takes {"event", "value"}, a status event for the interface.
Reply TakeEvent(const QJsonObject& request, int* event, int* value);

/// Takes {"name", arguments}, an action; whether there is such an action is not known here.
Reply TakeAction(const QJsonObject& request, QString* name, QJsonObject* arguments);

}  // namespace requests
