#pragma once

#include <QJsonArray>
#include <QJsonObject>
#include <QString>

namespace recorder {

struct Parts;

/// Every action, as Recorder::Actions() says.
QJsonArray DescribeActions();

/// What actions have prepared, and which of them cannot be done now: see Recorder::Armed() and Unavailable().
QJsonArray DescribeArmed(const Parts& parts);
QJsonObject DescribeUnavailable(const Parts& parts);

/// Whether there is such an action and the arguments suit it. False with one sentence in `error`.
using ActionCheck = bool (*)(const QString& name, const QJsonObject& arguments, QString* error);

/// The same for the recorder's own actions.
bool CheckAction(const QString& name, const QJsonObject& arguments, QString* error);

/// Does an action. False, with one sentence in `error`, for what CheckAction refuses and for what cannot be done now.
bool DoAction(Parts& parts, const QString& name, const QJsonObject& arguments, QString* error);

}  // namespace recorder
