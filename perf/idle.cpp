#include <QSettings>
#include <QThread>
#include <functional>

#include "perf/measurements.h"
#include "perf/stage.h"
#include "perf/table.h"

namespace {
constexpr int kSeconds = 15, kShortSeconds = 5;
constexpr QPoint kMenuKey(265, 33);
const QString kInterface = QStringLiteral(BINARY_DIR "/gui/dashcam-gui");

constexpr int kChecksMs = 2500;  // after the start: the look for a parking report

/// A screen that nobody touches. The saver asks for the voltage once a second: its timer and the answer are two
/// wake-ups, and another minute is painted. The others have no timer that runs.
struct Place {
  const char* key;
  const char* name;
  std::function<void(Stage&)> enter;  // from the preview
  double mostWakeUps;
};
const Place kPlaces[] = {
    {"preview", "preview, its keys hidden", [](Stage&) { QThread::msleep(5000); }, 0},
    {"menu", "menu", [](Stage& stage) { stage.Tap(kMenuKey); }, 0},
    {"dark", "dark LCD", [](Stage& stage) { stage.Send(RECV_ZEL_STATUS_LCD_KEY); }, 2},
    {"saver", "screen saver", [](Stage&) { QThread::msleep(10000); }, 2.5},
};

/// What the LCD shows when nobody touches it: nothing after 30 s, or the clock page after 10 s.
void ChooseSaver(const Stage& stage, bool saver) {
  QSettings settings(stage.Path("/tmp/config_init.ini"), QSettings::IniFormat);
  settings.setValue(QStringLiteral("lcdsetting/lcd_auto_off"), saver ? 1 : 2);
  settings.setValue(QStringLiteral("lcdsetting/lcd_wait_dis"), saver ? 1 : 0);
}

struct Idle {
  double sleeps, percent;
};

Idle Watch(const Program& program, int seconds) {
  const double sleeps = program.Sleeps(), time = program.ProcessorTime();
  QThread::sleep(seconds);
  return {(program.Sleeps() - sleeps) / seconds, (program.ProcessorTime() - time) / 1e7 / seconds};
}

Idle WatchPlace(Stage& stage, const Place& place, const QString& gui, int seconds) {
  ChooseSaver(stage, qstrcmp(place.key, "saver") == 0);
  const std::unique_ptr<Program> program = stage.StartInterface(gui);
  QThread::msleep(kChecksMs);
  place.enter(stage);
  QThread::msleep(1000);
  return Watch(*program, seconds);
}
}  // namespace

void MeasureIdle(Stage& stage, Table& table) {
  for (const Place& place : kPlaces) {
    const Idle idle = WatchPlace(stage, place, kInterface, kSeconds);
    table.AddValue(qPrintable(QStringLiteral("idle-%1").arg(QLatin1String(place.key))),
                   QStringLiteral("wake-ups, %1").arg(QLatin1String(place.name)), "/s", idle.sleeps,
                   {Goal::Most, place.mostWakeUps}, QStringLiteral("(%1 % of a core)").arg(idle.percent, 0, 'f', 3));
  }
  ChooseSaver(stage, false);
}

void CompareIdle(Stage& stage, Table& table, const QString& other) {
  for (const Place& place : kPlaces) {
    const Rounds sleeps{{WatchPlace(stage, place, other, kShortSeconds).sleeps},
                        {WatchPlace(stage, place, kInterface, kShortSeconds).sleeps}};
    table.Add(qPrintable(QStringLiteral("idle-%1").arg(QLatin1String(place.key))),
              QStringLiteral("wake-ups, %1").arg(QLatin1String(place.name)), "/s", sleeps);
  }
}
