#!/usr/bin/env bash
# build.sh VERSION DIR: puts the widget for that major version of Plasma, 5 or 6, into DIR. Everything but the root is
# the same in both.
set -euo pipefail
version=$1
out=$2
cd "$(dirname "${BASH_SOURCE[0]}")"

case $version in
    5) api='"X-Plasma-API": "declarativeappletscript",\n    "X-Plasma-MainScript": "ui/main.qml"' ;;
    6) api='"X-Plasma-API-Minimum-Version": "6.0"' ;;
    *) printf 'build.sh: there is no widget for Plasma "%s"\n' "$version" >&2; exit 2 ;;
esac
rm -rf "$out"
mkdir -p "$out/contents/ui"
cp "main-$version.qml" "$out/contents/ui/main.qml"
cp Readout.qml CompactReadout.qml FullReadout.qml "$out/contents/ui"
sed "s|@API@|$api|" metadata.json.in >"$out/metadata.json"
