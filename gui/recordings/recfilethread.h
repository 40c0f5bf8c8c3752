#pragma once

#include <QThread>

class RecordingFileManager;

/// Builds the catalogue of the card beside the GUI thread, which waits for it.
class RecFileThread : public QThread {
  Q_OBJECT

public:
  /// `manager` is not owned; it belongs to the thread until that has ended.
  RecFileThread(QObject* parent, RecordingFileManager* manager);
  /// Waits for the end of a scan.
  ~RecFileThread() override;

protected:
  void run() override;

private:
  RecordingFileManager* mFileManager;
};
