#pragma once

#include <QImage>
#include <QJsonObject>
#include <QLocalSocket>
#include <QPoint>
#include <QProcess>
#include <QString>
#include <QTemporaryDir>
#include <optional>

#include "bench/panel/touchpanel.h"

/// The emulated board: a 32-bit ARM machine that boots tests/board/image's kernel and memory file system, with a
/// display of 480 × 320 pixels, a touch panel and a disk. tests/board/agent.c is the test's hands inside of it.
class Board {
public:
  /// It keeps `disk`, a file, from one start to the next.
  explicit Board(const QString& disk) : mDisk(disk) {}
  ~Board() { CutPower(); }

  /// Starts the emulator, its clock at 13:24 on 2026-05-08, and waits until agent and recorder answer and the interface
  /// has shown its preview. False, with one sentence in `error`, when that takes more than 180 s.
  bool PowerOn(QString* error);

  /// At once: what was not on the disk is lost.
  void CutPower();

  /// Runs a shell command and gives its output; nothing when it fails or takes more than a minute.
  std::optional<QByteArray> Run(const QString& command);

  /// Waits until something is in the display's memory; the seconds since the kernel started.
  std::optional<double> AwaitPicture();

  /// One request of dashcam-recorder's socket and its answer; empty without one.
  QJsonObject Record(const QJsonObject& request);

  bool Plug() { return Ask("plug").has_value(); }  ///< the touch panel
  bool Unplug() { return Ask("unplug").has_value(); }
  bool Press(QPoint at);  ///< a pixel of the screen
  bool Release();
  bool Tap(QPoint at) { return Press(at) && Release(); }

  /// What is in the display's memory, RGB32.
  QImage Display();

  /// Everything that the console has said since the emulator started.
  QByteArray Console() const;

  double PowerToPicture() const { return mPowerToPicture; }  ///< seconds from PowerOn() to the preview, of this machine

private:
  std::optional<QByteArray> Ask(const QByteArray& line);
  QJsonObject Command(const QJsonObject& command);
  bool Connect(QLocalSocket& socket, const char* name, int ms);

  QTemporaryDir mFolder;
  QString mDisk;
  QProcess mEmulator;
  QLocalSocket mMonitor, mAgent;
  TouchPanel mPanel;
  double mPowerToPicture = 0;
};
