#include "gui/recordings/recfilethread.h"

#include <sched.h>

#include <system_error>
#include <thread>

#include "gui/base/devicepath.h"
#include "gui/recordings/recordingfilemanager.h"

RecFileThread::RecFileThread(QObject* parent, RecordingFileManager* manager) : QThread(parent), mFileManager(manager) {}

RecFileThread::~RecFileThread() {
  wait();
}

// With a table of descriptors of its own: each use of a descriptor that threads share costs the kernel two atomic
// counts. Not in this thread: Qt would close its own descriptors in the wrong table.
void RecFileThread::run() {
  const auto scan = [this] { mFileManager->ReadFileList(QLatin1String(device::kCard)); };
  try {
    std::thread([&scan] {
      unshare(CLONE_FILES);  // where it cannot be, the scan takes longer
      scan();
    }).join();
  } catch (const std::system_error&) {  // no memory for one more thread
    scan();
  }
}
