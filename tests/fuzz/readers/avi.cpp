#include <fcntl.h>
#include <unistd.h>

#include <QtEndian>
#include <algorithm>
#include <climits>
#include <optional>

#include "gui/recordings/aviheader.h"
#include "gui/recordings/recordingfilemanager.h"
#include "tests/fuzz/readers/reader.h"

namespace {
const QString kRecording = QStringLiteral("/mnt/mmc/rec0_20230101_120000.avi");

// The same the plain way.
std::optional<int> SecondsOf(const QByteArray& bytes) {
  const auto number = [&bytes](qint64 at) -> std::optional<quint32> {
    return at + 4 <= bytes.size() ? std::optional(qFromLittleEndian<quint32>(bytes.constData() + at)) : std::nullopt;
  };
  if (!bytes.startsWith("RIFF") || bytes.mid(12, 4) != "LIST" || !number(28)) return {};
  const qint64 stream = 32 + qint64{*number(28)};
  if (!number(stream + 44) || !number(stream + 52)) return {};
  const quint32 rate = *number(stream + 44), length = *number(stream + 52);
  return rate == 0 ? 0 : int(std::min(length / rate, quint32{INT_MAX}));
}

int FlagOf(const QByteArray& bytes) {
  const QByteArray end = bytes.right(4);
  if (end.size() < 4) return TYPE_NONE;
  const int at = end[2] == '^' ? 0 : end[3] == '^' ? 1 : -1;
  if (at < 0) return TYPE_NONE;
  const char cause = end[at], cut = end[at + 1];
  return cut == 1 ? TYPE_LOW_VOLT : cut == 2 ? TYPE_TEMP_CUT : cause == 1 ? TYPE_EVENT : cause == 2 ? TYPE_MOTION : 0;
}
}  // namespace

void TakeAvi(const QByteArray& bytes) {
  Root().Write(kRecording, bytes);
  const int file = open(qPrintable(Root().Path(kRecording)), O_RDONLY);
  REQUIRE(file >= 0);
  const std::optional<int> seconds = ReadAviSeconds(file);
  REQUIRE(lseek(file, 0, SEEK_CUR) == 0);
  close(file);
  REQUIRE(seconds == SecondsOf(bytes));
  REQUIRE(ReadAviSeconds(Root().Path(kRecording)) == seconds.value_or(0));

  RecordingFileManager manager;
  REQUIRE(manager.ReadFileList(QStringLiteral("/mnt/mmc/")));
  const FileItemList* list = manager.GetFileItem(NORMAL_DECENDING_FRONT);
  REQUIRE(list != nullptr && list->size() == 1);
  const FileItem item = list->at(0);
  REQUIRE(item.filePath == kRecording && item.recTime == seconds.value_or(0));
  REQUIRE(item.fileFlag == FlagOf(bytes));
}
