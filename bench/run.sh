#!/usr/bin/env bash
# run.sh BUILD_DIR IDLE_SECONDS: runs every benchmark, the whole-process ones in a private session.
set -euo pipefail
build=$1
idle=$2

"$build/bench/ports_bench"
"$build/bench/sensors_bench"
"$build/bench/processors_bench"
"$build/bench/ui_bench"
"$(dirname "$0")/../tools/private_session.sh" "$build/bench/process_bench" "$build/kestro" "$idle"
