// perf-list COUNT: from the driver's yes to the list of COUNT recordings, without the time that the recorder gets to
// stop, beside the scan of the card. Prints JSON: milliseconds, medians.
#include <QApplication>
#include <QElapsedTimer>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTextStream>
#include <algorithm>
#include <vector>

#include "gui/app/commandline.h"
#include "gui/app/mainwindow.h"
#include "gui/base/globals.h"
#include "gui/recordings/recfilethread.h"
#include "gui/recordings/recordingfilemanager.h"
#include "gui/screen/widgetmanager.h"
#include "gui/settings/config.h"
#include "gui/settings/settings.h"
#include "tests/fake/cardfake.h"
#include "tests/fake/testroot.h"

namespace {
constexpr int kRounds = 15;
TestRoot root;

[[noreturn]] void Fail(const char* sentence) {
  QTextStream(stderr) << "perf: " << sentence << '\n';
  std::exit(1);
}

double Median(std::vector<double> values) {
  std::sort(values.begin(), values.end());
  return values[values.size() / 2];
}

/// Until nothing is left to do or to paint.
void ProcessEvents() {
  QCoreApplication::processEvents(QEventLoop::AllEvents, 1000);
}

double Scan() {
  RecordingFileManager manager;
  RecFileThread thread(nullptr, &manager);
  QElapsedTimer clock;
  clock.start();
  thread.start();
  thread.wait();
  return double(clock.nsecsElapsed()) / 1e6;
}

double Enter(MainWindow& window) {
  window.Jumped(MAINMENU);
  ProcessEvents();
  window.touchEvent(TOUCH_PRESS, 80, 125);
  ProcessEvents();
  QElapsedTimer clock;
  clock.start();
  window.touchEvent(TOUCH_PRESS, 140, 236);
  ProcessEvents();
  const double ms = double(clock.nsecsElapsed()) / 1e6;
  if (gWidgetManager.GetCurWidgetId() != RECORDINGLIST) Fail("the list does not open");
  return ms;
}
}  // namespace

int main(int argc, char** argv) {
  qputenv("QT_QPA_PLATFORM", "offscreen");
  PrepareQt();
  QApplication application(argc, argv);
  const int count = argc == 2 ? QByteArray(argv[1]).toInt() : 0;
  if (count < 2) Fail("usage: perf-list COUNT");
  qInstallMessageHandler([](QtMsgType, const QMessageLogContext&, const QString&) {});
  card::PutMany(root, count / 2, '0');
  card::PutMany(root, count - count / 2, '1');
  gEnvirnmentSettings.SettingTouchValue(true);
  GetConfig();
  ApplyFont();
  MainWindow window(nullptr);
  window.show();
  ProcessEvents();
  Enter(window);  // decodes the pictures
  std::vector<double> scans, lists;
  for (int i = 0; i < kRounds; ++i) {
    scans.push_back(Scan());
    lists.push_back(Enter(window));
  }
  const QJsonObject figures{{"scan", Median(scans)}, {"list", Median(lists)}};
  QTextStream(stdout) << QJsonDocument(figures).toJson();
  return 0;
}
