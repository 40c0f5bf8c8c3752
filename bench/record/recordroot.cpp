#include "bench/record/recordroot.h"

#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QJsonArray>
#include <algorithm>

#include "bench/supervise/rootfolder.h"
#include "recorder/base/files.h"
#include "recorder/card/clipfacts.h"
#include "recorder/card/stock.h"
#include "recorder/recording/recording.h"

namespace recordroot {
namespace {

constexpr qint64 kLargest = 512 * 1024;      // bytes of a file: a picture of the user's fits
constexpr qint64 kLargestAll = 2048 * 1024;  // of all files together
constexpr qsizetype kMostFiles = 200;
constexpr qsizetype kLongestPath = 200;  // characters
constexpr qsizetype kMostClips = recorder::Recording::kMost + 2;

bool IsPath(const QString& path) {
  return path.startsWith(u'/') && path.size() <= kLongestPath && !path.contains(QChar(0)) &&
         path == QDir::cleanPath(path) && !path.startsWith(QLatin1String("/../")) && path != QLatin1String("/..") &&
         path.size() > 1 && RootFolder::IsOfCamera(path);
}

QByteArray Data(const QJsonObject& file) {
  return QByteArray::fromBase64(file.value(QLatin1String("data")).toString().toLatin1());
}

// The card's files, wherever they are.
QString CardOf(const QString& root) {
  const QString away = root + QLatin1String(recorder::kCardFilesAway);
  return QFile::exists(away) ? away : root + QLatin1String(recorder::kCardFiles);
}

struct Collection {
  QJsonArray files;
  QJsonArray left;
  qint64 bytes = 0;

  void Take(const QString& path, const QString& file) {
    QFile bytesOf(file);
    const qint64 size = bytesOf.size();
    if (size > kLargest || bytes + size > kLargestAll || files.size() >= kMostFiles || !IsPath(path) ||
        !bytesOf.open(QIODevice::ReadOnly)) {
      if (left.size() < kMostFiles) left.append(path.left(kLongestPath));
      return;
    }
    const QByteArray data = bytesOf.read(kLargest);
    bytes += data.size();
    files.append(QJsonObject{{QStringLiteral("path"), path}, {QStringLiteral("data"), QLatin1String(data.toBase64())}});
  }
};

// Those below `folder` but for the recordings; they stand at `as` in the camera.
void TakeFiles(const QString& folder, const QString& as, Collection* collection) {
  QStringList files;
  for (QDirIterator entry(folder, QDir::Files | QDir::Hidden | QDir::NoSymLinks, QDirIterator::Subdirectories);
       entry.hasNext();)
    files << entry.next();
  files.sort();
  for (const QString& file : files) {
    const QString path = as + file.mid(folder.size());
    if (!RootFolder::IsOfCamera(path)) continue;
    const bool isOfCard = as.isEmpty() && (path.startsWith(QLatin1String(recorder::kCardFiles) + QLatin1String("/")) ||
                                           path.startsWith(QLatin1String(recorder::kCardFilesAway)));
    if (!isOfCard && !path.endsWith(QLatin1String(".avi"))) collection->Take(path, file);
  }
}

QJsonArray Clips(const recorder::CardFolder& card, Collection* collection) {
  QStringList names = card.Recordings();
  std::sort(names.begin(), names.end(), [](const QString& one, const QString& other) {
    return one.mid(5) == other.mid(5) ? one < other : one.mid(5) > other.mid(5);  // the newest first
  });
  QJsonArray clips;
  for (const QString& name : names.mid(0, kMostClips)) clips.append(recorder::ClipFacts::Of(card, name).ToJson());
  if (names.size() > kMostClips)
    collection->left.append(QStringLiteral("%1 older recordings").arg(names.size() - kMostClips));
  return clips;
}

bool CheckFiles(const QJsonArray& files, QString* error) {
  qint64 bytes = 0;
  for (const QJsonValue& file : files) {
    const QString path = file.toObject().value(QLatin1String("path")).toString();
    const qint64 size = Data(file.toObject()).size();
    bytes += size;
    if (IsPath(path) && size <= kLargest) continue;
    *error = QStringLiteral("The root state has a file that may not be, or is too large: \"%1\".")
                 .arg(path.simplified().left(60));
    return false;
  }
  if (files.size() <= kMostFiles && bytes <= kLargestAll) return true;
  *error = QStringLiteral("The root state has too many files.");
  return false;
}

}  // namespace

QJsonObject Describe(const QString& root, bool isFresh) {
  if (isFresh) return {{QStringLiteral("state"), QStringLiteral("fresh")}};
  Collection collection;
  TakeFiles(root, {}, &collection);
  TakeFiles(CardOf(root), QLatin1String(recorder::kCardFiles), &collection);
  const QJsonArray clips = Clips(recorder::CardFolder(CardOf(root)), &collection);
  return {{QStringLiteral("state"), QStringLiteral("kept")},
          {QStringLiteral("files"), collection.files},
          {QStringLiteral("card"), clips},
          {QStringLiteral("left"), collection.left}};
}

bool Check(const QJsonObject& description, QString* error) {
  const QString state = description.value(QLatin1String("state")).toString();
  const QJsonArray clips = description.value(QLatin1String("card")).toArray();
  if (state != QLatin1String("fresh") && state != QLatin1String("kept")) {
    *error = QStringLiteral("The root state is neither fresh nor kept.");
    return false;
  }
  if (!CheckFiles(description.value(QLatin1String("files")).toArray(), error)) return false;
  if (clips.size() > kMostClips) {
    *error = QStringLiteral("The root state has too many recordings.");
    return false;
  }
  return std::all_of(clips.begin(), clips.end(), [error](const QJsonValue& clip) {
    return recorder::ClipFacts::FromJson(clip.toObject(), error).has_value();
  });
}

bool Restore(const QJsonObject& description, const QString& root, QString* error) {
  *error = QStringLiteral("The root folder cannot be written: %1.").arg(root);
  for (const QJsonValue& value : description.value(QLatin1String("files")).toArray()) {
    const QJsonObject file = value.toObject();
    const QString path = root + file.value(QLatin1String("path")).toString();
    if (!QDir().mkpath(QFileInfo(path).path()) || !recorder::WriteWhole(path, Data(file))) return false;
  }
  const QJsonArray clips = description.value(QLatin1String("card")).toArray();
  const recorder::CardFolder card(root + QLatin1String(recorder::kCardFiles));
  if (!clips.isEmpty() && !QDir().mkpath(card.Path(QString()))) return false;
  recorder::ClipMaker maker(recorder::DrawStripes);
  for (const QJsonValue& clip : clips)
    if (!maker.Make(card, *recorder::ClipFacts::FromJson(clip.toObject(), error))) return false;
  error->clear();
  return true;
}

}  // namespace recordroot
