kintar_bench(reports_bench
    SOURCES ReportsBench.cpp
    LINK kintar_reports kintar_reports_paint kintar_companion)
target_include_directories(reports_bench PRIVATE ${PROJECT_SOURCE_DIR}/tests)
target_compile_definitions(reports_bench PRIVATE
    "KINTAR_REPORT_FILES=\"${PROJECT_SOURCE_DIR}/packaging/reports\"")
