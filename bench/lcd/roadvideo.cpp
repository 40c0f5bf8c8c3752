#include "bench/lcd/roadvideo.h"

#include <QLinearGradient>
#include <QPainter>
#include <QPainterPath>
#include <algorithm>
#include <cmath>

namespace {
constexpr QSize kSize(480, 320);
constexpr QSize kSmall(150, 100);  // of picture in picture
constexpr int kGap = 6;
constexpr double kHorizon = 138;
constexpr double kMiddle = 240;
constexpr double kNear = 182;      // pixels from the horizon to the bottom, at distance 1
constexpr double kHalfRoad = 300;  // half of the road's width at distance 1, pixels
constexpr double kFar = 40;
constexpr double kVeryNear = 0.2;  // where the car that comes has left the picture
constexpr double kSpacing = 1.5;   // between two dashes
constexpr double kDash = 0.6;      // long
// Distance in a millisecond. From one of a dozen pictures a second to the next the road comes on by a quarter of
// kSpacing: with half of it the dashes only flicker.
constexpr double kSpeed = 0.0045;

struct Light {
  QColor skyTop, skyLow, hill, hill2, field, road, line, post;
};
const Light kDay = {{92, 150, 205}, {206, 226, 238}, {96, 124, 112},  {124, 152, 128},
                    {112, 138, 84}, {84, 86, 90},    {232, 232, 226}, {70, 84, 60}};
const Light kEvening = {{64, 66, 110}, {236, 170, 116}, {62, 58, 78},    {88, 72, 84},
                        {74, 72, 62},  {62, 60, 66},    {206, 196, 180}, {44, 42, 44}};

// A point of the ground: `side` is -1 at the left edge of the road and 1 at the right one.
QPointF At(double side, double distance) {
  return {kMiddle + side * kHalfRoad / distance, kHorizon + kNear / distance};
}

QPainterPath Strip(double left, double right, double from, double to) {
  QPainterPath path(At(left, from));
  path.lineTo(At(right, from));
  path.lineTo(At(right, to));
  path.lineTo(At(left, to));
  path.closeSubpath();
  return path;
}

QPainterPath Hills(double height, double phase) {
  QPainterPath path(QPointF(0, kHorizon));
  for (int x = 0; x <= 480; x += 8)
    path.lineTo(x, kHorizon - height * (1.1 + std::sin(x * 0.011 + phase) + 0.4 * std::sin(x * 0.037 + 2 * phase)) / 2);
  path.lineTo(480, kHorizon);
  path.closeSubpath();
  return path;
}

QImage Landscape(const Light& light) {
  QImage image(kSize, QImage::Format_RGB32);
  QPainter painter(&image);
  painter.setRenderHint(QPainter::Antialiasing);
  QLinearGradient sky(0, 0, 0, kHorizon);
  sky.setColorAt(0, light.skyTop);
  sky.setColorAt(1, light.skyLow);
  painter.fillRect(QRectF(0, 0, 480, kHorizon), sky);
  painter.fillPath(Hills(44, 0.6), light.hill);
  painter.fillPath(Hills(24, 2.4), light.hill2);
  painter.fillRect(QRectF(0, kHorizon, 480, 320 - kHorizon), light.field);
  painter.fillPath(Strip(-1.06, 1.06, 0.8, kFar), light.line);
  painter.fillPath(Strip(-1, 1, 0.8, kFar), light.road);
  return image;
}

// What stands by the road and on it, from far to near. `passed`: how far the camera has come; less than 0: backwards.
void PaintMarks(QPainter& painter, const Light& light, double passed) {
  double phase = std::fmod(passed, 2 * kSpacing);  // the marks repeat: a post at every other dash
  if (phase < 0) phase += 2 * kSpacing;
  const bool isOdd = phase >= kSpacing;
  const double first = kSpacing - (isOdd ? phase - kSpacing : phase);
  for (int i = int(kFar / kSpacing); i >= -1; --i) {
    const double distance = first + i * kSpacing;
    // The bottom of the picture is at distance 1.
    if (distance + kDash > 1)
      painter.fillPath(Strip(-0.025, 0.025, std::max(distance, 0.55), distance + kDash), light.line);
    if (distance <= 0.7 || (i % 2 != 0) != isOdd) continue;
    for (const double side : {-1.3, 1.3}) {
      const QPointF foot = At(side, distance);
      painter.fillRect(QRectF(foot.x() - 5 / distance, foot.y() - 90 / distance, 10 / distance, 90 / distance),
                       light.post);
      painter.fillRect(QRectF(foot.x() - 5 / distance, foot.y() - 82 / distance, 10 / distance, 14 / distance),
                       light.line);
    }
  }
}

// A car of `width` pixels whose wheels stand at `foot`, seen from behind (or from the front, with its lamps on).
void PaintCar(QPainter& painter, QPointF foot, double width, const QColor& body, const QColor& glass,
              const QColor& lamp) {
  painter.save();
  painter.translate(foot);
  painter.scale(width / 100, width / 100);
  painter.setPen(Qt::NoPen);
  const auto part = [&painter](QRectF box, double round, const QColor& colour) {
    painter.setBrush(colour);
    painter.drawRoundedRect(box, round, round);
  };
  part({-46, -8, 92, 10}, 5, QColor(20, 20, 22, 110));  // shadow
  part({-44, -14, 16, 14}, 3, QColor(24, 24, 26));
  part({28, -14, 16, 14}, 3, QColor(24, 24, 26));
  QPainterPath cabin(QPointF(-30, -70));
  cabin.lineTo(30, -70);
  cabin.lineTo(42, -40);
  cabin.lineTo(-42, -40);
  cabin.closeSubpath();
  painter.setBrush(body.darker(112));
  painter.drawPath(cabin);
  QPainterPath window(QPointF(-26, -65));
  window.lineTo(26, -65);
  window.lineTo(35, -42);
  window.lineTo(-35, -42);
  window.closeSubpath();
  painter.setBrush(glass);
  painter.drawPath(window);
  part({-48, -44, 96, 36}, 7, body);
  part({-45, -36, 18, 11}, 3, lamp);
  part({27, -36, 18, 11}, 3, lamp);
  part({-16, -24, 32, 10}, 2, QColor(226, 226, 220));
  painter.restore();
}

QImage Ahead(const QImage& landscape, double ms) {
  QImage image = landscape;
  QPainter painter(&image);
  painter.setRenderHint(QPainter::Antialiasing);
  painter.scale(double(image.width()) / kSize.width(), double(image.height()) / kSize.height());
  PaintMarks(painter, kDay, ms * kSpeed);
  const double distance = 3.6 + 0.5 * std::sin(ms / 4100);
  PaintCar(painter, At(0.47 + 0.02 * std::sin(ms / 900), distance), 270 / distance, QColor(58, 84, 120),
           QColor(38, 46, 54), QColor(200, 52, 46));
  const double oncoming = kFar - std::fmod(ms * kSpeed * 2, kFar * 1.6);
  if (oncoming > kVeryNear)
    PaintCar(painter, At(-0.55, oncoming), 230 / oncoming, QColor(206, 206, 204), QColor(54, 62, 70),
             QColor(250, 246, 224));
  return image;
}

QImage Behind(const QImage& landscape, double ms) {
  QImage image = landscape;
  QPainter painter(&image);
  painter.setRenderHint(QPainter::Antialiasing);
  painter.scale(double(image.width()) / kSize.width(), double(image.height()) / kSize.height());
  PaintMarks(painter, kEvening, -ms * kSpeed);  // the road runs away
  const double distance = 2.6 + 0.4 * std::sin(ms / 3300);
  PaintCar(painter, At(-0.45 + 0.02 * std::sin(ms / 1100), distance), 270 / distance, QColor(120, 46, 44),
           QColor(40, 36, 44), QColor(255, 240, 190));
  return image;
}
}  // namespace

RoadVideo::RoadVideo() : mAhead(Landscape(kDay)), mBehind(Landscape(kEvening)) {}

QImage RoadVideo::Whole(int camera, qint64 milliseconds) const {
  if (mOthers[camera]) return mOthers[camera]();
  const auto ms = double(milliseconds);
  return camera == 0 ? Ahead(mAhead, ms) : Behind(mBehind, ms);
}

QImage RoadVideo::Camera(int camera, qint64 milliseconds, QSize size) const {
  if (mOthers[camera]) return mOthers[camera]().scaled(size, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
  const auto ms = double(milliseconds);
  const QImage& landscape = camera == 0 ? mAhead : mBehind;
  if (mSmall[camera].size() != size)
    mSmall[camera] = landscape.scaled(size, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
  return camera == 0 ? Ahead(mSmall[0], ms) : Behind(mSmall[1], ms);
}

QImage RoadVideo::Frame(const VideoPlane& plane, qint64 milliseconds) const {
  if (plane.view == VideoPlane::View::Front) return Whole(0, milliseconds);
  QImage rear(kSize, QImage::Format_RGB32);
  if (plane.rearAlive)
    rear = Whole(1, milliseconds).mirrored(plane.mirrored, false);
  else
    rear.fill(Qt::black);
  if (plane.view == VideoPlane::View::Rear) return rear;
  QImage both = Whole(0, milliseconds);
  const int right = kSize.width() - kSmall.width() - kGap, bottom = kSize.height() - kSmall.height() - kGap;
  const QPoint corners[] = {{right, bottom}, {right, kGap}, {kGap, kGap}, {kGap, bottom}};
  const QPoint corner = corners[plane.pipCorner >= 0 && plane.pipCorner < 4 ? plane.pipCorner : 0];
  QPainter painter(&both);
  painter.setRenderHint(QPainter::SmoothPixmapTransform);
  painter.drawImage(QRect(corner, kSmall), rear);
  painter.setPen(QColor(20, 17, 18));
  painter.drawRect(QRect(corner, kSmall).adjusted(-1, -1, 0, 0));
  return both;
}
