#include "tour/states.h"

#include <QtEndian>
#include <algorithm>
#include <cmath>

#include "gui/app/screenfactory.h"
#include "gui/base/globals.h"
#include "gui/screen/basewidget.h"
#include "gui/screen/widgetmanager.h"
#include "gui/settings/settings.h"
#include "gui/touch/touchcomp.h"
#include "tests/fake/cardfake.h"
#include "tour/camera.h"

namespace {
constexpr QPoint kHome(40, 30), kNo(340, 236);
constexpr QPoint kViewKey(40, 30), kMicKey(115, 30), kRearKey(190, 30), kLowerLeft(40, 96), kLowerRight(115, 96),
    kBeside(300, 200);  // of the preview

void Tap(Camera& camera, QPoint at, int times) {
  for (int i = 0; i < times; ++i) camera.Tap(at);
}

BaseWidget& Top() {
  return *gWidgetManager.GetCurrentWidget();
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
  Camera::Root().Write(QStringLiteral("/tmp/.info.bin"), bytes);
}

void Park(Camera& camera) {
  camera.Event(RECV_ZEL_STATUS_PARK_MODE_IN);
  camera.Wait("mRecvMessageBoxTimer");
}

// The driver comes back to the car after such a night.
void EndParking(Camera& camera, bool lowVoltage, const QList<int>& impacts, const QList<int>& motions) {
  Park(camera);
  WriteReport(lowVoltage, impacts, motions);
  camera.Event(RECV_ZEL_STATUS_PARK_MODE_OUT);
}

void OpenSaver(Camera& camera, int page) {
  Camera::Setting().lcd_wait_dis = page;
  camera.Wait("mTimLcdOff");
}

// A card with a recording of every kind and flag on its first pages.
void FillCard() {
  const QByteArray flags[] = {{"\0\0\0\0", 4}, {"\1\0^\0", 4}, {"\2\0^\0", 4}, {"\0\1^\0", 4}, {"\0\2^\0", 4}};
  QDateTime at = gClock().addDays(-1);
  const auto put = [&at](const char* prefix, const QByteArray& trailer, bool clockWrong) {
    at = at.addSecs(61);
    const QString name = at.toString(QStringLiteral("yyyyMMdd_HHmmss")) + QLatin1String(clockWrong ? "_.avi" : ".avi");
    for (const char* camera : {"0_", "1_"})
      card::Put(Camera::Root(), QLatin1String(prefix) + QLatin1String(camera) + name, at.toSecsSinceEpoch(),
                card::Avi(60, 1, trailer));
  };
  for (int i = 0; i < 120; ++i) put(i % 9 == 0 ? "evt" : "rec", flags[0], false);
  for (const char* prefix : {"rec", "evt", "pmr"})
    for (const QByteArray& flag : flags) put(prefix, flag, false);
  Camera::Root().Write(QStringLiteral("/mnt/mmc/Setup/record_stop.info"),
                       (at.toString(QStringLiteral("yyyyMMdd_HHmmss")) + u' ' +
                        at.addSecs(1800).toString(QStringLiteral("yyyyMMdd_HHmmss")) + u'\n')
                           .toLatin1());
  at = at.addSecs(1800);
  for (const char* prefix : {"pmr", "evt", "rec"}) put(prefix, flags[0], true);
  put("ndf", flags[0], false);
}

void OpenFullList(Camera& camera) {
  FillCard();
  camera.Open(RECORDINGLIST);
}

// One of the newest recordings, 23 seconds in.
void OpenPlayer(Camera& camera) {
  OpenFullList(camera);
  camera.Tap({200, 86});
  camera.Event(RECV_ZEL_STATUS_PLAY_CUR, 23000);
}

// The values of an option screen after `touches` touches of each of its options.
State Options(WidgetId id, const char* name, const char* shows, std::vector<QPoint> options, int touches) {
  return {id, name, shows, [=](Camera& camera) {
            camera.Open(id);
            for (const QPoint option : options)
              for (int i = 0; i < touches; ++i) {
                camera.Tap(option);
                camera.Event(RECV_ZEL_STATUS_VOICE_PLAY_END);
                if (Top().GetShowMessageBoxFlag()) camera.Wait("mMessageBoxTimer");
              }
          }};
}
const std::vector<QPoint> kDriving{kTile11, kTile12, kTile13, kTile21, kTile22};
const std::vector<QPoint> kParking{kTile11, kTile12, kTile13, kTile23};
const std::vector<QPoint> kAudio{kTile11, kTile12, kTile13, kTile21};
const std::vector<QPoint> kLcd{kTile12, kTile13, kTile11};
const std::vector<QPoint> kDeletion{kTile11, kTile13};
const std::vector<QPoint> kBattery{kTile12};

void OpenShares(Camera& camera, int parking, int impacts) {
  Camera::Setting().parking_mode_on = parking;
  Camera::Setting().drv_shock_lvl = impacts;
  Camera::Setting().e_file_rate = Camera::Setting().p_file_rate = 30;
  Camera::Setting().n_file_rate = 40;
  camera.Open(FILEMANAGEMENT);
}

// The cut-off voltages of a battery of 12 V (0) or 24 V (1).
void OpenCutOff(Camera& camera, int type, bool manual) {
  Camera::Setting().gPower_cut_lvl_type = type;
  Camera::Setting().manual_volt_use = manual ? 1 : 0;
  for (float& volts : Camera::Setting().low_volt_cut) volts = type == 0 ? 11.0F : 23.0F;
  camera.Open(POWERCUTSETTING);
}

QPoint CutOffCell(int level) {
  return {40 + 80 * (level % 6), 110 + 100 * (level / 6)};
}

// Every level after so many touches.
State CutOff(const char* name, const char* shows, int type, int touches) {
  return {POWERCUTSETTING, name, shows, [=](Camera& camera) {
            OpenCutOff(camera, type, true);
            for (int level = 0; level < 12; ++level) Tap(camera, CutOffCell(level), touches);
          }};
}

void OpenCompensation(Camera& camera) {
  gNeedVolCom = true;
  camera.Open(LOWVOLDETECTIONSETTING);
  camera.Tap(kTile13);
  camera.Wait("mMessageBoxTimer");
  camera.Wait("mEventTimer");
}

// One of the measurements (its key), as far as `seconds` (0..11; 11 ends it).
void Measure(Camera& camera, QPoint key, int seconds) {
  camera.Tap(key);
  camera.Tap(kYes);
  camera.Wait("mMessageBoxTimer");
  camera.Wait("mEventTimer");
  for (int i = 0; i < seconds; ++i) camera.Wait("timLoadingProgress");
}

// The two fixed patterns and five more, the third and the fifth shown.
void OpenLed(Camera& camera, WidgetId id, int mode) {
  QByteArray file = QByteArray("\x07\0\0", 3) + char(mode);
  const QByteArray names[] = {"Security LED", "Korvo Black", "\xb9\xae\xb1\xb8 1",       "010-1234-5678",
                              "02-1234-5678", "1588-1234",   "\xc1\xd6\xc2\xf7 \xc1\xdf"};
  for (int i = 0; i < 7; ++i) file += char(i == 2 || i == 4) + names[i].leftJustified(20, '\0') + QByteArray(134, '\0');
  Camera::Root().Write(QStringLiteral("/opt/led.zel"), file);
  Camera::Setting().led_mode = mode;
  camera.Restart();
  camera.Open(id);
}

void TypeNumber(Camera& camera, int digits) {
  OpenLed(camera, NUMBERSETLAYOUT, 1);
  static constexpr int kKeys[] = {9, 0, 9, 0, 1, 2, 3, 4, 5, 6, 7, 8, 0, 1, 2};  // 0, 1, 0, 1, 2, ...
  for (int i = 0; i < digits; ++i) camera.Tap({40 + 80 * (kKeys[i] % 5), 185 + 90 * (kKeys[i] / 5)});
}

// Touches of the targets, of every second pass `error` pixels beside them.
void Calibrate(Camera& camera, int touches, int error) {
  camera.Open(TOUCHCOMP);
  for (int i = 0; i < touches; ++i) {
    if (Top().GetShowMessageBoxFlag()) {
      camera.Wait("mMessageBoxTimer");
      camera.Wait("mEventTimer");
    }
    const int beside = i % 18 < 9 ? 0 : error;
    camera.Tap({kTouchTargetX[i % 9] + beside, kTouchTargetY[i % 9] + beside});
  }
}

// By way of the file on the card.
void OpenTouchTest(Camera& camera) {
  Camera::Root().Write(QStringLiteral("/mnt/mmc/touch_test.txt"), {});
  camera.Restart();
  camera.Wait("mTimPaintTouchTest");
  Camera::Root().Remove(QStringLiteral("/mnt/mmc/touch_test.txt"));
}

void OpenMotion(Camera& camera, QPoint whichCamera, quint64 map) {
  Camera::Setting().motion_area1 = Camera::Setting().motion_area2 = map;
  camera.Open(PARKINGSETTING);
  camera.Tap(kTile22);
  camera.Tap(whichCamera);
}

// From the card's menu, when the voice prompt has ended.
void Format(Camera& camera) {
  camera.Open(SDMANAGEMENT);
  camera.Tap(kTile11);
  camera.Tap(kYes);
  camera.Event(RECV_ZEL_STATUS_VOICE_PLAY_END);
}

void OpenUpdate(Camera& camera, int phase) {
  gFirmupCount = phase;
  camera.Window().StartWidget(FIRMUP, nullptr);
}

const State kStates[] = {
    {PREVIEW, "preview", "The live preview: both cameras, 87 km/h",
     [](Camera& c) {
       c.Event(RECV_ZEL_STATUS_GPS_CONNECT, 2);
       c.Event(RECV_ZEL_STATUS_SPEED, 87);
     }},
    {PREVIEW, "preview-front", "Front camera alone, no speed without a GPS fix", [](Camera& c) { c.Tap(kViewKey); }},
    {PREVIEW, "preview-rear", "Rear camera alone", [](Camera& c) { Tap(c, kViewKey, 2); }},
    {PREVIEW, "preview-mirrored", "The rear picture is mirrored",
     [](Camera& c) {
       Tap(c, kViewKey, 2);
       c.Tap(kLowerLeft);
     }},
    {PREVIEW, "preview-right-top", "The small picture at the right top", [](Camera& c) { c.Tap(kLowerLeft); }},
    {PREVIEW, "preview-left-bottom", "The small picture at the left bottom", [](Camera& c) { Tap(c, kLowerLeft, 3); }},
    {PREVIEW, "preview-quiet", "Microphone off, the small picture at the left top",
     [](Camera& c) {
       Tap(c, kLowerLeft, 2);
       c.Tap(kMicKey);
       c.Wait("mMessageBoxTimer");
     }},
    {PREVIEW, "preview-one-camera", "The rear camera is not connected",
     [](Camera& c) { c.Event(RECV_ZEL_STATUS_CAM_CNT, 1); }},
    {PREVIEW, "preview-one-camera-off", "Nor would it record",
     [](Camera& c) {
       Camera::Setting().rear_cam_power = 0;
       c.Event(RECV_ZEL_STATUS_CAM_CNT, 1);
       c.Tap(kViewKey);
       c.Wait("mMessageBoxTimer");
     }},
    {PREVIEW, "preview-rear-off", "Parked, and the rear camera switched off",
     [](Camera& c) {
       Park(c);
       c.Tap(kRearKey);
       c.Wait("mMessageBoxTimer");
     }},
    {PREVIEW, "preview-low-voltage", "The power-off countdown",
     [](Camera& c) { c.Event(RECV_ZEL_STATUS_LOW_VOLTAGE_POWER_OFF_COUNT, 1); }},
    {PREVIEW, "preview-manual-recording", "A manual event recording begins", [](Camera& c) { c.Tap(kLowerRight); }},
    {PREVIEW, "preview-manual-blink", "It goes on: the key blinks",
     [](Camera& c) {
       Camera::Root().Write(QStringLiteral("/tmp/ndf"), {});
       c.Tap(kLowerRight);
       c.Wait("mMessageBoxTimer");
       c.Wait("mDetectRecordingTimer");
     }},
    {PREVIEW, "preview-no-manual", "No share of the card for manual recordings, no key",
     [](Camera& c) {
       Camera::Setting().protect_file = 0;
       c.Restart();
     }},
    {PREVIEW, "preview-hidden", "The overlay after 5 s without a touch", [](Camera& c) { c.Wait("mTimTouchWait"); }},
    {PREVIEW, "preview-hidden-entry", "Five touches beside the keys open the calibration",
     [](Camera& c) { Tap(c, kBeside, 5); }},
    {PREVIEW, "preview-dark", "The power key switches the LCD off", [](Camera& c) { c.Event(RECV_ZEL_STATUS_LCD_KEY); }},
    {PREVIEW, "preview-card-error", "The card failed at the start",
     [](Camera& c) {
       gSdError = true;
       c.Event(RECV_ZEL_STATUS_SD_ERROR, 5);
     }},
    {PFILEGRAPH, "parking-report", "The parking report of a night",
     [](Camera& c) {
       EndParking(c, false, {62, 240, 241, 391}, {30, 35, 44, 120, 180, 185, 333, 410, 411, 500, 555});
     }},
    {PFILEGRAPH, "parking-report-low-voltage", "The low-voltage cut ended it",
     [](Camera& c) { EndParking(c, true, {62}, {}); }},
    {SCREENSAVER, "screen-saver", "The clock page", [](Camera& c) { OpenSaver(c, 1); }},
    {SCREENSAVER, "screen-saver-morning", "In the morning, loud, no GPS fix yet",
     [](Camera& c) {
       gClock = [] { return QDateTime(QDate(2026, 5, 11), QTime(8, 5, 9)); };
       Camera::Setting().spk_volume = 1;
       c.Event(RECV_ZEL_STATUS_GPS_CONNECT, 1);
       OpenSaver(c, 1);
     }},
    {SCREENSAVER, "screen-saver-quiet", "Speaker and microphone off, GPS fix",
     [](Camera& c) {
       Camera::Setting().spk_volume = 3;
       Camera::Setting().volume = 0;
       c.Event(RECV_ZEL_STATUS_GPS_CONNECT, 2);
       OpenSaver(c, 1);
     }},
    {SCREENSAVER, "screen-saver-low", "The lowest volume, midnight",
     [](Camera& c) {
       gClock = [] { return QDateTime(QDate(2026, 5, 10), QTime(0, 0)); };
       Camera::Setting().spk_volume = 0;
       OpenSaver(c, 1);
     }},
    {SCREENSAVER, "screen-saver-own", "The driver's own picture, taller than the screen",
     [](Camera& c) {
       QImage picture(600, 600, QImage::Format_RGB32);
       for (int y = 0; y < 600; ++y)
         for (int x = 0; x < 600; ++x) picture.setPixel(x, y, qRgb(40 + x / 4, 80 + y / 5, 160 - x / 6));
       picture.save(Camera::Root().Path(QStringLiteral("/tmp/picture.bmp")));
       OpenSaver(c, 3);
     }},
    {SCREENSAVER, "screen-saver-no-own", "The own picture is not there", [](Camera& c) { OpenSaver(c, 3); }},
    {MAINMENU, "main-menu", "The menu, twelve days after the card was formatted",
     [](Camera& c) {
       Camera::Root().Write(QStringLiteral("/mnt/mmc/Setup/.format_time"), {});
       gClock = [] { return QDateTime::currentDateTime().addDays(12); };
       c.Open(MAINMENU);
     }},
    {MAINMENU, "main-menu-version", "A version of six digits",
     [](Camera& c) {
       Camera::Setting().major_ver = Camera::Setting().minor_ver = Camera::Setting().minor_ver2 = 10;
       c.Open(MAINMENU);
     }},
    {MAINMENU, "main-menu-list", "The question before recording is stopped",
     [](Camera& c) {
       c.Open(MAINMENU);
       c.Tap(kTile11);
     }},
    {MAINMENU2, "main-menu-2", "The second menu, which no key leads to; no voltage compensation",
     [](Camera& c) { c.Window().StartWidget(MAINMENU2, nullptr); }},
    {MAINMENU2, "main-menu-2-voltage", "Voltage compensation is offered",
     [](Camera& c) {
       gNeedVolCom = true;
       c.Window().StartWidget(MAINMENU2, nullptr);
     }},
    {MAINMENU2, "main-menu-2-motion", "Which camera's areas",
     [](Camera& c) {
       c.Window().StartWidget(MAINMENU2, nullptr);
       c.Tap(kTile22);
     }},
    {BLACKBOXMANAGEMENT, "device-menu", "The device menu", [](Camera& c) { c.Open(BLACKBOXMANAGEMENT); }},
    {BLACKBOXMANAGEMENT, "device-menu-no-led", "The front LED is broken",
     [](Camera& c) {
       c.Event(RECV_ZEL_STATUS_FRONTLED_ERROR);
       c.Wait("mRecvMessageBoxTimer");
       c.Open(FRONTLED);
     }},
    {BLACKBOXMANAGEMENT, "device-menu-reset", "A reset that would need a format of the card",
     [](Camera& c) {
       Camera::Setting().resolution = 1;
       c.Restart();
       c.Open(BLACKBOXMANAGEMENT);
       c.Tap(kTile23);
       c.Tap(kYes);
     }},
    {SDMANAGEMENT, "card-menu", "The card menu", [](Camera& c) { c.Open(SDMANAGEMENT); }},
    {SDMANAGEMENT, "card-menu-check", "The card is being checked",
     [](Camera& c) {
       c.Open(SDMANAGEMENT);
       c.Tap(kTile12);
       c.Tap(kYes);
       c.Event(RECV_ZEL_STATUS_VOICE_PLAY_END);
     }},
    {SDMANAGEMENT, "card-menu-good", "The check has found nothing",
     [](Camera& c) {
       c.Open(SDMANAGEMENT);
       c.Event(RECV_ZEL_STATUS_SD_CHECK, 0);
     }},
    {SDMANAGEMENT, "card-menu-fault", "The check has found a fault",
     [](Camera& c) {
       c.Open(SDMANAGEMENT);
       c.Event(RECV_ZEL_STATUS_SD_CHECK, 5);
     }},
    {SDFORMAT, "format", "The card is being formatted",
     [](Camera& c) {
       Format(c);
       c.Wait("mTimSDFormat");
     }},
    {SDFORMAT, "format-done", "The card is formatted",
     [](Camera& c) {
       Format(c);
       c.Event(RECV_ZEL_STATUS_SD_FORMAT_RESULT, 1);
     }},
    {SDFORMAT, "format-fails", "The format has failed",
     [](Camera& c) {
       Format(c);
       c.Event(RECV_ZEL_STATUS_SD_FORMAT_RESULT, 0);
     }},
    {SDFORMAT, "format-exchange", "It has failed, and the card failed at the start",
     [](Camera& c) {
       gInitSdError = true;
       Format(c);
       c.Event(RECV_ZEL_STATUS_SD_FORMAT_RESULT, 0);
     }},
    {FIRMUP, "firmware-begins", "A firmware update begins", [](Camera& c) { OpenUpdate(c, 0); }},
    {FIRMUP, "firmware-runs", "It runs, and the bar is there", [](Camera& c) { OpenUpdate(c, 1); }},
    {FIRMUP, "firmware-blinks", "Half a second later the bar is away",
     [](Camera& c) {
       OpenUpdate(c, 1);
       c.Wait("mTimer");
     }},
    {FIRMUP, "firmware-ends", "It has ended", [](Camera& c) { OpenUpdate(c, 2); }},
    Options(DRIVINGSETTING, "driving", "The driving options", kDriving, 0),
    Options(DRIVINGSETTING, "driving-1", "The next value of each", kDriving, 1),
    Options(DRIVINGSETTING, "driving-2", "The next", kDriving, 2),
    Options(DRIVINGSETTING, "driving-3", "The next", kDriving, 3),
    {DRIVINGSETTING, "driving-format", "Another resolution and frame rate need a format of the card",
     [](Camera& c) {
       c.Open(DRIVINGSETTING);
       c.Tap(kTile11);
       c.Tap(kTile12);
       c.Tap(kHome);
     }},
    Options(PARKINGSETTING, "parking", "The parking options", kParking, 0),
    Options(PARKINGSETTING, "parking-1", "The next value of each", kParking, 1),
    Options(PARKINGSETTING, "parking-2", "The next", kParking, 2),
    {PARKINGSETTING, "parking-accessory", "The accessory-power model: the report of the last parking",
     [](Camera& c) {
       c.Event(RECV_ZEL_STATUS_ACC_SUPPORT, 1);
       c.Open(PARKINGSETTING);
     }},
    {PARKINGSETTING, "parking-accessory-parked", "The same while parked",
     [](Camera& c) {
       c.Event(RECV_ZEL_STATUS_ACC_SUPPORT, 1);
       Park(c);
       c.Open(PARKINGSETTING);
     }},
    {PARKINGSETTING, "parking-no-report", "There has been no parking yet",
     [](Camera& c) {
       c.Event(RECV_ZEL_STATUS_ACC_SUPPORT, 1);
       c.Open(PARKINGSETTING);
       c.Tap(kTile23);
     }},
    {PARKINGSETTING, "parking-motion", "Which camera's areas",
     [](Camera& c) {
       c.Open(PARKINGSETTING);
       c.Tap(kTile22);
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
     [](Camera& c) {
       Camera::Setting().lcd_auto_off = 4;
       c.Open(LCDSETTING);
       c.Tap(kTile13);
     }},
    {LCDSETTING, "lcd-own-picture", "The driver's own picture as the screen saver",
     [](Camera& c) {
       Camera::Setting().lcd_wait_dis = 3;
       c.Open(LCDSETTING);
     }},
    Options(FILEDELMETHOD, "deletion", "How old recordings make place", kDeletion, 0),
    Options(FILEDELMETHOD, "deletion-1", "By time: no shares", kDeletion, 1),
    Options(FILEDELMETHOD, "deletion-2", "20 % protected", kDeletion, 2),
    Options(FILEDELMETHOD, "deletion-3", "30 %", kDeletion, 3),
    Options(LOWVOLDETECTIONSETTING, "low-voltage", "Protection of the battery", kBattery, 0),
    Options(LOWVOLDETECTIONSETTING, "low-voltage-1", "12 hours", kBattery, 1),
    Options(LOWVOLDETECTIONSETTING, "low-voltage-2", "24 hours", kBattery, 2),
    Options(LOWVOLDETECTIONSETTING, "low-voltage-3", "48 hours", kBattery, 3),
    Options(LOWVOLDETECTIONSETTING, "low-voltage-4", "3 hours", kBattery, 4),
    {LOWVOLDETECTIONSETTING, "low-voltage-5", "6 hours, and the compensation is offered",
     [](Camera& c) {
       gNeedVolCom = true;
       c.Open(LOWVOLDETECTIONSETTING);
       Tap(c, kTile12, 5);
     }},
    {FILEMANAGEMENT, "shares", "The shares of the card", [](Camera& c) { OpenShares(c, 1, 1); }},
    {FILEMANAGEMENT, "shares-parking", "The boundary of the parkings is chosen and moved",
     [](Camera& c) {
       OpenShares(c, 1, 1);
       c.Tap({320, 184});
       c.Tap({320, 275});
     }},
    {FILEMANAGEMENT, "shares-least", "The smallest share of the events",
     [](Camera& c) {
       OpenShares(c, 1, 1);
       Tap(c, {160, 275}, 5);
     }},
    {FILEMANAGEMENT, "shares-no-parking", "No parkings are recorded", [](Camera& c) { OpenShares(c, 0, 1); }},
    {FILEMANAGEMENT, "shares-no-impacts", "No impacts are recorded", [](Camera& c) { OpenShares(c, 1, 0); }},
    {POWERCUTSETTING, "cut-off", "The recommended voltages", [](Camera& c) { OpenCutOff(c, 0, false); }},
    {POWERCUTSETTING, "cut-off-recommended", "The driver's own are given up",
     [](Camera& c) {
       OpenCutOff(c, 0, false);
       c.Tap({358, 290});
       c.Tap({120, 290});
     }},
    {POWERCUTSETTING, "cut-off-manual", "The driver's own", 
     [](Camera& c) {
       OpenCutOff(c, 0, true);
       for (int level = 0; level < 12; ++level) Tap(c, CutOffCell(level), level);
     }},
    CutOff("cut-off-11.0", "11.0 V at every level", 0, 0),
    CutOff("cut-off-11.8", "11.8 V at every level", 0, 1),
    CutOff("cut-off-12.0", "12.0 V at every level", 0, 2),
    CutOff("cut-off-12.2", "12.2 V at every level", 0, 3),
    CutOff("cut-off-12.4", "12.4 V at every level", 0, 4),
    CutOff("cut-off-12.6", "12.6 V at every level", 0, 5),
    CutOff("cut-off-12.8", "12.8 V at every level", 0, 6),
    CutOff("cut-off-13.0", "13.0 V at every level", 0, 7),
    CutOff("cut-off-12-off", "No cut-off, of a 12 V battery", 0, 8),
    CutOff("cut-off-23.0", "23.0 V at every level", 1, 0),
    CutOff("cut-off-23.6", "23.6 V at every level", 1, 1),
    CutOff("cut-off-24.0", "24.0 V at every level", 1, 2),
    CutOff("cut-off-24.4", "24.4 V at every level", 1, 3),
    CutOff("cut-off-24.8", "24.8 V at every level", 1, 4),
    CutOff("cut-off-27.0", "27.0 V at every level", 1, 5),
    CutOff("cut-off-24-off", "No cut-off, of a 24 V battery", 1, 6),
    {VOLTAGECOMPENSATION, "voltage", "The two measurements", OpenCompensation},
    {VOLTAGECOMPENSATION, "voltage-question", "Before it begins",
     [](Camera& c) {
       OpenCompensation(c);
       c.Tap(kTile21);
     }},
    {VOLTAGECOMPENSATION, "voltage-measuring", "Four seconds of the first one",
     [](Camera& c) {
       OpenCompensation(c);
       Measure(c, kTile21, 4);
     }},
    {VOLTAGECOMPENSATION, "voltage-done", "It is done",
     [](Camera& c) {
       OpenCompensation(c);
       Measure(c, kTile21, 11);
       c.Wait("mMessageBoxTimer");
     }},
    {VOLTAGECOMPENSATION, "voltage-both", "Both are done",
     [](Camera& c) {
       OpenCompensation(c);
       Measure(c, kTile21, 11);
       c.Wait("mMessageBoxTimer");
       Measure(c, kTile23, 11);
     }},
    {VOLTAGECOMPENSATION, "voltage-good", "And they are good",
     [](Camera& c) {
       OpenCompensation(c);
       Measure(c, kTile21, 11);
       c.Wait("mMessageBoxTimer");
       Measure(c, kTile23, 11);
       c.Event(RECV_ZEL_STATUS_VOLT_SET, 1);
     }},
    {VOLTAGECOMPENSATION, "voltage-fails", "No verdict has come",
     [](Camera& c) {
       OpenCompensation(c);
       Measure(c, kTile21, 11);
       c.Wait("mMessageBoxTimer");
       Measure(c, kTile23, 11);
       c.Wait("timRecvResult");
     }},
    {TIMELAYOUT, "time", "Date, time and zone", [](Camera& c) { c.Open(TIMELAYOUT); }},
    {TIMELAYOUT, "time-half", "The half of the day is chosen",
     [](Camera& c) {
       c.Open(TIMELAYOUT);
       c.Tap({150, 155});
     }},
    {TIMELAYOUT, "time-hour", "The hour is chosen",
     [](Camera& c) {
       c.Open(TIMELAYOUT);
       c.Tap({280, 155});
     }},
    {TIMELAYOUT, "time-zone", "The zone is chosen",
     [](Camera& c) {
       Camera::Setting().gmt = 9;
       c.Open(TIMELAYOUT);
       c.Tap({350, 220});
     }},
    {TIMELAYOUT, "time-changed", "Before the clock is set",
     [](Camera& c) {
       c.Open(TIMELAYOUT);
       c.Tap({150, 155});
       c.Tap({320, 290});
       c.Tap({355, 30});
     }},
    {TOUCHCOMP, "calibration", "The first target of the calibration", [](Camera& c) { c.Open(TOUCHCOMP); }},
    {TOUCHCOMP, "calibration-corner", "The second one", [](Camera& c) { Calibrate(c, 1, 0); }},
    {TOUCHCOMP, "calibration-middle", "The last one", [](Camera& c) { Calibrate(c, 8, 0); }},
    {TOUCHCOMP, "calibration-check", "Each is touched once more", [](Camera& c) { Calibrate(c, 12, 0); }},
    {TOUCHCOMP, "calibration-success", "It fits", [](Camera& c) { Calibrate(c, 18, 0); }},
    {TOUCHCOMP, "calibration-retry", "It does not fit", [](Camera& c) { Calibrate(c, 18, 60); }},
    {TOUCHCOMP, "calibration-fails", "It has not fitted four times", [](Camera& c) { Calibrate(c, 72, 60); }},
    {TOUCHCOMP, "calibration-escape", "The power key",
     [](Camera& c) {
       c.Open(TOUCHCOMP);
       c.Event(RECV_ZEL_STATUS_LCD_KEY);
     }},
    {TOUCHTEST, "touch-test", "The touch test", OpenTouchTest},
    {TOUCHTEST, "touch-test-trail", "A circle was drawn",
     [](Camera& c) {
       OpenTouchTest(c);
       for (int i = 0; i < 300; ++i)
         c.Press({240 + int(120 * std::cos(i / 50.0)), 190 + int(90 * std::sin(i / 50.0))});
       c.Release();
     }},
    {MOTIONSETTING, "motion", "Motion counts everywhere", [](Camera& c) { OpenMotion(c, kYes, ~0ULL); }},
    {MOTIONSETTING, "motion-rear", "Some of the rear picture",
     [](Camera& c) { OpenMotion(c, kNo, 0x0000'00FF'3C18'00FFULL); }},
    {MOTIONSETTING, "motion-none", "Nowhere", [](Camera& c) { OpenMotion(c, kYes, 0); }},
    {MOTIONSETTING, "motion-apply", "The power key ends it",
     [](Camera& c) {
       OpenMotion(c, kYes, 0xFFFF'FFFFULL);
       c.Event(RECV_ZEL_STATUS_LCD_KEY);
     }},
    {MOTIONSETTING, "motion-leave", "Without a change?",
     [](Camera& c) {
       OpenMotion(c, kYes, 0xFFFF'FFFFULL);
       c.Event(RECV_ZEL_STATUS_LCD_KEY);
       c.Tap(kNo);
     }},
    {FRONTLED, "led", "The front LED: off", [](Camera& c) { OpenLed(c, FRONTLED, 0); }},
    {FRONTLED, "led-sequential", "One after the other", [](Camera& c) { OpenLed(c, FRONTLED, 1); }},
    {FRONTLED, "led-random", "In any order", [](Camera& c) { OpenLed(c, FRONTLED, 2); }},
    {FRONTLED, "led-off-list", "An LED that is off has no list",
     [](Camera& c) {
       OpenLed(c, FRONTLED, 0);
       c.Tap(kTile12);
     }},
    {NUMBERSETLAYOUT, "number", "The keypad", [](Camera& c) { OpenLed(c, NUMBERSETLAYOUT, 1); }},
    {NUMBERSETLAYOUT, "number-typed", "A number", [](Camera& c) { TypeNumber(c, 11); }},
    {NUMBERSETLAYOUT, "number-longest", "The longest one", [](Camera& c) { TypeNumber(c, 15); }},
    {NUMBERSETLAYOUT, "number-save", "Before it is saved",
     [](Camera& c) {
       TypeNumber(c, 11);
       c.Tap({440, 100});
     }},
    {LEDFILELIST, "led-list", "The patterns, two of them shown", [](Camera& c) { OpenLed(c, LEDFILELIST, 1); }},
    {LEDFILELIST, "led-list-random", "Shown in any order", [](Camera& c) { OpenLed(c, LEDFILELIST, 2); }},
    {LEDFILELIST, "led-list-security", "The security pattern is shown alone",
     [](Camera& c) {
       OpenLed(c, LEDFILELIST, 1);
       c.Tap({370, 85});
     }},
    {LEDFILELIST, "led-list-brand", "The brand's pattern stays",
     [](Camera& c) {
       OpenLed(c, LEDFILELIST, 1);
       c.Tap({370, 137});
       c.Tap({265, 30});
     }},
    {LEDFILELIST, "led-list-delete", "Before patterns are deleted",
     [](Camera& c) {
       OpenLed(c, LEDFILELIST, 1);
       c.Tap({370, 241});
       c.Tap({265, 30});
     }},
    {RECORDINGLIST, "recordings", "All recordings of the front camera, the newest first", OpenFullList},
    {RECORDINGLIST, "recordings-flags", "The next page: how parkings and clock errors look",
     [](Camera& c) {
       OpenFullList(c);
       c.Tap({440, 242});
     }},
    {RECORDINGLIST, "recordings-normal", "The normal ones",
     [](Camera& c) {
       OpenFullList(c);
       c.Tap({150, 30});
     }},
    {RECORDINGLIST, "recordings-events", "The events",
     [](Camera& c) {
       OpenFullList(c);
       Tap(c, {150, 30}, 3);
     }},
    {RECORDINGLIST, "recordings-parking-rear", "Parking recordings of the rear camera, the oldest first",
     [](Camera& c) {
       OpenFullList(c);
       Tap(c, {150, 30}, 2);
       c.Tap({265, 30});
       c.Tap({355, 30});
     }},
    {RECORDINGLIST, "recordings-manual", "The manual ones",
     [](Camera& c) {
       OpenFullList(c);
       Tap(c, {150, 30}, 4);
     }},
    {RECORDINGLIST, "recordings-middle", "Events in the middle of the list",
     [](Camera& c) {
       OpenFullList(c);
       Tap(c, {440, 295}, 5);
     }},
    {RECORDINGLIST, "recordings-end", "The last page",
     [](Camera& c) {
       OpenFullList(c);
       Tap(c, {440, 295}, 20);
     }},
    {RECORDINGLIST, "recordings-empty", "A card without recordings", [](Camera& c) { c.Open(RECORDINGLIST); }},
    {PLAYER, "player", "A recording is played", OpenPlayer},
    {PLAYER, "player-paused", "Paused",
     [](Camera& c) {
       OpenPlayer(c);
       c.Tap({200, 291});
     }},
    {PLAYER, "player-rear", "The rear camera's recording of the same minute",
     [](Camera& c) {
       OpenPlayer(c);
       c.Tap({440, 291});
     }},
    {PLAYER, "player-hidden", "The controls are hidden",
     [](Camera& c) {
       OpenPlayer(c);
       c.Tap({240, 150});
     }},
    {PLAYER, "player-next", "The end of the recording: the next one?",
     [](Camera& c) {
       OpenPlayer(c);
       c.Tap({40, 291});
       c.Event(RECV_ZEL_STATUS_PLAY_STATUS, 4);
     }},
    {PLAYER, "player-fails", "A recording that cannot be played",
     [](Camera& c) {
       OpenPlayer(c);
       c.Event(RECV_ZEL_STATUS_PLAY_STATUS, 3);
     }},
};
}  // namespace

std::vector<State> States() {
  std::vector<State> states(std::begin(kStates), std::end(kStates));
  for (const ScreenRow& row : Screens()) {
    const auto isOf = [&row](const State& state) { return state.screen == row.id; };
    if (std::none_of(std::begin(kStates), std::end(kStates), isOf))
      states.push_back({row.id, QByteArray(NameOf(row.id)).toLower(), "", [&row](Camera& c) { c.Open(row.id); }});
  }
  return states;
}
