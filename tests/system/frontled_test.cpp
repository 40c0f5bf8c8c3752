// The front LED as the recorder shows it: what of the list, and when.
#include <sys/stat.h>

#include "tests/system/recorderfixture.h"

namespace {
constexpr char kList[] = "/opt/led.zel";

QByteArray Entry(bool checked, const QByteArray& name, const QByteArray& columns, int count) {
  QByteArray entry(155, '\0');
  entry[0] = checked ? 1 : 0;
  entry.replace(1, name.size(), name);
  Put<quint16>(&entry, 21, 0);
  Put<quint16>(&entry, 88, static_cast<quint16>(count));
  return entry.replace(90, columns.size(), columns);
}

QByteArray Entry(bool checked, const QByteArray& name, const QByteArray& columns) {
  return Entry(checked, name, columns, static_cast<int>(columns.size()));
}

QByteArray List(const QList<QByteArray>& entries, int mode = 0) {
  return QByteArray(1, static_cast<char>(entries.size())) + QByteArray(2, '\0') +
         QByteArray(1, static_cast<char>(mode)) + entries.join();
}

const QByteArray kSecurity = Entry(false, "Security LED", "\x1f");
const QByteArray kBrand = Entry(false, "Korvo Black", "\x02");
}  // namespace

class FrontLedTest : public RecorderFixture {
  Q_OBJECT

  // "name columns" of each pattern that is shown.
  QStringList Shown() const {
    QStringList shown;
    for (const QJsonValue& entry : State("frontLed")["entries"].toArray())
      shown << entry["name"].toString() + u' ' + entry["columns"].toString();
    return shown;
  }

  // The interface has written a list and says so.
  void Update(const QByteArray& list) {
    root.Write(kList, list);
    QCOMPARE(Ask(SFIELD_SET_LED_FILE_UPDATE, 0), 0);
  }

private slots:
  void init() { Prepare(); }
  void cleanup() {
    mRecorder.reset();
    Recorder::RemoveTransport();
  }

  void aNewCameraIsDarkAndHasTheSecurityPatternTicked() {
    Start();
    QCOMPARE(State("frontLed")["mode"].toInt(), 0);
    QCOMPARE(Shown().size(), 1);
    QVERIFY(Shown()[0].startsWith("Security LED 1f00"));
  }

  void theFactorysPatternsHaveNames() {
    Start();
    QByteArray list = root.Read(kList);
    QCOMPARE(int(list[0]), 8);
    list[4] = 0;
    for (int i = 1; i < 8; ++i) list[4 + 155 * i] = 1;
    Update(list);
    QStringList names;
    for (const QString& shown : Shown()) {
      names << shown.section(u' ', 0, -2);
      QVERIFY2(shown.section(u' ', -1).size() >= 24, qPrintable(shown));  // three characters at least
    }
    QCOMPARE(names, (QStringList{"Korvo Black", "1234", QStringLiteral("연락처"), QStringLiteral("초보운전"),
                                 QStringLiteral("아기가 타고 있어요"), QStringLiteral("감사합니다"),
                                 QStringLiteral("미안합니다")}));
  }

  void theModeIsTheOneThatWasSent() {
    Start();
    for (const int mode : {1, 2, 0}) {
      QCOMPARE(Ask(SFIELD_SET_LED_MODE, mode), 0);
      QCOMPARE(State("frontLed")["mode"].toInt(), mode);
    }
    QCOMPARE(Ask(SFIELD_SET_LED_MODE, 2), 0);
    Start();  // it is kept
    QCOMPARE(State("frontLed")["mode"].toInt(), 2);
  }

  void tickedPatternsAreShownInTheirOrder() {
    Start();
    Update(List({kSecurity, Entry(true, "Korvo Black", QByteArray("\x01\x1f\x00", 3)), Entry(false, "no", "\x03"),
                 Entry(true, "010-1234", "\x15")}));
    QCOMPARE(Shown(), (QStringList{"Korvo Black 011f00", "010-1234 15"}));
  }

  void aTickedSecurityPatternIsAlone() {
    Start();
    Update(List({Entry(true, "Security LED", "\x1f"), Entry(true, "Korvo Black", "\x02")}));
    QCOMPARE(Shown(), QStringList{"Security LED 1f"});
  }

  void koreanNamesAreKorean() {
    Start();
    Update(List({kSecurity, Entry(true, "\xC3\xCA\xBA\xB8 1", "\x02")}));
    QCOMPARE(Shown(), QStringList{QStringLiteral("초보 1 02")});
  }

  void aNameOrColumnsWithoutAnEndStayInTheirField_data() {
    QTest::addColumn<int>("count");
    QTest::addColumn<int>("columns");
    QTest::newRow("none") << 0 << 0;
    QTest::newRow("all") << 65 << 65;
    QTest::newRow("one too many") << 66 << 65;
    QTest::newRow("the most") << 65535 << 65;
  }
  void aNameOrColumnsWithoutAnEndStayInTheirField() {
    QFETCH(int, count);
    QFETCH(int, columns);
    Start();
    Update(List(
        {kSecurity, Entry(true, QByteArray(20, 'x'), QByteArray(65, '\x11'), count), Entry(true, "next", "\x02")}));
    QCOMPARE(Shown(), (QStringList{QString(20, u'x') + u' ' + QString::fromLatin1(QByteArray(columns, '\x11').toHex()),
                                   "next 02"}));
  }

  void theListIsReadAgainOnlyWhenTold() {
    Start();
    Update(List({kSecurity, Entry(true, "one", "\x01")}));
    root.Write(kList, List({kSecurity, Entry(true, "two", "\x02")}));
    QCOMPARE(Ask(SFIELD_SET_LED_MODE, 1), 0);
    QCOMPARE(Shown(), QStringList{"one 01"});
    QCOMPARE(Ask(SFIELD_SET_LED_FILE_UPDATE, 0), 0);
    QCOMPARE(Shown(), QStringList{"two 02"});
  }

  void aListThatIsNoneIsDark_data() {
    QTest::addColumn<QByteArray>("list");
    const QByteArray good = List({kSecurity, Entry(true, "Korvo Black", "\x02")});
    QTest::newRow("empty file") << QByteArray();
    QTest::newRow("half a head") << good.left(3);
    QTest::newRow("half an entry") << good.chopped(1);
    QTest::newRow("no entry") << List({});
    QTest::newRow("21 entries") << List(QList<QByteArray>(21, kBrand));
    QTest::newRow("255 entries") << QByteArray(good).replace(0, 1, "\xff");
    QTest::newRow("mode 3") << List({kSecurity, Entry(true, "Korvo Black", "\x02")}, 3);
  }
  void aListThatIsNoneIsDark() {
    QFETCH(QByteArray, list);
    Start();
    Update(list);
    QVERIFY(Shown().isEmpty());
    QCOMPARE(Last("note")["name"].toString(), QString("The list of the front LED cannot be read."));
    Update(List(QList<QByteArray>{kSecurity} + QList<QByteArray>(19, Entry(true, "a", "\x02"))));  // twenty are good
    QCOMPARE(Shown().size(), 19);
  }

  void aMissingListOrAPipeIsDark() {
    Start();
    root.Remove(kList);
    QCOMPARE(Ask(SFIELD_SET_LED_FILE_UPDATE, 0), 0);
    QVERIFY(Shown().isEmpty());
    QCOMPARE(mkfifo(qPrintable(root.Path(kList)), 0600), 0);
    QCOMPARE(Ask(SFIELD_SET_LED_FILE_UPDATE, 0), 0);
    QVERIFY(Shown().isEmpty());
  }
};

QTEST_GUILESS_MAIN(FrontLedTest)
#include "frontled_test.moc"
