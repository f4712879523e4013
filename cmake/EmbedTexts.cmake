# vpath_embed_texts(TARGET HEADER NAME FILE...): adds to the target a source with the texts of files
# as constants, `inline constexpr char NAME[]`, in a header of that name, made again when one of them
# changes. The same file is the script that makes it.
if(CMAKE_SCRIPT_MODE_FILE)
    set(text "#pragma once\n")
    string(REPLACE "," ";" TEXTS "${TEXTS}")
    while(TEXTS)
        list(POP_FRONT TEXTS name file)
        file(READ "${file}" content)
        string(APPEND text "\ninline constexpr char ${name}[] = R\"text(${content})text\";\n")
    endwhile()
    file(WRITE "${HEADER}" "${text}")
    return()
endif()

set(embed_texts_script ${CMAKE_CURRENT_LIST_FILE})

function(vpath_embed_texts target header)
    set(files ${ARGN})
    list(FILTER files INCLUDE REGEX "/")
    set(made ${CMAKE_CURRENT_BINARY_DIR}/embedded/${header})
    list(JOIN ARGN "," texts)
    add_custom_command(OUTPUT ${made}
        COMMAND ${CMAKE_COMMAND} "-DHEADER=${made}" "-DTEXTS=${texts}" -P ${embed_texts_script}
        DEPENDS ${files} ${embed_texts_script}
        VERBATIM)
    target_sources(${target} PRIVATE ${made})
    target_include_directories(${target} PRIVATE ${CMAKE_CURRENT_BINARY_DIR}/embedded)
endfunction()
