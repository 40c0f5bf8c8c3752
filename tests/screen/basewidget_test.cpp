#include "gui/screen/basewidget.h"

#include <QLabel>
#include <QPointer>
#include <QSignalSpy>
#include <QTest>
#include <QTimer>

#include "gui/base/eventgate.h"
#include "gui/base/globals.h"
#include "gui/base/touchtime.h"
#include "gui/screen/messagebox.h"
#include "gui/settings/config.h"
#include "gui/settings/settings.h"
#include "tests/fake/hostfake.h"
#include "tests/fake/paintspy.h"
#include "tests/fake/testroot.h"

static TestRoot root;

namespace {
class Screen : public BaseWidget {
public:
  using BaseWidget::BaseWidget;
  using BaseWidget::mEventId;
  using BaseWidget::mMessageBoxType;
  using BaseWidget::TakeEventId;

  void onResume() override { ++resumed; }
  void onPause() override { ++paused; }
  void paintEvent(QPaintEvent*) override { ++painted; }
  void TimeoutEvent() override {
    BaseWidget::TimeoutEvent();
    if (onTimeout) onTimeout();
  }

  int resumed = 0, paused = 0, painted = 0;
  std::function<void()> onTimeout;
};
}  // namespace

class BaseWidgetTest : public QObject {
  Q_OBJECT

private:
  std::unique_ptr<HostFake> mHost;
  QPointer<Screen> mScreen;

  static Setting_Config& Edited() { return gEnvirnmentSettings.mSetting; }
  static Setting_Config& Saved() { return gEnvirnmentSettings.mOldSetting; }
  static QStringList Asked() { return HostFake::Asked(); }
  QTimer* Timer(const char* name) const { return mScreen->findChild<QTimer*>(QLatin1String(name)); }
  QList<MessageBox*> Boxes() const { return mScreen->findChildren<MessageBox*>(); }
  static QString TextOf(const MessageBox* box) {
    QStringList lines;
    for (const QLabel* label : box->findChildren<QLabel*>())
      if (!label->text().isEmpty()) lines << label->text();
    return lines.join(u'|');
  }
  void OwnBoxIs(int id, int ms) {
    QCOMPARE(mScreen->GetShowMessageBoxFlag(), id != -1);
    QCOMPARE(mScreen->GetMessageId(), id);
    QCOMPARE(Timer("mMessageBoxTimer")->isActive(), ms > 0);
    if (ms > 0) QCOMPARE(Timer("mMessageBoxTimer")->interval(), ms);
  }
  void EventBoxIs(int id, int ms) {
    QCOMPARE(mScreen->GetShowRecvMessageBoxFlag(), id != -1);
    QCOMPARE(mScreen->GetRecvMessageId(), id);
    QCOMPARE(Timer("mRecvMessageBoxTimer")->isActive(), ms > 0);
    if (ms > 0) QCOMPARE(Timer("mRecvMessageBoxTimer")->interval(), ms);
  }

private slots:
  void initTestCase() { GetConfig(); }
  void init() {
    root.Remove("/opt/gui/ini/config_firm.ini");
    gEnvirnmentSettings.mSetting = {};
    gEnvirnmentSettings.mOldSetting = {};
    gEnvirnmentSettings.mSetup_value = {};
    gNeedFormatFlag = 0;
    mHost = std::make_unique<HostFake>();
    mHost->Show(PREVIEW, new BaseWidget(mHost.get()));
    mScreen = mHost->Show(MAINMENU, new Screen(mHost.get()));
    mHost->show();
    HostFake::Clear();
  }
  void cleanup() { mHost.reset(); }

  // ---- the plain screen

  void aNewScreenHasNoBoxAndNothingPending() {
    OwnBoxIs(-1, 0);
    EventBoxIs(-1, 0);
    QCOMPARE(mScreen->mMessageBoxType, -1);
    QCOMPARE(mScreen->mEventId, -1);
    QVERIFY(!mScreen->GetRestartRecStartFlag());
    QCOMPARE(Boxes().size(), 0);
    const QStringList names = {"mMessageBoxTimer", "mRecvMessageBoxTimer", "mEventTimer", "mTimRestartRecStart"};
    for (const QString& name : names) {
      const auto* timer = mScreen->findChild<QTimer*>(name);
      QVERIFY2(timer, qPrintable(name));
      QVERIFY2(!timer->isActive(), qPrintable(name));
    }
  }
  void aPlainScreenTakesEverythingAndDoesNothing() {
    BaseWidget plain(nullptr);
    plain.touchEvent(TOUCH_PRESS, 1, 2);
    plain.recvEvent(RECV_ZEL_STATUS_NO_SD, 1);
    plain.MessageBoxHandler(TOUCH_PRESS, 1, 2, SETUP_SAVING);
    plain.RecvMessageBoxHandler(TOUCH_PRESS, 1, 2, R_NO_SD);
    plain.onResume();
    plain.onPause();
    QCOMPARE(Asked(), QStringList());
  }
  void aScreenSaysThatItIsDestroyed() {
    QTest::ignoreMessage(QtDebugMsg, "BaseWidget Destroy");
    delete new BaseWidget(nullptr);
  }
  void shownAndHiddenIsResumedAndPaused() {
    QCOMPARE(mScreen->resumed, 1);
    QCOMPARE(mScreen->paused, 0);
    mScreen->hide();
    QCOMPARE(mScreen->paused, 1);
    mScreen->show();
    QCOMPARE(mScreen->resumed, 2);
  }

  // ---- the way to other screens

  void theWayToOtherScreensIsDirect() {
    QObject arg;
    mScreen->Next(PLAYER, &arg);
    QCOMPARE(mHost->nextArg, &arg);
    mScreen->Next(PLAYER);
    QCOMPARE(mHost->nextArg, nullptr);
    mScreen->Jump(MAINMENU);
    QVERIFY(mScreen);
    mScreen->Back();
    QVERIFY2(!mScreen, "gone by the time Back returns");
    QCOMPARE(Asked(), (QStringList{"next PLAYER", "next PLAYER", "jump MAINMENU", "back"}));
  }
  void jumpMayDeleteTheScreen() {
    mHost->Show(PLAYER, new Screen(mHost.get()));
    QPointer<BaseWidget> top = gWidgetManager.GetCurrentWidget();
    top->Jump(MAINMENU);
    QVERIFY(!top);
    QCOMPARE(gWidgetManager.GetCurrentWidget(), mScreen.get());
  }
  void commandsGoToTheWindow() {
    mHost->intAnswer = 7;
    mHost->floatAnswer = 24.5F;
    int whole = 0;
    float broken = 0;
    mScreen->SendEvent(SEND_SET_VOLUME, 3, QString());
    mScreen->SendEvent(SEND_PLAY_VIDEO, 0, "/mnt/mmc/a.avi");
    mScreen->SendEvent(SEND_GET_LCD_AUTO_VALUE, 0, QString(), &whole);
    mScreen->SendEvent(SEND_GET_VOLTAGE, 0, QString(), &broken);
    QCOMPARE(Asked(), (QStringList{"SEND_SET_VOLUME 3", "SEND_PLAY_VIDEO 0 /mnt/mmc/a.avi", "SEND_GET_LCD_AUTO_VALUE 0",
                                   "SEND_GET_VOLTAGE 0"}));
    QCOMPARE(whole, 7);
    QCOMPARE(broken, 24.5F);
  }

  // ---- timers

  void settingATimerStartsItAnew() {
    QTimer timer;
    BaseWidget::SetTimer(&timer, 5000);
    QVERIFY(timer.isActive());
    QCOMPARE(timer.interval(), 5000);
    BaseWidget::SetTimer(&timer, 300);
    QCOMPARE(timer.interval(), 300);
    QVERIFY(timer.isActive());
    BaseWidget::StopTimer(&timer);
    QVERIFY(!timer.isActive());
  }
  void aNewPendingEventReplacesTheOld() {
    mScreen->SetEvent(HIDDEN_TOUCH_COM_ENTRY, 2000);
    QCOMPARE(mScreen->mEventId, int{HIDDEN_TOUCH_COM_ENTRY});
    QCOMPARE(Timer("mEventTimer")->interval(), 2000);
    mScreen->SetEvent(ENTRY_MENU, 500);
    QCOMPARE(mScreen->mEventId, int{ENTRY_MENU});
    QCOMPARE(Timer("mEventTimer")->interval(), 500);
    QVERIFY(Timer("mEventTimer")->isActive());
  }
  void aPlainTimeoutOnlyStopsTheTimer() {
    mScreen->SetEvent(ENTRY_MENU, 2000);
    mScreen->BaseWidget::TimeoutEvent();
    QVERIFY(!Timer("mEventTimer")->isActive());
    QCOMPARE(mScreen->mEventId, int{ENTRY_MENU});
  }
  void aTakenEventIsPendingNoMore() {
    mScreen->SetEvent(ENTRY_MENU, 2000);
    QCOMPARE(mScreen->TakeEventId(), int{ENTRY_MENU});
    QCOMPARE(mScreen->TakeEventId(), -1);
  }
  // The screen goes while its own timer acts: nothing of it may be touched afterwards.
  void aDelayedStepMayDeleteItsScreen() {
    mScreen->onTimeout = [this] {
      QCOMPARE(mScreen->TakeEventId(), int{ENTRY_MENU});
      mScreen->Back();
    };
    mScreen->SetEvent(ENTRY_MENU, 0);
    QTRY_VERIFY(!mScreen);
    QCOMPARE(Asked(), QStringList{"back"});
  }
  void timersActThroughTheirSlots_data() {
    QTest::addColumn<QString>("timer");
    QTest::newRow("own box") << "mMessageBoxTimer";
    QTest::newRow("event's box") << "mRecvMessageBoxTimer";
    QTest::newRow("delayed step") << "mEventTimer";
    QTest::newRow("recording") << "mTimRestartRecStart";
  }
  void timersActThroughTheirSlots() {
    QFETCH(QString, timer);
    bool acted = false;
    mScreen->onTimeout = [&] { acted = true; };
    mScreen->PaintMessageBox(SETUP_SAVING, false, 0, 0);
    mScreen->PaintMessageBox(R_NO_SD, true, 0, 0);
    Timer(qPrintable(timer))->start(0);
    if (timer == "mMessageBoxTimer") QTRY_VERIFY(!mScreen->GetShowMessageBoxFlag());
    if (timer == "mRecvMessageBoxTimer") QTRY_VERIFY(!mScreen->GetShowRecvMessageBoxFlag());
    if (timer == "mEventTimer") QTRY_VERIFY(acted);
    if (timer == "mTimRestartRecStart") QTRY_VERIFY(!mScreen);
  }
  void timersWaitWhileAHandlerPaints_data() { timersActThroughTheirSlots_data(); }
  void timersWaitWhileAHandlerPaints() {
    QFETCH(QString, timer);
    bool acted = false;
    mScreen->onTimeout = [&] { acted = true; };
    mScreen->PaintMessageBox(SETUP_SAVING, false, 0, 0);
    mScreen->PaintMessageBox(R_NO_SD, true, 0, 0);
    HostFake::Clear();
    auto* waiting = Timer(qPrintable(timer));
    waiting->start(0);
    gEventGate.ProcessEvents();
    QVERIFY(!acted);
    OwnBoxIs(SETUP_SAVING, waiting->objectName() == "mMessageBoxTimer" ? 1 : 0);
    EventBoxIs(R_NO_SD, waiting->objectName() == "mRecvMessageBoxTimer" ? 1 : 0);
    QCOMPARE(Asked(), QStringList());
    QVERIFY(waiting->isActive());
    QCOMPARE(waiting->interval(), 1);
  }

  // ---- message boxes

  void aBoxIsShownOverTheScreen() {
    auto* label = new QLabel("below", mScreen);
    label->setGeometry(0, 0, 480, 320);
    label->show();
    mScreen->PaintMessageBox(SETUP_SAVING, false, 0, 0);
    mScreen->PaintMessageBox(R_NO_SD, true, 0, 2000);
    QCOMPARE(Boxes().size(), 2);
    for (const MessageBox* box : Boxes()) QVERIFY(box->isVisible());
    QVERIFY(qobject_cast<MessageBox*>(mScreen->children().last()));
    auto* later = new QLabel("later", mScreen);
    later->setGeometry(0, 0, 480, 320);
    later->show();
    mScreen->PaintMessageBox(SETUP_SAVING, false, 0, 0);
    QVERIFY2(qobject_cast<MessageBox*>(mScreen->children().last()), "in front of labels that were made after it");
  }
  void aBoxWithoutTimeOutStays() {
    mScreen->PaintMessageBox(SETUP_SAVING, false, 0, 0);
    OwnBoxIs(SETUP_SAVING, 0);
    EventBoxIs(-1, 0);
    mScreen->DelMessageBox();
    OwnBoxIs(-1, 0);
    QCOMPARE(Boxes().size(), 0);
  }
  void aNegativeTimeOutIsNone() {
    mScreen->PaintMessageBox(R_NO_SD, true, 0, 2000);
    mScreen->PaintMessageBox(R_NO_SD, true, 0, -1);
    EventBoxIs(R_NO_SD, 0);
  }
  void aTimedBoxClosesItself() {
    mScreen->PaintMessageBox(ENTRY_PREVIEW, false, 0, 2000);
    OwnBoxIs(ENTRY_PREVIEW, 2000);
    mScreen->TimeoutMessageBoxTimer();
    OwnBoxIs(-1, 0);
    QCOMPARE(Boxes().size(), 0);
  }
  void aTimedEventBoxClosesItself() {
    mScreen->PaintMessageBox(R_NO_SD, true, 0, 2000);
    EventBoxIs(R_NO_SD, 2000);
    OwnBoxIs(-1, 0);
    mScreen->TimeoutRecvMessageBoxTimer();
    EventBoxIs(-1, 0);
    QCOMPARE(Boxes().size(), 0);
  }
  void aNewMessageTakesThePlaceOfTheOld_data() {
    QTest::addColumn<bool>("recv");
    QTest::newRow("own") << false;
    QTest::newRow("event's") << true;
  }
  void aNewMessageTakesThePlaceOfTheOld() {
    QFETCH(bool, recv);
    mScreen->PaintMessageBox(SETUP_SAVING, recv, 0, 2000);
    QCOMPARE(Boxes().size(), 1);
    const QPointer<MessageBox> box = Boxes().first();
    const QString before = TextOf(box);
    mScreen->PaintMessageBox(RESOLUTION_SETTING_CHANGE_NEED_FORMAT, recv, 0, 0);
    QCOMPARE(Boxes(), QList<MessageBox*>{box});
    QVERIFY(TextOf(box) != before);
    recv ? EventBoxIs(RESOLUTION_SETTING_CHANGE_NEED_FORMAT, 0) : OwnBoxIs(RESOLUTION_SETTING_CHANGE_NEED_FORMAT, 0);
    QCOMPARE(mScreen->mMessageBoxType, 1);
    mScreen->PaintMessageBox(SETUP_SAVING, recv, 0, 5000);
    recv ? EventBoxIs(SETUP_SAVING, 5000) : OwnBoxIs(SETUP_SAVING, 5000);
    QCOMPARE(TextOf(box), before);
    QCOMPARE(mScreen->mMessageBoxType, 0);
  }
  void theTwoSlotsKnowNothingOfEachOther() {
    mScreen->PaintMessageBox(SETUP_SAVING, false, 0, 3000);
    mScreen->PaintMessageBox(R_NO_SD, true, 0, 2000);
    OwnBoxIs(SETUP_SAVING, 3000);
    EventBoxIs(R_NO_SD, 2000);
    mScreen->TimeoutRecvMessageBoxTimer();
    EventBoxIs(-1, 0);
    OwnBoxIs(SETUP_SAVING, 3000);
    mScreen->PaintMessageBox(R_NO_SD, true, 0, 2000);
    mScreen->TimeoutMessageBoxTimer();
    OwnBoxIs(-1, 0);
    EventBoxIs(R_NO_SD, 2000);
    QCOMPARE(Boxes().size(), 1);
  }
  void theValueStandsInTheText() {
    mScreen->PaintMessageBox(R_HW_ERROR, true, 42, 0);
    QVERIFY2(TextOf(Boxes().first()).contains("Code:0x42"), qPrintable(TextOf(Boxes().first())));
  }
  void aMessageWithoutNumbersIsAPlainNotice_data() {
    QTest::addColumn<int>("id");
    QTest::newRow("above the catalogue") << 134;
    QTest::newRow("far above") << 99999;
    QTest::newRow("below") << -7;
  }
  void aMessageWithoutNumbersIsAPlainNotice() {
    QFETCH(int, id);
    mScreen->PaintMessageBox(R_SD_ERROR_NEET_FORMAT, true, 5, 0);
    mScreen->PaintMessageBox(id, true, 0, 0);
    QCOMPARE(mScreen->mMessageBoxType, 0);
    QCOMPARE(Boxes().size(), 1);
    QVERIFY(!Boxes().first()->HasButtons());
    QCOMPARE(Boxes().first()->geometry(), QRect(35, 84, 410, 168));
    mScreen->grab();
  }
  void removingABoxRepaintsTheScreenThatIsShown_data() {
    QTest::addColumn<bool>("recv");
    QTest::addColumn<bool>("byTimer");
    QTest::newRow("own") << false << false;
    QTest::newRow("event's") << true << false;
    QTest::newRow("own by its timer") << false << true;
    QTest::newRow("event's by its timer") << true << true;
  }
  void removingABoxRepaintsTheScreenThatIsShown() {
    QFETCH(bool, recv);
    QFETCH(bool, byTimer);
    QTRY_VERIFY(mScreen->painted > 0);
    mScreen->PaintMessageBox(R_NO_SD, recv, 0, 2000);
    const int before = mScreen->painted;
    if (recv)
      byTimer ? mScreen->TimeoutRecvMessageBoxTimer() : mScreen->DelRecvMessageBox();
    else
      byTimer ? mScreen->TimeoutMessageBoxTimer() : mScreen->DelMessageBox();
    QVERIFY(mScreen->painted > before);
  }
  void removingABoxThatIsNotThereIsHarmless() {
    mScreen->DelMessageBox();
    mScreen->DelRecvMessageBox();
    mScreen->TimeoutMessageBoxTimer();
    mScreen->TimeoutRecvMessageBoxTimer();
    OwnBoxIs(-1, 0);
    EventBoxIs(-1, 0);
  }
  void aBoxIsRemovedWithoutAnyScreenShown() {
    BaseWidget alone(nullptr);
    gWidgetManager.SetCurWidgetInfo({});
    alone.PaintMessageBox(SETUP_SAVING, false, 0, 0);
    alone.DelMessageBox();
    QVERIFY(!alone.GetShowMessageBoxFlag());
  }

  // ---- whose a touch is

  void theBoxPaintedLastTakesTheTouch_data() {
    QTest::addColumn<int>("own");    // message of the own box, -1: none
    QTest::addColumn<int>("event");  // of the event's box
    QTest::addColumn<int>("ms");     // of the event's box
    QTest::addColumn<bool>("ownLast");
    QTest::addColumn<QString>("taker");  // "screen", "own", "event", "closed", "nobody"
    const int none = -1, question = SD_FORMAT_CONFIRM, notice = FILE_SAVE;
    const struct {
      const char* name;
      int event, ms;
      const char* taker;
    } events[] = {
        {"standing notice", R_HW_ERROR, 0, "closed"},
        {"timed notice", R_NO_SD, 2000, "nobody"},
        {"standing question", R_SD_ERROR_NEET_FORMAT, 0, "event"},
        {"timed question", R_SYS_RESTART, 2000, "nobody"},
    };
    QTest::newRow("no box") << none << none << 0 << false << "screen";
    for (const int own : {question, notice}) {
      QTest::addRow("own %d alone", own) << own << none << 0 << false << "own";
      for (const auto& row : events) {
        QTest::addRow("%s over own %d", row.name, own) << own << row.event << row.ms << false << row.taker;
        QTest::addRow("own %d over %s", own, row.name) << own << row.event << row.ms << true << "own";
      }
    }
    for (const auto& row : events)
      QTest::addRow("%s alone", row.name) << none << row.event << row.ms << false << row.taker;
  }
  void theBoxPaintedLastTakesTheTouch() {
    QFETCH(int, own);
    QFETCH(int, event);
    QFETCH(int, ms);
    QFETCH(bool, ownLast);
    QFETCH(QString, taker);
    struct Screen : BaseWidget {
      using BaseWidget::BaseWidget;
      void touchEvent(int, int, int) override { taken << "screen"; }
      void MessageBoxHandler(int, int, int, int id) override { taken << QStringLiteral("own %1").arg(id); }
      void RecvMessageBoxHandler(int, int, int, int id) override { taken << QStringLiteral("event %1").arg(id); }
      void Touched() override { ++touched; }
      QStringList taken;
      int touched = 0;
    };
    auto* screen = mHost->Show(MAINMENU, new Screen(mHost.get()));
    if (own >= 0 && !ownLast) screen->PaintMessageBox(own, false, 0, 0);
    if (event >= 0) screen->PaintMessageBox(event, true, 0, ms);
    if (own >= 0 && ownLast) screen->PaintMessageBox(own, false, 0, 0);
    for (const QPoint at : {QPoint(140, 236), QPoint(340, 236), QPoint(240, 150), QPoint(5, 5)}) {
      screen->taken.clear();
      screen->Touch(TOUCH_AUTO, at.x(), at.y());  // a key that is held answers nothing and closes nothing
      QCOMPARE(screen->taken, taker == "screen" ? QStringList{"screen"} : QStringList());
      QCOMPARE(screen->GetShowRecvMessageBoxFlag(), event >= 0);
      screen->taken.clear();
      screen->Touch(TOUCH_PRESS, at.x(), at.y());
      QCOMPARE(screen->GetShowRecvMessageBoxFlag(), event >= 0 && taker != "closed");
      QCOMPARE(screen->GetShowMessageBoxFlag(), own >= 0);
      QStringList wanted;
      if (taker == "screen") wanted << "screen";
      if (taker == "own") wanted << QStringLiteral("own %1").arg(own);
      if (taker == "event") wanted << QStringLiteral("event %1").arg(event);
      QCOMPARE(screen->taken, wanted);
      if (taker == "closed") screen->PaintMessageBox(event, true, 0, ms);
    }
    QCOMPARE(screen->touched, 8);
  }
  void aBoxThatIsNotSeenTakesNoTouch() {
    mScreen->PaintMessageBox(R_HW_ERROR, true, 1, 0);
    mScreen->hide();
    QVERIFY(!mScreen->TakenByBox(TOUCH_PRESS, 240, 150));
    mScreen->show();
    QVERIFY(mScreen->TakenByBox(TOUCH_PRESS, 240, 150));
    EventBoxIs(-1, 0);
  }
  void whereATouchDoesSomethingIsTold() {
    const auto areas = [this] {
      QStringList names;
      for (const TouchArea& area : mScreen->TouchAreas()) names << area.name;
      return names;
    };
    QCOMPARE(areas(), QStringList());  // no key
    mScreen->PaintMessageBox(SETUP_SAVING, false, 0, 0);
    QCOMPARE(areas(), QStringList());  // a notice without a button
    mScreen->PaintMessageBox(R_HW_ERROR, true, 1, 0);
    QCOMPARE(areas(), QStringList("box"));
    mScreen->PaintMessageBox(R_HW_ERROR, true, 1, 2000);
    QCOMPARE(areas(), QStringList());  // closes itself
    mScreen->hide();
    QCOMPARE(areas(), QStringList("lcd"));
  }
  void aTouchFromBeforeAChangeIsNotMeantForIt_data() {
    QTest::addColumn<int>("change");
    QTest::newRow("own box comes") << 0;
    QTest::newRow("event's box comes") << 1;
    QTest::newRow("own box goes") << 2;
    QTest::newRow("event's box goes") << 3;
  }
  void aTouchFromBeforeAChangeIsNotMeantForIt() {
    QFETCH(int, change);
    if (change == 2) mScreen->PaintMessageBox(FILE_SAVE, false, 0, 0);
    if (change == 3) mScreen->PaintMessageBox(R_HW_ERROR, true, 1, 0);
    const qint64 before = Now();
    QVERIFY(IsMeantForTop(before));
    if (change == 0) mScreen->PaintMessageBox(FILE_SAVE, false, 0, 0);
    if (change == 1) mScreen->PaintMessageBox(R_NO_SD, true, 1, 2000);
    if (change == 2) mScreen->DelMessageBox();
    if (change == 3) mScreen->DelRecvMessageBox();
    QVERIFY(!IsMeantForTop(before));
    QVERIFY(IsMeantForTop(Now()));
  }

  // ---- leaving the settings

  void nothingChangedGoesStraightToThePreview() {
    gNeedFormatFlag = 3;
    Edited().volume = 3;  // sent at once by its own screen
    mScreen->EntryPreview();
    QCOMPARE(gNeedFormatFlag, 0);
    QCOMPARE(Asked(), QStringList{"jump PREVIEW"});
    QVERIFY(!root.Exists("/opt/gui/ini/config_firm.ini"));
  }

  void aFormatIsAskedForFirst_data() {
    QTest::addColumn<bool>("resolution");
    QTest::addColumn<bool>("fps");
    QTest::addColumn<int>("flag");
    QTest::addColumn<int>("box");
    QTest::newRow("resolution") << true << false << 1 << int{RESOLUTION_SETTING_CHANGE_NEED_FORMAT};
    QTest::newRow("frame rate") << false << true << 2 << int{FRAME_SETTING_CHANGE_NEED_FORMAT};
    QTest::newRow("both") << true << true << 3 << int{RES_FRAME_SETTING_CHANGE_NEED_FORMAT};
  }
  void aFormatIsAskedForFirst() {
    QFETCH(bool, resolution);
    QFETCH(bool, fps);
    QFETCH(int, flag);
    QFETCH(int, box);
    if (resolution) Edited().resolution = 1;
    if (fps) Edited().fps = 1;
    Edited().gmt = 9;
    mScreen->EntryPreview();
    QCOMPARE(gNeedFormatFlag, flag);
    OwnBoxIs(box, 0);
    QCOMPARE(Asked(), QStringList());
    QVERIFY(!mScreen->GetRestartRecStartFlag());
    QVERIFY(!Timer("mTimRestartRecStart")->isActive());
    QVERIFY(!root.Exists("/opt/gui/ini/config_firm.ini"));
    QVERIFY(gEnvirnmentSettings.compareSettingValue());
  }

  void aChangeIsSavedAndSentInThisOrder() {
    gNeedFormatFlag = 2;
    Edited().gmt = 9;
    Edited().time_set_flag = 1;
    Edited().resolution = Saved().resolution = 1;
    bool seen[2] = {};
    PlatformFake::Get().meanwhile = [&](const QString& line) {
      OwnBoxIs(SETUP_SAVING, 0);
      QVERIFY(mScreen->GetRestartRecStartFlag());
      QCOMPARE(gNeedFormatFlag, 0);
      if (line == "SEND_VIDEO_REC_STOP 2") {
        seen[0] = true;
        QCOMPARE(int{gEnvirnmentSettings.mSetup_value.model}, 0);
        QVERIFY(!root.Exists("/opt/gui/ini/config_firm.ini"));
      } else if (line == "SEND_SETTING_COMPLETE 0") {
        seen[1] = true;
        QCOMPARE(int{gEnvirnmentSettings.mSetup_value.model}, 200);
        QCOMPARE(int{gEnvirnmentSettings.mSetup_value.time_set_flag}, 1);
        QCOMPARE(gEnvirnmentSettings.GetSettingConfig(Set_Cfg_Gmt), 9);
        QCOMPARE(gEnvirnmentSettings.GetSettingConfig(Set_Cfg_Time_Set_Flag), 1);
        QCOMPARE(Saved().gmt, 9);
        QCOMPARE(Saved().time_set_flag, 1);
      }
    };
    mScreen->EntryPreview();
    QCOMPARE(Asked(), (QStringList{"SEND_VIDEO_REC_STOP 2", "SEND_SETTING_COMPLETE 0"}));
    QVERIFY(seen[0] && seen[1]);
    QCOMPARE(Edited().time_set_flag, 0);
    QCOMPARE(Saved().time_set_flag, 0);
    QCOMPARE(gEnvirnmentSettings.GetSettingConfig(Set_Cfg_Time_Set_Flag), 0);
    QVERIFY(!gEnvirnmentSettings.compareSettingValue());
    OwnBoxIs(SETUP_SAVING, 0);
    QVERIFY(mScreen->GetRestartRecStartFlag());
    QVERIFY(Timer("mTimRestartRecStart")->isActive());
    QCOMPARE(Timer("mTimRestartRecStart")->interval(), 10000);
  }
  void theSavingBoxIsOnTheScreenBeforeTheSlowSteps() {
    Edited().gmt = 9;
    PaintSpy<MessageBox> boxes;
    bool seen = false;
    PlatformFake::Get().meanwhile = [&](const QString& line) {
      if (line == "SEND_VIDEO_REC_STOP 2") seen = boxes.count > 0;
    };
    QVERIFY(QTest::qWaitForWindowExposed(mHost.get()));
    mScreen->EntryPreview();
    QVERIFY(seen);
  }
  void recordingGoesOnAndThePreviewComesBack() {
    Edited().gmt = 9;
    mScreen->EntryPreview();
    HostFake::Clear();
    PlatformFake::Get().meanwhile = [&](const QString& line) {
      if (line == "jump PREVIEW") return OwnBoxIs(-1, 0);
      OwnBoxIs(SETUP_SAVING, 0);  // until recording is under way
      QVERIFY(!mScreen->GetRestartRecStartFlag());
      QVERIFY(!Timer("mTimRestartRecStart")->isActive());
    };
    mScreen->TimeoutRestartRecStart();
    QCOMPARE(Asked(), (QStringList{"SEND_VIDEO_REC_START 0", "sleep 1000000", "jump PREVIEW"}));
    QVERIFY(!mScreen);
    QCOMPARE(gWidgetManager.GetCurWidgetId(), PREVIEW);
  }
};

QTEST_MAIN(BaseWidgetTest)
#include "basewidget_test.moc"
