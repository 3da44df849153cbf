#!/usr/bin/env bash
# plasma.sh plasma: one session of Plasma on X11 with the widget in its panel, in the system that hosts.sh has made.
# Leaves pictures of the readout and of the panel without Kestro.
set -euo pipefail
name=$1
mkdir -p /pictures /tmp/run
chmod 700 /tmp/run
export HOME=/root XDG_RUNTIME_DIR=/tmp/run XDG_CURRENT_DESKTOP=KDE KDE_FULL_SESSION=true KDE_SESSION_VERSION=5
export LIBGL_ALWAYS_SOFTWARE=1 QT_QUICK_BACKEND=software NO_AT_BRIDGE=1 DISPLAY=:9 XDG_SESSION_TYPE=x11
mkdir -p /run/dbus ~/.config
rm -f /run/dbus/pid
dbus-daemon --system --fork
Xvfb :9 -screen 0 1280x800x24 >/tmp/xvfb.log 2>&1 &
sleep 2
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
import -window root "/pictures/$name-without.png"
kestro >/tmp/kestro.log 2>&1 &
kestro=$!
sleep 10
bash "$(dirname "$0")/require_host.sh" "$name"
import -window root "/pictures/$name-readout.png"
xdotool mousemove 40 780 click 1
sleep 3
import -window root "/pictures/$name-popover.png"
kill "$kestro"
sleep 3
import -window root "/pictures/$name-ended.png"
grep -i kestro /tmp/shell.log || true
