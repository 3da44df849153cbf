#!/usr/bin/env bash
# gnome.sh gnome-x11 | gnome-wayland: one session of GNOME Shell with the extension, in the system that hosts.sh has
# made. Leaves pictures of the readout, the popover, the menu, and of the bar without Kestro.
set -euo pipefail
name=$1
mkdir -p /pictures /tmp/run
chmod 700 /tmp/run
export HOME=/root XDG_RUNTIME_DIR=/tmp/run XDG_CURRENT_DESKTOP=GNOME LIBGL_ALWAYS_SOFTWARE=1 NO_AT_BRIDGE=1
export GSETTINGS_BACKEND=keyfile
mkdir -p ~/.config/glib-2.0/settings
cat >~/.config/glib-2.0/settings/keyfile <<'SETTINGS'
[org/gnome/shell]
enabled-extensions=['kestro@kestro.example']
welcome-dialog-last-shown-version='999'
SETTINGS

# The shell does not start without a system bus, although it needs none of its services.
mkdir -p /run/dbus
rm -f /run/dbus/pid
dbus-daemon --system --fork

case $name in
    gnome-x11)
        Xvfb :9 -screen 0 1280x800x24 >/tmp/xvfb.log 2>&1 &
        export DISPLAY=:9 XDG_SESSION_TYPE=x11
        sleep 2
        gnome-shell --x11 >/tmp/shell.log 2>&1 &
        ;;
    gnome-wayland)
        export XDG_SESSION_TYPE=wayland
        mkdir -p -m 1777 /tmp/.X11-unix
        # Unsafe: other programs may take pictures.
        gnome-shell --wayland --headless --unsafe-mode --virtual-monitor 1280x800 >/tmp/shell.log 2>&1 &
        ;;
esac

picture() {  # NAME
    sleep 1.5
    if [ "$name" = gnome-x11 ]; then
        import -window root "/pictures/$name-$1.png"
    else
        gdbus call --session --dest org.gnome.Shell.Screenshot --object-path /org/gnome/Shell/Screenshot \
            --method org.gnome.Shell.Screenshot.Screenshot false false "/pictures/$name-$1.png" >/dev/null
    fi
}

for _ in $(seq 60); do
    gdbus introspect --session --dest org.gnome.Shell --object-path /org/gnome/Shell >/dev/null 2>&1 && break
    sleep 1
done
sleep 5
if [ "$name" = gnome-x11 ]; then
    # The overview covers the windows.
    xdotool key Escape
    sleep 2
else
    gdbus call --session --dest org.gnome.Shell --object-path /org/gnome/Shell \
        --method org.freedesktop.DBus.Properties.Set org.gnome.Shell OverviewActive '<false>' >/dev/null
fi
picture without
[ "$name" = gnome-x11 ] || export WAYLAND_DISPLAY=wayland-0 DISPLAY=:0
kestro >/tmp/kestro.log 2>&1 &
kestro=$!
sleep 8
bash "$(dirname "$0")/require_host.sh" "$name"
picture readout
if [ "$name" = gnome-x11 ]; then
    # The button is the leftmost of the right-hand ones.
    x=${KESTRO_BUTTON_X:-1080}
    xdotool mousemove "$x" 10 click 1
    picture popover
    xdotool mousemove "$x" 10 click 1
    sleep 1
    xdotool mousemove "$x" 10 click 3
    picture menu
    xdotool key Escape
fi
kill "$kestro"
picture ended
grep -i kestro /tmp/shell.log || true
