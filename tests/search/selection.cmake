kintar_test(selection_test
    SOURCES SelectionQueryTest.cpp SelectionTableTest.cpp
    LINK kintar_selection)
