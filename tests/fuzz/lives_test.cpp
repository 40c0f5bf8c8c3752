// Drivers live with the camera: they touch keys, leave boxes unanswered, park, lose cards, and go away. Time is not the
// clock's: the next thing is the earliest of what a timer, the recorder or the driver does. Whatever a driver has done,
// once he has gone the camera records.
#include <QApplication>
#include <QLabel>
#include <QRandomGenerator>
#include <QTimerEvent>
#include <map>
#include <optional>

#include "tests/fake/cardfake.h"
#include "tests/fake/windowtest.h"

static TestRoot root;

namespace {
constexpr qint64 kSecond = 1000;

/// The recorder: what it does when it is told something, and what it tells later.
struct Recorder {
  bool records = true;
  std::multimap<qint64, std::pair<int, int>> tells;  // when, event and value
  qint64 manualUntil = -1;                           // of the event that is recorded by hand
};
}  // namespace

class LivesTest : public WindowTest {
  Q_OBJECT

private:
  QRandomGenerator mRandom;
  Recorder mRecorder;
  qint64 mNow = 0;                                 // ms of this life
  std::map<QTimer*, std::pair<int, qint64>> mDue;  // of the timers that run: id of the run, and its end
  QStringList mLived;                              // for the report

  int Below(int end) { return mRandom.bounded(end); }
  bool Chance(int percent) { return Below(100) < percent; }
  void Later(int event, int value, qint64 ms) { mRecorder.tells.insert({mNow + ms, {event, value}}); }

  void BeTold(const QString& line) {
    if (line.startsWith("8619 ")) mRecorder.records = true;
    if (line.startsWith("8620 ")) {
      mRecorder.records = false;
      if (Chance(80)) Later(RECV_ZEL_STATUS_VOICE_PLAY_END, 1, 500 + Below(3000));
    }
    if (line.startsWith("8612 ")) {
      mRecorder.records = false;
      Later(RECV_ZEL_STATUS_SD_FORMAT_RESULT, Chance(70) ? 1 : 0, 1000 + Below(5000));
    }
    if (line.startsWith("8679 ")) Later(RECV_ZEL_STATUS_SD_CHECK, Chance(50) ? 1 : 0, 500 + Below(4000));
    if (line.startsWith("8586 ")) {
      for (int second = 0; second < 3; ++second) Later(RECV_ZEL_STATUS_PLAY_CUR, second * 1000, second * 1000 + 10);
      if (Chance(60)) Later(RECV_ZEL_STATUS_PLAY_STATUS, Chance(50) ? 4 : 1 + Below(3), 1000 + Below(4000));
    }
    if (line.startsWith("8676 ")) {
      root.Write("/tmp/ndf", "x");
      mRecorder.manualUntil = mNow + 3000 + Below(5000);
    }
  }

  // The end of each timer that has been started since; the ones that do not run any more are forgotten.
  void LookAtTimers() {
    std::map<QTimer*, std::pair<int, qint64>> due;
    const QList<QTimer*> timers = mWindow->findChildren<QTimer*>();
    QList<QTimer*> all = timers;
    // Covered screens have no parent.
    for (QWidget* widget : QApplication::topLevelWidgets())
      if (widget != mWindow.get()) all += widget->findChildren<QTimer*>();
    for (QTimer* timer : all) {
      if (!timer->isActive()) continue;
      const auto known = mDue.find(timer);
      due[timer] = known != mDue.end() && known->second.first == timer->timerId()
                       ? known->second
                       : std::pair(timer->timerId(), mNow + timer->interval());
    }
    mDue = std::move(due);
  }

  void Tell(int event, int value) {
    if (event == RECV_ZEL_STATUS_SD_ERROR) {
      gSdError = true;
      gInitSdError = true;
    }
    if (event == RECV_ZEL_STATUS_HW_ERROR && value == 8) gIsSdError = true;
    PostEvent(event, value);
  }

  void DriverActs() {
    static constexpr QPoint kWanted[] = {{40, 33},   {115, 33},  {190, 33},  {265, 33},  {265, 33},  {440, 33},
                                         {40, 33},   {40, 96},   {115, 96},  {80, 125},  {240, 125}, {400, 125},
                                         {80, 255},  {240, 255}, {400, 255}, {440, 86},  {440, 242}, {75, 240},
                                         {142, 230}, {142, 230}, {142, 230}, {337, 230}, {220, 280}, {40, 291},
                                         {120, 291}, {280, 291}, {360, 291}, {355, 33}};
    static constexpr struct {
      int event, value;
    } kHappens[] = {{RECV_ZEL_STATUS_LCD_KEY, 1},
                    {RECV_ZEL_STATUS_PARK_MODE_IN, 1},
                    {RECV_ZEL_STATUS_PARK_MODE_OUT, 1},
                    {RECV_ZEL_STATUS_HW_ERROR, 3},
                    {RECV_ZEL_STATUS_HW_ERROR, 8},
                    {RECV_ZEL_STATUS_SD_ERROR, 1},
                    {RECV_ZEL_STATUS_MUTE_ON, 1},
                    {RECV_ZEL_STATUS_REARCAM_DISCONNECT, 1},
                    {RECV_ZEL_STATUS_REARCAM_CONNECT, 1},
                    {RECV_ZEL_STATUS_LOW_VOLTAGE_POWER_OFF_COUNT, 1},
                    {RECV_ZEL_STATUS_LOW_VOLTAGE_POWER_OFF_COUNT, 0},
                    {RECV_ZEL_STATUS_VOICE_PLAY_END, 1},
                    {RECV_ZEL_STATUS_GPS_CONNECT, 2},
                    {RECV_ZEL_STATUS_PLAY_STATUS, 1}};
    if (Chance(85)) {
      const QPoint at = kWanted[Below(std::size(kWanted))];
      mLived << QStringLiteral("%1 touch %2 %3").arg(mNow).arg(at.x()).arg(at.y());
      for (int taps = Chance(15) ? 2 : 1; taps > 0; --taps) PostTouch(at.x(), at.y());
    } else {
      const auto& happens = kHappens[Below(std::size(kHappens))];
      mLived << QStringLiteral("%1 event %2 %3").arg(mNow).arg(happens.event).arg(happens.value);
      Tell(happens.event, happens.value);
    }
  }

  // The earliest that is due before `end`; false when nothing is.
  bool Step(qint64 end) {
    LookAtTimers();
    auto timer = mDue.end();
    for (auto it = mDue.begin(); it != mDue.end(); ++it)
      if (timer == mDue.end() || it->second.second < timer->second.second) timer = it;
    const qint64 timerAt = timer == mDue.end() ? end : timer->second.second;
    const qint64 toldAt = mRecorder.tells.empty() ? end : mRecorder.tells.begin()->first;
    const qint64 at = std::min({end, timerAt, toldAt});
    if (at >= end) return false;
    mNow = std::max(mNow, at);
    if (mRecorder.manualUntil >= 0 && mNow >= mRecorder.manualUntil) {
      root.Remove("/tmp/ndf");
      mRecorder.manualUntil = -1;
    }
    if (toldAt <= timerAt) {
      const auto [event, value] = mRecorder.tells.begin()->second;
      mRecorder.tells.erase(mRecorder.tells.begin());
      Tell(event, value);
    } else {
      QTimer* due = timer->first;
      timer->second.second = mNow + due->interval();  // a timer that nobody stops comes again
      QTimerEvent over(due->timerId());
      QCoreApplication::sendEvent(due, &over);
    }
    Settle();
    return true;
  }
  void Settle() {
    for (int i = 0; i < 3; ++i) QCoreApplication::processEvents();
    CheckPreview();
  }
  void LiveUntil(qint64 end) {
    while (Step(end) && !QTest::currentTestFailed()) {
    }
    mNow = end;
  }

  // The preview's two delays never run where nobody could see or answer what they end.
  void CheckPreview() {
    for (QWidget* widget : QApplication::allWidgets()) {
      if (!widget->inherits("PreviewLayout")) continue;
      for (const char* name : {"mTimTouchWait", "mTimLcdOff"}) {
        const auto* delay = widget->findChild<QTimer*>(QLatin1String(name));
        if (!delay->isActive()) continue;
        QVERIFY2(widget == Top(), name);
        QVERIFY2(!mWindow->GetIsDetectRecording(), name);
        QVERIFY2(!mWindow->GetIsLcdOff(), name);
      }
    }
  }

  void Live() {
    Stop();
    ResetCamera(root);
    card::Clear(root);
    card::PutMany(root, 12);
    card::PutMany(root, 12, '1');
    mRecorder = {};
    mDue.clear();
    mLived.clear();
    mNow = 0;
    gInitSdError = false;
    Setting().lcd_auto_off = Below(5);
    Setting().lcd_wait_dis = Below(3);
    Setting().parking_mode_on = Below(3);
    gEnvirnmentSettings.mOldSetting = Setting();
    gEnvirnmentSettings.AllSetSettingConfig();
    Fake().meanwhile = [this](const QString& line) { BeTold(line); };
    mWindow = std::make_unique<MainWindow>(nullptr);
    mWindow->show();
    Settle();
    for (int action = 10 + Below(60); action > 0; --action) {
      LiveUntil(mNow + (Chance(70) ? 300 : 100) + Below(Chance(10) ? 30000 : 2500));
      DriverActs();
      Settle();
      if (QTest::currentTestFailed()) return;
    }
    LiveUntil(mNow + 25 * 60 * kSecond);  // he has gone: ten minutes, and all that follows from them
  }
  // The one end that leaves the camera without a recording: the card must be exchanged.
  static bool IsCardDead() {
    const auto* text = TopId() == SDFORMAT ? Top()->findChild<QLabel*>(QStringLiteral("mLblMsg")) : nullptr;
    return text && text->text().contains(QStringLiteral("교체"));
  }

private slots:
  void cleanup() { Stop(); }

  void atRestTheCameraRecords_data() {
    QTest::addColumn<uint>("seed");
    for (uint seed = 1; seed <= 8; ++seed) QTest::addRow("seed %u", seed) << seed;
  }
  void atRestTheCameraRecords() {
    QFETCH(uint, seed);
    mRandom.seed(seed);
    int rested = 0;
    for (int life = 0; life < 25; ++life) {
      Live();
      if (IsCardDead()) continue;
      ++rested;
      if (!mRecorder.records || QTest::currentTestFailed())
        QFAIL(qPrintable(QStringLiteral("life %1 ends on %2, recording %3:\n%4")
                             .arg(life)
                             .arg(QLatin1String(NameOf(TopId())))
                             .arg(mRecorder.records)
                             .arg(mLived.join(u'\n'))));
    }
    QVERIFY(rested > 15);
  }
};

QTEST_MAIN(LivesTest)
#include "lives_test.moc"
