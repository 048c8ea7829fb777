# The alarm pop-up.
kintar_logic(kintar_alarm SOURCES AlarmColour.cpp objAlarmPopUp.cpp LINK kintar_server)
