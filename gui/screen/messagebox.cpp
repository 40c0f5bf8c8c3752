#include "gui/screen/messagebox.h"

#include <QLabel>
#include <QPainter>
#include <algorithm>
#include <iterator>
#include <utility>

#include "gui/base/picture.h"
#include "gui/screen/basewidget.h"
#include "gui/screen/label.h"
#include "gui/settings/config.h"

namespace {
constexpr QPoint kLeftButton(35, 165);
constexpr QPoint kRightButton(230, 165);
constexpr QPoint kOnlyButton(132, 165);
constexpr QRect kLeftArea(QPoint(56, 214), QPoint(229, 259)), kRightArea(QPoint(251, 214), QPoint(424, 259));
constexpr QPoint kIcon(26, 50);
constexpr int kLineHeight = 30;
}  // namespace

// clang-format off
constexpr MessageBox::Layout MessageBox::kLayouts[6] = {
    {{ 35,  84, 410, 168},  30, 350, {{70}, {58, 88}, {40, 70, 100}}},
    {{ 20,  48, 440, 224}, 126, 284, {{72}, {54, 84}, {42, 72, 102}}},
    {{ 20,  48, 440, 224}, 126, 284, {{72}, {54, 84}, {42, 72, 102}}},
    {{ 20,  48, 440, 224}, 126, 284, {{72}, {54, 84}, {42, 72, 102}}},
    {{ 20,  48, 440, 224}, 126, 284, {{72}, {54, 84}, {42, 72, 102}}},
    {{143, 129, 194,  40},   0, 194, {{ 5}, {58, 88}, {40, 70, 100}}},
};
// clang-format on

MessageBox::MessageBox(QWidget* parent, int boxType, int errorType, int strType, QString text, int alignType,
                       int pixelSize)
    : QWidget(parent) {
  InitData();
  SettingMessageBox(boxType, errorType, strType, std::move(text), alignType, pixelSize);
}

void MessageBox::InitData() {
  for (QLabel** label : {&strLabel, &strLabel2, &strLabel3}) {
    *label = new TextLabel(this);
    (*label)->setTextFormat(Qt::PlainText);
  }
  dimBgPath = gMessageBox.DimBg;
  messageAlarmPath = gMessageBox.Alarm;
  messageBoxPath = gMessageBox.Box1;
  messageBox2Path = gMessageBox.Box2;
  messageBox3Path = gMessageBox.Box3;
  btnCancelNormalPath = gMessageBox.Cancel.ReleaseImage;
  btnCancelPressPath = gMessageBox.Cancel.PressImage;
  btnNoNormalPath = gMessageBox.No.ReleaseImage;
  btnNoPressPath = gMessageBox.No.PressImage;
  btnOkNormalPath = gMessageBox.Ok.ReleaseImage;
  btnOkPressPath = gMessageBox.Ok.PressImage;
  btnOk2NormalPath = gMessageBox.Ok2.ReleaseImage;
  btnOk2PressPath = gMessageBox.Ok2.PressImage;
  btnYesNormalPath = gMessageBox.Yes.ReleaseImage;
  btnYesPressPath = gMessageBox.Yes.PressImage;
  btnFrontNormalPath = gMessageBox.Front.ReleaseImage;
  btnRearNormalPath = gMessageBox.Rear.ReleaseImage;
  messageCautionPath = gMessageBox.Caution;
  messageCaution2Path = gMessageBox.Caution2;
  messageErrorPath = gMessageBox.Error;
  messageWarningPath = gMessageBox.Warning;
}

void MessageBox::SettingMessageBox(int boxType, int errorType, int strType, QString text, int alignType,
                                   int pixelSize) {
  qDebug("MessageBox Setting MessageBox");
  for (QLabel* label : {strLabel, strLabel2, strLabel3}) label->clear();
  box_type = boxType;
  error_type = errorType;
  str_type = strType;
  align_type = alignType;
  px = pixelSize;
  PlaceBox();
  PlacePictures();
  PlaceLines(text);
  update();
  qDebug("End Setting MessageBox");
}

MessageBox::Button MessageBox::ButtonAt(int x, int y) {
  if (kLeftArea.contains(x, y)) return Button::Left;
  return kRightArea.contains(x, y) ? Button::Right : Button::None;
}

QList<TouchArea> MessageBox::ButtonAreas() const {
  static constexpr const char* kNames[][2] = {{"yes", "no"}, {"ok", "cancel"}, {"ok", "ok"}, {"front", "rear"}};
  const auto& [left, right] = kNames[box_type - 1];
  return {{kLeftArea, QLatin1String(left)}, {kRightArea, QLatin1String(right)}};
}

void MessageBox::PlaceBox() {
  if (box_type >= 0 && box_type < int(std::size(kLayouts))) mLayout = &kLayouts[box_type];
  if (!mLayout) return;
  setGeometry(mLayout->box);
  const auto& y = mLayout->y[std::clamp(str_type, 0, 2)];
  label_x = label_x2 = label_x3 = mLayout->line_x;
  label_y = y[0];
  label_y2 = y[1];
  label_y3 = y[2];
  label_wid = mLayout->line_width;
  label_hei = kLineHeight;
}

void MessageBox::PlacePictures() {
  mPictures.clear();
  const auto place = [this](QPoint at, const QString& path) { mPictures.append({at, Picture(path)}); };
  if (box_type == 0) place({0, 0}, messageBoxPath);
  if (box_type == 5) place({0, 0}, messageBox3Path);
  if (HasButtons()) place({0, 0}, messageBox2Path);
  setAttribute(Qt::WA_OpaquePaintEvent, !mPictures.isEmpty() && Covers(mPictures.first().picture, size()));
  if (!HasButtons()) return;
  switch (box_type) {
    case 1:
      place(kLeftButton, btnYesNormalPath);
      place(kRightButton, btnNoNormalPath);
      break;
    case 2:
      place(kLeftButton, btnOk2NormalPath);
      place(kRightButton, btnCancelNormalPath);
      break;
    case 3:
      place(kOnlyButton, btnOkNormalPath);
      break;
    default:
      place(kLeftButton, btnFrontNormalPath);
      place(kRightButton, btnRearNormalPath);
  }
  const QString icons[] = {messageAlarmPath, messageCautionPath, messageWarningPath, messageErrorPath};
  if (error_type >= 0 && error_type < int(std::size(icons))) place(kIcon, icons[error_type]);
}

void MessageBox::PlaceLines(const QString& text) {
  sList = str_type == 0 ? QStringList(text) : text.split(u'_');
  if (sList.size() != str_type + 1 || sList.size() > 3) {
    qDebug("String Sep. Error : %d", int(sList.size()));
    return;
  }
  QFont font;
  font.setPixelSize(px);
  px = FittingSize(font, sList, {label_wid, label_hei});
  SetLabel(strLabel, label_x, label_y, label_wid, px, sList[0]);
  if (str_type >= 1) SetLabel(strLabel2, label_x2, label_y2, label_wid, px, sList[1]);
  if (str_type >= 2) SetLabel(strLabel3, label_x3, label_y3, label_wid, px, sList[2]);
}

void MessageBox::SetLabel(QLabel* label, int x, int y, int width, int pixelSize, QString text) {
  text = GetStringByLanguage(text);
  const Color& ink = gColor.PreviewText;
  const QString style =
      QStringLiteral("QLabel {background:transparent;color:rgb(%1,%2,%3);}").arg(ink.r).arg(ink.g).arg(ink.b);
  if (label->styleSheet() != style) label->setStyleSheet(style);
  label->setGeometry(x, y, width, label_hei);
  QFont font;
  font.setPixelSize(pixelSize);
  label->setFont(FittingFont(font, text, width));
  label->setText(text);
  if (align_type == 2) label->setAlignment(Qt::AlignHCenter | Qt::AlignVCenter);
  if (align_type == 1) label->setAlignment(Qt::AlignLeft | Qt::AlignVCenter);
}

void MessageBox::paintEvent(QPaintEvent*) {
  qDebug("paint event MessageBox");
  QPainter painter(this);
  for (const Placed& placed : std::as_const(mPictures)) painter.drawPixmap(placed.at, placed.picture);
}
