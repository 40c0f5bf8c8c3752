#pragma once

#include <QJsonArray>
#include <QJsonObject>
#include <QStringList>
#include <optional>
#include <utility>

/// Reads the members of a JSON object that came from outside, each one once. What is missing, wrong or unknown gives an
/// error; the first one counts.
class Members {
public:
  explicit Members(const QJsonObject& object) : mLeft(object) {}

  /// A whole number from `least` to `most`; without it `otherwise`, or an error when there is none.
  int Whole(const char* name, int least, int most, std::optional<int> otherwise = {});

  /// One of `choices`.
  QString Choice(const char* name, const QStringList& choices);

  /// A text that is not empty.
  QString Text(const char* name);

  /// A list of `least` to `most` things.
  QJsonArray List(const char* name, int least, int most);

  /// True or false; without it `otherwise`, or an error when there is none.
  bool Flag(const char* name, std::optional<bool> otherwise = {});

  /// Everything that was not read so far.
  QJsonObject TakeRest() { return std::exchange(mLeft, QJsonObject()); }

  /// One sentence: the first error, or the name of a member that nobody read. Empty: all is good.
  QString Error() const;

private:
  void Refuse(const QString& sentence);

  QJsonObject mLeft;
  QString mError;
};
