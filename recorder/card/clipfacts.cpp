#include "recorder/card/clipfacts.h"

#include <QFileInfo>
#include <QRegularExpression>
#include <algorithm>
#include <cmath>

#include "recorder/card/clipreader.h"
#include "recorder/card/clipwriter.h"
#include "recorder/card/stock.h"

namespace recorder {
namespace {

constexpr int kTrailer = 4;  // bytes
// Local time: another machine's recordings have that in their names, too.
constexpr char kChanged[] = "yyyyMMdd_HHmmss.zzz";

// A whole number from 0 to `most`; nothing for anything else.
std::optional<int> Whole(const QJsonObject& object, const char* name, int most) {
  const double number = object.value(QLatin1String(name)).toDouble(-1);
  if (number < 0 || number > most || std::trunc(number) != number) return {};
  return static_cast<int>(number);
}

}  // namespace

ClipFacts ClipFacts::Of(const CardFolder& card, const QString& name) {
  const QFileInfo info(card.Path(name));
  ClipFacts facts{
      name, {}, 0, static_cast<int>(std::min<qint64>(info.size(), kLargest)), info.lastModified().toMSecsSinceEpoch()};
  QFile file(info.filePath());
  if (file.open(QIODevice::ReadOnly) && file.seek(std::max<qint64>(0, file.size() - kTrailer)))
    facts.trailer = file.read(kTrailer);
  facts.trailer = facts.trailer.leftJustified(kTrailer, '\0');
  ClipReader reader;
  if (reader.Open(info.filePath()) == ClipReader::Result::Good)
    facts.ms = static_cast<int>(std::min<qint64>(reader.Length(), kLongest));
  if (facts.ms > 0) facts.bytes = 0;
  return facts;
}

std::optional<ClipFacts> ClipFacts::FromJson(const QJsonObject& object, QString* error) {
  static const QRegularExpression recording(QStringLiteral("\\A(rec|pmr|evt|ndf)[01]_[0-9]{8}_[0-9]{6}_?\\.avi\\z"));
  const QString name = object.value(QLatin1String("name")).toString();
  const QByteArray trailer = QByteArray::fromHex(object.value(QLatin1String("trailer")).toString().toLatin1());
  const auto ms = Whole(object, "ms", kLongest);
  const auto bytes = Whole(object, "bytes", kLargest);
  const QDateTime changed =
      QDateTime::fromString(object.value(QLatin1String("changed")).toString(), QLatin1String(kChanged));
  if (recording.match(name).hasMatch() && trailer.size() == kTrailer && ms && bytes && changed.isValid())
    return ClipFacts{name, trailer, *ms, *bytes, changed.toMSecsSinceEpoch()};
  *error =
      QStringLiteral("\"%1\" is no recording with trailer, ms, bytes and changed.").arg(name.simplified().left(40));
  return {};
}

QJsonObject ClipFacts::ToJson() const {
  return {{QStringLiteral("name"), name},
          {QStringLiteral("trailer"), QLatin1String(trailer.toHex())},
          {QStringLiteral("ms"), ms},
          {QStringLiteral("bytes"), bytes},
          {QStringLiteral("changed"), QDateTime::fromMSecsSinceEpoch(changed).toString(QLatin1String(kChanged))}};
}

QByteArray ClipMaker::Avi(const ClipFacts& facts) {
  const int camera = facts.name[3] == u'1' ? 1 : 0;
  QByteArrayList& pictures = mPictures[static_cast<size_t>(camera)];
  if (pictures.isEmpty()) pictures = SharedPictures(mCameras, camera, facts.changed);
  constexpr int kRate = 4;  // every length of the recorder's own is a whole number of these
  ClipWriter writer(kPictureWidth, kPictureHeight, kRate);
  for (int i = 0; i < std::max(1, facts.ms * kRate / 1000); ++i) writer.Add(pictures[i % pictures.size()]);
  return writer.Finish();
}

bool ClipMaker::Make(const CardFolder& card, const ClipFacts& facts) {
  const QByteArray bytes = facts.ms > 0
                               ? Avi(facts) + facts.trailer
                               : QByteArray(std::max(0, facts.bytes - kTrailer), '#') + facts.trailer.left(facts.bytes);
  return card.WriteFile(facts.name, bytes, facts.changed);
}

}  // namespace recorder
