#include "gui/settings/config.h"

#include <QTextCodec>

#include "gui/base/devicepath.h"

QString imagePath = QLatin1String(device::kImages);
QString iniPath = QLatin1String(device::kIniFolder);
QString calFile = QLatin1String(device::kPointerCalibration);
QString nullStr;
QString gLanguage;
QString gLogo;
Font_Config gFont;
Lcd_Config gLcd;
Color_Config gColor;
Preview_Config gPreview;
Mode_Config gPopMenu;

namespace {
QString PathOf(const char* picture) {
  return imagePath + QLatin1String(picture);
}
}  // namespace

void GetSysConfig() {
  gLanguage = QStringLiteral("korean");
  gColor = {};
  gColor.Trans = {255, 0, 8};
  gColor.Bg = {38, 34, 35};
  gColor.PreviewText = {255, 255, 255};
  gFont.Family = QStringLiteral("SeoulNamsan");
  gFont.Size = {19, 18, 22, 18};
  gLcd = {480, 320};
  gLogo = PathOf("bg/logo.bmp");
}

void GetPreviewConfig() {
  Status_Config& status = gPreview.Status;
  status.View.Front = PathOf("preview/hotkey_view_front_normal.bmp");
  status.View.Rear = PathOf("preview/hotkey_view_rear_normal.bmp");
  status.View.Pip = PathOf("preview/hotkey_view_all_normal.bmp");
  status.Mic.On = PathOf("preview/hotkey_mic_on_normal.bmp");
  status.Mic.Off = PathOf("preview/hotkey_mic_off_normal.bmp");
  status.rearCamRecording.On = PathOf("preview/hotkey_rearcam_on_normal.bmp");
  status.rearCamRecording.Off = PathOf("preview/hotkey_rearcam_off_normal.bmp");
  status.rearCamRecording.On_dis = PathOf("preview/hotkey_rearcam_on_dis.bmp");
  status.rearCamRecording.Off_dis = PathOf("preview/hotkey_rearcam_off_dis.bmp");
  status.mirror.mirroring = PathOf("preview/hotkey_mirroring_1_normal.bmp");
  status.mirror.def = PathOf("preview/hotkey_mirroring_2_normal.bmp");
  status.movingPip.leftTop = PathOf("preview/hotkey_pip_1_normal.bmp");
  status.movingPip.leftBottom = PathOf("preview/hotkey_pip_2_normal.bmp");
  status.movingPip.rightTop = PathOf("preview/hotkey_pip_3_normal.bmp");
  status.movingPip.rightBottom = PathOf("preview/hotkey_pip_4_normal.bmp");
  status.protectFile.normalImage = PathOf("preview/hotkey_detect_file_on_normal.bmp");
  status.protectFile.disableImage = PathOf("preview/hotkey_detect_file_off_normal.bmp");
  gPreview.Time.Bg = PathOf("preview/status_time_bg.bmp");
  gPreview.GpsSpeed.Bg = PathOf("preview/status_speed_bg.bmp");
  gPreview.Voltage.Bg = PathOf("preview/status_voltage_bg.bmp");
  Image_Config& menu = gPopMenu.Menu.Image;
  menu.NumOfImage = 1;
  menu.Image[0].ReleaseImage = PathOf("preview/hotkey_menu_normal.bmp");
}

void GetConfig() {
  GetSysConfig();
  GetPreviewConfig();
}

QString GetStringByLanguage(QString text) {
  const QByteArray bytes = text.toLatin1();
  if (QString::fromLatin1(bytes) != text) return text;  // it is decoded already
  return QTextCodec::codecForName("UTF-8")->toUnicode(bytes);
}
