# Cost as sites and the number of workstations grow; each workstation is a process.
add_executable(growth_workstation GrowthWorkstation.cpp)
target_include_directories(growth_workstation PRIVATE ${CMAKE_CURRENT_SOURCE_DIR})
target_link_libraries(growth_workstation PRIVATE
    kintar_options kintar_composition kintar_platform_photo_decoder)
target_compile_definitions(growth_workstation PRIVATE
    KINTAR_PHOTO_WORKER="$<TARGET_FILE:kintar3-photo>")
set_target_properties(growth_workstation PROPERTIES
    RUNTIME_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/bench/programs)
add_dependencies(growth_workstation kintar3-photo)

kintar_bench(growth_bench SOURCES GrowthBench.cpp
    LINK kintar_bus_testing kintar_companion kintar_cluster Qt6::Core)
target_include_directories(growth_bench PRIVATE ${PROJECT_SOURCE_DIR}/tests)
target_compile_definitions(growth_bench PRIVATE
    KINTAR_SITE="$<TARGET_FILE:kintar-site>" GROWTH_WORKSTATION="$<TARGET_FILE:growth_workstation>")
add_dependencies(growth_bench kintar-site growth_workstation)
