#include <QRegularExpression>

#include "gui/recordings/recordingfilemanager.h"
#include "tests/fake/cardfake.h"
#include "tests/fuzz/readers/reader.h"

namespace {
const QString kStops = QStringLiteral("/mnt/mmc/Setup/record_stop.info");
constexpr qsizetype kMostStops = 10000;

// In the order in which they were written, which is not that of their names.
const char* const kRecordings[] = {"rec0_20230101_120000.avi", "rec1_20230101_120000.avi", "evt0_20230101_110000.avi",
                                   "rec0_20230101_130000.avi"};

// The first file that is later than a marker stands behind it, and all that stand before it are not.
void RequirePlaces(const FilelistEntryList& entries) {
  for (qsizetype marker = 0; marker < entries.size(); ++marker) {
    if (!entries[marker].recStopFlag) continue;
    const QString& start = entries[marker].date;
    bool isFirst = true;
    for (qsizetype i = 0; i < entries.size(); ++i) {
      if (entries[i].recStopFlag) continue;
      if (i < marker) REQUIRE(entries[i].date <= start);
      if (i > marker && std::exchange(isFirst, false)) REQUIRE(entries[i].date > start);
    }
  }
}
}  // namespace

void TakeStops(const QByteArray& bytes) {
  static const bool isCard = [] {
    for (int i = 0; i < int(std::size(kRecordings)); ++i) card::Put(Root(), QLatin1String(kRecordings[i]), 1000 + i);
    return true;
  }();
  Root().Write(kStops, bytes);
  RecStopInfoList stops;
  REQUIRE(isCard && RecordingFileManager::GetRecordStopFileInfo(kStops, &stops));
  REQUIRE(stops.size() <= std::min(kMostStops, bytes.count('\n') + 1));
  for (const RecStopInfo& stop : stops) {
    REQUIRE(!stop.startTime.isEmpty() && !stop.startTime.contains(u' ') && !stop.startTime.contains(u'\n'));
    REQUIRE(!stop.endTime.contains(u' ') && !stop.endTime.contains(u'\n'));
  }

  RecordingFileManager manager;
  REQUIRE(manager.ReadFileList(QStringLiteral("/mnt/mmc/")));
  REQUIRE(manager.GetFileListEntry()->size() == stops.size() + qsizetype{std::size(kRecordings)});
  RequirePlaces(*manager.GetFileListEntry());
  // A marker is in the lists of all kinds, of both cameras.
  REQUIRE(manager.GetFileItem(ALL_DECENDING_FRONT)->size() == stops.size() + 3);
  REQUIRE(manager.GetFileItem(ALL_DECENDING_REAR)->size() == stops.size() + 1);
  REQUIRE(manager.GetFileItem(NORMAL_DECENDING_FRONT)->size() == 2);
}
