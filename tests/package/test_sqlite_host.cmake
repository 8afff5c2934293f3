# SPDX-License-Identifier: MIT
# The host with a data layer on SQLite: it builds, keeps the promises of the boundary, and shows the rows of its file, a
# new one and one that is there.
include(${CMAKE_CURRENT_LIST_DIR}/project.cmake)

build_project(${SOURCE}/examples/sqlite-host ${WORK}/sqlite-host)
execute_process(COMMAND ${CMAKE_COMMAND} -E env --unset=LD_LIBRARY_PATH ${WORK}/sqlite-host/test_sqlitelayer
    RESULT_VARIABLE result OUTPUT_VARIABLE output ERROR_VARIABLE output TIMEOUT 120)
# Everything that the fixture says it has is kept; the rest is named.
if(NOT result EQUAL 0 OR NOT output MATCHES "3[0-9] kept, 0 broken, [0-9]+ not checked")
    message(FATAL_ERROR "${output}\nended with ${result}")
endif()

set(ENV{COUNT_ROWS} ${COUNT_ROWS})
set(ENV{ROWS} 4)
set(file ${WORK}/sqlite-host/nodes.sqlite)
run_in_window(${WORK}/sqlite-host/sqlite-host ${file})
run_in_window(${WORK}/sqlite-host/sqlite-host ${file})
if(IN_WINDOW AND NOT EXISTS ${file})
    message(FATAL_ERROR "${file} was not made")
endif()
