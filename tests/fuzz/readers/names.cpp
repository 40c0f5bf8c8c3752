#include <QFile>
#include <QSet>

#include "gui/recordings/recordingfilemanager.h"
#include "tests/fake/cardfake.h"
#include "tests/fuzz/readers/reader.h"

namespace {
const QString kCard = QStringLiteral("/mnt/mmc/");
constexpr qsizetype kMostFiles = 8;
constexpr qsizetype kLongest = 28;  // of 25 characters, with another ending
constexpr int kSeconds = 30;

// As the card can have it; empty: it cannot.
QByteArray NameOf(const QByteArray& line) {
  const QByteArray name = line.left(200).replace('/', '_').replace('\0', '_');
  return name == "." || name == ".." || name == "Setup" ? QByteArray() : name;
}

// The entries of one list: those of the camera, of the kind that its index says.
void RequireList(const RecordingFileManager& manager, int index) {
  const FileItemList* list = manager.GetFileItem(index);
  const FileItemList* backwards = manager.GetFileItem(index ^ 2);
  REQUIRE(list != nullptr && backwards != nullptr && list->size() == backwards->size());
  static const char* const kPrefixes[] = {"", "rec", "pmr", "evt", "ndf"};
  for (qsizetype row = 0; row < list->size(); ++row) {
    const FileItem item = list->at(row);
    REQUIRE(item.filePath == backwards->at(list->size() - 1 - row).filePath);
    REQUIRE(item.camMode == index % 2 && !item.recStopFlag);
    REQUIRE(item.filePath.startsWith(kCard + QLatin1String(kPrefixes[index / 4])));
    REQUIRE(item.filePath.size() <= kCard.size() + kLongest && item.filePath.endsWith(QLatin1String(".avi")));
    REQUIRE(item.recTime == kSeconds || item.recTime == 0);
    REQUIRE(item.icon.startsWith(QLatin1String("filelist/")) && !item.fileName.isEmpty());
  }
}
}  // namespace

// A name on each line.
void TakeNames(const QByteArray& bytes) {
  static const QByteArray kAvi = card::Avi(kSeconds);
  QSet<QByteArray> names;
  for (const QByteArray& line : bytes.split('\n'))
    if (const QByteArray name = NameOf(line); !name.isEmpty() && names.size() < kMostFiles) {
      QFile file(QFile::encodeName(Root().Path(kCard)) + name);
      names << name;
    }
  const QByteArray folder = QFile::encodeName(Root().Path(kCard));
  for (const QByteArray& name : names) {
    FILE* file = std::fopen((folder + name).constData(), "w");
    if (!file) continue;
    std::fwrite(kAvi.constData(), 1, size_t(kAvi.size()), file);
    std::fclose(file);
  }

  RecordingFileManager manager;
  if (manager.ReadFileList(kCard) && !manager.GetFileListEntry()->isEmpty()) {
    qsizetype all = 0, ofKinds = 0;
    for (int index = 0; index < RECORDING_FILE_INDEX_MAX; ++index) {
      RequireList(manager, index);
      if (index % 4 < 2) (index < 4 ? all : ofKinds) += manager.GetFileItem(index)->size();
    }
    REQUIRE(all == ofKinds && all == manager.GetFileListEntry()->size() && all <= names.size());
  }
  for (const QByteArray& name : names) std::remove((folder + name).constData());
}
