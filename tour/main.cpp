// dashcam-tour DIR: writes a picture of every screen, in the states worth seeing, and of every message box, as a person
// sees them on the camera, and a page that shows them all. No display, no recorder, no bench.
#include <QApplication>
#include <QDir>
#include <QLabel>
#include <QLoggingCategory>
#include <QTextStream>
#include <QtEndian>
#include <cmath>
#include <functional>

#include "bench/compose.h"
#include "bench/roadvideo.h"
#include "gui/app/commandline.h"
#include "gui/app/mainwindow.h"
#include "gui/app/screenfactory.h"
#include "gui/base/devicepath.h"
#include "gui/base/globals.h"
#include "gui/led/ledfilemanager.h"
#include "gui/parking/pfileinfo.h"
#include "gui/screen/basewidget.h"
#include "gui/screen/clock.h"
#include "gui/screen/messagecatalogue.h"
#include "gui/screen/widgetmanager.h"
#include "gui/settings/config.h"
#include "gui/settings/settings.h"
#include "gui/touch/touchcomp.h"
#include "tests/fake/cardfake.h"
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

// A card with a recording of every kind and flag on its first pages.
void FillCard() {
  card::Clear(root);
  const QByteArray flags[] = {{"\0\0\0\0", 4}, {"\1\0^\0", 4}, {"\2\0^\0", 4}, {"\0\1^\0", 4}, {"\0\2^\0", 4}};
  QDateTime at = Noon().addDays(-1);
  const auto put = [&at](const char* prefix, const QByteArray& trailer, bool clockWrong) {
    at = at.addSecs(61);
    const QString name = at.toString(QStringLiteral("yyyyMMdd_HHmmss")) + QLatin1String(clockWrong ? "_.avi" : ".avi");
    for (const char* camera : {"0_", "1_"})
      card::Put(root, QLatin1String(prefix) + QLatin1String(camera) + name, at.toSecsSinceEpoch(),
                card::Avi(60, 1, trailer));
  };
  for (int i = 0; i < 120; ++i) put(i % 9 == 0 ? "evt" : "rec", flags[0], false);
  for (const char* prefix : {"rec", "evt", "pmr"})
    for (const QByteArray& flag : flags) put(prefix, flag, false);
  root.Write(QStringLiteral("/mnt/mmc/Setup/record_stop.info"),
             (at.toString(QStringLiteral("yyyyMMdd_HHmmss")) + u' ' +
              at.addSecs(1800).toString(QStringLiteral("yyyyMMdd_HHmmss")) + u'\n')
                 .toLatin1());
  at = at.addSecs(1800);
  for (const char* prefix : {"pmr", "evt", "rec"}) put(prefix, flags[0], true);
  put("ndf", flags[0], false);
}

void Event(MainWindow& window, RECV_ZEL_STATUS_EVENT event, int value) {
  window.recvEvent(event, value);
}
void Tap(MainWindow& window, int x, int y) {
  window.touchEvent(TOUCH_PRESS, x, y);
}

void OpenMenu(MainWindow& window) {
  Tap(window, 265, 33);
}

// From the preview, as a driver does it.
void OpenList(MainWindow& window) {
  OpenMenu(window);
  Tap(window, 80, 125);
  Tap(window, 140, 236);
}

void OpenFullList(MainWindow& window) {
  FillCard();
  OpenList(window);
}

// One of the newest recordings, half a minute in.
void OpenPlayer(MainWindow& window) {
  OpenFullList(window);
  Tap(window, 200, 86);
  Event(window, RECV_ZEL_STATUS_PLAY_CUR, 23000);
}

void Open(MainWindow& window, WidgetId id) {
  window.StartWidget(id, nullptr);
}

// An option screen after `taps` touches of each of its options.
void OpenOptions(MainWindow& window, WidgetId id, const std::vector<QPoint>& options, int taps) {
  Open(window, id);
  for (const QPoint at : options)
    for (int i = 0; i < taps; ++i) {
      Tap(window, at.x(), at.y());
      gIsPlayingVoice = false;
      if (gWidgetManager.GetCurrentWidget()->GetShowMessageBoxFlag())
        gWidgetManager.GetCurrentWidget()->DelMessageBox();
    }
}
constexpr QPoint kTile11(80, 125), kTile12(240, 125), kTile13(400, 125), kTile21(80, 255), kTile22(240, 255),
    kTile23(400, 255);

void OpenShares(MainWindow& window, int parking, int impacts) {
  Setting().parking_mode_on = parking;
  Setting().drv_shock_lvl = impacts;
  Setting().e_file_rate = Setting().p_file_rate = 30;
  Setting().n_file_rate = 40;
  Open(window, FILEMANAGEMENT);
}

void OpenCutOff(MainWindow& window, int type, int manual) {
  Setting().gPower_cut_lvl_type = type;
  Setting().manual_volt_use = manual;
  for (float& volts : Setting().low_volt_cut) volts = type == 0 ? 11.0F : 23.0F;
  Open(window, POWERCUTSETTING);
}

// The measurement before the engine is started, after some seconds.
void Measure(MainWindow& window, int seconds) {
  Open(window, VOLTAGECOMPENSATION);
  Tap(window, 80, 255);
  Tap(window, 140, 236);
  BaseWidget* screen = gWidgetManager.GetCurrentWidget();
  screen->DelMessageBox();
  screen->TimeoutEvent();
  for (int i = 0; i < seconds; ++i) QMetaObject::invokeMethod(screen, "TimeoutLoadingProgress");
}

// The two fixed patterns and five more, the third and the fifth shown.
void OpenLed(MainWindow& window, WidgetId id, int mode) {
  QByteArray file = QByteArray("\x07\0\0", 3) + char(mode);
  const QByteArray names[] = {"Security LED", "Korvo Black", "\xb9\xae\xb1\xb8 1",       "010-1234-5678",
                              "02-1234-5678", "1588-1234",   "\xc1\xd6\xc2\xf7 \xc1\xdf"};
  for (int i = 0; i < 7; ++i) file += char(i == 2 || i == 4) + names[i].leftJustified(20, '\0') + QByteArray(134, '\0');
  root.Write(QStringLiteral("/opt/led.zel"), file);
  gLedFileManager.ReadLedFile();
  Setting().led_mode = mode;
  Open(window, id);
}

void TypeNumber(MainWindow& window, int digits) {
  OpenLed(window, NUMBERSETLAYOUT, 1);
  static constexpr int kKeys[] = {9, 0, 9, 0, 1, 2, 3, 4, 5, 6, 7, 8, 0, 1, 2};  // 0, 1, 0, 1, 2, ...
  for (int i = 0; i < digits; ++i) Tap(window, 40 + 80 * (kKeys[i] % 5), 185 + 90 * (kKeys[i] / 5));
}

// Touches of a panel that is mounted straight, and in the second pass beside the targets by `error`.
void Calibrate(MainWindow& window, int touches, int error) {
  gEnvirnmentSettings.mTouchValue.Store(kFactoryTouchValue);
  Open(window, TOUCHCOMP);
  auto* screen = qobject_cast<TouchComp*>(gWidgetManager.GetCurrentWidget());
  for (int i = 0; i < touches; ++i) {
    if (screen->GetShowMessageBoxFlag()) {
      screen->DelMessageBox();
      screen->TimeoutEvent();
    }
    const int beside = i % 18 < 9 ? 0 : error;
    screen->settingTouchPanel(kTouchTargetX[i % 9] + beside, kTouchTargetY[i % 9] + beside);
  }
}

void OpenMotion(MainWindow& window, int display, quint64 map) {
  Setting().display = display;
  Setting().motion_area1 = Setting().motion_area2 = map;
  Open(window, MOTIONSETTING);
}

State Options(WidgetId id, const char* name, const char* shows, std::vector<QPoint> options, int taps) {
  return {id, name, shows, [=](MainWindow& w) { OpenOptions(w, id, options, taps); }};
}
const std::vector<QPoint> kDriving{kTile11, kTile12, kTile13, kTile21, kTile22};
const std::vector<QPoint> kParking{kTile11, kTile12, kTile13, kTile23};
const std::vector<QPoint> kAudio{kTile11, kTile12, kTile13, kTile21};
const std::vector<QPoint> kLcd{kTile12, kTile13, kTile11};
const std::vector<QPoint> kDeletion{kTile11, kTile13};

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
    {MAINMENU, "main-menu", "The menu, twelve days after the card was formatted",
     [](MainWindow& w) {
       root.Write(QStringLiteral("/mnt/mmc/Setup/.format_time"), QByteArray());
       gClock = [] { return QDateTime::currentDateTime().addDays(12); };
       OpenMenu(w);
       gClock = Noon;
     }},
    {MAINMENU, "main-menu-list", "The question before recording is stopped",
     [](MainWindow& w) {
       OpenMenu(w);
       Tap(w, 80, 125);
     }},
    {MAINMENU2, "main-menu-2", "The second menu; no voltage compensation", [](MainWindow& w) { Open(w, MAINMENU2); }},
    {MAINMENU2, "main-menu-2-voltage", "Voltage compensation is offered",
     [](MainWindow& w) {
       gNeedVolCom = true;
       Open(w, MAINMENU2);
     }},
    {MAINMENU2, "main-menu-2-motion", "Which camera's areas",
     [](MainWindow& w) {
       Open(w, MAINMENU2);
       Tap(w, 240, 255);
     }},
    {BLACKBOXMANAGEMENT, "device-menu", "The device menu", [](MainWindow& w) { Open(w, BLACKBOXMANAGEMENT); }},
    {BLACKBOXMANAGEMENT, "device-menu-reset", "A reset that would need a format of the card",
     [](MainWindow& w) {
       Open(w, BLACKBOXMANAGEMENT);
       gEnvirnmentSettings.mOldSetting.resolution = 1;
       Tap(w, 400, 255);
       Tap(w, 140, 236);
     }},
    {SDMANAGEMENT, "card-menu", "The card menu", [](MainWindow& w) { Open(w, SDMANAGEMENT); }},
    {SDMANAGEMENT, "card-menu-check", "The card is being checked",
     [](MainWindow& w) {
       Open(w, SDMANAGEMENT);
       Tap(w, 240, 125);
       Tap(w, 140, 236);
       Event(w, RECV_ZEL_STATUS_VOICE_PLAY_END, 0);
     }},
    {SDMANAGEMENT, "card-menu-fault", "The check has found a fault",
     [](MainWindow& w) {
       Open(w, SDMANAGEMENT);
       Event(w, RECV_ZEL_STATUS_SD_CHECK, 5);
     }},
    {SDFORMAT, "format", "The card is being formatted",
     [](MainWindow& w) {
       Open(w, SDFORMAT);
       QMetaObject::invokeMethod(gWidgetManager.GetCurrentWidget(), "TimeoutSDFormat");
     }},
    {SDFORMAT, "format-done", "The card is formatted",
     [](MainWindow& w) {
       Open(w, SDFORMAT);
       Event(w, RECV_ZEL_STATUS_SD_FORMAT_RESULT, 1);
     }},
    {SDFORMAT, "format-fails", "The format has failed",
     [](MainWindow& w) {
       Open(w, SDFORMAT);
       Event(w, RECV_ZEL_STATUS_SD_FORMAT_RESULT, 0);
     }},
    {SDFORMAT, "format-exchange", "It has failed, and the card failed at the start",
     [](MainWindow& w) {
       gInitSdError = true;
       Open(w, SDFORMAT);
       Event(w, RECV_ZEL_STATUS_SD_FORMAT_RESULT, 0);
     }},
    Options(DRIVINGSETTING, "driving", "The driving options", kDriving, 0),
    Options(DRIVINGSETTING, "driving-1", "The next value of each", kDriving, 1),
    Options(DRIVINGSETTING, "driving-2", "The next", kDriving, 2),
    Options(DRIVINGSETTING, "driving-3", "The next", kDriving, 3),
    Options(PARKINGSETTING, "parking", "The parking options", kParking, 0),
    Options(PARKINGSETTING, "parking-1", "The next value of each", kParking, 1),
    Options(PARKINGSETTING, "parking-2", "The next", kParking, 2),
    {PARKINGSETTING, "parking-accessory", "The accessory-power model: the report of the last parking",
     [](MainWindow& w) {
       gIsAccVer = true;
       Open(w, PARKINGSETTING);
     }},
    {PARKINGSETTING, "parking-accessory-parked", "The same while parked",
     [](MainWindow& w) {
       gIsAccVer = true;
       w.SetIsIngParkingModeOn(true);
       Open(w, PARKINGSETTING);
     }},
    {PARKINGSETTING, "parking-no-report", "There has been no parking yet",
     [](MainWindow& w) {
       gIsAccVer = true;
       Open(w, PARKINGSETTING);
       Tap(w, kTile23.x(), kTile23.y());
     }},
    Options(AUDIOSETTING, "audio", "The options of sound", kAudio, 0),
    Options(AUDIOSETTING, "audio-1", "The next value of each", kAudio, 1),
    Options(AUDIOSETTING, "audio-2", "The next", kAudio, 2),
    Options(AUDIOSETTING, "audio-3", "The next", kAudio, 3),
    Options(LCDSETTING, "lcd", "The options of the LCD", kLcd, 0),
    Options(LCDSETTING, "lcd-1", "The next value of each", kLcd, 1),
    Options(LCDSETTING, "lcd-2", "The next", kLcd, 2),
    Options(LCDSETTING, "lcd-3", "Always on: no screen saver", kLcd, 3),
    {LCDSETTING, "lcd-no-saver", "An LCD that is always on has no screen saver",
     [](MainWindow& w) {
       Setting().lcd_auto_off = 4;
       Open(w, LCDSETTING);
       Tap(w, kTile13.x(), kTile13.y());
     }},
    Options(FILEDELMETHOD, "deletion", "How old recordings make place", kDeletion, 0),
    Options(FILEDELMETHOD, "deletion-1", "By time: no shares", kDeletion, 1),
    Options(FILEDELMETHOD, "deletion-2", "20 % protected", kDeletion, 2),
    Options(FILEDELMETHOD, "deletion-3", "30 %", kDeletion, 3),
    Options(LOWVOLDETECTIONSETTING, "low-voltage", "Protection of the battery", {kTile12}, 0),
    Options(LOWVOLDETECTIONSETTING, "low-voltage-1", "12 hours", {kTile12}, 1),
    Options(LOWVOLDETECTIONSETTING, "low-voltage-2", "24 hours", {kTile12}, 2),
    Options(LOWVOLDETECTIONSETTING, "low-voltage-3", "48 hours", {kTile12}, 3),
    Options(LOWVOLDETECTIONSETTING, "low-voltage-4", "3 hours", {kTile12}, 4),
    {LOWVOLDETECTIONSETTING, "low-voltage-5", "6 hours, and the compensation is offered",
     [](MainWindow& w) {
       gNeedVolCom = true;
       OpenOptions(w, LOWVOLDETECTIONSETTING, {kTile12}, 5);
     }},
    {LCDSETTING, "lcd-own-picture", "The driver's own picture as the screen saver",
     [](MainWindow& w) {
       Setting().lcd_wait_dis = 3;
       Open(w, LCDSETTING);
     }},
    {FILEMANAGEMENT, "shares", "The shares of the card", [](MainWindow& w) { OpenShares(w, 1, 1); }},
    {FILEMANAGEMENT, "shares-parking", "The boundary of the parkings is chosen and moved",
     [](MainWindow& w) {
       OpenShares(w, 1, 1);
       Tap(w, 320, 184);
       Tap(w, 320, 275);
     }},
    {FILEMANAGEMENT, "shares-least", "The smallest share of the events",
     [](MainWindow& w) {
       OpenShares(w, 1, 1);
       for (int i = 0; i < 5; ++i) Tap(w, 160, 275);
     }},
    {FILEMANAGEMENT, "shares-no-parking", "No parkings are recorded", [](MainWindow& w) { OpenShares(w, 0, 1); }},
    {FILEMANAGEMENT, "shares-no-impacts", "No impacts are recorded", [](MainWindow& w) { OpenShares(w, 1, 0); }},
    {POWERCUTSETTING, "cut-off", "The recommended voltages", [](MainWindow& w) { OpenCutOff(w, 0, 0); }},
    {POWERCUTSETTING, "cut-off-manual", "The driver's own",
     [](MainWindow& w) {
       OpenCutOff(w, 0, 1);
       for (int level = 0; level < 12; ++level)
         for (int i = 0; i < level; ++i) Tap(w, 40 + 80 * (level % 6), 110 + 100 * (level / 6));
     }},
    {POWERCUTSETTING, "cut-off-24", "A 24 V battery",
     [](MainWindow& w) {
       OpenCutOff(w, 1, 1);
       for (int level = 0; level < 12; ++level)
         for (int i = 0; i < level; ++i) Tap(w, 40 + 80 * (level % 6), 110 + 100 * (level / 6));
     }},
    {VOLTAGECOMPENSATION, "voltage", "The two measurements", [](MainWindow& w) { Open(w, VOLTAGECOMPENSATION); }},
    {VOLTAGECOMPENSATION, "voltage-question", "Before it begins",
     [](MainWindow& w) {
       Open(w, VOLTAGECOMPENSATION);
       Tap(w, 80, 255);
     }},
    {VOLTAGECOMPENSATION, "voltage-measuring", "Four seconds of the first one", [](MainWindow& w) { Measure(w, 4); }},
    {VOLTAGECOMPENSATION, "voltage-done", "It is done",
     [](MainWindow& w) {
       Measure(w, 11);
       gWidgetManager.GetCurrentWidget()->DelMessageBox();
     }},
    {TIMELAYOUT, "time", "Date, time and zone", [](MainWindow& w) { Open(w, TIMELAYOUT); }},
    {TIMELAYOUT, "time-zone", "The zone is chosen",
     [](MainWindow& w) {
       Setting().gmt = 9;
       Open(w, TIMELAYOUT);
       Tap(w, 350, 220);
     }},
    {TIMELAYOUT, "time-changed", "Before the clock is set",
     [](MainWindow& w) {
       Open(w, TIMELAYOUT);
       Tap(w, 150, 155);
       Tap(w, 320, 290);
       Tap(w, 355, 30);
     }},
    {TOUCHCOMP, "calibration", "The first target of the calibration", [](MainWindow& w) { Open(w, TOUCHCOMP); }},
    {TOUCHCOMP, "calibration-corner", "The second one", [](MainWindow& w) { Calibrate(w, 1, 0); }},
    {TOUCHCOMP, "calibration-check", "Each is touched once more", [](MainWindow& w) { Calibrate(w, 12, 0); }},
    {TOUCHCOMP, "calibration-success", "It fits", [](MainWindow& w) { Calibrate(w, 18, 0); }},
    {TOUCHCOMP, "calibration-retry", "It does not fit", [](MainWindow& w) { Calibrate(w, 18, 60); }},
    {TOUCHCOMP, "calibration-fails", "It has not fitted four times", [](MainWindow& w) { Calibrate(w, 72, 60); }},
    {TOUCHCOMP, "calibration-escape", "The power key",
     [](MainWindow& w) {
       Open(w, TOUCHCOMP);
       Event(w, RECV_ZEL_STATUS_LCD_KEY, 0);
     }},
    {TOUCHTEST, "touch-test", "The touch test", [](MainWindow& w) { Open(w, TOUCHTEST); }},
    {TOUCHTEST, "touch-test-trail", "A circle was drawn",
     [](MainWindow& w) {
       Open(w, TOUCHTEST);
       for (int i = 0; i < 300; ++i) {
         const QPoint at(240 + int(120 * std::cos(i / 50.0)), 190 + int(90 * std::sin(i / 50.0)));
         Tap(w, at.x(), at.y());
       }
     }},
    {MOTIONSETTING, "motion", "Motion counts everywhere", [](MainWindow& w) { OpenMotion(w, 1, ~0ULL); }},
    {MOTIONSETTING, "motion-rear", "Some of the rear picture",
     [](MainWindow& w) { OpenMotion(w, 2, 0x0000'00FF'3C18'00FFULL); }},
    {MOTIONSETTING, "motion-none", "Nowhere", [](MainWindow& w) { OpenMotion(w, 1, 0); }},
    {MOTIONSETTING, "motion-apply", "The power key ends it",
     [](MainWindow& w) {
       OpenMotion(w, 1, 0xFFFF'FFFFULL);
       Event(w, RECV_ZEL_STATUS_LCD_KEY, 0);
     }},
    {MOTIONSETTING, "motion-leave", "Without a change?",
     [](MainWindow& w) {
       OpenMotion(w, 1, 0xFFFF'FFFFULL);
       Event(w, RECV_ZEL_STATUS_LCD_KEY, 0);
       Tap(w, 340, 236);
     }},
    {FRONTLED, "led", "The front LED: off", [](MainWindow& w) { OpenLed(w, FRONTLED, 0); }},
    {FRONTLED, "led-sequential", "One after the other", [](MainWindow& w) { OpenLed(w, FRONTLED, 1); }},
    {FRONTLED, "led-random", "In any order", [](MainWindow& w) { OpenLed(w, FRONTLED, 2); }},
    {FRONTLED, "led-off-list", "An LED that is off has no list",
     [](MainWindow& w) {
       OpenLed(w, FRONTLED, 0);
       Tap(w, 240, 125);
     }},
    {NUMBERSETLAYOUT, "number", "The keypad", [](MainWindow& w) { OpenLed(w, NUMBERSETLAYOUT, 1); }},
    {NUMBERSETLAYOUT, "number-typed", "A number", [](MainWindow& w) { TypeNumber(w, 11); }},
    {NUMBERSETLAYOUT, "number-longest", "The longest one", [](MainWindow& w) { TypeNumber(w, 15); }},
    {NUMBERSETLAYOUT, "number-save", "Before it is saved",
     [](MainWindow& w) {
       TypeNumber(w, 11);
       Tap(w, 440, 100);
     }},
    {LEDFILELIST, "led-list", "The patterns, two of them shown", [](MainWindow& w) { OpenLed(w, LEDFILELIST, 1); }},
    {LEDFILELIST, "led-list-random", "Shown in any order", [](MainWindow& w) { OpenLed(w, LEDFILELIST, 2); }},
    {LEDFILELIST, "led-list-security", "The security pattern is shown alone",
     [](MainWindow& w) {
       OpenLed(w, LEDFILELIST, 1);
       Tap(w, 370, 85);
     }},
    {LEDFILELIST, "led-list-brand", "The brand's pattern stays",
     [](MainWindow& w) {
       OpenLed(w, LEDFILELIST, 1);
       Tap(w, 370, 137);
       Tap(w, 265, 30);
     }},
    {LEDFILELIST, "led-list-delete", "Before patterns are deleted",
     [](MainWindow& w) {
       OpenLed(w, LEDFILELIST, 1);
       Tap(w, 370, 241);
       Tap(w, 265, 30);
     }},
    {RECORDINGLIST, "recordings", "All recordings of the front camera, the newest first", OpenFullList},
    {RECORDINGLIST, "recordings-flags", "The next page: how parkings and clock errors look",
     [](MainWindow& w) {
       OpenFullList(w);
       Tap(w, 440, 242);
     }},
    {RECORDINGLIST, "recordings-parking-rear", "Parking recordings of the rear camera, the oldest first",
     [](MainWindow& w) {
       OpenFullList(w);
       Tap(w, 150, 30);
       Tap(w, 150, 30);
       Tap(w, 265, 30);
       Tap(w, 355, 30);
     }},
    {RECORDINGLIST, "recordings-middle", "Events in the middle of the list",
     [](MainWindow& w) {
       OpenFullList(w);
       for (int i = 0; i < 5; ++i) Tap(w, 440, 295);
     }},
    {RECORDINGLIST, "recordings-end", "The last page",
     [](MainWindow& w) {
       OpenFullList(w);
       for (int i = 0; i < 20; ++i) Tap(w, 440, 295);
     }},
    {RECORDINGLIST, "recordings-empty", "A card without recordings",
     [](MainWindow& w) {
       card::Clear(root);
       OpenList(w);
     }},
    {PLAYER, "player", "A recording is played", OpenPlayer},
    {PLAYER, "player-paused", "Paused",
     [](MainWindow& w) {
       OpenPlayer(w);
       Tap(w, 200, 291);
     }},
    {PLAYER, "player-rear", "The rear camera's recording of the same minute",
     [](MainWindow& w) {
       OpenPlayer(w);
       Tap(w, 440, 291);
     }},
    {PLAYER, "player-hidden", "The controls are hidden",
     [](MainWindow& w) {
       OpenPlayer(w);
       Tap(w, 240, 150);
     }},
    {PLAYER, "player-next", "The end of the recording: the next one?",
     [](MainWindow& w) {
       OpenPlayer(w);
       Tap(w, 40, 291);
       Event(w, RECV_ZEL_STATUS_PLAY_STATUS, 4);
     }},
    {PLAYER, "player-fails", "A recording that cannot be played",
     [](MainWindow& w) {
       OpenPlayer(w);
       Event(w, RECV_ZEL_STATUS_PLAY_STATUS, 3);
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
    Setting().major_ver = 1;
    Setting().minor_ver = 2;
    Setting().minor_ver2 = 3;
    Setting().volume = Setting().spk_volume = 2;
    Setting().rear_cam_power = Setting().parking_mode_on = Setting().protect_file = 1;
    gEnvirnmentSettings.mOldSetting = Setting();
    gEnvirnmentSettings.mMovingPip = 0;
    gIsConnectGps = 0;
    gCountOfCamera = 2;
    gNeedVolCom = gIsAccVer = gIsPlayingVoice = false;
    mWindow.show();
  }

  MainWindow& Window() { return mWindow; }

  // The recording's camera, by its name.
  static VideoPlane::View PlayedView() {
    const auto* name = gWidgetManager.GetCurrentWidget()->findChild<QLabel*>(QStringLiteral("mFileNameLabel"));
    return name->text().mid(3, 1) == u'1' ? VideoPlane::View::Rear : VideoPlane::View::Front;
  }

  /// What a person sees.
  QImage Picture() {
    QCoreApplication::processEvents();
    VideoPlane video;
    video.view = VideoPlane::View(Setting().display == 1 ? 1 : Setting().display == 2 ? 2 : 0);
    video.pipCorner = gEnvirnmentSettings.mMovingPip;
    video.rearAlive = gCountOfCamera == 2;
    if (gWidgetManager.GetCurWidgetId() == PLAYER) video.view = PlayedView();
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
