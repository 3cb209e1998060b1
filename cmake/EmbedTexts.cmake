# Writes the texts of resources/strings/<language>/<area>.json into one C++ file.
#
# Included, it offers vh_embed_texts(target); run as a script (cmake -P) with FOLDER and OUTPUT it does the writing, so
# that nothing but CMake is needed and a changed text rebuilds one file.
if(CMAKE_SCRIPT_MODE_FILE STREQUAL CMAKE_CURRENT_LIST_FILE)
    file(GLOB files ${FOLDER}/*/*.json)
    set(rows "")
    foreach(file IN LISTS files)
        file(READ ${file} text)
        cmake_path(GET file PARENT_PATH folder)
        cmake_path(GET folder FILENAME language)
        string(APPEND rows "    {\"${language}\", R\"vh(${text})vh\"},\n")
    endforeach()
    file(WRITE ${OUTPUT}
"#include \"Core/EmbeddedTexts.h\"

namespace vh {

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

function(vh_embed_texts target)
    set(folder ${CMAKE_SOURCE_DIR}/resources/strings)
    set(output ${CMAKE_CURRENT_BINARY_DIR}/EmbeddedTexts.cpp)
    file(GLOB files CONFIGURE_DEPENDS ${folder}/*/*.json)
    add_custom_command(OUTPUT ${output}
        COMMAND ${CMAKE_COMMAND} -DFOLDER=${folder} -DOUTPUT=${output} -P ${VH_EMBED_TEXTS_SCRIPT}
        DEPENDS ${files} ${VH_EMBED_TEXTS_SCRIPT}
        COMMENT "Embedding the texts")
    target_sources(${target} PRIVATE ${output})
endfunction()
