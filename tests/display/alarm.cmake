kintar_test(alarm_test SOURCES AlarmColourTest.cpp objAlarmPopUpTest.cpp LINK kintar_alarm)
find_package(Qt6 REQUIRED COMPONENTS Test)
kintar_test(alarm_window_test WINDOW SOURCES frmAlarmPopUpTest.cpp
    LINK kintar_alarm_windows Qt6::Test)
