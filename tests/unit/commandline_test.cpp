#include "gui/app/commandline.h"

#include <unistd.h>

#include <QApplication>
#include <QFontInfo>
#include <QTemporaryFile>
#include <QTest>
#include <algorithm>

#include "gui/app/mainwindow.h"
#include "gui/base/globals.h"
#include "gui/base/language.h"
#include "gui/settings/config.h"
#include "tests/fake/platformfake.h"
#include "tests/fake/testroot.h"

static TestRoot root;

namespace {
/// Arguments as main() gets them, with the null after the last one.
class Arguments {
public:
  explicit Arguments(const QStringList& texts) {
    for (const QString& text : texts) mBytes << text.toUtf8();
    for (QByteArray& text : mBytes) mPointers << text.data();
    mPointers << nullptr;
  }
  char** Data() { return mPointers.data(); }

private:
  QList<QByteArray> mBytes;
  QList<char*> mPointers;
};

/// What comes out of the standard error meanwhile.
template <typename Function>
QByteArray SaidBy(Function function) {
  QTemporaryFile file;
  if (!file.open()) qFatal("no file");
  const int error = dup(STDERR_FILENO);
  dup2(file.handle(), STDERR_FILENO);
  function();
  dup2(error, STDERR_FILENO);
  close(error);
  file.seek(0);
  return file.readAll();
}
}  // namespace

class CommandLineTest : public QObject {
  Q_OBJECT

private:
  std::unique_ptr<MainWindow> mWindow;

private slots:
  void initTestCase() {
    GetConfig();
    mWindow = std::make_unique<MainWindow>(nullptr);
  }
  void cleanupTestCase() {
    mWindow.reset();
    gNeedVolCom = false;
  }

  void argumentsOfTheStart_data() {
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<bool>("before");
    QTest::addColumn<bool>("volCom");
    const auto row = [](const char* name, QStringList arguments, bool before, bool volCom) {
      QTest::newRow(name) << arguments << before << volCom;
    };
    row("none", {"gui"}, true, false);
    row("one", {"gui", "1"}, true, false);
    row("wanted", {"gui", "x", "1"}, false, true);
    row("not wanted", {"gui", "x", "0"}, true, false);
    row("other text leaves it on", {"gui", "x", "yes"}, true, true);
    row("other text leaves it off", {"gui", "x", "yes"}, false, false);
    row("longer text is another text", {"gui", "x", "10"}, false, false);
    row("empty text is another text", {"gui", "x", ""}, true, true);
    row("parking 0", {"gui", "x", "1", "0"}, false, true);
    row("parking 1", {"gui", "x", "1", "1"}, false, true);
    row("parking other", {"gui", "x", "0", "z"}, true, false);
    row("more", {"gui", "x", "1", "1", "1"}, false, true);
    row("the first is nobody's", {"gui", "1", "0", "1"}, true, false);
  }
  void argumentsOfTheStart() {
    QFETCH(QStringList, arguments);
    QFETCH(bool, before);
    QFETCH(bool, volCom);
    Arguments argv(arguments);

    gNeedVolCom = before;
    mWindow->SetIsIngParkingModeOn(true);
    SetInit(static_cast<int>(arguments.size()), argv.Data(), mWindow.get());
    QCOMPARE(gNeedVolCom, volCom);
    QVERIFY2(!mWindow->GetIsIngParkingModeOn(), "parking mode always starts off");
  }
  void noArgumentsAtAll() {
    char* argv[] = {nullptr};
    gNeedVolCom = true;
    SetInit(0, argv, mWindow.get());
    QVERIFY(!gNeedVolCom);
  }

  void theTouchPanelsDevice_data() {
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<QStringList>("left");
    QTest::addColumn<QString>("device");
    const auto row = [](const char* name, QStringList arguments, QStringList left, QString device) {
      QTest::newRow(name) << arguments << left << device;
    };
    row("none", {"gui", "x", "1"}, {"gui", "x", "1"}, "");
    row("no arguments", {"gui"}, {"gui"}, "");
    row("alone", {"gui", "--touch", "/dev/input/event3"}, {"gui"}, "/dev/input/event3");
    row("behind", {"gui", "x", "1", "0", "--touch", "panel"}, {"gui", "x", "1", "0"}, "panel");
    row("before", {"gui", "--touch", "panel", "x", "1"}, {"gui", "x", "1"}, "panel");
    row("between", {"gui", "-platform", "linuxfb", "--touch", "a b", "x"}, {"gui", "-platform", "linuxfb", "x"}, "a b");
    row("like another option", {"gui", "--touch", "--touch"}, {"gui"}, "--touch");
    row("longer", {"gui", "--touchy", "panel"}, {"gui", "--touchy", "panel"}, "");
  }
  void theTouchPanelsDevice() {
    QFETCH(QStringList, arguments);
    Arguments argv(arguments);
    int argc = static_cast<int>(arguments.size());
    gTouchDevice.clear();
    QVERIFY(TakeOptions(&argc, argv.Data()));
    QStringList left;
    for (int i = 0; i < argc; ++i) left << QString::fromUtf8(argv.Data()[i]);
    QTEST(left, "left");
    QVERIFY(!argv.Data()[argc]);
    QTEST(std::exchange(gTouchDevice, {}), "device");
  }
  void aTouchPanelWithoutADevice_data() {
    QTest::addColumn<QByteArray>("path");
    QTest::addColumn<int>("count");
    QTest::newRow("no path") << QByteArray() << 3;
    QTest::newRow("an empty one") << QByteArray("") << 4;
  }
  void aTouchPanelWithoutADevice() {
    QFETCH(QByteArray, path);
    QFETCH(int, count);
    QByteArray name("gui"), argument("x"), option("--touch");
    char* argv[] = {name.data(), argument.data(), option.data(), path.data(), nullptr};
    argv[count] = nullptr;
    QVERIFY(!TakeOptions(&count, argv));
    QVERIFY(gTouchDevice.isEmpty());
  }

  void theLanguage_data() {
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<QByteArray>("variable");
    QTest::addColumn<QString>("language");
    QTest::addColumn<QByteArray>("said");
    const QByteArray unknown("There is no language \"xx\", only ");
    QTest::newRow("none") << QStringList{"gui"} << QByteArray() << "ko" << QByteArray();
    QTest::newRow("option") << QStringList{"gui", "x", "--language", "en", "1"} << QByteArray() << "en" << QByteArray();
    QTest::newRow("variable") << QStringList{"gui"} << QByteArray("en") << "en" << QByteArray();
    QTest::newRow("option before variable")
        << QStringList{"gui", "--language", "ko"} << QByteArray("en") << "ko" << QByteArray();
    QTest::newRow("unknown option") << QStringList{"gui", "--language", "xx"} << QByteArray("en") << "ko" << unknown;
    QTest::newRow("unknown variable") << QStringList{"gui"} << QByteArray("xx") << "ko" << unknown;
    QTest::newRow("with the panel") << QStringList{"gui", "--touch", "panel", "--language", "en"} << QByteArray()
                                    << "en" << QByteArray();
  }
  void theLanguage() {
    QFETCH(QStringList, arguments);
    QFETCH(QByteArray, variable);
    QFETCH(QByteArray, said);
    Arguments argv(arguments);
    int argc = static_cast<int>(arguments.size());
    qputenv("DASHCAM_LANGUAGE", variable);
    QVERIFY(TakeOptions(&argc, argv.Data()));
    QVERIFY(std::none_of(argv.Data(), argv.Data() + argc,
                         [](const char* argument) { return QByteArray(argument).startsWith("--"); }));
    const QByteArray words = SaidBy([] { ApplyLanguage(); });
    QTEST(Language(), "language");
    QCOMPARE(words.isEmpty(), said.isEmpty());
    QVERIFY2(words.startsWith(said) && words.count('\n') == !said.isEmpty(), words.constData());
    QVERIFY(ChooseLanguage(QStringLiteral("ko")));
    qunsetenv("DASHCAM_LANGUAGE");
    gTouchDevice.clear();
  }
  void aLanguageOptionWithoutALanguage() {
    QByteArray name("gui"), option("--language"), empty;
    char* argv[] = {name.data(), option.data(), nullptr};
    int argc = 2;
    QVERIFY(!TakeOptions(&argc, argv));
    char* other[] = {name.data(), option.data(), empty.data(), nullptr};
    argc = 3;
    QVERIFY(!TakeOptions(&argc, other));
    QVERIFY(!qEnvironmentVariableIsSet("DASHCAM_LANGUAGE"));
  }

  void onePointIsOnePixelAndTheInputStaysOurs() {
    for (const char* name :
         {"QT_FONT_DPI", "QT_ENABLE_HIGHDPI_SCALING", "QT_QPA_FB_DISABLE_INPUT", "QT_QPA_FB_HIDECURSOR"})
      qunsetenv(name);
    PrepareQt();
    QCOMPARE(qgetenv("QT_FONT_DPI"), QByteArray("72"));
    QCOMPARE(qgetenv("QT_ENABLE_HIGHDPI_SCALING"), QByteArray("0"));
    QCOMPARE(qgetenv("QT_QPA_FB_DISABLE_INPUT"), QByteArray("1"));
    QCOMPARE(qgetenv("QT_QPA_FB_HIDECURSOR"), QByteArray("1"));
  }

  void theConfiguredFamilyIsEverybodysFont() {
    ApplyFont();
    QCOMPARE(QApplication::font().family(), QStringLiteral("SeoulNamsan"));
    QVERIFY(!QApplication::font().italic());
    QCOMPARE(QApplication::font().weight(), QFont::Normal);
    QVERIFY(QFont::substitutes("SeoulNamsan").contains("NanumBarunGothic", Qt::CaseInsensitive));
    QVERIFY(QApplication::overrideCursor());
  }
};

QTEST_MAIN(CommandLineTest)
#include "commandline_test.moc"
