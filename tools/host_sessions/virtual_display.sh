# shellcheck shell=bash
# virtual_display.sh: sourced; starts a hidden display under the first free number, and exports it. The number must be
# free outside of the system too, because both share the sockets of displays.
Xvfb -displayfd 3 -screen 0 1280x800x24 3>/tmp/display >/tmp/xvfb.log 2>&1 &
until [ -s /tmp/display ]; do
    kill -0 $! 2>/dev/null || { cat /tmp/xvfb.log >&2; exit 1; }
    sleep 0.1
done
DISPLAY=:$(cat /tmp/display)
export DISPLAY XDG_SESSION_TYPE=x11
