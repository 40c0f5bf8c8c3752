// The simulated recorder alone, below DASHCAM_ROOT: the other side for the conformance check.
#include <QCoreApplication>

#include "recorder/firmware/recorder.h"

int main(int argc, char** argv) {
  const QCoreApplication application(argc, argv);
  Recorder recorder(qEnvironmentVariable("DASHCAM_ROOT"));
  QString error;
  if (!recorder.Start(&error)) qFatal("%s", qPrintable(error));
  return QCoreApplication::exec();
}
