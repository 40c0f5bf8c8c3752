#include "recorder/service/members.h"

int Members::Whole(const char* name, int least, int most, std::optional<int> otherwise) {
  const QJsonValue value = mLeft.take(QLatin1String(name));
  if (value.isUndefined() && otherwise) return *otherwise;
  const double number = value.toDouble();
  if (value.isDouble() && number >= least && number <= most && number == static_cast<int>(number))
    return static_cast<int>(number);
  Refuse(QStringLiteral("\"%1\" must be a whole number from %2 to %3.").arg(QLatin1String(name)).arg(least).arg(most));
  return least;
}

QString Members::Choice(const char* name, const QStringList& choices) {
  QString text = mLeft.take(QLatin1String(name)).toString();
  if (!choices.contains(text))
    Refuse(QStringLiteral("\"%1\" must be one of %2.").arg(QLatin1String(name), choices.join(QLatin1String(", "))));
  return text;
}

QString Members::Text(const char* name) {
  QString text = mLeft.take(QLatin1String(name)).toString();
  if (text.isEmpty()) Refuse(QStringLiteral("\"%1\" must be a text.").arg(QLatin1String(name)));
  return text;
}

QJsonArray Members::List(const char* name, int least, int most) {
  const QJsonValue value = mLeft.take(QLatin1String(name));
  QJsonArray list = value.toArray();
  if (!value.isArray() || list.size() < least || list.size() > most)
    Refuse(QStringLiteral("\"%1\" must be a list of %2 to %3.").arg(QLatin1String(name)).arg(least).arg(most));
  return list;
}

bool Members::Flag(const char* name, std::optional<bool> otherwise) {
  const QJsonValue value = mLeft.take(QLatin1String(name));
  if (value.isUndefined() && otherwise) return *otherwise;
  if (!value.isBool()) Refuse(QStringLiteral("\"%1\" must be true or false.").arg(QLatin1String(name)));
  return value.toBool();
}

QString Members::Error() const {
  if (!mError.isEmpty() || mLeft.isEmpty()) return mError;
  return QStringLiteral("There is no member \"%1\" here.").arg(mLeft.keys().constFirst().simplified().left(40));
}

void Members::Refuse(const QString& sentence) {
  if (mError.isEmpty()) mError = sentence;
}
