kintar_test(search_test
    SOURCES CardStatusTest.cpp DefaultImageTypesTest.cpp ItemKeyTest.cpp ListColumnsTest.cpp
            ModeLayoutTest.cpp NameListTest.cpp NameQueryTest.cpp PhotoChoiceTest.cpp
            SortedOrderTest.cpp UdfListTest.cpp UdfPermissionTest.cpp WebAddressTest.cpp
    LINK kintar_search)

kintar_test(search_windows_test
    SOURCES frmNameSearchDetailTest.cpp frmNameSearchFillTest.cpp frmNameSearchTest.cpp
            objNameSearchTest.cpp ../support/WindowMain.cpp
    LINK kintar_search_windows WINDOW)

kintar_test(search_rows_test
    SOURCES NameQueryRowsTest.cpp ../companion/SiteFolder.cpp
    LINK kintar_search kintar_companion kintar_test_sites
    DEFINE KINTAR_COMPANION_TESTS="${PROJECT_SOURCE_DIR}/tests/companion")

kintar_test(engines_agree_test
    SOURCES EnginesAgreeTest.cpp agreement/PlainSearch.cpp agreement/RandomSite.cpp
    LINK kintar_search kintar_selection kintar_companion kintar_test_sites)
