#pragma once

#include <QJsonObject>
#include <QJsonValue>
#include <QString>
#include <span>

namespace recorder {

/// An argument of an action: a number from `least` to `most`, or, with choices, one of these texts.
struct Argument {
  const char* name = nullptr;
  double least = 0;
  double most = 0;
  double standard = 0;
  bool fraction = false;
  bool optional = false;
  std::span<const char* const> choices = {};

  /// What is given for it: a number, or the index of the choice. False when that does not suit.
  bool Take(const QJsonValue& given, double* value) const;

  /// "a whole number from 0 to 3", "one of off, on"
  QString Wanted() const;

  /// As Recorder::Actions() says.
  QJsonObject Describe() const;
};

/// What is given for the arguments of an action, in their order; those behind the last have no name. False, with one
/// sentence in `error`, when one does not suit or is not known.
bool TakeArguments(const QString& action, std::span<const Argument> arguments, QJsonObject given,
                   std::span<double> values, QString* error);

/// What an action has prepared, as Recorder::Armed() says: its arguments as they are, and as they undo it.
QJsonObject DescribeArmed(const char* action, const QJsonObject& now, QJsonObject none);

/// An action as Recorder::Actions() says.
QJsonObject DescribeAction(const char* name, const char* group, const char* label, std::span<const Argument> arguments);

}  // namespace recorder
