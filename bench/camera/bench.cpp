#include "bench/camera/bench.h"

#include <QTimer>
#include <algorithm>
#include <cstring>

#include "bench/lcd/ownpicture.h"
#include "bench/supervise/device.h"
#include "bench/supervise/languages.h"
#include "recorder/firmware/argument.h"
#include "recorder/service/members.h"
#include "recorder/service/requests.h"

namespace {
using recorder::Argument;

constexpr char kProcesses[] = "Processes";

int Whole(double value) {
  return static_cast<int>(value);
}
}  // namespace

struct Bench::OwnAction {
  const char* name;
  const char* group;
  const char* label;
  Reply (*act)(Bench& bench, const OwnValues& values);
  std::array<Argument, 4> arguments = {};
};

const Bench::OwnAction Bench::kOwnActions[] = {
    {"panelAskew",
     "Touch panel",
     "Mount it askew",
     [](Bench& bench, const OwnValues& v) {
       return bench.MountPanel({Whole(v[0]), Whole(v[1]), Whole(v[2]), Whole(v[3])});
     },
     {Argument{"skew", -Mounting::kMostSkew, Mounting::kMostSkew, 5},
      Argument{"x", Mounting::kLeastX, Mounting::kMostX, -30}, Argument{"y", Mounting::kLeastY, Mounting::kMostY, 50},
      Argument{"noise", 0, Mounting::kMostNoise, 1}}},
    {"panelStraight", "Touch panel", "Mount it as the factory does",
     [](Bench& bench, const OwnValues&) { return bench.MountPanel({}); }},
    {"interfaceRestart", kProcesses, "Restart the interface",
     [](Bench& bench, const OwnValues&) {
       bench.RestartInterface();
       return Reply();
     }},
    {"language",
     kProcesses,
     "Language of the interface: restart",
     [](Bench& bench, const OwnValues& v) {
       return bench.Speak(QLatin1String(languages::All()[static_cast<size_t>(v[0])]));
     },
     {Argument{"to", 0, 0, 0, false, false, languages::All()}}},
    {"interfaceKill", kProcesses, "Kill the interface",
     [](Bench& bench, const OwnValues&) { return bench.KillInterface(); }},
    {"recorderRestart", kProcesses, "Restart the recorder",
     [](Bench& bench, const OwnValues&) { return bench.RestartRecorder(); }},
    {"recorderStop", kProcesses, "Stop the recorder",
     [](Bench& bench, const OwnValues&) { return bench.StopRecorder(); }},
    {"recorderStart", kProcesses, "Start the recorder",
     [](Bench& bench, const OwnValues&) { return bench.StartRecorder(); }},
};

namespace {
constexpr int kLongestTap = 60000;  // milliseconds
constexpr int kUsualTap = 60;

Reply NoRecorder() {
  return Reply::NotNow(QStringLiteral("The recorder is stopped."));
}

QJsonValue TextOrNull(const QString& text) {
  return text.isEmpty() ? QJsonValue() : QJsonValue(text);
}
}  // namespace

Bench::Bench(const QString& interface, const RootFolder& root, const QString& language, QObject* parent)
    : QObject(parent),
      mRoot(root),
      mSupervisor(interface, root.Path(), language),
      mShell(root.Path()),
      mFinger(mPanel, mLog) {
  Connect();
}

void Bench::Connect() {
  connect(&mLog, &EventLog::Added, this, &Bench::StateChanged);
  connect(&mFinger, &Finger::Changed, this, &Bench::StateChanged);
  connect(&mShell, &ShellWatch::Asked, this, [this](const QString& command) { mLog.Add("shell", command); });
  connect(&mShell, &ShellWatch::Clicked, this, &Bench::Clicked);
  connect(&mShell, &ShellWatch::BacklightChanged, this, [this] {
    mLcd.SetBacklight(mShell.Backlight());
    emit StateChanged();
  });
  connect(&mSupervisor, &Supervisor::DisplayReady, this, [this](const QString& file) {
    if (QString problem; !mLcd.Open(file, &problem)) Note(problem);
    emit StateChanged();
  });
  connect(&mSupervisor, &Supervisor::DisplayLost, this, [this] {
    mLcd.Close();
    emit StateChanged();
  });
  connect(&mSupervisor, &Supervisor::InterfaceStarted, &mFinger, &Finger::StartAfresh);
  connect(&mSupervisor, &Supervisor::InterfaceEnded, this, &Bench::InterfaceEnded);
  connect(&mSupervisor, &Supervisor::Diagnostic, this, &Bench::TakeDiagnostic);
  connect(&mSupervisor, &Supervisor::Note, this, &Bench::Note);
}

void Bench::Begin(quint32 seed, const QDateTime& clock, const QObject* replay) {
  mPanel.Seed(seed);
  mClock = clock;
  mReplay = replay;
}

bool Bench::Start(const QString& scenario, QString* error) {
  if (!mShell.Open(error)) return false;
  if (const Reply reply = StartRecorder(); !reply.IsGood()) {
    *error = reply.error;
    return false;
  }
  if (!scenario.isEmpty() && !mRecorder->PlayScenario(scenario, error, CheckAction)) return false;
  mPanel.Mount(Mounting::Read(mRoot.Path(device::kPanel)));
  return mPanel.Open(mRoot.Path(device::kTouchDevice), error) && mSupervisor.Start(error);
}

void Bench::Stop() {
  mSupervisor.Stop();
  mRecorder.reset();
}

void Bench::InterfaceEnded() {
  mReport.Forget();
  Note(QStringLiteral("The interface has ended: %1.").arg(mSupervisor.Interface().Ended()));
}

// Before the first screen nobody looks into the log yet.
void Bench::Note(const QString& sentence) {
  if (!mHasShown) qWarning("%s", qPrintable(sentence));
  mLog.Add("note", sentence);
}

void Bench::TakeDiagnostic(const QString& line) {
  if (!mReport.Take(line)) return mLog.Add("diagnostic", line);
  mLog.Add("screen", line);
  if (mHasShown) return;
  mHasShown = true;
  emit ScreenShown();
}

// ---- the recorder

Reply Bench::StartRecorder() {
  if (mRecorder) return Reply::NotNow(QStringLiteral("The recorder is running."));
  mRecorder = std::make_unique<Recorder>(mRoot.Path());
  connect(mRecorder.get(), &Recorder::Logged, &mLog, [this](const QJsonObject& entry) { mLog.Add(entry); });
  connect(mRecorder.get(), &Recorder::StateChanged, this, &Bench::StateChanged);
  connect(mRecorder.get(), &Recorder::VideoChanged, this, &Bench::ShowVideo);
  connect(mRecorder.get(), &Recorder::RestartWanted, this, &Bench::RestartInterface);
  connect(mRecorder.get(), &Recorder::InterfaceEndWanted, &mSupervisor, &Supervisor::EndInterface);
  connect(mRecorder.get(), &Recorder::TapWanted, this, &Bench::TapForScenario);
  connect(mRecorder.get(), &Recorder::EventWanted, this, &Bench::EventTaken);
  connect(mRecorder.get(), &Recorder::ActionWanted, this, &Bench::ActForScenario);
  connect(mRecorder.get(), &Recorder::Stored, this, &Bench::Stored);
  const bool isFirst = !mSession.isValid();
  if (isFirst) mSession.start();
  if (mClock.isValid()) mRecorder->SetMachineClock(mClock.addMSecs(SessionMs()), !isFirst);
  if (mReplay) mRecorder->FollowReplay();
  mRecorder->SetCameras([this](int camera, qint64 ms, Picture* picture) {
    const QImage seen = mLcd.Road().Camera(camera, ms, QSize(picture->width, picture->height));
    std::memcpy(picture->pixels.data(), seen.constBits(), picture->pixels.size() * sizeof(quint32));
  });
  QString error;
  const bool started = mRecorder->Start(&error) && mRecorder->FillNewCard(&error, mClock);
  if (!started) mRecorder.reset();
  ShowVideo();
  return started ? Reply() : Reply::NotNow(error);
}

Reply Bench::StopRecorder() {
  if (!mRecorder) return NoRecorder();
  mRecorder.reset();
  Note(QStringLiteral("The recorder has ended."));
  ShowVideo();
  return {};
}

Reply Bench::RestartRecorder() {
  if (mRecorder) StopRecorder();
  return StartRecorder();
}

void Bench::TapForScenario(int x, int y) {
  const Reply reply = Touch(
      {{QStringLiteral("action"), QStringLiteral("tap")}, {QStringLiteral("x"), x}, {QStringLiteral("y"), y}}, this);
  if (!reply.IsGood()) Note(reply.error);
}

// What is not the recorder's is done after what the recorder is at: it may be the end of that recorder.
void Bench::ActForScenario(const QJsonObject& request) {
  emit ActionTaken(request);
  QJsonObject arguments = request;
  if (const OwnAction* own = FindOwn(arguments.take(QLatin1String("name")).toString()))
    QTimer::singleShot(0, this, [this, own, arguments] { DoOwn(*own, arguments); });
}

void Bench::ShowVideo() {
  mLcd.SetVideo(mRecorder ? std::optional(mRecorder->Video()) : std::nullopt);
  emit StateChanged();
}

void Bench::SkipTime(qint64 ms) {
  mSkipped += ms;
  if (mRecorder) mRecorder->SkipTime(ms);
}

void Bench::Store(const QJsonObject& what) {
  if (QString error; mRecorder && !mRecorder->Store(what, &error)) return Note(error);
  emit Stored(what);
}

// ---- what comes from outside

Reply Bench::CheckOwner(const QObject* owner) const {
  return mReplay && owner != mReplay ? Reply::NotNow(QStringLiteral("A recording is being replayed.")) : Reply();
}

Reply Bench::Touch(const QJsonObject& request, const QObject* owner) {
  if (Reply reply = CheckOwner(owner); !reply.IsGood()) return reply;
  Members members(request);
  const QString action =
      members.Choice("action", {QStringLiteral("tap"), QStringLiteral("press"), QStringLiteral("release")});
  const bool isTap = action == QLatin1String("tap");
  Finger::Spot spot;
  if (action != QLatin1String("release")) {
    spot.isRaw = members.Flag("raw", false);
    spot.x = members.Whole("x", 0, spot.isRaw ? TouchPanel::kMostRaw : 479);
    spot.y = members.Whole("y", 0, spot.isRaw ? TouchPanel::kMostRaw : 319);
  }
  const int ms = isTap ? members.Whole("ms", 1, kLongestTap, kUsualTap) : 0;
  if (const QString error = members.Error(); !error.isEmpty()) return Reply::Bad(error);
  if (action == QLatin1String("release")) return mFinger.Release();
  if (!mSupervisor.Interface().IsRunning())
    return Reply::NotNow(QStringLiteral("Nobody reads the touch panel: the interface is not running."));
  return isTap ? mFinger.Tap(spot, ms, owner) : mFinger.Press(spot, owner);
}

Reply Bench::Event(const QJsonObject& request, const QObject* owner) {
  if (Reply reply = CheckOwner(owner); !reply.IsGood()) return reply;
  int event = 0, value = 0;
  if (Reply reply = requests::TakeEvent(request, &event, &value); !reply.IsGood()) return reply;
  if (!mRecorder) return NoRecorder();
  emit EventTaken(request);
  return mRecorder->Tell(event, value);
}

Reply Bench::Action(const QJsonObject& request, const QObject* owner) {
  if (Reply reply = CheckOwner(owner); !reply.IsGood()) return reply;
  QString name;
  QJsonObject arguments;
  if (Reply reply = requests::TakeAction(request, &name, &arguments); !reply.IsGood()) return reply;
  emit ActionTaken(request);
  if (const OwnAction* own = FindOwn(name)) return DoOwn(*own, arguments);
  return mRecorder ? mRecorder->Act(name, arguments) : NoRecorder();
}

Reply Bench::OwnPicture(const QByteArray& file, const QObject* owner) {
  if (Reply reply = CheckOwner(owner); !reply.IsGood()) return reply;
  QString error;
  const QByteArray bmp = ::OwnPicture(file, &error);
  if (bmp.isEmpty()) return Reply::Bad(error);
  if (!mRecorder) return NoRecorder();
  emit PictureTaken(bmp);
  return mRecorder->PutOwnPicture(bmp, &error) ? Reply() : Reply::NotNow(error);
}

const Bench::OwnAction* Bench::FindOwn(const QString& name) {
  const auto* found = std::find_if(std::begin(kOwnActions), std::end(kOwnActions),
                                   [&name](const OwnAction& action) { return name == QLatin1String(action.name); });
  return found == std::end(kOwnActions) ? nullptr : found;
}

bool Bench::CheckAction(const QString& name, const QJsonObject& arguments, QString* error) {
  const OwnAction* own = FindOwn(name);
  OwnValues values{};
  return own ? recorder::TakeArguments(name, own->arguments, arguments, values, error)
             : recorder::CheckAction(name, arguments, error);
}

Reply Bench::DoOwn(const OwnAction& action, const QJsonObject& arguments) {
  OwnValues values{};
  QString error;
  const bool good = recorder::TakeArguments(QLatin1String(action.name), action.arguments, arguments, values, &error);
  Reply reply = good ? action.act(*this, values) : Reply::Bad(error);
  QJsonObject entry{{QStringLiteral("kind"), QStringLiteral("action")},
                    {QStringLiteral("name"), QLatin1String(action.name)},
                    {QStringLiteral("arguments"), arguments},
                    {QStringLiteral("result"), reply.IsGood() ? 0 : -1}};
  if (!reply.IsGood()) entry.insert(QStringLiteral("error"), reply.error);
  mLog.Add(entry);
  return reply;
}

// It stays where it is mounted: the folder has the calibration, too.
Reply Bench::MountPanel(const Mounting& mounting) {
  mPanel.Mount(mounting);
  emit StateChanged();
  if (mounting.Write(mRoot.Path(device::kPanel))) return {};
  return Reply::NotNow(QStringLiteral("The root folder cannot be written: %1.").arg(mRoot.Path()));
}

Reply Bench::Speak(const QString& language) {
  if (language != mSupervisor.Language()) mSupervisor.Speak(language);
  return {};
}

Reply Bench::KillInterface() {
  if (!mSupervisor.Interface().IsRunning()) return Reply::NotNow(QStringLiteral("The interface is not running."));
  mSupervisor.KillInterface();
  return {};
}

// ---- what is told

QJsonObject Bench::Actions() {
  QJsonArray actions = Recorder::Actions();
  for (const OwnAction& action : kOwnActions)
    actions.append(recorder::DescribeAction(action.name, action.group, action.label, action.arguments));
  return {{QStringLiteral("actions"), actions}, {QStringLiteral("events"), Recorder::Events()}};
}

QJsonObject Bench::Shown() const {
  const QJsonObject boxes = mReport.Boxes();
  const auto nameOf = [&boxes](const char* slot) {
    return TextOrNull(boxes.value(QLatin1String(slot)).toObject().value(QLatin1String("name")).toString());
  };
  return {{QStringLiteral("screen"), TextOrNull(mReport.Screen())},
          {QStringLiteral("own"), nameOf("own")},
          {QStringLiteral("event"), nameOf("event")},
          {QStringLiteral("dark"), mShell.Backlight() == 0}};
}

QJsonObject Bench::State() const {
  const Child& interface = mSupervisor.Interface();
  return {{QStringLiteral("screen"), TextOrNull(mReport.Screen())},
          {QStringLiteral("boxes"), mReport.Boxes()},
          {QStringLiteral("interface"), QJsonObject{{QStringLiteral("running"), interface.IsRunning()},
                                                    {QStringLiteral("starts"), interface.Starts()},
                                                    {QStringLiteral("ended"), TextOrNull(interface.Ended())},
                                                    {QStringLiteral("language"), mSupervisor.Language()}}},
          {QStringLiteral("lcd"), QJsonObject{{QStringLiteral("width"), 480},
                                              {QStringLiteral("height"), 320},
                                              {QStringLiteral("live"), mLcd.IsLive()},
                                              {QStringLiteral("backlight"), mShell.Backlight()}}},
          {QStringLiteral("touch"), QJsonObject{{QStringLiteral("down"), mFinger.IsDown()}}},
          {QStringLiteral("panel"), QJsonObject{{QStringLiteral("skew"), mPanel.Mounted().skew},
                                                {QStringLiteral("x"), mPanel.Mounted().x},
                                                {QStringLiteral("y"), mPanel.Mounted().y},
                                                {QStringLiteral("noise"), mPanel.Mounted().noise}}},
          {QStringLiteral("video"), mRecorder ? QJsonValue(mRecorder->VideoState()) : QJsonValue()},
          {QStringLiteral("recorder"), mRecorder ? QJsonValue(mRecorder->State()) : QJsonValue()},
          {QStringLiteral("root"), mRoot.Path()},
          {QStringLiteral("log"), mLog.Last()}};
}
