#include "bench/record/recordlook.h"

#include "bench/camera/bench.h"
#include "bench/record/recordpicture.h"

namespace {
constexpr int kLook = 33;     // milliseconds
constexpr int kSteady = 150;  // milliseconds; then it changes no more
}  // namespace

RecordLook::RecordLook(const Bench& bench, QObject* parent) : QObject(parent), mBench(bench) {
  mSince.start();
  mTimer.callOnTimeout([this] { Look(); });
  mTimer.start(kLook);
}

void RecordLook::Look() {
  const QImage raw = mBench.Drawn();
  const QString screen = mBench.Shown().value(QLatin1String("screen")).toString();
  if (raw == mRaw && screen == mScreen) return;
  mRaw = raw;
  mScreen = screen;
  const QString picture = recordpicture::Digest(raw, screen);
  if (picture != mPicture) mSince.start();
  mPicture = picture;
}

const QString& RecordLook::Picture() {
  Look();
  return mPicture;
}

QJsonObject RecordLook::Seen() {
  Look();  // it may have changed just now
  QJsonObject seen = mBench.Shown();
  if (mSince.hasExpired(kSteady)) seen.insert(QStringLiteral("picture"), mPicture);
  return seen;
}
