#include "recorder/firmware/scenario.h"

#include "tests/fuzz/readers/reader.h"

namespace {
qsizetype LinesOf(const QByteArray& text) {
  qsizetype lines = 0;
  for (const QByteArray& line : text.split('\n')) lines += !line.trimmed().isEmpty() && !line.trimmed().startsWith('#');
  return lines;
}
}  // namespace

void TakeScenario(const QByteArray& bytes) {
  recorder::StatusChannel status;  // not open: it sends nothing
  recorder::Sink sink(status);
  recorder::Scenario scenario(sink);
  QString error;
  const QString folder = Root().Path(QStringLiteral("/tmp"));
  REQUIRE(scenario.Take("{\"ms\": 7, \"event\": 1}", QStringLiteral("before"), folder, recorder::CheckAction, &error));
  const bool isGood = scenario.Take(bytes, QStringLiteral("any"), folder, recorder::CheckAction, &error);
  const qsizetype lines = LinesOf(bytes);
  scenario.Start();
  const QJsonObject state = scenario.State().toObject();
  if (!isGood) {
    REQUIRE(IsSentence(error) && error.startsWith(QLatin1String("Line ")));
    REQUIRE(state.value(QLatin1String("name")) == QLatin1String("before") && scenario.IsPlaying());
    return;
  }
  REQUIRE(scenario.IsPlaying() == (lines > 0));
  if (lines == 0) return;
  REQUIRE(state.value(QLatin1String("lines")).toInteger() == lines);
  const qint64 of = state.value(QLatin1String("of")).toInteger(-1);
  REQUIRE(of >= 0 && of <= 86400000 && state.value(QLatin1String("at")).toInteger(-1) <= of);
  scenario.Stop();
  REQUIRE(scenario.State().isNull());
}
