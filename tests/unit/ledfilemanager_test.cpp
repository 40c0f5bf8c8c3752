// The list of the front LED and its file, to the byte.
#include "gui/led/ledfilemanager.h"

#include <QTest>

#include "gui/settings/config.h"
#include "gui/settings/settings.h"
#include "tests/fake/platformfake.h"
#include "tests/fake/testroot.h"

static TestRoot root;

namespace {
constexpr char kFile[] = "/opt/led.zel";

QByteArray Entry(bool checked, const QByteArray& name, const QByteArray& codes = {}, const QByteArray& columns = {}) {
  QByteArray entry(1, char(checked));
  entry += name.leftJustified(20, '\0', true);
  entry += char(codes.size());
  entry += '\0';
  entry += codes.leftJustified(65, '\0', true);
  entry += char(columns.size());
  entry += '\0';
  return entry + columns.leftJustified(65, '\0', true);
}

QByteArray File(int mode, const QList<QByteArray>& entries, int size = 0x1234) {
  QByteArray file(1, char(entries.size()));
  file += char(size & 0xFF);
  file += char(size >> 8);
  file += char(mode);
  for (const QByteArray& entry : entries) file += entry;
  return file;
}
}  // namespace

class LedFileManagerTest : public QObject {
  Q_OBJECT

  std::unique_ptr<LedFileManager> mManager;

  void Read(const QByteArray& bytes) {
    root.Write(kFile, bytes);
    mManager = std::make_unique<LedFileManager>();
    mManager->ReadLedFile();
    mManager->AddLedListWidget();
    PlatformFake::Get().Clear();
  }
  void Tick(std::initializer_list<int> rows) {
    for (Led_File_Item& item : *mManager->GetLedFileItem()) item.checked = 0;
    for (const int row : rows) (*mManager->GetLedFileItem())[row].checked = 1;
  }
  QStringList Names() const {
    QStringList names;
    for (const Led_File_Item& item : *mManager->GetLedFileItem()) names << item.nickName;
    return names;
  }
  static QList<QByteArray> Some(int count, int shown = -1) {
    QList<QByteArray> entries;
    for (int i = 0; i < count; ++i)
      entries << Entry(i == shown, "name " + QByteArray::number(i), QByteArray(1 + i, char(i)), QByteArray(4, char(i)));
    return entries;
  }

private slots:
  void initTestCase() {
    GetConfig();
    QDir(root.Path(QStringLiteral("/"))).mkpath(QStringLiteral("opt"));
  }
  void init() {
    root.Remove(kFile);
    gEnvirnmentSettings.mSetting.led_mode = 0;
  }

  // ---- reading

  void everyFieldIsRead() {
    Read(File(2, {Entry(true, "Security LED", "\x25$", "\x1F\x11\x1F"), Entry(false, "Korvo Black", "ab", "cdef")}));
    const LED_ZEL* zel = mManager->GetLedZel();
    QVERIFY(zel);
    QCOMPARE(int{zel->Number}, 2);
    QCOMPARE(int{zel->Size}, 0x1234);
    QCOMPARE(int{zel->Mode}, 2);
    QCOMPARE(int{zel->Led_idf[0].Checked}, 1);
    QCOMPARE(QByteArray(reinterpret_cast<const char*>(zel->Led_idf[0].NickName)), QByteArray("Security LED"));
    QCOMPARE(int{zel->Led_idf[0].IdfCount}, 2);
    QCOMPARE(int{zel->Led_idf[0].IdfName[0]}, 0x25);
    QCOMPARE(int{zel->Led_idf[0].RealSize}, 3);
    QCOMPARE(int{zel->Led_idf[0].IdfData[1]}, 0x11);
    QCOMPARE(int{zel->Led_idf[1].Checked}, 0);
    QCOMPARE(int{zel->Led_idf[1].RealSize}, 4);
    QCOMPARE(mManager->GetValidLedList(), 1);
    QVERIFY(mManager->getExistsLedFileFlag());
  }
  void rowsOfTheList_data() {
    QTest::addColumn<int>("mode");
    QTest::addColumn<QString>("sign");
    QTest::newRow("basic") << 0 << QStringLiteral("filelist/orderlist_sign_basic_normal.bmp");
    QTest::newRow("sequential") << 1 << QStringLiteral("filelist/orderlist_sign_sequential_normal.bmp");
    QTest::newRow("random") << 2 << QStringLiteral("filelist/orderlist_sign_random_normal.bmp");
  }
  void rowsOfTheList() {
    QFETCH(int, mode);
    QFETCH(QString, sign);
    Read(File(mode, {Entry(false, "Security LED"), Entry(true, "Korvo Black"), Entry(false, "a"), Entry(true, "b")}));
    const auto& items = *mManager->GetLedFileItem();
    QCOMPARE(items.size(), 4);
    const auto path = [](const char* name) {
      return QStringLiteral("/opt/gui/images/filelist/") + QLatin1String(name);
    };
    QCOMPARE(items[0].icon, path("orderlist_sign_basic_normal.bmp"));
    QCOMPARE(items[1].icon, QStringLiteral("/opt/gui/images/") + sign);
    QCOMPARE(items[2].icon, path("blank_file_normal.bmp"));
    QCOMPARE(items[3].icon, QStringLiteral("/opt/gui/images/") + sign);
    for (int i = 0; i < 4; ++i) {
      QCOMPARE(items[i].index, i);
      QCOMPARE(items[i].mode, mode);
      QCOMPARE(items[i].checked, i % 2);
      QCOMPARE(items[i].checkBox, path(i % 2 ? "list_checked_normal.bmp" : "list_unchecked_normal.bmp"));
      QCOMPARE(items[i].iconBg, path("list_item_bg_normal.bmp"));
    }
    QVERIFY(!mManager->GetIsCheckedSecurityLed());
    QVERIFY(mManager->GetIsCheckedKorvoBlack());
  }
  void theSecurityPatternThatIsShownIsRemembered() {
    Read(File(0, {Entry(true, "Security LED"), Entry(false, "Korvo Black")}));
    QVERIFY(mManager->GetIsCheckedSecurityLed());
    QVERIFY(!mManager->GetIsCheckedKorvoBlack());
  }
  void aNameWithoutAZeroIsTwentyBytes() {
    Read(File(0, {Entry(false, QByteArray(20, 'x')), Entry(false, QByteArray())}));
    QCOMPARE(Names(), (QStringList{QString(20, u'x'), QString()}));
  }
  void withoutAFileThereIsNoList() {
    mManager = std::make_unique<LedFileManager>();
    mManager->ReadLedFile();
    QVERIFY(!mManager->getExistsLedFileFlag());
    QCOMPARE(mManager->GetValidLedList(), -1);
    QVERIFY(!mManager->GetLedZel());
    QVERIFY(!mManager->WritingLedFile(false));
    QVERIFY(!mManager->WritingLedFile(true));
    QVERIFY(!mManager->UpdateLedFile(QStringLiteral("12")));
    QVERIFY(!root.Exists(kFile));
  }
  void anEmptyFileIsNoList() {
    Read(QByteArray());
    QVERIFY(mManager->getExistsLedFileFlag());
    QCOMPARE(mManager->GetValidLedList(), -1);
  }
  void aHeadThatCannotBeRightIsAnEmptyList_data() {
    QTest::addColumn<QByteArray>("bytes");
    QTest::newRow("no entries") << File(0, {});
    QTest::newRow("21 entries") << File(0, Some(21));
    QTest::newRow("200 entries") << QByteArray("\xC8\0\0\0", 4) + QByteArray(31000, 'x');
    QTest::newRow("mode 3") << File(3, Some(2));
    QTest::newRow("mode 255") << File(255, Some(2));
    for (int size = 1; size < 4; ++size) QTest::addRow("%d bytes", size) << File(0, Some(2)).left(size);
  }
  void aHeadThatCannotBeRightIsAnEmptyList() {
    QFETCH(QByteArray, bytes);
    Read(bytes);
    QVERIFY(mManager->GetLedZel());
    QCOMPARE(int{mManager->GetLedZel()->Number}, 0);
    QCOMPARE(mManager->GetLedFileItem()->size(), 0);
    QCOMPARE(mManager->GetValidLedList(), 1);
  }
  // Wherever it is cut off: what is missing reads as zero, nothing else.
  void aFileThatIsCutOff() {
    const QByteArray whole = File(1, Some(3, 2));
    for (qsizetype size = 4; size < whole.size(); ++size) {
      Read(whole.left(size));
      QCOMPARE(mManager->GetLedFileItem()->size(), 3);
      QVERIFY(mManager->WritingLedFile(true));
      QCOMPARE(root.Read(kFile).size(), whole.size());
    }
  }
  void aPipeOrGigabytesAreNotRead() {
    QVERIFY(QFile(root.Path(kFile)).open(QIODevice::WriteOnly));
    QVERIFY(QFile::resize(root.Path(kFile), 1LL << 32));
    mManager = std::make_unique<LedFileManager>();
    mManager->ReadLedFile();
    QCOMPARE(mManager->GetValidLedList(), -1);
  }

  // ---- writing

  void whatWasReadIsWritten() {
    for (int mode = 0; mode < 3; ++mode) {
      const QByteArray bytes = File(mode, Some(20, mode), 0xBEEF);
      Read(bytes);
      QVERIFY(mManager->WritingLedFile(false));
      QCOMPARE(root.Read(kFile), bytes);
      QCOMPARE(PlatformFake::Get().Shell(), QStringList(QStringLiteral("sync")));
    }
  }
  void whatStandsBehindTheListStaysUnlessItIsRecreated() {
    const QByteArray bytes = File(0, Some(2));
    Read(bytes + "behind");
    QVERIFY(mManager->WritingLedFile(false));
    QCOMPARE(root.Read(kFile), bytes + "behind");
    QVERIFY(mManager->WritingLedFile(true));
    QCOMPARE(root.Read(kFile), bytes);
  }
  void aLinkToTheFileStays() {
    QDir().mkpath(root.Path(QStringLiteral("/mnt/nand")));
    QVERIFY(QFile::link(QStringLiteral("../mnt/nand/led.zel"), root.Path(kFile)));
    Read(File(0, Some(3)));
    Tick({1});
    mManager->UpdateLedFile(1, mManager->GetLedFileItem());
    QVERIFY(mManager->WritingLedFile(true));
    QVERIFY(mManager->UpdateLedFile(QStringLiteral("12")));
    QVERIFY(QFileInfo(root.Path(kFile)).isSymLink());
    QCOMPARE(root.Read(QStringLiteral("/mnt/nand/led.zel")).size(), File(0, Some(3)).size());
  }
  void aMissingFileIsRecreatedOnlyWhenAsked() {
    Read(File(0, Some(2)));
    root.Remove(kFile);
    QVERIFY(!mManager->WritingLedFile(false));
    QVERIFY(!root.Exists(kFile));
    QVERIFY(mManager->WritingLedFile(true));
    QCOMPARE(root.Read(kFile), File(0, Some(2)));
  }
  void ticksAreStored() {
    Read(File(1, Some(5, 0)));
    Tick({1, 3});
    QVERIFY(mManager->UpdateLedFile(0, mManager->GetLedFileItem()));
    QVERIFY(mManager->WritingLedFile(false));
    QList<QByteArray> entries = Some(5);
    entries[1][0] = entries[3][0] = 1;
    QCOMPARE(root.Read(kFile), File(1, entries));
    QVERIFY(mManager->GetIsCheckedKorvoBlack());
    QVERIFY(!mManager->GetIsCheckedSecurityLed());
  }
  void tickedEntriesAreDeleted_data() {
    QTest::addColumn<QList<int>>("ticked");
    QTest::addColumn<QList<int>>("left");
    QTest::newRow("one") << QList<int>{2} << QList<int>{0, 1, 3, 4};
    QTest::newRow("last") << QList<int>{4} << QList<int>{0, 1, 2, 3};
    QTest::newRow("neighbours") << QList<int>{2, 3, 4} << QList<int>{0, 1};
    QTest::newRow("every other") << QList<int>{0, 2, 4} << QList<int>{1, 3};
    QTest::newRow("none") << QList<int>{} << QList<int>{0, 1, 2, 3, 4};
  }
  void tickedEntriesAreDeleted() {
    QFETCH(QList<int>, ticked);
    QFETCH(QList<int>, left);
    Read(File(2, Some(5, 1)));  // entry 1 is shown and stays, or the first one is shown
    Tick({});
    for (const int row : ticked) (*mManager->GetLedFileItem())[row].checked = 1;
    QVERIFY(mManager->UpdateLedFile(1, mManager->GetLedFileItem()));
    QVERIFY(mManager->WritingLedFile(true));
    QList<QByteArray> entries;
    for (const int entry : left) entries << Some(5, 1)[entry];
    QCOMPARE(root.Read(kFile), File(2, entries));
    QCOMPARE(mManager->GetLedFileItem()->size(), left.size());
    QVERIFY(!mManager->GetIsAllDeleteCheckedFile());
  }
  void whenEveryShownEntryIsDeletedTheFirstIsShown() {
    Read(File(1, Some(4, 3)));
    Tick({3});
    mManager->UpdateLedFile(1, mManager->GetLedFileItem());
    QVERIFY(mManager->WritingLedFile(true));
    QCOMPARE(root.Read(kFile), File(1, Some(4, 0).mid(0, 3)));
    QVERIFY(mManager->GetIsAllDeleteCheckedFile());
    QVERIFY(mManager->GetIsCheckedSecurityLed());
  }
  void deletingEverythingLeavesTheHead() {
    Read(File(1, Some(3, 0)));
    Tick({0, 1, 2});
    mManager->UpdateLedFile(1, mManager->GetLedFileItem());
    QVERIFY(mManager->WritingLedFile(true));
    QCOMPARE(root.Read(kFile), File(1, {}));
    QCOMPARE(root.Read(kFile).size(), 4);
    QCOMPARE(mManager->GetLedFileItem()->size(), 0);
  }

  // ---- numbers

  void aNumberIsAppended() {
    Read(File(0, Some(2)) + QByteArray("old and stale"));
    gEnvirnmentSettings.mSetting.led_mode = 2;
    QVERIFY(mManager->UpdateLedFile(QStringLiteral("12-3")));
    const QByteArray columns = QByteArray("\x11\x1F\x10\0\x1D\x15\x17\0\x04\x04\x04\0\x15\x15\x1F\0", 16);
    QList<QByteArray> entries = Some(2);
    entries << Entry(false, "12-3", QByteArray("\x01$\x02$\x28$\x03$", 8), columns);
    QCOMPARE(root.Read(kFile), File(2, entries));
    QCOMPARE(PlatformFake::Get().Shell(), QStringList(QStringLiteral("sync")));
  }
  void everyDigitHasItsGlyph() {
    Read(File(0, Some(2)));
    QVERIFY(mManager->UpdateLedFile(QStringLiteral("0123456789-")));
    const LED_IDF& entry = mManager->GetLedZel()->Led_idf[2];
    static constexpr unsigned char kGlyphs[] = {0x1F, 0x11, 0x1F, 0,    0x11, 0x1F, 0x10, 0,    0x1D, 0x15, 0x17,
                                                0,    0x15, 0x15, 0x1F, 0,    0x07, 0x04, 0x1F, 0,    0x17, 0x15,
                                                0x1D, 0,    0x1F, 0x15, 0x1D, 0,    0x01, 0x01, 0x1F, 0,    0x1F,
                                                0x15, 0x1F, 0,    0x17, 0x15, 0x1F, 0,    0x04, 0x04, 0x04, 0};
    QCOMPARE(int{entry.RealSize}, 44);
    QCOMPARE(int{entry.IdfCount}, 22);
    for (size_t i = 0; i < sizeof kGlyphs; ++i) QCOMPARE(int{entry.IdfData[i]}, int{kGlyphs[i]});
    for (int digit = 0; digit < 10; ++digit) QCOMPARE(int{entry.IdfName[2 * digit]}, digit);
  }
  void anotherCharacterHasOnlyItsSeparator() {
    Read(File(0, Some(2)));
    QVERIFY(mManager->UpdateLedFile(QStringLiteral("1x2")));
    const LED_IDF& entry = mManager->GetLedZel()->Led_idf[2];
    QCOMPARE(QByteArray(reinterpret_cast<const char*>(entry.IdfName), 6), QByteArray("\x01$$\x02$\0", 6));
    QCOMPARE(int{entry.IdfCount}, 6);
    QCOMPARE(int{entry.RealSize}, 12);
  }
  void theLongestNumber() {
    Read(File(0, Some(2)));
    QVERIFY(mManager->UpdateLedFile(QStringLiteral("1234567890123456")));
    QCOMPARE(int{mManager->GetLedZel()->Led_idf[2].RealSize}, 64);
    QVERIFY(!mManager->UpdateLedFile(QStringLiteral("12345678901234567")));
    QCOMPARE(int{mManager->GetLedZel()->Number}, 3);
  }
  void aFullListTakesNoNumber() {
    Read(File(0, Some(20)));
    QCOMPARE(mManager->GetValidLedList(), 0);
    QVERIFY(!mManager->UpdateLedFile(QStringLiteral("12")));
    QCOMPARE(root.Read(kFile), File(0, Some(20)));
    Read(File(0, Some(19)));
    QVERIFY(mManager->UpdateLedFile(QStringLiteral("12")));
    QCOMPARE(mManager->GetValidLedList(), 0);
  }
  void aNumberIsNotSavedWithoutAFile() {
    Read(File(0, Some(2)));
    root.Remove(kFile);
    QVERIFY(!mManager->UpdateLedFile(QStringLiteral("12")));
    QVERIFY(!root.Exists(kFile));
    QCOMPARE(int{mManager->GetLedZel()->Number}, 3);  // it is in memory all the same
  }
};

QTEST_GUILESS_MAIN(LedFileManagerTest)
#include "ledfilemanager_test.moc"
