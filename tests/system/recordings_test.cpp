// The recordings on the card: how they are made, played, checked and wiped.
#include <sys/stat.h>

#include <QDateTime>
#include <QImage>
#include <QMap>
#include <QProcess>
#include <QRandomGenerator>
#include <QRegularExpression>

#include "bench/lcd/compose.h"
#include "bench/lcd/roadvideo.h"
#include "recorder/card/cardfolder.h"
#include "recorder/card/clipfacts.h"
#include "recorder/card/clipreader.h"
#include "recorder/card/clipwriter.h"
#include "recorder/card/pictureencoder.h"
#include "recorder/card/stock.h"
#include "tests/system/benchrun.h"
#include "tests/system/recorderfixture.h"

using recorder::CardFolder;
using recorder::ClipReader;
using recorder::ClipWriter;
using recorder::Label;
using recorder::PictureEncoder;

namespace {

constexpr char kCard[] = "/mnt/mmc/";
constexpr char kStops[] = "/mnt/mmc/Setup/record_stop.info";
constexpr char kFormatTime[] = "/mnt/mmc/Setup/.format_time";
const QDateTime kNoon(QDate(2026, 3, 4), QTime(12, 0));

// An AVI file of this many small pictures.
QByteArray Clip(int pictures, int rate) {
  PictureEncoder encoder(32, 16);
  ClipWriter writer(32, 16, rate);
  for (int i = 0; i < pictures; ++i)
    writer.Add(encoder.Encode({32, 16, std::vector<quint32>(32 * 16, i % 2 ? 0xFF0000 : 0x0000FF)}));
  return writer.Finish();
}

// The seconds as the interface reads them from the begin of a file: the header, then the first stream's.
qint64 SecondsInHeader(const QByteArray& file) {
  const auto word = [&file](qsizetype at) { return qFromLittleEndian<qint32>(file.constData() + at); };
  if (!file.startsWith("RIFF") || file.mid(12, 4) != "LIST") return -1;
  const qsizetype rate = 32 + qsizetype{word(28)} + 44;
  return word(rate) == 0 ? 0 : word(rate + 8) / word(rate);
}

// In the order of their changes.
QStringList Recordings() {
  return QDir(root.Path(kCard)).entryList({"rec*", "pmr*", "evt*", "ndf*"}, QDir::Files, QDir::Time | QDir::Reversed);
}

QStringList Recordings(const QString& pattern) {
  return Recordings().filter(QRegularExpression(u'^' + pattern + QStringLiteral("_\\d{8}_\\d{6}_?\\.avi$")));
}

QByteArray Recording(const QString& name) {
  return root.Read(kCard + name);
}

QByteArray TrailerOf(const QString& name) {
  return Recording(name).right(4);
}

QByteArray FlagsOf(char trigger, char cut) {
  const char bytes[] = {trigger, cut, '^', 0};
  return QByteArray(bytes, 4);
}

QByteArray PathField(const QByteArray& path) {
  return path.leftJustified(50, '\0', true);
}

}  // namespace

class RecordingsTest : public RecorderFixture {
  Q_OBJECT

private:
  int mPictures = 0;  // that the recorder took of the cameras

  // Recordings of two seconds that take no time; the card answers at once.
  static Recorder::Delays Fast() {
    Recorder::Delays delays = Quick();
    delays.picture = 2;
    delays.clip = 2000;
    delays.manualEvent = 40;
    delays.format = delays.check = 20;
    delays.playSecond = 100;
    return delays;
  }

  // Nothing is recorded by itself.
  bool Fill(int recordings) {
    return Do("sdFull", {{"recordings", recordings}}) &&
           QTest::qWaitFor([this] { return mRecorder->State()["cardWork"].isNull(); }, 60000);
  }

  static Recorder::Delays Idle() {
    Recorder::Delays delays = Fast();
    delays.picture = kHour;
    return delays;
  }

  // One recording without end; mPictures says how far it is.
  void StartLong() {
    mPictures = 0;
    mCameras = [this](int camera, qint64 ms, Picture* picture) {
      recorder::DrawStripes(camera, ms, picture);
      ++mPictures;
    };
    Recorder::Delays delays = Fast();
    delays.clip = 60000;
    Start(delays);
  }

  CardFolder Card() const { return CardFolder(root.Path(QStringLiteral("/mnt/mmc"))); }

  // A recording of the front camera, two seconds of four pictures.
  QByteArray Put(const QByteArray& bytes = Clip(8, 4)) {
    Label label;
    label.start = kNoon;
    if (bytes.isEmpty() || !Card().Write(label, 0, bytes, kNoon.toMSecsSinceEpoch())) qFatal("no card");
    return kCard + FileName(label, 0).toLatin1();
  }

  int Play(const QByteArray& path) { return Ask(SFIELD_PLAY_VIDEO, PathField(path)); }

  // The events of the player until it says how it ended.
  QList<Event> UntilItEnds() {
    const auto ended = [this] {
      for (const Event& event : Events())
        if (event.event == RECV_ZEL_STATUS_PLAY_STATUS) return true;
      return false;
    };
    return QTest::qWaitFor(ended, kPatienceMs) ? std::exchange(mEvents, {}) : QList<Event>();
  }

private slots:
  void initTestCase() { QVERIFY(keyIsSet); }
  void init() { Prepare(); }
  void cleanup() { mRecorder.reset(); }
  void cleanupTestCase() { Recorder::RemoveTransport(); }

  // ---- files

  void durationsAreThoseThatOthersRead_data() {
    QTest::addColumn<int>("rate");
    QTest::addColumn<int>("pictures");
    for (const auto& [rate, pictures] :
         QList<std::pair<int, int>>{{1, 1}, {1, 60}, {2, 5}, {4, 3}, {4, 4}, {4, 81}, {15, 44}, {30, 100}, {60, 60}})
      QTest::addRow("%d pictures, %d a second", pictures, rate) << rate << pictures;
  }
  void durationsAreThoseThatOthersRead() {
    QFETCH(int, rate);
    QFETCH(int, pictures);
    Start(Idle());
    const QByteArray path = Put(Clip(pictures, rate));
    QProcess probe;
    probe.start("ffprobe", {"-v", "error", "-of", "default=nw=1:nk=1", "-show_entries",
                            "stream=codec_name,duration,nb_frames", root.Path(QString::fromLatin1(path))});
    QVERIFY(probe.waitForFinished());
    QCOMPARE(probe.readAllStandardError(), QByteArray());
    const QByteArrayList told = probe.readAllStandardOutput().trimmed().split('\n');
    QCOMPARE(told.size(), 3);
    QCOMPARE(told[0], QByteArray("mjpeg"));
    QVERIFY(std::abs(told[1].toDouble() - double(pictures) / rate) < 0.00001);
    QCOMPARE(told[2].toInt(), pictures);
    QCOMPARE(SecondsInHeader(root.Read(QString::fromLatin1(path))), qint64(told[1].toDouble()));
    ClipReader reader;
    QCOMPARE(reader.Open(root.Path(QString::fromLatin1(path))), ClipReader::Result::Good);
    QCOMPARE(reader.Length(), qint64{pictures} * 1000 / rate);
  }

  void picturesComeBackAsTheyWere() {
    PictureEncoder encoder(240, 160);
    ClipWriter writer(240, 160, 4);
    Picture picture{240, 160, std::vector<quint32>(240 * 160)};
    for (int i = 0; i < 3; ++i) {
      recorder::DrawStripes(i % 2, i * 250, &picture);
      writer.Add(encoder.Encode(picture));
    }
    Start(Idle());
    const QByteArray path = Put(writer.Finish());
    ClipReader reader;
    QCOMPARE(reader.Open(root.Path(QString::fromLatin1(path))), ClipReader::Result::Good);
    for (int i = 0; i < 3; ++i) {
      QCOMPARE(reader.Next(), ClipReader::Result::Good);
      QCOMPARE(reader.At(), i * 250);
      QCOMPARE(reader.Until(), i * 250 + 250);
      recorder::DrawStripes(i % 2, i * 250, &picture);
      const Picture& taken = *reader.Taken();
      QCOMPARE(taken.width, 240);
      QCOMPARE(taken.height, 160);
      qint64 off = 0;
      for (size_t at = 0; at < picture.pixels.size(); ++at)
        for (int shift : {0, 8, 16})
          off += std::abs(int(taken.pixels[at] >> shift & 255) - int(picture.pixels[at] >> shift & 255));
      QVERIFY2(off < 240 * 160 * 3 * 8, qPrintable(QString::number(off)));
    }
    QCOMPARE(reader.Next(), ClipReader::Result::End);
  }

  void picturesOfAnotherSizeAreNotEncoded() {
    PictureEncoder encoder(32, 16);
    QVERIFY(encoder.Encode({16, 32, std::vector<quint32>(512)}).isEmpty());
    QVERIFY(encoder.Encode({32, 16, std::vector<quint32>(511)}).isEmpty());
    QVERIFY(!encoder.Encode({32, 16, std::vector<quint32>(512)}).isEmpty());
  }

  void namesFollowTheGrammar() {
    Label label;
    label.start = QDateTime(QDate(2023, 1, 1), QTime(12, 34, 56));
    QCOMPARE(FileName(label, 0), QString("rec0_20230101_123456.avi"));
    label.kind = Label::Kind::Parking;
    label.clockBroken = true;
    QCOMPARE(FileName(label, 1), QString("pmr1_20230101_123456_.avi"));
    label.kind = Label::Kind::Event;
    QCOMPARE(FileName(label, 0).left(5), QString("evt0_"));
    label.kind = Label::Kind::Protected;
    QCOMPARE(FileName(label, 0).left(5), QString("ndf0_"));
  }

  void trailersCarryTheFlags_data() {
    QTest::addColumn<int>("trigger");
    QTest::addColumn<int>("cut");
    for (int trigger = 0; trigger <= 2; ++trigger)
      for (int cut = 0; cut <= 2; ++cut) QTest::addRow("%d %d", trigger, cut) << trigger << cut;
  }
  void trailersCarryTheFlags() {
    QFETCH(int, trigger);
    QFETCH(int, cut);
    Label label;
    label.trigger = Label::Trigger(trigger);
    label.cut = Label::Cut(cut);
    QCOMPARE(Trailer(label), FlagsOf(char(trigger), char(cut)));
  }

  // ---- the card as it comes

  void aNewCardHasTheRecordingsOfTheLastDays() {
    Start(Idle());
    QVERIFY(!root.Exists(kFormatTime));
    QString error;
    QVERIFY2(mRecorder->FillNewCard(&error), qPrintable(error));
    const QStringList names = Recordings();
    QCOMPARE(names.size(), 362);
    QVERIFY(Recordings("...0").size() > 26 * 5);
    QVERIFY(Recordings("...1").size() > 26 * 5);
    QMap<QString, int> kinds;
    QSet<QByteArray> trailers;
    QSet<qint64> changes;
    qint64 bytes = 0;
    int twins = 0;
    QString last;
    for (const QString& name : names) {
      ++kinds[name.left(4)];
      const QByteArray file = Recording(name);
      trailers << name.left(3).toLatin1() + file.right(4).toHex() + (name.size() == 25 ? "_" : "");
      bytes += file.size();
      const qint64 seconds = SecondsInHeader(file);
      QVERIFY2(seconds >= 1 && seconds <= 60, qPrintable(name));
      changes << QFileInfo(root.Path(kCard + name)).lastModified().toMSecsSinceEpoch();
      QString twin = name;
      twin[3] = name[3] == u'0' ? u'1' : u'0';
      twins += names.contains(twin);
      QVERIFY(name.mid(5, 15) >= last);  // the order of the changes is that of the names
      last = name.mid(5, 15);
    }
    QCOMPARE(changes.size(), names.size());
    QVERIFY(bytes < 40'000'000);
    QCOMPARE(kinds.size(), 8);
    for (int number : kinds) QVERIFY(number >= 8);
    QVERIFY(twins > 250 && twins < names.size() - 20);
    for (const char* flags :
         {"rec00005e00", "rec00005e00_", "pmr00005e00", "pmr01005e00", "pmr02005e00", "pmr00015e00", "pmr00025e00",
          "pmr02005e00_", "evt01005e00", "evt01015e00", "evt01005e00_", "ndf00005e00"})
      QVERIFY2(trailers.contains(flags), flags);
    const QByteArrayList stops = root.Read(kStops).trimmed().split('\n');
    QCOMPARE(stops.size(), 7);
    static const QRegularExpression stop("^\\d{8}_\\d{6} \\d{8}_\\d{6}$");
    for (const QByteArray& line : stops) QVERIFY(stop.match(QString::fromLatin1(line)).hasMatch());
    QVERIFY(last < recorder::TimeText(QDateTime::currentDateTime()));
    QVERIFY(root.Exists(kFormatTime));
  }

  void aCardThatWasUsedIsLeftAlone() {
    Start(Idle());
    Put();
    QString error;
    QVERIFY(mRecorder->FillNewCard(&error));
    QCOMPARE(Recordings().size(), 1);
    QCOMPARE(Ask(SFIELD_SET_SYSTEM_SD_FORMAT, 0), 0);
    QVERIFY(Comes(RECV_ZEL_STATUS_SD_FORMAT_RESULT, 1));
    QVERIFY(mRecorder->FillNewCard(&error));  // formatted and empty: so the driver wanted it
    QVERIFY(Recordings().isEmpty());
  }

  // ---- recording

  void aDrivingCarIsRecordedByBothCameras() {
    Start(Fast());
    QTRY_VERIFY(Recordings("rec0").size() >= 3);
    QCOMPARE(Ask(SFIELD_VIDEO_REC_STOP, 1), 0);
    const QStringList names = Recordings();
    QCOMPARE(Recordings("rec0").size() + Recordings("rec1").size(), names.size());
    for (qsizetype i = 0; i + 1 < names.size(); i += 2) {
      QCOMPARE(names[i].mid(4), names[i + 1].mid(4));  // twins, the front camera's first
      QCOMPARE(names[i][3], u'0');
      if (i > 0) QVERIFY(names[i - 1].mid(4) < names[i].mid(4));
    }
    QCOMPARE(SecondsInHeader(Recording(names[0])), 2);
    QCOMPARE(TrailerOf(names[0]), FlagsOf(0, 0));
    ClipReader reader;
    QCOMPARE(reader.Open(root.Path(kCard + names[0])), ClipReader::Result::Good);
    QCOMPARE(reader.Next(), ClipReader::Result::Good);
    QCOMPARE(reader.Taken()->width, 240);
    QCOMPARE(reader.Taken()->height, 160);
  }

  void theCamerasPicturesAreRecordedAtTheirTime() {
    QList<std::pair<int, qint64>> seen;
    mCameras = [&seen](int camera, qint64 ms, Picture* picture) {
      seen << std::pair(camera, ms);
      std::fill(picture->pixels.begin(), picture->pixels.end(), camera == 0 ? 0x00FF00U : 0x0000FFU);
    };
    const qint64 now = QDateTime::currentMSecsSinceEpoch();
    Start(Fast());
    QTRY_VERIFY(Recordings("rec1").size() >= 1);
    QVERIFY(seen.size() >= 16);
    QVERIFY(std::abs(seen[0].second - now) < 60000);
    for (int i = 0; i < 16; ++i) QCOMPARE(seen[i], std::pair(i % 2, seen[0].second + i / 2 * 250));
    QCOMPARE(recorder::TimeText(QDateTime::fromMSecsSinceEpoch(seen[0].second)), Recordings("rec1")[0].mid(5, 15));
    for (int camera : {0, 1}) {
      ClipReader reader;
      reader.Open(root.Path(kCard + Recordings(QStringLiteral("rec%1").arg(camera))[0]));
      QCOMPARE(reader.Next(), ClipReader::Result::Good);
      const QRgb top = reader.Taken()->pixels[120];
      QVERIFY(camera == 0 ? qGreen(top) > 200 && qBlue(top) < 50 : qBlue(top) > 200 && qGreen(top) < 50);
      const auto row = reader.Taken()->pixels.begin() + 240 * 150;  // the time is written over it
      QVERIFY(std::any_of(row, row + 150, [](QRgb pixel) { return qRed(pixel) > 150; }));
    }
  }

  void aRecordingIsOnTheCardOnlyWhenItIsWhole() {
    StartLong();
    QTRY_VERIFY(mPictures > 20);
    QVERIFY(QDir(root.Path(kCard)).entryList(QDir::Files | QDir::Hidden).isEmpty());
    QCOMPARE(Ask(SFIELD_VIDEO_REC_STOP, 1), 0);
    QCOMPARE(Recordings().size(), 2);
    QVERIFY(SecondsInHeader(Recording(Recordings()[0])) >= 1);
    QVERIFY(QDir(root.Path(kCard)).entryList(QDir::Files | QDir::Hidden) ==
            QDir(root.Path(kCard)).entryList(QDir::Files));
  }

  void aRecordingThatWasUnderWayIsKeptWhenTheRecorderEnds() {
    StartLong();
    QTRY_VERIFY(mPictures > 20);
    mRecorder.reset();
    QCOMPARE(Recordings("rec.").size(), 2);
    for (const QString& name : Recordings()) QVERIFY(SecondsInHeader(Recording(name)) >= 2);
  }

  void withoutTheRearCameraThereIsOnlyOneRecording() {
    Start(Fast());
    QVERIFY(Do("rearUnplug"));
    QTRY_VERIFY(Recordings("rec0").size() >= 3);
    QVERIFY(Recordings("rec1").size() <= 1);
  }

  void anImpactWhileDrivingIsAnEvent() {
    Start(Fast());
    QVERIFY(Do("shock"));
    QTRY_COMPARE(Recordings("evt0").size(), 1);
    QTRY_COMPARE(Recordings("evt1").size(), 1);
    QCOMPARE(TrailerOf(Recordings("evt0")[0]), FlagsOf(1, 0));
    QCOMPARE(SecondsInHeader(Recording(Recordings("evt0")[0])), 1);
    QTRY_VERIFY(!Recordings("rec0").isEmpty());
    QVERIFY(Do("parkIn"));
    QVERIFY(IsSentence(Refusal("shock")));
  }

  void theDetectKeyProtectsARecording() {
    Recorder::Delays delays = Fast();
    delays.manualEvent = 1000;  // long enough for a picture on a busy machine
    Start(delays);
    QCOMPARE(Ask(SFIELD_SET_CURRENT_RECORDING_FILE_DETECT, 0), 0);
    QTRY_COMPARE(Recordings("ndf0").size(), 1);
    QTRY_COMPARE(Recordings("ndf1").size(), 1);
    QCOMPARE(TrailerOf(Recordings("ndf1")[0]), FlagsOf(0, 0));
    QTRY_VERIFY(!Recordings("rec0").isEmpty());
  }

  void aParkedCarIsRecordedWithWhatHappened() {
    Start(Fast());
    QVERIFY(Do("parkIn"));
    const qsizetype driven = Recordings("rec.").size();
    QTRY_VERIFY(!Recordings("pmr0").isEmpty());
    QCOMPARE(TrailerOf(Recordings("pmr0")[0]), FlagsOf(0, 0));
    const auto has = [](const QByteArray& flags) {
      const QStringList names = Recordings("pmr0");
      return std::any_of(names.begin(), names.end(), [&](const QString& name) { return TrailerOf(name) == flags; });
    };
    QVERIFY(Do("impact"));
    QTRY_VERIFY(has(FlagsOf(1, 0)));
    QVERIFY(Do("motion"));
    QTRY_VERIFY(has(FlagsOf(2, 0)));
    QVERIFY(Do("parkOut"));
    QTRY_VERIFY(Recordings("rec.").size() > driven);
    QVERIFY(Recordings("evt.").isEmpty());
  }

  // Long recordings, so that the one that is spoiled is known.
  void voltageAndHeatSpoilTheRecordingUnderWay_data() {
    QTest::addColumn<QByteArray>("flags");
    QTest::newRow("underVoltage") << FlagsOf(1, 1);
    QTest::newRow("overTemperature") << FlagsOf(1, 2);
    QTest::newRow("parkLowVoltage") << FlagsOf(1, 1);
  }
  void voltageAndHeatSpoilTheRecordingUnderWay() {
    QFETCH(QByteArray, flags);
    StartLong();
    QVERIFY(Do("parkIn") && Do("impact"));
    mPictures = 0;
    QTRY_VERIFY(mPictures > 20);
    QVERIFY(Do(QTest::currentDataTag()));
    QCOMPARE(Ask(SFIELD_VIDEO_REC_STOP, 1), 0);
    QCOMPARE(TrailerOf(Recordings("pmr0")[0]), flags);
    QCOMPARE(TrailerOf(Recordings("pmr1")[0]), flags);
  }

  void whatHappenedEarlierIsOnTheCardAtOnce() {
    Start(Idle());
    QVERIFY(Do("parkIn", {{"minutesAgo", 600}}));
    QVERIFY(Do("impact", {{"minutesAgo", 60}}) && Do("motion", {{"minutesAgo", 90}}));
    QCOMPARE(Recordings("pmr0").size(), 2);
    QCOMPARE(Recordings("pmr1").size(), 2);
    const QString motion = Recordings("pmr0")[0], impact = Recordings("pmr0")[1];
    QCOMPARE(TrailerOf(motion), FlagsOf(2, 0));
    QCOMPARE(TrailerOf(impact), FlagsOf(1, 0));
    const QDateTime start = QDateTime::fromString(impact.mid(5, 15), "yyyyMMdd_HHmmss");
    QVERIFY(std::abs(start.secsTo(QDateTime::currentDateTime()) - 3600) < 30);
    QCOMPARE(start.secsTo(QFileInfo(root.Path(kCard + impact)).lastModified()), 5);
    QCOMPARE(SecondsInHeader(Recording(impact)), 5);
  }

  void whileTheClockIsBrokenTheNamesSayIt() {
    Start(Fast());
    QVERIFY(Do("clockBroken"));
    QTRY_VERIFY(Recordings().filter("_.avi").size() >= 2);
    QByteArray block(129, '\0');
    block[19] = static_cast<char>(200);
    block[20] = 1;  // the clock is set
    QCOMPARE(Ask(SFIELD_SET_SETUP_COMPLETE, block), 0);
    const qsizetype number = Recordings().filter("_.avi").size();
    QTRY_VERIFY(Recordings().size() >= number + 8);
    QVERIFY(Recordings().filter("_.avi").size() <= number + 2);
  }

  void whileTimeRunsFasterSoDoTheRecordings() {
    mPictures = 0;
    mCameras = [this](int camera, qint64 ms, Picture* picture) {
      recorder::DrawStripes(camera, ms, picture);
      ++mPictures;
    };
    Recorder::Delays delays = Idle();
    delays.picture = 250;
    delays.clip = 5000;
    Start(delays);
    QVERIFY(Do("timeSpeed", {{"speed", "60"}}));
    QTRY_VERIFY_WITH_TIMEOUT(Recordings().filter("rec0").size() >= 9, 4000);  // 15 s in each quarter of a second
    QVERIFY(mPictures < 60);                                                  // of 180 and more: the others repeat
    QStringList names = Recordings().filter("rec0");
    names.sort();
    for (qsizetype i = 1; i < names.size(); ++i) {
      const QDateTime one = recorder::TimeOf(names[i - 1].mid(5, 15)), next = recorder::TimeOf(names[i].mid(5, 15));
      QVERIFY2(one.secsTo(next) >= 5, qPrintable(names[i]));  // later when the machine is busy: none overlap
      QCOMPARE(recorder::ClipFacts::Of(Card(), names[i]).ms, 5000);
    }
  }

  void aRecordingByHandIsWholeWhileTimeRunsFaster() {
    Recorder::Delays delays = Idle();
    delays.picture = 50;
    delays.manualEvent = 10000;
    Start(delays);
    QVERIFY(Do("timeSpeed", {{"speed", "60"}}));
    QCOMPARE(Ask(SFIELD_SET_CURRENT_RECORDING_FILE_DETECT, 0), 0);
    QTRY_COMPARE_WITH_TIMEOUT(Recordings().filter("ndf0").size(), 1, 3000);
    QCOMPARE(recorder::ClipFacts::Of(Card(), Recordings().filter("ndf0").first()).ms, 10000);
    QTRY_VERIFY_WITH_TIMEOUT(!mRecorder->State()["manualEvent"].toBool(), 3000);
  }

  void whatTimePassedWouldHaveBroughtIsRecorded() {
    Recorder::Delays delays = Idle();
    delays.clip = 20000;
    Start(delays);
    QVERIFY(Do("parkIn"));
    const QDateTime before = QDateTime::currentDateTime();
    QVERIFY(Do("timeSkip", {{"minutes", 10}}));
    QVERIFY(mRecorder->State()["clockOffset"].toInteger() >= 600);
    QCOMPARE(Ask(SFIELD_GET_VOLTAGE, 0), 0);  // meanwhile it answers
    QTRY_COMPARE_WITH_TIMEOUT(Recordings().filter("pmr0").size(), 30, 20000);
    QTRY_COMPARE_WITH_TIMEOUT(Recordings().filter("pmr1").size(), 30, 20000);
    QStringList names = Recordings().filter("pmr0");
    names.sort();
    for (qsizetype i = 0; i < names.size(); ++i) {
      const qint64 at = before.secsTo(recorder::TimeOf(names[i].mid(5, 15)));
      QVERIFY2(std::abs(at - 20 * i) <= 3, qPrintable(names[i]));
      QCOMPARE(recorder::ClipFacts::Of(Card(), names[i]).ms, 20000);
    }
    QCOMPARE(Play(kCard + names.first().toLatin1()), 0);
    QTRY_VERIFY(mRecorder->Video().played);
  }

  void noMoreIsRecordedThanHasRoom() {
    Start(Idle());
    const QByteArray old = Put();
    QVERIFY(Do("timeSkip", {{"minutes", 30}}));
    QVERIFY(Do("timeSkip", {{"minutes", 1440}}));
    QTRY_COMPARE_WITH_TIMEOUT(Recordings().size(), 400, 60000);
    mRecorder.reset();
    QCOMPARE(Recordings().size(), 400);
    QVERIFY(!root.Read(old).size());
  }

  void whatIsNotRecordedIsNotRecordedLater() {
    Start(Idle());
    QCOMPARE(Ask(SFIELD_VIDEO_REC_STOP, 1), 0);
    QVERIFY(Do("timeSkip", {{"minutes", 60}}));
    QCOMPARE(Ask(SFIELD_VIDEO_REC_START, 0), 0);
    QCOMPARE(Recordings(), QStringList());
    const QList<QByteArray> stop = root.Read(kStops).trimmed().split(' ');
    QCOMPARE(stop.size(), 2);
    const auto time = [](const QByteArray& text) { return recorder::TimeOf(QString::fromLatin1(text)); };
    QVERIFY(time(stop[0]).secsTo(time(stop[1])) >= 3599);
    // A list that is opened is not disturbed.
    QVERIFY(Do("timeSkip", {{"minutes", 1440}}));
    QCOMPARE(Ask(SFIELD_VIDEO_REC_STOP, 1), 0);
    const QStringList names = Recordings();
    QCOMPARE(Ask(SFIELD_GET_VOLTAGE, 0), 0);
    QCOMPARE(Recordings(), names);
  }

  void stopsAreListed() {
    Start(Fast());
    QTRY_VERIFY(!Recordings().isEmpty());
    const auto lines = [] { return root.Read(kStops).count('\n'); };
    QCOMPARE(Ask(SFIELD_VIDEO_REC_START, 0), 0);  // it is on
    QCOMPARE(lines(), 0);
    QCOMPARE(Ask(SFIELD_VIDEO_REC_STOP, 1), 0);
    const QStringList names = Recordings();
    QCOMPARE(Ask(SFIELD_VIDEO_REC_STOP, 1), 0);  // it is off
    QVERIFY(!mRecorder->Video().recording);
    QCOMPARE(lines(), 0);
    QCOMPARE(Ask(SFIELD_VIDEO_REC_START, 0), 0);
    QCOMPARE(lines(), 1);
    static const QRegularExpression stop("^\\d{8}_\\d{6} \\d{8}_\\d{6}\n$");
    QVERIFY(stop.match(QString::fromLatin1(root.Read(kStops))).hasMatch());
    QTRY_VERIFY(Recordings().size() > names.size());
    QCOMPARE(Ask(SFIELD_VIDEO_REC_STOP, 3), 0);
    QCOMPARE(Ask(SFIELD_VIDEO_REC_START, 0), 0);
    QCOMPARE(lines(), 2);
  }

  void theListOfStopsIsBounded() {
    Start(Idle());
    for (int i = 0; i < 1005; ++i) QVERIFY(Card().AddStop(kNoon.addSecs(i), kNoon.addSecs(i + 1)));
    const QByteArray stops = root.Read(kStops);
    QCOMPARE(stops.count('\n'), 1000);
    QVERIFY(stops.startsWith("20260304_120005 20260304_120006\n"));
  }

  void theOldestMakeRoomButNotTheProtected() {
    Start(Idle());
    QVERIFY(Fill(400));
    const QStringList before = Recordings();
    QCOMPARE(before.size(), 400);
    mRecorder.reset();
    Start(Fast());
    QTRY_VERIFY(!Recordings().contains(before[0]) && !Recordings().contains(before[1]));
    QCOMPARE(Ask(SFIELD_VIDEO_REC_STOP, 1), 0);
    QCOMPARE(Recordings().size(), 400);
    QCOMPARE(Recordings("ndf.").size(), before.filter(QRegularExpression("^ndf")).size());
  }

  // ---- playing

  void aRecordingPlaysToItsEnd() {
    Recorder::Delays delays = Idle();
    delays.playSecond = Recorder::Delays().playSecond;
    Start(delays);
    QCOMPARE(Play(Put()), 0);
    QVERIFY(mRecorder->Video().played);
    QCOMPARE(mRecorder->Video().played->width, 32);
    QElapsedTimer clock;
    clock.start();
    QCOMPARE(UntilItEnds(), (QList<Event>{{27, 0}, {27, 1000}, {27, 2000}, {26, 4}}));
    QVERIFY(clock.elapsed() > 1500);  // in its own time
    QVERIFY(State("playback")["ended"].toBool());
    QVERIFY(mRecorder->Video().played);  // the last picture stays
    QCOMPARE(Ask(SFIELD_VIDEO_REC_START, 0), 0);
    QVERIFY(!mRecorder->Video().played);
  }

  void itsPicturesAreShown() {
    Start(Idle());
    QCOMPARE(Play(Put(Clip(8, 2))), 0);
    QCOMPARE(Ask(SFIELD_CONTROL_VIDEO, 2), 0);
    QVERIFY(qBlue(mRecorder->Video().played->pixels[0]) > 200);
    QCOMPARE(Ask(SFIELD_SET_SEEK_PLAY, 1600), 0);
    QVERIFY(qRed(mRecorder->Video().played->pixels[0]) > 200);
  }

  void pausedItStandsStill() {
    Start(Idle());
    QCOMPARE(Play(Put(Clip(40, 4))), 0);
    QCOMPARE(Ask(SFIELD_CONTROL_VIDEO, 2), 0);
    QCOMPARE(Ask(SFIELD_CONTROL_VIDEO, 2), 0);
    QVERIFY(Came(RECV_ZEL_STATUS_PLAY_CUR, 0));
    const double at = State("playback")["ms"].toDouble();
    QElapsedTimer clock;
    clock.start();
    QTRY_VERIFY(clock.elapsed() > 100);
    QCOMPARE(State("playback")["ms"].toDouble(), at);
    QCOMPARE(Ask(SFIELD_SET_SEEK_PLAY, 5600), 0);
    QCOMPARE(Events(), (QList<Event>{{27, 5500}}));  // where its picture begins
    QVERIFY(State("playback")["paused"].toBool());
    QCOMPARE(Ask(SFIELD_CONTROL_VIDEO, 1), 0);
    QCOMPARE(Ask(SFIELD_CONTROL_VIDEO, 1), 0);
    QVERIFY(Comes(RECV_ZEL_STATUS_PLAY_CUR, 6000));
  }

  void seekingGoesThereAtOnce() {
    Start(Idle());
    QCOMPARE(Play(Put(Clip(40, 4))), 0);
    QCOMPARE(Ask(SFIELD_SET_SEEK_PLAY, 9250), 0);
    QVERIFY(Came(RECV_ZEL_STATUS_PLAY_CUR, 9250));
    QCOMPARE(UntilItEnds(), (QList<Event>{{27, 10000}, {26, 4}}));
    QCOMPARE(Ask(SFIELD_SET_SEEK_PLAY, 1000), 0);  // it has ended
    QVERIFY(Events().isEmpty());
  }

  void seekingBeyondTheEndsStaysInside_data() {
    QTest::addColumn<int>("ms");
    QTest::addColumn<int>("at");
    QTest::newRow("before") << -5000 << 0;
    QTest::newRow("begin") << 0 << 0;
    QTest::newRow("end") << 10000 << 9750;
    QTest::newRow("behind") << 999999 << 9750;
    QTest::newRow("least") << std::numeric_limits<int>::min() << 0;
    QTest::newRow("most") << std::numeric_limits<int>::max() << 9750;
  }
  void seekingBeyondTheEndsStaysInside() {
    QFETCH(int, ms);
    QFETCH(int, at);
    Start(Idle());
    QCOMPARE(Play(Put(Clip(40, 4))), 0);
    QCOMPARE(Ask(SFIELD_CONTROL_VIDEO, 2), 0);
    mEvents = {};
    Events().clear();
    QCOMPARE(Ask(SFIELD_SET_SEEK_PLAY, ms), 0);
    QCOMPARE(Events(), (QList<Event>{{27, at}}));
  }

  void stoppedItIsGone() {
    Start(Idle());
    QCOMPARE(Play(Put()), 0);
    QCOMPARE(Ask(SFIELD_CONTROL_VIDEO, 0), 0);
    QVERIFY(!mRecorder->Video().played);
    QVERIFY(State("playback").isEmpty());
    Events().clear();
    for (int control : {0, 1, 2}) QCOMPARE(Ask(SFIELD_CONTROL_VIDEO, control), 0);
    QCOMPARE(Ask(SFIELD_SET_SEEK_PLAY, 100), 0);
    for (int control : {-1, 3}) QVERIFY(Ask(SFIELD_CONTROL_VIDEO, control) < 0);
    QVERIFY(Events().isEmpty());
  }

  void anotherRecordingTakesItsPlace() {
    Start(Idle());
    const QByteArray path = Put();
    QCOMPARE(Play(path), 0);
    QCOMPARE(Ask(SFIELD_CONTROL_VIDEO, 2), 0);
    QCOMPARE(Play(path), 0);
    QVERIFY(!State("playback")["paused"].toBool());
    QCOMPARE(UntilItEnds(), (QList<Event>{{27, 0}, {27, 0}, {27, 1000}, {27, 2000}, {26, 4}}));
  }

  void theEventsOfTheSecondsDoNotDependOnTheRate() {
    Start(Idle());
    QCOMPARE(Play(Put(Clip(28, 24))), 0);
    QCOMPARE(UntilItEnds(), (QList<Event>{{27, 0}, {27, 1000}, {27, 1166}, {26, 4}}));
  }

  void whatCannotBeOpenedFails_data() {
    QTest::addColumn<QByteArray>("path");
    for (const char* path : {"", "/", "/mnt/mmc", "/mnt/mmc/", "/mnt/mmc/..", "/mnt/mmc/.", "/mnt/mmc/Setup",
                             "/mnt/mmc/../../secret.avi", "/mnt/mmc/Setup/../../../secret.avi", "/secret.avi",
                             "/mnt/mmc//secret.avi", "/mnt/mmc/link.avi", "/mnt/mmc/pipe.avi",
                             "/mnt/mmc/rec0_20260304_120001.avi", "rec0_20260304_120000.avi", "http://127.0.0.1/a.avi"})
      QTest::newRow(*path ? path : "nothing") << QByteArray(path);
  }
  void whatCannotBeOpenedFails() {
    QFETCH(QByteArray, path);
    Start(Idle());
    Put();
    root.Write("/secret.avi", Clip(8, 4));
    QFile::link(root.Path("/secret.avi"), root.Path("/mnt/mmc/link.avi"));
    QCOMPARE(mkfifo(qPrintable(root.Path("/mnt/mmc/pipe.avi")), 0600), 0);
    QCOMPARE(Play(path), 0);
    QCOMPARE(UntilItEnds(), (QList<Event>{{26, 2}}));
    QVERIFY(!mRecorder->Video().played);
  }

  void whatIsNoRecordingFails_data() {
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<int>("status");
    const QByteArray clip = Clip(8, 4);
    const auto changed = [&clip](qsizetype at, const QByteArray& bytes) {
      QByteArray other = clip;
      return other.replace(at, bytes.size(), bytes);
    };
    QTest::newRow("text") << QByteArray("This is no recording.\n").repeated(50) << 3;
    QTest::newRow("zeros") << QByteArray(100000, '\0') << 3;
    QTest::newRow("header only") << clip.left(200) << 3;
    QTest::newRow("another form") << changed(8, "WAVE") << 3;
    QTest::newRow("another codec") << QByteArray(clip).replace("MJPG", "XVID") << 1;
    QTest::newRow("a sound") << changed(clip.indexOf("vids"), "auds") << 1;
    QTest::newRow("too wide") << changed(clip.indexOf("strf") + 12, QByteArray("\0\xFF\xFF\0", 4)) << 1;
    QTest::newRow("too fast") << changed(clip.indexOf("vids") + 24, QByteArray("\xFF\xFF\xFF\x7F", 4)) << 1;
  }
  void whatIsNoRecordingFails() {
    QFETCH(QByteArray, bytes);
    QFETCH(int, status);
    Start(Idle());
    QCOMPARE(Play(Put(bytes)), 0);
    QCOMPARE(UntilItEnds(), (QList<Event>{{26, status}}));
    QVERIFY(!mRecorder->Video().played);
  }

  void aRecordingThatIsCutOffPlaysAsFarAsItGoes() {
    Start(Idle());
    const QByteArray clip = Clip(8, 4);
    QCOMPARE(Play(Put(clip.left(clip.indexOf("movi") + 4 + 3 * (clip.size() - 2000) / 8))), 0);
    const QList<Event> events = UntilItEnds();
    QVERIFY(events.size() >= 2);
    QCOMPARE(events.first(), (Event{27, 0}));
    QCOMPARE(events.last(), (Event{26, 3}));
  }

  void aPictureThatIsDamagedEndsIt() {
    Start(Idle());
    QByteArray clip = Clip(8, 4);
    qsizetype second = clip.indexOf("00dc", clip.indexOf("movi"));
    second = clip.indexOf("00dc", second + 4) + 8;
    QCOMPARE(Play(Put(clip.replace(second, 100, QByteArray(100, '#')))), 0);
    QCOMPARE(UntilItEnds(), (QList<Event>{{27, 0}, {26, 3}}));
  }

  void aHugeFileIsNotRead() {
    Start(Idle());
    const QByteArray path = Put();
    QVERIFY(QFile::resize(root.Path(QString::fromLatin1(path)), qint64{1} << 33));
    QCOMPARE(Play(path), 0);
    QCOMPARE(UntilItEnds(), (QList<Event>{{26, 1}}));
  }

  // Whatever the bytes: it ends, and soon.
  void damagedFilesHarmNobody() {
    Start(Idle());
    const QByteArray clip = Clip(12, 4);
    QRandomGenerator random(4711);
    int opened = 0;
    for (int i = 0; i < 400; ++i) {
      QByteArray bytes = clip;
      const qsizetype within = i % 2 ? 400 : bytes.size();
      for (int n = random.bounded(1, 12); n > 0; --n)
        bytes[random.bounded(within)] = static_cast<char>(random.bounded(256));
      if (i % 5 == 0) bytes.truncate(random.bounded(bytes.size()));
      root.Write("/damaged.avi", bytes);
      ClipReader reader;
      if (reader.Open(root.Path("/damaged.avi")) != ClipReader::Result::Good) continue;
      ++opened;
      int pictures = 0;
      while (pictures < 10000 && reader.Next() == ClipReader::Result::Good) ++pictures;
      QVERIFY(pictures < 10000);
      reader.Seek(1500);
      reader.Next();
      QVERIFY(reader.At() >= 0 && reader.Until() > reader.At() - 1);
    }
    QVERIFY(opened > 50);
  }

  void playingEndsWhenTheCardIsTakenOut() {
    Start(Idle());
    QCOMPARE(Play(Put(Clip(40, 4))), 0);
    QVERIFY(Do("sdOut"));
    QCOMPARE(UntilItEnds().last(), (Event{26, 3}));
  }

  // ---- the card

  void aFormatRemovesAllRecordings() {
    Start(Idle());
    Put();
    QVERIFY(Card().AddStop(kNoon, kNoon));
    root.Write("/mnt/mmc/Setup/other.txt", "mine");
    QCOMPARE(Ask(SFIELD_VIDEO_REC_STOP, 3), 0);
    QVERIFY(Comes(RECV_ZEL_STATUS_VOICE_PLAY_END, 0));
    QCOMPARE(Ask(SFIELD_SET_SYSTEM_SD_FORMAT, 0), 0);
    QCOMPARE(Recordings().size(), 1);
    QVERIFY(Play(Put()) == 0 && Came(RECV_ZEL_STATUS_PLAY_STATUS, 1));  // not while it is formatted
    QVERIFY(Comes(RECV_ZEL_STATUS_SD_FORMAT_RESULT, 1));
    QVERIFY(Recordings().isEmpty());
    QVERIFY(!root.Exists(kStops));
    QVERIFY(root.Exists(kFormatTime));
    QVERIFY(root.Exists("/mnt/mmc/Setup/other.txt"));
    QCOMPARE(Ask(SFIELD_VIDEO_REC_START, 0), 0);
    QVERIFY(!root.Exists(kStops));  // the new card knows of no stop
  }

  void theFormatTimeIsTheLastOne() {
    Start(Idle());
    root.Write(kFormatTime, "");
    struct stat before {
    }, after{};
    QCOMPARE(stat(qPrintable(root.Path(kFormatTime)), &before), 0);
    QCOMPARE(Ask(SFIELD_SET_SYSTEM_SD_FORMAT, 0), 0);
    QCOMPARE(Ask(SFIELD_SET_SYSTEM_SD_FORMAT, 0), 0);  // one is under way
    QVERIFY(Comes(RECV_ZEL_STATUS_SD_FORMAT_RESULT, 1));
    QCOMPARE(stat(qPrintable(root.Path(kFormatTime)), &after), 0);
    QVERIFY(std::pair(after.st_ctim.tv_sec, after.st_ctim.tv_nsec) >
            std::pair(before.st_ctim.tv_sec, before.st_ctim.tv_nsec));
    QVERIFY(Events().isEmpty());
  }

  void aFormatThatFailsLeavesTheRecordings() {
    Start(Idle());
    Put();
    QVERIFY(Do("sdFormatFails"));
    QCOMPARE(Ask(SFIELD_SET_SYSTEM_SD_FORMAT, 0), 0);
    QVERIFY(Comes(RECV_ZEL_STATUS_SD_FORMAT_RESULT, 0));
    QCOMPARE(Recordings().size(), 1);
    QVERIFY(!root.Exists(kFormatTime));
    QCOMPARE(Ask(SFIELD_SET_SYSTEM_SD_FORMAT, 0), 0);  // the one after it
    QVERIFY(Comes(RECV_ZEL_STATUS_SD_FORMAT_RESULT, 1));
    QVERIFY(Do("sdFormatFails", {{"number", 2}}) && Do("sdFormatFails", {{"number", 0}}));
    QCOMPARE(Ask(SFIELD_SET_SYSTEM_SD_FORMAT, 0), 0);
    QVERIFY(Comes(RECV_ZEL_STATUS_SD_FORMAT_RESULT, 1));
    QVERIFY(Do("sdOut"));
    QCOMPARE(Ask(SFIELD_SET_SYSTEM_SD_FORMAT, 0), 0);
    QVERIFY(Comes(RECV_ZEL_STATUS_SD_FORMAT_RESULT, 0));
  }

  void aFormatMendsTheCard() {
    Start(Idle());
    for (const auto& [action, after] : {std::pair("sdFormatNeeded", "good"), std::pair("sdWorn", "worn")}) {
      QVERIFY(Do(action));
      QCOMPARE(Ask(SFIELD_SET_SYSTEM_SD_FORMAT, 0), 0);
      QVERIFY(Comes(RECV_ZEL_STATUS_SD_FORMAT_RESULT, 1));
      QCOMPARE(mRecorder->State()["card"].toString(), QString(after));
    }
  }

  void aCheckTellsTheFault_data() {
    QTest::addColumn<int>("fault");
    for (int fault : {0, 1, 5, 7}) QTest::addRow("%d", fault) << fault;
  }
  void aCheckTellsTheFault() {
    QFETCH(int, fault);
    Start(Idle());
    QVERIFY(Do("sdCheckFinds", {{"fault", QString::number(fault)}}));
    QCOMPARE(Ask(SFIELD_SET_USER_SDCHECK, 0), 0);
    QVERIFY(Events().isEmpty());
    QVERIFY(Comes(RECV_ZEL_STATUS_SD_CHECK, fault));
    QCOMPARE(Ask(SFIELD_SET_USER_SDCHECK, 0), 0);  // only the next one
    QVERIFY(Comes(RECV_ZEL_STATUS_SD_CHECK, 0));
  }

  void aCheckWithoutACardFindsAFault() {
    Start(Idle());
    QVERIFY(Do("sdOut"));
    QCOMPARE(Ask(SFIELD_SET_USER_SDCHECK, 0), 0);
    QVERIFY(Comes(RECV_ZEL_STATUS_SD_CHECK, 1));
  }

  // The interface waits for it without end.
  void anAnswerOfTheCardIsNotLost() {
    Start(Idle());
    QCOMPARE(Ask(SFIELD_SET_SYSTEM_SD_FORMAT, 0), 0);
    QCOMPARE(Ask(SFIELD_SET_USER_SDCHECK, 0), 0);
    while (mRecorder->SendStatus(RECV_ZEL_STATUS_SPEED, 1)) continue;
    QTRY_VERIFY(Last("event")["event"].toInt() != RECV_ZEL_STATUS_SPEED);
    QVERIFY(Comes(RECV_ZEL_STATUS_SD_FORMAT_RESULT, 1));
    QVERIFY(Comes(RECV_ZEL_STATUS_SD_CHECK, 0));
  }

  void aFormatIsToldBeforeTheRecorderEnds() {
    Recorder::Delays delays = Idle();
    delays.format = delays.check = kHour;
    Start(delays);
    QCOMPARE(Ask(SFIELD_SET_SYSTEM_SD_FORMAT, 0), 0);
    QCOMPARE(Ask(SFIELD_SET_USER_SDCHECK, 0), 0);
    mRecorder.reset();
    QCOMPARE(Events(), (QList<Event>{{22, 1}, {36, 0}}));
  }

  void takenOutTheCardHasNoFiles() {
    Start(Fast());
    Put();
    QVERIFY(Card().AddStop(kNoon, kNoon));
    QVERIFY(Do("sdOut"));
    QVERIFY(!mRecorder->Video().recording);
    QVERIFY(Recordings().isEmpty() && !root.Exists(kStops));
    QVERIFY(QFileInfo(root.Path(kCard)).isDir());
    QVERIFY(Do("sdOut"));  // it is out
    QVERIFY(IsSentence(Refusal("shock")) && IsSentence(Refusal("sdFull", {{"recordings", 5}})) &&
            IsSentence(Refusal("sdCorrupt", {{"how", "cut"}})));
    QCOMPARE(Ask(SFIELD_VIDEO_REC_STOP, 1), 0);
    QCOMPARE(Ask(SFIELD_VIDEO_REC_START, 0), 0);
    QVERIFY(!root.Exists(kStops));
    QVERIFY(Do("sdIn"));
    QVERIFY(mRecorder->Video().recording);
    QVERIFY(root.Exists(kStops));
    QVERIFY(!Recordings().isEmpty());
    QTRY_VERIFY(Recordings().size() > 1);  // it records again
    QVERIFY(Do("sdIn"));                   // it is in
  }

  void aCardThatWasOutIsInWhenTheRecorderComesBack() {
    Start(Idle());
    Put();
    QVERIFY(Do("sdOut"));
    Start(Idle());
    QCOMPARE(mRecorder->State()["card"].toString(), QString("good"));
    QCOMPARE(Recordings().size(), 1);
  }

  void aFullCardHasAsManyRecordingsAsWanted() {
    Start(Idle());
    Put();
    QVERIFY(Fill(1000));
    const QStringList names = Recordings();
    QCOMPARE(names.size(), 1000);
    QCOMPARE(Recordings("...0").size(), 500);
    for (const char* kind : {"rec.", "pmr.", "evt.", "ndf."}) QVERIFY(Recordings(kind).size() > 50);
    QString last;
    for (const QString& name : names) {
      QVERIFY(name.mid(5, 15) >= last);
      last = name.mid(5, 15);
    }
    QCOMPARE(SecondsInHeader(Recording(names[0])), 1);
    QCOMPARE(Play(kCard + names[0].toLatin1()), 0);
    QCOMPARE(UntilItEnds(), (QList<Event>{{27, 0}, {27, 1000}, {26, 4}}));
    QVERIFY(Fill(1));
    QCOMPARE(Recordings().size(), 1);
  }

  // So many that it is far from its end when all of this is over.
  void whileACardIsFilledTheRecorderAnswers() {
    Start(Idle());
    Put();
    QVERIFY(Do("sdFull", {{"recordings", 50000}}));
    QCOMPARE(Recordings().size(), 1);  // not even begun
    QCOMPARE(Ask(SFIELD_SET_LCD_BRIGHT, 1), 0);
    QTRY_VERIFY(State("cardWork")["done"].toInt() > 100);
    QCOMPARE(Ask(SFIELD_SET_LCD_BRIGHT, 2), 0);
    QCOMPARE(State("cardWork")["what"].toString(), QString("fill"));
    QVERIFY(State("cardWork")["of"].toInt() > 50000 && State("cardWork")["done"].toInt() < 50000);
    QVERIFY(!mRecorder->Video().recording);
    for (const char* action : {"sdFull", "sdCorrupt", "shock"})
      QVERIFY2(mRecorder->Unavailable().contains(QLatin1String(action)), action);

    QVERIFY(Do("sdFullStop"));
    QVERIFY(mRecorder->State()["cardWork"].isNull() && mRecorder->Video().recording);
    const qsizetype there = Recordings().size();
    QVERIFY(there > 100 && there < 50000);
    QCOMPARE(Refusal("sdFullStop"), QString("The card is not being filled."));
    QTest::qWait(50);
    QCOMPARE(Recordings().size(), there);
  }

  void whileAFullCardIsFormattedTheRecorderAnswers() {
    Start(Idle());
    QVERIFY(Fill(1500));
    QCOMPARE(Ask(SFIELD_SET_SYSTEM_SD_FORMAT, 0), 0);
    bool wasEmptied = false;
    connect(mRecorder.get(), &Recorder::StateChanged, this, [this, &wasEmptied] {
      const QJsonObject work = State("cardWork");
      wasEmptied |= work["what"] == "format" && work["done"].toInt() > 0 && work["done"].toInt() < 1500;
    });
    QVERIFY(Comes(RECV_ZEL_STATUS_SD_FORMAT_RESULT, 1));
    disconnect(mRecorder.get(), &Recorder::StateChanged, this, nullptr);
    QVERIFY(wasEmptied);
    QVERIFY(Recordings().isEmpty() && root.Exists(kFormatTime));
  }

  void aFillingEndsWithItsCardAndWithItsRecorder() {
    Start(Idle());
    QVERIFY(Do("sdFull", {{"recordings", 50000}}));
    QVERIFY(Do("sdOut"));
    QVERIFY(mRecorder->State()["cardWork"].isNull());
    QVERIFY(Do("sdIn"));
    QVERIFY(Do("sdFull", {{"recordings", 50000}}));
    Start(Idle());
    QVERIFY(Recordings().size() < 50000);
    QVERIFY(mRecorder->State()["cardWork"].isNull());
    // A format that the interface wants comes first, and its end is told.
    QVERIFY(Do("sdFull", {{"recordings", 50000}}));
    QCOMPARE(Ask(SFIELD_SET_SYSTEM_SD_FORMAT, 0), 0);
    QVERIFY(Comes(RECV_ZEL_STATUS_SD_FORMAT_RESULT, 1));
    QVERIFY(Recordings().isEmpty());
  }

  void theNewestRecordingCanBeDamaged_data() {
    QTest::addColumn<QList<Event>>("events");
    QTest::newRow("cut") << QList<Event>{{27, 0}, {26, 3}};
    QTest::newRow("scribbled") << QList<Event>{{26, 3}};
  }
  void theNewestRecordingCanBeDamaged() {
    QFETCH(QList<Event>, events);
    Start(Idle());
    QVERIFY(IsSentence(Refusal("sdCorrupt", {{"how", "cut"}})));  // there is none
    Put(Clip(40, 40));
    Label newer;
    newer.start = kNoon.addSecs(60);
    for (int camera : {0, 1}) QVERIFY(Card().Write(newer, camera, Clip(40, 40), 1772625660000 + camera));
    const QString path = kCard + FileName(newer, 0);
    const QDateTime changed = QFileInfo(root.Path(path)).lastModified();
    QVERIFY(Do("sdCorrupt", {{"how", QTest::currentDataTag()}}));
    QCOMPARE(QFileInfo(root.Path(path)).lastModified(), changed);
    QCOMPARE(Play(path.toLatin1()), 0);
    QCOMPARE(UntilItEnds(), events);
    for (const QString& other : {kCard + FileName(newer, 1), kCard + QString("rec0_20260304_120000.avi")}) {
      QCOMPARE(Play(other.toLatin1()), 0);
      QCOMPARE(UntilItEnds().last(), (Event{26, 4}));
    }
  }

  // ---- the bench

  void theRoadOfTheRecordingsIsTheOneOnTheLcd() {
    const RoadVideo road;
    VideoPlane plane;
    for (const int camera : {0, 1}) {
      plane.view = camera == 0 ? VideoPlane::View::Front : VideoPlane::View::Rear;
      const QImage lcd = road.Frame(plane, 5000);
      QVERIFY(road.Camera(camera, 5000, lcd.size()) == lcd);
      const QImage small = road.Camera(camera, 5000, QSize(240, 160));
      QCOMPARE(small.size(), QSize(240, 160));
      QCOMPARE(small.format(), QImage::Format_RGB32);
      const QImage scaled = lcd.scaled(240, 160, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
      qint64 off = 0;
      for (int y = 0; y < 160; ++y)
        for (int x = 0; x < 240; ++x) off += std::abs(qGreen(small.pixel(x, y)) - qGreen(scaled.pixel(x, y)));
      QVERIFY2(off < 240 * 160 * 4, qPrintable(QString::number(off)));
    }
  }

  void aPlayedPictureFillsTheScreen() {
    Picture picture{2, 1, {0xFF0000, 0x0000FF}};
    const QImage full = FullScreen(picture);
    QCOMPARE(full.size(), QSize(480, 320));
    QCOMPARE(full.format(), QImage::Format_RGB32);
    QVERIFY(qRed(full.pixel(10, 300)) > 200 && qBlue(full.pixel(470, 10)) > 200);
  }

  void aRecordingIsSeenOnTheLcd() {
    BenchRun bench;
    QVERIFY(bench.IsUp());
    QTRY_VERIFY(!bench.Find("note", QStringLiteral("An interface has started.")).isEmpty());
    const QDir card(bench.Root() + QLatin1String(kCard));
    const QStringList fronts = card.entryList({"rec0*"}, QDir::Files, QDir::Time);
    QVERIFY(fronts.size() > 50);
    RawClient client(bench.Root());
    QVERIFY(client.IsConnected());
    QVERIFY(!bench.State("video/playing").toBool());
    QCOMPARE(client.Ask(Packet(SFIELD_VIDEO_REC_STOP, Int(1))), 0);
    QCOMPARE(client.Ask(Packet(SFIELD_PLAY_VIDEO, PathField(kCard + fronts[0].toLatin1()))), 0);
    QCOMPARE(client.Ask(Packet(SFIELD_CONTROL_VIDEO, Int(2))), 0);
    QTRY_VERIFY(bench.State("video/playing").toBool());
    QVERIFY(!bench.State("video/recording").toBool());
    const auto lcd = [&bench](const char* target) { return QImage::fromData(bench.Get(target).body); };
    ClipReader reader;
    QCOMPARE(reader.Open(card.filePath(fronts[0])), ClipReader::Result::Good);
    QCOMPARE(reader.Next(), ClipReader::Result::Good);
    QTRY_COMPARE(lcd("/api/lcd.png?raw=1").pixel(240, 160), qRgb(255, 0, 8));
    // Where the interface leaves the video to be seen, it is the paused picture.
    const QImage raw = lcd("/api/lcd.png?raw=1"), seen = lcd("/api/lcd.png");
    int places = 0;
    qint64 off = 0;
    for (int y = 8; y < 312; y += 8)
      for (int x = 8; x < 472; x += 8) {
        if (raw.pixel(x, y) != qRgb(255, 0, 8)) continue;
        ++places;
        const QRgb is = seen.pixel(x, y), of = reader.Taken()->pixels[size_t(y / 2 * 240 + x / 2)];
        off += std::abs(qRed(is) - qRed(of)) + std::abs(qGreen(is) - qGreen(of)) + std::abs(qBlue(is) - qBlue(of));
      }
    QVERIFY(places > 200);
    QVERIFY2(off < qint64{places} * 60, qPrintable(QString::number(off / places)));
    QCOMPARE(client.Ask(Packet(SFIELD_CONTROL_VIDEO, Int(0))), 0);
    QTRY_VERIFY(!bench.State("video/playing").toBool());
  }
};

QTEST_GUILESS_MAIN(RecordingsTest)
#include "recordings_test.moc"
