// The bench's life and death: what it starts, heals and leaves behind. With the real interface.
#include <sys/msg.h>
#include <sys/shm.h>
#include <sys/stat.h>

#include <QImage>
#include <QTcpServer>
#include <QTemporaryDir>
#include <QTemporaryFile>

#include "bench/supervise/languages.h"
#include "tests/fake/signalto.h"
#include "tests/system/benchrun.h"

namespace {
bool IsSentence(const QString& text) {
  return text.size() > 10 && text.endsWith(u'.') && !text.contains(u'\n');
}

bool HasTransport(int key) {
  return msgget(key, 0) >= 0 || shmget(key + 1, 0, 0) >= 0;
}
}  // namespace

class BenchLifeTest : public QObject {
  Q_OBJECT

  static void WriteProgram(const QString& path, const QByteArray& script) {
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly) && file.write("#!/bin/sh\n" + script + '\n') > 0);
    QVERIFY(file.setPermissions(QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner));
  }

  // 0: there is no such file.
  // Which file stands there, empty when none does. The number alone may come again at once.
  static QString FileAt(const QString& path) {
    struct stat state {};
    if (stat(qPrintable(path), &state) != 0) return {};
    return QStringLiteral("%1 %2.%3").arg(state.st_ino).arg(state.st_ctim.tv_sec).arg(state.st_ctim.tv_nsec);
  }

private slots:
  void badOptionsAreRefused_data() {
    QTest::addColumn<QStringList>("options");
    QTest::addColumn<int>("code");
    const auto row = [](const char* name, const QStringList& options, int code) {
      QTest::newRow(name) << options << code;
    };
    row("unknown", {"--speed", "5"}, 2);
    row("a word", {"hello"}, 2);
    row("no port", {"--port"}, 2);
    row("port in letters", {"--port", "http"}, 2);
    row("port too high", {"--port", "65536"}, 2);
    row("negative port", {"--port=-1"}, 2);
    row("empty root", {"--root", ""}, 2);
    row("no language", {"--language"}, 2);
    row("empty language", {"--language", ""}, 2);
    row("unknown language", {"--language", "tlh"}, 2);
    row("the machine's own root", {"--port", "0", "--root", "/"}, 1);
    row("no folder", {"--port", "0", "--root", "/dev/null"}, 1);
    row("no scenario", {"--port", "0", "--scenario", "/nothing"}, 1);
    row("another user's port", {"--port", "1"}, 1);
  }

  void badOptionsAreRefused() {
    QFETCH(QStringList, options);
    QFETCH(int, code);
    QTcpServer taken;  // port 1 may be had by root
    if (options.last() == QLatin1String("1")) {
      QVERIFY(taken.listen(QHostAddress::LocalHost));
      options.last() = QString::number(taken.serverPort());
    }
    QProcess bench;
    bench.start(QStringLiteral(BINARY_DIR "/bench/dashcam-bench"), options);
    QVERIFY(bench.waitForFinished());
    QCOMPARE(bench.exitStatus(), QProcess::NormalExit);
    QCOMPARE(bench.exitCode(), code);
    QVERIFY(bench.readAllStandardOutput().isEmpty());
    const QString error = QString::fromUtf8(bench.readAllStandardError()).trimmed();
    QVERIFY2(error.startsWith(QLatin1String("dashcam-bench: ")) && IsSentence(error), qPrintable(error));
  }

  void helpIsPrinted() {
    QProcess bench;
    bench.start(QStringLiteral(BINARY_DIR "/bench/dashcam-bench"), {QStringLiteral("--help")});
    QVERIFY(bench.waitForFinished());
    QCOMPARE(bench.exitCode(), 0);
    const QByteArray help = bench.readAllStandardOutput();
    for (const char* option : {"--port", "--root", "--language", "--scenario", "--record", "--force"})
      QVERIFY(help.contains(option));
  }

  void unknownLanguageIsAnsweredWithThoseThereAre() {
    QProcess bench;
    bench.start(QStringLiteral(BINARY_DIR "/bench/dashcam-bench"),
                {QStringLiteral("--language"), QStringLiteral("tlh")});
    QVERIFY(bench.waitForFinished());
    QCOMPARE(bench.readAllStandardError(),
             "dashcam-bench: --language takes one of " + languages::Names().toUtf8() + ".\n");
  }

  void theInterfaceBeginsInALanguage_data() {
    QTest::addColumn<QStringList>("options");
    QTest::addColumn<QByteArray>("environment");
    QTest::addColumn<QString>("language");
    const QStringList english{"--language", "en"};
    QTest::newRow("Korean") << QStringList() << QByteArray() << "ko";
    QTest::newRow("by the option") << english << QByteArray() << "en";
    QTest::newRow("by the environment") << QStringList() << QByteArray("en") << "en";
    QTest::newRow("the option counts more") << english << QByteArray("ko") << "en";
    QTest::newRow("one that nobody speaks") << QStringList() << QByteArray("tlh") << "ko";
  }
  void theInterfaceBeginsInALanguage() {
    QFETCH(QStringList, options);
    QFETCH(QByteArray, environment);
    qputenv("DASHCAM_LANGUAGE", environment);
    BenchRun bench(options);
    qunsetenv("DASHCAM_LANGUAGE");
    QVERIFY(bench.IsUp());
    QTEST(bench.State("interface/language").toString(), "language");
    QTEST(BenchRun::LanguageOf(bench.Root()), "language");
  }

  void theInterfaceLearnsAnotherLanguage() {
    BenchRun bench;
    QVERIFY(bench.IsUp());
    QVERIFY(bench.Action(R"({"name":"language","to":"en"})"));
    QCOMPARE(bench.State("interface/language"), QJsonValue(QStringLiteral("en")));
    QTRY_COMPARE(bench.State("interface/starts"), QJsonValue(2));
    QTRY_COMPARE(bench.State("screen"), QJsonValue(QStringLiteral("PREVIEW")));
    QCOMPARE(BenchRun::LanguageOf(bench.Root()), QStringLiteral("en"));

    // It speaks that already, and none that there is not.
    const int interface = bench.Child("dashcam-gui");
    QVERIFY(bench.Action(R"({"name":"language","to":"en"})"));
    const BenchAnswer refusal = bench.Post("/api/action", R"({"name":"language","to":"tlh"})");
    QCOMPARE(refusal.status, 400);
    QCOMPARE(refusal.Error(), QStringLiteral("The action language wants \"to\": one of %1.").arg(languages::Names()));
    QCOMPARE(bench.Post("/api/event", R"({"event":8,"value":3})").status, 200);
    QTRY_COMPARE(bench.State("boxes/event/name"), QJsonValue(QStringLiteral("R_HW_ERROR")));
    QCOMPARE(bench.Child("dashcam-gui"), interface);

    // It keeps it, however it ends.
    QVERIFY(bench.Action(R"({"name":"interfaceKill"})"));
    QTRY_COMPARE(bench.State("interface/starts"), QJsonValue(3));
    QTRY_COMPARE(bench.State("screen"), QJsonValue(QStringLiteral("PREVIEW")));
    QCOMPARE(BenchRun::LanguageOf(bench.Root()), QStringLiteral("en"));
    QVERIFY(SignalTo(bench.Child("Xvfb"), SIGKILL));
    QTRY_COMPARE(bench.State("interface/starts"), QJsonValue(4));
    QTRY_COMPARE(bench.State("screen"), QJsonValue(QStringLiteral("PREVIEW")));
    QCOMPARE(BenchRun::LanguageOf(bench.Root()), QStringLiteral("en"));
  }

  void endsAreClean_data() {
    QTest::addColumn<int>("number");
    QTest::newRow("SIGTERM") << SIGTERM;
    QTest::newRow("SIGINT") << SIGINT;
    QTest::newRow("SIGHUP") << SIGHUP;
    QTest::newRow("SIGKILL") << SIGKILL;
  }

  // No process, no folder, no queue, no memory, no X server's socket.
  void endsAreClean() {
    QFETCH(int, number);
    BenchRun bench;
    QVERIFY(bench.IsUp());
    const QString root = bench.Root();
    const int key = BenchRun::KeyOf(root);
    QVERIFY(HasTransport(key));
    const QStringList clock{QStringLiteral("/dev/shm/dashcam-clock-%1").arg(key),
                            QStringLiteral("/dev/shm/sem.dashcam-clock-%1").arg(key)};
    for (const QString& file : clock) QVERIFY(QFile::exists(file));
    QVERIFY(bench.Child("dashcam-gui") != 0);
    QVERIFY(bench.Child("Xvfb") != 0);
    const QString socket = QStringLiteral("/tmp/.X11-unix/X") + BenchRun::DisplayOf(root);
    const QString made = FileAt(socket);
    QVERIFY(!made.isEmpty());
    struct stat state {};
    QCOMPARE(stat(qPrintable(root), &state), 0);
    QCOMPARE(state.st_mode & 0777, mode_t{0700});
    QVERIFY(SignalTo(static_cast<pid_t>(bench.Process().processId()), number));
    QVERIFY(bench.Process().waitForFinished());
    if (number != SIGKILL) {
      QCOMPARE(bench.Process().exitStatus(), QProcess::NormalExit);
      QCOMPARE(bench.Process().exitCode(), 0);
      QVERIFY(BenchRun::ProcessesOf(root).isEmpty());  // at once
      QVERIFY(!QFile::exists(root));
    }
    QTRY_VERIFY(BenchRun::ProcessesOf(root).isEmpty());
    QTRY_VERIFY(!QFile::exists(root));
    QTRY_VERIFY(!HasTransport(key));
    for (const QString& file : clock) QTRY_VERIFY(!QFile::exists(file));
    QTRY_VERIFY(FileAt(socket) != made);  // the next X server may have its name
  }

  // One that is killed while everything starts leaves nothing, either.
  void killedEarlyLeavesNothing() {
    const QTemporaryDir folder;
    qputenv("XDG_RUNTIME_DIR", folder.path().toUtf8());
    {
      BenchRun bench;
      QTRY_VERIFY(!QDir(folder.path()).isEmpty());
      bench.Process().kill();
      QVERIFY(bench.Process().waitForFinished());
    }
    qunsetenv("XDG_RUNTIME_DIR");
    QTRY_VERIFY(QDir(folder.path()).isEmpty());
    QTRY_VERIFY(BenchRun::ProcessesOf(folder.path()).isEmpty());
  }

  // Two benches side by side do not notice each other.
  void twoBenchesRunSideBySide() {
    BenchRun first, second;
    QVERIFY(first.IsUp());
    QVERIFY(second.IsUp());
    QVERIFY(first.Root() != second.Root());
    QVERIFY(BenchRun::KeyOf(first.Root()) != BenchRun::KeyOf(second.Root()));
    const qint64 before = second.LastEntry();
    QVERIFY(first.Action(R"({"name":"speed","kmh":77})"));
    QCOMPARE(first.Post("/api/event", R"({"event":8,"value":3})").status, 200);
    QTRY_COMPARE(first.State("boxes/event/name"), QJsonValue(QStringLiteral("R_HW_ERROR")));
    QCOMPARE(second.State("recorder/speed"), QJsonValue(0));
    QVERIFY(second.State("boxes/event").isNull());
    QVERIFY(second.Find("event", QStringLiteral("RECV_ZEL_STATUS_HW_ERROR"), before).isEmpty());
    // The page of one is foreign to the other.
    QCOMPARE(first.Get("/api/state", "Origin: http://" + second.Host() + "\r\n").status, 403);
  }

  void rootIsKeptAndHasOneBench() {
    const QTemporaryDir folder;
    const QStringList options{QStringLiteral("--root"), folder.path()};
    {
      BenchRun bench(options);
      QVERIFY(bench.IsUp());
      QCOMPARE(bench.Root(), QDir(folder.path()).canonicalPath());
      QProcess other;
      other.start(QStringLiteral(BINARY_DIR "/bench/dashcam-bench"), options);
      QVERIFY(other.waitForFinished(10000));
      QCOMPARE(other.exitCode(), 1);
      QVERIFY(IsSentence(QString::fromUtf8(other.readAllStandardError()).trimmed()));
      QCOMPARE(bench.State("screen"), QJsonValue(QStringLiteral("PREVIEW")));
      // Killed, and started again at once in the same folder.
      bench.Process().kill();
    }
    BenchRun again(options);
    QVERIFY(again.IsUp());
    QVERIFY(again.Action(R"({"name":"speed","kmh":5})"));
    QVERIFY(QFile::exists(folder.filePath(QStringLiteral("tmp/config_init.ini"))));
    again.Process().terminate();
    QVERIFY(again.Process().waitForFinished());
    QVERIFY(QFile::exists(folder.filePath(QStringLiteral("tmp/config_init.ini"))));
  }

  void interfaceIsStartedAgain() {
    BenchRun bench;
    QVERIFY(bench.IsUp());
    QVERIFY(bench.Action(R"({"name":"interfaceKill"})"));
    QTRY_COMPARE(bench.State("interface/starts"), QJsonValue(2));
    QCOMPARE(bench.State("interface/ended"), QJsonValue(QStringLiteral("signal 9")));
    QTRY_COMPARE(bench.State("screen"), QJsonValue(QStringLiteral("PREVIEW")));
    // It works: it has asked the recorder, and hears of it.
    QCOMPARE(bench.Post("/api/event", R"({"event":8,"value":3})").status, 200);
    QTRY_COMPARE(bench.State("boxes/event/name"), QJsonValue(QStringLiteral("R_HW_ERROR")));

    QCOMPARE(bench.Post("/api/interface/restart", "").status, 200);
    QTRY_COMPARE(bench.State("interface/starts"), QJsonValue(3));
    QTRY_COMPARE(bench.State("screen"), QJsonValue(QStringLiteral("PREVIEW")));
    QVERIFY(bench.State("boxes/event").isNull());

    QVERIFY(bench.Action(R"({"name":"interfaceRestart"})"));
    QTRY_COMPARE(bench.State("interface/starts"), QJsonValue(4));

    // Killed from elsewhere.
    QTRY_VERIFY(bench.Child("dashcam-gui") != 0);
    QVERIFY(SignalTo(bench.Child("dashcam-gui"), SIGKILL));
    QTRY_COMPARE(bench.State("interface/starts"), QJsonValue(5));
    QTRY_COMPARE(bench.State("screen"), QJsonValue(QStringLiteral("PREVIEW")));
  }

  void deadInterfaceIsSaid() {
    BenchRun bench;
    QVERIFY(bench.IsUp());
    QVERIFY(bench.Action(R"({"name":"interfaceKill"})"));
    const qint64 before = bench.LastEntry();
    // Within the second before it starts again.
    QTRY_VERIFY(bench.State("interface/running") == QJsonValue(false) ||
                bench.State("interface/starts") == QJsonValue(2));
    if (bench.State("interface/running") == QJsonValue(false)) {
      QVERIFY(bench.State("screen").isNull());
      QCOMPARE(bench.Post("/api/touch", R"({"action":"tap","x":1,"y":1})").status, 409);
    }
    QTRY_VERIFY(!bench.Find("note", QStringLiteral("The interface has ended: signal 9."), before - 1).isEmpty());
  }

  void serverIsStartedAgain() {
    BenchRun bench;
    QVERIFY(bench.IsUp());
    QVERIFY(SignalTo(bench.Child("Xvfb"), SIGKILL));
    QTRY_COMPARE(bench.State("interface/starts"), QJsonValue(2));
    QTRY_COMPARE(bench.State("screen"), QJsonValue(QStringLiteral("PREVIEW")));
    QCOMPARE(bench.State("lcd/live"), QJsonValue(true));
    QVERIFY(bench.Child("Xvfb") != 0);
    QVERIFY(bench.Child("dashcam-gui") != 0);
  }

  void recorderIsStartedAgain() {
    BenchRun bench;
    QVERIFY(bench.IsUp());
    for (int i = 0; i < 3; ++i) QVERIFY(bench.Action(R"({"name":"recorderRestart"})"));
    QTRY_COMPARE(bench.State("recorder/connections"), QJsonValue(1));
    QCOMPARE(bench.Post("/api/event", R"({"event":8,"value":3})").status, 200);
    QTRY_COMPARE(bench.State("boxes/event/name"), QJsonValue(QStringLiteral("R_HW_ERROR")));
    QCOMPARE(bench.State("interface/starts"), QJsonValue(1));
  }

  // The recorder restarts the device: the interface is started again and meets what is there now.
  void recorderRestartsTheInterface() {
    BenchRun bench;
    QVERIFY(bench.IsUp());
    QVERIFY(bench.Action(R"({"name":"updateMarker","file":"update.zel"})"));
    QTRY_COMPARE(bench.State("interface/starts"), QJsonValue(2));
    QTRY_VERIFY(bench.State("screen").isString());
  }

  void fullQueueIsSaid() {
    BenchRun bench;
    QVERIFY(bench.IsUp());
    const int interface = bench.Child("dashcam-gui");
    QVERIFY(interface != 0);
    QVERIFY(SignalTo(interface, SIGSTOP));
    BenchAnswer answer{200, {}, {}};
    for (int i = 0; i < 1000 && answer.status == 200; ++i)
      answer = bench.Post("/api/event", R"({"event":24,"value":5})");
    QCOMPARE(answer.status, 409);
    QVERIFY(IsSentence(answer.Error()));
    QCOMPARE(bench.Post("/api/action", R"({"name":"speed","kmh":5})").status, 409);
    QVERIFY(SignalTo(interface, SIGCONT));
    QTRY_COMPARE(bench.Post("/api/event", R"({"event":24,"value":5})").status, 200);
    // One that hangs is killed when it shall end.
    QVERIFY(SignalTo(interface, SIGSTOP));
    bench.Process().terminate();
    QVERIFY(bench.Process().waitForFinished(8000));
    QVERIFY(BenchRun::ProcessesOf(bench.Root()).isEmpty());
  }

  // A library that is missing, say: its own words once, and an end.
  void anInterfaceThatCannotStartIsTold() {
    const QTemporaryDir build;
    QVERIFY(QDir(build.path()).mkdir(QStringLiteral("bench")) && QDir(build.path()).mkdir(QStringLiteral("gui")));
    QVERIFY(QFile::link(QStringLiteral(BINARY_DIR "/pictures"), build.filePath(QStringLiteral("pictures"))));
    const QString program = build.filePath(QStringLiteral("bench/dashcam-bench"));
    QVERIFY(QFile::copy(QStringLiteral(BINARY_DIR "/bench/dashcam-bench"), program));
    WriteProgram(build.filePath(QStringLiteral("gui/dashcam-gui")), "echo 'libmissing.so: no such file' >&2; exit 127");
    QProcess bench;
    bench.start(program, {QStringLiteral("--port"), QStringLiteral("0")});
    QVERIFY(bench.waitForFinished());
    QCOMPARE(bench.exitCode(), 1);
    const QString said = QString::fromUtf8(bench.readAllStandardError());
    QCOMPARE(said.count(QLatin1String("libmissing.so: no such file")), 1);
    QVERIFY2(said.endsWith(QLatin1String("\ndashcam-bench: The interface cannot start: exit code 127.\n")),
             qPrintable(said));
  }

  void anXServerThatDoesNotComeIsTold_data() {
    QTest::addColumn<QByteArray>("server");
    QTest::addColumn<QByteArray>("told");
    QTest::newRow("it hangs") << QByteArray("exec sleep 60") << QByteArray("it says nothing");
    QTest::newRow("it ends") << QByteArray("echo 'no fonts' >&2; exit 1") << QByteArray("no fonts");
  }
  void anXServerThatDoesNotComeIsTold() {
    QFETCH(QByteArray, server);
    QFETCH(QByteArray, told);
    const QTemporaryDir programs;
    WriteProgram(programs.filePath(QStringLiteral("Xvfb")), server);
    QProcess bench;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("PATH"), programs.path() + u':' + environment.value(QStringLiteral("PATH")));
    bench.setProcessEnvironment(environment);
    bench.start(QStringLiteral(BINARY_DIR "/bench/dashcam-bench"), {QStringLiteral("--port"), QStringLiteral("0")});
    QVERIFY(bench.waitForFinished());
    QCOMPARE(bench.exitCode(), 1);
    const QByteArray said = bench.readAllStandardError();
    QVERIFY2(said.endsWith("dashcam-bench: The X server has not come for 10 s: " + told + ".\n"), said.constData());
  }

  void scenarioIsPlayed() {
    QTemporaryFile file;
    QVERIFY(file.open());
    file.write("{\"ms\": 0, \"event\": 24, \"value\": 123}\n{\"ms\": 1, \"action\": \"speed\", \"kmh\": 99}\n");
    file.close();
    BenchRun bench({QStringLiteral("--scenario"), file.fileName()});
    QVERIFY(bench.IsUp());
    QTRY_COMPARE(bench.State("recorder/speed"), QJsonValue(99));
    QVERIFY(!bench.Find("event", QStringLiteral("RECV_ZEL_STATUS_SPEED")).isEmpty());
  }

  // What the bench alone can do, too, even with the recorder that plays it.
  void scenarioHasTheBenchsActions() {
    QTemporaryFile file;
    QVERIFY(file.open());
    file.write("{\"ms\": 0, \"action\": \"language\", \"to\": \"en\"}\n{\"ms\": 1, \"action\": \"recorderStop\"}\n");
    file.close();
    BenchRun bench({QStringLiteral("--scenario"), file.fileName()});
    QVERIFY(bench.IsUp());
    QTRY_COMPARE(bench.State("interface/starts"), QJsonValue(2));
    QCOMPARE(bench.State("interface/language"), QJsonValue(QStringLiteral("en")));
    QTRY_VERIFY(bench.State("recorder").isNull());
    QCOMPARE(bench.Find("action", QStringLiteral("recorderStop"))[QStringLiteral("result")], QJsonValue(0));
  }

  // And what a page sends: a long touch, a picture.
  void scenarioHasWhatTheApiTakes() {
    const QTemporaryDir folder;
    QImage picture(48, 32, QImage::Format_RGB32);
    picture.fill(Qt::blue);
    QVERIFY(picture.save(folder.filePath(QStringLiteral("car.png"))));
    QFile file(folder.filePath(QStringLiteral("use.jsonl")));
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write(
        "{\"ms\": 1500, \"touch\": {\"x\": 1, \"y\": 310, \"ms\": 500}}\n{\"ms\": 2500, \"picture\": \"car.png\"}\n");
    file.close();
    BenchRun bench({QStringLiteral("--scenario"), file.fileName()});
    QVERIFY(bench.IsUp());
    QTRY_COMPARE(bench.State("interface/starts"), QJsonValue(2));
    QVERIFY(QFile::exists(bench.Root() + QStringLiteral("/mnt/mmc/Setup/picture.bmp")));
    const qint64 held = bench.Find("touch", QStringLiteral("release"))[QStringLiteral("time")].toInteger() -
                        bench.Find("touch", QStringLiteral("press"))[QStringLiteral("time")].toInteger();
    QVERIFY2(held >= 400, qPrintable(QString::number(held)));
  }

  void badActionOfAScenarioIsNamedByItsLine() {
    QTemporaryFile file;
    QVERIFY(file.open());
    file.write("\n{\"ms\": 0, \"action\": \"language\", \"to\": \"tlh\"}\n");
    file.close();
    QProcess bench;
    bench.start(QStringLiteral(BINARY_DIR "/bench/dashcam-bench"),
                {QStringLiteral("--port"), QStringLiteral("0"), QStringLiteral("--scenario"), file.fileName()});
    QVERIFY(bench.waitForFinished());
    QCOMPARE(bench.exitCode(), 1);
    const QString error = QString::fromUtf8(bench.readAllStandardError());
    QVERIFY2(error.startsWith(QLatin1String("dashcam-bench: Line 2 ")), qPrintable(error));
  }

  // The stand-ins are the only shell that the interface gets: nothing of this machine is touched.
  void shellCommandsStayBelowTheRoot() {
    BenchRun bench;
    QVERIFY(bench.IsUp());
    QVERIFY(!bench.Find("shell", QStringLiteral("sync")).isEmpty());
    QVERIFY(!bench.Find("shell", QStringLiteral("echo 100000 > /proc/pwm/pwm0")).isEmpty());
  }
};

QTEST_GUILESS_MAIN(BenchLifeTest)
#include "bench_life_test.moc"
