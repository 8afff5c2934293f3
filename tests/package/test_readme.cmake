# SPDX-License-Identifier: MIT
# The example of the front page, with the project file that the manual shows, builds and starts.
include(${CMAKE_CURRENT_LIST_DIR}/project.cmake)

extract_block(${SOURCE}/README.md "## Embed it" cpp ${WORK}/readme/main.cpp)
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
