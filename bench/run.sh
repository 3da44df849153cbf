#!/usr/bin/env bash
# run.sh BUILD_DIR [IDLE_SECONDS]: every benchmark, the whole-process ones on a private display and bus.
set -euo pipefail
build=$1
idle=${2:-60}

"$build/bench/ports_bench"
if [ -x "$build/bench/ui_bench" ]; then
    QT_QPA_PLATFORM=offscreen "$build/bench/ui_bench"
fi

home=$(mktemp -d)
mkfifo "$home/display"
Xvfb -displayfd 3 -screen 0 1600x1000x24 -nolisten tcp -noreset 3<>"$home/display" >/dev/null 2>&1 &
server=$!
trap 'kill $server 2>/dev/null || true; rm -rf "$home"' EXIT
read -r number <"$home/display"

env -u WAYLAND_DISPLAY DISPLAY=":$number" XDG_CONFIG_HOME="$home/config" XDG_RUNTIME_DIR="$home" HOME="$home" \
    dbus-run-session -- bash -c 'openbox & wm=$!; "$1" "$2" "$3"; status=$?; kill $wm; exit $status' \
    _ "$build/bench/process_bench" "$build/kestro" "$idle"
