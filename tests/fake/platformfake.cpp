#include "tests/fake/platformfake.h"

#include <unistd.h>

#include <cstring>

#include "gui/base/devicepath.h"
#include "platform/devmgr_interface.h"
#include "platform/gui_interface.h"
#include "platform/sysctrl.h"

PlatformFake& PlatformFake::Get() {
  static PlatformFake fake;
  return fake;
}

void PlatformFake::Clear() {
  *this = PlatformFake();
}

QStringList PlatformFake::Commands() const {
  QStringList commands;
  for (const QString& line : asked)
    if (line.front().isDigit()) commands << line;
  return commands;
}

QStringList PlatformFake::Shell() const {
  QStringList commands;
  for (const QString& line : asked)
    if (line.startsWith(QLatin1String("sh "))) commands << line.mid(3);
  return commands;
}

void PlatformFake::Note(const QString& line) {
  asked << line;
  if (meanwhile) meanwhile(line);
}

struct PlatformFakeCalls {
  static int Command(int field, void* data, int length) {
    PlatformFake& fake = PlatformFake::Get();
    int value = 0;
    if (length == sizeof value) std::memcpy(&value, data, sizeof value);
    fake.Note(length == sizeof value ? QStringLiteral("%1 %2").arg(field).arg(value)
                                     : QStringLiteral("%1 %2").arg(field).arg(
                                           QLatin1String(QByteArray(static_cast<char*>(data), length).toHex())));
    if (fake.result < 0) return fake.result;
    if (field == SFIELD_GET_VOLTAGE) std::memcpy(data, &fake.voltage, sizeof fake.voltage);
    if (field == SFIELD_GET_AUTO_LCD_VALUE) std::memcpy(data, &fake.lcdValue, sizeof fake.lcdValue);
    return fake.result;
  }
  static void Note(const QString& line) { PlatformFake::Get().Note(line); }
};

extern "C" {
int Gui_InitMessage(void) {
  return PlatformFake::Get().queue;
}
int Gui_InitSharedMemory(void) {
  return PlatformFake::Get().memory;
}
int ShareMemReadByMid(int, int, void* buffer, int length) {
  const QByteArray& payload = PlatformFake::Get().payload;
  if (length > payload.size()) return -1;
  std::memcpy(buffer, payload.constData(), size_t(length));
  return 0;
}
int ShareMemWriteByMid(int, int, void*, int) {
  return -1;
}
int SysDrvInit(int) {
  return 0;
}
int DevMgr_RegClient(int id) {
  PlatformFakeCalls::Note(QStringLiteral("client %1").arg(id));
  return 0;
}
int DevMgr_Control(int request, void* data, int length) {
  const QByteArray bytes(static_cast<char*>(data), length);
  PlatformFakeCalls::Note(QStringLiteral("device %1 %2").arg(request).arg(QLatin1String(bytes.toHex())));
  return 0;
}
int ipnc_gio_write(int line, int value) {
  PlatformFakeCalls::Note(QStringLiteral("gpio %1 %2").arg(line).arg(value));
  return 0;
}
int ControlSystemData(int field, void* data, int length) {
  return PlatformFakeCalls::Command(field, data, length);
}

// These two replace the C library's for the whole test program; the fuzzer, which needs a shell itself, has another
// one.
[[gnu::weak]] int system(const char* command) {  // NOLINT: the C library's name
  PlatformFakeCalls::Note(QLatin1String("sh ") + QString::fromLocal8Bit(command).remove(DevicePath(QString())));
  return 0;
}
int usleep(useconds_t microseconds) {  // NOLINT: the C library's name
  if (microseconds >= 50000) PlatformFakeCalls::Note(QStringLiteral("sleep %1").arg(microseconds));
  return 0;
}
}
