#include "recorder/card/refill.h"

#include "recorder/card/clipwriter.h"
#include "recorder/card/pictureencoder.h"
#include "recorder/card/stock.h"

namespace recorder {

Refill::Refill(const CardFolder& card, int number, const QDateTime& until)
    : mCard(card), mNumber(number), mUntil(until) {
  for (const QString& name : card.Recordings()) mOld << name;
  if (number == 0) return;
  constexpr int kSide = 16;
  PictureEncoder encoder(kSide, kSide);
  ClipWriter writer(kSide, kSide, 1);
  writer.Add(encoder.Encode({kSide, kSide, std::vector<quint32>(size_t{kSide} * kSide, 0x406080)}));
  mAvi = writer.Finish();
}

// The new ones first: ext4 is several times slower to make files when as many were just removed.
bool Refill::Step() {
  const int step = mDone++;
  if (step < mNumber) return Put(step);
  return step == mNumber ? mCard.RemoveStops() : RemoveOld();
}

bool Refill::RemoveOld() {
  const auto old = mOld.begin();
  const bool good = mCard.Remove(*old);
  mOld.erase(old);
  return good;
}

bool Refill::Put(int index) {
  const Label label = StockLabel(index / 2, mUntil.addSecs(-60 * qint64{(mNumber - index + 1) / 2}));
  const int camera = index % 2;
  mOld.remove(FileName(label, camera));
  return mCard.Write(label, camera, mAvi, label.start.addSecs(1).toMSecsSinceEpoch() + camera);
}

}  // namespace recorder
