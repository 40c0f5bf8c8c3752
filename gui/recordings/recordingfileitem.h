#pragma once

#include <QWidget>
#include <optional>

#include "gui/recordings/recordingfilemanager.h"

class QLabel;

/// One row of the list of recordings: the icon of the kind, date and time; plain ground when there is no item.
class RecordingFileItem : public QWidget {
  Q_OBJECT

public:
  explicit RecordingFileItem(QWidget* parent);

  /// Shows a copy of `item`, or nothing.
  void Repaint(const std::optional<FileItem>& item);

  /// "2023-01-01 12:34:56"; of a stop marker "2023-01-01 12:34:56~13:00:00".
  static QString SettingListFileName(const FileItem& item);

protected:
  void paintEvent(QPaintEvent* event) override;

private:
  std::optional<FileItem> mCurItem;
  QLabel* mFileNameLabel;
  QString mIconPath;
  QString mIconBgPath;
};
