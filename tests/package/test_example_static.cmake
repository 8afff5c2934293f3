# SPDX-License-Identifier: MIT
# The smallest example builds with static libraries, and starts.
include(${CMAKE_CURRENT_LIST_DIR}/project.cmake)

build_project(${SOURCE}/examples/smallest ${WORK}/smallest)
run_in_window(${WORK}/smallest/smallest)
