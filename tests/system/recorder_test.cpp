#include "recorder/firmware/scenario.h"
#include "tests/system/recorderfixture.h"

#include <sys/shm.h>
#include <sys/stat.h>

#include <QDateTime>
#include <QElapsedTimer>
#include <QMap>
#include <QRegularExpression>
#include <atomic>
#include <cmath>
#include <limits>

namespace {
// The file that the interface reads at its start.
constexpr char kIni[] = "/tmp/config_init.ini";
constexpr char kReport[] = "/tmp/.info.bin";

const char* const kIniKeys[] = {
    "fwver/major_ver",
    "fwver/minor_ver",
    "fwver/minor_ver2",
    "drivingsetting/fps",
    "timesetting/gmt",
    "audiosetting/volume",
    "drivingsetting/gsensor_trg_lvl",
    "parkingsetting/parking_mode_on",
    "drivingsetting/resolution",
    "parkingsetting/park_lvl",
    "drivingsetting/gain",
    "parkingsetting/motion_lvl",
    "audiosetting/event_buzer",
    "filedeletesetting/efile_del_method",
    "filedeletesetting/n_file_rate",
    "filedeletesetting/e_file_rate",
    "filedeletesetting/p_file_rate",
    "drivingsetting/gps_speed_display",
    "view/display",
    "timesetting/time_set_flag",
    "timesetting/year",
    "timesetting/month",
    "timesetting/day",
    "timesetting/hour",
    "timesetting/min",
    "drivingsetting/gain2",
    "audiosetting/buzer_flag",
    "audiosetting/spk_volume",
    "audiosetting/acc_volume",
    "parkingsetting/power_cut_lvl",
    "parkingsetting/power_cut_time",
    "lcdsetting/lcd_auto_off",
    "lcdsetting/lcd_bright",
    "lcdsetting/lcd_wait_dis",
    "parkingsetting/chk_park_lvl",
    "parkingsetting/power_cut_lvl_type",
    "ledsetting/settingchange",
    "view/mirroring",
    "view/movingpip",
    "filedeletesetting/protectfile",
    "parkingsetting/rear_cam_power",
    "parkingsetting/low_volt_cut_1",
    "parkingsetting/low_volt_cut_2",
    "parkingsetting/low_volt_cut_3",
    "parkingsetting/low_volt_cut_4",
    "parkingsetting/low_volt_cut_5",
    "parkingsetting/low_volt_cut_6",
    "parkingsetting/low_volt_cut_7",
    "parkingsetting/low_volt_cut_8",
    "parkingsetting/low_volt_cut_9",
    "parkingsetting/low_volt_cut_10",
    "parkingsetting/low_volt_cut_11",
    "parkingsetting/low_volt_cut_12",
    "motionmap/front_h",
    "motionmap/front_l",
    "motionmap/rear_h",
    "motionmap/rear_l",
    "parkingsetting/park_file_volume",
    "parkingsetting/manual_volt_use",
};

// The keys and values of the INI file as they stand there.
QMap<QString, QString> Ini() {
  QMap<QString, QString> values;
  QString group;
  for (const QString& line : QString::fromUtf8(root.Read(QLatin1String(kIni))).split(u'\n')) {
    if (line.startsWith(u'['))
      group = line.mid(1, line.size() - 2);
    else if (!line.isEmpty())
      values.insert(group + u'/' + line.section(u'=', 0, 0), line.section(u'=', 1));
  }
  return values;
}

// A setup block as the interface sends it: zero but for the model.
QByteArray Block() {
  QByteArray block(129, '\0');
  block[19] = static_cast<char>(200);
  return block;
}

}  // namespace

class RecorderTest : public RecorderFixture {
  Q_OBJECT

private:
  // Numbers of the parking report.
  static QList<int> Report() {
    const QByteArray bytes = root.Read(QLatin1String(kReport));
    QList<int> numbers;
    for (qsizetype offset = 0; offset + 4 <= bytes.size(); offset += 4)
      numbers << qFromLittleEndian<qint32>(bytes.constData() + offset);
    return numbers;
  }

  static QString WriteScenario(const QByteArray& lines) {
    root.Write(QStringLiteral("/scenario.jsonl"), lines);
    return root.Path(QStringLiteral("/scenario.jsonl"));
  }

private slots:
  void initTestCase() { QVERIFY(keyIsSet); }
  void init() { Prepare(); }
  void cleanup() { mRecorder.reset(); }

  void cleanupTestCase() { Recorder::RemoveTransport(); }

  // ---- status messages

  void messageHasTheLayoutThatTheInterfaceReads() {
    Start();
    QVERIFY(mRecorder->SendStatus(RECV_ZEL_STATUS_SPEED, -87));
    GUI_MSG_BUF message;
    int value = 1;
    QVERIFY(Receive(&message, &value));
    QCOMPARE(message.des, long(GUI_ID));
    QCOMPARE(message.cmd, int(RECV_ZEL_STATUS_SPEED));
    QCOMPARE(message.src, 2);
    QCOMPARE(message.length, 4);
    QCOMPARE(message.ack, int(GUI_ACK_NO));
    QCOMPARE(message.ret, int(GUI_RET_NORET));
    QVERIFY(message.offset >= 0 && message.offset + 4 <= GUI_SLOT_SIZE);
    QCOMPARE(value, -87);
    QCOMPARE(Last("event"),
             (QJsonObject{
                 {"kind", "event"}, {"name", "RECV_ZEL_STATUS_SPEED"}, {"event", 24}, {"value", -87}, {"result", 0}}));
  }

  void eventsOfABurstKeepTheirOwnValues() {
    Start();
    for (int value = 0; value < 500; ++value) QVERIFY(mRecorder->SendStatus(RECV_ZEL_STATUS_SPEED, 1000 + value));
    const QList<Event> events = Events();
    QCOMPARE(events.size(), 500);
    for (int value = 0; value < 500; ++value) QCOMPARE(events[value].value, 1000 + value);
  }

  void theRingOfCellsStaysInItsOwnSlot() {
    Start();
    QSet<int> offsets;
    for (int sent = 0; sent < 2 * GUI_SLOT_SIZE / 4; ++sent) {
      GUI_MSG_BUF message;
      int value = 0;
      QVERIFY(mRecorder->SendStatus(RECV_ZEL_STATUS_SPEED, sent) && Receive(&message, &value));
      QCOMPARE(value, sent);
      QVERIFY(message.offset >= 0 && message.offset + 4 <= GUI_SLOT_SIZE && message.offset % 4 == 0);
      offsets << message.offset;
    }
    QCOMPARE(offsets.size(), GUI_SLOT_SIZE / 4);
  }

  void aFullQueueIsRefusedAndLogged() {
    Start();
    int sent = 0;
    while (sent < 100000 && mRecorder->SendStatus(RECV_ZEL_STATUS_SPEED, sent)) ++sent;
    QVERIFY(sent > 100 && sent < 100000);
    QCOMPARE(Last("event").value("result").toInt(), -1);
    QVERIFY(IsSentence(Refusal("powerKey")));
    const QList<Event> events = Events();
    QCOMPARE(events.size(), sent);
    for (int value = 0; value < sent; ++value) QCOMPARE(events[value].value, value);
    QVERIFY(mRecorder->SendStatus(RECV_ZEL_STATUS_SPEED, 1));
  }

  void eventsThatDoNotExistAreRefused() {
    Start();
    for (int event : {std::numeric_limits<int>::min(), -1, 0, 39, 1000000}) QVERIFY(!mRecorder->SendStatus(event, 0));
    QVERIFY(Events().isEmpty());
    QCOMPARE(Last("event").value("result").toInt(), -1);
    for (int event = 1; event <= 38; ++event) QVERIFY(mRecorder->SendStatus(event, event));
    QCOMPARE(Events().size(), 38);
  }

  void aLivingInterfaceHearsTheRecorderThatComesAfter() {
    Start();
    std::atomic<int> heard = 0;
    const std::unique_ptr<QThread> interface(QThread::create([this, &heard] {
      for (int messages = 0; messages < 2; ++messages) {
        GUI_MSG_BUF message{};
        if (msgrcv(mQueue, &message, GUI_MSG_SIZE, GUI_ID, 0) == GUI_MSG_SIZE) heard = message.cmd;
      }
    }));
    interface->start();
    QVERIFY(mRecorder->SendStatus(RECV_ZEL_STATUS_SPEED, 1));
    QTRY_COMPARE(heard.load(), int(RECV_ZEL_STATUS_SPEED));
    Start();  // while the interface waits
    QVERIFY(mRecorder->SendStatus(RECV_ZEL_STATUS_LCD_KEY, 1));
    QTRY_COMPARE(heard.load(), int(RECV_ZEL_STATUS_LCD_KEY));
    interface->wait();
  }

  void whatWaitedForAnEarlierRunIsGone() {
    Start();
    QVERIFY(mRecorder->SendStatus(RECV_ZEL_STATUS_SPEED, 1));
    GUI_MSG_BUF reply{};
    reply.des = 2;  // to the recorder
    QCOMPARE(msgsnd(mQueue, &reply, GUI_MSG_SIZE, IPC_NOWAIT), 0);
    Start();
    QCOMPARE(mRecorder->State().value("waitingEvents").toInt(), 0);
    QCOMPARE(msgget(kKey, 0), mQueue);
  }

  void aQueueThatSomebodyRemovedIsMadeAnew() {
    Start();
    QCOMPARE(msgctl(mQueue, IPC_RMID, nullptr), 0);
    QVERIFY(mRecorder->SendStatus(RECV_ZEL_STATUS_SPEED, 5));
    mQueue = msgget(kKey, 0);
    QVERIFY(Came(RECV_ZEL_STATUS_SPEED, 5));
  }

  void queueAndSegmentArePrivateAndGoOnlyWhenTold() {
    Start();
    msqid_ds queue{};
    QCOMPARE(msgctl(mQueue, IPC_STAT, &queue), 0);
    QCOMPARE(int(queue.msg_perm.mode & 0777), 0600);
    shmid_ds segment{};
    QCOMPARE(shmctl(shmget(kKey + 1, 0, 0), IPC_STAT, &segment), 0);
    QCOMPARE(int(segment.shm_perm.mode & 0777), 0600);
    QCOMPARE(qsizetype(segment.shm_segsz), qsizetype(16 * GUI_SLOT_SIZE));
    mRecorder.reset();
    QVERIFY(msgget(kKey, 0) >= 0 && shmget(kKey + 1, 0, 0) >= 0);
    // Another key: this program's platform library stays attached to the first one.
    qputenv("PLATFORM_KEY", "0x46" + QByteArray::number(getpid() & 0xFFFFFF, 16).rightJustified(6, '0'));
    const key_t other = 0x46000000 + (getpid() & 0xFFFFFF);
    Start();
    QVERIFY(msgget(other, 0) >= 0 && shmget(other + 1, 0, 0) >= 0);
    mRecorder.reset();
    Recorder::RemoveTransport();
    QVERIFY(msgget(other, 0) < 0 && shmget(other + 1, 0, 0) < 0);
  }

  void aSegmentOfAnotherSizeIsRefused_data() {
    QTest::addColumn<int>("bytes");
    QTest::newRow("smaller") << 15 * GUI_SLOT_SIZE;
    QTest::newRow("larger") << 17 * GUI_SLOT_SIZE;
  }
  void aSegmentOfAnotherSizeIsRefused() {
    QFETCH(int, bytes);
    const key_t other = 0x45000000 + 2 * getpid();
    qputenv("PLATFORM_KEY", QByteArray::number(other));
    const int segment = shmget(other + 1, static_cast<size_t>(bytes), IPC_CREAT | IPC_EXCL | 0600);
    QVERIFY(segment >= 0);
    QString error;
    const bool started = Start(Quick(), &error);
    mRecorder.reset();
    Recorder::RemoveTransport();
    QVERIFY(!started);
    QVERIFY(IsSentence(error));
  }

  void aKeyThatIsNoneIsRefused_data() {
    QTest::addColumn<QByteArray>("key");
    for (const char* key : {"", "queue", "0", "0x", "-5", "0xFFFFFFFF", "4294967296", "12 13"})
      QTest::newRow(key) << QByteArray(key);
  }
  void aKeyThatIsNoneIsRefused() {
    QFETCH(QByteArray, key);
    qputenv("PLATFORM_KEY", key);
    QString error;
    QVERIFY(!Start(Quick(), &error));
    QVERIFY(IsSentence(error));
  }

  // ---- start

  void startLeavesWhatTheInterfaceNeeds() {
    QDir().mkpath(root.Path("/tmp"));
    const QStringList stale{"/tmp/ndf", "/tmp/.info.bin", "/tmp/update.zel", "/tmp/update.zel2", "/tmp/picture.bmp"};
    for (const QString& file : stale) root.Write(file, "old");
    root.Write("/tmp/kept", "old");
    Start();
    for (const QString& file : stale) QVERIFY2(!root.Exists(file), qPrintable(file));
    QVERIFY(root.Exists("/tmp/kept"));
    for (const char* folder : {"/opt/gui/ini", "/mnt/mmc/Setup", "/mnt/nand", "/tmp", "/run"})
      QVERIFY2(QFileInfo(root.Path(folder)).isDir(), folder);
    struct stat folder {};
    QCOMPARE(stat(qPrintable(root.Path("/run")), &folder), 0);
    QCOMPARE(int(folder.st_mode & 0777), 0700);
    QVERIFY(root.Exists(kIni));
  }

  void theLedListIsOneThatTheInterfaceTakes() {
    Start();
    const QByteArray list = root.Read("/opt/led.zel");
    const int number = list[0];
    QVERIFY(number >= 2 && number <= 20);
    QCOMPARE(list.size(), 4 + 155 * number);
    QVERIFY(list[3] >= 0 && list[3] <= 2);
    QCOMPARE(list.mid(5, 13), QByteArray("Security LED\0", 13));
    QCOMPARE(list.mid(4 + 155 + 1, 12), QByteArray("Korvo Black\0", 12));
    int shown = 0;
    for (int i = 0; i < number; ++i) {
      const QByteArray entry = list.mid(4 + 155 * i, 155);
      shown += entry[0];
      const int codes = qFromLittleEndian<quint16>(entry.constData() + 21);
      const int columns = qFromLittleEndian<quint16>(entry.constData() + 88);
      QVERIFY(codes > 0 && codes <= 65 && columns <= 65);
      QCOMPARE(columns, 2 * codes);
      for (int code = 1; code < codes; code += 2) QCOMPARE(entry[23 + code], '$');
      QCOMPARE(entry.mid(23 + codes, 65 - codes), QByteArray(65 - codes, '\0'));
      QCOMPARE(entry.mid(90 + columns), QByteArray(65 - columns, '\0'));
    }
    QCOMPARE(shown, 1);
    QCOMPARE(list.mid(4 + 155 * 2 + 90, 4), QByteArray("\x11\x1F\x10\x00", 4));  // a 1
  }

  void theDriversLedListIsKeptAndABadOneReplaced() {
    Start();
    QByteArray list = root.Read("/opt/led.zel");
    const QByteArray factory = list;
    list[3] = 2;
    root.Write("/opt/led.zel", list);
    Start();
    QCOMPARE(root.Read("/opt/led.zel"), list);
    for (const QByteArray& bad : {QByteArray(), QByteArray("\x03\0", 2), QByteArray(4, '\0'), list.chopped(1),
                                  QByteArray("\x02\0\0\x03", 4) + list.mid(4)}) {
      root.Write("/opt/led.zel", bad);
      Start();
      QCOMPARE(root.Read("/opt/led.zel"), factory);
    }
  }

  void aSecondRecorderIsRefusedAndHarmsNothing() {
    Start();
    root.Write("/tmp/ndf", "");
    QVERIFY(mRecorder->SendStatus(RECV_ZEL_STATUS_SPEED, 3));
    Recorder second(root.Path(QString()));
    QString error;
    QVERIFY(!second.Start(&error));
    QVERIFY(IsSentence(error));
    QVERIFY(root.Exists("/tmp/ndf"));
    QVERIFY(Came(RECV_ZEL_STATUS_SPEED, 3));
    QCOMPARE(Ask(SFIELD_SET_LCD_BRIGHT, 1), 0);
  }

  void aSocketThatADeadRecorderLeftIsReplaced() {
    QDir().mkpath(root.Path("/run"));
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    const QByteArray path = root.Path("/run/recorder.sock").toLocal8Bit();
    std::memcpy(address.sun_path, path.constData(), static_cast<size_t>(path.size()));
    const int dead = socket(AF_UNIX, SOCK_SEQPACKET | SOCK_CLOEXEC, 0);
    QCOMPARE(bind(dead, reinterpret_cast<const sockaddr*>(&address), sizeof address), 0);
    QCOMPARE(listen(dead, 1), 0);
    close(dead);
    QVERIFY(root.Exists("/run/recorder.sock"));
    Start();
    QCOMPARE(Ask(SFIELD_SET_LCD_BRIGHT, 1), 0);
    mRecorder.reset();
    QVERIFY(!root.Exists("/run/recorder.sock"));
  }

  void aRootThatCannotBeOneIsRefused_data() {
    QTest::addColumn<QString>("folder");
    QTest::newRow("none") << QString();
    QTest::newRow("too long for a socket") << root.Path(u'/' + QString(120, u'x'));
    QTest::newRow("below a file") << root.Path("/a-file/root");
  }
  void aRootThatCannotBeOneIsRefused() {
    QFETCH(QString, folder);
    root.Write("/a-file", "");
    Recorder recorder(folder);
    QString error;
    QVERIFY(!recorder.Start(&error));
    QVERIFY(IsSentence(error));
  }

  // ---- the INI file

  void theIniFileHoldsAllKeysInPlainText() {
    Start();
    const QMap<QString, QString> ini = Ini();
    QCOMPARE(ini.size(), 59);
    QCOMPARE(std::size(kIniKeys), size_t(59));
    for (const char* key : kIniKeys) {
      bool good = false;
      const float number = ini.value(QLatin1String(key)).toFloat(&good);
      QVERIFY2(good && std::isfinite(number), key);
    }
    QCOMPARE(ini["parkingsetting/low_volt_cut_1"], QString("12.4"));
    QCOMPARE(ini["motionmap/front_h"], QString("-61441"));
    QCOMPARE(ini["motionmap/rear_l"], QString("-1"));
    QCOMPARE(ini["timesetting/time_set_flag"], QString("0"));
    QCOMPARE(ini["timesetting/year"].toInt(), QDate::currentDate().year());
  }

  // What somebody sees who only watches: both pictures, the manual recording's key, and an LCD that goes dark by itself
  // after half a minute.
  void aNewDeviceShowsWhatItCan() {
    Start();
    const QMap<QString, QString> ini = Ini();
    QCOMPARE(ini["lcdsetting/lcd_auto_off"], QString("2"));
    QCOMPARE(ini["lcdsetting/lcd_wait_dis"], QString("0"));  // dark, not the clock
    QCOMPARE(ini["view/display"], QString("0"));
    QVERIFY(ini["filedeletesetting/protectfile"].toInt() > 0);
    QVERIFY(ini["parkingsetting/parking_mode_on"].toInt() > 0);
    QVERIFY(mRecorder->Video().rearAlive && mRecorder->Video().recording);
  }

  void theIniFileIsReplacedWhole() {
    Start();
    QFile reader(root.Path(kIni));  // an interface that is just reading it
    QVERIFY(reader.open(QIODevice::ReadOnly));
    const QByteArray before = root.Read(kIni);
    QCOMPARE(Ask(SFIELD_SET_LCD_BRIGHT, 0), 0);
    QVERIFY(root.Read(kIni) != before);
    QCOMPARE(reader.readAll(), before);
    QCOMPARE(QDir(root.Path("/tmp")).entryList(QDir::Files | QDir::Hidden), QStringList("config_init.ini"));
  }

  void settingsOutliveTheRecorder() {
    Start();
    QCOMPARE(Ask(SFIELD_SET_LCD_BRIGHT, 3), 0);
    QCOMPARE(Ask(SFIELD_SET_VIEWREAR, 2), 0);
    QCOMPARE(Ask(SFIELD_SET_PREVIEW_MIRRORING, 1), 0);
    QCOMPARE(Ask(SFIELD_SET_MOVING_PIP, 3), 0);
    const QMap<QString, QString> before = Ini();
    Start();
    const QMap<QString, QString> after = Ini();
    for (const char* key : kIniKeys)
      if (!QByteArray(key).startsWith("timesetting/")) QCOMPARE(after[key], before[key]);
    QCOMPARE(mRecorder->Video().view, VideoPlane::View::Rear);
    QVERIFY(mRecorder->Video().mirrored);
    QCOMPARE(mRecorder->Video().pipCorner, 3);
  }

  void anIniFileThatMakesNoSenseGivesTheDefaults_data() {
    QTest::addColumn<QByteArray>("text");
    QTest::newRow("garbage") << QByteArray("\xFF\x00\x80[[[=\n%%%", 12);
    QTest::newRow("words") << QByteArray("[lcdsetting]\nlcd_bright=bright\n[parkingsetting]\nlow_volt_cut_1=nan\n");
    QTest::newRow("large") << QByteArray("[lcdsetting]\nlcd_bright=0\n") + QByteArray(100000, '\n');
  }
  void anIniFileThatMakesNoSenseGivesTheDefaults() {
    QFETCH(QByteArray, text);
    QDir().mkpath(root.Path("/tmp"));
    root.Write(kIni, text);
    Start();
    QCOMPARE(Ini().size(), 59);
    QCOMPARE(Ini()["lcdsetting/lcd_bright"], QString("2"));
    QCOMPARE(Ini()["parkingsetting/low_volt_cut_1"], QString("12.4"));
  }

  // ---- the setup block

  void everyFieldOfTheSetupBlockIsTaken() {
    Start();
    QByteArray block = Block();
    const QMap<int, const char*> bytes{
        {0, "fwver/major_ver"},
        {1, "fwver/minor_ver"},
        {2, "drivingsetting/fps"},
        {4, "audiosetting/volume"},
        {5, "drivingsetting/gsensor_trg_lvl"},
        {6, "parkingsetting/parking_mode_on"},
        {7, "drivingsetting/resolution"},
        {8, "parkingsetting/park_lvl"},
        {9, "drivingsetting/gain"},
        {11, "parkingsetting/motion_lvl"},
        {12, "audiosetting/event_buzer"},
        {13, "filedeletesetting/efile_del_method"},
        {14, "filedeletesetting/n_file_rate"},
        {15, "filedeletesetting/e_file_rate"},
        {16, "filedeletesetting/p_file_rate"},
        {17, "drivingsetting/gps_speed_display"},
        {18, "view/display"},
        {27, "drivingsetting/gain2"},
        {28, "audiosetting/buzer_flag"},
        {29, "audiosetting/spk_volume"},
        {30, "fwver/minor_ver2"},
        {31, "audiosetting/acc_volume"},
        {32, "parkingsetting/chk_park_lvl"},
        {33, "parkingsetting/power_cut_lvl"},
        {34, "parkingsetting/power_cut_time"},
        {35, "parkingsetting/power_cut_lvl_type"},
        {37, "lcdsetting/lcd_auto_off"},
        {38, "lcdsetting/lcd_bright"},
        {39, "lcdsetting/lcd_wait_dis"},
        {40, "ledsetting/settingchange"},
    };
    for (auto byte = bytes.cbegin(); byte != bytes.cend(); ++byte)
      block[byte.key()] = static_cast<char>(150 + byte.key());  // above 127: unsigned, and no two alike
    Put<qint32>(&block, 41, 0x000000F7);                        // -9 hours in its lowest byte
    Put<quint32>(&block, 49, 30);
    Put<quint32>(&block, 53, 1);
    for (int level = 0; level < 12; ++level) Put<float>(&block, 57 + 4 * level, 11.1F + 0.2F * float(level));
    Put<quint64>(&block, 105, 0x8123456789ABCDEFU);
    Put<quint64>(&block, 113, 0x00000FFF80000001U);
    Put<qint32>(&block, 121, -77);
    Put<qint32>(&block, 125, 1);
    QCOMPARE(Ask(SFIELD_SET_SETUP_COMPLETE, block), 0);

    const QMap<QString, QString> ini = Ini();
    for (auto byte = bytes.cbegin(); byte != bytes.cend(); ++byte)
      QCOMPARE(ini[byte.value()], QString::number(150 + byte.key()));
    QCOMPARE(ini["timesetting/gmt"], QString("-9"));
    QCOMPARE(ini["filedeletesetting/protectfile"], QString("30"));
    QCOMPARE(ini["parkingsetting/rear_cam_power"], QString("1"));
    for (int level = 0; level < 12; ++level)
      QCOMPARE(ini["parkingsetting/low_volt_cut_" + QString::number(level + 1)].toFloat(), 11.1F + 0.2F * float(level));
    QCOMPARE(ini["motionmap/front_h"].toInt(), int(0x81234567U));
    QCOMPARE(ini["motionmap/front_l"].toInt(), int(0x89ABCDEFU));
    QCOMPARE(ini["motionmap/rear_h"].toInt(), 0x00000FFF);
    QCOMPARE(ini["motionmap/rear_l"].toInt(), int(0x80000001U));
    QCOMPARE(ini["parkingsetting/park_file_volume"], QString("-77"));
    QCOMPARE(ini["parkingsetting/manual_volt_use"], QString("1"));
    QCOMPARE(ini.size(), 59);

    const QJsonObject setup = State("setup");
    QCOMPARE(setup["major_ver"].toInt(), 150);
    QCOMPARE(setup["led_display"].toInt(), 190);
    QCOMPARE(setup["model"].toInt(), 200);
    QCOMPARE(setup["gmt_hour"].toInt(), -9);
    QCOMPARE(setup["low_volt_cut"].toArray().size(), 12);
    QCOMPARE(setup["low_volt_cut"].toArray()[0].toDouble(), 11.1);
    QCOMPARE(setup["motion_area1"].toString(), QString("0x8123456789abcdef"));
    QCOMPARE(setup["park_file_volume"].toInt(), -77);
    QCOMPARE(setup.size(), 49);
  }

  void theClockIsSetOnlyWhenTheBlockSaysSo_data() {
    QTest::addColumn<int>("flag");
    QTest::addColumn<int>("month");
    QTest::addColumn<bool>("taken");
    QTest::newRow("not set") << 0 << 11 << false;
    QTest::newRow("set") << 1 << 11 << true;
    QTest::newRow("another flag") << 2 << 11 << false;
    QTest::newRow("a month that does not exist") << 1 << 13 << false;
  }
  void theClockIsSetOnlyWhenTheBlockSaysSo() {
    QFETCH(int, flag);
    QFETCH(int, month);
    QFETCH(bool, taken);
    Start();
    QByteArray block = Block();
    block[20] = static_cast<char>(flag);
    Put<quint16>(&block, 21, 2031);
    block[23] = static_cast<char>(month);
    block[24] = 30;
    block[25] = 23;
    block[26] = 59;
    Put<qint32>(&block, 41, 3);
    QCOMPARE(Ask(SFIELD_SET_SETUP_COMPLETE, block), 0);
    const QMap<QString, QString> ini = Ini();
    QCOMPARE(ini["timesetting/year"] == "2031", taken);
    if (taken) {
      QCOMPARE(ini["timesetting/month"], QString("11"));
      QCOMPARE(ini["timesetting/day"], QString("30"));
      QCOMPARE(ini["timesetting/hour"], QString("23"));
      QCOMPARE(ini["timesetting/min"], QString("59"));
    }
    QCOMPARE(ini["timesetting/time_set_flag"], QString("0"));  // an order, carried out
    QCOMPARE(ini["timesetting/gmt"], QString("3"));            // the zone goes without the flag
    QCOMPARE(State("setup")["time_set_flag"].toInt(), flag);
    QCOMPARE(State("setup")["year"].toInt(), 2031);
    // The device's clock with it, and it is kept.
    const qint64 offset = mRecorder->State().value("clockOffset").toInteger();
    const qint64 wanted =
        taken ? QDateTime::currentDateTime().secsTo(QDateTime(QDate(2031, 11, 30), QTime(23, 59))) : 0;
    QVERIFY(std::abs(offset - wanted) <= 2);
    Start();
    QCOMPARE(mRecorder->State().value("clockOffset").toInteger(), offset);
  }

  void theBlockBeforeIsRemembered() {
    Start();
    QVERIFY(State("setupBefore").isEmpty());
    QByteArray block = Block();
    block[5] = 1;
    QCOMPARE(Ask(SFIELD_SET_SETUP_COMPLETE, block), 0);
    QVERIFY(State("setupBefore").isEmpty());
    block[5] = 3;
    QCOMPARE(Ask(SFIELD_SET_SETUP_COMPLETE, block), 0);
    QCOMPARE(State("setupBefore")["gsensor_trg_lvl"].toInt(), 1);
    QCOMPARE(State("setup")["gsensor_trg_lvl"].toInt(), 3);
  }

  void theClockIsSetByTheBench_data() {
    QTest::addColumn<QString>("to");
    QTest::addColumn<QDateTime>("time");
    const QTime late(23, 59, 50);
    QTest::newRow("midnight") << "midnight" << QDateTime(QDate::currentDate(), late);
    QTest::newRow("leap day") << "leap day" << QDateTime(QDate(2028, 2, 28), late);
    QTest::newRow("invalid") << "invalid" << QDateTime(QDate(2100, 1, 1), QTime(0, 0));
  }
  void theClockIsSetByTheBench() {
    QFETCH(QString, to);
    QFETCH(QDateTime, time);
    Start();
    QVERIFY(Do("clock", {{"to", to}}));
    const qint64 offset = mRecorder->State().value("clockOffset").toInteger();
    QVERIFY(std::abs(QDateTime::currentDateTime().secsTo(time) - offset) <= 2);
    QCOMPARE(root.Read("/run/clock"),
             (offset < 0 ? QByteArray() : QByteArray("+")) + QByteArray::number(offset) + '\n');
    QVERIFY(Do("clock", {{"to", "real"}}));
    QCOMPARE(root.Read("/run/clock"), QByteArray("+0\n"));
  }
  void aClockFileThatIsNoneIsThisMachinesClock_data() {
    QTest::addColumn<QByteArray>("bytes");
    for (const char* bytes : {"", "tomorrow", "99999999999999999999", "+99999999999999", "1e9", "+5 d"})
      QTest::newRow(bytes) << QByteArray(bytes);
  }
  void aClockFileThatIsNoneIsThisMachinesClock() {
    QFETCH(QByteArray, bytes);
    QDir(root.Path("/")).mkpath("run");
    root.Write("/run/clock", bytes);
    Start();
    QCOMPARE(mRecorder->State().value("clockOffset").toInteger(), 0);
    QCOMPARE(root.Read("/run/clock"), QByteArray("+0\n"));
  }
  void aPipeInPlaceOfTheClockHoldsNobodyUp() {
    QDir(root.Path("/")).mkpath("run");
    QCOMPARE(mkfifo(qPrintable(root.Path("/run/clock")), 0600), 0);
    Start();
    QCOMPARE(root.Read("/run/clock"), QByteArray("+0\n"));
  }

  // ---- time that runs faster, or passes

  void theClockRunsFaster() {
    Start();
    const auto offset = [this] { return mRecorder->State().value("clockOffset").toInteger(); };
    QCOMPARE(mRecorder->State().value("timeSpeed").toInt(), 1);
    QElapsedTimer passed;
    passed.start();
    QVERIFY(Do("timeSpeed", {{"speed", "60"}}));
    QCOMPARE(mRecorder->State().value("timeSpeed").toInt(), 60);
    // The file follows by itself, once a second.
    QTRY_VERIFY(root.Read("/run/clock").trimmed().toInt() >= 59);
    const qint64 ahead = offset();
    QVERIFY(ahead <= 59 * passed.elapsed() / 1000 + 1);
    QVERIFY(Do("timeSpeed", {{"speed", "1"}}));
    const qint64 there = offset();
    QVERIFY(there >= 59);
    QCOMPARE(root.Read("/run/clock").trimmed().toLongLong(), there);
    QTest::qWait(100);  // in which it would gain six seconds
    QCOMPARE(offset(), there);
    QVERIFY(Do("timeSpeed", {{"speed", "10"}}));
    QVERIFY(Do("clock", {{"to", "real"}}));
    QVERIFY(offset() <= 1);
    QTRY_VERIFY(offset() >= 5);
    Start();  // it keeps its clock, but not the speed
    QVERIFY(mRecorder->State().value("timeSpeed").toInt() == 1 && offset() >= 5);
  }

  // A replay leaves out time at the speed of then.
  void timeThatIsLeftOutRunsAsFast() {
    Start();
    QVERIFY(Do("timeSpeed", {{"speed", "60"}}));
    mRecorder->SkipTime(10000);
    QVERIFY(mRecorder->State().value("clockOffset").toInteger() >= 590);
    mRecorder->SkipTime(-10000);
    QVERIFY(mRecorder->State().value("clockOffset").toInteger() < 300);
  }

  void aParkingOvernightPassesAtOnce() {
    Start();
    QVERIFY(Do("parkIn"));
    QVERIFY(Do("timeSkip", {{"minutes", 480}}));
    QVERIFY(Do("impact"));
    QVERIFY(Do("parkOut"));
    const QList<int> report = Report();
    QCOMPARE(report.size(), 7);
    QVERIFY(std::abs(report[2] - report[1] - 480 * 60) <= 2);
    QVERIFY(report[5] >= report[1] + 480 * 60 - 1);  // when the impact was
  }

  void theClockEndsWithItsCentury() {
    Start();
    QVERIFY(Do("clock", {{"to", "invalid"}}));
    QVERIFY(Do("timeSkip", {{"minutes", 1440}}));
    root.Write("/run/clock", "+9990000000\n");
    Start();
    const qint64 before = mRecorder->State().value("clockOffset").toInteger();
    QCOMPARE(Refusal("timeSkip", {{"minutes", 1440}}), QString("The clock cannot go on so far, or cannot be kept."));
    QCOMPARE(mRecorder->State().value("clockOffset").toInteger(), before);
  }

  void noTimePassesInARecordingByHand() {
    Start(Endless());
    QCOMPARE(Ask(SFIELD_SET_CURRENT_RECORDING_FILE_DETECT, 0), 0);
    QCOMPARE(Refusal("timeSkip", {{"minutes", 1}}), QString("A recording is being made by hand."));
  }

  void aSetupBlockOfAnotherModelOrLengthChangesNothing_data() {
    QTest::addColumn<QByteArray>("block");
    QByteArray model = Block();
    model[19] = 100;
    QTest::newRow("model") << model;
    QTest::newRow("a byte less") << Block().chopped(1);
    QTest::newRow("a byte more") << Block() + '\0';
    QTest::newRow("four") << Int(200);
  }
  void aSetupBlockOfAnotherModelOrLengthChangesNothing() {
    QFETCH(QByteArray, block);
    Start();
    const QByteArray before = root.Read(kIni);
    QVERIFY(Ask(SFIELD_SET_SETUP_COMPLETE, block) < 0);
    QCOMPARE(root.Read(kIni), before);
    QVERIFY(State("setup").isEmpty());
    QVERIFY(IsSentence(Last("note").value("name").toString()));
  }

  void aThresholdThatIsNoNumberIsOff() {
    Start();
    QByteArray block = Block();
    Put<float>(&block, 57, std::numeric_limits<float>::quiet_NaN());
    Put<float>(&block, 61, std::numeric_limits<float>::infinity());
    Put<float>(&block, 65, 24.8F);
    QCOMPARE(Ask(SFIELD_SET_SETUP_COMPLETE, block), 0);
    QCOMPARE(Ini()["parkingsetting/low_volt_cut_1"], QString("0"));
    QCOMPARE(Ini()["parkingsetting/low_volt_cut_2"], QString("0"));
    QCOMPARE(Ini()["parkingsetting/low_volt_cut_3"], QString("24.8"));
  }

  // ---- commands

  void everyFieldIsKnownByItsNameAndLength_data() {
    QTest::addColumn<QString>("name");
    QTest::addColumn<QList<int>>("lengths");
    const QMap<int, QList<int>> others{{8580, {1}}, {8586, {50}}, {8658, {129}}, {8672, {4, 8}}, {8673, {8}}};
    QFile header(SOURCE_DIR "/platform/sysctrl.h");
    QVERIFY(header.open(QIODevice::ReadOnly));
    static const QRegularExpression row("(SFIELD_\\w+) = (\\d+)");
    auto match = row.globalMatch(QString::fromUtf8(header.readAll()));
    int rows = 0;
    for (; match.hasNext(); ++rows) {
      const QRegularExpressionMatch field = match.next();
      QTest::newRow(qPrintable(field.captured(2))) << field.captured(1) << others.value(field.captured(2).toInt(), {4});
    }
    QCOMPARE(rows, 41);
  }
  void everyFieldIsKnownByItsNameAndLength() {
    QFETCH(QString, name);
    QFETCH(QList<int>, lengths);
    const int field = QByteArray(QTest::currentDataTag()).toInt();
    Start(Endless());
    RawClient client;
    for (int length : {0, 1, 2, 3, 4, 5, 7, 8, 9, 49, 50, 51, 128, 129, 130, 4000}) {
      const QByteArray data = length == 129 ? Block() : QByteArray(length, '\0');
      const bool right = lengths.contains(length);
      QCOMPARE(client.Ask(Packet(static_cast<quint32>(field), data)) >= 0, right);
      const QJsonObject entry = Last("command");
      QCOMPARE(entry["name"].toString(), name);
      QCOMPARE(entry["field"].toInt(), field);
      QCOMPARE(entry["result"].toInt() >= 0, right);
    }
  }

  void fieldsThatDoNotExistAreRefused() {
    Start();
    RawClient client;
    for (quint32 field : {0U, 1U, 8579U, 8583U, 8668U, 8681U, 0xFFFFFFFFU}) {
      QVERIFY(client.Ask(Packet(field, Int(1))) < 0);
      QCOMPARE(Last("command")["field"].toDouble(), double(field));
    }
  }

  void commandsFailAsManyAsAskedFor() {
    Start();
    QVERIFY(Do("commandsFail", {{"number", 2}}));
    QVERIFY(Ask(SFIELD_VIDEO_REC_STOP, 1) < 0);
    QVERIFY(Last("command")["result"].toInt() < 0);
    QVERIFY(Ask(SFIELD_GET_VOLTAGE, 0) < 0);
    QVERIFY(mRecorder->State()["recording"].toBool());
    QCOMPARE(Ask(SFIELD_VIDEO_REC_STOP, 1), 0);
    QVERIFY(!mRecorder->State()["recording"].toBool());
    QVERIFY(Do("commandsFail", {{"number", 2}}) && Do("commandsFail", {{"number", 0}}));
    QCOMPARE(Ask(SFIELD_VIDEO_REC_START, 0), 0);
  }

  void commandsAreLoggedWithTheirValue() {
    Start();
    QCOMPARE(Ask(SFIELD_SET_LCD_BRIGHT, -3), 0);
    QCOMPARE(
        Last("command"),
        (QJsonObject{
            {"kind", "command"}, {"name", "SFIELD_SET_LCD_BRIGHT"}, {"field", 8655}, {"value", -3}, {"result", 0}}));
    QByteArray path(50, '\0');
    path.replace(0, 10, "/mnt/a.avi");
    QCOMPARE(Ask(SFIELD_PLAY_VIDEO, path), 0);
    QCOMPARE(Last("command")["data"].toString(), QString::fromLatin1(path.toHex()));
  }

  void aPathWithoutItsEndIsRefused() {
    Start();
    QVERIFY(Ask(SFIELD_PLAY_VIDEO, QByteArray(50, 'x')) < 0);
    QCOMPARE(Ask(SFIELD_PLAY_VIDEO, QByteArray(49, 'x') + '\0'), 0);
  }

  void settingsThatAreSentAtOnceAreKept_data() {
    QTest::addColumn<QString>("key");
    QTest::newRow("8600") << "audiosetting/volume";
    QTest::newRow("8602") << "audiosetting/spk_volume";
    QTest::newRow("8632") << "audiosetting/buzer_flag";
    QTest::newRow("8642") << "audiosetting/event_buzer";
    QTest::newRow("8650") << "audiosetting/acc_volume";
    QTest::newRow("8654") << "lcdsetting/lcd_auto_off";
    QTest::newRow("8655") << "lcdsetting/lcd_bright";
    QTest::newRow("8657") << "lcdsetting/lcd_wait_dis";
    QTest::newRow("8660") << "ledsetting/settingchange";
    QTest::newRow("8670") << "view/mirroring";
    QTest::newRow("8671") << "view/movingpip";
    QTest::newRow("8678") << "parkingsetting/rear_cam_power";
  }
  void settingsThatAreSentAtOnceAreKept() {
    QFETCH(QString, key);
    const int field = QByteArray(QTest::currentDataTag()).toInt();
    Start();
    for (int value : {1, 0, 1}) {
      QCOMPARE(Ask(field, value), 0);
      QCOMPARE(Ini()[key], QString::number(value));
      QCOMPARE(State("settings")[key].toInt(), value);
    }
  }

  void motionMapsAreKept() {
    Start();
    QByteArray map(8, '\0');
    Put<quint64>(&map, 0, 0x0000F00080000002U);
    QCOMPARE(Ask(SFIELD_SET_MOTION_SETTING, map), 0);
    QCOMPARE(Ini()["motionmap/front_h"].toInt(), 0xF000);
    QCOMPARE(Ini()["motionmap/front_l"].toInt(), int(0x80000002U));
    QCOMPARE(Ini()["motionmap/rear_h"].toInt(), -61441);
    QCOMPARE(State("motion")["front"].toString(), QString("0000f00080000002"));
    QCOMPARE(State("motion")["rear"].toString(), QString("ffff0fffffffffff"));
    Put<quint64>(&map, 0, 0x8000000000000001U);
    QCOMPARE(Ask(SFIELD_SET_MOTION_SETTING_REAR, map), 0);
    QCOMPARE(Ini()["motionmap/rear_h"].toInt(), int(0x80000000U));
    QCOMPARE(State("motion")["rear"].toString(), QString("8000000000000001"));
    QCOMPARE(Ask(SFIELD_SET_MOTION_SETTING, 0), 0);  // the form without a map
    QCOMPARE(Ini()["motionmap/front_h"].toInt(), 0xF000);
  }

  void theVoltageSwingsSlowly() {
    Start();
    float least = 100;
    float most = 0;
    const auto swung = [&] {
      QByteArray data(4, '\0');
      float volts = 0;
      if (Ask(SFIELD_GET_VOLTAGE, &data) == 0) std::memcpy(&volts, data.constData(), sizeof volts);
      least = std::min(least, volts);
      most = std::max(most, volts);
      return most - least >= 0.05F;
    };
    QTRY_VERIFY(swung());
    QVERIFY(least >= 12.2F && most <= 12.5F);
    QVERIFY(Recorder::Delays().drift >= 10000);  // on the camera
    QCOMPARE(Last("command")["answer"].isDouble(), true);
  }

  void theAutomaticBacklightChangesNowAndThen() {
    Start();
    QSet<int> values;
    const auto changed = [&] {
      QByteArray data = Int(0);
      int value = 0;
      if (Ask(SFIELD_GET_AUTO_LCD_VALUE, &data) == 0) std::memcpy(&value, data.constData(), sizeof value);
      values << value;
      return values.size() >= 3;
    };
    QTRY_VERIFY(changed());
    for (int value : values) QVERIFY(value > 0 && value <= 100000);
  }

  void theOtherQueriesAreAnsweredWithZero() {
    Start();
    for (int field : {SFIELD_GET_ACC, SFIELD_GET_PARKING_MODE_EVENT_FILE, SFIELD_GET_PARKING_MODE_MOTION_FILE}) {
      QByteArray data = Int(77);
      QCOMPARE(Ask(field, &data), 0);
      QCOMPARE(data, Int(0));
    }
  }

  void resettingTheUserDataRestartsWithDefaults() {
    Recorder::Delays delays = Endless();
    delays.restart = 30;
    Start(delays);
    QCOMPARE(Ask(SFIELD_SET_LCD_BRIGHT, 0), 0);
    QCOMPARE(Ask(SFIELD_SET_VIEWREAR, 2), 0);
    bool thereBeforeTheNotice = false;
    connect(mRecorder.get(), &Recorder::Logged, this, [&](const QJsonObject& entry) {
      if (entry["event"].toInt() == RECV_ZEL_STATUS_POWER_OFF) thereBeforeTheNotice = Ini()["view/display"] == "0";
    });
    QCOMPARE(Ask(SFIELD_SET_USER_DATA_INIT, 0), 0);
    QVERIFY(thereBeforeTheNotice);
    QCOMPARE(Ini()["lcdsetting/lcd_bright"], QString("2"));
    QCOMPARE(Ini()["view/display"], QString("0"));
    QCOMPARE(mRecorder->Video().view, VideoPlane::View::Pip);
    QVERIFY(Came(RECV_ZEL_STATUS_POWER_OFF, 0));
    QTRY_COMPARE(mRestarts, 1);
  }

  void theEndOfTheTouchCompensationRemovesTheUpdateMarkers() {
    Start();
    root.Write("/tmp/update.zel", "");
    root.Write("/tmp/update.zel2", "");
    QCOMPARE(Ask(SFIELD_TOUCH_COMP_END, 0), 0);
    QVERIFY(!root.Exists("/tmp/update.zel"));
    QVERIFY(!root.Exists("/tmp/update.zel2"));
  }

  // ---- the start of an interface

  void theStateIsToldAfterTheFirstQueryOfEachInterface() {
    Start();
    const QList<Event> state{{RECV_ZEL_STATUS_CAM_CNT, 2},
                             {RECV_ZEL_STATUS_ACC_SUPPORT, 0},
                             {RECV_ZEL_STATUS_GPS_CONNECT, 2},
                             {RECV_ZEL_STATUS_SPEED, 0}};
    RawClient first;
    QCOMPARE(first.Ask(Packet(SFIELD_REG_CLIENT, "\1")), 0);
    QCOMPARE(first.Ask(Packet(SFIELD_SET_LCD_BRIGHT, Int(1))), 0);
    QVERIFY(first.Ask(Packet(SFIELD_GET_VOLTAGE, "")) < 0);
    QVERIFY(Events().isEmpty());
    QCOMPARE(first.Ask(Packet(SFIELD_GET_VOLTAGE, Int(0))), 0);
    QCOMPARE(Events(), state);
    QCOMPARE(first.Ask(Packet(SFIELD_GET_VOLTAGE, Int(0))), 0);
    QCOMPARE(Events(), state);  // not told again
    mEvents.clear();
    RawClient second;
    QCOMPARE(second.Ask(Packet(SFIELD_GET_VOLTAGE, Int(0))), 0);
    QCOMPARE(Events(), state);
  }

  void anInterfaceThatStartsWhileParkedHearsIt() {
    Start(Endless());
    QVERIFY(Do("rearUnplug") && Do("accModel", {{"state", "on"}}) && Do("gps", {{"state", "searching"}}));
    QVERIFY(Do("speed", {{"kmh", 7}}) && Do("parkIn") && Do("countdown", {{"state", "on"}}));
    Events().clear();
    RawClient client;
    QCOMPARE(client.Ask(Packet(SFIELD_GET_VOLTAGE, Int(0))), 0);
    QCOMPARE(Events(), (QList<Event>{{RECV_ZEL_STATUS_CAM_CNT, 1},
                                     {RECV_ZEL_STATUS_ACC_SUPPORT, 1},
                                     {RECV_ZEL_STATUS_GPS_CONNECT, 1},
                                     {RECV_ZEL_STATUS_SPEED, 7},
                                     {RECV_ZEL_STATUS_PARK_MODE_IN, 0},
                                     {RECV_ZEL_STATUS_LOW_VOLTAGE_POWER_OFF_COUNT, 1}}));
  }

  // It was killed while it showed the recordings.
  void anInterfaceThatStartsFindsTheRecordingUnderWay() {
    Start();
    {
      RawClient client;
      QCOMPARE(client.Ask(Packet(SFIELD_GET_VOLTAGE, Int(0))), 0);
      QCOMPARE(client.Ask(Packet(SFIELD_VIDEO_REC_STOP, Int(1))), 0);
      QCOMPARE(client.Ask(Packet(SFIELD_GET_VOLTAGE, Int(0))), 0);
      QVERIFY(!mRecorder->State()["recording"].toBool());
    }
    RawClient again;
    QCOMPARE(again.Ask(Packet(SFIELD_GET_VOLTAGE, Int(0))), 0);
    QVERIFY(mRecorder->State()["recording"].toBool());
  }

  void theInterfaceFindsARecorderThatComesBack() {
    Start();
    QCOMPARE(Ask(SFIELD_GET_VOLTAGE, 0), 0);
    QVERIFY(Came(RECV_ZEL_STATUS_CAM_CNT, 2));
    mRecorder.reset();
    QVERIFY(Ask(SFIELD_GET_VOLTAGE, 0) < 0);
    Start();
    Events().clear();
    QTRY_COMPARE(Ask(SFIELD_GET_VOLTAGE, 0), 0);
    QVERIFY(Came(RECV_ZEL_STATUS_CAM_CNT, 2));
  }

  // ---- cameras

  void theVideoPlaneFollowsTheCommands() {
    Start();
    int changes = 0;
    connect(mRecorder.get(), &Recorder::VideoChanged, this, [&changes] { ++changes; });
    QCOMPARE(mRecorder->Video().view, VideoPlane::View::Pip);
    QVERIFY(mRecorder->Video().rearAlive && mRecorder->Video().recording);
    QCOMPARE(Ask(SFIELD_SET_VIEWFRONT, 1), 0);
    QCOMPARE(mRecorder->Video().view, VideoPlane::View::Front);
    QCOMPARE(Ask(SFIELD_SET_VIEWREAR, 2), 0);
    QCOMPARE(mRecorder->Video().view, VideoPlane::View::Rear);
    QCOMPARE(Ask(SFIELD_SET_VIEWPIP, 0), 0);
    QCOMPARE(mRecorder->Video().view, VideoPlane::View::Pip);
    QCOMPARE(Ask(SFIELD_SET_PREVIEW_MIRRORING, 1), 0);
    QVERIFY(mRecorder->Video().mirrored);
    for (int corner : {3, 2, 1, 0}) {
      QCOMPARE(Ask(SFIELD_SET_MOVING_PIP, corner), 0);
      QCOMPARE(mRecorder->Video().pipCorner, corner);
    }
    QCOMPARE(Ask(SFIELD_SET_REARCAM_ONOFF, 0), 0);
    QVERIFY(!mRecorder->Video().rearAlive);
    QCOMPARE(Ask(SFIELD_SET_REARCAM_ONOFF, 1), 0);
    QVERIFY(mRecorder->Video().rearAlive);
    QCOMPARE(changes, 10);
    for (int corner : {-1, 4, 1000000}) QVERIFY(Ask(SFIELD_SET_MOVING_PIP, corner) < 0);
    QCOMPARE(mRecorder->Video().pipCorner, 0);
  }

  void theRearCameraIsBlackWhileUnplugged() {
    Start();
    QVERIFY(Do("rearUnplug"));
    QVERIFY(Came(RECV_ZEL_STATUS_REARCAM_DISCONNECT, 0));
    QVERIFY(!mRecorder->Video().rearAlive);
    QVERIFY(Do("rearPlug"));
    QVERIFY(Came(RECV_ZEL_STATUS_REARCAM_CONNECT, 0));
    QVERIFY(mRecorder->Video().rearAlive);
  }

  void theRearCameraSwitchCountsWhileParked() {
    Start();
    QCOMPARE(Ask(SFIELD_SET_REARCAM_ONOFF, 0), 0);
    QVERIFY(Do("parkIn"));
    QVERIFY(!mRecorder->Video().rearAlive);
    QVERIFY(Do("parkOut"));
    QVERIFY(mRecorder->Video().rearAlive);  // the car drives
    QVERIFY(Do("parkIn"));
    QVERIFY(!mRecorder->Video().rearAlive);  // the driver's choice was kept
  }

  // ---- recording and voice

  void stoppingForSavingOrForTheCardEndsWithAVoice() {
    QVERIFY(Recorder::Delays().stopVoice >= 1000 && Recorder::Delays().stopVoice <= 3000);
    Start();
    for (int why : {2, 3}) {
      QCOMPARE(Ask(SFIELD_VIDEO_REC_STOP, why), 0);
      QVERIFY(!mRecorder->Video().recording);
      QVERIFY(Comes(RECV_ZEL_STATUS_VOICE_PLAY_END, 0));
      QCOMPARE(Ask(SFIELD_VIDEO_REC_START, 0), 0);
      QVERIFY(mRecorder->Video().recording);
      QVERIFY(Comes(RECV_ZEL_STATUS_VOICE_PLAY_END, 0));
    }
  }

  void stoppingForTheFileListSaysNothing() {
    Start(Endless());
    QCOMPARE(Ask(SFIELD_VIDEO_REC_STOP, 1), 0);
    QVERIFY(!mRecorder->Video().recording);
    QVERIFY(!State("voice")["speaking"].toBool());
  }

  void everyVolumeIsSpokenAlsoWhenMuted() {
    QVERIFY(Recorder::Delays().voice < 10000);  // the interface waits no longer
    Start();
    QCOMPARE(Ask(SFIELD_SET_AUDIO_OUT_MUTE, 1), 0);
    QVERIFY(Comes(RECV_ZEL_STATUS_VOICE_PLAY_END, 0));
    for (int field : {SFIELD_SET_AUDIO_IN_GAIN, SFIELD_SET_AUDIO_OUT_GAIN}) {
      QCOMPARE(Ask(field, 0), 0);
      QVERIFY(Comes(RECV_ZEL_STATUS_VOICE_PLAY_END, 0));
    }
  }

  void whatIsSaidIsLoggedInItsWords() {
    Start(Endless());
    const auto said = [this](int field, int value) {
      mLog.clear();
      if (Ask(field, value) != 0) return QStringLiteral("refused");
      return Last("voice").value(QStringLiteral("name")).toString();
    };
    QCOMPARE(said(SFIELD_VIDEO_REC_STOP, 2), QStringLiteral("Recording stops."));
    QCOMPARE(said(SFIELD_VIDEO_REC_START, 0), QStringLiteral("Recording starts."));
    QCOMPARE(said(SFIELD_VIDEO_REC_STOP, 1), QString());  // to browse
    QCOMPARE(said(SFIELD_SET_AUDIO_IN_GAIN, 0), QStringLiteral("The microphone is off."));
    QCOMPARE(said(SFIELD_SET_AUDIO_IN_GAIN, 3), QStringLiteral("The microphone is high."));
    QCOMPARE(said(SFIELD_SET_AUDIO_IN_GAIN, 2000000000), QStringLiteral("The microphone is high."));
    QCOMPARE(said(SFIELD_SET_AUDIO_OUT_GAIN, 2), QStringLiteral("The volume is high."));
    QCOMPARE(said(SFIELD_SET_AUDIO_OUT_GAIN, -1), QStringLiteral("The volume is low."));
    QCOMPARE(said(SFIELD_SET_AUDIO_OUT_MUTE, 1), QString());
    QCOMPARE(said(SFIELD_SET_AUDIO_OUT_GAIN, 2), QString());
    QCOMPARE(said(SFIELD_SET_AUDIO_OUT_MUTE, 0), QStringLiteral("The voice is on."));
  }

  void whatHappensIsSaidAsTheDriverWantsIt() {
    Start(Endless());
    const auto said = [this](const char* action) {
      mLog.clear();
      if (!Do(QLatin1String(action))) return QStringLiteral("refused");
      return Last("voice").value(QStringLiteral("name")).toString();
    };
    QCOMPARE(said("shock"), QStringLiteral("Impact detected."));
    QCOMPARE(said("blackspot"), QStringLiteral("Accident blackspot ahead. Drive carefully."));
    QCOMPARE(said("parkIn"), QStringLiteral("Parking mode starts."));
    QCOMPARE(said("impact"), QStringLiteral("Impact detected."));
    QCOMPARE(said("motion"), QString());
    QCOMPARE(said("parkOut"), QStringLiteral("Parking mode ends."));
    QVERIFY(!Events().contains(Event{RECV_ZEL_STATUS_VOICE_PLAY_END, 0}));  // nobody waits for these
    QCOMPARE(Ask(SFIELD_SET_EVENT_BUZER, 0), 0);
    QCOMPARE(Ask(SFIELD_SET_ACC_VOLUME, 0), 0);
    QCOMPARE(said("shock"), QString());
    QCOMPARE(said("blackspot"), QString());
    QCOMPARE(said("parkIn"), QStringLiteral("Parking mode starts."));
  }

  void aVoiceThatIsCutOffDoesNotEndTheOneBeforeEarlier() {
    Recorder::Delays delays = Quick();
    delays.stopVoice = kHour;
    Start(delays);
    QCOMPARE(Ask(SFIELD_VIDEO_REC_STOP, 2), 0);
    QCOMPARE(Ask(SFIELD_SET_AUDIO_IN_GAIN, 1), 0);
    QElapsedTimer passed;
    passed.start();
    QTRY_VERIFY(passed.elapsed() > 3 * delays.voice);
    QVERIFY(State("voice")["speaking"].toBool());
    QVERIFY(Events().isEmpty());
    QVERIFY(Do("voiceEndNow"));
    QVERIFY(Came(RECV_ZEL_STATUS_VOICE_PLAY_END, 0));
    QVERIFY(!State("voice")["speaking"].toBool());
  }

  void theEndOfTheVoiceCanBeSuppressed() {
    Start();
    QVERIFY(Do("voiceEndSuppress", {{"state", "on"}}));
    QCOMPARE(Ask(SFIELD_SET_AUDIO_OUT_GAIN, 1), 0);
    QTRY_VERIFY(!State("voice")["speaking"].toBool());
    QVERIFY(Events().isEmpty());
    QVERIFY(Do("voiceEndSuppress", {{"state", "off"}}));
    QCOMPARE(Ask(SFIELD_SET_AUDIO_OUT_GAIN, 1), 0);
    QVERIFY(Comes(RECV_ZEL_STATUS_VOICE_PLAY_END, 0));
  }

  // ---- manual event recording

  void theMarkerOfAManualEventIsThereAtOnceAndGoes() {
    QCOMPARE(Recorder::Delays().manualEvent, 10000);
    Start();
    QCOMPARE(Ask(SFIELD_SET_CURRENT_RECORDING_FILE_DETECT, 0), 0);
    QVERIFY(root.Exists("/tmp/ndf"));
    QVERIFY(mRecorder->State()["manualEvent"].toBool());
    QTRY_VERIFY(!root.Exists("/tmp/ndf"));
    QVERIFY(!mRecorder->State()["manualEvent"].toBool());
  }

  void theMarkerOfAManualEventDoesNotOutliveTheRecorder() {
    Start(Endless());
    QCOMPARE(Ask(SFIELD_SET_CURRENT_RECORDING_FILE_DETECT, 0), 0);
    QCOMPARE(Ask(SFIELD_SET_CURRENT_RECORDING_FILE_DETECT, 0), 0);  // one at a time
    QVERIFY(root.Exists("/tmp/ndf"));
    mRecorder.reset();
    QVERIFY(!root.Exists("/tmp/ndf"));
  }

  // ---- parking

  void theParkingReportHasItsExactBytes() {
    Start();
    const int before = int(QDateTime::currentSecsSinceEpoch());
    QVERIFY(Do("parkIn", {{"minutesAgo", 120}}));
    QVERIFY(Came(RECV_ZEL_STATUS_PARK_MODE_IN, 0));
    QVERIFY(Do("impact", {{"minutesAgo", 60}}));
    QVERIFY(Do("impact"));
    QVERIFY(Do("motion", {{"minutesAgo", 1000}}));  // before the parking: at its start
    QCOMPARE(State("parking")["impacts"].toInt(), 2);
    QVERIFY(!root.Exists(kReport));
    QVERIFY(Do("parkOut"));
    const int after = int(QDateTime::currentSecsSinceEpoch());

    QCOMPARE(root.Read(kReport).size(), 20 + 4 * 2 + 4 + 4 * 1);
    const QList<int> report = Report();
    const int start = report[1];
    QCOMPARE(report[0], 1);
    QVERIFY(start >= before - 7200 && start <= after - 7200);
    QVERIFY(report[2] >= before && report[2] <= after);  // the end
    QCOMPARE(report[3], 0);                              // no low voltage
    QCOMPARE(report[4], 2);
    QVERIFY(report[5] >= before - 3600 && report[5] <= after - 3600);
    QVERIFY(report[6] >= before && report[6] <= after);
    QCOMPARE(report[7], 1);
    QCOMPARE(report[8], start);
    QVERIFY(Came(RECV_ZEL_STATUS_PARK_MODE_OUT, 0));
  }

  void theReportIsThereBeforeTheInterfaceIsTold() {
    Start();
    QVERIFY(Do("parkIn"));
    bool there = false;
    connect(mRecorder.get(), &Recorder::Logged, this, [&there](const QJsonObject& entry) {
      if (entry["event"].toInt() == RECV_ZEL_STATUS_PARK_MODE_OUT) there = root.Read(kReport).size() == 24;
    });
    QVERIFY(Do("parkOut"));
    QVERIFY(there);
  }

  void aShortParkingStillHasADuration() {
    Start();
    QVERIFY(Do("parkIn") && Do("parkOut"));
    QVERIFY(Report()[2] > Report()[1]);
    QCOMPARE(Report().mid(3), (QList<int>{0, 0, 0}));
  }

  void aParkingThatEndsByLowVoltageHasNoEnd() {
    Start();
    QVERIFY(Do("parkIn", {{"minutesAgo", 5}}) && Do("parkLowVoltage"));
    QCOMPARE(Report()[2], 0);
    QVERIFY(Report()[3] > Report()[1]);
    QVERIFY(Came(RECV_ZEL_STATUS_PARK_MODE_OUT, 0));
  }

  void eachParkingHasItsOwnReport() {
    Start();
    QVERIFY(Do("parkIn") && Do("impact") && Do("motion") && Do("parkOut"));
    QCOMPARE(Report()[4], 1);
    QVERIFY(Do("parkIn") && Do("parkOut"));
    QCOMPARE(Report()[4], 0);
    QCOMPARE(Report()[5], 0);
  }

  void parkingActionsThatDoNotFitAreRefused() {
    Start();
    for (const char* name : {"parkOut", "parkLowVoltage", "impact", "motion"}) QVERIFY(IsSentence(Refusal(name)));
    QVERIFY(Do("parkIn"));
    QVERIFY(IsSentence(Refusal("parkIn")));
    Events().clear();
    for (int impact = 0; impact < 1000; ++impact) QVERIFY(Do("impact"));
    QVERIFY(IsSentence(Refusal("impact")));
    QVERIFY(Do("motion") && Do("parkOut"));
    QCOMPARE(Report()[4], 1000);
    QCOMPARE(Report().size(), 5 + 1000 + 1 + 1);
  }

  // ---- power

  void aLowBatteryCountsDownToThePowerOff() {
    QCOMPARE(Recorder::Delays().powerOff, 30000);
    Start();
    QVERIFY(Do("battery", {{"volts", 11.2}}));
    QVERIFY(Came(RECV_ZEL_STATUS_LOW_VOLTAGE_POWER_OFF_COUNT, 1));
    QVERIFY(Comes(RECV_ZEL_STATUS_POWER_OFF, 0));
    QVERIFY(!State("power")["counting"].toBool());
  }

  void aBatteryThatRecoversStopsTheCountdown() {
    Start(Endless());
    QVERIFY(Do("battery", {{"volts", 11.2}}));
    QVERIFY(Do("battery", {{"volts", 11.0}}));  // still low: nothing new
    QCOMPARE(Events(), (QList<Event>{{RECV_ZEL_STATUS_LOW_VOLTAGE_POWER_OFF_COUNT, 1}}));
    QVERIFY(State("power")["counting"].toBool());
    QVERIFY(Do("battery", {{"volts", 12.6}}));
    QVERIFY(Came(RECV_ZEL_STATUS_LOW_VOLTAGE_POWER_OFF_COUNT, 0));
    QVERIFY(!State("power")["counting"].toBool());
    QVERIFY(std::abs(State("power")["volts"].toDouble() - 12.6) < 0.13);
  }

  void aBatteryOf24VoltsIsLowEarlier() {
    Start(Endless());
    QVERIFY(Do("battery", {{"volts", 24.4}}));
    QByteArray block = Block();
    block[35] = 1;
    QCOMPARE(Ask(SFIELD_SET_SETUP_COMPLETE, block), 0);
    QVERIFY(Do("battery", {{"volts", 22.9}}));
    QVERIFY(Came(RECV_ZEL_STATUS_LOW_VOLTAGE_POWER_OFF_COUNT, 1));
  }

  void theVerdictComesAfterBothMeasurements_data() {
    QTest::addColumn<QString>("verdict");
    QTest::addColumn<int>("value");
    QTest::newRow("success") << "success" << 1;
    QTest::newRow("failure") << "failure" << 0;
    QTest::newRow("no answer") << "no answer" << -1;
  }
  void theVerdictComesAfterBothMeasurements() {
    QFETCH(QString, verdict);
    QFETCH(int, value);
    Recorder::Delays delays = Quick();
    delays.verdict = 20;
    Start(delays);
    QVERIFY(Do("voltageVerdict", {{"verdict", verdict}}));
    for (const QList<int>& steps : {QList<int>{0, 1, 2, 3, 4}, QList<int>{0, 3, 4, 1, 2}}) {
      for (const int step : steps) {
        QVERIFY(!Came(RECV_ZEL_STATUS_VOLT_SET, value));
        QCOMPARE(Ask(SFIELD_VOLTAGE_COMPENSATION, step), 0);
      }
      if (value >= 0) {
        QVERIFY(Comes(RECV_ZEL_STATUS_VOLT_SET, value));
      } else {
        QTest::qWait(100);  // longer than a verdict takes
        for (const Event& event : Events()) QVERIFY(event.event != RECV_ZEL_STATUS_VOLT_SET);
      }
    }
  }
  void aNewCompensationForgetsTheMeasurements() {
    Recorder::Delays delays = Quick();
    delays.verdict = 20;
    Start(delays);
    for (const int step : {0, 1, 2, 0, 3, 4}) QCOMPARE(Ask(SFIELD_VOLTAGE_COMPENSATION, step), 0);
    QTest::qWait(100);  // longer than a verdict takes
    for (const Event& event : Events()) QVERIFY(event.event != RECV_ZEL_STATUS_VOLT_SET);
  }
  void anotherBatteryIsPutIn() {
    Start(Endless());
    QVERIFY(Do("batteryType", {{"type", "24 V"}}));
    QCOMPARE(mRestarts, 1);
    QCOMPARE(Ini()["parkingsetting/power_cut_lvl_type"], QString("1"));
    QVERIFY(std::abs(State("power")["battery"].toDouble() - 24.68) < 0.01);
    for (const Event& event : Events())
      QVERIFY(event.event != RECV_ZEL_STATUS_LOW_VOLTAGE_POWER_OFF_COUNT || event.value == 0);
    QVERIFY(Do("batteryType", {{"type", "12 V"}}));
    QCOMPARE(Ini()["parkingsetting/power_cut_lvl_type"], QString("0"));
    QVERIFY(std::abs(State("power")["battery"].toDouble() - 12.34) < 0.01);
  }
  void theFactorySettingsComeBack() {
    Start();
    const QMap<QString, QString> factory = Ini();
    QByteArray block = Block();
    block[5] = 3;
    QCOMPARE(Ask(SFIELD_SET_SETUP_COMPLETE, block), 0);
    QVERIFY(Ini()["drivingsetting/gsensor_trg_lvl"] == "3");
    QVERIFY(Do("factoryReset"));
    QCOMPARE(mRestarts, 1);
    QCOMPARE(Ini()["drivingsetting/gsensor_trg_lvl"], factory["drivingsetting/gsensor_trg_lvl"]);
  }

  // ---- actions

  void actionsSendTheirEvents_data() {
    QTest::addColumn<QJsonObject>("arguments");
    QTest::addColumn<int>("event");
    QTest::addColumn<int>("value");
    const auto row = [](const char* name, const QJsonObject& arguments, int event, int value) {
      QTest::addRow("%s %s", name, QJsonDocument(arguments).toJson(QJsonDocument::Compact).constData())
          << arguments << event << value;
    };
    row("powerKey", {}, 28, 0);
    row("rearPlug", {}, 25, 0);
    row("rearUnplug", {}, 33, 0);
    row("rearError", {}, 9, 0);
    row("parkIn", {}, 14, 0);
    row("parkIn", {{"minutesAgo", 14400}}, 14, 0);
    row("closeReport", {}, 38, 0);
    row("battery", {{"volts", 9}}, 35, 1);
    row("countdown", {{"state", "on"}}, 35, 1);
    row("countdown", {{"state", "off"}}, 35, 0);
    row("underVoltage", {}, 16, 0);
    row("normalVoltage", {}, 17, 0);
    row("overTemperature", {}, 18, 0);
    row("normalTemperature", {}, 19, 0);
    row("accModel", {{"state", "on"}}, 37, 1);
    row("accModel", {{"state", "off"}}, 37, 0);
    row("sdOut", {}, 5, 0);
    row("sdError", {{"code", "0"}}, 6, 0);
    row("sdError", {{"code", "5"}}, 6, 5);
    row("sdError", {{"code", 7}}, 6, 7);
    row("sdWorn", {}, 8, 8);
    row("sdFormatNeeded", {}, 7, 0);
    row("gps", {{"state", "none"}}, 11, 0);
    row("gps", {{"state", "searching"}}, 11, 1);
    row("gps", {{"state", "fix"}}, 11, 2);
    row("speed", {{"kmh", 0}}, 24, 0);
    row("speed", {{"kmh", 300}}, 24, 300);
    for (int code = 0; code <= 18; ++code) row("hwError", {{"code", code}}, 8, code);
    row("clockBroken", {}, 10, 0);
    row("ledFailed", {}, 31, 0);
    row("mute", {{"state", "on"}}, 12, 0);
    row("mute", {{"state", "off"}}, 13, 0);
    row("blackspot", {}, 21, 0);
    row("voiceEndNow", {}, 29, 0);
    for (int number = 1; number <= 4; ++number) row("notice", {{"number", number}}, number, 0);
    row("event", {{"event", 34}, {"value", -2147483648.0}}, 34, std::numeric_limits<int>::min());
    row("event", {{"event", 38}, {"value", 1}}, 38, 1);
  }
  void actionsSendTheirEvents() {
    QFETCH(QJsonObject, arguments);
    QFETCH(int, event);
    QFETCH(int, value);
    Start(Endless());
    const QString name = QString::fromLatin1(QTest::currentDataTag()).section(u' ', 0, 0);
    QVERIFY(Do(name, arguments));
    QCOMPARE(Events(), (QList<Event>{{event, value}}));
    QCOMPARE(Last("action"),
             (QJsonObject{{"kind", "action"}, {"name", name}, {"arguments", arguments}, {"result", 0}}));
  }

  void stateTellsWhatTheActionsDid() {
    Start(Endless());
    QVERIFY(Do("gps", {{"state", "none"}}) && Do("speed", {{"kmh", 88}}) && Do("accModel", {{"state", "on"}}));
    const QJsonObject state = mRecorder->State();
    QCOMPARE(state["gps"].toInt(-1), 0);
    QCOMPARE(state["speed"].toInt(), 88);
    QVERIFY(state["accModel"].toBool());
    const QList<std::pair<QString, QString>> cards{
        {"sdOut", "out"}, {"sdIn", "good"}, {"sdWorn", "worn"}, {"sdFormatNeeded", "needs format"}};
    for (const auto& [action, card] : cards) {
      QVERIFY(Do(action));
      QCOMPARE(mRecorder->State()["card"].toString(), card);
    }
    QVERIFY(Do("sdError", {{"code", "5"}}));
    QCOMPARE(mRecorder->State()["card"].toString(), QString("error"));
  }

  void markersAreMadeAndTheDeviceRestarts_data() {
    QTest::addColumn<QString>("action");
    QTest::addColumn<QString>("choice");
    QTest::addColumn<QString>("file");
    QTest::newRow("update") << "updateMarker"
                            << "update.zel"
                            << "/tmp/update.zel";
    QTest::newRow("update 2") << "updateMarker"
                              << "update.zel2"
                              << "/tmp/update.zel2";
    QTest::newRow("check") << "touchMarker"
                           << "check"
                           << "/mnt/mmc/touch_check.txt";
    QTest::newRow("test") << "touchMarker"
                          << "test"
                          << "/mnt/mmc/touch_test.txt";
    QTest::newRow("reset") << "touchMarker"
                           << "reset"
                           << "/mnt/mmc/touch.txt";
  }
  void markersAreMadeAndTheDeviceRestarts() {
    QFETCH(QString, action);
    QFETCH(QString, choice);
    QFETCH(QString, file);
    Start();
    QVERIFY(!root.Exists(file));
    QVERIFY(Do(action, {{"file", choice}}));
    QVERIFY(root.Exists(file));
    QCOMPARE(mRestarts, 1);
    QVERIFY(Do("removeMarkers"));
    QVERIFY(!root.Exists(file));
    QCOMPARE(mRestarts, 1);
  }

  void everyActionIsDescribedForAPage() {
    const QJsonArray actions = Recorder::Actions();
    QSet<QString> names;
    for (const QJsonValue& value : actions) {
      const QJsonObject action = value.toObject();
      QVERIFY(!action["name"].toString().isEmpty() && !action["group"].toString().isEmpty());
      QVERIFY(action["label"].toString().at(0).isUpper());
      QVERIFY(action["arguments"].isArray());
      names << action["name"].toString();
    }
    QCOMPARE(names.size(), actions.size());
    // Each of them is tried in this test: by its event, or one of these.
    for (const char* other : {"impact", "motion", "parkOut", "parkLowVoltage", "sdIn", "voiceEndSuppress",
                              "updateMarker", "touchMarker", "removeMarkers", "clock", "timeSpeed", "timeSkip",
                              "batteryType", "voltageVerdict", "factoryReset", "commandsFail"})
      QVERIFY2(names.remove(QLatin1String(other)), other);
    // Or in those of the report and of the update.
    for (const char* other : {"report", "update"}) QVERIFY2(names.remove(QLatin1String(other)), other);
    // Or in the test of the recordings.
    for (const char* other : {"shock", "sdFull", "sdFullStop", "sdCorrupt", "sdCheckFinds", "sdFormatFails"})
      QVERIFY2(names.remove(QLatin1String(other)), other);
    for (const char* event : {"powerKey",
                              "rearPlug",
                              "rearUnplug",
                              "rearError",
                              "parkIn",
                              "closeReport",
                              "battery",
                              "countdown",
                              "underVoltage",
                              "normalVoltage",
                              "overTemperature",
                              "normalTemperature",
                              "accModel",
                              "sdOut",
                              "sdError",
                              "sdWorn",
                              "sdFormatNeeded",
                              "gps",
                              "speed",
                              "hwError",
                              "clockBroken",
                              "ledFailed",
                              "mute",
                              "blackspot",
                              "voiceEndNow",
                              "notice",
                              "event"})
      QVERIFY2(names.remove(QLatin1String(event)), event);
    QVERIFY2(names.isEmpty(), qPrintable(names.values().join(u' ')));
  }

  void everyArgumentIsChecked_data() {
    QTest::addColumn<QJsonObject>("action");
    const QJsonArray actions = Recorder::Actions();
    for (const QJsonValue& action : actions) QTest::newRow(qPrintable(action["name"].toString())) << action.toObject();
  }
  void everyArgumentIsChecked() {
    QFETCH(QJsonObject, action);
    Start(Endless());
    const QString name = action["name"].toString();
    QJsonObject good;
    const QJsonArray arguments = action["arguments"].toArray();
    for (const QJsonValue& argument : arguments)
      good[argument["name"].toString()] =
          argument["choices"].isArray() ? argument["choices"].toArray().at(0) : argument["default"];
    QJsonObject more = good;
    more["more"] = 1;
    QVERIFY(IsSentence(Refusal(name, more)));
    for (const QJsonValue& argument : arguments) {
      const QString key = argument["name"].toString();
      QList<QJsonValue> bad{QJsonValue(), true, QJsonArray{1}, QJsonObject{}, "x", ""};
      if (argument["choices"].isArray()) {
        QVERIFY(argument["choices"].toArray().size() >= 2);
        bad << 99;
      } else {
        const double least = argument["min"].toDouble();
        const double most = argument["max"].toDouble();
        QVERIFY(least < most && argument["default"].toDouble() >= least && argument["default"].toDouble() <= most);
        bad << least - 1 << most + 1 << 1e300 << -1e300 << "1";
        if (!argument["fraction"].toBool()) bad << least + 0.5;
      }
      for (const QJsonValue& value : bad) {
        QJsonObject wrong = good;
        wrong[key] = value;
        QVERIFY2(IsSentence(Refusal(name, wrong)), QJsonDocument(wrong).toJson().constData());
        QCOMPARE(Last("action")["result"].toInt(), -1);
      }
      QJsonObject less = good;
      less.remove(key);
      QString error;
      const bool done = mRecorder->Do(name, less, &error);
      if (!argument["optional"].toBool()) QVERIFY(!done && IsSentence(error));
    }
    QCOMPARE(mRestarts, 0);
  }

  void anActionThatDoesNotExistIsRefused() {
    Start();
    for (const QString& name : {QString(), QString("explode"), QString("PowerKey"), QString(100000, u'x')}) {
      const QString refusal = Refusal(name);
      QVERIFY(IsSentence(refusal) && refusal.size() < 200);
    }
    QVERIFY(Events().isEmpty());
  }

  // ---- scenarios

  void aScenarioPlaysFromTheInterfacesFirstQuery() {
    Start();
    QString error;
    // Not in the order of their times.
    const QString file = WriteScenario(R"(# Somebody drives off.
{"ms": 40, "action": "rearUnplug"}
{"ms": 0, "event": 24, "value": 12}
{"ms": 0, "event": 24}

{"ms": 20, "action": "gps", "state": "searching"})");
    QVERIFY2(mRecorder->PlayScenario(file, &error), qPrintable(error));
    QVERIFY(!mRecorder->State()["scenario"].toBool());
    RawClient client;
    QCOMPARE(client.Ask(Packet(SFIELD_SET_LCD_BRIGHT, Int(1))), 0);
    QVERIFY(!mRecorder->State()["scenario"].toBool());
    QCOMPARE(client.Ask(Packet(SFIELD_GET_VOLTAGE, Int(0))), 0);
    QVERIFY(mRecorder->State()["scenario"].toBool());
    QTRY_VERIFY(!mRecorder->State()["scenario"].toBool());
    QCOMPARE(Events().mid(4), (QList<Event>{{24, 12}, {24, 0}, {11, 1}, {33, 0}}));
  }

  void aScenarioThatWasEndedIsNotBegunByTheInterface() {
    Start();
    QString error;
    QVERIFY(mRecorder->PlayScenario(WriteScenario("{\"ms\": 0, \"event\": 24, \"value\": 12}\n"), &error));  // it waits
    QVERIFY(mRecorder->PlayScenario("{\"ms\": 3600000, \"event\": 28, \"value\": 0}\n", "text", &error));
    mRecorder->TheScenario().Stop();
    QCOMPARE(Ask(SFIELD_GET_VOLTAGE, 0), 0);
    QVERIFY(!mRecorder->State()["scenario"].toBool());
  }

  void touchesOfAScenarioAreThoseOfTheBench() {
    Start();
    QByteArrayList touches;
    connect(mRecorder.get(), &Recorder::TouchWanted, this, [&touches](const QJsonObject& request) {
      touches << QJsonDocument(request).toJson(QJsonDocument::Compact);
    });
    QCOMPARE(Ask(SFIELD_GET_VOLTAGE, 0), 0);
    QString error;
    QVERIFY(mRecorder->PlayScenario(WriteScenario("{\"ms\": 0, \"touch\": {\"x\": 479, \"y\": 319}}\n"
                                                  "{\"ms\": 1, \"touch\": {\"x\": 0, \"y\": 0, \"ms\": 3000}}\n"
                                                  "# a drag, in the panel's own units\n"
                                                  "{\"ms\": 2, \"touch\": {\"action\": \"press\", \"raw\": true, "
                                                  "\"x\": 511, \"y\": 1}}\n"
                                                  "{\"ms\": 3, \"touch\": {\"action\": \"release\"}}\n"
                                                  "{\"ms\": 4, \"touch\": {\"action\": \"path\", \"path\": "
                                                  "[{\"x\": 1, \"y\": 2}, {\"x\": 3, \"y\": 4, \"ms\": 5}]}}\n"),
                                    &error));
    QTRY_COMPARE(touches,
                 (QByteArrayList{R"({"action":"tap","x":479,"y":319})", R"({"action":"tap","ms":3000,"x":0,"y":0})",
                                 R"({"action":"press","raw":true,"x":511,"y":1})", R"({"action":"release"})",
                                 R"({"action":"path","path":[{"x":1,"y":2},{"ms":5,"x":3,"y":4}]})"}));
  }

  void aPictureOfAScenarioStandsBesideIt() {
    Start();
    QStringList pictures;
    connect(mRecorder.get(), &Recorder::PictureWanted, this, [&pictures](const QString& path) { pictures << path; });
    QCOMPARE(Ask(SFIELD_GET_VOLTAGE, 0), 0);
    root.Write("/car.png", "PNG");
    QString error;
    const QByteArray line = "{\"ms\": 0, \"picture\": \"car.png\"}";
    QVERIFY2(mRecorder->PlayScenario(WriteScenario(line), &error), qPrintable(error));
    QTRY_COMPARE(pictures, QStringList{root.Path("/car.png")});
    root.Write("/car.png", QByteArray((8 << 20) + 1, ' '));
    QVERIFY(!mRecorder->PlayScenario(WriteScenario(line), &error));
    QVERIFY2(error.endsWith(": The picture is larger than 8 MiB."), qPrintable(error));
  }

  void aScenarioForALivingInterfacePlaysAtOnceAndReplacesTheOneBefore() {
    Start();
    QCOMPARE(Ask(SFIELD_GET_VOLTAGE, 0), 0);
    Events().clear();
    QString error;
    QVERIFY(mRecorder->PlayScenario(WriteScenario("{\"ms\": 3600000, \"event\": 28, \"value\": 0}\n"), &error));
    QVERIFY(mRecorder->PlayScenario(WriteScenario("{\"ms\": 0, \"event\": 24, \"value\": 5}\n"), &error));
    QVERIFY(Comes(24, 5));
    QVERIFY(!mRecorder->State()["scenario"].toBool());
    QVERIFY(mRecorder->PlayScenario(WriteScenario("{\"ms\": 3600000, \"event\": 28, \"value\": 0}\n"), &error));
    QVERIFY(mRecorder->State()["scenario"].toBool());
    QVERIFY(mRecorder->PlayScenario(WriteScenario("\n"), &error));  // nothing to play
    QVERIFY(!mRecorder->State()["scenario"].toBool());
  }

  void aStepThatCannotBeDoneDoesNotStopTheScenario() {
    Start();
    QCOMPARE(Ask(SFIELD_GET_VOLTAGE, 0), 0);
    QString error;
    QVERIFY(mRecorder->PlayScenario(
        WriteScenario("{\"ms\": 0, \"action\": \"parkOut\"}\n{\"ms\": 0, \"event\": 24, \"value\": 5}\n"), &error));
    QVERIFY(Comes(24, 5));
    QCOMPARE(Last("action")["result"].toInt(), -1);
  }

  void aScenarioIsCheckedWholeBeforeItStarts_data() {
    QTest::addColumn<QByteArray>("line");
    for (const char* line : {"x",
                             "[]",
                             "{",
                             "{}",
                             "{\"ms\": 1}",
                             "{\"event\": 1, \"value\": 1}",
                             "{\"ms\": -1, \"event\": 1, \"value\": 1}",
                             "{\"ms\": 86400001, \"event\": 1, \"value\": 1}",
                             "{\"ms\": 1.5, \"event\": 1, \"value\": 1}",
                             "{\"ms\": \"1\", \"event\": 1, \"value\": 1}",
                             "{\"ms\": 1, \"event\": 0, \"value\": 1}",
                             "{\"ms\": 1, \"event\": 39, \"value\": 1}",
                             "{\"ms\": 1, \"event\": 1, \"value\": 2147483648}",
                             "{\"ms\": 1, \"event\": 1, \"value\": 1, \"more\": 1}",
                             "{\"ms\": 1, \"touch\": 5}",
                             "{\"ms\": 1, \"touch\": {\"x\": 1}}",
                             "{\"ms\": 1, \"touch\": {\"x\": 480, \"y\": 1}}",
                             "{\"ms\": 1, \"touch\": {\"x\": 1, \"y\": 320}}",
                             "{\"ms\": 1, \"touch\": {\"x\": -1, \"y\": 1}}",
                             "{\"ms\": 1, \"touch\": {\"x\": 1, \"y\": 1, \"ms\": 60001}}",
                             "{\"ms\": 1, \"touch\": {\"action\": \"poke\", \"x\": 1, \"y\": 1}}",
                             "{\"ms\": 1, \"touch\": {\"action\": \"release\", \"x\": 1, \"y\": 1}}",
                             "{\"ms\": 1, \"touch\": {\"action\": \"path\", \"path\": []}}",
                             "{\"ms\": 1, \"picture\": \"nowhere.png\"}",
                             "{\"ms\": 1, \"picture\": \"../scenario.jsonl\"}",
                             "{\"ms\": 1, \"picture\": 5}",
                             "{\"ms\": 1, \"picture\": \"scenario.jsonl\", \"event\": 1}",
                             "{\"ms\": 1, \"touch\": {\"x\": 1, \"y\": 1}, \"event\": 1, \"value\": 1}",
                             "{\"ms\": 1, \"action\": \"explode\"}",
                             "{\"ms\": 1, \"action\": \"recorderStop\"}",  // a bench's
                             "{\"ms\": 1, \"action\": 5}",
                             "{\"ms\": 1, \"action\": \"hwError\", \"code\": 19}",
                             "{\"ms\": 1, \"action\": \"gps\"}",
                             "{\"ms\": 1, \"action\": \"powerKey\", \"value\": 1}"})
      QTest::newRow(line) << QByteArray(line);
  }
  void aScenarioIsCheckedWholeBeforeItStarts() {
    QFETCH(QByteArray, line);
    Start();
    QCOMPARE(Ask(SFIELD_GET_VOLTAGE, 0), 0);
    Events().clear();
    QString error;
    const QString file = WriteScenario("{\"ms\": 0, \"event\": 24, \"value\": 5}\n\n" + line + "\n");
    QVERIFY(!mRecorder->PlayScenario(file, &error));
    QVERIFY2(IsSentence(error) && error.startsWith("Line 3 "), qPrintable(error));
    QVERIFY(!mRecorder->State()["scenario"].toBool());
    QVERIFY(Events().isEmpty());
  }

  void aScenarioThatCannotBeReadIsRefused() {
    Start();
    QString error;
    QVERIFY(!mRecorder->PlayScenario(root.Path("/nowhere"), &error));
    QVERIFY(IsSentence(error));
    QVERIFY(!mRecorder->PlayScenario(WriteScenario(QByteArray((1 << 20) + 1, '\n')), &error));
    QVERIFY(IsSentence(error));
  }

  void theScenariosThatAreShippedCanBePlayed_data() {
    QTest::addColumn<int>("steps");
    QTest::newRow("drive") << 15;
    QTest::newRow("park-overnight") << 15;
    QTest::newRow("everything-fails") << 30;
    QTest::newRow("browse") << 15;
    QTest::newRow("firmware-update") << 20;
  }
  void theScenariosThatAreShippedCanBePlayed() {
    QFETCH(int, steps);
    Start(Endless());
    QFile file(QStringLiteral(SOURCE_DIR "/recorder/scenarios/%1.jsonl").arg(QLatin1String(QTest::currentDataTag())));
    QString error;
    QVERIFY2(mRecorder->PlayScenario(file.fileName(), &error), qPrintable(error));
    QVERIFY(file.open(QIODevice::ReadOnly));
    int done = 0;
    int last = 0;
    for (; !file.atEnd(); ++done) {  // step by step, without its times
      QJsonObject step = QJsonDocument::fromJson(file.readLine()).object();
      if (step.isEmpty()) continue;  // a comment

      const int ms = step.take("ms").toInt();
      QVERIFY(ms >= last);
      last = ms;
      if (step.contains("action")) {
        const QString name = step.take("action").toString();
        QVERIFY2(Do(name, step), qPrintable(name));
      } else if (!step.contains("touch") && !step.contains("say")) {
        QVERIFY(mRecorder->SendStatus(step["event"].toInt(), step["value"].toInt()));
      }
    }
    QVERIFY(done >= steps);
  }

  // ---- hostile clients

  void packetsThatAreNoRequestsAreRefused_data() {
    QTest::addColumn<QByteArray>("packet");
    QTest::newRow("one byte") << QByteArray(1, 'x');
    QTest::newRow("seven bytes") << Packet(8655, Int(1)).left(7);
    QTest::newRow("length beyond the packet") << Packet(8655, 5, Int(1));
    QTest::newRow("length short of the packet") << Packet(8655, 3, Int(1));
    QTest::newRow("more than the length says") << Packet(8655, 4, Int(1) + 'x');
    QTest::newRow("no data") << Packet(8655, 4, "");
    QTest::newRow("huge length") << Packet(8655, 0xFFFFFFFFU, Int(1));
    QTest::newRow("length that wraps round") << Packet(8655, 0xFFFFFFF8U, "");
    QTest::newRow("huge packet") << Packet(8655, QByteArray(60000, 'x'));
    QTest::newRow("garbage") << QByteArray::fromHex("deadbeefdeadbeefdeadbeefdeadbeef");
  }
  void packetsThatAreNoRequestsAreRefused() {
    QFETCH(QByteArray, packet);
    Start();
    const QByteArray before = root.Read(kIni);
    RawClient client;
    QVERIFY(client.Send(packet));
    QCOMPARE(client.Take(), Int(-1) + Int(0));
    QVERIFY(IsSentence(Last("note").value("name").toString()));
    QCOMPARE(root.Read(kIni), before);
    QCOMPARE(client.Ask(Packet(SFIELD_SET_LCD_BRIGHT, Int(1))), 0);  // the connection goes on
  }

  void answersHaveTheirLayout() {
    Start();
    RawClient client;
    QVERIFY(client.Send(Packet(SFIELD_GET_ACC, Int(5))));
    QCOMPARE(client.Take(), Int(0) + Int(4) + Int(0));
    QVERIFY(client.Send(Packet(SFIELD_SET_LCD_BRIGHT, Int(5))));
    QCOMPARE(client.Take(), Int(0) + Int(0));
  }

  void aPacketWithoutBytesEndsTheConnection() {
    Start();
    RawClient client;
    QVERIFY(client.Send(QByteArray("")));
    QVERIFY(client.Take().isNull());
    QTRY_COMPARE(mRecorder->State()["connections"].toInt(), 0);
  }

  void manyConnectionsAreTurnedAwayAndLeaveRoomWhenTheyGo() {
    Start();
    std::vector<std::unique_ptr<RawClient>> clients;
    for (int i = 0; i < 16; ++i) {
      clients.push_back(std::make_unique<RawClient>());
      QVERIFY(clients.back()->IsConnected());
      QTRY_COMPARE(mRecorder->State()["connections"].toInt(), i + 1);
    }
    RawClient beyond;
    QVERIFY(beyond.Take().isNull());
    QCOMPARE(mRecorder->State()["connections"].toInt(), 16);
    QCOMPARE(clients.back()->Ask(Packet(SFIELD_SET_LCD_BRIGHT, Int(1))), 0);
    clients.clear();
    QTRY_COMPARE(mRecorder->State()["connections"].toInt(), 0);
    QCOMPARE(Ask(SFIELD_SET_LCD_BRIGHT, 1), 0);
  }

  void aClientThatTakesNoAnswersIsCutOffAndOthersAreServed() {
    Start();
    RawClient deaf;
    const QByteArray request = Packet(SFIELD_GET_ACC, Int(0));
    QTRY_VERIFY([&] {
      for (int i = 0; i < 50 && deaf.Send(request); ++i) QCoreApplication::processEvents();
      return Last("note").value("name").toString().contains("does not take its answers");
    }());
    QTRY_COMPARE(mRecorder->State()["connections"].toInt(), 0);
    QCOMPARE(Ask(SFIELD_SET_LCD_BRIGHT, 1), 0);
  }

  void aClientThatLeavesInTheMiddleHarmsNobody() {
    Start();
    for (int round = 0; round < 10; ++round) {
      for (int i = 0; i < 10; ++i) {
        RawClient client;
        QVERIFY(client.Send(Packet(SFIELD_GET_VOLTAGE, Int(0))));
      }
      RawClient other;
      QCOMPARE(other.Ask(Packet(SFIELD_SET_LCD_BRIGHT, Int(1))), 0);
    }
    QTRY_COMPARE(mRecorder->State()["connections"].toInt(), 0);
    QCOMPARE(Ask(SFIELD_SET_LCD_BRIGHT, 1), 0);
  }
};

QTEST_GUILESS_MAIN(RecorderTest)
#include "recorder_test.moc"
