# SPDX-License-Identifier: MIT
# The example project of the manual builds and starts.
include(${CMAKE_CURRENT_LIST_DIR}/project.cmake)

build_project(${SOURCE}/docs/example ${WORK}/example)
run_in_window(${WORK}/example/browser-example)
