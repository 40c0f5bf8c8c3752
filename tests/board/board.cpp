#include "tests/board/board.h"

#include <QElapsedTimer>
#include <QFile>
#include <QJsonDocument>
#include <QTest>

namespace {
constexpr int kStartMs = 180000, kAnswerMs = 60000;
const QString kImage = QStringLiteral(SOURCE_DIR "/build/board-image/");

/// The next line without its end; null: none came in time.
QByteArray Line(QLocalSocket& socket, int ms) {
  QElapsedTimer clock;
  clock.start();
  while (!socket.canReadLine())
    if (!socket.waitForReadyRead(int(std::max<qint64>(ms - clock.elapsed(), 1))) && clock.elapsed() >= ms) return {};
  return socket.readLine().chopped(1);
}
}  // namespace

bool Board::Connect(QLocalSocket& socket, const char* name, int ms) {
  return QTest::qWaitFor(
      [&] {
        socket.abort();
        socket.connectToServer(mFolder.filePath(QLatin1String(name)));
        return socket.waitForConnected(100) || mEmulator.state() != QProcess::Running;
      },
      ms);
}

bool Board::PowerOn(QString* error) {
  CutPower();
  const auto socket = [this](const char* name) {
    return QStringLiteral("path=%1,server=on,wait=off").arg(mFolder.filePath(QLatin1String(name)));
  };
  QElapsedTimer clock;
  clock.start();
  mEmulator.setProcessChannelMode(QProcess::ForwardedErrorChannel);
  mEmulator.start(QStringLiteral("qemu-system-arm"),
                  {"-M",          "virt,highmem=off",
                   "-cpu",        "cortex-a7",
                   "-m",          "512",
                   "-accel",      "tcg",
                   "-nodefaults", "-display",
                   "none",        "-no-reboot",
                   "-kernel",     kImage + "vmlinuz",
                   "-initrd",     kImage + "initramfs",
                   "-append",     "console=ttyAMA0 panic=-1 quiet",
                   "-rtc",        "base=2026-05-08T13:24:00,clock=vm",
                   "-device",     "virtio-gpu-pci,xres=480,yres=320",
                   "-qmp",        "unix:" + socket("monitor").mid(5),
                   "-serial",     "file:" + mFolder.filePath("console"),
                   "-device",     "virtio-serial-pci",
                   "-chardev",    "socket,id=agent," + socket("agent"),
                   "-device",     "virtserialport,chardev=agent",
                   "-drive",      "if=none,id=disk,format=raw,cache=writethrough,file=" + mDisk,
                   "-device",     "virtio-blk-pci,drive=disk"});
  if (!mEmulator.waitForStarted() || !Connect(mMonitor, "monitor", kAnswerMs) || !Connect(mAgent, "agent", kAnswerMs)) {
    *error = QStringLiteral("The emulator does not start: %1.").arg(mEmulator.errorString());
    return false;
  }
  Line(mMonitor, kAnswerMs);  // its greeting
  Command({{"execute", "qmp_capabilities"}});
  const bool isUp = QTest::qWaitFor([this] { return Console().contains("screen PREVIEW"); }, kStartMs) &&
                    QTest::qWaitFor([this] { return !Display().isNull() && Display().pixel(0, 0) != qRgb(0, 0, 0); },
                                    int(kStartMs - clock.elapsed()));
  mPowerToPicture = double(clock.elapsed()) / 1000;
  const bool isAnswered = isUp && Ask("run true") &&
                          QTest::qWaitFor(
                              [this] {
                                return !Record({{"type", "state"}}).isEmpty();
                              },
                              int(kStartMs - clock.elapsed()));
  if (!isAnswered) {
    *error = QStringLiteral("The board does not come up. Its console:\n%1").arg(QString::fromUtf8(Console()));
    return false;
  }
  return true;
}

void Board::CutPower() {
  mEmulator.kill();
  mEmulator.waitForFinished();
}

std::optional<QByteArray> Board::Ask(const QByteArray& line) {
  mAgent.write(line + '\n');
  QByteArray output;
  for (;;) {
    const QByteArray next = Line(mAgent, kAnswerMs);
    if (next.isNull()) return {};
    if (next.startsWith('.')) return next == ".0" ? std::optional(output) : std::nullopt;
    output += next + '\n';
  }
}

std::optional<QByteArray> Board::Run(const QString& command) {
  return Ask("run " + command.toUtf8());
}

std::optional<double> Board::AwaitPicture() {
  const auto answer = Ask("picture");
  return answer ? std::optional(answer->trimmed().toDouble()) : std::nullopt;
}

QJsonObject Board::Record(const QJsonObject& request) {
  const QByteArray line = QJsonDocument(request).toJson(QJsonDocument::Compact);
  return QJsonDocument::fromJson(Ask("record " + line).value_or(QByteArray())).object();
}

bool Board::Press(QPoint at) {
  const QPoint raw = mPanel.RawAt(at.x(), at.y());
  return Ask(QStringLiteral("touch %1 %2").arg(raw.x()).arg(raw.y()).toLatin1()).has_value();
}

bool Board::Release() {
  return Ask("lift").has_value();
}

QJsonObject Board::Command(const QJsonObject& command) {
  mMonitor.write(QJsonDocument(command).toJson(QJsonDocument::Compact) + '\n');
  for (;;) {
    const QByteArray line = Line(mMonitor, kAnswerMs);
    const QJsonObject answer = QJsonDocument::fromJson(line).object();
    if (line.isNull() || answer.contains(QStringLiteral("return")) || answer.contains(QStringLiteral("error")))
      return answer;  // everything else is an event
  }
}

QImage Board::Display() {
  const QString file = mFolder.filePath(QStringLiteral("display.ppm"));
  Command({{"execute", "screendump"}, {"arguments", QJsonObject{{"filename", file}}}});
  return QImage(file).convertToFormat(QImage::Format_RGB32);
}

QByteArray Board::Console() const {
  QFile file(mFolder.filePath(QStringLiteral("console")));
  return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}
