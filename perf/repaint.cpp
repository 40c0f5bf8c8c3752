// How long the screens take to paint, next to a copy of one frame. Prints one JSON object: microseconds, medians.
#include <QApplication>
#include <QElapsedTimer>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTextStream>
#include <algorithm>
#include <cstring>
#include <functional>
#include <memory>
#include <vector>

#include "gui/app/commandline.h"
#include "gui/app/mainwindow.h"
#include "gui/base/devicepath.h"
#include "gui/base/globals.h"
#include "gui/recordings/recordingfilemanager.h"
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
// A list of 50,000 recordings: to another page, and to another camera. The whole screen is painted, as on the camera.
void MeasureList(MainWindow& window, QJsonObject& result) {
  constexpr int kRecordings = 100000;  // half of them by the other camera
  const QDateTime start(QDate(2023, 1, 1), QTime(12, 0));
  for (int i = 0; i < kRecordings; ++i) {
    const QString name = QStringLiteral("/mnt/mmc/rec%1_%2.avi")
                             .arg(i % 2)
                             .arg(start.addSecs(i / 2).toString(QStringLiteral("yyyyMMdd_HHmmss")));
    root.Write(name, QByteArray());
  }
  auto catalogue = std::make_unique<RecordingFileManager>();
  catalogue->ReadFileList(QLatin1String(device::kCard));
  window.SetRecordingFileManager(std::move(catalogue));
  window.StartWidget(RECORDINGLIST, nullptr);
  QCoreApplication::processEvents();
  bool down = false;
  result[QStringLiteral("page")] = Median([&] {
    down = !down;
    window.touchEvent(TOUCH_PRESS, 440, down ? 242 : 138);
    QCoreApplication::processEvents();
  });
  result[QStringLiteral("toggle")] = Median([&] {
    window.touchEvent(TOUCH_PRESS, 265, 30);
    QCoreApplication::processEvents();
  });
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
  window.Jumped(PREVIEW);
  window.StartWidget(MAINMENU, nullptr);
  QCoreApplication::processEvents();
  BaseWidget* menu = gWidgetManager.GetCurrentWidget();
  result[QStringLiteral("menu")] = Median([&] { menu->repaint(); });
  MeasureList(window, result);
  QTextStream(stdout) << QJsonDocument(result).toJson(QJsonDocument::Compact) << '\n';
  return 0;
}
