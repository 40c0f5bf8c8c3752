#include "gui/base/language.h"

#include <QApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QImage>
#include <QPixmap>
#include <QRegularExpression>
#include <QTest>

#include "gui/base/picture.h"
#include "gui/live/screensaver.h"
#include "gui/screen/label.h"
#include "gui/screen/messagecatalogue.h"
#include "gui/vocabulary/vocabulary.h"
#include "tests/fake/testroot.h"

static TestRoot root;

namespace {
const QRegularExpression kKorean(QStringLiteral("\\p{Hangul}"));

QImage Drawn(const char* path) {
  return QImage(root.Path(QLatin1String(path))).convertToFormat(QImage::Format_RGB32);
}
QImage Shown(const char* path) {
  return Picture(QLatin1String(path)).toImage().convertToFormat(QImage::Format_RGB32);
}

/// How a message is laid out.
struct Message {
  QString text;
  int box = -1, error = -1, lines = -1, align = -1, px = -1;
};
Message MessageOf(int id, int value = 0) {
  Message message;
  message.text =
      GetMessageBoxString(id, &message.box, &message.error, &message.lines, &message.align, &message.px, value);
  return message;
}
}  // namespace

class LanguageTest : public QObject {
  Q_OBJECT

private slots:
  void cleanup() { QVERIFY(ChooseLanguage(QStringLiteral("ko"))); }

  void koreanIsTheFirstAndEveryFileOfTextsIsOne() {
    QStringList languages{QStringLiteral("ko")};
    const QDir files(QStringLiteral(SOURCE_DIR "/gui/translations"));
    for (const QString& file : files.entryList({QStringLiteral("dashcam_*.ts")})) languages << file.mid(8).chopped(3);
    QVERIFY(languages.contains(QStringLiteral("en")));
    QCOMPARE(Languages(), languages);
    QCOMPARE(Language(), QStringLiteral("ko"));
    QVERIFY(IsSourceLanguage());
    QCOMPARE(Text::tr("저장되었습니다."), QStringLiteral("저장되었습니다."));
  }

  void theChosenOneIsSpoken() {
    QVERIFY(ChooseLanguage(QStringLiteral("en")));
    QCOMPARE(Language(), QStringLiteral("en"));
    QVERIFY(!IsSourceLanguage());
    QCOMPARE(Text::tr("저장되었습니다."), QStringLiteral("Saved"));
    QCOMPARE(Text::tr("이 글은 없다"), QStringLiteral("이 글은 없다"));
    QVERIFY(ChooseLanguage(QStringLiteral("ko")));
    QCOMPARE(Text::tr("저장되었습니다."), QStringLiteral("저장되었습니다."));
  }

  void whatThereIsNotChangesNothing_data() {
    QTest::addColumn<QString>("language");
    for (const char* name : {"", "english", "EN", "en_US", "xx", "../dashcam_en", "en.qm"})
      QTest::newRow(*name ? name : "none") << QString::fromLatin1(name);
  }
  void whatThereIsNotChangesNothing() {
    QFETCH(QString, language);
    for (const char* spoken : {"ko", "en"}) {
      QVERIFY(ChooseLanguage(QLatin1String(spoken)));
      QVERIFY(!ChooseLanguage(language));
      QCOMPARE(Language(), QLatin1String(spoken));
    }
    QCOMPARE(Text::tr("저장되었습니다."), QStringLiteral("Saved"));
  }

  void oneAndManyDiffer() {
    QVERIFY(ChooseLanguage(QStringLiteral("en")));
    QCOMPARE(Text::tr("포맷 후 %n일", nullptr, 1), QStringLiteral("1 day since format"));
    QCOMPARE(Text::tr("포맷 후 %n일", nullptr, 12), QStringLiteral("12 days since format"));
    QCOMPARE(Text::tr("이벤트 녹화 %n건", nullptr, 0), QStringLiteral("0 event recordings"));
    QVERIFY(ChooseLanguage(QStringLiteral("ko")));
    QCOMPARE(Text::tr("포맷 후 %n일", nullptr, 1), QStringLiteral("포맷 후 1일"));
  }

  void datesAreWrittenAsTheLanguageDoes() {
    const QDateTime at(QDate(2026, 5, 8), QTime(7, 4));
    const auto report = [&] { return DateLocale().toString(at, Text::tr("MM월 dd일 HH:mm")); };
    const auto clock = [&] { return DateLocale().toString(at.date(), Text::tr("yyyy.MM.dd")); };
    QCOMPARE(report(), QStringLiteral("05월 08일 07:04"));
    QCOMPARE(clock(), QStringLiteral("2026.05.08"));
    QCOMPARE(DateLocale().amText(), QStringLiteral("오전"));
    QCOMPARE(DateLocale().pmText(), QStringLiteral("오후"));
    QVERIFY(ChooseLanguage(QStringLiteral("en")));
    QCOMPARE(report(), QStringLiteral("8 May, 07:04"));
    QCOMPARE(clock(), QStringLiteral("8 May 2026"));
    QCOMPARE(DateLocale().amText(), QStringLiteral("AM"));
    QCOMPARE(DateLocale().pmText(), QStringLiteral("PM"));
    const char* days[][2] = {{"Mon", "Monday"}, {"Tue", "Tuesday"},  {"Wed", "Wednesday"}, {"Thu", "Thursday"},
                             {"Fri", "Friday"}, {"Sat", "Saturday"}, {"Sun", "Sunday"},    {"xyz", ""}};
    for (const auto& [day, name] : days) QCOMPARE(ScreenSaver::TransformDate(QLatin1String(day)), QLatin1String(name));
  }

  void aPictureWithACaptionIsTheLanguages() {
    QVERIFY(ChooseLanguage(QStringLiteral("en")));
    for (const char* path : {"mainmenu/play_list_normal.bmp", "/opt/gui/images/mainmenu/play_list_normal.bmp"})
      QCOMPARE(Shown(path), Drawn("/opt/gui/images/en/mainmenu/play_list_normal.bmp"));
    QCOMPARE(Shown("/usr/local/etc/fwupdating.bmp"), Drawn("/opt/gui/images/en/usr/local/etc/fwupdating.bmp"));
    QVERIFY(Shown("mainmenu/play_list_normal.bmp") != Drawn("/opt/gui/images/mainmenu/play_list_normal.bmp"));
  }
  void aPictureWithoutIsTheSameInAll() {
    QVERIFY(ChooseLanguage(QStringLiteral("en")));
    for (const char* path : {"common/home_normal.bmp", "numberset/keypad_7_normal.bmp"}) {
      QVERIFY(!QFile::exists(root.Path(QStringLiteral("/opt/gui/images/en/") + QLatin1String(path))));
      QCOMPARE(Shown(path), Drawn((QByteArray("/opt/gui/images/") + path).constData()));
    }
    QVERIFY(Picture(QStringLiteral("none.bmp")).isNull());
  }
  void koreanPicturesLieWhereTheyAlwaysDid() {
    QCOMPARE(Shown("mainmenu/play_list_normal.bmp"), Drawn("/opt/gui/images/mainmenu/play_list_normal.bmp"));
    QVERIFY(!QFile::exists(root.Path(QStringLiteral("/opt/gui/images/ko"))));
  }

  // Every message, in each language that there is: in no other writing, and in the lines that a box has.
  void everyMessageIsTranslated_data() {
    QTest::addColumn<QString>("language");
    for (const QString& language : Languages().mid(1)) QTest::newRow(qPrintable(language)) << language;
  }
  void everyMessageIsTranslated() {
    QFETCH(QString, language);
    int messages = 0;
    for (int id = 0; id <= INITIALIZE_RESET_FPS_NEED_FORMAT; ++id) {
      for (int value = -1; value <= 20; ++value) {
        QVERIFY(ChooseLanguage(QStringLiteral("ko")));
        const Message korean = MessageOf(id, value);
        QVERIFY(ChooseLanguage(language));
        const Message message = MessageOf(id, value);
        QCOMPARE(message.text.isEmpty(), korean.text.isEmpty());
        if (message.text.isEmpty()) continue;
        ++messages;
        QVERIFY2(!kKorean.match(message.text).hasMatch(), qPrintable(message.text));
        QVERIFY2(!message.text.contains(u'%'), qPrintable(message.text));
        QCOMPARE(message.lines, int(message.text.count(u'_')));
        QVERIFY2(message.lines <= 2, qPrintable(message.text));
        QCOMPARE(message.box, korean.box);
        QCOMPARE(message.error, korean.error);
        QCOMPARE(message.align, korean.align);
        QCOMPARE(message.px, korean.px);
      }
    }
    QVERIFY(messages > 22 * 100);
  }
  void aCountOfAnySignIsSaid() {
    QVERIFY(ChooseLanguage(QStringLiteral("en")));
    QCOMPARE(MessageOf(LED_FILE_UPDATE_SAVE, 1).text, QStringLiteral("1 item selected._Save it?"));
    QCOMPARE(MessageOf(LED_FILE_UPDATE_SAVE, 2).text, QStringLiteral("2 items selected._Save them?"));
    QVERIFY(MessageOf(LED_FILE_UPDATE_SAVE, -1).text.startsWith(QLatin1String("-1 item")));
    QCOMPARE(MessageOf(R_HW_ERROR, 7).text, QStringLiteral("The camera needs service_Code:0x07"));
  }

  // A text becomes smaller where it must, a Korean one never.
  void aLongTextIsMadeToFit() {
    const QString text = QStringLiteral("Quite a long text for it");
    const LabelRow row{"label", {0, 0, 150, 30}, 24, Qt::white};
    QWidget screen;
    auto* label = dynamic_cast<TextLabel*>(AddLabel(&screen, row, text));
    QVERIFY(label->Letters().width() > 150);
    QVERIFY(ChooseLanguage(QStringLiteral("en")));
    QVERIFY(label->Letters().width() <= 150);
    QVERIFY(label->Letters().height() > 12);
    QFont font;
    font.setPixelSize(24);
    QCOMPARE(FittingSize(font, {QStringLiteral("Short")}, {150, 30}), 24);
    const int size = FittingSize(font, {QStringLiteral("Short"), text}, {150, 30});
    QVERIFY(size >= 12 && size < 24);
    QCOMPARE(FittingSize(font, {text.repeated(9)}, {150, 30}), 12);
    QVERIFY(ChooseLanguage(QStringLiteral("ko")));
    QCOMPARE(FittingSize(font, {text}, {150, 30}), 24);
  }
};

QTEST_MAIN(LanguageTest)
#include "language_test.moc"
