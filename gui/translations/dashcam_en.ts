<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="en" sourcelanguage="ko">
<context>
    <name>Text</name>
    <message numerus="yes">
        <source>차단%n</source>
        <translation>
            <numerusform>Off in %n s</numerusform>
            <numerusform>Off in %n s</numerusform>
        </translation>
    </message>
    <message>
        <source>yyyy.MM.dd</source>
        <translation>d MMM yyyy</translation>
    </message>
    <message>
        <source>MM월 dd일 HH:mm</source>
        <translation>d MMM, HH:mm</translation>
    </message>
    <message numerus="yes">
        <source>이벤트 녹화 %n건</source>
        <translation>
            <numerusform>%n event recording</numerusform>
            <numerusform>%n event recordings</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>모션 녹화 %n건</source>
        <translation>
            <numerusform>%n motion recording</numerusform>
            <numerusform>%n motion recordings</numerusform>
        </translation>
    </message>
    <message>
        <source>저전압으로 주차녹화가 종료되었습니다.</source>
        <translation>Parking recording ended: low voltage</translation>
    </message>
    <message>
        <source>영상 녹화를 시작합니다.</source>
        <translation>Recording started</translation>
    </message>
    <message>
        <source>영상 녹화를 중지합니다.</source>
        <translation>Recording stopped</translation>
    </message>
    <message>
        <source>설정이 변경되었습니다._적용하시겠습니까?</source>
        <translation>Settings changed._Apply them?</translation>
    </message>
    <message>
        <source>SD카드 포맷을_진행하시겠습니까?</source>
        <translation>Format the SD card?</translation>
    </message>
    <message>
        <source>입력대기시간이 초과되었습니다.</source>
        <translation>No answer in time</translation>
    </message>
    <message>
        <source>취소하었습니다.</source>
        <translation>Cancelled</translation>
    </message>
    <message>
        <source>주차/주행 설정을 확인하세요.</source>
        <translation>Check the driving and_parking settings</translation>
    </message>
    <message numerus="yes">
        <source>%n개 항목이 선택되었습니다._저장하시겠습니까?</source>
        <translation>
            <numerusform>%n item selected._Save it?</numerusform>
            <numerusform>%n items selected._Save them?</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n개 항목이 선택되었습니다._삭제하시겠습니까?</source>
        <translation>
            <numerusform>%n item selected._Delete it?</numerusform>
            <numerusform>%n items selected._Delete them?</numerusform>
        </translation>
    </message>
    <message>
        <source>저장되었습니다.</source>
        <translation>Saved</translation>
    </message>
    <message>
        <source>삭제되었습니다.</source>
        <translation>Deleted</translation>
    </message>
    <message>
        <source>저장에 실패하였습니다.</source>
        <translation>Saving failed</translation>
    </message>
    <message>
        <source>삭제에 실패하였습니다.</source>
        <translation>Deleting failed</translation>
    </message>
    <message>
        <source>메뉴로 진입합니다.</source>
        <translation>Opening the menu</translation>
    </message>
    <message>
        <source>음성녹음을 중지합니다.</source>
        <translation>Sound recording off</translation>
    </message>
    <message>
        <source>음성녹음을 시작합니다.</source>
        <translation>Sound recording on</translation>
    </message>
    <message>
        <source>GMT시간이 변경되었습니다._적용하시겠습니까?</source>
        <translation>Time zone changed._Apply it?</translation>
    </message>
    <message>
        <source>시간이 변경되었습니다._적용하시겠습니까?</source>
        <translation>Time changed._Apply it?</translation>
    </message>
    <message>
        <source>설정된 시간이 현재 시간과_동일합니다.</source>
        <translation>The time is the same_as before</translation>
    </message>
    <message>
        <source>첫번째 녹화파일이 재생 중 입니다.</source>
        <translation>This is the first recording</translation>
    </message>
    <message>
        <source>마지막 녹화파일이 재생 중 입니다.</source>
        <translation>This is the last recording</translation>
    </message>
    <message>
        <source>다음파일을 재생하시겠습니까?</source>
        <translation>Play the next recording?</translation>
    </message>
    <message>
        <source>영상재생이 모두 끝났습니다.</source>
        <translation>All recordings were played</translation>
    </message>
    <message>
        <source>저장하시겠습니까?</source>
        <translation>Save?</translation>
    </message>
    <message>
        <source>표시목록이 전부 채워져 있습니다._표시목록 메뉴에서 삭제후 저장하여_주십시요.</source>
        <translation>The display list is full._Delete something from it,_then save.</translation>
    </message>
    <message>
        <source>전방 파일이 존재하지 않습니다.</source>
        <translation>No front recording</translation>
    </message>
    <message>
        <source>후방 파일이 존재하지 않습니다.</source>
        <translation>No rear recording</translation>
    </message>
    <message>
        <source>재생에 실패하였습니다.</source>
        <translation>Playback failed</translation>
    </message>
    <message>
        <source>주행시 충격감도와 주차모드가 끄기로_되어 있어 종류별 삭제를 설정하실 수_없습니다.</source>
        <translation>Deleting by type needs_driving impact or_parking mode switched on</translation>
    </message>
    <message>
        <source>재생목록을 불러오는 중 입니다.</source>
        <translation>Loading the recordings</translation>
    </message>
    <message>
        <source>LED표시방법이 OFF인 경우_표시목록을 열수 없습니다.</source>
        <translation>Switch the LED display on_to open the display list</translation>
    </message>
    <message>
        <source>Security모드를 선택하였습니다._저장하시겠습니까?</source>
        <translation>Security mode selected._Save it?</translation>
    </message>
    <message>
        <source>Security모드는 삭제하실 수 없습니다._체크 해제후 이용해 주세요.</source>
        <translation>Security mode cannot be deleted._Clear its tick first.</translation>
    </message>
    <message>
        <source>Korvo Black은 삭제하실 수 없습니다._체크 해제후 이용해 주세요.</source>
        <translation>Korvo Black cannot be deleted._Clear its tick first.</translation>
    </message>
    <message>
        <source>Security LED와 Korvo Black은_삭제하실수 없습니다._체크 해제후 이용해 주세요.</source>
        <translation>Security LED and Korvo Black_cannot be deleted._Clear their ticks first.</translation>
    </message>
    <message>
        <source>선택된 항목이 없습니다.</source>
        <translation>Nothing selected</translation>
    </message>
    <message>
        <source>led.zel파일을 찾을수 없습니다.</source>
        <translation>led.zel was not found</translation>
    </message>
    <message>
        <source>번호를 입력하여 주십시요.</source>
        <translation>Enter a number</translation>
    </message>
    <message>
        <source>후방카메라가 연결되지 않았습니다.</source>
        <translation>The rear camera is not connected</translation>
    </message>
    <message>
        <source>전방 LED설정에 실패하였습니다._제품 점검이 필요합니다.</source>
        <translation>The front LED failed._The camera needs service.</translation>
    </message>
    <message>
        <source>프리뷰 모드로 진입합니다.</source>
        <translation>Opening the live view</translation>
    </message>
    <message>
        <source>화면대기시간이 &apos;항상&apos;으로 되어 있어_화면보호기를 켤 수 없습니다.</source>
        <translation>No screen saver while_&apos;Screen off after&apos; is &apos;Never&apos;</translation>
    </message>
    <message>
        <source>선택항목을 저장하는 중 입니다.</source>
        <translation>Saving the selection</translation>
    </message>
    <message>
        <source>선택항목을 삭제하는 중 입니다.</source>
        <translation>Deleting the selection</translation>
    </message>
    <message>
        <source>전압 보정을 위한 측정을 시작합니다._시동전과 시동후의 전압측정을_하게 됩니다.</source>
        <translation>Voltage calibration starts._It measures before and after_the engine starts.</translation>
    </message>
    <message>
        <source>약 10초동안 전압을 측정합니다._계속 하시겠습니까?</source>
        <translation>Measuring takes 10 seconds._Continue?</translation>
    </message>
    <message>
        <source>시동전 측정을 시작합니다.</source>
        <translation>Measuring before start</translation>
    </message>
    <message>
        <source>시동후 측정을 시작합니다.</source>
        <translation>Measuring after start</translation>
    </message>
    <message>
        <source>측정을 완료하였습니다._시동후 측정을 시작해 주세요.</source>
        <translation>Measured._Now choose &apos;After start&apos;.</translation>
    </message>
    <message>
        <source>모든 측정을 완료하였습니다._결과를 기다리는 중 입니다.</source>
        <translation>All measured._Waiting for the result.</translation>
    </message>
    <message>
        <source>전압 보정에 성공하였습니다.</source>
        <translation>Voltage calibrated</translation>
    </message>
    <message>
        <source>전압 보정에 실패하였습니다.</source>
        <translation>Voltage calibration failed</translation>
    </message>
    <message>
        <source>측정을 완료하였습니다._시동전 측정을 시작해 주세요.</source>
        <translation>Measured._Now choose &apos;Before start&apos;.</translation>
    </message>
    <message>
        <source>선택영역에 적용하시겠습니까?</source>
        <translation>Apply to these areas?</translation>
    </message>
    <message>
        <source>모션감지에서 제외할 영역을 선택해_주세요. 선택완료 후 전원버튼을_짧게 누르시면 저장됩니다.</source>
        <translation>Touch the areas where motion_is to be ignored. Then press the_power button to save.</translation>
    </message>
    <message>
        <source>현재 녹화 중인 파일을 보관합니다.</source>
        <translation>This recording is protected</translation>
    </message>
    <message>
        <source>현재 녹화 중인 파일은 이미 보관파일로_설정되었습니다.</source>
        <translation>This recording is_protected already</translation>
    </message>
    <message>
        <source>메뉴화면으로 돌아가시겠습_니까?</source>
        <translation>Back to the menu?</translation>
    </message>
    <message>
        <source>재생목록에 들어가면 녹화가 중지_됩니다. 계속 진행하시겠습니까?</source>
        <translation>Recording stops while_recordings are shown._Continue?</translation>
    </message>
    <message>
        <source>파일리스트를 불러오는 중 입니다.</source>
        <translation>Loading the recordings</translation>
    </message>
    <message>
        <source>수동 녹화 시작</source>
        <translation>Record: on</translation>
    </message>
    <message>
        <source>터치보정 메뉴로 진입합니다.</source>
        <translation>Opening touch calibration</translation>
    </message>
    <message>
        <source>보정에 성공하였습니다.</source>
        <translation>Calibrated</translation>
    </message>
    <message>
        <source>보정에 실패하였습니다._보정을 다시 시도합니다.</source>
        <translation>Calibration failed._Trying again.</translation>
    </message>
    <message>
        <source>보정에 실패하였습니다._이전 메뉴로 돌아갑니다.</source>
        <translation>Calibration failed._Back to the menu.</translation>
    </message>
    <message>
        <source>터치보정을 종료하시려면 전원키를 한번_더 눌러주세요. 보정을 계속 진행 하시_려면 LCD를 한번 터치해 주세요.</source>
        <translation>Press the power key again_to end the calibration._Touch the screen to go on.</translation>
    </message>
    <message>
        <source>사용자 설정 데이터를_초기화 하시겠습니까?</source>
        <translation>Reset all settings?</translation>
    </message>
    <message>
        <source>변경된 설정을 저장하는 중 입니다.</source>
        <translation>Saving the settings</translation>
    </message>
    <message>
        <source>시스템을 재시작 하시겠습니까?</source>
        <translation>Restart the camera?</translation>
    </message>
    <message>
        <source>후방카메라를 연결하여 주십시오._시스템을 종료합니다.</source>
        <translation>Connect the rear camera._Shutting down.</translation>
    </message>
    <message>
        <source>안전운행을 위해 LCD가 꺼집니다.</source>
        <translation>Screen off for safe driving</translation>
    </message>
    <message>
        <source>시스템을 종료하시겠습니까?</source>
        <translation>Shut down the camera?</translation>
    </message>
    <message>
        <source>SD카드를 넣어주십시오.</source>
        <translation>Insert an SD card</translation>
    </message>
    <message>
        <source>SD카드를 점검하여 주십시오.</source>
        <translation>Check the SD card</translation>
    </message>
    <message>
        <source>SD카드 포맷주기가 되었습니다.</source>
        <translation>Time to format the SD card</translation>
    </message>
    <message>
        <source>후방카메라 점검이 필요합니다.</source>
        <translation>The rear camera needs service</translation>
    </message>
    <message>
        <source>시간설정을 확인하세요.</source>
        <translation>Check the time</translation>
    </message>
    <message>
        <source>GPS가 정상적으로 수신되었습니다.</source>
        <translation>GPS connected</translation>
    </message>
    <message>
        <source>주차모드로 전환합니다.</source>
        <translation>Parking mode on</translation>
    </message>
    <message>
        <source>주차모드가 해제되었습니다.</source>
        <translation>Parking mode off</translation>
    </message>
    <message>
        <source>배터리 방전예방을 위해_전원을 차단합니다.</source>
        <translation>Switching off_to protect the battery</translation>
    </message>
    <message>
        <source>배터리 방전예방을 위한_전원차단을 해제합니다.</source>
        <translation>Battery is fine again:_power stays on</translation>
    </message>
    <message>
        <source>제품보호를 위해 전원을 차단합니다.</source>
        <translation>Switching off:_the camera is too hot</translation>
    </message>
    <message>
        <source>제품보호를 위한 전원차단을 해제합니다.</source>
        <translation>Temperature is fine again:_power stays on</translation>
    </message>
    <message>
        <source>사고다발지점입니다._안전운전 하십시오.</source>
        <translation>Accident area._Drive carefully.</translation>
    </message>
    <message>
        <source>후방카메라가 연결되었습니다.</source>
        <translation>Rear camera connected</translation>
    </message>
    <message>
        <source>시스템을 재시작 합니다.</source>
        <translation>Restarting the camera</translation>
    </message>
    <message>
        <source>시스템을 종료합니다.</source>
        <translation>Shutting down</translation>
    </message>
    <message>
        <source>전방 LED설정에 실패하였습니다._제품점검이 필요합니다.</source>
        <translation>The front LED failed._The camera needs service.</translation>
    </message>
    <message>
        <source>영상녹화를 시작합니다.</source>
        <translation>Recording started</translation>
    </message>
    <message>
        <source>터치 동작에 문제가 있습니다._제품점검이 필요합니다.</source>
        <translation>The touch screen has a fault._The camera needs service.</translation>
    </message>
    <message>
        <source>터치 보정 메뉴에 진입합니다.</source>
        <translation>Opening touch calibration</translation>
    </message>
    <message>
        <source>SD카드 포맷이 필요합니다._포맷을 진행하시겠습니까?</source>
        <translation>The SD card must be formatted._Format it?</translation>
    </message>
    <message>
        <source>SD카드 교체가 필요합니다.</source>
        <translation>Replace the SD card</translation>
    </message>
    <message>
        <source>SD카드 포맷이 필요합니다.</source>
        <translation>The SD card must be formatted</translation>
    </message>
    <message>
        <source>후방 카메라 녹화가 중지된 상태입니다.</source>
        <translation>Rear recording is stopped</translation>
    </message>
    <message>
        <source>주차모드 해제 후 동작하여 주십시요.</source>
        <translation>Not while parking mode is on</translation>
    </message>
    <message>
        <source>SD카드 점검을 시작하시겠습니까?</source>
        <translation>Check the SD card now?</translation>
    </message>
    <message>
        <source>SD카드를 점검하는 중 입니다.</source>
        <translation>Checking the SD card</translation>
    </message>
    <message>
        <source>SD카드가 정상입니다.</source>
        <translation>The SD card is fine</translation>
    </message>
    <message>
        <source>후방카메라를 켜고_후방 녹화를 시작합니다.</source>
        <translation>Rear camera on:_rear recording started</translation>
    </message>
    <message>
        <source>주차 중 후방카메라를 끄고_녹화를 중지합니다.</source>
        <translation>Rear camera off while parking:_rear recording stopped</translation>
    </message>
    <message>
        <source>수동 녹화 종료</source>
        <translation>Record: off</translation>
    </message>
    <message>
        <source>후방녹화 준비 중 입니다.</source>
        <translation>Preparing rear recording</translation>
    </message>
    <message>
        <source>후방카메라 끄기 기능은_주차모드로 전환된 후에만 사용이_가능합니다.</source>
        <translation>The rear camera can be_switched off only_in parking mode</translation>
    </message>
    <message>
        <source>주차 중 녹화정보가_없습니다.</source>
        <translation>No parking report</translation>
    </message>
    <message>
        <source>해상도 변경을 위해_SD카드 포맷이 필요합니다._포맷하시겠습니까?</source>
        <translation>A new resolution needs_a formatted SD card._Format it?</translation>
    </message>
    <message>
        <source>프레임 변경을 위해_SD카드 포맷이 필요합니다._포맷하시겠습니까?</source>
        <translation>A new frame rate needs_a formatted SD card._Format it?</translation>
    </message>
    <message>
        <source>해상도/프레임 변경을 위해_SD카드 포맷이 필요합니다._포맷하시겠습니까?</source>
        <translation>New resolution and frame rate_need a formatted SD card._Format it?</translation>
    </message>
    <message>
        <source>초기화에 따른 해상도 변경으로_재부팅 후 자동으로 포맷이_진행됩니다. 계속하시겠습니까?</source>
        <translation>The reset changes the resolution:_the SD card is formatted after_a restart. Continue?</translation>
    </message>
    <message>
        <source>초기화에 따른 프레임 변경으로_재부팅 후 자동으로 포맷이_진행됩니다. 계속하시겠습니까?</source>
        <translation>The reset changes the frame rate:_the SD card is formatted after_a restart. Continue?</translation>
    </message>
    <message>
        <source>후방카메라 진단이 필요합니다._고객센터로 문의해 주세요.</source>
        <translation>The rear camera has a fault._Please contact service.</translation>
    </message>
    <message>
        <source>전방카메라 진단이 필요합니다._고객센터로 문의해 주세요.</source>
        <translation>The front camera has a fault._Please contact service.</translation>
    </message>
    <message>
        <source>가속도센서 진단이 필요합니다._고객센터로 문의해 주세요.</source>
        <translation>The impact sensor has a fault._Please contact service.</translation>
    </message>
    <message>
        <source>소프트웨어 오류가 발견되었습니다._펌웨어 업데이트를 다시_적용해 주세요.</source>
        <translation>Software fault._Please install_the firmware update again.</translation>
    </message>
    <message>
        <source>시간 정보 이상이 감지되었습니다._시간을 다시 설정해 주세요.</source>
        <translation>The time is wrong._Please set it again.</translation>
    </message>
    <message>
        <source>전방카메라 진단이 필요하여_재 시작합니다. 반복되는 경우_고객센터로 문의해 주세요.</source>
        <translation>Front camera fault: restarting._If it happens again,_please contact service.</translation>
    </message>
    <message>
        <source>전원 감지 회로 이상이_확인 되었습니다._고객센터로 문의해 주세요.</source>
        <translation>The power monitor has a fault._Please contact service.</translation>
    </message>
    <message>
        <source>제품 점검이 필요합니다._고객센터로 문의해 주세요.</source>
        <translation>The camera needs service._Please contact service.</translation>
    </message>
    <message>
        <source>SD카드 쓰기 오류가 확인되어_재 시작합니다. 반복되는 경우_고객센터로 문의해 주세요.</source>
        <translation>SD card write error: restarting._If it happens again,_please contact service.</translation>
    </message>
    <message>
        <source>전원 감지 회로 이상이_확인되어 재 시작합니다.</source>
        <translation>Power monitor fault:_restarting</translation>
    </message>
    <message>
        <source>후방카메라 연결 케이블 이상이_확인 되었습니다._고객센터로 문의해 주세요.</source>
        <translation>The rear camera cable_has a fault._Please contact service.</translation>
    </message>
    <message>
        <source>SD카드 점검이 필요합니다.</source>
        <translation>The SD card must be checked</translation>
    </message>
    <message>
        <source>제품점검이 필요합니다.</source>
        <translation>The camera needs service</translation>
    </message>
    <message>
        <source>일부 파일이 임의 삭제되어 SD카드 파일_구조가 변경되었습니다. 시스템 안정성을_위해 SD카드 포맷이 필요합니다.</source>
        <translation>Files were deleted outside_the camera: the SD card_must be formatted. Format it?</translation>
    </message>
    <message>
        <source>저장 단위 변경이 감지되었습_니다. 시스템 안정성을 위해_SD카드 포맷이 필요합니다.</source>
        <translation>The block size has changed:_the SD card must_be formatted. Format it?</translation>
    </message>
    <message>
        <source>이벤트</source>
        <translation>Event</translation>
    </message>
    <message>
        <source>상시</source>
        <translation>Normal</translation>
    </message>
    <message>
        <source>주차</source>
        <translation>Parking</translation>
    </message>
    <message numerus="yes">
        <source>포맷 후 %n일</source>
        <translation>
            <numerusform>%n day since format</numerusform>
            <numerusform>%n days since format</numerusform>
        </translation>
    </message>
    <message>
        <source>포맷 중에는 전원을 끄지 마십시오.</source>
        <translation>Do not switch off the power.</translation>
    </message>
    <message>
        <source>SD카드 포맷에 실패하였습니다.
SD카드 교체가 필요합니다.</source>
        <translation>Formatting failed.
Replace the SD card.</translation>
    </message>
    <message>
        <source>포맷이 완료되었습니다.
영상 녹화를 시작합니다.</source>
        <translation>Formatted.
Recording started.</translation>
    </message>
    <message>
        <source>SD카드 포맷에 실패하였습니다.</source>
        <translation>Formatting failed</translation>
    </message>
    <message>
        <source>SD카드 포맷을 <byte value="xd"/>
 진행 중입니다.</source>
        <translation>Formatting
the SD card</translation>
    </message>
    <message>
        <source>시간이 초과되었습니다
 재시도해주십시요</source>
        <translation>It took too long.
Please try again.</translation>
    </message>
    <message>
        <source>좌표보정을 시작합니다.<byte value="xd"/>
표시되는 지점을 눌러주시기 바랍니다.</source>
        <translation>Touch calibration
Touch each mark that appears.</translation>
    </message>
    <message>
        <source>보정 결과를 확인하기 위해 표시지점을<byte value="xd"/>
한번더 눌러주시기 바랍니다.</source>
        <translation>To check the result,
touch each mark once more.</translation>
    </message>
    <message>
        <source>보정 전</source>
        <translation>Before calibration</translation>
    </message>
    <message>
        <source>보정 후</source>
        <translation>After calibration</translation>
    </message>
</context>
</TS>
