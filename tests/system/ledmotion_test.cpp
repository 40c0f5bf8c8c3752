// What the driver sets for the world outside of the LCD: the front LED and the motion areas, on the real camera.
#include "tests/system/camerarun.h"

class LedMotionTest : public CameraRun {
  Q_OBJECT

  static constexpr QPoint kHome{40, 30}, kBack{440, 30}, kYes{140, 236}, kNo{340, 236};
  static constexpr QPoint kTile11{80, 125}, kTile12{240, 125}, kTile13{400, 125}, kTile22{240, 255}, kTile23{400, 255};

  QJsonObject Led() const { return mBench->State("recorder/frontLed").toObject(); }
  QString Map(const char* camera) const {
    return mBench->State("recorder/motion").toObject().value(QLatin1String(camera)).toString();
  }

  // Taps the digits of the keypad: 1 to 5 above, 6 to 9 and 0 below.
  void Type(const QString& digits) {
    for (const QChar& digit : digits) {
      const int key = (digit.digitValue() + 9) % 10;
      const QImage before = Drawn();
      QTRY_VERIFY(!mBench->State("touch/down").toBool());
      QVERIFY(Tap({40 + key % 5 * 80, key < 5 ? 185 : 275}));
      QTRY_VERIFY(Drawn() != before);
    }
  }

private slots:
  void initTestCase() { QVERIFY(StartCamera()); }
  void cleanupTestCase() { mBench.reset(); }
  void init() { AwaitPreview(); }

  void aNumberThatIsTypedAndTickedIsOnTheFrontLed() {
    OpenMenu();
    QVERIFY(Tap(kTile23));
    QTRY_COMPARE(Screen(), QStringLiteral("BLACKBOXMANAGEMENT"));
    QVERIFY(Tap(kTile12));
    QTRY_COMPARE(Screen(), QStringLiteral("FRONTLED"));
    QCOMPARE(Led().value(QStringLiteral("mode")).toInt(), 0);
    QVERIFY(Tap(kTile13));
    QTRY_COMPARE(Led().value(QStringLiteral("mode")).toInt(), 1);
    QVERIFY(Tap(kTile11));
    QTRY_COMPARE(Screen(), QStringLiteral("NUMBERSETLAYOUT"));
    Type(QStringLiteral("0298765432"));
    QVERIFY(Tap({440, 100}));
    QTRY_COMPARE(OwnBox(), QStringLiteral("IS_INPUT_NUMBER_SAVE"));
    QVERIFY(Tap(kYes));
    QTRY_VERIFY(IsCommanded("SFIELD_SET_LED_FILE_UPDATE"));
    QTRY_COMPARE(OwnBox(), QString());
    QVERIFY(Tap(kBack));
    QTRY_COMPARE(Screen(), QStringLiteral("FRONTLED"));
    QVERIFY(Tap(kTile12));
    QTRY_COMPARE(Screen(), QStringLiteral("LEDFILELIST"));
    const auto change = [this](QPoint at) {
      const QImage before = Drawn();
      return QTest::qWaitFor([this] { return !mBench->State("touch/down").toBool(); }, kPatienceMs) && Tap(at) &&
             QTest::qWaitFor([&] { return Drawn() != before; }, kPatienceMs);
    };
    QVERIFY(change({370, 85}));   // not the security pattern
    QVERIFY(change({440, 242}));  // the second page
    QVERIFY(change({370, 241}));  // its fourth row: the ninth pattern
    QCOMPARE(Led().value(QStringLiteral("entries")).toArray().size(), 1);
    QVERIFY(Tap({355, 30}));
    QTRY_COMPARE(OwnBox(), QStringLiteral("LED_FILE_UPDATE_SAVE"));
    QVERIFY(Tap(kYes));
    QTRY_COMPARE(Led().value(QStringLiteral("entries")).toArray().at(0)[QStringLiteral("name")].toString(),
                 QStringLiteral("02-9876-5432"));
    QCOMPARE(Led().value(QStringLiteral("entries")).toArray().size(), 1);
    QCOMPARE(Led().value(QStringLiteral("entries")).toArray().at(0)[QStringLiteral("columns")].toString(),
             QStringLiteral("1f111f001d15170004040400"
                            "17151f001f151f0001011f001f151d0004040400"
                            "17151d0007041f0015151f001d151700"));
    QTRY_COMPARE(OwnBox(), QString());
    QVERIFY(Tap(kHome));
  }

  void theMapThatWasDrawnIsTheCameras_data() {
    QTest::addColumn<QPoint>("answer");
    QTest::addColumn<QString>("view");
    QTest::addColumn<QString>("camera");
    QTest::addColumn<QString>("other");
    QTest::newRow("front") << kYes << "front"
                           << "front"
                           << "rear";
    QTest::newRow("rear") << kNo << "rear"
                          << "rear"
                          << "front";
  }
  void theMapThatWasDrawnIsTheCameras() {
    QFETCH(QPoint, answer);
    QFETCH(QString, view);
    QFETCH(QString, camera);
    QFETCH(QString, other);
    const QString before = Map(qPrintable(other));
    OpenMenu();
    QVERIFY(Tap(kTile22));
    QTRY_COMPARE(Screen(), QStringLiteral("PARKINGSETTING"));
    QVERIFY(Tap(kTile22));
    QTRY_COMPARE(OwnBox(), QStringLiteral("MOTION_SETTING_ENTRY"));
    QVERIFY(Tap(answer));
    QTRY_COMPARE(Screen(), QStringLiteral("MOTIONSETTING"));
    QCOMPARE(mBench->State("video/view").toString(), view);
    const QImage whole = Drawn();
    QVERIFY(Tap({210, 132}));       // the third row, the fourth column: cell 19
    QTRY_VERIFY(Drawn() != whole);  // the power key comes on a way of its own and could overtake the touch
    QVERIFY(Do("powerKey"));
    QTRY_COMPARE(OwnBox(), QStringLiteral("MOTION_SETTING_APPLY"));
    QVERIFY(Tap(kYes));
    QTRY_COMPARE(Screen(), QStringLiteral("PREVIEW"));
    QTRY_COMPARE(Map(qPrintable(camera)), QStringLiteral("ffff0fffefffffff"));
    QCOMPARE(Map(qPrintable(other)), before);
  }
};

QTEST_GUILESS_MAIN(LedMotionTest)
#include "ledmotion_test.moc"
