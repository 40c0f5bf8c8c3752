#include "gui/base/atomicfile.h"

#include <sys/ptrace.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <QTest>
#include <csignal>

#include "tests/fake/signalto.h"
#include "tests/fake/testroot.h"

static TestRoot root;

namespace {
// A process that writes the file once, stopped before it begins.
pid_t StartWriter(const QString& file, const QByteArray& bytes) {
  const pid_t writer = fork();
  if (writer == 0) {
    ptrace(PTRACE_TRACEME, 0, nullptr, nullptr);
    raise(SIGSTOP);
    _exit(WriteAtomically(file, bytes) ? 0 : 1);
  }
  return writer;
}

// Lets it go on for `steps` entries and exits of system calls, then kills it. True when it came to its end before.
bool KillAfter(pid_t writer, int steps) {
  int status = 0;
  waitpid(writer, &status, 0);
  for (int step = 0; step < steps; ++step) {
    ptrace(PTRACE_SYSCALL, writer, nullptr, nullptr);
    waitpid(writer, &status, 0);
    if (WIFEXITED(status)) return true;
  }
  SignalTo(writer, SIGKILL);
  waitpid(writer, &status, 0);
  return false;
}
}  // namespace

class AtomicFileTest : public QObject {
  Q_OBJECT

private slots:
  void aFileIsReplacedWhole() {
    root.Write(QStringLiteral("/tmp/a"), "old and longer");
    QVERIFY(WriteAtomically(root.Path(QStringLiteral("/tmp/a")), "new"));
    QCOMPARE(root.Read(QStringLiteral("/tmp/a")), QByteArray("new"));
    QVERIFY(!root.Exists(QStringLiteral("/tmp/a.saving")));
  }
  void aLeftoverOfACutWriteIsNoObstacle() {
    root.Write(QStringLiteral("/tmp/b.saving"), QByteArray(10000, 'x'));
    QVERIFY(WriteAtomically(root.Path(QStringLiteral("/tmp/b")), "new"));
    QCOMPARE(root.Read(QStringLiteral("/tmp/b")), QByteArray("new"));
  }
  void aFullDiskLeavesTheOldFile() {
    root.Write(QStringLiteral("/tmp/c"), "old");
    // A limit on the size of files stands for the full disk.
    signal(SIGXFSZ, SIG_IGN);
    rlimit before{};
    getrlimit(RLIMIT_FSIZE, &before);
    const rlimit small{1000, before.rlim_max};
    setrlimit(RLIMIT_FSIZE, &small);
    const bool written = WriteAtomically(root.Path(QStringLiteral("/tmp/c")), QByteArray(5000, 'n'));
    setrlimit(RLIMIT_FSIZE, &before);
    QVERIFY(!written);
    QCOMPARE(root.Read(QStringLiteral("/tmp/c")), QByteArray("old"));
    QVERIFY(!root.Exists(QStringLiteral("/tmp/c.saving")));
  }
  void aWriterKilledAtAnyStepLeavesAWholeFile() {
    const QString path = QStringLiteral("/tmp/f");
    const QByteArray before(9000, 'o');
    const QByteArray after(5000, 'n');
    bool oldSeen = false;
    bool newSeen = false;
    bool ended = false;
    for (int steps = 0; !ended; ++steps) {
      QVERIFY(steps < 1000);
      root.Write(path, before);
      ended = KillAfter(StartWriter(root.Path(path), after), steps);
      const QByteArray left = root.Read(path);
      QVERIFY2(left == before || left == after, qPrintable(QString::number(steps)));
      oldSeen = oldSeen || left == before;
      newSeen = newSeen || (left == after && !ended);
    }
    QVERIFY(oldSeen && newSeen);
    QCOMPARE(root.Read(path), after);
    QVERIFY(!root.Exists(path + QStringLiteral(".saving")));
  }
  void aFolderInItsPlaceIsNotReplaced() {
    QVERIFY(QDir().mkpath(root.Path(QStringLiteral("/tmp/d/inside"))));
    QVERIFY(!WriteAtomically(root.Path(QStringLiteral("/tmp/d")), "new"));
    QVERIFY(!root.Exists(QStringLiteral("/tmp/d.saving")));
  }
  void aLinkStaysAndItsFileIsWritten_data() {
    QTest::addColumn<QStringList>("links");  // name, target; the last one leads to the file
    QTest::addColumn<QString>("file");
    const QString away = root.Path(QStringLiteral("/opt/away"));
    QTest::newRow("absolute") << QStringList{"/tmp/l", away + "/file"} << "/opt/away/file";
    QTest::newRow("relative") << QStringList{"/tmp/l", "../opt/away/file"} << "/opt/away/file";
    QTest::newRow("beside") << QStringList{"/tmp/l", "file"} << "/tmp/file";
    QTest::newRow("chain") << QStringList{"/tmp/l", "l2", "/tmp/l2", away + "/l3", "/opt/away/l3", "../file"}
                           << "/opt/file";
    QTest::newRow("in a folder that is a link")
        << QStringList{"/tmp/folder", away, "/opt/away/l2", "../file", "/tmp/l", "folder/l2"} << "/opt/file";
  }
  void aLinkStaysAndItsFileIsWritten() {
    QFETCH(QStringList, links);
    QFETCH(QString, file);
    QVERIFY(QDir().mkpath(root.Path(QStringLiteral("/opt/away"))));
    for (int i = 0; i < links.size(); i += 2) QVERIFY(QFile::link(links[i + 1], root.Path(links[i])));
    // One that is not there yet, and one that is.
    for (const QByteArray bytes : {"new and longer", "newer"}) {
      QVERIFY(WriteAtomically(root.Path(QStringLiteral("/tmp/l")), bytes));
      QCOMPARE(root.Read(file), bytes);
      QVERIFY(!QFileInfo(root.Path(file)).isSymLink());
      QVERIFY(!root.Exists(file + QStringLiteral(".saving")));
      for (int i = 0; i < links.size(); i += 2) QVERIFY(QFileInfo(root.Path(links[i])).isSymLink());
    }
    root.Remove(file);
    for (int i = 0; i < links.size(); i += 2) root.Remove(links[i]);
  }
  void aLinkThatLeadsToNoFileIsNotReplaced_data() {
    QTest::addColumn<QString>("target");
    QTest::newRow("a circle of one") << "l";
    QTest::newRow("a circle of two") << "l2";
    QTest::newRow("a missing folder") << "none/file";
    QTest::newRow("a folder") << ".";
    QTest::newRow("a pipe") << "pipe";
  }
  void aLinkThatLeadsToNoFileIsNotReplaced() {
    QFETCH(QString, target);
    const QString path = root.Path(QStringLiteral("/tmp/l"));
    QVERIFY(QFile::link(target, path));
    QVERIFY(QFile::link(QStringLiteral("l"), path + u'2'));
    QCOMPARE(mkfifo(qPrintable(root.Path(QStringLiteral("/tmp/pipe"))), 0600), 0);
    QVERIFY(!WriteAtomically(path, "new"));
    QVERIFY(QFileInfo(path).isSymLink());
    QVERIFY(QFile::remove(root.Path(QStringLiteral("/tmp/pipe"))));  // it is still one
    QFile::remove(path);
    QFile::remove(path + u'2');
  }
  void whatACutWriteLeftGoes() {
    QVERIFY(QFile::link(QStringLiteral("../opt/g"), root.Path(QStringLiteral("/tmp/g"))));
    root.Write(QStringLiteral("/opt/g.saving"), "half");
    root.Write(QStringLiteral("/opt/g.saving2"), "somebody's");
    RemoveCutWrite(root.Path(QStringLiteral("/tmp/g")));
    QVERIFY(!root.Exists(QStringLiteral("/opt/g.saving")));
    QVERIFY(root.Exists(QStringLiteral("/opt/g.saving2")));
  }

  void whatIsRead() {
    QByteArray bytes = "before";
    const auto read = [&bytes](const char* name, qsizetype most) {
      return ReadFile(root.Path(QStringLiteral("/tmp/r/") + QLatin1String(name)), most, &bytes);
    };
    QVERIFY(QDir().mkpath(root.Path(QStringLiteral("/tmp/r/folder"))));
    root.Write(QStringLiteral("/tmp/r/file"), QByteArray(200000, 'x') + "end");
    root.Write(QStringLiteral("/tmp/r/empty"), "");
    QVERIFY(QFile::link(QStringLiteral("circle"), root.Path(QStringLiteral("/tmp/r/circle"))));
    QVERIFY(QFile::link(QStringLiteral("file"), root.Path(QStringLiteral("/tmp/r/link"))));
    QCOMPARE(mkfifo(qPrintable(root.Path(QStringLiteral("/tmp/r/pipe"))), 0600), 0);
    QVERIFY(read("file", 1000000) == FileRead::Whole);
    QCOMPARE(bytes, QByteArray(200000, 'x') + "end");
    QVERIFY(read("link", 7) == FileRead::Whole);
    QCOMPARE(bytes, QByteArray(7, 'x'));
    QVERIFY(read("empty", 7) == FileRead::Whole && bytes.isEmpty());
    QVERIFY(read("none", 7) == FileRead::Missing);
    for (const char* name : {"folder", "pipe", "circle"}) QVERIFY2(read(name, 7) == FileRead::NoFile, name);
    QVERIFY(read("file/below", 7) == FileRead::Failed);  // a file is no folder
    QVERIFY(bytes.isEmpty());
  }

  void aMissingFolderIsSaid() { QVERIFY(!WriteAtomically(root.Path(QStringLiteral("/none/e")), "new")); }
};

QTEST_GUILESS_MAIN(AtomicFileTest)
#include "atomicfile_test.moc"
