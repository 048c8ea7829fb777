kintar_bench(reports_bench
    SOURCES ReportsBench.cpp
    LINK kintar_reports kintar_reports_paint kintar_companion kintar_test_sites)
target_include_directories(reports_bench PRIVATE ${PROJECT_SOURCE_DIR}/tests)
target_compile_definitions(reports_bench PRIVATE
    "KINTAR_REPORT_FILES=\"${PROJECT_SOURCE_DIR}/packaging/reports\"")

kintar_bench(who_is_in_bench SOURCES WhoIsInBench.cpp
    LINK kintar_reports kintar_companion kintar_test_sites)
kintar_bench(who_is_in_server_bench
    SOURCES WhoIsInServerBench.cpp
    LINK kintar_reports kintar_companion kintar_test_sites)
foreach(bench who_is_in_bench who_is_in_server_bench)
    target_include_directories(${bench} PRIVATE ${PROJECT_SOURCE_DIR}/tests)
endforeach()
