# SPDX-License-Identifier: MIT
# Boost's headers, as Boost::headers.
if(NOT CMAKE_CROSSCOMPILING)
    find_package(Boost 1.66 REQUIRED CONFIG)
    return()
endif()

# They are the same for every system. But the folder that they are in has the C headers of this machine, too, which a
# compiler for another one must not see. So it gets a folder with nothing but Boost.
find_path(NODEBROWSER_BOOST boost/version.hpp PATHS /usr/include NO_CMAKE_FIND_ROOT_PATH REQUIRED
    DOC "The folder that has Boost's folder of headers")
set(alone ${PROJECT_BINARY_DIR}/boost)
file(MAKE_DIRECTORY ${alone})
file(CREATE_LINK ${NODEBROWSER_BOOST}/boost ${alone}/boost SYMBOLIC)
add_library(Boost::headers INTERFACE IMPORTED)
target_include_directories(Boost::headers INTERFACE ${alone})
