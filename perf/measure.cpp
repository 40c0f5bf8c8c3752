// perf-measure FILE [--keep HISTORY COMMIT]   measures the real interface on an X server of its own against the
// simulated
//                                             recorder, beside the floors of this platform; prints a table, writes it
//                                             as JSON, and appends a line to a table of commits
// perf-measure --compare INTERFACE            measures another build of the interface and this one
#include <QCoreApplication>

#include "perf/fail.h"
#include "perf/measurements.h"
#include "perf/stage.h"
#include "perf/table.h"

int main(int argc, char** argv) {
  QCoreApplication application(argc, argv);
  const QStringList arguments = application.arguments().mid(1);
  const bool compares = arguments.value(0) == QLatin1String("--compare");
  const bool keeps = arguments.value(1) == QLatin1String("--keep");
  if (arguments.size() != (keeps ? 4 : compares ? 2 : 1))
    Fail("usage: perf-measure FILE [--keep HISTORY COMMIT] | --compare INTERFACE");
  qInstallMessageHandler([](QtMsgType, const QMessageLogContext&, const QString&) {});

  Stage stage;
  Table table;
  if (compares) {
    CompareAnswers(stage, table, arguments[1]);
    CompareIdle(stage, table, arguments[1]);
    table.Print("that", "this");
    return 0;
  }
  MeasureAnswers(stage, table);
  MeasurePainting(table);
  MeasureSaving(stage, table);
  MeasureIdle(stage, table);
  MeasureOpening(stage, table);
  MeasureScan(table);
  table.Print("floor", "interface");
  if (!table.Write(arguments[0])) Fail("the figures cannot be written");
  if (keeps && !table.Keep(arguments[2], arguments[3])) Fail("the line cannot be kept");
  return 0;
}
