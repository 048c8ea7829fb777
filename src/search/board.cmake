kintar_logic(kintar_board SOURCES Board.cpp BoardRefresh.cpp HolderState.cpp LINK kintar_base)
kintar_logic(kintar_board_reader SOURCES BoardTables.cpp HolderReader.cpp
    LINK kintar_board kintar_server)
