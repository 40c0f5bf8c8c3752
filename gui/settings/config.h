#pragma once

#include <QString>

/// The layout records: what the screens draw themselves from. GetConfig() fills them once, before the window is made.
/// Paths are those of the camera; sizes are points. GUI thread.

struct Color {
  int r, g, b;
};
struct Color_Config {
  Color Trans;  ///< the key colour: video shows through where it is painted
  Color Bg, PreviewText, ItemNormal, ItemSelect;
};
struct FontSize_Config {
  int Default, PreviewUser, PreviewDebug, List;
};
struct Font_Config {
  QString Family;
  FontSize_Config Size;
};
struct Lcd_Config {
  int Width, Height;
};
struct Button_Config {
  QString PressImage, ReleaseImage, DisableImage;
};
struct Text_Config {
  int Size = 0;
  QString String;
  QString Bg;
};
struct Image_Config {
  int NumOfImage = 0;
  QString ValueKey;
  int Value = 0;
  Button_Config Image[20];
};
struct Menu_Config;
struct Item_Config {
  Image_Config Image;
  Text_Config Text;
  QString SubId, Func;
  Menu_Config* SubMenu = nullptr;
};
struct Mode_Config {
  Item_Config Front, Rear, Mosaic, Pip, LcdOff, Menu;
};
struct ViewStatus_Config {
  QString Front, Rear, Mosaic, Pip;
};
struct MicStatus_Config {
  QString On, Off;
};
struct Mirroring_Config {
  QString def, mirroring;
};
struct MovingPip_Config {
  QString rightBottom, rightTop, leftTop, leftBottom;
};
struct Protect_File {
  QString normalImage, disableImage, pressImage;
};
struct RearCamRecording_Config {
  QString On, Off, On_dis, Off_dis;
};
struct Status_Config {
  QString Bg;
  ViewStatus_Config View;
  MicStatus_Config Mic;
  Mirroring_Config mirror;
  MovingPip_Config movingPip;
  Protect_File protectFile;
  RearCamRecording_Config rearCamRecording;
};
struct Date_Config {
  int Year, Month, Day, Apm, Hour, Minute, Second, gmt;
};
struct Time_Config {
  QString Bg;
  Text_Config Am, Pm;
};
struct Voltage_Config {
  QString Bg;
  Text_Config V;
};
struct Gps_Speed_Config {
  QString Bg;
  Text_Config speed;
};
struct Preview_Config {
  Status_Config Status;
  Time_Config Time;
  Voltage_Config Voltage;
  Gps_Speed_Config GpsSpeed;
};

extern QString imagePath;  ///< in front of every picture path of the records
extern QString iniPath;
extern QString calFile;
extern QString nullStr;
extern QString gLanguage;
extern QString gLogo;
extern Font_Config gFont;
extern Lcd_Config gLcd;
extern Color_Config gColor;
extern Preview_Config gPreview;
extern Mode_Config gPopMenu;

void GetConfig();
void GetSysConfig();
void GetPreviewConfig();

/// A text made of the bytes of UTF-8, one character each, as the text it means; any other text as it is.
QString GetStringByLanguage(QString text);
