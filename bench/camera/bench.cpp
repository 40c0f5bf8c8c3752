#include "bench/camera/bench.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QJsonDocument>
#include <QTimer>
#include <algorithm>
#include <cstring>
#include <utility>

#include "bench/lcd/ownpicture.h"
#include "bench/supervise/device.h"
#include "bench/supervise/languages.h"
#include "recorder/firmware/argument.h"
#include "recorder/firmware/scenario.h"
#include "recorder/service/members.h"
#include "recorder/service/requests.h"

namespace {
using recorder::Argument;

constexpr char kTour[] = "/../tour/dashcam-tour";  // beside the interface, where it was built
constexpr char kProcesses[] = "Processes";
constexpr char kNoRecorder[] = "The recorder is stopped.";

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
  const char* (*hindrance)(const Bench& bench) = nullptr;  // why it cannot be done now; null: it can be tried
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
    {"interfaceKill",
     kProcesses,
     "Kill the interface",
     [](Bench& bench, const OwnValues&) {
       bench.mSupervisor.KillInterface();
       return Reply();
     },
     {},
     [](const Bench& bench) -> const char* {
       return bench.mSupervisor.Interface().IsRunning() ? nullptr : "The interface is not running.";
     }},
    {"recorderRestart", kProcesses, "Restart the recorder",
     [](Bench& bench, const OwnValues&) { return bench.RestartRecorder(); }},
    {"recorderStop",
     kProcesses,
     "Stop the recorder",
     [](Bench& bench, const OwnValues&) {
       bench.StopRecorder();
       return Reply();
     },
     {},
     [](const Bench& bench) { return bench.mRecorder ? nullptr : kNoRecorder; }},
    {"recorderStart",
     kProcesses,
     "Start the recorder",
     [](Bench& bench, const OwnValues&) { return bench.StartRecorder(); },
     {},
     [](const Bench& bench) { return bench.mRecorder ? "The recorder is running." : nullptr; }},
};

namespace {
constexpr int kMostTries = 5;   // of an interface that cannot start
constexpr int kMostWords = 20;  // lines of it that are told
constexpr qsizetype kLongestWords = 1000;

constexpr char kReplay[] = "A recording is being replayed.";
constexpr char kScenarios[] = ":/scenarios";  // the folder recorder/scenarios, put into the program
constexpr char kGoingBack[] = "The camera goes back to a snapshot.";

Reply NoRecorder() {
  return Reply::NotNow(QLatin1String(kNoRecorder));
}

// As the arguments of panelAskew.
QJsonObject Describe(const Mounting& mounting) {
  return {{QStringLiteral("skew"), mounting.skew},
          {QStringLiteral("x"), mounting.x},
          {QStringLiteral("y"), mounting.y},
          {QStringLiteral("noise"), mounting.noise}};
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
      mFinger(mPanel, mLog),
      mSnapshots(root.Path()),
      mGallery(QFileInfo(interface).path() + QLatin1String(kTour), root.Path(device::kGallery)) {
  Connect();
}

Bench::~Bench() {
  if (mPainter) mPainter->wait();
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
  connect(&mSupervisor, &Supervisor::NoDisplay, this, &Bench::GaveUp);
  connect(&mSnapshots, &Snapshots::Changed, this, &Bench::StateChanged);
  connect(&mSnapshots, &Snapshots::Ready, this, &Bench::GoBack);
  connect(&mSnapshots, &Snapshots::Ended, this, &Bench::SnapshotEnded);
  connect(&mGallery, &ScreenGallery::Changed, this, &Bench::StateChanged);
  connect(&mGallery, &ScreenGallery::Failed, this, &Bench::Note);
}

void Bench::Begin(quint32 seed, const QDateTime& clock, const QObject* replay) {
  mPanel.Seed(seed);
  mClock = clock;
  mReplay = replay;
  mSession.invalidate();
  mSkipped = 0;
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

bool Bench::ShowFootage(int camera, const QString& path, QString* error) {
  auto footage = std::make_unique<Footage>();
  connect(footage.get(), &Footage::Broke, this, &Bench::Note);
  if (!footage->Open(path, error)) return false;
  mLcd.Road().Replace(camera, [shown = footage.get()] { return shown->Picture(); });
  mFootage[camera] = std::move(footage);
  return true;
}

void Bench::Stop() {
  disconnect(&mSupervisor, nullptr, this, nullptr);  // what ends now was asked to
  mSupervisor.Stop();
  mGallery.Stop();
  mRecorder.reset();
}

void Bench::InterfaceEnded() {
  mReport.Forget();
  const QString ended = mSupervisor.Interface().Ended();
  Note(QStringLiteral("The interface has ended: %1.").arg(ended));
  if (mWhenOff) return HaveEnded();
  if (mHasShown) return;
  // What the log would tell on the page, and once for all tries that say the same.
  if (mWords != mWordsBefore)
    for (const QString& line : mWords) qWarning("  %s", qPrintable(line));
  mWordsBefore = std::exchange(mWords, {});
  if (++mTries == kMostTries) emit GaveUp(QStringLiteral("The interface cannot start: %1.").arg(ended));
}

// Before the first screen nobody looks into the log yet.
void Bench::Note(const QString& sentence) {
  if (!mHasShown) qWarning("%s", qPrintable(sentence));
  mLog.Add("note", sentence);
}

void Bench::TakeDiagnostic(const QString& line) {
  if (mReport.TakeAreas(line)) return emit StateChanged();
  if (!mReport.Take(line)) {
    const QString words = line.left(kLongestWords);
    if (!mHasShown && mWords.size() < kMostWords) mWords << words;
    return mLog.Add("diagnostic", words);
  }
  mLog.Add("screen", line);
  if (mHasShown) return;
  mHasShown = true;
  emit ScreenShown();
}

// ---- the recorder

Reply Bench::StartRecorder() {
  mRecorder = std::make_unique<Recorder>(mRoot.Path());
  connect(mRecorder.get(), &Recorder::Logged, &mLog, [this](const QJsonObject& entry) { mLog.Add(entry); });
  connect(mRecorder.get(), &Recorder::StateChanged, this, &Bench::StateChanged);
  connect(mRecorder.get(), &Recorder::VideoChanged, this, &Bench::ShowVideo);
  connect(mRecorder.get(), &Recorder::RestartWanted, this, &Bench::RestartInterface);
  connect(mRecorder.get(), &Recorder::InterfaceEndWanted, &mSupervisor, &Supervisor::EndInterface);
  connect(mRecorder.get(), &Recorder::TouchWanted, this, &Bench::TouchForScenario);
  connect(mRecorder.get(), &Recorder::PictureWanted, this, &Bench::PictureForScenario);
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

void Bench::StopRecorder() {
  mRecorder.reset();
  Note(QStringLiteral("The recorder has ended."));
  ShowVideo();
}

Reply Bench::RestartRecorder() {
  if (mRecorder) StopRecorder();
  return StartRecorder();
}

void Bench::TouchForScenario(const QJsonObject& request) {
  if (const Reply reply = Touch(request, this); !reply.IsGood()) Note(reply.error);
}

void Bench::PictureForScenario(const QString& path) {
  QFile file(path);
  if (!file.open(QIODevice::ReadOnly)) return Note(QStringLiteral("The picture %1 cannot be read.").arg(path));
  OwnPicture(file.readAll(), [this](const Reply& reply) {
    if (!reply.IsGood()) Note(reply.error);
  });
}

// What is not the recorder's is done after what the recorder is at: it may be the end of that recorder.
void Bench::ActForScenario(const QJsonObject& request) {
  emit ActionTaken(request);
  QJsonObject arguments = request;
  if (const OwnAction* own = FindOwn(arguments.take(QLatin1String("name")).toString()))
    QTimer::singleShot(0, this, [this, own, arguments] { DoOwn(*own, arguments); });
}

// ---- scenarios

QJsonArray Bench::Scenarios() {
  QJsonArray scenarios;
  for (const QFileInfo& entry : QDir(QLatin1String(kScenarios)).entryInfoList({QStringLiteral("*.jsonl")})) {
    QFile file(entry.filePath());
    if (!file.open(QIODevice::ReadOnly)) continue;
    const QByteArray text = file.readAll();
    int lines = 0, ms = 0;
    for (const QByteArray& line : text.split('\n'))
      if (const QJsonObject step = QJsonDocument::fromJson(line).object(); !step.isEmpty()) {
        ++lines;
        ms = std::max(ms, step.value(QLatin1String("ms")).toInt());
      }
    scenarios.append(QJsonObject{{QStringLiteral("name"), entry.completeBaseName()},
                                 {QStringLiteral("title"), recorder::Scenario::TitleOf(text)},
                                 {QStringLiteral("seconds"), (ms + 999) / 1000},
                                 {QStringLiteral("lines"), lines}});
  }
  return scenarios;
}

Reply Bench::Scenario(const QJsonObject& request) {
  if (Reply reply = CheckOwner(nullptr); !reply.IsGood()) return reply;
  for (const QString& what : {QStringLiteral("play"), QStringLiteral("text")})
    if (request.contains(what)) return PlayScenario(request, what);
  Members members(request);
  const bool isStop = request.contains(QLatin1String("stop")), isPause = request.contains(QLatin1String("pause"));
  const bool flag = members.Flag(isStop ? "stop" : "pause");
  if (const QString error = members.Error(); !error.isEmpty() || (isStop && isPause) || (isStop && !flag))
    return Reply::Bad(
        QStringLiteral("This takes \"play\" or \"text\", with or without \"speed\", or \"pause\": true "
                       "or false, or \"stop\": true."));
  if (!mRecorder) return NoRecorder();
  if (!mRecorder->TheScenario().IsPlaying()) return Reply::NotNow(QStringLiteral("No scenario is being played."));
  if (isStop)
    mRecorder->TheScenario().Stop();
  else
    mRecorder->TheScenario().Pause(flag);
  return {};
}

Reply Bench::PlayScenario(const QJsonObject& request, const QString& what) {
  Members members(request);
  QString text = members.Text(what == QLatin1String("play") ? "play" : "text"), error;
  const int speed = members.Whole("speed", 1, 10, 1);
  error = members.Error();
  if (error.isEmpty() && speed != 1 && speed != 2 && speed != 5 && speed != 10)
    error = QStringLiteral("\"speed\" must be 1, 2, 5 or 10.");
  QString name = QStringLiteral("text");
  QByteArray lines = text.toUtf8();
  if (error.isEmpty() && what == QLatin1String("play")) {
    QStringList names;
    for (const QJsonValue& each : Scenarios()) names << each[QLatin1String("name")].toString();
    name = text;
    QFile file(QStringLiteral("%1/%2.jsonl").arg(QLatin1String(kScenarios), name));
    if (!names.contains(name) || !file.open(QIODevice::ReadOnly))
      error = QStringLiteral("There is no such scenario: there are %1.").arg(names.join(QLatin1String(", ")));
    lines = file.isOpen() ? file.readAll() : QByteArray();
  }
  if (!error.isEmpty()) return Reply::Bad(error);
  if (!mRecorder) return NoRecorder();
  if (!mRecorder->PlayScenario(lines, name, &error, CheckAction)) return Reply::Bad(error);
  mRecorder->TheScenario().SetSpeed(speed);
  return {};
}

// Somebody does something: a guided tour ends, as it would no longer know what is shown.
void Bench::Interrupt(const QObject* owner) {
  if (owner == this || !mRecorder) return;
  if (mRecorder->TheScenario().IsPlaying() && mRecorder->TheScenario().EndsAtATouch()) mRecorder->TheScenario().Stop();
}

// ---- off and on

Reply Bench::SwitchOff(const char* why, const std::function<void()>& then) {
  if (Reply reply = CheckOwner(nullptr); !reply.IsGood()) return reply;
  mOff = why;
  mWhenOff = then;
  mSupervisor.EndInterface();
  if (mSupervisor.Interface().IsOver()) HaveEnded();
  return {};
}

void Bench::HaveEnded() {
  if (mRecorder) StopRecorder();
  if (mFinger.IsDown()) mFinger.Release();
  const auto then = std::exchange(mWhenOff, nullptr);
  if (then) then();
}

void Bench::SwitchOn(const QJsonObject& memory) {
  mOff = nullptr;
  if (const Reply reply = StartRecorder(); !reply.IsGood()) Note(reply.error);
  if (mRecorder) mRecorder->Remember(memory);
  mPanel.Mount(Mounting::Read(mRoot.Path(device::kPanel)));
  mSupervisor.RestartInterface();
}

// Not while the camera is off.
void Bench::RestartInterface() {
  if (!mOff) mSupervisor.RestartInterface();
}

// ---- snapshots

Reply Bench::Snapshot(const QJsonObject& request) {
  if (Reply reply = CheckOwner(nullptr); !reply.IsGood()) return reply;
  const QString what = request.isEmpty() ? QString() : request.keys().constFirst();
  const QString name = request.value(what).toString();
  const bool isSave = what == QLatin1String("save"), isRestore = what == QLatin1String("restore");
  if (request.size() != 1 || (!isSave && !isRestore && what != QLatin1String("remove")))
    return Reply::Bad(QStringLiteral("This takes one of \"save\", \"restore\" and \"remove\" with a name."));
  if (!Snapshots::IsName(name))
    return Reply::Bad(QStringLiteral("A name has 1 to 40 letters, digits, spaces, - and _, and no space at its ends."));
  if (isSave && mRecorder && mRecorder->IsCardBusy())
    return Reply::NotNow(QStringLiteral("The card is being filled or emptied."));
  if (isRestore && mClock.isValid())
    return Reply::NotNow(QStringLiteral("What happens is being recorded: a recording cannot go back."));
  QString error;
  const bool good = isSave      ? mSnapshots.Save(name, mRecorder ? mRecorder->Memory() : QJsonObject(), &error)
                    : isRestore ? mSnapshots.Fetch(name, &error)
                                : mSnapshots.Remove(name, &error);
  return good ? Reply() : Reply::NotNow(error);
}

// Its files are there: the camera is switched off, and on again with them.
void Bench::GoBack() {
  mMemory = mRecorder ? mRecorder->Memory() : QJsonObject();
  SwitchOff(kGoingBack, [this] { mSnapshots.TakeOver(); });
}

// Also after a snapshot was made or removed. What went wrong has changed nothing.
void Bench::SnapshotEnded(const QString& problem, const QJsonObject& memory) {
  if (!problem.isEmpty()) Note(problem);
  if (mOff != kGoingBack) return;
  if (problem.isEmpty()) Note(QStringLiteral("The camera is what it was in the snapshot."));
  SwitchOn(problem.isEmpty() ? memory : mMemory);
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
  if (mOff) return Reply::NotNow(QLatin1String(mOff));
  return mReplay && owner != mReplay ? Reply::NotNow(QLatin1String(kReplay)) : Reply();
}

Reply Bench::Touch(const QJsonObject& request, const QObject* owner) {
  if (Reply reply = CheckOwner(owner); !reply.IsGood()) return reply;
  requests::Touch touch;
  if (Reply reply = requests::TakeTouch(request, &touch); !reply.IsGood()) return reply;
  Interrupt(owner);
  if (touch.kind == requests::Touch::Kind::Release) return mFinger.Release();
  if (!mSupervisor.Interface().IsRunning())
    return Reply::NotNow(QStringLiteral("Nobody reads the touch panel: the interface is not running."));
  if (touch.kind == requests::Touch::Kind::Path) return mFinger.Follow(touch.path, owner);
  const Finger::Spot spot{touch.x, touch.y, touch.isRaw};
  return touch.kind == requests::Touch::Kind::Tap ? mFinger.Tap(spot, touch.ms, owner) : mFinger.Press(spot, owner);
}

Reply Bench::Event(const QJsonObject& request, const QObject* owner) {
  if (Reply reply = CheckOwner(owner); !reply.IsGood()) return reply;
  int event = 0, value = 0;
  if (Reply reply = requests::TakeEvent(request, &event, &value); !reply.IsGood()) return reply;
  if (!mRecorder) return NoRecorder();
  Interrupt(owner);
  emit EventTaken(request);
  return mRecorder->Tell(event, value);
}

Reply Bench::Action(const QJsonObject& request, const QObject* owner) {
  if (Reply reply = CheckOwner(owner); !reply.IsGood()) return reply;
  QString name;
  QJsonObject arguments;
  if (Reply reply = requests::TakeAction(request, &name, &arguments); !reply.IsGood()) return reply;
  Interrupt(owner);
  emit ActionTaken(request);
  if (const OwnAction* own = FindOwn(name)) return DoOwn(*own, arguments);
  return mRecorder ? mRecorder->Act(name, arguments) : NoRecorder();
}

void Bench::OwnPicture(const QByteArray& file, const std::function<void(const Reply&)>& done, const QObject* owner) {
  Reply reply = CheckOwner(owner);
  if (reply.IsGood() && mPainter) reply = Reply::NotNow(QStringLiteral("Another picture is being read."));
  if (!reply.IsGood()) return done(reply);
  const auto result = std::make_shared<std::pair<QByteArray, QString>>();
  mPainter.reset(QThread::create([file, result] { result->first = ::OwnPicture(file, &result->second); }));
  connect(mPainter.get(), &QThread::finished, this, [this, result, done] {
    mPainter->wait();
    mPainter.reset();
    done(PutPicture(result->first, result->second));
  });
  mPainter->start();
}

Reply Bench::PutPicture(const QByteArray& bmp, QString error) {
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
  const char* hindrance = good && action.hindrance ? action.hindrance(*this) : nullptr;
  Reply reply = hindrance ? Reply::NotNow(QLatin1String(hindrance))
                : good    ? action.act(*this, values)
                          : Reply::Bad(error);
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

// ---- what is told

QJsonObject Bench::Actions() {
  QJsonArray actions = Recorder::Actions();
  for (const OwnAction& action : kOwnActions)
    actions.append(recorder::DescribeAction(action.name, action.group, action.label, action.arguments));
  return {{QStringLiteral("actions"), actions}, {QStringLiteral("events"), Recorder::Events()}};
}

// The recorder's, and a touch panel that is mounted askew.
QJsonArray Bench::Armed() const {
  QJsonArray armed = mRecorder ? mRecorder->Armed() : QJsonArray();
  if (mPanel.Mounted() != Mounting())
    armed.append(recorder::DescribeArmed("panelAskew", Describe(mPanel.Mounted()), Describe({})));
  return armed;
}

QJsonObject Bench::Unavailable() const {
  QJsonObject unavailable = mRecorder ? mRecorder->Unavailable() : QJsonObject();
  const QJsonArray actions = mReplay      ? Actions().value(QLatin1String("actions")).toArray()
                             : !mRecorder ? Recorder::Actions()
                                          : QJsonArray();
  for (const QJsonValue& action : actions)
    unavailable.insert(action[QLatin1String("name")].toString(), QLatin1String(mReplay ? kReplay : kNoRecorder));
  for (const OwnAction& action : kOwnActions)
    if (const char* sentence = action.hindrance && !mReplay ? action.hindrance(*this) : nullptr)
      unavailable.insert(QLatin1String(action.name), QLatin1String(sentence));
  return unavailable;
}

QJsonObject Bench::Shown() const {
  const QJsonObject boxes = mReport.Boxes();
  const auto nameOf = [&boxes](const char* slot) {
    return TextOrNull(boxes.value(QLatin1String(slot)).toObject().value(QLatin1String("name")).toString());
  };
  QJsonObject shown{{QStringLiteral("screen"), TextOrNull(mReport.Screen())},
                    {QStringLiteral("own"), nameOf("own")},
                    {QStringLiteral("event"), nameOf("event")},
                    {QStringLiteral("dark"), mShell.Backlight() == 0}};
  if (mRecorder && mRecorder->IsCardBusy()) shown.insert(QStringLiteral("busy"), true);
  return shown;
}

QJsonObject Bench::State() const {
  const Child& interface = mSupervisor.Interface();
  QJsonObject state{{QStringLiteral("screen"), TextOrNull(mReport.Screen())},
                    {QStringLiteral("boxes"), mReport.Boxes()},
                    {QStringLiteral("areas"), mReport.Areas()},
                    {QStringLiteral("gallery"), mGallery.State()},
                    {QStringLiteral("interface"), QJsonObject{{QStringLiteral("running"), interface.IsRunning()},
                                                              {QStringLiteral("starts"), interface.Starts()},
                                                              {QStringLiteral("ended"), TextOrNull(interface.Ended())},
                                                              {QStringLiteral("language"), mSupervisor.Language()}}},
                    {QStringLiteral("lcd"), QJsonObject{{QStringLiteral("width"), 480},
                                                        {QStringLiteral("height"), 320},
                                                        {QStringLiteral("live"), mLcd.IsLive()},
                                                        {QStringLiteral("backlight"), mShell.Backlight()}}},
                    {QStringLiteral("touch"), QJsonObject{{QStringLiteral("down"), mFinger.IsDown()}}},
                    {QStringLiteral("panel"), Describe(mPanel.Mounted())},
                    {QStringLiteral("video"), mRecorder ? QJsonValue(mRecorder->VideoState()) : QJsonValue()},
                    {QStringLiteral("recorder"), mRecorder ? QJsonValue(mRecorder->State()) : QJsonValue()},
                    {QStringLiteral("armed"), Armed()},
                    {QStringLiteral("unavailable"), Unavailable()},
                    {QStringLiteral("root"), mRoot.Path()},
                    {QStringLiteral("scenario"), mRecorder ? mRecorder->TheScenario().State() : QJsonValue()},
                    {QStringLiteral("snapshots"), mSnapshots.List()},
                    {QStringLiteral("snapshotWork"), mSnapshots.Work()},
                    {QStringLiteral("log"), mLog.Last()}};
  for (const auto& [member, tell] : mOthers) state.insert(member, tell());
  return state;
}
