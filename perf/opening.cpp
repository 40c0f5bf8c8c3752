#include <QDir>
#include <QElapsedTimer>
#include <QThread>

#include "gui/recordings/recfilethread.h"
#include "gui/recordings/recordingfilemanager.h"
#include "perf/card.h"
#include "perf/fail.h"
#include "perf/measurements.h"
#include "perf/stage.h"
#include "perf/table.h"

namespace {
constexpr int kRounds = 15, kRecordings = 10000;
constexpr double kPrescribedMs = 1000;  // between the end of the recording and the scan
constexpr QPoint kMenuKey(265, 33), kListTile(80, 125), kYes(140, 236), kBack(440, 30);

/// Milliseconds of a scan, in a thread of its own as in the interface.
double Scan() {
  RecordingFileManager manager;
  RecFileThread thread(nullptr, &manager);
  QElapsedTimer clock;
  clock.start();
  thread.start();
  thread.wait();
  return double(clock.nsecsElapsed()) / 1e6;
}

void LeaveList(Stage& stage) {
  stage.Tap(kBack);
  stage.Lcd().Settle(300);
}
}  // namespace

void MeasureOpening(Stage& stage, Table& table) {
  const QString card = stage.Path("/mnt/mmc");
  if (!QDir().mkpath(card) || !FillCard(card, kRecordings)) Fail("the recordings cannot be written");
  const Screen& lcd = stage.Lcd();
  const std::unique_ptr<Program> gui = stage.StartInterface();
  stage.Tap(kMenuKey);
  stage.Tap(kListTile);
  stage.Tap(kYes);
  lcd.Settle(3000);
  const QByteArray list = lcd.Copy();
  LeaveList(stage);
  Rounds rounds;
  for (int i = 0; i < kRounds; ++i) {
    stage.Tap(kListTile);
    lcd.Settle(200);
    rounds.floor.push_back(Scan());
    const double ms = lcd.Until([&] { return lcd.Shows(Screen::kAll, list); }, [&] { stage.Press(kYes); });
    rounds.value.push_back(ms - kPrescribedMs);
    stage.Release();
    QThread::msleep(50);
    LeaveList(stage);
  }
  table.Add("list", QStringLiteral("yes to the list of 10,000; the scan"), "ms", rounds, {Goal::Times, 1.2},
            QStringLiteral("(without the second that the recorder is given)"));
}
