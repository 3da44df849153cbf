#!/usr/bin/env bash
# gnome.sh gnome-x11 | gnome-wayland: one session of GNOME Shell with the extension, in the system that hosts.sh has
# made. Leaves pictures of the readout, the popover, the menu, and of the bar without Kestro. Fails if a click or a key
# has no effect, the button's neighbours move, or the shell's log names the extension.
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

# Unsafe: this script may evaluate code in the shell and take pictures.
case $name in
    gnome-x11)
        . "$(dirname "$0")/virtual_display.sh"
        gnome-shell --x11 --unsafe-mode >/tmp/shell.log 2>&1 &
        ;;
    gnome-wayland)
        export XDG_SESSION_TYPE=wayland
        mkdir -m 1777 /tmp/.X11-unix
        gnome-shell --wayland --headless --unsafe-mode --virtual-monitor 1280x800 >/tmp/shell.log 2>&1 &
        ;;
esac
trap '[ $? -eq 0 ] || tail -n 40 /tmp/shell.log >&2' EXIT

fail() { printf '%s: %s\n' "$name" "$*" >&2; exit 1; }
gnome_shell() {  # METHOD [ARGUMENT...]
    gdbus call --session --dest org.gnome.Shell --object-path /org/gnome/Shell --method "$@"
}
evaluate() { gnome_shell org.gnome.Shell.Eval "$1" | sed -E "s/^\(true, '(.*)'\)$/\1/; s/\"//g"; }
picture() {  # NAME
    sleep 1.5
    gdbus call --session --dest org.gnome.Shell.Screenshot --object-path /org/gnome/Shell/Screenshot \
        --method org.gnome.Shell.Screenshot.Screenshot true false "/pictures/$name-$1.png" >/dev/null
}

for _ in $(seq 60); do
    gnome_shell org.freedesktop.DBus.Peer.Ping >/dev/null 2>&1 && break
    sleep 1
done
sleep 5
# The overview covers the windows.
gnome_shell org.freedesktop.DBus.Properties.Set org.gnome.Shell OverviewActive '<false>' >/dev/null
evaluate "
    const {Clutter, GLib} = imports.gi;
    const seat = Clutter.get_default_backend().get_default_seat();
    const pointer = seat.create_virtual_device(Clutter.InputDeviceType.POINTER_DEVICE);
    const keyboard = seat.create_virtual_device(Clutter.InputDeviceType.KEYBOARD_DEVICE);
    const button = () => Main.panel.statusArea['kestro@kestro.example'];
    // Each gesture gets its own time, since the shell ignores what appears to come before its last event.
    const now = () => GLib.get_monotonic_time();
    globalThis.kestro = {
        button,
        neighbour: () => Main.panel.statusArea.quickSettings.get_transformed_position()[0],
        click: number => {
            const [x, y] = button().get_transformed_position();
            pointer.notify_absolute_motion(now(), x + button().width / 2, y + button().height / 2);
            pointer.notify_button(now(), number, Clutter.ButtonState.PRESSED);
            pointer.notify_button(now(), number, Clutter.ButtonState.RELEASED);
        },
        press: key => {
            button().grab_key_focus();
            keyboard.notify_keyval(now(), key, Clutter.KeyState.PRESSED);
            keyboard.notify_keyval(now(), key, Clutter.KeyState.RELEASED);
        },
        choose: label => button().menu._getMenuItems().find(item => item.label?.text === label)?.activate(null),
        windows: () => global.get_window_actors().map(({meta_window: each}) => {
            const {x, y, width} = each.get_frame_rect();
            return [each.title, x + width, y].join('/');
        }).join(' '),
        labels: () => button().menu._getMenuItems().map(item => item.label?.text).join(', '),
    };" >/dev/null
picture without
# Without systemd the shell does not manage windows of X11.
[ "$name" = gnome-x11 ] || export WAYLAND_DISPLAY=wayland-0
kestro >/tmp/kestro.log 2>&1 &
kestro=$!
sleep 8
bash "$(dirname "$0")/require_host.sh" "$name"
picture readout

popover() { [[ " $(evaluate 'kestro.windows()') " == *' Kestro/'* ]]; }
expect_popover() {  # GESTURE NAME
    evaluate "$1" >/dev/null
    sleep 2
    popover || fail "$1 does not open the popover: $(evaluate 'kestro.windows()')"
    picture "popover-$2"
    printf '%s: the button ends at %s, the windows are %s\n' "$1" \
        "$(evaluate 'kestro.button().get_transformed_position()[0] + kestro.button().width')" \
        "$(evaluate 'kestro.windows()')"
    evaluate "$1" >/dev/null
    sleep 2
    ! popover || fail "$1 does not close the popover"
}
expect_popover 'kestro.click(1)' click
expect_popover 'kestro.press(0xff0d)' return
expect_popover 'kestro.press(0x20)' space

place=$(evaluate 'kestro.neighbour()')
for _ in $(seq 20); do
    [ "$(evaluate 'kestro.neighbour()')" = "$place" ] || fail 'the neighbours of the button move'
    sleep 0.5
done
evaluate 'kestro.click(3)' >/dev/null
picture menu
printf 'menu: %s\n' "$(evaluate 'kestro.labels()')"
evaluate "kestro.choose('Settings...')" >/dev/null
sleep 3
[[ $(evaluate 'kestro.windows()') == *Preferences* ]] || fail 'the menu does not show the settings'
picture settings

kill "$kestro"
picture ended
[ "$(evaluate 'kestro.button().visible')" = false ] || fail 'the button stays after Kestro'
if grep -iE 'kestro|JS ERROR' /tmp/shell.log; then
    fail 'the log of the shell names the extension'
fi
