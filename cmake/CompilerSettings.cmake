# nodebrowser_settings(TARGET): the warnings, the sanitizers and the Qt switches that all our code is built with.
function(nodebrowser_settings target)
    target_include_directories(${target} PUBLIC $<BUILD_INTERFACE:${PROJECT_SOURCE_DIR}>)
    target_compile_definitions(${target} PRIVATE QT_NO_KEYWORDS QT_NO_CAST_FROM_ASCII QT_NO_CAST_TO_ASCII)
    if(MSVC)
        # 4251, 4275: members and bases from the standard library and Qt need no export of their own.
        target_compile_options(${target} PRIVATE /W4 /utf-8 /wd4251 /wd4275 $<$<BOOL:${NODEBROWSER_WERROR}>:/WX>)
    else()
        target_compile_options(${target} PRIVATE -Wall -Wextra -Wshadow -Wconversion
            $<$<BOOL:${NODEBROWSER_WERROR}>:-Werror>)
    endif()
    if(NODEBROWSER_SANITIZE)
        target_compile_options(${target} PRIVATE -fsanitize=address,undefined -fno-omit-frame-pointer -fno-sanitize-recover=undefined)
        target_link_options(${target} PUBLIC -fsanitize=address,undefined)
    endif()
    set_target_properties(${target} PROPERTIES AUTOMOC ON)
endfunction()

# nodebrowser_library(NAME SOURCES…): one of our libraries. It has an export macro NAME_EXPORT in its export.h.
function(nodebrowser_library name)
    string(TOUPPER ${name} macro)
    add_library(${name} ${ARGN})
    nodebrowser_settings(${name})
    target_compile_definitions(${name} PRIVATE ${macro}_BUILD)
    if(NOT BUILD_SHARED_LIBS)
        target_compile_definitions(${name} PUBLIC ${macro}_STATIC)
    endif()
    set_target_properties(${name} PROPERTIES VERSION ${PROJECT_VERSION} SOVERSION ${PROJECT_VERSION_MAJOR}
        POSITION_INDEPENDENT_CODE ON)
endfunction()
