#include "gui/base/shell.h"

#include <cstdlib>

#include "gui/base/devicepath.h"

void RunShell(const QString& command) {
  if (std::system(command.toLocal8Bit().constData()) != 0) qDebug("shell: failed: %s", qPrintable(command));
}

void SyncFiles() {
  RunShell(QStringLiteral("sync"));
}

void PlayClick() {
  RunShell(QStringLiteral("aplay %1 &").arg(ShellPath(device::kClickSound)));
}

void PlayClickAndWait() {
  RunShell(QStringLiteral("aplay %1").arg(ShellPath(device::kClickSound)));
}

void WriteBacklight(int pwm) {
  RunShell(QStringLiteral("echo %1 > %2").arg(pwm).arg(ShellPath(device::kBacklight)));
}
