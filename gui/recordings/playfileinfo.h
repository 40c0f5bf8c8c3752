#pragma once

#include <QObject>

/// What the player is to play. The player deletes it.
class PlayFileInfo : public QObject {
  Q_OBJECT

public:
  /// Item `fileIndex` of list `listIndex` (RecordingFileIndex).
  PlayFileInfo(QObject* parent, int listIndex, int fileIndex)
      : QObject(parent), mListIndex(listIndex), mFileIndex(fileIndex) {}

  int GetListIndex() const { return mListIndex; }
  void SetListIndex(int index) { mListIndex = index; }
  int GetFileIndex() const { return mFileIndex; }
  void SetFileIndex(int index) { mFileIndex = index; }

private:
  int mListIndex;
  int mFileIndex;
};
