#include "gui/recordings/recordingfileitem.h"

#include <QLabel>
#include <QTest>

#include "gui/settings/config.h"
#include "tests/fake/testroot.h"

static TestRoot root;

class RecordingFileItemTest : public QObject {
  Q_OBJECT

private slots:
  void init() { GetConfig(); }

  void aRowHasTheConfiguredLook() {
    gFont.Size.List = 15;
    gColor.PreviewText = {64, 200, 224};
    const RecordingFileItem row(nullptr);
    const auto* label = row.findChild<QLabel*>(QStringLiteral("mFileNameLabel"));
    QVERIFY(label);
    QCOMPARE(label->font().pixelSize(), 15);
    QCOMPARE(label->palette().color(QPalette::WindowText), QColor(64, 200, 224));
  }
  void usuallyItIsWhite() {
    const RecordingFileItem row(nullptr);
    const auto* label = row.findChild<QLabel*>(QStringLiteral("mFileNameLabel"));
    QCOMPARE(label->font().pixelSize(), 18);
    QCOMPARE(label->palette().color(QPalette::WindowText), QColor(Qt::white));
  }
};

QTEST_MAIN(RecordingFileItemTest)
#include "recordingfileitem_test.moc"
