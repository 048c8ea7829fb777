# Zone conversions beside a date library's; the editor beside an empty one; browsing beside bare
# SQLite.
kintar_bench(overrides_bench
    SOURCES OverridesBench.cpp
    LINK kintar_overrides_windows kintar_platform_zones kintar_companion SQLite::SQLite3 ICU::i18n
        ICU::uc)
target_compile_definitions(overrides_bench PRIVATE KINTAR_BIN="${CMAKE_RUNTIME_OUTPUT_DIRECTORY}")
add_dependencies(overrides_bench kintar-site)
