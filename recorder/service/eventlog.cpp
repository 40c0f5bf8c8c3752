#include "recorder/service/eventlog.h"

#include <QDateTime>
#include <algorithm>

void EventLog::Add(QJsonObject entry) {
  entry.insert(QStringLiteral("number"), ++mLast);
  entry.insert(QStringLiteral("time"), QDateTime::currentMSecsSinceEpoch());
  mEntries.push_back(entry);
  if (mEntries.size() > kMost) mEntries.pop_front();
  emit Added(entry);
}

void EventLog::Add(const char* kind, const QString& name) {
  Add({{QStringLiteral("kind"), QLatin1String(kind)}, {QStringLiteral("name"), name}});
}

QJsonArray EventLog::Since(qint64 since, qsizetype most) const {
  const auto all = std::min(static_cast<std::ptrdiff_t>(mEntries.size()), std::ptrdiff_t{most});
  const auto count = static_cast<std::ptrdiff_t>(std::clamp<qint64>(mLast - since, 0, all));
  QJsonArray entries;
  for (auto entry = mEntries.rbegin(); entry != mEntries.rbegin() + count; ++entry) entries.append(*entry);
  return entries;
}
