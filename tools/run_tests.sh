#!/usr/bin/env bash
# run_tests.sh PRESET [SCOPE [SECONDS]]: runs the test programs of build/PRESET, from the root of the repository. SCOPE
# is "all" or "units", which excludes the end-to-end tests. A program that takes longer than SECONDS is killed.
#
# Prints each failure at once to stderr, a line per finished program, and the totals as the last line. Fails if a
# test failed. No process of the run outlives it, however it ends.
set -euo pipefail

say() { printf '%s\n' "$*" >&2; }
fail() { say "dev: $*"; exit 1; }

preset=$1
scope=${2:-all}
limit=${3:-900}
results=build/$preset/results
watch=$(dirname "${BASH_SOURCE[0]}")/watch_tests.sh
# For the files of the tests. Sockets need a short path.
scratch=$(mktemp -d /tmp/kestro-tests-XXXXXX)
trap 'rm -rf "$scratch"' EXIT

# --- processes of the run ---------------------------------------------------------------------------------

# Every process of a test run, direct child or not, has this variable in its environment.
members_of_run() { grep -sl --null-data -Fx "KESTRO_TEST_RUN=$$" /proc/[0-9]*/environ | cut -d/ -f3 || true; }

end_members() {  # gently at first
    local signal pid tries members
    for signal in TERM KILL; do
        members=$(members_of_run)
        for pid in $members; do
            kill "-$signal" "$pid" 2>/dev/null || true
        done
        # Longer than a private session takes to end everything in it.
        for ((tries = 100; tries > 0; --tries)); do
            [ -n "$members" ] || return 0
            sleep 0.1
            members=$(members_of_run)
        done
    done
}

stop_tests() {  # STATUS
    trap '' INT TERM HUP QUIT
    clear_counter
    say 'dev: stopping the tests'
    exit "$1"
}

# --- output -----------------------------------------------------------------------------------------------

running=()
declare -A passed failed skipped began left
total_passed=0
total_failed=0
total_skipped=0

show_counter() {
    [ -t 2 ] || return 0
    # Without wrapping, since only one line can be cleared.
    printf '\e[?7l\r\e[K%d tests, %d failed, %s, %d s\e[?7h' $((total_passed + total_failed + total_skipped)) "$total_failed" \
        "${running[*]}" "$SECONDS" >&2
}
clear_counter() { [ ! -t 2 ] || printf '\r\e[K' >&2; }

figures() {  # PASSED FAILED SKIPPED
    printf '%d passed, %d failed' "$1" "$2"
    [ "$3" -eq 0 ] || printf ', %d skipped' "$3"
}

count() {  # OUTCOME PROGRAM
    local -n of_program=$1 of_run=total_$1
    of_program[$2]=$((of_program[$2] + 1))
    of_run=$((of_run + 1))
}

show_output() {  # RUN FIRST LAST
    [ "$2" -gt "$3" ] || sed -n "$2,$3p" "$results/$1.log" >&2
}

program_ended() {  # PROGRAM
    local name=$1 tenths
    if [ $((passed[$name] + failed[$name] + skipped[$name])) -eq 0 ]; then
        count failed "$name"
        say "--- $name: ran no test"
    fi
    tenths=$((($(now) - began[$name]) / 100))
    printf '%-24s %s, %d.%d s\n' "$name" "$(figures "${passed[$name]}" "${failed[$name]}" "${skipped[$name]}")" \
        $((tenths / 10)) $((tenths % 10))
}

# --- test programs ----------------------------------------------------------------------------------------

now() { printf '%s' $((${EPOCHREALTIME/[.,]/} / 1000)); }  # milliseconds

environment=("KESTRO_TEST_RUN=$$" "TMPDIR=$scratch")
# The caller's settings of the test framework would change what runs.
cleared=()
for variable in $(compgen -e GTEST_ || true); do
    cleared+=(-u "$variable")
done
set_environment() {
    # Hostile settings, because the tests must not depend on the caller's session.
    mapfile -t -O "${#environment[@]}" environment < <(grep '^[A-Z_]*=' tests/hostile_environment)
    # Quoted, because the path can have spaces, and absolute, because some programs run in other folders.
    if [ "$preset" = asan ]; then
        environment+=("LSAN_OPTIONS=print_suppressions=0 suppressions='$PWD/tools/leak_sanitizer.supp'")
    elif [ "$preset" = tsan ]; then
        # Qt and the bus library are not instrumented, so reports about them mean nothing. The end-to-end tests start
        # programs from a process with threads.
        local options='die_after_fork=0 ignore_noninstrumented_modules=1'
        environment+=("TSAN_OPTIONS=$options suppressions='$PWD/tools/thread_sanitizer.supp'")
    fi
}

start_run() {  # PROGRAM/SHARD/SHARDS
    local name shard shards
    IFS=/ read -r name shard shards <<<"$1"
    if [ -z "${left[$name]:-}" ]; then
        left[$name]=$shards
        began[$name]=$(now)
        passed[$name]=0 failed[$name]=0 skipped[$name]=0
        running+=("$name")
    fi
    # Background processes of a script ignore interrupts by default.
    {
        "$watch" "$name $shard" "$results/$name.$shard.log" "$limit" \
            env --default-signal "${cleared[@]}" "${environment[@]}" GTEST_SHARD_INDEX="$shard" \
            GTEST_TOTAL_SHARDS="$shards" "build/$preset/tests/$name" --gtest_color=no --gtest_brief=0 ||
            printf '%s broken 1 0 its watcher exited with status %d\n' "$name $shard" $?
        printf '%s ended\n' "$name $shard"
    } >"$results/events" 9>&- &
}

run_ended() {  # PROGRAM
    local name=$1 kept=() other
    left[$name]=$((left[$name] - 1))
    [ "${left[$name]}" -eq 0 ] || return 0
    for other in "${running[@]}"; do
        [ "$other" = "$name" ] || kept+=("$other")
    done
    running=("${kept[@]}")
    clear_counter
    program_ended "$name"
}

handle() {  # PROGRAM SHARD EVENT [FIRST LAST [WHY]]
    local name=$1 run=$1.$2 happened=$3
    shift 3
    case $happened in
        passed | skipped) count "$happened" "$name" ;;
        failed | broken)
            count failed "$name"
            clear_counter
            say "--- $name${3:+: ${*:3}}"
            show_output "$run" "$1" "$2"
            ;;
        ended) run_ended "$name" ;;
    esac
}

run_all() {  # AT_ONCE PROGRAM/SHARD/SHARDS...
    local at_once=$1 open=0 begun='' line words
    shift
    while [ $# -gt 0 ] || [ "$open" -gt 0 ]; do
        while [ $# -gt 0 ] && [ "$open" -lt "$at_once" ]; do
            start_run "$1"
            open=$((open + 1))
            shift
        done
        show_counter
        # A timeout can return the first part of a line.
        if IFS= read -r -t 1 line <&"$events"; then
            read -ra words <<<"$begun$line"
            begun=''
            [ "${words[2]}" != ended ] || open=$((open - 1))
            handle "${words[@]}"
        else
            begun+=$line
        fi
    done
}

shards_of() {  # PROGRAM SHARDS
    local shard
    for ((shard = 0; shard < $2; ++shard)); do
        printf '%s/%d/%d\n' "$1" "$shard" "$2"
    done
}

mkdir -p "build/$preset"
exec 9>"build/$preset/tests.lock"
flock -n 9 || fail "another run tests build/$preset"
rm -rf "$results"
mkdir -p "$results"
units=()
for program in "build/$preset"/tests/*_tests; do
    [ -x "$program" ] || continue
    [[ $program == */desktop_tests || $program == */drill_tests ]] || units+=("${program##*/}/0/1")
done
end_to_end=()
if [ "$scope" = all ] && [ -x "build/$preset/tests/desktop_tests" ]; then
    mapfile -t end_to_end < <(shards_of desktop_tests 3)
fi
drills=()
if [ "$scope" = all ] && [ -x "build/$preset/tests/drill_tests" ]; then
    # One for each drill.
    mapfile -t drills < <(shards_of drill_tests 5)
fi
[ $((${#units[@]} + ${#end_to_end[@]} + ${#drills[@]})) -gt 0 ] || fail "no test programs in build/$preset/tests"

set_environment
mkfifo "$results/events"
exec {events}<>"$results/events"
# A test program that crashed or hung leaves its child processes behind.
trap 'end_members; wait; rm -rf "$scratch"' EXIT
trap 'stop_tests 130' INT
trap 'stop_tests 131' QUIT
trap 'stop_tests 143' TERM HUP
run_all "$(nproc)" "${units[@]}"
# These mostly wait for real desktops, so the number of processors does not matter.
run_all 3 "${end_to_end[@]}" "${drills[@]}"

clear_counter
printf '%s\n' "$(figures "$total_passed" "$total_failed" "$total_skipped")"
[ "$total_failed" -eq 0 ]
