#include "bench/supervise/shellwatch.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <QFile>
#include <QFileInfo>
#include <algorithm>

#include "bench/supervise/device.h"

namespace {
constexpr qsizetype kLongestCommand = 1000;
constexpr int kBrightest = 100000;
}  // namespace

ShellWatch::ShellWatch(const QString& root, QObject* parent) : QObject(parent), mRoot(root) {
  connect(&mFiles, &QFileSystemWatcher::fileChanged, this, &ShellWatch::ReadFile);
}

ShellWatch::~ShellWatch() {
  mNotifier.reset();
  if (mFifo >= 0) close(mFifo);
}

bool ShellWatch::Open(QString* error) {
  const QByteArray path = QFile::encodeName(mRoot + QStringLiteral("/run/shell"));
  unlink(path.constData());
  if (mkfifo(path.constData(), 0600) == 0) mFifo = open(path.constData(), O_RDWR | O_NONBLOCK | O_CLOEXEC);
  bool watched = mFifo >= 0;
  for (const char* file : {device::kBacklight, device::kDropCaches}) {
    const QString rooted = mRoot + QLatin1String(file);
    mRead[rooted] = {QFileInfo(rooted).lastModified(), QByteArray()};
    watched = watched && mFiles.addPath(rooted);
  }
  if (!watched) {
    *error = QStringLiteral("The shell's commands cannot be watched below %1.").arg(mRoot);
    return false;
  }
  mNotifier = std::make_unique<QSocketNotifier>(mFifo, QSocketNotifier::Read);
  connect(mNotifier.get(), &QSocketNotifier::activated, this, &ShellWatch::ReadCommands);
  return true;
}

void ShellWatch::ReadCommands() {
  char bytes[4096];
  const ssize_t size = read(mFifo, bytes, sizeof bytes);
  if (size <= 0) return;
  mRest.append(bytes, size);
  for (qsizetype end = mRest.indexOf('\n'); end >= 0; end = mRest.indexOf('\n')) {
    const QByteArray line = mRest.left(std::min(end, kLongestCommand));
    mRest.remove(0, end + 1);
    Take(QString::fromUtf8(line).remove(mRoot).trimmed());
  }
  if (mRest.size() > kLongestCommand) mRest.clear();
}

void ShellWatch::Take(const QString& command) {
  if (command.isEmpty()) return;
  emit Asked(command);
  if (command == QStringLiteral("aplay ") + QLatin1String(device::kClickSound)) emit Clicked();
}

// A shell empties the file before it writes: that is no news yet.
void ShellWatch::ReadFile(const QString& path) {
  if (!mFiles.files().contains(path)) mFiles.addPath(path);  // replaced by another one
  const QFileInfo info(path);
  QFile file(path);
  if (!info.isFile() || !file.open(QIODevice::ReadOnly | QIODevice::Unbuffered)) return;
  const QByteArray text = file.read(kLongestCommand).trimmed();
  const QPair<QDateTime, QByteArray> now(info.lastModified(), text);
  if (text.isEmpty() || now == mRead.value(path)) return;  // the two steps of one command
  mRead[path] = now;
  const QString devicePath = path.mid(mRoot.size());
  emit Asked(QStringLiteral("echo %1 > %2").arg(QString::fromUtf8(text), devicePath));
  bool good = false;
  const int value = text.toInt(&good);
  if (!good || devicePath != QLatin1String(device::kBacklight)) return;
  mBacklight = std::clamp(value, 0, kBrightest);
  emit BacklightChanged();
}
