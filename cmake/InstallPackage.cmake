# SPDX-License-Identifier: MIT
# Installs the libraries, their public headers, the licence, a CMake package, and for each library a file of pkg-config.
# Every file carries the package's name, nodebrowser-qt6, -qt5 or -qt4, in its own name or in a folder's: packages for
# different Qt have no file in common.
include(GNUInstallDirs)
include(CMakePackageConfigHelpers)

set(package ${PROJECT_NAME}-qt${NODEBROWSER_QT_MAJOR})
set(headers ${CMAKE_INSTALL_INCLUDEDIR}/${package})
set(cmake_files ${CMAKE_INSTALL_LIBDIR}/cmake/${package})

# The headers.
configure_file(${PROJECT_SOURCE_DIR}/nodebrowser/version.h.in ${PROJECT_BINARY_DIR}/include/nodebrowser/version.h @ONLY)
target_include_directories(nodebrowser PUBLIC $<BUILD_INTERFACE:${PROJECT_BINARY_DIR}/include>)
install(FILES ${PROJECT_BINARY_DIR}/include/nodebrowser/version.h DESTINATION ${headers}/nodebrowser
    COMPONENT headers)
file(GLOB datamodel_headers CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/datamodel/*.h)
install(FILES ${datamodel_headers} DESTINATION ${headers}/datamodel COMPONENT headers)
foreach(header accessstate commandmanager datalayer datasource export library newitem sourcecontrol store versioning)
    install(FILES ${PROJECT_SOURCE_DIR}/memorymodel/${header}.h DESTINATION ${headers}/memorymodel COMPONENT headers)
endforeach()
foreach(header dragformat export nodebrowser typeselector vireodialog)
    install(FILES ${PROJECT_SOURCE_DIR}/nodebrowser/${header}.h DESTINATION ${headers}/nodebrowser COMPONENT headers)
endforeach()

# The libraries, as targets of the CMake package.
foreach(library datamodel memorymodel nodebrowser)
    target_include_directories(${library} INTERFACE $<INSTALL_INTERFACE:${headers}>)
endforeach()
install(TARGETS datamodel memorymodel nodebrowser EXPORT nodebrowser
    LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR}
    ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR}
    RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR})
install(EXPORT nodebrowser NAMESPACE nodebrowser:: DESTINATION ${cmake_files} FILE ${package}-targets.cmake)
configure_package_config_file(${PROJECT_SOURCE_DIR}/cmake/config.cmake.in
    ${PROJECT_BINARY_DIR}/${package}-config.cmake INSTALL_DESTINATION ${cmake_files})
# The libraries' soname has the major version alone, so that is what a newer package must share with an older one.
write_basic_package_version_file(${PROJECT_BINARY_DIR}/${package}-config-version.cmake
    COMPATIBILITY SameMajorVersion)
install(FILES ${PROJECT_BINARY_DIR}/${package}-config.cmake ${PROJECT_BINARY_DIR}/${package}-config-version.cmake
    DESTINATION ${cmake_files})

install(FILES ${PROJECT_SOURCE_DIR}/LICENSE DESTINATION ${CMAKE_INSTALL_DATADIR}/doc/${package})
install(DIRECTORY ${PROJECT_SOURCE_DIR}/examples DESTINATION ${CMAKE_INSTALL_DATADIR}/doc/${package})

# install_pkgconfig(LIBRARY DESCRIPTION REQUIRES…): a file that carries the library's name. It has no folder of its own
# written into it, so the installed package can be moved.
file(RELATIVE_PATH prefix "${CMAKE_INSTALL_FULL_LIBDIR}/pkgconfig" "${CMAKE_INSTALL_PREFIX}")
string(REGEX REPLACE "/$" "" prefix "${prefix}")
function(install_pkgconfig library description)
    get_target_property(file ${library} OUTPUT_NAME)
    file(RELATIVE_PATH libdir "${CMAKE_INSTALL_PREFIX}" "${CMAKE_INSTALL_FULL_LIBDIR}")
    file(RELATIVE_PATH includedir "${CMAKE_INSTALL_PREFIX}" "${CMAKE_INSTALL_FULL_INCLUDEDIR}/${package}")
    # Qt6::Gui is Qt6Gui to pkg-config, Qt4::QtGui is QtGui.
    string(REGEX REPLACE "Qt4::|::" "" requires "${ARGN}")
    string(REPLACE ";" ", " requires "${requires}")
    set(flags)
    if(NOT BUILD_SHARED_LIBS)
        string(TOUPPER " -D${library}_STATIC" flags)
    endif()
    # A Qt may refuse programs without this. It passes it on to CMake projects only.
    if(TARGET Qt${NODEBROWSER_QT_MAJOR}::Core)
        get_target_property(options Qt${NODEBROWSER_QT_MAJOR}::Core INTERFACE_COMPILE_OPTIONS)
        if(options MATCHES "-fPIC")
            string(APPEND flags " -fPIC")
        endif()
    endif()
    configure_file(${PROJECT_SOURCE_DIR}/cmake/pkgconfig.pc.in ${PROJECT_BINARY_DIR}/pkgconfig/${file}.pc @ONLY)
    install(FILES ${PROJECT_BINARY_DIR}/pkgconfig/${file}.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
endfunction()

install_pkgconfig(datamodel "The interfaces between the node browser and a data layer" ${NODEBROWSER_QT_GUI})
get_target_property(datamodel_file datamodel OUTPUT_NAME)
install_pkgconfig(memorymodel "A data layer for the node browser, in memory" ${datamodel_file} ${NODEBROWSER_QT_GUI})
install_pkgconfig(nodebrowser "A browser of node libraries, as a widget" ${datamodel_file} ${NODEBROWSER_QT_WIDGETS})
