# SPDX-License-Identifier: MIT
# What the tests of the package share: programs that must succeed, and projects that use the installed package.

# run(COMMAND…): runs a command. It ends the test with all that the command said when it fails.
function(run)
    execute_process(COMMAND ${ARGN} RESULT_VARIABLE result OUTPUT_VARIABLE output ERROR_VARIABLE output)
    if(NOT result EQUAL 0)
        message(FATAL_ERROR "${ARGN}\n${output}\nended with ${result}")
    endif()
endfunction()

# install_build(BUILD PREFIX): installs what was built.
function(install_build build prefix)
    run(${CMAKE_COMMAND} --install ${build} --config ${CONFIGURATION} --prefix ${prefix})
endfunction()

# build_project(FOLDER BUILD): builds the project in a folder against the installed package.
function(build_project folder build)
    file(REMOVE_RECURSE ${build})
    set(options)
    if(QMAKE)
        set(options -DQT_QMAKE_EXECUTABLE=${QMAKE})
    endif()
    run(${CMAKE_COMMAND} -S ${folder} -B ${build} -G ${GENERATOR} -DCMAKE_CXX_COMPILER=${COMPILER}
        -DCMAKE_BUILD_TYPE=${CONFIGURATION} -DCMAKE_PREFIX_PATH=${WORK}/installed ${options})
    run(${CMAKE_COMMAND} --build ${build})
endfunction()

# run_in_window(PROGRAM ARGUMENTS…): starts a program, waits for its window and closes it. The program must end with
# status 0. It may not find the libraries through the environment.
function(run_in_window program)
    if(IN_WINDOW)
        run(${CMAKE_COMMAND} -E env --unset=LD_LIBRARY_PATH ${IN_WINDOW} ${program} ${ARGN})
    endif()
endfunction()

# extract_block(PATH HEADING LANGUAGE OUT): writes a code block of a page to a file: the first one in a language below a
# heading.
function(extract_block path heading language out)
    file(READ ${path} text)
    foreach(mark "\n${heading}\n" "\n```${language}\n")
        string(FIND "${text}" "${mark}" start)
        if(start EQUAL -1)
            message(FATAL_ERROR "${path} has no block of ${language} below \"${heading}\"")
        endif()
        string(LENGTH "${mark}" length)
        math(EXPR start "${start} + ${length}")
        string(SUBSTRING "${text}" ${start} -1 text)
    endforeach()
    string(FIND "${text}" "\n```" end)
    string(SUBSTRING "${text}" 0 ${end} text)
    file(WRITE ${out} "${text}\n")
endfunction()
