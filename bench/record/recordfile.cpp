#include "bench/record/recordfile.h"

#include <QFile>
#include <QJsonDocument>
#include <algorithm>
#include <array>
#include <cmath>

#include "bench/record/recordpicture.h"
#include "bench/supervise/languages.h"

namespace {
constexpr qint64 kLargest = 64 << 20;        // bytes of a file
constexpr qint64 kLongestFirst = 8 << 20;    // of its first line: the root state
constexpr qint64 kLongestLine = 1 << 20;     // and of any other
constexpr double kLongest = 7 * 86400000.0;  // ms: a week
constexpr char kTime[] = "yyyy-MM-ddTHH:mm:ss.zzz";

using Kind = RecordEntry::Kind;

constexpr std::array<const char*, 10> kKinds = {"touch",  "event",  "action", "picture", "command",
                                                "status", "screen", "stored", "remark",  "end"};

// Of the log's kinds; the others are remarks.
constexpr std::pair<const char*, Kind> kLogKinds[] = {
    {"touch", Kind::Touch}, {"command", Kind::Command}, {"event", Kind::Status}, {"screen", Kind::Screen}};

// These come again and again, or at some time: no replay has as many of them, or the same values.
constexpr const char* kUnsteady[] = {"SFIELD_GET_VOLTAGE", "SFIELD_GET_AUTO_LCD_VALUE", "RECV_ZEL_STATUS_PLAY_CUR"};

// Of the setup block, in hex digits: the clock counts only when it was set.
constexpr qsizetype kTimeSet = 2 * 20, kClock = 2 * 21, kClockSize = 2 * 6;

QJsonObject TouchRequest(const QJsonObject& entry) {
  if (entry.value(QLatin1String("name")) == QLatin1String("release"))
    return {{QStringLiteral("action"), QStringLiteral("release")}};
  const bool isRaw = !entry.contains(QLatin1String("x"));
  QJsonObject request{{QStringLiteral("action"), QStringLiteral("press")},
                      {QStringLiteral("x"), entry.value(QLatin1String(isRaw ? "rawX" : "x"))},
                      {QStringLiteral("y"), entry.value(QLatin1String(isRaw ? "rawY" : "y"))}};
  if (isRaw) request.insert(QStringLiteral("raw"), true);
  return request;
}

bool CheckSeen(const QJsonValue& value, QString* error) {
  const QJsonObject seen = value.toObject();
  const QJsonValue picture = seen.value(QLatin1String("picture"));
  if (value.isUndefined() ||
      (value.isObject() && (picture.isUndefined() || recordpicture::IsDigest(picture.toString()))))
    return true;
  *error = QStringLiteral("\"seen\" is no object, or its \"picture\" no digest");
  return false;
}

// What its kind must have.
bool CheckBody(const RecordEntry& entry, QString* error) {
  const auto wants = [&](const char* name, bool has) {
    if (!has) *error = QStringLiteral("\"%1\" is missing or wrong").arg(QLatin1String(name));
    return has;
  };
  if (!CheckSeen(entry.body.value(QLatin1String("seen")), error)) return false;
  if (entry.IsInput()) return wants("request", entry.body.value(QLatin1String("request")).isObject());
  if (entry.kind == Kind::Stored) return wants("stored", entry.body.value(QLatin1String("stored")).isObject());
  return entry.kind == Kind::End || wants("name", entry.body.value(QLatin1String("name")).isString());
}

bool ReadObject(const QByteArray& line, QJsonObject* object, QString* error) {
  QJsonParseError reason;
  const QJsonDocument document = QJsonDocument::fromJson(line, &reason);
  *object = document.object();
  if (document.isObject()) return true;
  *error = document.isNull() ? reason.errorString() : QStringLiteral("no object");
  return false;
}

bool ReadEntry(const QByteArray& line, qint64 since, RecordEntry* entry, QString* error) {
  if (!ReadObject(line, &entry->body, error)) return false;
  const double ms = entry->body.take(QLatin1String("ms")).toDouble(-1);
  if (ms < static_cast<double>(since) || ms > kLongest || std::trunc(ms) != ms) {
    *error = QStringLiteral("\"ms\" is no whole number, or goes back");
    return false;
  }
  entry->ms = static_cast<qint64>(ms);
  const QString kind = entry->body.take(QLatin1String("kind")).toString();
  for (size_t i = 0; i < kKinds.size(); ++i)
    if (kind == QLatin1String(kKinds[i])) {
      entry->kind = static_cast<Kind>(i);
      return CheckBody(*entry, error);
    }
  *error = QStringLiteral("\"kind\" is not known");
  return false;
}

bool ReadFirst(const QByteArray& line, RecordFile* file, QString* error) {
  QJsonObject head;
  if (!ReadObject(line, &head, error)) return false;
  const QJsonValue version = head.value(QLatin1String("version"));
  if (!version.isDouble() || version.toDouble() != RecordFile::kVersion) {
    *error = QStringLiteral("\"version\" is not %1").arg(RecordFile::kVersion);
    return false;
  }
  const double seed = head.value(QLatin1String("seed")).toDouble(-1);
  file->clock = QDateTime::fromString(head.value(QLatin1String("clock")).toString(), QLatin1String(kTime));
  const int year = file->clock.date().year();
  file->root = head.value(QLatin1String("root")).toObject();
  if (seed < 0 || seed > 0xFFFFFFFFL || std::trunc(seed) != seed || !file->clock.isValid() || year < 1970 ||
      year > 2199 || file->root.isEmpty()) {
    *error = QStringLiteral("\"seed\", \"clock\" or \"root\" is missing or wrong");
    return false;
  }
  file->seed = static_cast<quint32>(seed);
  const QJsonValue language = head.value(QLatin1String("language"));
  file->language = language.isUndefined() ? RecordFile().language : language.toString();
  if (!languages::Has(file->language)) {
    *error = QStringLiteral("\"language\" is none of %1").arg(languages::Names());
    return false;
  }
  return true;
}
}  // namespace

std::optional<RecordEntry> RecordEntry::OfLog(const QJsonObject& entry) {
  RecordEntry recorded;
  const QString kind = entry.value(QLatin1String("kind")).toString();
  if (kind == QLatin1String("action")) return {};
  for (const auto& [name, itsKind] : kLogKinds)
    if (kind == QLatin1String(name)) recorded.kind = itsKind;
  recorded.body = entry;
  for (const char* member : {"kind", "number", "time"}) recorded.body.remove(QLatin1String(member));
  if (recorded.kind == Kind::Remark) recorded.body.insert(QStringLiteral("of"), kind);
  if (recorded.kind == Kind::Touch) recorded.body = {{QStringLiteral("request"), TouchRequest(entry)}};
  return recorded;
}

QString RecordEntry::Essence() const {
  const QString name = body.value(QLatin1String("name")).toString();
  for (const char* unsteady : kUnsteady)
    if (name == QLatin1String(unsteady)) return {};
  const QString value = QString::number(body.value(QLatin1String("value")).toDouble(), 'g', 12);
  switch (kind) {
    case Kind::Screen:
      return QStringLiteral("the line \"%1\"").arg(name);
    case Kind::Status:
      return QStringLiteral("the event %1 %2").arg(name, value);
    case Kind::Command: {
      const int result = body.value(QLatin1String("result")).toInt();
      const QString failed = result < 0 ? QStringLiteral(", result %1").arg(result) : QString();
      QString data = body.value(QLatin1String("data")).toString();
      if (name == QLatin1String("SFIELD_SET_SETUP_COMPLETE") && data.mid(kTimeSet, 2) != QLatin1String("01") &&
          data.size() > kClock)
        data.replace(kClock, kClockSize, QStringLiteral("-"));
      return QStringLiteral("the command %1 %2%3").arg(name, data.isEmpty() ? value : data, failed);
    }
    default:
      return {};
  }
}

QByteArray RecordEntry::Line() const {
  QJsonObject line = body;
  line.insert(QStringLiteral("ms"), ms);
  line.insert(QStringLiteral("kind"), QLatin1String(kKinds[static_cast<size_t>(kind)]));
  return QJsonDocument(line).toJson(QJsonDocument::Compact) + '\n';
}

QByteArray RecordFile::FirstLine() const {
  const QJsonObject head{{QStringLiteral("version"), kVersion},
                         {QStringLiteral("seed"), qint64{seed}},
                         {QStringLiteral("clock"), clock.toString(QLatin1String(kTime))},
                         {QStringLiteral("language"), language},
                         {QStringLiteral("root"), root}};
  return QJsonDocument(head).toJson(QJsonDocument::Compact) + '\n';
}

bool RecordFile::HasInput() const {
  return std::any_of(entries.begin(), entries.end(), [](const RecordEntry& entry) { return entry.IsInput(); });
}

bool RecordFile::Read(const QString& path, QString* error) {
  QFile file(path);
  if (!file.open(QIODevice::ReadOnly) || file.size() > kLargest) {
    *error = QStringLiteral("The recording %1 cannot be read, or is larger than 64 MiB.").arg(path);
    return false;
  }
  entries.clear();
  const auto hasEnded = [this] { return !entries.isEmpty() && entries.constLast().kind == Kind::End; };
  for (int number = 1; number == 1 || !file.atEnd(); ++number) {
    const qint64 longest = number == 1 ? kLongestFirst : kLongestLine;
    const QByteArray line = file.readLine(std::min(longest, file.size()) + 1);
    QString reason;
    bool good = false;
    if (line.size() >= longest) {
      reason = QStringLiteral("it is too long");
    } else if (number > 1 && !line.endsWith('\n')) {
      break;  // cut off
    } else if (hasEnded()) {
      reason = QStringLiteral("it comes after the end");
    } else if (number == 1) {
      good = ReadFirst(line, this, &reason);
    } else {
      RecordEntry entry;
      good = ReadEntry(line, entries.isEmpty() ? 0 : entries.constLast().ms, &entry, &reason);
      entries << entry;
    }
    if (good) continue;
    if (reason.endsWith(u'.')) reason.chop(1);
    *error = QStringLiteral("Line %1 of the recording %2: %3.").arg(number).arg(path, reason);
    return false;
  }
  return true;
}
