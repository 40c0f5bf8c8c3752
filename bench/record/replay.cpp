#include "bench/record/replay.h"

#include <QDir>
#include <QImage>
#include <QSaveFile>
#include <algorithm>
#include <utility>

#include "bench/camera/bench.h"
#include "bench/record/recordlook.h"
#include "bench/record/recordpicture.h"
#include "bench/record/recordroot.h"

namespace {
constexpr int kGo = 20;             // milliseconds between two looks
constexpr qint64 kBetween = 300;    // the least between two inputs when no waiting of a person counts
constexpr qint64 kCounted = 3100;   // the same on the preview: it counts the taps of 3 s
constexpr qint64 kSettled = 300;    // that what is shown must stay before the next input
constexpr int kMargin = 15000;      // a slow machine's
constexpr int kMarginAfter = 2000;  // after an input that waited in vain
constexpr qint64 kSoon = 1000;      // from the last input to an end that says nothing of what came of it
constexpr auto kNobody = "nothing";
constexpr char kBefore[] = "Before input ", kAtEnd[] = "At the end, ";  // so a difference begins

using Kind = RecordEntry::Kind;

QString Text(const QJsonValue& value) {
  return value.isString() ? value.toString() : QLatin1String(kNobody);
}

QString Seconds(qint64 ms) {
  return QString::number(static_cast<double>(ms) / 1000, 'f', 1) + QStringLiteral(" s");
}

QString Described(const RecordEntry& input) {
  const QJsonObject request = input.Request();
  if (input.kind == Kind::Event) return QStringLiteral("event %1").arg(request.value(QLatin1String("event")).toInt());
  if (input.kind == Kind::Action) return request.value(QLatin1String("name")).toString().simplified().left(40);
  if (input.kind == Kind::Picture) return QStringLiteral("a picture of the driver's");
  QString action = request.value(QLatin1String("action")).toString().simplified().left(40);
  if (!request.contains(QLatin1String("x"))) return action;
  return QStringLiteral("%1 at %2, %3")
      .arg(action)
      .arg(request.value(QLatin1String("x")).toInt())
      .arg(request.value(QLatin1String("y")).toInt());
}
}  // namespace

bool Replay::Read(const QString& path, RecordFile* file, QString* error) {
  if (!file->Read(path, error) || !recordroot::Check(file->root, error)) return false;
  if (!file->HasInput())
    *error = QStringLiteral("The recording %1 has no input: there is nothing to replay.").arg(path);
  return file->HasInput();
}

bool Replay::IsDifference(const QString& line) {
  return line.startsWith(QLatin1String(kBefore)) || line.startsWith(QLatin1String(kAtEnd));
}

Replay::Replay(Bench& bench, const RecordFile& file, const Options& options, QObject* parent)
    : QObject(parent),
      mBench(bench),
      mOptions(options),
      mEntries(file.entries),
      mStreams{Stream{Kind::Command, {}}, Stream{Kind::Status, {}}, Stream{Kind::Screen, {}}},
      mMargin(kMargin) {
  if (mEntries.isEmpty() || mEntries.constLast().kind != Kind::End)
    mEntries << RecordEntry{Kind::End, mEntries.isEmpty() ? 0 : mEntries.constLast().ms, {}};
  for (qsizetype i = 0; i < mEntries.size(); ++i)
    for (Stream& stream : mStreams)
      if (mEntries[i].kind == stream.kind && !mEntries[i].Essence().isEmpty()) stream.expected << i;
  connect(&bench.Log(), &EventLog::Added, this, &Replay::TakeLog);
  mGo.setInterval(kGo);
  mGo.setTimerType(Qt::PreciseTimer);
  mGo.callOnTimeout([this] { Go(); });
}

Replay::~Replay() = default;

void Replay::Start() {
  mLook = std::make_unique<RecordLook>(mBench);
  mSession.start();
  while (!Next().IsInput() && Next().kind != Kind::End) ++mNext;
  mGo.start();
}

QString Replay::Summary() const {
  const QString differences = mDifferences == 0   ? QStringLiteral("no difference")
                              : mDifferences == 1 ? QStringLiteral("1 difference")
                                                  : QStringLiteral("%1 differences").arg(mDifferences);
  return QStringLiteral("%1 inputs of %2 were replayed in %3: %4.")
      .arg(mInputs)
      .arg(Seconds(mEntries.constLast().ms), Seconds(mSession.elapsed()), differences);
}

// ---- what comes

void Replay::TakeLog(const QJsonObject& log) {
  const auto entry = RecordEntry::OfLog(log);
  const QString essence = entry ? entry->Essence() : QString();
  if (essence.isEmpty()) return;
  Stream& stream = *std::find_if(mStreams.begin(), mStreams.end(),
                                 [&entry](const Stream& each) { return each.kind == entry->kind; });
  // The next one, or a later one before the next input: those between are missing.
  const QList<qsizetype>& expected = stream.expected;
  for (qsizetype i = stream.cursor; i < expected.size() && (i == stream.cursor || expected[i] < mNext); ++i) {
    if (mEntries[expected[i]].Essence() != essence) continue;
    while (stream.cursor < i)
      Differ(QStringLiteral("%1 did not come").arg(mEntries[expected[stream.cursor++]].Essence()));
    ++stream.cursor;
    return Store();
  }
  if (!EndsSoon()) Differ(QStringLiteral("%1 came, and was not recorded").arg(essence));
}

// Before the next command: it may read the card.
void Replay::Store() {
  const Stream& commands = mStreams[0];
  const qsizetype next = commands.cursor < commands.expected.size() ? commands.expected[commands.cursor] : mNext;
  for (; mStored < std::min(next, mNext); ++mStored)
    if (mEntries[mStored].kind == Kind::Stored)
      mBench.Store(mEntries[mStored].body.value(QLatin1String("stored")).toObject());
}

// ---- what is given

// A finger that is down moves or is lifted when its time has come, whatever is shown. Everything else waits for what
// the interface had said by then, however soon after the last input it was.
bool Replay::IsAwaiting() const {
  return Next().kind != Kind::Touch || !mBench.TheFinger().IsDown();
}

// What the last input did may have come after the end of the recording: nobody knows.
bool Replay::EndsSoon() const {
  return Next().kind == Kind::End && Next().ms - mLastMs < kSoon;
}

bool Replay::HaveAllCome() const {
  return std::all_of(mStreams.begin(), mStreams.end(), [this](const Stream& stream) {
    return stream.cursor >= stream.expected.size() || stream.expected[stream.cursor] > mNext;
  });
}

bool Replay::IsMet(QString* why) {
  if (EndsSoon()) return HaveAllCome();
  const QJsonObject expected = Next().Seen(), shown = mBench.Shown();
  static constexpr std::pair<const char*, const char*> kParts[] = {
      {"screen", "the screen"}, {"own", "the screen's box"}, {"event", "the box of an event"}};
  for (const auto& [member, name] : kParts) {
    const QLatin1String key(member);
    if (!expected.contains(key) || expected.value(key) == shown.value(key)) continue;
    *why = QStringLiteral("%1 is %2 and was %3")
               .arg(QLatin1String(name), Text(shown.value(key)), Text(expected.value(key)).simplified().left(40));
    return false;
  }
  // Another machine may be faster, and is not to be held up.
  const QLatin1String busy("busy");
  if (shown.value(busy).toBool() && !expected.value(busy).toBool()) {
    *why = QStringLiteral("the card is being filled or emptied and was not");
    return false;
  }
  const QLatin1String dark("dark"), picture("picture");
  if (expected.contains(dark) && expected.value(dark) != shown.value(dark)) {
    *why = shown.value(dark).toBool() ? QStringLiteral("the LCD is dark and was not")
                                      : QStringLiteral("the LCD is not dark and was");
    return false;
  }
  const QString where =
      expected.contains(picture) ? recordpicture::Difference(mLook->Picture(), expected.value(picture).toString()) : "";
  if (!where.isEmpty()) *why = QStringLiteral("the picture differs at %1").arg(where);
  return where.isEmpty() && HaveAllCome();
}

// Between two inputs, but not while the finger is down: a press that is held is another one.
bool Replay::IsHeld() const {
  return mIsPaused && !mIsStep && IsAwaiting();
}

bool Replay::Hold() {
  const qint64 now = mSession.elapsed(), since = now - std::exchange(mLooked, now);
  if (!IsHeld()) return false;
  mHeld += since;
  mMet.invalidate();
  return true;
}

Reply Replay::Control(const QJsonObject& request) {
  const QJsonValue pause = request.value(QLatin1String("pause")), step = request.value(QLatin1String("step"));
  if (request.size() != 1 || !(pause.isBool() || step == QJsonValue(true)))
    return Reply::Bad(QStringLiteral("The body must be {\"pause\": true}, {\"pause\": false} or {\"step\": true}."));
  mIsStep = step.toBool();
  mIsPaused = mIsStep || pause.toBool();
  emit mBench.StateChanged();
  return {};
}

QJsonObject Replay::State() const {
  const auto isInput = [](const RecordEntry& entry) { return entry.IsInput(); };
  return {{QStringLiteral("next"), mInputs + 1},
          {QStringLiteral("of"), std::count_if(mEntries.begin(), mEntries.end(), isInput)},
          {QStringLiteral("ms"), Next().ms},
          {QStringLiteral("paused"), IsHeld()}};
}

void Replay::Go() {
  if (Hold()) return;
  if (!IsAwaiting()) {
    while (!IsAwaiting() && Elapsed() - mGiven >= Next().ms - mLastMs) Give({});
    return;
  }
  const qint64 since = Elapsed() - mGiven, gap = Next().ms - mLastMs;
  QString why;
  const bool isMet = IsMet(&why);
  if (!isMet)
    mMet.invalidate();
  else if (!mMet.isValid())
    mMet.start();
  const qint64 settled = Next().Seen().isEmpty() ? 0 : std::min(gap, kSettled);
  if (isMet && since >= Least(gap) && mMet.elapsed() >= settled) {
    mMargin = kMargin;
    Give({});
  } else if (since >= gap + mMargin) {
    mMargin = kMarginAfter;
    Give(why);
  }
}

// The least time between the next input and the one before it, which were `gap` apart.
qint64 Replay::Least(qint64 gap) const {
  const QJsonObject seen = Next().Seen();
  if (!mOptions.isFast && !mIsStep) return gap;
  if (Next().kind == Kind::End) return std::min(gap, kBetween);
  // What was changing when it was recorded says nothing of when.
  if (!seen.contains(QLatin1String("picture"))) return gap;
  const bool isCounted = Next().kind == Kind::Touch && seen.value(QLatin1String("screen")) == QLatin1String("PREVIEW");
  return std::min(gap, isCounted ? kCounted : kBetween);
}

void Replay::SayMissing() {
  for (Stream& stream : mStreams)
    for (; stream.cursor < stream.expected.size() && stream.expected[stream.cursor] < mNext; ++stream.cursor)
      Differ(QStringLiteral("%1 did not come").arg(mEntries[stream.expected[stream.cursor]].Essence()));
}

Reply Replay::GiveAgain(const RecordEntry& input) {
  const QJsonObject request = input.Request();
  switch (input.kind) {
    case Kind::Touch:
      return mBench.Touch(request, this);
    case Kind::Event:
      return mBench.Event(request, this);
    case Kind::Action:
      return mBench.Action(request, this);
    default:
      mBench.OwnPicture(
          QByteArray::fromBase64(request.value(QLatin1String("png")).toString().toLatin1()), [](const Reply&) {}, this);
      return {};
  }
}

void Replay::Give(const QString& unmet) {
  const RecordEntry input = Next();
  if (IsAwaiting()) SayMissing();
  if (!unmet.isEmpty()) SavePictures();  // who hears of the difference finds them
  if (!unmet.isEmpty()) Differ(unmet);
  mMet.invalidate();
  mIsStep = false;
  if (input.kind == Kind::End) {
    mGo.stop();
    return emit Ended();
  }
  mBench.SkipTime(input.ms - mBench.SessionMs());
  // The moves of a finger take as long as they did.
  mGiven = IsAwaiting() ? Elapsed() : mGiven + input.ms - mLastMs;
  mLastMs = input.ms;
  ++mInputs;
  // What it causes is expected after it.
  do ++mNext;
  while (!Next().IsInput() && Next().kind != Kind::End);
  const Reply reply = GiveAgain(input);
  // An action that is refused was refused before.
  if (input.kind == Kind::Touch && !reply.IsGood())
    Differ(QStringLiteral("the touch before cannot be given: %1").arg(reply.error));
  Store();
}

// ---- what differs

QString Replay::Where() const {
  const QString at = Seconds(Next().ms);
  if (Next().kind == Kind::End) return QLatin1String(kAtEnd) + at;
  const auto number =
      std::count_if(mEntries.begin(), mEntries.begin() + mNext + 1, [](const auto& each) { return each.IsInput(); });
  return QLatin1String(kBefore) + QStringLiteral("%1, %2 at %3").arg(number).arg(Described(Next()), at);
}

void Replay::Differ(const QString& sentence) {
  ++mDifferences;
  QString whole = QStringLiteral("%1: %2").arg(Where(), sentence);
  // The file may hold anything, and this goes to a terminal.
  for (QChar& character : whole)
    if (!character.isPrint()) character = u'?';
  if (!whole.endsWith(u'.')) whole += u'.';
  emit Differs(whole);
}

void Replay::SavePictures() {
  if (mOptions.differences.isEmpty() || !QDir().mkpath(mOptions.differences)) return;
  const QImage drawn = mBench.Drawn();
  const QString screen = mBench.Shown().value(QLatin1String("screen")).toString();
  const QString seen = Next().Seen().value(QLatin1String("picture")).toString();
  const auto save = [this](const QImage& picture, const char* which) {
    QSaveFile file(QStringLiteral("%1/before-input-%2%3.png")
                       .arg(mOptions.differences)
                       .arg(mInputs + 1)
                       .arg(QLatin1String(which)));
    if (file.open(QIODevice::WriteOnly) && picture.save(&file, "PNG")) file.commit();
  };
  save(drawn, "");
  save(recordpicture::Known(drawn, screen, seen), "-expected");
}
