kintar_logic(kintar_selection SOURCES SelectionQuery.cpp LINK kintar_base)
kintar_logic(kintar_selection_lists SOURCES SelectionCompanion.cpp
    LINK kintar_selection kintar_server)
kintar_windows(kintar_selection_windows
    SOURCES CriteriaPane.cpp CriteriaPanes.cpp UdfPane.cpp frmSelName.cpp
    LINK kintar_selection_lists kintar_platform kintar_platform_windows)
