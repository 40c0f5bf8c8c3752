#include "bench/supervise/rootfolder.h"

#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

#include <QCryptographicHash>
#include <QDeadlineTimer>
#include <QDir>
#include <QFile>
#include <QRandomGenerator>
#include <QtEndian>
#include <algorithm>

#include "bench/supervise/device.h"

namespace {
constexpr int kLockWait = 2000;  // milliseconds: the janitor of a bench that was killed is at work
// The recorder's socket lies below it, and such a path has 107 bytes at most.
constexpr int kLongestPath = 80;

const QString kCannotBeMade = QStringLiteral("The root folder cannot be made: %1.");

const char* const kFolders[] = {"/bin", "/run", "/dev/input", "/proc/pwm", "/proc/sys/vm", "/opt/gui", "/usr/local"};

// Where the pictures are, below the root and below the build's folder alike.
const char* const kPictureFolders[] = {"/opt/gui/images", "/usr/local/etc"};

// What every start makes anew, and what is the bench's.
const char* const kMade[] = {"/bin", "/dev", "/proc", "/opt/gui/images", "/usr", "/snapshots"};
// Of /run these two are the camera's.
const char* const kRunFiles[] = {device::kClock, device::kPanel};

bool IsBelow(const QString& path, const QString& folder) {
  return path == folder || path.startsWith(folder + u'/');
}

void CollectEntries(const QString& root, const QString& folder, QStringList* entries) {
  for (const QString& name :
       QDir(root + folder).entryList(QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot)) {
    const QString path = folder + u'/' + name;
    const auto isMixed = [&path](const char* made) { return IsBelow(QLatin1String(made), path); };
    if (path == QLatin1String("/run") ||
        (RootFolder::IsOfCamera(path) && std::any_of(std::begin(kMade), std::end(kMade), isMixed)))
      CollectEntries(root, path, entries);
    else if (RootFolder::IsOfCamera(path))
      *entries << path;
  }
}

// A command of the camera's shell: it tells the bench what was asked and has done it at once. Opened for reading, too,
// so that it never waits for a bench that is gone.
constexpr char kStandIn[] =
    "#!/bin/sh\n"
    "printf '%s\\n' \"${0##*/} $*\" 1<>\"$DASHCAM_ROOT/run/shell\"\n";
const char* const kStandIns[] = {"/bin/aplay", "/bin/sync"};

// A name that nobody has or can guess.
QString FreshFolder() {
  QString place = qEnvironmentVariable("XDG_RUNTIME_DIR");
  if (place.isEmpty() || place.contains(u':') || place.size() > kLongestPath - 20 || !QFileInfo(place).isWritable())
    place = QStringLiteral("/tmp");
  return place + QStringLiteral("/dashcam-") + QString::number(QRandomGenerator::system()->generate64() >> 14, 36);
}

bool Write(const QString& path, const QByteArray& bytes) {
  QFile file(path);
  return file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size() && file.flush();
}

// A folder that is already there, with something in it, is somebody's own pictures.
bool Link(const QString& target, const QString& path) {
  const QFileInfo info(path);
  if (info.isDir() && !info.isSymLink() && !QDir().rmdir(path)) return true;
  QFile::remove(path);
  return QFile::link(target, path);
}
}  // namespace

RootFolder::~RootFolder() {
  if (mLock >= 0) close(mLock);
}

bool RootFolder::Choose(const QString& folder, QString* error) {
  mIsFresh = folder.isEmpty();
  if (mIsFresh) {
    mPath = FreshFolder();
  } else if (QDir().mkpath(folder)) {
    mPath = QDir(folder).canonicalPath();
  }
  if (mPath.isEmpty() || mPath == QLatin1String("/")) {
    *error = kCannotBeMade.arg(folder);
    return false;
  }
  if (mPath.contains(u':') || mPath.contains(u'\n') || QFile::encodeName(mPath).size() > kLongestPath) {
    *error = QStringLiteral("The path of the root folder has a colon, or more than %1 bytes: %2.")
                 .arg(kLongestPath)
                 .arg(mPath);
    return false;
  }
  return true;
}

bool RootFolder::Take(QString* error) {
  if (mIsFresh && !QDir().mkdir(mPath, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner)) {
    *error = kCannotBeMade.arg(mPath);
    return false;
  }
  QDir().mkpath(Path("/run"));
  // Not for the programs that the bench starts; the janitor is no such program and keeps it.
  mLock = open(QFile::encodeName(Path("/run/bench.lock")).constData(), O_RDWR | O_CREAT | O_CLOEXEC, 0600);
  if (mLock < 0) {
    *error = QStringLiteral("The root folder cannot be written: %1.").arg(mPath);
    return false;
  }
  for (QDeadlineTimer limit(kLockWait); flock(mLock, LOCK_EX | LOCK_NB) < 0; usleep(20000)) {
    if (!limit.hasExpired()) continue;
    *error = QStringLiteral("Another bench uses the root folder %1.").arg(mPath);
    return false;
  }
  return true;
}

bool RootFolder::Furnish(const QString& pictures, QString* error) const {
  bool good = true;
  for (const char* folder : kFolders) good = good && QDir().mkpath(Path(folder));
  for (const char* folder : kPictureFolders) good = good && Link(pictures + QLatin1String(folder), Path(folder));
  for (const char* command : kStandIns)
    good = good && Write(Path(command), kStandIn) &&
           QFile::setPermissions(Path(command), QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
  good = good && Write(Path(device::kBacklight), "100000\n") && Write(Path(device::kDropCaches), "0\n");
  if (!good) *error = QStringLiteral("The root folder cannot be written: %1.").arg(mPath);
  return good;
}

bool RootFolder::IsOfCamera(const QString& path) {
  const auto isIt = [&path](const char* file) { return path == QLatin1String(file); };
  if (IsBelow(path, QStringLiteral("/run"))) return std::any_of(std::begin(kRunFiles), std::end(kRunFiles), isIt);
  return std::none_of(std::begin(kMade), std::end(kMade),
                      [&path](const char* made) { return IsBelow(path, QLatin1String(made)); });
}

QStringList RootFolder::CameraEntries(const QString& root) {
  QStringList entries;
  CollectEntries(root, {}, &entries);
  return entries;
}

quint32 RootFolder::PlatformKey() const {
  const QByteArray hash = QCryptographicHash::hash(mPath.toUtf8(), QCryptographicHash::Sha256);
  // Even, as the memory has the next one; neither 0 nor at the end of the range.
  return (qFromLittleEndian<quint32>(hash.constData()) & 0x3FFFFFFE) | 0x40000000;
}
