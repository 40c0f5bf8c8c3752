#include "recorder/firmware/actions.h"

#include <QFile>
#include <algorithm>
#include <array>
#include <limits>

#include "recorder/base/files.h"
#include "recorder/firmware/argument.h"
#include "recorder/firmware/parts.h"

namespace recorder {
namespace {

// The arguments of one call in the order of the table: a number, or the index of the choice.
using Values = std::array<double, 2>;

struct Action {
  const char* name;
  const char* group;
  const char* label;
  bool (*act)(Parts& parts, const Values& values, QString* error);
  std::array<Argument, 2> arguments = {};
  // Why it cannot be done now; null: it can be tried.
  const char* (*hindrance)(const Parts& parts) = nullptr;
};

constexpr const char* kSwitch[] = {"off", "on"};
constexpr const char* kBatteryTypes[] = {"12 V", "24 V"};
constexpr const char* kVerdicts[] = {"success", "failure", "no answer"};
constexpr const char* kClocks[] = {"real", "midnight", "leap day", "invalid"};
constexpr const char* kSpeeds[] = {"1", "10", "60"};
constexpr const char* kGpsStates[] = {"none", "searching", "fix"};
constexpr const char* kCardErrors[] = {"0", "5", "7"};
constexpr const char* kFaults[] = {"0", "1", "5", "7"};
constexpr const char* kDamages[] = {"cut", "scribbled"};
constexpr const char* kUpdateMarkers[] = {"update.zel", "update.zel2"};
constexpr const char* kReports[] = {"1 level", "3 levels", "5 levels", "no recordings",
                                    "empty",   "short",    "lying",    "huge"};
constexpr const char* kTouchMarkers[] = {"check", "test", "reset"};
constexpr const char* kTouchMarkerFiles[] = {kTouchCheckMarker, kTouchTestMarker, kTouchResetMarker};

constexpr double kMostMinutes = 14400;  // ten days
constexpr double kMostSkipped = 1440;   // a day
constexpr Argument kMinutesAgo{"minutesAgo", 0, kMostMinutes, 0, false, true};

int Whole(double value) {
  return static_cast<int>(value);
}

template <RECV_ZEL_STATUS_EVENT event, int value = 0>
bool Tell(Parts& parts, const Values&, QString*) {
  return parts.sink.Send(event, value);
}

// Tells what became of the card.
template <RECV_ZEL_STATUS_EVENT event, int value = 0>
bool TellCard(Parts& parts, const char* card) {
  parts.card.SetState(card);
  return parts.sink.Send(event, value);
}

// Tells what spoils the recording under way.
template <RECV_ZEL_STATUS_EVENT event, Label::Cut cut>
bool TellCut(Parts& parts, const Values&, QString*) {
  parts.recording.SetCut(cut);
  return parts.sink.Send(event);
}

bool SetCardError(Parts& parts, const Values& values, QString*) {
  parts.card.SetState("error");
  return parts.sink.Send(RECV_ZEL_STATUS_SD_ERROR, QByteArray(kCardErrors[static_cast<size_t>(values[0])]).toInt());
}

bool SetGps(Parts& parts, const Values& values, QString*) {
  parts.facts.gps = Whole(values[0]);
  return parts.sink.Send(RECV_ZEL_STATUS_GPS_CONNECT, parts.facts.gps);
}

bool SetSpeed(Parts& parts, const Values& values, QString*) {
  parts.facts.speed = Whole(values[0]);
  return parts.sink.Send(RECV_ZEL_STATUS_SPEED, parts.facts.speed);
}

bool SetAccModel(Parts& parts, const Values& values, QString*) {
  parts.facts.accModel = values[0] != 0;
  return parts.sink.Send(RECV_ZEL_STATUS_ACC_SUPPORT, parts.facts.accModel);
}

bool RecordShock(Parts& parts, const Values&, QString*) {
  parts.recording.Mark(Label::Kind::Event, Label::Trigger::Impact);
  parts.voice.Say(Prompt::Impact);
  return true;
}

bool Park(Parts& parts, const Values& values, QString*) {
  parts.voice.Say(Prompt::ParkingStarts);
  return parts.parking.Begin(Whole(values[0]));
}

template <bool lowVoltage>
bool DriveOff(Parts& parts, const Values&, QString*) {
  if (!lowVoltage) parts.voice.Say(Prompt::ParkingEnds);
  return parts.parking.End(lowVoltage);
}

bool RecordParkedImpact(Parts& parts, const Values& values, QString* error) {
  if (!parts.parking.Record(true, Whole(values[0]), error)) return false;
  if (values[0] == 0) parts.voice.Say(Prompt::Impact);
  return true;
}

bool WarnOfBlackspot(Parts& parts, const Values&, QString*) {
  parts.voice.Say(Prompt::Blackspot);
  return parts.sink.Send(RECV_ZEL_STATUS_ACC_VOICE);
}

// Ten seconds before a day that is worth seeing, or a day that no camera knows.
bool SetClock(Parts& parts, const Values& values, QString* error) {
  Clock& clock = parts.hub.clock;
  const QTime late(23, 59, 50);
  const QDateTime times[] = {{},
                             QDateTime(clock.Machine().date(), late),
                             QDateTime(QDate(2028, 2, 28), late),
                             QDateTime(QDate(2100, 1, 1), QTime(0, 0))};
  const QDateTime& to = times[static_cast<size_t>(values[0])];
  if (to.isNull() ? clock.SetReal() : clock.Set(to)) return true;
  *error = QStringLiteral("The clock cannot be kept.");
  return false;
}

bool SetTimeSpeed(Parts& parts, const Values& values, QString*) {
  const int speed = QByteArray(kSpeeds[static_cast<size_t>(values[0])]).toInt();
  parts.hub.clock.SetSpeed(speed);
  if (speed == 1)
    parts.fastClock.stop();
  else
    parts.fastClock.start();
  parts.KeepClock();
  return true;
}

bool LetTimePass(Parts& parts, const Values& values, QString* error) {
  if (parts.recording.LetPass(qint64{60} * Whole(values[0]))) return true;
  *error = QStringLiteral("The clock cannot go on so far, or cannot be kept.");
  return false;
}

bool ResetSettings(Parts& parts, const Values&, QString* error) {
  parts.hub.settings.Reset();
  if (!parts.hub.settings.Save()) {
    *error = QStringLiteral("The INI file cannot be written.");
    return false;
  }
  parts.cameras.Start();
  emit parts.sink.RestartWanted();
  return true;
}

bool MakeMarker(Parts& parts, const char* path, QString* error) {
  if (!WriteWhole(parts.hub.Path(path), QByteArray())) {
    *error = QStringLiteral("The marker %1 cannot be written.").arg(QLatin1String(path));
    return false;
  }
  emit parts.sink.RestartWanted();
  return true;
}

bool RemoveMarkers(Parts& parts, const Values&, QString*) {
  for (const char* marker : {kUpdateMarker, kUpdateMarker2, kTouchCheckMarker, kTouchTestMarker, kTouchResetMarker})
    QFile::remove(parts.hub.Path(marker));
  return true;
}

const char* IfParked(const Parts& parts) {
  return parts.parking.IsParked() ? "The car is parked." : nullptr;
}

const char* IfDriving(const Parts& parts) {
  return parts.parking.IsParked() ? nullptr : "The car is not parked.";
}

const char* IfNotRecorded(const Parts& parts) {
  if (const char* parked = IfParked(parts)) return parked;
  return parts.recording.IsOn() ? nullptr : "Nothing is being recorded.";
}

const char* IfCardIsAway(const Parts& parts) {
  return parts.card.Hindrance();
}

const char* IfRecordingByHand(const Parts& parts) {
  return parts.manualEvent.IsOn() ? "A recording is being made by hand." : nullptr;
}

const char* IfUpdating(const Parts& parts) {
  return parts.update.IsRunning() ? "An update is under way." : nullptr;
}

using P = Parts;
using V = Values;

constexpr Action kActions[] = {
    {"powerKey", "Keys", "Power (LCD) key", Tell<RECV_ZEL_STATUS_LCD_KEY>},

    {"rearPlug", "Cameras", "Plug the rear camera in",
     [](P& p, const V&, QString*) { return p.cameras.PlugRear(true); }},
    {"rearUnplug", "Cameras", "Unplug the rear camera",
     [](P& p, const V&, QString*) { return p.cameras.PlugRear(false); }},
    {"rearError", "Cameras", "Rear camera fails", Tell<RECV_ZEL_STATUS_REARCAM_ERROR>},

    {"shock", "Driving", "Impact while driving", RecordShock, {}, IfNotRecorded},

    {"parkIn", "Parking", "Park", Park, {kMinutesAgo}, IfParked},
    {"impact", "Parking", "Impact while parked", RecordParkedImpact, {kMinutesAgo}, IfDriving},
    {"motion",
     "Parking",
     "Motion while parked",
     [](P& p, const V& v, QString* e) { return p.parking.Record(false, Whole(v[0]), e); },
     {kMinutesAgo},
     IfDriving},
    {"parkOut", "Parking", "Drive off", DriveOff<false>, {}, IfDriving},
    {"parkLowVoltage", "Parking", "Parking ends by low voltage", DriveOff<true>, {}, IfDriving},
    {"report",
     "Parking",
     "Parking ends with a report",
     [](P& p, const V& v, QString*) { return p.parking.Leave(static_cast<Parking::Sample>(Whole(v[0]))); },
     {Argument{"kind", 0, 0, 0, false, false, kReports}},
     IfParked},
    {"closeReport", "Parking", "Close the parking report", Tell<RECV_ZEL_STATUS_PARK_INFO_CLOSE>},

    {"battery",
     "Power",
     "Battery (V)",
     [](P& p, const V& v, QString*) { return p.power.SetBattery(v[0]); },
     {Argument{"volts", 0, 32, 12.34, true}}},
    {"countdown",
     "Power",
     "Low-voltage countdown",
     [](P& p, const V& v, QString*) { return p.power.Count(v[0] != 0); },
     {Argument{"state", 0, 0, 0, false, false, kSwitch}}},
    {"batteryType",
     "Power",
     "Battery type: restart",
     [](P& p, const V& v, QString*) {
       const bool told = p.power.SetType(v[0] != 0);
       p.hub.settings.Save();
       emit p.sink.RestartWanted();
       return told;
     },
     {Argument{"type", 0, 0, 0, false, false, kBatteryTypes}}},
    {"voltageVerdict",
     "Power",
     "Voltage compensation ends with",
     [](P& p, const V& v, QString*) {
       p.power.SetVerdict(static_cast<Power::Verdict>(Whole(v[0])));
       return true;
     },
     {Argument{"verdict", 0, 0, 0, false, false, kVerdicts}}},
    {"underVoltage", "Power", "Voltage too low", TellCut<RECV_ZEL_STATUS_UNDER_VOLTAGE, Label::Cut::LowVoltage>},
    {"normalVoltage", "Power", "Voltage normal", Tell<RECV_ZEL_STATUS_NORMAL_VOLTAGE>},
    {"overTemperature", "Power", "Too hot", TellCut<RECV_ZEL_STATUS_OVER_TEMP, Label::Cut::Temperature>},
    {"normalTemperature", "Power", "Temperature normal", Tell<RECV_ZEL_STATUS_NORMAL_TEMP>},
    {"accModel", "Power", "Accessory-power model", SetAccModel, {Argument{"state", 0, 0, 0, false, false, kSwitch}}},

    {"sdOut", "SD card", "Take the card out",
     [](P& p, const V&, QString* e) { return p.card.TakeOut(e) && p.sink.Send(RECV_ZEL_STATUS_NO_SD); }},
    {"sdIn", "SD card", "Put a good card in", [](P& p, const V&, QString* e) { return p.card.PutIn(e); }},
    {"sdFull",
     "SD card",
     "Card full of recordings",
     [](P& p, const V& v, QString*) {
       p.card.Fill(Whole(v[0]));
       return true;
     },
     {Argument{"recordings", 1, 50000, 1000}},
     IfCardIsAway},
    {"sdFullStop",
     "SD card",
     "Stop filling the card",
     [](P& p, const V&, QString*) {
       p.card.StopFilling();
       return true;
     },
     {},
     [](const P& p) -> const char* { return p.card.IsFilling() ? nullptr : "The card is not being filled."; }},
    {"sdCorrupt",
     "SD card",
     "Damage the newest recording",
     [](P& p, const V& v, QString* e) { return p.card.Corrupt(v[0] == 0, e); },
     {Argument{"how", 0, 0, 0, false, false, kDamages}},
     IfCardIsAway},
    {"sdCheckFinds",
     "SD card",
     "Next check finds",
     [](P& p, const V& v, QString*) {
       p.card.SetNextFault(QByteArray(kFaults[static_cast<size_t>(v[0])]).toInt());
       return true;
     },
     {Argument{"fault", 0, 0, 0, false, false, kFaults}}},
    {"sdFormatFails",
     "SD card",
     "The next formats fail",
     [](P& p, const V& v, QString*) {
       p.card.FailFormats(Whole(v[0]));
       return true;
     },
     {Argument{"number", 0, 1000, 1, false, true}}},
    {"sdError", "SD card", "Card error", SetCardError, {Argument{"code", 0, 0, 0, false, false, kCardErrors}}},
    {"sdWorn", "SD card", "Card worn out",
     [](P& p, const V&, QString*) { return TellCard<RECV_ZEL_STATUS_HW_ERROR, 8>(p, "worn"); }},
    {"sdFormatNeeded", "SD card", "Card needs a format",
     [](P& p, const V&, QString*) { return TellCard<RECV_ZEL_STATUS_SD_FORMAT_INF>(p, "needs format"); }},

    {"gps", "GPS", "GPS", SetGps, {Argument{"state", 0, 0, 0, false, false, kGpsStates}}},
    {"speed", "GPS", "Speed (km/h)", SetSpeed, {Argument{"kmh", 0, 300, 60}}},

    {"hwError",
     "Faults",
     "Hardware error",
     [](P& p, const V& v, QString*) { return p.sink.Send(RECV_ZEL_STATUS_HW_ERROR, Whole(v[0])); },
     {Argument{"code", 0, 18, 0}}},
    {"clockBroken", "Faults", "Clock broken",
     [](P& p, const V&, QString*) {
       p.recording.SetClockBroken(true);
       return p.sink.Send(RECV_ZEL_STATUS_RTC_ERROR);
     }},
    {"ledFailed", "Faults", "Front LED unit failed", Tell<RECV_ZEL_STATUS_FRONTLED_ERROR>},

    {"commandsFail",
     "Faults",
     "The next commands fail",
     [](P& p, const V& v, QString*) {
       p.facts.failing = Whole(v[0]);
       return true;
     },
     {Argument{"number", 0, 1000, 1}}},

    {"mute",
     "Sound",
     "Mute",
     [](P& p, const V& v, QString*) {
       return p.sink.Send(v[0] != 0 ? RECV_ZEL_STATUS_MUTE_ON : RECV_ZEL_STATUS_MUTE_OFF);
     },
     {Argument{"state", 0, 0, 0, false, false, kSwitch}}},
    {"blackspot", "Sound", "Accident blackspot ahead", WarnOfBlackspot},
    {"voiceEndNow", "Sound", "Voice ends now", [](P& p, const V&, QString*) { return p.voice.EndNow(); }},
    {"voiceEndSuppress",
     "Sound",
     "Never tell the end of a voice",
     [](P& p, const V& v, QString*) {
       p.voice.Suppress(v[0] != 0);
       return true;
     },
     {Argument{"state", 0, 0, 0, false, false, kSwitch}}},

    {"notice",
     "Notices",
     "Notice (restart, rear camera, LCD off, exit)",
     [](P& p, const V& v, QString*) { return p.sink.Send(static_cast<RECV_ZEL_STATUS_EVENT>(Whole(v[0]))); },
     {Argument{"number", 1, 4, 1}}},
    {"event",
     "Notices",
     "Any status event",
     [](P& p, const V& v, QString*) {
       return p.sink.Send(static_cast<RECV_ZEL_STATUS_EVENT>(Whole(v[0])), Whole(v[1]));
     },
     {Argument{"event", 1, 38, 1},
      Argument{"value", std::numeric_limits<int>::min(), std::numeric_limits<int>::max(), 0}}},

    {"clock", "Clock", "Set the clock", SetClock, {Argument{"to", 0, 0, 0, false, false, kClocks}}},
    {"timeSpeed", "Clock", "Speed of time", SetTimeSpeed, {Argument{"speed", 0, 0, 0, false, false, kSpeeds}}},
    {"timeSkip",
     "Clock",
     "Let time pass (minutes)",
     LetTimePass,
     {Argument{"minutes", 1, kMostSkipped, 60}},
     IfRecordingByHand},

    {"factoryReset", "Start-up", "Factory settings: restart", ResetSettings},
    {"updateMarker",
     "Start-up",
     "Updated firmware: restart",
     [](P& p, const V& v, QString* e) { return MakeMarker(p, v[0] == 0 ? kUpdateMarker : kUpdateMarker2, e); },
     {Argument{"file", 0, 0, 0, false, false, kUpdateMarkers}}},
    {"update",
     "Start-up",
     "Update the firmware: restart",
     [](P& p, const V& v, QString*) {
       p.update.Begin(v[0] == 0 ? kUpdateMarker : kUpdateMarker2);
       return true;
     },
     {Argument{"file", 0, 0, 0, false, false, kUpdateMarkers}},
     IfUpdating},
    {"touchMarker",
     "Start-up",
     "Touch check (after an update), test, or reset: restart",
     [](P& p, const V& v, QString* e) { return MakeMarker(p, kTouchMarkerFiles[static_cast<size_t>(v[0])], e); },
     {Argument{"file", 0, 0, 0, false, false, kTouchMarkers}}},
    {"removeMarkers", "Start-up", "Remove all these markers", RemoveMarkers},
};

// What an action has prepared: the value of its argument now, and the one with which nothing is.
struct Armament {
  const char* action;
  const char* argument;
  QJsonValue (*now)(const Parts& parts);
  QJsonValue none;
};

const Armament kArmaments[] = {
    {"commandsFail", "number", [](const P& p) { return QJsonValue(p.facts.failing); }, 0},
    {"sdFormatFails", "number", [](const P& p) { return QJsonValue(p.card.FailingFormats()); }, 0},
    {"sdCheckFinds", "fault", [](const P& p) { return QJsonValue(QString::number(p.card.NextFault())); },
     QLatin1String(kFaults[0])},
    {"voltageVerdict", "verdict",
     [](const P& p) { return QJsonValue(QLatin1String(kVerdicts[static_cast<size_t>(p.power.NextVerdict())])); },
     QLatin1String(kVerdicts[0])},
    {"voiceEndSuppress", "state",
     [](const P& p) { return QJsonValue(QLatin1String(kSwitch[p.voice.IsSuppressed() ? 1 : 0])); },
     QLatin1String(kSwitch[0])},
};

const Action* FindAction(const QString& name) {
  const auto* found = std::find_if(std::begin(kActions), std::end(kActions),
                                   [&name](const Action& action) { return name == QLatin1String(action.name); });
  return found == std::end(kActions) ? nullptr : found;
}

// The action of this name with its arguments in order, or null and one sentence in `error`.
const Action* Prepare(const QString& name, const QJsonObject& arguments, Values* values, QString* error) {
  const Action* action = FindAction(name);
  if (!action) *error = QStringLiteral("There is no action \"%1\".").arg(name.simplified().left(40));
  return action && TakeArguments(name, action->arguments, arguments, *values, error) ? action : nullptr;
}

}  // namespace

QJsonArray DescribeActions() {
  QJsonArray actions;
  for (const Action& action : kActions)
    actions.append(DescribeAction(action.name, action.group, action.label, action.arguments));
  return actions;
}

QJsonArray DescribeArmed(const Parts& parts) {
  QJsonArray armed;
  for (const auto& [action, argument, now, none] : kArmaments)
    if (const QJsonValue value = now(parts); value != none)
      armed.append(
          recorder::DescribeArmed(action, {{QLatin1String(argument), value}}, {{QLatin1String(argument), none}}));
  return armed;
}

QJsonObject DescribeUnavailable(const Parts& parts) {
  QJsonObject unavailable;
  for (const Action& action : kActions)
    if (const char* sentence = action.hindrance ? action.hindrance(parts) : nullptr)
      unavailable.insert(QLatin1String(action.name), QLatin1String(sentence));
  return unavailable;
}

bool CheckAction(const QString& name, const QJsonObject& arguments, QString* error) {
  Values values{};
  return Prepare(name, arguments, &values, error) != nullptr;
}

bool DoAction(Parts& parts, const QString& name, const QJsonObject& arguments, QString* error) {
  Values values{};
  const Action* action = Prepare(name, arguments, &values, error);
  if (!action) return false;
  if (const char* sentence = action->hindrance ? action->hindrance(parts) : nullptr) {
    *error = QLatin1String(sentence);
    return false;
  }
  error->clear();
  if (action->act(parts, values, error)) return true;
  if (error->isEmpty()) *error = QStringLiteral("The status queue is full: the interface was not told.");
  return false;
}

}  // namespace recorder
