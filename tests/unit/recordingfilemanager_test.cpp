#include "gui/recordings/recordingfilemanager.h"

#include <fcntl.h>
#include <spawn.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <QTest>
#include <QtEndian>
#include <algorithm>
#include <memory>
#include <random>

#include "gui/base/devicepath.h"
#include "tests/fake/signalto.h"
#include "tests/fake/testroot.h"

static TestRoot root;

namespace {
const QString kCardPath = QStringLiteral("/mnt/mmc/");
const QString kStopFile = QStringLiteral("/mnt/mmc/Setup/record_stop.info");

/// The start of an AVI of so many seconds, and the recorder's four bytes at its end.
QByteArray Avi(int seconds, const QByteArray& trailer = QByteArray(4, '\0'), quint32 mainBytes = 56) {
  QByteArray avi(qsizetype{88} + 56, '\0');
  avi.replace(0, 4, "RIFF").replace(8, 8, "AVI LIST").replace(20, 8, "hdrlavih");
  qToLittleEndian<quint32>(mainBytes, avi.data() + 28);
  qToLittleEndian<quint32>(30, avi.data() + 132);
  qToLittleEndian<quint32>(quint32(30 * seconds), avi.data() + 140);
  return avi + trailer;
}
QByteArray Trailer(int b0, int b1, int b2, int b3) {
  return QByteArray().append(char(b0)).append(char(b1)).append(char(b2)).append(char(b3));
}

FilelistEntry Entry(const QString& date, int mode = 0, int camMode = 0) {
  FilelistEntry entry;
  entry.date = date;
  entry.mode = mode;
  entry.camMode = camMode;
  return entry;
}

/// As the rule says it: one record after the other, before the first entry that is later.
QList<int> MergeOneByOne(const RecStopInfoList& records, FilelistEntryList* entries) {
  QList<int> places;
  for (const RecStopInfo& record : records) {
    qsizetype p = 0;
    while (p < entries->size() && !(entries->at(p).date > record.startTime)) ++p;
    FilelistEntry marker = Entry(record.startTime);
    marker.recStopFlag = true;
    marker.recStopData = record.endTime;
    entries->insert(p, marker);
    places << int(p);
  }
  return places;
}

QStringList gSaid;

/// The lines that `call` prints on the standard output.
template <typename Call>
QStringList Printed(Call call) {
  fflush(stdout);
  const int ours = memfd_create("printed", MFD_CLOEXEC);
  const int before = dup(STDOUT_FILENO);
  dup2(ours, STDOUT_FILENO);
  call();
  dup2(before, STDOUT_FILENO);  // what the call has not flushed is not there
  close(before);
  QFile file;
  if (!file.open(ours, QIODevice::ReadOnly, QFileDevice::AutoCloseHandle) || !file.seek(0)) return {"unread"};
  return QString::fromUtf8(file.readAll()).split(u'\n', Qt::SkipEmptyParts);
}
}  // namespace

class RecordingFileManagerTest : public QObject {
  Q_OBJECT

  std::unique_ptr<RecordingFileManager> mManager;
  QtMessageHandler mBefore = nullptr;
  int mAge = 0;

  /// A file of the card, `age` s after a time long ago, or 1 s after the one before.
  void Put(const QString& name, const QByteArray& bytes = Avi(60), int age = -1) {
    root.Write(kCardPath + name, bytes);
    SetAge(name, age < 0 ? ++mAge : age);
  }
  void SetAge(const QString& name, int age, long ns = 0) {
    const timespec time{1600000000 + age, ns};
    const timespec times[] = {time, time};
    QCOMPARE(utimensat(AT_FDCWD, qPrintable(root.Path(kCardPath + name)), times, 0), 0);
  }
  bool Scan() { return mManager->ReadFileList(kCardPath); }
  int NextKey() { return mManager->NewFileListEntry(0, false, 0, {}, true, false).key; }
  const FilelistEntryList& Entries() const { return *mManager->GetFileListEntry(); }
  QStringList Dates() const {
    QStringList dates;
    for (const FilelistEntry& entry : Entries()) dates << entry.date;
    return dates;
  }
  /// What the list shows of times; markers with "~" and their end.
  QStringList Times(int index) const {
    QStringList times;
    const FileItemList* list = mManager->GetFileItem(index);
    if (!list) return {QStringLiteral("absent")};
    for (int i = 0; i < list->size(); ++i) {
      const FileItem item = list->at(i);
      times << item.fileName.last(8) + (item.recStopFlag ? "~" + item.recStopData : QString());
    }
    return times;
  }
  RecStopInfoList ReadStops(bool expected = true) {
    RecStopInfoList list;
    const bool isRead = RecordingFileManager::GetRecordStopFileInfo(kStopFile, &list);
    return isRead == expected ? list : RecStopInfoList{{QStringLiteral("wrong"), {}}};
  }

private slots:
  void init() {
    mManager = std::make_unique<RecordingFileManager>();
    mAge = 0;
    gSaid.clear();
    mBefore = qInstallMessageHandler([](QtMsgType, const QMessageLogContext&, const QString& line) { gSaid << line; });
  }
  void cleanup() {
    qInstallMessageHandler(mBefore);
    mManager.reset();
    QDir(root.Path("/mnt/mmc")).removeRecursively();
    QDir().mkpath(root.Path("/mnt/mmc/Setup"));
  }

  // ---- names

  void namesOfRecordings_data() {
    QTest::addColumn<QString>("name");
    QTest::addColumn<int>("mode");
    QTest::addColumn<int>("camMode");
    QTest::addColumn<QString>("date");
    QTest::addColumn<bool>("rtcError");
    QTest::addColumn<QString>("path");
    const char* const prefixes[] = {"rec", "pmr", "evt", "ndf"};
    const char* const dates[] = {"20230101_123456", "20231231_235959", "20240229_000000", "19700101_000001",
                                 "20380119_031408", "20991231_115959", "00000000_000000", "99999999_999999"};
    for (int mode = 0; mode < 4; ++mode)
      for (int camera = 0; camera < 2; ++camera)
        for (const QString date : dates)
          for (const QString end : {"", "_"}) {
            const QString stem = QString::asprintf("%s%d_", prefixes[mode], camera) + date + end;
            for (const QString extension : {".avi", ".mp4", ".AVI", ".tmp"})
              QTest::newRow(qPrintable(stem + extension))
                  << stem + extension << mode << camera << date << !end.isEmpty() << kCardPath + stem + ".avi";
          }
    const auto odd = [](const QString& name, int mode, int camera, const char* date, bool rtc, const char* file) {
      QTest::newRow(qPrintable(name)) << name << mode << camera << QString(date) << rtc << kCardPath + file;
    };
    odd("rec0__20230101_12345.avi", 0, 0, "20230101_12345", false, "rec0_20230101_12345.avi");
    odd("rec0__20230101_123456.avi", 0, 0, "20230101_123456", true, "rec0_20230101_123456_.avi");
    odd("pmr1_20230101_12_456.avi", 1, 1, "20230101_12", false, "pmr1_20230101_12.avi");
    odd("pmr1_20230101_123456_.av", 1, 1, "20230101_123456", false, "pmr1_20230101_123456.avi");
    odd("evt0_20230101_123456.1.2", 2, 0, "20230101_123456", false, "evt0_20230101_123456.avi");
    odd("evt0_20230101_123456..av", 2, 0, "20230101_123456", false, "evt0_20230101_123456.avi");
    odd("ndf0_2023_01011234567.zz", 3, 0, "2023_01011234567", false, "ndf0_2023_01011234567.avi");
    odd("rec0_20230101_123456.zels", 0, 0, "20230101_123456", true, "rec0_20230101_123456_.avi");
    odd("rec0_20230101_123456.ZEL", 0, 0, "20230101_123456", false, "rec0_20230101_123456.avi");
    odd("rec0_20230101_123456.avi.", 0, 0, "20230101_123456", true, "rec0_20230101_123456_.avi");
    odd(QStringLiteral("rec0_20230101_12345육.avi"), 0, 0, "20230101_12345육", false, "rec0_20230101_12345육.avi");
  }
  void namesOfRecordings() {
    QFETCH(QString, name);
    QVERIFY(mManager->AddFileList(name));
    QCOMPARE(Entries().size(), 1);
    const FilelistEntry& entry = Entries().first();
    QTEST(entry.mode, "mode");
    QTEST(entry.camMode, "camMode");
    QTEST(entry.date, "date");
    QTEST(entry.rtcErrorFlag, "rtcError");
    QTEST(entry.fileName, "path");
    QCOMPARE(entry.fileFlag, entry.rtcErrorFlag ? TYPE_RTC_ERROR : TYPE_NONE);
    QCOMPARE(entry.key, -1);
    QCOMPARE(entry.recordTime, 0);
    QVERIFY(!entry.eventFlag && !entry.recStopFlag);
    QVERIFY(entry.filePath.isEmpty() && entry.recStopData.isEmpty());
    QVERIFY(gSaid.isEmpty());
  }

  void namesOfOtherFiles_data() {
    QTest::addColumn<QString>("name");
    const auto row = [](const QString& name) { QTest::newRow(qPrintable(name)) << name; };
    // The length.
    const QString longest = "rec0_20230101_123456789012345678901234567890.avi";
    for (int size = 0; size <= longest.size(); ++size)
      if (size != 24 && size != 25)
        QTest::addRow("%d characters", size) << longest.first(std::max(0, size - 4)) + ".avi";
    row("rec0_20230101_12345.avi");
    row("rec0_20230101_123456__.avi");
    // The camera.
    for (char camera = ' '; camera < 127; ++camera)
      if (camera != '0' && camera != '1')
        for (const QString prefix : {"rec", "pmr", "evt", "ndf"})
          row(prefix + camera + (prefix == "pmr" ? "_20230101_123456_.avi" : "_20230101_123456.avi"));
    // The kind.
    for (const QString prefix : {"abc", "REC", "Rec", "reC", "re ", "rce", "cer", "PMR", "prm", "EVT",
                                 "evn", "NDF", "nfd", "000", "111", "   ", "---", "_re", "r_c", ".re"})
      for (const QString end : {"0_20230101_123456.avi", "1_20230101_123456.avi", "1_20230101_123456_.avi"})
        row(prefix + end);
    // The parts.
    row("rec0-20230101-123456.avi");
    row("rec0_20230101-123456.avi");
    row("rec0-20230101_123456.avi");
    row("rec020230101_1234567.avi");
    row("rec0_2023_0101_12_34.avi");
    row("rec0_2_0_2_3_0_1_0_1.avi");
    row("rec0________________.avi");
    row("rec0_20230101_______.avi");
    row("rec01_20230101_12345.avi");
    row("_rec0_20230101_12345.avi");
    row("__r1ec0_2023_123456.avi_");
    row("ec_0_20230101_123456.avi");
    row("____20230101_123456_.avi");
    // The extension.
    row("rec0_20230101_1234567890");
    row("rec0_20230101_123456_____");
    row("rec0_20230101_1234567avi");
    row("rec0_20230101_123456789.");
    row(".rec0_20230101_123456789");
    row("...0....................");
    row("...0_20230101_123456.avi");
    row("rec0.20230101.123456.avi");
    row("rec0.20230101_123456_avi");
    row("rec0_20230101.123456_avi");
    row("........................");
    row("0000_0000_0000_0000.0000");
  }
  void namesOfOtherFiles() {
    QFETCH(QString, name);
    QVERIFY(!mManager->AddFileList(name));
    QVERIFY(Entries().isEmpty());
    QCOMPARE(NextKey(), -1);
    QVERIFY(gSaid.isEmpty());
  }

  // Their ends are not in the file names: they come from the recorder's list alone.
  void markersAsFilesAreRefused_data() {
    QTest::addColumn<QString>("name");
    for (const QString prefix : {"rec", "pmr", "evt", "ndf"})
      for (const QString camera : {"0", "1"})
        for (const QString end : {"p.zel", ".zel"})
          QTest::newRow(qPrintable(prefix + camera + end)) << prefix + camera + "_20230101_123456" + end;
    QTest::newRow("zel before avi") << "rec0_20230101_12.zel.avi";
    QTest::newRow("nothing but a p") << "rec0_20230101123456_p.zel";
  }
  void markersAsFilesAreRefused() {
    QFETCH(QString, name);
    root.Write(kCardPath + name, "20230101_130000");
    QVERIFY(!mManager->AddFileList(name));
    QVERIFY(Entries().isEmpty());
    QCOMPARE(gSaid, QStringList("recStop error"));
    QCOMPARE(NextKey(), 0);  // it had the number -1
  }
  void aMarkersPath() {
    const FilelistEntry marker = mManager->NewFileListEntry(2, false, 1, "20230101_123456", true, false);
    QCOMPARE(marker.fileName, QStringLiteral("/mnt/mmc/evt1_20230101_123456p.zel"));
    QVERIFY(marker.recStopFlag && marker.recStopData.isEmpty());
    QCOMPARE(marker.mode, 2);
    QCOMPARE(marker.camMode, 1);
  }
  void aMarkersOwnText() {
    FilelistEntry marker = mManager->NewFileListEntry(0, false, 0, "20230101_123456", true, false);
    QVERIFY(!mManager->GetRecStopFileData(&marker));
    QVERIFY(gSaid.isEmpty());
    root.Write(marker.fileName, "");
    QVERIFY(mManager->GetRecStopFileData(&marker));
    QCOMPARE(gSaid, QStringList("entry->recStopData is empty"));
    root.Write(marker.fileName, "20230101_130000\r\nand more");
    QVERIFY(mManager->GetRecStopFileData(&marker));
    QCOMPARE(marker.recStopData, QStringLiteral("20230101_130000\nand more"));
    QCOMPARE(gSaid.size(), 1);
  }

  void numbersRunInScanOrder() {
    Put("rec0_20230101_100000.avi", {}, 3);
    Put("rec0_20230101_110000p.zel", "x", 2);
    Put("rec0_20230101_120000.avi", {}, 1);
    Put("rec0_20230101_13000.avi", {}, 0);
    QVERIFY(Scan());
    QCOMPARE(Dates(), QStringList({"20230101_120000", "20230101_100000"}));
    QCOMPARE(Entries()[0].key, -1);
    QCOMPARE(Entries()[1].key, 1);
  }

  // ---- what the files say

  void flagsOfTheTrailer_data() {
    QTest::addColumn<QByteArray>("trailer");
    QTest::addColumn<int>("flag");
    const auto row = [](int b0, int b1, int b2, int b3, int flag) {
      QTest::addRow("%02x %02x %02x %02x", b0, b1, b2, b3) << Trailer(b0, b1, b2, b3) << flag;
    };
    constexpr int kMark = '^', kOther = 0x7A;
    // The marker in the third byte.
    row(0, 0, kMark, 0, TYPE_NONE);
    row(1, 0, kMark, 0, TYPE_EVENT);
    row(2, 0, kMark, 0, TYPE_MOTION);
    row(3, 0, kMark, 0, TYPE_NONE);
    row(0, 1, kMark, 0, TYPE_LOW_VOLT);
    row(1, 1, kMark, 0, TYPE_LOW_VOLT);
    row(2, 1, kMark, 0, TYPE_LOW_VOLT);
    row(0, 2, kMark, 0, TYPE_TEMP_CUT);
    row(1, 2, kMark, 0, TYPE_TEMP_CUT);
    row(2, 2, kMark, 0, TYPE_TEMP_CUT);
    row(1, 3, kMark, 0, TYPE_EVENT);
    row(2, 3, kMark, 0, TYPE_MOTION);
    row(0, 3, kMark, 0, TYPE_NONE);
    row(0xFF, 0xFF, kMark, 0, TYPE_NONE);
    // In the fourth.
    row(kOther, 0, 0, kMark, TYPE_NONE);
    row(kOther, 1, 0, kMark, TYPE_EVENT);
    row(kOther, 2, 0, kMark, TYPE_MOTION);
    row(kOther, 0, 1, kMark, TYPE_LOW_VOLT);
    row(kOther, 1, 1, kMark, TYPE_LOW_VOLT);
    row(kOther, 2, 1, kMark, TYPE_LOW_VOLT);
    row(kOther, 0, 2, kMark, TYPE_TEMP_CUT);
    row(kOther, 1, 2, kMark, TYPE_TEMP_CUT);
    row(kOther, 2, 2, kMark, TYPE_TEMP_CUT);
    row(kOther, 2, 3, kMark, TYPE_MOTION);
    row(1, 0, 0, kMark, TYPE_NONE);
    // In both: the third is the one.
    row(1, 2, kMark, kMark, TYPE_TEMP_CUT);
    row(2, 0, kMark, kMark, TYPE_MOTION);
    row(0, 0, kMark, kMark, TYPE_NONE);
    row(0, kMark, kMark, 1, TYPE_NONE);
    // In neither.
    row(1, 1, 0, 0, TYPE_NONE);
    row(1, kMark, 1, 1, TYPE_NONE);
    row(kMark, 1, 1, 1, TYPE_NONE);
    row(0, 0, 0, 0, TYPE_NONE);
    row(1, 2, 0x5D, 0x5F, TYPE_NONE);
  }
  void flagsOfTheTrailer() {
    QFETCH(QByteArray, trailer);
    Put("pmr0_20230101_123456.avi", Avi(60, trailer));
    Put("pmr0_20230101_123457_.avi", Avi(60, trailer));
    Put("rec1_20230101_123458.avi", trailer);  // and nothing else
    QVERIFY(Scan());
    QCOMPARE(Entries().size(), 3);
    QTEST(Entries()[0].fileFlag, "flag");
    QCOMPARE(Entries()[1].fileFlag, TYPE_RTC_ERROR);
    QTEST(Entries()[2].fileFlag, "flag");
    QCOMPARE(Entries()[0].recordTime, 60);
    QCOMPARE(Entries()[1].recordTime, 60);
    QCOMPARE(Entries()[2].recordTime, 0);
  }

  void shortFilesHaveNoTrailer() {
    for (int size = 0; size < 4; ++size) {
      Put(QStringLiteral("pmr0_20230101_12345%1.avi").arg(size), QByteArray("\1^^").first(size));
      Put(QStringLiteral("pmr0_20230101_12345%1_.avi").arg(size), QByteArray("\1^^").first(size));
    }
    QVERIFY(Scan());
    QCOMPARE(Entries().size(), 8);
    for (int size = 0; size < 4; ++size) {
      QCOMPARE(Entries()[size * 2].fileFlag, TYPE_NONE);
      QCOMPARE(Entries()[size * 2 + 1].fileFlag, size == 0 ? TYPE_NONE : TYPE_RTC_ERROR);
    }
  }

  void videosOfNoLengthAreListed_data() {
    QTest::addColumn<QByteArray>("bytes");
    const QByteArray avi = Avi(60, {});
    for (qsizetype size = 1; size < avi.size(); size += size < 16 ? 1 : 16)
      QTest::addRow("cut to %d", int(size)) << avi.first(size);
    QTest::newRow("cut before the last byte") << avi.chopped(1);
    QTest::newRow("another file") << QByteArray(5000, 'x');
    QTest::newRow("main header of 4 GiB") << Avi(60, {}, 0xFFFFFFFF);
    QTest::newRow("no rate") << QByteArray(avi).replace(132, 4, QByteArray(4, '\0'));
  }
  void videosOfNoLengthAreListed() {
    QFETCH(QByteArray, bytes);
    Put("rec0_20230101_123456.avi", bytes);
    QVERIFY(Scan());
    QCOMPARE(Entries().size(), 1);
    QCOMPARE(Entries()[0].recordTime, 0);
    QCOMPARE(Entries()[0].fileFlag, TYPE_NONE);
    QCOMPARE(mManager->GetFileItem(ALL_ASCENDING_FRONT)->size(), 1);
  }

  void dataOfOneFile() {
    FilelistEntry entry;
    entry.fileName = "/mnt/mmc/rec0_20230101_123456.avi";
    entry.fileFlag = TYPE_MOTION;
    QVERIFY(!mManager->GetFileData(&entry));
    QCOMPARE(entry.fileFlag, TYPE_MOTION);
    root.Write(entry.fileName, "");
    QVERIFY(!mManager->GetFileData(&entry));
    QCOMPARE(entry.fileFlag, TYPE_NONE);
    root.Write(entry.fileName, Avi(75, Trailer(1, 0, '^', 0)));
    QVERIFY(mManager->GetFileData(&entry));
    QCOMPARE(entry.fileFlag, TYPE_EVENT);
    QCOMPARE(entry.recordTime, 75);
    entry.rtcErrorFlag = true;
    QVERIFY(mManager->GetFileData(&entry));
    QCOMPARE(entry.fileFlag, TYPE_RTC_ERROR);
    root.Write(entry.fileName, "no video");
    QVERIFY(!mManager->GetFileData(&entry));
    QCOMPARE(entry.fileFlag, TYPE_RTC_ERROR);
  }

  // A recording is named by the path that a player gets, whatever the extension of the file that was found.
  void dataComesFromThePathOfTheEntry() {
    Put("rec0_20230101_123456.mp4", Avi(10));
    Put("rec0_20230101_123457_.mp4", Avi(10));
    Put("rec0_20230101_123458.mp4", Avi(10));
    Put("rec0_20230101_123458.avi", Avi(20, Trailer(0, 1, '^', 0)));
    Put("rec0_20230101_123459_.mp4", Avi(10));
    QDir().mkpath(root.Path("/mnt/mmc/rec0_20230101_123459_.avi"));
    QVERIFY(Scan());
    QCOMPARE(Entries().size(), 5);
    QCOMPARE(Entries()[0].recordTime, 0);
    QCOMPARE(Entries()[1].fileFlag, TYPE_RTC_ERROR);  // there is none: as the name says
    QCOMPARE(Entries()[2].recordTime, 20);
    QCOMPARE(Entries()[2].fileFlag, TYPE_LOW_VOLT);
    QCOMPARE(Entries()[2].fileName, Entries()[3].fileName);
    QCOMPARE(Entries()[4].fileFlag, TYPE_NONE);  // there is one that cannot be opened
  }

  // Files are opened for writing: a program that runs cannot be, not even by the superuser.
  void aFileThatCannotBeWrittenHasNeitherFlagNorLength() {
    const QString name = "rec0_20230101_123456_.avi";
    QVERIFY(QFile::copy("/bin/sleep", root.Path(kCardPath + name)));
    SetAge(name, 5);
    Put("rec0_20230101_123457.avi", Avi(60), 4);
    char seconds[] = "60";
    char* arguments[] = {seconds, seconds, nullptr};
    pid_t sleep = 0;
    QCOMPARE(posix_spawn(&sleep, qPrintable(root.Path(kCardPath + name)), nullptr, nullptr, arguments, environ), 0);
    const auto runs = [&] {
      const int file = open(qPrintable(root.Path(kCardPath + name)), O_RDWR | O_CLOEXEC);
      if (file >= 0) close(file);
      return file < 0;
    };
    const bool isRunning = QTest::qWaitFor(runs, 20000);  // an emulator comes back before the program has begun
    const bool good = Scan();
    QVERIFY(SignalTo(sleep, SIGKILL));
    waitpid(sleep, nullptr, 0);
    QVERIFY(isRunning && good);
    QCOMPARE(Dates(), QStringList({"20230101_123457", "20230101_123456"}));
    QCOMPARE(Entries()[1].fileFlag, TYPE_NONE);
    QCOMPARE(Entries()[1].recordTime, 0);
    QVERIFY(Entries()[1].rtcErrorFlag);
  }
  void aScanWritesNothing() {
    Put("rec0_20230101_123456.avi", Avi(60), 7);
    QVERIFY(Scan());
    QCOMPARE(root.Read("/mnt/mmc/rec0_20230101_123456.avi"), Avi(60));
    struct stat status {};
    QCOMPARE(stat(qPrintable(root.Path("/mnt/mmc/rec0_20230101_123456.avi")), &status), 0);
    QCOMPARE(status.st_mtime, 1600000007);
    QCOMPARE(QDir(root.Path(kCardPath)).entryList(QDir::Files).size(), 1);
  }

  // ---- the scan

  void withoutAFolderThereIsNothing() {
    QVERIFY(!mManager->ReadFileList("/mnt/none/"));
    QVERIFY(gSaid.isEmpty());
    root.Write("/mnt/mmc/file", "");
    QVERIFY(!mManager->ReadFileList("/mnt/mmc/file"));
    for (int i = 0; i < RECORDING_FILE_INDEX_MAX; ++i) QVERIFY(!mManager->GetFileItem(i));
  }
  void anEmptyCardHasNoLists() {
    root.Write("/mnt/mmc/picture.bmp", "x");
    root.Write(kStopFile, "20230101_123456 20230101_123500\n");
    QVERIFY(!Scan());
    QCOMPARE(gSaid, QStringList("file number = 0"));
    for (int i = 0; i < RECORDING_FILE_INDEX_MAX; ++i) QVERIFY(!mManager->GetFileItem(i));
  }
  // Nothing to list without an entry; the recorder's stops make one.
  void refusedFilesAloneMakeNoLists() {
    Put("record.txt");
    QVERIFY(Scan());
    QCOMPARE(gSaid, QStringList({"file number = 1", "invalid num = 1"}));
    for (int i = 0; i < RECORDING_FILE_INDEX_MAX; ++i) QVERIFY(!mManager->GetFileItem(i));
    root.Write(kStopFile, "20230101_123456 20230101_123500\n");
    QVERIFY(Scan());
    QCOMPARE(Times(ALL_ASCENDING_REAR), QStringList("12:34:56~20230101_123500"));
    QCOMPARE(Times(NORMAL_ASCENDING_FRONT), QStringList());
  }
  void aNewManagerHasNothing() {
    QVERIFY(Entries().isEmpty());
    QCOMPARE(NextKey(), -1);
    QVERIFY(!mManager->GetCurItem());
    for (const int i : {-1, INT_MIN, int{RECORDING_FILE_INDEX_MAX}, INT_MAX, 0, 19}) QVERIFY(!mManager->GetFileItem(i));
  }
  void theShownListIsOnlyNoted() {
    Put("rec0_20230101_123456.avi");
    QVERIFY(Scan());
    QVERIFY(!mManager->GetCurItem());
    mManager->SetCurItem(mManager->GetFileItem(3));
    QCOMPARE(mManager->GetCurItem(), mManager->GetFileItem(3));
  }

  void onlyPlainFilesOfTheFourKindsAreFound() {
    for (const char* name :
         {"rec0_20230101_100000.avi", "recipe", "pmr", "evt.bmp", "ndf", "NDF0_x", "p.zel", "xp.zel", "XP.ZEL"})
      Put(name);
    for (const char* name :
         {"xrec0_20230101_100000.avi", "re", "pm", "p.zel2", ".zel", ".rec", ".hiddenp.zel", "ap_zel", "Setup.ini"})
      Put(name);
    QDir().mkpath(root.Path("/mnt/mmc/rec0_20230101_100001.avi"));
    QCOMPARE(mkfifo(qPrintable(root.Path("/mnt/mmc/rec0_20230101_100002.avi")), 0600), 0);
    root.Write("/mnt/mmc/Setup/rec0_20230101_100003.avi", Avi(60));
    const int odd = creat(root.Path(kCardPath).toLocal8Bit() + "rec0_20230101_10000\xFF.avi", 0600);  // no text
    QVERIFY(odd >= 0);
    close(odd);
    QVERIFY(Scan());
    QCOMPARE(gSaid.first(), QStringLiteral("file number = 9"));
    QCOMPARE(gSaid.last(), QStringLiteral("invalid num = 8"));
    QCOMPARE(Dates(), QStringList("20230101_100000"));
  }
  // A name has 24 or 25 UTF-16 units, of one to three bytes each in the folder.
  void namesOfAnyLettersAreFound() {
    const QStringList names{
        QStringLiteral("rec0_20230101_12345육.avi"), QStringLiteral("pmr1_육육육육육육육육_육육육육육육_.avi"),
        QStringLiteral("evt0_\U0001F697\U0001F697\U0001F697\U0001F697_123456.avi"),
        QStringLiteral("ndf1_1_1.") + QString(16, u'육'), QStringLiteral("rec0_1_1.") + QString(15, u'é')};
    for (const QString& name : names) Put(name);
    // Too long, by one unit and by far.
    Put(QStringLiteral("rec0_1_1.") + QString(17, u'육'));
    Put(QStringLiteral("rec0_") + QString(80, u'육') + QStringLiteral(".avi"));
    Put(QStringLiteral("rec0_") + QString(230, u'a') + QStringLiteral(".avi"));
    QVERIFY(Scan());
    QCOMPARE(gSaid.first(), QStringLiteral("file number = 8"));
    QCOMPARE(gSaid.last(), QStringLiteral("invalid num = 3"));
    QCOMPARE(Entries().size(), names.size());
    const FilelistEntryList found = Entries();
    mManager = std::make_unique<RecordingFileManager>();
    for (int i = 0; i < names.size(); ++i) {
      QVERIFY(mManager->AddFileList(names[i]));
      QCOMPARE(found[i].fileName, Entries()[i].fileName);
      QCOMPARE(found[i].date, Entries()[i].date);
      QCOMPARE(found[i].recordTime, Entries()[i].recordTime);
    }
    QCOMPARE(found[0].recordTime, 60);
    QCOMPARE(found[1].rtcErrorFlag, true);
  }
  void linksToFilesAreFollowed() {
    root.Write("/tmp/elsewhere", Avi(33));
    const auto link = [](const char* target, const char* name) {
      QCOMPARE(symlink(target, qPrintable(root.Path(kCardPath + name))), 0);
    };
    link(qPrintable(root.Path("/tmp/elsewhere")), "rec0_20230101_100000.avi");
    link("nowhere", "rec0_20230101_100001.avi");
    link(".", "rec0_20230101_100002.avi");
    link("rec0_20230101_100003.avi", "rec0_20230101_100003.avi");
    link("/dev/zero", "rec0_20230101_100004.avi");
    QCOMPARE(mkfifo(qPrintable(root.Path("/tmp/pipe")), 0600), 0);
    link(qPrintable(root.Path("/tmp/pipe")), "rec0_20230101_100005.avi");
    QVERIFY(Scan());
    QCOMPARE(gSaid.first(), QStringLiteral("file number = 1"));
    QCOMPARE(Dates(), QStringList("20230101_100000"));
    QCOMPARE(Entries()[0].recordTime, 33);
    root.Remove("/tmp/pipe");
  }

  void theOldestFileIsFirst() {
    Put("rec0_20230101_100000.avi", {}, 30);
    Put("evt1_20230101_100001_.avi", {}, 10);
    Put("ndf0_20230101_100002.avi", {}, 20);
    Put("pmr0_20230101_100003.avi", {}, 5);
    QVERIFY(Scan());
    QCOMPARE(Dates(), QStringList({"20230101_100003", "20230101_100001", "20230101_100002", "20230101_100000"}));
  }
  // As folders are sorted elsewhere, too: names of the same millisecond run backwards.
  void filesOfTheSameTime() {
    std::mt19937 random(7);
    for (int i = 0; i < 300; ++i) {
      const QString name = QStringLiteral("%1%2_20230101_%3.avi")
                               .arg(QStringLiteral("recevtndfpmr").mid(int(random() % 4) * 3, 3))
                               .arg(i % 2)
                               .arg(100000 + int(random() % 900000));
      root.Write(kCardPath + name, "x");
      SetAge(name, int(random() % 20), long(random() % 4) * 400000);
    }
    QVERIFY(Scan());
    QStringList names;
    for (const FilelistEntry& entry : Entries()) names << entry.fileName.sliced(kCardPath.size());
    QCOMPARE(names,
             QDir(root.Path(kCardPath))
                 .entryList({"rec*", "pmr*", "evt*", "ndf*", "*p.zel"}, QDir::Files, QDir::Time | QDir::Reversed));
  }
  void refusedFilesAreCounted() {
    Put("rec0_20230101_100000.avi");
    Put("rec0_20230101_100000p.zel");
    Put("rec2_20230101_100000.avi");
    Put("recording of the holidays.avi");
    QVERIFY(Scan());
    QCOMPARE(gSaid, QStringList({"file number = 4", "recStop error", "invalid num = 3"}));
  }
  void anotherFolderNamesFilesOfTheCard() {
    Put("rec0_20230101_100000.avi", Avi(60));
    QDir().mkpath(root.Path("/mnt/mmc/old"));
    root.Write("/mnt/mmc/old/rec0_20230101_100000.avi", Avi(10));
    QVERIFY(mManager->ReadFileList("/mnt/mmc/old/"));
    QCOMPARE(Entries().size(), 1);
    QCOMPARE(Entries()[0].recordTime, 60);
  }

  // ---- the recorder's stops

  void stopsAreReadLineByLine() {
    root.Write(kStopFile,
               "20230101_100000 20230101_110000\n"
               "20230101_120000   20230101_130000   more  \n"
               "\n"
               "   \n"
               "  20230101_140000\r\n"
               "20230101_150000\t20230101_160000\n"
               "x y\r\n"
               "20230101_170000 20230101_180000");
    const RecStopInfoList list = ReadStops();
    const QList<QStringList> expected{{"20230101_100000", "20230101_110000"},
                                      {"20230101_120000", "20230101_130000"},
                                      {"20230101_140000", ""},
                                      {"20230101_150000\t20230101_160000", ""},
                                      {"x", "y"},
                                      {"20230101_170000", "20230101_180000"}};
    QCOMPARE(list.size(), expected.size());
    for (int i = 0; i < list.size(); ++i) QCOMPARE(QStringList({list[i].startTime, list[i].endTime}), expected[i]);
  }
  void stopsAreAppended() {
    root.Write(kStopFile, "a b\n");
    RecStopInfoList list{{"x", "y"}};
    QVERIFY(RecordingFileManager::GetRecordStopFileInfo(kStopFile, &list));
    QCOMPARE(list.size(), 2);
    QVERIFY(!RecordingFileManager::GetRecordStopFileInfo(kStopFile, nullptr));
  }
  void anEmptyListOfStopsIsOne() {
    QVERIFY(ReadStops(false).isEmpty());
    root.Write(kStopFile, "");
    QVERIFY(ReadStops().isEmpty());
  }
  void stopsEndAfterTenThousandLines() {
    QByteArray lines;
    for (int i = 0; i < 10002; ++i) lines += "s" + QByteArray::number(i) + " e\n";
    root.Write(kStopFile, lines);
    const RecStopInfoList list = ReadStops();
    QCOMPARE(list.size(), 10000);
    QCOMPARE(list.last().startTime, QStringLiteral("s9999"));
    root.Write(kStopFile, QByteArray(20000, '\n') + "late e\n");
    QVERIFY(ReadStops().isEmpty());
  }
  void aLongLineOfStopsIsOneLine() {
    const QByteArray longLine = QByteArray(3000000, 'x') + '\n';
    QByteArray lines = longLine + longLine;
    for (int i = 0; i < 9999; ++i) lines += "s" + QByteArray::number(i) + " e\n";
    root.Write(kStopFile, lines);
    const RecStopInfoList list = ReadStops();
    QCOMPARE(list.size(), 9998);
    QCOMPARE(list.last().startTime, QStringLiteral("s9997"));
  }
  // A line of gigabytes is not waited for.
  void farBehindTheStopsNothingIsRead() {
    root.Write(kStopFile, "a b\n");
    QFile file(root.Path(kStopFile));
    QVERIFY(file.open(QIODevice::ReadWrite));
    QVERIFY(file.resize(3LL << 30));
    QVERIFY(file.seek(42000000));
    file.write("\nlate e\n");
    file.close();
    QCOMPARE(ReadStops().size(), 1);
  }
  void longLinesOfStopsAreLeftOut_data() {
    QTest::addColumn<int>("bytes");
    QTest::addColumn<bool>("isTaken");
    QTest::newRow("4 KiB") << 4096 << true;
    for (const int bytes : {4097, 4098, 4099, 8192, 8196, 100000, 10000000})
      QTest::addRow("%d", bytes) << bytes << false;
  }
  void longLinesOfStopsAreLeftOut() {
    QFETCH(int, bytes);
    QFETCH(bool, isTaken);
    const QByteArray line = "a " + QByteArray(bytes - 2, 'b');
    for (const QByteArray end : {"\n", "\r\n"}) {
      root.Write(kStopFile, "x y" + end + line + end + "z z" + end);
      const RecStopInfoList list = ReadStops();
      QCOMPARE(list.size(), isTaken ? 3 : 2);
      QCOMPARE(list.last().startTime, QStringLiteral("z"));
    }
    root.Write(kStopFile, "x y\n" + line);
    QCOMPARE(ReadStops().size(), isTaken ? 2 : 1);
  }
  void whatIsNoListOfStopsIsNotRead() {
    QDir().mkpath(root.Path(kStopFile));
    QVERIFY(ReadStops(false).isEmpty());
    QVERIFY(QDir().rmdir(root.Path(kStopFile)));
    QCOMPARE(mkfifo(qPrintable(root.Path(kStopFile)), 0600), 0);
    QVERIFY(ReadStops(false).isEmpty());
    root.Remove(kStopFile);
    QCOMPARE(symlink("/dev/zero", qPrintable(root.Path(kStopFile))), 0);
    QVERIFY(ReadStops(false).isEmpty());
    Put("rec0_20230101_100000.avi");
    QVERIFY(Scan());
    QCOMPARE(Dates(), QStringList("20230101_100000"));
  }
  void bytesThatAreNoTextAreNoHarm() {
    std::mt19937 random(3);
    for (int i = 0; i < 200; ++i) {
      QByteArray bytes(int(random() % 3000), '\0');
      for (char& byte : bytes) byte = random() % 8 == 0 ? "\n\r _"[random() % 4] : char(random());
      root.Write(kStopFile, bytes);
      Put("rec0_20230101_100000.avi");
      QVERIFY(Scan());
    }
  }

  void stopsStandBeforeTheFirstLaterFile_data() {
    QTest::addColumn<QStringList>("files");
    QTest::addColumn<QStringList>("stops");
    QTest::addColumn<QList<int>>("places");
    QTest::addColumn<QStringList>("merged");
    const auto row = [](const char* name, const QStringList& files, const QStringList& stops, const QList<int>& places,
                        const QStringList& merged) { QTest::newRow(name) << files << stops << places << merged; };
    const QStringList three{"10", "20", "30"};
    row("before all", three, {"05"}, {0}, {"05~", "10", "20", "30"});
    row("between", three, {"25"}, {2}, {"10", "20", "25~", "30"});
    row("of the same time", three, {"20"}, {2}, {"10", "20", "20~", "30"});
    row("of the time of the first", three, {"10"}, {1}, {"10", "10~", "20", "30"});
    row("after all", three, {"35"}, {3}, {"10", "20", "30", "35~"});
    row("no files", {}, {"20", "10"}, {0, 0}, {"10~", "20~"});
    row("two in a gap", three, {"24", "26"}, {2, 3}, {"10", "20", "24~", "26~", "30"});
    row("two in a gap, backwards", three, {"26", "24"}, {2, 2}, {"10", "20", "24~", "26~", "30"});
    row("twice the same", three, {"25", "25"}, {2, 3}, {"10", "20", "25~", "25~", "30"});
    row("without a time", three, {""}, {0}, {"~", "10", "20", "30"});
    row("files in another order", {"30", "10", "40", "20"}, {"15", "35", "30"}, {0, 3, 3},
        {"15~", "30", "10", "30~", "35~", "40", "20"});
    row("no stops", {"30", "10"}, {}, {}, {"30", "10"});
  }
  void stopsStandBeforeTheFirstLaterFile() {
    QFETCH(QStringList, files);
    QFETCH(QStringList, stops);
    QFETCH(QList<int>, places);
    FilelistEntryList entries;
    for (const QString& date : files) entries << Entry(date, 2, 1);
    RecStopInfoList list;
    for (const QString& start : stops) list.append({start, start + "end"});
    const QStringList said = Printed([&] { QVERIFY(RecordingFileManager::SortingFileList(&list, &entries)); });
    QStringList merged, expected;
    for (const FilelistEntry& entry : entries) {
      merged << entry.date + (entry.recStopFlag ? "~" : "");
      QCOMPARE(entry.mode, entry.recStopFlag ? 0 : 2);
      QCOMPARE(entry.camMode, entry.recStopFlag ? 0 : 1);
      QCOMPARE(entry.recStopData, entry.recStopFlag ? entry.date + "end" : QString());
      if (entry.recStopFlag) QCOMPARE(entry.fileName, "/mnt/mmc/rec0_" + entry.date + "p.zel");
      QCOMPARE(entry.key, 0);
      QCOMPARE(entry.fileFlag, 0);
      QVERIFY(!entry.rtcErrorFlag && !entry.eventFlag);
    }
    QTEST(merged, "merged");
    for (const int place : places) expected << QStringLiteral("p = %1").arg(place);
    QCOMPARE(said, expected);
    QVERIFY(gSaid.isEmpty());
  }
  void withoutOneOfBothListsNothingIsMerged() {
    FilelistEntryList entries{Entry("10")};
    RecStopInfoList list{{"05", {}}};
    QVERIFY(!RecordingFileManager::SortingFileList(nullptr, &entries));
    QVERIFY(!RecordingFileManager::SortingFileList(&list, nullptr));
    QCOMPARE(entries.size(), 1);
  }
  void stopsMergeAsOneByOne() {
    std::mt19937 random(11);
    for (int round = 0; round < 400; ++round) {
      const int range = 1 + int(random() % 60);
      const auto date = [&] {
        return QStringLiteral("20230101_%1").arg(int(random()) % range, 6, 10, QLatin1Char('0'));
      };
      FilelistEntryList entries;
      for (int i = int(random() % 40); i > 0; --i) entries << Entry(date());
      if (round % 3 == 0)
        std::sort(entries.begin(), entries.end(), [](const auto& a, const auto& b) { return a.date < b.date; });
      for (int i = 0; i < entries.size(); ++i) entries[i].key = i + 1;
      RecStopInfoList list;
      for (int i = int(random() % 40); i > 0; --i) list.append({date(), QString::number(i)});

      FilelistEntryList expected = entries;
      QStringList places;
      for (const int place : MergeOneByOne(list, &expected)) places << QStringLiteral("p = %1").arg(place);
      QCOMPARE(Printed([&] { QVERIFY(RecordingFileManager::SortingFileList(&list, &entries)); }), places);
      QCOMPARE(entries.size(), expected.size());
      for (int i = 0; i < entries.size(); ++i) {
        QCOMPARE(entries[i].key, expected[i].key);
        QCOMPARE(entries[i].date, expected[i].date);
        QCOMPARE(entries[i].recStopData, expected[i].recStopData);
      }
    }
  }

  // ---- the lists

  void listsOfAMixedCard() {
    Put("rec0_20230101_100000.avi");
    Put("rec1_20230101_100000.avi");
    Put("evt0_20230101_100100.avi");
    Put("evt1_20230101_100100.avi");
    Put("rec0_20230101_100200_.avi");
    Put("ndf1_20230101_100300.avi");
    Put("pmr0_20230101_100400.avi");
    Put("pmr0_20230101_100500.avi");
    Put("pmr1_20230101_100500.avi");
    Put("rec0_20230101_100600p.zel", "20230101_100700");
    Put("rec3_20230101_100700.avi");
    Put("ndf0_20230101_100800.avi");
    root.Write(kStopFile,
               "20230101_095900 20230101_100000\n"    // before all
               "20230101_100230 20230101_100300\n"    // between
               "20230101_100400 20230101_100500\n"    // with a file
               "20230101_100900\n"                    // after all, and still
               "20221231_000000 20221231_000001\n");  // the oldest comes last
    QCOMPARE(Printed([&] { QVERIFY(Scan()); }), QStringList({"p = 0", "p = 6", "p = 9", "p = 13", "p = 0"}));
    QCOMPARE(gSaid, QStringList({"file number = 12", "recStop error", "invalid num = 2"}));
    const QStringList front{"00:00:00~20221231_000001",
                            "09:59:00~20230101_100000",
                            "10:00:00",
                            "10:01:00",
                            "10:02:00",
                            "10:02:30~20230101_100300",
                            "10:04:00",
                            "10:04:00~20230101_100500",
                            "10:05:00",
                            "10:08:00",
                            "10:09:00~"};
    const QStringList rear{"00:00:00~20221231_000001",
                           "09:59:00~20230101_100000",
                           "10:00:00",
                           "10:01:00",
                           "10:02:30~20230101_100300",
                           "10:03:00",
                           "10:04:00~20230101_100500",
                           "10:05:00",
                           "10:09:00~"};
    const QStringList byKind[5][2] = {{front, rear},
                                      {{"10:00:00", "10:02:00"}, {"10:00:00"}},
                                      {{"10:04:00", "10:05:00"}, {"10:05:00"}},
                                      {{"10:01:00"}, {"10:01:00"}},
                                      {{"10:08:00"}, {"10:03:00"}}};
    for (int kind = 0; kind < 5; ++kind)
      for (int camera = 0; camera < 2; ++camera) {
        const QStringList oldestFirst = byKind[kind][camera];
        QCOMPARE(Times(kind * 4 + 2 + camera), oldestFirst);
        QCOMPARE(Times(kind * 4 + camera), QStringList(oldestFirst.crbegin(), oldestFirst.crend()));
      }
    // All lists of a recording have one text of its path.
    const auto path = [this](int list, int index) { return mManager->GetFileItem(list)->at(index).filePath; };
    QCOMPARE(path(ALL_ASCENDING_FRONT, 0), path(ALL_DECENDING_REAR, 8));
    QCOMPARE(path(NDF_ASCENDING_FRONT, 0), path(ALL_DECENDING_FRONT, 9));
    QVERIFY(path(ALL_ASCENDING_FRONT, 0).isSharedWith(path(ALL_DECENDING_REAR, 8)));
    QVERIFY(path(NDF_ASCENDING_FRONT, 0).isSharedWith(path(ALL_DECENDING_FRONT, 9)));
  }
  void listsHaveTheirNumbers() {
    QCOMPARE(int{ALL_ASCENDING_FRONT}, 0);
    QCOMPARE(int{ALL_ASCENDING_REAR}, 1);
    QCOMPARE(int{ALL_DECENDING_FRONT}, 2);
    QCOMPARE(int{ALL_DECENDING_REAR}, 3);
    QCOMPARE(int{NORMAL_ASCENDING_FRONT}, 4);
    QCOMPARE(int{PARKING_ASCENDING_FRONT}, 8);
    QCOMPARE(int{EVENT_ASCENDING_FRONT}, 12);
    QCOMPARE(int{NDF_ASCENDING_FRONT}, 16);
    QCOMPARE(int{NDF_DECENDING_REAR}, 19);
    QCOMPARE(int{RECORDING_FILE_INDEX_MAX}, 20);
  }

  void anItemHasWhatItsEntryHas() {
    Put("pmr1_20230102_123456.avi", Avi(59, Trailer(0, 2, '^', 0)));
    root.Write(kStopFile, "20230103_010203 20230103_040506\n");
    QVERIFY(Scan());
    const FileItem video = mManager->GetFileItem(PARKING_DECENDING_REAR)->at(0);
    QCOMPARE(video.icon, QStringLiteral("filelist/parking_file_temp_intercept_normal.bmp"));
    QCOMPARE(video.fileName, QStringLiteral("2023-01-02 12:34:56"));
    QCOMPARE(video.filePath, QStringLiteral("/mnt/mmc/pmr1_20230102_123456.avi"));
    QCOMPARE(video.iconBg, QStringLiteral("filelist/list_item_bg_normal.bmp"));
    QCOMPARE(video.recTime, 59);
    QCOMPARE(video.fileFlag, TYPE_TEMP_CUT);
    QCOMPARE(video.camMode, 1);
    QVERIFY(video.checkBox.isEmpty() && video.recStopData.isEmpty() && !video.recStopFlag);
    const FileItem marker = mManager->GetFileItem(ALL_ASCENDING_REAR)->at(0);
    QCOMPARE(marker.icon, QStringLiteral("filelist/rec_file_stop_normal.bmp"));
    QCOMPARE(marker.fileName, QStringLiteral("2023-01-03 01:02:03"));
    QCOMPARE(marker.filePath, QStringLiteral("/mnt/mmc/rec0_20230103_010203p.zel"));
    QCOMPARE(marker.iconBg, QStringLiteral("filelist/list_item_bg_normal.bmp"));
    QCOMPARE(marker.recStopData, QStringLiteral("20230103_040506"));
    QVERIFY(marker.recStopFlag);
    QCOMPARE(marker.recTime, 0);
    QCOMPARE(marker.camMode, 0);
  }

  void iconsByKindAndFlag_data() {
    QTest::addColumn<int>("mode");
    QTest::addColumn<QStringList>("icons");  // by File_Flag_Type
    const auto row = [](int mode, const QStringList& icons) { QTest::addRow("kind %d", mode) << mode << icons; };
    const QString normal = "normal_file_normal", event = "event_file_normal", ndf = "ndf_file_normal";
    row(FILE_PREFIX_NORMAL, {normal, normal, normal, normal, normal, "normal_file_time_error_normal", normal});
    row(FILE_PREFIX_PARKING, {"parking_file_normal", "parking_file_lowvoltage_normal",
                              "parking_file_temp_intercept_normal", "parking_file_event_normal",
                              "parking_file_move_normal", "parking_file_time_error_normal", "parking_file_normal"});
    row(FILE_PREFIX_EVENT,
        {event, "event_file_lowvoltage_normal", event, event, event, "event_file_time_error_normal", event});
    row(FILE_PREFIX_NDF, {ndf, ndf, ndf, ndf, ndf, ndf, ndf});
  }
  void iconsByKindAndFlag() {
    QFETCH(int, mode);
    QFETCH(QStringList, icons);
    for (int flag = 0; flag < icons.size(); ++flag) {
      FilelistEntry entry = Entry("20230101_100000", mode);
      entry.fileFlag = flag;
      mManager->GetFileListEntry()->append(entry);
    }
    mManager->AddFileItem(false);
    const FileItemList& list = *mManager->GetFileItem(4 + mode * 4 + 2);
    QCOMPARE(list.size(), icons.size());
    for (int flag = 0; flag < icons.size(); ++flag) {
      QCOMPARE(list.at(flag).icon, "filelist/" + icons[flag] + ".bmp");
      QVERIFY2(root.Exists("/opt/gui/images/" + list.at(flag).icon), qPrintable(list.at(flag).icon));
    }
  }

  void timesAsTheyAreShown_data() {
    QTest::addColumn<QString>("date");
    QTest::addColumn<QString>("shown");
    QTest::newRow("a time") << "20230101_123456"
                            << "2023-01-01 12:34:56";
    QTest::newRow("another") << "19991231_235959"
                             << "1999-12-31 23:59:59";
    QTest::newRow("longer") << "20230101_1234567"
                            << "2023-01-01 12:34:567";
    QTest::newRow("without seconds") << "20230101_1234"
                                     << "2023-01-01 12:34:";
    QTest::newRow("of three parts") << "20230101_12_456"
                                    << "2023-01-01 12:  :";
    QTest::newRow("of an early line") << "2023_0101_123456"
                                      << "2023-  - 01:01:";
    QTest::newRow("without a line") << "20230101"
                                    << "2023-01-01   :  :";
    QTest::newRow("fifteen without a line") << "202301011234567"
                                            << "2023-01-011234567   :  :";
    QTest::newRow("nothing") << ""
                             << "    -  -   :  :";
    QTest::newRow("a line alone") << "_"
                                  << "    -  -   :  :";
  }
  void timesAsTheyAreShown() {
    QFETCH(QString, date);
    mManager->GetFileListEntry()->append(Entry(date));
    mManager->AddFileItem(false);
    QTEST(mManager->GetFileItem(0)->at(0).fileName, "shown");
  }

  void aSecondScanFillsTheSameLists() {
    Put("rec0_20230101_100000.avi");
    QVERIFY(Scan());
    const FileItemList* all = mManager->GetFileItem(ALL_ASCENDING_FRONT);
    mManager->CreateFileListEntry();
    Put("rec0_20230101_110000.avi");
    QVERIFY(Scan());
    QCOMPARE(mManager->GetFileItem(ALL_ASCENDING_FRONT), all);
    QCOMPARE(Times(ALL_ASCENDING_FRONT), QStringList({"11:00:00", "10:00:00"}));
    root.Remove("/mnt/mmc/rec0_20230101_100000.avi");
    root.Remove("/mnt/mmc/rec0_20230101_110000.avi");
    QVERIFY(!Scan());
    QCOMPARE(all->size(), 2);
  }
  void listsStayAsTheyAreUntilTheNextOnes() {
    Put("rec0_20230101_100000.avi");
    QVERIFY(Scan());
    mManager->GetFileListEntry()->first().date = "20230101_110000";
    mManager->GetFileListEntry()->prepend(Entry("20230101_090000"));
    QCOMPARE(Times(ALL_ASCENDING_FRONT), QStringList("10:00:00"));
    mManager->CreateFileListEntry();
    QCOMPARE(Times(ALL_ASCENDING_FRONT), QStringList("10:00:00"));
    QCOMPARE(Times(NORMAL_DECENDING_FRONT), QStringList("10:00:00"));
    mManager->AddFileItem(false);  // of no entry
    QCOMPARE(Times(ALL_ASCENDING_FRONT), QStringList("10:00:00"));
    mManager->GetFileListEntry()->append(Entry("20230101_120000"));
    mManager->AddFileItem(false);
    QCOMPARE(Times(ALL_ASCENDING_FRONT), QStringList("12:00:00"));
  }
  void manyRecordings() {
    for (int i = 0; i < 2000; ++i)
      Put(QStringLiteral("%1%2_20230101_%3.avi")
              .arg(QStringLiteral("recpmrevtndf").mid(i % 4 * 3, 3))
              .arg(i / 4 % 2)
              .arg(100000 + i),
          Avi(i % 60), i);
    QVERIFY(Scan());
    for (int kind = 1; kind < 5; ++kind)
      for (int list = kind * 4; list < kind * 4 + 4; ++list) QCOMPARE(mManager->GetFileItem(list)->size(), 250);
    for (int list = 0; list < 4; ++list) QCOMPARE(mManager->GetFileItem(list)->size(), 1000);
    const FileItemList& rear = *mManager->GetFileItem(ALL_ASCENDING_REAR);
    QCOMPARE(rear.at(0).recTime, 1999 % 60);
    for (int i = 1; i < rear.size(); ++i) QVERIFY(rear.at(i - 1).fileName > rear.at(i).fileName);
  }
};

QTEST_GUILESS_MAIN(RecordingFileManagerTest)
#include "recordingfilemanager_test.moc"
