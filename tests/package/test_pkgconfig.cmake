# SPDX-License-Identifier: MIT
# A program compiles, links and runs with what pkg-config says of the package, and nothing else.
include(${CMAKE_CURRENT_LIST_DIR}/project.cmake)

# The package is found through the environment, and so are the files of Qt 4, which stand in no common folder.
find_program(PKG_CONFIG NAMES pkg-config pkgconf REQUIRED)
file(GLOB_RECURSE file ${WORK}/installed/*/${PACKAGE}.pc)
get_filename_component(folder ${file} DIRECTORY)
set(ENV{PKG_CONFIG_PATH} "${folder}:$ENV{PKG_CONFIG_PATH}")
unset(ENV{LD_LIBRARY_PATH})

execute_process(COMMAND ${PKG_CONFIG} --modversion ${PACKAGE} OUTPUT_VARIABLE version OUTPUT_STRIP_TRAILING_WHITESPACE)
if(NOT version STREQUAL VERSION)
    message(FATAL_ERROR "pkg-config says that ${PACKAGE} has version \"${version}\", not ${VERSION}")
endif()
execute_process(COMMAND ${PKG_CONFIG} --cflags --libs ${PACKAGE} nodebrowser-memorymodel-qt${QT}
    RESULT_VARIABLE result OUTPUT_VARIABLE flags ERROR_VARIABLE error)
if(NOT result EQUAL 0)
    message(FATAL_ERROR "pkg-config does not know ${PACKAGE}: ${error}")
endif()
separate_arguments(flags UNIX_COMMAND "${flags}")
set(program ${WORK}/pkgconfig/program)
file(MAKE_DIRECTORY ${WORK}/pkgconfig)
run(${COMPILER} -std=c++17 -o ${program} ${CMAKE_CURRENT_LIST_DIR}/usepackage.cpp ${flags})

# Static libraries are in the program, shared ones are found beside the package's files.
execute_process(COMMAND readelf --dynamic ${program} OUTPUT_VARIABLE dynamic)
if(STATIC AND dynamic MATCHES "NEEDED[^\n]*nodebrowser")
    message(FATAL_ERROR "the program needs a shared library of the package:\n${dynamic}")
elseif(NOT STATIC)
    if(NOT dynamic MATCHES "NEEDED[^\n]*lib${PACKAGE}\\.so\\.[0-9]+\\]")
        message(FATAL_ERROR "the program does not need a shared library with a versioned name:\n${dynamic}")
    endif()
    get_filename_component(libraries ${folder} DIRECTORY)
    set(ENV{LD_LIBRARY_PATH} ${libraries})
endif()
if(QT GREATER_EQUAL 5)
    set(ENV{QT_QPA_PLATFORM} offscreen)
    run(${program} ${VERSION})
else()
    run(xvfb-run -a ${program} ${VERSION})
endif()
