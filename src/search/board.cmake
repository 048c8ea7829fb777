kintar_logic(kintar_board SOURCES Board.cpp BoardRefresh.cpp HolderState.cpp LINK kintar_base)
kintar_logic(kintar_board_reader SOURCES BoardTables.cpp HolderReader.cpp
    LINK kintar_board kintar_server)
kintar_windows(kintar_board_windows
    SOURCES BoardIcons.cpp BoardList.cpp frmInOut.cpp
    LINK kintar_board_reader kintar_platform kintar_platform_windows)
