#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# Starts a program on an X server of its own, waits for its window, and closes the window by the keyboard, as a person
# does:
#
#     open_and_close.sh PROGRAM [ARG…]
#
# Ends with the program's exit status, or with 1 when the program ends before it has a window, opens none in time, or
# does not end when its window is closed. LIMIT is the time for each step, in seconds.
set -u

limit=${LIMIT:-60}
export QT_QPA_PLATFORM=xcb DBUS_SESSION_BUS_ADDRESS=disabled:

fail()
{
    echo "$*" >&2
    exit 1
}

# in_time PROCESS COMMAND…: repeats a command until it succeeds. Fails when the process ends, or when the limit is
# reached.
in_time()
{
    local process=$1 end=$((SECONDS + limit))
    shift
    until "$@"; do
        if ! is_running "$process" || [ "$SECONDS" -ge "$end" ]; then
            return 1
        fi
        sleep 0.2
    done
}

is_running()
{
    kill -0 "$1" 2>/dev/null
}

is_managed()
{
    timeout 5 xdotool get_num_desktops >/dev/null 2>&1
}

has_window()
{
    window=$(timeout 5 xdotool search --onlyvisible --pid "$program" 2>/dev/null | head -n 1)
    [ -n "$window" ]
}

# The window manager may not have passed the focus on yet: then the key goes elsewhere, and is pressed again.
close_window()
{
    timeout 5 xdotool windowactivate --sync "$window" key --clearmodifiers alt+F4 2>/dev/null
    sleep 0.5
    ! is_running "$program"
}

# The window manager ends with the server. The server is waited for, because it removes files when it ends, and a next
# server with the same number would miss them.
clean_up()
{
    kill -KILL $program 2>/dev/null
    kill "$server" 2>/dev/null && wait "$server"
}

# The server finds a free number and writes it. It must not start afresh whenever its last client leaves.
program=
trap clean_up EXIT
coproc numbers { exec Xvfb -displayfd 1 -noreset -nolisten tcp -screen 0 800x600x24 2>/dev/null; }
server=$!
read -r -t "$limit" -u "${numbers[0]}" number || fail "the X server does not start"
export DISPLAY=:$number

# The program starts after the window manager: a window that is shown while the manager starts may stay hidden.
openbox &
manager=$!
in_time "$manager" is_managed || fail "the window manager does not start"
"$@" &
program=$!
if ! in_time "$program" has_window; then
    is_running "$program" && fail "$1 has no window after $limit seconds"
    wait "$program"
    fail "$1 ended with status $? before it had a window"
fi
if ! in_time "$program" close_window && is_running "$program"; then
    fail "$1 still runs $limit seconds after its window was closed"
fi
wait "$program"
