kintar_bench(bench_name_search
    SOURCES NameSearchBench.cpp
    LINK kintar_search_windows kintar_companion kintar_platform_photo_decoder)
target_include_directories(bench_name_search PRIVATE ${PROJECT_SOURCE_DIR}/tests)
target_compile_definitions(bench_name_search PRIVATE
    KINTAR_PHOTO_WORKER="$<TARGET_FILE:kintar3-photo>")
add_dependencies(bench_name_search kintar3-photo)
