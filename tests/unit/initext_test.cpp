// The text of an INI file that gets other values, as QSettings reads it.
#include "gui/settings/initext.h"

#include <QSettings>
#include <QTest>

#include "tests/fake/testroot.h"

static TestRoot root;

class IniTextTest : public QObject {
  Q_OBJECT

  int mFiles = 0;

  // QSettings remembers files: each one has a name of its own.
  QVariant Read(const QByteArray& text, const char* key) {
    const QString file = QStringLiteral("/tmp/%1.ini").arg(++mFiles);
    root.Write(file, text);
    const QSettings settings(root.Path(file), QSettings::IniFormat);
    return settings.status() == QSettings::NoError ? settings.value(QLatin1String(key)) : QVariant();
  }

private slots:
  void valuesComeIntoTheirGroups() {
    QCOMPARE(WithIniValues("", {{"b/y", 2}, {"a/x", 1}, {"a/w", -3}}), QByteArray("[a]\nw=-3\nx=1\n[b]\ny=2\n"));
    QCOMPARE(WithIniValues("[b]\nx=5\n\n[a]\nx=6\nz=7\n", {{"a/x", 1}, {"b/y", 2}}),
             QByteArray("[b]\nx=5\ny=2\n[a]\nx=1\nz=7\n"));
  }
  void theRestStays() {
    const QByteArray text = "; a note\n[more]\nname=\"a;b\"\n%20odd=x\\x41\n";
    QCOMPARE(WithIniValues(text, {}), text);
  }
  void ofTwoLinesOneIsLeft() { QCOMPARE(WithIniValues("[a]\nx=1\nx=2\n", {{"a/x", 3}}), QByteArray("[a]\nx=3\n")); }
  void linesEndAsAnywhere() {
    QCOMPARE(WithIniValues(" [a] \r\n x = 1 \r\ny=2", {{"a/x", 3}}), QByteArray("[a]\nx=3\ny=2\n"));
  }

  void numbersAreReadAgain_data() {
    QTest::addColumn<QVariant>("value");
    for (const int value : {0, 1, -61441, 2147483647}) QTest::addRow("%d", value) << QVariant(value);
    for (const float value : {11.7F, 12.4F, 0.0F, 1e-9F, 3e38F}) QTest::addRow("%g", double(value)) << QVariant(value);
  }
  void numbersAreReadAgain() {
    QFETCH(QVariant, value);
    QVariant found = Read(WithIniValues("[a]\nx=5\n", {{"a/x", value}}), "a/x");
    QVERIFY(found.convert(value.metaType()));
    QCOMPARE(found, value);
  }

  // As QSettings reads it: what stands behind the bracket, or in its place, is nothing.
  void aGroupEndsWithItsBracket() {
    const QByteArray text = "[a]x=7\ny=1\n[b\nz=1\n";
    QCOMPARE(Read("[a]x=7\ny=1\n", "a/y").toInt(), 1);
    QCOMPARE(WithIniValues(text, {{"a/y", 2}, {"b/z", 3}}), QByteArray("[a]\ny=2\n[b]\nz=3\n"));
  }

  void plainTexts_data() {
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<bool>("isPlain");
    QTest::newRow("empty") << QByteArray() << true;
    QTest::newRow("values") << QByteArray("[a]\r\nx=1\r\ny=\"a b\"\n") << true;
    QTest::newRow("a note") << QByteArray("; \"so\\\n[a]\nx=1\n") << true;
    QTest::newRow("an escaped quote") << QByteArray("[a]\nx=a\\\"b\n") << true;
    QTest::newRow("quotes over two lines") << QByteArray("[a]\nx=\"1\ny=2\"\n") << false;
    QTest::newRow("a line that goes on") << QByteArray("[a]\nx=1\\\ny=2\n") << false;
    QTest::newRow("quotes in a group") << QByteArray("[a\"b]/\"]\nx=1\n") << false;
    QTest::newRow("quotes in a name") << QByteArray("[a]\n\"x\"=1\n") << false;
    QTest::newRow("a group in other letters") << QByteArray("[vi%65w]\ndisplay=1\n") << false;
    QTest::newRow("a name in other letters") << QByteArray("[view]\nd%69splay=1\n") << false;
    QTest::newRow("signs in a value") << QByteArray("[a]\nx=5%/\\x41\n") << true;
    QTest::newRow("a line feed is missing in a note") << QByteArray("[a]\n;x\ry=\"1\nz=2\n") << false;
    QTest::newRow("a line feed is missing") << QByteArray("[a]\nx=1\ry=2\n") << false;
  }
  void plainTexts() {
    QFETCH(QByteArray, text);
    QFETCH(bool, isPlain);
    QCOMPARE(IsPlainIni(text), isPlain);
  }

  // Of a file that is damaged what follows is still read.
  void whatIsNoLineOfSuchAFileGoes_data() {
    QTest::addColumn<QByteArray>("text");
    QTest::newRow("zeros") << QByteArray(5000, '\0');
    QTest::newRow("a torn group") << QByteArray("[vie");
    QTest::newRow("a torn name") << QByteArray("[a]\nna");
    QTest::newRow("a torn text") << QByteArray("[a]\nname=\"begins");
    QTest::newRow("a line that goes on") << QByteArray("[a]\nname=1\\");
  }
  void whatIsNoLineOfSuchAFileGoes() {
    QFETCH(QByteArray, text);
    const QByteArray mended = WithIniValues(text, {{"a/x", 1}, {"b/y", 2}});
    QCOMPARE(Read(mended, "a/x").toInt(), 1);
    QCOMPARE(Read(mended, "b/y").toInt(), 2);
  }
};

QTEST_GUILESS_MAIN(IniTextTest)
#include "initext_test.moc"
