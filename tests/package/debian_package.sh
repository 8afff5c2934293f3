#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# Installs the Debian packages of a folder on a machine that has nothing, and uses them as one who found them there: the
# host prints rows and draws its window; the examples, copied from where the packages have them, build and run.
#
#     scripts/fresh --with build/package bookworm tests/package/debian_package.sh build/package
#
# It leaves a picture of the host in build/, and installs packages, so a root that is thrown away is the place for it.
set -euo pipefail

packages=$(readlink -f -- "$1")
tests=$(dirname -- "$(readlink -f -- "${BASH_SOURCE[0]}")")
project=$(readlink -f -- "$tests/../..")
export LC_ALL=C.UTF-8 DEBIAN_FRONTEND=noninteractive

step()
{
    echo "debian_package: $*" >&2
}

fail()
{
    step "FAIL: $*"
    exit 1
}

install()
{
    apt-get -qq -o Dpkg::Use-Pty=0 install --yes --no-install-recommends "$@" >/dev/null
}

apt-get -qq update
if dpkg-query --show 'libqt6*' 2>/dev/null | grep -q .; then
    fail "there is a Qt before the packages are installed: what they need cannot be seen"
fi

step "installing the host and the library that it needs, without what is only recommended"
install "$packages"/libnodebrowser0_*.deb "$packages"/nodebrowser-host_*.deb

# A pipe into "head" or "grep --quiet" would hide how the host ends.
step "asking the host for rows"
rows=$(nodebrowser-host --tab all --search noise --rows)
[ "$(wc -l <<<"$rows")" -ge 2 ] || fail "the host prints these rows only: $rows"
while IFS=$'\t' read -r _ _ name tags _; do
    [[ ${name,,}${tags,,} == *noise* ]] || fail "a row that was not searched for: $name, $tags"
done <<<"$rows"
step "it prints $(wc -l <<<"$rows") rows; the first: $(head -n 1 <<<"$rows" | tr '\t' ' ')"

step "asking the host for a picture"
mkdir -p -- "$project/build"
picture=$project/build/package-host.png
rm -f -- "$picture"
timeout 60 nodebrowser-host --size 900x600 --screenshot "$picture"
[ "$(od -An -tx1 -j16 -N8 -- "$picture" | tr -d ' \n')" = 0000038400000258 ] || fail "$picture is not 900x600 pixels"

step "looking for what a desktop shows"
for file in applications/nodebrowser-host.desktop icons/hicolor/scalable/apps/nodebrowser-host.svg \
    doc/nodebrowser-host/copyright; do
    [ -s "/usr/share/$file" ] || fail "/usr/share/$file is missing"
done

step "building the examples against the package"
install "$packages"/libnodebrowser-dev_*.deb
install g++ cmake make libqt6sql6-sqlite xvfb openbox xdotool
work=$(mktemp -d)
cp -R -- /usr/share/doc/libnodebrowser-dev/examples/. "$work"
find "$work" -name '*.gz' -exec gunzip {} +
built=0
for example in "$work"/*/; do
    if ! { cmake -S "$example" -B "$example/build" && cmake --build "$example/build"; } >"$work/log" 2>&1; then
        cat -- "$work/log"
        fail "$example does not build"
    fi
    built=$((built + 1))
done
[ "$built" -ge 2 ] || fail "the package has $built examples"

step "running an example: a window that opens and closes, and the checks of a data layer"
[ -x "$work/smallest/build/smallest" ] || fail "there is no program \"smallest\""
bash "$tests/open_and_close.sh" "$work/smallest/build/smallest" || fail "\"smallest\" ended with status $?"
if ! QT_QPA_PLATFORM=offscreen timeout 120 "$work/sqlite-host/build/test_sqlitelayer" >"$work/log" 2>&1; then
    cat -- "$work/log"
    fail "test_sqlitelayer ended with an error"
fi
tail -n 1 -- "$work/log"

step "removing the packages"
apt-get -qq purge --yes libnodebrowser0 >/dev/null
if left=$(find /usr -path '*nodebrowser*' | grep .); then
    fail "files stay: $left"
fi
step "PASS: $built examples built"
