#include "recorder/firmware/argument.h"

#include <QJsonArray>
#include <QJsonValue>
#include <QStringList>
#include <QVariant>
#include <algorithm>

namespace recorder {

bool Argument::Take(const QJsonValue& given, double* value) const {
  if (given.isUndefined() && optional) {
    *value = standard;
    return true;
  }
  if (choices.empty()) {
    *value = given.toDouble();
    return given.isDouble() && *value >= least && *value <= most && (fraction || *value == static_cast<int>(*value));
  }
  // A choice that is a number may come as one.
  const QString text = given.toVariant().toString();
  const auto found = std::find_if(choices.begin(), choices.end(),
                                  [&text](const char* choice) { return text == QLatin1String(choice); });
  *value = static_cast<double>(found - choices.begin());
  return found != choices.end();
}

QString Argument::Wanted() const {
  if (choices.empty())
    return QStringLiteral("%1 from %2 to %3")
        .arg(fraction ? QStringLiteral("a number") : QStringLiteral("a whole number"), QString::number(least, 'g', 10),
             QString::number(most, 'g', 10));
  QStringList texts;
  for (const char* choice : choices) texts << QLatin1String(choice);
  return QStringLiteral("one of ") + texts.join(QLatin1String(", "));
}

QJsonObject Argument::Describe() const {
  QJsonObject description{{QStringLiteral("name"), QLatin1String(name)}};
  if (choices.empty()) {
    description.insert(QStringLiteral("min"), least);
    description.insert(QStringLiteral("max"), most);
    description.insert(QStringLiteral("default"), standard);
    if (fraction) description.insert(QStringLiteral("fraction"), true);
  } else {
    QJsonArray texts;
    for (const char* choice : choices) texts.append(QLatin1String(choice));
    description.insert(QStringLiteral("choices"), texts);
  }
  if (optional) description.insert(QStringLiteral("optional"), true);
  return description;
}

bool TakeArguments(const QString& action, std::span<const Argument> arguments, QJsonObject given,
                   std::span<double> values, QString* error) {
  for (size_t i = 0; i < arguments.size() && arguments[i].name; ++i) {
    const QLatin1String name(arguments[i].name);
    if (arguments[i].Take(given.take(name), &values[i])) continue;
    *error = QStringLiteral("The action %1 wants \"%2\": %3.").arg(action, name, arguments[i].Wanted());
    return false;
  }
  if (given.isEmpty()) return true;
  *error =
      QStringLiteral("The action %1 knows no \"%2\".").arg(action, given.keys().constFirst().simplified().left(40));
  return false;
}

QJsonObject DescribeArmed(const char* action, const QJsonObject& now, QJsonObject none) {
  none.insert(QStringLiteral("name"), QLatin1String(action));
  return {{QStringLiteral("action"), QLatin1String(action)},
          {QStringLiteral("arguments"), now},
          {QStringLiteral("disarm"), none}};
}

QJsonObject DescribeAction(const char* name, const char* group, const char* label,
                           std::span<const Argument> arguments) {
  QJsonArray described;
  for (const Argument& argument : arguments)
    if (argument.name) described.append(argument.Describe());
  return {{QStringLiteral("name"), QLatin1String(name)},
          {QStringLiteral("group"), QLatin1String(group)},
          {QStringLiteral("label"), QLatin1String(label)},
          {QStringLiteral("arguments"), described}};
}

}  // namespace recorder
