#include "gui/base/devicepath.h"

#include <QProcess>
#include <QTest>
#include <cstdio>
#include <cstring>

// The root is read once in a process, so each case runs in a process of its own: this program, asked to print a path.
class DevicePathTest : public QObject {
  Q_OBJECT

private:
  static QStringList Printed(const char* root, const QString& path, const QString& what) {
    QProcess child;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.remove(QStringLiteral("DASHCAM_ROOT"));
    if (root) environment.insert(QStringLiteral("DASHCAM_ROOT"), QString::fromUtf8(root));
    child.setProcessEnvironment(environment);
    child.start(QCoreApplication::applicationFilePath(), {what, path});
    if (!child.waitForFinished() || child.exitCode() != 0) return {};
    return QString::fromUtf8(child.readAllStandardOutput()).split(u'\0', Qt::SkipEmptyParts);
  }

private slots:
  void onTheCameraThePathIsThePath() {
    QCOMPARE(Printed(nullptr, "/opt/touch.zel", "--path"), QStringList{"/opt/touch.zel"});
    QCOMPARE(Printed("", "/opt/touch.zel", "--path"), QStringList{"/opt/touch.zel"});
    QCOMPARE(Printed(nullptr, "/proc/pwm/pwm0", "--shell"), QStringList{"/proc/pwm/pwm0"});
  }
  void aRootStandsInFront() {
    QCOMPARE(Printed("/tmp/bench 1", "/opt/touch.zel", "--path"), QStringList{"/tmp/bench 1/opt/touch.zel"});
  }
  void theRootIsReadOnce() { QCOMPARE(Printed("/tmp/a", "/x", "--twice"), (QStringList{"/tmp/a/x", "/tmp/a/x"})); }

  void aShellReadsThePathBack_data() {
    QTest::addColumn<QByteArray>("root");
    QTest::newRow("plain") << QByteArray("/tmp/bench-1_a.b:c");
    QTest::newRow("blank") << QByteArray("/tmp/my bench");
    QTest::newRow("quote") << QByteArray("/tmp/it's");
    QTest::newRow("double quote") << QByteArray("/tmp/\"x\"");
    QTest::newRow("variable") << QByteArray("/tmp/$HOME");
    QTest::newRow("command") << QByteArray("/tmp/`id`$(id)");
    QTest::newRow("end of command") << QByteArray("/tmp/a;b&c|d");
    QTest::newRow("redirection") << QByteArray("/tmp/a>b<c");
    QTest::newRow("pattern") << QByteArray("/tmp/a*b?[c]");
    QTest::newRow("line break") << QByteArray("/tmp/a\nb");
    QTest::newRow("backslash") << QByteArray("/tmp/a\\b");
    QTest::newRow("Korean") << QByteArray("/tmp/\xEC\xB9\xB4\xEB\xA9\x94\xEB\x9D\xBC");
  }
  void aShellReadsThePathBack() {
    QFETCH(QByteArray, root);
    const QStringList quoted = Printed(root.constData(), "/proc/pwm/pwm0", "--shell");
    QCOMPARE(quoted.size(), 1);
    QProcess shell;
    shell.start("/bin/sh", {"-c", "printf %s " + quoted.first()});
    QVERIFY(shell.waitForFinished());
    QCOMPARE(shell.readAllStandardOutput(), root + "/proc/pwm/pwm0");
  }
  void aLineBreakAtTheEndIsQuotedToo() { QCOMPARE(Printed("/tmp/a", "/x\n", "--shell"), QStringList{"'/tmp/a/x\n'"}); }

  void pathsOfTheCamera_data() {
    QTest::addColumn<QString>("named");
    QTest::addColumn<QString>("path");
    const auto row = [](const char* named, const char* path) {
      QTest::newRow(path) << QString(named) << QString(path);
    };
    row(device::kTouchDevice, "/dev/input/event0");
    row(device::kBacklight, "/proc/pwm/pwm0");
    row(device::kDropCaches, "/proc/sys/vm/drop_caches");
    row(device::kImages, "/opt/gui/images/");
    row(device::kConfigFirm, "/opt/gui/ini/config_firm.ini");
    row(device::kConfigInit, "/tmp/config_init.ini");
    row(device::kClickSound, "/opt/ipnc/voice/touch.wav");
    row(device::kTouchCoefficients, "/opt/touch.zel");
    row(device::kTouchTuning, "/opt/touch_tuning.zel");
    row(device::kTouchReset, "/mnt/mmc/touch.txt");
    row(device::kTouchCheckMarker, "/mnt/mmc/touch_check.txt");
    row(device::kTouchTestMarker, "/mnt/mmc/touch_test.txt");
    row(device::kTestModeMarker, "/mnt/mmc/test_mode.txt");
    row(device::kPointerCalibration, "/mnt/nand/pointercal");
    row(device::kUpdateMarker, "/tmp/update.zel");
    row(device::kUpdateMarker2, "/tmp/update.zel2");
    row(device::kUpdateStartPicture, "/usr/local/etc/fwupdatestart.bmp");
    row(device::kUpdateRunsPicture, "/usr/local/etc/fwupdating.bmp");
    row(device::kUpdateEndPicture, "/usr/local/etc/fwupdateend.bmp");
    row(device::kUpdateBarPicture, "/usr/local/etc/bottom.bmp");
    row(device::kManualEventMarker, "/tmp/ndf");
    row(device::kParkingReport, "/tmp/.info.bin");
    row(device::kCustomPictureOnCard, "/mnt/mmc/Setup/picture.bmp");
    row(device::kCustomPicture, "/tmp/picture.bmp");
  }
  void pathsOfTheCamera() {
    QFETCH(QString, named);
    QFETCH(QString, path);
    QCOMPARE(named, path);
  }
};

namespace {
void Print(const QString& path) {
  const QByteArray bytes = path.toUtf8();
  std::fwrite(bytes.constData(), 1, static_cast<size_t>(bytes.size()) + 1, stdout);
}
}  // namespace

int main(int argc, char** argv) {
  const QString path = argc == 3 ? QString::fromUtf8(argv[2]) : QString();
  if (argc == 3 && std::strcmp(argv[1], "--path") == 0) return Print(DevicePath(path)), 0;
  if (argc == 3 && std::strcmp(argv[1], "--shell") == 0) return Print(ShellPath(path)), 0;
  if (argc == 3 && std::strcmp(argv[1], "--twice") == 0) {
    Print(DevicePath(path));
    qputenv("DASHCAM_ROOT", "/tmp/later");
    Print(DevicePath(path));
    return 0;
  }
  QCoreApplication application(argc, argv);
  DevicePathTest test;
  return QTest::qExec(&test, argc, argv);
}

#include "devicepath_test.moc"
