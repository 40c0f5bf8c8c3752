#pragma once

#include <QObject>
#include <QProcessEnvironment>
#include <QString>

#include "bench/supervise/child.h"

/// Keeps an X server of 480 × 320 pixels and the interface on it running. An X server that ends takes the interface
/// with it; both are started again.
class Supervisor : public QObject {
  Q_OBJECT

public:
  /// `interface`: the program. `root`: the folder that stands for the camera's file system. `language`: that the
  /// interface begins in.
  Supervisor(const QString& interface, const QString& root, const QString& language, QObject* parent = nullptr);

  /// False with one sentence in `error` when X server or interface are not installed.
  bool Start(QString* error);

  /// Ends the interface, then the X server; kills what does not end within 2 s.
  void Stop();

  const Child& Interface() const { return mInterface; }
  void RestartInterface();

  /// The language of the interface, and a restart in another one.
  const QString& Language() const { return mLanguage; }
  void Speak(const QString& language);

  /// Ends the interface; it stays away until RestartInterface().
  void EndInterface() { mInterface.Stop(); }
  void KillInterface() { mInterface.Kill(); }

signals:
  void DisplayReady(const QString& framebuffer);  ///< the file with the X server's picture
  void DisplayLost();
  void InterfaceStarted();
  void InterfaceEnded();
  void Diagnostic(const QString& line);  ///< a line of the interface's standard error
  void Note(const QString& sentence);
  void NoDisplay(const QString& sentence);  ///< the X server has not come for 10 s: nothing can be shown

private:
  bool WriteCookie() const;
  void TakeDisplay(const QString& number);

  QString mRoot;
  QString mLanguage;
  Child mServer;
  Child mInterface;
  QProcessEnvironment mEnvironment;  // of the interface
  bool mHasDisplay = false;
  QTimer mComing;      // of the first X server, at most
  QString mComplaint;  // the X server's last
};
