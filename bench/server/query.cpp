#include "bench/server/query.h"

#include <QRegularExpression>
#include <QUrl>
#include <QUrlQuery>

bool ReadQuery(const QUrl& url, QJsonObject* members) {
  static const QRegularExpression digits(QRegularExpression::anchoredPattern(QStringLiteral("[0-9]{1,15}")));
  const auto items = QUrlQuery(url).queryItems();
  for (const auto& [name, value] : items)
    members->insert(name, digits.match(value).hasMatch() ? QJsonValue(value.toLongLong()) : QJsonValue(value));
  return members->size() == items.size();
}
