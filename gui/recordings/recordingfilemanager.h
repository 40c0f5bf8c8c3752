#pragma once

#include <QList>
#include <QString>
#include <array>
#include <memory>
#include <optional>

struct dirent;

/// The kind of a recording, from the first three letters of its name.
enum File_Prefix {
  FILE_PREFIX_NORMAL = 0,   ///< "rec"
  FILE_PREFIX_PARKING = 1,  ///< "pmr"
  FILE_PREFIX_EVENT = 2,    ///< "evt"
  FILE_PREFIX_NDF = 3,      ///< "ndf": a protected file, made by the driver's key
};

/// What the recorder noted about a recording.
enum File_Flag_Type {
  TYPE_NONE = 0,
  TYPE_LOW_VOLT = 1,
  TYPE_TEMP_CUT = 2,
  TYPE_EVENT = 3,
  TYPE_MOTION = 4,
  TYPE_RTC_ERROR = 5,
};

/// The item lists: kind (all, normal, parking, event, ndf) × 4 + order × 2 + camera (0 front, 1 rear). The ascending
/// lists run from the newest recording to the oldest, the descending ones from the oldest to the newest.
enum RecordingFileIndex {
  ALL_ASCENDING_FRONT = 0,
  ALL_ASCENDING_REAR,
  ALL_DECENDING_FRONT,
  ALL_DECENDING_REAR,
  NORMAL_ASCENDING_FRONT,
  NORMAL_ASCENDING_REAR,
  NORMAL_DECENDING_FRONT,
  NORMAL_DECENDING_REAR,
  PARKING_ASCENDING_FRONT,
  PARKING_ASCENDING_REAR,
  PARKING_DECENDING_FRONT,
  PARKING_DECENDING_REAR,
  EVENT_ASCENDING_FRONT,
  EVENT_ASCENDING_REAR,
  EVENT_DECENDING_FRONT,
  EVENT_DECENDING_REAR,
  NDF_ASCENDING_FRONT,
  NDF_ASCENDING_REAR,
  NDF_DECENDING_FRONT,
  NDF_DECENDING_REAR,
  RECORDING_FILE_INDEX_MAX,
};

/// One recording or stop marker, as the scan found it.
struct FilelistEntry {
  int mode = FILE_PREFIX_NORMAL;  ///< File_Prefix
  int camMode = 0;                ///< 0 front, 1 rear
  int key = 0;                    ///< running number
  int fileFlag = TYPE_NONE;       ///< File_Flag_Type
  int recordTime = 0;             ///< seconds
  bool eventFlag = false;
  bool recStopFlag = false;   ///< a marker of a time without recording, no video
  bool rtcErrorFlag = false;  ///< recorded while the clock was invalid
  QString date;               ///< start, "20230101_123456"
  QString fileName;           ///< "/mnt/mmc/rec0_20230101_123456.avi": a path of the camera
  QString filePath;           ///< empty
  QString recStopData;        ///< of a stop marker: its end, "20230101_123500"
};
using FilelistEntryList = QList<FilelistEntry>;

/// A time without recording. Its texts are as the card has them; meant are "20230101_123456".
struct RecStopInfo {
  QString startTime;
  QString endTime;  ///< may be empty
};
using RecStopInfoList = QList<RecStopInfo>;

/// One row of a list.
struct FileItem {
  QString icon;              ///< picture
  QString fileName;          ///< "2023-01-01 12:34:56"
  QString filePath;          ///< "/mnt/mmc/rec0_20230101_123456.avi": a path of the camera
  QString checkBox;          ///< picture; none
  QString iconBg;            ///< picture of the row's ground
  QString recStopData;       ///< of a stop marker: when recording went on, "20230101_123500"
  bool recStopFlag = false;  ///< a marker of a time without recording, no video
  int recTime = 0;           ///< seconds
  int fileFlag = 0;          ///< File_Flag_Type
  int camMode = 0;           ///< 0 front, 1 rear
};

/// A list of the catalogue. It keeps the entries that it shows, and makes an item when it is asked for it.
class FileItemList {
public:
  FileItemList() = default;
  /// Of `entries` those at `places`, 0 to entries.size() - 1 each; the last place first when `isBackward`.
  FileItemList(const FilelistEntryList& entries, const QList<int>& places, bool isBackward)
      : mEntries(entries), mPlaces(places), mIsBackward(isBackward) {}

  qsizetype size() const { return mPlaces.size(); }
  /// Item `index`, 0 to size() - 1.
  FileItem at(qsizetype index) const;

private:
  FilelistEntryList mEntries;  // shared with the manager and its other lists
  QList<int> mPlaces;          // in mEntries
  bool mIsBackward = false;
};

/// The catalogue of the recordings on the card. It is built once, by RecFileThread, and not changed afterwards; it is
/// read on the GUI thread.
class RecordingFileManager {
  struct FoundFile;

public:
  RecordingFileManager();
  ~RecordingFileManager();
  RecordingFileManager(const RecordingFileManager&) = delete;
  RecordingFileManager& operator=(const RecordingFileManager&) = delete;

  /// Scans `dirPath`, a path of the camera that ends in a slash. False when it does not exist or holds no file that may
  /// be a recording; then there are no lists.
  bool ReadFileList(const QString& dirPath);

  /// List `index` (RecordingFileIndex); null when it is absent, or for another index.
  const FileItemList* GetFileItem(int index) const;

  /// The list that is shown, one of this manager's, or null.
  const FileItemList* GetCurItem() const { return mCurItem; }
  void SetCurItem(const FileItemList* list) { mCurItem = list; }

  // The steps of the scan.

  /// A new empty list of entries.
  void CreateFileListEntry();
  /// The entries, in the order of the scan.
  FilelistEntryList* GetFileListEntry() { return mFileListEntry.get(); }
  /// Adds the recording of this name, read from the card. False when the name is not one of a recording.
  bool AddFileList(const QString& name);
  /// A new entry with the next key. `mode` is a File_Prefix, `camMode` 0 or 1, `date` goes into the path as it is. A
  /// video's file is read, unless it is `found`, which the scan has read.
  FilelistEntry NewFileListEntry(int mode, bool eventFlag, int camMode, const QString& date, bool recStopFlag,
                                 bool rtcErrorFlag, const FoundFile* found = nullptr);
  /// Sets flag and duration from the file, which is opened for writing, too, and not written; from `found` when it is
  /// that. False when the file cannot be opened, is empty or no whole AVI header.
  static bool GetFileData(FilelistEntry* entry, const FoundFile* found = nullptr);
  /// Reads the text of a stop marker's own file, at most 4 KiB. False when it cannot be read. The scan does not use it.
  static bool GetRecStopFileData(FilelistEntry* entry);
  /// A new empty list of stop records.
  void CreateRecStopInfoList();
  /// Appends the stop records of the file `path` of the camera: at most 10,000 lines, of at most 40 MB; lines above
  /// 4 KiB and those without a word are left out. False when the list is null or the file cannot be read.
  static bool GetRecordStopFileInfo(const QString& path, RecStopInfoList* list);
  /// Puts a marker for each stop record in front of the first entry that is later, and prints its place on the standard
  /// output. False when a list is null.
  static bool SortingFileList(const RecStopInfoList* stopList, FilelistEntryList* entries);
  /// Fills the item lists from the entries; leaves them as they are when there is none.
  void AddFileItem(bool);

private:
  struct NameParts;

  static std::optional<NameParts> PartsOf(QStringView name);
  static bool Find(int folder, const dirent& entry, FoundFile* file);
  static std::optional<QList<FoundFile>> FindFiles(const QString& dirPath);
  bool Add(QStringView name, const FoundFile* found);
  void InitData();
  void AllRemoveFileList();

  std::unique_ptr<FilelistEntryList> mFileListEntry;
  std::array<std::unique_ptr<FileItemList>, RECORDING_FILE_INDEX_MAX> mFileItem;  // by RecordingFileIndex
  const FileItemList* mCurItem;                                                   // not owned
  std::unique_ptr<RecStopInfoList> mRecStopInfoList;
  int mKey;
};
