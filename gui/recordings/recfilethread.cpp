#include "gui/recordings/recfilethread.h"

#include "gui/base/devicepath.h"
#include "gui/recordings/recordingfilemanager.h"

RecFileThread::RecFileThread(QObject* parent, RecordingFileManager* manager) : QThread(parent), mFileManager(manager) {}

RecFileThread::~RecFileThread() {
  wait();
}

void RecFileThread::run() {
  mFileManager->ReadFileList(QLatin1String(device::kCard));
}
