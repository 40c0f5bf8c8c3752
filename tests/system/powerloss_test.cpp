// The power fails while the interface saves its settings: the file has the old values or the new ones, whole. With the
// real interface, without a recorder.
#include <signal.h>
#include <sys/prctl.h>

#include <QElapsedTimer>
#include <QProcess>
#include <QRandomGenerator>
#include <QSettings>
#include <QTest>
#include <QThread>

#include "bench/panel/touchpanel.h"
#include "gui/settings/settingkeys.h"
#include "recorder/firmware/recorder.h"
#include "tests/fake/testroot.h"
#include "tests/system/patience.h"

static const TestRoot root;

namespace {
constexpr char kFirmware[] = "/tmp/config_init.ini";
constexpr char kOwn[] = "/opt/gui/ini/config_firm.ini";
constexpr char kView[] = "view/display";
constexpr QPoint kViewKey(40, 33);
}  // namespace

class PowerLossTest : public QObject {
  Q_OBJECT

  QProcess mInterface;
  TouchPanel mPanel;
  QRandomGenerator mRandom{20261121};
  int mReads = 0;

  // The recorder's file with all values the same, but for the view.
  static void WriteFirmware(int value) {
    QMap<QString, QStringList> groups;
    for (const SettingKey& row : SettingKeys()) {
      const QString key = QLatin1String(row.key);
      groups[key.section(u'/', 0, 0)] << QStringLiteral("%1=%2").arg(key.section(u'/', 1)).arg(value);
    }
    QString text;
    for (auto group = groups.cbegin(); group != groups.cend(); ++group)
      text += QStringLiteral("[%1]\n%2\n").arg(group.key(), group.value().join(u'\n'));
    root.Write(QLatin1String(kFirmware), text.toUtf8());
  }

  void StartInterface() {
    mInterface.start();
    QVERIFY(mInterface.waitForStarted());
  }
  void WaitForPreview() {
    QByteArray said;
    while (!said.contains("screen PREVIEW")) {
      QVERIFY(mInterface.waitForReadyRead(10000));
      said += mInterface.readAll();
    }
  }
  void FailPower() {
    mInterface.kill();
    QVERIFY(mInterface.waitForFinished());
    mInterface.readAll();
    mPanel.Drain();
  }

  // The value that all settings but the view have, and the view; -1: they are not the same, or one is missing.
  QPair<int, int> Saved() {
    const QString copy = root.Path(QStringLiteral("/tmp/saved%1.ini").arg(++mReads));  // QSettings remembers files
    if (!QFile::copy(root.Path(QLatin1String(kOwn)), copy)) return {-1, -1};
    const QSettings file(copy, QSettings::IniFormat);
    QSet<int> found;
    for (const SettingKey& row : SettingKeys())
      if (qstrcmp(row.key, kView) != 0) found << file.value(QLatin1String(row.key), -1).toInt();
    const int view = file.value(QLatin1String(kView), -1).toInt();
    return {file.status() == QSettings::NoError && found.size() == 1 ? *found.constBegin() : -1, view};
  }

private slots:
  void initTestCase() {
    qputenv("PLATFORM_KEY", QByteArray::number(0x46000000 + 2 * (QCoreApplication::applicationPid() & 0xFFFFF)));
    // The stand-ins of its shell.
    QDir(root.Path(QStringLiteral("/"))).mkpath(QStringLiteral("bin"));
    for (const char* command : {"/bin/aplay", "/bin/sync"}) {
      root.Write(QLatin1String(command), "#!/bin/sh\n");
      QFile::setPermissions(root.Path(QLatin1String(command)), QFile::ReadOwner | QFile::ExeOwner);
    }
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("PATH"), root.Path(QStringLiteral("/bin:")) + qEnvironmentVariable("PATH"));
    environment.insert(QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("offscreen"));
    environment.insert(QStringLiteral("QT_FORCE_STDERR_LOGGING"), QStringLiteral("1"));
    mInterface.setProcessEnvironment(environment);
    mInterface.setProgram(QStringLiteral(BINARY_DIR "/gui/dashcam-gui"));
    mInterface.setProcessChannelMode(QProcess::MergedChannels);
    mInterface.setChildProcessModifier([] { prctl(PR_SET_PDEATHSIG, SIGKILL); });
    QString error;
    QVERIFY2(mPanel.Open(root.Path(QStringLiteral("/dev/input/event0")), &error), qPrintable(error));
  }
  void cleanupTestCase() {
    mInterface.kill();
    mInterface.waitForFinished();
    Recorder::RemoveTransport();
  }

  // It saves all settings when it starts. Sixty times it is caught around that.
  void atTheStart() {
    WriteFirmware(1);
    StartInterface();
    WaitForPreview();
    FailPower();
    int olds = 0;
    int last = 1;
    int when = 20000;  // about when it saves, microseconds: later after an old file, earlier after a new one
    for (int i = 0; i < 60; ++i) {
      const int value = 3 - last;
      WriteFirmware(value);
      StartInterface();
      QThread::usleep(static_cast<unsigned long>(when + mRandom.bounded(-when / 8, when / 8)));
      FailPower();
      const int found = Saved().first;
      QVERIFY2(found == value || found == last, qPrintable(QString::number(found)));
      olds += found == last;
      when += found == last ? when / 10 : -when / 10;
      last = found;
    }
    QVERIFY2(olds > 5 && olds < 55, qPrintable(QString::number(olds)));  // it was caught before and after
  }

  // It saves the view with each tap of the view key: forty times.
  void atATap() {
    WriteFirmware(1);
    QSet<int> views;
    for (int i = 0; i < 40; ++i) {
      StartInterface();
      WaitForPreview();
      QString error;
      QElapsedTimer clock;
      clock.start();
      for (const int ms = mRandom.bounded(2, 50); clock.elapsed() < ms; QThread::usleep(500)) {
        mPanel.Press(kViewKey.x(), kViewKey.y(), &error);
        mPanel.Release(&error);
      }
      FailPower();
      const auto [found, view] = Saved();
      QCOMPARE(found, 1);
      QVERIFY2(view >= 0 && view <= 2, qPrintable(QString::number(view)));
      views << view;
    }
    QCOMPARE(views.size(), 3);
  }
};

QTEST_GUILESS_MAIN(PowerLossTest)
#include "powerloss_test.moc"
