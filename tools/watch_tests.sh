#!/usr/bin/env bash
# watch_tests.sh LABEL LOG SECONDS PROGRAM [ARGUMENT...]: runs a GoogleTest program for at most that many seconds,
# saves its output to LOG and prints one line per event:
#
#   LABEL passed                  a test passed
#   LABEL skipped                 a test was skipped
#   LABEL failed FIRST LAST       a test failed; its output is in these lines of LOG
#   LABEL broken FIRST LAST WHY   the program crashed, hung or exited in a way that its tests do not explain
set -uo pipefail
# The output can be any bytes. PROGRAM sets its own locale.
LC_ALL=C

label=$1
log=$2
limit=$3
shift 3

longestTail=40
longestLead=5     # before a sanitizer's report
longestReport=150
# Marks the end of the program's output. Processes that it leaves behind can keep the pipe open for longer.
mark="watch_tests $$: program exited with status"
sanitizer='ERROR: [A-Za-z]+Sanitizer|WARNING: ThreadSanitizer|: runtime error: '
start=$SECONDS

lines=0        # in the log
test=''        # the running test
first=0        # the line where the latest test started
finished=0     # number of tests
failures=0
expected=''    # number of tests according to the program's summary
reportFrom=0   # the first line to show for a sanitizer's report
reportTest=''
status=255     # until the program's own is known

event() { printf '%s %s\n' "$label" "$*"; }

# The line that is COUNT before the current one, but not before the start of the latest test.
line_before() {  # COUNT
    local line=$((lines - $1))
    printf '%d' $((line > first ? line : first > 0 ? first : 1))
}

# Output without a line end can precede any of GoogleTest's lines, and a test can print such lines of another program.
read_between_tests() {  # LINE
    if [[ $1 =~ '[ RUN      ] '([^ ]+)$ ]]; then
        test=${BASH_REMATCH[1]}
        first=$lines
    elif [[ $1 =~ '[==========] '([0-9]+)' test'.*' ran.' ]]; then
        expected=${BASH_REMATCH[1]}
    fi
}

read_in_test() {  # LINE
    local outcome
    case $1 in
        *'[       OK ] '"$test"[\ ,]*) outcome=passed ;;
        *'[  SKIPPED ] '"$test"[\ ,]*) outcome=skipped ;;
        *'[  FAILED  ] '"$test"[\ ,]*)
            outcome="failed $first $lines"
            failures=$((failures + 1))
            ;;
        *) return ;;
    esac
    finished=$((finished + 1))
    test=''
    event "$outcome"
}

read_output() {
    local line
    while IFS= read -r line; do
        if [[ $line == *"$mark "* ]]; then
            status=${line##*"$mark "}
            printf '%s' "${line%"$mark "*}" >&"$logFile"
            return
        fi
        printf '%s\n' "$line" >&"$logFile"
        lines=$((lines + 1))
        if [ "$reportFrom" -eq 0 ] && [[ $line =~ $sanitizer ]]; then
            reportFrom=$(line_before "$longestLead")
            reportTest=$test
        fi
        if [ -n "$test" ]; then
            read_in_test "$line"
        else
            read_between_tests "$line"
        fi
    done
}

# Prints why the program itself failed; nothing if its tests explain how it exited.
what_broke() {
    local usual=$((failures > 0))
    if [ $((SECONDS - start)) -ge "$limit" ] && [[ $status == 124 || $status == 137 ]]; then
        printf 'timed out after %s s' "$limit"
    elif [ "$reportFrom" -gt 0 ]; then
        printf 'sanitizer report, exited with status %s' "$status"
    elif [ "$status" -gt 128 ] && kill -l $((status - 128)) >/dev/null 2>&1; then
        printf 'killed by SIG%s' "$(kill -l $((status - 128)))"
    elif [ -z "$expected" ]; then
        printf 'exited with status %s before its tests finished' "$status"
    elif [ "$expected" -ne "$finished" ]; then
        printf 'ran %s tests, but %s finished' "$expected" "$finished"
    elif [ "$status" -ne "$usual" ]; then
        printf 'exited with status %s after its tests' "$status"
    fi
}

report_broken() {  # WHY
    local from to=$lines running=$test
    from=$(line_before "$longestTail")
    if [ "$reportFrom" -gt 0 ]; then
        from=$reportFrom
        to=$((from + longestReport < lines ? from + longestReport : lines))
        running=$reportTest
    fi
    event "broken $from $to $1${running:+, in $running}"
}

exec {logFile}>"$log"
# What the limit itself prints, such as of core dumps, is not the program's.
read_output < <({ timeout --kill-after=10 "$limit" sh -c 'exec "$@" 2>&1' sh "$@"; printf '%s %s\n' "$mark" $?; } 2>/dev/null)
why=$(what_broke)
[ -z "$why" ] || report_broken "$why"
