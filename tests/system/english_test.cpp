// A driver who knows no Korean drives, sets options, looks at recordings and parks: what he sees is what is known to be
// drawn in English.
#include "gui/vocabulary/vocabulary.h"
#include "tests/system/camerarun.h"

namespace {
constexpr QRect kTitle(80, 0, 140, 58), kHeader(80, 0, 320, 60), kTiles(0, 60, 480, 260), kSecondRow(0, 190, 480, 130);
constexpr QRect kQuestion(20, 48, 440, 224), kNotice(35, 84, 410, 168), kMenuKey(229, 3, 71, 60), kBar(0, 266, 480, 54);
constexpr QPoint kHome(40, 30), kYes(140, 236), kNo(340, 236), kFirstTile(80, 125), kFourthTile(80, 255),
    kFifthTile(240, 255);

/// The part of a picture that the interface is known to draw.
QImage Known(const char* name, const QRect& part) {
  const QImage picture(QStringLiteral(SOURCE_DIR "/tests/pictures/%1.png").arg(QLatin1String(name)));
  return picture.convertToFormat(QImage::Format_RGB32).copy(part);
}
}  // namespace

class EnglishTest : public CameraRun {
  Q_OBJECT

  void Shows(const char* name, const QRect& part) {
    const QImage known = Known(name, part);
    QVERIFY2(!known.isNull(), name);
    QVERIFY2(QTest::qWaitFor([&] { return Drawn().copy(part) == known; }, 10000), name);
  }
  void TapTo(QPoint at, const char* screen) {
    QVERIFY(Tap(at));
    QTRY_COMPARE_WITH_TIMEOUT(Screen(), QLatin1String(screen), 15000);
  }

private slots:
  void initTestCase() {
    QVERIFY(StartCamera({QStringLiteral("--language"), QStringLiteral("en")}));
    QCOMPARE(mBench->State("interface/language").toString(), QStringLiteral("en"));
  }
  void cleanupTestCase() { mBench.reset(); }
  void init() { AwaitPreview(); }

  // The first: of a new card it is known what is on it.
  void recordingsAreListedAndPlayed() {
    OpenMenu();
    QVERIFY(Tap(kFirstTile));
    Shows("en/box-073", kQuestion);
    TapTo(kYes, "RECORDINGLIST");
    QTRY_COMPARE_WITH_TIMEOUT(OwnBox() + EventBox(), QString(), kBoxMs);
    Shows("en/recordings", kHeader);
    TapTo({200, 138}, "PLAYER");
    Shows("en/player", kBar);
    TapTo({360, 291}, "RECORDINGLIST");
    QVERIFY(Tap(kHome));
    QTRY_COMPARE_WITH_TIMEOUT(Screen(), QStringLiteral("PREVIEW"), 10000);
  }

  void anOptionIsChangedAndApplied() {
    ShowOverlay();
    Shows("en/preview", kMenuKey);
    OpenMenu();
    Shows("en/main-menu", kTitle);
    Shows("en/main-menu", kSecondRow);
    TapTo(kFourthTile, "DRIVINGSETTING");
    Shows("en/driving", kTitle);
    const QImage before = Drawn();
    QVERIFY(Tap(kFifthTile));
    QTRY_VERIFY(Drawn() != before);
    QVERIFY(Tap(kHome));
    QTRY_VERIFY(IsCommanded("SFIELD_SET_SETUP_COMPLETE"));
    QTRY_COMPARE_WITH_TIMEOUT(Screen(), QStringLiteral("PREVIEW"), 10000);
  }

  void anotherResolutionIsAskedFor() {
    OpenMenu();
    TapTo(kFourthTile, "DRIVINGSETTING");
    const QImage before = Drawn();
    QVERIFY(Tap(kFirstTile));
    QTRY_VERIFY(Drawn() != before);
    QVERIFY(Tap(kHome));
    Shows("en/box-129", kQuestion);
    QVERIFY(Tap(kNo));
    QTRY_COMPARE(OwnBox(), QString());
    QVERIFY(Tap(kFirstTile));
    QTRY_COMPARE(Drawn(), before);
    QVERIFY(Tap(kHome));
    QTRY_COMPARE_WITH_TIMEOUT(Screen(), QStringLiteral("PREVIEW"), 10000);
  }

  void theRecordersReportsAreSaid() {
    const struct {
      int event, value;
      const char* name;
    } reports[] = {{RECV_ZEL_STATUS_MUTE_ON, 0, "en/box-097"},
                   {RECV_ZEL_STATUS_HW_ERROR, 4, "en/box-093-4"},
                   {RECV_ZEL_STATUS_HW_ERROR, 7, "en/box-093-7"}};
    for (const auto& report : reports) {
      QTRY_COMPARE_WITH_TIMEOUT(OwnBox() + EventBox(), QString(), kBoxMs);
      QVERIFY(Event(report.event, report.value));
      Shows(report.name, kNotice);
      QVERIFY(Tap(kBeside));  // an error stays until it is touched
    }
    QTRY_COMPARE_WITH_TIMEOUT(OwnBox() + EventBox(), QString(), kBoxMs);
  }

  void theLanguageIsChangedInTheMiddle() {
    for (const char* language : {"ko", "en"}) {
      const auto since = mBench->LastEntry();
      QVERIFY(mBench->Action(QByteArray("{\"name\": \"language\", \"to\": \"") + language + "\"}"));
      QTRY_COMPARE(mBench->State("interface/language").toString(), QLatin1String(language));
      QTRY_VERIFY(HasStarted(since));
      AwaitPreview();
      QTRY_VERIFY(IsOverlayShown());
      OpenMenu();
      const bool isKorean = QLatin1String(language) == QLatin1String("ko");
      Shows(isKorean ? "main-menu" : "en/main-menu", kSecondRow);
      QVERIFY(Tap(kHome));
      AwaitPreview();
    }
  }
};

QTEST_GUILESS_MAIN(EnglishTest)
#include "english_test.moc"
