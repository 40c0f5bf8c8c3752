// Scenarios that a page plays, and the guided tour: each tap does what its sentence says. With the real bench and
// interface.
#include <QJsonDocument>
#include <QRegularExpression>

#include "tests/system/camerarun.h"

class ScenarioTest : public CameraRun {
  Q_OBJECT

  BenchAnswer Play(const QByteArray& body) const { return mBench->Post("/api/scenario", body); }
  static QByteArray TextBody(const QByteArray& lines, int speed = 1) {
    return QJsonDocument(
               QJsonObject{{QStringLiteral("text"), QString::fromUtf8(lines)}, {QStringLiteral("speed"), speed}})
        .toJson();
  }
  BenchAnswer PlayText(const QByteArray& lines, int speed = 1) const { return Play(TextBody(lines, speed)); }
  QJsonObject State() const { return mBench->State("scenario").toObject(); }
  QJsonArray List() const { return QJsonDocument::fromJson(mBench->Get("/api/scenarios").body).array(); }

private slots:
  void initTestCase() { QVERIFY(StartCamera()); }
  void cleanupTestCase() { mBench.reset(); }
  void cleanup() { Play("{\"stop\": true}"); }

  void theyAreListedWithTheirTitles() {
    const QDir folder(QStringLiteral(SOURCE_DIR "/recorder/scenarios"));
    QStringList names;
    for (const QJsonValue& each : List()) {
      names << each[QStringLiteral("name")].toString();
      const QString title = each[QStringLiteral("title")].toString();
      QVERIFY2(title.size() > 20 && title.endsWith(u'.'), qPrintable(title));
      QVERIFY(each[QStringLiteral("seconds")].toInt() >= 30 && each[QStringLiteral("lines")].toInt() >= 15);
      QCOMPARE(each.toObject().keys().join(u' '), QStringLiteral("lines name seconds title"));
    }
    QCOMPARE(names, folder.entryList(QDir::Files, QDir::Name).replaceInStrings(QStringLiteral(".jsonl"), QString()));
    QVERIFY(names.contains(QStringLiteral("welcome")));
  }

  void itIsPlayedPausedAndEnded() {
    QVERIFY(mBench->State("scenario").isNull());
    const qint64 since = mBench->LastEntry();
    QCOMPARE(
        PlayText("# A short one.\n{\"ms\": 0, \"say\": \"It begins.\"}\n{\"ms\": 100, \"action\": \"speed\", \"kmh\": "
                 "61}\n{\"ms\": 3600000, \"event\": 24, \"value\": 5}\n")
            .status,
        200);
    QTRY_COMPARE(mBench->State("recorder/speed").toInt(), 61);
    QVERIFY(!mBench->Find("note", QStringLiteral("It begins."), since).isEmpty());
    QJsonObject state = State();
    QCOMPARE(state.keys().join(u' '), QStringLiteral("at line lines name of paused say speed title"));
    QCOMPARE(state[QStringLiteral("title")].toString(), QStringLiteral("A short one."));
    QCOMPARE(state[QStringLiteral("name")].toString(), QStringLiteral("text"));
    QCOMPARE(state[QStringLiteral("line")].toInt(), 2);
    QCOMPARE(state[QStringLiteral("lines")].toInt(), 3);
    QCOMPARE(state[QStringLiteral("of")].toInt(), 3600000);
    QCOMPARE(state[QStringLiteral("say")].toString(), QStringLiteral("It begins."));
    QCOMPARE(Play("{\"pause\": true}").status, 200);
    state = State();
    QVERIFY(state[QStringLiteral("paused")].toBool() && state[QStringLiteral("at")].toInt() > 0);
    QTest::qWait(50);
    QCOMPARE(State(), state);
    // Somebody who touches does not end it: it does not say so.
    QVERIFY(mBench->Action(R"({"name":"speed","kmh":60})"));
    QCOMPARE(Play("{\"pause\": false}").status, 200);
    QTRY_VERIFY(State()[QStringLiteral("at")].toInt() > state[QStringLiteral("at")].toInt());
    QCOMPARE(Play("{\"stop\": true}").status, 200);
    QVERIFY(mBench->State("scenario").isNull());
    QVERIFY(!mBench->Find("note", QStringLiteral("The scenario was ended."), since).isEmpty());
    for (const char* body : {"{\"stop\": true}", "{\"pause\": true}"}) QCOMPARE(Play(body).status, 409);
  }

  void itIsPlayedFaster() {
    QElapsedTimer clock;
    clock.start();
    QCOMPARE(PlayText("{\"ms\": 20000, \"action\": \"speed\", \"kmh\": 99}\n", 10).status, 200);
    QCOMPARE(State()[QStringLiteral("speed")].toInt(), 10);
    QTRY_COMPARE(mBench->State("recorder/speed").toInt(), 99);
    QVERIFY(clock.elapsed() >= 1900 && clock.elapsed() < 10000);
    QTRY_VERIFY(mBench->State("scenario").isNull());
  }

  void itEndsAtATouchWhenItSaysSo_data() {
    QTest::addColumn<QByteArray>("path");
    QTest::addColumn<QByteArray>("body");
    QTest::newRow("touch") << QByteArray("/api/touch") << QByteArray(R"({"action":"tap","x":300,"y":200})");
    QTest::newRow("event") << QByteArray("/api/event") << QByteArray(R"({"event":24,"value":3})");
    QTest::newRow("action") << QByteArray("/api/action") << QByteArray(R"({"name":"speed","kmh":3})");
  }
  void itEndsAtATouchWhenItSaysSo() {
    QFETCH(QByteArray, path);
    QFETCH(QByteArray, body);
    // What it does itself does not.
    QCOMPARE(PlayText("# A tour.\n# ends at a touch\n{\"ms\": 0, \"touch\": {\"x\": 300, \"y\": 200}}\n{\"ms\": 50, "
                      "\"action\": \"speed\", \"kmh\": 70}\n{\"ms\": 3600000, \"event\": 24, \"value\": 5}\n")
                 .status,
             200);
    QTRY_COMPARE(State()[QStringLiteral("line")].toInt(), 2);
    QCOMPARE(mBench->Post(path, "{\"x\": 1}").status, 400);
    QCOMPARE(State()[QStringLiteral("line")].toInt(), 2);
    QCOMPARE(mBench->Post(path, body).status, 200);
    QVERIFY(mBench->State("scenario").isNull());
  }

  void whatCannotBeIsOneSentence_data() {
    QTest::addColumn<QByteArray>("body");
    for (const char* body :
         {"{}", R"({"play": "../drive"})", R"({"play": "nobody"})", R"({"play": 5})", R"({"play": ""})",
          R"({"play": "drive", "speed": 3})", R"({"play": "drive", "speed": 0})", R"({"play": "drive", "text": ""})",
          R"({"stop": false})", R"({"stop": true, "pause": true})", R"({"pause": 1})", R"({"speed": 2})"})
      QTest::newRow(body) << QByteArray(body);
    for (const char* line : {"hello", "{'ms': 0, 'action': 'fly'}", "{'ms': -1}", "{'ms': 0, 'picture': 'vmlinuz'}",
                             "{'ms': 0, 'say': 5}", "{'ms': 0, 'say': 'a', 'event': 5}"})
      QTest::newRow(line) << TextBody(QByteArray(line).replace('\'', '"'));
    QTest::newRow("long words") << TextBody("{\"ms\": 0, \"say\": \"" + QByteArray(201, 'a') + "\"}");
  }
  void whatCannotBeIsOneSentence() {
    QFETCH(QByteArray, body);
    const BenchAnswer answer = Play(body);
    QCOMPARE(answer.status, 400);
    QVERIFY2(answer.Error().size() > 10 && answer.Error().endsWith(u'.') && !answer.Error().contains(u'\n'),
             answer.body.constData());
    QVERIFY(mBench->State("scenario").isNull());
  }

  void itEndsWithItsRecorder() {
    QCOMPARE(Play(R"({"play": "drive"})").status, 200);
    QVERIFY(Do("recorderStop"));
    QVERIFY(mBench->State("scenario").isNull());
    QCOMPARE(Play(R"({"play": "drive"})").status, 409);
    QVERIFY(Do("recorderStart"));
    QTRY_COMPARE(mBench->State("recorder/connections").toInt(), 1);
  }

  // From anywhere.
  void theTourShowsWhatItSays() {
    OpenMenu();
    const qint64 since = mBench->LastEntry();
    QCOMPARE(Play(R"({"play": "welcome"})").status, 200);
    const auto says = [this] { return State()[QStringLiteral("say")].toString(); };
    const auto isSaid = [&](const char* words) {
      return QTest::qWaitFor([&] { return says().contains(QLatin1String(words)); }, 30000);
    };
    QVERIFY(isSaid("live picture"));
    QTRY_COMPARE_WITH_TIMEOUT(Screen(), QStringLiteral("PREVIEW"), 10000);
    QVERIFY(isSaid("front camera"));
    QTRY_COMPARE(mBench->State("video/view").toString(), QStringLiteral("front"));
    QVERIFY(isSaid("rear camera"));
    QTRY_COMPARE(mBench->State("video/view").toString(), QStringLiteral("rear"));
    QVERIFY(isSaid("both"));
    QTRY_COMPARE(mBench->State("video/view").toString(), QStringLiteral("pip"));
    QVERIFY(isSaid("impact"));
    QTRY_VERIFY(!mBench->Find("voice", QStringLiteral("Impact detected."), since).isEmpty());
    QVERIFY(isSaid("menu"));
    QTRY_COMPARE(Screen(), QStringLiteral("MAINMENU"));
    QVERIFY(isSaid("recordings"));
    QTRY_COMPARE_WITH_TIMEOUT(Screen(), QStringLiteral("RECORDINGLIST"), 10000);
    QVERIFY(isSaid("plays"));
    QTRY_VERIFY_WITH_TIMEOUT(mBench->State("video/playing").toBool(), 10000);
    QVERIFY(isSaid("back"));
    QTRY_COMPARE_WITH_TIMEOUT(Screen(), QStringLiteral("PREVIEW"), 10000);
    QVERIFY(isSaid("parked"));
    QTRY_VERIFY(mBench->State("recorder/parking/parked").toBool());
    QVERIFY(isSaid("report"));
    QTRY_VERIFY_WITH_TIMEOUT(!mBench->State("recorder/parking/parked").toBool() && Screen() != QLatin1String("PREVIEW"),
                             10000);
    QTRY_VERIFY_WITH_TIMEOUT(mBench->State("scenario").isNull(), 20000);
    QTRY_COMPARE(Screen(), QStringLiteral("PREVIEW"));
    QVERIFY(!mBench->Find("note", QStringLiteral("The scenario has ended."), since).isEmpty());
  }
};

QTEST_GUILESS_MAIN(ScenarioTest)
#include "scenario_test.moc"
