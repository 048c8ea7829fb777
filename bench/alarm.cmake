kintar_bench(alarm_bench
    SOURCES AlarmBench.cpp
    LINK kintar_alarm_windows)
target_include_directories(alarm_bench PRIVATE ${PROJECT_SOURCE_DIR}/tests)
