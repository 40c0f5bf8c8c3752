#include "gui/screen/messagecatalogue.h"

#include <QTest>
#include <algorithm>
#include <climits>
#include <iterator>

#include "gui/vocabulary/vocabulary.h"

namespace {
// What a caller has before it asks.
constexpr int kBefore[] = {-11, -12, -13, -14, -15};

struct Row {
  int id;
  const char* name;
  const char16_t* text;
  int numbers[5];  // box, error, lines, alignment, pixels
};

// clang-format off
constexpr Row kRows[] = {
    {0, "SYSTEM_RESET", u"영상 녹화를 시작합니다.", {0, 0, 0, 2, 24}},
    {1, "VIDEO_REC_START", u"영상 녹화를 시작합니다.", {0, 0, 0, 2, 24}},
    {2, "VIDEO_REC_STOP", u"영상 녹화를 중지합니다.", {0, 0, 0, 2, 24}},
    {3, "SETUP_CHANGE", u"설정이 변경되었습니다._적용하시겠습니까?", {1, 0, 1, 1, 22}},
    {6, "SD_FORMAT_CONFIRM", u"SD카드 포맷을_진행하시겠습니까?", {1, 0, 1, 1, 22}},
    {7, "SD_FORMAT_CONFIRM_OVER", u"입력대기시간이 초과되었습니다.", {0, 0, 0, 2, 24}},
    {9, "SD_FORMAT_NO", u"취소하었습니다.", {0, 0, 0, 2, 24}},
    {10, "FILE_MNG_MODE_CAUTION", u"주차/주행 설정을 확인하세요.", {0, 0, 0, 2, 24}},
    {13, "FILE_SAVE", u"저장되었습니다.", {0, 0, 0, 2, 24}},
    {14, "FILE_DELETE", u"삭제되었습니다.", {0, 0, 0, 2, 24}},
    {15, "FILE_SAVE_FAIL", u"저장에 실패하였습니다.", {0, 0, 0, 2, 24}},
    {16, "FILE_DELETE_FAIL", u"삭제에 실패하였습니다.", {0, 0, 0, 2, 24}},
    {20, "ENTRY_MENU", u"메뉴로 진입합니다.", {0, 0, 0, 2, 24}},
    {21, "VOLUME_OFF", u"음성녹음을 중지합니다.", {0, 0, 0, 2, 24}},
    {22, "VOLUME_ON", u"음성녹음을 시작합니다.", {0, 0, 0, 2, 24}},
    {23, "GMT_CHANGE", u"GMT시간이 변경되었습니다._적용하시겠습니까?", {1, 0, 1, 1, 22}},
    {24, "TIME_CHANGE", u"시간이 변경되었습니다._적용하시겠습니까?", {1, 0, 1, 1, 22}},
    {25, "TIME_SAME", u"설정된 시간이 현재 시간과_동일합니다.", {0, 0, 1, 2, 24}},
    {26, "PREV_FILE_PLAY_NOT", u"첫번째 녹화파일이 재생 중 입니다.", {0, 0, 0, 2, 24}},
    {27, "NEXT_FILE_PLAY_NOT", u"마지막 녹화파일이 재생 중 입니다.", {0, 0, 0, 2, 24}},
    {28, "IS_NEXT_FILE_PLAY", u"다음파일을 재생하시겠습니까?", {1, 0, 0, 1, 22}},
    {31, "LIST_PLAY_FINISH", u"영상재생이 모두 끝났습니다.", {0, 0, 0, 2, 24}},
    {32, "IS_INPUT_NUMBER_SAVE", u"저장하시겠습니까?", {1, 0, 0, 1, 22}},
    {33, "LED_LIST_EXCESS", u"표시목록이 전부 채워져 있습니다._표시목록 메뉴에서 삭제후 저장하여_주십시요.", {0, 0, 2, 1, 22}},
    {34, "NO_FRONT_FILE", u"전방 파일이 존재하지 않습니다.", {0, 0, 0, 2, 24}},
    {35, "NO_REAR_FILE", u"후방 파일이 존재하지 않습니다.", {0, 0, 0, 2, 24}},
    {36, "PLAY_FAIL", u"재생에 실패하였습니다.", {0, 0, 0, 2, 24}},
    {37, "NO_MEMORY_SETTING", u"주행시 충격감도와 주차모드가 끄기로_되어 있어 종류별 삭제를 설정하실 수_없습니다.", {0, 0, 2, 2, 22}},
    {38, "ENTRY_PLAY_LIST", u"재생목록을 불러오는 중 입니다.", {0, 0, 0, 2, 24}},
    {39, "LED_LIST_NOT_ENTRY", u"LED표시방법이 OFF인 경우_표시목록을 열수 없습니다.", {0, 0, 1, 2, 24}},
    {40, "SECURITY_LED_CHECKED", u"Security모드를 선택하였습니다._저장하시겠습니까?", {1, 0, 1, 1, 22}},
    {41, "NOT_DELETE_SECURITY_LED", u"Security모드는 삭제하실 수 없습니다._체크 해제후 이용해 주세요.", {0, 0, 1, 2, 22}},
    {42, "NOT_DELETE_KORVO_BLACK", u"Korvo Black은 삭제하실 수 없습니다._체크 해제후 이용해 주세요.", {0, 0, 1, 2, 22}},
    {43, "NOT_DELETE_SECURITY_KORVO", u"Security LED와 Korvo Black은_삭제하실수 없습니다._체크 해제후 이용해 주세요.", {0, 0, 2, 2, 24}},
    {44, "NOTHING_CHECKED_LED_FILE", u"선택된 항목이 없습니다.", {0, 0, 0, 2, 24}},
    {45, "NOTHING_LED_FILE", u"led.zel파일을 찾을수 없습니다.", {0, 0, 0, 2, 24}},
    {46, "INVALID_INPUT_NUMBER", u"번호를 입력하여 주십시요.", {0, 0, 0, 2, 24}},
    {47, "DISCONNECT_REARCAM", u"후방카메라가 연결되지 않았습니다.", {0, 0, 0, 2, 24}},
    {48, "FRONTLED_ERROR", u"전방 LED설정에 실패하였습니다._제품 점검이 필요합니다.", {0, 0, 1, 2, 24}},
    {49, "ENTRY_PREVIEW", u"프리뷰 모드로 진입합니다.", {0, 0, 0, 2, 24}},
    {50, "NOT_ON_SCREEN_SAVER", u"화면대기시간이 '항상'으로 되어 있어_화면보호기를 켤 수 없습니다.", {0, 0, 1, 2, 24}},
    {51, "FILE_SAVING", u"선택항목을 저장하는 중 입니다.", {0, 0, 0, 2, 24}},
    {52, "FILE_DELETING", u"선택항목을 삭제하는 중 입니다.", {0, 0, 0, 2, 24}},
    {53, "VOL_COMPENSATION_START", u"전압 보정을 위한 측정을 시작합니다._시동전과 시동후의 전압측정을_하게 됩니다.", {0, 0, 2, 2, 24}},
    {54, "IS_BEFORE_VOLCOM_START", u"약 10초동안 전압을 측정합니다._계속 하시겠습니까?", {1, 0, 1, 1, 22}},
    {55, "IS_AFTER_VOLCOM_START", u"약 10초동안 전압을 측정합니다._계속 하시겠습니까?", {1, 0, 1, 1, 22}},
    {56, "BEFORE_VOLCOM_START", u"시동전 측정을 시작합니다.", {0, 0, 0, 2, 24}},
    {57, "AFTER_VOLCOM_START", u"시동후 측정을 시작합니다.", {0, 0, 0, 2, 24}},
    {58, "VOLCOM_COMPLETE_BEFORE", u"측정을 완료하였습니다._시동후 측정을 시작해 주세요.", {0, 0, 1, 2, 24}},
    {59, "VOLCOM_ALL_COMPLETE", u"모든 측정을 완료하였습니다._결과를 기다리는 중 입니다.", {0, 0, 1, 2, 24}},
    {60, "VOLCOM_RESULT_SUCCESS", u"전압 보정에 성공하였습니다.", {0, 0, 0, 2, 24}},
    {61, "VOLCOM_RESULT_FAIL", u"전압 보정에 실패하였습니다.", {0, 0, 0, 2, 24}},
    {62, "VOLCOM_COMPLETE_AFTER", u"측정을 완료하였습니다._시동전 측정을 시작해 주세요.", {0, 0, 1, 2, 24}},
    {63, "MOTION_SETTING_APPLY", u"선택영역에 적용하시겠습니까?", {1, 0, 0, 2, 23}},
    {66, "MOTION_SETTING_ENTRY", u"모션감지에서 제외할 영역을 선택해_주세요. 선택완료 후 전원버튼을_짧게 누르시면 저장됩니다.", {4, 0, 2, 1, 20}},
    {67, "MOTION_SETTING_ENTRY_NOT_REAR", u"후방카메라가 연결되지 않았습니다.", {0, 0, 0, 2, 23}},
    {68, "CURRENT_RECORDING_FILE_DETECT", u"현재 녹화 중인 파일을 보관합니다.", {0, 0, 0, 2, 21}},
    {69, "CURRENT_RECORDING_FILE_ALREADY_DETECT", u"현재 녹화 중인 파일은 이미 보관파일로_설정되었습니다.", {0, 0, 1, 2, 20}},
    {70, "MOTION_SETTING_TO_MENU", u"메뉴화면으로 돌아가시겠습_니까?", {1, 0, 1, 1, 24}},
    {73, "ENTRY_FILELIST", u"재생목록에 들어가면 녹화가 중지_됩니다. 계속 진행하시겠습니까?", {1, 0, 1, 1, 21}},
    {74, "LOADING_FILELIST", u"파일리스트를 불러오는 중 입니다.", {0, 0, 0, 2, 22}},
    {75, "NOT_CONNECT_REAR_CAM", u"", {0, 0, 0, 2, 24}},
    {76, "ALREADY_NDF_FILE", u"현재 녹화 중인 파일은 이미 보관파일로_설정되었습니다.", {0, 0, 1, 2, 20}},
    {77, "SELECT_NDF_FILE", u"수동 녹화 시작", {5, 0, 0, 2, 22}},
    {78, "HIDDEN_TOUCH_COM_ENTRY", u"터치보정 메뉴로 진입합니다.", {0, 0, 0, 2, 24}},
    {79, "TOUCH_COM_SUCCESS", u"보정에 성공하였습니다.", {0, 0, 0, 2, 24}},
    {80, "TOUCH_COM_FAIL_RETRY", u"보정에 실패하였습니다._보정을 다시 시도합니다.", {0, 0, 1, 2, 24}},
    {81, "TOUCH_COM_FAIL", u"보정에 실패하였습니다._이전 메뉴로 돌아갑니다.", {0, 0, 1, 2, 24}},
    {82, "TOUCH_COM_ESCAPE", u"터치보정을 종료하시려면 전원키를 한번_더 눌러주세요. 보정을 계속 진행 하시_려면 LCD를 한번 터치해 주세요.", {0, 0, 2, 1, 22}},
    {83, "USER_DATA_INIT", u"사용자 설정 데이터를_초기화 하시겠습니까?", {1, 0, 1, 2, 24}},
    {84, "SETUP_SAVING", u"변경된 설정을 저장하는 중 입니다.", {0, 0, 0, 2, 22}},
    {85, "R_REARCAM_DISCONNECT", u"후방카메라가 연결되지 않았습니다.", {0, 0, 0, 2, 24}},
    {86, "R_SYS_RESTART", u"시스템을 재시작 하시겠습니까?", {1, 0, 0, 1, 22}},
    {87, "R_NEED_REARCAM", u"후방카메라를 연결하여 주십시오._시스템을 종료합니다.", {0, 0, 1, 2, 24}},
    {88, "R_LCD_OFF", u"안전운행을 위해 LCD가 꺼집니다.", {0, 0, 0, 2, 24}},
    {89, "R_SYS_EXIT", u"시스템을 종료하시겠습니까?", {1, 1, 0, 1, 22}},
    {90, "R_NO_SD", u"SD카드를 넣어주십시오.", {0, 1, 0, 2, 24}},
    {91, "R_SD_ERROR", u"SD카드를 점검하여 주십시오.", {0, 1, 0, 2, 24}},
    {92, "R_SD_FORMAT_INF", u"SD카드 포맷주기가 되었습니다.", {0, 0, 0, 2, 24}},
    {94, "R_REARCAM_ERROR", u"후방카메라 점검이 필요합니다.", {0, 1, 0, 2, 24}},
    {95, "R_RTC_ERROR", u"시간설정을 확인하세요.", {0, 1, 0, 2, 24}},
    {96, "R_GPS_CONNECT", u"GPS가 정상적으로 수신되었습니다.", {0, 0, 0, 2, 24}},
    {97, "R_MUTE_ON", u"음성녹음을 중지합니다.", {0, 0, 0, 2, 24}},
    {98, "R_MUTE_OFF", u"음성녹음을 시작합니다.", {0, 0, 0, 2, 24}},
    {99, "R_PARK_MODE_IN", u"주차모드로 전환합니다.", {0, 0, 0, 2, 24}},
    {100, "R_PARK_MODE_OUT", u"주차모드가 해제되었습니다.", {0, 0, 0, 2, 24}},
    {101, "R_UNDER_VOLTAGE", u"배터리 방전예방을 위해_전원을 차단합니다.", {0, 0, 1, 2, 24}},
    {102, "R_NORMAL_VOLTAGE", u"배터리 방전예방을 위한_전원차단을 해제합니다.", {0, 0, 1, 2, 24}},
    {103, "R_OVER_TEMP", u"제품보호를 위해 전원을 차단합니다.", {0, 0, 0, 2, 24}},
    {104, "R_NORMAL_TEMP", u"제품보호를 위한 전원차단을 해제합니다.", {0, 0, 0, 2, 24}},
    {105, "R_ACC_VOICE", u"사고다발지점입니다._안전운전 하십시오.", {0, 0, 1, 2, 24}},
    {106, "R_REARCAM_CONNECT", u"후방카메라가 연결되었습니다.", {0, 0, 0, 2, 24}},
    {107, "R_QGUI_SYSTEM_RESTART", u"시스템을 재시작 합니다.", {0, 0, 0, 2, 24}},
    {108, "R_POWER_OFF", u"시스템을 종료합니다.", {0, 0, 0, 2, 24}},
    {109, "R_FRONTLED_ERROR", u"전방 LED설정에 실패하였습니다._제품점검이 필요합니다.", {0, 0, 1, 2, 24}},
    {110, "R_QGUI_VIDEO_REC_START", u"영상녹화를 시작합니다.", {0, 0, 0, 2, 24}},
    {111, "R_TOUCH_ERROR", u"터치 동작에 문제가 있습니다._제품점검이 필요합니다.", {0, 0, 1, 2, 24}},
    {113, "R_HIDDEN_TOUCH_COM_ENTRY", u"터치 보정 메뉴에 진입합니다.", {0, 0, 0, 2, 24}},
    {115, "R_SD_CARD_EXCHANGE_NEED", u"SD카드 교체가 필요합니다.", {0, 0, 0, 2, 24}},
    {116, "R_SD_CARD_FORMAT_NEED", u"SD카드 포맷이 필요합니다.", {0, 0, 0, 2, 24}},
    {117, "REAR_CAM_POWER_OFF_MSG", u"후방 카메라 녹화가 중지된 상태입니다.", {0, 0, 0, 2, 22}},
    {118, "REAR_CAM_POWER_OFF_MSG_LOCK", u"주차모드 해제 후 동작하여 주십시요.", {0, 0, 0, 2, 22}},
    {119, "SD_CARD_CHECK_MSG", u"SD카드 점검을 시작하시겠습니까?", {1, 0, 0, 2, 20}},
    {120, "SD_CARD_CHECK_ING", u"SD카드를 점검하는 중 입니다.", {0, 0, 0, 2, 22}},
    {121, "SD_CARD_CHECK_COMPLETE_VALID", u"SD카드가 정상입니다.", {0, 0, 0, 2, 24}},
    {123, "REAR_CAM_RECORD_START", u"후방카메라를 켜고_후방 녹화를 시작합니다.", {0, 0, 1, 2, 23}},
    {124, "REAR_CAM_RECORD_STOP", u"주차 중 후방카메라를 끄고_녹화를 중지합니다.", {0, 0, 1, 2, 23}},
    {125, "FINISH_MANUAL_RECORDING", u"수동 녹화 종료", {5, 0, 0, 2, 24}},
    {126, "PREPARING_RECAM_RECORDING", u"후방녹화 준비 중 입니다.", {0, 0, 0, 2, 24}},
    {127, "REARCAM_SETTING_WARNING_ACC", u"후방카메라 끄기 기능은_주차모드로 전환된 후에만 사용이_가능합니다.", {0, 0, 2, 2, 23}},
    {128, "NOT_PARKING_MODE_RECORD_INFO", u"주차 중 녹화정보가_없습니다.", {0, 0, 1, 2, 23}},
    {129, "RESOLUTION_SETTING_CHANGE_NEED_FORMAT", u"해상도 변경을 위해_SD카드 포맷이 필요합니다._포맷하시겠습니까?", {1, 0, 2, 2, 23}},
    {130, "FRAME_SETTING_CHANGE_NEED_FORMAT", u"프레임 변경을 위해_SD카드 포맷이 필요합니다._포맷하시겠습니까?", {1, 0, 2, 2, 23}},
    {131, "RES_FRAME_SETTING_CHANGE_NEED_FORMAT", u"해상도/프레임 변경을 위해_SD카드 포맷이 필요합니다._포맷하시겠습니까?", {1, 0, 2, 2, 23}},
    {132, "INITIALIZE_RESET_RES_NEED_FORMAT", u"초기화에 따른 해상도 변경으로_재부팅 후 자동으로 포맷이_진행됩니다. 계속하시겠습니까?", {1, 0, 2, 1, 21}},
    {133, "INITIALIZE_RESET_FPS_NEED_FORMAT", u"초기화에 따른 프레임 변경으로_재부팅 후 자동으로 포맷이_진행됩니다. 계속하시겠습니까?", {1, 0, 2, 1, 21}},
};

// The answers to questions: nothing is shown for them.
constexpr Row kEmpty[] = {
    {4, "SETUP_CHANGE_YES", u"", {}},
    {5, "SETUP_CHANGE_NO", u"", {}},
    {8, "SD_FORMAT_YES", u"", {}},
    {17, "LED_FILE_UPDATE_DELETE_OK", u"", {}},
    {18, "LED_FILE_UPDATE_NO", u"", {}},
    {19, "LED_FILE_UPDATE_SAVE_OK", u"", {}},
    {29, "NEXT_FILE_PLAY_OK", u"", {}},
    {30, "NEXT_FILE_PLAY_NO", u"", {}},
    {64, "MOTION_SETTING_APPLY_YES", u"", {}},
    {65, "MOTION_SETTING_APPLY_NO", u"", {}},
    {71, "MOTION_SETTING_TO_MENU_YES", u"", {}},
    {72, "MOTION_SETTING_TO_MENU_NO", u"", {}},
    {122, "SD_CARD_CHECK_COMPLETE_INVALID", u"", {}},
};
// clang-format on

/// What the catalogue gives, the numbers starting from kBefore.
struct Asked {
  Asked(int id, int value) { text = GetMessageBoxString(id, &box, &error, &lines, &align, &px, value); }
  explicit Asked(int hardwareCode) { text = GetHWErrorMessageStatus(hardwareCode, &box, &error, &lines, &align, &px); }
  int box = kBefore[0], error = kBefore[1], lines = kBefore[2], align = kBefore[3], px = kBefore[4];
  QString text;
  QString Shape() const { return QStringLiteral("%1/%2/%3/%4/%5").arg(box).arg(error).arg(lines).arg(align).arg(px); }
};

QString Untouched() {
  return QStringLiteral("-11/-12/-13/-14/-15");
}
}  // namespace

class MessageCatalogueTest : public QObject {
  Q_OBJECT

private slots:
  void everyMessageHasItsTextAndShape_data();
  void everyMessageHasItsTextAndShape();
  void everyIdIsOnceInTheTablesOfThisTest();
  void anAnswerToAQuestionHasNoTextAndLeavesTheShape_data();
  void anAnswerToAQuestionHasNoTextAndLeavesTheShape();
  void anUnknownIdHasNoTextAndLeavesTheShape_data();
  void anUnknownIdHasNoTextAndLeavesTheShape();
  void theValueOfAPlainMessageChangesNothing();
  void aCountStandsInTheQuestion_data();
  void aCountStandsInTheQuestion();
  void theResultOfTheVoltageMeasurementIsTold_data();
  void theResultOfTheVoltageMeasurementIsTold();
  void theReasonOfAFormatIsTold_data();
  void theReasonOfAFormatIsTold();
  void aHardwareErrorIsTold_data();
  void aHardwareErrorIsTold();
  void aHardwareCodeHasItsOwnText_data();
  void aHardwareCodeHasItsOwnText();
  void everyTextHasAsManyLinesAsItSays();
};

void MessageCatalogueTest::everyMessageHasItsTextAndShape_data() {
  QTest::addColumn<int>("row");
  for (int row = 0; row < int(std::size(kRows)); ++row) QTest::newRow(kRows[row].name) << row;
}

void MessageCatalogueTest::everyMessageHasItsTextAndShape() {
  QFETCH(int, row);
  const Row& expected = kRows[row];
  QCOMPARE(NameOf(MessageBox_Id(expected.id)), expected.name);
  const Asked asked(expected.id, 0);
  QCOMPARE(asked.text, QString::fromUtf16(expected.text));
  const int* n = expected.numbers;
  QCOMPARE(asked.Shape(), QStringLiteral("%1/%2/%3/%4/%5").arg(n[0]).arg(n[1]).arg(n[2]).arg(n[3]).arg(n[4]));
}

void MessageCatalogueTest::everyIdIsOnceInTheTablesOfThisTest() {
  QList<int> ids{LED_FILE_UPDATE_SAVE, LED_FILE_UPDATE_DELETE, R_HW_ERROR, R_VOLT_SET, R_SD_ERROR_NEET_FORMAT};
  for (const Row& row : kRows) ids << row.id;
  for (const Row& row : kEmpty) ids << row.id;
  std::sort(ids.begin(), ids.end());
  QCOMPARE(ids.size(), 134);
  for (int id = 0; id < 134; ++id) QCOMPARE(ids[id], id);
}

void MessageCatalogueTest::anAnswerToAQuestionHasNoTextAndLeavesTheShape_data() {
  QTest::addColumn<int>("row");
  for (int row = 0; row < int(std::size(kEmpty)); ++row) QTest::newRow(kEmpty[row].name) << row;
}

void MessageCatalogueTest::anAnswerToAQuestionHasNoTextAndLeavesTheShape() {
  QFETCH(int, row);
  QCOMPARE(NameOf(MessageBox_Id(kEmpty[row].id)), kEmpty[row].name);
  const Asked asked(kEmpty[row].id, 1);
  QCOMPARE(asked.text, QString());
  QCOMPARE(asked.Shape(), Untouched());
}

void MessageCatalogueTest::anUnknownIdHasNoTextAndLeavesTheShape_data() {
  QTest::addColumn<int>("id");
  for (int id : {134, 135, 255, 100000, INT_MAX, -1, -2, INT_MIN}) QTest::addRow("%d", id) << id;
}

void MessageCatalogueTest::anUnknownIdHasNoTextAndLeavesTheShape() {
  QFETCH(int, id);
  const Asked asked(id, 8);
  QCOMPARE(asked.text, QString());
  QCOMPARE(asked.Shape(), Untouched());
}

void MessageCatalogueTest::theValueOfAPlainMessageChangesNothing() {
  for (const Row& row : kRows) {
    for (int value : {1, 5, 8, -1}) {
      QCOMPARE(Asked(row.id, value).text, Asked(row.id, 0).text);
      QCOMPARE(Asked(row.id, value).Shape(), Asked(row.id, 0).Shape());
    }
  }
}

void MessageCatalogueTest::aCountStandsInTheQuestion_data() {
  QTest::addColumn<int>("id");
  QTest::addColumn<int>("count");
  QTest::addColumn<QString>("text");
  QTest::newRow("save 3") << 11 << 3 << QStringLiteral(u"3개 항목이 선택되었습니다._저장하시겠습니까?");
  QTest::newRow("save 0") << 11 << 0 << QStringLiteral(u"0개 항목이 선택되었습니다._저장하시겠습니까?");
  QTest::newRow("save 100") << 11 << 100 << QStringLiteral(u"100개 항목이 선택되었습니다._저장하시겠습니까?");
  QTest::newRow("delete 1") << 12 << 1 << QStringLiteral(u"1개 항목이 선택되었습니다._삭제하시겠습니까?");
  QTest::newRow("delete 27") << 12 << 27 << QStringLiteral(u"27개 항목이 선택되었습니다._삭제하시겠습니까?");
}

void MessageCatalogueTest::aCountStandsInTheQuestion() {
  QFETCH(int, id);
  QFETCH(int, count);
  QTEST(Asked(id, count).text, "text");
  QCOMPARE(Asked(id, count).Shape(), QStringLiteral("1/0/1/1/22"));
}

void MessageCatalogueTest::theResultOfTheVoltageMeasurementIsTold_data() {
  QTest::addColumn<int>("result");
  QTest::addColumn<QString>("text");
  const QString failed = QStringLiteral(u"전압 보정에 실패하였습니다.");
  QTest::newRow("1") << 1 << QStringLiteral(u"전압 보정에 성공하였습니다.");
  for (int result : {0, 2, -1, 100}) QTest::addRow("%d", result) << result << failed;
}

void MessageCatalogueTest::theResultOfTheVoltageMeasurementIsTold() {
  QFETCH(int, result);
  QTEST(Asked(112, result).text, "text");
  QCOMPARE(Asked(112, result).Shape(), QStringLiteral("0/0/0/2/24"));
}

void MessageCatalogueTest::theReasonOfAFormatIsTold_data() {
  QTest::addColumn<int>("reason");
  QTest::addColumn<QString>("text");
  QTest::addColumn<QString>("shape");
  const QString plain = QStringLiteral(u"SD카드 포맷이 필요합니다._포맷을 진행하시겠습니까?");
  // clang-format off
  QTest::newRow("files deleted") << 5 << QStringLiteral(u"일부 파일이 임의 삭제되어 SD카드 파일_구조가 변경되었습니다. 시스템 안정성을_위해 SD카드 포맷이 필요합니다.") << "1/0/2/1/17";
  QTest::newRow("unit changed") << 7 << QStringLiteral(u"저장 단위 변경이 감지되었습_니다. 시스템 안정성을 위해_SD카드 포맷이 필요합니다.") << "1/0/2/1/21";
  // clang-format on
  for (int reason : {0, 1, 4, 6, 8, -1}) QTest::addRow("%d", reason) << reason << plain << "1/0/1/2/24";
}

void MessageCatalogueTest::theReasonOfAFormatIsTold() {
  QFETCH(int, reason);
  QTEST(Asked(114, reason).text, "text");
  QTEST(Asked(114, reason).Shape(), "shape");
}

// clang-format off
void MessageCatalogueTest::aHardwareErrorIsTold_data() {
  QTest::addColumn<int>("code");
  QTest::addColumn<QString>("text");
  QTest::addColumn<QString>("shape");
  const auto row = [](int code, const char16_t* text, const char* shape) {
    QTest::addRow("%d", code) << code << QString::fromUtf16(text) << QString::fromLatin1(shape);
  };
  row(0, u"후방카메라 진단이 필요합니다._고객센터로 문의해 주세요.", "0/0/1/2/22");
  row(1, u"전방카메라 진단이 필요합니다._고객센터로 문의해 주세요.", "0/0/1/2/22");
  row(2, u"후방카메라 진단이 필요합니다._고객센터로 문의해 주세요.", "0/0/1/2/22");
  row(3, u"가속도센서 진단이 필요합니다._고객센터로 문의해 주세요.", "0/0/1/2/22");
  row(4, u"소프트웨어 오류가 발견되었습니다._펌웨어 업데이트를 다시_적용해 주세요.", "0/0/2/2/22");
  row(5, u"제품점검이 필요합니다._Code:0x05", "0/1/1/2/24");
  row(6, u"시간 정보 이상이 감지되었습니다._시간을 다시 설정해 주세요.", "0/0/1/2/22");
  row(7, u"제품점검이 필요합니다._Code:0x07", "0/1/1/2/24");
  row(8, u"SD카드 점검이 필요합니다._Code:0x08", "0/1/1/2/24");
  row(9, u"전방카메라 진단이 필요하여_재 시작합니다. 반복되는 경우_고객센터로 문의해 주세요.", "0/0/2/2/22");
  row(10, u"전원 감지 회로 이상이_확인 되었습니다._고객센터로 문의해 주세요.", "0/0/2/2/22");
  row(11, u"제품 점검이 필요합니다._고객센터로 문의해 주세요.", "0/0/1/2/22");
  row(12, u"SD카드 쓰기 오류가 확인되어_재 시작합니다. 반복되는 경우_고객센터로 문의해 주세요.", "0/0/2/2/22");
  row(13, u"제품점검이 필요합니다._Code:0x13", "0/1/1/2/24");
  row(14, u"SD카드 쓰기 오류가 확인되어_재 시작합니다. 반복되는 경우_고객센터로 문의해 주세요.", "0/0/2/2/22");
  row(15, u"전원 감지 회로 이상이_확인되어 재 시작합니다.", "0/0/1/2/22");
  row(16, u"후방카메라 연결 케이블 이상이_확인 되었습니다._고객센터로 문의해 주세요.", "0/0/2/2/22");
  row(17, u"제품점검이 필요합니다._Code:0x17", "0/1/1/2/24");
  row(18, u"SD카드 점검이 필요합니다.", "0/1/0/2/24");
  row(19, u"제품점검이 필요합니다._Code:0x19", "0/1/1/2/24");
  row(255, u"제품점검이 필요합니다._Code:0x255", "0/1/1/2/24");
  row(-1, u"제품점검이 필요합니다._Code:0x-1", "0/1/1/2/24");
}
// clang-format on

void MessageCatalogueTest::aHardwareErrorIsTold() {
  QFETCH(int, code);
  QTEST(Asked(93, code).text, "text");
  QTEST(Asked(93, code).Shape(), "shape");
}

void MessageCatalogueTest::aHardwareCodeHasItsOwnText_data() {
  QTest::addColumn<int>("code");
  QTest::addColumn<bool>("has");
  for (int code : {0, 1, 2, 3, 4, 6, 9, 10, 11, 12, 14, 15, 16}) QTest::addRow("%d", code) << code << true;
  for (int code : {5, 7, 8, 13, 17, 18, 19, 255, -1}) QTest::addRow("%d", code) << code << false;
}

void MessageCatalogueTest::aHardwareCodeHasItsOwnText() {
  QFETCH(int, code);
  QFETCH(bool, has);
  const Asked own(code);
  if (has) {
    QCOMPARE(own.text, Asked(93, code).text);
    QCOMPARE(own.Shape(), QStringLiteral("0/0/%1/2/22").arg(own.text.count(u'_')));
  } else {
    QCOMPARE(own.text, QString());
    QCOMPARE(own.Shape(), Untouched());
  }
}

void MessageCatalogueTest::everyTextHasAsManyLinesAsItSays() {
  for (int id = 0; id < 134; ++id) {
    for (int value = -1; value < 20; ++value) {
      const Asked asked(id, value);
      if (asked.px > 0) QVERIFY2(asked.text.count(u'_') == asked.lines, qPrintable(QString::number(id)));
    }
  }
}

QTEST_GUILESS_MAIN(MessageCatalogueTest)
#include "messagecatalogue_test.moc"
