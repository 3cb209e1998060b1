# What the product is put together of: tools and features, each a folder of rooms.
#
# vh_tool(Name) and vh_feature(Name) take the rooms that src/Tools/Name or src/Features/Name has:
#   the folder itself and work/   vh_Name            free of Qt
#   view/                         vh_Name_view       QtCore
#   command/                      vh_Name_command    free of Qt
#   page/                         QML, part of the window's one module
#   strings/                      texts, part of the program's
# and its tests in tests/Tools/Name or tests/Features/Name. A room that offers something to a face of the product has a
# file Offer.cpp, which defines the row that the generated table below takes in.
foreach(list VH_FEATURES VH_PAGES VH_STRINGS VH_WORK_OFFERS VH_VIEW_OFFERS VH_COMMAND_OFFERS)
    set_property(GLOBAL PROPERTY ${list} "")
endforeach()

function(vh_tool name)
    vh_rooms(Tools/${name} ${name})
endfunction()
function(vh_feature name)
    vh_rooms(Features/${name} ${name})
endfunction()

function(vh_rooms path name)
    set(folder ${CMAKE_SOURCE_DIR}/src/${path})
    set_property(GLOBAL APPEND PROPERTY VH_FEATURES ${path})
    set(own "")
    file(GLOB engine CONFIGURE_DEPENDS ${folder}/*.cpp ${folder}/work/*.cpp)
    if(engine)
        vh_library(${name} FOLDERS ${folder} ${folder}/work DEPENDS vh_Automation)
        set(own vh_${name})
    endif()
    if(EXISTS ${folder}/view)
        vh_library(${name}_view QT FOLDERS ${folder}/view DEPENDS vh_app ${own})
    endif()
    if(EXISTS ${folder}/command)
        vh_library(${name}_command FOLDERS ${folder}/command DEPENDS vh_cli ${own})
        target_compile_definitions(vh_${name}_command PRIVATE VH_VERSION="${PROJECT_VERSION}")
    endif()
    foreach(room work view command)
        if(EXISTS ${folder}/${room}/Offer.cpp)
            string(TOUPPER ${room} list)
            set_property(GLOBAL APPEND PROPERTY VH_${list}_OFFERS ${name})
        endif()
    endforeach()
    file(GLOB pages CONFIGURE_DEPENDS ${folder}/page/*.qml)
    set_property(GLOBAL APPEND PROPERTY VH_PAGES ${pages})
    if(EXISTS ${folder}/strings)
        set_property(GLOBAL APPEND PROPERTY VH_STRINGS ${folder}/strings)
    endif()
endfunction()

# The tests of every feature, room by room, after the floors' own.
function(vh_feature_tests)
    get_property(features GLOBAL PROPERTY VH_FEATURES)
    foreach(path IN LISTS features)
        get_filename_component(name ${path} NAME)
        string(TOLOWER ${name} test)
        set(folder ${CMAKE_SOURCE_DIR}/tests/${path})
        if(EXISTS ${folder})
            set(own "")
            foreach(library vh_${name} vh_${name}_command)
                if(TARGET ${library})
                    list(APPEND own ${library})
                endif()
            endforeach()
            vh_test(${test} FOLDER ${folder} DEPENDS ${own} vh_commands vh_views)
        endif()
        if(EXISTS ${folder}/view)
            vh_test(${test}_view QT FOLDER ${folder}/view DEPENDS vh_${name}_view vh_view_test_support)
        endif()
    endforeach()
endfunction()
