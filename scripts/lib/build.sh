# SPDX-License-Identifier: MIT
# Configures and builds below build/. To be sourced; brings packages.sh along and sets root to the project's folder,
# which is not made the current one. Writes to standard error only.
# shellcheck shell=bash

root=$(dirname -- "$(readlink -f -- "${BASH_SOURCE[0]%/*}/..")")
# shellcheck source=scripts/lib/packages.sh
. "$root/scripts/lib/packages.sh"

# configure NAME QT_MAJOR BUILD_TYPE [CMAKE_ARG…]: prepares build/NAME. What was built there for another Qt, or before
# the project was moved, is thrown away: it would be mixed up with what is built now. A QT_MAJOR of none builds what
# needs no Qt.
configure()
{
    local name=$1 qt=$2 type=$3 cache=$root/build/$1/CMakeCache.txt
    shift 3
    if [ -e "$cache" ] && ! { grep -qx "NODEBROWSER_QT_MAJOR:[A-Z]*=$qt" "$cache" &&
        grep -qxF "CMAKE_HOME_DIRECTORY:INTERNAL=$root" "$cache"; }; then
        say "starting build/$name afresh: it was made for another Qt or in another place"
        rm -rf -- "${root:?}/build/$name"
    fi
    cmake -S "$root" -B "$root/build/$name" -G Ninja -DCMAKE_BUILD_TYPE="$type" -DNODEBROWSER_QT_MAJOR="$qt" "$@" >&2
}

# build NAME [TARGET…]: builds the targets, or everything, in build/NAME.
build()
{
    local name=$1
    shift
    cmake --build "$root/build/$name" ${1+--target "$@"} >&2
}

# build_release TARGET…: builds programs or libraries of build/release, which several scripts share.
build_release()
{
    pick_qt
    install_missing "${build_packages[@]}" "${qt_packages[@]}"
    configure release "$qt_major" Release -DNODEBROWSER_HOST=ON -DNODEBROWSER_BENCHMARKS=ON -DNODEBROWSER_TESTS=OFF \
        -DNODEBROWSER_WERROR=OFF
    build release "$@"
}

# file_name LIBRARY: the file of one of the installed libraries, up to its Qt.
file_name()
{
    if [ "$1" = nodebrowser ]; then
        echo nodebrowser
    else
        echo "nodebrowser-$1"
    fi
}

# use_utf8_locale: Qt 6 wants text in UTF-8 and warns under any other locale; a bare machine has none set.
use_utf8_locale()
{
    case "${LC_ALL:-${LC_CTYPE:-${LANG-}}}" in
        *.[Uu][Tt][Ff]-8 | *.[Uu][Tt][Ff]8) ;;
        *) export LC_ALL=C.UTF-8 ;;
    esac
}

# project_version: the version in the text of CMakeLists.txt on standard input.
project_version()
{
    sed -nE 's/^project\(nodebrowser VERSION ([0-9.]+) .*/\1/p'
}
