// The conformance check of a platform library: our substitute passes, and each faulty library is found out.
#include <signal.h>
#include <sys/ipc.h>
#include <sys/msg.h>
#include <sys/prctl.h>
#include <sys/shm.h>
#include <unistd.h>

#include <QFile>
#include <QMap>
#include <QProcess>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QTest>
#include <memory>

#include "gui/firmware/commands.h"
#include "platform/check/demand.h"

namespace {

constexpr int kEndMs = 200000;

/// A root and a key of a run's own.
class Place {
public:
  Place() : mKey(sNextKey += 4) {}
  ~Place() {
    for (const quint32 key : {mKey, mKey + 2})
      if (const int queue = msgget(key_t(key), 0); queue >= 0) msgctl(queue, IPC_RMID, nullptr);
    if (const int segment = shmget(key_t(mKey + 1), 0, 0); segment >= 0) shmctl(segment, IPC_RMID, nullptr);
  }
  Place(const Place&) = delete;
  Place& operator=(const Place&) = delete;

  QProcessEnvironment Environment() const {
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert("DASHCAM_ROOT", mRoot.path());
    environment.insert("PLATFORM_KEY", QString::number(mKey));
    return environment;
  }

private:
  static inline quint32 sNextKey = 0x46000000 + quint32(getpid()) * 512;

  quint32 mKey;
  QTemporaryDir mRoot;
};

/// One run of the check.
class CheckRun {
public:
  explicit CheckRun(const QString& program, const QStringList& arguments = {}, bool hasRecorder = true) {
    mProcess.setProcessEnvironment(mPlace.Environment());
    mProcess.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    mProcess.setChildProcessModifier([] { prctl(PR_SET_PDEATHSIG, SIGTERM); });
    QStringList all = arguments;
    if (hasRecorder) all << "--recorder" << BINARY_DIR "/tests/platform/check_recorder";
    mProcess.start(program, all);
  }
  ~CheckRun() {
    mProcess.kill();
    mProcess.waitForFinished();
  }

  /// Waits for the end. The exit code, or -1.
  int Code() {
    if (mProcess.state() != QProcess::NotRunning && !mProcess.waitForFinished(kEndMs)) return -1;
    mOutput += QString::fromUtf8(mProcess.readAllStandardOutput());
    return mProcess.exitStatus() == QProcess::NormalExit ? mProcess.exitCode() : -1;
  }
  QString Output() const { return mOutput; }

  /// The rows with a verdict, in order.
  QStringList Rows(const QString& verdict) const {
    QStringList rows;
    const QRegularExpression line("^" + verdict + " .*?  ([a-z]+-[a-z]+) ", QRegularExpression::MultilineOption);
    for (auto match = line.globalMatch(mOutput); match.hasNext();) rows << match.next().captured(1);
    return rows;
  }

private:
  Place mPlace;
  QProcess mProcess;
  QString mOutput;
};

QString Page() {
  QFile page(QStringLiteral(SOURCE_DIR "/docs/platform.md"));
  return page.open(QIODevice::ReadOnly) ? QString::fromUtf8(page.readAll()) : QString();
}

/// The rows that need a recorder.
QStringList RecorderRows() {
  QStringList rows;
  for (const auto* demands :
       {&platformcheck::EventDemands(), &platformcheck::CommandDemands(), &platformcheck::RecorderDemands()})
    for (const platformcheck::Demand& demand : *demands) rows << demand.name;
  return rows;
}

QString OurCheck() {
  return QStringLiteral(BINARY_DIR "/platform/check/dashcam-platform-check");
}

/// A row by itself, of the library that has the fault of that name.
class RowRun {
public:
  RowRun(const QString& row, bool needsRecorder) {
    QProcessEnvironment environment = mPlace.Environment();
    mRecorder.setProcessEnvironment(environment);
    mRecorder.setChildProcessModifier([] { prctl(PR_SET_PDEATHSIG, SIGTERM); });
    if (needsRecorder) {
      mRecorder.start(BINARY_DIR "/tests/platform/check_recorder", QStringList());
      const QString socket = environment.value("DASHCAM_ROOT") + "/run/recorder.sock";
      if (!QTest::qWaitFor([&] { return QFile::exists(socket); }, kEndMs)) qFatal("no recorder");
    }
    environment.insert("FAULT", row);
    QProcess process;
    process.setProcessEnvironment(environment);
    process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    process.start(BINARY_DIR "/tests/platform/check_any", {"--row", row, "--listen", "5"});
    if (process.waitForFinished(kEndMs)) mOutput = process.readAllStandardOutput();
  }
  ~RowRun() {
    mRecorder.kill();
    mRecorder.waitForFinished();
  }

  /// The line that says what came of it.
  QByteArray Ends() const { return mOutput.trimmed().split('\n').last(); }

private:
  Place mPlace;
  QProcess mRecorder;
  QByteArray mOutput;
};

}  // namespace

class CheckTest : public QObject {
  Q_OBJECT

  QMap<QString, std::shared_ptr<CheckRun>> mRuns;  // all at the same time: most of what they do is waiting

private slots:
  void initTestCase() {
    for (const char* fault : {"blocks", "overruns", "keepslock", "saysdone", "losesevents", "wrongsender"})
      mRuns[fault] = std::make_shared<CheckRun>(QStringLiteral(BINARY_DIR "/tests/platform/check_%1").arg(fault));
    mRuns["ours"] = std::make_shared<CheckRun>(OurCheck(), QStringList{"--erase"});
    mRuns["alone"] = std::make_shared<CheckRun>(OurCheck(), QStringList{"--listen", "1"}, false);
    mRuns["ended"] = std::make_shared<CheckRun>(OurCheck(), QStringList{"--recorder", "false"}, false);
  }
  void cleanupTestCase() { mRuns.clear(); }

  void ourLibraryPasses() {
    CheckRun& run = *mRuns["ours"];
    QCOMPARE(run.Code(), 0);
    QCOMPARE(run.Rows("FAILS"), QStringList());
    QCOMPARE(run.Rows("not tried"), QStringList{"event-replies"});  // our recorder wants none
    QCOMPARE(run.Rows("holds").size(), qsizetype(platformcheck::Demands().size()) - 1);
    QVERIFY(!run.Output().contains("left out"));
  }

  void withoutARecorderNothingOfItHolds() {
    CheckRun& run = *mRuns["alone"];
    QCOMPARE(run.Code(), 0);
    QCOMPARE(run.Rows("not tried"), RecorderRows());
  }

  void aRecorderThatEndsIsAFailure() {
    CheckRun& run = *mRuns["ended"];
    QCOMPARE(run.Code(), 1);
    QCOMPARE(run.Rows("FAILS"), RecorderRows());
  }

  void eachFaultIsFoundOut_data() {
    QTest::addColumn<QStringList>("rows");
    const QStringList recorder{"silence-limited", "late-dropped", "gone-missed"};
    QTest::newRow("blocks") << QStringList{"silence-limited", "late-dropped"};
    QTest::newRow("overruns") << QStringList{"command-length"};
    // The first query of all comes before the recorder listens.
    QTest::newRow("keepslock") << QStringList{"event-size", "refusal-over"} + recorder +
                                      QStringList{"back-found", "back-heard"};
    QTest::newRow("saysdone") << QStringList{"refusal-told"} + recorder;
    QTest::newRow("losesevents") << QStringList{"queue-flood"};
    QTest::newRow("wrongsender") << QStringList{"event-sender"};
  }
  void eachFaultIsFoundOut() {
    QFETCH(QStringList, rows);
    const auto run = mRuns.value(QTest::currentDataTag());
    QCOMPARE(run->Code(), 1);
    if (run->Rows("FAILS") != rows) qWarning("%s", qPrintable(run->Output()));
    QCOMPARE(run->Rows("FAILS"), rows);
  }

  // Those that a run with a fault above has not failed, too.
  void everyRowCanFail_data() {
    QTest::addColumn<bool>("needsRecorder");
    for (const auto* demands :
         {&platformcheck::CallDemands(), &platformcheck::MemoryDemands(), &platformcheck::QueueDemands(),
          &platformcheck::EventDemands(), &platformcheck::CommandDemands()})
      for (const platformcheck::Demand& demand : *demands)
        if (demand.name != QLatin1String("queue-flood"))
          QTest::newRow(demand.name) << RecorderRows().contains(QLatin1String(demand.name));
  }
  void everyRowCanFail() {
    QFETCH(bool, needsRecorder);
    RowRun run(QLatin1String(QTest::currentDataTag()), needsRecorder);
    QVERIFY2(run.Ends().startsWith("f "), run.Ends());
  }

  void aWrongOptionIsOneSentence_data() {
    QTest::addColumn<QStringList>("arguments");
    QTest::newRow("unknown") << QStringList{"--faster"};
    QTest::newRow("no value") << QStringList{"--recorder"};
    QTest::newRow("empty command") << QStringList{"--recorder", ""};
    QTest::newRow("no number") << QStringList{"--listen", "soon"};
    QTest::newRow("0 seconds") << QStringList{"--listen", "0"};
    QTest::newRow("too long") << QStringList{"--listen", "601"};
    QTest::newRow("no such row") << QStringList{"--row", "none"};
    QTest::newRow("an argument") << QStringList{"lib.so"};
  }
  void aWrongOptionIsOneSentence() {
    QFETCH(QStringList, arguments);
    QProcess process;
    process.start(OurCheck(), arguments);
    QVERIFY(process.waitForFinished(kEndMs));
    QCOMPARE(process.exitCode(), 2);
    QCOMPARE(process.readAllStandardOutput(), QByteArray());
    const QList<QByteArray> lines = process.readAllStandardError().split('\n');
    QVERIFY(lines.size() > 2 && (lines[0].endsWith('.') || lines[0].endsWith('?')));
    QVERIFY(lines[1].startsWith("dashcam-platform-check [--recorder COMMAND]"));
  }

  // docs/platform.md
  void thePageHasEverySentenceAndNoOther() {
    QStringList sentences;
    for (const platformcheck::Demand& demand : platformcheck::Demands())
      sentences << QString::fromUtf8(demand.sentence);
    QStringList demanded;
    const QString list = Page().section("\n## What is expected\n", 1).section("\n## ", 0, 0);
    const QRegularExpression item("^- (.*?)(?=\n\n|\n- )",
                                  QRegularExpression::MultilineOption | QRegularExpression::DotMatchesEverythingOption);
    for (auto match = item.globalMatch(list + "\n\n"); match.hasNext();)
      demanded << match.next().captured(1).simplified();
    QCOMPARE(demanded, sentences);
  }
  void thePageHasTheTableOfCommands() {
    static const char* const kKinds[] = {"yes", "in some states", "a query", "in some states, erases"};
    QStringList rows;
    for (const platformcheck::Command& command : platformcheck::kCommands)
      rows << QStringLiteral("| %1 | `%2` | %3 | %4 |")
                  .arg(command.field)
                  .arg(QLatin1String(command.name))
                  .arg(command.bytes)
                  .arg(QLatin1String(kKinds[int(command.kind)]));
    QStringList drawn;
    for (const QString& line : Page().split('\n'))
      if (line.startsWith("| 8")) drawn << line;
    QCOMPARE(drawn, rows);
  }
  void thePageHasTheUsage() {
    QProcess process;
    process.start(OurCheck(), {"--help"});
    QVERIFY(process.waitForFinished(kEndMs));
    QVERIFY(Page().contains(QString::fromUtf8(process.readAllStandardOutput())));
  }

  // What the interface sends, and what is tried.
  void everyCommandOfTheInterfaceIsTried() {
    const auto isTried = [](unsigned field, int bytes, bool isQuery) {
      for (const platformcheck::Command& command : platformcheck::kCommands)
        if (unsigned(command.field) == field && command.bytes == bytes)
          return (command.kind == platformcheck::CommandKind::Query) == isQuery;
      return false;
    };
    for (int event = SEND_SWITCH_DISPLAY; event <= SEND_SET_TOUCH_COM_END; ++event) {
      const Command command = CommandOf(Send_Event(event));
      bool tried = true;
      switch (command.kind) {
        case CommandKind::Nothing:
          break;
        case CommandKind::ViewMode:
        case CommandKind::ViewModeForMotion:
          for (int mode = 0; mode < 3; ++mode) tried = tried && isTried(ViewField(mode), 4, false);
          break;
        case CommandKind::QueryInt:
        case CommandKind::QueryFloat:
          tried = isTried(command.field, 4, true);
          break;
        case CommandKind::Value:
          tried = isTried(command.field, 4, false);
          break;
        case CommandKind::Path:
          tried = isTried(command.field, 50, false);
          break;
        case CommandKind::SetupBlock:
          tried = isTried(command.field, 129, false);
          break;
        case CommandKind::MotionFront:
        case CommandKind::MotionRear:
          tried = isTried(command.field, 8, false);
          break;
      }
      QVERIFY2(tried, NameOf(Send_Event(event)));
    }
  }
};

QTEST_GUILESS_MAIN(CheckTest)
#include "check_test.moc"
