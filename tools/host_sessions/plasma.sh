#!/usr/bin/env bash
# plasma.sh plasma: one session of Plasma on X11 with the widget in its panel, in the system that hosts.sh has made.
# Leaves pictures of the readout, the popover, the menu, and of the panel without Kestro. Fails if a click opens no
# popover, or a second one leaves it open.
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
SETTINGS
kwin_x11 >/tmp/kwin.log 2>&1 &
plasmashell >/tmp/shell.log 2>&1 &
sleep 25

fail() { printf '%s: %s\n' "$name" "$*" >&2; tail -n 40 /tmp/shell.log >&2; exit 1; }
picture() { import -window root "/pictures/$name-$1.png"; }  # NAME
popover() { xdotool search --onlyvisible --name '^Kestro$' >/dev/null; }

picture without
kestro >/tmp/kestro.log 2>&1 &
kestro=$!
sleep 10
bash "$(dirname "$0")/require_host.sh" "$name"
picture readout
xdotool mousemove 40 780 click 1
sleep 3
popover || fail 'a click opens no popover'
picture popover
xdotool mousemove 40 780 click 1
sleep 2
! popover || fail 'a second click leaves the popover open'
xdotool click 3
sleep 2
picture menu
xdotool key Escape mousemove 640 400
kill "$kestro"
sleep 3
picture ended
grep -i kestro /tmp/shell.log || true
