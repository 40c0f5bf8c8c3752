#pragma once

#include <QByteArray>
#include <QJsonValue>
#include <QObject>
#include <QSet>
#include <QString>
#include <memory>

#include "bench/supervise/child.h"

/// The pictures of every screen and every message box, and the page that shows them, as dashcam-tour makes them: when
/// somebody asks, beside everything else, into a folder of the bench's own. What it has made stays as long as the bench
/// runs.
class ScreenGallery : public QObject {
  Q_OBJECT

public:
  /// `tour`: the program. `folder`: emptied when it begins.
  ScreenGallery(const QString& tour, const QString& folder, QObject* parent = nullptr);
  ~ScreenGallery() override { Stop(); }

  /// Begins, unless it has begun already. False with one sentence in `error`: there is no such program, or no folder.
  bool Start(QString* error);

  /// Ends what runs, and takes all of it away.
  void Stop();

  /// {"done": 12} while it runs, {"ready": true} when all is there, else null.
  QJsonValue State() const;

  /// The page, whose pictures stand below "gallery/"; empty before it is ready.
  QByteArray Page() const;

  /// A PNG by its name, "preview.png" or "en/preview.png"; empty when there is none of that name.
  QByteArray Picture(const QString& name) const;

signals:
  void Changed();
  void Failed(const QString& sentence);

private:
  void End();
  void Read(const QString& line);

  QString mProgram;
  QString mFolder;
  std::unique_ptr<Child> mTour;  // null: it does not run
  int mDone = 0;
  QString mWords;           // its last
  QSet<QString> mPictures;  // when it is ready
};
