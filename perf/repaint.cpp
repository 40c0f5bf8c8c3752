// How long the screens take to paint, next to a copy of one frame. Prints one JSON object: microseconds, medians.
#include <QApplication>
#include <QElapsedTimer>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTextStream>
#include <algorithm>
#include <cstring>
#include <functional>
#include <vector>

#include "gui/app/commandline.h"
#include "gui/app/mainwindow.h"
#include "gui/base/globals.h"
#include "gui/screen/basewidget.h"
#include "gui/screen/widgetmanager.h"
#include "gui/settings/config.h"
#include "gui/settings/settings.h"
#include "tests/fake/testroot.h"

namespace {
TestRoot root;

double Median(const std::function<void()>& step) {
  constexpr int kRounds = 501;
  for (int i = 0; i < 20; ++i) step();  // fills the caches
  std::vector<double> times;
  for (int i = 0; i < kRounds; ++i) {
    QElapsedTimer timer;
    timer.start();
    step();
    times.push_back(double(timer.nsecsElapsed()) / 1000);
  }
  std::nth_element(times.begin(), times.begin() + kRounds / 2, times.end());
  return times[kRounds / 2];
}
}  // namespace

int main(int argc, char** argv) {
  qputenv("QT_QPA_PLATFORM", "offscreen");
  PrepareQt();
  QApplication application(argc, argv);
  gEnvirnmentSettings.SettingTouchValue(true);
  GetConfig();
  ApplyFont();
  gEnvirnmentSettings.mSetting.rear_cam_power = gEnvirnmentSettings.mSetting.protect_file = 1;
  gCountOfCamera = 2;
  MainWindow window(nullptr);
  window.show();
  window.recvEvent(RECV_ZEL_STATUS_GPS_CONNECT, 2);
  window.recvEvent(RECV_ZEL_STATUS_SPEED, 87);
  window.SetLowVolCount(1);
  QCoreApplication::processEvents();

  const std::vector<char> frame(480 * 320 * 4, 1);
  std::vector<char> copy(frame.size());
  QJsonObject result;
  result[QStringLiteral("memcpy")] = Median([&] {
    std::memcpy(copy.data(), frame.data(), frame.size());
    asm volatile("" : : "r"(copy.data()) : "memory");
  });
  BaseWidget* preview = gWidgetManager.GetCurrentWidget();
  result[QStringLiteral("preview")] = Median([&] { preview->repaint(); });
  result[QStringLiteral("key")] = Median([&] { preview->repaint(4, 3, 71, 60); });
  window.StartWidget(SCREENSAVER, nullptr);
  QCoreApplication::processEvents();
  BaseWidget* saver = gWidgetManager.GetCurrentWidget();
  result[QStringLiteral("clock page")] = Median([&] { saver->repaint(); });
  QTextStream(stdout) << QJsonDocument(result).toJson(QJsonDocument::Compact) << '\n';
  return 0;
}
