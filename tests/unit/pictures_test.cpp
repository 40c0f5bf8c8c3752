// The drawn pictures, their table, and the names that the code spells.
#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QFileInfo>
#include <QImage>
#include <QMap>
#include <QProcess>
#include <QRegularExpression>
#include <QSet>
#include <QTemporaryDir>
#include <QTest>
#include <QtEndian>
#include <algorithm>

namespace {
struct Row {
  QString path, screen, style;
  QSize size;
};

QString FileOf(const QString& path) {
  const QString inside = path.startsWith(u'/') ? path : QStringLiteral("/opt/gui/images/") + path;
  return QStringLiteral(BINARY_DIR "/pictures") + inside;
}

QList<Row> Table() {
  QFile table(QStringLiteral(SOURCE_DIR "/pictures/images.csv"));
  if (!table.open(QIODevice::ReadOnly)) qFatal("no table");
  QStringList lines = QString::fromUtf8(table.readAll()).split(u'\n', Qt::SkipEmptyParts);
  lines.removeFirst();
  QList<Row> rows;
  for (const QString& line : lines) {
    const QStringList fields = line.split(u',');
    rows << Row{fields[0], fields[3], fields[7], {fields[1].toInt(), fields[2].toInt()}};
  }
  return rows;
}

/// The interface's sources, by file.
QMap<QString, QString> Code() {
  QMap<QString, QString> code;
  for (QDirIterator file(QStringLiteral(SOURCE_DIR "/gui"), {"*.cpp", "*.h"}, QDir::Files,
                         QDirIterator::Subdirectories);
       file.hasNext();) {
    QFile source(file.next());
    if (!source.open(QIODevice::ReadOnly)) qFatal("cannot read a source");
    code.insert(QFileInfo(source).fileName(), QString::fromUtf8(source.readAll()));
  }
  return code;
}

/// Every picture name that the code spells, as the table writes it.
QSet<QString> NamesInCode() {
  static const QRegularExpression kName(QStringLiteral("\"([^\"\\n]+\\.bmp)\""));
  QSet<QString> names;
  for (const QString& source : Code())
    for (auto name = kName.globalMatch(source); name.hasNext();)
      names << name.next().captured(1).remove(QStringLiteral("/opt/gui/images/"));
  // The user's own picture is no picture of the interface.
  return names - QSet<QString>{QStringLiteral("/tmp/picture.bmp"), QStringLiteral("/mnt/mmc/Setup/picture.bmp")};
}

/// The cells of the power-cut table: their names are made of a level and a voltage.
bool IsCell(const QString& path) {
  return path.startsWith(QLatin1String("powercutsetting/")) && path.count(u'/') == 2;
}

constexpr char kHead[] = "path,width,height,screen,meaning,caption,icon,style,step,invented\n";

/// What the generator says about a table; empty when it has drawn it below `folder`.
QString DrawnBelow(const QTemporaryDir& folder, const QByteArray& text, const QStringList& languages) {
  QFile table(folder.filePath(QStringLiteral("table.csv")));
  if (!table.open(QIODevice::WriteOnly)) qFatal("cannot write");
  table.write(text);
  table.close();
  QProcess generator;
  generator.start(QStringLiteral(BINARY_DIR "/pictures/picture-generator"),
                  QStringList{table.fileName(), folder.path()} + languages);
  if (!generator.waitForFinished(20000) || generator.exitStatus() != QProcess::NormalExit) qFatal("no generator");
  const QString said = QString::fromUtf8(generator.readAllStandardError());
  if (generator.exitCode() == 0) return {};
  return said.section(QStringLiteral("table.csv: "), 1).trimmed();
}

/// The same for rows without another language.
QString Refusal(const QByteArray& rows) {
  return DrawnBelow(QTemporaryDir(), kHead + rows, {});
}

QStringList FilesBelow(const QTemporaryDir& folder) {
  QStringList files;
  for (QDirIterator file(folder.path(), {"*.bmp"}, QDir::Files, QDirIterator::Subdirectories); file.hasNext();)
    files << file.next().mid(folder.path().size());
  files.sort();
  return files;
}
}  // namespace

class PicturesTest : public QObject {
  Q_OBJECT

private slots:
  void everyRowIsDrawnInItsSizeWith24Bits() {
    for (const Row& row : Table()) {
      QFile file(FileOf(row.path));
      QVERIFY2(file.open(QIODevice::ReadOnly), qPrintable(row.path));
      const QByteArray bytes = file.readAll();
      QVERIFY2(bytes.startsWith("BM"), qPrintable(row.path));
      QCOMPARE(qFromLittleEndian<quint16>(bytes.constData() + 28), quint16{24});
      QCOMPARE(QImage::fromData(bytes).size(), row.size);
    }
  }

  void everyNameInTheCodeIsInTheTable() {
    QSet<QString> known;
    for (const Row& row : Table()) known << row.path;
    const QSet<QString> names = NamesInCode();
    QVERIFY(names.size() > 200);
    for (const QString& name : names) QVERIFY2(known.contains(name), qPrintable(name));
  }

  // A picture may wait for its screen, but not for one that is there.
  void everyPictureOfAScreenIsNamedInTheCode() {
    const QMap<QString, QString> code = Code();
    const QSet<QString> names = NamesInCode();
    int named = 0;
    for (const Row& row : Table()) {
      if (names.contains(row.path)) {
        ++named;
        continue;
      }
      if (IsCell(row.path)) continue;
      for (const QString& screen : row.screen.split(u'/'))
        QVERIFY2(!code.contains(screen.toLower() + QStringLiteral(".h")), qPrintable(row.path));
    }
    QVERIFY(named > 200);
  }

  // The code makes their names of a level and a voltage, or "non" for off.
  void everyVoltageOfEveryPowerCutLevelHasItsPicture() {
    QSet<QString> drawn, needed;
    for (const Row& row : Table())
      if (IsCell(row.path)) drawn << row.path;
    for (int level = 1; level <= 12; ++level)
      for (const char* value : {"11.0", "11.8", "12.0", "12.2", "12.4", "12.6", "12.8", "13.0", "23.0", "23.6", "24.0",
                                "24.4", "24.8", "27.0", "non"})
        needed << QStringLiteral("powercutsetting/%1/%2.bmp").arg(level).arg(QLatin1String(value));
    QCOMPARE(drawn, needed);
  }

  // The driver taps the middle of what is seen, the calibration takes it for pixel (40, 35).
  void theCalibrationTargetIsAroundItsPixel() {
    const QImage target(FileOf(QStringLiteral("touchcompensation/touch_compensation_icon_1_normal_ex.bmp")));
    const QPoint middle(40, 35);
    for (int y = -33; y <= 33; ++y) {
      for (int x = 0; x <= 33; ++x) {
        const int here = qGray(target.pixel(middle + QPoint(x, y)));
        const int opposite = qGray(target.pixel(middle - QPoint(x, y)));
        QVERIFY2(qAbs(here - opposite) <= 16, qPrintable(QStringLiteral("%1 %2").arg(x).arg(y)));
      }
    }
  }

  // "Off" is grey; colour means a chosen value. The marks of the steps stand below.
  void anOptionThatIsOffIsGrey() {
    int tiles = 0;
    for (const Row& row : Table()) {
      if (row.style != QLatin1String("tile-value:off")) continue;
      const QImage tile(FileOf(row.path));
      for (int y = 0; y < 112; ++y) {
        for (int x = 0; x < tile.width(); ++x) {
          const QColor pixel = tile.pixelColor(x, y);
          const auto [least, most] = std::minmax({pixel.red(), pixel.green(), pixel.blue()});
          QVERIFY2(most - least < 10, qPrintable(row.path));
        }
      }
      ++tiles;
    }
    QVERIFY(tiles > 5);
  }

  // Over video it would be a hole, or a red fringe on a panel with 16 bits a pixel.
  void noPixelHasOrNearlyHasTheKeyColour() {
    for (const Row& row : Table()) {
      const QImage picture(FileOf(row.path));
      for (int y = 0; y < picture.height(); ++y) {
        for (int x = 0; x < picture.width(); ++x) {
          const QRgb pixel = picture.pixel(x, y);
          QVERIFY2(!(qRed(pixel) >= 240 && qGreen(pixel) < 24 && qBlue(pixel) < 40), qPrintable(row.path));
        }
      }
    }
  }

  // The screen repaints no more of the tile when the mode changes.
  void theLedModeTilesDifferInTheMiddleAlone_data() {
    QTest::addColumn<QString>("folder");
    QTest::newRow("Korean") << QString();
    QTest::newRow("English") << QStringLiteral("en/");
  }
  void theLedModeTilesDifferInTheMiddleAlone() {
    QFETCH(QString, folder);
    const QImage off(FileOf(folder + QStringLiteral("ledsetting/led_setting_off_normal.bmp")));
    QVERIFY(!off.isNull());
    for (const char* other :
         {"ledsetting/led_setting_sequential_normal.bmp", "ledsetting/led_setting_random_normal.bmp"}) {
      const QImage mode(FileOf(folder + QLatin1String(other)));
      QVERIFY(!mode.isNull() && mode != off);
      for (const QRect side : {QRect(0, 0, 30, 130), QRect(130, 0, 30, 130)}) QCOMPARE(mode.copy(side), off.copy(side));
    }
  }

  // A label may stand there.
  void theLabelStripOfEveryTileIsPlain() {
    int tiles = 0;
    for (const Row& row : Table()) {
      if (row.style.section(u':', 0, 0) != QLatin1String("tile")) continue;
      const QImage tile(FileOf(row.path));
      QImage plain(156, 24, tile.format());
      plain.fill(tile.pixelColor(80, 12));
      QVERIFY2(tile.copy(2, 10, 156, 24) == plain, qPrintable(row.path));
      ++tiles;
    }
    QVERIFY(tiles > 20);
  }

  void aGoodRowIsDrawn() { QCOMPARE(Refusal("a.bmp,160,130,S,m,메뉴,home,tile,,yes\n"), QString()); }

  // One that looks the same in both languages is drawn once.
  void anotherLanguageHasPicturesOfItsOwn() {
    const QByteArray head = QByteArray(kHead).trimmed() + ",caption_en,caption_xx\n";
    const QByteArray rows =
        "a/b.bmp,160,130,S,m,메뉴,home,tile,,yes,Menu,메뉴\n"
        "c.bmp,80,90,S,m,7,,key,,yes,7,7\n"
        "/usr/d.bmp,80,60,S,m,,home,header-key,,yes,,\n"
        "/usr/e.bmp,160,130,S,m,목록,home,tile,,yes,List,Liste\n";
    const QTemporaryDir folder;
    QCOMPARE(DrawnBelow(folder, head + rows, {"en", "xx"}), QString());
    const QString images = QStringLiteral("/opt/gui/images/");
    QCOMPARE(FilesBelow(folder),
             (QStringList{images + "a/b.bmp", images + "c.bmp", images + "en/a/b.bmp", images + "en/usr/e.bmp",
                          images + "xx/usr/e.bmp", "/usr/d.bmp", "/usr/e.bmp"}));
    QVERIFY(QImage(folder.path() + images + "a/b.bmp") != QImage(folder.path() + images + "en/a/b.bmp"));
    QVERIFY(DrawnBelow(folder, head + rows, {"de"}).contains("line 1: there is no column caption_de."));
    QVERIFY(DrawnBelow(folder, head + "a.bmp,160,130,S,m,메뉴,home,tile,,yes,,\n", {"en"})
                .contains("line 2, a.bmp: style \"tile\" takes 1 to 1 parts"));
    QVERIFY(DrawnBelow(folder, QByteArray(kHead).trimmed() + ",more\n", {}).contains("line 1: more is no column."));
  }
  // A longer word of another language is drawn smaller, but never too small for a glance.
  void aTranslatedCaptionIsMadeToFit() {
    const auto refusal = [](const QByteArray& korean, const QByteArray& english) {
      return DrawnBelow(QTemporaryDir(),
                        QByteArray(kHead).trimmed() + ",caption_en\na.bmp,160,130,S,m," + korean + ",home,tile,,yes," +
                            english + "\n",
                        {"en"});
    };
    QCOMPARE(refusal("메뉴", "Voltage calibration"), QString());
    QVERIFY(refusal("Voltage calibration", "Menu").contains("its box 148 x 28"));
    QVERIFY(refusal("메뉴", "Voltage calibration of it all").contains("its box 148 x 28"));
  }

  void everyCaptionIsTranslated() {
    QFile table(QStringLiteral(SOURCE_DIR "/pictures/images.csv"));
    QVERIFY(table.open(QIODevice::ReadOnly));
    QStringList lines = QString::fromUtf8(table.readAll()).split(u'\n', Qt::SkipEmptyParts);
    const QStringList head = lines.takeFirst().split(u',');
    static const QRegularExpression kKorean(QStringLiteral("\\p{Hangul}"));
    int captions = 0;
    for (const QDir texts(QStringLiteral(SOURCE_DIR "/gui/translations"));
         const QString& file : texts.entryList({"dashcam_*.ts"})) {
      const auto column = head.indexOf(QStringLiteral("caption_") + file.mid(8).chopped(3));
      QVERIFY2(column > 0, qPrintable(file));
      for (const QString& line : lines) {
        const QStringList fields = line.split(u',');
        QCOMPARE(fields[column].isEmpty(), fields[5].isEmpty());
        QCOMPARE(fields[column].count(u'|'), fields[5].count(u'|'));
        QVERIFY2(!kKorean.match(fields[column]).hasMatch(), qPrintable(line));
        captions += !fields[column].isEmpty();
      }
    }
    QVERIFY(captions > 300);
  }

  void theGeneratorRefuses_data() {
    QTest::addColumn<QByteArray>("rows");
    QTest::addColumn<QString>("sentence");
    const auto add = [](const char* name, const char* rows, const char* sentence) {
      QTest::newRow(name) << QByteArray(rows) << QString::fromUtf8(sentence);
    };
    add("caption too wide", "a.bmp,160,130,S,m,아주 아주 아주 아주 긴 이름,home,tile,,yes\n", "its box 148 x 28");
    add("caption too tall", "a.bmp,100,10,S,m,메뉴,,ampm,,yes\n", "its box 100 x 10");
    add("no caption", "a.bmp,160,130,S,m,,home,tile,,yes\n", "line 2, a.bmp: style \"tile\" takes 1 to 1 parts");
    add("picture too small for its caption", "a.bmp,50,60,S,m,메뉴,home,hotkey,,yes\n",
        "line 2, a.bmp: the box of \"메뉴\" reaches beyond the picture.");
    add("picture too small for its glyph", "a.bmp,80,20,S,m,,home,header-key,,yes\n",
        "line 2, a.bmp: glyph \"home\" reaches beyond the picture.");
    add("button with nothing on it", "a.bmp,175,47,S,m,,,button:primary,,yes\n", "line 2, a.bmp: it has no caption.");
    add("page without its second line", "a.bmp,480,320,S,m,하나,home,background:page,,yes\n", "takes 2 to 2 parts");
    add("caption that is not drawn", "a.bmp,480,320,S,m,하나,,background:dim,,yes\n", "takes 0 to 0 parts");
    add("value without its step", "a.bmp,160,130,S,m,a|b,home,tile-value,,yes\n", "\"tile-value\" takes a step");
    add("step that is not drawn", "a.bmp,160,130,S,m,a,home,tile,1/2,yes\n", "style \"tile\" takes no step");
    add("unknown figure", "a.bmp,71,60,S,m,메뉴,draw:pip-middle,hotkey,,yes\n",
        "there is no figure \"draw:pip-middle\"");
    add("unknown style", "a.bmp,160,130,S,m,메뉴,home,tiles,,yes\n", "line 2, a.bmp: there is no style \"tiles\".");
    add("unknown state", "a.bmp,160,130,S,m,메뉴,home,tile:on,,yes\n", "style \"tile\" has no state \"on\"");
    add("unknown glyph", "a.bmp,160,130,S,m,메뉴,no-such-thing,tile,,yes\n", "there is no glyph \"no-such-thing\"");
    add("unknown badge", "a.bmp,160,130,S,m,메뉴,home+nothing,tile,,yes\n", "there is no glyph \"nothing\"");
    add("too few fields", "a.bmp,160,130,S,m,메뉴,home,tile\n", "line 2: it has 8 fields, not 10");
    add("width 0", "a.bmp,0,130,S,m,메뉴,home,tile,,yes\n", "line 2: its width is no number from 1 to 480");
    add("huge", "a.bmp,160,99999,S,m,메뉴,home,tile,,yes\n", "line 2: its height is no number from 1 to 480");
    add("step", "a.bmp,160,130,S,m,a|b,home,tile-value,3/2,yes\n", "line 2: its step is beyond the last");
    add("upwards", "../a.bmp,160,130,S,m,메뉴,home,tile,,yes\n", "line 2: its path is none of a .bmp file");
    add("no picture", "a.png,160,130,S,m,메뉴,home,tile,,yes\n", "line 2: its path is none of a .bmp file");
    add("twice", "a.bmp,160,130,S,m,메뉴,home,tile,,yes\na.bmp,80,60,S,m,,home,header-key,,yes\n",
        "line 3: its path has been used already");
  }
  void theGeneratorRefuses() {
    QFETCH(QByteArray, rows);
    QFETCH(QString, sentence);
    const QString said = Refusal(rows);
    QVERIFY2(said.contains(sentence), qPrintable(said));
  }
};

QTEST_GUILESS_MAIN(PicturesTest)
#include "pictures_test.moc"
