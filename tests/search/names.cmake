kintar_test(search_test
    SOURCES CardStatusTest.cpp DefaultImageTypesTest.cpp ItemKeyTest.cpp ListColumnsTest.cpp
            ModeLayoutTest.cpp NameListTest.cpp NameQueryTest.cpp PhotoChoiceTest.cpp
            SortedOrderTest.cpp UdfListTest.cpp UdfPermissionTest.cpp WebAddressTest.cpp
    LINK kintar_search)
