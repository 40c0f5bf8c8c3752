// A monkey in the camera: the real interface under the address sanitizer, with the real recorder. It touches, sends
// events, makes commands fail, takes the card out, steps the clock, kills the recorder. Its steps come from the seed
// alone, whatever the camera does; between two bouts of them the driver goes back to the live preview, as far as a
// driver can. What must always hold is looked at ten times a second.
//
//   soak_test [MINUTES [SEED]]     1 minute and seed 1 unless given
#include <signal.h>

#include <QCoreApplication>
#include <QDir>
#include <QRandomGenerator>
#include <QRegularExpression>
#include <QSettings>
#include <QTextStream>
#include <QThread>
#include <algorithm>
#include <cmath>
#include <optional>
#include <stdexcept>

#include "gui/screen/messagecatalogue.h"
#include "gui/settings/settingkeys.h"
#include "gui/vocabulary/vocabulary.h"
#include "tests/fake/signalto.h"
#include "tests/soak/tables.h"
#include "tests/system/camerarun.h"

namespace {
constexpr int kLookMs = 100;           // from one look at the camera to the next
constexpr int kRecordingMs = 15000;    // until recording runs again on the live preview
constexpr int kScreenMs = 15000;       // until a started interface says its first screen
constexpr int kLeaveMs = 90000;        // back to the live preview; some waits of the interface take 10 s
constexpr int kAnswerMs = 8000;        // longer than recorder's format and check
constexpr int kWarmUp = 3;             // bouts of one interface until its memory is measured
constexpr qint64 kMoreMemory = 65536;  // kB, what may come on top
constexpr int kMoreFiles = 4, kMoreThreads = 2;
constexpr int kScreenOpensMs = 200;
constexpr int kSteps = 30;    // in a bout, after its walk
constexpr int kEndEach = 10;  // bouts: in one of them the interface is ended

constexpr char kSettings[] = "/opt/gui/ini/config_firm.ini";

// libfaketime is loaded before the sanitizer's library. What is freed is kept back for a while, which is no growth.
constexpr char kSanitizer[] = "verify_asan_link_order=0:detect_leaks=0:quarantine_size_mb=4:handle_abort=1";

QByteArray Json(const QJsonObject& object) {
  return QJsonDocument(object).toJson(QJsonDocument::Compact);
}

QByteArray ReadFile(const QString& path) {
  QFile file(path);
  return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}
}  // namespace

struct Failure : std::runtime_error {
  explicit Failure(const QString& what) : std::runtime_error(what.toStdString()) {}
};

// ---- the witness

/// What it costs to run.
struct Burden {
  qint64 memory = 0;  // kB
  qint64 files = 0;
  qint64 threads = 0;
};

/// The camera, and what must hold all along.
class Witness : public CameraRun {
protected:
  explicit Witness(const QString& report) : mReport(report) {
    if (!mReport.open(QIODevice::WriteOnly | QIODevice::Truncate)) throw Failure("The report cannot be written.");
    mClock.start();
  }

  void Write(const QString& line) {
    mReport.write(QStringLiteral("%1 %2\n").arg(double(mClock.elapsed()) / 1000, 9, 'f', 3).arg(line).toUtf8());
    mReport.flush();
  }

  /// One look at everything.
  void Look() {
    const BenchAnswer answer = mBench->Get("/api/state");
    if (answer.status != 200) throw Failure("The bench has ended, or does not answer.");
    mState = answer.Json();
    ReadLog();
    LookAtScreen();
    LookAtRecording();
  }

  void Pause(qint64 ms) {
    const qint64 end = mClock.elapsed() + ms;
    do {
      Look();
      QThread::msleep(ulong(std::clamp<qint64>(end - mClock.elapsed(), 0, kLookMs)));
    } while (mClock.elapsed() < end);
  }

  QJsonValue Of(const char* path) const {
    QJsonValue value = mState;
    for (const QString& name : QString::fromLatin1(path).split(u'/')) value = value.toObject().value(name);
    return value;
  }

  /// The recorder has refused to record.
  bool IsHeld() const { return mIsHeld; }

  /// Of the interface that runs; 0: none does.
  int Interface() const {
    const QList<int> processes = BenchRun::ProcessesOf(mBench->Root(), "dashcam-gui");
    return processes.isEmpty() ? 0 : processes.first();
  }

  /// The settings file has every setting, as a number.
  void LookAtSettings() {
    const QString copy = mBench->Root() + QStringLiteral("/run/settings%1.ini").arg(++mCopies);  // QSettings remembers
    if (!QFile::copy(mBench->Root() + QLatin1String(kSettings), copy)) throw Failure("There is no settings file.");
    const QSettings file(copy, QSettings::IniFormat);
    for (const SettingKey& row : SettingKeys()) {
      bool good = false;
      file.value(QLatin1String(row.key)).toString().toDouble(&good);
      if (!good || file.status() != QSettings::NoError)
        throw Failure(QStringLiteral("The settings file has no good %1.").arg(QLatin1String(row.key)));
    }
    QFile::remove(copy);
  }

  void LookAtBurden() {
    const int process = Interface();
    if (process != mProcess) mBouts = 0;
    mProcess = process;
    const Burden now = BurdenOf(process);
    Write(QStringLiteral("burden: %1 kB, %2 files, %3 threads").arg(now.memory).arg(now.files).arg(now.threads));
    if (++mBouts == kWarmUp) mWarm = now;
    if (mBouts <= kWarmUp) return;
    if (now.memory > mWarm.memory + kMoreMemory) throw Failure("The interface takes more and more memory.");
    if (now.files > mWarm.files + kMoreFiles) throw Failure("The interface opens more and more files.");
    if (now.threads > mWarm.threads + kMoreThreads) throw Failure("The interface starts more and more threads.");
  }

  QElapsedTimer mClock;

private:
  static Burden BurdenOf(int process) {
    const QString proc = QStringLiteral("/proc/%1/").arg(process);
    Burden burden;
    for (const QByteArray& line : ReadFile(proc + QStringLiteral("status")).split('\n')) {
      if (line.startsWith("VmRSS:")) burden.memory = line.mid(6).trimmed().split(' ').first().toLongLong();
      if (line.startsWith("Threads:")) burden.threads = line.mid(8).trimmed().toLongLong();
    }
    burden.files =
        QDir(proc + QStringLiteral("fd")).entryList(QDir::NoDotAndDotDot | QDir::AllEntries | QDir::System).size();
    return burden;
  }

  void ReadLog() {
    for (const QJsonObject& entry : mBench->Log(mRead)) {
      mRead = entry.value(QStringLiteral("number")).toInteger();
      Write(QString::fromUtf8(Json(entry)));
      const QString kind = entry.value(QStringLiteral("kind")).toString();
      const QString name = entry.value(QStringLiteral("name")).toString();
      if (kind == QStringLiteral("diagnostic")) TakeDiagnostic(name);
      if (kind == QStringLiteral("note")) TakeNote(name);
      if (kind == QStringLiteral("command")) TakeCommand(name, entry.value(QStringLiteral("result")).toInt());
    }
    if (mReported && mClock.elapsed() > *mReported + 2000) throw Failure("A sanitizer has found something.");
  }

  // The rest of a report is still to come.
  void TakeDiagnostic(const QString& line) {
    const bool found = line.contains(QStringLiteral("Sanitizer")) || line.contains(QStringLiteral("runtime error:"));
    if (found && !mReported) mReported = mClock.elapsed();
  }

  // Exit code 0, and signals 9 and 15, are the bench's own, when it was asked to end the interface. The interface never
  // ends by itself, and one that does for a sanitizer or an assertion has another exit code or another signal.
  void TakeNote(const QString& sentence) {
    if (sentence == QStringLiteral("The recorder has ended.")) mIsHeld = false;
    if (!sentence.startsWith(QStringLiteral("The interface has ended:"))) return;
    static const QRegularExpression kAsked(QStringLiteral("(exit code 0|signal 9|signal 15)\\.$"));
    const bool asked = kAsked.match(sentence).hasMatch();
    if (!asked && !mReported) mReported = mClock.elapsed();
  }

  // One attempt is made to start recording: when the recorder refuses it, none is under way.
  void TakeCommand(const QString& name, int result) {
    if (name == QStringLiteral("SFIELD_VIDEO_REC_START")) mIsHeld = result < 0;
  }

  void LookAtScreen() {
    if (Of("screen").isString()) mScreen = mClock.elapsed();
    if (mClock.elapsed() > mScreen + kScreenMs) throw Failure("There is no screen.");
  }

  // No recorder, no card, or one that is being formatted: then nothing can record.
  void LookAtRecording() {
    const bool possible = Of("recorder").isObject() && Of("recorder/card") != QJsonValue(QStringLiteral("out"));
    if (Of("screen") != QJsonValue(QStringLiteral("PREVIEW")) || !possible || mIsHeld ||
        Of("recorder/recording").toBool())
      mRecording = mClock.elapsed();
    if (mClock.elapsed() > mRecording + kRecordingMs) throw Failure("Nothing is recorded on the live preview.");
  }

  QFile mReport;
  QJsonObject mState;
  qint64 mRead = 0;                 // of the log
  std::optional<qint64> mReported;  // when a sanitizer began its report
  qint64 mScreen = 0;               // when there was a screen the last time
  qint64 mRecording = 0;            // when it was recorded, or need not be, the last time
  bool mIsHeld = false;
  int mCopies = 0;
  int mProcess = 0;
  int mBouts = 0;
  Burden mWarm;
};

// ---- the driver

/// Goes back to the live preview, from wherever the monkey has left the camera.
class Driver : public Witness {
protected:
  using Witness::Witness;

  void GoHome() {
    Write(QStringLiteral("-- the driver goes back"));
    SignalTo(pid_t(mBench->Process().processId()), SIGCONT);
    for (const char* action : soak::kRepairs) mBench->Action(action);
    mBench->Post("/api/touch", R"({"action": "release"})");
    QFile::remove(mBench->Root() + QStringLiteral("/tmp/ndf"));
    mAnswered.clear();
    mUnanswered = mClock.elapsed();
    const qint64 begun = mClock.elapsed();
    while (!IsHome() || !SeesPreview()) {
      if (mClock.elapsed() > begun + kLeaveMs)
        throw Failure(QStringLiteral("No way back to the live preview from %1.").arg(Where()));
      if (!IsHome()) Leave();
      Pause(400);
    }
    if (IsHeld()) Do("recorderRestart");
  }

private:
  QString Where() const {
    return QStringList{Of("screen").toString(), Of("boxes/own/name").toString(), Of("boxes/event/name").toString()}
        .join(u' ')
        .trimmed();
  }

  bool IsHome() {
    Look();
    return Of("screen") == QJsonValue(QStringLiteral("PREVIEW")) && Of("boxes/own").isNull() &&
           Of("boxes/event").isNull() && (Of("recorder/recording").toBool() || IsHeld()) &&
           Of("lcd/backlight").toInt() > 0 && !Of("recorder/manualEvent").toBool();
  }

  // One touch, or one press of the power key.
  void Leave() {
    if (Of("lcd/backlight").toInt() == 0) return Touch({240, 160});
    if (AnswerForRecorder()) return;
    for (const char* slot : {"boxes/event", "boxes/own"})
      if (Of(slot).isObject() && HasButtons(Of(slot)["id"].toInt())) return Answer(Of(slot)["name"].toString());
    const QString screen = Of("screen").toString();
    for (const soak::Way& way : soak::kWays)
      if (screen == QLatin1String(way.screen)) return way.touch.isNull() ? PressPower() : Touch(way.touch);
    if (screen != QStringLiteral("PREVIEW") || Of("boxes/event").isObject()) Touch(soak::kHome);
  }

  void Touch(QPoint at) {
    Write(QStringLiteral("driver: %1,%2").arg(at.x()).arg(at.y()));
    Tap(at);
  }
  void PressPower() {
    Write(QStringLiteral("driver: power key"));
    Do("powerKey");
  }

  // No, and the next time that the same is asked, yes: some questions only a yes ends.
  void Answer(const QString& box) { Touch(mAnswered[box]++ % 2 == 0 ? QPoint(340, 236) : QPoint(140, 236)); }

  static bool HasButtons(int box) {
    int kind = 0, a = 0, b = 0, c = 0, d = 0;
    GetMessageBoxString(box, &kind, &a, &b, &c, &d, 0);
    return kind >= 1 && kind <= 4;
  }

  // A format or a check whose command got lost is never answered, and by design the interface waits for the answer
  // for ever: exactly these two.
  bool AnswerForRecorder() {
    const bool formats = Of("screen") == QJsonValue(QStringLiteral("SDFORMAT"));
    const bool checks = Of("boxes/own/name") == QJsonValue(QStringLiteral("SD_CARD_CHECK_ING"));
    if (!formats && !checks) mUnanswered = mClock.elapsed();
    if (mClock.elapsed() < mUnanswered + kAnswerMs) return formats || checks;
    Write(QStringLiteral("driver: the recorder's answer is late"));
    mUnanswered = mClock.elapsed();
    return Event(formats ? RECV_ZEL_STATUS_SD_FORMAT_RESULT : RECV_ZEL_STATUS_SD_CHECK);
  }

  // What is on the LCD is the preview, too: a touch shows its keys. Five in a row would open another screen, as what
  // has just started may do by itself.
  bool SeesPreview() {
    if (IsOverlayShown()) return true;
    Touch(kBeside);
    Pause(1000);
    return false;
  }

  QMap<QString, int> mAnswered;
  qint64 mUnanswered = 0;
};

// ---- the monkey

class Monkey : public Driver {
public:
  Monkey(quint32 seed, const QString& report) : Driver(report), mRandom(seed) {}

  void Play(double minutes) {
    if (!StartCamera()) throw Failure("The camera does not start.");
    for (const QJsonValue& action : mBench->Get("/api/actions").Json().value(QStringLiteral("actions")).toArray())
      (EndsInterface(action.toObject()) ? mEnds : mActions) << action.toObject();
    for (int bout = 1; double(mClock.elapsed()) < minutes * 60000; ++bout) {
      mIsWild = Below(4) == 0;
      Write(QStringLiteral("-- bout %1").arg(bout));
      Walk(soak::kWalks);
      for (int i = 0; i < kSteps; ++i) AnyStep();
      if (bout % kEndEach == 2) Below(2) ? AnyActionOf(mEnds) : Walk(soak::kEndings);
      GoHome();
      LookAtSettings();
      LookAtBurden();
    }
  }

  int Steps() const { return mSteps; }

private:
  struct Step {
    int weight[2];  // in a quiet bout, in a wild one
    void (Monkey::*play)();
  };
  static const Step kPlays[11];

  int Below(int end) { return mRandom.bounded(end); }

  // Mostly values that mean something.
  int AnyValue() {
    const int small = Below(21);
    const int any = int(mRandom.generate());
    return Below(10) ? small : any;
  }

  // After each step the camera has some time.
  void Played(const QString& what) {
    ++mSteps;
    Write(QStringLiteral("monkey: ") + what);
    Pause(50 + Below(300));
  }

  void AnyStep() {
    int all = 0;
    for (const Step& step : kPlays) all += step.weight[mIsWild];
    int at = Below(all);
    const Step* step = kPlays;
    for (; at >= step->weight[mIsWild]; ++step) at -= step->weight[mIsWild];
    (this->*step->play)();
  }

  template <size_t count>
  void Walk(const char* const (&walks)[count]) {
    const QString walk = QLatin1String(walks[Below(int(count))]);
    for (const QString& part : walk.split(u' ')) {
      const QPoint at(part.section(u',', 0, 0).toInt(), part.section(u',', 1).toInt());
      if (part.startsWith(u'~'))
        Pause(2000);
      else if (part.startsWith(u'='))
        DoAction(ActionOf(part.mid(1).split(u':')));
      else
        TouchAt(at, 60);
      Pause(kScreenOpensMs);
      if (Below(8) == 0) AnyStep();
    }
  }

  // Its name, and after it an argument and its value.
  static QJsonObject ActionOf(const QStringList& parts) {
    QJsonObject action{{QStringLiteral("name"), parts.first()}};
    if (parts.size() == 3) action.insert(parts[1], parts[2]);
    return action;
  }

  void TouchAt(QPoint at, int ms) {
    mBench->Post("/api/touch", Json({{QStringLiteral("action"), QStringLiteral("tap")},
                                     {QStringLiteral("x"), at.x()},
                                     {QStringLiteral("y"), at.y()},
                                     {QStringLiteral("ms"), ms}}));
    Played(QStringLiteral("touch %1,%2 %3 ms").arg(at.x()).arg(at.y()).arg(ms));
  }

  QPoint AnySpot() {
    const QPoint any(Below(480), Below(320));
    const QPoint wanted = soak::kWanted[Below(int(std::size(soak::kWanted)))];
    return Below(4) ? wanted : any;
  }
  void AnyTouch() {
    const QPoint at = AnySpot();
    const bool isLong = Below(12) == 0;
    TouchAt(at, isLong ? 700 + Below(1500) : 20 + Below(100));
  }
  void AnyDrag() {
    for (int i = 0; i < 3; ++i) {
      const QPoint at = AnySpot();
      mBench->Post("/api/touch", Json({{QStringLiteral("action"), QStringLiteral("press")},
                                       {QStringLiteral("x"), at.x()},
                                       {QStringLiteral("y"), at.y()}}));
      Played(QStringLiteral("finger at %1,%2").arg(at.x()).arg(at.y()));
    }
    mBench->Post("/api/touch", R"({"action": "release"})");
    Played(QStringLiteral("finger up"));
  }

  void AnyEvent() {
    const int event = 1 + Below(RECV_ZEL_STATUS_PARK_INFO_CLOSE);
    const int value = AnyValue();
    Event(event, value);
    Played(QStringLiteral("event %1 %2").arg(event).arg(value));
  }

  void DoAction(const QJsonObject& action) {
    mBench->Action(Json(action));
    Played(QString::fromUtf8(Json(action)));
  }

  static bool EndsInterface(const QJsonObject& action) {
    const QString group = action[QStringLiteral("group")].toString();
    return action[QStringLiteral("label")].toString().contains(QStringLiteral("restart"), Qt::CaseInsensitive) ||
           action[QStringLiteral("name")] == QJsonValue(QStringLiteral("interfaceKill")) ||
           group == QStringLiteral("Start-up");
  }

  QJsonValue AnyArgument(const QJsonObject& argument) {
    const QJsonArray choices = argument[QStringLiteral("choices")].toArray();
    if (!choices.isEmpty()) return choices.at(Below(int(choices.size())));
    constexpr double kMost = 300;  // enough of anything
    const double least = argument[QStringLiteral("min")].toDouble();
    const double most = std::min(argument[QStringLiteral("max")].toDouble(), std::max(least, 0.0) + kMost);
    return std::floor(std::max(least, -kMost) + mRandom.bounded(1.0) * (most - std::max(least, -kMost) + 1));
  }
  void AnyActionOf(const QList<QJsonObject>& actions) {
    const QJsonObject& action = actions[Below(int(actions.size()))];
    QJsonObject asked{{QStringLiteral("name"), action[QStringLiteral("name")]}};
    for (const QJsonValue& argument : action[QStringLiteral("arguments")].toArray())
      asked.insert(argument[QStringLiteral("name")].toString(), AnyArgument(argument.toObject()));
    DoAction(asked);
  }
  void AnyAction() { AnyActionOf(mActions); }

  void AnyClock() {
    static constexpr const char* kTo[] = {"real", "midnight", "leap day", "invalid"};
    DoAction({{QStringLiteral("name"), QStringLiteral("clock")}, {QStringLiteral("to"), QLatin1String(kTo[Below(4)])}});
  }
  void AnyRecorder() {
    static constexpr const char* kWhat[] = {"recorderStop", "recorderStart", "recorderRestart", "recorderStart"};
    DoAction({{QStringLiteral("name"), QLatin1String(kWhat[Below(4)])}});
  }
  void AnyCard() {
    static constexpr const char* kWhat[] = {"sdOut", "sdIn", "sdIn", "sdWorn", "sdFormatNeeded"};
    DoAction({{QStringLiteral("name"), QLatin1String(kWhat[Below(5)])}});
  }
  void AnyRefusal() {
    DoAction({{QStringLiteral("name"), QStringLiteral("commandsFail")}, {QStringLiteral("number"), 1 + Below(5)}});
  }

  // The whole bench stands still, the recorder with it: commands get no answer.
  void AnyHang() {
    const int ms = 50 + Below(1200);
    const auto bench = pid_t(mBench->Process().processId());
    SignalTo(bench, SIGSTOP);
    QThread::msleep(ulong(ms));
    SignalTo(bench, SIGCONT);
    Played(QStringLiteral("the recorder hangs for %1 ms").arg(ms));
  }

  void AnyFile() {
    const soak::File& file = soak::kFiles[Below(int(std::size(soak::kFiles)))];
    const bool goes = Below(2) || file.most < 0;
    QByteArray bytes(Below(file.most + 2), '\0');
    for (char& byte : bytes) byte = char(Below(3) ? 0 : Below(256));
    QFile disk(mBench->Root() + QLatin1String(file.path));
    if (goes)
      disk.remove();
    else if (disk.open(QIODevice::WriteOnly))
      disk.write(bytes);
    disk.close();
    Played(QLatin1String(file.path) +
           (goes ? QStringLiteral(" goes") : QStringLiteral(" has %1 bytes").arg(bytes.size())));
  }
  // A recording, by its place in the folder: which one that is may differ.
  void AnyRecordingGoes() {
    QDir card(mBench->Root() + QStringLiteral("/mnt/mmc"));
    const QStringList names = card.entryList({QStringLiteral("*.avi")}, QDir::Files, QDir::Name);
    const int place = Below(1000);
    if (!names.isEmpty()) card.remove(names[place % names.size()]);
    Played(QStringLiteral("recording %1 goes").arg(place));
  }

  QRandomGenerator mRandom;
  QList<QJsonObject> mActions;
  QList<QJsonObject> mEnds;  // those that end the interface
  bool mIsWild = false;
  int mSteps = 0;
};

// Boxes of events keep touches away, so most bouts have few of them.
const Monkey::Step Monkey::kPlays[] = {
    {{80, 50}, &Monkey::AnyTouch},  {{3, 3}, &Monkey::AnyDrag},          {{3, 16}, &Monkey::AnyEvent},
    {{3, 16}, &Monkey::AnyAction},  {{1, 3}, &Monkey::AnyClock},         {{1, 4}, &Monkey::AnyCard},
    {{1, 3}, &Monkey::AnyRecorder}, {{2, 4}, &Monkey::AnyRefusal},       {{1, 2}, &Monkey::AnyHang},
    {{3, 6}, &Monkey::AnyFile},     {{1, 2}, &Monkey::AnyRecordingGoes},
};

int main(int argc, char** argv) {
  QCoreApplication application(argc, argv);
  const QStringList arguments = QCoreApplication::arguments();
  bool isTime = false, isSeed = false;
  const double minutes = arguments.value(1, QStringLiteral("1")).toDouble(&isTime);
  const quint32 seed = arguments.value(2, QStringLiteral("1")).toUInt(&isSeed);
  if (!isTime || !isSeed || minutes <= 0) {
    QTextStream(stderr) << "Usage: soak_test [MINUTES [SEED]]\n";
    return 2;
  }
  const QString report = QStringLiteral(BINARY_DIR "/tests/soak-%1.log").arg(seed);
  QTextStream out(stdout);
  out << "seed " << seed << ", " << minutes << " minutes\n" << Qt::flush;
  qputenv("ASAN_OPTIONS", kSanitizer);
  qputenv("UBSAN_OPTIONS", "print_stacktrace=1");
  QElapsedTimer clock;
  clock.start();
  Monkey monkey(seed, report);
  try {
    monkey.Play(minutes);
    out << monkey.Steps() << " steps in " << clock.elapsed() / 1000 << " s\n";
    return 0;
  } catch (const Failure& failure) {
    const QByteArrayList lines = ReadFile(report).split('\n');
    out << lines.mid(std::max<qsizetype>(0, lines.size() - 300)).join('\n') << "\nseed " << seed << ", after "
        << monkey.Steps() << " steps and " << clock.elapsed() / 1000 << " s: " << failure.what()
        << "\nThe steps and the log: " << report << '\n';
    return 1;
  }
}
