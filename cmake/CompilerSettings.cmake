# SPDX-License-Identifier: MIT
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
        # The headers of Qt 4 cast to classes before their objects are those.
        target_compile_options(${target} PRIVATE -fsanitize=address,undefined -fno-omit-frame-pointer
            -fno-sanitize-recover=undefined $<$<STREQUAL:${NODEBROWSER_QT_MAJOR},4>:-fno-sanitize=vptr>)
        target_link_options(${target} PUBLIC -fsanitize=address,undefined)
    endif()
    set_target_properties(${target} PROPERTIES AUTOMOC ON)
endfunction()

# nodebrowser_library(NAME SOURCES… LIBRARIES… PRIVATE_LIBRARIES…): one of our libraries. It has an export macro
# NAME_EXPORT in its export.h. Its units are compiled once, as NAME_units, so that tests can link what is not exported.
# Its file carries the project's name and the Qt that it was built with: nodebrowser-NAME-qt6.
function(nodebrowser_library name)
    cmake_parse_arguments(arg "" "" "SOURCES;LIBRARIES;PRIVATE_LIBRARIES" ${ARGN})
    string(TOUPPER ${name} macro)
    add_library(${name}_units OBJECT ${arg_SOURCES})
    nodebrowser_settings(${name}_units)
    target_compile_definitions(${name}_units PRIVATE ${macro}_BUILD)
    target_link_libraries(${name}_units PUBLIC ${arg_LIBRARIES} PRIVATE ${arg_PRIVATE_LIBRARIES})
    set_target_properties(${name}_units PROPERTIES AUTORCC ON POSITION_INDEPENDENT_CODE ON)

    add_library(${name} $<TARGET_OBJECTS:${name}_units>)
    target_include_directories(${name} PUBLIC $<BUILD_INTERFACE:${PROJECT_SOURCE_DIR}>)
    target_link_libraries(${name} PUBLIC ${arg_LIBRARIES})
    set_target_properties(${name} PROPERTIES LINKER_LANGUAGE CXX)
    if(NODEBROWSER_SANITIZE)
        target_link_options(${name} PUBLIC -fsanitize=address,undefined)
    endif()
    if(NOT BUILD_SHARED_LIBS)
        target_compile_definitions(${name}_units PUBLIC ${macro}_STATIC)
        target_compile_definitions(${name} PUBLIC ${macro}_STATIC)
    endif()
    set(file ${PROJECT_NAME}-${name})
    if(name STREQUAL PROJECT_NAME)
        set(file ${name})
    endif()
    set_target_properties(${name} PROPERTIES OUTPUT_NAME ${file}-qt${NODEBROWSER_QT_MAJOR}
        VERSION ${PROJECT_VERSION} SOVERSION ${PROJECT_VERSION_MAJOR})
    # Linkers other than those of ELF have no such script.
    if(BUILD_SHARED_LIBS AND UNIX AND NOT APPLE)
        set(exports ${PROJECT_SOURCE_DIR}/cmake/exports.map)
        target_link_options(${name} PRIVATE LINKER:--version-script=${exports})
        set_property(TARGET ${name} APPEND PROPERTY LINK_DEPENDS ${exports})
    endif()
    # An installed library finds the others beside it, in whatever prefix. A program's run path does not count for the
    # libraries that its libraries need. Windows has no run path and looks beside the program.
    if(APPLE)
        set_property(TARGET ${name} APPEND PROPERTY INSTALL_RPATH "@loader_path")
    elseif(UNIX)
        set_property(TARGET ${name} APPEND PROPERTY INSTALL_RPATH "$ORIGIN")
    endif()
endfunction()
