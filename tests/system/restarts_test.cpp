// What restarts the device: an update of the firmware, and a picture of the driver's.
#include <QFileInfo>

#include "tests/system/recorderfixture.h"

namespace {
constexpr char kPicture[] = "/mnt/mmc/Setup/picture.bmp";
constexpr char kCopy[] = "/tmp/picture.bmp";
}  // namespace

class RestartsTest : public RecorderFixture {
  Q_OBJECT

  int mEnds = 0;
  QStringList mShown;  // on the LCD, each change; the files' names

  void StartWatched() {
    Recorder::Delays delays = Quick();
    delays.update = 5;
    Start(delays);
    mEnds = 0;
    mShown.clear();
    connect(mRecorder.get(), &Recorder::InterfaceEndWanted, this, [this] { ++mEnds; });
    connect(mRecorder.get(), &Recorder::VideoChanged, this, [this] {
      QStringList names;
      for (const QString& file : mRecorder->Video().update) names << QFileInfo(file).baseName();
      if (mShown.isEmpty() || mShown.last() != names.join(u'+')) mShown << names.join(u'+');
    });
  }

private slots:
  void initTestCase() { QVERIFY(keyIsSet); }
  void init() { Prepare(); }
  void cleanup() { mRecorder.reset(); }
  void cleanupTestCase() { Recorder::RemoveTransport(); }

  void anUpdateShowsItsPhasesAndRestartsTheDevice_data() {
    QTest::addColumn<QString>("file");
    for (const char* file : {"update.zel", "update.zel2"}) QTest::newRow(file) << QString::fromLatin1(file);
  }
  void anUpdateShowsItsPhasesAndRestartsTheDevice() {
    QFETCH(QString, file);
    StartWatched();
    QVERIFY(mRecorder->State().value("update").isNull());
    QVERIFY(Do("update", {{"file", file}}));
    QCOMPARE(mEnds, 1);
    QCOMPARE(mRecorder->State().value("update").toInt(-1), 0);
    QVERIFY(!root.Exists("/tmp/" + file));
    QTRY_COMPARE(mRestarts, 1);
    QVERIFY(root.Exists("/tmp/" + file));
    QVERIFY(mRecorder->State().value("update").isNull());
    QStringList wanted{"fwupdatestart"};
    for (int i = 0; i < 4; ++i)
      wanted << "fwupdating+bottom"
             << "fwupdating";
    QCOMPARE(mShown, wanted << "fwupdateend" << QString());
    QCOMPARE(mEnds, 1);
  }
  void oneUpdateAtATime() {
    StartWatched();
    QVERIFY(Do("update", {{"file", "update.zel"}}));
    QVERIFY(IsSentence(Refusal("update", {{"file", "update.zel2"}})));
    QTRY_COMPARE(mRestarts, 1);
    QVERIFY(!root.Exists("/tmp/update.zel2"));
    QVERIFY(Do("update", {{"file", "update.zel2"}}));
  }
  void anUpdateThatIsCutOffBringsTheInterfaceBack() {
    StartWatched();
    QVERIFY(Do("update", {{"file", "update.zel"}}));
    mRecorder.reset();
    QCOMPARE(mRestarts, 1);
    QVERIFY(!root.Exists("/tmp/update.zel"));
    StartWatched();
    mRecorder.reset();
    QCOMPARE(mRestarts, 1);
  }

  void aPictureIsPutOnTheCardAndTheDeviceRestarts() {
    Start();
    root.Write(kCopy, "the one before");
    QString error;
    QVERIFY2(mRecorder->PutOwnPicture("BM, a picture", &error), qPrintable(error));
    QCOMPARE(root.Read(kPicture), QByteArray("BM, a picture"));
    QVERIFY(!root.Exists(kCopy));
    QCOMPARE(mRestarts, 1);
    QVERIFY(IsSentence(Last("note").value("name").toString()));
    QVERIFY(mRecorder->PutOwnPicture("another", &error));
    QCOMPARE(root.Read(kPicture), QByteArray("another"));
  }
  void withoutACardThereIsNoPlaceForAPicture() {
    Start();
    QVERIFY(Do("sdOut"));
    QString error;
    QVERIFY(!mRecorder->PutOwnPicture("BM", &error));
    QVERIFY(IsSentence(error));
    QVERIFY(!root.Exists(kPicture));
    QCOMPARE(mRestarts, 0);
    QVERIFY(Do("sdIn"));
    QVERIFY(mRecorder->PutOwnPicture("BM", &error));
  }
  void aPictureThatCannotBeWrittenIsRefused() {
    Start();
    QDir(root.Path("/mnt/mmc/Setup")).removeRecursively();
    root.Write("/mnt/mmc/Setup", "no folder");
    QString error;
    QVERIFY(!mRecorder->PutOwnPicture("BM", &error));
    QVERIFY(IsSentence(error));
    QCOMPARE(mRestarts, 0);
  }
};

QTEST_GUILESS_MAIN(RestartsTest)
#include "restarts_test.moc"
