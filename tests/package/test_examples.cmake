# SPDX-License-Identifier: MIT
# The examples build, all in one project, and do what their pages say when a person works with them.
include(${CMAKE_CURRENT_LIST_DIR}/project.cmake)

set(build ${WORK}/examples)
build_project(${SOURCE}/examples ${build})
if(NOT PLUGINS)
    return()
endif()

# run_example(EXPECTED PROGRAM ARGUMENTS…): runs a program of an example off screen. It has to end in time with status
# 0, and to write a text that matches what is expected. It may not find the libraries through the environment.
function(run_example expected program)
    execute_process(COMMAND ${CMAKE_COMMAND} -E env --unset=LD_LIBRARY_PATH QT_QPA_PLATFORM=offscreen
        ${build}/${program} ${ARGN}
        RESULT_VARIABLE result OUTPUT_VARIABLE output ERROR_VARIABLE output TIMEOUT 120)
    if(NOT result EQUAL 0 OR NOT output MATCHES "${expected}")
        message(SEND_ERROR "${program} ended with ${result} and wrote:\n${output}")
    endif()
endfunction()

# visit(EXAMPLE WRITTEN ARGUMENTS…): lets a person work with an example, see person.cpp. What the example writes has to
# match a text.
function(visit example written)
    set(ENV{QT_PLUGIN_PATH} ${PLUGINS})
    set(ENV{QT_QPA_GENERIC_PLUGINS} person:${example})
    run_example("the person did all of ${example}\n${written}" ${example}/${example} ${ARGN})
endfunction()

visit(smallest "")
visit(smallest-layer "")
visit(derived-browser "")
visit(undo-shortcut "")
visit(type-selector "float\n")
# A new file, and one that is there.
set(file ${WORK}/nodes.sqlite)
file(REMOVE ${file})
visit(sqlite-host "" ${file})
if(NOT EXISTS ${file})
    message(SEND_ERROR "sqlite-host did not make ${file}")
endif()
visit(sqlite-host "" ${file})

# Everything that the fixture says it has is kept; the rest is named.
run_example("3[0-9] kept, 0 broken, [0-9]+ not checked" sqlite-host/test_sqlitelayer)
