#include <algorithm>

#include "gui/parking/pfileinfo.h"
#include "tests/fuzz/readers/reader.h"

namespace {
const QString kReport = QStringLiteral("/tmp/.info.bin");

// The buckets of a kind: together one more than were recorded.
void RequireBuckets(const PFileInfo& info, int count, int (PFileInfo::*element)(int) const) {
  int sum = 0;
  for (int i = 0; i < info.getSepLevel(); ++i) {
    REQUIRE((info.*element)(i) >= 0);
    sum += (info.*element)(i);
  }
  REQUIRE(sum == (count == 0 ? 0 : count + 1));
  REQUIRE((info.*element)(-1) == 0 && (info.*element)(5) == 0);
}
}  // namespace

void TakeReport(const QByteArray& bytes) {
  Root().Write(kReport, bytes);
  PFileInfo info;
  const bool isReport = info.openDataFile(Root().Path(kReport));
  const int impacts = info.getEvtParkFileCnt();
  const int motions = info.getMotionParkFileCnt();
  if (!isReport) {
    REQUIRE(info.getParkStartTime() == 0 && impacts == 0 && motions == 0);
    return;
  }
  const qint64 end = info.getLowVoltageFlag() ? info.getLowVoltageTime() : info.getParkEndTime();
  const qint64 duration = end - info.getParkStartTime();
  REQUIRE(info.getParkStartTime() > 0 && duration > 0 && impacts >= 0 && motions >= 0);
  REQUIRE(4 * (qsizetype{5} + impacts + motions) <= bytes.size());
  REQUIRE(impacts == 0 || info.getEvtParkFileTimePointer()[impacts] == 0);
  REQUIRE(motions == 0 || info.getMotionParkFileTimePointer()[motions] == 0);

  info.parsingData();
  REQUIRE(info.getSepLevel() == (duration <= 3600 ? 1 : duration <= 21600 ? 3 : 5));
  REQUIRE(info.getMaxFileCnt() == std::max({impacts, motions, 10}));
  if (info.getSepLevel() == 1) return;
  RequireBuckets(info, impacts, &PFileInfo::getEvtValueElement);
  RequireBuckets(info, motions, &PFileInfo::getMotionVlaueElement);
  for (int i = 1; i < info.getSepLevel() - 1; ++i)
    REQUIRE(info.getGraphRowArrayElement(i) > info.getGraphRowArrayElement(i - 1));
}
