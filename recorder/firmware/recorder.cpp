#include "recorder/firmware/recorder.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <algorithm>
#include <utility>

#include "gui/vocabulary/vocabulary.h"
#include "platform/sysctrl.h"
#include "recorder/base/files.h"
#include "recorder/firmware/actions.h"
#include "recorder/firmware/commands.h"
#include "recorder/firmware/parts.h"
#include "recorder/firmware/scenario.h"
#include "recorder/link/commandserver.h"
#include "recorder/service/requests.h"

using namespace recorder;

namespace {
constexpr double kMostVolts = 32;
}  // namespace

Recorder::Recorder(const QString& root, QObject* parent)
    : QObject(parent),
      mParts(std::make_unique<Parts>(root)),
      mScenario(std::make_unique<Scenario>(mParts->sink)),
      mServer(std::make_unique<CommandServer>(
          [this](CommandServer::Client& client, quint32 field, const QByteArray& data) {
            CommandServer::Answer answer = DoCommand(*mParts, field, data);
            if (field == SFIELD_GET_VOLTAGE && answer.result >= 0 && !std::exchange(client.greeted, true)) Greet();
            return answer;
          },
          [this](const QString& sentence) { mParts->sink.Note(sentence); })) {
  Connect();
}

void Recorder::Connect() {
  const Sink* sink = &mParts->sink;
  connect(sink, &Sink::Logged, this, [this](const QJsonObject& entry) {
    if (entry.value(QStringLiteral("kind")) == QLatin1String("event") &&
        entry.value(QStringLiteral("result")).toInt() < 0)
      mIsEventLost = true;
    emit Logged(entry);
  });
  connect(sink, &Sink::StateChanged, this, &Recorder::StateChanged);
  connect(sink, &Sink::VideoChanged, this, &Recorder::VideoChanged);
  connect(sink, &Sink::Stored, this, &Recorder::Stored);
  connect(sink, &Sink::RestartWanted, this, &Recorder::RestartWanted);
  connect(sink, &Sink::InterfaceEndWanted, this, &Recorder::InterfaceEndWanted);
  connect(mScenario.get(), &Scenario::Changed, this, &Recorder::StateChanged);
  connect(mScenario.get(), &Scenario::TouchWanted, this, &Recorder::TouchWanted);
  connect(mScenario.get(), &Scenario::PictureWanted, this, &Recorder::PictureWanted);
  connect(mScenario.get(), &Scenario::EventWanted, this, [this](const QJsonObject& request) {
    emit EventWanted(request);
    int event = 0, value = 0;
    if (requests::TakeEvent(request, &event, &value).IsGood()) SendStatus(event, value);
  });
  connect(mScenario.get(), &Scenario::ActionWanted, this, [this](const QJsonObject& request) {
    emit ActionWanted(request);
    QJsonObject arguments = request;
    const QString name = arguments.take(QLatin1String("name")).toString();
    QString error;  // of one that cannot be done now: it is in the log
    if (CheckAction(name, arguments, &error)) Do(name, arguments, &error);
  });
}

// An interface has made its first query: tells it the state, and begins a scenario that waits for it.
void Recorder::Greet() {
  Sink& sink = mParts->sink;
  sink.Note(QStringLiteral("An interface has started."));
  sink.Send(RECV_ZEL_STATUS_CAM_CNT, mParts->cameras.Count());
  sink.Send(RECV_ZEL_STATUS_ACC_SUPPORT, mParts->facts.accModel);
  sink.Send(RECV_ZEL_STATUS_GPS_CONNECT, mParts->facts.gps);
  sink.Send(RECV_ZEL_STATUS_SPEED, mParts->facts.speed);
  // One that was started again in the middle of something.
  if (mParts->parking.IsParked()) sink.Send(RECV_ZEL_STATUS_PARK_MODE_IN);
  if (mParts->power.Counting()) mParts->power.Count(true);
  if (mParts->recording.IsStopped()) {  // it does not know that it has stopped it
    mParts->playback.Stop();
    mParts->recording.Begin();
  }
  mGreeted = true;
  if (std::exchange(mScenarioWaits, false)) mScenario->Start();
}

Recorder::~Recorder() {
  mParts->recording.Finish();
  mParts->card.Finish();
  mParts->update.Finish();
  if (mParts->hub.clock.Speed() > 1) mParts->KeepClock();
}

void Recorder::SetDelays(const Delays& delays) {
  mParts->hub.delays = delays;
}

void Recorder::SetCameras(const CameraSource& cameras) {
  mParts->source = cameras;
}

bool Recorder::Start(QString* error) {
  Hub& hub = mParts->hub;
  if (hub.root.isEmpty()) {
    *error = QStringLiteral("The recorder needs a folder that stands for the device.");
    return false;
  }
  // First the socket: another recorder below this root keeps its files and its queue.
  if (!mServer->Listen(hub.Path(kSocket), error) || !mParts->status.Open(error)) return false;
  mParts->card.Start();
  if (!PrepareRoot(hub.root, error)) return false;
  hub.settings.Load();
  const bool kept = hub.settings.Save();
  if (!kept || !hub.clock.Save()) {
    *error = QStringLiteral("The file %1 cannot be written.").arg(hub.Path(kept ? kClock : kIniFile));
    return false;
  }
  mParts->frontLed.Read();
  mParts->cameras.Start();
  mParts->recording.Start(mParts->source);
  return true;
}

void Recorder::SetMachineClock(const QDateTime& now, bool wasTaken) {
  mParts->hub.clock.SetMachine(now, wasTaken);
}

void Recorder::SkipTime(qint64 ms) {
  if (!mParts->hub.clock.Skip(ms)) mParts->sink.Note(QStringLiteral("The clock cannot be kept."));
}

void Recorder::FollowReplay() {
  mParts->recording.Follow();
  if (mParts->hub.clock.Machine().date() != QDate::currentDate()) mParts->card.KeepNoStamp();
}

bool Recorder::Store(const QJsonObject& what, QString* error) {
  const CardFolder& card = mParts->card.Folder();
  if (what.contains(QLatin1String("from"))) {
    const QDateTime from = TimeOf(what.value(QLatin1String("from")).toString());
    const QDateTime to = TimeOf(what.value(QLatin1String("to")).toString());
    if (from.isValid() && to.isValid()) return !mParts->card.IsReady() || card.AddStop(from, to);
    *error = QStringLiteral("A time without recording has no \"from\" or \"to\".");
    return false;
  }
  const auto facts = ClipFacts::FromJson(what, error);
  if (!facts) return false;
  if (mParts->card.IsReady()) mParts->clips.Make(card, *facts);
  card.Trim(Recording::kMost, 2);
  return true;
}

bool Recorder::FillNewCard(QString* error, const QDateTime& until) {
  const CardFolder& card = mParts->card.Folder();
  if (card.Formatted().isValid() || !card.Recordings().isEmpty()) return true;
  if (WriteLastDays(card, mParts->source, until.isValid() ? until : mParts->hub.clock.Now()) && card.StampFormat())
    return true;
  *error = QStringLiteral("The recordings cannot be written: %1.").arg(mParts->hub.Path(kCardFiles));
  return false;
}

QJsonObject Recorder::Memory() const {
  return {{QStringLiteral("rearPlugged"), mParts->cameras.Count() == 2},
          {QStringLiteral("battery"), mParts->power.Battery()},
          {QStringLiteral("parking"), mParts->parking.Memory()},
          {QStringLiteral("gps"), mParts->facts.gps},
          {QStringLiteral("speed"), mParts->facts.speed},
          {QStringLiteral("accModel"), mParts->facts.accModel}};
}

void Recorder::Remember(const QJsonObject& memory) {
  Facts& facts = mParts->facts;
  mParts->cameras.SetPlugged(memory.value(QLatin1String("rearPlugged")).toBool(true));
  mParts->power.Remember(
      std::clamp(memory.value(QLatin1String("battery")).toDouble(mParts->power.Battery()), 0.0, kMostVolts));
  mParts->parking.Remember(memory.value(QLatin1String("parking")).toObject());
  facts.gps = std::clamp(memory.value(QLatin1String("gps")).toInt(facts.gps), 0, 2);
  facts.speed = std::clamp(memory.value(QLatin1String("speed")).toInt(facts.speed), 0, 300);
  facts.accModel = memory.value(QLatin1String("accModel")).toBool(facts.accModel);
  emit StateChanged();
}

void Recorder::RemoveTransport() {
  StatusChannel::Remove();
}

bool Recorder::SendStatus(int event, int value) {
  return mParts->sink.Send(event, value);
}

bool Recorder::Do(const QString& name, const QJsonObject& arguments, QString* error) {
  const bool done = DoAction(*mParts, name, arguments, error);
  QJsonObject entry{{QStringLiteral("kind"), QStringLiteral("action")},
                    {QStringLiteral("name"), name},
                    {QStringLiteral("arguments"), arguments},
                    {QStringLiteral("result"), done ? 0 : -1}};
  if (!done) entry.insert(QStringLiteral("error"), *error);
  emit Logged(entry);
  emit StateChanged();
  return done;
}

Reply Recorder::Tell(int event, int value) {
  if (SendStatus(event, value)) return {};
  return Reply::NotNow(QStringLiteral("The status queue is full: the interface was not told."));
}

Reply Recorder::Act(const QString& name, const QJsonObject& arguments) {
  mIsEventLost = false;
  QString error;
  if (Do(name, arguments, &error)) return {};
  return mIsEventLost ? Reply::NotNow(error) : Reply::Bad(error);
}

bool Recorder::PutOwnPicture(const QByteArray& bmp, QString* error) {
  Hub& hub = mParts->hub;
  const QString path = hub.Path(kOwnPicture);
  if (const char* hindrance = mParts->card.Hindrance()) {
    *error = QLatin1String(hindrance);
    return false;
  }
  if (!QDir().mkpath(QFileInfo(path).path()) || !WriteWhole(path, bmp)) {
    *error = QStringLiteral("The picture cannot be written: %1.").arg(path);
    return false;
  }
  QFile::remove(hub.Path(kOwnPictureCopy));  // the memory of the device is empty after a restart
  hub.sink.Note(QStringLiteral("A picture of the driver's is on the card."));
  emit RestartWanted();
  return true;
}

QJsonArray Recorder::Actions() {
  return DescribeActions();
}

QJsonArray Recorder::Events() {
  QJsonArray events;
  for (int event = RECV_ZEL_STATUS_SYS_RESTART; event <= RECV_ZEL_STATUS_PARK_INFO_CLOSE; ++event)
    events.append(QJsonObject{{QStringLiteral("event"), event},
                              {QStringLiteral("name"), QLatin1String(NameOf(RECV_ZEL_STATUS_EVENT(event)))}});
  return events;
}

QJsonArray Recorder::Armed() const {
  return DescribeArmed(*mParts);
}

QJsonObject Recorder::Unavailable() const {
  return DescribeUnavailable(*mParts);
}

bool Recorder::PlayScenario(const QString& file, QString* error, ActionCheck check) {
  if (!mScenario->Load(file, check, error)) return false;
  mScenarioWaits = !mGreeted;
  if (mGreeted) mScenario->Start();
  return true;
}

bool Recorder::PlayScenario(const QByteArray& text, const QString& name, QString* error, ActionCheck check) {
  if (!mScenario->Take(text, name, QStringLiteral(":/scenarios"), check, error)) return false;
  mScenarioWaits = false;
  mScenario->Start();
  return true;
}

QJsonObject Recorder::State() const {
  const Parts& parts = *mParts;
  return {{QStringLiteral("settings"), parts.hub.settings.Values()},
          {QStringLiteral("setup"), parts.hub.settings.Block()},
          {QStringLiteral("setupBefore"), parts.hub.settings.BlockBefore()},
          {QStringLiteral("clockOffset"), parts.hub.clock.Offset()},
          {QStringLiteral("timeSpeed"), parts.hub.clock.Speed()},
          {QStringLiteral("cameras"), parts.cameras.State()},
          {QStringLiteral("motion"), parts.hub.settings.Motion()},
          {QStringLiteral("frontLed"), parts.frontLed.State()},
          {QStringLiteral("power"), parts.power.State()},
          {QStringLiteral("parking"), parts.parking.State()},
          {QStringLiteral("voice"), parts.voice.State()},
          {QStringLiteral("recording"), parts.recording.IsOn()},
          {QStringLiteral("manualEvent"), parts.manualEvent.IsOn()},
          {QStringLiteral("playback"), parts.playback.State()},
          {QStringLiteral("card"), parts.card.State()},
          {QStringLiteral("cardWork"), parts.card.Work()},
          {QStringLiteral("gps"), parts.facts.gps},
          {QStringLiteral("speed"), parts.facts.speed},
          {QStringLiteral("accModel"), parts.facts.accModel},
          {QStringLiteral("update"), parts.update.State()},
          {QStringLiteral("scenario"), mScenario->IsPlaying()},
          {QStringLiteral("connections"), mServer->Connections()},
          {QStringLiteral("waitingEvents"), parts.status.Waiting()}};
}

bool Recorder::IsCardBusy() const {
  return !mParts->card.Work().isNull();
}

VideoPlane Recorder::Video() const {
  VideoPlane plane = mParts->cameras.Video();
  plane.recording = mParts->recording.IsOn();
  plane.played = mParts->playback.Shown();
  plane.update = mParts->update.Pictures();
  return plane;
}

QJsonObject Recorder::VideoState() const {
  static constexpr const char* kViews[] = {"pip", "front", "rear"};
  const VideoPlane video = Video();
  return {{QStringLiteral("view"), QLatin1String(kViews[static_cast<int>(video.view)])},
          {QStringLiteral("mirrored"), video.mirrored},
          {QStringLiteral("pipCorner"), video.pipCorner},
          {QStringLiteral("rearAlive"), video.rearAlive},
          {QStringLiteral("recording"), video.recording},
          {QStringLiteral("playing"), video.played != nullptr}};
}
