#!/usr/bin/env bash
# package.sh: builds the Debian packages into build/package and checks them. The changelog of the packages is the
# project's own; its newest date is that of every file in them, so that the same commit gives the same packages.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."
stage=$PWD/build/package/kestro

changelog() {  # the changelog of Debian from CHANGELOG.md
    local line version='' date='' entry=''
    local maintainer='The Kestro developers <developers@kestro.example>'
    finish_entry() {
        [ -z "$entry" ] || fold -s -w 74 <<<"$entry" | sed '1 s/^/  * /; 2,$ s/^/    /; s/ *$//'
        entry=''
    }
    finish_version() {
        finish_entry
        [ -z "$version" ] || printf '\n -- %s  %s\n\n' "$maintainer" "$(LC_ALL=C date -u -R -d "$date")"
    }
    while IFS= read -r line; do
        if [[ $line =~ ^##\ ([0-9.]+)\ \(([0-9-]+)\)$ ]]; then
            finish_version
            version=${BASH_REMATCH[1]} date=${BASH_REMATCH[2]}
            printf 'kestro (%s) unstable; urgency=medium\n\n' "$version"
        elif [ -n "$version" ] && [[ $line == '- '* ]]; then
            finish_entry
            entry=${line#- }
        elif [ -n "$entry" ] && [[ $line == '  '* ]]; then
            entry+=" ${line#  }"
        fi
    done <CHANGELOG.md
    finish_version
}

gnome_shell=$(gnome-shell --version 2>/dev/null | grep -oE '[0-9]+' | head -n 1 || true)
if [ -z "$gnome_shell" ]; then
    # The version that belongs to this release of Debian.
    gnome_shell=$(. /etc/os-release && [ "${VERSION_ID:-12}" -ge 13 ] 2>/dev/null && echo 48 || echo 43)
fi
plasma=${KESTRO_PLASMA_VERSION:-$(tools/plasma_version.sh)}

rm -rf "$stage"
mkdir -p "$stage"
# Those of another version, or of a build that fails, must not be taken for the new ones.
rm -f build/package/*.deb build/package/*.changes build/package/*.buildinfo
cp -r packaging/debian "$stage/debian"
# debhelper takes no sources from outside of the package's folder.
mkdir "$stage/source"
tar --exclude=./build --exclude=./.git -cf - . | tar -xf - -C "$stage/source"
changelog >"$stage/debian/changelog"
if command -v ccache >/dev/null; then
    export KESTRO_LAUNCHER=-DCMAKE_CXX_COMPILER_LAUNCHER=ccache
    # The package's own build has another home.
    CCACHE_DIR=$(ccache --get-config cache_dir)
    export CCACHE_DIR
fi
(
    umask 022
    cd "$stage"
    unset MAKEFLAGS CXXFLAGS LDFLAGS
    export KESTRO_GNOME_SHELL=$gnome_shell KESTRO_PLASMA_VERSION=$plasma
    DEB_BUILD_OPTIONS="noautodbgsym parallel=${1:-$(nproc)}" dpkg-buildpackage --build=binary --no-sign -d
)
cd "$stage/.."
lintian --fail-on error,warning --pedantic --suppress-tags initial-upload-closes-no-bugs ./*.changes
desktop-file-validate "$stage/debian/kestro/usr/share/applications/kestro.desktop" \
    "$stage/debian/kestro/etc/xdg/autostart/kestro-autostart.desktop"
appstreamcli validate --no-net "$stage"/debian/kestro/usr/share/metainfo/*.xml
# No program has the mark of a protected control flow where the C library's start files lack it, as on Debian 12.
unchecked=(--nocfprotection)
# Arm's own protection is demanded of every processor's programs, from Debian 13 on.
if [[ $(dpkg --print-architecture) != arm64 && $(hardening-check --help) == *--nobranchprotection* ]]; then
    unchecked+=(--nobranchprotection)
fi
hardening-check "${unchecked[@]}" "$stage"/debian/{kestro/usr/bin/kestro,kestro-readout/usr/bin/kestro-readout}
printf '%s\n' "$PWD"/*.deb
