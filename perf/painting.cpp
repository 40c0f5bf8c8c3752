#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>

#include "perf/fail.h"
#include "perf/measurements.h"
#include "perf/table.h"

namespace {
std::vector<double> Values(const QJsonValue& array) {
  std::vector<double> values;
  for (const QJsonValue& value : array.toArray()) values.push_back(value.toDouble());
  return values;
}
}  // namespace

void MeasurePainting(Table& table) {
  QProcess repaint;
  repaint.setStandardErrorFile(QProcess::nullDevice());
  repaint.start(QStringLiteral(BINARY_DIR "/perf/perf-repaint"), QStringList());
  if (!repaint.waitForFinished(120000) || repaint.exitCode() != 0) Fail("the paint times cannot be taken");
  // The last line; the player says something of its own before.
  const QByteArray last = repaint.readAllStandardOutput().trimmed().split('\n').last();
  const QJsonArray rows = QJsonDocument::fromJson(last).array();
  for (const QJsonValue& value : rows) {
    const QJsonObject row = value.toObject();
    const QString key = row.value(QLatin1String("key")).toString();
    const Goal goal{row.value(QLatin1String("times")).toBool() ? Goal::Times : Goal::Most,
                    row.value(QLatin1String("goal")).toDouble()};
    table.Add(qPrintable(key), row.value(QLatin1String("name")).toString(), "us",
              {Values(row.value(QLatin1String("floor"))), Values(row.value(QLatin1String("value")))}, goal);
  }
}
