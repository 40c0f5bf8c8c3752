// The window and the stack of screens: what is built, shown, covered and deleted.
#include <set>

#include "gui/app/screenfactory.h"
#include "gui/parking/pfileinfo.h"
#include "gui/recordings/playfileinfo.h"
#include "gui/recordings/recordingfilemanager.h"
#include "tests/fake/windowtest.h"

static TestRoot root;

class MainWindowStackTest : public WindowTest {
  Q_OBJECT

private:
  PFileInfo mReport;
  PlayFileInfo mOther{nullptr, ALL_ASCENDING_FRONT, 0};

  static bool IsThere(WidgetId id) {
    for (const ScreenRow& row : Screens())
      if (row.id == id) return true;
    return false;
  }

  QObject* ArgumentOf(WidgetId id) {
    if (id == PLAYER) return new PlayFileInfo(nullptr, ALL_ASCENDING_FRONT, 0);  // the player deletes it
    return id == PFILEGRAPH ? &mReport : nullptr;
  }

private slots:
  void init() { Start(root); }
  void cleanup() { Stop(); }

  // ---- the factory

  void everyScreenIsThereWithAClassOfItsOwn() {
    std::set<QByteArray> seen;
    for (const ScreenRow& row : Screens()) {
      const char* name = NameOf(row.id);
      QVERIFY2(row.id > UNKNOWN && row.id < SCREENS_END && *name != '?', name);
      mWindow->StartWidget(row.id, ArgumentOf(row.id));
      QCOMPARE(TopId(), row.id);
      QVERIFY2(seen.insert(Top()->metaObject()->className()).second, name);
      QVERIFY2(Top()->isVisible(), name);
      QCOMPARE(mWindow->centralWidget(), Top());
    }
    QCOMPARE(seen.size(), size_t{SCREENS_END - PREVIEW});
    QVERIFY(seen.contains("PreviewLayout"));
  }
  void anIdWithoutAScreenBuildsNothing_data() {
    QTest::addColumn<int>("id");
    for (int id = -1; id <= SCREENS_END; ++id)
      if (!IsThere(WidgetId(id))) QTest::addRow("%d %s", id, NameOf(WidgetId(id))) << id;
    QTest::newRow("large") << 100000;
  }
  void anIdWithoutAScreenBuildsNothing() {
    QFETCH(int, id);
    mWindow->StartWidget(WidgetId(id), nullptr);
    QCOMPARE(TopId(), PREVIEW);
    QCOMPARE(gWidgetManager.GetStackDepth(), 0);
    QCOMPARE(mWindow->centralWidget(), mPreview);
    QVERIFY(mPreview->isVisible());
    QCOMPARE(mPreview->paused, 0);
  }
  // The event loop has had no turn in between.
  void aScreenThatIsCoveredAtOnceDoesNotComeUpAsAWindowOfItsOwn() {
    mWindow->StartWidget(SCREENSAVER, nullptr);
    mWindow->BackPressed();
    mWindow->StartWidget(SCREENSAVER, nullptr);
    QCoreApplication::processEvents();
    QVERIFY(!mPreview->isVisible());
    QVERIFY(Top()->isVisible());
  }
  void aScreenIsNotBuiltWithoutWhatItShows_data() {
    QTest::addColumn<int>("id");
    QTest::newRow("PFILEGRAPH") << int{PFILEGRAPH};
    QTest::newRow("PLAYER") << int{PLAYER};
  }
  void aScreenIsNotBuiltWithoutWhatItShows() {
    QFETCH(int, id);
    QObject other;
    mWindow->StartWidget(WidgetId(id), nullptr);
    mWindow->StartWidget(WidgetId(id), &other);
    mWindow->StartWidget(WidgetId(id), id == PLAYER ? &mReport : static_cast<QObject*>(&mOther));
    QCOMPARE(TopId(), PREVIEW);
    QVERIFY(mPreview->isVisible());
    QCOMPARE(mPreview->paused, 0);
  }
  void anIdWithoutAScreenIsSaid() {
    static QStringList said;
    said.clear();
    const QtMessageHandler before =
        qInstallMessageHandler([](QtMsgType, const QMessageLogContext&, const QString& line) { said << line; });
    mWindow->StartWidget(WidgetId(4711), nullptr);
    qInstallMessageHandler(before);
    QCOMPARE(said, QStringList{"screen 4711 ?: not there"});
  }
  void thePreviewHearsOfWakingAndOfTheCountdown() {
    mWindow->StartWidget(PREVIEW, nullptr);
    BaseWidget* preview = Top();
    preview->hide();
    emit mWindow->previewEnable(true);
    QVERIFY(preview->isVisible());
    auto* label = preview->findChild<QWidget*>("mLowVolCountLabel");
    QVERIFY(label);
    emit mWindow->lowvolSignals(1);
    QVERIFY(!label->isHidden());
    emit mWindow->lowvolSignals(0);
    QVERIFY(label->isHidden());
  }

  // ---- next

  void aNewScreenCoversTheOldOne() {
    const QPointer<BaseWidget> below = mPreview;
    mWindow->StartWidget(PREVIEW, nullptr);
    QVERIFY(below);
    QVERIFY(Top() != below);
    QCOMPARE(gWidgetManager.GetStackDepth(), 1);
    QVERIFY(!below->isVisible());
    QCOMPARE(mPreview->paused, 1);
    QVERIFY(!below->parent());
    QVERIFY(Top()->isVisible());
    QCOMPARE(Top()->geometry(), QRect(0, 0, 480, 320));
    QCOMPARE(Top()->window(), mWindow.get());
    QTest::qWait(0);
    QVERIFY2(below, "Qt must not delete the screen that is covered");
    QVERIFY2(!below->isVisible(), "a covered screen would be a window of its own");
  }

  // ---- back and jump

  void backShowsTheScreenBelowAtOnce() {
    const QPointer<BaseWidget> menu = Open(MAINMENU);
    QCOMPARE(mPreview->resumed, 1);
    QCOMPARE(mPreview->paused, 1);
    mPreview->resize(10, 10);
    menu->Back();
    QVERIFY(!menu);
    QCOMPARE(Top(), mPreview);
    QVERIFY(mPreview->isVisible());
    QCOMPARE(mPreview->resumed, 2);
    QCOMPARE(mPreview->sizeAtResume, QSize(480, 320));
    QCOMPARE(mWindow->centralWidget(), mPreview);
    QCOMPARE(mPreview->geometry(), QRect(0, 0, 480, 320));
    QTest::qWait(0);
    QVERIFY2(mPreview->isVisible(), "nothing that is still queued may hide it again");
    QCOMPARE(mPreview->resumed, 2);
  }
  void backShowsAScreenThatHadHiddenItself() {
    mPreview->hide();
    Open(MAINMENU)->Back();
    QVERIFY(mPreview->isVisible());
  }
  void jumpUnwindsToTheScreen() {
    const QPointer<BaseWidget> menu = Open(MAINMENU);
    const QPointer<BaseWidget> list = Open(RECORDINGLIST);
    const QPointer<BaseWidget> player = Open(PLAYER);
    player->Jump(MAINMENU);
    QVERIFY(menu && !list && !player);
    QCOMPARE(Top(), menu.data());
    QVERIFY(menu->isVisible());
    menu->Jump(PREVIEW);
    QVERIFY(!menu);
    QCOMPARE(Top(), mPreview);
    QVERIFY(mPreview->isVisible());
  }
  void jumpToTheCurrentScreenKeepsIt() {
    DummyScreen* menu = Open(MAINMENU);
    menu->Jump(MAINMENU);
    QCOMPARE(Top(), menu);
    QVERIFY(menu->isVisible());
    QCOMPARE(gWidgetManager.GetStackDepth(), 1);
  }
  // Without a screen nothing would take a touch any more.
  void aJumpToAnAbsentScreenEndsOnAFreshPreview() {
    const QPointer<BaseWidget> below = mPreview;
    const QPointer<BaseWidget> menu = Open(MAINMENU);
    menu->Jump(PLAYER);
    QVERIFY(!below && !menu);
    QCOMPARE(TopId(), PREVIEW);
    QCOMPARE(gWidgetManager.GetStackDepth(), 0);
    QVERIFY(Top()->isVisible());
    QCOMPARE(Top()->metaObject()->className(), "PreviewLayout");
  }
  void backOnTheLastScreenEndsOnAFreshPreview() {
    const QPointer<BaseWidget> below = mPreview;
    mPreview->Back();
    QVERIFY(!below);
    QCOMPARE(TopId(), PREVIEW);
    QCOMPARE(gWidgetManager.GetStackDepth(), 0);
    QVERIFY(Top()->isVisible());
  }
  void backWithoutAnyScreenEndsOnAFreshPreview() {
    CloseAll();
    mWindow->BackPressed();
    QCOMPARE(TopId(), PREVIEW);
    CloseAll();
    mWindow->Jumped(MAINMENU);
    QCOMPARE(TopId(), PREVIEW);
    QCOMPARE(gWidgetManager.GetStackDepth(), 0);
  }
  void aScreenMayLeaveInTheMiddleOfItsTouchOrEvent() {
    DummyScreen* menu = Open(MAINMENU);
    QPointer<BaseWidget> gone = menu;
    menu->duringTouch = [menu] { menu->Back(); };
    Tap(1, 2);
    QVERIFY(!gone);
    menu = Open(MAINMENU);
    gone = menu;
    menu->duringEvent = [menu] { menu->Jump(PREVIEW); };
    mWindow->recvEvent(RECV_ZEL_STATUS_SPEED, 1);
    QVERIFY(!gone);
    QCOMPARE(Top(), mPreview);
  }
};

QTEST_MAIN(MainWindowStackTest)
#include "mainwindow_stack_test.moc"
