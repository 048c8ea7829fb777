kintar_test(alarm_test SOURCES AlarmColourTest.cpp objAlarmPopUpTest.cpp LINK kintar_alarm)
