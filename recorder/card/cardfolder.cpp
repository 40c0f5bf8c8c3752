#include "recorder/card/cardfolder.h"

#include <sys/stat.h>
#include <unistd.h>

#include <QDirIterator>
#include <QFile>
#include <algorithm>
#include <cerrno>
#include <cstdio>

#include "recorder/base/files.h"

namespace recorder {
namespace {

constexpr const char* kKinds[] = {"rec", "pmr", "evt", "ndf"};
constexpr int kDate = 5;  // where it begins in a name
constexpr int kDateSize = 15;
constexpr int kMostStops = 1000;
constexpr qint64 kLargestStops = 1 << 20;
constexpr char kStops[] = "Setup/record_stop.info";
constexpr char kFormatTime[] = "Setup/.format_time";
// A recording that is being written: none of the list's patterns fits it.
constexpr char kUnfinished[] = ".unfinished";

bool IsRecording(const QString& name) {
  return (name.size() == 24 || name.size() == 25) && name.endsWith(QLatin1String(".avi")) && name[4] == u'_' &&
         std::any_of(std::begin(kKinds), std::end(kKinds),
                     [&name](const char* kind) { return name.startsWith(QLatin1String(kind)); });
}

QStringView Date(const QString& name) {
  return QStringView(name).mid(kDate, kDateSize);
}

bool IsProtected(const QString& name) {
  return name.startsWith(QLatin1String("ndf"));
}

}  // namespace

QString TimeText(const QDateTime& time) {
  return time.toString(QStringLiteral("yyyyMMdd_HHmmss"));
}

QDateTime TimeOf(const QString& text) {
  return QDateTime::fromString(text, QStringLiteral("yyyyMMdd_HHmmss"));
}

QString FileName(const Label& label, int camera) {
  return QStringLiteral("%1%2_%3%4.avi")
      .arg(QLatin1String(kKinds[static_cast<int>(label.kind)]))
      .arg(camera)
      .arg(TimeText(label.start), label.clockBroken ? QStringLiteral("_") : QString());
}

QByteArray Trailer(const Label& label) {
  const char bytes[] = {static_cast<char>(label.trigger), static_cast<char>(label.cut), '^', 0};
  return QByteArray(bytes, sizeof bytes);
}

QStringList CardFolder::Recordings() const {
  QStringList names;
  for (QDirIterator entry(mPath, QDir::Files); entry.hasNext();) {
    entry.next();
    if (IsRecording(entry.fileName())) names << entry.fileName();
  }
  return names;
}

bool CardFolder::Has(const QDateTime& start) const {
  Label label;
  label.start = start;
  for (const auto kind : {Label::Kind::Normal, Label::Kind::Parking, Label::Kind::Event, Label::Kind::Protected}) {
    label.kind = kind;
    for (const bool broken : {false, true}) {
      label.clockBroken = broken;
      for (const int camera : {0, 1})
        if (QFile::exists(Path(FileName(label, camera)))) return true;
    }
  }
  return false;
}

bool CardFolder::Write(const Label& label, int camera, const QByteArray& avi, qint64 modified) const {
  return !avi.isEmpty() && WriteFile(FileName(label, camera), avi + Trailer(label), modified);
}

bool CardFolder::WriteFile(const QString& name, const QByteArray& bytes, qint64 modified) const {
  QFile file(Path(QLatin1String(kUnfinished)));
  const timespec time{static_cast<time_t>(modified / 1000), static_cast<long>(modified % 1000 * 1000000)};
  const timespec times[] = {time, time};
  const bool good = file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size() && file.flush() &&
                    futimens(file.handle(), times) == 0;
  file.close();
  if (good &&
      std::rename(QFile::encodeName(file.fileName()).constData(), QFile::encodeName(Path(name)).constData()) == 0)
    return true;
  file.remove();
  return false;
}

void CardFolder::Trim(int most, int atOnce) const {
  QStringList names = Recordings();
  const qsizetype excess = std::min<qsizetype>(names.size() - most, atOnce);
  if (excess <= 0) return;
  names.removeIf(IsProtected);
  const auto end = names.begin() + std::min(excess, names.size());
  std::partial_sort(names.begin(), end, names.end(),
                    [](const QString& one, const QString& other) { return Date(one) < Date(other); });
  std::for_each(names.begin(), end, [this](const QString& name) { QFile::remove(Path(name)); });
}

QString CardFolder::Newest() const {
  QString newest;
  for (const QString& name : Recordings())
    if (name[3] == u'0' && (newest.isEmpty() || Date(newest) < Date(name))) newest = name;
  return newest;
}

bool CardFolder::AddStop(const QDateTime& from, const QDateTime& to) const {
  QFile file(Path(QLatin1String(kStops)));
  QByteArrayList lines;
  if (file.open(QIODevice::ReadOnly)) lines = file.read(kLargestStops).trimmed().split('\n');
  lines << TimeText(from).toLatin1() + ' ' + TimeText(to).toLatin1();
  lines.removeAll({});
  return WriteWhole(file.fileName(), lines.mid(std::max<qsizetype>(0, lines.size() - kMostStops)).join('\n') + '\n');
}

// The interface may have removed it meanwhile.
bool CardFolder::Remove(const QString& name) const {
  return unlink(QFile::encodeName(Path(name)).constData()) == 0 || errno == ENOENT;
}

bool CardFolder::RemoveStops() const {
  return Remove(QLatin1String(kStops));
}

QDateTime CardFolder::Formatted() const {
  return QFileInfo(Path(QLatin1String(kFormatTime))).lastModified();
}

bool CardFolder::StampFormat() const {
  return !mKeepsStamp || WriteWhole(Path(QLatin1String(kFormatTime)), QByteArray());
}

void CardFolder::KeepNoStamp() {
  mKeepsStamp = false;
  QFile::remove(Path(QLatin1String(kFormatTime)));
}

}  // namespace recorder
