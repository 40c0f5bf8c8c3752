// A monkey and drivers play with the camera while everything fails, in virtual time. Their steps come from a seed
// alone; what must always hold is looked at after each. Steps that break a rule are shrunk to as few as can be, and
// written as a scenario of the bench: ./run --scenario FILE shows them in a browser.
//
//   monkey_test [TEST...]       the tests of this program
//   monkey_test STEPS [SEED]    plays so many steps, 2000 of each seed from SEED on, 1 unless given
//   monkey_test FILE            plays the steps of such a scenario
#include <sanitizer/common_interface_defs.h>
#include <unistd.h>

#include <QElapsedTimer>
#include <QFileInfo>
#include <QLoggingCategory>
#include <QProcess>
#include <QTemporaryFile>
#include <csignal>
#include <cstdio>

#include "bench/camera/bench.h"
#include "gui/app/commandline.h"
#include "recorder/firmware/scenario.h"
#include "tests/fuzz/camera.h"
#include "tests/fuzz/shrink.h"

namespace {
// The camera's files are written in memory: a disk would take most of the time.
const bool gInMemory = access("/dev/shm", W_OK) == 0 && qputenv("TMPDIR", "/dev/shm");
const TestRoot root;

constexpr int kEpisode = 2000;     // steps of a seed
constexpr qint64 kTellMs = 30000;  // from one line about the rate to the next

char gSeed[16] = "";  // that is being played

QByteArray ReadFile(const QString& path) {
  QFile file(path);
  if (!file.open(QIODevice::ReadOnly)) qFatal("cannot read %s", qPrintable(path));
  return file.readAll();
}

void WriteFile(const QString& path, const QByteArray& bytes) {
  QFile file(path);
  if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size())
    qFatal("cannot write %s", qPrintable(path));
}

QString FileOf(quint32 seed) {
  return QStringLiteral(BINARY_DIR "/tests/monkey-%1.jsonl").arg(seed);
}

void Tell(const monkey::Finding& finding) {
  std::printf("broken: %s: %s\n", qPrintable(finding.rule), qPrintable(finding.what));
}

void TellFile(quint32 seed, const monkey::Steps& steps) {
  std::printf("seed %u: %d steps are left: %s\n", seed, int(steps.size()), qPrintable(FileOf(seed)));
}

/// The steps that break the same rule, as few as can be, and their scenario in a file.
monkey::Steps Shorten(monkey::Camera& camera, quint32 seed, monkey::Steps steps, const monkey::Finding& finding) {
  steps.resize(finding.step + 1);
  steps = monkey::Shrink(steps, [&](const monkey::Steps& fewer) {
    const auto again = camera.Play(fewer);
    return again && again->rule == finding.rule;
  });
  WriteFile(FileOf(seed), "# " + finding.rule.toUtf8() + ": " + finding.what.toUtf8() + "\n" + camera.Scenario(steps));
  return steps;
}

int PlayMany(qint64 count, quint32 first) {
  monkey::Camera camera(root);
  QElapsedTimer clock;
  clock.start();
  qint64 played = 0, told = 0;
  quint32 seed = first;
  int found = 0;
  const auto rate = [&] { return qint64(double(played) * 1000 / double(std::max<qint64>(clock.elapsed(), 1))); };
  for (; played < count && found == 0; ++seed) {
    std::snprintf(gSeed, sizeof gSeed, "%u", seed);
    const monkey::Steps steps = monkey::Chooser(seed).Choose(int(std::min<qint64>(kEpisode, count - played)));
    if (const auto finding = camera.Play(steps)) {
      ++found;
      played += finding->step + 1;
      Tell(*finding);
      TellFile(seed, Shorten(camera, seed, steps, *finding));
    } else {
      played += steps.size();
    }
    if (clock.elapsed() < told + kTellMs) continue;
    told = clock.elapsed();
    std::printf("%lld steps, %lld a second\n", played, rate());
    std::fflush(stdout);
  }
  std::printf("%lld timers, %lld ways home, %lld rests\n", camera.TimersPlayed(), camera.Homes(), camera.Rests());
  std::printf(R"(figures: {"steps": %lld, "seeds": [%u, %u], "seconds": %lld, "stepsPerSecond": %lld, "found": %d})"
              "\n",
              played, first, seed - 1, clock.elapsed() / 1000, rate(), found);
  return found == 0 ? 0 : 1;
}

int PlayFile(const QString& path) {
  monkey::Camera camera(root);
  const monkey::Steps steps = monkey::ReadAll(ReadFile(path));
  const auto finding = camera.Play(steps);
  if (finding) Tell(*finding);
  std::printf("%d steps, %s\n", int(steps.size()), finding ? "a rule is broken" : "all rules hold");
  return finding ? 1 : 0;
}

// ---- a crash: each attempt is a process of its own

constexpr char kChild[] = "MONKEY_CHILD";

bool Crashes(const monkey::Steps& steps) {
  QTemporaryFile file;
  if (!file.open()) qFatal("no temporary file");
  for (const monkey::Step& step : steps) file.write(monkey::Written(step));
  file.close();
  QProcess child;
  child.setProgram(QStringLiteral("/proc/self/exe"));
  child.setArguments({file.fileName()});
  child.start();
  child.waitForFinished(-1);
  return child.exitStatus() == QProcess::CrashExit || child.exitCode() > 1;
}

monkey::Steps ShortenCrash(quint32 seed, monkey::Steps steps) {
  qputenv(kChild, "1");
  if (!Crashes(steps)) return {};
  steps = monkey::Shrink(steps, Crashes);
  QByteArray text("# it crashes\n");
  for (const monkey::Step& step : steps) text += monkey::Written(step);
  WriteFile(FileOf(seed), text);
  return steps;
}

int TellCrash(quint32 seed) {
  const monkey::Steps steps = ShortenCrash(seed, monkey::Chooser(seed).Choose(kEpisode));
  if (steps.isEmpty())
    std::printf("seed %u crashes only after others\n", seed);
  else
    TellFile(seed, steps);
  return 1;
}

// The dying process becomes the one that looks for the shortest way there.
void Die() {
  static bool isDying = false;
  if (std::exchange(isDying, true) || gSeed[0] == 0 || qEnvironmentVariableIsSet(kChild)) return;
  std::printf("seed %s crashes\n", gSeed);
  std::fflush(stdout);
  execl("/proc/self/exe", "monkey_test", "--crashed", gSeed, nullptr);
}

void WatchForCrashes() {
#if defined(__SANITIZE_ADDRESS__)
  __sanitizer_set_death_callback(Die);
#else
  for (const int number : {SIGSEGV, SIGBUS, SIGFPE, SIGILL})
    std::signal(number, [](int) {
      Die();
      _exit(3);
    });
#endif
  std::signal(SIGABRT, [](int) {
    Die();
    _exit(3);
  });
}
}  // namespace

#if defined(__SANITIZE_ADDRESS__)
// Half of the time would go into its notes of what was freed.
extern "C" const char* __asan_default_options() {  // NOLINT: the sanitizer's name
  return "quarantine_size_mb=16:malloc_context_size=1";
}
#endif

class MonkeyTest : public QObject {
  Q_OBJECT

private:
  static monkey::Steps Chosen(quint32 seed) { return monkey::Chooser(seed).Choose(kEpisode); }

private slots:
  // And every screen is played with.
  void theRulesHold() {
    monkey::Camera camera(root);
    for (quint32 seed = 1; seed <= 8; ++seed) {
      const monkey::Steps steps = Chosen(seed);
      QCOMPARE(steps.size(), qsizetype{kEpisode});
      if (const auto finding = camera.Play(steps)) {
        const monkey::Steps few = Shorten(camera, seed, steps, *finding);
        QFAIL(qPrintable(QStringLiteral("seed %1: %2: %3; %4 steps in %5")
                             .arg(seed)
                             .arg(finding->rule, finding->what)
                             .arg(few.size())
                             .arg(FileOf(seed))));
      }
    }
    QVERIFY(camera.Homes() > 100);
    QVERIFY(camera.Rests() > 40);
    for (int id = PREVIEW; id < SCREENS_END; ++id)
      QVERIFY2(camera.SeenScreens().contains(WidgetId(id)), NameOf(WidgetId(id)));
  }

  void stepsComeFromTheSeedAlone() {
    QCOMPARE(Chosen(7), Chosen(7));
    QVERIFY(Chosen(7) != Chosen(8));
  }

  void theBenchTakesWhatIsWritten_data() {
    QTest::addColumn<uint>("seed");
    for (uint seed = 1; seed <= 10; ++seed) QTest::addRow("seed %u", seed) << seed;
  }
  void theBenchTakesWhatIsWritten() {
    QFETCH(uint, seed);
    const monkey::Steps steps = Chosen(seed);
    QByteArray text;
    for (const monkey::Step& step : steps) text += monkey::Written(step);
    QCOMPARE(monkey::ReadAll(text), steps);
    recorder::StatusChannel nobody;
    recorder::Sink sink(nobody);
    recorder::Scenario scenario(sink);
    QString error;
    QVERIFY2(scenario.Take(text, QStringLiteral("monkey"), QString(), Bench::CheckAction, &error), qPrintable(error));
  }

  // A rule that breaks when the menu is opened and the car parks.
  void whatBreaksARuleIsShrunk() {
    monkey::Camera camera(root);
    camera.also = [] {
      const bool broken = gWidgetManager.GetCurWidgetId() == MAINMENU && gMainWindow->GetIsIngParkingModeOn();
      return broken ? QStringLiteral("the menu of a parked car") : QString();
    };
    std::optional<monkey::Finding> finding;
    monkey::Steps steps;
    uint seed = 0;
    while (!finding && seed < 20) finding = camera.Play(steps = Chosen(++seed));
    QVERIFY(finding);
    QVERIFY(finding->step > 10);
    const monkey::Steps few = Shorten(camera, seed, steps, *finding);
    QVERIFY2(few.size() <= 3, qPrintable(QString::number(few.size())));
    QVERIFY(few.back().at < 10 * monkey::kSecond);

    const QByteArray text = ReadFile(FileOf(seed));
    recorder::StatusChannel nobody;
    recorder::Sink sink(nobody);
    recorder::Scenario scenario(sink);
    QString error;
    QVERIFY2(scenario.Load(FileOf(seed), Bench::CheckAction, &error), qPrintable(error));
    QVERIFY(recorder::Scenario::TitleOf(text).contains(QLatin1String("the menu of a parked car")));
    const auto again = camera.Play(monkey::ReadAll(text));
    QVERIFY(again);
    QCOMPARE(again->rule, finding->rule);
    QFile::remove(FileOf(seed));
  }

  // The ways of the driver, too, stand in the scenario, and are gone again when it is read.
  void aScenarioIsPlayedAgainAsItWas() {
    for (const uint seed : {1U, 2U, 3U}) {
      monkey::Camera camera(root);
      const monkey::Steps steps = Chosen(seed);
      const QByteArray first = camera.Scenario(steps);
      QVERIFY(first.count('\n') > steps.size());
      QCOMPARE(camera.Scenario(monkey::ReadAll(first)), first);
    }
  }

  void aCrashIsShrunk() {
    const auto restore = qScopeGuard([] { qunsetenv(kChild); });
    monkey::Steps steps = Chosen(1).first(40);
    QVERIFY(ShortenCrash(1, steps).isEmpty());
    const monkey::Step crash{steps[30].at, monkey::Step::Crash};
    steps.insert(30, crash);
    const monkey::Steps few = ShortenCrash(1, steps);
    QCOMPARE(few.size(), qsizetype{1});
    QCOMPARE(few[0].kind, monkey::Step::Crash);
    QCOMPARE(monkey::ReadAll(ReadFile(FileOf(1))), few);
    QFile::remove(FileOf(1));
  }
};

int main(int argc, char** argv) {
  for (const auto& [name, value] :
       {std::pair("QT_QPA_PLATFORM", "offscreen"), {"QT_FONT_DPI", "72"}, {"QT_NO_GLIB", "1"}, {"TZ", "UTC"}})
    qputenv(name, value);
  PrepareQt();
  QApplication application(argc, argv);
  ApplyFont();
  const QStringList arguments = QCoreApplication::arguments().mid(1);
  bool isCount = false, isSeed = false;
  const qlonglong count = arguments.value(0).toLongLong(&isCount);
  const uint seed = arguments.value(1, QStringLiteral("1")).toUInt(&isSeed);
  const bool isFile = QFileInfo(arguments.value(0)).isFile();
  const bool isCrash = arguments.value(0) == QLatin1String("--crashed");
  if (!isCount && !isFile && !isCrash) {
    MonkeyTest test;
    return QTest::qExec(&test, argc, argv);
  }
  QLoggingCategory::setFilterRules(QStringLiteral("*.debug=false\n*.warning=false"));
  if (isCrash) return TellCrash(seed);
  WatchForCrashes();
  if (isFile) return PlayFile(arguments[0]);
  if (count <= 0 || !isSeed) {
    std::fputs("Usage: monkey_test [STEPS [SEED] | FILE]\n", stderr);
    return 2;
  }
  return PlayMany(count, seed);
}
#include "monkey_test.moc"
