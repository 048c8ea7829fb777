kintar_logic(kintar_selection SOURCES SelectionQuery.cpp LINK kintar_base)
