#pragma once

#include <QPoint>
#include <QRandomGenerator>
#include <QString>

#include "bench/panel/mounting.h"
#include "recorder/service/requests.h"

/// The touch panel: evdev records into a FIFO, from an imaginary panel. It is mounted as the factory coefficients of
/// the interface say, or askew, whatever the interface's calibration is: so calibrating means something.
class TouchPanel {
public:
  static constexpr int kMostRaw = requests::Touch::kMostRaw;  ///< of ABS_X and ABS_Y

  TouchPanel() = default;
  ~TouchPanel() { Close(); }
  TouchPanel(const TouchPanel&) = delete;
  TouchPanel& operator=(const TouchPanel&) = delete;

  /// Makes the FIFO, mode 0600, in place of what is there, and keeps it open for reading and writing: neither a missing
  /// reader nor a missing writer ever holds anybody up. False, with one sentence in `error`.
  bool Open(const QString& fifo, QString* error);
  void Close();

  /// The finger at a pixel of the screen, 0..479 and 0..319: down, or moved when it is down. False, with one sentence
  /// in `error`, when the records so far were not read: then nothing was written.
  bool Press(int x, int y, QString* error);
  /// The same in panel units: the values of ABS_X and ABS_Y, 0..511; beyond these the edge is touched.
  bool PressRaw(int rawX, int rawY, QString* error);
  bool Release(QString* error);
  bool IsDown() const { return mIsDown; }

  /// The panel units that a finger at a pixel of the screen gives; without noise it is met to one pixel.
  QPoint RawAt(int x, int y) const;

  /// What the noise of the touches follows.
  void Seed(quint32 seed) { mNoise.seed(seed); }

  void Mount(const Mounting& mounting) { mMounting = mounting; }
  const Mounting& Mounted() const { return mMounting; }

  /// Drops what nobody has read, and lifts the finger.
  void Drain();

private:
  struct Report;
  bool Write(const Report& report, QString* error);

  Mounting mMounting;
  mutable QRandomGenerator mNoise{QRandomGenerator::global()->generate()};
  int mFifo = -1;
  bool mIsDown = false;
};
