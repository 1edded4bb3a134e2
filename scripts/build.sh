#!/usr/bin/env bash
# SPDX-License-Identifier: GPL-3.0-or-later
# Installs what the machine lacks and builds everything into ./build (or $TOLVANE_BUILD_DIR).
set -euo pipefail
root=$(cd "$(dirname "$0")/.." && pwd)
build=${TOLVANE_BUILD_DIR:-$root/build}

"$root/scripts/install-deps.sh"
cmake -S "$root" -B "$build" -G Ninja -DCMAKE_BUILD_TYPE=RelWithDebInfo >/dev/null
# Two jobs: the machines this runs on have two cores.
cmake --build "$build" -j "${TOLVANE_JOBS:-2}"
