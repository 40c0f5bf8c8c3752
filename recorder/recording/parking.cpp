#include "recorder/recording/parking.h"

#include <QDateTime>
#include <QJsonArray>
#include <QtEndian>
#include <algorithm>

#include "recorder/base/files.h"

namespace recorder {
namespace {

int SecondsAgo(const Clock& clock, int seconds) {
  return static_cast<int>(clock.Now().toSecsSinceEpoch() - seconds);
}

void Append(QByteArray* bytes, int number) {
  char little[4];
  qToLittleEndian<qint32>(number, little);
  bytes->append(little, sizeof little);
}

void Append(QByteArray* bytes, const QList<int>& times) {
  Append(bytes, static_cast<int>(times.size()));
  for (int time : times) Append(bytes, time);
}

QJsonArray ToArray(const QList<int>& times) {
  QJsonArray array;
  for (const int time : times) array.append(time);
  return array;
}

}  // namespace

QByteArray Parking::Report(int start, int end, int lowVoltage, const QList<int>& impacts, const QList<int>& motions) {
  QByteArray bytes;
  for (int number : {1, start, end, lowVoltage}) Append(&bytes, number);
  Append(&bytes, impacts);
  Append(&bytes, motions);
  return bytes;
}

void Parking::GoOn(int start) {
  mStart = start;
  mImpacts.clear();
  mMotions.clear();
  mCameras.Parked(true);
  mRecording.SetParked(true);
}

bool Parking::Begin(int minutesAgo) {
  GoOn(SecondsAgo(mHub.clock, 60 * minutesAgo));
  return mHub.sink.Send(RECV_ZEL_STATUS_PARK_MODE_IN);
}

bool Parking::End(bool lowVoltage) {
  // A parking lasts a second at least: one without a duration is none.
  const int end = std::max(SecondsAgo(mHub.clock, 0), mStart + 1);
  const QByteArray report = Report(mStart, lowVoltage ? 0 : end, lowVoltage ? end : 0, mImpacts, mMotions);
  mStart = 0;
  if (lowVoltage) mRecording.SetCut(Label::Cut::LowVoltage);
  mRecording.SetParked(false);
  mCameras.Parked(false);
  return TellEnd(report);
}

bool Parking::TellEnd(const QByteArray& report) {
  if (!WriteWhole(mHub.Path(kParkingReport), report))
    mHub.sink.Note(QStringLiteral("The parking report cannot be written."));
  return mHub.sink.Send(RECV_ZEL_STATUS_PARK_MODE_OUT);
}

QByteArray Parking::Bytes(Sample sample) const {
  const int now = SecondsAgo(mHub.clock, 0);
  const auto report = [now](int seconds, int impacts, int motions) {
    const auto spread = [now, seconds](int count) {  // over the whole period
      QList<int> times;
      for (qint64 i = 1; i <= count; ++i) times << now - seconds + static_cast<int>(i * seconds / (count + 1));
      return times;
    };
    return Report(now - seconds, now, 0, spread(impacts), spread(motions));
  };
  switch (sample) {
    case Sample::OneLevel:
      return report(40 * 60, 2, 3);
    case Sample::ThreeLevels:
      return report(5 * 3600, 3, 8);
    case Sample::FiveLevels:
      return report(9 * 3600, 4, 13);
    case Sample::NoRecordings:
      return report(5 * 3600, 0, 0);
    case Sample::Empty:
      return {};
    case Sample::Short:
      return report(5 * 3600, 0, 0).left(19);
    case Sample::Lying:
      return report(5 * 3600, 2, 3).replace(16, 4, QByteArray("\xff\xff\xff\x7f", 4));  // the number of impacts
    case Sample::Huge:
      return report(9 * 3600, 1000000, 1000000);
  }
  return {};
}

bool Parking::Record(bool impact, int minutesAgo, QString* error) {
  QList<int>& times = impact ? mImpacts : mMotions;
  if (times.size() >= kMostRecordings) {
    *error = QStringLiteral("The parking report is full.");
    return false;
  }
  times.append(std::max(mStart, SecondsAgo(mHub.clock, 60 * minutesAgo)));
  const Label::Trigger trigger = impact ? Label::Trigger::Impact : Label::Trigger::Motion;
  if (minutesAgo == 0)
    mRecording.Mark(Label::Kind::Parking, trigger);
  else
    mRecording.MarkPast(trigger, times.constLast());
  return true;
}

QJsonObject Parking::Memory() const {
  if (!IsParked()) return {};
  return {{QStringLiteral("since"), mStart},
          {QStringLiteral("impacts"), ToArray(mImpacts)},
          {QStringLiteral("motions"), ToArray(mMotions)}};
}

void Parking::Remember(const QJsonObject& memory) {
  const int since = memory.value(QLatin1String("since")).toInt();
  if (since <= 0) return;
  GoOn(since);
  for (const auto& [times, member] : {std::pair(&mImpacts, "impacts"), {&mMotions, "motions"}})
    for (const QJsonValue& time : memory.value(QLatin1String(member)).toArray())
      if (times->size() < kMostRecordings) times->append(std::max(since, time.toInt()));
}

QJsonObject Parking::State() const {
  return {{QStringLiteral("parked"), IsParked()},
          {QStringLiteral("since"), mStart},
          {QStringLiteral("impacts"), mImpacts.size()},
          {QStringLiteral("motions"), mMotions.size()}};
}

}  // namespace recorder
