#!/usr/bin/env bash
# virtual_session.sh KESTRO PICTURES: runs Kestro on a display that nobody sees, with a bus, a window manager and
# preferences of its own; saves a picture of each surface and prints the readout line by line until it is stopped.
set -euo pipefail
kestro=$(realpath "$1")
mkdir -p "$2"
pictures=$(realpath "$2")

home=$(mktemp -d)
started=()
stop() {
    trap - EXIT
    local pid
    for pid in "${started[@]}"; do
        kill "$pid" 2>/dev/null || true
        wait "$pid" 2>/dev/null || true
    done
    rm -rf "$home"
}
trap stop EXIT
trap 'exit 130' INT TERM

mkfifo "$home/display"
Xvfb -displayfd 3 -screen 0 1600x1000x24 -nolisten tcp -noreset 3<>"$home/display" >/dev/null 2>&1 &
started=("$!")
read -r number <"$home/display"
export DISPLAY=":$number" HOME="$home" XDG_CONFIG_HOME="$home/config" XDG_RUNTIME_DIR="$home/run"
export DBUS_SESSION_BUS_ADDRESS="unix:path=$home/bus"
unset WAYLAND_DISPLAY
mkdir -m 700 "$XDG_RUNTIME_DIR"

dbus-daemon --session --nofork --address="$DBUS_SESSION_BUS_ADDRESS" >/dev/null 2>&1 &
started=("$!" "${started[@]}")
openbox >/dev/null 2>&1 &
started=("$!" "${started[@]}")
"$kestro" &
program=$!
started=("$program" "${started[@]}")

# Without a panel Kestro shows a strip of its own, whose window carries the readout as its name.
window=''
for _ in $(seq 100); do
    # awk reads to the end: a broken pipe would end this script.
    window=$(xwininfo -root -tree 2>/dev/null | awk '/"Kestro: / && !found { found = $1 } END { print found }' || true)
    [ -n "$window" ] && break
    kill -0 "$program" 2>/dev/null || { wait "$program"; exit 1; }
    sleep 0.1
done

notify() { dbus-send --type=signal /kestro/notify "kestro.notify.$1"; }
picture() { sleep 2.5; import -window root "$pictures/$1.png"; }

picture readout
notify togglePopover; picture popover; notify togglePopover
notify showDashboard; picture dashboard
notify showSettings; picture settings
echo "Kestro runs on the virtual display $DISPLAY; pictures are in $pictures. Stop with Ctrl+C."

if [ -n "$window" ]; then
    xprop -id "$window" -spy _NET_WM_NAME | sed -u 's/^_NET_WM_NAME[^=]*= "Kestro: //; s/"$//' &
    started=("$!" "${started[@]}")
fi
wait "$program"
