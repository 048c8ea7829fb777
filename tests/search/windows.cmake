kintar_test(selection_windows_test WINDOW ENGINES
    SOURCES SearchSite.cpp WindowMain.cpp frmSelNameTest.cpp SelectionWindowsTest.cpp
    LINK kintar_selection_forms kintar_companion kintar_test_sites)
kintar_test(board_windows_test WINDOW ENGINES
    SOURCES SearchSite.cpp WindowMain.cpp frmInOutTest.cpp
    LINK kintar_board_windows kintar_companion kintar_test_sites)
