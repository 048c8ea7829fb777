kintar_bench(selection_bench
    SOURCES SelectionBench.cpp ${PROJECT_SOURCE_DIR}/tests/search/SearchSite.cpp
    LINK kintar_selection_lists kintar_companion kintar_test_sites)
kintar_bench(board_bench
    SOURCES BoardBench.cpp ${PROJECT_SOURCE_DIR}/tests/search/SearchSite.cpp
    LINK kintar_board_windows kintar_companion kintar_test_sites)
kintar_bench(board_server_bench
    SOURCES BoardServerBench.cpp ${PROJECT_SOURCE_DIR}/tests/search/SearchSite.cpp
    LINK kintar_board_reader kintar_companion kintar_test_sites)
foreach(bench selection_bench board_bench board_server_bench)
    target_include_directories(${bench} PRIVATE ${PROJECT_SOURCE_DIR}/tests)
endforeach()
