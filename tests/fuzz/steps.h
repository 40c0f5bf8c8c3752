#pragma once

#include <QJsonDocument>
#include <QJsonObject>
#include <QList>
#include <QRandomGenerator>
#include <algorithm>
#include <array>
#include <iterator>
#include <optional>
#include <span>

#include "gui/settings/settings.h"
#include "gui/vocabulary/vocabulary.h"
#include "tests/soak/tables.h"

/// What the monkey does, as data: chosen by a seed alone, written as a scenario of the bench, and read back from it.
namespace monkey {

inline constexpr qint64 kSecond = 1000;
inline constexpr qint64 kMinute = 60 * kSecond;
inline constexpr qint64 kHomeMs = 60 * kSecond;   // within it a driver is back at the live preview
inline constexpr qint64 kAloneMs = 25 * kMinute;  // ten minutes until the camera goes back, and all that follows
inline constexpr int kManyRecordings = 10000;

/// An action of the bench that the recorder of the test knows, too.
struct Action {
  const char* name;
  const char* argument = nullptr;
  std::array<const char*, 4> choices{};  // of the argument; none: it is a whole number
};
inline constexpr Action kActions[] = {
    {"powerKey"},
    {"parkIn"},
    {"impact"},
    {"motion"},
    {"parkOut"},
    {"parkLowVoltage"},
    {"mute", "state", {"off", "on"}},
    {"countdown", "state", {"off", "on"}},
    {"sdError", "code", {"0", "5", "7"}},
    {"sdWorn"},
    {"sdFull", "recordings"},
    {"sdFormatFails", "number"},
    {"sdCheckFinds", "fault", {"0", "1", "5", "7"}},
    {"voltageVerdict", "verdict", {"success", "failure", "no answer"}},
    {"voiceEndSuppress", "state", {"off", "on"}},
    {"voiceEndNow"},
    {"commandsFail", "number"},
    {"recorderStop"},
    {"recorderStart"},
    {"clock", "to", {"real", "midnight", "leap day", "invalid"}},
    {"updateMarker", "file", {"update.zel", "update.zel2"}},
    {"touchMarker", "file", {"check", "test", "reset"}},
    {"removeMarkers"},
    {"interfaceRestart"},
};

inline int ActionNamed(QLatin1String name) {
  const auto* row = std::ranges::find(kActions, name, [](const Action& each) { return QLatin1String(each.name); });
  return row == std::end(kActions) ? -1 : int(row - kActions);
}

inline int ChoiceNamed(const Action& action, const QString& word) {
  const auto choice =
      std::ranges::find_if(action.choices, [&](const char* each) { return each && word == QLatin1String(each); });
  return choice == action.choices.end() ? -1 : int(choice - action.choices.begin());
}

/// Files that come and go. What is in them follows from a number.
inline constexpr const char* kFiles[] = {"/tmp/ndf",
                                         "/tmp/.info.bin",
                                         "/tmp/picture.bmp",
                                         "/tmp/config_init.ini",
                                         "/mnt/mmc/Setup/picture.bmp",
                                         "/mnt/mmc/Setup/record_stop.info",
                                         "/mnt/mmc/Setup/.format_time",
                                         "/mnt/mmc/rec0_20230101_120000.avi",
                                         "/mnt/mmc/rec1_20230101_120000.avi",
                                         "/mnt/mmc/pmr0_20230101_120100_.avi",
                                         "/mnt/mmc/evt0_20230101_120200.avi",
                                         "/opt/led.zel",
                                         "/opt/touch_tuning.zel"};

/// Screens that no key leads to.
inline constexpr WidgetId kNoWay[] = {MAINMENU2, FIRMUP};

/// Ways as those of tests/soak/tables.h, and these.
inline constexpr const char* kMoreWalks[] = {
    "265,33 240,255 80,255 400,125 ~ ~ 80,255 140,236 ~ ~ ~ ~ ~ ~ ~ 400,255 140,236 ~ ~ ~ ~ ~ ~ ~ ~",   // voltage
    "265,33 400,255 240,125 400,125 240,125 200,86 440,242 200,138 440,138 355,30 140,236 ~",           // LED patterns
    "265,33 80,125 140,236 ~ 440,242 440,242 440,294 200,86 ~ 40,291 280,291 440,291 240,230 360,291",  // player
};

struct Step {
  enum Kind {
    Touch,    ///< a is x, b is y, c: how long the finger stays
    Key,      ///< what the screen offers is touched: its area a, somewhere in it by b
    Raw,      ///< as Touch, in units of the panel, 0..511
    Event,    ///< a of the value b
    Act,      ///< kActions[a] with b, a number or the index of a choice
    File,     ///< kFiles[a] has what follows from b; 0: it goes
    Answer,   ///< what the recorder is asked it answers with a, whose bits are those of a float, too
    Voltage,  ///< from the next start on the interface is asked (a is 1) to have the voltage compensated, or not
    Open,     ///< kNoWay[a] is opened over the preview or the menu; b is the phase of an update
    Home,     ///< the driver goes back to the live preview
    Alone,    ///< the driver has gone
    Crash,    ///< of a test: the program ends
  };
  qint64 at = 0;  ///< ms since the camera was switched on; a step that is late comes at once
  Kind kind = Touch;
  int a = 0, b = 0, c = 0;
  bool operator==(const Step&) const = default;
};
using Steps = QList<Step>;

/// How long a step may last.
inline qint64 Lasts(const Step& step) {
  return step.kind == Step::Home ? kHomeMs : step.kind == Step::Alone ? kAloneMs : 0;
}

/// What is done in it stands behind it, for the bench.
inline bool IsDoneInOthers(const Step& step) {
  return step.kind == Step::Key || Lasts(step) > 0;
}

// ---- written and read

inline constexpr char kDone[] = "done";

/// The end of a step that the driver does in several, each a line of its own.
inline QByteArray EndLine(qint64 at) {
  return QJsonDocument(QJsonObject{{QStringLiteral("ms"), at}, {QStringLiteral("say"), QLatin1String(kDone)}})
             .toJson(QJsonDocument::Compact) +
         '\n';
}

/// A step as a line of a scenario. What the bench has no counterpart for is told to who looks on.
inline QByteArray Line(const Step& step) {
  QJsonObject line{{QStringLiteral("ms"), step.at}};
  const auto say = [&line](const QString& words) { line.insert(QStringLiteral("say"), words); };
  switch (step.kind) {
    case Step::Touch:
    case Step::Raw: {
      QJsonObject touch{{QStringLiteral("x"), step.a}, {QStringLiteral("y"), step.b}};
      if (step.kind == Step::Raw) touch.insert(QStringLiteral("raw"), true);
      touch.insert(QStringLiteral("ms"), step.c);
      line.insert(QStringLiteral("touch"), touch);
      break;
    }
    case Step::Event:
      line.insert(QStringLiteral("event"), step.a);
      line.insert(QStringLiteral("value"), step.b);
      break;
    case Step::Act: {
      const Action& action = kActions[step.a];
      line.insert(QStringLiteral("action"), QLatin1String(action.name));
      if (action.argument)
        line.insert(QLatin1String(action.argument),
                    action.choices[0] ? QJsonValue(QLatin1String(action.choices[size_t(step.b)])) : QJsonValue(step.b));
      break;
    }
    case Step::Key:
      say(QStringLiteral("key %1 %2").arg(step.a).arg(step.b));
      break;
    case Step::File:
      say(QStringLiteral("file %1 %2").arg(QLatin1String(kFiles[step.a])).arg(step.b));
      break;
    case Step::Answer:
      say(QStringLiteral("answer %1").arg(step.a));
      break;
    case Step::Voltage:
      say(QStringLiteral("voltage %1").arg(step.a));
      break;
    case Step::Open:
      say(QStringLiteral("open %1 %2").arg(QLatin1String(NameOf(kNoWay[step.a]))).arg(step.b));
      break;
    case Step::Home:
      say(QStringLiteral("home"));
      break;
    case Step::Alone:
      say(QStringLiteral("alone"));
      break;
    case Step::Crash:
      say(QStringLiteral("crash"));
      break;
  }
  return QJsonDocument(line).toJson(QJsonDocument::Compact) + '\n';
}

/// The same with its end, when that is not known any better.
inline QByteArray Written(const Step& step) {
  return IsDoneInOthers(step) ? Line(step) + EndLine(step.at + Lasts(step)) : Line(step);
}

/// The step of a line that Line() wrote; nothing for any other.
inline std::optional<Step> Read(const QByteArray& text) {
  const QJsonObject line = QJsonDocument::fromJson(text).object();
  Step step{line[QStringLiteral("ms")].toInteger()};
  if (line.contains(QStringLiteral("touch"))) {
    const QJsonObject touch = line[QStringLiteral("touch")].toObject();
    step.kind = touch[QStringLiteral("raw")].toBool() ? Step::Raw : Step::Touch;
    step.a = touch[QStringLiteral("x")].toInt();
    step.b = touch[QStringLiteral("y")].toInt();
    step.c = touch[QStringLiteral("ms")].toInt();
    return step;
  }
  if (line.contains(QStringLiteral("event"))) {
    step.kind = Step::Event;
    step.a = line[QStringLiteral("event")].toInt();
    step.b = line[QStringLiteral("value")].toInt();
    return step;
  }
  if (line.contains(QStringLiteral("action"))) {
    step.kind = Step::Act;
    step.a = ActionNamed(QLatin1String(line[QStringLiteral("action")].toString().toLatin1()));
    if (step.a < 0) return {};
    const Action& action = kActions[step.a];
    if (!action.argument) return step;
    const QJsonValue value = line[QLatin1String(action.argument)];
    step.b = action.choices[0] ? ChoiceNamed(action, value.toString()) : value.toInt();
    return step.b < 0 ? std::nullopt : std::optional(step);
  }
  const QStringList words = line[QStringLiteral("say")].toString().split(u' ');
  static constexpr std::pair<const char*, Step::Kind> kWords[] = {
      {"home", Step::Home}, {"alone", Step::Alone}, {"crash", Step::Crash}};
  for (const auto& [word, kind] : kWords) {
    if (words != QStringList{QLatin1String(word)}) continue;
    step.kind = kind;
    return step;
  }
  static constexpr std::pair<const char*, Step::Kind> kNumbers[] = {{"answer", Step::Answer},
                                                                    {"voltage", Step::Voltage}};
  for (const auto& [word, kind] : kNumbers) {
    if (words.size() != 2 || words[0] != QLatin1String(word)) continue;
    step.kind = kind;
    step.a = words[1].toInt();
    return step;
  }
  if (words.size() != 3) return {};
  step.b = words[2].toInt();
  const auto index = [&words](const auto& table, const auto& name) {
    const auto* row = std::ranges::find(table, words[1], [&](const auto& each) { return QLatin1String(name(each)); });
    return row == std::end(table) ? -1 : int(row - table);
  };
  if (words[0] == QStringLiteral("file")) {
    step.kind = Step::File;
    step.a = index(kFiles, [](const char* each) { return each; });
  } else if (words[0] == QStringLiteral("key")) {
    step.kind = Step::Key;
    step.a = words[1].toInt();
  } else if (words[0] == QStringLiteral("open")) {
    step.kind = Step::Open;
    step.a = index(kNoWay, [](WidgetId each) { return NameOf(each); });
  } else {
    return {};
  }
  return step.a < 0 ? std::nullopt : std::optional(step);
}

/// The steps of a whole scenario that the monkey wrote. What is done in a step that lasts stands in it for the bench.
inline Steps ReadAll(const QByteArray& text) {
  Steps steps;
  bool isWay = false;
  qint64 later = 0;  // a step that lasts may have all its time
  for (const QByteArray& line : text.split('\n')) {
    if (line.isEmpty() || line.startsWith('#')) continue;
    const QJsonObject object = QJsonDocument::fromJson(line).object();
    if (object[QStringLiteral("say")] == QLatin1String(kDone)) {
      isWay = false;
      later = steps.back().at + Lasts(steps.back()) - object[QStringLiteral("ms")].toInteger();
    } else if (!isWay) {
      std::optional<Step> step = Read(line);
      if (!step) qFatal("not the monkey's: %s", line.constData());
      step->at += later;
      steps << *step;
      isWay = IsDoneInOthers(*step);
    }
  }
  return steps;
}

// ---- what is in a file

/// Patterns of the front LED, each of one glyph.
inline QByteArray LedList(int count) {
  constexpr int kHead = 4, kEntry = 155;  // as gui/led/ledzel.h says
  QByteArray bytes(kHead + count * kEntry, '\0');
  bytes[0] = char(count);
  for (int i = 0; i < count; ++i) {
    const int at = kHead + i * kEntry;
    bytes[at] = char(i == 0);
    bytes.replace(at + 1, 5, QByteArray("LED ") + char('a' + i));
    bytes[at + 21] = 2;
    bytes[at + 23] = char(i);
    bytes[at + 24] = '$';
    bytes[at + 88] = 4;
  }
  return bytes;
}

/// The bytes of kFiles[file] that follow from `number`: often good, else anything.
inline QByteArray BytesOf(int file, int number) {
  QRandomGenerator random(quint32(file) * 1000003U + quint32(number));
  const auto below = [&random](int end) { return random.bounded(end); };
  const QLatin1String path(kFiles[file]);
  if (path == QLatin1String("/tmp/config_init.ini") && below(8)) {
    // What drives the camera's delays, and a few more.
    QByteArray ini;
    for (const auto& [group, key, end] : {std::tuple("lcdsetting", "lcd_auto_off", 5),
                                          {"lcdsetting", "lcd_wait_dis", 3},
                                          {"lcdsetting", "lcd_bright", 4},
                                          {"parkingsetting", "parking_mode_on", 3},
                                          {"parkingsetting", "rear_cam_power", 2},
                                          {"filedeletesetting", "protectfile", 2},
                                          {"drivingsetting", "resolution", 3},
                                          {"drivingsetting", "fps", 3},
                                          {"audiosetting", "volume", 4},
                                          {"ledsetting", "settingchange", 3},
                                          {"view", "display", 3}}) {
      const int value = below(10) ? below(end) : below(100) ? below(300) : int(random.generate());
      ini += QByteArray("[") + group + "]\n" + key + "=" + QByteArray::number(value) + "\n";
    }
    return ini;
  }
  if (path == QLatin1String("/tmp/.info.bin") && below(2)) {
    // A report that is good, but for its counts now and then.
    const int start = 1 + below(2000000000);
    QList<int> words{1, start, start + 1 + below(50000), 0};
    for (int kind = 0; kind < 2; ++kind) {
      const int count = below(20);
      words << (below(8) ? count : int(random.generate()));
      for (int i = 0; i < count; ++i) words << start + below(60000) - 5000;
    }
    return {reinterpret_cast<const char*>(words.constData()), words.size() * qsizetype{sizeof(int)}};
  }
  if (path == QLatin1String("/opt/led.zel") && below(2)) return LedList(below(21));
  QByteArray bytes(below(200), Qt::Uninitialized);
  for (char& byte : bytes) byte = char(below(3) ? 0 : below(256));
  return bytes;
}

// ---- chosen

/// The steps of one episode, which begins with a camera that was just switched on.
class Chooser {
public:
  explicit Chooser(quint32 seed) : mRandom(seed) {}

  Steps Choose(int count) {
    const bool isCalm = Below(3) == 0;
    if (Chance(3)) Add(Step::Act, ActionNamed(QLatin1String("sdFull")), kManyRecordings);
    while (mSteps.size() < count) isCalm ? AnyLife() : AnyBout();
    mSteps.resize(count);
    if (count > 0 && !Lasts(mSteps.back())) mSteps.back() = {mSteps.back().at, Step::Home};
    return std::move(mSteps);
  }

private:
  int Below(int end) { return mRandom.bounded(end); }
  bool Chance(int percent) { return Below(100) < percent; }

  // Mostly values that mean something.
  int AnyValue() { return Below(10) ? Below(21) : int(mRandom.generate()); }

  void Add(Step::Kind kind, int a = 0, int b = 0, int c = 0) {
    mSteps << Step{mAt, kind, a, b, c};
    mAt += Lasts(mSteps.back());
  }
  void Wait(qint64 ms) { mAt += ms; }

  void AnyTouch() {
    if (Chance(60)) return Add(Step::Key, Below(1000), Below(100000));
    const QPoint at = Chance(60) ? soak::kWanted[Below(std::size(soak::kWanted))] : QPoint(Below(480), Below(320));
    const int holds = Chance(90) ? 60 : 200 + Below(3000);
    Add(Step::Touch, at.x(), at.y(), holds);
    if (Chance(20)) Add(Step::Touch, at.x(), at.y(), 60);  // again, before the first has been taken
  }
  void AnyRawTouch() { Add(Step::Raw, Below(512), Below(512), 60); }

  void AnyEvent() {
    const int event = 1 + Below(38);
    Add(Step::Event, event, AnyValue());
  }

  void AnyAction() {
    const int index = Below(int(std::size(kActions)));
    const Action& action = kActions[index];
    const QLatin1String name(action.name);
    if (name == QLatin1String("sdFull")) return;
    const bool restarts = name == QLatin1String("interfaceRestart") || name.endsWith(QLatin1String("Marker"));
    if (restarts && Below(6)) return;
    const auto choices = int(std::ranges::count_if(action.choices, [](const char* each) { return each != nullptr; }));
    Add(Step::Act, index, choices ? Below(choices) : action.argument ? 1 + Below(3) : 0);
    if (name != QLatin1String("recorderStop")) return;
    for (int step = Below(6); step > 0; --step) {
      AnyWait();
      AnyTouch();
    }
    Wait(Below(5000));
    Act("recorderStart");
  }
  void Act(const char* name, int value = 0) { Add(Step::Act, ActionNamed(QLatin1String(name)), value); }

  void AnyFile() { Add(Step::File, Below(std::size(kFiles)), Below(3) ? 1 + Below(1000) : 0); }

  // The recorder's answers by themselves: late, twice, wrongly, with any value.
  void AnyAnswer() {
    static constexpr int kAnswers[] = {RECV_ZEL_STATUS_VOICE_PLAY_END, RECV_ZEL_STATUS_SD_FORMAT_RESULT,
                                       RECV_ZEL_STATUS_SD_CHECK,       RECV_ZEL_STATUS_PLAY_CUR,
                                       RECV_ZEL_STATUS_PLAY_STATUS,    RECV_ZEL_STATUS_VOLT_SET};
    if (Below(4) == 0)
      Add(Step::Answer, AnyValue());
    else
      Add(Step::Event, kAnswers[Below(std::size(kAnswers))], AnyValue());
  }

  // Ways that are rarely found by chance.
  template <size_t count>
  void AnyWalk(const char* const (&walks)[count]) {
    const QString walk = QLatin1String(walks[Below(int(count))]);
    for (const QString& part : walk.split(u' ')) {
      Wait(Chance(80) ? 400 + Below(300) : Below(400));
      if (part == QLatin1String("~"))
        Wait(2 * kSecond);
      else if (part.startsWith(u'='))
        AddNamed(part.mid(1).split(u':'));
      else
        Add(Step::Touch, part.section(u',', 0, 0).toInt(), part.section(u',', 1).toInt(), 60);
      if (Below(20) == 0) AnyStep();
    }
  }
  void AddNamed(const QStringList& words) {
    const QString name = words[0] == QLatin1String("interfaceKill") ? QStringLiteral("interfaceRestart") : words[0];
    const int index = ActionNamed(QLatin1String(name.toLatin1()));
    if (index < 0) qFatal("no action %s", qPrintable(name));
    const int choice = words.size() > 2 ? ChoiceNamed(kActions[index], words[2]) : 1;
    Add(Step::Act, index, kActions[index].argument ? choice : 0);
  }

  // Both passes over the nine targets, more or less exactly.
  void AnyCalibration() {
    for (const QPoint at : {QPoint(265, 33), QPoint(400, 255), QPoint(80, 255)}) {
      Wait(600);
      Add(Step::Touch, at.x(), at.y(), 60);
    }
    const int spread = 1 + (Chance(70) ? Below(30) : Below(200));
    for (int touch = 0; touch < 18 * (Chance(50) ? 1 : 2); ++touch) {
      Wait(300 + Below(500));
      const auto near = [&](int middle, int end) { return std::clamp(middle + Below(2 * spread) - spread, 0, end); };
      Add(Step::Touch, near(kTouchTargetX[touch % 9], 479), near(kTouchTargetY[touch % 9], 319), 60);
      if (Below(40) == 0) AnyStep();
    }
    Wait(2500);
  }

  void AnyStep() {
    static constexpr struct {
      int weight;
      void (Chooser::*add)();
    } kWays[] = {{60, &Chooser::AnyTouch}, {3, &Chooser::AnyRawTouch}, {14, &Chooser::AnyEvent},
                 {8, &Chooser::AnyAction}, {7, &Chooser::AnyAnswer},   {8, &Chooser::AnyFile}};
    int at = Below(100);
    const auto* way = kWays;
    for (; at >= way->weight; ++way) at -= way->weight;
    (this->*way->add)();
  }

  void AnyWait() {
    const int kind = Below(1000);
    Wait(kind < 150   ? 0
         : kind < 700 ? 20 + Below(400)
         : kind < 970 ? 300 + Below(2500)
         : kind < 999 ? Below(20 * kSecond)
                      : Below(12 * kMinute));
  }

  // A child plays: everything, and no rest.
  void AnyBout() {
    if (Below(10) == 0) Add(Step::Voltage, Below(2));
    if (Below(10) == 0) Add(Step::Open, Below(std::size(kNoWay)), Below(4));
    if (Below(4) == 0) Act("voiceEndSuppress", 1);
    if (Below(8) == 0) Act("commandsFail", 1 + Below(10));
    if (Below(4)) AnyWalk(soak::kWalks);
    if (Below(5) == 0) AnyWalk(kMoreWalks);
    if (Below(10) == 0) AnyWalk(soak::kEndings);
    if (Below(12) == 0) AnyCalibration();
    for (int step = Below(3) ? Below(40) : 0; step > 0; --step) {
      AnyWait();
      AnyStep();
    }
    Wait(Below(2000));
    Below(5) ? Add(Step::Home) : Add(Step::Alone);
  }

  // A driver lives with the camera: touches keys, leaves boxes unanswered, parks, loses cards, and goes away.
  void AnyLife() {
    static constexpr struct {
      int event, value;
    } kHappens[] = {{RECV_ZEL_STATUS_LCD_KEY, 1},
                    {RECV_ZEL_STATUS_PARK_MODE_IN, 1},
                    {RECV_ZEL_STATUS_PARK_MODE_OUT, 1},
                    {RECV_ZEL_STATUS_HW_ERROR, 3},
                    {RECV_ZEL_STATUS_HW_ERROR, 8},
                    {RECV_ZEL_STATUS_SD_ERROR, 1},
                    {RECV_ZEL_STATUS_MUTE_ON, 1},
                    {RECV_ZEL_STATUS_REARCAM_DISCONNECT, 1},
                    {RECV_ZEL_STATUS_REARCAM_CONNECT, 1},
                    {RECV_ZEL_STATUS_LOW_VOLTAGE_POWER_OFF_COUNT, 1},
                    {RECV_ZEL_STATUS_LOW_VOLTAGE_POWER_OFF_COUNT, 0},
                    {RECV_ZEL_STATUS_VOICE_PLAY_END, 1},
                    {RECV_ZEL_STATUS_GPS_CONNECT, 2},
                    {RECV_ZEL_STATUS_PLAY_STATUS, 1}};
    if (Chance(60)) {
      Add(Step::File, 3, 1 + Below(1000));  // other settings
      Add(Step::Voltage, Below(2));
      Act("interfaceRestart");
    }
    Act("voiceEndSuppress", Chance(20));
    Act("sdCheckFinds", Chance(50) ? 0 : Below(4));
    Act("voltageVerdict", Below(3));
    if (Chance(30)) Act("sdFormatFails", 1 + Below(3));
    for (int action = 10 + Below(60); action > 0; --action) {
      Wait((Chance(70) ? 300 : 100) + Below(Chance(10) ? 30000 : 2500));
      if (Chance(85)) {
        if (Chance(40)) {
          Add(Step::Key, Below(1000), Below(100000));
          continue;
        }
        const QPoint at = soak::kWanted[Below(std::size(soak::kWanted))];
        for (int taps = Chance(15) ? 2 : 1; taps > 0; --taps) Add(Step::Touch, at.x(), at.y(), 60);
      } else {
        const auto& happens = kHappens[Below(std::size(kHappens))];
        Add(Step::Event, happens.event, happens.value);
      }
      if (Chance(1)) AnyWalk(soak::kWalks);
      if (Chance(1)) AnyWalk(kMoreWalks);
    }
    Add(Step::Alone);
    Add(Step::Home);
  }

  QRandomGenerator mRandom;
  Steps mSteps;
  qint64 mAt = kSecond;  // the preview has come
};

}  // namespace monkey
