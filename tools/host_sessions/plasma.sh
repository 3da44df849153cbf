#!/usr/bin/env bash
# plasma.sh plasma-x11 | plasma-wayland: one session of Plasma with the widget in two panels and on the desktop, in the
# system that hosts.sh has made. Leaves pictures of the readout, the popover, the menu, and of the panels without
# Kestro. Fails if a click opens no popover, or a second one leaves it open.
set -euo pipefail
name=$1
mkdir -p /pictures /tmp/run
chmod 700 /tmp/run
KDE_SESSION_VERSION=$(dpkg-query -W -f '${Version}' plasma-workspace | sed -E 's/^([0-9]+:)?([0-9]+).*/\2/')
export HOME=/root XDG_RUNTIME_DIR=/tmp/run XDG_CURRENT_DESKTOP=KDE KDE_FULL_SESSION=true KDE_SESSION_VERSION
export LIBGL_ALWAYS_SOFTWARE=1 QT_QUICK_BACKEND=software NO_AT_BRIDGE=1
mkdir -p /run/dbus ~/.config
rm -f /run/dbus/pid
dbus-daemon --system --fork
. "$(dirname "$0")/virtual_display.sh"
# The bus starts services of the session, which need the display.
dbus-update-activation-environment --all
cat >~/.config/plasma-org.kde.plasma.desktop-appletsrc <<'SETTINGS'
[Containments][1]
formfactor=0
immutability=1
lastScreen=0
location=0
plugin=org.kde.plasma.folder
wallpaperplugin=org.kde.color

[Containments][2]
formfactor=2
immutability=1
lastScreen=0
location=4
plugin=org.kde.panel

[Containments][2][Applets][3]
immutability=1
plugin=kestro.readout

[Containments][2][Applets][4]
immutability=1
plugin=org.kde.plasma.digitalclock

[Containments][2][General]
AppletOrder=3;4

[Containments][5]
formfactor=3
immutability=1
lastScreen=0
location=5
plugin=org.kde.panel

[Containments][5][Applets][6]
immutability=1
plugin=kestro.readout

[Containments][5][General]
AppletOrder=6
SETTINGS
screen=$DISPLAY
case $name in
    plasma-x11) kwin_x11 >/tmp/kwin.log 2>&1 & ;;
    plasma-wayland)
        # In a window as large as the display.
        kwin_wayland --x11-display "$screen" --width 1280 --height 800 --no-lockscreen --xwayland \
            'sh -c "echo $DISPLAY >/tmp/xwayland"' >/tmp/kwin.log 2>&1 &
        until [ -s /tmp/xwayland ]; do
            kill -0 $! 2>/dev/null || { cat /tmp/kwin.log >&2; exit 1; }
            sleep 0.1
        done
        DISPLAY=$(cat /tmp/xwayland)
        export WAYLAND_DISPLAY=wayland-0 XDG_SESSION_TYPE=wayland
        dbus-update-activation-environment DISPLAY WAYLAND_DISPLAY XDG_SESSION_TYPE
        ;;
esac
plasmashell >/tmp/shell.log 2>&1 &
sleep 25

fail() { printf '%s: %s\n' "$name" "$*" >&2; tail -n 40 /tmp/shell.log >&2; exit 1; }
picture() { DISPLAY=$screen import -window root "/pictures/$name-$1.png"; }  # NAME
point() { DISPLAY=$screen xdotool "$@"; }
popover() { xdotool search --onlyvisible --name '^Kestro$' >/dev/null; }

dbus-send --session --print-reply --dest=org.kde.plasmashell /PlasmaShell org.kde.PlasmaShell.evaluateScript \
    string:"desktops()[0].addWidget('kestro.readout', 600, 200, 320, 160)" >/dev/null
sleep 2
picture without
kestro >/tmp/kestro.log 2>&1 &
kestro=$!
sleep 10
bash "$(dirname "$0")/require_host.sh" "$name"
picture readout
expect_popover() {  # X Y PANEL
    point mousemove "$1" "$2" sleep 1 click 1
    sleep 3
    popover || fail "a click on the $3 panel opens no popover"
    picture "popover-$3"
    point click 1
    sleep 2
    ! popover || fail "a second click on the $3 panel leaves the popover open"
}
expect_popover 15 18 vertical
expect_popover 60 780 horizontal
point click 3
sleep 2
picture menu
point key Escape mousemove 640 400
kill "$kestro"
sleep 3
picture ended
grep -i kestro /tmp/shell.log || true
