kintar_logic(kintar_search
    SOURCES CardStatus.cpp DefaultImageTypes.cpp ItemKey.cpp ListColumns.cpp ModeLayout.cpp
            NameList.cpp NameQuery.cpp PhotoChoice.cpp SortedOrder.cpp UdfList.cpp
            UdfPermission.cpp WebAddress.cpp
    LINK kintar_base kintar_server)

kintar_windows(kintar_search_windows
    SOURCES frmNameSearch.cpp frmNameSearchDetail.cpp frmNameSearchList.cpp NameFill.cpp
            NameListModel.cpp NameListView.cpp NameSort.cpp NameSearchControls.cpp NameSearchWindows.cpp
            objNameSearch.cpp
            PrintQueue.cpp
    LINK kintar_search kintar_platform_windows)
