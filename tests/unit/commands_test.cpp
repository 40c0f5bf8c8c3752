#include "gui/firmware/commands.h"

#include <QTest>
#include <climits>
#include <cstring>
#include <iterator>

#include "gui/base/globals.h"
#include "gui/firmware/msgthread.h"
#include "gui/settings/settings.h"
#include "tests/fake/platformfake.h"
#include "tests/fake/testroot.h"

static TestRoot root;

namespace {
/// What the recorder gets for an event with the value -7, view 1, and the data below.
struct Row {
  int event;
  const char* name;
  const char* line;
};

// clang-format off
constexpr Row kRows[] = {
    {0, "SEND_SWITCH_DISPLAY", "8581 1"},
    {1, "SEND_LCD_AUTO_OFF", "8654 -7"},
    {2, "SEND_LCD_BRIGHT", "8655 -7"},
    {3, "SEND_LCD_WAIT_DIS", "8657 -7"},
    {4, "SEND_SET_LED_MODE", "8660 -7"},
    {5, "SEND_LED_FILE_UPDATE", "8661 -7"},
    {6, "SEND_SET_RESOLUTION", ""},
    {7, "SEND_SET_FPS", ""},
    {8, "SEND_SET_GAIN", ""},
    {9, "SEND_SET_GAIN2", ""},
    {10, "SEND_SET_GSENSOR_TRG_LVL", ""},
    {11, "SEND_SET_GPS_SPEED_DISPLAY", ""},
    {12, "SEND_SET_PARKING_MODE_ON", ""},
    {13, "SEND_SET_PARK_LVL", ""},
    {14, "SEND_SET_MOTION_LVL", ""},
    {15, "SEND_CHK_PARK_LVL", ""},
    {16, "SEND_SET_POWER_CUT_LVL", ""},
    {17, "SEND_SET_POWER_CUT_TIME", ""},
    {18, "SEND_SET_BUZER_FLAG", "8632 -7"},
    {19, "SEND_SET_EVENT_BUZER", "8642 -7"},
    {20, "SEND_SET_SPK_VOLUME", "8602 -7"},
    {21, "SEND_SET_ACC_VOLUME", "8650 -7"},
    {22, "SEND_SET_VOLUME", "8600 -7"},
    {23, "SEND_SET_EFILE_DEL_METHOD", ""},
    {24, "SEND_SET_N_FILE_RATE", ""},
    {25, "SEND_SET_E_FILE_RATE", ""},
    {26, "SEND_SET_P_FILE_RATE", ""},
    {27, "SEND_SET_TIME_SET_FLAG", ""},
    {28, "SEND_SET_YEAR", ""},
    {29, "SEND_SET_MONTH", ""},
    {30, "SEND_SET_DAY", ""},
    {31, "SEND_SET_HOUR", ""},
    {32, "SEND_SET_MIN", ""},
    {33, "SEND_SET_GMT", ""},
    {34, "SEND_PLAY_VIDEO", "8586 PATH"},
    {35, "SEND_RECORD_STOP", ""},
    {36, "SEND_CONTROL_VIDEO", "8587 -7"},
    {37, "SEND_VIDEO_REC_START", "8619 -7"},
    {38, "SEND_VIDEO_REC_STOP", "8620 -7"},
    {39, "SEND_SET_CHK_TEMP", ""},
    {40, "SEND_SETTING_COMPLETE", "8658 SETUP"},
    {41, "SEND_SYSTEM_RESET", ""},
    {42, "SEND_SET_MODEL", ""},
    {43, "SEND_SET_DATA_AREA", ""},
    {44, "SEND_GET_VOLTAGE", "8659 0"},
    {45, "SEND_SET_SYSTEM_SD_FORMAT", "8612 -7"},
    {46, "SEND_SET_SYSTEM_RESTART", "8662 -7"},
    {47, "SEND_SET_ENTRY_PREVIEW", "8663 -7"},
    {48, "SEND_GET_LCD_AUTO_VALUE", "8664 0"},
    {49, "SEND_GET_ACC", "8665 0"},
    {50, "SEND_SET_VIEWCHANGE", "8666 -7"},
    {51, "SEND_SET_SEEK_PLAY", "8667 -7"},
    {52, "SEND_SET_MIRRORING", "8670 -7"},
    {53, "SEND_SET_MOVING_PIP", "8671 -7"},
    {54, "SEND_VOLTAGE_COMPENSATION", "8669 -7"},
    {55, "SEND_MOTION_SETTING", "8672 -7"},
    {56, "SEND_SWITCH_DISP_FOR_MOTION", "8581 -7"},
    {57, "SEND_MOTION_SETTING_FRONT", "8672 FRONT"},
    {58, "SEND_MOTION_SETTING_REAR", "8673 REAR"},
    {59, "SEND_GET_PARKING_MODE_EVENT_FILE", "8674 0"},
    {60, "SEND_GET_PARKING_MODE_MOTION_FILE", "8675 0"},
    {61, "SEND_SET_CURRENT_RECORDING_FILE_DETECT", "8676 -7"},
    {62, "SEND_SET_USER_DATA_INIT", "8677 -7"},
    {63, "SEND_SET_SYSTEM_SD_CHECK", "8611 -7"},
    {64, "SEND_SET_REARCAM_ONOFF", "8678 -7"},
    {65, "SEND_SET_SD_CHECK", "8679 -7"},
    {66, "SEND_SET_TOUCH_COM_END", "8680 -7"},
};
// clang-format on

constexpr char kPath[] = "/mnt/mmc/event.avi";
constexpr std::uint64_t kFrontMap = 0x8123456789ABCDEFULL;
constexpr std::uint64_t kRearMap = 0xFFFF0FFFFFFFFFFFULL;

QByteArray SetupBytes() {
  QByteArray bytes(129, '\0');
  for (int i = 0; i < 129; ++i) bytes[i] = char(i + 100);
  return bytes;
}

QString Hex(const QByteArray& bytes) {
  return QLatin1String(bytes.toHex());
}
}  // namespace

class CommandsTest : public QObject {
  Q_OBJECT

private:
  std::unique_ptr<MsgThread> mLink;

  void Send(int event, int value, const QString& text = {}) {
    mLink->sendEvent(Send_Event(event), value, text, nullptr, nullptr);
  }
  static QStringList Asked() { return PlatformFake::Get().asked; }

private slots:
  void init();
  void cleanup();

  void theTableOfThisTestIsWhole();
  void eachEventIsSentAsTheTableSays_data();
  void eachEventIsSentAsTheTableSays();
  void anEventOutsideTheTableSendsNothing_data();
  void anEventOutsideTheTableSendsNothing();
  void eachQueryGivesTheRecordersAnswer();
  void aFailedQueryLeavesTheVariable();
  void aQueryWithoutAVariableAsksNothing();
  void eachViewHasItsField_data();
  void eachViewHasItsField();
  void aPathIsSentInFiftyBytes_data();
  void aPathIsSentInFiftyBytes();
  void theRecorderCannotChangeTheSettings();
  void sendersBeyondTheTable();
  void aRefusedMirroringGoesBackAStep_data();
  void aRefusedMirroringGoesBackAStep();
  void aRefusedCornerGoesBackAStep_data();
  void aRefusedCornerGoesBackAStep();
  void registrationWithThePlatform();
  void theSystemIsReadyWithStreamAndOverlay();
  void theLinkStartsWithoutASharedMemory();
};

void CommandsTest::init() {
  gEnvirnmentSettings.mSetting.display = 1;
  gEnvirnmentSettings.mSetting.motion_area1 = kFrontMap;
  gEnvirnmentSettings.mSetting.motion_area2 = kRearMap;
  std::memcpy(&gEnvirnmentSettings.mSetup_value, SetupBytes().constData(), 129);
  mLink = std::make_unique<MsgThread>(nullptr);
  PlatformFake::Get().Clear();
}

void CommandsTest::cleanup() {
  mLink.reset();
}

void CommandsTest::theTableOfThisTestIsWhole() {
  QCOMPARE(int(std::size(kRows)), 67);
  for (int event = 0; event < 67; ++event) {
    QCOMPARE(kRows[event].event, event);
    QCOMPARE(NameOf(Send_Event(event)), kRows[event].name);
  }
}

void CommandsTest::eachEventIsSentAsTheTableSays_data() {
  QTest::addColumn<int>("event");
  QTest::addColumn<QString>("line");
  for (const Row& row : kRows) {
    QString line = QLatin1String(row.line);
    line.replace("PATH", Hex(QByteArray(kPath).leftJustified(50, '\0')));
    line.replace("SETUP", Hex(SetupBytes()));
    line.replace("FRONT", "efcdab8967452381");
    line.replace("REAR", "ffffffffff0fffff");
    QTest::newRow(row.name) << row.event << line;
  }
}

void CommandsTest::eachEventIsSentAsTheTableSays() {
  QFETCH(int, event);
  QFETCH(QString, line);
  int answer = 55;
  float volts = 55;
  mLink->sendEvent(Send_Event(event), -7, kPath, &answer, &volts);
  QCOMPARE(Asked(), line.isEmpty() ? QStringList() : QStringList(line));
  const bool asksInt = event == 48 || event == 49 || event == 59 || event == 60;
  QCOMPARE(answer == 55, !asksInt);
  QCOMPARE(volts == 55, event != 44);
}

void CommandsTest::anEventOutsideTheTableSendsNothing_data() {
  QTest::addColumn<int>("event");
  for (int event : {-1, 67, 68, 8612, INT_MAX, INT_MIN}) QTest::addRow("%d", event) << event;
}

void CommandsTest::anEventOutsideTheTableSendsNothing() {
  QFETCH(int, event);
  int answer = 55;
  float volts = 55;
  mLink->sendEvent(Send_Event(event), 1, kPath, &answer, &volts);
  QCOMPARE(Asked(), QStringList());
  QCOMPARE(answer, 55);
  QCOMPARE(volts, 55.0F);
}

void CommandsTest::eachQueryGivesTheRecordersAnswer() {
  PlatformFake::Get().voltage = 12.34F;
  PlatformFake::Get().lcdValue = 45000;
  float volts = 0;
  int pwm = 0;
  mLink->sendEvent(SEND_GET_VOLTAGE, 0, {}, nullptr, &volts);
  mLink->sendEvent(SEND_GET_LCD_AUTO_VALUE, 0, {}, &pwm, nullptr);
  QCOMPARE(volts, 12.34F);
  QCOMPARE(pwm, 45000);
}

void CommandsTest::aFailedQueryLeavesTheVariable() {
  PlatformFake::Get().result = -1;
  for (Send_Event event :
       {SEND_GET_LCD_AUTO_VALUE, SEND_GET_ACC, SEND_GET_PARKING_MODE_EVENT_FILE, SEND_GET_PARKING_MODE_MOTION_FILE}) {
    int answer = 55;
    mLink->sendEvent(event, 3, {}, &answer, nullptr);
    QCOMPARE(answer, 55);
  }
  float volts = 12.5F;
  mLink->sendEvent(SEND_GET_VOLTAGE, 3, {}, nullptr, &volts);
  QCOMPARE(volts, 12.5F);
  // What is sent is zero all the same.
  QCOMPARE(Asked(), QStringList({"8664 0", "8665 0", "8674 0", "8675 0", "8659 0"}));
}

void CommandsTest::aQueryWithoutAVariableAsksNothing() {
  for (Send_Event event : {SEND_GET_VOLTAGE, SEND_GET_ACC}) Send(event, 0);
  QCOMPARE(Asked(), QStringList());
}

void CommandsTest::eachViewHasItsField_data() {
  QTest::addColumn<int>("view");
  QTest::addColumn<int>("field");
  QTest::newRow("picture in picture") << 0 << 8584;
  QTest::newRow("front") << 1 << 8581;
  QTest::newRow("rear") << 2 << 8582;
  QTest::newRow("3") << 3 << 8581;
  QTest::newRow("-1") << -1 << 8581;
}

void CommandsTest::eachViewHasItsField() {
  QFETCH(int, view);
  QFETCH(int, field);
  const QString line = QStringLiteral("%1 %2").arg(field).arg(view);
  gEnvirnmentSettings.mSetting.display = view;
  Send(SEND_SWITCH_DISPLAY, 99);
  QCOMPARE(Asked(), QStringList(line));
  PlatformFake::Get().Clear();
  gEnvirnmentSettings.mSetting.display = 99;
  Send(SEND_SWITCH_DISP_FOR_MOTION, view);
  QCOMPARE(Asked(), QStringList(line));
}

void CommandsTest::aPathIsSentInFiftyBytes_data() {
  QTest::addColumn<QString>("path");
  QTest::addColumn<QByteArray>("sent");
  const QByteArray end(1, '\0');
  QTest::newRow("empty") << QString() << QByteArray(50, '\0');
  QTest::newRow("short") << QStringLiteral("/a") << "/a" + QByteArray(48, '\0');
  QTest::newRow("49 characters") << QString(49, u'x') << QByteArray(49, 'x') + end;
  QTest::newRow("50 characters") << QString(50, u'x') << QByteArray(49, 'x') + end;
  QTest::newRow("a million characters") << QString(1000000, u'x') << QByteArray(49, 'x') + end;
  QTest::newRow("not ASCII") << QStringLiteral(u"/가") << "/?" + QByteArray(48, '\0');
}

void CommandsTest::aPathIsSentInFiftyBytes() {
  QFETCH(QString, path);
  QFETCH(QByteArray, sent);
  QCOMPARE(sent.size(), 50);
  Send(SEND_PLAY_VIDEO, 3, path);
  QCOMPARE(Asked(), QStringList("8586 " + Hex(sent)));
}

void CommandsTest::theRecorderCannotChangeTheSettings() {
  QCOMPARE(int(sizeof gEnvirnmentSettings.mSetup_value), 129);
  Send(SEND_SETTING_COMPLETE, 0);
  Send(SEND_MOTION_SETTING_FRONT, 0);
  QCOMPARE(QByteArray(reinterpret_cast<const char*>(&gEnvirnmentSettings.mSetup_value), 129), SetupBytes());
  QCOMPARE(gEnvirnmentSettings.mSetting.motion_area1, kFrontMap);
}

void CommandsTest::sendersBeyondTheTable() {
  mLink->setSetupValue(8000, 5);
  mLink->setFps(2);
  mLink->RecordStart();
  mLink->RecordStop(3);
  mLink->controlVideo(2);
  mLink->setLcdOnOff(1);
  PlatformFake::Get().voltage = 13.5F;
  gRecvVoltage = 1;
  mLink->getSystemVoltage();
  QCOMPARE(gRecvVoltage, 13.5F);
  QCOMPARE(Asked(), QStringList({"8000 5", "8596 2", "8619 0", "8620 3", "8587 2", "gpio 46 1", "8659 0"}));
  PlatformFake::Get().result = -1;
  mLink->getSystemVoltage();
  QCOMPARE(gRecvVoltage, 13.5F);
}

void CommandsTest::aRefusedMirroringGoesBackAStep_data() {
  QTest::addColumn<int>("result");
  QTest::addColumn<int>("before");
  QTest::addColumn<int>("after");
  QTest::newRow("taken 0") << 0 << 0 << 0;
  QTest::newRow("taken 1") << 0 << 1 << 1;
  QTest::newRow("refused 0") << -1 << 0 << 1;
  QTest::newRow("refused 1") << -1 << 1 << 0;
  QTest::newRow("refused rubbish") << -1 << INT_MIN << 1;
}

void CommandsTest::aRefusedMirroringGoesBackAStep() {
  QFETCH(int, result);
  QFETCH(int, before);
  PlatformFake::Get().result = result;
  gEnvirnmentSettings.mMirroring = before;
  mLink->setPreviewMirroring(1);
  QCOMPARE(Asked(), QStringList("8670 1"));
  QTEST(gEnvirnmentSettings.mMirroring, "after");
}

void CommandsTest::aRefusedCornerGoesBackAStep_data() {
  QTest::addColumn<int>("result");
  QTest::addColumn<int>("before");
  QTest::addColumn<int>("after");
  QTest::newRow("taken 2") << 0 << 2 << 2;
  QTest::newRow("refused 0") << -1 << 0 << 3;
  QTest::newRow("refused 1") << -1 << 1 << 0;
  QTest::newRow("refused 2") << -1 << 2 << 1;
  QTest::newRow("refused 3") << -1 << 3 << 2;
  QTest::newRow("refused rubbish") << -1 << INT_MAX << 2;
}

void CommandsTest::aRefusedCornerGoesBackAStep() {
  QFETCH(int, result);
  QFETCH(int, before);
  PlatformFake::Get().result = result;
  gEnvirnmentSettings.mMovingPip = before;
  mLink->setMovingPip(2);
  QCOMPARE(Asked(), QStringList("8671 2"));
  QTEST(gEnvirnmentSettings.mMovingPip, "after");
}

void CommandsTest::registrationWithThePlatform() {
  QCOMPARE(mLink->regSysServer(), 1);
  QCOMPARE(mLink->regDevManager(), 1);
  mLink->initDevManager();
  QCOMPARE(Asked(), QStringList({"8580 00", "client 2", "device 2 0a000000140000001e00000000000000",
                                 "device 1 40420f00400d0300e093040020a10700"}));
}

void CommandsTest::theSystemIsReadyWithStreamAndOverlay() {
  gSysInit = 0;
  QCOMPARE(mLink->checkSysInit(), 1);
  QCOMPARE(gSysInit, 1);
}

void CommandsTest::theLinkStartsWithoutASharedMemory() {
  gContext.fill(7);
  MsgThread link(nullptr);
  QTRY_VERIFY(link.isFinished());
  QCOMPARE(gContext, (std::array<std::uint32_t, 13>{}));
  link.sendEvent(SEND_LCD_BRIGHT, 2, {}, nullptr, nullptr);
  QCOMPARE(Asked(), QStringList("8655 2"));
}

QTEST_GUILESS_MAIN(CommandsTest)
#include "commands_test.moc"
