kintar_logic(kintar_search
    SOURCES CardStatus.cpp DefaultImageTypes.cpp ItemKey.cpp ListColumns.cpp ModeLayout.cpp
            NameList.cpp NameQuery.cpp PhotoChoice.cpp SortedOrder.cpp UdfList.cpp
            UdfPermission.cpp WebAddress.cpp
    LINK kintar_base kintar_server)
