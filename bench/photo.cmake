kintar_bench(photo_bench
    SOURCES PhotoBench.cpp
    LINK kintar_display_windows kintar_platform_photo_decoder)
target_include_directories(photo_bench PRIVATE ${PROJECT_SOURCE_DIR}/tests)
target_compile_definitions(photo_bench PRIVATE KINTAR_PHOTO_WORKER="$<TARGET_FILE:kintar3-photo>")
add_dependencies(photo_bench kintar3-photo)
