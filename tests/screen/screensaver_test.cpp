#include "gui/live/screensaver.h"

#include <QDir>
#include <QFontMetrics>
#include <QLabel>
#include <QTest>
#include <QTimer>
#include <memory>

#include "gui/base/globals.h"
#include "gui/base/picture.h"
#include "gui/screen/clock.h"
#include "gui/settings/settings.h"
#include "tests/fake/hostfake.h"
#include "tests/fake/paintspy.h"
#include "tests/fake/testroot.h"

static TestRoot root;

namespace {
const QColor kGround(38, 34, 35);

/// The pictures of the page, each of a colour of its own in this test.
struct PictureRow {
  const char* path;
  QSize size;
};
constexpr PictureRow kPictures[] = {
    {"screensaver/status_time_sign_bg.bmp", {480, 320}},   {"screensaver/status_voice_low.bmp", {56, 56}},
    {"screensaver/status_voice_common.bmp", {56, 56}},     {"screensaver/status_voice_high.bmp", {56, 56}},
    {"screensaver/status_voice_off.bmp", {56, 56}},        {"screensaver/status_mic_on.bmp", {56, 56}},
    {"screensaver/status_mic_off.bmp", {56, 56}},          {"screensaver/status_gps_error4.bmp", {56, 56}},
    {"screensaver/status_gps_connect4.bmp", {56, 56}},     {"screensaver/status_gps_disconnect4.bmp", {56, 56}},
    {"screensaver/status_voltage_text_bg.bmp", {152, 56}}, {"screensaver/status_time_am.bmp", {84, 44}},
    {"screensaver/status_time_pm.bmp", {84, 44}},
};
constexpr const char* kClockPage = "screensaver/status_time_sign_bg.bmp";
const QString kOwnPicture = QStringLiteral("/tmp/picture.bmp");

QColor ColorOf(const char* path) {
  int number = 1;
  for (const PictureRow& row : kPictures) {
    if (qstrcmp(row.path, path) == 0) return {number * 16, 128, 255 - number * 16};
    ++number;
  }
  qFatal("no picture %s", path);
}

void Draw(const QString& path, QSize size, const QColor& color) {
  QImage image(size, QImage::Format_RGB888);
  image.fill(color);
  if (!image.save(root.Path(path), "BMP")) qFatal("cannot draw %s", qPrintable(path));
}

QDateTime now;
QDateTime Now() {
  return now;
}
}  // namespace

class ScreenSaverTest : public QObject {
  Q_OBJECT

  std::unique_ptr<HostFake> mHost;

  static Setting_Config& Setting() { return gEnvirnmentSettings.mSetting; }
  ScreenSaver* Show() { return mHost->Show(SCREENSAVER, new ScreenSaver(mHost.get())); }

  static QLabel* Label(ScreenSaver* saver, const char* name) {
    auto* label = saver->findChild<QLabel*>(QLatin1String(name));
    if (!label) qFatal("no label %s", name);
    return label;
  }
  static QString Text(ScreenSaver* saver, const char* name) { return Label(saver, name)->text(); }
  static QTimer* Timer(ScreenSaver* saver) { return saver->findChild<QTimer*>(QStringLiteral("mTimScreenSaver")); }

  // The picture whose colour stands at a place of the screen.
  static QString PictureAt(ScreenSaver* saver, QPoint at) {
    const QColor color = saver->grab().toImage().pixelColor(at);
    for (const PictureRow& row : kPictures)
      if (ColorOf(row.path) == color) return QLatin1String(row.path);
    return color.name();
  }
  // Only the picture of the user, `box`, on the dark ground.
  static bool IsAlone(ScreenSaver* saver, QRect box, const QColor& color) {
    const QImage image = saver->grab().toImage();
    for (int y = 0; y < 320; ++y)
      for (int x = 0; x < 480; ++x)
        if (image.pixelColor(x, y) != (box.contains(x, y) ? color : kGround)) return false;
    return true;
  }

  // Decoded pictures are kept: enough others push the user's out.
  static void ForgetPictures() {
    for (int i = 0; i < 16; ++i) {
      const QString path = QStringLiteral("/tmp/other%1.bmp").arg(i);
      Draw(path, {480, 320}, Qt::black);
      Picture(path);
      root.Remove(path);
    }
  }

private slots:
  void initTestCase() {
    QApplication::setFont(QFont(QStringLiteral("NanumBarunGothic")));
    gClock = Now;
    QFile::remove(root.Path(QStringLiteral("/opt/gui/images")));
    QDir().mkpath(root.Path(QStringLiteral("/opt/gui/images/screensaver")));
    for (const PictureRow& row : kPictures)
      Draw(QStringLiteral("/opt/gui/images/") + QLatin1String(row.path), row.size, ColorOf(row.path));
  }
  void init() {
    now = QDateTime(QDate(2023, 1, 2), QTime(14, 5, 6));
    Setting() = {};
    Setting().lcd_wait_dis = 1;
    gIsConnectGps = 0;
    root.Remove(kOwnPicture);
    mHost = std::make_unique<HostFake>();
    mHost->setPalette(QPalette(Qt::magenta, Qt::magenta));  // what shows through where a screen paints nothing
    mHost->show();
    mHost->floatAnswer = 12.4F;
    HostFake::Clear();
  }
  void cleanup() { mHost.reset(); }

  // ---- texts

  void textsOfTheMoment() {
    ScreenSaver* saver = Show();
    QCOMPARE(Text(saver, "mLblDate"), QStringLiteral("2023.01.02"));
    QCOMPARE(Text(saver, "mLblDay"), QStringLiteral("월요일"));
    QCOMPARE(Text(saver, "mLblTime"), QStringLiteral("02:05"));
    QCOMPARE(Text(saver, "mLblVolt"), QStringLiteral("12.4v"));
  }
  void voltageIsTheRecordersAnswer() {
    mHost->floatAnswer = 24.04F;
    ScreenSaver* saver = Show();
    QCOMPARE(Text(saver, "mLblVolt"), QStringLiteral("24.0v"));
    mHost->floatAnswer = 9.96F;
    saver->SlotSec();
    QCOMPARE(Text(saver, "mLblVolt"), QStringLiteral("10.0v"));
    QCOMPARE(gRecvVoltage, 9.96F);
  }
  void clockHasTwelveHours_data() {
    QTest::addColumn<int>("hour");
    QTest::addColumn<QString>("text");
    QTest::addColumn<bool>("morning");
    QTest::newRow("midnight") << 0 << QStringLiteral("12:07") << true;
    QTest::newRow("1") << 1 << QStringLiteral("01:07") << true;
    QTest::newRow("11") << 11 << QStringLiteral("11:07") << true;
    QTest::newRow("noon") << 12 << QStringLiteral("12:07") << false;
    QTest::newRow("13") << 13 << QStringLiteral("01:07") << false;
    QTest::newRow("23") << 23 << QStringLiteral("11:07") << false;
  }
  void clockHasTwelveHours() {
    QFETCH(int, hour);
    QFETCH(bool, morning);
    now.setTime(QTime(hour, 7));
    ScreenSaver* saver = Show();
    QTEST(Text(saver, "mLblTime"), "text");
    const auto* picture = morning ? "screensaver/status_time_am.bmp" : "screensaver/status_time_pm.bmp";
    for (const QPoint at : {QPoint(32, 116), QPoint(115, 159)}) QCOMPARE(PictureAt(saver, at), QLatin1String(picture));
    for (const QPoint at : {QPoint(31, 116), QPoint(32, 115), QPoint(116, 159), QPoint(115, 160)})
      QCOMPARE(PictureAt(saver, at), QLatin1String(kClockPage));
  }
  void noonChangesThePictureOfTheHalf() {
    now.setTime(QTime(11, 59, 59));
    ScreenSaver* saver = Show();
    now = now.addSecs(1);
    saver->SlotSec();
    QCOMPARE(Text(saver, "mLblTime"), QStringLiteral("12:00"));
    QCOMPARE(PictureAt(saver, {32, 116}), QStringLiteral("screensaver/status_time_pm.bmp"));
  }
  void everyWeekdayHasItsName() {
    const QStringList names{QStringLiteral("월요일"), QStringLiteral("화요일"), QStringLiteral("수요일"),
                            QStringLiteral("목요일"), QStringLiteral("금요일"), QStringLiteral("토요일"),
                            QStringLiteral("일요일")};
    ScreenSaver* saver = Show();
    for (const QString& name : names) {
      saver->SlotSec();
      QCOMPARE(Text(saver, "mLblDay"), name);
      now = now.addDays(1);
    }
  }
  void weekdayIsTransformed_data() {
    QTest::addColumn<QString>("english");
    QTest::addColumn<QString>("korean");
    const char* rows[][2] = {{"Mon", "월요일"},   {"Tue", "화요일"},    {"Wed", "수요일"},
                             {"Thu", "목요일"},   {"Fri", "금요일"},    {"Sat", "토요일"},
                             {"Sun", "일요일"},   {"Monday", "월요일"}, {"Wednesday", "수요일"},
                             {"Sunny", "일요일"}, {"Mo", ""},           {"", ""},
                             {"mon", ""},         {" Mon", ""},         {"월요일", ""}};
    for (const auto& row : rows) QTest::newRow(row[0]) << QString::fromUtf8(row[0]) << QString::fromUtf8(row[1]);
  }
  void weekdayIsTransformed() {
    QFETCH(QString, english);
    QTEST(ScreenSaver::TransformDate(english), "korean");
  }
  void brokenClockShowsTheDefaultTime_data() {
    QTest::addColumn<QDateTime>("time");
    QTest::newRow("none") << QDateTime();
    QTest::newRow("year 2100") << QDateTime(QDate(2100, 1, 1), QTime(9, 0));
    QTest::newRow("before our era") << QDateTime(QDate(-5, 1, 1), QTime(9, 0));
  }
  void brokenClockShowsTheDefaultTime() {
    QFETCH(QDateTime, time);
    now = time;
    ScreenSaver* saver = Show();
    QCOMPARE(Text(saver, "mLblDate"), QStringLiteral("2012.01.01"));
    QCOMPARE(Text(saver, "mLblDay"), QStringLiteral("일요일"));
    QCOMPARE(Text(saver, "mLblTime"), QStringLiteral("12:00"));
    QCOMPARE(PictureAt(saver, {32, 116}), QStringLiteral("screensaver/status_time_am.bmp"));
  }
  void lastYearThatIsShown() {
    now = QDateTime(QDate(2099, 12, 31), QTime(23, 59, 59));
    ScreenSaver* saver = Show();
    QCOMPARE(Text(saver, "mLblDate"), QStringLiteral("2099.12.31"));
    QCOMPARE(Text(saver, "mLblTime"), QStringLiteral("11:59"));
  }
  void labelsStandWhereTheyShould_data() {
    QTest::addColumn<QByteArray>("name");
    QTest::addColumn<QRect>("box");
    QTest::addColumn<int>("px");
    QTest::addColumn<int>("align");
    QTest::newRow("date") << QByteArray("mLblDate") << QRect(36, 26, 220, 40) << 30 << int{Qt::AlignLeft};
    QTest::newRow("weekday") << QByteArray("mLblDay") << QRect(304, 26, 140, 40) << 30 << int{Qt::AlignRight};
    QTest::newRow("time") << QByteArray("mLblTime") << QRect(124, 72, 324, 150) << 120 << int{Qt::AlignHCenter};
    QTest::newRow("voltage") << QByteArray("mLblVolt") << QRect(356, 250, 104, 56) << 28 << int{Qt::AlignHCenter};
  }
  void labelsStandWhereTheyShould() {
    QFETCH(QByteArray, name);
    QFETCH(int, px);
    QFETCH(int, align);
    const QLabel* label = Label(Show(), name.constData());
    QTEST(label->geometry(), "box");
    QCOMPARE(label->font().pixelSize(), px);
    QCOMPARE(label->font().bold(), name == "mLblTime");
    QCOMPARE(label->alignment(), Qt::Alignment(align) | Qt::AlignVCenter);
    QCOMPARE(label->textFormat(), Qt::PlainText);
    QCOMPARE(label->styleSheet(), QStringLiteral("QLabel {background:transparent;color:rgb(0,0,0);}"));
  }
  void everyMinuteFitsItsLabel() {
    const QLabel* label = Label(Show(), "mLblTime");
    const QFontMetrics face(label->font());
    QVERIFY(face.height() <= label->height());
    for (int hour = 1; hour <= 12; ++hour)
      for (int minute = 0; minute < 60; ++minute)
        QVERIFY(face.horizontalAdvance(QString::asprintf("%02d:%02d", hour, minute)) <= label->width());
  }

  // ---- pictures

  void speakerShowsTheVolumeOfTheVoice_data() {
    QTest::addColumn<int>("buzer");
    QTest::addColumn<int>("volume");
    QTest::addColumn<QString>("picture");
    const QString off = QStringLiteral("screensaver/status_voice_off.bmp");
    QTest::newRow("0") << 0 << 0 << QStringLiteral("screensaver/status_voice_low.bmp");
    QTest::newRow("1") << 0 << 1 << QStringLiteral("screensaver/status_voice_common.bmp");
    QTest::newRow("2") << 0 << 2 << QStringLiteral("screensaver/status_voice_high.bmp");
    QTest::newRow("3") << 0 << 3 << off;
    QTest::newRow("4") << 0 << 4 << off;
    QTest::newRow("-1") << 0 << -1 << off;
    QTest::newRow("no number of a picture") << 0 << 1000000 << off;
    for (int volume = 0; volume < 4; ++volume) QTest::addRow("%d, speaker switched off", volume) << 1 << volume << off;
    QTest::newRow("buzer flag of another value") << 2 << 1 << QStringLiteral("screensaver/status_voice_common.bmp");
  }
  void speakerShowsTheVolumeOfTheVoice() {
    QFETCH(int, buzer);
    QFETCH(int, volume);
    QFETCH(QString, picture);
    Setting().buzer_flag = buzer;
    Setting().spk_volume = volume;
    ScreenSaver* saver = Show();
    for (const QPoint at : {QPoint(16, 250), QPoint(71, 305)}) QCOMPARE(PictureAt(saver, at), picture);
    for (const QPoint at : {QPoint(15, 250), QPoint(16, 249), QPoint(72, 305), QPoint(71, 306)})
      QCOMPARE(PictureAt(saver, at), QLatin1String(kClockPage));
  }
  void microphoneShowsWhetherSoundIsRecorded_data() {
    QTest::addColumn<int>("volume");
    QTest::addColumn<QString>("picture");
    QTest::newRow("0") << 0 << QStringLiteral("screensaver/status_mic_off.bmp");
    for (const int volume : {1, 2, 3, -1})
      QTest::addRow("%d", volume) << volume << QStringLiteral("screensaver/status_mic_on.bmp");
  }
  void microphoneShowsWhetherSoundIsRecorded() {
    QFETCH(int, volume);
    QFETCH(QString, picture);
    Setting().volume = volume;
    ScreenSaver* saver = Show();
    for (const QPoint at : {QPoint(88, 250), QPoint(143, 305)}) QCOMPARE(PictureAt(saver, at), picture);
  }
  void gpsShowsItsState_data() {
    QTest::addColumn<int>("state");
    QTest::addColumn<QString>("picture");
    QTest::newRow("0") << 0 << QStringLiteral("screensaver/status_gps_disconnect4.bmp");
    QTest::newRow("1") << 1 << QStringLiteral("screensaver/status_gps_error4.bmp");
    QTest::newRow("2") << 2 << QStringLiteral("screensaver/status_gps_connect4.bmp");
    QTest::newRow("3") << 3 << QStringLiteral("screensaver/status_gps_disconnect4.bmp");
    QTest::newRow("-1") << -1 << QStringLiteral("screensaver/status_gps_disconnect4.bmp");
  }
  void gpsShowsItsState() {
    QFETCH(int, state);
    QFETCH(QString, picture);
    gIsConnectGps = state;
    ScreenSaver* saver = Show();
    for (const QPoint at : {QPoint(160, 250), QPoint(215, 305)}) QCOMPARE(PictureAt(saver, at), picture);
  }
  void gpsFoundWhileTheClockIsShownIsSeenOnTheNextTick() {
    ScreenSaver* saver = Show();
    gIsConnectGps = 2;
    saver->SlotSec();
    QCOMPARE(PictureAt(saver, {160, 250}), QStringLiteral("screensaver/status_gps_connect4.bmp"));
  }
  void voltageStandsOnItsPlate() {
    ScreenSaver* saver = Show();
    for (const QPoint at : {QPoint(312, 250), QPoint(463, 305)})
      QCOMPARE(PictureAt(saver, at), QStringLiteral("screensaver/status_voltage_text_bg.bmp"));
  }

  // ---- the user's own picture

  void ownPictureStandsAlone() {
    Setting().lcd_wait_dis = 3;
    Draw(kOwnPicture, {480, 320}, Qt::green);
    QVERIFY(!ScreenSaver::IsNotExistCustomImageFile());
    ScreenSaver* saver = Show();
    QVERIFY(IsAlone(saver, QRect(0, 0, 480, 320), Qt::green));
    QCOMPARE(HostFake::Asked(), QStringList());
    QVERIFY(!Timer(saver)->isActive());
    ForgetPictures();
  }
  void ownPictureThatHasComeMeanwhileTakesThePlaceOfTheClock() {
    Setting().lcd_wait_dis = 3;
    ScreenSaver* saver = Show();
    saver->hide();
    Draw(kOwnPicture, {480, 320}, Qt::green);
    saver->show();
    QVERIFY(IsAlone(saver, QRect(0, 0, 480, 320), Qt::green));
    QVERIFY(!Timer(saver)->isActive());
    ForgetPictures();
  }
  void ownPictureIsForItsModeOnly() {
    Draw(kOwnPicture, {480, 320}, Qt::green);
    for (const int mode : {0, 1, 2, 4}) {
      Setting().lcd_wait_dis = mode;
      QVERIFY(!ScreenSaver::IsNotExistCustomImageFile());
      ScreenSaver* saver = Show();
      QCOMPARE(PictureAt(saver, {0, 0}), QLatin1String(kClockPage));
      QVERIFY(Timer(saver)->isActive());
    }
  }
  void missingOwnPictureShowsTheClock() {
    Setting().lcd_wait_dis = 3;
    QVERIFY(ScreenSaver::IsNotExistCustomImageFile());
    ScreenSaver* saver = Show();
    QCOMPARE(PictureAt(saver, {0, 0}), QLatin1String(kClockPage));
    QCOMPARE(Text(saver, "mLblTime"), QStringLiteral("02:05"));
    QVERIFY(Label(saver, "mLblTime")->isVisible());
    QVERIFY(Timer(saver)->isActive());
  }
  void ownPictureOfAnotherSizeIsShownWhole_data() {
    QTest::addColumn<QSize>("size");
    QTest::addColumn<QRect>("box");
    QTest::newRow("small") << QSize(48, 32) << QRect(0, 0, 480, 320);
    QTest::newRow("high") << QSize(50, 100) << QRect(160, 0, 160, 320);
    QTest::newRow("wide") << QSize(960, 320) << QRect(0, 80, 480, 160);
    QTest::newRow("huge") << QSize(4800, 3200) << QRect(0, 0, 480, 320);
  }
  void ownPictureOfAnotherSizeIsShownWhole() {
    QFETCH(QSize, size);
    QFETCH(QRect, box);
    Setting().lcd_wait_dis = 3;
    Draw(kOwnPicture, size, Qt::green);
    QVERIFY(IsAlone(Show(), box, Qt::green));
    ForgetPictures();
  }
  void brokenOwnPictureIsADarkScreen_data() {
    QTest::addColumn<QByteArray>("bytes");
    QTest::newRow("empty") << QByteArray();
    QTest::newRow("no picture") << QByteArray("BM, but no picture");
    QByteArray bomb("BM\x36\0\0\0\0\0\0\0\x36\0\0\0\x28\0\0\0\xff\xff\xff\x7f\xff\xff\xff\x7f\1\0\x18\0", 30);
    QTest::newRow("larger than memory") << bomb + QByteArray(24, '\0');
    // 8000 x 8000 pixels would be 256 MB, more than is ever decoded.
    QTest::newRow("larger than is decoded")
        << QByteArray(bomb).replace(18, 8, QByteArray("\x40\x1f\0\0\x40\x1f\0\0", 8)) + QByteArray(24, '\0');
  }
  void brokenOwnPictureIsADarkScreen() {
    QFETCH(QByteArray, bytes);
    Setting().lcd_wait_dis = 3;
    root.Write(kOwnPicture, bytes);
    ScreenSaver* saver = Show();
    QVERIFY(IsAlone(saver, QRect(), Qt::green));
    QVERIFY(!Timer(saver)->isActive());
    ForgetPictures();
  }

  // ---- tick, touch

  void tickOfASecondAsksForTheVoltage() {
    ScreenSaver* saver = Show();
    QCOMPARE(HostFake::Asked(), QStringList{QStringLiteral("SEND_GET_VOLTAGE 0")});
    QVERIFY(Timer(saver)->isActive());
    QCOMPARE(Timer(saver)->interval(), 1000);
    Timer(saver)->stop();
    saver->SlotSec();
    QCOMPARE(HostFake::Asked().size(), 2);
    QVERIFY(Timer(saver)->isActive());
    QCOMPARE(Timer(saver)->interval(), 1000);
  }
  void timerIsWhatTicks() {
    ScreenSaver* saver = Show();
    Timer(saver)->start(0);
    QTRY_COMPARE(HostFake::Asked().size(), 2);
  }
  void hiddenSaverDoesNotTick() {
    ScreenSaver* saver = Show();
    saver->hide();
    QVERIFY(!Timer(saver)->isActive());
    saver->show();
    QVERIFY(Timer(saver)->isActive());
  }
  void quietSecondPaintsNothing() {
    ScreenSaver* saver = Show();
    QVERIFY(QTest::qWaitForWindowExposed(mHost.get()));
    QCoreApplication::processEvents();
    PaintSpy<ScreenSaver> screen;
    PaintSpy<QLabel> labels;
    now = now.addSecs(10);
    saver->SlotSec();
    QCoreApplication::processEvents();
    QCOMPARE(screen.count, 0);
    QCOMPARE(labels.count, 0);
    now = now.addSecs(60);
    saver->SlotSec();
    QTRY_COMPARE(labels.count, 1);
  }
  void touchesAreTheWindows() {
    ScreenSaver* saver = Show();
    HostFake::Clear();
    for (const QPoint at : {QPoint(0, 0), QPoint(240, 160), QPoint(479, 319)}) {
      saver->touchEvent(TOUCH_PRESS, at.x(), at.y());
      saver->MessageBoxHandler(TOUCH_PRESS, at.x(), at.y(), NOT_ON_SCREEN_SAVER);
    }
    QCOMPARE(HostFake::Asked(), QStringList());
    QCOMPARE(gWidgetManager.GetCurrentWidget(), saver);
  }
  void wholeScreenIsPaintedEvenWithoutPictures() {
    QFile::rename(root.Path(QStringLiteral("/opt/gui/images")), root.Path(QStringLiteral("/opt/gui/away")));
    ForgetPictures();
    const QImage image = Show()->grab().toImage();
    QFile::rename(root.Path(QStringLiteral("/opt/gui/away")), root.Path(QStringLiteral("/opt/gui/images")));
    ForgetPictures();
    QCOMPARE(image.size(), QSize(480, 320));
    for (const QPoint at : {QPoint(0, 0), QPoint(479, 0), QPoint(0, 319), QPoint(479, 319)})
      QCOMPARE(image.pixelColor(at), kGround);
    for (int y = 0; y < 320; ++y)
      for (int x = 0; x < 480; ++x) QVERIFY(image.pixelColor(x, y) != QColor(Qt::magenta));
  }
};

QTEST_MAIN(ScreenSaverTest)
#include "screensaver_test.moc"
