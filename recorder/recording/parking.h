#pragma once

#include <QList>

#include "recorder/recording/recording.h"

namespace recorder {

/// The parking mode and the report of a parking.
class Parking {
public:
  static constexpr int kMostRecordings = 1000;  ///< of either kind in one report

  Parking(Hub& hub, Cameras& cameras, Recording& recording) : mHub(hub), mCameras(cameras), mRecording(recording) {}

  /// The car, which is not parked, was parked `minutesAgo` minutes ago, and the recorder goes into parking mode. False
  /// when the queue is full.
  bool Begin(int minutesAgo);

  /// The recorder leaves parking mode, by itself or because the battery ran low. The report lies there, whole, before
  /// the interface is told. False when the queue is full.
  bool End(bool lowVoltage);

  /// An impact or a movement is recorded, or was `minutesAgo` minutes ago, at most at the start of the parking. False
  /// with one sentence in `error` when the report has room for no more.
  bool Record(bool impact, int minutesAgo, QString* error);

  /// A report that a parking may leave: of one, three or five spans of time, without any recording, and those that are
  /// none: without a byte, too short, counting more than it holds, larger than any.
  enum class Sample { OneLevel, ThreeLevels, FiveLevels, NoRecordings, Empty, Short, Lying, Huge };

  /// A parking that nobody saw ends with this report; not while the car is parked. False when the queue is full.
  bool Leave(Sample sample) { return TellEnd(Bytes(sample)); }

  /// The parking under way, for a recorder that is to go on with it; empty: none. Its times are those of the camera.
  QJsonObject Memory() const;
  /// Goes on with it; nobody is told. What makes no sense is none.
  void Remember(const QJsonObject& memory);

  bool IsParked() const { return mStart > 0; }
  QJsonObject State() const;

  /// The report's file: little-endian 32-bit numbers, times in seconds since 1970.
  static QByteArray Report(int start, int end, int lowVoltage, const QList<int>& impacts, const QList<int>& motions);

private:
  void GoOn(int start);
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
