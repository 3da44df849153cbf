#!/usr/bin/env bash
# private_session.sh PROGRAM [ARGUMENT...]: runs a program in a private session and exits with its status. The
# session has a hidden display, a bus, a window manager and an empty home. Nothing leaks in from the caller's
# session, and nothing of this one outlives it.
set -euo pipefail

say() { printf 'private session: %s\n' "$*" >&2; }

# Always below /tmp: the bus needs a short path without spaces, and the display has its socket there anyway.
home=$(mktemp -d /tmp/kestro-session-XXXXXX)
mkdir -m 700 "$home/run"

environment=(HOME="$home" XDG_CONFIG_HOME="$home/config" XDG_DATA_HOME="$home/data" XDG_CACHE_HOME="$home/cache"
    XDG_RUNTIME_DIR="$home/run" XDG_SESSION_TYPE=x11 DBUS_SESSION_BUS_ADDRESS="unix:path=$home/bus"
    NO_AT_BRIDGE=1 GSETTINGS_BACKEND=memory LC_ALL=C.UTF-8)
# Variables that locate programs and their parts, or help to debug them. Scales, styles, displays, languages and
# folders of the caller do not apply here.
for name in PATH USER LOGNAME LD_LIBRARY_PATH QT_PLUGIN_PATH FONTCONFIG_FILE FONTCONFIG_PATH QT_LOGGING_RULES \
    ASAN_OPTIONS LSAN_OPTIONS UBSAN_OPTIONS TSAN_OPTIONS KESTRO_TEST_RUN; do
    if [ -n "${!name:-}" ]; then
        environment+=("$name=${!name}")
    fi
done
sealed() { exec env -i "${environment[@]}" "$@"; }

program=''
servers=()

# Ends the program first, while it still has a display and a bus, then everything else, including what the bus
# has started: all these processes have the session's folder in their environment.
stop() {
    local pid tries
    trap '' INT TERM HUP
    if [ -n "$program" ] && kill "$program" 2>/dev/null; then
        for ((tries = 50; tries > 0; --tries)); do
            kill -0 "$program" 2>/dev/null || break
            sleep 0.1
        done
    fi
    for pid in "${servers[@]}"; do
        kill "$pid" 2>/dev/null || true
    done
    # The display takes a moment to remove its lock.
    for ((tries = 20; tries > 0; --tries)); do
        [ -n "$(members)" ] || break
        sleep 0.1
    done
    for pid in $(members); do
        kill -KILL "$pid" 2>/dev/null || true
    done
    wait 2>/dev/null || true
    # Killed processes that are not children of this one may write until they are gone.
    rm -rf "$home" 2>/dev/null || { sleep 0.2; rm -rf "$home"; } || say "cannot remove $home"
}
members() { grep -sl --null-data -Fx "XDG_RUNTIME_DIR=$home/run" /proc/[0-9]*/environ | cut -d/ -f3 || true; }
trap stop EXIT
trap 'exit 130' INT
trap 'exit 143' TERM HUP

# server NAME READY: registers the last started process as a server of the session; waits until READY succeeds.
server() {
    local name=$1 ready=$2 pid=$! tries
    servers=("$pid" "${servers[@]}")
    for ((tries = 200; tries > 0; --tries)); do
        "$ready" && return
        kill -0 "$pid" 2>/dev/null || break
        sleep 0.05
    done
    say "$name does not start"
    cat "$home/$name.log" >&2
    exit 1
}

has_display() { [ -s "$home/display" ]; }
has_bus() { [ -S "$home/bus" ]; }
has_windows() { (sealed xprop -root _NET_SUPPORTING_WM_CHECK) 2>/dev/null | grep -c 'window id' >/dev/null; }

(sealed Xvfb -displayfd 3 -screen 0 1600x1000x24 -nolisten tcp -noreset) 3>"$home/display" >"$home/Xvfb.log" 2>&1 &
server Xvfb has_display
environment+=("DISPLAY=:$(<"$home/display")")
(sealed dbus-daemon --session --nofork --nopidfile --address="unix:path=$home/bus") >"$home/dbus-daemon.log" 2>&1 &
server dbus-daemon has_bus
(sealed openbox) >"$home/openbox.log" 2>&1 &
server openbox has_windows

(sealed "$@") &
program=$!
status=0
wait "$program" || status=$?
program=''
exit "$status"
