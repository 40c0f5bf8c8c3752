#pragma once

#include <linux/input.h>

#include <QApplication>
#include <QLabel>
#include <QTimerEvent>
#include <bit>
#include <map>
#include <set>

#include "bench/panel/touchpanel.h"
#include "gui/base/devicepath.h"
#include "gui/led/ledfilelist.h"
#include "gui/recordings/recordingfilelist.h"
#include "gui/screen/messagecatalogue.h"
#include "gui/settings/settingkeys.h"
#include "gui/setup/timelayout.h"
#include "gui/touch/touchthread.h"
#include "platform/sysctrl.h"
#include "recorder/base/delays.h"
#include "tests/fake/cardfake.h"
#include "tests/fake/windowtest.h"
#include "tests/fuzz/steps.h"

namespace monkey {

/// What does not hold any more.
struct Finding {
  QString rule, what;
  qsizetype step = 0;  ///< after it
};

/// Timers that may run in a screen that another one covers.
inline constexpr struct {
  const char *screen, *timer, *why;  // no screen: any
} kRunCovered[] = {
    {nullptr, "mMessageBoxTimer", "a notice goes in its time, seen or not"},
    {nullptr, "mRecvMessageBoxTimer", "the same"},
    {"PreviewLayout", "mTimPaintTouchTest", "a check at the start waits until the preview is on top again"},
    {"PreviewLayout", "mTimSeachingPfileInfo", "the same"},
    {"PreviewLayout", "mTimNeedTouchComp", "the same"},
    {"PreviewLayout", "mTouchEntryTimer", "the three seconds of the hidden entry; nothing happens at their end"},
    {"PreviewLayout", "mEventTimer", "the hidden entry, which is forgotten when another screen has come"},
    {"PreviewLayout", "mDetectRecordingTimer", "the recording by hand goes on, and its end must be seen"},
    {"PreviewLayout", "mPrepareRearcamRecordingTimer", "the rear camera needs its time"},
};

inline constexpr QPoint kBeside(300, 200);  // the keys of the preview

/// Screens that a camera which was left alone may stay on.
inline constexpr struct {
  WidgetId screen;
  const char* why;
} kStay[] = {
    {TOUCHCOMP, "opened by itself, after an update or by the hidden entry; ten minutes begin with a touch"},
    {TOUCHTEST, "the same, for a file on the card"},
    {FIRMUP, "the recorder ends the update with a restart"},
};

/// Ways to the live preview on which what was edited is neither kept nor forgotten.
inline constexpr struct {
  WidgetId screen;
  const char* why;
} kLeaveUnsaved[] = {
    {VOLTAGECOMPENSATION, "its home key applies nothing; that is done by the next home key of another screen"},
    {MAINMENU2, "no key leads to it; over the preview its back key applies nothing, either"},
};

/// The real window on a fake platform, in virtual time: what comes next is the earliest of what a timer, the recorder
/// or a step does. One at a time.
class Camera : public WindowTest {
public:
  explicit Camera(const TestRoot& root) : mRoot(root) {
    sOffset = 0;
    sNow = &mNow;
    gClock = [] { return QDateTime(QDate(2026, 1, 31), QTime(8, 0)).addMSecs(*sNow + sOffset); };
    qApp->installEventFilter(this);
    const QString many = QStringLiteral("/mnt/many");
    QDir().mkpath(mRoot.Path(many + QStringLiteral("/Setup")));
  }
  ~Camera() override { Stop(); }

  /// Plays them with a camera that was just switched on, until a rule is broken.
  std::optional<Finding> Play(const Steps& steps) {
    SwitchOn();
    for (qsizetype i = 0; i < steps.size(); ++i) {
      mIsPainting = i % kPaintEach == 0;
      RunUntil(steps[i].at - mSkipped);
      mWindow->setUpdatesEnabled(mIsPainting);
      Do(steps[i]);
      if (i + 1 == steps.size() || steps[i + 1].at - mSkipped > mNow)
        Settle();  // what comes at the same time is not waited for
      if (mFinding) {
        mFinding->step = i;
        return mFinding;
      }
    }
    return {};
  }

  /// Such a scenario for the bench: the steps, and the driver's ways as he went them when they were played.
  QByteArray Scenario(const Steps& steps) {
    mPlayed = QByteArray();
    mIsWriting = true;
    Play(steps);
    mIsWriting = false;
    return std::move(mPlayed);
  }

  /// One more rule, of a test: empty while it holds.
  std::function<QString()> also;

  qint64 TimersPlayed() const { return mTimersPlayed; }
  qint64 Homes() const { return mHomes; }  ///< how often the driver came back to the live preview
  /// The screens that have been on top.
  const std::set<WidgetId>& SeenScreens() const { return mSeenScreens; }
  qint64 Rests() const { return mRests; }  ///< how often a camera was left alone and recorded

protected:
  // No timer comes by the machine's clock.
  bool eventFilter(QObject* object, QEvent* event) override {
    return event->type() == QEvent::Timer && object != mFiring && object->metaObject() == &QTimer::staticMetaObject;
  }

private:
  struct Due {
    QTimer* timer;
    int id;  // of the run
    qint64 at;
  };
  static constexpr int kPaintEach = 32;  // steps: in one of them all is painted that is to be painted
  enum { kLift = -1, kRestart = -2 };    // beside the events that are told

  void Later(int event, int value, qint64 ms) { mTells.insert({mNow + ms, {event, value}}); }
  void Forget(std::initializer_list<int> events) {
    std::erase_if(mTells,
                  [&](const auto& tell) { return std::ranges::find(events, tell.second.first) != events.end(); });
  }
  bool IsComing(int event) const {
    return std::ranges::any_of(mTells, [event](const auto& tell) { return tell.second.first == event; });
  }
  void Break(const char* rule, const QString& what) {
    if (!mFinding) mFinding = Finding{QLatin1String(rule), what};
  }

  // ---- switched on and off

  void SwitchOn() {
    mWindow.reset();
    ResetCamera(mRoot);
    PutCard(false);
    for (const char* file : kFiles) mRoot.Remove(QLatin1String(file));
    for (const char* file : {device::kTouchCoefficients, device::kConfigFirm}) mRoot.Remove(QLatin1String(file));
    mRoot.Write(QLatin1String(device::kLedList), LedList(8));
    gNeedVolCom = false;
    gEnvirnmentSettings.mOldSetting = Setting();
    gEnvirnmentSettings.AllSetSettingConfig();
    mNow = mSkipped = sOffset = 0;
    mTells.clear();
    mFinding.reset();
    mFailing = mFailingFormats = mFault = 0;
    mVerdict = 1;
    mManualUntil = 0;
    mIsSilent = mIsVoiceSuppressed = mIsParked = mIsDown = mIsHeld = false;
    mIsToldToRecord = mIsRecording = true;
    mImpacts.clear();
    mMotions.clear();
    mAnswer.reset();
    StartInterface();
  }

  // As a new process.
  void StartInterface() {
    mWindow.reset();
    mDue.clear();
    Forget({kLift});
    mIsDown = false;
    gFirmupCount = gOldRecvLcdValue = 0;
    gReturnVolume = 1;
    gRecvVoltage = std::numeric_limits<float>::quiet_NaN();
    ResetFlags();
    Fake().meanwhile = [this](const QString& line) { BeTold(line); };
    gEnvirnmentSettings.InitSettingConfig();
    gEnvirnmentSettings.SettingTouchValue(true);
    gEnvirnmentSettings.SettingTouchTuningValue(true);
    mWindow = std::make_unique<MainWindow>(nullptr);
    Queue(&TouchThread::pressEvent, mWindow.get(), &MainWindow::touchEvent);
    mWindow->setUpdatesEnabled(mIsPainting);
    mWindow->show();
    mTop = PREVIEW;
    mIsUnsaved = false;
    mIsToldToRecord = true;
    if (!mIsSilent) mIsRecording = true;  // a recorder that meets a new interface begins
    Settle();
  }

  // The card with few recordings, or the one with many: that is made once.
  void PutCard(bool many) {
    const QString slot = mRoot.Path(QStringLiteral("/mnt/mmc"));
    const QString aside[] = {mRoot.Path(QStringLiteral("/mnt/few")), mRoot.Path(QStringLiteral("/mnt/many"))};
    if (many != mIsManyIn) {
      QDir().rename(slot, aside[mIsManyIn]);
      QDir().rename(aside[many], slot);
      mIsManyIn = many;
    }
    if (!many) {
      card::Clear(mRoot);
      card::PutMany(mRoot, 12);
      card::PutMany(mRoot, 12, '1');
    } else if (!std::exchange(mIsManyMade, true)) {
      card::PutMany(mRoot, kManyRecordings);
    }
  }

  // ---- the recorder

  void BeTold(const QString& line) {
    if (!line.front().isDigit()) return;
    const int field = line.section(u' ', 0, 0).toInt();
    const int value = line.section(u' ', 1, 1).toInt();
    if (field == SFIELD_VIDEO_REC_START) mIsToldToRecord = true;
    if (field == SFIELD_VIDEO_REC_STOP || field == SFIELD_SET_SYSTEM_SD_FORMAT) mIsToldToRecord = false;
    Fake().result = 0;
    if (mIsSilent) mNow += 500;  // the platform library gives up
    if (mIsSilent || (mFailing > 0 && mFailing-- > 0)) {
      Fake().result = -1;
      if (field == SFIELD_VIDEO_REC_START) mIsHeld = true;
      return;
    }
    Answer();
    React(field, value, line);
  }
  void Answer() {
    if (!mAnswer) return;
    Fake().lcdValue = *mAnswer;
    Fake().voltage = std::bit_cast<float>(*mAnswer);
    Fake().result = std::max(*mAnswer, 0);
  }
  void React(int field, int value, const QString& line) {
    const recorder::Delays delays;
    switch (field) {
      case SFIELD_VIDEO_REC_START:
        EndPlayback();
        mIsRecording = true;
        mIsHeld = false;
        break;
      case SFIELD_VIDEO_REC_STOP:
        mIsRecording = false;
        Speak(delays.stopVoice);
        break;
      case SFIELD_SET_AUDIO_IN_GAIN:
      case SFIELD_SET_AUDIO_OUT_GAIN:
      case SFIELD_SET_AUDIO_OUT_MUTE:
        Speak(delays.voice);
        break;
      case SFIELD_SET_SYSTEM_SD_FORMAT:
        EndPlayback();
        mIsRecording = false;
        Later(RECV_ZEL_STATUS_SD_FORMAT_RESULT, mFailingFormats > 0 && mFailingFormats-- > 0 ? 0 : 1, delays.format);
        break;
      case SFIELD_SET_USER_SDCHECK:
        Later(RECV_ZEL_STATUS_SD_CHECK, mFault, delays.check);
        break;
      case SFIELD_PLAY_VIDEO:
        PlayBack(QByteArray::fromHex(line.section(u' ', 1, 1).toLatin1()));
        break;
      case SFIELD_CONTROL_VIDEO:
        if (value != 1) EndPlayback();
        break;
      case SFIELD_SET_CURRENT_RECORDING_FILE_DETECT:
        mRoot.Write(QLatin1String(device::kManualEventMarker), QByteArray());
        mManualUntil = mNow + delays.manualEvent;
        break;
      case SFIELD_VOLTAGE_COMPENSATION:
        if (value == 4 && mVerdict < 2) Later(RECV_ZEL_STATUS_VOLT_SET, mVerdict == 0, delays.verdict);
        break;
      case SFIELD_SET_USER_DATA_INIT:
        for (const char* file : {device::kConfigFirm, device::kConfigInit}) mRoot.Remove(QLatin1String(file));
        Later(RECV_ZEL_STATUS_POWER_OFF, 1, 1);
        Later(kRestart, 0, delays.restart);
        break;
      case SFIELD_TOUCH_COMP_END:
        for (const char* file : {device::kUpdateMarker, device::kUpdateMarker2}) mRoot.Remove(QLatin1String(file));
        break;
      default:
        break;
    }
  }
  void Speak(qint64 ms) {
    Forget({RECV_ZEL_STATUS_VOICE_PLAY_END});
    if (!mIsVoiceSuppressed) Later(RECV_ZEL_STATUS_VOICE_PLAY_END, 1, ms);
  }
  void PlayBack(const QByteArray& path) {
    EndPlayback();
    if (!mRoot.Exists(QString::fromLatin1(path.left(path.indexOf('\0'))))) {
      Later(RECV_ZEL_STATUS_PLAY_STATUS, 2, 1);
      return;
    }
    for (int second = 0; second < 20; ++second) Later(RECV_ZEL_STATUS_PLAY_CUR, second * 1000 + 10, second * 1000 + 10);
    Later(RECV_ZEL_STATUS_PLAY_STATUS, 4, 20 * kSecond);
  }
  void EndPlayback() { Forget({RECV_ZEL_STATUS_PLAY_CUR, RECV_ZEL_STATUS_PLAY_STATUS}); }

  void Tell(int event, int value) {
    if (event == RECV_ZEL_STATUS_SD_ERROR) {
      gSdError = true;
      gInitSdError = true;
    }
    if (event == RECV_ZEL_STATUS_HW_ERROR && value == 8) gIsSdError = true;
    if (event == RECV_ZEL_STATUS_RECORD_START || event == RECV_ZEL_STATUS_RECORD_STOP) return;  // told to nobody
    PostEvent(event, value);
  }

  // ---- actions of the bench

  struct Effect {
    const char* name;
    void (*happens)(Camera& camera, int value);
  };
  template <int event, int value = 1>
  static void Tells(Camera& camera, int) {
    camera.Tell(event, value);
  }
  template <int off, int on>
  static void Switches(Camera& camera, int value) {
    camera.Tell(value != 0 ? on : off, 1);
  }
  template <auto member>
  static void Sets(Camera& camera, int value) {
    camera.*member = static_cast<std::remove_reference_t<decltype(camera.*member)>>(value);
  }
  static constexpr int kCardErrors[] = {0, 5, 7}, kFaults[] = {0, 1, 5, 7};
  static const Effect kEffects[std::size(kActions)];

  void EndParking(bool lowVoltage) {
    if (!std::exchange(mIsParked, false)) return;
    QList<int> words{1, int(mParkedAt / 1000) + 1, lowVoltage ? 0 : int(mNow / 1000) + 1,
                     lowVoltage ? int(mNow / 1000) + 1 : 0};
    for (const QList<int>& times : {mImpacts, mMotions}) words << int(times.size()) << times;
    mRoot.Write(QLatin1String(device::kParkingReport),
                {reinterpret_cast<const char*>(words.constData()), words.size() * qsizetype{sizeof(int)}});
    mImpacts.clear();
    mMotions.clear();
    Tell(RECV_ZEL_STATUS_PARK_MODE_OUT, 1);
  }
  void PutMarker(const char* path) {
    mRoot.Write(QLatin1String(path), QByteArray());
    StartInterface();
  }
  void RemoveMarkers() {
    for (const char* file : {device::kUpdateMarker, device::kUpdateMarker2, device::kTouchCheckMarker,
                             device::kTouchTestMarker, device::kTouchReset})
      mRoot.Remove(QLatin1String(file));
  }
  void SetClock(int to) {
    const QDateTime now = gClock();
    const QDateTime clocks[] = {now.addMSecs(-sOffset), QDateTime(now.date(), QTime(23, 59, 50)),
                                QDateTime(QDate(2028, 2, 28), QTime(23, 59, 50)),
                                QDateTime(QDate(2100, 1, 1), QTime(0, 0))};
    sOffset += now.msecsTo(clocks[to]);
  }

  // ---- time

  // The end of each timer that has been started since; the ones that do not run any more are forgotten.
  void LookAtTimers() {
    mSeen.clear();
    const auto look = [this](const QObject* owner) {
      for (QObject* child : owner->children()) {
        if (child->metaObject() != &QTimer::staticMetaObject) continue;
        auto* timer = static_cast<QTimer*>(child);
        if (!timer->isActive()) continue;
        const int id = timer->timerId();
        const auto known =
            std::ranges::find_if(mDue, [&](const Due& due) { return due.timer == timer && due.id == id; });
        mSeen.push_back(known != mDue.end() ? *known : Due{timer, id, mNow + timer->interval()});
      }
    };
    look(mWindow.get());
    if (Top()) look(Top());
    for (QWidget* widget : QApplication::topLevelWidgets())  // covered screens have no parent
      if (widget != mWindow.get()) look(widget);
    mDue.swap(mSeen);
  }

  // What is due before `end`, or before now when that is later.
  void RunUntil(qint64 end) {
    for (int still = 0; !mFinding; ++still) {
      end = std::max(end, mNow);
      LookAtTimers();
      const auto timer = std::ranges::min_element(mDue, {}, &Due::at);
      const qint64 timerAt = timer == mDue.end() ? end : timer->at;
      const qint64 toldAt = mTells.empty() ? end : mTells.begin()->first;
      const qint64 at = std::min({end, timerAt, toldAt});
      if (at >= end) break;
      if (at > mNow) still = 0;
      if (still > 10000) Break("time goes on", QStringLiteral("a timer comes again and again"));
      mNow = std::max(mNow, at);
      EndManualEvent();
      if (toldAt <= timerAt) {
        const auto [event, value] = mTells.begin()->second;
        mTells.erase(mTells.begin());
        Happen(event, value);
      } else {
        timer->at = mNow + timer->timer->interval();  // one that nobody stops comes again
        mFiring = timer->timer;
        ++mTimersPlayed;
        QTimerEvent over(timer->id);
        QCoreApplication::sendEvent(mFiring, &over);
        mFiring = nullptr;
      }
      Settle();
    }
    mNow = std::max(mNow, end);
  }
  void Happen(int event, int value) {
    if (event == kLift)
      Lift();
    else if (event == kRestart)
      StartInterface();
    else
      Tell(event, value);
  }
  void EndManualEvent() {
    if (mManualUntil == 0 || mNow < mManualUntil) return;
    mRoot.Remove(QLatin1String(device::kManualEventMarker));
    mManualUntil = 0;
  }
  void Settle() {
    for (int i = 0; i < 3; ++i) QCoreApplication::processEvents();
    Fake().asked.clear();
    Check();
  }

  // ---- steps

  void Do(const Step& step) {
    if (mIsWriting) {
      Step now = step;
      now.at = mNow;
      mPlayed += Line(now);
    }
    switch (step.kind) {
      case Step::Touch: {
        const QPoint at = mPanel.RawAt(step.a, step.b);
        Press(at.x(), at.y(), step.c);
        break;
      }
      case Step::Key: {
        const QPoint at = Offered(step.a, step.b);
        Play(Step::Touch, at.x(), at.y(), 60);
        if (mIsWriting) mPlayed += EndLine(mNow);
        break;
      }
      case Step::Raw:
        Press(step.a, step.b, step.c);
        break;
      case Step::Event:
        if (!mIsSilent) Tell(step.a, step.b);
        break;
      case Step::Act:
        std::ranges::find(kEffects, QLatin1String(kActions[step.a].name), &NameOfEffect)->happens(*this, step.b);
        break;
      case Step::File:
        if (step.b == 0)
          mRoot.Remove(QLatin1String(kFiles[step.a]));
        else
          mRoot.Write(QLatin1String(kFiles[step.a]), BytesOf(step.a, step.b));
        break;
      case Step::Answer:
        mAnswer = step.a;
        break;
      case Step::Voltage:
        gNeedVolCom = step.a != 0;
        break;
      case Step::Open:
        gFirmupCount = step.b;
        if (TopId() != PREVIEW && TopId() != MAINMENU) break;
        mWindow->SetGlobalEntryPreviewTimer();  // as the menu's key does
        mWindow->StartWidget(kNoWay[step.a], nullptr);
        break;
      case Step::Home:
      case Step::Alone: {
        const qint64 begun = mNow;
        step.kind == Step::Home ? GoHome() : LeaveAlone();
        mSkipped += begun + Lasts(step) - mNow;
        if (mIsWriting) mPlayed += EndLine(mNow);
        if (!mFinding && IsCardDead()) StartInterface();  // with another card
        break;
      }
      case Step::Crash:
        std::abort();
    }
  }
  // A place where a touch does something.
  static QPoint Offered(int area, int place) {
    const QList<TouchArea> areas = Top()->TouchAreas();
    if (areas.isEmpty()) return {240, 160};
    const QRect in = areas[area % areas.size()].area;
    return {in.left() + place % std::max(in.width(), 1), in.top() + place / 1000 % std::max(in.height(), 1)};
  }
  static QLatin1String NameOfEffect(const Effect& effect) { return QLatin1String(effect.name); }

  void Press(int rawX, int rawY, int ms) {
    Lift();
    TouchThread* reader = mWindow->GetTouchThread();
    reader->Take(EV_ABS, ABS_X, rawX);
    reader->Take(EV_ABS, ABS_Y, rawY);
    reader->Take(EV_ABS, ABS_PRESSURE, 200);
    mIsDown = true;
    Later(kLift, 0, ms);
  }
  void Lift() {
    Forget({kLift});
    if (!std::exchange(mIsDown, false)) return;
    Queue(&TouchThread::sendReleaseEvent, qobject_cast<RecordingFileList*>(Top()),
          &RecordingFileList::touchReleaseEvent);
    Queue(&TouchThread::sendTimeLayoutReleaseEvent, qobject_cast<TimeLayout*>(Top()), &TimeLayout::touchReleaseEvent);
    Queue(&TouchThread::sendLedListLayoutReleaseEvent, qobject_cast<LedFileList*>(Top()),
          &LedFileList::touchReleaseEvent);
    mWindow->GetTouchThread()->Take(EV_ABS, ABS_PRESSURE, 0);
  }
  // What the reader tells comes from another thread, so by the queue.
  template <class Listener>
  void Queue(auto signal, Listener* listener, auto slot) {
    if (!listener) return;
    TouchThread* reader = mWindow->GetTouchThread();
    QObject::disconnect(reader, signal, listener, slot);
    QObject::connect(reader, signal, listener, slot, Qt::QueuedConnection);
  }

  // ---- the driver

  void Play(Step::Kind kind, int a, int b = 0, int c = 0) { Do({mNow, kind, a, b, c}); }
  void PlayAction(const char* name, int value = 0) { Play(Step::Act, ActionNamed(QLatin1String(name)), value); }

  // What a person would have to see to before the camera works. A format or a check whose command got lost is never
  // answered, a recording by hand whose file stays never ends, and by design the interface waits for that for ever:
  // exactly these three.
  void Repair() {
    if (mIsSilent) PlayAction("recorderStart");
    for (const char* name : {"commandsFail", "sdFormatFails", "sdCheckFinds", "voiceEndSuppress"}) PlayAction(name);
    if (mAnswer) Play(Step::Answer, 0);
    mAnswer.reset();
    if (mManualUntil == 0 && mRoot.Exists(QLatin1String(device::kManualEventMarker))) Play(Step::File, 0, 0);
    AnswerFor(TopId() == SDFORMAT, RECV_ZEL_STATUS_SD_FORMAT_RESULT, 1);
    AnswerFor(OwnBox() == SD_CARD_CHECK_ING, RECV_ZEL_STATUS_SD_CHECK, 0);
  }
  void AnswerFor(bool isAwaited, int event, int value) {
    if (isAwaited && !IsComing(event)) Play(Step::Event, event, value);
  }

  // The one end that leaves the camera without a recording: the card must be exchanged.
  static bool IsCardDead() {
    const auto* text = TopId() == SDFORMAT ? Top()->findChild<QLabel*>(QStringLiteral("mLblMsg")) : nullptr;
    return text && text->text().contains(QStringLiteral("교체"));
  }

  void GoHome() {
    std::map<int, int> tries;
    Repair();
    for (const qint64 end = mNow + kHomeMs; !mFinding && !IsHome() && !IsCardDead();) {
      if (mNow >= end)
        return Break("home within 60 s", QStringLiteral("still on %1, boxes %2 %3")
                                             .arg(QLatin1String(NameOf(TopId())))
                                             .arg(OwnBox())
                                             .arg(EventBox()));
      LeaveScreen(tries);
      Settle();
      RunUntil(mNow + 400);
    }
    if (!mFinding && !IsCardDead()) ++mHomes;
  }
  // With the keys, which a touch shows.
  bool IsHome() const { return TopId() == PREVIEW && OwnBox() < 0 && EventBox() < 0 && Top()->isVisible(); }

  // One touch, or one press of the power key. Who misses tries beside it: a calibration that was passed may be as far
  // off. `tries` are those of each box and of each screen without one.
  void LeaveScreen(std::map<int, int>& tries) {
    static constexpr QPoint kAims[] = {{0, 0},     {0, 0},   {25, 20}, {-25, -20}, {25, -20}, {-25, 20},
                                       {-38, -28}, {0, -28}, {-38, 0}, {50, 40},   {50, 0},   {0, 40}};
    const auto touch = [this](QPoint at, int tried) {
      const QPoint there = at + kAims[tried % int(std::size(kAims))];
      Play(Step::Touch, there.x(), there.y(), 60);
    };
    if (mWindow->GetIsLcdOff()) return touch({240, 160}, 0);
    for (const int box : {EventBox(), OwnBox()}) {
      if (box < 0) continue;
      const int tried = tries[box]++;
      if (HasButtons(box)) return touch(tried % 2 == 0 ? QPoint(340, 236) : QPoint(140, 236), tried / 2);
      if (tried % 6 < 5) return;  // it goes by itself, or with a touch
    }
    const int tried = tries[-1 - TopId()]++;
    if (TopId() == PREVIEW && !Top()->isVisible()) return touch(kBeside, tried);
    if (TopId() == FIRMUP) return PlayAction("interfaceRestart");  // the recorder's end of an update
    const auto* way = std::ranges::find(soak::kWays, QLatin1String(NameOf(TopId())),
                                        [](const soak::Way& each) { return QLatin1String(each.screen); });
    if (way == std::end(soak::kWays)) return touch(soak::kHome, tried);
    way->touch.isNull() ? PlayAction("powerKey") : touch(way->touch, tried);
  }
  static bool HasButtons(int box) {
    int kind = 0, a = 0, b = 0, c = 0, d = 0;
    GetMessageBoxString(box, &kind, &a, &b, &c, &d, 0);
    return kind >= 1 && kind <= 4;
  }

  // For 25 minutes, or until it has been on the live preview for one.
  void LeaveAlone() {
    Repair();
    Settle();
    qint64 restsSince = mNow;
    for (const qint64 end = mNow + kAloneMs; !mFinding && mNow < end && mNow < restsSince + kMinute;) {
      RunUntil(mNow + 5 * kSecond);
      if (!mIsToldToRecord || (TopId() != PREVIEW && TopId() != SCREENSAVER)) restsSince = mNow;
    }
    if (mFinding || IsCardDead()) return;
    const QString where = QStringLiteral("it is on %1").arg(QLatin1String(NameOf(TopId())));
    if (!mIsToldToRecord || (!mIsRecording && !mIsHeld)) Break("a camera that is left alone records", where);
    const bool isBack = TopId() == PREVIEW || TopId() == SCREENSAVER;
    if (!isBack && std::ranges::find(kStay, TopId(), [](const auto& row) { return row.screen; }) == std::end(kStay))
      Break("a camera that is left alone goes back to the live preview", where);
    ++mRests;
  }

  // ---- the rules

  void Check() {
    mSeenScreens.insert(TopId());
    CheckScreen();
    CheckRecording();
    CheckDelays();
    CheckCovered();
    CheckSettings();
    if (also && !mFinding)
      if (const QString what = also(); !what.isEmpty()) Break("of the test", what);
  }

  void CheckScreen() {
    const char* rule = "one screen is there and fills the window";
    if (!Top()) return Break(rule, QStringLiteral("none is"));
    if (mWindow->centralWidget() != Top()) Break(rule, QStringLiteral("the top one is not shown"));
    if (Top()->size() != QSize(480, 320)) Break(rule, QStringLiteral("it is too large or too small"));
    if (mWindow->GetIsLcdOff() && Top()->isVisible()) Break(rule, QStringLiteral("it is seen on a dark LCD"));
    int screens = 1;
    for (QWidget* widget : QApplication::topLevelWidgets()) {
      if (!qobject_cast<BaseWidget*>(widget)) continue;
      ++screens;
      if (widget->isVisible())
        Break(rule, QStringLiteral("%1 is a window").arg(QLatin1String(widget->metaObject()->className())));
    }
    if (screens != gWidgetManager.GetStackDepth() + 1) Break(rule, QStringLiteral("%1 are left over").arg(screens));
    if (screens >= 12) Break(rule, QStringLiteral("%1 stand on the stack").arg(screens));
  }

  void CheckRecording() {
    if (TopId() == PREVIEW && !mIsToldToRecord)
      Break("the camera records on the live preview", QStringLiteral("it was told to stop"));
  }

  // The preview's two delays never run where nobody could see or answer what they end; the next rule says the same of
  // a preview that is covered.
  void CheckDelays() {
    if (TopId() != PREVIEW || (!mWindow->GetIsDetectRecording() && !mWindow->GetIsLcdOff())) return;
    for (const char* name : {"mTimTouchWait", "mTimLcdOff"})
      if (ArmedOnTop(name) >= 0) Break("the preview's delays run only where they are seen", QLatin1String(name));
  }

  void CheckCovered() {
    for (const QWidget* widget : QApplication::topLevelWidgets()) {
      if (!qobject_cast<const BaseWidget*>(widget)) continue;
      for (const QObject* child : widget->children()) {
        if (child->metaObject() != &QTimer::staticMetaObject || !static_cast<const QTimer*>(child)->isActive())
          continue;
        const QLatin1String screen(widget->metaObject()->className());
        const bool may = std::ranges::any_of(kRunCovered, [&](const auto& row) {
          return (!row.screen || screen == QLatin1String(row.screen)) &&
                 child->objectName() == QLatin1String(row.timer);
        });
        if (!may)
          Break("no timer runs in a covered screen",
                QStringLiteral("%1 of %2 below %3").arg(child->objectName(), screen, QLatin1String(NameOf(TopId()))));
      }
    }
  }

  // What the driver set is kept once he is back at the live preview.
  void CheckSettings() {
    const WidgetId before = std::exchange(mTop, TopId());
    if (mTop != PREVIEW || before == PREVIEW) return;
    mIsUnsaved |=
        std::ranges::find(kLeaveUnsaved, before, [](const auto& row) { return row.screen; }) != std::end(kLeaveUnsaved);
    Settings file;
    file.mSetting = Setting();
    file.AllGetSettingConfig();
    const auto differs = std::ranges::find_if(SettingKeys(), [&file](const SettingKey& row) {
      return row.place == SettingPlace::Field && file.mSetting.*row.field != Setting().*row.field;
    });
    if (differs == SettingKeys().end())
      mIsUnsaved = false;
    else if (!mIsUnsaved)
      Break("the file has the settings", QStringLiteral("%1 is %2, the file has %3; from %4")
                                             .arg(QLatin1String(differs->key))
                                             .arg(Setting().*differs->field)
                                             .arg(file.mSetting.*differs->field)
                                             .arg(QLatin1String(NameOf(before))));
  }

  static inline const qint64* sNow = nullptr;
  static inline qint64 sOffset = 0;  // of the camera's clock

  const TestRoot& mRoot;
  TouchPanel mPanel;  // where a point of the screen is felt
  qint64 mNow = 0;
  qint64 mSkipped = 0;  // of the time that is there for going home and for being left alone
  std::multimap<qint64, std::pair<int, int>> mTells;  // when, event and value
  std::vector<Due> mDue, mSeen;
  QTimer* mFiring = nullptr;
  std::optional<Finding> mFinding;

  bool mIsToldToRecord = true;  // the latest command to the recording was to start
  bool mIsRecording = true;
  bool mIsHeld = false;  // it refused to start
  bool mIsSilent = false, mIsVoiceSuppressed = false, mIsParked = false, mIsDown = false;
  int mFailing = 0, mFailingFormats = 0, mFault = 0, mVerdict = 0;
  std::optional<int> mAnswer;
  qint64 mManualUntil = 0, mParkedAt = 0;
  QList<int> mImpacts, mMotions;  // of the parking, s
  bool mIsManyIn = false, mIsManyMade = false;
  WidgetId mTop = UNKNOWN;
  bool mIsUnsaved = false;  // what was edited

  bool mIsPainting = true;
  std::set<WidgetId> mSeenScreens;
  bool mIsWriting = false;
  QByteArray mPlayed;
  qint64 mTimersPlayed = 0, mHomes = 0, mRests = 0;
};

inline const Camera::Effect Camera::kEffects[std::size(kActions)] = {
    {"powerKey", Tells<RECV_ZEL_STATUS_LCD_KEY>},
    {"parkIn",
     [](Camera& c, int) {
       if (!std::exchange(c.mIsParked, true)) c.mParkedAt = c.mNow;
       c.Tell(RECV_ZEL_STATUS_PARK_MODE_IN, 1);
     }},
    {"impact", [](Camera& c, int) { c.mImpacts << int(c.mNow / 1000); }},
    {"motion", [](Camera& c, int) { c.mMotions << int(c.mNow / 1000); }},
    {"parkOut", [](Camera& c, int) { c.EndParking(false); }},
    {"parkLowVoltage", [](Camera& c, int) { c.EndParking(true); }},
    {"mute", Switches<RECV_ZEL_STATUS_MUTE_OFF, RECV_ZEL_STATUS_MUTE_ON>},
    {"countdown", [](Camera& c, int on) { c.Tell(RECV_ZEL_STATUS_LOW_VOLTAGE_POWER_OFF_COUNT, on); }},
    {"sdError", [](Camera& c, int code) { c.Tell(RECV_ZEL_STATUS_SD_ERROR, kCardErrors[code]); }},
    {"sdWorn", Tells<RECV_ZEL_STATUS_HW_ERROR, 8>},
    {"sdFull", [](Camera& c, int) { c.PutCard(true); }},
    {"sdFormatFails", Sets<&Camera::mFailingFormats>},
    {"sdCheckFinds", [](Camera& c, int fault) { c.mFault = kFaults[fault]; }},
    {"voltageVerdict", Sets<&Camera::mVerdict>},
    {"voiceEndSuppress", Sets<&Camera::mIsVoiceSuppressed>},
    {"voiceEndNow", Tells<RECV_ZEL_STATUS_VOICE_PLAY_END>},
    {"commandsFail", Sets<&Camera::mFailing>},
    {"recorderStop",
     [](Camera& c, int) {
       c.mIsSilent = true;
       std::erase_if(c.mTells, [](const auto& tell) { return tell.second.first != kLift; });
     }},
    {"recorderStart",
     [](Camera& c, int) {
       if (std::exchange(c.mIsSilent, false)) c.mIsRecording = true;
     }},
    {"clock", [](Camera& c, int to) { c.SetClock(to); }},
    {"updateMarker", [](Camera& c, int file) { c.PutMarker(file == 0 ? device::kUpdateMarker : device::kUpdateMarker2); }},
    {"touchMarker",
     [](Camera& c, int file) {
       const char* const markers[] = {device::kTouchCheckMarker, device::kTouchTestMarker, device::kTouchReset};
       c.PutMarker(markers[file]);
     }},
    {"removeMarkers", [](Camera& c, int) { c.RemoveMarkers(); }},
    {"interfaceRestart", [](Camera& c, int) { c.StartInterface(); }},
};

}  // namespace monkey
