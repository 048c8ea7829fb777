kintar_logic(kintar_selection SOURCES SelectionQuery.cpp LINK kintar_base)
kintar_logic(kintar_selection_lists SOURCES SelectionCompanion.cpp
    LINK kintar_selection kintar_server)
