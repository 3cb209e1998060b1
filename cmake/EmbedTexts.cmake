# Writes the texts, <language>/<area>.json in resources/strings and in each feature's strings/, into one C++ file.
#
# Included, it offers vh_embed_texts(name), a library of them; run as a script (cmake -P) with FOLDERS and OUTPUT it does
# the writing, so that nothing but CMake is needed and a changed text rebuilds one file.
if(CMAKE_SCRIPT_MODE_FILE STREQUAL CMAKE_CURRENT_LIST_FILE)
    list(TRANSFORM FOLDERS APPEND /*/*.json)
    file(GLOB files ${FOLDERS})
    set(rows "")
    foreach(file IN LISTS files)
        file(READ ${file} text)
        cmake_path(GET file PARENT_PATH folder)
        cmake_path(GET folder FILENAME language)
        string(APPEND rows "    {\"${language}\", R\"vh(${text})vh\"sv},\n")
    endforeach()
    file(WRITE ${OUTPUT}
"#include \"Core/EmbeddedTexts.h\"

namespace vh {

using namespace std::string_view_literals;

static constexpr EmbeddedText table[]{
${rows}};

std::span<const EmbeddedText> embeddedTexts() {
    return table;
}

} // namespace vh
")
    return()
endif()

set(VH_EMBED_TEXTS_SCRIPT ${CMAKE_CURRENT_LIST_FILE})

function(vh_embed_texts name)
    get_property(folders GLOBAL PROPERTY VH_STRINGS)
    list(PREPEND folders ${CMAKE_SOURCE_DIR}/resources/strings)
    set(output ${CMAKE_BINARY_DIR}/EmbeddedTexts.cpp)
    list(TRANSFORM folders APPEND /*/*.json OUTPUT_VARIABLE patterns)
    file(GLOB files CONFIGURE_DEPENDS ${patterns})
    add_custom_command(OUTPUT ${output}
        COMMAND ${CMAKE_COMMAND} "-DFOLDERS=${folders}" -DOUTPUT=${output} -P ${VH_EMBED_TEXTS_SCRIPT}
        DEPENDS ${files} ${VH_EMBED_TEXTS_SCRIPT}
        COMMENT "Embedding the texts"
        VERBATIM)
    add_library(vh_${name} STATIC ${output})
    target_include_directories(vh_${name} PRIVATE ${CMAKE_SOURCE_DIR}/src)
    target_link_libraries(vh_${name} PRIVATE fmt::fmt)
    vh_precompile(vh_${name} OFF)
endfunction()
