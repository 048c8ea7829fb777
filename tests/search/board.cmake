kintar_test(board_test
    SOURCES BoardRefreshTest.cpp BoardTest.cpp HolderStateTest.cpp
    LINK kintar_board)
