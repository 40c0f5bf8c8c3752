#include "gui/recordings/recordingfilemanager.h"

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <QFile>
#include <QFileInfo>
#include <QStringBuilder>
#include <QStringDecoder>
#include <QtDebug>
#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <optional>
#include <utility>
#include <vector>

#include "gui/base/devicepath.h"
#include "gui/recordings/aviheader.h"

namespace {
constexpr int kNameLength = 24;  // "rec0_20230101_123456.avi", and "p.zel" of a stop marker is one more
constexpr int kLongNameLength = 25;
constexpr int kMostNameBytes = 3 * kLongNameLength;  // as UTF-8
constexpr QLatin1String kPrefixes[] = {QLatin1String("rec"), QLatin1String("pmr"), QLatin1String("evt"),
                                       QLatin1String("ndf")};  // by File_Prefix
constexpr QLatin1String kMarkerExtension("zel");

constexpr qsizetype kCardLength = qsizetype{sizeof device::kCard} - 1;

constexpr int kTrailerBytes = 4;
constexpr char kFlagsFollow = '^';

constexpr int kMostStopLines = 10000;
constexpr int kMostLineBytes = 4096;
constexpr qint64 kMostStopBytes = qint64{kMostStopLines} * kMostLineBytes;

constexpr int kAnyFlag = -1;
struct IconRow {
  int mode;
  int flag;
  QLatin1String icon;
};
constexpr QLatin1String kStopIcon("filelist/rec_file_stop_normal.bmp");
constexpr QLatin1String kRowBg("filelist/list_item_bg_normal.bmp");
// The first row that fits.
constexpr IconRow kIcons[] = {
    {FILE_PREFIX_NORMAL, TYPE_RTC_ERROR, QLatin1String("filelist/normal_file_time_error_normal.bmp")},
    {FILE_PREFIX_NORMAL, kAnyFlag, QLatin1String("filelist/normal_file_normal.bmp")},
    {FILE_PREFIX_PARKING, TYPE_RTC_ERROR, QLatin1String("filelist/parking_file_time_error_normal.bmp")},
    {FILE_PREFIX_PARKING, TYPE_LOW_VOLT, QLatin1String("filelist/parking_file_lowvoltage_normal.bmp")},
    {FILE_PREFIX_PARKING, TYPE_TEMP_CUT, QLatin1String("filelist/parking_file_temp_intercept_normal.bmp")},
    {FILE_PREFIX_PARKING, TYPE_EVENT, QLatin1String("filelist/parking_file_event_normal.bmp")},
    {FILE_PREFIX_PARKING, TYPE_MOTION, QLatin1String("filelist/parking_file_move_normal.bmp")},
    {FILE_PREFIX_PARKING, kAnyFlag, QLatin1String("filelist/parking_file_normal.bmp")},
    {FILE_PREFIX_EVENT, TYPE_RTC_ERROR, QLatin1String("filelist/event_file_time_error_normal.bmp")},
    {FILE_PREFIX_EVENT, TYPE_LOW_VOLT, QLatin1String("filelist/event_file_lowvoltage_normal.bmp")},
    {FILE_PREFIX_EVENT, kAnyFlag, QLatin1String("filelist/event_file_normal.bmp")},
    {FILE_PREFIX_NDF, kAnyFlag, QLatin1String("filelist/ndf_file_normal.bmp")},
};

QLatin1String IconOf(const FilelistEntry& entry) {
  if (entry.recStopFlag) return kStopIcon;
  const auto* row = std::find_if(std::begin(kIcons), std::end(kIcons), [&entry](const IconRow& icon) {
    return icon.mode == entry.mode && (icon.flag == kAnyFlag || icon.flag == entry.fileFlag);
  });
  return row->icon;
}

// "rec*", "pmr*", "evt*", "ndf*" and "*p.zel", in any case, not hidden.
bool MayBeRecording(QByteArrayView name) {
  for (const QLatin1String prefix : kPrefixes)
    if (qstrnicmp(name.data(), prefix.data(), size_t(prefix.size())) == 0) return true;
  return name.size() >= 5 && name.front() != '.' && qstricmp(name.last(5).data(), "p.zel") == 0;
}

// The parts of a text between separators, without the empty ones.
template <std::size_t kMost>
struct Parts {
  Parts(QStringView text, QChar separator) {
    for (qsizetype start = 0, end = 0; start < text.size(); start = end + 1) {
      for (end = start; end < text.size() && text[end] != separator;) ++end;
      if (end == start) continue;
      if (count < kMost) parts[count] = text.sliced(start, end - start);
      ++count;
    }
  }
  QStringView operator[](std::size_t i) const { return parts[i]; }  // i < kMost; empty when there is none

  std::array<QStringView, kMost> parts;
  std::size_t count = 0;  // of all, also beyond kMost
};

QString MarkerPath(int mode, int camMode, QStringView date) {
  return QLatin1String(device::kCard) % kPrefixes[mode] % QChar(u'0' + camMode) % u'_' % date % QLatin1String("p.zel");
}

QString VideoPath(int mode, int camMode, QStringView date, bool rtcErrorFlag) {
  return QLatin1String(device::kCard) % kPrefixes[mode] % QChar(u'0' + camMode) % u'_' % date %
         QLatin1String(rtcErrorFlag ? "_.avi" : ".avi");
}

// The recorder's note at the end of a recording: a marker byte behind two bytes of flags, at one of two places.
quint8 FlagOf(const char* trailer) {
  const char* flags = trailer[2] == kFlagsFollow ? trailer : trailer[3] == kFlagsFollow ? trailer + 1 : nullptr;
  if (flags == nullptr) return TYPE_NONE;
  if (flags[1] == TYPE_LOW_VOLT || flags[1] == TYPE_TEMP_CUT) return quint8(flags[1]);
  return flags[0] == 1 ? TYPE_EVENT : flags[0] == 2 ? TYPE_MOTION : TYPE_NONE;
}

enum class Reading : quint8 { Absent, Failed, Done };  // Failed: cannot be opened, or is empty

/// What the catalogue takes from a video file.
struct VideoData {
  std::optional<int> seconds;  // nothing without a whole AVI header
  Reading reading = Reading::Absent;
  quint8 flag = TYPE_NONE;  // File_Flag_Type by the trailer
};

// Opens `path`, from `folder` on; `status` is set unless that fails. What is no file must not block.
VideoData ReadVideo(int folder, const char* path, struct stat* status) {
  const int file = openat(folder, path, O_RDWR | O_NONBLOCK | O_NOCTTY | O_CLOEXEC);
  if (file < 0) return {{}, errno == ENOENT || errno == ELOOP ? Reading::Absent : Reading::Failed};
  VideoData data{{}, Reading::Failed};
  if (fstat(file, status) == 0 && status->st_size > 0) {
    char trailer[kTrailerBytes];
    data.reading = Reading::Done;
    if (status->st_size >= kTrailerBytes &&
        ReadAt(file, trailer, sizeof trailer, status->st_size - kTrailerBytes) == kTrailerBytes)
      data.flag = FlagOf(trailer);
    data.seconds = ReadAviSeconds(file);
  }
  close(file);
  return data;
}
}  // namespace

/// Its texts are parts of the name.
struct RecordingFileManager::NameParts {
  QStringView day, time;
  int mode;  // File_Prefix
  int camMode;
  bool isMarker;
  bool rtcErrorFlag;
};

/// A file of the card that may be a recording.
struct RecordingFileManager::FoundFile {
  qint64 modified = 0;  // ms since 1970
  VideoData data;       // of a video
  quint8 length = 0;    // of the name; 0 when it is not the name of a recording
  std::array<char16_t, kLongNameLength> units{};

  QStringView Name() const { return {units.data(), length}; }
};

// Nothing when it is not the name of a recording.
std::optional<RecordingFileManager::NameParts> RecordingFileManager::PartsOf(QStringView name) {
  if (name.size() != kNameLength && name.size() != kLongNameLength) return {};
  if (name[3] != u'0' && name[3] != u'1') return {};
  const Parts<2> dotted(name, u'.');
  if (dotted.count < 2) return {};
  const Parts<3> parts(dotted[0], u'_');
  if (parts.count != 3 && parts.count != 4) return {};
  const QStringView word = parts[0];
  if (word.size() != 4) return {};
  const auto prefix = std::find(std::begin(kPrefixes), std::end(kPrefixes), word.first(3));
  if (prefix == std::end(kPrefixes)) return {};
  const bool isMarker = dotted[1] == kMarkerExtension;
  return NameParts{
      parts[1], isMarker ? parts[2].chopped(1) : parts[2],  int(prefix - kPrefixes), word[3] == u'0' ? 0 : 1,
      isMarker, !isMarker && name.size() == kLongNameLength};
}

namespace {
// "2023-01-01 12:34:56" of "20230101_123456"; what has another form gets its separators at the same places.
QString DisplayText(const QString& date) {
  if (date.size() == 15 && date[8] == u'_' && date.count(u'_') == 1) {
    const QStringView text(date);
    return text.first(4) % u'-' % text.sliced(4, 2) % u'-' % text.sliced(6, 2) % u' ' % text.sliced(9, 2) % u':' %
           text.sliced(11, 2) % u':' % text.last(2);
  }
  const QStringList parts = date.split(u'_');
  QString day = parts.value(0), time = parts.value(1);
  for (const int at : {4, 7}) day.insert(at, u'-');
  for (const int at : {2, 5}) time.insert(at, u':');
  return day % u' ' % time;
}
}  // namespace

RecordingFileManager::RecordingFileManager() {
  InitData();
  CreateFileListEntry();
}

RecordingFileManager::~RecordingFileManager() {
  AllRemoveFileList();
}

void RecordingFileManager::InitData() {
  AllRemoveFileList();
  mKey = -1;
}

void RecordingFileManager::CreateFileListEntry() {
  mFileListEntry = std::make_unique<FilelistEntryList>();
}

void RecordingFileManager::AllRemoveFileList() {
  mFileListEntry.reset();
  mFileItem = {};
  mRecStopInfoList.reset();
  mCurItem = nullptr;
}

const FileItemList* RecordingFileManager::GetFileItem(int index) const {
  return index >= 0 && index < RECORDING_FILE_INDEX_MAX ? mFileItem[std::size_t(index)].get() : nullptr;
}

// Everything of a file comes from one opening of it: its time, which says when it is its turn, and the rest for then.
// False when it is no file.
bool RecordingFileManager::Find(int folder, const dirent& entry, FoundFile* file) {
  struct stat status {};
  const bool isFile = entry.d_type == DT_REG;
  if (!isFile && (entry.d_type != DT_LNK && entry.d_type != DT_UNKNOWN)) return false;
  if (!isFile && (fstatat(folder, entry.d_name, &status, 0) != 0 || !S_ISREG(status.st_mode))) return false;
  const QByteArrayView bytes(entry.d_name);
  if (bytes.size() > kMostNameBytes) return true;
  std::array<QChar, kMostNameBytes + 1> text;  // no unit of it takes less than a byte
  QStringDecoder decoder(QStringDecoder::Utf8, QStringDecoder::Flag::Stateless);
  const QStringView name(text.data(), decoder.appendToBuffer(text.data(), bytes));
  const auto parts = PartsOf(name);
  if (!parts) return true;
  file->length = quint8(name.size());
  std::copy(name.utf16(), name.utf16() + name.size(), file->units.begin());
  if (!parts->isMarker) file->data = ReadVideo(folder, entry.d_name, &status);
  if (status.st_mode == 0 && fstatat(folder, entry.d_name, &status, 0) != 0) return false;
  file->modified = qint64{status.st_mtim.tv_sec} * 1000 + status.st_mtim.tv_nsec / 1000000;
  return true;
}

// The oldest first; of the same time the last name first. Nothing without a folder.
std::optional<QList<RecordingFileManager::FoundFile>> RecordingFileManager::FindFiles(const QString& dirPath) {
  DIR* folder = opendir(QFile::encodeName(DevicePath(dirPath)).constData());
  if (folder == nullptr) return {};
  QList<FoundFile> files;
  while (const dirent* entry = readdir(folder))
    if (const QByteArrayView name(entry->d_name); MayBeRecording(name) && name.isValidUtf8())
      if (!Find(dirfd(folder), *entry, &files.emplaceBack())) files.removeLast();
  closedir(folder);
  std::sort(files.begin(), files.end(), [](const FoundFile& a, const FoundFile& b) {
    return a.modified != b.modified ? a.modified < b.modified : a.Name() > b.Name();
  });
  return files;
}

bool RecordingFileManager::ReadFileList(const QString& dirPath) {
  const auto files = FindFiles(dirPath);
  if (!files) return false;
  qDebug("file number = %d", int(files->size()));
  if (files->isEmpty()) return false;
  mFileListEntry->reserve(files->size());
  int rejected = 0;
  const bool isCard = dirPath == QLatin1String(device::kCard);
  for (const FoundFile& file : *files)
    if (!Add(file.Name(), isCard ? &file : nullptr)) ++rejected;
  qDebug("invalid num = %d", rejected);

  CreateRecStopInfoList();
  GetRecordStopFileInfo(QLatin1String(device::kRecordStops), mRecStopInfoList.get());
  SortingFileList(mRecStopInfoList.get(), mFileListEntry.get());
  AddFileItem(false);
  return true;
}

bool RecordingFileManager::AddFileList(const QString& name) {
  return Add(name, nullptr);
}

bool RecordingFileManager::Add(QStringView name, const FoundFile* found) {
  const auto parts = PartsOf(name);
  if (!parts) return false;
  FilelistEntry entry = NewFileListEntry(parts->mode, false, parts->camMode, parts->day % u'_' % parts->time,
                                         parts->isMarker, parts->rtcErrorFlag, found);
  // Markers come from the recorder's list alone: one that has a file of its own has no end.
  if (parts->isMarker) {
    qDebug("recStop error");
    return false;
  }
  mFileListEntry->append(std::move(entry));
  return true;
}

FilelistEntry RecordingFileManager::NewFileListEntry(int mode, bool eventFlag, int camMode, const QString& date,
                                                     bool recStopFlag, bool rtcErrorFlag, const FoundFile* found) {
  FilelistEntry entry;
  entry.mode = mode;
  entry.camMode = camMode;
  entry.key = mKey++;
  entry.fileFlag = rtcErrorFlag ? TYPE_RTC_ERROR : TYPE_NONE;
  entry.eventFlag = eventFlag;
  entry.recStopFlag = recStopFlag;
  entry.rtcErrorFlag = rtcErrorFlag;
  entry.date = date;
  entry.fileName = recStopFlag ? MarkerPath(mode, camMode, date) : VideoPath(mode, camMode, date, rtcErrorFlag);
  if (!recStopFlag) GetFileData(&entry, found);
  return entry;
}

// The path of a recording may name another file than the one that was found.
bool RecordingFileManager::GetFileData(FilelistEntry* entry, const FoundFile* found) {
  VideoData data;
  struct stat status {};
  if (found != nullptr && QStringView(entry->fileName).sliced(kCardLength) == found->Name())
    data = found->data;
  else
    data = ReadVideo(AT_FDCWD, QFile::encodeName(DevicePath(entry->fileName)).constData(), &status);
  if (data.reading == Reading::Absent) return false;
  entry->fileFlag = data.reading == Reading::Done && entry->rtcErrorFlag ? int{TYPE_RTC_ERROR} : data.flag;
  entry->recordTime = data.seconds.value_or(0);
  return data.seconds.has_value();
}

bool RecordingFileManager::GetRecStopFileData(FilelistEntry* entry) {
  const QString path = DevicePath(entry->fileName);
  QFile file(path);
  if (!QFileInfo(path).isFile() || !file.open(QIODevice::ReadOnly | QIODevice::Text)) return false;
  entry->recStopData = QString::fromUtf8(file.read(kMostLineBytes));
  if (entry->recStopData.isEmpty()) qDebug("entry->recStopData is empty");
  return true;
}

void RecordingFileManager::CreateRecStopInfoList() {
  mRecStopInfoList = std::make_unique<RecStopInfoList>();
}

bool RecordingFileManager::GetRecordStopFileInfo(const QString& path, RecStopInfoList* list) {
  const QString ours = DevicePath(path);
  QFile file(ours);
  if (list == nullptr || !QFileInfo(ours).isFile() || !file.open(QIODevice::ReadOnly)) return false;
  bool isStart = true;  // of a line; else the rest of a long one
  for (int lines = 0; lines < kMostStopLines && file.pos() < kMostStopBytes && !file.atEnd();) {
    QByteArray line = file.readLine(kMostLineBytes + 3);  // its end, and the 0 that is not returned
    const bool isEnd = line.endsWith('\n') || file.atEnd();
    while (line.endsWith('\n') || line.endsWith('\r')) line.chop(1);
    if (isStart && isEnd && line.size() <= kMostLineBytes) {
      const QString text = QString::fromUtf8(line);
      const Parts<2> parts(text, u' ');
      if (parts.count > 0) list->append({parts[0].toString(), parts[1].toString()});
    }
    isStart = isEnd;
    if (isEnd) ++lines;
  }
  return true;
}

// One record after the other, each in front of the first entry that is later than it, those of the records before
// included: so a record's gap is that before the first file later than it, and in a gap they stand by their time, those
// of the same time as the records came.
bool RecordingFileManager::SortingFileList(const RecStopInfoList* stopList, FilelistEntryList* entries) {
  if (stopList == nullptr || entries == nullptr) return false;
  if (stopList->isEmpty()) return true;

  // The files that are later than all before them: the first file later than a record is one of them.
  std::vector<qsizetype> latest;
  for (qsizetype i = 0; i < entries->size(); ++i)
    if (latest.empty() || entries->at(i).date > entries->at(latest.back()).date) latest.push_back(i);

  std::vector<const RecStopInfo*> sorted;
  sorted.reserve(std::size_t(stopList->size()));
  for (const RecStopInfo& record : *stopList) {
    const auto place =
        std::upper_bound(sorted.begin(), sorted.end(), record.startTime,
                         [](const QString& start, const RecStopInfo* other) { return start < other->startTime; });
    const auto later = std::upper_bound(latest.begin(), latest.end(), record.startTime,
                                        [&](const QString& start, qsizetype i) { return start < entries->at(i).date; });
    const qsizetype files = later == latest.end() ? entries->size() : *later;
    std::printf("p = %d\n", int(files + (place - sorted.begin())));  // whoever works on the recorder reads it there
    sorted.insert(place, &record);
  }
  std::fflush(stdout);

  FilelistEntryList merged;
  merged.reserve(entries->size() + stopList->size());
  auto next = sorted.cbegin();
  const auto addMarker = [&] {
    FilelistEntry marker;
    marker.recStopFlag = true;
    marker.date = (*next)->startTime;
    marker.recStopData = (*next)->endTime;
    marker.fileName = MarkerPath(FILE_PREFIX_NORMAL, 0, marker.date);
    merged.append(std::move(marker));
    ++next;
  };
  for (FilelistEntry& entry : *entries) {
    while (next != sorted.cend() && (*next)->startTime < entry.date) addMarker();
    merged.append(std::move(entry));
  }
  while (next != sorted.cend()) addMarker();
  entries->swap(merged);
  return true;
}

void RecordingFileManager::AddFileItem(bool) {
  if (mFileListEntry->isEmpty()) return;
  // By kind, all of them first, and camera. A marker is in the lists of all kinds, of both cameras.
  std::array<std::array<QList<int>, 2>, 5> places;
  for (int i = 0; i < int(mFileListEntry->size()); ++i) {
    const FilelistEntry& entry = std::as_const(*mFileListEntry)[i];
    const auto camera = std::size_t(entry.camMode);
    places[0][camera].append(i);
    (entry.recStopFlag ? places[0][1 - camera] : places[std::size_t(1 + entry.mode)][camera]).append(i);
  }
  for (std::size_t index = 0; index < mFileItem.size(); ++index) {
    if (mFileItem[index] == nullptr) mFileItem[index] = std::make_unique<FileItemList>();
    *mFileItem[index] = FileItemList(*mFileListEntry, places[index / 4][index % 2], index % 4 < 2);
  }
}

FileItem FileItemList::at(qsizetype index) const {
  const FilelistEntry& entry = mEntries.at(mPlaces.at(mIsBackward ? mPlaces.size() - 1 - index : index));
  FileItem item;
  item.icon = IconOf(entry);
  item.fileName = DisplayText(entry.date);
  item.filePath = entry.fileName;
  item.iconBg = kRowBg;
  item.recStopData = entry.recStopData;
  item.recStopFlag = entry.recStopFlag;
  item.recTime = entry.recordTime;
  item.fileFlag = entry.fileFlag;
  item.camMode = entry.camMode;
  return item;
}
