# SPDX-License-Identifier: MIT
# The program of the front page is the smallest example. With the project file that the manual shows, it builds and
# starts.
include(${CMAKE_CURRENT_LIST_DIR}/project.cmake)

extract_block(${SOURCE}/README.md "## Embed it" cpp ${WORK}/readme/main.cpp)
file(READ ${WORK}/readme/main.cpp shown)
file(READ ${SOURCE}/examples/smallest/main.cpp example)
string(REGEX REPLACE "^(//[^\n]*\n)+" "" example "${example}")
if(NOT shown STREQUAL example)
    message(FATAL_ERROR "the program of README.md is not that of examples/smallest")
endif()
extract_block(${SOURCE}/docs/embedding.md "## Link it" cmake ${WORK}/readme/CMakeLists.txt)
# The manual shows the package for Qt 6, and says to write another one's name for another Qt.
file(READ ${WORK}/readme/CMakeLists.txt project)
if(NOT project MATCHES "find_package\\(nodebrowser-qt6 REQUIRED\\)")
    message(FATAL_ERROR "the manual's project does not look for the package nodebrowser-qt6")
endif()
string(REPLACE "nodebrowser-qt6" "${PACKAGE}" project "${project}")
file(WRITE ${WORK}/readme/CMakeLists.txt "${project}")
build_project(${WORK}/readme ${WORK}/readme/build)
run_in_window(${WORK}/readme/build/editor)
