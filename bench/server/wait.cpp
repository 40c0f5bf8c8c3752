#include "bench/server/wait.h"

#include "gui/vocabulary/vocabulary.h"
#include "recorder/service/members.h"

namespace {
constexpr int kUsualWait = 10000;  // milliseconds
constexpr int kLongestWait = 60000;
constexpr char kNone[] = "none";

// Of the names that the interface has for its screens, or for its boxes.
template <typename Enumeration>
bool IsName(const QString& name) {
  bool isKnown = false;
  QMetaEnum::fromType<Enumeration>().keyToValue(qPrintable(name), &isKnown);
  return isKnown;
}

QString Unknown(const char* what, const QString& name) {
  return QStringLiteral("There is no %1 \"%2\".").arg(QLatin1String(what), name.simplified().left(40));
}

// What is there instead.
QString Instead(const QJsonObject& shown) {
  const QString screen = shown.value(QLatin1String("screen")).toString();
  if (screen.isEmpty()) return QStringLiteral("The interface has not said which screen it shows.");
  QStringList boxes;
  for (const char* slot : {"own", "event"})
    if (const QJsonValue name = shown.value(QLatin1String(slot)); name.isString()) boxes << name.toString();
  const QString up = boxes.isEmpty() ? QStringLiteral("no box is up")
                     : boxes.size() == 1
                         ? QStringLiteral("the box %1 is up").arg(boxes[0])
                         : QStringLiteral("the boxes %1 are up").arg(boxes.join(QLatin1String(" and ")));
  return QStringLiteral("The screen is %1 and %2.").arg(screen, up);
}
}  // namespace

Reply Wait::Take(const QJsonObject& request, Wish* wish) {
  Members members(request);
  if (request.contains(QLatin1String("screen"))) wish->screen = members.Text("screen");
  if (request.contains(QLatin1String("box"))) wish->box = members.Text("box");
  wish->timeout = members.Whole("timeout", 1, kLongestWait, kUsualWait);
  if (const QString error = members.Error(); !error.isEmpty()) return Reply::Bad(error);
  if (wish->screen.isEmpty() && wish->box.isEmpty())
    return Reply::Bad(QStringLiteral("Waiting needs a screen, a box or both."));
  if (!wish->screen.isEmpty() && !IsName<WidgetId>(wish->screen)) return Reply::Bad(Unknown("screen", wish->screen));
  if (wish->box.isEmpty() || wish->box == QLatin1String(kNone) || IsName<MessageBox_Id>(wish->box)) return {};
  return Reply::Bad(Unknown("box", wish->box));
}

Wait::Wait(Bench& bench, const Wish& wish, const Asker& asker)
    : QObject(asker.Socket()), mBench(bench), mWish(wish), mAsker(asker) {
  mAsker.TakeTime();
  mTimeout.setSingleShot(true);
  mTimeout.callOnTimeout([this] { GiveUp(); });
  mTimeout.start(mWish.timeout);
  connect(&mBench, &Bench::StateChanged, this, &Wait::Look);
  Look();
}

void Wait::Look() {
  const QJsonObject shown = mBench.Shown();
  const QJsonValue own = shown.value(QLatin1String("own")), event = shown.value(QLatin1String("event"));
  const bool isBox = mWish.box.isEmpty() || own == mWish.box || event == mWish.box ||
                     (mWish.box == QLatin1String(kNone) && own.isNull() && event.isNull());
  if (!isBox || (!mWish.screen.isEmpty() && shown.value(QLatin1String("screen")) != mWish.screen)) return;
  const QJsonObject state = mBench.State();
  QJsonObject answer{{QStringLiteral("ok"), true}};
  for (const char* member : {"screen", "boxes"})
    answer.insert(QLatin1String(member), state.value(QLatin1String(member)));
  End(Answer::Json(answer));
}

void Wait::GiveUp() {
  End(Answer::Of({408, Instead(mBench.Shown())}));
}

void Wait::End(const Answer& answer) {
  mTimeout.stop();
  disconnect(&mBench, nullptr, this, nullptr);
  mAsker.Answer(answer);
}
