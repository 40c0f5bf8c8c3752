#include "bench/supervise/screenreport.h"

#include <QRegularExpression>

bool ScreenReport::Take(const QString& line) {
  static const QRegularExpression screen(QStringLiteral("^screen ([A-Z][A-Z0-9_]{0,63})$"));
  static const QRegularExpression box(QStringLiteral("^box (own|event) (?:none|(-?[0-9]{1,5}) ([A-Za-z0-9_]{0,63}))$"));
  if (const auto match = screen.match(line); match.hasMatch()) {
    mScreen = match.captured(1);
    return true;
  }
  const auto match = box.match(line);
  if (!match.hasMatch()) return false;
  QJsonValue& slot = match.captured(1) == QLatin1String("own") ? mOwn : mEvent;
  slot = QJsonValue();
  if (match.hasCaptured(2))
    slot = QJsonObject{{QStringLiteral("id"), match.captured(2).toInt()}, {QStringLiteral("name"), match.captured(3)}};
  return true;
}

QJsonObject ScreenReport::Boxes() const {
  return {{QStringLiteral("own"), mOwn}, {QStringLiteral("event"), mEvent}};
}
