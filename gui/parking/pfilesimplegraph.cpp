#include "gui/parking/pfilesimplegraph.h"

#include <QDateTime>
#include <QPaintEvent>
#include <QPainter>
#include <QTimer>
#include <algorithm>

#include "gui/base/globals.h"
#include "gui/base/language.h"
#include "gui/base/picture.h"
#include "gui/parking/pfileinfo.h"
#include "gui/screen/label.h"
#include "gui/screen/page.h"
#include "gui/screen/screenof.h"
#include "gui/screen/widgetmanager.h"

template <>
BaseWidget* ScreenOf<PFILEGRAPH>(QWidget* parent, QObject* arg) {
  const auto* report = qobject_cast<PFileInfo*>(arg);
  return report ? new PFileSimpleGraph(parent, report) : nullptr;
}

namespace {
constexpr int kLeaveMs = 30000;

constexpr char kBg[] = "touchcompensation/touch_compensation_bg.bmp";
constexpr char kOkButton[] = "messagebox/message_button_ok_normal.bmp";
constexpr QPoint kOkPlace(153, 260);
constexpr QRect kOkArea(QPoint(154, 261), QPoint(327, 306));

// The time axis.
constexpr int kAxisStart = 20;
constexpr int kAxisLength = 440;
constexpr int kLineWidth = 2;
constexpr int kLineHeight = 50;
constexpr int kEventTop = 30;
constexpr int kMotionTop = 110;

constexpr QColor kPaper(224, 228, 230);
constexpr QColor kPanel(248, 249, 250);
constexpr QColor kInk(0, 0, 0);
constexpr QColor kEventInk(196, 36, 44);
constexpr QColor kMotionInk(24, 84, 190);

constexpr LabelRow kEventLabel{"mEventLabel", {20, 5, 440, 22}, 18, kInk, Qt::AlignLeft, true};
constexpr LabelRow kMotionLabel{"mMotionLabel", {20, 85, 440, 22}, 18, kInk, Qt::AlignLeft, true};
constexpr LabelRow kStartLabel{"mStartLabel", {18, 166, 220, 24}, 18, kInk};
constexpr LabelRow kEndLabel{"mEndLabel", {243, 166, 220, 24}, 18, kInk, Qt::AlignRight};
constexpr LabelRow kLowVoltageLabel{"mLowVoltageLabel", {20, 200, 440, 40}, 19, kEventInk, Qt::AlignHCenter};

// Month, day, hour and minute of the local calendar.
QString TimeText(qint32 seconds) {
  return DateLocale().toString(QDateTime::fromSecsSinceEpoch(seconds), Text::tr("MM월 dd일 HH:mm"));
}

qint32 StopTime(const PFileInfo& info) {
  return info.getLowVoltageFlag() ? info.getLowVoltageTime() : info.getParkEndTime();
}

// Where the times stand on the axis; times beside the period stand at its ends. Each place once: however many
// recordings there are, the axis has no more places.
std::vector<int> Lines(const qint32* times, qint32 count, qint64 start, qint64 stop) {
  std::vector<bool> taken(kAxisLength + 1);
  for (qint32 i = 0; i < count; ++i) {
    const qint64 since = std::max(qint64{times[i]} - start, qint64{0});
    taken[std::size_t(since >= stop - start ? kAxisLength : since * kAxisLength / (stop - start))] = true;
  }
  std::vector<int> lines;
  for (int place = 0; place <= kAxisLength; ++place)
    if (taken[std::size_t(place)]) lines.push_back(kAxisStart + place);
  return lines;
}

void PaintRow(QPainter& painter, int top, const std::vector<int>& lines, const QColor& ink) {
  const QRect inside(kAxisStart, top, kAxisLength + 1, kLineHeight);
  painter.fillRect(inside.adjusted(-kLineWidth, -kLineWidth, kLineWidth, kLineWidth), kInk);
  painter.fillRect(inside, kPanel);
  for (const int x : lines)  // the last one grows to the left: it must not run into the frame
    painter.fillRect(std::min(x, inside.right() + 1 - kLineWidth), top, kLineWidth, kLineHeight, ink);
}
}  // namespace

PFileSimpleGraph::PFileSimpleGraph(QWidget* parent, const PFileInfo* info)
    : BaseWidget(parent),
      mBg(Picture(kBg)),
      mOkButton(Picture(kOkButton)),
      mTimWidget(NewTimer("mTimWidget", [this] { TimeoutWidget(); })) {
  setAttribute(Qt::WA_OpaquePaintEvent);  // nothing needs to be painted below it
  settingPfileInfo(*info);
  setString(*info);
  initLabel();
  if (!g_bIsPrevWidgetParkingSetting) SetTimer(mTimWidget, kLeaveMs);
}

PFileSimpleGraph::~PFileSimpleGraph() {
  g_bIsPrevWidgetParkingSetting = false;
}

void PFileSimpleGraph::settingPfileInfo(const PFileInfo& info) {
  const qint32 start = info.getParkStartTime();
  const qint32 stop = StopTime(info);
  mEventLines = Lines(info.getEvtParkFileTimePointer(), info.getEvtParkFileCnt(), start, stop);
  mMotionLines = Lines(info.getMotionParkFileTimePointer(), info.getMotionParkFileCnt(), start, stop);
}

void PFileSimpleGraph::setString(const PFileInfo& info) {
  mStrEvent = Text::tr("이벤트 녹화 %n건", nullptr, info.getEvtParkFileCnt());
  mStrMotion = Text::tr("모션 녹화 %n건", nullptr, info.getMotionParkFileCnt());
  mStrStart = TimeText(info.getParkStartTime());
  mStrEnd = TimeText(StopTime(info));
  if (info.getLowVoltageFlag()) mStrLowVoltage = Text::tr("저전압으로 주차녹화가 종료되었습니다.");
}

void PFileSimpleGraph::initLabel() {
  AddLabel(this, kEventLabel, mStrEvent);
  AddLabel(this, kMotionLabel, mStrMotion);
  AddLabel(this, kStartLabel, mStrStart);
  AddLabel(this, kEndLabel, mStrEnd);
  AddLabel(this, kLowVoltageLabel, mStrLowVoltage);
}

QList<TouchArea> PFileSimpleGraph::KeyAreas() const {
  return {{kOkArea, QStringLiteral("ok")}};
}

void PFileSimpleGraph::touchEvent(int, int x, int y) {
  if (kOkArea.contains(x, y)) Back();
}

void PFileSimpleGraph::recvEvent(int event, int) {
  if (event == RECV_ZEL_STATUS_PARK_INFO_CLOSE) Back();
}

void PFileSimpleGraph::TimeoutWidget() {
  mTimWidget->stop();
  if (gWidgetManager.GetCurrentWidget() == this)
    Back();
  else
    SetTimer(mTimWidget, kLeaveMs);  // covered: going back would close the screen on top
}

void PFileSimpleGraph::paintEvent(QPaintEvent* event) {
  Page page(event->region());
  page.Add({0, 0}, mBg);
  QPainter painter(this);
  page.Paint(painter, kPaper);
  PaintRow(painter, kEventTop, mEventLines, kEventInk);
  PaintRow(painter, kMotionTop, mMotionLines, kMotionInk);
  painter.drawPixmap(kOkPlace, mOkButton);
}
