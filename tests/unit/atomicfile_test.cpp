#include "gui/base/atomicfile.h"

#include <sys/resource.h>

#include <QTest>
#include <csignal>

#include "tests/fake/testroot.h"

static TestRoot root;

class AtomicFileTest : public QObject {
  Q_OBJECT

private slots:
  void aFileIsReplacedWhole() {
    root.Write(QStringLiteral("/tmp/a"), "old and longer");
    QVERIFY(WriteAtomically(root.Path(QStringLiteral("/tmp/a")), "new"));
    QCOMPARE(root.Read(QStringLiteral("/tmp/a")), QByteArray("new"));
    QVERIFY(!root.Exists(QStringLiteral("/tmp/a.tmp")));
  }
  void aLeftoverOfACutWriteIsNoObstacle() {
    root.Write(QStringLiteral("/tmp/b.tmp"), QByteArray(10000, 'x'));
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
    QVERIFY(!root.Exists(QStringLiteral("/tmp/c.tmp")));
  }
  void aFolderInItsPlaceIsNotReplaced() {
    QVERIFY(QDir().mkpath(root.Path(QStringLiteral("/tmp/d/inside"))));
    QVERIFY(!WriteAtomically(root.Path(QStringLiteral("/tmp/d")), "new"));
    QVERIFY(!root.Exists(QStringLiteral("/tmp/d.tmp")));
  }
  void aMissingFolderIsSaid() { QVERIFY(!WriteAtomically(root.Path(QStringLiteral("/none/e")), "new")); }
};

QTEST_GUILESS_MAIN(AtomicFileTest)
#include "atomicfile_test.moc"
