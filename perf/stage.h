#pragma once

#include <QProcessEnvironment>
#include <QString>
#include <memory>

#include "bench/panel/touchpanel.h"
#include "bench/supervise/rootfolder.h"
#include "gui/vocabulary/vocabulary.h"
#include "perf/program.h"
#include "perf/screen.h"

class RecorderThread;

/// What is around the program that is measured: an X server, a touch panel and a recorder of its own.
class Stage {
public:
  Stage();
  ~Stage();

  const Screen& Lcd() const { return *mScreen; }
  QString Path(const char* below) const { return mRoot.Path(below); }
  quint32 QueueKey() const { return mRoot.PlatformKey(); }

  /// Waits until the screen is empty, and drops what the panel and the queue still hold: the next program starts anew.
  void Clear();
  std::unique_ptr<Program> Start(const QString& program, const QStringList& arguments = {});
  /// Clears, starts an interface and waits until its preview has come to rest.
  std::unique_ptr<Program> StartInterface(const QString& gui = QStringLiteral(BINARY_DIR "/gui/dashcam-gui"));
  bool IsPreviewThere() const;

  void Press(QPoint at);
  void Release();
  /// Press, rest of the screen, release.
  void Tap(QPoint at);
  /// A status message without a payload, as the recorder sends it.
  void Send(RECV_ZEL_STATUS_EVENT event);

private:
  RootFolder mRoot;
  std::unique_ptr<Screen> mScreen;
  TouchPanel mPanel;
  std::unique_ptr<RecorderThread> mRecorder;
  QProcessEnvironment mEnvironment;
  int mQueue = -1;
};
