#include "gui/screen/messagebox.h"

#include <QApplication>
#include <QFontMetrics>
#include <QImage>
#include <QLabel>
#include <QPainter>
#include <QTest>

#include "gui/app/commandline.h"
#include "gui/screen/messagecatalogue.h"
#include "gui/settings/config.h"
#include "tests/fake/testroot.h"

static TestRoot root;

namespace {
constexpr char kWhiteText[] = "QLabel {background:transparent;color:rgb(255,255,255);}";
const QRect kNotice(35, 84, 410, 168);
const QRect kQuestion(20, 48, 440, 224);
const QRect kBanner(143, 129, 194, 40);

struct Piece {
  QPoint at;
  const char* picture;
};

/// The pictures on a ground of black, as the files have them.
QImage Composed(QSize size, const QList<Piece>& pieces) {
  QImage image(size, QImage::Format_RGB32);
  image.fill(Qt::black);
  QPainter painter(&image);
  for (const Piece& piece : pieces) {
    const QImage picture(root.Path(QStringLiteral("/opt/gui/images/messagebox/") + QLatin1String(piece.picture)));
    if (picture.isNull()) qFatal("no picture %s", piece.picture);
    painter.drawImage(piece.at, picture);
  }
  return image;
}

QImage Grabbed(QWidget& widget) {
  QImage image(widget.size(), QImage::Format_RGB32);
  image.fill(Qt::black);
  widget.render(&image, {}, {}, QWidget::DrawChildren);
  return image;
}

/// Where anything brighter than the black ground is.
QRect Ink(const QImage& image) {
  QRect ink;
  for (int y = 0; y < image.height(); ++y)
    for (int x = 0; x < image.width(); ++x)
      if (qGray(image.pixel(x, y)) > 40) ink |= QRect(x, y, 1, 1);
  return ink;
}

int WidthOf(const QFont& font, const QString& text) {
  return QFontMetrics(font).boundingRect({}, Qt::TextSingleLine, text).width();
}

/// The message's lines fit their labels, as wide as they can be, and are painted whole.
void LinesAreWhole(const QWidget& box) {
  for (QLabel* label : box.findChildren<QLabel*>()) {
    if (label->text().isEmpty()) continue;
    const int width = label->width();
    QFont font = label->font();
    QVERIFY2(WidthOf(font, label->text()) <= width, qPrintable(label->text()));
    QVERIFY2(font.stretch() >= 88 && font.stretch() <= 100, qPrintable(label->text()));
    if (font.stretch() < 100) {
      font.setStretch(font.stretch() + 1);
      QVERIFY2(WidthOf(font, label->text()) > width, qPrintable(label->text()));
    }
    QLabel wide;
    wide.setTextFormat(Qt::PlainText);
    wide.setStyleSheet(label->styleSheet());
    wide.setFont(label->font());
    wide.setText(label->text());
    wide.setAlignment(Qt::AlignCenter);
    wide.resize(600, 60);
    const QSize whole = Ink(Grabbed(wide)).size();
    const QSize shown = Ink(Grabbed(*label)).size();
    QVERIFY(whole.width() > 10);
    QVERIFY2(shown.width() >= whole.width() - 1 && shown.height() >= whole.height() - 1, qPrintable(label->text()));
  }
}
}  // namespace

class MessageBoxTest : public QObject {
  Q_OBJECT

private:
  QWidget mScreen;
  std::unique_ptr<MessageBox> mBox;

  /// A box with `text`, shown over a visible screen.
  MessageBox& Show(int type, int error, int breaks, const QString& text, int align = 2, int px = 24) {
    mBox = std::make_unique<MessageBox>(&mScreen, type, error, breaks, text, align, px);
    mBox->show();
    return *mBox;
  }
  QLabel* Line(const QString& text) const {
    for (QLabel* label : mBox->findChildren<QLabel*>())
      if (label->text() == text) return label;
    qFatal("no line %s", qPrintable(text));
  }
  QStringList Lines() const {
    QStringList lines;
    for (const QLabel* label : mBox->findChildren<QLabel*>())
      if (!label->text().isEmpty()) lines << label->text();
    return lines;
  }

private slots:
  void initTestCase();
  void cleanup() { mBox.reset(); }

  void boxAndLinesStandAtTheirPlaces_data();
  void boxAndLinesStandAtTheirPlaces();
  void linesAreAlignedAsTheMessageSays();
  void anotherAlignmentKeepsWhatWas();
  void theTextIsWhiteAndHasTheMessagesSize();
  void theTextHasTheConfiguredColour();
  void aTextIsNeverReadAsHtml();
  void aTextOfSingleBytesIsDecoded_data();
  void aTextOfSingleBytesIsDecoded();
  void aTextWithAnotherNumberOfLinesIsNotShown_data();
  void aTextWithAnotherNumberOfLinesIsNotShown();
  void anEmptyPartIsAnEmptyLine();
  void aNoticeOfOneLineMayHoldTheSeparator();
  void aBoxIsUsedAgain();
  void aSmallerBoxUncoversTheScreen();
  void anotherIconIsPaintedAtOnce();
  void anUnknownTypeKeepsPlaceAndSize_data();
  void anUnknownTypeKeepsPlaceAndSize();
  void anUnknownTypeFromTheStartShowsNoPicture();
  void frameButtonsAndIconArePainted_data();
  void frameButtonsAndIconArePainted();
  void onlyQuestionsHaveButtons();
  void aLineThatIsTooWideIsDrawnNarrower();
  void everyMessageIsShownWhole_data();
  void everyMessageIsShownWhole();
};

void MessageBoxTest::initTestCase() {
  GetConfig();
  ApplyFont();
  mScreen.resize(480, 320);
  mScreen.show();
}

void MessageBoxTest::boxAndLinesStandAtTheirPlaces_data() {
  QTest::addColumn<int>("type");
  QTest::addColumn<QRect>("box");
  QTest::addColumn<int>("x");
  QTest::addColumn<int>("width");
  QTest::addColumn<QList<int>>("y");
  const auto add = [](int type, QRect box, int x, int width, const QList<QList<int>>& rows) {
    for (const QList<int>& y : rows)
      QTest::addRow("type %d, %d lines", type, int(y.size())) << type << box << x << width << y;
  };
  add(0, kNotice, 30, 350, {{70}, {58, 88}, {40, 70, 100}});
  for (int type : {1, 2, 3, 4}) add(type, kQuestion, 126, 284, {{72}, {54, 84}, {42, 72, 102}});
  add(5, kBanner, 0, 194, {{5}, {58, 88}, {40, 70, 100}});
}

void MessageBoxTest::boxAndLinesStandAtTheirPlaces() {
  QFETCH(int, type);
  QFETCH(int, x);
  QFETCH(int, width);
  QFETCH(QList<int>, y);
  const QStringList lines = QStringList{"one", "two", "three"}.mid(0, y.size());
  const MessageBox& box = Show(type, 0, int(y.size()) - 1, lines.join(u'_'));
  QTEST(box.geometry(), "box");
  QCOMPARE(Lines(), lines);
  for (int line = 0; line < y.size(); ++line) QCOMPARE(Line(lines[line])->geometry(), QRect(x, y[line], width, 30));
}

void MessageBoxTest::linesAreAlignedAsTheMessageSays() {
  Show(0, 0, 2, "one_two_three", 1);
  for (const QString& line : Lines()) QCOMPARE(Line(line)->alignment(), Qt::AlignLeft | Qt::AlignVCenter);
  Show(0, 0, 2, "one_two_three", 2);
  for (const QString& line : Lines()) QCOMPARE(Line(line)->alignment(), Qt::AlignHCenter | Qt::AlignVCenter);
  const QRect ink = Ink(Grabbed(*Line("two")));
  QVERIFY(qAbs(ink.left() - (350 - ink.right())) <= 3);
}

void MessageBoxTest::anotherAlignmentKeepsWhatWas() {
  MessageBox& box = Show(0, 0, 0, "one", 2);
  for (int align : {0, 3, -1}) {
    box.SettingMessageBox(0, 0, 0, "two", align, 24);
    QCOMPARE(Line("two")->alignment(), Qt::AlignHCenter | Qt::AlignVCenter);
  }
}

void MessageBoxTest::theTextIsWhiteAndHasTheMessagesSize() {
  for (int px : {17, 24}) {
    Show(0, 0, 1, QStringLiteral(u"■_■■"), 2, px);
    for (const QString& line : Lines()) {
      QCOMPARE(Line(line)->font().pixelSize(), px);
      QCOMPARE(Line(line)->font().family(), QApplication::font().family());
      QCOMPARE(Line(line)->styleSheet(), kWhiteText);
      const QImage painted = Grabbed(*Line(line));
      QCOMPARE(painted.pixelColor(Ink(painted).center().x(), 0), QColor(Qt::black));  // no ground of its own
      bool white = false;
      for (int y = 0; y < painted.height(); ++y)
        for (int x = 0; x < painted.width(); ++x) white |= painted.pixelColor(x, y) == QColor(255, 255, 255);
      QVERIFY(white);
    }
  }
}

void MessageBoxTest::theTextHasTheConfiguredColour() {
  gColor.PreviewText = {64, 200, 224};
  Show(0, 0, 0, "one");
  QCOMPARE(Line("one")->styleSheet(), "QLabel {background:transparent;color:rgb(64,200,224);}");
  GetConfig();
}

void MessageBoxTest::aTextIsNeverReadAsHtml() {
  const QString text = "<b>5</b>&amp;<img src=x>";
  Show(0, 0, 0, text);
  QCOMPARE(Line(text)->textFormat(), Qt::PlainText);
}

void MessageBoxTest::aTextOfSingleBytesIsDecoded_data() {
  QTest::addColumn<QString>("given");
  QTest::addColumn<QString>("shown");
  QTest::newRow("bytes of UTF-8") << QString::fromLatin1("\xEC\x9D\xBC") << QStringLiteral(u"일");
  QTest::newRow("text") << QStringLiteral(u"일 8%") << QStringLiteral(u"일 8%");
  QTest::newRow("ASCII") << QStringLiteral("Code:0x08") << QStringLiteral("Code:0x08");
}

void MessageBoxTest::aTextOfSingleBytesIsDecoded() {
  QFETCH(QString, given);
  QFETCH(QString, shown);
  Show(0, 0, 0, given);
  QCOMPARE(Lines(), QStringList(shown));
}

void MessageBoxTest::aTextWithAnotherNumberOfLinesIsNotShown_data() {
  QTest::addColumn<int>("breaks");
  QTest::addColumn<QString>("text");
  QTest::addColumn<int>("parts");
  QTest::newRow("two of three") << 2 << "one_two" << 2;
  QTest::newRow("one of two") << 1 << "one" << 1;
  QTest::newRow("three of two") << 1 << "one_two_three" << 3;
  QTest::newRow("four of three") << 2 << "one_two_three_four" << 4;
  QTest::newRow("four of four") << 3 << "one_two_three_four" << 4;
  QTest::newRow("less than one") << -1 << "one" << 1;
}

void MessageBoxTest::aTextWithAnotherNumberOfLinesIsNotShown() {
  QFETCH(int, breaks);
  QFETCH(QString, text);
  QFETCH(int, parts);
  QTest::ignoreMessage(QtDebugMsg, qPrintable(QStringLiteral("String Sep. Error : %1").arg(parts)));
  MessageBox& box = Show(0, 0, breaks, text);
  QCOMPARE(Lines(), QStringList());
  QCOMPARE(box.geometry(), kNotice);
  QCOMPARE(Grabbed(box), Composed(kNotice.size(), {{{0, 0}, "message_box1.bmp"}}));
}

void MessageBoxTest::anEmptyPartIsAnEmptyLine() {
  Show(0, 0, 2, "one__three");
  QCOMPARE(Lines(), QStringList({"one", "three"}));
  QCOMPARE(Line("one")->y(), 40);
  QCOMPARE(Line("three")->y(), 100);
}

void MessageBoxTest::aNoticeOfOneLineMayHoldTheSeparator() {
  Show(0, 0, 0, "one_two");
  QCOMPARE(Lines(), QStringList("one_two"));
}

void MessageBoxTest::aBoxIsUsedAgain() {
  MessageBox& box = Show(1, 0, 2, "one_two_three", 1, 17);
  QTest::ignoreMessage(QtDebugMsg, "MessageBox Setting MessageBox");
  QTest::ignoreMessage(QtDebugMsg, "End Setting MessageBox");
  box.SettingMessageBox(0, 3, 0, "four", 2, 22);
  QCOMPARE(box.geometry(), kNotice);
  QCOMPARE(Lines(), QStringList("four"));
  QCOMPARE(Line("four")->geometry(), QRect(30, 70, 350, 30));
  QCOMPARE(Line("four")->font().pixelSize(), 22);
  QCOMPARE(Line("four")->alignment(), Qt::AlignHCenter | Qt::AlignVCenter);
  box.SettingMessageBox(5, 0, 0, QString(), 2, 22);
  QCOMPARE(box.geometry(), kBanner);
  QCOMPARE(Grabbed(box), Composed(kBanner.size(), {{{0, 0}, "message_box3.bmp"}}));
}

void MessageBoxTest::aSmallerBoxUncoversTheScreen() {
  QPalette ground;
  ground.setColor(QPalette::Window, QColor(255, 0, 8));
  mScreen.setPalette(ground);
  MessageBox& box = Show(1, 0, 0, QString());
  QVERIFY(mScreen.grab().toImage().pixelColor(25, 53) != QColor(255, 0, 8));
  QTest::ignoreMessage(QtDebugMsg, "paint event MessageBox");
  box.SettingMessageBox(0, 0, 0, QString(), 2, 24);
  const QImage screen = mScreen.grab().toImage();
  QCOMPARE(screen.pixelColor(25, 53), QColor(255, 0, 8));
  QCOMPARE(screen.copy(kNotice).convertToFormat(QImage::Format_RGB32),
           Composed(kNotice.size(), {{{0, 0}, "message_box1.bmp"}}));
}

void MessageBoxTest::anotherIconIsPaintedAtOnce() {
  MessageBox& box = Show(1, 0, 0, QString());
  QCoreApplication::processEvents();
  QTest::ignoreMessage(QtDebugMsg, "paint event MessageBox");
  box.SettingMessageBox(1, 3, 0, QString(), 2, 24);
  QCoreApplication::processEvents();
}

void MessageBoxTest::anUnknownTypeKeepsPlaceAndSize_data() {
  QTest::addColumn<int>("type");
  for (int type : {6, 7, 100, -1}) QTest::addRow("%d", type) << type;
}

void MessageBoxTest::anUnknownTypeKeepsPlaceAndSize() {
  QFETCH(int, type);
  MessageBox& box = Show(5, 0, 0, "one");
  box.SettingMessageBox(type, 0, 0, "two", 2, 24);
  QCOMPARE(box.geometry(), kBanner);
  QCOMPARE(Line("two")->geometry(), QRect(0, 5, 194, 30));
  box.SettingMessageBox(1, 0, 0, "one", 2, 24);
  box.SettingMessageBox(type, 0, 2, "three_four_five", 2, 24);
  QCOMPARE(box.geometry(), kQuestion);
  QCOMPARE(Line("five")->geometry(), QRect(126, 102, 284, 30));
  QVERIFY(!box.HasButtons());
  box.SettingMessageBox(type, 0, 0, QString(), 2, 24);
  QCOMPARE(Grabbed(box), Composed(kQuestion.size(), {}));
}

void MessageBoxTest::anUnknownTypeFromTheStartShowsNoPicture() {
  MessageBox& box = Show(6, 0, 0, QString());
  QCOMPARE(Grabbed(box), Composed(box.size(), {}));
}

void MessageBoxTest::frameButtonsAndIconArePainted_data() {
  QTest::addColumn<int>("type");
  QTest::addColumn<int>("error");
  QTest::addColumn<QList<Piece>>("pieces");
  const QPoint at, left(35, 165), right(230, 165), only(132, 165), icon(26, 50);
  const QList<QList<Piece>> types = {
      {{at, "message_box1.bmp"}},
      {{at, "message_box2.bmp"}, {left, "message_button_yes2_normal.bmp"}, {right, "message_button_no_normal.bmp"}},
      {{at, "message_box2.bmp"}, {left, "message_button_ok2_normal.bmp"}, {right, "message_button_cancel_normal.bmp"}},
      {{at, "message_box2.bmp"}, {only, "message_button_ok_normal.bmp"}},
      {{at, "message_box2.bmp"}, {left, "message_button_front_normal.bmp"}, {right, "message_button_rear_normal.bmp"}},
      {{at, "message_box3.bmp"}},
  };
  const char* icons[] = {"message_alarm.bmp", "message_caution.bmp", "message_warning.bmp", "message_error.bmp"};
  for (int type = 0; type < 6; ++type) {
    for (int error = -1; error <= 4; ++error) {
      QList<Piece> pieces = types[type];
      if (type >= 1 && type <= 4 && error >= 0 && error <= 3) pieces << Piece{icon, icons[error]};
      QTest::addRow("type %d, icon %d", type, error) << type << error << pieces;
    }
  }
}

void MessageBoxTest::frameButtonsAndIconArePainted() {
  QFETCH(int, type);
  QFETCH(int, error);
  QFETCH(QList<Piece>, pieces);
  MessageBox& box = Show(type, error, 0, QString());
  QCOMPARE(Grabbed(box), Composed(box.size(), pieces));
  QVERIFY(Ink(Composed(box.size(), pieces)).isValid());
}

void MessageBoxTest::onlyQuestionsHaveButtons() {
  const bool has[] = {false, true, true, true, true, false};
  for (int type = 0; type < 6; ++type) QCOMPARE(Show(type, 0, 0, "one").HasButtons(), has[type]);
}

void MessageBoxTest::aLineThatIsTooWideIsDrawnNarrower() {
  QString text;
  QFont font;
  font.setPixelSize(24);
  while (QFontMetrics(font).horizontalAdvance(text) <= 350) text += QStringLiteral(u"가");
  Show(0, 0, 0, text.chopped(1));
  QCOMPARE(Line(text.chopped(1))->font().stretch(), 100);
  Show(0, 0, 0, text);
  QVERIFY(Line(text)->font().stretch() < 100);
  LinesAreWhole(*mBox);
  Show(0, 0, 0, text + text);
  QCOMPARE(Line(text + text)->font().stretch(), 88);
}

void MessageBoxTest::everyMessageIsShownWhole_data() {
  QTest::addColumn<int>("id");
  QTest::addColumn<int>("value");
  for (int id = 0; id < 134; ++id) QTest::addRow("%d", id) << id << 0;
  for (int id : {11, 12}) QTest::addRow("%d of 200", id) << id << 200;
  for (int code = 1; code < 20; ++code) QTest::addRow("hardware error %d", code) << 93 << code;
  for (int code : {255, INT_MAX}) QTest::addRow("hardware error %d", code) << 93 << code;
  QTest::newRow("voltage measured") << 112 << 1;
  for (int reason : {5, 7}) QTest::addRow("format for reason %d", reason) << 114 << reason;
}

void MessageBoxTest::everyMessageIsShownWhole() {
  QFETCH(int, id);
  QFETCH(int, value);
  int type = -1, error = 0, breaks = 0, align = 0, px = 0;
  const QString text = GetMessageBoxString(id, &type, &error, &breaks, &align, &px, value);
  if (text.isEmpty()) return;  // nothing is shown for it
  Show(type, error, breaks, text, align, px);
  QCOMPARE(Lines().join(u'_'), text);
  LinesAreWhole(*mBox);
}

QTEST_MAIN(MessageBoxTest)
#include "messagebox_test.moc"
