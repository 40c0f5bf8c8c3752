#pragma once

#include <QObject>
#include <array>
#include <vector>

/// The parking report: when the car was parked, and the times of the impact and motion recordings made meanwhile, also
/// sorted into equal spans of the period for a bar graph. Times are seconds since 1970 as the recorder wrote them;
/// those of the recordings are not checked against the period. GUI thread.
class PFileInfo : public QObject {
  Q_OBJECT

public:
  using QObject::QObject;

  /// Reads the report from a file of this machine. False, and nothing is changed, when there is none, it is not valid,
  /// its period is empty, it counts more recordings than it holds, or it is larger than 4 MiB.
  bool openDataFile(const QString& path);

  /// Computes the axis marks and the buckets of the report that was read.
  void parsingData();

  bool getLowVoltageFlag() const { return isLowVoltageEnd; }  ///< the low-voltage cut ended the period
  int getSepLevel() const { return iSepLevel; }               ///< number of buckets: 1 (not sorted), 3 or 5
  int getMaxFileCnt() const { return iMaxFileCnt; }
  int getCompenSationMaxFileCnt() const { return iCompenSationMaxFileCnt; }
  qint32 getGraphColArrayElement(int i) const;  ///< axis mark 0..2; 0 for any other i
  qint32 getGraphRowArrayElement(
      int i) const;  ///< end of bucket 0..3, a time; 0 for any other i and where there is none
  qint32 getParkStartTime() const { return park_start_time; }
  qint32 getParkEndTime() const { return park_end_time; }               ///< 0 when the period did not end normally
  qint32 getLowVoltageTime() const { return low_voltage_time; }         ///< 0 when there was no cut
  qint32 getEvtParkFileCnt() const { return evt_park_file_cnt; }        ///< 0 or more
  qint32 getMotionParkFileCnt() const { return motion_park_file_cnt; }  ///< 0 or more

  /// The times, one more than the count; the last is 0. Null when the count is 0. Valid until the next report is read.
  const qint32* getEvtParkFileTimePointer() const {
    return pEvtParkFileTime.empty() ? nullptr : pEvtParkFileTime.data();
  }
  const qint32* getMotionParkFileTimePointer() const {
    return pMotionParkFileTime.empty() ? nullptr : pMotionParkFileTime.data();
  }

  /// Recordings in bucket `i`: 0 when there are none of that kind at all, or no such bucket; -1 when they are not
  /// sorted.
  int getEvtValueElement(int i) const;
  int getMotionVlaueElement(int i) const;

private:
  int BucketOf(qint32 time) const;
  int ValueElement(qint32 count, const std::array<int, 5>& value, int i) const;

  int iMaxFileCnt = 0;
  int iCompenSationMaxFileCnt = 0;
  std::array<qint32, 3> graphCol{};
  std::array<qint32, 5> graphRow{};
  std::array<int, 5> iEvtValue{};
  std::array<int, 5> iMotionValue{};
  qint32 park_start_time = 0;
  qint32 park_end_time = 0;
  qint32 low_voltage_time = 0;
  qint32 evt_park_file_cnt = 0;
  qint32 motion_park_file_cnt = 0;
  std::vector<qint32> pEvtParkFileTime;
  std::vector<qint32> pMotionParkFileTime;
  bool isLowVoltageEnd = false;
  int iSepLevel = 0;
};
