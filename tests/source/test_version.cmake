# SPDX-License-Identifier: MIT
# The version is in the project's CMakeLists.txt. What else has to name it, because no build writes it, names the same:
# the changelogs, the Debian package of the libraries, whose name ends with their soname's number, and the manual.
string(REGEX REPLACE "^([0-9]+)\\..*" "\\1" major "${VERSION}")

# expect(FILE REGEX WANTED): the group of the first match of REGEX in a file must be WANTED.
function(expect file regex wanted)
    file(READ ${SOURCE}/${file} text)
    string(REGEX MATCH "${regex}" match "\n${text}")
    if(NOT CMAKE_MATCH_1 STREQUAL wanted)
        message(SEND_ERROR "${file}: says \"${CMAKE_MATCH_1}\" where the version ${VERSION} asks for \"${wanted}\"")
    endif()
endfunction()

expect(CHANGELOG.md "\n## ([^\n]*)" "${VERSION}")
expect(packaging/debian/changelog "\nnodebrowser \\(([0-9.]+)-[0-9]+\\) " "${VERSION}")
expect(packaging/debian/control "\nPackage: libnodebrowser([0-9]+)\n" "${major}")
expect(docs/embedding.md "find_package\\(nodebrowser-qt6 ([0-9]+)\\.[0-9]+ REQUIRED\\)" "${major}")
