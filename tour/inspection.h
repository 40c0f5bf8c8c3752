#pragma once

#include <QImage>
#include <QSet>
#include <QStringList>

#include "gui/base/language.h"

class MainWindow;

/// What must hold of every picture that the interface shows, in the language that it has now.
class Inspection {
public:
  /// Listens to what the interface says about its pictures. One at a time.
  Inspection();
  ~Inspection();

  /// Looks at what is shown now, `drawn` as a whole: a text that does not fit into its label, what another screen has
  /// left, a hole through which the video would show, also on a screen of 16 bits.
  void Look(MainWindow& window, const QString& name, const QImage& drawn);

  /// Looks at what was seen of the pictures of the table: all of them, but those that nothing should paint, and none in
  /// another language.
  void LookAtTable();

  void Fail(const QString& sentence) { mFaults << Language() + QStringLiteral(": ") + sentence; }
  const QStringList& Faults() const { return mFaults; }

private:
  void LookAtTexts(MainWindow& window, const QString& name);
  void LookAtGround(MainWindow& window, const QString& name, const QImage& drawn);
  void LookAtKeyColour(MainWindow& window, const QString& name, const QImage& drawn);
  void NotePictures(MainWindow& window);

  QStringList mFaults;
  QSet<QByteArray> mSeen;  // digests of what was painted
};
