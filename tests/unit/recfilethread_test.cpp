#include "gui/recordings/recfilethread.h"

#include <QPointer>
#include <QTest>

#include "gui/recordings/recordingfilemanager.h"
#include "tests/fake/testroot.h"

static TestRoot root;

class RecFileThreadTest : public QObject {
  Q_OBJECT

private slots:
  void cleanup() {
    for (const QString& name : QDir(root.Path("/mnt/mmc")).entryList(QDir::Files)) root.Remove("/mnt/mmc/" + name);
  }

  void scanRunsBesideTheOneWhoWaits() {
    root.Write("/mnt/mmc/rec0_20230101_123456.avi", "no video");
    RecordingFileManager manager;
    RecFileThread thread(nullptr, &manager);
    QVERIFY(!thread.isRunning());
    thread.start(QThread::InheritPriority);
    QVERIFY(thread.wait());
    QVERIFY(thread.isFinished());
    const FileItemList* list = manager.GetFileItem(ALL_ASCENDING_FRONT);
    QVERIFY(list);
    QCOMPARE(list->size(), 1);
    QCOMPARE(list->at(0).filePath, QStringLiteral("/mnt/mmc/rec0_20230101_123456.avi"));
  }
  void threadThatIsDeletedEndsItsScan() {
    for (int i = 0; i < 200; ++i)
      root.Write(QStringLiteral("/mnt/mmc/rec1_20230101_%1.avi").arg(i, 6, 10, QLatin1Char('0')), "no video");
    RecordingFileManager manager;
    auto* thread = new RecFileThread(nullptr, &manager);
    thread->start(QThread::InheritPriority);
    delete thread;
    QVERIFY(manager.GetFileItem(NORMAL_DECENDING_REAR));
    QCOMPARE(manager.GetFileItem(NORMAL_DECENDING_REAR)->size(), 200);
  }
  void noDescriptorStaysOpen() {
    root.Write("/mnt/mmc/rec0_20230101_123456.avi", "no video");
    const auto scan = [] {
      RecordingFileManager manager;
      RecFileThread thread(nullptr, &manager);
      thread.start();
      QVERIFY(thread.wait());
    };
    const auto open = [] { return QDir(QStringLiteral("/proc/self/fd")).entryList(QDir::Files | QDir::System).size(); };
    scan();
    const auto before = open();
    for (int i = 0; i < 3; ++i) scan();
    QCOMPARE(open(), before);
  }
  void threadOfAParentGoesWithIt() {
    auto* parent = new QObject;
    RecordingFileManager manager;
    const QPointer<RecFileThread> thread = new RecFileThread(parent, &manager);
    thread->start();
    delete parent;
    QVERIFY(!thread);
  }
  void withoutRecordingsThereAreNoLists() {
    RecordingFileManager manager;
    RecFileThread thread(nullptr, &manager);
    thread.start();
    QVERIFY(thread.wait());
    for (int i = 0; i < RECORDING_FILE_INDEX_MAX; ++i) QVERIFY(!manager.GetFileItem(i));
  }
};

QTEST_GUILESS_MAIN(RecFileThreadTest)
#include "recfilethread_test.moc"
