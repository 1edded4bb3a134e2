#!/usr/bin/env bash
# SPDX-License-Identifier: GPL-3.0-or-later
# Sets up a fresh machine, builds, gives the format parsers a short fuzzing run, and runs every
# test. Exits non-zero when any test fails or a fuzzer finds a crash.
set -euo pipefail
root=$(cd "$(dirname "$0")/.." && pwd)
build=${TOLVANE_BUILD_DIR:-$root/build}

"$root/scripts/build.sh"
"$root/scripts/run-fuzzers.sh"
ctest --test-dir "$build" -j "${TOLVANE_JOBS:-2}" --output-on-failure --timeout 600 "$@"
