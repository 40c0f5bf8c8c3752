#include "bench/supervise/screengallery.h"

#include <signal.h>

#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QFileInfo>
#include <QJsonObject>

namespace {
constexpr char kPage[] = "/index.html";
constexpr char kTemporary[] = "/tmp";  // what the tour needs meanwhile is away with the folder, however it ends

QByteArray ReadAll(const QString& path) {
  QFile file(path);
  return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}
}  // namespace

ScreenGallery::ScreenGallery(const QString& tour, const QString& folder, QObject* parent)
    : QObject(parent), mProgram(tour), mFolder(folder) {}

bool ScreenGallery::Start(QString* error) {
  if (mTour || !mPictures.isEmpty()) return true;
  if (!QFileInfo(mProgram).isExecutable()) {
    *error = QStringLiteral("The program dashcam-tour, which takes the pictures, is not there.");
    return false;
  }
  if (!QDir(mFolder).removeRecursively() || !QDir().mkpath(mFolder + QLatin1String(kTemporary))) {
    *error = QStringLiteral("The folder %1 cannot be written.").arg(mFolder);
    return false;
  }
  mDone = 0;
  mTour = std::make_unique<Child>(QStringLiteral("nice"),
                                  QStringList{"-n", "19", mProgram, QStringLiteral("--pictures"), mFolder}, SIGKILL);
  QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
  environment.insert(QStringLiteral("TMPDIR"), mFolder + QLatin1String(kTemporary));
  mTour->SetEnvironment(environment);
  connect(mTour.get(), &Child::Output, this, &ScreenGallery::Read);
  connect(mTour.get(), &Child::Diagnostic, this, [this](const QString& line) { mWords = line; });
  connect(mTour.get(), &Child::Finished, this, &ScreenGallery::End);
  mTour->Start();
  emit Changed();
  return true;
}

void ScreenGallery::Stop() {
  if (mTour) disconnect(mTour.get(), nullptr, this, nullptr);
  mTour.reset();
  mPictures.clear();
  QDir(mFolder).removeRecursively();
}

void ScreenGallery::Read(const QString& line) {
  if (!line.startsWith(QLatin1String("picture "))) return;
  ++mDone;
  emit Changed();
}

void ScreenGallery::End() {
  const QString ended = mTour->Ended();
  mTour->Stop();
  mTour.release()->deleteLater();  // it is telling of its end
  QDir(mFolder + QLatin1String(kTemporary)).removeRecursively();
  if (ended == QLatin1String("exit code 0")) {
    const QDir folder(mFolder);
    for (QDirIterator file(mFolder, {"*.png"}, QDir::Files, QDirIterator::Subdirectories); file.hasNext();)
      mPictures << folder.relativeFilePath(file.next());
  }
  if (mPictures.isEmpty())
    emit Failed(QStringLiteral("The gallery cannot be made: %1 %2").arg(ended, mWords).trimmed());
  emit Changed();
}

QJsonValue ScreenGallery::State() const {
  if (mTour) return QJsonObject{{QStringLiteral("done"), mDone}};
  return mPictures.isEmpty() ? QJsonValue() : QJsonObject{{QStringLiteral("ready"), true}};
}

QByteArray ScreenGallery::Page() const {
  if (mPictures.isEmpty()) return {};
  return ReadAll(mFolder + QLatin1String(kPage)).replace("<img src=\"", "<img src=\"gallery/");
}

QByteArray ScreenGallery::Picture(const QString& name) const {
  return mPictures.contains(name) ? ReadAll(mFolder + u'/' + name) : QByteArray();
}
