# SPDX-License-Identifier: MIT
include(${CMAKE_CURRENT_LIST_DIR}/project.cmake)

file(REMOVE_RECURSE ${WORK})
run(${CMAKE_COMMAND} --install ${BUILD} --config ${CONFIGURATION} --prefix ${WORK}/installed)
foreach(header datamodel/provider.h memorymodel/datalayer.h nodebrowser/nodebrowser.h nodebrowser/typeselector.h
        nodebrowser/vireodialog.h contract/boundarycontract.h contract/boundaryfixture.h)
    file(GLOB found ${WORK}/installed/include/*/${header})
    if(NOT found)
        message(FATAL_ERROR "${header} is not installed")
    endif()
endforeach()
file(GLOB internal ${WORK}/installed/include/*/*/renamedialog.h)
if(internal)
    message(FATAL_ERROR "the rename dialog is the library's own, but its header is installed")
endif()
