#!/usr/bin/env bash
# virtual_session.sh KESTRO PICTURES: runs Kestro in a private session, saves a picture of each surface, and
# prints the readout line by line until it is stopped.
set -euo pipefail
if [ "$1" != --inside ]; then
    mkdir -p "$2"
    exec "$(dirname "$0")/private_session.sh" "$(realpath "$0")" --inside "$(realpath "$1")" "$(realpath "$2")"
fi
kestro=$2
pictures=$3

"$kestro" &
program=$!
trap 'kill "$program" 2>/dev/null || true; wait "$program" || true; exit 143' TERM

# Without a panel Kestro shows its own strip, whose window is named after the readout.
window=''
for ((tries = 300; tries > 0; --tries)); do
    # A window that closes while xwininfo lists it makes xwininfo fail; the next attempt no longer lists it.
    window=$({ xwininfo -root -tree 2>/dev/null || true; } | awk '/"Kestro: / && !found { found = $1 } END { print found }')
    [ -n "$window" ] && break
    kill -0 "$program" 2>/dev/null || { wait "$program"; exit 1; }
    sleep 0.1
done
[ -n "$window" ] || { echo 'virtual session: Kestro shows no readout' >&2; kill "$program"; exit 1; }

xprop -id "$window" -spy _NET_WM_NAME | sed -u 's/^_NET_WM_NAME[^=]*= "Kestro: //; s/"$//' &

notify() { dbus-send --type=signal /kestro/notify "kestro.notify.$1"; }
pause() {  # in the background, since a trap waits for the foreground command to finish
    sleep "$1" &
    wait $!
}
picture() {  # NAME [TITLE]: once the window with that title is there and has drawn itself
    for ((tries = 200; tries > 0 && $# > 1; --tries)); do
        { xwininfo -root -tree 2>/dev/null || true; } | grep -F "\"$2\":" >/dev/null && break
        pause 0.1
    done
    pause 2
    import -window root "$pictures/$1.png"
}

picture readout
notify togglePopover; picture popover Kestro; notify togglePopover
notify showDashboard; picture dashboard 'Kestro Studio Dashboard'
notify showSettings; picture settings 'Kestro Preferences'
echo "Kestro runs on the virtual display $DISPLAY; pictures are in $pictures. Stop with Ctrl+C."
wait "$program"
