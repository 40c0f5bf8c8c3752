// Where a touch does something, as the interface says it and the bench hands it on.
#include "bench/supervise/screenreport.h"
#include "tests/system/benchrun.h"

class AreasTest : public QObject {
  Q_OBJECT

private:
  static QJsonObject Area(const BenchRun& bench, const char* name) {
    const QJsonArray areas = bench.State("areas").toArray();
    for (const QJsonValue& area : areas)
      if (area[QLatin1String("name")] == QLatin1String(name)) return area.toObject();
    return {};
  }
  static void TapOn(const BenchRun& bench, const char* name) {
    QTRY_VERIFY_WITH_TIMEOUT(!bench.State("touch/down").toBool() && !Area(bench, name).isEmpty(), 10000);
    const QJsonObject area = Area(bench, name);
    const QJsonObject tap{{"action", "tap"},
                          {"x", area["x"].toInt() + area["width"].toInt() / 2},
                          {"y", area["y"].toInt() + area["height"].toInt() / 2}};
    QCOMPARE(bench.Post("/api/touch", QJsonDocument(tap).toJson()).status, 200);
  }

private slots:
  void whatIsToldLeadsThroughTheMenus() {
    BenchRun bench;
    QVERIFY(bench.IsUp());
    TapOn(bench, "menu");
    TapOn(bench, "mainmenu/play_list_normal.bmp");
    TapOn(bench, "no");
    TapOn(bench, "mainmenu/sd_management_normal.bmp");
    QTRY_COMPARE_WITH_TIMEOUT(bench.State("screen").toString(), QStringLiteral("SDMANAGEMENT"), 10000);
    for (const QJsonObject& entry : bench.Log())
      QVERIFY2(!QJsonDocument(entry).toJson().contains("\"areas"), QJsonDocument(entry).toJson());

    QCOMPARE(bench.Post("/api/event", R"({"event": 28})").status, 200);  // the LCD key
    QTRY_VERIFY_WITH_TIMEOUT(!Area(bench, "lcd").isEmpty(), 10000);
  }

  void onlyTheInterfacesOwnFormIsTaken_data() {
    QTest::addColumn<QString>("line");
    QTest::addColumn<bool>("taken");
    const QString area = QStringLiteral(R"({"x":1,"y":2,"width":3,"height":4,"name":"a"})");
    const auto add = [](const char* name, const QString& line, bool taken) { QTest::newRow(name) << line << taken; };
    const auto with = [](const QString& areas) {
      return QStringLiteral(R"(areas {"screen":"PREVIEW","areas":[%1]})").arg(areas);
    };
    const auto other = [&](const char* before, const char* after) {
      return with(QString(area).replace(QLatin1String(before), QLatin1String(after)));
    };
    add("none", with(QString()), true);
    add("one", with(area), true);
    add("two", with(area + u',' + area), true);
    add("another line", QStringLiteral("areas are told"), false);
    add("no json", QStringLiteral("areas {"), false);
    add("no screen", QStringLiteral(R"(areas {"areas":[]})"), false);
    add("no areas", QStringLiteral(R"(areas {"screen":"PREVIEW"})"), false);
    add("areas of another kind", QStringLiteral(R"(areas {"screen":"PREVIEW","areas":{}})"), false);
    add("a number", with(QStringLiteral("1")), false);
    add("one that is good and one that is not", with(area + QStringLiteral(",{}")), false);
    add("left of the LCD", other("\"x\":1", "\"x\":-1"), false);
    add("beyond the LCD", other("\"x\":1", "\"x\":478"), false);
    add("huge", other("\"width\":3", "\"width\":2147483647"), false);
    add("empty", other("\"height\":4", "\"height\":0"), false);
    add("a fraction", other("\"y\":2", "\"y\":2.5"), false);
    add("a name that is a number", other("\"a\"", "1"), false);
    add("one more member", other("\"a\"", "\"a\",\"b\":1"), false);
  }
  void onlyTheInterfacesOwnFormIsTaken() {
    QFETCH(QString, line);
    QFETCH(bool, taken);
    ScreenReport report;
    QVERIFY(report.Take(QStringLiteral("screen PREVIEW")));
    QCOMPARE(report.TakeAreas(line), taken);
    QCOMPARE(report.Areas().isArray(), taken);
    QVERIFY(report.Take(QStringLiteral("screen MAINMENU")));
    QVERIFY(report.Areas().isNull());
    QVERIFY(report.Take(QStringLiteral("screen PREVIEW")));
    QCOMPARE(report.Areas().isArray(), taken);  // the interface does not say it again
    report.Forget();
    QVERIFY(report.Areas().isNull());
  }
};

QTEST_GUILESS_MAIN(AreasTest)
#include "areas_test.moc"
