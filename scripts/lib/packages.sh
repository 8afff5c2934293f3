# SPDX-License-Identifier: MIT
# Installs what a script needs from the distribution's packages. To be sourced; writes to standard error only.
# shellcheck shell=bash disable=SC2034 # the lists are read by the scripts that source this

build_packages=(g++ cmake ninja-build libboost-dev libpugixml-dev libgit2-dev libxxhash-dev fonts-dejavu-core)
qt6_packages=(qt6-base-dev)
qt5_packages=(qtbase5-dev)
qt6_test_packages=(libqt6sql6-sqlite)
qt5_test_packages=(libqt5sql5-sqlite)
windows_packages=(g++-mingw-w64-x86-64-posix wine wine64)
test_packages=(libgtest-dev xvfb xauth openbox xdotool git pkgconf dbus-daemon at-spi2-core
    gir1.2-atspi-2.0 python3-gi)
lint_packages=(clang-format-19 clang-tidy-19 git shellcheck)
count_packages=(valgrind)
plot_packages=(gnuplot-nox fonts-dejavu-core)
abi_packages=(abigail-tools universal-ctags pkgconf git)
docs_packages=(doxygen graphviz)
picture_packages=(optipng)
package_packages=(build-essential libgtest-dev dpkg-dev debhelper fakeroot lintian git)
fresh_packages=(debootstrap git)

# say TEXT: a line about what the script is doing, or why it cannot.
say()
{
    echo "${0##*/}: $*" >&2
}

# is_installed PACKAGE
is_installed()
{
    [[ $(dpkg-query --show --showformat='${db:Status-Status}' "$1" 2>/dev/null) == installed* ]]
}

# is_known PACKAGE: whether the package lists at hand offer it.
is_known()
{
    [[ $(LC_ALL=C apt-cache policy "$1" 2>/dev/null) == *"Candidate: "[!\(]* ]]
}

# as_root COMMAND [ARG…]
as_root()
{
    if [ "$(id -u)" -eq 0 ]; then
        "$@"
    else
        sudo "$@"
    fi
}

# refresh_lists FOR: fetches the package lists, once in a run however often it is called. Ends the script with a reason
# when it may not; FOR names what is wanted, for that sentence.
refresh_lists()
{
    if [ "${lists_are_fresh-}" ]; then
        return
    fi
    if [ "$(id -u)" -ne 0 ] && ! command -v sudo >/dev/null; then
        say "cannot install $1: run this as root, or install sudo, or install it yourself"
        exit 1
    fi
    as_root apt-get update </dev/null >&2 || say "the package lists could not be fetched; going on with those at hand"
    lists_are_fresh=yes
}

# install_missing PACKAGE…: installs those that are not there yet. Touches nothing when all are.
install_missing()
{
    if ! command -v dpkg-query >/dev/null; then
        say "this is no Debian: taking it that the counterparts of these packages are installed: $*"
        return
    fi

    local package missing=()
    for package in "$@"; do
        is_installed "$package" || missing+=("$package")
    done
    if [ "${#missing[@]}" -eq 0 ]; then
        return
    fi

    say "installing the packages ${missing[*]}"
    refresh_lists "${missing[*]}"
    if ! as_root env DEBIAN_FRONTEND=noninteractive apt-get -o DPkg::Lock::Timeout=300 \
        install --yes --no-install-recommends "${missing[@]}" </dev/null >&2; then
        say "the packages ${missing[*]} could not be installed"
        exit 1
    fi
}

# pick_qt: sets qt_major and qt_packages to Qt 6 where the distribution has it, else to Qt 5.
pick_qt()
{
    qt_major=6
    qt_packages=("${qt6_packages[@]}")
    if ! command -v dpkg-query >/dev/null || is_installed qt6-base-dev || is_known qt6-base-dev; then
        return
    fi
    if ! is_installed qtbase5-dev; then
        say "fetching the package lists, to see whether there is a Qt 6"
        refresh_lists "Qt"
        if is_known qt6-base-dev; then
            return
        fi
    fi
    qt_major=5
    qt_packages=("${qt5_packages[@]}")
}
