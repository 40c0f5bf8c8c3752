// How long the screens take to paint, beside a copy of one frame. Prints a JSON array of rows, microseconds of each
// round.
#include <QApplication>
#include <QElapsedTimer>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTextStream>
#include <algorithm>
#include <cstring>
#include <functional>
#include <memory>
#include <vector>

#include "gui/app/commandline.h"
#include "gui/base/devicepath.h"
#include "gui/recordings/recordingfilemanager.h"
#include "gui/screen/basewidget.h"
#include "gui/screen/widgetmanager.h"
#include "gui/settings/config.h"
#include "tests/fake/testroot.h"
#include "tour/camera.h"
#include "tour/states.h"

namespace {
constexpr int kRounds = 201, kSteps = 20;  // a round is the mean of its steps

using Step = std::function<void()>;

double Round(const Step& step) {
  QElapsedTimer timer;
  timer.start();
  for (int i = 0; i < kSteps; ++i) step();
  return double(timer.nsecsElapsed()) / 1000 / kSteps;
}

void CopyFrame() {
  static const std::vector<char> frame(480 * 320 * 4, 1);
  static std::vector<char> copy(frame.size());
  std::memcpy(copy.data(), frame.data(), frame.size());
  asm volatile("" : : "r"(copy.data()) : "memory");
}

QJsonObject Row(const QString& key, const QString& name, const Step& step, double times) {
  Round(step);  // fills the caches
  QJsonArray floor, value;
  for (int i = 0; i < kRounds; ++i) {
    floor.append(Round(CopyFrame));
    value.append(Round(step));
  }
  return {{"key", key}, {"name", name}, {"floor", floor}, {"value", value}, {"times", true}, {"goal", times}};
}

// A step of many milliseconds, without a floor.
QJsonObject LongRow(const QString& key, const QString& name, const Step& step, double most) {
  QJsonArray value;
  for (int i = 0; i < kRounds; ++i) value.append(Round(step));
  return {{"key", key}, {"name", name}, {"value", value}, {"goal", most}};
}

const State& StateOf(const char* name) {
  for (const State& state : States())
    if (qstrcmp(state.name, name) == 0) return state;
  qFatal("no state %s", name);
}

// A list of 50,000 recordings: to another page, and to another camera. The whole screen is painted, as on the camera.
void MeasureLongList(QJsonArray& rows) {
  constexpr int kRecordings = 100000;  // half of them by the other camera
  constexpr double kFrameUs = 16670;
  Camera camera;
  const QDateTime start(QDate(2023, 1, 1), QTime(12, 0));
  for (int i = 0; i < kRecordings; ++i) {
    const QString name = QStringLiteral("/mnt/mmc/rec%1_%2.avi")
                             .arg(i % 2)
                             .arg(start.addSecs(i / 2).toString(QStringLiteral("yyyyMMdd_HHmmss")));
    Camera::Root().Write(name, QByteArray());
  }
  auto catalogue = std::make_unique<RecordingFileManager>();
  catalogue->ReadFileList(QLatin1String(device::kCard));
  camera.Window().SetRecordingFileManager(std::move(catalogue));
  camera.Window().StartWidget(RECORDINGLIST, nullptr);
  QCoreApplication::processEvents();
  bool down = false;
  const Step turn = [&] {
    down = !down;
    camera.Window().touchEvent(TOUCH_PRESS, 440, down ? 242 : 138);
    QCoreApplication::processEvents();
  };
  const Step toggle = [&] {
    camera.Window().touchEvent(TOUCH_PRESS, 265, 30);
    QCoreApplication::processEvents();
  };
  rows.append(LongRow("page", "another page of 50,000 recordings", turn, kFrameUs));
  rows.append(LongRow("camera", "the other camera's 50,000", toggle, kFrameUs));
}
}  // namespace

int main(int argc, char** argv) {
  qputenv("QT_QPA_PLATFORM", "offscreen");
  PrepareQt();
  QApplication application(argc, argv);
  GetConfig();
  ApplyFont();
  qInstallMessageHandler([](QtMsgType, const QMessageLogContext&, const QString&) {});

  const struct {
    const char* state;
    const char* name;
  } screens[] = {
      {"preview", "the preview"},
      {"main-menu", "a menu"},
      {"recordings", "the list"},
      {"player", "the player"},
      {"time", "the time page"},
      {"parking-report", "the parking report"},
      {"main-menu-list", "a menu with a box"},
      {"screen-saver", "the screen saver"},
  };
  QJsonArray rows;
  for (const auto& [name, text] : screens) {
    Camera camera;
    StateOf(name).enter(camera);
    QCoreApplication::processEvents();
    BaseWidget* screen = gWidgetManager.GetCurrentWidget();
    rows.append(Row(
        QStringLiteral("repaint-") + QLatin1String(name),
        QStringLiteral("repaint of %1; frame copy").arg(QLatin1String(text)), [screen] { screen->repaint(); }, 3));
    if (gWidgetManager.GetCurWidgetId() == PREVIEW)
      rows.append(Row(
          "repaint-key", "repaint of one key; frame copy", [screen] { screen->repaint(4, 3, 71, 60); }, 0.25));
  }
  MeasureLongList(rows);
  QTextStream(stdout) << QJsonDocument(rows).toJson(QJsonDocument::Compact) << '\n';
  return 0;
}
