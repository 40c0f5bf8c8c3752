#include "gui/screen/diagnostics.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTest>

#include "gui/screen/areareport.h"
#include "gui/settings/config.h"
#include "gui/setup/mainmenu.h"
#include "gui/setup/mainmenu2.h"
#include "tests/fake/hostfake.h"
#include "tests/fake/testroot.h"

static TestRoot root;

namespace {
QStringList gSaid;

void Note(QtMsgType, const QMessageLogContext&, const QString& line) {
  if (line.startsWith("screen ") || line.startsWith("box ") || line.startsWith("areas ")) gSaid << line;
}
}  // namespace

class DiagnosticsTest : public QObject {
  Q_OBJECT

private:
  std::unique_ptr<HostFake> mHost;
  QtMessageHandler mBefore = nullptr;

  static QStringList Said() { return std::exchange(gSaid, {}); }
  static QList<QJsonObject> Areas() {
    QList<QJsonObject> areas;
    for (const QString& line : Said())
      if (line.startsWith("areas ")) areas << QJsonDocument::fromJson(line.mid(6).toUtf8()).object();
    return areas;
  }

private slots:
  void initTestCase() { GetConfig(); }
  void init() {
    mHost = std::make_unique<HostFake>();
    ReportTop();
    mBefore = qInstallMessageHandler(Note);
    gSaid.clear();
  }
  void cleanup() {
    qInstallMessageHandler(mBefore);
    mHost.reset();
  }

  void theScreenOnTopIsNamedWhenItChanges() {
    mHost->Show(PREVIEW, new BaseWidget(mHost.get()));
    ReportTop();
    ReportTop();
    QCOMPARE(Said(), QStringList{"screen PREVIEW"});
    mHost->Show(MAINMENU, new BaseWidget(mHost.get()));
    ReportTop();
    QCOMPARE(Said(), QStringList{"screen MAINMENU"});
    gWidgetManager.ResetStackedWidgetList();
    ReportTop();
    QCOMPARE(Said(), QStringList{"screen UNKNOWN"});
  }
  void boxesAreNamedWhenTheyComeAndGo() {
    BaseWidget* screen = mHost->Show(PREVIEW, new BaseWidget(mHost.get()));
    ReportTop();
    Said();
    screen->PaintMessageBox(SELECT_NDF_FILE, false, 0, 0);
    QCOMPARE(Said(), QStringList{"box own 77 SELECT_NDF_FILE"});
    screen->PaintMessageBox(SELECT_NDF_FILE, false, 0, 2000);
    QCOMPARE(Said(), QStringList());
    screen->PaintMessageBox(R_NO_SD, true, 0, 2000);
    QCOMPARE(Said(), QStringList{"box event 90 R_NO_SD"});
    screen->PaintMessageBox(ENTRY_MENU, false, 0, 2000);
    QCOMPARE(Said(), QStringList{"box own 20 ENTRY_MENU"});
    screen->DelMessageBox();
    QCOMPARE(Said(), QStringList{"box own none"});
    screen->TimeoutRecvMessageBoxTimer();
    QCOMPARE(Said(), QStringList{"box event none"});
  }
  void boxesOfACoveredScreenAreNotUp() {
    BaseWidget* screen = mHost->Show(PREVIEW, new BaseWidget(mHost.get()));
    screen->PaintMessageBox(R_NO_SD, true, 0, 0);
    Said();
    mHost->Show(MAINMENU, new BaseWidget(mHost.get()));
    ReportTop();
    QCOMPARE(Said(), (QStringList{"screen MAINMENU", "box event none"}));
    mHost->BackPressed();
    ReportTop();
    QCOMPARE(Said(), (QStringList{"screen PREVIEW", "box event 90 R_NO_SD"}));
  }
  void aMessageWithoutANameIsNumbered() {
    BaseWidget* screen = mHost->Show(PREVIEW, new BaseWidget(mHost.get()));
    ReportTop();
    Said();
    screen->PaintMessageBox(500, true, 0, 0);
    QCOMPARE(Said(), QStringList{"box event 500 ?"});
  }

  void areasAreToldOnDemandWhenTheyHaveChanged() {
    mHost->show();
    AreaReport::Begin(mHost.get());
    mHost->Show(MAINMENU, new MainMenu(mHost.get()));
    QTest::qWait(50);
    QCOMPARE(Areas(), QList<QJsonObject>());

    qputenv("DASHCAM_AREAS", "1");
    AreaReport::Begin(mHost.get());
    qunsetenv("DASHCAM_AREAS");
    mHost->Show(MAINMENU2, new MainMenu2(mHost.get()));
    QTRY_VERIFY(!gSaid.filter(QStringLiteral("areas ")).isEmpty());
    const QList<QJsonObject> told = Areas();
    QCOMPARE(told.size(), 1);
    QCOMPARE(told[0]["screen"].toString(), QStringLiteral("MAINMENU2"));
    const QJsonObject tile{
        {"x", 1}, {"y", 61}, {"width", 159}, {"height", 129}, {"name", "mainmenu2/audio_setting_normal.bmp"}};
    QVERIFY2(told[0]["areas"].toArray().contains(tile), QJsonDocument(told[0]).toJson());

    gWidgetManager.GetCurrentWidget()->repaint();
    QTest::qWait(50);
    QCOMPARE(Areas(), QList<QJsonObject>());  // nothing has changed

    gWidgetManager.GetCurrentWidget()->PaintMessageBox(MOTION_SETTING_ENTRY, false, 0, 0);
    QTRY_VERIFY(gSaid.contains(QStringLiteral(
        "areas {\"areas\":[{\"height\":46,\"name\":\"front\",\"width\":174,\"x\":56,\"y\":214},"
        "{\"height\":46,\"name\":\"rear\",\"width\":174,\"x\":251,\"y\":214}],\"screen\":\"MAINMENU2\"}")));
    Said();
    gWidgetManager.GetCurrentWidget()->DelMessageBox();
    QTRY_VERIFY(!gSaid.filter(QStringLiteral("areas ")).isEmpty());
    QCOMPARE(Areas().last(), told[0]);
    mHost->BackPressed();
    QTRY_VERIFY(!gSaid.filter(QStringLiteral("areas ")).isEmpty());
    QCOMPARE(Areas().last()["screen"].toString(), QStringLiteral("MAINMENU"));
  }
};

QTEST_MAIN(DiagnosticsTest)
#include "diagnostics_test.moc"
