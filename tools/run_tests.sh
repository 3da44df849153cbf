#!/usr/bin/env bash
# run_tests.sh PRESET: runs every test program of build/PRESET, from the root of the repository; prints the totals as
# its last line and fails when a test failed. No process of the run outlives it, whatever ends it.
set -euo pipefail

say() { printf '%s\n' "$*" >&2; }
fail() { say "dev: $*"; exit 1; }

# Every process of a test run, however far from this one it was started, carries the run's mark in its environment.
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
    say 'dev: stopping the tests'
    exit "$1"
}

preset=$1
results=build/$preset/results
jobs=$(nproc)
rm -rf "$results"
mkdir -p "$results"
programs=()
for program in "build/$preset"/tests/*_tests; do
    [ -x "$program" ] && programs+=("$program")
done
[ ${#programs[@]} -gt 0 ] || fail "no test programs in build/$preset/tests"

# A session that is set up against the tests, since they must not depend on the one of the person who runs them.
mapfile -t hostile < <(grep '^[A-Z_]*=' tests/hostile_environment)
# Quoted for a path with spaces; not relative ones, since some programs run elsewhere.
if [ "$preset" = asan ]; then
    hostile+=("LSAN_OPTIONS=print_suppressions=0 suppressions='$PWD/tools/leak_sanitizer.supp'")
elif [ "$preset" = tsan ]; then
    # Qt and the bus library are not built with the sanitizer, so what they do to memory says nothing; the
    # end-to-end tests start programs from a process with threads.
    options='die_after_fork=0 ignore_noninstrumented_modules=1'
    hostile+=("TSAN_OPTIONS=$options suppressions='$PWD/tools/thread_sanitizer.supp'")
fi
run_one() {
    local name
    name=$(basename "$1")
    # What a script starts in the background ignores an interrupt, unless it is told otherwise.
    env --default-signal=INT,QUIT "${hostile[@]}" KESTRO_TEST_RUN=$$ \
        timeout --kill-after=10 900 "$1" --gtest_brief=1 --gtest_output="xml:$results/$name.xml" \
        >"$results/$name.log" 2>&1 || echo $? >"$results/$name.status"
}
# A test program that crashed or hung leaves behind what it started.
trap end_members EXIT
trap 'stop_tests 130' INT
trap 'stop_tests 131' QUIT
trap 'stop_tests 143' TERM HUP
running=()
for program in "${programs[@]}"; do
    # The end-to-end tests drive a real desktop and get the machine to themselves.
    [[ $program != */desktop_tests ]] || continue
    while mapfile -t running < <(jobs -rp) && [ ${#running[@]} -ge "$jobs" ]; do
        wait -n || true
    done
    run_one "$program" &
done
wait
if [ -x "build/$preset/tests/desktop_tests" ]; then
    run_one "build/$preset/tests/desktop_tests" &
    wait $!
fi

passed=0
failed=0
for program in "${programs[@]}"; do
    name=$(basename "$program")
    tests=0
    bad=0
    if [ -s "$results/$name.xml" ]; then
        tests=$(sed -n '/<testsuites /{s/.* tests="\([0-9]*\)".*/\1/p;q}' "$results/$name.xml")
        bad=$(sed -n '/<testsuites /{s/.* failures="\([0-9]*\)".*/\1/p;q}' "$results/$name.xml")
    fi
    if [ -f "$results/$name.status" ] && [ "$bad" -eq 0 ]; then
        bad=1  # it crashed, hung, or a sanitizer spoke
        tests=$((tests > 0 ? tests : 1))
    fi
    [ "$tests" -gt 0 ] || { bad=1; tests=1; }
    if [ "$bad" -gt 0 ]; then
        say "--- $name"
        tail -n 60 "$results/$name.log" >&2
    fi
    printf '%-24s %4d passed, %d failed\n' "$name" $((tests - bad)) "$bad"
    passed=$((passed + tests - bad))
    failed=$((failed + bad))
done
printf '%d passed, %d failed\n' "$passed" "$failed"
[ "$failed" -eq 0 ]
