#pragma once

#include <array>

#include "gui/recordings/recordingfilemanager.h"
#include "gui/screen/pagedlist.h"

class RecordingFileItem;

/// The list of recordings: three toggles choose one of the catalogue's lists, a touch of a row plays it. Recording is
/// stopped while it is open. GUI thread.
class RecordingFileList : public PagedList {
  Q_OBJECT

public:
  explicit RecordingFileList(QWidget* parent);

  void touchEvent(int type, int x, int y) override;
  void MessageBoxHandler(int type, int x, int y, int messageId) override;

  /// Shows list `index` (RecordingFileIndex) from its first page.
  void SetListItem(int index);

protected:
  void paintEvent(QPaintEvent* event) override;
  QList<TouchArea> KeyAreas() const override;
  void ShowPage() override;

private:
  struct Key;
  static const Key kKeys[];

  void SetToggleDisplay();
  void ProcessListToggle(int which);
  void FileTypeCheck();
  void ToggleKind() { ProcessListToggle(0); }
  void ToggleCamera() { ProcessListToggle(1); }
  void ToggleOrder() { ProcessListToggle(2); }
  void PlayBack(int row);
  int PlayableIn(int row) const;  // its index in the list; -1: there is none
  void PressHome();
  void PressBack();
  bool ShowBox(int messageId);
  void LeaveForPreview();

  int mFileType = 0;    // 0 all, 1 normal, 2 parking, 3 event, 4 protected
  int mCameraType = 0;  // 0 front, 1 rear
  int mOrderType = 0;   // 0 ascending, 1 descending
  int mListType = -1;   // RecordingFileIndex
  QString mFileTypeImgPath, mCameraTypeImgPath, mOrderTypeImgPath;
  std::array<RecordingFileItem*, kRows> mFileItemWidget;
  RecordingFileManager* mRecordingFileManager;  // the window's; null when there is none
  const FileItemList* mCurFileItem = nullptr;   // one of its lists, or null
  int mNeedFormatFlag = 0;                      // of the format that is asked for: 1 resolution, 2 frame rate, 3 both
};
