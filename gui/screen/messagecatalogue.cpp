#include "gui/screen/messagecatalogue.h"

#include <QByteArrayView>
#include <iterator>

#include "gui/base/language.h"
#include "gui/vocabulary/vocabulary.h"

namespace {
/// How a message is laid out; see MessageBox.
struct Numbers {
  int box_type = 0;
  int error_type = 0;
  int str_type = 0;
  int align_type = 0;
  int px = 0;  // 0: there is no message
};

struct Message {
  MessageBox_Id id;
  const char* text = nullptr;
  Numbers numbers = {};
};

struct HardwareMessage {
  int code;
  const char* text;
};

struct Content {
  QString text;
  Numbers numbers;
};

// A row is a line: id, text, {box_type, error_type, str_type, align_type, px}
// clang-format off
constexpr Message kMessages[] = {
    {SYSTEM_RESET, QT_TRANSLATE_NOOP("Text", "영상 녹화를 시작합니다."), {0, 0, 0, 2, 24}},
    {VIDEO_REC_START, QT_TRANSLATE_NOOP("Text", "영상 녹화를 시작합니다."), {0, 0, 0, 2, 24}},
    {VIDEO_REC_STOP, QT_TRANSLATE_NOOP("Text", "영상 녹화를 중지합니다."), {0, 0, 0, 2, 24}},
    {SETUP_CHANGE, QT_TRANSLATE_NOOP("Text", "설정이 변경되었습니다._적용하시겠습니까?"), {1, 0, 1, 1, 22}},
    {SETUP_CHANGE_YES},
    {SETUP_CHANGE_NO},
    {SD_FORMAT_CONFIRM, QT_TRANSLATE_NOOP("Text", "SD카드 포맷을_진행하시겠습니까?"), {1, 0, 1, 1, 22}},
    {SD_FORMAT_CONFIRM_OVER, QT_TRANSLATE_NOOP("Text", "입력대기시간이 초과되었습니다."), {0, 0, 0, 2, 24}},
    {SD_FORMAT_YES},
    {SD_FORMAT_NO, QT_TRANSLATE_NOOP("Text", "취소하었습니다."), {0, 0, 0, 2, 24}},
    {FILE_MNG_MODE_CAUTION, QT_TRANSLATE_NOOP("Text", "주차/주행 설정을 확인하세요."), {0, 0, 0, 2, 24}},
    {LED_FILE_UPDATE_SAVE, QT_TRANSLATE_N_NOOP("Text", "%n개 항목이 선택되었습니다._저장하시겠습니까?"), {1, 0, 1, 1, 22}},
    {LED_FILE_UPDATE_DELETE, QT_TRANSLATE_N_NOOP("Text", "%n개 항목이 선택되었습니다._삭제하시겠습니까?"), {1, 0, 1, 1, 22}},
    {FILE_SAVE, QT_TRANSLATE_NOOP("Text", "저장되었습니다."), {0, 0, 0, 2, 24}},
    {FILE_DELETE, QT_TRANSLATE_NOOP("Text", "삭제되었습니다."), {0, 0, 0, 2, 24}},
    {FILE_SAVE_FAIL, QT_TRANSLATE_NOOP("Text", "저장에 실패하였습니다."), {0, 0, 0, 2, 24}},
    {FILE_DELETE_FAIL, QT_TRANSLATE_NOOP("Text", "삭제에 실패하였습니다."), {0, 0, 0, 2, 24}},
    {LED_FILE_UPDATE_DELETE_OK},
    {LED_FILE_UPDATE_NO},
    {LED_FILE_UPDATE_SAVE_OK},
    {ENTRY_MENU, QT_TRANSLATE_NOOP("Text", "메뉴로 진입합니다."), {0, 0, 0, 2, 24}},
    {VOLUME_OFF, QT_TRANSLATE_NOOP("Text", "음성녹음을 중지합니다."), {0, 0, 0, 2, 24}},
    {VOLUME_ON, QT_TRANSLATE_NOOP("Text", "음성녹음을 시작합니다."), {0, 0, 0, 2, 24}},
    {GMT_CHANGE, QT_TRANSLATE_NOOP("Text", "GMT시간이 변경되었습니다._적용하시겠습니까?"), {1, 0, 1, 1, 22}},
    {TIME_CHANGE, QT_TRANSLATE_NOOP("Text", "시간이 변경되었습니다._적용하시겠습니까?"), {1, 0, 1, 1, 22}},
    {TIME_SAME, QT_TRANSLATE_NOOP("Text", "설정된 시간이 현재 시간과_동일합니다."), {0, 0, 1, 2, 24}},
    {PREV_FILE_PLAY_NOT, QT_TRANSLATE_NOOP("Text", "첫번째 녹화파일이 재생 중 입니다."), {0, 0, 0, 2, 24}},
    {NEXT_FILE_PLAY_NOT, QT_TRANSLATE_NOOP("Text", "마지막 녹화파일이 재생 중 입니다."), {0, 0, 0, 2, 24}},
    {IS_NEXT_FILE_PLAY, QT_TRANSLATE_NOOP("Text", "다음파일을 재생하시겠습니까?"), {1, 0, 0, 1, 22}},
    {NEXT_FILE_PLAY_OK},
    {NEXT_FILE_PLAY_NO},
    {LIST_PLAY_FINISH, QT_TRANSLATE_NOOP("Text", "영상재생이 모두 끝났습니다."), {0, 0, 0, 2, 24}},
    {IS_INPUT_NUMBER_SAVE, QT_TRANSLATE_NOOP("Text", "저장하시겠습니까?"), {1, 0, 0, 1, 22}},
    {LED_LIST_EXCESS, QT_TRANSLATE_NOOP("Text", "표시목록이 전부 채워져 있습니다._표시목록 메뉴에서 삭제후 저장하여_주십시요."), {0, 0, 2, 1, 22}},
    {NO_FRONT_FILE, QT_TRANSLATE_NOOP("Text", "전방 파일이 존재하지 않습니다."), {0, 0, 0, 2, 24}},
    {NO_REAR_FILE, QT_TRANSLATE_NOOP("Text", "후방 파일이 존재하지 않습니다."), {0, 0, 0, 2, 24}},
    {PLAY_FAIL, QT_TRANSLATE_NOOP("Text", "재생에 실패하였습니다."), {0, 0, 0, 2, 24}},
    {NO_MEMORY_SETTING, QT_TRANSLATE_NOOP("Text", "주행시 충격감도와 주차모드가 끄기로_되어 있어 종류별 삭제를 설정하실 수_없습니다."), {0, 0, 2, 2, 22}},
    {ENTRY_PLAY_LIST, QT_TRANSLATE_NOOP("Text", "재생목록을 불러오는 중 입니다."), {0, 0, 0, 2, 24}},
    {LED_LIST_NOT_ENTRY, QT_TRANSLATE_NOOP("Text", "LED표시방법이 OFF인 경우_표시목록을 열수 없습니다."), {0, 0, 1, 2, 24}},
    {SECURITY_LED_CHECKED, QT_TRANSLATE_NOOP("Text", "Security모드를 선택하였습니다._저장하시겠습니까?"), {1, 0, 1, 1, 22}},
    {NOT_DELETE_SECURITY_LED, QT_TRANSLATE_NOOP("Text", "Security모드는 삭제하실 수 없습니다._체크 해제후 이용해 주세요."), {0, 0, 1, 2, 22}},
    {NOT_DELETE_KORVO_BLACK, QT_TRANSLATE_NOOP("Text", "Korvo Black은 삭제하실 수 없습니다._체크 해제후 이용해 주세요."), {0, 0, 1, 2, 22}},
    {NOT_DELETE_SECURITY_KORVO, QT_TRANSLATE_NOOP("Text", "Security LED와 Korvo Black은_삭제하실수 없습니다._체크 해제후 이용해 주세요."), {0, 0, 2, 2, 24}},
    {NOTHING_CHECKED_LED_FILE, QT_TRANSLATE_NOOP("Text", "선택된 항목이 없습니다."), {0, 0, 0, 2, 24}},
    {NOTHING_LED_FILE, QT_TRANSLATE_NOOP("Text", "led.zel파일을 찾을수 없습니다."), {0, 0, 0, 2, 24}},
    {INVALID_INPUT_NUMBER, QT_TRANSLATE_NOOP("Text", "번호를 입력하여 주십시요."), {0, 0, 0, 2, 24}},
    {DISCONNECT_REARCAM, QT_TRANSLATE_NOOP("Text", "후방카메라가 연결되지 않았습니다."), {0, 0, 0, 2, 24}},
    {FRONTLED_ERROR, QT_TRANSLATE_NOOP("Text", "전방 LED설정에 실패하였습니다._제품 점검이 필요합니다."), {0, 0, 1, 2, 24}},
    {ENTRY_PREVIEW, QT_TRANSLATE_NOOP("Text", "프리뷰 모드로 진입합니다."), {0, 0, 0, 2, 24}},
    {NOT_ON_SCREEN_SAVER, QT_TRANSLATE_NOOP("Text", "화면대기시간이 '항상'으로 되어 있어_화면보호기를 켤 수 없습니다."), {0, 0, 1, 2, 24}},
    {FILE_SAVING, QT_TRANSLATE_NOOP("Text", "선택항목을 저장하는 중 입니다."), {0, 0, 0, 2, 24}},
    {FILE_DELETING, QT_TRANSLATE_NOOP("Text", "선택항목을 삭제하는 중 입니다."), {0, 0, 0, 2, 24}},
    {VOL_COMPENSATION_START, QT_TRANSLATE_NOOP("Text", "전압 보정을 위한 측정을 시작합니다._시동전과 시동후의 전압측정을_하게 됩니다."), {0, 0, 2, 2, 24}},
    {IS_BEFORE_VOLCOM_START, QT_TRANSLATE_NOOP("Text", "약 10초동안 전압을 측정합니다._계속 하시겠습니까?"), {1, 0, 1, 1, 22}},
    {IS_AFTER_VOLCOM_START, QT_TRANSLATE_NOOP("Text", "약 10초동안 전압을 측정합니다._계속 하시겠습니까?"), {1, 0, 1, 1, 22}},
    {BEFORE_VOLCOM_START, QT_TRANSLATE_NOOP("Text", "시동전 측정을 시작합니다."), {0, 0, 0, 2, 24}},
    {AFTER_VOLCOM_START, QT_TRANSLATE_NOOP("Text", "시동후 측정을 시작합니다."), {0, 0, 0, 2, 24}},
    {VOLCOM_COMPLETE_BEFORE, QT_TRANSLATE_NOOP("Text", "측정을 완료하였습니다._시동후 측정을 시작해 주세요."), {0, 0, 1, 2, 24}},
    {VOLCOM_ALL_COMPLETE, QT_TRANSLATE_NOOP("Text", "모든 측정을 완료하였습니다._결과를 기다리는 중 입니다."), {0, 0, 1, 2, 24}},
    {VOLCOM_RESULT_SUCCESS, QT_TRANSLATE_NOOP("Text", "전압 보정에 성공하였습니다."), {0, 0, 0, 2, 24}},
    {VOLCOM_RESULT_FAIL, QT_TRANSLATE_NOOP("Text", "전압 보정에 실패하였습니다."), {0, 0, 0, 2, 24}},
    {VOLCOM_COMPLETE_AFTER, QT_TRANSLATE_NOOP("Text", "측정을 완료하였습니다._시동전 측정을 시작해 주세요."), {0, 0, 1, 2, 24}},
    {MOTION_SETTING_APPLY, QT_TRANSLATE_NOOP("Text", "선택영역에 적용하시겠습니까?"), {1, 0, 0, 2, 23}},
    {MOTION_SETTING_APPLY_YES},
    {MOTION_SETTING_APPLY_NO},
    {MOTION_SETTING_ENTRY, QT_TRANSLATE_NOOP("Text", "모션감지에서 제외할 영역을 선택해_주세요. 선택완료 후 전원버튼을_짧게 누르시면 저장됩니다."), {4, 0, 2, 1, 20}},
    {MOTION_SETTING_ENTRY_NOT_REAR, QT_TRANSLATE_NOOP("Text", "후방카메라가 연결되지 않았습니다."), {0, 0, 0, 2, 23}},
    {CURRENT_RECORDING_FILE_DETECT, QT_TRANSLATE_NOOP("Text", "현재 녹화 중인 파일을 보관합니다."), {0, 0, 0, 2, 21}},
    {CURRENT_RECORDING_FILE_ALREADY_DETECT, QT_TRANSLATE_NOOP("Text", "현재 녹화 중인 파일은 이미 보관파일로_설정되었습니다."), {0, 0, 1, 2, 20}},
    {MOTION_SETTING_TO_MENU, QT_TRANSLATE_NOOP("Text", "메뉴화면으로 돌아가시겠습_니까?"), {1, 0, 1, 1, 24}},
    {MOTION_SETTING_TO_MENU_YES},
    {MOTION_SETTING_TO_MENU_NO},
    {ENTRY_FILELIST, QT_TRANSLATE_NOOP("Text", "재생목록에 들어가면 녹화가 중지_됩니다. 계속 진행하시겠습니까?"), {1, 0, 1, 1, 21}},
    {LOADING_FILELIST, QT_TRANSLATE_NOOP("Text", "파일리스트를 불러오는 중 입니다."), {0, 0, 0, 2, 22}},
    {NOT_CONNECT_REAR_CAM, QT_TRANSLATE_NOOP("Text", ""), {0, 0, 0, 2, 24}},
    {ALREADY_NDF_FILE, QT_TRANSLATE_NOOP("Text", "현재 녹화 중인 파일은 이미 보관파일로_설정되었습니다."), {0, 0, 1, 2, 20}},
    {SELECT_NDF_FILE, QT_TRANSLATE_NOOP("Text", "수동 녹화 시작"), {5, 0, 0, 2, 22}},
    {HIDDEN_TOUCH_COM_ENTRY, QT_TRANSLATE_NOOP("Text", "터치보정 메뉴로 진입합니다."), {0, 0, 0, 2, 24}},
    {TOUCH_COM_SUCCESS, QT_TRANSLATE_NOOP("Text", "보정에 성공하였습니다."), {0, 0, 0, 2, 24}},
    {TOUCH_COM_FAIL_RETRY, QT_TRANSLATE_NOOP("Text", "보정에 실패하였습니다._보정을 다시 시도합니다."), {0, 0, 1, 2, 24}},
    {TOUCH_COM_FAIL, QT_TRANSLATE_NOOP("Text", "보정에 실패하였습니다._이전 메뉴로 돌아갑니다."), {0, 0, 1, 2, 24}},
    {TOUCH_COM_ESCAPE, QT_TRANSLATE_NOOP("Text", "터치보정을 종료하시려면 전원키를 한번_더 눌러주세요. 보정을 계속 진행 하시_려면 LCD를 한번 터치해 주세요."), {0, 0, 2, 1, 22}},
    {USER_DATA_INIT, QT_TRANSLATE_NOOP("Text", "사용자 설정 데이터를_초기화 하시겠습니까?"), {1, 0, 1, 2, 24}},
    {SETUP_SAVING, QT_TRANSLATE_NOOP("Text", "변경된 설정을 저장하는 중 입니다."), {0, 0, 0, 2, 22}},
    {R_REARCAM_DISCONNECT, QT_TRANSLATE_NOOP("Text", "후방카메라가 연결되지 않았습니다."), {0, 0, 0, 2, 24}},
    {R_SYS_RESTART, QT_TRANSLATE_NOOP("Text", "시스템을 재시작 하시겠습니까?"), {1, 0, 0, 1, 22}},
    {R_NEED_REARCAM, QT_TRANSLATE_NOOP("Text", "후방카메라를 연결하여 주십시오._시스템을 종료합니다."), {0, 0, 1, 2, 24}},
    {R_LCD_OFF, QT_TRANSLATE_NOOP("Text", "안전운행을 위해 LCD가 꺼집니다."), {0, 0, 0, 2, 24}},
    {R_SYS_EXIT, QT_TRANSLATE_NOOP("Text", "시스템을 종료하시겠습니까?"), {1, 1, 0, 1, 22}},
    {R_NO_SD, QT_TRANSLATE_NOOP("Text", "SD카드를 넣어주십시오."), {0, 1, 0, 2, 24}},
    {R_SD_ERROR, QT_TRANSLATE_NOOP("Text", "SD카드를 점검하여 주십시오."), {0, 1, 0, 2, 24}},
    {R_SD_FORMAT_INF, QT_TRANSLATE_NOOP("Text", "SD카드 포맷주기가 되었습니다."), {0, 0, 0, 2, 24}},
    {R_HW_ERROR},  // by its value
    {R_REARCAM_ERROR, QT_TRANSLATE_NOOP("Text", "후방카메라 점검이 필요합니다."), {0, 1, 0, 2, 24}},
    {R_RTC_ERROR, QT_TRANSLATE_NOOP("Text", "시간설정을 확인하세요."), {0, 1, 0, 2, 24}},
    {R_GPS_CONNECT, QT_TRANSLATE_NOOP("Text", "GPS가 정상적으로 수신되었습니다."), {0, 0, 0, 2, 24}},
    {R_MUTE_ON, QT_TRANSLATE_NOOP("Text", "음성녹음을 중지합니다."), {0, 0, 0, 2, 24}},
    {R_MUTE_OFF, QT_TRANSLATE_NOOP("Text", "음성녹음을 시작합니다."), {0, 0, 0, 2, 24}},
    {R_PARK_MODE_IN, QT_TRANSLATE_NOOP("Text", "주차모드로 전환합니다."), {0, 0, 0, 2, 24}},
    {R_PARK_MODE_OUT, QT_TRANSLATE_NOOP("Text", "주차모드가 해제되었습니다."), {0, 0, 0, 2, 24}},
    {R_UNDER_VOLTAGE, QT_TRANSLATE_NOOP("Text", "배터리 방전예방을 위해_전원을 차단합니다."), {0, 0, 1, 2, 24}},
    {R_NORMAL_VOLTAGE, QT_TRANSLATE_NOOP("Text", "배터리 방전예방을 위한_전원차단을 해제합니다."), {0, 0, 1, 2, 24}},
    {R_OVER_TEMP, QT_TRANSLATE_NOOP("Text", "제품보호를 위해 전원을 차단합니다."), {0, 0, 0, 2, 24}},
    {R_NORMAL_TEMP, QT_TRANSLATE_NOOP("Text", "제품보호를 위한 전원차단을 해제합니다."), {0, 0, 0, 2, 24}},
    {R_ACC_VOICE, QT_TRANSLATE_NOOP("Text", "사고다발지점입니다._안전운전 하십시오."), {0, 0, 1, 2, 24}},
    {R_REARCAM_CONNECT, QT_TRANSLATE_NOOP("Text", "후방카메라가 연결되었습니다."), {0, 0, 0, 2, 24}},
    {R_QGUI_SYSTEM_RESTART, QT_TRANSLATE_NOOP("Text", "시스템을 재시작 합니다."), {0, 0, 0, 2, 24}},
    {R_POWER_OFF, QT_TRANSLATE_NOOP("Text", "시스템을 종료합니다."), {0, 0, 0, 2, 24}},
    {R_FRONTLED_ERROR, QT_TRANSLATE_NOOP("Text", "전방 LED설정에 실패하였습니다._제품점검이 필요합니다."), {0, 0, 1, 2, 24}},
    {R_QGUI_VIDEO_REC_START, QT_TRANSLATE_NOOP("Text", "영상녹화를 시작합니다."), {0, 0, 0, 2, 24}},
    {R_TOUCH_ERROR, QT_TRANSLATE_NOOP("Text", "터치 동작에 문제가 있습니다._제품점검이 필요합니다."), {0, 0, 1, 2, 24}},
    {R_VOLT_SET, QT_TRANSLATE_NOOP("Text", "전압 보정에 실패하였습니다."), {0, 0, 0, 2, 24}},
    {R_HIDDEN_TOUCH_COM_ENTRY, QT_TRANSLATE_NOOP("Text", "터치 보정 메뉴에 진입합니다."), {0, 0, 0, 2, 24}},
    {R_SD_ERROR_NEET_FORMAT, QT_TRANSLATE_NOOP("Text", "SD카드 포맷이 필요합니다._포맷을 진행하시겠습니까?"), {1, 0, 1, 2, 24}},
    {R_SD_CARD_EXCHANGE_NEED, QT_TRANSLATE_NOOP("Text", "SD카드 교체가 필요합니다."), {0, 0, 0, 2, 24}},
    {R_SD_CARD_FORMAT_NEED, QT_TRANSLATE_NOOP("Text", "SD카드 포맷이 필요합니다."), {0, 0, 0, 2, 24}},
    {REAR_CAM_POWER_OFF_MSG, QT_TRANSLATE_NOOP("Text", "후방 카메라 녹화가 중지된 상태입니다."), {0, 0, 0, 2, 22}},
    {REAR_CAM_POWER_OFF_MSG_LOCK, QT_TRANSLATE_NOOP("Text", "주차모드 해제 후 동작하여 주십시요."), {0, 0, 0, 2, 22}},
    {SD_CARD_CHECK_MSG, QT_TRANSLATE_NOOP("Text", "SD카드 점검을 시작하시겠습니까?"), {1, 0, 0, 2, 20}},
    {SD_CARD_CHECK_ING, QT_TRANSLATE_NOOP("Text", "SD카드를 점검하는 중 입니다."), {0, 0, 0, 2, 22}},
    {SD_CARD_CHECK_COMPLETE_VALID, QT_TRANSLATE_NOOP("Text", "SD카드가 정상입니다."), {0, 0, 0, 2, 24}},
    {SD_CARD_CHECK_COMPLETE_INVALID},
    {REAR_CAM_RECORD_START, QT_TRANSLATE_NOOP("Text", "후방카메라를 켜고_후방 녹화를 시작합니다."), {0, 0, 1, 2, 23}},
    {REAR_CAM_RECORD_STOP, QT_TRANSLATE_NOOP("Text", "주차 중 후방카메라를 끄고_녹화를 중지합니다."), {0, 0, 1, 2, 23}},
    {FINISH_MANUAL_RECORDING, QT_TRANSLATE_NOOP("Text", "수동 녹화 종료"), {5, 0, 0, 2, 24}},
    {PREPARING_RECAM_RECORDING, QT_TRANSLATE_NOOP("Text", "후방녹화 준비 중 입니다."), {0, 0, 0, 2, 24}},
    {REARCAM_SETTING_WARNING_ACC, QT_TRANSLATE_NOOP("Text", "후방카메라 끄기 기능은_주차모드로 전환된 후에만 사용이_가능합니다."), {0, 0, 2, 2, 23}},
    {NOT_PARKING_MODE_RECORD_INFO, QT_TRANSLATE_NOOP("Text", "주차 중 녹화정보가_없습니다."), {0, 0, 1, 2, 23}},
    {RESOLUTION_SETTING_CHANGE_NEED_FORMAT, QT_TRANSLATE_NOOP("Text", "해상도 변경을 위해_SD카드 포맷이 필요합니다._포맷하시겠습니까?"), {1, 0, 2, 2, 23}},
    {FRAME_SETTING_CHANGE_NEED_FORMAT, QT_TRANSLATE_NOOP("Text", "프레임 변경을 위해_SD카드 포맷이 필요합니다._포맷하시겠습니까?"), {1, 0, 2, 2, 23}},
    {RES_FRAME_SETTING_CHANGE_NEED_FORMAT, QT_TRANSLATE_NOOP("Text", "해상도/프레임 변경을 위해_SD카드 포맷이 필요합니다._포맷하시겠습니까?"), {1, 0, 2, 2, 23}},
    {INITIALIZE_RESET_RES_NEED_FORMAT, QT_TRANSLATE_NOOP("Text", "초기화에 따른 해상도 변경으로_재부팅 후 자동으로 포맷이_진행됩니다. 계속하시겠습니까?"), {1, 0, 2, 1, 21}},
    {INITIALIZE_RESET_FPS_NEED_FORMAT, QT_TRANSLATE_NOOP("Text", "초기화에 따른 프레임 변경으로_재부팅 후 자동으로 포맷이_진행됩니다. 계속하시겠습니까?"), {1, 0, 2, 1, 21}},
};

constexpr HardwareMessage kHardwareMessages[] = {
    {0, QT_TRANSLATE_NOOP("Text", "후방카메라 진단이 필요합니다._고객센터로 문의해 주세요.")},
    {1, QT_TRANSLATE_NOOP("Text", "전방카메라 진단이 필요합니다._고객센터로 문의해 주세요.")},
    {2, QT_TRANSLATE_NOOP("Text", "후방카메라 진단이 필요합니다._고객센터로 문의해 주세요.")},
    {3, QT_TRANSLATE_NOOP("Text", "가속도센서 진단이 필요합니다._고객센터로 문의해 주세요.")},
    {4, QT_TRANSLATE_NOOP("Text", "소프트웨어 오류가 발견되었습니다._펌웨어 업데이트를 다시_적용해 주세요.")},
    {6, QT_TRANSLATE_NOOP("Text", "시간 정보 이상이 감지되었습니다._시간을 다시 설정해 주세요.")},
    {9, QT_TRANSLATE_NOOP("Text", "전방카메라 진단이 필요하여_재 시작합니다. 반복되는 경우_고객센터로 문의해 주세요.")},
    {10, QT_TRANSLATE_NOOP("Text", "전원 감지 회로 이상이_확인 되었습니다._고객센터로 문의해 주세요.")},
    {11, QT_TRANSLATE_NOOP("Text", "제품 점검이 필요합니다._고객센터로 문의해 주세요.")},
    {12, QT_TRANSLATE_NOOP("Text", "SD카드 쓰기 오류가 확인되어_재 시작합니다. 반복되는 경우_고객센터로 문의해 주세요.")},
    {14, QT_TRANSLATE_NOOP("Text", "SD카드 쓰기 오류가 확인되어_재 시작합니다. 반복되는 경우_고객센터로 문의해 주세요.")},
    {15, QT_TRANSLATE_NOOP("Text", "전원 감지 회로 이상이_확인되어 재 시작합니다.")},
    {16, QT_TRANSLATE_NOOP("Text", "후방카메라 연결 케이블 이상이_확인 되었습니다._고객센터로 문의해 주세요.")},
};
// clang-format on

constexpr bool InOrder() {
  int next = 0;
  for (const Message& message : kMessages)
    if (message.id != next++) return false;
  return next == INITIALIZE_RESET_FPS_NEED_FORMAT + 1;
}
static_assert(InOrder(), "a row stands at its id");

// The recorder's people know the code in this form: decimal digits after "0x".
QString CodeLine(int code) {
  return QStringLiteral("_Code:0x") + QString::asprintf("%02d", code);
}

// The text in the chosen language and what follows it. The lines that the numbers tell are those of the Korean one.
Content Say(const char* source, Numbers numbers, const QString& tail = QString(), int count = -1) {
  QString text = Text::tr(source, nullptr, count);
  text.replace(QLatin1String("%n"), QString::number(count));  // a negative one, which has no plural
  text += tail;
  if (!IsSourceLanguage()) numbers.str_type = int(text.count(u'_'));
  return {text, numbers};
}

Content Say(const Message& message, int count = -1) {
  return message.text ? Say(message.text, message.numbers, {}, count) : Content();
}

Content OwnTextOfHardwareError(int code) {
  for (const HardwareMessage& message : kHardwareMessages)
    if (message.code == code) return Say(message.text, {0, 0, int(QByteArrayView(message.text).count('_')), 2, 22});
  return {};
}

Content HardwareError(int code) {
  constexpr const char* kCheckCard = QT_TRANSLATE_NOOP("Text", "SD카드 점검이 필요합니다.");
  if (code == 8) return Say(kCheckCard, {0, 1, 1, 2, 24}, CodeLine(code));
  if (code == 18) return Say(kCheckCard, {0, 1, 0, 2, 24});
  Content own = OwnTextOfHardwareError(code);
  if (!own.text.isEmpty()) return own;
  return Say(QT_TRANSLATE_NOOP("Text", "제품점검이 필요합니다."), {0, 1, 1, 2, 24}, CodeLine(code));
}

Content NeedsFormat(int reason) {
  if (reason == 5)
    return Say(
        QT_TRANSLATE_NOOP("Text",
                          "일부 파일이 임의 삭제되어 SD카드 파일_구조가 변경되었습니다. 시스템 안정성을_위해 SD카드 "
                          "포맷이 필요합니다."),
        {1, 0, 2, 1, 17});
  if (reason == 7)
    return Say(
        QT_TRANSLATE_NOOP("Text", "저장 단위 변경이 감지되었습_니다. 시스템 안정성을 위해_SD카드 포맷이 필요합니다."),
        {1, 0, 2, 1, 21});
  return Say(kMessages[R_SD_ERROR_NEET_FORMAT]);
}

Content ContentOf(int id, int value) {
  if (id < 0 || id >= int(std::size(kMessages))) return {};
  switch (id) {
    case LED_FILE_UPDATE_SAVE:
    case LED_FILE_UPDATE_DELETE:
      return Say(kMessages[id], value);
    case R_HW_ERROR:
      return HardwareError(value);
    case R_VOLT_SET:
      return Say(kMessages[value == 1 ? VOLCOM_RESULT_SUCCESS : R_VOLT_SET]);
    case R_SD_ERROR_NEET_FORMAT:
      return NeedsFormat(value);
    default:
      return Say(kMessages[id]);
  }
}

QString Give(const Content& content, int* box_type, int* error_type, int* str_type, int* align_type, int* px) {
  if (content.numbers.px == 0) return {};
  *box_type = content.numbers.box_type;
  *error_type = content.numbers.error_type;
  *str_type = content.numbers.str_type;
  *align_type = content.numbers.align_type;
  *px = content.numbers.px;
  return content.text;
}
}  // namespace

QString GetMessageBoxString(int id, int* box_type, int* error_type, int* str_type, int* align_type, int* px,
                            int value) {
  return Give(ContentOf(id, value), box_type, error_type, str_type, align_type, px);
}

QString GetHWErrorMessageStatus(int code, int* box_type, int* error_type, int* str_type, int* align_type, int* px) {
  return Give(OwnTextOfHardwareError(code), box_type, error_type, str_type, align_type, px);
}
