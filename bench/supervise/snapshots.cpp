#include "bench/supervise/snapshots.h"

#include <fcntl.h>
#include <sys/stat.h>

#include <QDateTime>
#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QJsonDocument>
#include <QRegularExpression>
#include <algorithm>
#include <filesystem>

#include "bench/supervise/rootfolder.h"

namespace {
constexpr char kFolder[] = "/snapshots";
// Of its own in there; no snapshot has such a name.
constexpr char kNew[] = ".new";         // a snapshot that is being made
constexpr char kFetched[] = ".coming";  // files that the camera takes over
constexpr char kGone[] = ".gone";       // those that it had, while it does
constexpr char kWaste[] = ".waste";
constexpr char kFiles[] = "/files";
constexpr char kHead[] = "/camera.json";
constexpr qint64 kLargestHead = 1 << 20;

constexpr char kCannotBeWritten[] = "The root folder cannot be written: %1.";

bool Rename(const QString& from, const QString& to) {
  return QDir().mkpath(QFileInfo(to).path()) &&
         std::rename(QFile::encodeName(from).constData(), QFile::encodeName(to).constData()) == 0;
}

void Clear(const QString& path) {
  const QFileInfo info(path);
  if (info.isDir() && !info.isSymLink())
    QDir(path).removeRecursively();
  else
    QFile::remove(path);
}

// Copies a file with its times. One that has gone meanwhile, as the oldest recording does, is none.
bool CopyFile(const QString& from, const QString& to) {
  const QByteArray source = QFile::encodeName(from), target = QFile::encodeName(to);
  struct stat state {};
  std::error_code error;
  std::filesystem::copy_file(source.constData(), target.constData(), error);
  if (error) return !QFile::exists(from);
  const bool isThere = stat(source.constData(), &state) == 0;
  const timespec times[] = {state.st_atim, state.st_mtim};
  return !isThere || utimensat(AT_FDCWD, target.constData(), times, 0) == 0;
}

// What could not come back as it is; empty: nothing.
QString FirstLink(const QString& root) {
  for (const QString& entry : RootFolder::CameraEntries(root)) {
    if (QFileInfo(root + entry).isSymLink()) return entry;
    for (QDirIterator below(root + entry, QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot,
                            QDirIterator::Subdirectories);
         below.hasNext();)
      if (below.next(); below.fileInfo().isSymLink()) return below.filePath().mid(root.size());
  }
  return {};
}

QString LinkProblem(const QString& root) {
  const QString link = FirstLink(root);
  return link.isEmpty() ? link : QStringLiteral("No snapshot can keep the symbolic link %1.").arg(link);
}

// Gives the root its own files back: a change to others came to nothing.
void PutBack(const QString& root) {
  const QString gone = root + QLatin1String(kFolder) + u'/' + QLatin1String(kGone);
  for (const QString& entry : RootFolder::CameraEntries(gone)) {
    Clear(root + entry);
    Rename(gone + entry, root + entry);
  }
  QDir(gone).removeRecursively();
}
}  // namespace

Snapshots::Snapshots(const QString& root, QObject* parent) : QObject(parent), mRoot(root) {
  Read();
}

Snapshots::~Snapshots() {
  mIsGivenUp = true;
  if (mThread) mThread->wait();
}

void Snapshots::Recover(const QString& root) {
  const QString folder = root + QLatin1String(kFolder) + u'/';
  if (QFileInfo(folder + QLatin1String(kGone)).isDir()) PutBack(root);
  for (const char* rest : {kNew, kFetched, kWaste}) Clear(folder + QLatin1String(rest));
}

bool Snapshots::IsName(const QString& name) {
  static const QRegularExpression good(QStringLiteral("\\A(?=.{1,40}\\z)[A-Za-z0-9_-]+( +[A-Za-z0-9_-]+)*\\z"));
  return good.match(name).hasMatch();
}

// What is there and is none is left alone.
void Snapshots::Read() {
  mSnapshots.clear();
  for (const QFileInfo& folder : QDir(mRoot + QLatin1String(kFolder)).entryInfoList(QDir::Dirs | QDir::NoSymLinks)) {
    QFile head(folder.filePath() + QLatin1String(kHead));
    if (!IsName(folder.fileName()) || !QFileInfo(head).isFile() || head.size() > kLargestHead ||
        !head.open(QIODevice::ReadOnly))
      continue;
    const QJsonObject members = QJsonDocument::fromJson(head.readAll()).object();
    if (!members.isEmpty() && mSnapshots.size() < kMost)
      mSnapshots.append({folder.fileName(), members[QLatin1String("time")].toInteger(),
                         members[QLatin1String("bytes")].toInteger(), members[QLatin1String("memory")].toObject()});
  }
  std::stable_sort(mSnapshots.begin(), mSnapshots.end(),
                   [](const Snapshot& one, const Snapshot& other) { return one.time < other.time; });
}

QJsonArray Snapshots::List() const {
  QJsonArray list;
  for (const Snapshot& each : mSnapshots)
    list.append(QJsonObject{{QStringLiteral("name"), each.name},
                            {QStringLiteral("time"), each.time},
                            {QStringLiteral("bytes"), each.bytes}});
  return list;
}

const Snapshots::Snapshot* Snapshots::Find(const QString& name) const {
  const auto found =
      std::find_if(mSnapshots.begin(), mSnapshots.end(), [&name](const Snapshot& each) { return each.name == name; });
  return found == mSnapshots.end() ? nullptr : &*found;
}

bool Snapshots::IsFree(QString* error) const {
  if (mWork.isNull()) return true;
  *error = QStringLiteral("Another snapshot is being worked on.");
  return false;
}

bool Snapshots::Has(const QString& name, QString* error) const {
  if (Find(name)) return true;
  *error = QStringLiteral("There is no snapshot of this name.");
  return false;
}

QString Snapshots::Folder(const QString& name) const {
  return mRoot + QLatin1String(kFolder) + u'/' + name;
}

void Snapshots::Begin(const char* what, const QString& name, const Task& task,
                      const std::function<void(QString)>& then) {
  mWork = QJsonObject{{QStringLiteral("what"), QLatin1String(what)}, {QStringLiteral("name"), name}};
  auto problem = std::make_shared<QString>();
  if (mThread) mThread->wait();  // it has only its last steps left
  mThread.reset(QThread::create([task, problem] { *problem = task(); }));
  connect(mThread.get(), &QThread::finished, this, [problem, then] { then(*problem); });
  mThread->start();
  emit Changed();
}

void Snapshots::End(const QString& problem, const QJsonObject& memory) {
  mWork = {};
  mFetched.clear();
  Read();
  emit Changed();
  emit Ended(problem, memory);
}

// All of the camera's files.
QString Snapshots::Copy(const QString& from, const QString& to, qint64* bytes) const {
  *bytes = 0;
  const auto copy = [&](const QFileInfo& file, const QString& path) {
    if (file.isDir()) return QDir().mkpath(to + path);
    *bytes += file.size();
    return !file.isFile() || (QDir().mkpath(QFileInfo(to + path).path()) && CopyFile(file.filePath(), to + path));
  };
  for (const QString& entry : RootFolder::CameraEntries(from)) {
    bool good = copy(QFileInfo(from + entry), entry);
    for (QDirIterator below(from + entry, QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot,
                            QDirIterator::Subdirectories);
         good && below.hasNext();) {
      below.next();
      if (mIsGivenUp) return QStringLiteral("The bench ends.");
      good = copy(below.fileInfo(), below.filePath().mid(from.size()));
    }
    if (!good) return QString::fromLatin1(kCannotBeWritten).arg(mRoot);
  }
  return {};
}

bool Snapshots::Save(const QString& name, const QJsonObject& memory, QString* error) {
  if (!IsFree(error)) return false;
  if (Find(name) || QFileInfo::exists(Folder(name))) {
    *error = QStringLiteral("There is a snapshot of this name already.");
    return false;
  }
  if (mSnapshots.size() >= kMost) {
    *error = QStringLiteral("There are %1 snapshots already.").arg(kMost);
    return false;
  }
  const auto save = [this, name, memory] {
    const QString made = Folder(QLatin1String(kNew));
    qint64 bytes = 0;
    QString problem = LinkProblem(mRoot);
    if (problem.isEmpty()) problem = Copy(mRoot, made + QLatin1String(kFiles), &bytes);
    QFile head(made + QLatin1String(kHead));
    const QByteArray members = QJsonDocument(QJsonObject{{QStringLiteral("time"), QDateTime::currentMSecsSinceEpoch()},
                                                         {QStringLiteral("bytes"), bytes},
                                                         {QStringLiteral("memory"), memory}})
                                   .toJson();
    if (problem.isEmpty() && (!head.open(QIODevice::WriteOnly) || head.write(members) != members.size() ||
                              !head.flush() || !Rename(made, Folder(name))))
      problem = QString::fromLatin1(kCannotBeWritten).arg(mRoot);
    Clear(made);
    return problem;
  };
  Begin("save", name, save, [this](const QString& problem) { End(problem); });
  return true;
}

bool Snapshots::Remove(const QString& name, QString* error) {
  if (!IsFree(error) || !Has(name, error)) return false;
  const auto remove = [this, name] {
    const QString waste = Folder(QLatin1String(kWaste));
    const bool isGone = Rename(Folder(name), waste);
    Clear(waste);
    return isGone ? QString() : QString::fromLatin1(kCannotBeWritten).arg(mRoot);
  };
  Begin("remove", name, remove, [this](const QString& problem) { End(problem); });
  return true;
}

bool Snapshots::Fetch(const QString& name, QString* error) {
  if (!IsFree(error) || !Has(name, error)) return false;
  const auto fetch = [this, name] {
    qint64 bytes = 0;
    const QString files = Folder(name) + QLatin1String(kFiles), coming = Folder(QLatin1String(kFetched));
    QString problem = LinkProblem(mRoot);
    if (problem.isEmpty()) problem = LinkProblem(files);
    if (problem.isEmpty() && !QFileInfo(files).isDir()) problem = QStringLiteral("The snapshot has lost its files.");
    if (problem.isEmpty()) problem = Copy(files, coming, &bytes);
    if (!problem.isEmpty()) Clear(coming);
    return problem;
  };
  Begin("restore", name, fetch, [this, name](const QString& problem) {
    if (!problem.isEmpty()) return End(problem);
    mFetched = name;
    emit Ready();
  });
  return true;
}

void Snapshots::TakeOver() {
  const auto change = [this] {
    const QString coming = Folder(QLatin1String(kFetched)), gone = Folder(QLatin1String(kGone));
    bool good = true;
    for (const QString& entry : RootFolder::CameraEntries(mRoot)) good = good && Rename(mRoot + entry, gone + entry);
    for (const QString& entry : RootFolder::CameraEntries(coming)) good = good && Rename(coming + entry, mRoot + entry);
    if (good)
      Rename(gone, Folder(QLatin1String(kWaste)));
    else
      PutBack(mRoot);
    Clear(coming);
    Clear(Folder(QLatin1String(kWaste)));
    return good ? QString() : QString::fromLatin1(kCannotBeWritten).arg(mRoot);
  };
  const QString name = mFetched;
  Begin("restore", name, change, [this, name](const QString& problem) {
    const Snapshot* snapshot = Find(name);
    End(problem, problem.isEmpty() && snapshot ? QJsonObject(snapshot->memory) : QJsonObject());
  });
}
