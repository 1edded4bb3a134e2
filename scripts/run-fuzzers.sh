#!/usr/bin/env bash
# SPDX-License-Identifier: GPL-3.0-or-later
# Builds the libFuzzer targets of the format readers with clang (address and undefined-behaviour
# sanitizers) into ./build-fuzz and runs each for a short while, seeded with the test samples.
# Every reader in Generator/formats has one; the build lists them in fuzz-targets.txt.
# Exits non-zero when a fuzzer finds a crash. FUZZ_SECONDS sets the time per target (default 10).
set -euo pipefail
root=$(cd "$(dirname "$0")/.." && pwd)
build=${TOLVANE_FUZZ_BUILD_DIR:-$root/build-fuzz}
seconds=${FUZZ_SECONDS:-10}

CC=clang CXX=clang++ cmake -S "$root" -B "$build" -G Ninja -DCMAKE_BUILD_TYPE=RelWithDebInfo \
    -DTOLVANE_BUILD_FUZZERS=ON -DTOLVANE_BUILD_TESTS=OFF -DTOLVANE_BUILD_BENCHMARKS=OFF >/dev/null
IFS=';' read -r -a targets <"$build/fuzz-targets.txt"
cmake --build "$build" -j "${TOLVANE_JOBS:-2}" --target "${targets[@]/#/fuzz_}"

seeds="$root/tests/data/formats"
export LSAN_OPTIONS="suppressions=$root/scripts/fuzz-leak-suppressions.txt${LSAN_OPTIONS:+:$LSAN_OPTIONS}"
for target in "${targets[@]}"; do
    corpus="$build/corpus/$target"
    mkdir -p "$corpus"
    echo "fuzzing $target for ${seconds}s"
    (cd "$build" && "./Generator/formats/fuzz_$target" -max_total_time="$seconds" -max_len=32768 \
        -print_final_stats=0 "$corpus" "$seeds/samples" "$seeds/ase" "$root/tests/data/kinds" \
        2>&1 | tail -n 3)
done
echo "fuzzers: no crash"
