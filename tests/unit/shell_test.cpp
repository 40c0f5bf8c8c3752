#include "gui/base/shell.h"

#include <QTest>

#include "tests/fake/platformfake.h"
#include "tests/fake/testroot.h"

static TestRoot root;

class ShellTest : public QObject {
  Q_OBJECT

private:
  static QStringList& Asked() { return PlatformFake::Get().asked; }

private slots:
  void init() { PlatformFake::Get().Clear(); }

  void whatIsMissingIsSaid_data() {
    QTest::addColumn<QStringList>("there");
    QTest::addColumn<QStringList>("said");
    const QString aplay = "shell: there is no aplay: keys are silent";
    const QString sync = "shell: there is no sync: what is saved may be lost when the power fails";
    const QString rm =
        "shell: there is no rm: a request for the factory's touch coefficients is carried out at each start";
    QTest::newRow("nothing is missing") << QStringList{"aplay", "sync", "rm"} << QStringList();
    QTest::newRow("aplay") << QStringList{"sync", "rm"} << QStringList{aplay};
    QTest::newRow("all") << QStringList() << QStringList{aplay, sync, rm};
  }
  void whatIsMissingIsSaid() {
    QFETCH(QStringList, there);
    QTemporaryDir folder;
    for (const QString& name : there) {
      QFile file(folder.filePath(name));
      QVERIFY(file.open(QIODevice::WriteOnly));
      QVERIFY(file.setPermissions(QFile::ReadOwner | QFile::ExeOwner));
    }
    const QByteArray path = qgetenv("PATH");
    qputenv("PATH", folder.path().toLocal8Bit());
    static QStringList said;
    said.clear();
    const QtMessageHandler before =
        qInstallMessageHandler([](QtMsgType, const QMessageLogContext&, const QString& line) { said << line; });
    CheckShell();
    qInstallMessageHandler(before);
    qputenv("PATH", path);
    QTEST(said, "said");
    QCOMPARE(Asked(), QStringList());
  }

  void aCommandIsRunAsItStands() {
    RunShell(QStringLiteral("echo 1 > /x y"));
    QCOMPARE(Asked(), QStringList{"sh echo 1 > /x y"});
  }
  void filesAreFlushed() {
    SyncFiles();
    QCOMPARE(Asked(), QStringList{"sh sync"});
  }
  void theKeyClickPlaysInTheBackground() {
    PlayClick();
    QCOMPARE(Asked(), QStringList{"sh aplay /opt/ipnc/voice/touch.wav &"});
  }
  void theClickOfTheLcdKeyIsWaitedFor() {
    PlayClickAndWait();
    QCOMPARE(Asked(), QStringList{"sh aplay /opt/ipnc/voice/touch.wav"});
  }
  void theBacklightTakesItsValue() {
    WriteBacklight(0);
    WriteBacklight(100000);
    QCOMPARE(Asked(), (QStringList{"sh echo 0 > /proc/pwm/pwm0", "sh echo 100000 > /proc/pwm/pwm0"}));
  }
};

QTEST_GUILESS_MAIN(ShellTest)
#include "shell_test.moc"
