#include "gui/setup/sdformat.h"

#include "tests/fake/screentest.h"

static TestRoot root;

/// Enters a state that no report leads to.
class FormatInState : public SDFormat {
public:
  FormatInState(QWidget* parent, int state) : SDFormat(parent) { mLblIdx = state; }
};

class SDFormatTest : public ScreenTest {
  Q_OBJECT

  void Open() {
    mHost->Show(SDMANAGEMENT, new BaseWidget(mHost.get()));
    mHost->Show(SDFORMAT, new SDFormat(mHost.get()));
    HostFake::Clear();
  }
  static void Tell(int status) { TopScreen()->recvEvent(RECV_ZEL_STATUS_SD_FORMAT_RESULT, status); }
  static QString Text() { return Label("mLblMsg")->text(); }
  static int Size() { return Label("mLblMsg")->font().pixelSize(); }
  static bool Fits() {
    const QLabel* label = Label("mLblMsg");
    const QRect needed = QFontMetrics(label->font()).boundingRect(label->rect(), Qt::AlignCenter, label->text());
    return label->rect().contains(needed);
  }

private slots:
  void init() {
    StartHost();
    gInitSdError = false;
  }
  void cleanup() { mHost.reset(); }

  void progressIsShownUntilTheFirmwareReports() {
    Open();
    QCOMPARE(Text(), QString());
    QCOMPARE(Armed("mTimSDFormat"), 2000);
    Top<SDFormat>()->TimeoutSDFormat();
    QCOMPARE(Text(), QStringLiteral("SD카드 포맷을 \r\n 진행 중입니다."));
    QCOMPARE(Size(), 33);
    QVERIFY(Label("mLblMsg")->font().bold());
    QVERIFY(Fits());
    QCOMPARE(Armed("mTimSDFormat"), -1);
    QVERIFY(Label("mLblCaution")->isVisible());
    QCOMPARE(Asked(), QStringList());
  }
  void successGoesBackToRecording() {
    Open();
    Tell(SDFormat::ST_SDF_SUCCESS);
    QCOMPARE(Text(), QStringLiteral("포맷이 완료되었습니다.\n영상 녹화를 시작합니다."));
    QCOMPARE(Size(), 22);
    QVERIFY(Fits());
    QCOMPARE(Armed("mTimSDFormat"), 2000);
    QVERIFY(!Label("mLblCaution")->isVisible());
    QCOMPARE(Asked(), QStringList());
    Top<SDFormat>()->TimeoutSDFormat();
    QCOMPARE(Asked(), (QStringList{QStringLiteral("SEND_SET_ENTRY_PREVIEW 0"), QStringLiteral("SEND_VIDEO_REC_START 0"),
                                   QStringLiteral("jump PREVIEW")}));
  }
  void successAppliesTheChangeThatWaitedForIt() {
    Setting().resolution = 1;
    Open();
    Tell(SDFormat::ST_SDF_SUCCESS);
    Top<SDFormat>()->TimeoutSDFormat();
    QStringList asked = Asked();
    asked.removeAll(QStringLiteral("sh sync"));
    QCOMPARE(asked, (QStringList{QStringLiteral("SEND_SETTING_COMPLETE 0"), QStringLiteral("SEND_VIDEO_REC_START 0"),
                                 QStringLiteral("jump PREVIEW")}));
    QCOMPARE(Saved().resolution, 1);
  }
  // The change that waited may have set the clock: the next block must not set it back.
  void theClockIsSetOnce() {
    Setting().resolution = 1;
    Setting().time_set_flag = Saved().time_set_flag = 1;
    Open();
    Tell(SDFormat::ST_SDF_SUCCESS);
    int told = -1;
    Fake().meanwhile = [&told](const QString& line) {
      if (line.startsWith(QStringLiteral("SEND_SETTING_COMPLETE")))
        told = gEnvirnmentSettings.mSetup_value.time_set_flag;
    };
    Top<SDFormat>()->TimeoutSDFormat();
    Fake().meanwhile = nullptr;
    QCOMPARE(told, 1);
    QCOMPARE(Setting().time_set_flag, 0);
    QCOMPARE(Saved().time_set_flag, 0);
    QVERIFY(root.Read(QStringLiteral("/opt/gui/ini/config_firm.ini")).contains("time_set_flag=0"));
  }
  void successAfterACardErrorAtTheStartIsASuccess() {
    gInitSdError = true;
    Open();
    Tell(SDFormat::ST_SDF_SUCCESS);
    QCOMPARE(Text(), QStringLiteral("포맷이 완료되었습니다.\n영상 녹화를 시작합니다."));
    QCOMPARE(Armed("mTimSDFormat"), 2000);
    QVERIFY(gInitSdError);
  }
  // Never entered, and kept.
  void aFormatThatTakesTooLongWouldSaySoAndGoBack() {
    mHost->Show(SDMANAGEMENT, new BaseWidget(mHost.get()));
    mHost->Show(SDFORMAT, new FormatInState(mHost.get(), 1));
    HostFake::Clear();
    Top<SDFormat>()->TimeoutSDFormat();
    QCOMPARE(Text(), QStringLiteral("시간이 초과되었습니다\n 재시도해주십시요"));
    QCOMPARE(Size(), 33);
    QVERIFY(Fits());
    QCOMPARE(Armed("mTimSDFormat"), 2000);
    QCOMPARE(Asked(), QStringList());
    Top<SDFormat>()->TimeoutSDFormat();
    QCOMPARE(Asked(), (QStringList{QStringLiteral("SEND_VIDEO_REC_START 0"), QStringLiteral("parking timer"),
                                   QStringLiteral("back")}));
  }
  void itsTimerIsWhatGoesOn() {
    Open();
    Timer("mTimSDFormat")->start(0);
    QTRY_COMPARE(Text(), QStringLiteral("SD카드 포맷을 \r\n 진행 중입니다."));
    QCOMPARE(Armed("mTimSDFormat"), -1);
  }
  void aReportWhileProgressIsShownIsTaken() {
    for (const int status : {SDFormat::ST_SDF_SUCCESS, SDFormat::ST_SDF_FAIL}) {
      Open();
      Top<SDFormat>()->TimeoutSDFormat();
      Tell(status);
      QVERIFY(Text() != QStringLiteral("SD카드 포맷을 \r\n 진행 중입니다."));
      QCOMPARE(Armed("mTimSDFormat"), 2000);
    }
  }

  void failureGoesBackToTheCardMenu() {
    Open();
    Tell(SDFormat::ST_SDF_FAIL);
    QCOMPARE(Text(), QStringLiteral("SD카드 포맷에 실패하였습니다."));
    QCOMPARE(Size(), 27);
    QVERIFY(Fits());
    QCOMPARE(Armed("mTimSDFormat"), 2000);
    Top<SDFormat>()->TimeoutSDFormat();
    QCOMPARE(Asked(), (QStringList{QStringLiteral("SEND_VIDEO_REC_START 0"), QStringLiteral("parking timer"),
                                   QStringLiteral("back")}));
    QCOMPARE(TopId(), SDMANAGEMENT);
  }
  void aCardThatFailedAtTheStartMustBeExchanged() {
    gInitSdError = true;
    Open();
    Tell(SDFormat::ST_SDF_FAIL);
    QCOMPARE(Text(), QStringLiteral("SD카드 포맷에 실패하였습니다.\nSD카드 교체가 필요합니다."));
    QCOMPARE(Size(), 22);
    QVERIFY(Fits());
    QCOMPARE(Armed("mTimSDFormat"), -1);
    QVERIFY(!gInitSdError);
    QCOMPARE(Asked(), QStringList());
    // A format that fails once more is an ordinary one.
    Tell(SDFormat::ST_SDF_FAIL);
    QCOMPARE(Text(), QStringLiteral("SD카드 포맷에 실패하였습니다."));
    QCOMPARE(Armed("mTimSDFormat"), 2000);
  }
  void otherReportsChangeNothing_data() {
    QTest::addColumn<int>("status");
    for (const int status : {int{SDFormat::ST_SDF_START}, int{SDFormat::ST_SDF_PROGRESS},
                             int{SDFormat::ST_SDF_SYS_RESET}, int{SDFormat::ST_SDF_END}, -1, 6})
      QTest::addRow("%d", status) << status;
  }
  void otherReportsChangeNothing() {
    QFETCH(int, status);
    Open();
    Tell(status);
    TopScreen()->recvEvent(RECV_ZEL_STATUS_SD_CHECK, 0);
    QCOMPARE(Text(), QString());
    QCOMPARE(Armed("mTimSDFormat"), 2000);
    QVERIFY(Label("mLblCaution")->isVisible());
  }
  void nobodyCanLeaveAFormat() {
    Open();
    for (int x = 5; x < 480; x += 10)
      for (int y = 5; y < 320; y += 10) Tap(x, y);
    QCOMPARE(Asked(), QStringList());
    QCOMPARE(TopId(), SDFORMAT);
  }
  void thePageIsDrawn() {
    Open();
    const QRect top(0, 0, 480, 120);
    QCOMPARE(Seen(top),
             Picture(QStringLiteral("sdformat/bg.bmp")).toImage().convertToFormat(QImage::Format_RGB32).copy(top));
  }
};

QTEST_MAIN(SDFormatTest)
#include "sdformat_test.moc"
