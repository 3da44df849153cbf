#!/usr/bin/env bash
# hosts.sh NAME: shows Kestro in a desktop that is too heavy for `./dev test`, installed into a throw-away Debian below
# build/hosts, and leaves pictures in build/pictures. Needs root, and the packages that `./dev package` has made.
# Names: gnome-x11, gnome-wayland, plasma-x11, plasma-wayland.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."
name=$1
release=$(. /etc/os-release && printf '%s' "$VERSION_CODENAME")

case $name in
    gnome-*) host=gnome packages='gnome-shell librsvg2-common xwayland qt6-wayland' ours='kestro-gnome-shell-extension' ;;
    plasma-*) host=plasma ours='plasma-widget-kestro'
        packages='plasma-workspace plasma-desktop kwin-x11 kwin-wayland xwayland qt6-wayland kactivitymanagerd' ;;
    *) printf 'hosts.sh: there is no host "%s"\n' "$name" >&2; exit 2 ;;
esac
system=$PWD/build/hosts/$host
pictures=$PWD/build/pictures

if [ "$(cat "$system/.complete" 2>/dev/null)" != "$packages" ]; then
    rm -rf "$system"
    mkdir -p "$system"
    debootstrap --variant=minbase "$release" "$system"
    # No service starts in there.
    printf '#!/bin/sh\nexit 101\n' >"$system/usr/sbin/policy-rc.d"
    chmod +x "$system/usr/sbin/policy-rc.d"
    # shellcheck disable=SC2086  # one word each
    DEBIAN_FRONTEND=noninteractive chroot "$system" apt-get install -y --no-install-recommends $packages \
        dbus dbus-x11 xvfb xauth x11-utils xdotool imagemagick openbox fonts-inter fonts-noto-color-emoji \
        adwaita-icon-theme procps libcap2-bin
    # A container without this capability cannot start the program.
    [ "$host" != plasma ] || chroot "$system" setcap -r /usr/bin/kwin_wayland
    printf '%s\n' "$packages" >"$system/.complete"
fi
rm -rf "$system/packages" "$system/pictures"
mkdir -p "$system/packages" "$pictures"
cp build/package/*.deb "$system/packages"
# shellcheck disable=SC2086
chroot "$system" sh -c "apt-get install -y --no-install-recommends --allow-downgrades --reinstall \
    /packages/kestro_*.deb /packages/kestro-readout_*.deb /packages/${ours}_*.deb"
cp tools/host_sessions/"$host".sh "$system/session.sh"
cp tools/host_sessions/{require_host,virtual_display}.sh "$system"

# The mounts and every process end with the session.
unshare --mount --pid --fork --kill-child sh -c "
    mount -t proc proc '$system/proc'
    mount -t tmpfs tmpfs '$system/tmp'
    mount --rbind /dev '$system/dev'
    exec chroot '$system' dbus-run-session -- bash /session.sh '$name'"
mv "$system"/pictures/*.png "$pictures"
printf '%s\n' "$pictures/$name"*.png
