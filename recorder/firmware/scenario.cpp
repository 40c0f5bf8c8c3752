#include "recorder/firmware/scenario.h"

#include <QFile>
#include <QFileInfo>
#include <QJsonDocument>
#include <algorithm>
#include <utility>

#include "recorder/service/members.h"
#include "recorder/service/requests.h"

namespace recorder {
namespace {

constexpr qint64 kLargestFile = 1 << 20;
constexpr qint64 kLargestPicture = 8 << 20;
constexpr int kLongest = 86400000;  // ms: a day
constexpr int kMostWords = 200;     // characters
constexpr char kEndsAtATouch[] = "# ends at a touch";

Reply TakeTouch(QJsonObject* touch) {
  if (!touch->contains(QLatin1String("action"))) touch->insert(QStringLiteral("action"), QStringLiteral("tap"));
  requests::Touch taken;
  return requests::TakeTouch(*touch, &taken);
}

// It stands beside the scenario.
Reply TakePicture(const QString& folder, const QJsonValue& name, QString* path) {
  *path = folder + u'/' + name.toString();
  if (name.toString().contains(u'/') || !QFileInfo(*path).isFile())
    return Reply::Bad(QStringLiteral("\"picture\" must be the name of a file beside the scenario."));
  if (QFileInfo(*path).size() <= kLargestPicture) return {};
  return Reply::Bad(QStringLiteral("The picture is larger than 8 MiB."));
}

Reply TakeAction(const QJsonObject& request, ActionCheck check) {
  QString name, error;
  QJsonObject arguments;
  Reply reply = requests::TakeAction(request, &name, &arguments);
  return reply.IsGood() && !check(name, arguments, &error) ? Reply::Bad(error) : reply;
}

}  // namespace

Scenario::Scenario(Sink& sink) : mSink(sink) {
  mTimer.setSingleShot(true);
  mTimer.setTimerType(Qt::PreciseTimer);
  mTimer.callOnTimeout([this] { Play(); });
}

Reply Scenario::ReadRequest(const QString& folder, QJsonObject object, ActionCheck check, Step* step) {
  const QLatin1String action("action"), touch("touch"), picture("picture"), say("say");
  if (object.contains(say)) {
    step->kind = Kind::Say;
    Members members(object);
    step->words = members.Text("say");
    const QString error = members.Error();
    if (!error.isEmpty() || step->words.size() <= kMostWords) return error.isEmpty() ? Reply() : Reply::Bad(error);
    return Reply::Bad(QStringLiteral("\"say\" has more than %1 characters.").arg(kMostWords));
  }
  if (object.contains(action)) {
    step->kind = Kind::Action;
    object.insert(QStringLiteral("name"), object.take(action));
    step->request = object;
    return TakeAction(step->request, check);
  }
  int event = 0, value = 0;
  step->request = object;
  if (!object.contains(touch) && !object.contains(picture)) return requests::TakeEvent(object, &event, &value);
  step->kind = object.contains(touch) ? Kind::Touch : Kind::Picture;
  const QJsonValue wanted = object.take(step->kind == Kind::Touch ? touch : picture);
  if (const QString error = Members(object).Error(); !error.isEmpty()) return Reply::Bad(error);
  if (step->kind == Kind::Picture) return TakePicture(folder, wanted, &step->picture);
  step->request = wanted.toObject();
  return TakeTouch(&step->request);
}

bool Scenario::ReadLine(const QString& folder, const QByteArray& line, ActionCheck check, Step* step, QString* error) {
  QJsonParseError reason;
  const QJsonDocument document = QJsonDocument::fromJson(line, &reason);
  if (!document.isObject()) {
    *error = document.isNull() ? reason.errorString() : QStringLiteral("no object");
    return false;
  }
  Members members(document.object());
  step->ms = members.Whole("ms", 0, kLongest);
  const QJsonObject rest = members.TakeRest();
  *error = members.Error();
  if (error->isEmpty()) *error = ReadRequest(folder, rest, check, step).error;
  return error->isEmpty();
}

bool Scenario::Load(const QString& path, ActionCheck check, QString* error) {
  QFile file(path);
  if (!QFileInfo(file).isFile() || !file.open(QIODevice::ReadOnly) || file.size() > kLargestFile) {
    *error = QStringLiteral("The scenario %1 cannot be read, or is larger than 1 MiB.").arg(path);
    return false;
  }
  return Take(file.readAll(), path, QFileInfo(file).absolutePath(), check, error);
}

QString Scenario::TitleOf(const QByteArray& text) {
  for (const QByteArray& line : text.split('\n'))
    if (line.startsWith('#')) return QString::fromUtf8(line.mid(1)).trimmed();
  return {};
}

bool Scenario::Take(const QByteArray& text, const QString& name, const QString& folder, ActionCheck check,
                    QString* error) {
  QList<Step> steps;
  bool endsAtATouch = false;
  int number = 0;
  for (const QByteArray& whole : text.split('\n')) {
    ++number;
    const QByteArray line = whole.trimmed();
    endsAtATouch |= line == kEndsAtATouch;
    if (line.isEmpty() || line.startsWith('#')) continue;
    Step step;
    QString reason;
    if (!ReadLine(folder, line, check, &step, &reason)) {
      if (reason.endsWith(u'.')) reason.chop(1);
      *error = QStringLiteral("Line %1 of the scenario %2: %3.").arg(number).arg(name, reason);
      return false;
    }
    steps << step;
  }
  std::stable_sort(steps.begin(), steps.end(), [](const Step& one, const Step& other) { return one.ms < other.ms; });
  mSteps = steps;
  mName = name;
  mTitle = TitleOf(text);
  mEndsAtATouch = endsAtATouch;
  mTimer.stop();
  mIsOn = false;
  return true;
}

void Scenario::Start() {
  mNext = 0;
  mIsOn = true;
  mIsPaused = false;
  mSpeed = 1;
  mSaid.clear();
  GoOnFrom(0);
}

qint64 Scenario::At() const {
  return mIsPaused ? mFrom : mFrom + mClock.elapsed() * mSpeed;
}

void Scenario::GoOnFrom(qint64 at) {
  mFrom = at;
  mClock.start();
  Wait();
}

void Scenario::SetSpeed(int speed) {
  const qint64 at = At();
  mSpeed = speed;
  if (mIsOn) GoOnFrom(at);
}

void Scenario::Pause(bool paused) {
  const qint64 at = At();
  mIsPaused = paused;
  if (mIsOn) GoOnFrom(at);
}

void Scenario::Stop() {
  mTimer.stop();
  if (std::exchange(mIsOn, false)) mSink.Note(QStringLiteral("The scenario was ended."));
  emit Changed();
}

QJsonValue Scenario::State() const {
  if (!mIsOn) return {};
  const qint64 of = mSteps.constLast().ms;
  return QJsonObject{{QStringLiteral("name"), mName},
                     {QStringLiteral("title"), mTitle},
                     {QStringLiteral("at"), std::min(At(), of)},
                     {QStringLiteral("of"), of},
                     {QStringLiteral("line"), mNext},
                     {QStringLiteral("lines"), mSteps.size()},
                     {QStringLiteral("paused"), mIsPaused},
                     {QStringLiteral("speed"), mSpeed},
                     {QStringLiteral("say"), mSaid.isEmpty() ? QJsonValue() : QJsonValue(mSaid)}};
}

void Scenario::Wait() {
  mTimer.stop();
  if (mNext < mSteps.size()) {
    if (!mIsPaused) mTimer.start(static_cast<int>(std::max<qint64>(0, (mSteps[mNext].ms - At()) / mSpeed)));
  } else {
    mIsOn = false;
    if (!mSteps.isEmpty()) mSink.Note(QStringLiteral("The scenario has ended."));
  }
  emit Changed();
}

void Scenario::Play() {
  const Step step = mSteps[mNext++];
  switch (step.kind) {
    case Kind::Event:
      emit EventWanted(step.request);
      break;
    case Kind::Action:
      emit ActionWanted(step.request);
      break;
    case Kind::Touch:
      emit TouchWanted(step.request);
      break;
    case Kind::Picture:
      emit PictureWanted(step.picture);
      break;
    case Kind::Say:
      mSaid = step.words;
      mSink.Note(mSaid);
      break;
  }
  // It may have been ended by what it did.
  if (mIsOn) Wait();
}

}  // namespace recorder
