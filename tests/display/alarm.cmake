kintar_test(alarm_test SOURCES AlarmColourTest.cpp objAlarmPopUpTest.cpp LINK kintar_alarm)
kintar_test(alarm_window_test WINDOW SOURCES frmAlarmPopUpTest.cpp
    LINK kintar_alarm_windows)
