// The gallery of every screen: made when it is asked for, beside everything else, and gone with the bench.
#include "bench/supervise/screengallery.h"
#include "tests/system/benchrun.h"

class GalleryTest : public QObject {
  Q_OBJECT

private:
  QTemporaryDir mFolder;

  // What stands for the program: it gets "--pictures" and the folder.
  QString Program(const QByteArray& script) const {
    QFile file(mFolder.filePath(QStringLiteral("program")));
    if (!file.open(QIODevice::WriteOnly)) qFatal("cannot write");
    file.write("#!/bin/sh\ncd \"$2\"\n" + script);
    file.setPermissions(QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    return file.fileName();
  }
  QString Folder() const { return mFolder.filePath(QStringLiteral("gallery")); }
  bool Has(const char* file) const { return QFile::exists(Folder() + QLatin1String(file)); }

private slots:
  void init() { QDir(Folder()).removeRecursively(); }

  void itTellsHowFarItIs() {
    ScreenGallery gallery(
        Program("echo picture a; echo no news; echo picture en/a; touch \"$TMPDIR/left\"\n"
                "while ! [ -e go ]; do sleep 0.02; done\n"
                "mkdir en; printf A >a.png; printf B >en/a.png; printf '<img src=\"a.png\">' >index.html"),
        Folder());
    QVERIFY(gallery.State().isNull());
    QVERIFY(gallery.Page().isEmpty());
    QString error;
    QVERIFY(gallery.Start(&error));
    QTRY_COMPARE(gallery.State()["done"].toInt(), 2);
    QTRY_VERIFY(Has("/tmp/left"));
    QVERIFY(gallery.Page().isEmpty());
    QVERIFY(gallery.Start(&error));  // it runs: no second one
    QFile(Folder() + "/go").open(QIODevice::WriteOnly);
    QTRY_COMPARE(gallery.State(), QJsonValue(QJsonObject{{"ready", true}}));
    QVERIFY(!Has("/tmp"));
    QCOMPARE(gallery.Page(), QByteArray("<img src=\"gallery/a.png\">"));
    QVERIFY(gallery.Start(&error));  // nor when it is ready
    QCOMPARE(gallery.State(), QJsonValue(QJsonObject{{"ready", true}}));

    QCOMPARE(gallery.Picture("a.png"), QByteArray("A"));
    QCOMPARE(gallery.Picture("en/a.png"), QByteArray("B"));
    for (const char* other : {"", "b.png", "en", "index.html", "./a.png", "en/../a.png", "/a.png", "../program"})
      QVERIFY2(gallery.Picture(other).isEmpty(), other);
    gallery.Stop();
    QVERIFY(!QFile::exists(Folder()));
    QVERIFY(gallery.State().isNull());
  }
  void whatFailsIsToldAndCanBeTriedAgain() {
    ScreenGallery gallery(Program("echo no font >&2; exit 1"), Folder());
    QSignalSpy failed(&gallery, &ScreenGallery::Failed);
    QString error;
    for (int i = 1; i <= 2; ++i) {
      QVERIFY(gallery.Start(&error));
      QTRY_COMPARE(failed.size(), i);
      QCOMPARE(failed.last().first().toString(), QStringLiteral("The gallery cannot be made: exit code 1 no font"));
      QVERIFY(gallery.State().isNull());
    }
  }
  void withoutTheProgramItIsRefused() {
    ScreenGallery gallery(QStringLiteral("/there/is/none"), Folder());
    QString error;
    QVERIFY(!gallery.Start(&error));
    QCOMPARE(error, QStringLiteral("The program dashcam-tour, which takes the pictures, is not there."));
    QVERIFY(gallery.State().isNull());
  }
  void aRunningOneEndsWithItsOwner() {
    QString error;
    {
      ScreenGallery gallery(Program("echo $$ >pid; exec sleep 100"), Folder());
      QVERIFY(gallery.Start(&error));
      QTRY_VERIFY(Has("/pid"));
    }
    QVERIFY(!QFile::exists(Folder()));
  }

  void theBenchServesIt() {
    BenchRun bench({"--root", mFolder.filePath("root")});
    QVERIFY(bench.IsUp());
    QVERIFY(bench.State("gallery").isNull());
    QVERIFY(bench.Get("/gallery").body.contains("<button>"));
    QCOMPARE(bench.Get("/gallery/preview.png").status, 404);
    QCOMPARE(bench.Post("/api/gallery", "{}").status, 400);
    QCOMPARE(bench.Post("/api/gallery", "").status, 200);
    QTRY_VERIFY_WITH_TIMEOUT(bench.State("gallery/done").toInt() > 0, 30000);
    QCOMPARE(bench.Post("/api/gallery", "").status, 200);
    QTRY_VERIFY_WITH_TIMEOUT(bench.State("gallery/ready").toBool(), 240000);
    const QByteArray page = bench.Get("/gallery").body;
    QVERIFY(page.contains("<h2 id=\"PREVIEW\">"));
    QVERIFY(page.contains("<img src=\"gallery/preview.png\""));
    QVERIFY(page.contains("<img src=\"gallery/en/main-menu.png\""));
    for (const char* picture : {"/gallery/preview.png", "/gallery/en/main-menu.png", "/gallery/box-077.png"}) {
      const BenchAnswer answer = bench.Get(picture);
      QCOMPARE(answer.Header("Content-Type"), QByteArray("image/png"));
      QCOMPARE(QImage::fromData(answer.body).size(), QSize(480, 320));
    }
    for (const char* other : {"/gallery/", "/gallery/index.html", "/gallery/../run/clock", "/gallery/..%2Fclock",
                              "/gallery/en/%2e%2e/%2e%2e/clock", "/gallery//etc/passwd"})
      QVERIFY2(bench.Get(other).status == 404 || bench.Get(other).status == 400, other);
    QVERIFY(QFile::exists(bench.Root() + "/run/gallery/preview.png"));
    bench.Process().terminate();
    QVERIFY(bench.Process().waitForFinished(10000));
    QVERIFY(!QFile::exists(mFolder.filePath("root/run/gallery")));
  }
  void aBenchThatIsKilledTakesItAlong() {
    BenchRun bench({"--root", mFolder.filePath("root")});
    QVERIFY(bench.IsUp());
    QCOMPARE(bench.Post("/api/gallery", "").status, 200);
    QTRY_VERIFY_WITH_TIMEOUT(bench.State("gallery/done").toInt() > 0, 30000);
    bench.Process().kill();
    QTRY_VERIFY_WITH_TIMEOUT(!QFile::exists(mFolder.filePath("root/run/gallery")), 10000);
  }
};

QTEST_GUILESS_MAIN(GalleryTest)
#include "gallery_test.moc"
