#include <QJsonDocument>

#include "bench/camera/bench.h"
#include "bench/record/recordondemand.h"
#include "bench/record/replay.h"
#include "bench/server/answer.h"
#include "bench/server/wait.h"
#include "recorder/firmware/actions.h"
#include "recorder/service/requests.h"
#include "tests/fuzz/readers/reader.h"

namespace {
/// A bench that was not started: nothing runs, and all that could be done is refused once it was read.
struct Off {
  Off() {
    QString error;
    REQUIRE(folder.Choose(Root().Path(QStringLiteral("/bench")), &error) && folder.Take(&error));
    bench = std::make_unique<Bench>(QStringLiteral("/none"), folder, QStringLiteral("ko"));
    record = std::make_unique<RecordOnDemand>(*bench, folder, true);
    replay = std::make_unique<Replay>(*bench, RecordFile(), Replay::Options());
  }
  RootFolder folder;
  std::unique_ptr<Bench> bench;
  std::unique_ptr<RecordOnDemand> record;
  std::unique_ptr<Replay> replay;
};

Reply TakeTouch(const QJsonObject& body) {
  requests::Touch touch;
  const Reply reply = requests::TakeTouch(body, &touch);
  if (!reply.IsGood()) return reply;
  const int mostX = touch.isRaw ? requests::Touch::kMostRaw : 479, mostY = touch.isRaw ? mostX : 319;
  REQUIRE(touch.x >= 0 && touch.x <= mostX && touch.y >= 0 && touch.y <= mostY && touch.ms >= 0 && touch.ms <= 60000);
  const bool isPath = touch.kind == requests::Touch::Kind::Path;
  REQUIRE(isPath ? touch.path.size() >= 2 && touch.path.size() <= 100 : touch.path.isEmpty());
  int all = 0;
  for (const auto& point : std::as_const(touch.path)) {
    REQUIRE(point.x >= 0 && point.x <= 479 && point.y >= 0 && point.y <= 319 && point.ms >= 0);
    all += point.ms;
  }
  REQUIRE(all <= 60000);
  return reply;
}

Reply TakeEvent(const QJsonObject& body) {
  int event = 0, value = 0;
  const Reply reply = requests::TakeEvent(body, &event, &value);
  REQUIRE(!reply.IsGood() || (event >= 1 && event <= 38));
  return reply;
}

Reply TakeAction(const QJsonObject& body) {
  QString name, error;
  QJsonObject arguments;
  const Reply reply = requests::TakeAction(body, &name, &arguments);
  if (!reply.IsGood()) return reply;
  REQUIRE(!name.isEmpty());
  return recorder::CheckAction(name, arguments, &error) ? Reply() : Reply::Bad(error);
}

Reply TakeWait(const QJsonObject& body) {
  Wait::Wish wish;
  const Reply reply = Wait::Take(body, &wish);
  REQUIRE(!reply.IsGood() || (wish.timeout >= 1 && wish.timeout <= 60000));
  REQUIRE(!reply.IsGood() || !wish.screen.isEmpty() || !wish.box.isEmpty());
  return reply;
}

// By the last part of the path.
Reply Take(const QString& path, const QJsonObject& body) {
  static const Off off;
  if (path == QLatin1String("touch")) return TakeTouch(body);
  if (path == QLatin1String("event")) return TakeEvent(body);
  if (path == QLatin1String("action")) return TakeAction(body);
  if (path == QLatin1String("wait")) return TakeWait(body);
  if (path == QLatin1String("scenario")) return off.bench->Scenario(body);
  if (path == QLatin1String("snapshot") && !body.contains(QLatin1String("save"))) return off.bench->Snapshot(body);
  if (path == QLatin1String("record")) return off.record->Take(body);
  if (path == QLatin1String("control")) return off.replay->Control(body);
  return Reply::Bad(QStringLiteral("There is nothing at this path."));
}
}  // namespace

// A message of the WebSocket: what a POST takes, and beside it the path as its type.
void TakeApi(const QByteArray& bytes) {
  Reply last;
  const QJsonObject answer = requests::Answer(
      bytes, [&last](const QString& type, const QJsonObject& members) { return last = Take(type, members); });
  const int status = answer.value(QLatin1String("status")).toInt(200);
  REQUIRE(answer.value(QLatin1String("type")) == QLatin1String("answer") && answer.contains(QLatin1String("id")));
  REQUIRE(status == 200 || status == 400 || status == 409);
  REQUIRE((status == 200) == answer.value(QLatin1String("ok")).toBool());
  REQUIRE(status == 200 || IsSentence(answer.value(QLatin1String("error")).toString()));
  const QJsonObject body = QJsonDocument::fromJson(Answer::Of(last).body).object();
  REQUIRE(body.value(QLatin1String("ok")).toBool() == last.IsGood());
  REQUIRE(body.value(QLatin1String("error")).toString() == last.error);
}
