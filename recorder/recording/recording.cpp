#include "recorder/recording/recording.h"

#include <algorithm>

#include "recorder/card/stamp.h"
#include "recorder/card/stock.h"

namespace recorder {
namespace {

constexpr int kLastYear = 2199;
constexpr int kClockStep = 60;  // seconds; further back is a clock that was set
constexpr int kRate = 4;
constexpr int kPictureMs = 1000 / kRate;
constexpr int kPastPictures = 5 * kRate;

}  // namespace

Recording::Recording(Hub& hub, Voice& voice, Cameras& cameras, Card& card)
    : mHub(hub),
      mVoice(voice),
      mCameras(cameras),
      mCard(card),
      mEncoder(kPictureWidth, kPictureHeight),
      mPicture{kPictureWidth, kPictureHeight, std::vector<quint32>(size_t{kPictureWidth} * kPictureHeight)},
      mMaker([this](int camera, qint64 ms, Picture* picture) { mSource(camera, ms, picture); }) {
  mTick.callOnTimeout([this] { Record(); });
  mPut.callOnTimeout([this] { PutPassed(); });
}

Recording::~Recording() = default;

void Recording::Start(const CameraSource& source) {
  mSource = source;
  mTick.start(mHub.delays.picture);
}

void Recording::Begin() {
  if (!mOn) NoteStop();
  mOn = true;
  mTick.start(mHub.delays.picture);
  mVoice.Speak(Prompt::RecordingStarts, mHub.delays.voice);
  emit mHub.sink.VideoChanged();
}

// A card that was formatted meanwhile knows of no stop.
void Recording::NoteStop() {
  if (mFollows) return;
  const QDateTime formatted = mCard.Folder().Formatted();
  if (!mCard.IsReady() || (formatted.isValid() && formatted >= mStoppedHere)) return;
  const QDateTime now = mHub.clock.Now();
  if (!mCard.Folder().AddStop(mStopped, now)) mHub.sink.Note(QStringLiteral("The list of stops cannot be written."));
  emit mHub.sink.Stored({{QStringLiteral("from"), TimeText(mStopped)}, {QStringLiteral("to"), TimeText(now)}});
}

void Recording::End(int why) {
  FinishTake();
  mTick.stop();
  mPassed.clear();
  if (mOn) mStopped = mHub.clock.Now();
  if (mOn) mStoppedHere = QDateTime::currentDateTime();
  mOn = false;
  if (why == kSave || why == kCard) mVoice.Speak(Prompt::RecordingStops, mHub.delays.stopVoice);
  emit mHub.sink.VideoChanged();
}

void Recording::Finish() {
  FinishTake();
  while (!mPassed.isEmpty()) PutPassed();
  mTick.stop();
}

void Recording::SetParked(bool parked) {
  FinishTake();
  mKind = parked ? Label::Kind::Parking : Label::Kind::Normal;
}

void Recording::Mark(Label::Kind kind, Label::Trigger trigger) {
  FinishTake();
  if (mFollows || !IsOn()) return;
  const int length = kind == Label::Kind::Protected ? mHub.delays.manualEvent : mHub.delays.clip / 2;
  Label label;
  label.kind = kind;
  label.trigger = trigger;
  mTake = std::make_unique<Take>(NewTake(label, std::max(length / kPictureMs, kRate)));
}

void Recording::EndProtected() {
  if (mTake && mTake->label.kind == Label::Kind::Protected) FinishTake();
}

void Recording::MarkPast(Label::Trigger trigger, qint64 seconds) {
  if (mFollows || !IsOn()) return;
  Label label;
  label.kind = Label::Kind::Parking;
  label.trigger = trigger;
  label.start = QDateTime::fromSecsSinceEpoch(seconds);
  Take take = NewTake(label, kPastPictures);
  for (int i = 0; i < take.length; ++i)
    for (const int camera : {0, 1}) AddPicture(&take, camera);
  Store(take, EndOf(take));
}

bool Recording::LetPass(qint64 seconds) {
  FinishTake();
  const QDateTime to = mHub.clock.Now().addSecs(seconds);
  if (to.date().year() > kLastYear || !mHub.clock.Set(to)) return false;
  if (mFollows || !IsOn()) return true;
  Label label;
  label.kind = mKind;
  label.clockBroken = mClockBroken;
  label.start = to.addMSecs(-mHub.delays.clip - to.time().msec());
  mPassed.prepend({label, static_cast<int>(seconds * 1000 / mHub.delays.clip)});
  // More would only replace each other.
  int room = kMost / 2;
  for (Passed& passed : mPassed) {
    passed.clips = std::min(passed.clips, room);
    room -= passed.clips;
  }
  mPut.start(0);
  return true;
}

// One by both cameras.
void Recording::PutPassed() {
  if (!mCard.IsReady()) mPassed.clear();
  if (mPassed.isEmpty()) return mPut.stop();
  if (mPassed.constFirst().clips == 0) return mPassed.removeFirst();
  Label& label = mPassed.first().label;
  bool good = true;
  for (const int camera : {0, 1}) {
    if (camera == 1 && !mCameras.Video().rearAlive) continue;
    const qint64 changed = label.start.toMSecsSinceEpoch() + mHub.delays.clip + camera;
    const ClipFacts facts{FileName(label, camera), Trailer(label), mHub.delays.clip, 0, changed};
    good = good && mMaker.Make(mCard.Folder(), facts);
    if (good) emit mHub.sink.Stored(facts.ToJson());
  }
  mCard.Folder().Trim(kMost, 2);
  label.start = label.start.addMSecs(-mHub.delays.clip);
  --mPassed.first().clips;
  if (good) return;
  mPassed.clear();
  mHub.sink.Note(QStringLiteral("A recording cannot be written."));
}

void Recording::SetCut(Label::Cut cut) {
  if (mTake) mTake->label.cut = cut;
}

// Now, and in another second than the last one; a clock that was set back is another matter.
QDateTime Recording::NextStart(int behind) const {
  QDateTime now = mHub.clock.Now().addMSecs(-behind);
  // A timer that is a little early is a second early in a time that runs faster.
  if (mHub.clock.Speed() > 1 && now < mLastEnd && now > mLastEnd.addSecs(-kClockStep)) now = mLastEnd;
  const bool again = now < mLastStart.addSecs(1) && now > mLastStart.addSecs(-kClockStep);
  return again ? mLastStart.addSecs(1) : now;
}

// The start in whole seconds, as the name has it.
Recording::Take Recording::NewTake(const Label& label, int length, int behind) const {
  Take take{label, length, {}};
  QDateTime& start = take.label.start;
  if (start.isNull()) start = NextStart(behind);
  start = start.addMSecs(-start.time().msec());
  while (mCard.Folder().Has(start)) start = start.addSecs(1);
  take.label.clockBroken = mClockBroken;
  for (const int camera : {0, 1})
    if (camera == 0 || mCameras.Video().rearAlive)
      take.writers[static_cast<size_t>(camera)] = std::make_unique<ClipWriter>(kPictureWidth, kPictureHeight, kRate);
  return take;
}

// All that the clock has run since the last time.
void Recording::Record() {
  const int pictures = mHub.clock.Speed();
  for (int i = 1; i <= pictures; ++i) AddPictures((pictures - i) * kPictureMs, i == 1);
}

// `behind`: ms that the clock has run since these pictures.
void Recording::AddPictures(int behind, bool areNew) {
  if (mFollows || !mCard.IsReady()) return mTake.reset();
  if (!mTake) {
    Label label;
    label.kind = mKind;
    mTake = std::make_unique<Take>(NewTake(label, mHub.delays.clip / kPictureMs, behind));
  }
  for (const int camera : {0, 1}) AddPicture(mTake.get(), camera, areNew);
  if (mTake->writers[0]->Pictures() >= mTake->length) FinishTake();
}

// The rear camera's recording ends when the camera does.
void Recording::AddPicture(Take* take, int camera, bool isNew) {
  ClipWriter* writer = take->writers[static_cast<size_t>(camera)].get();
  if (!writer || (camera == 1 && !mCameras.Video().rearAlive)) return;
  QByteArray& shown = mShown[static_cast<size_t>(camera)];
  if (isNew || writer->Pictures() == 0) {
    const QDateTime time = take->label.start.addMSecs(qint64{writer->Pictures()} * kPictureMs);
    mSource(camera, time.toMSecsSinceEpoch(), &mPicture);
    Stamp(time, &mPicture);
    shown = mEncoder.Encode(mPicture);
  }
  writer->Add(shown);
}

void Recording::FinishTake() {
  const std::unique_ptr<Take> take = std::move(mTake);
  if (!take || !mCard.IsReady() || take->writers[0]->Pictures() < kRate) return;
  mLastStart = take->label.start;
  mLastEnd = QDateTime::fromMSecsSinceEpoch(EndOf(*take));
  const qint64 changed = std::max(EndOf(*take), mLastChanged + 1);
  mLastChanged = changed + 1;
  Store(*take, changed);
}

void Recording::Store(const Take& take, qint64 changed) {
  bool good = true;
  for (const int camera : {0, 1}) {
    ClipWriter* writer = take.writers[static_cast<size_t>(camera)].get();
    if (!writer || writer->Pictures() < kRate) continue;
    good = mCard.Folder().Write(take.label, camera, writer->Finish(), changed + camera) && good;
    const ClipFacts facts{FileName(take.label, camera), Trailer(take.label), writer->Pictures() * kPictureMs, 0,
                          changed + camera};
    emit mHub.sink.Stored(facts.ToJson());
  }
  if (!good) mHub.sink.Note(QStringLiteral("A recording cannot be written."));
  mCard.Folder().Trim(kMost, 2);
}

qint64 Recording::EndOf(const Take& take) {
  return take.label.start.toMSecsSinceEpoch() + qint64{take.writers[0]->Pictures()} * kPictureMs;
}

}  // namespace recorder
