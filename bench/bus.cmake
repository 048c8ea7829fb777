# The real server over a private bus.
kintar_program(bare_window SOURCES ${CMAKE_CURRENT_SOURCE_DIR}/BareWindow.cpp LINK Qt6::Widgets)
set_target_properties(bare_window PROPERTIES
    RUNTIME_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/bench/programs)

foreach(bench bus_rate server_start)
    string(REPLACE bus_rate BusRateBench source ${bench})
    string(REPLACE server_start ServerStartBench source ${source})
    kintar_bench(bench_${bench} SOURCES ${source}.cpp LINK kintar_bus_testing)
    target_compile_definitions(bench_${bench} PRIVATE
        KINTAR_BIN="${CMAKE_RUNTIME_OUTPUT_DIRECTORY}" BARE_WINDOW="$<TARGET_FILE:bare_window>")
    add_dependencies(bench_${bench} kintar3 kintar3-photo kintar-site bare_window)
endforeach()
