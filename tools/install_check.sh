#!/usr/bin/env bash
# install_check.sh: installs a lower version of the packages of build/package into a throw-away Debian below
# build/hosts, starts Kestro, upgrades over it, removes and purges it, and fails if anything is left but the user's
# preferences. Needs root.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."
system=${KESTRO_SYSTEM:-$PWD/build/hosts/plain}
packages=${KESTRO_PACKAGES:-$PWD/build/package}
release=$(. /etc/os-release && printf '%s' "$VERSION_CODENAME")

if [ ! -e "$system/.complete" ]; then
    rm -rf "$system"
    mkdir -p "$system"
    debootstrap --variant=minbase "$release" "$system"
    # No service starts in there.
    printf '#!/bin/sh\nexit 101\n' >"$system/usr/sbin/policy-rc.d"
    chmod +x "$system/usr/sbin/policy-rc.d"
    DEBIAN_FRONTEND=noninteractive chroot "$system" apt-get install -y --no-install-recommends dbus xvfb procps
    touch "$system/.complete"
fi
lower() {  # PACKAGE DIR: puts the same package, as an older version, into DIR
    local tree
    tree=$(mktemp -d)
    dpkg-deb --raw-extract "$1" "$tree"
    sed -i -E 's/^(Version: ).*/\10.0.1/; s/(kestro-readout \(= )[^)]*/\10.0.1/' "$tree/DEBIAN/control"
    dpkg-deb --root-owner-group --build "$tree" "$2" >/dev/null
    rm -rf "$tree"
}

rm -rf "$system/packages"
mkdir -p "$system/packages/old"
for package in "$packages"/kestro_*.deb "$packages"/kestro-readout_*.deb; do
    cp "$package" "$system/packages"
    lower "$package" "$system/packages/old"
done

cat >"$system/check.sh" <<'CHECK'
set -euo pipefail
export DEBIAN_FRONTEND=noninteractive
say() { printf 'install_check: %s\n' "$*"; }
running() { kill -0 "$kestro" 2>/dev/null; }
answers() {  # TEXT: whether the readout contains it within ten seconds
    for _ in $(seq 50); do
        [[ $(kestro-readout --once) == *"$1"* ]] && return
        sleep 0.2
    done
    say "the readout is \"$(kestro-readout --once)\""
    return 1
}
apt-get purge -y kestro kestro-readout >/dev/null 2>&1 || true  # of a check that failed
rm -rf /root/.config/kestro
apt-get install -y --no-install-recommends /packages/old/*.deb >/dev/null
say "installed $(dpkg-query -W -f '${Version}' kestro)"
# Without a client it would start anew, and refuse one that comes meanwhile.
Xvfb -displayfd 1 -noreset -nolisten tcp >/tmp/display 2>/dev/null &
until [ -s /tmp/display ]; do sleep 0.1; done
DISPLAY=:$(cat /tmp/display)
export DISPLAY
# As every desktop does, so that programs which the bus starts find the display.
dbus-update-activation-environment DISPLAY
kestro &
kestro=$!
answers %
say 'runs'
apt-get install -y --no-install-recommends /packages/*.deb >/dev/null
upgraded=$(dpkg-query -W -f '${Version}' kestro)
dpkg --compare-versions "$upgraded" gt 0.0.1
running
answers %
say "still runs after an upgrade to $upgraded"
kestro-readout --show dashboard
kill "$kestro"
wait "$kestro"
kestro-readout --show dashboard
answers RAM
say 'is started by a request'
started=$(dbus-send --session --print-reply=literal --dest=org.freedesktop.DBus / \
    org.freedesktop.DBus.GetConnectionUnixProcessID string:kestro.Readout | tr -dc '0-9 ' | awk '{ print $NF }')
kill "$started"
while kill -0 "$started" 2>/dev/null; do sleep 0.1; done
apt-get remove -y kestro kestro-readout >/dev/null
[ -e /etc/xdg/autostart/kestro-autostart.desktop ]
say 'removed; its configuration stays'
apt-get purge -y kestro kestro-readout >/dev/null
left=$(find / -xdev -iname '*kestro*' ! -path '/packages/*' ! -path '/proc/*' ! -path '/tmp/*' ! -path /root/.config/kestro)
if [ -n "$left" ]; then
    say "left behind: $left"
    exit 1
fi
say 'purged; nothing is left but the preferences'
CHECK
unshare --mount --pid --fork --kill-child sh -c "
    mount -t proc proc '$system/proc'
    mount -t tmpfs tmpfs '$system/tmp'
    mount --rbind /dev '$system/dev'
    exec chroot '$system' env HOME=/root dbus-run-session -- bash /check.sh"
