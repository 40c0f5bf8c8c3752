#include "bench/lcd/lcdview.h"

#include <QDateTime>
#include <QPainter>
#include <cstring>

#include "bench/lcd/compose.h"

namespace {
constexpr int kLook = 33;        // milliseconds
constexpr int kVideoFrame = 83;  // milliseconds

// 30 times a second: byte by byte, as an image compares its pixels one by one.
bool SamePixels(const QImage& one, const QImage& other) {
  return one.constBits() == other.constBits() ||
         (one.sizeInBytes() == other.sizeInBytes() &&
          std::memcmp(one.constBits(), other.constBits(), static_cast<size_t>(one.sizeInBytes())) == 0);
}

// What the firmware shows during its update; null when it shows nothing.
QImage UpdateScreen(const QStringList& pictures) {
  if (pictures.isEmpty()) return {};
  QImage screen(Lcd::kWidth, Lcd::kHeight, QImage::Format_RGB32);
  screen.fill(Qt::black);
  QPainter painter(&screen);
  for (const QString& file : pictures) {
    const QImage picture(file);
    painter.drawImage(0, screen.height() - picture.height(), picture);
  }
  return screen;
}
}  // namespace

LcdView::LcdView(QObject* parent) : QObject(parent) {
  mLook.setInterval(kLook);
  mLook.callOnTimeout([this] { Look(); });
}

bool LcdView::Open(const QString& framebuffer, QString* error) {
  return mLcd.Open(framebuffer, error);
}

void LcdView::Close() {
  mLcd.Close();
}

void LcdView::SetVideo(const std::optional<VideoPlane>& video) {
  mVideo = video;
  mUpdate = video ? UpdateScreen(video->update) : QImage();
  mLastFrame = -1;
}

void LcdView::SetBacklight(int value) {
  mBacklight = value;
  mLastFrame = -1;
}

QImage LcdView::Raw() const {
  QImage raw = mLcd.Raw();
  if (!raw.isNull()) return raw;
  raw = QImage(480, 320, QImage::Format_RGB32);
  raw.fill(Qt::black);
  return raw;
}

QImage LcdView::Now() const {
  return Composed(Raw());
}

void LcdView::Watch(bool on) {
  if (on == mLook.isActive()) return;
  if (!on) return mLook.stop();
  mShown = QImage();
  Look();
  mLook.start();
}

// By the clock, as the recordings are.
qint64 LcdView::VideoFrame() {
  return QDateTime::currentMSecsSinceEpoch() / kVideoFrame;
}

QImage LcdView::Composed(const QImage& raw) const {
  if (!mUpdate.isNull()) return mUpdate;
  QImage video;
  if (mVideo) video = mVideo->played ? FullScreen(*mVideo->played) : mRoad.Frame(*mVideo, VideoFrame() * kVideoFrame);
  return Compose(raw, video, mBacklight);
}

// The picture is put together only when something of it may have changed.
void LcdView::Look() {
  const QImage raw = Raw();
  const qint64 frame = VideoFrame();
  const bool isSame = SamePixels(raw, mLastRaw);
  if (frame == mLastFrame && isSame && !mShown.isNull()) return;
  if (!isSame && !mShown.isNull()) emit Drawn();
  mLastRaw = raw;
  mLastFrame = frame;
  const QImage before = std::exchange(mShown, Composed(raw));
  const QRegion where = before.isNull() ? QRegion(mShown.rect()) : ::Changed(before, mShown);
  if (!where.isEmpty()) emit Changed(where);
}
