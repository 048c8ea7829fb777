kintar_logic(kintar_board SOURCES Board.cpp BoardRefresh.cpp HolderState.cpp LINK kintar_base)
