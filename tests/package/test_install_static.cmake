# SPDX-License-Identifier: MIT
# The libraries build as static ones and install. They are built in a few large units without the optimiser: what they
# do is tested elsewhere.
include(${CMAKE_CURRENT_LIST_DIR}/project.cmake)

file(REMOVE_RECURSE ${WORK})
set(options)
if(QMAKE)
    set(options -DQT_QMAKE_EXECUTABLE=${QMAKE})
endif()
run(${CMAKE_COMMAND} -S ${SOURCE} -B ${WORK}/build -G ${GENERATOR} -DCMAKE_CXX_COMPILER=${COMPILER}
    -DCMAKE_BUILD_TYPE=Debug -DCMAKE_CXX_FLAGS_DEBUG= -DCMAKE_UNITY_BUILD=ON -DNODEBROWSER_QT_MAJOR=${QT}
    -DBUILD_SHARED_LIBS=OFF -DNODEBROWSER_TESTS=OFF -DNODEBROWSER_HOST=OFF -DNODEBROWSER_BENCHMARKS=OFF ${options})
run(${CMAKE_COMMAND} --build ${WORK}/build)
set(CONFIGURATION Debug)
install_build(${WORK}/build ${WORK}/installed)
