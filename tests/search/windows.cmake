find_package(Qt6 6.4 REQUIRED COMPONENTS Test)
kintar_test(selection_windows_test WINDOW
    SOURCES SearchSite.cpp WindowMain.cpp frmSelNameTest.cpp SelectionWindowsTest.cpp
    LINK kintar_selection_forms kintar_companion Qt6::Test)
kintar_test(board_windows_test WINDOW
    SOURCES SearchSite.cpp WindowMain.cpp frmInOutTest.cpp
    LINK kintar_board_windows kintar_companion Qt6::Test)
