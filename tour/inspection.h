#pragma once

#include <QImage>
#include <QSet>
#include <QStringList>

class MainWindow;

/// What must hold of every picture that the interface shows.
class Inspection {
public:
  /// Listens to what the interface says about its pictures from now on. One at a time.
  Inspection();

  /// Looks at what is shown now, `drawn` as a whole: a text that does not fit into its label, what another screen has
  /// left, a hole through which the video would show, also on a screen of 16 bits.
  void Look(MainWindow& window, const QString& name, const QImage& drawn);

  /// The pictures of the table that were never seen, and those that were although nothing should paint them.
  QStringList Unseen() const;

  void Fail(const QString& sentence) { mFaults << sentence; }
  const QStringList& Faults() const { return mFaults; }

private:
  void LookAtTexts(MainWindow& window, const QString& name);
  void LookAtGround(MainWindow& window, const QString& name, const QImage& drawn);
  void LookAtKeyColour(MainWindow& window, const QString& name, const QImage& drawn);
  void NotePictures(MainWindow& window);

  QStringList mFaults;
  QSet<QByteArray> mSeen;  // digests of what was painted
};
