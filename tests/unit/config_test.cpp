// The layout records.
#include "gui/settings/config.h"

#include <QFile>
#include <QTest>

class ConfigTest : public QObject {
  Q_OBJECT

private:
  static bool IsPicture(const QString& path) {
    return path.startsWith(QStringLiteral("/opt/gui/images/")) &&
           QFile::exists(QStringLiteral(BINARY_DIR "/pictures") + path);
  }
  static void CheckOption(const Image_Config& option, int count) {
    QCOMPARE(option.NumOfImage, count);
    for (int i = 0; i < count; ++i) QVERIFY(IsPicture(option.Image[i].ReleaseImage));
    QVERIFY(option.Image[count].ReleaseImage.isEmpty());
  }

private slots:
  void initTestCase() {
    QCOMPARE(imagePath, QStringLiteral("/opt/gui/images/"));
    QCOMPARE(iniPath, QStringLiteral("/opt/gui/ini"));
    QCOMPARE(calFile, QStringLiteral("/mnt/nand/pointercal"));
    QVERIFY(nullStr.isEmpty());
    GetConfig();
  }

  void theSystem() {
    QCOMPARE(gLanguage, QStringLiteral("korean"));
    QCOMPARE(gFont.Family, QStringLiteral("SeoulNamsan"));
    QCOMPARE(gFont.Size.Default, 19);
    QCOMPARE(gFont.Size.PreviewUser, 18);
    QCOMPARE(gFont.Size.PreviewDebug, 22);
    QCOMPARE(gFont.Size.List, 18);
    QCOMPARE(gLcd.Width, 480);
    QCOMPARE(gLcd.Height, 320);
    const auto is = [](const Color& colour, int r, int g, int b) {
      return colour.r == r && colour.g == g && colour.b == b;
    };
    QVERIFY(is(gColor.Trans, 255, 0, 8));
    QVERIFY(is(gColor.Bg, 38, 34, 35));
    QVERIFY(is(gColor.PreviewText, 255, 255, 255));
    QCOMPARE(gLogo, QStringLiteral("/opt/gui/images/bg/logo.bmp"));
  }

  void thePreview() {
    const Status_Config& status = gPreview.Status;
    for (const QString& path : {status.View.Front,
                                status.View.Rear,
                                status.View.Pip,
                                status.Mic.On,
                                status.Mic.Off,
                                status.mirror.def,
                                status.mirror.mirroring,
                                status.movingPip.rightBottom,
                                status.movingPip.rightTop,
                                status.movingPip.leftTop,
                                status.movingPip.leftBottom,
                                status.protectFile.normalImage,
                                status.protectFile.disableImage,
                                status.rearCamRecording.On,
                                status.rearCamRecording.Off,
                                status.rearCamRecording.On_dis,
                                status.rearCamRecording.Off_dis,
                                gPreview.Time.Bg,
                                gPreview.Voltage.Bg,
                                gPreview.GpsSpeed.Bg,
                                gPopMenu.Menu.Image.Image[0].ReleaseImage})
      QVERIFY2(IsPicture(path), qPrintable(path));
    QVERIFY(status.mirror.mirroring.endsWith(QStringLiteral("hotkey_mirroring_1_normal.bmp")));
    QVERIFY(status.movingPip.rightBottom.endsWith(QStringLiteral("hotkey_pip_4_normal.bmp")));
    QVERIFY(status.movingPip.rightTop.endsWith(QStringLiteral("hotkey_pip_3_normal.bmp")));
    QVERIFY(status.movingPip.leftTop.endsWith(QStringLiteral("hotkey_pip_1_normal.bmp")));
    QVERIFY(status.movingPip.leftBottom.endsWith(QStringLiteral("hotkey_pip_2_normal.bmp")));
  }

  void everyScreenHasATitleAndEveryOptionItsPictures() {
    for (const QString& title :
         {gMainMenu.Title, gMainMenu2.Title, gNumberSet.Title, gLedFileList.Title, gTimeSet.Title,
          gVoltageCompensation.Title, gFrontLed.Title, gFileDeleteMethod.Title, gLcdSetting.Title,
          gDrivingSetting.Title, gAudioSetting.Title, gParkingSetting.Title, gSdManagementConfig.Title,
          gBlackboxManagementConfig.Title, gLowVolDetectionSettingConfig.Title, gPowerCutSettingConfig.Title,
          gFileList.ItemBg, gPlayer.BarBg, gMessageBox.Box1})
      QVERIFY2(IsPicture(title), qPrintable(title));
    CheckOption(gNumberSet.Keypad, 10);
    CheckOption(gFileList.Kind, 5);
    CheckOption(gFileList.Camera, 2);
    CheckOption(gFileList.Order, 2);
    CheckOption(gLedFileList.Order, 3);
    CheckOption(gFrontLed.Mode, 3);
    CheckOption(gFileDeleteMethod.Method, 2);
    CheckOption(gFileDeleteMethod.ProtectFile, 4);
    CheckOption(gLcdSetting.Second, 4);
    CheckOption(gLcdSetting.Brightness, 4);
    CheckOption(gLcdSetting.ScreenSaver, 4);
    CheckOption(gDrivingSetting.Resolution, 2);
    CheckOption(gDrivingSetting.Frame, 2);
    CheckOption(gDrivingSetting.Brightness, 3);
    CheckOption(gDrivingSetting.Shock, 4);
    CheckOption(gDrivingSetting.SpeedDisplay, 2);
    CheckOption(gAudioSetting.Voice, 4);
    CheckOption(gAudioSetting.Mic, 4);
    CheckOption(gAudioSetting.EventAlarm, 2);
    CheckOption(gAudioSetting.AccidentBlackspot, 2);
    CheckOption(gParkingSetting.Mode, 3);
    CheckOption(gParkingSetting.Shock, 3);
    CheckOption(gParkingSetting.Motion, 3);
    CheckOption(gParkingSetting.Entry, 3);
    CheckOption(gLowVolDetectionSettingConfig.CutoffTime, 6);
    QCOMPARE(gLcdSetting.Second.Image[0].ReleaseImage,
             QStringLiteral("/opt/gui/images/lcdsetting/lcd_second_10_normal.bmp"));
    for (const Button_Config& button : {gMainMenu2.VoltageCompensation, gParkingSetting.RecordingInfo,
                                        gFileDeleteMethod.Memory, gLowVolDetectionSettingConfig.VolCompensation}) {
      QVERIFY(IsPicture(button.ReleaseImage));
      QVERIFY(IsPicture(button.DisableImage));
    }
  }

  void textsOfBytesAreDecoded() {
    QCOMPARE(GetStringByLanguage(QString::fromLatin1("\xEC\x9D\xBC")), QStringLiteral("일"));
    QCOMPARE(GetStringByLanguage(QStringLiteral("일요일")), QStringLiteral("일요일"));
    QCOMPARE(GetStringByLanguage(QStringLiteral("GMT")), QStringLiteral("GMT"));
    QCOMPARE(GetStringByLanguage(QString()), QString());
    // Letters of another language are no bytes.
    for (const char* text : {"ge\xC3\xA4ndert",
                             "\xC3\x9C"
                             "bernehmen?",
                             "\xC3\xA9t\xC3\xA9"})
      QCOMPARE(GetStringByLanguage(QString::fromUtf8(text)), QString::fromUtf8(text));
  }
};

QTEST_GUILESS_MAIN(ConfigTest)
#include "config_test.moc"
