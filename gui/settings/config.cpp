#include "gui/settings/config.h"

#include <QTextCodec>
#include <initializer_list>

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
Main_Menu_Config gMainMenu;
Main_Menu2_Config gMainMenu2;
NumberSet_Config gNumberSet;
File_List_Config gFileList;
Led_File_List_Config gLedFileList;
Player_Config gPlayer;
TimeSet_Config gTimeSet;
MessageBox_Config gMessageBox;
Voltage_Compensation_config gVoltageCompensation;
Front_Led_Config gFrontLed;
File_Delete_Method_Comfig gFileDeleteMethod;
Lcd_Setting_Config gLcdSetting;
Driving_Setting_Config gDrivingSetting;
Audio_Setting_Config gAudioSetting;
Parking_Setting_Config gParkingSetting;
Sd_Management_Config gSdManagementConfig;
Blackbox_Management_Config gBlackboxManagementConfig;
LowVol_Detection_Setting_Config gLowVolDetectionSettingConfig;
Power_Cut_Setting_Config gPowerCutSettingConfig;

namespace {
QString PathOf(const char* picture) {
  return imagePath + QLatin1String(picture);
}

void SetImages(Image_Config& option, std::initializer_list<const char*> pictures) {
  option.NumOfImage = 0;
  for (const char* picture : pictures) option.Image[option.NumOfImage++].ReleaseImage = PathOf(picture);
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

void GetMainMenuConfig() {
  gMainMenu.Title = PathOf("mainmenu/title.bmp");
  gMainMenu.PlayList.ReleaseImage = PathOf("mainmenu/play_list_normal.bmp");
  gMainMenu.FileDelete.ReleaseImage = PathOf("mainmenu/filedelete_setting_normal.bmp");
  gMainMenu.SdManagement.ReleaseImage = PathOf("mainmenu/sd_management_normal.bmp");
  gMainMenu.DrivingSetting.ReleaseImage = PathOf("mainmenu/driving_setting_normal.bmp");
  gMainMenu.ParkingSetting.ReleaseImage = PathOf("mainmenu/parking_setting_normal.bmp");
  gMainMenu.BlackboxManagement.ReleaseImage = PathOf("mainmenu/black box_management_normal.bmp");
}

void GetMainMenu2Config() {
  gMainMenu2.Title = PathOf("mainmenu2/title.bmp");
  gMainMenu2.AudioSetting.ReleaseImage = PathOf("mainmenu2/audio_setting_normal.bmp");
  gMainMenu2.FileDelete.ReleaseImage = PathOf("mainmenu2/filedelete_setting_normal.bmp");
  gMainMenu2.TimeSetting.ReleaseImage = PathOf("mainmenu2/time_setting_normal.bmp");
  gMainMenu2.TouchCompensation.ReleaseImage = PathOf("mainmenu2/touch_compensation_normal.bmp");
  gMainMenu2.MotionSetting.ReleaseImage = PathOf("mainmenu2/motion_setting_normal.bmp");
  gMainMenu2.VoltageCompensation.ReleaseImage = PathOf("mainmenu2/voltage_compensation_normal.bmp");
  gMainMenu2.VoltageCompensation.DisableImage = PathOf("mainmenu2/voltage_compensation_dis.bmp");
}

void GetNumSetConfig() {
  gNumberSet.Title = PathOf("numberset/title.bmp");
  gNumberSet.InputBg = PathOf("numberset/input_bg.bmp");
  gNumberSet.Save.ReleaseImage = PathOf("numberset/save_normal.bmp");
  SetImages(gNumberSet.Keypad,
            {"numberset/keypad_0_normal.bmp", "numberset/keypad_1_normal.bmp", "numberset/keypad_2_normal.bmp",
             "numberset/keypad_3_normal.bmp", "numberset/keypad_4_normal.bmp", "numberset/keypad_5_normal.bmp",
             "numberset/keypad_6_normal.bmp", "numberset/keypad_7_normal.bmp", "numberset/keypad_8_normal.bmp",
             "numberset/keypad_9_normal.bmp"});
  gNumberSet.Delete.ReleaseImage = PathOf("numberset/keypad_delete_normal.bmp");
}

void GetFileListConfig() {
  SetImages(gFileList.Kind,
            {"filelist/title_entire_normal.bmp", "filelist/title_normal_normal.bmp",
             "filelist/title_parking_normal.bmp", "filelist/title_event_normal.bmp", "filelist/title_ndf_normal.bmp"});
  SetImages(gFileList.Camera, {"filelist/front_file_normal.bmp", "filelist/rear_file_normal.bmp"});
  SetImages(gFileList.Order, {"filelist/ascending_order_normal.bmp", "filelist/descending_order_normal.bmp"});
  gFileList.PageUp.ReleaseImage = PathOf("filelist/page_scrollup_normal.bmp");
  gFileList.PageUp.DisableImage = PathOf("filelist/page_scrollup_dis.bmp");
  gFileList.FileUp.ReleaseImage = PathOf("filelist/file_scrollup_normal.bmp");
  gFileList.FileUp.DisableImage = PathOf("filelist/file_scrollup_dis.bmp");
  gFileList.FileDown.ReleaseImage = PathOf("filelist/file_scrolldown_normal.bmp");
  gFileList.FileDown.DisableImage = PathOf("filelist/file_scrolldown_dis.bmp");
  gFileList.PageDown.ReleaseImage = PathOf("filelist/page_scrolldown_normal.bmp");
  gFileList.PageDown.DisableImage = PathOf("filelist/page_scrolldown_dis.bmp");
  gFileList.PageNumberBg = PathOf("filelist/page_number_bg.bmp");
  gFileList.ItemBg = PathOf("filelist/list_item_bg_normal.bmp");
  gFileList.Normal = PathOf("filelist/normal_file_normal.bmp");
  gFileList.NormalTimeError = PathOf("filelist/normal_file_time_error_normal.bmp");
  gFileList.Parking = PathOf("filelist/parking_file_normal.bmp");
  gFileList.ParkingEvent = PathOf("filelist/parking_file_event_normal.bmp");
  gFileList.ParkingMove = PathOf("filelist/parking_file_move_normal.bmp");
  gFileList.ParkingLowVoltage = PathOf("filelist/parking_file_lowvoltage_normal.bmp");
  gFileList.ParkingTempIntercept = PathOf("filelist/parking_file_temp_intercept_normal.bmp");
  gFileList.ParkingTimeError = PathOf("filelist/parking_file_time_error_normal.bmp");
  gFileList.Event = PathOf("filelist/event_file_normal.bmp");
  gFileList.EventLowVoltage = PathOf("filelist/event_file_lowvoltage_normal.bmp");
  gFileList.EventTimeError = PathOf("filelist/event_file_time_error_normal.bmp");
  gFileList.Ndf = PathOf("filelist/ndf_file_normal.bmp");
  gFileList.RecStop = PathOf("filelist/rec_file_stop_normal.bmp");
}

void GetLedFileListConfig() {
  gLedFileList.Title = PathOf("filelist/title_ledlist_normal.bmp");
  gLedFileList.Delete.ReleaseImage = PathOf("filelist/list_delete_normal.bmp");
  gLedFileList.Save.ReleaseImage = PathOf("filelist/list_save_normal.bmp");
  gLedFileList.Checked = PathOf("filelist/list_checked_normal.bmp");
  gLedFileList.Unchecked = PathOf("filelist/list_unchecked_normal.bmp");
  SetImages(gLedFileList.Order,
            {"filelist/orderlist_sign_basic_normal.bmp", "filelist/orderlist_sign_sequential_normal.bmp",
             "filelist/orderlist_sign_random_normal.bmp"});
  gLedFileList.Blank = PathOf("filelist/blank_file_normal.bmp");
}

void GetPlayerConfig() {
  gPlayer.Home.ReleaseImage = PathOf("player/home_normal.bmp");
  gPlayer.Prev.ReleaseImage = PathOf("player/prev_normal.bmp");
  gPlayer.Preview.ReleaseImage = PathOf("player/preview_normal.bmp");
  gPlayer.Play.ReleaseImage = PathOf("player/play_normal.bmp");
  gPlayer.Pause.ReleaseImage = PathOf("player/pause_normal.bmp");
  gPlayer.Next.ReleaseImage = PathOf("player/next_normal.bmp");
  gPlayer.Back.ReleaseImage = PathOf("player/back_normal.bmp");
  gPlayer.CameraFront.ReleaseImage = PathOf("player/camera_front_normal.bmp");
  gPlayer.CameraRear.ReleaseImage = PathOf("player/camera_rear_normal.bmp");
  gPlayer.BarBg = PathOf("player/bar_bg.bmp");
  gPlayer.FileNameBg = PathOf("player/filename_bg.bmp");
  gPlayer.PlayTimeBg = PathOf("player/playtime_bg.bmp");
}

void GetTimeSetConfig() {
  gTimeSet.Title = PathOf("timesetting/title.bmp");
  gTimeSet.Confirm.ReleaseImage = PathOf("timesetting/confirm_normal.bmp");
  gTimeSet.Bg = PathOf("timesetting/bg.bmp");
  gTimeSet.Year.ReleaseImage = PathOf("timesetting/field_year_normal.bmp");
  gTimeSet.Year.PressImage = PathOf("timesetting/field_year_select.bmp");
  gTimeSet.AmPm.ReleaseImage = PathOf("timesetting/field_ampm_normal.bmp");
  gTimeSet.AmPm.PressImage = PathOf("timesetting/field_ampm_select.bmp");
  gTimeSet.Number.ReleaseImage = PathOf("timesetting/field_number_normal.bmp");
  gTimeSet.Number.PressImage = PathOf("timesetting/field_number_select.bmp");
  gTimeSet.Gmt.ReleaseImage = PathOf("timesetting/field_gmt_normal.bmp");
  gTimeSet.Gmt.PressImage = PathOf("timesetting/field_gmt_select.bmp");
  gTimeSet.Down.ReleaseImage = PathOf("timesetting/down_normal.bmp");
  gTimeSet.Up.ReleaseImage = PathOf("timesetting/up_normal.bmp");
}

void GetMessageBoxConfig() {
  gMessageBox.DimBg = PathOf("messagebox/dim.bmp");
  gMessageBox.Box1 = PathOf("messagebox/message_box1.bmp");
  gMessageBox.Box2 = PathOf("messagebox/message_box2.bmp");
  gMessageBox.Box3 = PathOf("messagebox/message_box3.bmp");
  gMessageBox.Alarm = PathOf("messagebox/message_alarm.bmp");
  gMessageBox.Caution = PathOf("messagebox/message_caution.bmp");
  gMessageBox.Caution2 = PathOf("messagebox/message_caution2.bmp");
  gMessageBox.Warning = PathOf("messagebox/message_warning.bmp");
  gMessageBox.Error = PathOf("messagebox/message_error.bmp");
  gMessageBox.Yes.ReleaseImage = PathOf("messagebox/message_button_yes2_normal.bmp");
  gMessageBox.Yes.PressImage = PathOf("messagebox/message_button_yes2_press.bmp");
  gMessageBox.No.ReleaseImage = PathOf("messagebox/message_button_no_normal.bmp");
  gMessageBox.No.PressImage = PathOf("messagebox/message_button_no_press.bmp");
  gMessageBox.Ok.ReleaseImage = PathOf("messagebox/message_button_ok_normal.bmp");
  gMessageBox.Ok.PressImage = PathOf("messagebox/message_button_ok_press.bmp");
  gMessageBox.Ok2.ReleaseImage = PathOf("messagebox/message_button_ok2_normal.bmp");
  gMessageBox.Ok2.PressImage = PathOf("messagebox/message_button_ok2_press.bmp");
  gMessageBox.Cancel.ReleaseImage = PathOf("messagebox/message_button_cancel_normal.bmp");
  gMessageBox.Cancel.PressImage = PathOf("messagebox/message_button_cancel_press.bmp");
  gMessageBox.Front.ReleaseImage = PathOf("messagebox/message_button_front_normal.bmp");
  gMessageBox.Rear.ReleaseImage = PathOf("messagebox/message_button_rear_normal.bmp");
}

void GetVoltageCompensationConfig() {
  gVoltageCompensation.Title = PathOf("voltagecompensation/title.bmp");
  gVoltageCompensation.Bg = PathOf("voltagecompensation/bg.bmp");
  gVoltageCompensation.Before.ReleaseImage = PathOf("voltagecompensation/before_normal.bmp");
  gVoltageCompensation.Before.DisableImage = PathOf("voltagecompensation/before_dis.bmp");
  gVoltageCompensation.After.ReleaseImage = PathOf("voltagecompensation/after_normal.bmp");
  gVoltageCompensation.After.DisableImage = PathOf("voltagecompensation/after_dis.bmp");
  gVoltageCompensation.ProgressBg = PathOf("voltagecompensation/progress_bg.bmp");
  gVoltageCompensation.Progress = PathOf("voltagecompensation/progress_ena.bmp");
}

void GetFrontLedConfig() {
  gFrontLed.Title = PathOf("ledsetting/title.bmp");
  gFrontLed.NumberSave.ReleaseImage = PathOf("ledsetting/led_number_save_normal.bmp");
  gFrontLed.FileList.ReleaseImage = PathOf("ledsetting/led_filelist_normal.bmp");
  SetImages(gFrontLed.Mode, {"ledsetting/led_setting_off_normal.bmp", "ledsetting/led_setting_sequential_normal.bmp",
                             "ledsetting/led_setting_random_normal.bmp"});
}

void GetFileDeleteMethodConfig() {
  gFileDeleteMethod.Title = PathOf("filedeletsetting/title.bmp");
  SetImages(gFileDeleteMethod.Method,
            {"filedeletsetting/delete_type_normal.bmp", "filedeletsetting/delete_time_normal.bmp"});
  gFileDeleteMethod.Memory.ReleaseImage = PathOf("filedeletsetting/delete_memory_normal.bmp");
  gFileDeleteMethod.Memory.DisableImage = PathOf("filedeletsetting/delete_memory_disabled.bmp");
  SetImages(
      gFileDeleteMethod.ProtectFile,
      {"filedeletsetting/protectfile_setting_0_normal.bmp", "filedeletsetting/protectfile_setting_10_normal.bmp",
       "filedeletsetting/protectfile_setting_20_normal.bmp", "filedeletsetting/protectfile_setting_30_normal.bmp"});
}

void GetLcdSettingConfig() {
  gLcdSetting.Title = PathOf("lcdsetting/title.bmp");
  SetImages(gLcdSetting.Second, {"lcdsetting/lcd_second_10_normal.bmp", "lcdsetting/lcd_second_30_normal.bmp",
                                 "lcdsetting/lcd_second_60_normal.bmp", "lcdsetting/lcd_second_continuous_normal.bmp"});
  SetImages(gLcdSetting.Brightness,
            {"lcdsetting/lcd_brightness_darkly_normal.bmp", "lcdsetting/lcd_brightness_common_normal.bmp",
             "lcdsetting/lcd_brightness_brightly_normal.bmp", "lcdsetting/lcd_brightness_auto_normal.bmp"});
  SetImages(gLcdSetting.ScreenSaver,
            {"lcdsetting/screensaver_off_normal.bmp", "lcdsetting/screensaver_on_a_normal.bmp",
             "lcdsetting/screensaver_on_b_normal.bmp", "lcdsetting/screensaver_on_c_normal.bmp"});
}

void GetDrivingSettingConfig() {
  gDrivingSetting.Title = PathOf("drivingsetting/title.bmp");
  SetImages(gDrivingSetting.Resolution,
            {"drivingsetting/resolution_fhd_normal.bmp", "drivingsetting/resolution_hd_normal.bmp"});
  SetImages(gDrivingSetting.Frame, {"drivingsetting/frame_30_normal.bmp", "drivingsetting/frame_15_normal.bmp"});
  SetImages(gDrivingSetting.Brightness,
            {"drivingsetting/brightness_front_common_normal.bmp", "drivingsetting/brightness_front_brightly_normal.bmp",
             "drivingsetting/brightness_front_suv_normal.bmp"});
  SetImages(gDrivingSetting.Shock,
            {"drivingsetting/driving_event_off_normal.bmp", "drivingsetting/driving_event_insensitive_normal.bmp",
             "drivingsetting/driving_event_common_normal.bmp", "drivingsetting/driving_event_sensitive_normal.bmp"});
  SetImages(gDrivingSetting.SpeedDisplay,
            {"drivingsetting/speed_display_on_normal.bmp", "drivingsetting/speed_display_off_normal.bmp"});
}

void GetAudioSettingConfig() {
  gAudioSetting.Title = PathOf("audiosetting/title.bmp");
  SetImages(gAudioSetting.Voice, {"audiosetting/voice_low_normal.bmp", "audiosetting/voice_common_normal.bmp",
                                  "audiosetting/voice_high_normal.bmp", "audiosetting/voice_off_normal.bmp"});
  SetImages(gAudioSetting.Mic, {"audiosetting/mic_off_normal.bmp", "audiosetting/mic_low_normal.bmp",
                                "audiosetting/mic_common_normal.bmp", "audiosetting/mic_high_normal.bmp"});
  SetImages(gAudioSetting.EventAlarm,
            {"audiosetting/event_alarm_off_normal.bmp", "audiosetting/event_alarm_on_normal.bmp"});
  SetImages(gAudioSetting.AccidentBlackspot, {"audiosetting/accident_blackspot_alarm_off_normal.bmp",
                                              "audiosetting/accident_blackspot_alarm_on_normal.bmp"});
}

void GetParkingSettingConfig() {
  gParkingSetting.Title = PathOf("parkingsetting/title.bmp");
  SetImages(gParkingSetting.Mode,
            {"parkingsetting/parking_mode_off_normal.bmp", "parkingsetting/parking_mode_event_normal.bmp",
             "parkingsetting/parking_mode_motion_normal.bmp"});
  SetImages(gParkingSetting.Shock,
            {"parkingsetting/parking_event_insensitive_normal.bmp", "parkingsetting/parking_event_common_normal.bmp",
             "parkingsetting/parking_event_sensitive_normal.bmp"});
  SetImages(gParkingSetting.Motion,
            {"parkingsetting/parking_motion_insensitive_normal.bmp", "parkingsetting/parking_motion_common_normal.bmp",
             "parkingsetting/parking_motion_sensitive_normal.bmp"});
  gParkingSetting.LowVol.ReleaseImage = PathOf("parkingsetting/low_vol_setting_normal.bmp");
  gParkingSetting.MotionSetting.ReleaseImage = PathOf("parkingsetting/motion_setting_normal.bmp");
  SetImages(gParkingSetting.Entry,
            {"parkingsetting/parking_entry_insensitive_normal.bmp", "parkingsetting/parking_entry_common_normal.bmp",
             "parkingsetting/parking_entry_sensitive_normal.bmp"});
  gParkingSetting.RecordingInfo.ReleaseImage = PathOf("parkingsetting/parking_recording_info_normal.bmp");
  gParkingSetting.RecordingInfo.DisableImage = PathOf("parkingsetting/parking_recording_info_dis.bmp");
}

void GetSdManagementConfig() {
  gSdManagementConfig.Title = PathOf("sdmanagement/title.bmp");
  gSdManagementConfig.Format.ReleaseImage = PathOf("sdmanagement/sd_format_nomal_2.bmp");
  gSdManagementConfig.Check.ReleaseImage = PathOf("sdmanagement/sd_check_nomal_2.bmp");
}

void GetBlackboxManagementConfig() {
  gBlackboxManagementConfig.Title = PathOf("blackboxmanagement/title.bmp");
  gBlackboxManagementConfig.LcdSetting.ReleaseImage = PathOf("blackboxmanagement/lcd_setting_normal.bmp");
  gBlackboxManagementConfig.LedSetting.ReleaseImage = PathOf("blackboxmanagement/led_setting_normal.bmp");
  gBlackboxManagementConfig.TimeSetting.ReleaseImage = PathOf("blackboxmanagement/time_setting_normal.bmp");
  gBlackboxManagementConfig.TouchCompensation.ReleaseImage = PathOf("blackboxmanagement/touch_compensation_normal.bmp");
  gBlackboxManagementConfig.AudioSetting.ReleaseImage = PathOf("blackboxmanagement/audio_setting_normal.bmp");
  gBlackboxManagementConfig.Initialize.ReleaseImage = PathOf("blackboxmanagement/initialize_normal.bmp");
}

void GetLowVolDetectionSettingConfig() {
  gLowVolDetectionSettingConfig.Title = PathOf("lowvoldetectionsetting/title.bmp");
  gLowVolDetectionSettingConfig.PowerCut.ReleaseImage = PathOf("lowvoldetectionsetting/power_cut.bmp");
  SetImages(gLowVolDetectionSettingConfig.CutoffTime,
            {"lowvoldetectionsetting/cutoff_time_off_normal.bmp", "lowvoldetectionsetting/cutoff_time_12_normal.bmp",
             "lowvoldetectionsetting/cutoff_time_24_normal.bmp", "lowvoldetectionsetting/cutoff_time_48_normal.bmp",
             "lowvoldetectionsetting/cutoff_time_03_normal.bmp", "lowvoldetectionsetting/cutoff_time_06_normal.bmp"});
  gLowVolDetectionSettingConfig.VolCompensation.ReleaseImage = PathOf("lowvoldetectionsetting/vol_compensation.bmp");
  gLowVolDetectionSettingConfig.VolCompensation.DisableImage =
      PathOf("lowvoldetectionsetting/vol_compensation_dis.bmp");
}

void GetPowerCutSettingConfig() {
  gPowerCutSettingConfig.Title = PathOf("powercutsetting/title.bmp");
  gPowerCutSettingConfig.Bg = PathOf("powercutsetting/bg.bmp");
  gPowerCutSettingConfig.Recommended.ReleaseImage = PathOf("powercutsetting/button_1.bmp");
  gPowerCutSettingConfig.Recommended.DisableImage = PathOf("powercutsetting/button_off_1.bmp");
  gPowerCutSettingConfig.Manual.ReleaseImage = PathOf("powercutsetting/button_2.bmp");
  gPowerCutSettingConfig.Manual.DisableImage = PathOf("powercutsetting/button_off_2.bmp");
}

void GetConfig() {
  GetSysConfig();
  GetPreviewConfig();
  GetMainMenuConfig();
  GetMainMenu2Config();
  GetNumSetConfig();
  GetFileListConfig();
  GetLedFileListConfig();
  GetPlayerConfig();
  GetTimeSetConfig();
  GetMessageBoxConfig();
  GetVoltageCompensationConfig();
  GetFrontLedConfig();
  GetFileDeleteMethodConfig();
  GetLcdSettingConfig();
  GetDrivingSettingConfig();
  GetAudioSettingConfig();
  GetParkingSettingConfig();
  GetSdManagementConfig();
  GetBlackboxManagementConfig();
  GetLowVolDetectionSettingConfig();
  GetPowerCutSettingConfig();
}

QString GetStringByLanguage(QString text) {
  const QByteArray bytes = text.toLatin1();
  if (QString::fromLatin1(bytes) != text) return text;  // it is decoded already
  QTextCodec::ConverterState state;
  const QString decoded = QTextCodec::codecForName("UTF-8")->toUnicode(bytes.constData(), int(bytes.size()), &state);
  return state.invalidChars == 0 && state.remainingChars == 0 ? decoded : text;  // letters such as ä are no bytes
}
