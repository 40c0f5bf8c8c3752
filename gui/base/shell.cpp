#include "gui/base/shell.h"

#include <unistd.h>

#include <QStandardPaths>
#include <cstdlib>

#include "gui/base/devicepath.h"

namespace {
// Where system() finds it.
constexpr char kShell[] = "/bin/sh";
const struct {
  const char* name;
  const char* without;
} kCommands[] = {
    {"aplay", "keys are silent"},
    {"sync", "what is saved may be lost when the power fails"},
    {"rm", "a request for the factory's touch coefficients is carried out at each start"},
};
}  // namespace

void CheckShell() {
  if (access(kShell, X_OK) != 0) qWarning("shell: there is no %s: no command is run, the LCD stays as it is", kShell);
  for (const auto& [name, without] : kCommands)
    if (QStandardPaths::findExecutable(QLatin1String(name)).isEmpty())
      qWarning("shell: there is no %s: %s", name, without);
}

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
