# SPDX-License-Identifier: MIT
# Installs the libraries, their public headers and the CMake package "nodebrowser".
include(GNUInstallDirs)
include(CMakePackageConfigHelpers)

set(headers ${CMAKE_INSTALL_INCLUDEDIR}/nodebrowser-${PROJECT_VERSION_MAJOR})
set(package ${CMAKE_INSTALL_LIBDIR}/cmake/nodebrowser)

file(GLOB datamodel_headers CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/datamodel/*.h)
install(FILES ${datamodel_headers} DESTINATION ${headers}/datamodel COMPONENT headers)
foreach(header accessstate commandmanager datalayer datasource export library newitem sourcecontrol)
    install(FILES ${PROJECT_SOURCE_DIR}/memorymodel/${header}.h DESTINATION ${headers}/memorymodel COMPONENT headers)
endforeach()
foreach(header dragformat export nodebrowser typeselector vireodialog)
    install(FILES ${PROJECT_SOURCE_DIR}/nodebrowser/${header}.h DESTINATION ${headers}/nodebrowser COMPONENT headers)
endforeach()

foreach(library datamodel memorymodel nodebrowser)
    target_include_directories(${library} INTERFACE $<INSTALL_INTERFACE:${headers}>)
endforeach()
install(TARGETS datamodel memorymodel nodebrowser EXPORT nodebrowserTargets
    LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR}
    ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR}
    RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR})
install(EXPORT nodebrowserTargets NAMESPACE nodebrowser:: DESTINATION ${package})
configure_package_config_file(${PROJECT_SOURCE_DIR}/cmake/nodebrowserConfig.cmake.in
    ${PROJECT_BINARY_DIR}/nodebrowserConfig.cmake INSTALL_DESTINATION ${package})
write_basic_package_version_file(${PROJECT_BINARY_DIR}/nodebrowserConfigVersion.cmake COMPATIBILITY SameMinorVersion)
install(FILES ${PROJECT_BINARY_DIR}/nodebrowserConfig.cmake ${PROJECT_BINARY_DIR}/nodebrowserConfigVersion.cmake
    DESTINATION ${package})
