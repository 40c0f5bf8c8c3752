#include "recorder/card/stock.h"

#include <QList>
#include <array>

#include "recorder/card/clipwriter.h"
#include "recorder/card/pictureencoder.h"

namespace recorder {
namespace {

using Kind = Label::Kind;
using Trigger = Label::Trigger;
using Cut = Label::Cut;

constexpr int kMoments = 200;
constexpr int kBetween = 21 * 60;  // seconds from one moment to the next
constexpr int kRate = 2;
// Of either camera; the recordings share them, as drawing and packing new ones would take seconds.
constexpr int kPictures = 16;
constexpr int kAway = 180;  // seconds that a stop lasts

struct Moment {
  Kind kind;
  Trigger trigger = Trigger::None;
  Cut cut = Cut::None;
  bool clockBroken = false;
};
constexpr Moment kDay[] = {
    {Kind::Normal},
    {Kind::Normal},
    {Kind::Event, Trigger::Impact},
    {Kind::Normal},
    {Kind::Protected},
    {Kind::Normal},
    {Kind::Parking},
    {Kind::Parking, Trigger::Motion},
    {Kind::Parking, Trigger::Impact},
    {Kind::Normal, Trigger::None, Cut::None, true},
    {Kind::Normal},
    {Kind::Event, Trigger::Impact, Cut::LowVoltage},
    {Kind::Normal},
    {Kind::Parking, Trigger::Motion},
    {Kind::Parking, Trigger::None, Cut::LowVoltage},
    {Kind::Normal},
    {Kind::Parking, Trigger::None, Cut::Temperature},
    {Kind::Event, Trigger::Impact, Cut::None, true},
    {Kind::Protected},
    {Kind::Parking, Trigger::Motion, Cut::None, true},
    {Kind::Normal},
};
constexpr int kSeconds[] = {12, 20, 8, 15, 5, 3, 6, 4, 1, 10, 7, 3, 9, 2};
constexpr int kLong = 60;

// Of the newest moment (0) and those before.
int SecondsOf(int age) {
  return age % 53 == 20 ? kLong : kSeconds[static_cast<size_t>(age) % std::size(kSeconds)];
}

bool HasCamera(int age, int camera) {
  return camera == 0 ? age % 23 != 11 : age % 7 != 3;
}

}  // namespace

void DrawStripes(int camera, qint64 ms, Picture* picture) {
  const int shift = static_cast<int>(ms / 25 % 64);
  for (int y = 0; y < picture->height; ++y)
    for (int x = 0; x < picture->width; ++x) {
      const int place = ((camera == 0 ? x : y) + shift) % 64;
      picture->pixels[static_cast<size_t>(y) * static_cast<size_t>(picture->width) + static_cast<size_t>(x)] =
          place < 32    ? 0x304050U
          : camera == 0 ? 0x70A0D0U
                        : 0xD08040U;
    }
}

QByteArrayList SharedPictures(const CameraSource& cameras, int camera, qint64 ms) {
  QByteArrayList pictures;
  PictureEncoder encoder(kPictureWidth, kPictureHeight);
  Picture picture{kPictureWidth, kPictureHeight, std::vector<quint32>(size_t{kPictureWidth} * kPictureHeight)};
  for (int i = 0; i < kPictures; ++i) {
    cameras(camera, ms + i * 1000 / kRate, &picture);
    pictures << encoder.Encode(picture);
  }
  return pictures;
}

Label StockLabel(int index, const QDateTime& start) {
  const Moment& moment = kDay[static_cast<size_t>(index) % std::size(kDay)];
  return {moment.kind, moment.trigger, moment.cut, moment.clockBroken, start};
}

bool WriteLastDays(const CardFolder& card, const CameraSource& cameras, const QDateTime& until) {
  const QDateTime first = until.addSecs(-qint64{kMoments} * kBetween);
  const std::array pictures{SharedPictures(cameras, 0, first.toMSecsSinceEpoch()),
                            SharedPictures(cameras, 1, first.toMSecsSinceEpoch())};
  for (int i = 0; i < kMoments; ++i) {
    const Label label = StockLabel(i, first.addSecs(qint64{i} * kBetween + i * 37 % 200));
    const int age = kMoments - 1 - i;
    const int seconds = SecondsOf(age);
    for (const int camera : {0, 1}) {
      if (!HasCamera(age, camera)) continue;
      ClipWriter writer(kPictureWidth, kPictureHeight, kRate);
      for (int picture = 0; picture < seconds * kRate; ++picture)
        writer.Add(pictures[static_cast<size_t>(camera)][(picture + i) % kPictures]);
      const qint64 end = label.start.addSecs(seconds).toMSecsSinceEpoch();
      if (!card.Write(label, camera, writer.Finish(), end + camera)) return false;
    }
    const QDateTime stop = label.start.addSecs(seconds + 10);
    if (i % 29 == 5 && !card.AddStop(stop, stop.addSecs(kAway))) return false;
  }
  return true;
}

}  // namespace recorder
