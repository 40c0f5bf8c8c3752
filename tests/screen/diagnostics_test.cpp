#include "gui/screen/diagnostics.h"

#include <QTest>

#include "gui/settings/config.h"
#include "tests/fake/hostfake.h"
#include "tests/fake/testroot.h"

static TestRoot root;

namespace {
QStringList gSaid;

void Note(QtMsgType, const QMessageLogContext&, const QString& line) {
  if (line.startsWith("screen ") || line.startsWith("box ")) gSaid << line;
}
}  // namespace

class DiagnosticsTest : public QObject {
  Q_OBJECT

private:
  std::unique_ptr<HostFake> mHost;
  QtMessageHandler mBefore = nullptr;

  static QStringList Said() { return std::exchange(gSaid, {}); }

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
};

QTEST_MAIN(DiagnosticsTest)
#include "diagnostics_test.moc"
