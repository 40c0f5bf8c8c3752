#include "gui/parking/pfileinfo.h"

#include <QFile>
#include <QtEndian>
#include <algorithm>
#include <optional>
#include <utility>

namespace {
constexpr qsizetype kHeadBytes = 20;
constexpr qsizetype kMostBytes = 4 * 1024 * 1024;  // a million recordings: no parking period has as many

constexpr qint64 kThreeBucketsFrom = 3600;  // seconds; a shorter period is not sorted
constexpr qint64 kFiveBucketsFrom = 21600;

// The little-endian words of the file, one after the other.
class Words {
public:
  explicit Words(const QByteArray& bytes) : mBytes(bytes) {}

  // 0 beyond the end.
  qint32 Next() {
    if (Left() < 1) return 0;
    const auto word = qFromLittleEndian<qint32>(mBytes.constData() + mAt);
    mAt += qsizetype{sizeof word};
    return word;
  }

  // A count and as many times, which get a last one, 0. None for a count below 1; nothing when the file is too short.
  std::optional<std::vector<qint32>> NextTimes() {
    const qint32 count = Next();
    if (count < 1) return std::vector<qint32>();
    if (count > Left()) return std::nullopt;
    std::vector<qint32> times(std::size_t(count) + 1);
    std::generate_n(times.begin(), count, [this] { return Next(); });
    return times;
  }

private:
  qsizetype Left() const { return (mBytes.size() - mAt) / qsizetype{sizeof(qint32)}; }

  const QByteArray& mBytes;
  qsizetype mAt = 0;
};

qint32 CountOf(const std::vector<qint32>& times) {
  return times.empty() ? 0 : qint32(times.size() - 1);
}

template <typename T, std::size_t N>
T ElementOr0(const std::array<T, N>& array, int i) {
  return i >= 0 && i < int{N} ? array[std::size_t(i)] : T{};
}
}  // namespace

bool PFileInfo::openDataFile(const QString& path) {
  QFile file(path);
  if (!file.open(QIODevice::ReadWrite | QIODevice::ExistingOnly) || file.size() < kHeadBytes) return false;
  const QByteArray bytes = file.read(std::min<qint64>(kMostBytes, file.size()) + 1);
  if (bytes.size() < kHeadBytes || bytes.size() > kMostBytes) return false;

  Words words(bytes);
  if (words.Next() != 1) return false;
  const qint32 start = words.Next();
  if (start <= 0) return false;
  const qint32 end = words.Next();
  const qint32 cut = words.Next();
  if (qint64{cut != 0 ? cut : end} - start < 1) return false;
  auto events = words.NextTimes();
  if (!events) return false;
  auto motions = words.NextTimes();
  if (!motions) return false;

  park_start_time = start;
  park_end_time = end;
  low_voltage_time = cut;
  isLowVoltageEnd = cut != 0;
  pEvtParkFileTime = *std::move(events);
  pMotionParkFileTime = *std::move(motions);
  evt_park_file_cnt = CountOf(pEvtParkFileTime);
  motion_park_file_cnt = CountOf(pMotionParkFileTime);
  return true;
}

void PFileInfo::parsingData() {
  iMaxFileCnt = std::max(evt_park_file_cnt, motion_park_file_cnt);
  if (iMaxFileCnt <= 10) {
    iMaxFileCnt = 10;
    iCompenSationMaxFileCnt = 8;
    graphCol = {6, 4, 2};
  } else {
    iCompenSationMaxFileCnt = iMaxFileCnt / 4 * 4;
    // On purpose not of the lowest mark but of the middle one so far: 0 unless an earlier report has set it.
    const auto middle = quint32(graphCol[1]);
    graphCol = {qint32(6 * middle), qint32(2 * middle), iCompenSationMaxFileCnt / 4};
  }

  graphRow = {};
  iEvtValue = {};
  iMotionValue = {};
  const qint64 duration = qint64{isLowVoltageEnd ? low_voltage_time : park_end_time} - park_start_time;
  iSepLevel = duration <= kThreeBucketsFrom ? 1 : duration <= kFiveBucketsFrom ? 3 : 5;
  if (iSepLevel == 1) return;
  for (int k = 0; k < iSepLevel - 1; ++k)
    graphRow[std::size_t(k)] = qint32(park_start_time + (k + 1) * (duration / iSepLevel));
  // With the 0 behind the last time: each kind that was recorded has one more in its first bucket.
  for (const qint32 time : pEvtParkFileTime) ++iEvtValue[std::size_t(BucketOf(time))];
  for (const qint32 time : pMotionParkFileTime) ++iMotionValue[std::size_t(BucketOf(time))];
}

// The first bucket that ends at `time` or later; the last one has no end.
int PFileInfo::BucketOf(qint32 time) const {
  return int(std::lower_bound(graphRow.begin(), graphRow.begin() + (iSepLevel - 1), time) - graphRow.begin());
}

int PFileInfo::ValueElement(qint32 count, const std::array<int, 5>& value, int i) const {
  if (count == 0) return 0;
  return iSepLevel == 3 || iSepLevel == 5 ? ElementOr0(value, i) : -1;
}

int PFileInfo::getEvtValueElement(int i) const {
  return ValueElement(evt_park_file_cnt, iEvtValue, i);
}
int PFileInfo::getMotionVlaueElement(int i) const {
  return ValueElement(motion_park_file_cnt, iMotionValue, i);
}
qint32 PFileInfo::getGraphColArrayElement(int i) const {
  return ElementOr0(graphCol, i);
}
qint32 PFileInfo::getGraphRowArrayElement(int i) const {
  return ElementOr0(graphRow, i);
}
