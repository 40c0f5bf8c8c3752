// dashcam-tour DIR: writes a picture of every screen, in the states worth seeing, and of every message box, as a person
// sees them on the camera, and a page that shows them all. No display, no recorder, no bench.
#include <QApplication>
#include <QDir>
#include <QLoggingCategory>
#include <QTextStream>
#include <QtEndian>
#include <functional>

#include "bench/compose.h"
#include "bench/roadvideo.h"
#include "gui/app/commandline.h"
#include "gui/app/mainwindow.h"
#include "gui/app/screenfactory.h"
#include "gui/base/devicepath.h"
#include "gui/base/globals.h"
#include "gui/live/clock.h"
#include "gui/parking/pfileinfo.h"
#include "gui/screen/basewidget.h"
#include "gui/screen/messagecatalogue.h"
#include "gui/screen/widgetmanager.h"
#include "gui/settings/config.h"
#include "gui/settings/settings.h"
#include "tests/fake/platformfake.h"
#include "tests/fake/testroot.h"

namespace {
TestRoot root;

QDateTime Noon() {
  return QDateTime(QDate(2026, 5, 8), QTime(13, 24, 36));
}

Setting_Config& Setting() {
  return gEnvirnmentSettings.mSetting;
}

// The report of one night, 21:40 to 7:10, with `impacts` and `motions` in minutes after its start.
void WriteReport(bool lowVoltage, const QList<int>& impacts, const QList<int>& motions) {
  const auto start = qint32(QDateTime(QDate(2026, 5, 7), QTime(21, 40)).toSecsSinceEpoch());
  const qint32 last = start + 570 * 60;
  QList<qint32> words{1, start, lowVoltage ? 0 : last, lowVoltage ? last : 0};
  for (const QList<int>& minutes : {impacts, motions}) {
    words << qint32(minutes.size());
    for (const int minute : minutes) words << start + minute * 60;
  }
  QByteArray bytes;
  for (const qint32 word : words) {
    const qint32 little = qToLittleEndian(word);
    bytes.append(reinterpret_cast<const char*>(&little), sizeof little);
  }
  root.Write(QStringLiteral("/tmp/.info.bin"), bytes);
}

void OpenReport(MainWindow& window) {
  static PFileInfo report;
  if (!report.openDataFile(DevicePath(device::kParkingReport))) qFatal("the parking report cannot be read");
  report.parsingData();
  window.StartWidget(PFILEGRAPH, &report);
}

/// One state of a screen: a file name, what it shows, and how the camera gets there from the live preview.
struct State {
  WidgetId screen;
  const char* name;
  const char* shows;
  std::function<void(MainWindow&)> enter;
};

void Event(MainWindow& window, RECV_ZEL_STATUS_EVENT event, int value) {
  window.recvEvent(event, value);
}
void Tap(MainWindow& window, int x, int y) {
  window.touchEvent(TOUCH_PRESS, x, y);
}

const State kStates[] = {
    {PREVIEW, "preview", "The live preview: both cameras, 87 km/h",
     [](MainWindow& w) {
       Event(w, RECV_ZEL_STATUS_GPS_CONNECT, 2);
       Event(w, RECV_ZEL_STATUS_SPEED, 87);
     }},
    {PREVIEW, "preview-front", "Front camera alone, no speed without a GPS fix", [](MainWindow& w) { Tap(w, 40, 30); }},
    {PREVIEW, "preview-rear", "Rear camera alone",
     [](MainWindow& w) {
       Tap(w, 40, 30);
       Tap(w, 40, 30);
     }},
    {PREVIEW, "preview-quiet", "Microphone off, the small picture at the left top",
     [](MainWindow&) {
       Setting().volume = 0;
       gEnvirnmentSettings.mMovingPip = 2;
       gWidgetManager.GetCurrentWidget()->update();
     }},
    {PREVIEW, "preview-one-camera", "The rear camera is not connected",
     [](MainWindow& w) { Event(w, RECV_ZEL_STATUS_CAM_CNT, 1); }},
    {PREVIEW, "preview-low-voltage", "The power-off countdown",
     [](MainWindow& w) { Event(w, RECV_ZEL_STATUS_LOW_VOLTAGE_POWER_OFF_COUNT, 1); }},
    {PREVIEW, "preview-manual-recording", "A manual event recording begins", [](MainWindow& w) { Tap(w, 115, 96); }},
    {PREVIEW, "preview-hidden", "The overlay after 5 s without a touch",
     [](MainWindow&) { QMetaObject::invokeMethod(gWidgetManager.GetCurrentWidget(), "TimeoutTouchWait"); }},
    {PFILEGRAPH, "parking-report", "The parking report of a night",
     [](MainWindow& w) {
       WriteReport(false, {62, 240, 241, 391}, {30, 35, 44, 120, 180, 185, 333, 410, 411, 500, 555});
       OpenReport(w);
     }},
    {PFILEGRAPH, "parking-report-low-voltage", "The low-voltage cut ended it",
     [](MainWindow& w) {
       WriteReport(true, {62}, {});
       OpenReport(w);
     }},
    {SCREENSAVER, "screen-saver", "The clock page", [](MainWindow& w) { w.StartWidget(SCREENSAVER, nullptr); }},
    {SCREENSAVER, "screen-saver-quiet", "Speaker and microphone off, GPS fix",
     [](MainWindow& w) {
       Setting().spk_volume = 3;
       Setting().volume = 0;
       Event(w, RECV_ZEL_STATUS_GPS_CONNECT, 2);
       w.StartWidget(SCREENSAVER, nullptr);
     }},
};

/// The camera as after a plain start, on the live preview.
class Camera {
public:
  Camera() {
    root.Remove(QStringLiteral("/tmp/.info.bin"));
    PlatformFake::Get().Clear();
    Setting() = {};
    Setting().lcd_auto_off = Setting().lcd_bright = 1;
    Setting().volume = Setting().spk_volume = 2;
    Setting().rear_cam_power = Setting().parking_mode_on = Setting().protect_file = 1;
    gEnvirnmentSettings.mOldSetting = Setting();
    gEnvirnmentSettings.mMovingPip = 0;
    gIsConnectGps = 0;
    gCountOfCamera = 2;
    mWindow.show();
  }

  MainWindow& Window() { return mWindow; }

  /// What a person sees.
  QImage Picture() {
    QCoreApplication::processEvents();
    VideoPlane video;
    video.view = VideoPlane::View(Setting().display == 1 ? 1 : Setting().display == 2 ? 2 : 0);
    video.pipCorner = gEnvirnmentSettings.mMovingPip;
    video.rearAlive = gCountOfCamera == 2;
    return Compose(mWindow.grab().toImage().convertToFormat(QImage::Format_RGB32), mRoad.Frame(video, 4000), 100000);
  }

private:
  MainWindow mWindow{nullptr};
  RoadVideo mRoad;
};

/// The folder of pictures and its page.
class Gallery {
public:
  explicit Gallery(const QString& folder) : mFolder(folder) {}

  bool Make() { return mFolder.mkpath(QStringLiteral(".")); }

  void Section(const QString& title) { mPage += QStringLiteral("<h2>%1</h2>\n").arg(title.toHtmlEscaped()); }

  bool Add(const QString& name, const QString& shows, const QImage& picture) {
    const QString file = name + QStringLiteral(".png");
    mPage += QStringLiteral(
                 "<figure><img src=\"%1\" width=\"480\" height=\"320\" alt=\"\" loading=\"lazy\">"
                 "<figcaption><b>%2</b> %3</figcaption></figure>\n")
                 .arg(file, name, shows.toHtmlEscaped());
    ++mCount;
    return picture.save(mFolder.filePath(file));
  }

  bool WritePage() {
    QFile page(mFolder.filePath(QStringLiteral("index.html")));
    if (!page.open(QIODevice::WriteOnly)) return false;
    QTextStream(&page)
        << "<!doctype html>\n<html lang=\"en\">\n<meta charset=\"utf-8\">\n"
           "<meta name=\"viewport\" content=\"width=device-width\">\n<title>Dash camera: the tour</title>\n"
           "<style>body{font:15px/1.4 sans-serif;margin:24px;background:#262223;color:#fff}"
           "figure{display:inline-block;margin:0 16px 20px 0;width:480px;max-width:100%}"
           "img{max-width:100%;height:auto}figcaption{color:#c8c2c4}b{color:#fff}</style>\n"
           "<h1>Dash camera: the tour</h1>\n"
        << mPage << "</html>\n";
    return page.flush();
  }

  int Count() const { return mCount; }

private:
  QDir mFolder;
  QString mPage;
  int mCount = 0;
};

bool ShowScreens(Gallery& gallery) {
  gallery.Section(QStringLiteral("Screens"));
  for (const ScreenRow& row : Screens()) {
    int states = 0;
    for (const State& state : kStates) {
      if (state.screen != row.id) continue;
      Camera camera;
      state.enter(camera.Window());
      const QImage picture = camera.Picture();
      if (gWidgetManager.GetCurWidgetId() != row.id) qFatal("%s does not show %s", state.name, row.name);
      if (!gallery.Add(QLatin1String(state.name), QLatin1String(state.shows), picture)) return false;
      ++states;
    }
    if (states == 0) qFatal("the tour has no state of %s", row.name);
  }
  return true;
}

// The values that give a message another text.
QList<int> ValuesOf(int id) {
  switch (id) {
    case LED_FILE_UPDATE_SAVE:
    case LED_FILE_UPDATE_DELETE:
      return {12};
    case R_HW_ERROR:
      return {0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 16, 17, 18};
    case R_VOLT_SET:
      return {0, 1};
    case R_SD_ERROR_NEET_FORMAT:
      return {0, 5, 7};
    default:
      return {0};
  }
}

bool ShowBoxes(Gallery& gallery) {
  gallery.Section(QStringLiteral("Message boxes"));
  Camera camera;
  for (int id = 0; id <= INITIALIZE_RESET_FPS_NEED_FORMAT; ++id) {
    const QList<int> values = ValuesOf(id);
    for (const int value : values) {
      int kind, icon, lines, align, px;
      if (GetMessageBoxString(id, &kind, &icon, &lines, &align, &px, value).isEmpty()) continue;
      BaseWidget* screen = gWidgetManager.GetCurrentWidget();
      screen->PaintMessageBox(id, false, value, 0);
      QString name = QStringLiteral("box-%1").arg(id, 3, 10, QLatin1Char('0'));
      if (values.size() > 1) name += QStringLiteral("-%1").arg(value);
      if (!gallery.Add(name, QLatin1String(NameOf(MessageBox_Id(id))), camera.Picture())) return false;
      screen->DelMessageBox();
    }
  }
  return true;
}
}  // namespace

int main(int argc, char** argv) {
  qputenv("QT_QPA_PLATFORM", "offscreen");
  PrepareQt();
  QApplication application(argc, argv);
  if (argc != 2 || argv[1][0] == '-') {
    QTextStream(stderr) << "Usage: dashcam-tour DIR\nWrites a picture of every screen and message box into DIR.\n";
    return 2;
  }
  QLoggingCategory::setFilterRules(QStringLiteral("*.debug=false"));  // the pictures say it all
  gEnvirnmentSettings.SettingTouchValue(true);
  GetConfig();
  ApplyFont();
  gClock = Noon;
  Gallery gallery(QString::fromLocal8Bit(argv[1]));
  if (!gallery.Make() || !ShowScreens(gallery) || !ShowBoxes(gallery) || !gallery.WritePage()) {
    QTextStream(stderr) << "Cannot write into " << argv[1] << ".\n";
    return 1;
  }
  QTextStream(stdout) << gallery.Count() << " pictures: "
                      << QDir(QString::fromLocal8Bit(argv[1])).absoluteFilePath(QStringLiteral("index.html")) << "\n";
  return 0;
}
