find_package(Qt6 6.4 REQUIRED COMPONENTS Test)
kintar_test(selection_windows_test WINDOW
    SOURCES SearchSite.cpp WindowMain.cpp frmSelNameTest.cpp
    LINK kintar_selection_windows kintar_companion Qt6::Test)
