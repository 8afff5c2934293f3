# SPDX-License-Identifier: MIT
function(run)
    execute_process(COMMAND ${ARGN} RESULT_VARIABLE result OUTPUT_VARIABLE output ERROR_VARIABLE output)
    if(NOT result EQUAL 0)
        message(FATAL_ERROR "${ARGN}\n${output}\nended with ${result}")
    endif()
endfunction()

file(REMOVE_RECURSE ${WORK})
run(${CMAKE_COMMAND} --install ${BUILD} --config ${CONFIGURATION} --prefix ${WORK}/installed)
foreach(header datamodel/provider.h memorymodel/datalayer.h nodebrowser/nodebrowser.h nodebrowser/typeselector.h
        nodebrowser/vireodialog.h)
    file(GLOB found ${WORK}/installed/include/*/${header})
    if(NOT found)
        message(FATAL_ERROR "${header} is not installed")
    endif()
endforeach()
file(GLOB_RECURSE internal ${WORK}/installed/include/*/renamedialog.h)
if(internal)
    message(FATAL_ERROR "the rename dialog is the library's own, but its header is installed")
endif()

run(${CMAKE_COMMAND} -S ${EXAMPLE} -B ${WORK}/example -G ${GENERATOR} -DCMAKE_CXX_COMPILER=${COMPILER}
    -DCMAKE_BUILD_TYPE=${CONFIGURATION} -DCMAKE_PREFIX_PATH=${WORK}/installed)
run(${CMAKE_COMMAND} --build ${WORK}/example)

# The example runs until its window is closed: that it is still there after a moment is what is asked of it.
execute_process(COMMAND ${WORK}/example/browser-example TIMEOUT 3 RESULT_VARIABLE result ERROR_VARIABLE output)
if(NOT result MATCHES "timeout")
    message(FATAL_ERROR "the example ended by itself: ${result}\n${output}")
endif()
