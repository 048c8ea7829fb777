kintar_test(board_test
    SOURCES BoardRefreshTest.cpp BoardTest.cpp HolderStateTest.cpp
    LINK kintar_board)
kintar_test(rules_of_in_test ENGINES
    SOURCES SearchSite.cpp ThreeRulesOfInTest.cpp
    LINK kintar_board_reader kintar_search kintar_reports kintar_companion kintar_test_sites)
