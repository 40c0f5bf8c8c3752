#include "recorder/firmware/scenario.h"

#include <QFile>
#include <QFileInfo>
#include <QJsonDocument>
#include <algorithm>
#include <limits>

namespace recorder {
namespace {

constexpr qint64 kLargestFile = 1 << 20;
constexpr int kLongest = 86400000;  // ms: a day

bool TakeInt(QJsonObject* object, const char* key, int least, int most, int* number, QString* error) {
  const QJsonValue value = object->take(QLatin1String(key));
  const double given = value.toDouble();
  if (value.isDouble() && given >= least && given <= most && given == static_cast<int>(given)) {
    *number = static_cast<int>(given);
    return true;
  }
  *error = QStringLiteral("\"%1\" is no whole number from %2 to %3").arg(QLatin1String(key)).arg(least).arg(most);
  return false;
}

}  // namespace

Scenario::Scenario(Sink& sink) : mSink(sink) {
  mTimer.setSingleShot(true);
  mTimer.setTimerType(Qt::PreciseTimer);
  mTimer.callOnTimeout([this] { Play(); });
}

bool Scenario::ReadEvent(QJsonObject* object, Step* step, QString* error) {
  return TakeInt(object, "event", 1, 38, &step->event, error) &&
         TakeInt(object, "value", std::numeric_limits<int>::min(), std::numeric_limits<int>::max(), &step->value,
                 error);
}

bool Scenario::ReadTouch(const QJsonValue& value, Step* step, QString* error) {
  QJsonObject touch = value.toObject();
  if (!TakeInt(&touch, "x", 0, 479, &step->x, error) || !TakeInt(&touch, "y", 0, 319, &step->y, error)) return false;
  step->isTouch = touch.isEmpty();
  if (!step->isTouch) *error = QStringLiteral("\"%1\" is not known").arg(touch.keys().constFirst());
  return step->isTouch;
}

bool Scenario::ReadLine(const QByteArray& line, ActionCheck check, Step* step, QString* error) {
  QJsonParseError reason;
  const QJsonDocument document = QJsonDocument::fromJson(line, &reason);
  if (!document.isObject()) {
    *error = document.isNull() ? reason.errorString() : QStringLiteral("no object");
    return false;
  }
  QJsonObject object = document.object();
  if (!TakeInt(&object, "ms", 0, kLongest, &step->ms, error)) return false;
  if (object.contains(QLatin1String("action"))) {
    step->action = object.take(QLatin1String("action")).toString();
    step->arguments = object;
    return check(step->action, step->arguments, error);
  }
  const bool isTouch = object.contains(QLatin1String("touch"));
  if (isTouch && !ReadTouch(object.take(QLatin1String("touch")), step, error)) return false;
  if (!isTouch && !ReadEvent(&object, step, error)) return false;
  if (object.isEmpty()) return true;
  *error = QStringLiteral("\"%1\" is not known").arg(object.keys().constFirst());
  return false;
}

bool Scenario::Load(const QString& path, ActionCheck check, QString* error) {
  QFile file(path);
  if (!QFileInfo(file).isFile() || !file.open(QIODevice::ReadOnly) || file.size() > kLargestFile) {
    *error = QStringLiteral("The scenario %1 cannot be read, or is larger than 1 MiB.").arg(path);
    return false;
  }
  QList<Step> steps;
  for (int number = 1; !file.atEnd(); ++number) {
    const QByteArray line = file.readLine().trimmed();
    if (line.isEmpty()) continue;
    Step step;
    QString reason;
    if (!ReadLine(line, check, &step, &reason)) {
      if (reason.endsWith(u'.')) reason.chop(1);
      *error = QStringLiteral("Line %1 of the scenario %2: %3.").arg(number).arg(path, reason);
      return false;
    }
    steps << step;
  }
  std::stable_sort(steps.begin(), steps.end(), [](const Step& one, const Step& other) { return one.ms < other.ms; });
  mSteps = steps;
  mTimer.stop();
  return true;
}

void Scenario::Start() {
  mNext = 0;
  mClock.start();
  Wait();
}

void Scenario::Wait() {
  if (mNext < mSteps.size())
    mTimer.start(static_cast<int>(std::max<qint64>(0, mSteps[mNext].ms - mClock.elapsed())));
  else if (!mSteps.isEmpty())
    mSink.Note(QStringLiteral("The scenario has ended."));
}

void Scenario::Play() {
  const Step step = mSteps[mNext++];
  if (step.isTouch)
    emit TapWanted(step.x, step.y);
  else if (step.event > 0)
    emit EventWanted(step.event, step.value);
  else
    emit ActionWanted(step.action, step.arguments);
  Wait();
}

}  // namespace recorder
