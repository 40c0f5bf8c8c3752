#include "bench/supervise/screenreport.h"

#include <QJsonDocument>
#include <QRegularExpression>
#include <algorithm>

namespace {
constexpr int kLongestName = 64;

// Nothing else, and on the LCD.
bool IsArea(const QJsonValue& value) {
  const QJsonObject area = value.toObject();
  const auto within = [&area](const char* from, const char* size, int end) {
    const int begin = area.value(QLatin1String(from)).toInt(-1), length = area.value(QLatin1String(size)).toInt(-1);
    return begin >= 0 && length > 0 && length <= end && begin <= end - length;
  };
  const QJsonValue name = area.value(QLatin1String("name"));
  return area.size() == 5 && within("x", "width", 480) && within("y", "height", 320) && name.isString() &&
         name.toString().size() <= kLongestName;
}
}  // namespace

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

bool ScreenReport::TakeAreas(const QString& line) {
  if (!line.startsWith(QLatin1String("areas "))) return false;
  const QJsonObject told = QJsonDocument::fromJson(line.mid(6).toUtf8()).object();
  const QString screen = told.value(QLatin1String("screen")).toString();
  const QJsonValue areas = told.value(QLatin1String("areas"));
  if (screen.isEmpty() || screen.size() > kLongestName || !areas.isArray()) return false;
  const QJsonArray array = areas.toArray();
  if (!std::all_of(array.begin(), array.end(), IsArea)) return false;
  mAreasOf = screen;
  mAreas = array;
  return true;
}

QJsonValue ScreenReport::Areas() const {
  return mAreasOf.isEmpty() || mAreasOf != mScreen ? QJsonValue() : QJsonValue(mAreas);
}

QJsonObject ScreenReport::Boxes() const {
  return {{QStringLiteral("own"), mOwn}, {QStringLiteral("event"), mEvent}};
}
