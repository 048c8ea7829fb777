kintar_test(selection_test
    SOURCES SelectionQueryTest.cpp SelectionTableTest.cpp
    LINK kintar_selection)
kintar_test(selection_rows_test ENGINES
    SOURCES SearchSite.cpp SelectionRowsTest.cpp
    LINK kintar_selection_lists kintar_companion kintar_test_sites)
