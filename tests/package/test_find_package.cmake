# SPDX-License-Identifier: MIT
# A project finds the package by its version, and not beside another Qt.
include(${CMAKE_CURRENT_LIST_DIR}/project.cmake)

# expect_package(CASE FOUND TEXT ARGUMENTS [LINE…]): a project of these lines looks for the package with arguments of
# its own. It finds it or not, and the reason has this text.
function(expect_package case found text arguments)
    string(REPLACE ";" "\n" lines "${ARGN}")
    file(WRITE ${WORK}/find/${case}/CMakeLists.txt "cmake_minimum_required(VERSION 3.20)\n"
        "project(${case} LANGUAGES CXX)\n${lines}\nfind_package(${PACKAGE} ${arguments})\n"
        "set(version \"\${${PACKAGE}_VERSION}\")\n"
        "message(STATUS \"found: \${${PACKAGE}_FOUND}, version \${version}, Qt \${nodebrowser_QT_MAJOR}\")\n")
    file(REMOVE_RECURSE ${WORK}/find/${case}/build)
    set(options)
    if(QMAKE)
        set(options -DQT_QMAKE_EXECUTABLE=${QMAKE})
    endif()
    execute_process(COMMAND ${CMAKE_COMMAND} -S ${WORK}/find/${case} -B ${WORK}/find/${case}/build -G ${GENERATOR}
        -DCMAKE_CXX_COMPILER=${COMPILER} -DCMAKE_PREFIX_PATH=${WORK}/installed ${options}
        RESULT_VARIABLE result OUTPUT_VARIABLE output ERROR_VARIABLE output)
    string(REGEX REPLACE "[ \n]+" " " output "${output}")
    if(NOT result EQUAL 0 OR NOT output MATCHES "found: ${found}," OR NOT output MATCHES "${text}")
        message(SEND_ERROR "${case}: expected \"found: ${found}\" and \"${text}\":\n${output}")
    endif()
endfunction()

string(REGEX MATCH "^[0-9]+" major ${VERSION})
math(EXPR later "${major} + 1")
expect_package(this_version 1 "version ${VERSION}, Qt ${QT}" "${VERSION}")
expect_package(earlier_version 1 "version ${VERSION}, Qt ${QT}" "${major}.0")
expect_package(later_version 0 "version: ${VERSION}" "${later}.0")
set(other 5)
if(QT EQUAL 5)
    set(other 6)
endif()
expect_package(other_qt 0 "${PACKAGE} is for Qt ${QT}, but this project already uses Qt ${other}" ""
    "add_library(Qt${other}::Core INTERFACE IMPORTED)")
