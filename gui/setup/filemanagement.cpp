#include "gui/setup/filemanagement.h"

#include <QLabel>

#include "gui/base/language.h"
#include "gui/base/shell.h"
#include "gui/screen/label.h"
#include "gui/screen/page.h"
#include "gui/screen/screenof.h"
#include "gui/settings/settings.h"

SCREEN(FILEMANAGEMENT, FileManagement)

namespace {
constexpr int kStep = 10;       // percent
constexpr int kStepWidth = 40;  // pixels
constexpr int kWhole = 100;

constexpr QPoint kBar(41, 112), kZero(4, 112), kHundred(442, 112);
constexpr int kHandleTop = 161, kHandleBottom = 206, kHandleLeft = 2, kHandleRight = 81;
constexpr QPoint kMinus(86, 250), kPlus(246, 250);
constexpr QRect kMinusArea(QPoint(87, 251), QPoint(233, 300)), kPlusArea(QPoint(247, 251), QPoint(393, 300));

constexpr QColor kText(255, 255, 255), kText2(200, 194, 196);

// One share in the legend, from its left end on.
struct Legend {
  int x;
  const char* icon;
  const char* text;
  const char* number;
  const char* name;
};
constexpr Legend kEvent{12, "filemanagement/icon_event.bmp", "lblEvt", "lblEvtNum",
                        QT_TRANSLATE_NOOP("Text", "이벤트")};
constexpr Legend kNormal{168, "filemanagement/icon_normal.bmp", "lblNormal", "lblNormalNum",
                         QT_TRANSLATE_NOOP("Text", "상시")};
constexpr Legend kParking{324, "filemanagement/icon_parking.bmp", "lblParking", "lblParkNum",
                          QT_TRANSLATE_NOOP("Text", "주차")};
constexpr int kIconTop = 70;

QLabel* AddShare(QWidget* screen, const Legend& legend) {
  AddLabel(screen, {legend.text, {legend.x + 40, 66, 100, 20}, 16, kText2}, Text::tr(legend.name));
  return AddLabel(screen, {legend.number, {legend.x + 40, 84, 100, 24}, 20, kText, Qt::AlignLeft, true});
}
}  // namespace

FileManagement::FileManagement(QWidget* parent) : TileScreen(parent, QStringLiteral("filemanagement/title.bmp"), {}) {
  InitData2();
  InitLabel();
  UpdateLabel();
}

// ---- the shares

bool FileManagement::FM_ModeSet() {
  bParkingOff = gEnvirnmentSettings.mSetting.parking_mode_on == 0;
  bGSensorOff = gEnvirnmentSettings.mSetting.drv_shock_lvl == 0;
  if (bParkingOff && bGSensorOff) return false;
  eFM_Mode = bParkingOff ? FM_MODE_EVT_N : bGSensorOff ? FM_MODE_PARK_N : FM_MODE_EVT_N_PARK;
  return true;
}

bool FileManagement::CheckSizeSetCondition(FM_MODE mode, int event, int normal, int parking) {
  const bool events = event >= kStep && event <= kWhole;
  const bool normals = normal >= kStep && normal <= kWhole;
  const bool parkings = parking >= kStep && parking <= kWhole;
  switch (mode) {
    case FM_MODE_EVT_N:
      return events && normals && event + normal == kWhole;
    case FM_MODE_PARK_N:
      return normals && parkings && normal + parking == kWhole;
    case FM_MODE_EVT_N_PARK:
      return events && normals && parkings && event + normal + parking == kWhole;
    default:
      return true;
  }
}

FileManagement_Config FileManagement::SetDefaultSizeSet(FM_MODE mode) {
  switch (mode) {
    case FM_MODE_EVT_N:
      return {50, 50, 0};
    case FM_MODE_PARK_N:
      return {0, 50, 50};
    case FM_MODE_EVT_N_PARK:
      return {30, 40, 30};
    default:
      return {};
  }
}

void FileManagement::InitData2() {
  if (!FM_ModeSet()) return;
  nCurCtrlIdx = eFM_Mode == FM_MODE_PARK_N ? NormalParking : EventNormal;
  const Setting_Config& setting = gEnvirnmentSettings.mSetting;
  // A stored split that does not suit what is recorded now is never shown.
  if (!CheckSizeSetCondition(eFM_Mode, setting.e_file_rate, setting.n_file_rate, setting.p_file_rate)) {
    stConfig = SetDefaultSizeSet(eFM_Mode);
    return;
  }
  const auto share = [](bool off, int percent) { return std::uint8_t(off ? 0 : percent); };
  stConfig = {share(bGSensorOff, setting.e_file_rate), std::uint8_t(setting.n_file_rate),
              share(bParkingOff, setting.p_file_rate)};
}

void FileManagement::ProcessBtn(bool isPlus) {
  if (eFM_Mode == FM_MODE_NUM) return;
  // The boundary moves to the right with plus: the share at its left grows.
  std::uint8_t& left = nCurCtrlIdx == EventNormal ? stConfig.ucEvtFileSize : stConfig.ucNormalFileSize;
  std::uint8_t& right = nCurCtrlIdx == EventNormal ? stConfig.ucNormalFileSize : stConfig.ucParkingFileSize;
  std::uint8_t& from = isPlus ? right : left;
  std::uint8_t& to = isPlus ? left : right;
  if (from >= 2 * kStep) {
    from = std::uint8_t(from - kStep);
    to = std::uint8_t(to + kStep);
  }
  Setting_Config& setting = gEnvirnmentSettings.mSetting;
  setting.e_file_rate = stConfig.ucEvtFileSize;
  setting.n_file_rate = stConfig.ucNormalFileSize;
  setting.p_file_rate = stConfig.ucParkingFileSize;
  UpdateLabel();
}

// ---- touches

bool FileManagement::IsOffered(Boundary boundary) const {
  return eFM_Mode != FM_MODE_NUM && eFM_Mode != (boundary == EventNormal ? FM_MODE_PARK_N : FM_MODE_EVT_N);
}

// Pixels from the left end of the bar.
int FileManagement::PositionOf(Boundary boundary) const {
  return (boundary == EventNormal ? stConfig.ucEvtFileSize / kStep : 10 - stConfig.ucParkingFileSize / kStep) *
         kStepWidth;
}

QRect FileManagement::HandleArea(Boundary boundary) const {
  const int place = PositionOf(boundary);
  return {QPoint(place + kHandleLeft, kHandleTop), QPoint(place + kHandleRight, kHandleBottom)};
}

QList<TouchArea> FileManagement::PageAreas() const {
  QList<TouchArea> areas{{kMinusArea, QStringLiteral("minus")}, {kPlusArea, QStringLiteral("plus")}};
  for (const Boundary boundary : {EventNormal, NormalParking})
    if (IsOffered(boundary)) areas.append({HandleArea(boundary), QStringLiteral("boundary %1").arg(int{boundary})});
  return areas;
}

void FileManagement::TouchPage(int x, int y) {
  if (y >= kHandleTop && y <= kHandleBottom) {
    for (const Boundary boundary : {EventNormal, NormalParking}) {
      if (!IsOffered(boundary) || !HandleArea(boundary).contains(x, y)) continue;
      PlayClick();
      nCurCtrlIdx = boundary;
      repaint();
      return;
    }
    return;
  }
  const bool plus = kPlusArea.contains(x, y);
  if (!plus && !kMinusArea.contains(x, y)) return;
  PlayClick();
  ProcessBtn(plus);
  repaint();
}

// ---- painting

void FileManagement::InitLabel() {
  lblEvtNum = AddShare(this, kEvent);
  lblNormalNum = AddShare(this, kNormal);
  lblParkNum = AddShare(this, kParking);
  AddLabel(this, {"lblZero", {4, 112, 36, 44}, 16, kText2, Qt::AlignHCenter}, QStringLiteral("0"));
  AddLabel(this, {"lblHundred", {442, 112, 38, 44}, 16, kText2, Qt::AlignHCenter}, QStringLiteral("100"));
}

void FileManagement::UpdateLabel() {
  lblEvtNum->setText(QStringLiteral("%1 %").arg(stConfig.ucEvtFileSize));
  lblNormalNum->setText(QStringLiteral("%1 %").arg(stConfig.ucNormalFileSize));
  lblParkNum->setText(QStringLiteral("%1 %").arg(stConfig.ucParkingFileSize));
}

void FileManagement::FillPage(Page& page) {
  page.Add(kPage, QStringLiteral("filemanagement/bg.bmp"));
  for (const Legend& legend : {kEvent, kNormal, kParking}) page.Add({legend.x, kIconTop}, QLatin1String(legend.icon));
  page.Add(kZero, QStringLiteral("filemanagement/icon_zero.bmp"));
  page.Add(kHundred, QStringLiteral("filemanagement/icon_hundred.bmp"));
  AddBar(page);
  const Boundary selected = nCurCtrlIdx == EventNormal ? EventNormal : NormalParking;
  AddHandle(page, selected == EventNormal ? NormalParking : EventNormal);
  AddHandle(page, selected);
  page.Add(kMinus, QStringLiteral("filemanagement/minus_normal.bmp"));
  page.Add(kPlus, QStringLiteral("filemanagement/plus_normal.bmp"));
}

void FileManagement::AddBar(Page& page) const {
  page.Add(kBar, QStringLiteral("filemanagement/control_bar_bg.bmp"));
  if (eFM_Mode == FM_MODE_NUM) return;
  const int normal = PositionOf(EventNormal) / kStepWidth;
  const int parking = PositionOf(NormalParking) / kStepWidth;
  for (int step = 0; step < 10; ++step)
    page.Add(kBar + QPoint(kStepWidth * step, 0), step < normal    ? QStringLiteral("filemanagement/bar_event.bmp")
                                                  : step < parking ? QStringLiteral("filemanagement/bar_normal.bmp")
                                                                   : QStringLiteral("filemanagement/bar_parking.bmp"));
}

void FileManagement::AddHandle(Page& page, Boundary boundary) const {
  if (!IsOffered(boundary)) return;
  const int at = PositionOf(boundary);
  page.Add({at + kBar.x() - 2, kBar.y()}, QStringLiteral("filemanagement/inter_line.bmp"));
  page.Add({at + kHandleLeft, kHandleTop}, boundary == nCurCtrlIdx
                                               ? QStringLiteral("filemanagement/handle_select.bmp")
                                               : QStringLiteral("filemanagement/handle_normal.bmp"));
}
