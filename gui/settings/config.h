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
struct Language_Config {
  QString Language;
};
struct Logo_Config {
  QString Logo;
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
struct Title_Config {
  QString Image, LogoImage;
  Text_Config Text;
};
struct SoftKey_Config {
  QString LeftKey, LeftKey_press, RightKey, RightKey_press, DisableLeftKey, DisableRightKey;
};
struct Menu_Config {
  QString Id;
  int Type = 0;
  Menu_Config* ParentMenu = nullptr;
  Title_Config Title;
  SoftKey_Config SoftKey;
  int NumOfItem = 0;
  QString ItemBg;
  Item_Config Item[10];
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
struct Capture_Config {
  QString normalImage, pressImage;
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
  Capture_Config capture;
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

/// The records of the screens: a key is its Button_Config, an option the pictures of its values, in order.

/// The main menu.
struct Main_Menu_Config {
  QString Title;
  Button_Config PlayList, FileDelete, SdManagement, DrivingSetting, ParkingSetting, BlackboxManagement;
};
/// The second menu page.
struct Main_Menu2_Config {
  QString Title;
  Button_Config AudioSetting, FileDelete, TimeSetting, TouchCompensation, MotionSetting, VoltageCompensation;
};
/// The number entry.
struct NumberSet_Config {
  QString Title, InputBg;
  Button_Config Save, Delete;
  Image_Config Keypad;
};
/// The recorded file list; Order, Camera and Kind by their value.
struct File_List_Config {
  QString PageNumberBg, ItemBg, Normal, NormalTimeError, Parking, ParkingEvent, ParkingMove, ParkingLowVoltage,
      ParkingTempIntercept, ParkingTimeError, Event, EventLowVoltage, EventTimeError, Ndf, RecStop;
  Button_Config PageUp, FileUp, FileDown, PageDown;
  Image_Config Kind, Camera, Order;
};
/// The LED list; Order by the LED mode.
struct Led_File_List_Config {
  QString Title, Checked, Unchecked, Blank;
  Button_Config Delete, Save;
  Image_Config Order;
};
/// The player.
struct Player_Config {
  QString BarBg, FileNameBg, PlayTimeBg;
  Button_Config Home, Prev, Preview, Play, Pause, Next, Back, CameraFront, CameraRear;
};
/// The time setting; pressed is the selected field.
struct TimeSet_Config {
  QString Title, Bg;
  Button_Config Confirm, Year, AmPm, Number, Gmt, Down, Up;
};
/// The message boxes.
struct MessageBox_Config {
  QString DimBg, Box1, Box2, Box3, Alarm, Caution, Caution2, Warning, Error;
  Button_Config Yes, No, Ok, Ok2, Cancel, Front, Rear;
};
/// The voltage compensation.
struct Voltage_Compensation_config {
  QString Title, Bg, ProgressBg, Progress;
  Button_Config Before, After;
};
/// The front LED; Mode by the LED mode.
struct Front_Led_Config {
  QString Title;
  Button_Config NumberSave, FileList;
  Image_Config Mode;
};
/// The file delete method; Method and ProtectFile by their value.
struct File_Delete_Method_Comfig {
  QString Title;
  Button_Config Memory;
  Image_Config Method, ProtectFile;
};
/// The LCD setting; Second by lcd_auto_off less one, the others by their value.
struct Lcd_Setting_Config {
  QString Title;
  Image_Config Second, Brightness, ScreenSaver;
};
/// The driving setting; each by its value.
struct Driving_Setting_Config {
  QString Title;
  Image_Config Resolution, Frame, Brightness, Shock, SpeedDisplay;
};
/// The audio setting; each by its value.
struct Audio_Setting_Config {
  QString Title;
  Image_Config Voice, Mic, EventAlarm, AccidentBlackspot;
};
/// The parking setting; each by its value.
struct Parking_Setting_Config {
  QString Title;
  Button_Config LowVol, MotionSetting, RecordingInfo;
  Image_Config Mode, Shock, Motion, Entry;
};
/// The SD management.
struct Sd_Management_Config {
  QString Title;
  Button_Config Format, Check;
};
/// The recorder management menu.
struct Blackbox_Management_Config {
  QString Title;
  Button_Config LcdSetting, LedSetting, TimeSetting, TouchCompensation, AudioSetting, Initialize;
};
/// The low-voltage detection; CutoffTime by its value.
struct LowVol_Detection_Setting_Config {
  QString Title;
  Button_Config PowerCut, VolCompensation;
  Image_Config CutoffTime;
};
/// The power cut setting; released is the chosen value, disabled the one not chosen.
struct Power_Cut_Setting_Config {
  QString Title, Bg;
  Button_Config Recommended, Manual;
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
extern Main_Menu_Config gMainMenu;
extern Main_Menu2_Config gMainMenu2;
extern NumberSet_Config gNumberSet;
extern File_List_Config gFileList;
extern Led_File_List_Config gLedFileList;
extern Player_Config gPlayer;
extern TimeSet_Config gTimeSet;
extern MessageBox_Config gMessageBox;
extern Voltage_Compensation_config gVoltageCompensation;
extern Front_Led_Config gFrontLed;
extern File_Delete_Method_Comfig gFileDeleteMethod;
extern Lcd_Setting_Config gLcdSetting;
extern Driving_Setting_Config gDrivingSetting;
extern Audio_Setting_Config gAudioSetting;
extern Parking_Setting_Config gParkingSetting;
extern Sd_Management_Config gSdManagementConfig;
extern Blackbox_Management_Config gBlackboxManagementConfig;
extern LowVol_Detection_Setting_Config gLowVolDetectionSettingConfig;
extern Power_Cut_Setting_Config gPowerCutSettingConfig;

/// Fills every record, in this order.
void GetConfig();
void GetSysConfig();
void GetPreviewConfig();
void GetMainMenuConfig();
void GetMainMenu2Config();
void GetNumSetConfig();
void GetFileListConfig();
void GetLedFileListConfig();
void GetPlayerConfig();
void GetTimeSetConfig();
void GetMessageBoxConfig();
void GetVoltageCompensationConfig();
void GetFrontLedConfig();
void GetFileDeleteMethodConfig();
void GetLcdSettingConfig();
void GetDrivingSettingConfig();
void GetAudioSettingConfig();
void GetParkingSettingConfig();
void GetSdManagementConfig();
void GetBlackboxManagementConfig();
void GetLowVolDetectionSettingConfig();
void GetPowerCutSettingConfig();

/// A text made of the bytes of UTF-8, one character each, as the text it means; any other text as it is.
QString GetStringByLanguage(QString text);
