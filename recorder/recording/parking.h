#pragma once

#include <QList>

#include "recorder/recording/recording.h"

namespace recorder {

/// The parking mode and the report of a parking.
class Parking {
public:
  static constexpr int kMostRecordings = 1000;  ///< of either kind in one report

  Parking(Hub& hub, Cameras& cameras, Recording& recording) : mHub(hub), mCameras(cameras), mRecording(recording) {}

  /// The car was parked `minutesAgo` minutes ago, and the recorder goes into parking mode.
  bool Begin(int minutesAgo, QString* error);

  /// The recorder leaves parking mode, by itself or because the battery ran low. The report lies there, whole, before
  /// the interface is told.
  bool End(bool lowVoltage, QString* error);

  /// An impact or a movement is recorded, or was `minutesAgo` minutes ago, at most at the start of the parking.
  bool Record(bool impact, int minutesAgo, QString* error);

  /// A report that a parking may leave: of one, three or five spans of time, without any recording, and those that are
  /// none: without a byte, too short, counting more than it holds, larger than any.
  enum class Sample { OneLevel, ThreeLevels, FiveLevels, NoRecordings, Empty, Short, Lying, Huge };

  /// A parking that nobody saw ends with this report. False with one sentence in `error` while the car is parked.
  bool Leave(Sample sample, QString* error);

  bool IsParked() const { return mStart > 0; }
  QJsonObject State() const;

  /// The report's file: little-endian 32-bit numbers, times in seconds since 1970.
  static QByteArray Report(int start, int end, int lowVoltage, const QList<int>& impacts, const QList<int>& motions);

private:
  QByteArray Bytes(Sample sample) const;
  bool TellEnd(const QByteArray& report);

  Hub& mHub;
  Cameras& mCameras;
  Recording& mRecording;
  int mStart = 0;  // seconds since 1970; 0: not parked
  QList<int> mImpacts;
  QList<int> mMotions;
};

}  // namespace recorder
