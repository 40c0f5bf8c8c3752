#include "recorder/recording/recording.h"

#include <algorithm>

#include "recorder/card/clipfacts.h"
#include "recorder/card/stamp.h"
#include "recorder/card/stock.h"

namespace recorder {
namespace {

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
      mPicture{kPictureWidth, kPictureHeight, std::vector<quint32>(size_t{kPictureWidth} * kPictureHeight)} {
  mTick.callOnTimeout([this] { Record(); });
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
  mVoice.Speak(mHub.delays.voice);
  emit mHub.sink.VideoChanged();
}

// A card that was formatted meanwhile knows of no stop.
void Recording::NoteStop() {
  if (mFollows) return;
  const QDateTime formatted = mCard.Folder().Formatted();
  if (!mCard.IsReady() || (formatted.isValid() && formatted.addSecs(mHub.clock.Offset()) >= mStopped)) return;
  const QDateTime now = mHub.clock.Now();
  if (!mCard.Folder().AddStop(mStopped, now)) mHub.sink.Note(QStringLiteral("The list of stops cannot be written."));
  emit mHub.sink.Stored({{QStringLiteral("from"), TimeText(mStopped)}, {QStringLiteral("to"), TimeText(now)}});
}

void Recording::End(int why) {
  FinishTake();
  mTick.stop();
  if (mOn) mStopped = mHub.clock.Now();
  mOn = false;
  if (why == kSave || why == kCard) mVoice.Speak(mHub.delays.stopVoice);
  emit mHub.sink.VideoChanged();
}

void Recording::Finish() {
  FinishTake();
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

void Recording::SetCut(Label::Cut cut) {
  if (mTake) mTake->label.cut = cut;
}

// Now, and in another second than the last one; a clock that was set back is another matter.
QDateTime Recording::NextStart() const {
  const QDateTime now = mHub.clock.Now();
  const bool again = now < mLastStart.addSecs(1) && now > mLastStart.addSecs(-kClockStep);
  return again ? mLastStart.addSecs(1) : now;
}

// The start in whole seconds, as the name has it.
Recording::Take Recording::NewTake(const Label& label, int length) const {
  Take take{label, length, {}};
  QDateTime& start = take.label.start;
  if (start.isNull()) start = NextStart();
  start = start.addMSecs(-start.time().msec());
  while (mCard.Folder().Has(start)) start = start.addSecs(1);
  take.label.clockBroken = mClockBroken;
  for (const int camera : {0, 1})
    if (camera == 0 || mCameras.Video().rearAlive)
      take.writers[static_cast<size_t>(camera)] = std::make_unique<ClipWriter>(kPictureWidth, kPictureHeight, kRate);
  return take;
}

void Recording::Record() {
  if (mFollows || !mCard.IsReady()) return mTake.reset();
  if (!mTake) {
    Label label;
    label.kind = mKind;
    mTake = std::make_unique<Take>(NewTake(label, mHub.delays.clip / kPictureMs));
  }
  for (const int camera : {0, 1}) AddPicture(mTake.get(), camera);
  if (mTake->writers[0]->Pictures() >= mTake->length) FinishTake();
}

// The rear camera's recording ends when the camera does.
void Recording::AddPicture(Take* take, int camera) {
  ClipWriter* writer = take->writers[static_cast<size_t>(camera)].get();
  if (!writer || (camera == 1 && !mCameras.Video().rearAlive)) return;
  const QDateTime time = take->label.start.addMSecs(qint64{writer->Pictures()} * kPictureMs);
  mSource(camera, time.toMSecsSinceEpoch(), &mPicture);
  Stamp(time, &mPicture);
  writer->Add(mEncoder.Encode(mPicture));
}

void Recording::FinishTake() {
  const std::unique_ptr<Take> take = std::move(mTake);
  if (!take || !mCard.IsReady() || take->writers[0]->Pictures() < kRate) return;
  mLastStart = take->label.start;
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
