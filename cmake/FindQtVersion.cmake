# SPDX-License-Identifier: MIT
# Finds the Qt that NODEBROWSER_QT_MAJOR names, or the newest one, and sets
#   NODEBROWSER_QT_MAJOR    the version in use
#   NODEBROWSER_QT_GUI      what the data layers link: core types, pixmaps, the undo stack
#   NODEBROWSER_QT_WIDGETS  what the browser links
#   NODEBROWSER_QT_TEST     what the tests link
# Qt 4 is found by its qmake: the one that QT_QMAKE_EXECUTABLE names, or the first in the path.
if(NOT NODEBROWSER_QT_MAJOR)
    foreach(major 6 5 4)
        if(major EQUAL 4)
            find_package(Qt4 4.8 QUIET COMPONENTS QtCore QtGui)
        else()
            find_package(Qt${major} QUIET COMPONENTS Widgets)
        endif()
        if(Qt${major}_FOUND OR (major EQUAL 4 AND QT4_FOUND))
            set(NODEBROWSER_QT_MAJOR ${major})
            break()
        endif()
    endforeach()
    if(NOT NODEBROWSER_QT_MAJOR)
        message(FATAL_ERROR "No Qt was found. Install the development files of Qt 6 (6.4 or later), Qt 5.15 or Qt 4.8.")
    endif()
endif()

if(NODEBROWSER_QT_MAJOR EQUAL 4)
    find_package(Qt4 4.8 REQUIRED COMPONENTS QtCore QtGui QtTest)
    set(NODEBROWSER_QT_GUI Qt4::QtGui)
    set(NODEBROWSER_QT_WIDGETS Qt4::QtGui)
    set(NODEBROWSER_QT_TEST Qt4::QtTest)
elseif(NODEBROWSER_QT_MAJOR EQUAL 5)
    find_package(Qt5 5.15 REQUIRED COMPONENTS Widgets Test)
    set(NODEBROWSER_QT_GUI Qt5::Widgets)
    set(NODEBROWSER_QT_WIDGETS Qt5::Widgets)
    set(NODEBROWSER_QT_TEST Qt5::Test)
elseif(NODEBROWSER_QT_MAJOR EQUAL 6)
    find_package(Qt6 6.4 REQUIRED COMPONENTS Widgets Test)
    set(NODEBROWSER_QT_GUI Qt6::Gui)
    set(NODEBROWSER_QT_WIDGETS Qt6::Widgets)
    set(NODEBROWSER_QT_TEST Qt6::Test)
else()
    message(FATAL_ERROR "NODEBROWSER_QT_MAJOR is ${NODEBROWSER_QT_MAJOR}; it must be 4, 5 or 6.")
endif()
message(STATUS "Building against Qt ${NODEBROWSER_QT_MAJOR}")
