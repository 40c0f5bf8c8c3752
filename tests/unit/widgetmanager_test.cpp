#include "gui/screen/widgetmanager.h"

#include <QPointer>
#include <QTest>
#include <atomic>
#include <thread>

#include "gui/screen/basewidget.h"
#include "tests/fake/hostfake.h"
#include "tests/fake/testroot.h"

static TestRoot root;

namespace {
// A screen that says who was on top when it was deleted.
class Screen : public BaseWidget {
public:
  Screen(const WidgetManager* stack, QList<WidgetId>* log) : BaseWidget(nullptr), mStack(stack), mLog(log) {}
  ~Screen() override {
    *mLog << mStack->GetCurWidgetId();
    if (mStack->GetCurrentWidget() == this) *mLog << WidgetId(-1);
  }

private:
  const WidgetManager* mStack;
  QList<WidgetId>* mLog;
};
}  // namespace

class WidgetManagerTest : public QObject {
  Q_OBJECT

private:
  HostFake mHost;
  std::unique_ptr<WidgetManager> mStack;
  QList<WidgetId> mTopAtDeletion;

  QPointer<BaseWidget> Push(WidgetId id) {
    auto* screen = new Screen(mStack.get(), &mTopAtDeletion);
    mStack->NextWidget({id, screen, 77});
    return screen;
  }
  void IsTop(WidgetId id, const BaseWidget* screen, int depth) {
    QCOMPARE(mStack->GetCurWidgetId(), id);
    QCOMPARE(mStack->GetCurrentWidget(), screen);
    QCOMPARE(mStack->GetCurWidgetInfo().id, id);
    QCOMPARE(mStack->GetCurWidgetInfo().widget, screen);
    QCOMPARE(mStack->GetCurWidgetInfo().depth, depth);
    QCOMPARE(mStack->GetStackDepth(), depth);
  }
  void IsEmpty() { IsTop(UNKNOWN, nullptr, -1); }
  void Jump(WidgetId id) {
    QFETCH(bool, pop);
    if (pop)
      mStack->PopStackedWidget(id);
    else
      mStack->JumpWidget(id);
  }

private slots:
  void init() {
    mStack = std::make_unique<WidgetManager>();
    mTopAtDeletion.clear();
  }
  void cleanup() { mStack->ResetStackedWidgetList(); }

  void startsEmpty() { IsEmpty(); }

  void aPushedScreenIsOnTopAndItsDepthIsTheStacks() {
    const auto preview = Push(PREVIEW);
    IsTop(PREVIEW, preview, 0);
    const auto menu = Push(MAINMENU);
    IsTop(MAINMENU, menu, 1);
    QVERIFY(preview);
  }
  void pushStackedWidgetIsTheSamePush() {
    auto* screen = new Screen(mStack.get(), &mTopAtDeletion);
    mStack->PushStackedWidget({PLAYER, screen, 5});
    IsTop(PLAYER, screen, 0);
  }

  void backDeletesTheTopAndShowsTheOneBelow() {
    const auto preview = Push(PREVIEW);
    const auto menu = Push(MAINMENU);
    mStack->PopStackedWidget();
    QVERIFY(!menu);
    IsTop(PREVIEW, preview, 0);
    const auto list = Push(RECORDINGLIST);
    mStack->PrevWidget();
    QVERIFY(!list);
    IsTop(PREVIEW, preview, 0);
  }
  void backOnTheLastScreenLeavesNoScreen() {
    const auto preview = Push(PREVIEW);
    mStack->PrevWidget();
    QVERIFY(!preview);
    IsEmpty();
  }
  void backOnAnEmptyStackDoesNothing() {
    mStack->PrevWidget();
    mStack->PopStackedWidget();
    IsEmpty();
  }
  void aScreenIsNotCurrentAnyMoreWhenItIsDeleted() {
    Push(PREVIEW);
    Push(MAINMENU);
    mStack->PopStackedWidget();
    mStack->PopStackedWidget();
    QCOMPARE(mTopAtDeletion, (QList<WidgetId>{PREVIEW, UNKNOWN}));
  }

  void jump_data() {
    QTest::addColumn<bool>("pop");
    QTest::newRow("JumpWidget") << false;
    QTest::newRow("PopStackedWidget") << true;
  }
  void jump() {
    const auto preview = Push(PREVIEW);
    const auto menu = Push(MAINMENU);
    const auto list = Push(RECORDINGLIST);
    const auto player = Push(PLAYER);
    Jump(MAINMENU);
    IsTop(MAINMENU, menu, 1);
    QVERIFY(preview && menu && !list && !player);
    Jump(PREVIEW);
    IsTop(PREVIEW, preview, 0);
    QVERIFY(!menu);
  }
  void jumpToTheCurrentScreenDoesNothing_data() { jump_data(); }
  void jumpToTheCurrentScreenDoesNothing() {
    const auto below = Push(PREVIEW);
    const auto menu = Push(MAINMENU);
    const auto preview = Push(PREVIEW);
    Jump(PREVIEW);
    IsTop(PREVIEW, preview, 2);
    QVERIFY(below && menu);
  }
  void jumpStopsAtTheLowestOfAnId_data() { jump_data(); }
  void jumpStopsAtTheLowestOfAnId() {
    const auto preview = Push(PREVIEW);
    const auto low = Push(MAINMENU);
    const auto high = Push(MAINMENU);
    const auto list = Push(RECORDINGLIST);
    QVERIFY(low != high);
    Jump(MAINMENU);
    IsTop(MAINMENU, low, 1);
    QVERIFY(preview && !high && !list);
  }
  void jumpToAnAbsentScreenDeletesAll_data() { jump_data(); }
  void jumpToAnAbsentScreenDeletesAll() {
    const auto preview = Push(PREVIEW);
    const auto menu = Push(MAINMENU);
    Jump(PLAYER);
    QVERIFY(!preview && !menu);
    IsEmpty();
  }
  void jumpOnAnEmptyStackDoesNothing_data() { jump_data(); }
  void jumpOnAnEmptyStackDoesNothing() {
    Jump(PREVIEW);
    Jump(UNKNOWN);
    IsEmpty();
  }
  void jumpPopsNothingWhenTheDepthSaysSo_data() { jump_data(); }
  void jumpPopsNothingWhenTheDepthSaysSo() {
    const auto preview = Push(PREVIEW);
    const auto menu = Push(MAINMENU);
    mStack->SetStackDepth(-3);
    Jump(PREVIEW);
    Jump(PLAYER);
    QVERIFY(preview && menu);
  }
  void jumpDeletesFromTheTopDown() {
    Push(PREVIEW);
    Push(MAINMENU);
    Push(RECORDINGLIST);
    Push(PLAYER);
    mStack->JumpWidget(PREVIEW);
    QCOMPARE(mTopAtDeletion, (QList<WidgetId>{RECORDINGLIST, MAINMENU, PREVIEW}));
  }

  void allDeleteLeavesTheCurrentScreenToItsCaller() {
    const auto preview = Push(PREVIEW);
    const auto menu = Push(MAINMENU);
    mTopAtDeletion.clear();
    BaseWidget* const gone = menu;
    mStack->AllDeleteStackedWidget();
    QVERIFY(!preview && !menu);
    IsTop(MAINMENU, gone, 1);
    mStack->InitData();
    IsEmpty();
    const auto fresh = Push(PREVIEW);
    IsTop(PREVIEW, fresh, 0);
    mStack->PrevWidget();
    IsEmpty();
  }
  void resetDeletesAllAndStartsAnew() {
    const auto preview = Push(PREVIEW);
    const auto menu = Push(MAINMENU);
    mStack->ResetStackedWidgetList();
    QVERIFY(!preview && !menu);
    QCOMPARE(mTopAtDeletion, (QList<WidgetId>{UNKNOWN, UNKNOWN}));
    IsEmpty();
    const auto fresh = Push(PREVIEW);
    IsTop(PREVIEW, fresh, 0);
  }

  void currentEntryAndDepthCanBeSet() {
    const auto preview = Push(PREVIEW);
    mStack->SetCurWidgetInfo({PLAYER, preview, 9});
    QCOMPARE(mStack->GetCurWidgetId(), PLAYER);
    QCOMPARE(mStack->GetCurWidgetInfo().depth, 9);
    QCOMPARE(mStack->GetStackDepth(), 0);
    mStack->InitializeCurWidgetInfo();
    QCOMPARE(mStack->GetCurWidgetId(), UNKNOWN);
    QVERIFY(!mStack->GetCurrentWidget());
    QCOMPARE(mStack->GetCurWidgetInfo().depth, -1);
    QCOMPARE(mStack->GetStackDepth(), 0);
    mStack->SetStackDepth(4);
    QCOMPARE(mStack->GetStackDepth(), 4);
    mStack->AddStackDepth();
    QCOMPARE(mStack->GetStackDepth(), 5);
    mStack->SubtractStackDepth();
    QCOMPARE(mStack->GetStackDepth(), 4);
    mStack->InitData();
    IsEmpty();
  }

  // The touch reader asks which screen is shown while the stack moves; under the thread sanitizer this is the proof.
  void theTouchReaderMayAskForTheCurrentScreen() {
    std::atomic<bool> ends = false;
    std::atomic<bool> others = false;
    std::thread reader([&] {
      do {
        const WidgetId id = mStack->GetCurWidgetId();
        if (id != UNKNOWN && id != PREVIEW && id != MAINMENU) others = true;
      } while (!ends);
    });
    for (int i = 0; i < 200; ++i) {
      Push(PREVIEW);
      Push(MAINMENU);
      mStack->JumpWidget(PREVIEW);
      mStack->PrevWidget();
    }
    ends = true;
    reader.join();
    QVERIFY(!others);
  }
};

QTEST_MAIN(WidgetManagerTest)
#include "widgetmanager_test.moc"
