# The alarm pop-up.
kintar_logic(kintar_alarm SOURCES AlarmColour.cpp objAlarmPopUp.cpp LINK kintar_server)
kintar_windows(kintar_alarm_windows
    SOURCES AlarmWindows.cpp SystemColours.cpp frmAlarmPopUp.cpp
    LINK kintar_alarm kintar_platform_windows)
