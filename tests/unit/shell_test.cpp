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
