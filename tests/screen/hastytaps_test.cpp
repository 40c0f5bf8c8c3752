// A driver who taps twice while the recorder takes its time: the second tap was meant for the screen that he saw.
#include "gui/app/commandline.h"
#include "gui/live/previewlayout.h"
#include "gui/recordings/player.h"
#include "gui/recordings/recordingfilelist.h"
#include "tests/fake/cardfake.h"
#include "tests/fake/windowtest.h"

#include <utility>

static TestRoot root;

class HastyTapsTest : public WindowTest {
  Q_OBJECT

private:
  static constexpr QPoint kMenu{265, 33}, kList{80, 125}, kYes{142, 236}, kHome{40, 33}, kRow4{200, 242},
      kPlayerBack{360, 291};

  void Tap(QPoint at) {
    PostTouch(at.x(), at.y());
    Settle();
  }
  void Settle() {
    for (int i = 0; i < 6; ++i) QCoreApplication::processEvents();
  }
  // The command waits for its answer, and the driver taps there once more.
  void TapAgainDuring(const QString& command, QPoint at) {
    Fake().meanwhile = [this, command, at](const QString& line) {
      if (!line.startsWith(command)) return;
      const auto once = std::exchange(Fake().meanwhile, nullptr);  // this closure lives on until it returns
      PostTouch(at.x(), at.y());
    };
  }
  void OpenList() {
    Tap(kMenu);
    Tap(kList);
    Tap(kYes);
    QCOMPARE(TopId(), RECORDINGLIST);
    Fake().asked.clear();
  }

private slots:
  void init() {
    ResetCamera(root);
    ApplyFont();
    card::Clear(root);
    card::PutMany(root, 20);
    mWindow = std::make_unique<MainWindow>(nullptr);
    mWindow->show();
    Settle();
  }
  void cleanup() { Stop(); }

  void backOfThePlayerTwicePlaysNoRow() {
    OpenList();
    Tap(kRow4);
    QCOMPARE(TopId(), PLAYER);
    Fake().asked.clear();
    TapAgainDuring("8587 0", kRow4);
    Tap(kPlayerBack);
    QCOMPARE(TopId(), RECORDINGLIST);
    QCOMPARE(Fake().Commands(), QStringList{"8587 0"});
  }
  void homeOfTheListTwiceLeavesTheView() {
    const int display = Setting().display;
    OpenList();
    TapAgainDuring("8619", kHome);
    Tap(kHome);
    QCOMPARE(TopId(), PREVIEW);
    QCOMPARE(Setting().display, display);
    QCOMPARE(Fake().Commands().filter("858"), QStringList());
  }
  void aRowTwiceIsPlayedOnce() {
    OpenList();
    TapAgainDuring("8586", kRow4);  // there the player has its key for the next file
    Tap(kRow4);
    QCOMPARE(TopId(), PLAYER);
    QCOMPARE(Fake().Commands().size(), 1);
    QVERIFY(Fake().Commands().constFirst().startsWith("8586 "));
    Tap(kPlayerBack);
    QCOMPARE(TopId(), RECORDINGLIST);
  }
  void whatIsTappedInTheSecondBeforeTheListIsNotForTheList() {
    Tap(kMenu);
    Tap(kList);
    TapAgainDuring("sleep 1000000", kRow4);
    Tap(kYes);
    QCOMPARE(TopId(), RECORDINGLIST);
  }
  // The recorder says it again at the moment of the touch: the same trouble closes, another one has not been read.
  void aBoxThatComesAgainTakesTheTouchOfTheOneBefore() {
    mWindow->recvEvent(RECV_ZEL_STATUS_HW_ERROR, 3);
    PostTouch(300, 200);
    mWindow->recvEvent(RECV_ZEL_STATUS_HW_ERROR, 3);
    Settle();
    QCOMPARE(EventBox(), -1);
    mWindow->recvEvent(RECV_ZEL_STATUS_HW_ERROR, 3);
    PostTouch(300, 200);
    mWindow->recvEvent(RECV_ZEL_STATUS_HW_ERROR, 4);
    Settle();
    QCOMPARE(EventBox(), int{R_HW_ERROR});
  }
  void theThirdTapCounts() {
    OpenList();
    TapAgainDuring("8586", kRow4);
    Tap(kRow4);
    Tap(kPlayerBack);
    QCOMPARE(TopId(), RECORDINGLIST);
    Tap(kRow4);
    QCOMPARE(TopId(), PLAYER);
  }
};

QTEST_MAIN(HastyTapsTest)
#include "hastytaps_test.moc"
