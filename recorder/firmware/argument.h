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

}  // namespace recorder
