#pragma once

#include <QByteArray>
#include <QList>
#include <QStringList>
#include <functional>

/// Stands in for the platform library, the shell and the long sleeps, and notes in order what the interface asked.
/// Linked instead of the platform library; GUI thread.
class PlatformFake {
public:
  static PlatformFake& Get();

  /// Everything asked since the last Clear(), one line each:
  ///   "8581 1"            ControlSystemData of field 8581 with the int 1
  ///   "8658 0102.."       the same with data of any other length than 4, in hex
  ///   "sh echo 0 > /proc/pwm/pwm0"   a shell command, without the test's root
  ///   "client 2", "device 1 40420f..", "gpio 46 1"   DevMgr_RegClient, DevMgr_Control with its data, ipnc_gio_write
  ///   "sleep 1000000"     a usleep of 50 ms or more, microseconds; it does not sleep
  QStringList asked;

  int queue = -1;         ///< what Gui_InitMessage gives
  int memory = -1;        ///< what Gui_InitSharedMemory gives; below 0: the status thread ends at once
  int result = 0;         ///< what ControlSystemData gives
  float voltage = 12.4F;  ///< the answer to SFIELD_GET_VOLTAGE
  int lcdValue = 30000;   ///< the answer to SFIELD_GET_AUTO_LCD_VALUE
  QByteArray payload;     ///< what the shared memory holds, at every offset; nothing longer can be read

  /// Called in the middle of each ControlSystemData or shell command, with its line; for what happens meanwhile.
  std::function<void(const QString& line)> meanwhile;

  /// Forgets what was asked and goes back to the values above.
  void Clear();

  /// The lines of `asked` that are commands ("8581 1"), and that are shell commands (without "sh ").
  QStringList Commands() const;
  QStringList Shell() const;

private:
  friend struct PlatformFakeCalls;
  void Note(const QString& line);
};
