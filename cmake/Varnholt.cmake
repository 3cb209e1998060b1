# The few functions every folder's CMakeLists.txt is made of.
include(CMakeParseArguments)

set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)
set(CMAKE_RUNTIME_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/bin)

if(CMAKE_CXX_FLAGS MATCHES "fsanitize")
    # The sanitizers must see one class where the program and a module share one.
    set(CMAKE_ENABLE_EXPORTS ON)
endif()

if(APPLE)
    set(VH_SYSTEM macOS)
else()
    set(VH_SYSTEM Linux)
endif()

find_package(fmt REQUIRED)
find_package(ICU REQUIRED COMPONENTS i18n uc)
find_package(simdjson REQUIRED)
find_package(PkgConfig REQUIRED)
pkg_check_modules(systemd REQUIRED IMPORTED_TARGET libsystemd)
pkg_check_modules(libsecret REQUIRED IMPORTED_TARGET libsecret-1)
pkg_check_modules(pangocairo REQUIRED IMPORTED_TARGET pangocairo)
find_package(CURL REQUIRED)

# One flag for every object, so that programs and libraries can share one precompiled header.
add_compile_options(-fPIC -Wall -Wextra -Wpedantic -Wshadow -Wnon-virtual-dtor -Wno-missing-field-initializers)
if(CMAKE_BUILD_TYPE STREQUAL "Release")
    add_link_options($<$<PLATFORM_ID:Linux>:-Wl,--as-needed,-O1>)
endif()

find_program(VH_CCACHE ccache)
if(VH_CCACHE)
    # Without this, ccache refuses every file that is built with a precompiled header.
    set(CMAKE_CXX_COMPILER_LAUNCHER ${CMAKE_COMMAND} -E env CCACHE_SLOPPINESS=pch_defines,time_macros,include_file_mtime,include_file_ctime ${VH_CCACHE})
    add_compile_options($<$<CXX_COMPILER_ID:GNU>:-fpch-preprocess>)
endif()
find_program(VH_MOLD mold)
if(VH_MOLD AND CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
    add_link_options(-fuse-ld=mold)
endif()

# The precompiled header: standard library and fmt, nothing that changes. Built once, shared by all Qt-free code.
file(WRITE ${CMAKE_BINARY_DIR}/pch.cpp "")
add_library(vh_pch OBJECT ${CMAKE_BINARY_DIR}/pch.cpp)
target_link_libraries(vh_pch PUBLIC fmt::fmt)
target_precompile_headers(vh_pch PRIVATE
    <algorithm> <array> <atomic> <chrono> <concepts> <cstdint> <filesystem> <functional> <map> <memory> <mutex>
    <optional> <set> <span> <stdexcept> <string> <string_view> <thread> <tuple> <unordered_map> <utility> <variant>
    <vector> <fmt/format.h>)

# vh_library(Name [FOLDERS sub …] [DEPENDS lib …])
# A static library of this folder's .cpp files (without main.cpp) and those of FOLDERS; its headers are found from src/ and are
# checked to compile alone (target all_verify_interface_header_sets).
function(vh_library name)
    cmake_parse_arguments(arg "" "" "FOLDERS;DEPENDS" ${ARGN})
    file(GLOB sources CONFIGURE_DEPENDS *.cpp)
    list(FILTER sources EXCLUDE REGEX "/main\\.cpp$")
    file(GLOB headers CONFIGURE_DEPENDS *.h)
    foreach(folder IN LISTS arg_FOLDERS)
        file(GLOB more CONFIGURE_DEPENDS ${folder}/*.cpp)
        file(GLOB more_headers CONFIGURE_DEPENDS ${folder}/*.h)
        list(APPEND sources ${more})
        list(APPEND headers ${more_headers})
    endforeach()
    set(target vh_${name})
    add_library(${target} STATIC ${sources})
    target_sources(${target} PUBLIC FILE_SET HEADERS BASE_DIRS ${CMAKE_SOURCE_DIR}/src FILES ${headers})
    set_target_properties(${target} PROPERTIES VERIFY_INTERFACE_HEADER_SETS ON)
    target_include_directories(${target} PUBLIC ${CMAKE_SOURCE_DIR}/src)
    target_link_libraries(${target} PUBLIC fmt::fmt ${arg_DEPENDS})
    if(NOT arg_DEPENDS MATCHES "Qt6::")
        target_precompile_headers(${target} REUSE_FROM vh_pch)
    endif()
endfunction()

# vh_module(name SOURCES … [DEPENDS lib …]): a library that the program opens at first use (Platform/Module.h). It links
# none of ours: what it shares with the program are headers.
add_custom_target(modules)
function(vh_module name)
    cmake_parse_arguments(arg "" "" "SOURCES;DEPENDS" ${ARGN})
    set(target vh_module_${name})
    add_library(${target} MODULE ${arg_SOURCES})
    set_target_properties(${target} PROPERTIES PREFIX "" SUFFIX .so OUTPUT_NAME ${name}
        LIBRARY_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/lib/varnholt)
    target_include_directories(${target} PRIVATE ${CMAKE_SOURCE_DIR}/src)
    target_link_libraries(${target} PRIVATE fmt::fmt ${arg_DEPENDS})
    add_dependencies(modules ${target})
endfunction()

# vh_test(name [DEPENDS lib …] [ENVIRONMENT NAME=value]): one test program of this folder's .cpp files, each of its
# cases known to ctest.
function(vh_test name)
    cmake_parse_arguments(arg "" "ENVIRONMENT" "DEPENDS" ${ARGN})
    file(GLOB sources CONFIGURE_DEPENDS *.cpp)
    add_executable(${name}_tests ${sources})
    target_include_directories(${name}_tests PRIVATE ${CMAKE_SOURCE_DIR}/tests)
    target_link_libraries(${name}_tests PRIVATE ${arg_DEPENDS} vh_test_support GTest::gmock GTest::gtest_main)
    target_compile_definitions(${name}_tests PRIVATE VH_SOURCE_DIR="${CMAKE_SOURCE_DIR}")
    if(NOT arg_DEPENDS MATCHES "Qt6::|vh_app|vh_ui")
        target_precompile_headers(${name}_tests REUSE_FROM vh_pch)
    endif()
    add_dependencies(${name}_tests modules)
    gtest_discover_tests(${name}_tests TEST_PREFIX ${name}. DISCOVERY_MODE PRE_TEST
        PROPERTIES TIMEOUT 300 ENVIRONMENT "${arg_ENVIRONMENT}")
endfunction()
