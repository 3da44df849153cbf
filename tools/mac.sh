#!/usr/bin/env bash
# The developer command on macOS, run by ./dev in the root of the repository; `./dev help` lists what it does there.
# Installs its dependencies with Homebrew. For macOS's own bash, which is version 3.2.
set -euo pipefail

needs_build='cmake ninja qtbase qtsvg fmt nlohmann-json'
needs_test="$needs_build googletest"
app=build/release/Kestro.app

say() { printf '%s\n' "$*" >&2; }
fail() { say "dev: $*"; exit 1; }
refuse() { say "dev: $*"; exit 2; }

need() {  # FORMULAS
    local formula missing=''
    xcode-select -p >/dev/null 2>&1 || fail 'the compiler is missing: run xcode-select --install'
    command -v brew >/dev/null || fail "Homebrew is missing (https://brew.sh); it installs: $1"
    for formula in $1; do
        brew list --formula --versions "$formula" >/dev/null 2>&1 || missing="$missing $formula"
    done
    [ -n "$missing" ] || return 0
    say "dev: installing$missing"
    # One word each.
    # shellcheck disable=SC2086
    brew install --quiet $missing >&2 || fail "Homebrew could not install:$missing"
}

build() {  # PRESET [TARGET]
    if [ ! -f "build/$1/build.ninja" ] || [ CMakePresets.json -nt "build/$1/build.ninja" ]; then
        cmake --preset "$1" -DCMAKE_PREFIX_PATH="$(brew --prefix)" >&2
    fi
    ninja -C "build/$1" "${2:-all}" >&2
}

cmd_build() {
    need "$needs_build"
    build release kestro_bundle
}

cmd_run() {
    cmd_build
    exec "$app/Contents/MacOS/Kestro"
}

cmd_test() {  # [PRESET [units]]
    case ${1:-dev} in
        dev | asan | tsan | core-only) ;;
        *) refuse "there is no preset \"$1\" with tests; there are dev, asan, tsan and core-only" ;;
    esac
    [ "${2:-units}" = units ] || refuse "test takes no \"$2\" after the preset, only units"
    need "$needs_test"
    build "${1:-dev}"
    exec ctest --test-dir "build/${1:-dev}" --output-on-failure
}

inside() {  # FILE FOLDER: whether the file exists below a folder, which is given without symbolic links
    local place
    [ -e "$1" ] || return 1
    place=$(cd "$(dirname "$1")" && pwd -P)
    case $place/ in "$2"/*) ;; *) return 1 ;; esac
}

outside_libraries() {  # BUNDLE: the libraries that its programs load from elsewhere than the bundle and the system
    local bundle file own library
    bundle=$(cd "$1" && pwd -P)
    find "$bundle/Contents" -type f \( -perm -100 -o -name '*.dylib' \) | while read -r file; do
        # A library lists its own name too.
        own=$(otool -D "$file" 2>/dev/null | sed -n 2p) || true
        { otool -L "$file" 2>/dev/null || true; } | sed -n 's/^[[:space:]]*\(.*\) (compatibility version .*/\1/p' | while read -r library; do
            case $library in
                "$own" | /usr/lib/* | /System/*) continue ;;
                @rpath/*) inside "$bundle/Contents/Frameworks/${library#@rpath/}" "$bundle" && continue ;;
                @executable_path/*) inside "$bundle/Contents/MacOS/${library#@executable_path/}" "$bundle" && continue ;;
                @loader_path/*) inside "$(dirname "$file")/${library#@loader_path/}" "$bundle" && continue ;;
            esac
            printf '%s, for %s\n' "$library" "$(basename "$file")"
        done
    done | sort
}

# The bundle with the toolkit's libraries in it. They make its signature invalid, so it is signed again.
cmd_package() {
    local folder=build/package contents archive outside plugins plugin
    cmd_build
    archive=$PWD/build/kestro-macos-$(uname -m).zip
    rm -rf "$folder" "$archive"
    mkdir -p "$folder"
    ditto "$app" "$folder/Kestro.app"
    # Left to itself, macdeployqt would also copy plug-ins that Kestro does not use, with their libraries.
    contents=$folder/Kestro.app/Contents
    plugins=$("$(brew --prefix)/bin/qtpaths" --query QT_INSTALL_PLUGINS)
    for plugin in platforms/libqcocoa.dylib styles/libqmacstyle.dylib; do
        mkdir -p "$contents/PlugIns/$(dirname "$plugin")"
        install -m 755 "$plugins/$plugin" "$contents/PlugIns/$plugin"
    done
    printf '[Paths]\nPlugins = PlugIns\n' >"$contents/Resources/qt.conf"
    "$(brew --prefix)/bin/macdeployqt" "$folder/Kestro.app" -no-plugins -libpath="$(brew --prefix)/lib" >&2
    # The tool reports success even if it could not copy a library.
    outside=$(outside_libraries "$folder/Kestro.app")
    [ -z "$outside" ] || fail "other Macs could not run $folder/Kestro.app; these are not in it:
$outside"
    codesign --force --deep --options runtime --sign - --entitlements packaging/macos/Kestro.entitlements \
        "$folder/Kestro.app"
    codesign --verify --deep --strict "$folder/Kestro.app"
    ditto -c -k --keepParent "$folder/Kestro.app" "$archive"
    say "dev: $archive"
}

cmd_help() {
    cat <<'TEXT'
./dev run             build the release and start Kestro
./dev test [PRESET]   build and run the tests that need no Linux (presets: dev, the default; asan, tsan, core-only)
./dev build           build the release: build/release/Kestro.app
./dev package         make an archive of Kestro.app with the libraries that it needs
The other commands run on Linux.
TEXT
}

command=${1:-help}
[ $# -eq 0 ] || shift
case $command in
    run | build | package | help) most=0 ;;
    test) most=2 ;;
    bench | lint | fuzz | shots | mac-check | hosts | install-check) refuse "$command runs on Linux only" ;;
    *)
        cmd_help >&2
        exit 2
        ;;
esac
[ $# -le $most ] || refuse "$command takes fewer words"
"cmd_$command" "$@"
