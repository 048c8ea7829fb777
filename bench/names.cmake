foreach(bench bench_name_search bench_name_search_server)
    string(REPLACE bench_name_search NameSearch source ${bench})
    string(REPLACE _server Server source ${source})
    kintar_bench(${bench}
        SOURCES ${source}Bench.cpp
        LINK kintar_search_windows kintar_companion kintar_platform_photo_decoder kintar_cluster)
    target_include_directories(${bench} PRIVATE ${PROJECT_SOURCE_DIR}/tests)
    target_compile_definitions(${bench} PRIVATE
        KINTAR_PHOTO_WORKER="$<TARGET_FILE:kintar3-photo>")
    add_dependencies(${bench} kintar3-photo)
endforeach()
