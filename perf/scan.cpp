#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>

#include "perf/fail.h"
#include "perf/measurements.h"
#include "perf/table.h"

namespace {
std::vector<double> Values(const QJsonValue& rounds) {
  std::vector<double> values;
  for (const QJsonValue& value : rounds.toArray()) values.push_back(value.toDouble());
  return values;
}
}  // namespace

void MeasureScan(Table& table) {
  double callsBefore = 0;
  int countBefore = 0;
  for (const int count : {1000, 10000, 50000, 200000}) {
    QProcess catalogue;
    catalogue.setStandardErrorFile(QProcess::nullDevice());
    if (count > 50000) {  // no tracer: a million calls would take minutes
      QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
      environment.insert(QStringLiteral("PATH"), QStringLiteral("/nonexistent"));
      catalogue.setProcessEnvironment(environment);
    }
    catalogue.start(QStringLiteral(BINARY_DIR "/perf/perf-catalogue"), {QString::number(count)});
    if (!catalogue.waitForFinished(900000) || catalogue.exitCode() != 0) Fail("the catalogue cannot be measured");
    const QJsonObject taken = QJsonDocument::fromJson(catalogue.readAllStandardOutput()).object();
    const auto figure = [&taken](const char* name) { return taken.value(QLatin1String(name)).toDouble(); };
    const auto add = [&](const char* key, const char* name, const char* floor, const char* value) {
      table.Add(qPrintable(QString::asprintf(key, count)), QString::fromLatin1(name).arg(count), "ms",
                {Values(taken.value(QLatin1String(floor))), Values(taken.value(QLatin1String(value)))},
                {Goal::Times, 1.15});
    };
    add("scan-%d", "scan of %L1 recordings", "bares", "scans");
    if (!taken.value(QLatin1String("coldScans")).toArray().isEmpty())
      add("scan-%d-cold", "scan of %L1 recordings that are read from the disk", "coldBares", "coldScans");
    if (count == 50000) {
      if (figure("calls") > 0)
        table.AddValue("scan-calls", QStringLiteral("system calls for each recording"), "",
                       (figure("calls") - callsBefore) / (count - countBefore), {Goal::Most, 5.1});
      table.AddValue("scan-bytes", QStringLiteral("memory for each recording"), "bytes", figure("bytes"),
                     {Goal::Most, 320});
    }
    callsBefore = figure("calls");
    countBefore = count;
  }
}
