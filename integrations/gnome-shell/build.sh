#!/usr/bin/env bash
# build.sh VERSION DIR: puts the extension for that version of GNOME Shell into DIR. The shell loads modules from
# version 45 on, and scripts before: the shared sources are modules without imports, which become scripts by
# dropping `export`.
set -euo pipefail
version=$1
out=$2
cd "$(dirname "${BASH_SOURCE[0]}")"

rm -rf "$out"
mkdir -p "$out"
if [ "$version" -ge 45 ]; then
    versions='"45", "46", "47", "48"'
    cp extension-45.js "$out/extension.js"
    cp readoutButton.js dbusMenu.js "$out"
else
    versions='"43", "44"'
    cp extension-43.js "$out/extension.js"
    for source in readoutButton.js dbusMenu.js; do
        sed 's/^export //' "$source" >"$out/$source"
    done
fi
sed "s/@VERSIONS@/$versions/" metadata.json.in >"$out/metadata.json"
cp stylesheet.css "$out"
