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

# The precompiled headers, of what never changes, built once each: for code free of Qt, for view-models and the window
# (_qt), and for the tests of both.
find_package(Qt6 6.4 REQUIRED COMPONENTS Core)
set(VH_PCH_BASE <algorithm> <array> <atomic> <chrono> <concepts> <cstdint> <filesystem> <functional> <map> <memory> <mutex>
    <optional> <set> <span> <stdexcept> <string> <string_view> <thread> <tuple> <unordered_map> <utility> <variant>
    <vector> <fmt/format.h>)
set(VH_PCH_QT <QAbstractListModel> <QObject> <QString> <QStringList> <QTimer> <QVariantList> <QVariantMap>)
set(VH_PCH_TEST <gmock/gmock.h> <gtest/gtest.h>)
function(vh_pch name)
    cmake_parse_arguments(arg "" "" "HEADERS;DEPENDS" ${ARGN})
    file(WRITE ${CMAKE_BINARY_DIR}/${name}.cpp "")
    add_library(${name} OBJECT EXCLUDE_FROM_ALL ${CMAKE_BINARY_DIR}/${name}.cpp)
    target_link_libraries(${name} PUBLIC fmt::fmt ${arg_DEPENDS})
    target_precompile_headers(${name} PRIVATE ${VH_PCH_BASE} ${arg_HEADERS})
endfunction()
vh_pch(vh_pch)
vh_pch(vh_pch_qt HEADERS ${VH_PCH_QT} DEPENDS Qt6::Core)
if(VH_TESTS)
    find_package(GTest REQUIRED)
    # Tests run once for each time they are compiled: optimising them costs more than it saves.
    set(VH_TEST_OPTIONS -Og)
    vh_pch(vh_pch_test HEADERS ${VH_PCH_TEST} DEPENDS GTest::gmock)
    vh_pch(vh_pch_test_qt HEADERS ${VH_PCH_TEST} ${VH_PCH_QT} DEPENDS GTest::gmock Qt6::Core)
    target_compile_options(vh_pch_test PRIVATE ${VH_TEST_OPTIONS})
    target_compile_options(vh_pch_test_qt PRIVATE ${VH_TEST_OPTIONS})
endif()

# moc cannot read the library's <concepts> where it is the first header it meets; it needs nothing from it.
set(CMAKE_AUTOMOC_MOC_OPTIONS -D_GLIBCXX_CONCEPTS)

# vh_library(Name [QT] [FOLDERS sub …] [DEPENDS lib …])
# A static library of this folder's .cpp files (without main.cpp) and those of FOLDERS, or of FOLDERS alone when they are
# absolute. A header that is no source's first include is compiled alone (target headers).
add_custom_target(headers)
function(vh_library name)
    cmake_parse_arguments(arg "QT" "" "FOLDERS;DEPENDS" ${ARGN})
    set(folders ${arg_FOLDERS})
    if(NOT arg_FOLDERS MATCHES "^/")
        list(TRANSFORM folders PREPEND ${CMAKE_CURRENT_SOURCE_DIR}/)
        list(PREPEND folders ${CMAKE_CURRENT_SOURCE_DIR})
    endif()
    set(sources "")
    set(headers "")
    foreach(folder IN LISTS folders)
        file(GLOB more CONFIGURE_DEPENDS ${folder}/*.cpp)
        file(GLOB more_headers CONFIGURE_DEPENDS ${folder}/*.h)
        list(APPEND sources ${more})
        list(APPEND headers ${more_headers})
    endforeach()
    list(FILTER sources EXCLUDE REGEX "/main\\.cpp$")
    set(target vh_${name})
    add_library(${target} STATIC ${sources})
    target_include_directories(${target} PUBLIC ${CMAKE_SOURCE_DIR}/src)
    target_link_libraries(${target} PUBLIC fmt::fmt ${arg_DEPENDS})
    vh_precompile(${target} ${arg_QT})
    set_target_properties(${target} PROPERTIES AUTOMOC ${arg_QT})

    # A source that begins with its own header has proved that header.
    set(alone "")
    foreach(header IN LISTS headers)
        string(REGEX REPLACE "\\.h$" ".cpp" source ${header})
        if(NOT source IN_LIST sources)
            file(RELATIVE_PATH written ${CMAKE_SOURCE_DIR}/src ${header})
            string(MAKE_C_IDENTIFIER ${written} file)
            set(file ${CMAKE_BINARY_DIR}/headers/${file}.cpp)
            file(CONFIGURE OUTPUT ${file} CONTENT "#include \"${written}\"\n" @ONLY)
            list(APPEND alone ${file})
        endif()
    endforeach()
    if(alone)
        add_library(${target}_headers OBJECT EXCLUDE_FROM_ALL ${alone})
        target_link_libraries(${target}_headers PRIVATE ${target})
        vh_precompile(${target}_headers ${arg_QT})
        add_dependencies(headers ${target}_headers)
    endif()
endfunction()

# vh_precompile(target QT): with the precompiled header that has Qt or the one that has not.
function(vh_precompile target qt)
    if(qt)
        target_link_libraries(${target} PRIVATE Qt6::Core)
        target_precompile_headers(${target} REUSE_FROM vh_pch_qt)
    else()
        target_precompile_headers(${target} REUSE_FROM vh_pch)
    endif()
endfunction()

# The same for tests.
function(vh_precompile_test target qt)
    target_compile_options(${target} PRIVATE ${VH_TEST_OPTIONS})
    if(qt)
        target_link_libraries(${target} PRIVATE Qt6::Core)
        target_precompile_headers(${target} REUSE_FROM vh_pch_test_qt)
    else()
        target_precompile_headers(${target} REUSE_FROM vh_pch_test)
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

# vh_test(name [QT] [FOLDER dir] [DEPENDS lib …] [ENVIRONMENT NAME=value]): one test program of a folder's .cpp files (this
# one if not told otherwise), each of its cases known to ctest; and the scripts beside them (*.txt), each of which is what
# a person types and what comes back.
function(vh_test name)
    cmake_parse_arguments(arg "QT" "FOLDER;ENVIRONMENT" "DEPENDS" ${ARGN})
    if(NOT arg_FOLDER)
        set(arg_FOLDER ${CMAKE_CURRENT_SOURCE_DIR})
    endif()
    if(NOT arg_ENVIRONMENT)
        set(arg_ENVIRONMENT LSAN_OPTIONS=suppressions=${CMAKE_SOURCE_DIR}/tests/support/leaks.txt:print_suppressions=0)
    endif()
    file(GLOB sources CONFIGURE_DEPENDS ${arg_FOLDER}/*.cpp)
    if(sources)
        add_executable(${name}_tests ${sources})
        target_include_directories(${name}_tests PRIVATE ${CMAKE_SOURCE_DIR}/tests)
        target_link_libraries(${name}_tests PRIVATE ${arg_DEPENDS} vh_test_support GTest::gmock GTest::gtest_main)
        target_compile_definitions(${name}_tests PRIVATE VH_SOURCE_DIR="${CMAKE_SOURCE_DIR}")
        vh_precompile_test(${name}_tests ${arg_QT})
        add_dependencies(${name}_tests modules)
        gtest_discover_tests(${name}_tests TEST_PREFIX ${name}. DISCOVERY_MODE PRE_TEST
            PROPERTIES TIMEOUT 300 ENVIRONMENT "${arg_ENVIRONMENT}")
    endif()
    file(GLOB scripts CONFIGURE_DEPENDS ${arg_FOLDER}/*.txt)
    list(FILTER scripts EXCLUDE REGEX "(CMakeLists|leaks).txt$")
    foreach(script IN LISTS scripts)
        get_filename_component(case ${script} NAME_WE)
        add_test(NAME cli.${case}
            COMMAND ${CMAKE_SOURCE_DIR}/tests/cli/run-script $<TARGET_FILE_DIR:varnholt> ${script})
        set_tests_properties(cli.${case} PROPERTIES ENVIRONMENT "${arg_ENVIRONMENT}")
    endforeach()
endfunction()
