# SPDX-License-Identifier: MIT
# The example of the front page, with the project file that the manual shows, builds and starts.
include(${CMAKE_CURRENT_LIST_DIR}/project.cmake)

extract_block(${SOURCE}/README.md "## Embed it" cpp ${WORK}/readme/main.cpp)
extract_block(${SOURCE}/docs/embedding.md "## Link it" cmake ${WORK}/readme/CMakeLists.txt)
build_project(${WORK}/readme ${WORK}/readme/build)
run_in_window(${WORK}/readme/build/editor)
