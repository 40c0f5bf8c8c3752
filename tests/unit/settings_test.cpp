// The settings and their files.
#include "gui/settings/settings.h"

#include <fcntl.h>
#include <signal.h>
#include <sys/ptrace.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <QElapsedTimer>
#include <QSettings>
#include <QTemporaryDir>
#include <QTest>
#include <QThread>
#include <cmath>
#include <cstdlib>
#include <cstring>
#include <limits>
#include <utility>

#include "gui/settings/settingkeys.h"
#include "recorder/base/settingstore.h"
#include "tests/fake/platformfake.h"
#include "tests/fake/signalto.h"
#include "tests/fake/testroot.h"

static TestRoot root;

namespace {
constexpr char kOwn[] = "/opt/gui/ini/config_firm.ini";
constexpr char kFirmware[] = "/tmp/config_init.ini";

enum Rule { Memory, Both, File };

struct Key {
  int id;
  const char* key;
  int Setting_Config::*field;  // null: no field of mSetting is changed by it
  Rule rule;
  bool compared;
};

// clang-format off
constexpr Key kIntKeys[] = {
    {0, "fwver/major_ver", &Setting_Config::major_ver, Both, false},
    {1, "fwver/minor_ver", &Setting_Config::minor_ver, Both, false},
    {2, "fwver/minor_ver2", &Setting_Config::minor_ver2, Both, false},
    {3, "drivingsetting/fps", &Setting_Config::fps, Memory, true},
    {4, "timesetting/gmt", &Setting_Config::gmt, Memory, true},
    {5, "audiosetting/volume", &Setting_Config::volume, Both, false},
    {6, "drivingsetting/gsensor_trg_lvl", &Setting_Config::drv_shock_lvl, Memory, true},
    {7, "parkingsetting/parking_mode_on", &Setting_Config::parking_mode_on, Memory, true},
    {8, "drivingsetting/resolution", &Setting_Config::resolution, Memory, true},
    {9, "parkingsetting/park_lvl", &Setting_Config::park_shock_lvl, Memory, true},
    {10, "drivingsetting/gain", &Setting_Config::drv_rec_brightness, Memory, true},
    {12, "parkingsetting/motion_lvl", &Setting_Config::motion_lvl, Memory, true},
    {13, "audiosetting/event_buzer", &Setting_Config::event_buzer, Both, false},
    {14, "filedeletesetting/efile_del_method", &Setting_Config::efile_del_method, Memory, true},
    {15, "filedeletesetting/n_file_rate", &Setting_Config::n_file_rate, Memory, true},
    {16, "filedeletesetting/e_file_rate", &Setting_Config::e_file_rate, Memory, true},
    {17, "filedeletesetting/p_file_rate", &Setting_Config::p_file_rate, Memory, true},
    {18, "drivingsetting/gps_speed_display", &Setting_Config::gps_speed_display, Memory, true},
    {19, "view/display", &Setting_Config::display, Both, false},
    {21, "timesetting/time_set_flag", &Setting_Config::time_set_flag, Both, true},
    {22, "timesetting/year", &Setting_Config::year, Memory, true},
    {23, "timesetting/month", &Setting_Config::month, Memory, true},
    {24, "timesetting/day", &Setting_Config::day, Memory, true},
    {25, "timesetting/hour", &Setting_Config::hour, Memory, true},
    {26, "timesetting/min", &Setting_Config::min, Memory, true},
    {27, "drivingsetting/gain2", &Setting_Config::drv_rec_brightness2, Memory, true},
    {28, "audiosetting/buzer_flag", &Setting_Config::buzer_flag, Both, false},
    {29, "audiosetting/spk_volume", &Setting_Config::spk_volume, Both, false},
    {30, "audiosetting/acc_volume", &Setting_Config::acc_volume, Both, false},
    {31, "parkingsetting/power_cut_lvl", &Setting_Config::power_cut_lvl, Memory, true},
    {32, "parkingsetting/power_cut_time", &Setting_Config::power_cut_time, Memory, true},
    {34, "lcdsetting/lcd_auto_off", &Setting_Config::lcd_auto_off, Both, false},
    {35, "lcdsetting/lcd_bright", &Setting_Config::lcd_bright, Both, false},
    {36, "lcdsetting/lcd_wait_dis", &Setting_Config::lcd_wait_dis, Both, false},
    {37, "parkingsetting/chk_park_lvl", &Setting_Config::park_entry_lvl, Memory, true},
    {38, "parkingsetting/power_cut_lvl_type", &Setting_Config::gPower_cut_lvl_type, Memory, false},
    {39, "ledsetting/settingchange", &Setting_Config::led_mode, Both, false},
    {42, "view/mirroring", nullptr, File, false},
    {43, "view/movingpip", nullptr, File, false},
    {44, "filedeletesetting/protectfile", &Setting_Config::protect_file, Memory, true},
    {45, "parkingsetting/rear_cam_power", &Setting_Config::rear_cam_power, Both, false},
    {58, "motionmap/front_h", nullptr, File, false},
    {59, "motionmap/front_l", nullptr, File, false},
    {60, "motionmap/rear_h", nullptr, File, false},
    {61, "motionmap/rear_l", nullptr, File, false},
    {62, "parkingsetting/park_file_volume", &Setting_Config::park_file_volume, Both, false},
    {63, "parkingsetting/manual_volt_use", &Setting_Config::manual_volt_use, Memory, true},
};
// clang-format on
constexpr int kNoKey[] = {11, 20, 33, 40, 41, 64, 100, -1};

QVariant InFile(const char* file, const QString& key) {
  return QSettings(root.Path(QLatin1String(file)), QSettings::IniFormat).value(key);
}

// A damaged file system's idea of a file: who opens it to read waits for ever.
void MakePipe(const QString& path) {
  if (mkfifo(QFile::encodeName(root.Path(path)).constData(), 0600) != 0) qFatal("cannot make %s", qPrintable(path));
}

// A file in which each key has a value of its own.
void WriteDistinct(const char* file, int base) {
  QSettings settings(root.Path(QLatin1String(file)), QSettings::IniFormat);
  for (const Key& key : kIntKeys) settings.setValue(QLatin1String(key.key), base + key.id);
  for (int i = 1; i <= 12; ++i)
    settings.setValue(QStringLiteral("parkingsetting/low_volt_cut_%1").arg(i), float(base) / 100 + float(i) * 0.1F);
}
}  // namespace

class SettingsTest : public QObject {
  Q_OBJECT

private:
  Settings mSettings;

  void AllFieldsFrom(int base) {
    for (const Key& key : kIntKeys)
      if (key.field) QCOMPARE(mSettings.mSetting.*key.field, base + key.id);
    QCOMPARE(mSettings.mMirroring, base + 42);
    QCOMPARE(mSettings.mMovingPip, base + 43);
    for (int i = 0; i < 12; ++i) QCOMPARE(mSettings.mSetting.low_volt_cut[i], float(base) / 100 + float(i + 1) * 0.1F);
    const auto map = [base](int id) { return (quint64(base + id) << 32) | quint64(base + id + 1); };
    QCOMPARE(mSettings.mSetting.motion_area1, map(58));
    QCOMPARE(mSettings.mSetting.motion_area2, map(60));
  }

private slots:
  void init() {
    QDir().rmdir(root.Path(QLatin1String(kOwn)));
    root.Remove(QLatin1String(kOwn));
    root.Remove(QLatin1String(kFirmware));
    for (const char* file : {"/opt/touch.zel", "/opt/touch_tuning.zel", "/mnt/mmc/touch.txt"})
      root.Remove(QLatin1String(file));
    mSettings.~Settings();
    new (&mSettings) Settings;  // as at the start of the process
    PlatformFake::Get().Clear();
  }

  void everythingIsZeroBeforeTheStart() {
    const Settings fresh;
    for (const Key& key : kIntKeys)
      if (key.field) QCOMPARE(fresh.mSetting.*key.field, 0);
    QCOMPARE(fresh.mSetting.motion_area1, quint64{0});
    QCOMPARE(fresh.inputX[8], 0);
  }

  // ---- the key table

  void thereAre59Keys() {
    QCOMPARE(SettingKeys().size(), size_t{59});
    QCOMPARE(std::size(kIntKeys), size_t{47});
    for (const int id : kNoKey) QVERIFY(!FindSettingKey(Setting_Id(id)));
  }

  void settingOneValue_data() {
    QTest::addColumn<int>("row");
    for (int i = 0; i < int(std::size(kIntKeys)); ++i) QTest::newRow(kIntKeys[i].key) << i;
  }
  void settingOneValue() {
    QFETCH(int, row);
    const Key& key = kIntKeys[row];
    mSettings.SetSettingConfig(Setting_Id(key.id), -7);
    const QVariant written = InFile(kOwn, QLatin1String(key.key));
    if (key.rule == Memory)
      QVERIFY(!written.isValid());
    else
      QCOMPARE(written.toInt(), -7);
    for (const Key& other : kIntKeys)
      if (other.field) QCOMPARE(mSettings.mSetting.*other.field, &other == &key && key.rule != File ? -7 : 0);
    QCOMPARE(mSettings.mSetting.motion_area1, quint64{0});
    QCOMPARE(mSettings.mSetting.motion_area2, quint64{0});
    QCOMPARE(mSettings.mMirroring, 0);
    QCOMPARE(mSettings.mMovingPip, 0);
    QCOMPARE(mSettings.GetSettingConfig(Setting_Id(key.id)), key.rule == Memory ? 0 : -7);
    QCOMPARE(mSettings.compareSettingValue(), key.compared);
  }

  void readingOneValue_data() { settingOneValue_data(); }
  void readingOneValue() {
    QFETCH(int, row);
    const Key& key = kIntKeys[row];
    WriteDistinct(kOwn, 1000);
    WriteDistinct(kFirmware, 5000);
    QCOMPARE(mSettings.GetSettingConfig(Setting_Id(key.id)), 1000 + key.id);
    QCOMPARE(mSettings.GetFWSettingConfig(Setting_Id(key.id)), 5000 + key.id);
    QCOMPARE(mSettings.GetSettingConfigF(Setting_Id(key.id)), 0.0F);
    QCOMPARE(mSettings.GetFWSettingConfigF(Setting_Id(key.id)), 0.0F);
  }

  void lowVoltageCuts() {
    WriteDistinct(kOwn, 1000);
    WriteDistinct(kFirmware, 2000);
    for (int i = 0; i < 12; ++i) {
      const auto id = Setting_Id(46 + i);
      QCOMPARE(mSettings.GetSettingConfigF(id), 10 + float(i + 1) * 0.1F);
      QCOMPARE(mSettings.GetFWSettingConfigF(id), 20 + float(i + 1) * 0.1F);
      QCOMPARE(mSettings.GetSettingConfig(id), 0);
      QCOMPARE(mSettings.GetFWSettingConfig(id), 0);
      mSettings.SetSettingConfig(id, 5);
      QCOMPARE(mSettings.mSetting.low_volt_cut[i], 0.0F);
      mSettings.SetSettingConfigF(id, 11.8F);
      QCOMPARE(mSettings.mSetting.low_volt_cut[i], 11.8F);
      QVERIFY(mSettings.compareSettingValue());
      mSettings.mOldSetting = mSettings.mSetting;
      QVERIFY(!mSettings.compareSettingValue());
    }
    QCOMPARE(mSettings.GetSettingConfigF(Set_Cfg_LowVolCut_1), 10.1F);  // the file is as it was
  }

  void anIdWithoutAKeyDoesNothing() {
    WriteDistinct(kOwn, 1000);
    for (const int id : kNoKey) {
      mSettings.SetSettingConfig(Setting_Id(id), 5);
      mSettings.SetSettingConfigF(Setting_Id(id), 5);
      QCOMPARE(mSettings.GetSettingConfig(Setting_Id(id)), 0);
      QCOMPARE(mSettings.GetFWSettingConfig(Setting_Id(id)), 0);
      QCOMPARE(mSettings.GetSettingConfigF(Setting_Id(id)), 0.0F);
    }
    mSettings.SetSettingConfigF(Set_Cfg_Power_Cut_lvl, 5);  // an int key, below the floats
    QCOMPARE(mSettings.mSetting.power_cut_lvl, 0);
    QVERIFY(!mSettings.compareSettingValue());
  }

  // ---- all at once

  void theRecordersFileIsTheMasterAtTheStart() {
    WriteDistinct(kOwn, 1000);
    WriteDistinct(kFirmware, 5000);
    mSettings.InitSettingConfig();
    AllFieldsFrom(5000);
    QVERIFY(!mSettings.compareSettingValue());
    for (const Key& key : kIntKeys) QCOMPARE(InFile(kOwn, QLatin1String(key.key)).toInt(), 5000 + key.id);
    QCOMPARE(InFile(kOwn, QStringLiteral("parkingsetting/low_volt_cut_12")).toFloat(), 50 + 12 * 0.1F);
    QCOMPARE(InFile(kFirmware, QStringLiteral("view/display")).toInt(), 5019);
  }
  void anLcdThatNeverGoesOffIsNotKeptAtTheStart() {
    WriteDistinct(kFirmware, 5000);
    QSettings(root.Path(QLatin1String(kFirmware)), QSettings::IniFormat)
        .setValue(QStringLiteral("lcdsetting/lcd_auto_off"), 0);
    mSettings.InitSettingConfig();
    QCOMPARE(mSettings.mSetting.lcd_auto_off, 1);
    QCOMPARE(mSettings.mOldSetting.lcd_auto_off, 1);
    QCOMPARE(InFile(kOwn, QStringLiteral("lcdsetting/lcd_auto_off")).toInt(), 1);
  }
  void withoutTheRecordersFileTheOwnValuesStay() {
    WriteDistinct(kOwn, 1000);
    mSettings.InitSettingConfig();
    AllFieldsFrom(1000);
    QCOMPARE(InFile(kOwn, QStringLiteral("timesetting/gmt")).toInt(), 1004);
  }
  void aTornRecordersFileDoesNotWipeTheOwnValues_data() {
    QTest::addColumn<QByteArray>("bytes");
    QTest::newRow("empty") << QByteArray();
    QTest::newRow("binary") << QByteArray(5000, '\0');
    QTest::newRow("not ours") << QByteArray("[other]\nkey=5\n");
    QTest::newRow("broken off") << QByteArray("[view\ndispl");
    QTest::newRow("far too large") << QByteArray("[view]\ndisplay=5\n") + QByteArray(70000, ';');
  }
  void aTornRecordersFileDoesNotWipeTheOwnValues() {
    QFETCH(QByteArray, bytes);
    WriteDistinct(kOwn, 1000);
    root.Write(QLatin1String(kFirmware), bytes);
    mSettings.InitSettingConfig();
    AllFieldsFrom(1000);
  }
  void aPipeInPlaceOfTheRecordersFileIsNoFile() {
    WriteDistinct(kOwn, 1000);
    MakePipe(QLatin1String(kFirmware));
    mSettings.InitSettingConfig();
    AllFieldsFrom(1000);
  }
  void whatCannotBeTheOwnFileGivesWay_data() {
    QTest::addColumn<bool>("pipe");
    QTest::newRow("a pipe") << true;
    QTest::newRow("far too large") << false;
  }
  void whatCannotBeTheOwnFileGivesWay() {
    QFETCH(bool, pipe);
    WriteDistinct(kFirmware, 5000);
    if (pipe)
      MakePipe(QLatin1String(kOwn));
    else
      root.Write(QLatin1String(kOwn), "[more]\nkey=" + QByteArray(70000, 'x') + "\n");
    mSettings.InitSettingConfig();
    AllFieldsFrom(5000);
    QCOMPARE(mSettings.GetSettingConfig(Set_Cfg_Display), 5019);
    QVERIFY(root.Read(QLatin1String(kOwn)).size() < 5000);
  }
  void aMissingKeyIsZero() {
    root.Write(QLatin1String(kFirmware), "[view]\ndisplay=2\n");
    mSettings.InitSettingConfig();
    QCOMPARE(mSettings.mSetting.display, 2);
    QCOMPARE(mSettings.mSetting.gmt, 0);
    QCOMPARE(mSettings.mSetting.motion_area1, quint64{0});
    QCOMPARE(mSettings.mSetting.lcd_auto_off, 1);
  }
  void strangeNumbersAreReadSafely() {
    root.Write(QLatin1String(kFirmware),
               "[view]\ndisplay=99999999999999999999\nmirroring=0x10\nmovingpip= 3 \n[timesetting]\ngmt=-12\nyear=abc\n"
               "[parkingsetting]\nlow_volt_cut_1=nan\nlow_volt_cut_2=inf\nlow_volt_cut_3=-inf\nlow_volt_cut_4=12.4\n"
               "low_volt_cut_5=@Variant(\\0\\0\\0\\x87\\x41\\x46\\x66\\x66)\nlow_volt_cut_6=1e99\n");
    mSettings.InitSettingConfig();
    QCOMPARE(mSettings.mSetting.display, 0);
    QCOMPARE(mSettings.mSetting.year, 0);
    QCOMPARE(mSettings.mSetting.gmt, -12);
    QCOMPARE(mSettings.mMirroring, 0);
    QCOMPARE(mSettings.mMovingPip, 3);
    for (const int i : {0, 1, 2, 5}) QCOMPARE(mSettings.mSetting.low_volt_cut[i], 0.0F);
    QCOMPARE(mSettings.mSetting.low_volt_cut[3], 12.4F);
    QCOMPARE(mSettings.mSetting.low_volt_cut[4], 12.4F);
    QVERIFY(!mSettings.compareSettingValue());
  }
  void aFolderThatCannotBeWrittenIsNoReasonToStop() {
    const QString folder = root.Path(QStringLiteral("/opt/gui/ini"));
    QVERIFY(QFile::rename(folder, folder + QStringLiteral(".away")));
    root.Write(QStringLiteral("/opt/gui/ini"), "a file stands here");
    WriteDistinct(kFirmware, 5000);
    mSettings.InitSettingConfig();
    AllFieldsFrom(5000);
    mSettings.SetSettingConfig(Set_Cfg_Display, 1);
    QCOMPARE(mSettings.mSetting.display, 1);
    root.Remove(QStringLiteral("/opt/gui/ini"));
    QVERIFY(QFile::rename(folder + QStringLiteral(".away"), folder));
  }
  void whatTheFileHasAlreadyIsNotWritten() {
    mSettings.mSetting.low_volt_cut[3] = 11.7F;
    mSettings.AllSetSettingConfig();
    const auto file = [] {
      struct stat status {};
      stat(qPrintable(root.Path(QLatin1String(kOwn))), &status);
      return std::pair(status.st_ino, status.st_mtim.tv_nsec);
    };
    const auto written = file();
    mSettings.AllSetSettingConfig();
    mSettings.SetSettingConfig(Set_Cfg_Volume, mSettings.mSetting.volume);
    QCOMPARE(file(), written);
    mSettings.SetSettingConfig(Set_Cfg_Volume, mSettings.mSetting.volume + 1);
    QVERIFY(file() != written);
  }
  void ofTextsOverSeveralLinesTheNumbersStay() {
    root.Write(
        QLatin1String(kOwn),
        "[view]\ndisplay=2\nmirroring=\"1\nmovingpip=3\n[lcdsetting]\n\"\n[timesetting]\nyear=\"2024\n\"\ngmt=-9\n");
    mSettings.SetSettingConfig(Set_Cfg_Volume, 4);
    QCOMPARE(root.Read(QLatin1String(kOwn)).count('"'), 0);
    Settings again;
    again.mMirroring = 7;
    again.AllGetSettingConfig();
    QCOMPARE(again.mSetting.display, 2);
    QCOMPARE(again.mSetting.year, 2024);
    QCOMPARE(again.mSetting.gmt, -9);
    QCOMPARE(again.mSetting.volume, 4);
    QCOMPARE(again.mMirroring, 7);
    QCOMPARE(again.mMovingPip, 0);
  }
  // QSettings knows other ways to write a name than the interface's; what is saved must count all the same.
  void namesInQSettingsOtherWaysAreWrittenAnew_data() {
    QTest::addColumn<QByteArray>("text");
    QTest::newRow("quotes in a group") << QByteArray("[vie2\"/b]/\"]\n");
    QTest::newRow("a group in other letters") << QByteArray("[view]\ndisplay=1\n[vi%65w]\ndisplay=2\n");
    QTest::newRow("a name in other letters") << QByteArray("[view]\ndisplay=1\nd%69splay=2\n");
    QTest::newRow("a name with its group") << QByteArray("[view]\ndisplay=1\n[General]\nview/display=2\n");
    QTest::newRow("a note that ends early") << QByteArray("[a]\n;x\ry=\"1\nz=2\n");
    QTest::newRow("the other way") << QByteArray("[view]\ndisplay=1\n[General]\nview\\display=2\n");
  }
  void namesInQSettingsOtherWaysAreWrittenAnew() {
    QFETCH(QByteArray, text);
    root.Write(QLatin1String(kOwn), text);
    mSettings.AllGetSettingConfig();
    mSettings.SetSettingConfig(Set_Cfg_Display, 3);
    mSettings.SetSettingConfig(Set_Cfg_Volume, 4);
    Settings again;
    again.AllGetSettingConfig();
    QCOMPARE(again.mSetting.display, 3);
    QCOMPARE(again.mSetting.volume, 4);
  }
  void whatWasWrittenIsReadAgain() {
    WriteDistinct(kFirmware, 3000);
    mSettings.InitSettingConfig();
    mSettings.mSetting.motion_area1 = 0x8000000000000001U;
    mSettings.mSetting.motion_area2 = 0xFFFF0FFFFFFFFFFFU;
    mSettings.AllSetSettingConfig();
    QCOMPARE(InFile(kOwn, QStringLiteral("motionmap/front_h")).toInt(), std::numeric_limits<int>::min());
    QCOMPARE(InFile(kOwn, QStringLiteral("motionmap/rear_h")).toInt(), -61441);
    Settings other;
    other.AllGetSettingConfig();
    QCOMPARE(other.mSetting.motion_area1, quint64{0x8000000000000001U});
    QCOMPARE(other.mSetting.motion_area2, quint64{0xFFFF0FFFFFFFFFFFU});
    QCOMPARE(std::memcmp(&other.mSetting, &mSettings.mSetting, sizeof other.mSetting), 0);
    QVERIFY(!other.compareSettingValue());
  }

  // ---- a reload of what is damaged

  void aReloadTakesNothingFromWhatIsNoFileOfSettings_data() {
    QTest::addColumn<QByteArray>("bytes");  // or what stands there
    QTest::newRow("vanished") << QByteArray();
    QTest::newRow("folder") << QByteArray();
    QTest::newRow("pipe") << QByteArray();
    QTest::newRow("link to nothing") << QByteArray();
    QTest::newRow("circle") << QByteArray();
    QTest::newRow("empty") << QByteArray("");
    QTest::newRow("too large") << QByteArray("[view]\ndisplay=5\n") + QByteArray(70000, ';');
    QTest::newRow("zeros") << QByteArray(1500, '\0');
    QTest::newRow("garbage") << QByteArray(1500, '\xFF');
    QTest::newRow("not ours") << QByteArray("[other]\nkey=5\ndisplay=3\n[view]\nDisplay=3\n");
    QTest::newRow("no section") << QByteArray("display=3\nfps=3\n");
    QTest::newRow("cut in the first section") << QByteArray("[view");
    QTest::newRow("cut in the first key") << QByteArray("[view]\ndispl");
  }
  void aReloadTakesNothingFromWhatIsNoFileOfSettings() {
    QFETCH(QByteArray, bytes);
    WriteDistinct(kFirmware, 5000);
    mSettings.InitSettingConfig();
    mSettings.mSetting.fps = 7;  // edited, not applied
    const QByteArray tag = QTest::currentDataTag();
    const QString path = root.Path(QLatin1String(kOwn));
    QVERIFY(QFile::remove(path));
    if (tag == "folder") QVERIFY(QDir().mkdir(path));
    if (tag == "pipe") MakePipe(QLatin1String(kOwn));
    if (tag == "link to nothing") QVERIFY(symlink("none.ini", qPrintable(path)) == 0);
    if (tag == "circle") QVERIFY(symlink("config_firm.ini", qPrintable(path)) == 0);
    if (!bytes.isNull()) root.Write(QLatin1String(kOwn), bytes);
    mSettings.AllGetSettingConfig();
    QCOMPARE(mSettings.mSetting.fps, 7);
    QCOMPARE(mSettings.mOldSetting.fps, 5003);
    QVERIFY(mSettings.compareSettingValue());  // it is still to be applied
    mSettings.mSetting.fps = 5003;
    AllFieldsFrom(5000);
    if (tag == "folder") QVERIFY(QDir().rmdir(path));
    // The next save has all of it again.
    mSettings.AllSetSettingConfig();
    mSettings.~Settings();
    new (&mSettings) Settings;
    mSettings.AllGetSettingConfig();
    AllFieldsFrom(5000);
    root.Remove(QStringLiteral("/opt/gui/ini/none.ini"));
  }
  void anEditThatIsNotAppliedIsForgottenByAReload() {
    WriteDistinct(kOwn, 1000);
    mSettings.AllGetSettingConfig();
    mSettings.mSetting.fps = 7;
    mSettings.AllGetSettingConfig();
    AllFieldsFrom(1000);
    QVERIFY(!mSettings.compareSettingValue());
  }
  void aKeyThatTheFileLacksKeepsItsValue() {
    WriteDistinct(kFirmware, 5000);
    mSettings.InitSettingConfig();
    root.Write(QLatin1String(kOwn), "[view]\ndisplay=2\nmirroring=\n[timesetting]\nyear=20x3\ngmt=-9\nmon");
    mSettings.AllGetSettingConfig();
    QCOMPARE(mSettings.mSetting.display, 2);
    QCOMPARE(mSettings.mSetting.gmt, -9);
    mSettings.mSetting.display = 5019;
    mSettings.mSetting.gmt = 5004;
    AllFieldsFrom(5000);
    QCOMPARE(mSettings.mOldSetting.display, 2);
    QCOMPARE(mSettings.mOldSetting.year, 5022);
  }
  // Wherever a whole file is cut off, nothing becomes 0; at most the value that was cut is neither the file's nor the
  // old one.
  void aFileThatIsCutOffAnywhere_data() {
    QTest::addColumn<bool>("atStart");
    QTest::addColumn<int>("step");
    QTest::newRow("reload") << false << 1;
    QTest::newRow("start without the recorder's file") << true << 11;  // it saves each time
  }
  void aFileThatIsCutOffAnywhere() {
    QFETCH(bool, atStart);
    QFETCH(int, step);
    WriteDistinct(kFirmware, 1000);
    mSettings.InitSettingConfig();
    mSettings.mSetting.motion_area1 = mSettings.mSetting.motion_area2 = 0xFFFF0FFFFFFFFFFFU;
    mSettings.AllSetSettingConfig();
    const QByteArray whole = root.Read(QLatin1String(kOwn));
    const Setting_Config inFile = mSettings.mSetting;
    root.Remove(QLatin1String(kFirmware));
    Settings before;
    if (!atStart) {
      WriteDistinct(kOwn, 5000);
      before.AllGetSettingConfig();
    }
    QVERIFY(whole.size() > 1000);
    for (qsizetype size = whole.size() % step; size <= whole.size(); size += step) {
      root.Write(QLatin1String(kOwn), whole.left(size));
      mSettings.mSetting = before.mSetting;
      mSettings.mMirroring = before.mMirroring;
      mSettings.mMovingPip = before.mMovingPip;
      atStart ? mSettings.InitSettingConfig() : mSettings.AllGetSettingConfig();
      if (atStart && mSettings.mSetting.lcd_auto_off == 1) mSettings.mSetting.lcd_auto_off = 0;  // as at every start
      int strange = 0;
      const auto look = [&](auto now, auto was, auto wholeValue) {
        if (now != was && now != wholeValue) ++strange;
        if (now == 0) QVERIFY(was == 0);
      };
      const Setting_Config& now = mSettings.mSetting;
      for (const Key& key : kIntKeys)
        if (key.field) look(now.*key.field, before.mSetting.*key.field, inFile.*key.field);
      for (int i = 0; i < 12; ++i) look(now.low_volt_cut[i], before.mSetting.low_volt_cut[i], inFile.low_volt_cut[i]);
      for (const int shift : {0, 32}) {
        const auto word = [shift](quint64 map) { return quint32(map >> shift); };
        look(word(now.motion_area1), word(before.mSetting.motion_area1), word(inFile.motion_area1));
        look(word(now.motion_area2), word(before.mSetting.motion_area2), word(inFile.motion_area2));
      }
      look(mSettings.mMirroring, before.mMirroring, 1042);
      look(mSettings.mMovingPip, before.mMovingPip, 1043);
      QVERIFY2(strange <= 1, qPrintable(QStringLiteral("%1 bytes").arg(size)));
    }
    QCOMPARE(std::memcmp(&mSettings.mSetting, &inFile, sizeof inFile), 0);
  }
  // Of a recorder's file that is damaged what it says counts; the rest is the own file's, not 0.
  void aRecordersFileThatIsCutOffInsideAKey() {
    WriteDistinct(kOwn, 1000);
    root.Write(QLatin1String(kFirmware), "[view]\ndisplay=2\n[timesetting]\ngmt=3\nyea");
    mSettings.InitSettingConfig();
    QCOMPARE(mSettings.mSetting.display, 2);
    QCOMPARE(mSettings.mSetting.gmt, 3);
    mSettings.mSetting.display = 1019;
    mSettings.mSetting.gmt = 1004;
    AllFieldsFrom(1000);
  }
  void aMissingKeyOfAWholeRecordersFileIsZero() {
    WriteDistinct(kOwn, 1000);
    root.Write(QLatin1String(kFirmware), "[view]\ndisplay=2\n");
    mSettings.InitSettingConfig();
    QCOMPARE(mSettings.mSetting.display, 2);
    QCOMPARE(mSettings.mSetting.gmt, 0);
    QCOMPARE(mSettings.mMirroring, 0);
  }

  // ---- links

  void aLinkToTheOwnFileStays_data() {
    QTest::addColumn<QStringList>("links");  // name, target; the last one leads to the file
    QTest::addColumn<QString>("file");
    const QString own = QLatin1String(kOwn);
    QTest::newRow("absolute") << QStringList{own, root.Path(QStringLiteral("/mnt/nand/f.ini"))} << "/mnt/nand/f.ini";
    QTest::newRow("relative") << QStringList{own, "../../f.ini"} << "/opt/f.ini";
    QTest::newRow("chain") << QStringList{own, "l2", "/opt/gui/ini/l2", "l3", "/opt/gui/ini/l3", "f.ini"}
                           << "/opt/gui/ini/f.ini";
    QTest::newRow("in a folder that is a link")
        << QStringList{"/opt/gui/away", "../../mnt/nand", "/mnt/nand/l2", "../f.ini", own, "../away/l2"}
        << "/mnt/f.ini";
  }
  void aLinkToTheOwnFileStays() {
    QFETCH(QStringList, links);
    QFETCH(QString, file);
    for (int i = 0; i < links.size(); i += 2)
      QCOMPARE(symlink(qPrintable(links[i + 1]), qPrintable(root.Path(links[i]))), 0);
    WriteDistinct(kFirmware, 5000);
    mSettings.InitSettingConfig();
    mSettings.SetSettingConfig(Set_Cfg_Display, 1);
    mSettings.INIMotionSettingValue(false, 1, 8, 9, 0, 0);
    for (int i = 0; i < links.size(); i += 2) QVERIFY(QFileInfo(root.Path(links[i])).isSymLink());
    const QSettings written(root.Path(file), QSettings::IniFormat);
    QCOMPARE(written.value(QStringLiteral("view/display")).toInt(), 1);
    QCOMPARE(written.value(QStringLiteral("motionmap/front_l")).toInt(), 9);
    QCOMPARE(written.value(QStringLiteral("timesetting/gmt")).toInt(), 5004);
    QCOMPARE(mSettings.GetSettingConfig(Set_Cfg_Display), 1);
    for (int i = 0; i < links.size(); i += 2) root.Remove(links[i]);
    root.Remove(file);
  }
  void aLinkToWhatIsNoFileGivesWay_data() {
    QTest::addColumn<QString>("target");
    QTest::newRow("a pipe") << "pipe";
    QTest::newRow("a folder") << ".";
    QTest::newRow("a circle") << "config_firm.ini";
  }
  void aLinkToWhatIsNoFileGivesWay() {
    QFETCH(QString, target);
    MakePipe(QStringLiteral("/opt/gui/ini/pipe"));
    QCOMPARE(symlink(qPrintable(target), qPrintable(root.Path(QLatin1String(kOwn)))), 0);
    WriteDistinct(kFirmware, 5000);
    mSettings.InitSettingConfig();
    QVERIFY(!QFileInfo(root.Path(QLatin1String(kOwn))).isSymLink());
    QCOMPARE(mSettings.GetSettingConfig(Set_Cfg_Display), 5019);
    QVERIFY(QFile::remove(root.Path(QStringLiteral("/opt/gui/ini/pipe"))));
  }
  // Nothing waits for a pipe that takes the file's place while the interface runs.
  void aPipeHoldsNothingUp() {
    for (const char* file : {kOwn, kFirmware}) MakePipe(QLatin1String(file));
    QCOMPARE(mSettings.GetSettingConfig(Set_Cfg_Display), 0);
    QCOMPARE(mSettings.GetFWSettingConfigF(Set_Cfg_LowVolCut_1), 0.0F);
    mSettings.INIMotionSettingValue(true, 0, 0, 0, 0, 0);
    QCOMPARE(mSettings.mSetting.motion_area1, quint64{0xFFFF0FFFFFFFFFFFU});
    mSettings.SetSettingConfig(Set_Cfg_Display, 2);
    QCOMPARE(mSettings.GetSettingConfig(Set_Cfg_Display), 2);
  }

  // ---- what asks for a restart of the recording

  void editsThatAreAppliedAtOnceAskForNoRestart() {
    Setting_Config& edited = mSettings.mSetting;
    edited.volume = edited.lcd_bright = edited.led_mode = edited.rear_cam_power = edited.park_file_volume = 9;
    edited.gPower_cut_lvl_type = edited.display = edited.major_ver = edited.acc_volume = 9;
    edited.motion_area1 = 5;
    mSettings.mMirroring = 1;
    QVERIFY(!mSettings.compareSettingValue());
  }

  // ---- motion maps and view

  void motionMapsOfAFreshRecorder() {
    mSettings.INIMotionSettingValue(true, 0, 0, 0, 0, 0);
    QCOMPARE(mSettings.mSetting.motion_area1, quint64{0xFFFF0FFFFFFFFFFFU});
    QCOMPARE(mSettings.mSetting.motion_area2, quint64{0xFFFF0FFFFFFFFFFFU});
    root.Write(QLatin1String(kFirmware), "[motionmap]\nfront_h=-2147483648\nfront_l=5\nrear_h=1\nrear_l=-1\n");
    mSettings.INIMotionSettingValue(true, 0, 0, 0, 0, 0);
    QCOMPARE(mSettings.mSetting.motion_area1, quint64{0x8000000000000005U});
    QCOMPARE(mSettings.mSetting.motion_area2, quint64{0x1FFFFFFFFU});
  }
  void motionMapOfOneCameraIsWritten() {
    mSettings.INIMotionSettingValue(false, 1, -61441, 7, 8, 9);
    QCOMPARE(InFile(kOwn, QStringLiteral("motionmap/front_h")).toInt(), -61441);
    QCOMPARE(InFile(kOwn, QStringLiteral("motionmap/front_l")).toInt(), 7);
    QVERIFY(!InFile(kOwn, QStringLiteral("motionmap/rear_h")).isValid());
    QCOMPARE(PlatformFake::Get().Shell(), QStringList{"sync"});
    mSettings.INIMotionSettingValue(false, 2, 1, 2, 8, 9);
    QCOMPARE(InFile(kOwn, QStringLiteral("motionmap/rear_h")).toInt(), 8);
    QCOMPARE(InFile(kOwn, QStringLiteral("motionmap/rear_l")).toInt(), 9);
    QCOMPARE(InFile(kOwn, QStringLiteral("motionmap/front_l")).toInt(), 7);
  }
  void mirroringAndMovingPip() {
    mSettings.mMirroring = 1;
    mSettings.mMovingPip = 3;
    mSettings.SettingMirroringAndMovingPipValue(false);
    QCOMPARE(PlatformFake::Get().Shell(), QStringList{"sync"});
    mSettings.mMirroring = mSettings.mMovingPip = 0;
    mSettings.SettingMirroringAndMovingPipValue(true);
    QCOMPARE(mSettings.mMirroring, 1);
    QCOMPARE(mSettings.mMovingPip, 3);
    root.Remove(QLatin1String(kOwn));
    mSettings.SettingMirroringAndMovingPipValue(true);
    QCOMPARE(mSettings.mMovingPip, 0);
  }

  // ---- the setup block

  // Offset, size and source of every byte that one field fills.
  void everyFieldHasItsPlaceInTheSetupBlock_data() {
    QTest::addColumn<int>("offset");
    QTest::addColumn<int>("size");
    QTest::addColumn<int>("id");
    const struct {
      int offset, size, id;
    } places[] = {{0, 1, 0},   {1, 1, 1},   {2, 1, 3},   {4, 1, 5},   {5, 1, 6},    {6, 1, 7},   {7, 1, 8},
                  {8, 1, 9},   {9, 1, 10},  {11, 1, 12}, {12, 1, 13}, {13, 1, 14},  {14, 1, 15}, {15, 1, 16},
                  {16, 1, 17}, {17, 1, 18}, {18, 1, 19}, {20, 1, 21}, {21, 2, 22},  {23, 1, 23}, {24, 1, 24},
                  {25, 1, 25}, {26, 1, 26}, {27, 1, 27}, {28, 1, 28}, {29, 1, 29},  {30, 1, 2},  {31, 1, 30},
                  {32, 1, 37}, {33, 1, 31}, {34, 1, 32}, {35, 1, 38}, {37, 1, 34},  {38, 1, 35}, {39, 1, 36},
                  {40, 1, 39}, {41, 1, 4},  {49, 4, 44}, {53, 4, 45}, {121, 4, 62}, {125, 4, 63}};
    for (const auto& place : places)
      QTest::newRow(FindSettingKey(Setting_Id(place.id))->key) << place.offset << place.size << place.id;
  }
  void everyFieldHasItsPlaceInTheSetupBlock() {
    QFETCH(int, offset);
    QFETCH(int, size);
    QFETCH(int, id);
    mSettings.settingSetup();
    QByteArray expected(reinterpret_cast<const char*>(&mSettings.mSetup_value), 129);
    const quint32 value = 0xA1B2C3D4;
    mSettings.mSetting.*FindSettingKey(Setting_Id(id))->field = int(value);
    mSettings.settingSetup();
    for (int i = 0; i < size; ++i) expected[offset + i] = char(value >> (8 * i));
    QCOMPARE(QByteArray(reinterpret_cast<const char*>(&mSettings.mSetup_value), 129).toHex(), expected.toHex());
  }
  void theRestOfTheSetupBlock() {
    QCOMPARE(sizeof(Setup_Value), size_t{129});
    QByteArray expected(129, '\0');
    expected[19] = char(200);
    for (int i = 0; i < 12; ++i) {
      mSettings.mSetting.low_volt_cut[i] = 11.8F + float(i);
      std::memcpy(expected.data() + 57 + i * 4, &mSettings.mSetting.low_volt_cut[i], 4);
    }
    mSettings.mSetting.motion_area1 = 0x0102030405060708U;
    mSettings.mSetting.motion_area2 = 0x8000000000000009U;
    std::memcpy(expected.data() + 105, "\x08\x07\x06\x05\x04\x03\x02\x01\x09\0\0\0\0\0\0\x80", 16);
    mSettings.settingSetup();
    QCOMPARE(QByteArray(reinterpret_cast<const char*>(&mSettings.mSetup_value), 129).toHex(), expected.toHex());
  }
  void aZoneWestOfGreenwichIsOneByte() {
    mSettings.mSetting.gmt = -5;
    mSettings.settingSetup();
    QCOMPARE(int{mSettings.mSetup_value.gmt_hour}, 251);
    QCOMPARE(int{mSettings.mSetup_value.gmt}, 0);
    QCOMPARE(int{mSettings.mSetup_value.gmt_min}, 0);
  }

  // The recorder writes its file, the interface takes it and gives it back in the block: the recorder must have it all.
  void theRecorderUnderstandsTheBlock() {
    recorder::SettingStore firmware(root.Path(QLatin1String(kFirmware)));
    firmware.Reset();
    QVERIFY(firmware.Save());
    const QJsonObject before = firmware.Values();
    mSettings.InitSettingConfig();
    mSettings.settingSetup();
    firmware.Set(Set_Cfg_Gmt, 3);
    firmware.Set(Set_Cfg_Lcd_Bright, 0);
    firmware.Set(Set_Cfg_Park_File_Volume, 77);
    QString error;
    QVERIFY2(firmware.TakeBlock(QByteArray(reinterpret_cast<const char*>(&mSettings.mSetup_value), 129), &error),
             qPrintable(error));
    QCOMPARE(firmware.Values(), before);
  }

  // ---- touch calibration

  void theFactorysCoefficientsFillAnEmptyFile() {
    mSettings.SettingTouchValue(true);
    const Touch_Value touch = mSettings.mTouchValue.Load();
    QCOMPARE(touch.alphaX, double{-1.0638298F});
    QCOMPARE(touch.alphaY, double{0.012088975F});
    QCOMPARE(touch.betaX, 0.0);
    QCOMPARE(touch.betaY, double{1.1363636F});
    QCOMPARE(touch.deltaX, double{499.57446F});
    QCOMPARE(touch.deltaY, double{-24.76789F});
    const QByteArray bytes = root.Read(QStringLiteral("/opt/touch.zel"));
    QCOMPARE(bytes.size(), 48);
    QCOMPARE(bytes.toHex(), QByteArray("000000607205f1bf000000c01ac2883f0000000000000000000000a08b2ef23f"
                                       "0000000031397f400000008094c438c0"));
    QCOMPARE(PlatformFake::Get().Shell(), QStringList{"sync"});
    QVERIFY(!root.Exists(QStringLiteral("/opt/touch.zel.tmp")));
  }
  void coefficientsAreKept() {
    const Touch_Value touch = {1, 2, 3, 4, 5, 6};
    mSettings.mTouchValue.Store(touch);
    mSettings.SettingTouchValue(false);
    mSettings.mTouchValue.Store(kFactoryTouchValue);
    mSettings.SettingTouchValue(true);
    QCOMPARE(mSettings.mTouchValue.Load().alphaY, 2.0);
    QCOMPARE(mSettings.mTouchValue.Load().deltaY, 6.0);
  }
  void linksToTheCalibrationFilesStay() {
    for (const char* name : {"touch.zel", "touch_tuning.zel"})
      QVERIFY(QFile::link(QStringLiteral("../mnt/nand/") + QLatin1String(name),
                          root.Path(QStringLiteral("/opt/") + QLatin1String(name))));
    mSettings.SettingTouchValue(true);  // fills the files, which are not there yet
    mSettings.SettingTouchTuningValue(true);
    mSettings.mTouchValue.Store({1, 2, 3, 4, 5, 6});
    mSettings.inputX[8] = -3;
    mSettings.SettingTouchValue(false);
    mSettings.SettingTouchTuningValue(false);
    Settings next;
    next.SettingTouchValue(true);
    next.SettingTouchTuningValue(true);
    QCOMPARE(next.mTouchValue.Load().deltaY, 6.0);
    QCOMPARE(next.inputX[8], -3);
    for (const char* name : {"touch.zel", "touch_tuning.zel"}) {
      QVERIFY(QFileInfo(root.Path(QStringLiteral("/opt/") + QLatin1String(name))).isSymLink());
      QVERIFY(QFileInfo(root.Path(QStringLiteral("/mnt/nand/") + QLatin1String(name))).size() > 0);
    }
  }
  void whatFollowsTheCoefficientsStays() {
    root.Write(QStringLiteral("/opt/touch.zel"), QByteArray(48, '\0') + "more");
    mSettings.mTouchValue.Store({1, 2, 3, 4, 5, 6});
    mSettings.SettingTouchValue(false);
    QCOMPARE(root.Read(QStringLiteral("/opt/touch.zel")).mid(48), QByteArray("more"));
  }
  void fortyNineBytesAreReadAsFortyEight() {
    const double values[] = {1, 2, 3, 4, 5, 6};
    const QByteArray bytes = QByteArray(reinterpret_cast<const char*>(values), sizeof values) + 'x';
    root.Write(QStringLiteral("/opt/touch.zel"), bytes);
    mSettings.SettingTouchValue(true);
    QCOMPARE(mSettings.mTouchValue.Load().alphaX, 1.0);
    QCOMPARE(mSettings.mTouchValue.Load().deltaY, 6.0);
    QCOMPARE(root.Read(QStringLiteral("/opt/touch.zel")), bytes);
  }
  void ofAHugeFileOnlyTheBeginningIsKept() {
    const double values[] = {1, 2, 3, 4, 5, 6};
    root.Write(QStringLiteral("/opt/touch.zel"),
               QByteArray(reinterpret_cast<const char*>(values), sizeof values) + QByteArray(100000, 'x'));
    mSettings.SettingTouchValue(true);
    QCOMPARE(mSettings.mTouchValue.Load().deltaY, 6.0);
    mSettings.SettingTouchValue(false);
    QCOMPARE(root.Read(QStringLiteral("/opt/touch.zel")).size(), 4096);
  }
  void aPipeHoldsNoCalibration() {
    MakePipe(QStringLiteral("/opt/touch.zel"));
    MakePipe(QStringLiteral("/opt/touch_tuning.zel"));
    mSettings.SettingTouchValue(true);
    mSettings.SettingTouchTuningValue(true);
    QCOMPARE(mSettings.mTouchValue.Load().deltaX, kFactoryTouchValue.deltaX);
    QCOMPARE(mSettings.inputX[8], 40);
  }
  void aFileWithoutUsableCoefficientsGivesTheFactorys_data() {
    QTest::addColumn<QByteArray>("bytes");
    const auto of = [](std::initializer_list<double> values) {
      return QByteArray(reinterpret_cast<const char*>(values.begin()), qsizetype(values.size() * sizeof(double)));
    };
    QTest::newRow("a byte") << QByteArray(1, '\1');
    QTest::newRow("short") << QByteArray(47, '\1');
    QTest::newRow("nan") << of({1, 2, std::nan(""), 4, 5, 6});
    QTest::newRow("infinite") << of({1, 2, 3, 4, 5, HUGE_VAL});
    QTest::newRow("all zero") << of({0, 0, 0, 0, 0, 0});
    QTest::newRow("all on one line") << of({1, 2, 2, 4, 5, 6});
  }
  void aFileWithoutUsableCoefficientsGivesTheFactorys() {
    QFETCH(QByteArray, bytes);
    root.Write(QStringLiteral("/opt/touch.zel"), bytes);
    mSettings.mTouchValue.Store({1, 2, 3, 4, 5, 6});
    mSettings.SettingTouchValue(true);
    QCOMPARE(mSettings.mTouchValue.Load().deltaX, kFactoryTouchValue.deltaX);
    QCOMPARE(root.Read(QStringLiteral("/opt/touch.zel")), bytes);
  }
  void theCardCanAskForTheFactorysOnce() {
    mSettings.mTouchValue.Store({1, 2, 3, 4, 5, 6});
    mSettings.SettingTouchValue(false);
    PlatformFake::Get().Clear();
    root.Write(QStringLiteral("/mnt/mmc/touch.txt"), "anything");
    // The fake's shell does nothing: do what "rm" would have done.
    PlatformFake::Get().meanwhile = [](const QString& line) {
      if (line == QLatin1String("sh rm /mnt/mmc/touch.txt")) root.Remove(QStringLiteral("/mnt/mmc/touch.txt"));
    };
    mSettings.SettingTouchValue(true);
    QCOMPARE(PlatformFake::Get().Shell(), (QStringList{"rm /mnt/mmc/touch.txt", "sync"}));
    QCOMPARE(mSettings.mTouchValue.Load().deltaX, kFactoryTouchValue.deltaX);
    mSettings.SettingTouchValue(true);  // the file still holds the user's own
    QCOMPARE(mSettings.mTouchValue.Load().deltaX, 5.0);
    QVERIFY(!Settings::IsExistTouchTXT());
  }
  void aCoefficientFileThatCannotBeOpenedGivesTheFactorys() {
    QVERIFY(QDir().mkpath(root.Path(QStringLiteral("/opt/touch.zel"))));
    mSettings.mTouchValue.Store({1, 2, 3, 4, 5, 6});
    mSettings.SettingTouchValue(true);
    QCOMPARE(mSettings.mTouchValue.Load().deltaX, kFactoryTouchValue.deltaX);
    mSettings.SettingTouchValue(false);
    mSettings.SettingTouchTuningValue(false);
    QDir().rmdir(root.Path(QStringLiteral("/opt/touch.zel")));
  }
  void theTableOfTheLastCalibration() {
    mSettings.SettingTouchTuningValue(true);
    const int x[] = {240, 40, 240, 440, 440, 440, 240, 40, 40};
    const int y[] = {160, 35, 35, 35, 160, 285, 285, 285, 160};
    QByteArray expected;
    for (int i = 0; i < 9; ++i) {
      QCOMPARE(mSettings.inputX[i], x[i]);
      QCOMPARE(mSettings.inputY[i], y[i]);
      expected +=
          QByteArray(reinterpret_cast<const char*>(&x[i]), 4) + QByteArray(reinterpret_cast<const char*>(&y[i]), 4);
    }
    QCOMPARE(root.Read(QStringLiteral("/opt/touch_tuning.zel")), expected);
    QVERIFY(expected.toHex().startsWith("f0000000a00000002800000023000000"));
    mSettings.inputX[8] = -3;
    mSettings.SettingTouchTuningValue(false);
    mSettings.inputX[8] = 0;
    mSettings.SettingTouchTuningValue(true);
    QCOMPARE(mSettings.inputX[8], -3);
    root.Write(QStringLiteral("/opt/touch_tuning.zel"), QByteArray(71, '\7'));
    mSettings.SettingTouchTuningValue(true);
    QCOMPARE(mSettings.inputX[8], 40);
  }

  // ---- power loss

  // What a killed save really leaves, also beside the file that a link names.
  void theStartTidiesUpAfterAKilledSave_data() {
    QTest::addColumn<bool>("link");
    QTest::newRow("a file") << false;
    QTest::newRow("a link") << true;
  }
  void theStartTidiesUpAfterAKilledSave() {
    QFETCH(bool, link);
    const QString folder = link ? QStringLiteral("/mnt/nand") : QStringLiteral("/opt/gui/ini");
    if (link) QVERIFY(QFile::link(QStringLiteral("../../../mnt/nand/own.ini"), root.Path(QLatin1String(kOwn))));
    WriteDistinct(kFirmware, 5000);
    const auto files = [&] { return QDir(root.Path(folder)).entryList({"*.ini*"}, QDir::Files | QDir::Hidden); };
    int leftovers = 0;
    for (int steps = 0; leftovers < 1; ++steps) {  // until it was killed with the new file beside the old one
      QVERIFY(steps < 20000);
      const pid_t writer = fork();
      if (writer == 0) {
        ptrace(PTRACE_TRACEME, 0, nullptr, nullptr);
        raise(SIGSTOP);
        gEnvirnmentSettings.AllSetSettingConfig();
        _exit(0);
      }
      int status = 0;
      waitpid(writer, &status, 0);
      for (int step = 0; step < steps && !WIFEXITED(status); ++step) {
        ptrace(PTRACE_SYSCALL, writer, nullptr, nullptr);
        waitpid(writer, &status, 0);
      }
      QVERIFY(!WIFEXITED(status));
      QVERIFY(SignalTo(writer, SIGKILL));
      waitpid(writer, &status, 0);
      const QStringList left = files().filter(QStringLiteral(".ini."));
      leftovers = std::max(leftovers, int(left.size()));
      mSettings.InitSettingConfig();
      QCOMPARE(files(), QStringList(link ? "own.ini" : "config_firm.ini"));
    }
    root.Remove(QStringLiteral("/mnt/nand/own.ini"));
  }
  void theStartLeavesWhatOthersPutBesideTheFile_data() {
    QTest::addColumn<QString>("name");
    for (const char* name : {".bak", ".old", ".orig", ".1", "~", ".backups", ".2023-01-01", ".tmp", ".lock", ".XyZabQ"})
      QTest::newRow(name) << name;
  }
  void theStartLeavesWhatOthersPutBesideTheFile() {
    QFETCH(QString, name);
    root.Write(QLatin1String(kOwn) + name, "somebody's");
    WriteDistinct(kFirmware, 5000);
    mSettings.InitSettingConfig();
    QCOMPARE(root.Read(QLatin1String(kOwn) + name), QByteArray("somebody's"));
    QCOMPARE(InFile(kOwn, QStringLiteral("view/display")).toInt(), 5019);
    root.Remove(QLatin1String(kOwn) + name);
  }

  // ---- what cannot be read or written

  // A folder in the way of the new file stands for a file system that refuses it.
  void whatCouldNotBeWrittenIsHeldAndWrittenWithTheNextSave() {
    WriteDistinct(kFirmware, 5000);
    mSettings.InitSettingConfig();
    const QByteArray before = root.Read(QLatin1String(kOwn));
    const QString beside = root.Path(QLatin1String(kOwn) + QStringLiteral(".saving"));
    QVERIFY(QDir().mkpath(beside));
    mSettings.SetSettingConfig(Set_Cfg_Display, 1);
    mSettings.mSetting.low_volt_cut[3] = 11.5F;
    mSettings.AllSetSettingConfig();
    mSettings.INIMotionSettingValue(false, 1, 8, 9, 0, 0);
    QCOMPARE(root.Read(QLatin1String(kOwn)), before);
    QCOMPARE(mSettings.GetSettingConfig(Set_Cfg_Display), 1);
    mSettings.mSetting.display = 0;
    mSettings.AllGetSettingConfig();
    QCOMPARE(mSettings.mSetting.display, 1);
    QCOMPARE(mSettings.mSetting.low_volt_cut[3], 11.5F);

    QVERIFY(QDir().rmdir(beside));
    mSettings.SetSettingConfig(Set_Cfg_Display, 1);  // it is the value that it has
    QCOMPARE(InFile(kOwn, QStringLiteral("view/display")).toInt(), 1);
    QCOMPARE(InFile(kOwn, QStringLiteral("motionmap/front_l")).toInt(), 9);
    QCOMPARE(InFile(kOwn, QStringLiteral("parkingsetting/low_volt_cut_4")).toFloat(), 11.5F);
    QCOMPARE(InFile(kOwn, QStringLiteral("timesetting/gmt")).toInt(), 5004);
  }
  // In memory both come within the same tick of the clock: QSettings tells a file by its time and its size.
  void savesInQuickSuccessionAreAllSeen() {
    const QString shared = QStringLiteral("/dev/shm");
    const QTemporaryDir memory((QFileInfo(shared).isWritable() ? shared : QDir::tempPath()) +
                               QStringLiteral("/settings-XXXXXX"));
    QVERIFY(memory.isValid());
    QVERIFY(QFile::link(memory.filePath(QStringLiteral("own.ini")), root.Path(QLatin1String(kOwn))));
    for (int i = 0; i < 200; ++i) {
      mSettings.SetSettingConfig(Set_Cfg_Display, i % 3);
      QCOMPARE(mSettings.GetSettingConfig(Set_Cfg_Display), i % 3);
    }
  }
  void aCalibrationThatCouldNotBeWrittenIsWrittenWithTheNextSave() {
    mSettings.SettingTouchValue(true);
    mSettings.SettingTouchTuningValue(true);
    const QByteArray before = root.Read(QStringLiteral("/opt/touch.zel"));
    const QStringList beside{root.Path(QStringLiteral("/opt/touch.zel.saving")),
                             root.Path(QStringLiteral("/opt/touch_tuning.zel.saving"))};
    for (const QString& folder : beside) QVERIFY(QDir().mkpath(folder));
    mSettings.mTouchValue.Store({1, 2, 3, 4, 5, 6});
    mSettings.inputX[8] = -3;
    mSettings.SettingTouchValue(false);
    mSettings.SettingTouchTuningValue(false);
    QCOMPARE(root.Read(QStringLiteral("/opt/touch.zel")), before);
    for (const QString& folder : beside) QVERIFY(QDir().rmdir(folder));
    mSettings.SetSettingConfig(Set_Cfg_Display, 1);
    Settings next;
    next.SettingTouchValue(true);
    next.SettingTouchTuningValue(true);
    QCOMPARE(next.mTouchValue.Load().deltaY, 6.0);
    QCOMPARE(next.inputX[8], -3);
  }

  // A process that saves again and again, all values once 1 and once 2, is killed at any moment, a hundred times.
  void powerThatFailsLeavesTheOldOrTheNewSettings() {
    const auto fill = [](int value) {
      for (const SettingKey& row : SettingKeys())
        if (row.place == SettingPlace::Field) gEnvirnmentSettings.mSetting.*row.field = value;
    };
    fill(1);
    gEnvirnmentSettings.AllSetSettingConfig();
    std::srand(20261121);
    int changes = 0;
    int last = 1;
    for (int kills = 0; kills < 100; ++kills) {
      int saved[2];  // a byte for each time that it has saved
      QCOMPARE(pipe(saved), 0);
      const pid_t writer = fork();
      if (writer == 0) {
        gEnvirnmentSettings.InitSettingConfig();
        for (int value = 1;; value = 3 - value) {
          fill(value);
          gEnvirnmentSettings.AllSetSettingConfig();
          if (write(saved[1], "", 1) != 1) _exit(1);
        }
      }
      close(saved[1]);
      char byte;
      for (int saves = std::rand() % 4; saves > 0; --saves) QCOMPARE(read(saved[0], &byte, 1), 1);
      QThread::usleep(static_cast<unsigned long>(std::rand() % 5000));
      QVERIFY(SignalTo(writer, SIGKILL));
      QCOMPARE(waitpid(writer, nullptr, 0), writer);
      close(saved[0]);
      const QSettings file(root.Path(kOwn), QSettings::IniFormat);
      QCOMPARE(file.status(), QSettings::NoError);
      const int found = file.value(QStringLiteral("drivingsetting/fps")).toInt();
      QVERIFY(found == 1 || found == 2);
      for (const SettingKey& row : SettingKeys())
        if (row.place == SettingPlace::Field) QCOMPARE(file.value(QLatin1String(row.key)).toInt(), found);
      changes += found != last;
      last = found;
    }
    QVERIFY(changes > 5);  // it was caught with either of them
  }
};

QTEST_GUILESS_MAIN(SettingsTest)
#include "settings_test.moc"
