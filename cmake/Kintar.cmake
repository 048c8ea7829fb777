# Targets of this project: warnings are errors, and each target links only what it may include.

include(GNUInstallDirs)

add_library(kintar_options INTERFACE)
target_include_directories(kintar_options INTERFACE ${PROJECT_SOURCE_DIR}/src)
target_compile_options(kintar_options INTERFACE
    -Wall -Wextra -Wpedantic -Wconversion -Wno-sign-conversion -Wnon-virtual-dtor
    -Woverloaded-virtual -Wimplicit-fallthrough -Werror)
if(NOT CMAKE_UNITY_BUILD)
    # Several sources compiled as one shadow each other's names.
    target_compile_options(kintar_options INTERFACE -Wshadow)
endif()
if(KINTAR_SANITIZE)
    target_compile_options(kintar_options INTERFACE
        -fsanitize=address,undefined -fno-sanitize-recover=all -fno-omit-frame-pointer -O1)
    target_link_options(kintar_options INTERFACE -fsanitize=address,undefined)
else()
    target_link_options(kintar_options INTERFACE -fuse-ld=lld)
endif()

find_program(KINTAR_CCACHE ccache)
if(KINTAR_CCACHE)
    set(CMAKE_CXX_COMPILER_LAUNCHER ${KINTAR_CCACHE})
endif()

# kintar_needs(TARGET…): leaves the calling function where only logic is built and one is not there.
macro(kintar_needs)
    if(KINTAR_LOGIC_ONLY)
        foreach(needed ${ARGN})
            if(NOT TARGET ${needed})
                return()
            endif()
        endforeach()
    endif()
endmacro()

# kintar_logic(NAME SOURCES… LINK… [INCLUDE…]): plain C++ and the standard library; no toolkit on the
# include path.
function(kintar_logic name)
    cmake_parse_arguments(ARG "" "" "SOURCES;LINK;INCLUDE" ${ARGN})
    kintar_needs(${ARG_LINK})
    add_library(${name} STATIC ${ARG_SOURCES})
    target_include_directories(${name} PRIVATE ${ARG_INCLUDE})
    target_link_libraries(${name} PUBLIC kintar_options ${ARG_LINK})
endfunction()

# kintar_adapter(NAME SOURCES… LINK…): adapters that use the toolkit, or the bus, without windows.
function(kintar_adapter name)
    cmake_parse_arguments(ARG "" "" "SOURCES;LINK" ${ARGN})
    kintar_needs(${ARG_LINK})
    add_library(${name} STATIC ${ARG_SOURCES})
    set_target_properties(${name} PROPERTIES AUTOMOC ON)
    target_compile_definitions(${name} PUBLIC QT_NO_CAST_FROM_ASCII QT_NO_KEYWORDS)
    target_link_libraries(${name} PUBLIC kintar_options ${ARG_LINK})
endfunction()

# kintar_windows(NAME SOURCES… LINK…): forms, facades and adapters that use Qt Widgets.
function(kintar_windows name)
    kintar_adapter(${name} ${ARGN} LINK Qt6::Widgets)
endfunction()

# kintar_program(NAME SOURCES… LINK…): an executable in bin/ that is installed.
function(kintar_program name)
    cmake_parse_arguments(ARG "" "" "SOURCES;LINK" ${ARGN})
    kintar_needs(${ARG_LINK})
    add_executable(${name} ${ARG_SOURCES})
    target_link_libraries(${name} PRIVATE kintar_options ${ARG_LINK})
    set_property(GLOBAL APPEND PROPERTY KINTAR_PROGRAMS ${name})
    install(TARGETS ${name} RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR})
endfunction()
