#include <QThread>

#include "perf/fail.h"
#include "perf/measurements.h"
#include "perf/stage.h"
#include "perf/table.h"

namespace {
constexpr int kRounds = 15, kTouches = 100, kMessages = 100;
constexpr int kRestMs = 300;
constexpr QRect kViewKey(4, 3, 71, 60), kMiddle(120, 130, 240, 60), kBareLabel(100, 140, 300, 40);
constexpr QPoint kOnViewKey(40, 33);
const QString kInterface = QStringLiteral(BINARY_DIR "/gui/dashcam-gui");

/// A figure of each round.
struct Answers {
  std::vector<double> start, resident, dirty, touch, touch99, box, box99;
};

void TakeMemory(const Program& program, Answers& answers) {
  QThread::msleep(kRestMs);
  answers.resident.push_back(program.Resident());
  answers.dirty.push_back(program.PrivateDirty());
}

void TakeTouches(Stage& stage, Answers& answers) {
  std::vector<double> all;
  for (int i = 0; i < kTouches; ++i) {
    all.push_back(stage.Lcd().UntilChanged(kViewKey, [&stage] { stage.Press(kOnViewKey); }));
    QThread::msleep(3);
    stage.Release();
    QThread::msleep(7);
  }
  answers.touch.push_back(Median(all));
  answers.touch99.push_back(Part(all, 0.99));
}

void TakeBoxes(Stage& stage, Answers& answers) {
  std::vector<double> all;
  for (int i = 0; i < kMessages; ++i) {
    const auto event = i % 2 == 0 ? RECV_ZEL_STATUS_MUTE_ON : RECV_ZEL_STATUS_MUTE_OFF;
    all.push_back(stage.Lcd().UntilChanged(kMiddle, [&stage, event] { stage.Send(event); }));
    QThread::msleep(10);
  }
  answers.box.push_back(Median(all));
  answers.box99.push_back(Part(all, 0.99));
}

void PlayInterface(Stage& stage, const QString& gui, Answers& answers) {
  std::unique_ptr<Program> program;
  stage.Clear();
  answers.start.push_back(
      stage.Lcd().Until([&stage] { return stage.IsPreviewThere(); }, [&] { program = stage.Start(gui); }));
  TakeMemory(*program, answers);
  TakeTouches(stage, answers);
  TakeBoxes(stage, answers);
}

void PlayBarePrograms(Stage& stage, Answers& answers) {
  const Screen& lcd = stage.Lcd();
  std::unique_ptr<Program> program;
  stage.Clear();
  answers.start.push_back(lcd.Until(
      [&lcd] {
        return lcd.Pixel(0, 0) == 0xFFFFFF && lcd.Has(kBareLabel, [](quint32 pixel) { return (pixel & 0xFF) < 100; });
      },
      [&] { program = stage.Start(QStringLiteral(BINARY_DIR "/perf/perf-bare")); }));
  TakeMemory(*program, answers);
  program.reset();

  stage.Clear();
  program = stage.Start(QStringLiteral(BINARY_DIR "/perf/perf-bare-touch"), {stage.Path("/dev/input/event0")});
  lcd.Until([&lcd] { return lcd.Pixel(6, 5) == 0xFF0000; }, [] {});
  QThread::msleep(kRestMs);
  TakeTouches(stage, answers);
  program.reset();

  stage.Clear();
  program = stage.Start(QStringLiteral(BINARY_DIR "/perf/perf-bare-status"), {QString::number(stage.QueueKey())});
  lcd.Until([&lcd] { return lcd.Pixel(0, 0) == 0xFFFFFF; }, [] {});
  QThread::msleep(kRestMs);
  TakeBoxes(stage, answers);
}

struct Goals {
  Goal start, resident, dirty, median, p99;
};

void AddRows(Table& table, const Answers& floor, const Answers& value, const Goals& goals) {
  table.Add("start", QStringLiteral("start to the first complete preview"), "ms", {floor.start, value.start},
            goals.start);
  table.Add("resident", QStringLiteral("memory, resident"), "KiB", {floor.resident, value.resident}, goals.resident);
  const Rounds dirty{floor.dirty, value.dirty};
  table.Add("dirty", QStringLiteral("memory, private and written"), "KiB", dirty, goals.dirty,
            QStringLiteral("(%1%2 KiB)").arg(dirty.Above() < 0 ? "" : "+").arg(dirty.Above(), 0, 'f', 0));
  const QString touch = QStringLiteral("touch record to pixels, "), box = QStringLiteral("status message to box, ");
  table.Add("touch", touch + QStringLiteral("median of 100"), "ms", {floor.touch, value.touch}, goals.median);
  table.Add("touch99", touch + QStringLiteral("p99"), "ms", {floor.touch99, value.touch99}, goals.p99);
  table.Add("box", box + QStringLiteral("median of 100"), "ms", {floor.box, value.box}, goals.median);
  table.Add("box99", box + QStringLiteral("p99"), "ms", {floor.box99, value.box99}, goals.p99);
}
}  // namespace

void MeasureAnswers(Stage& stage, Table& table) {
  Answers floor, value;
  for (int i = 0; i < kRounds; ++i) {
    PlayBarePrograms(stage, floor);
    PlayInterface(stage, kInterface, value);
  }
  AddRows(table, floor, value,
          {{Goal::Times, 1.10}, {Goal::Times, 1.05}, {Goal::Above, 2048}, {Goal::Times, 1.15}, {Goal::Times, 1.3}});
}

void CompareAnswers(Stage& stage, Table& table, const QString& other) {
  Answers before, after;
  for (int i = 0; i < kRounds; ++i) {
    PlayInterface(stage, other, before);
    PlayInterface(stage, kInterface, after);
  }
  AddRows(table, before, after, {});
}
