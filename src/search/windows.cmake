kintar_windows(kintar_selection_forms
    SOURCES SelectionWindows.cpp
    LINK kintar_selection_windows kintar_board_windows)
