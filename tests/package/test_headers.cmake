# SPDX-License-Identifier: MIT
# Every installed header compiles alone, with nothing but the package. Exported classes show no private field.
cmake_minimum_required(VERSION 3.20)
include(${CMAKE_CURRENT_LIST_DIR}/project.cmake)

set(root ${WORK}/installed/include/${PACKAGE})
file(GLOB headers RELATIVE ${root} ${root}/*/*.h)
list(LENGTH headers count)
if(count LESS 10)
    message(FATAL_ERROR "only ${count} headers are installed below ${WORK}/installed/include")
endif()

# A unit includes its header twice, so that a header without a guard fails too.
foreach(header ${headers})
    string(REPLACE "/" "_" name ${header})
    file(WRITE ${WORK}/headers/${name}.cpp "#include <${header}>\n#include <${header}>\n")
endforeach()
file(WRITE ${WORK}/headers/CMakeLists.txt "set(package ${PACKAGE})" [[

cmake_minimum_required(VERSION 3.20)
project(headers LANGUAGES CXX)
find_package(${package} REQUIRED)
file(GLOB units *.cpp)
add_library(headers OBJECT ${units})
target_compile_features(headers PRIVATE cxx_std_17)
target_link_libraries(headers PRIVATE nodebrowser::nodebrowser nodebrowser::memorymodel nodebrowser::contract)
]])
build_project(${WORK}/headers ${WORK}/headers/build)

# A new field changes the size of its class, which breaks every program that was built before. So a class that is
# exported has one field, the pointer to its private part. datamodel/ is exempt: it has interfaces, which have no
# fields, and small values, which keep theirs because copies must be cheap. So are memorymodel/store.h and versioning.h,
# interfaces and the values that they pass. So is contract/, a static library.
set(private_part "m_private")
foreach(header ${headers})
    if(header MATCHES "^(datamodel|contract)/|^memorymodel/(store|versioning).h$")
        continue()
    endif()
    # A line that declares a field starts with its type. Statements are left out.
    file(STRINGS ${root}/${header} lines
        REGEX "^ +[A-Za-z].*[ *&>]m_[A-Za-z0-9]+(\\[[^]]*\\])?( = [^;]+|{.*})?;( *//.*)?$")
    foreach(line IN LISTS lines)
        if(NOT line MATCHES "^ *return | ${private_part};$")
            string(STRIP "${line}" line)
            message(SEND_ERROR "${header} shows a private field: ${line}")
        endif()
    endforeach()
endforeach()
