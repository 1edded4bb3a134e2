#!/usr/bin/env bash
# SPDX-License-Identifier: GPL-3.0-or-later
# Runs the application benchmark under an X server and a session bus of its own.
set -euo pipefail
root=$(cd "$(dirname "$0")/.." && pwd)
build=${TOLVANE_BUILD_DIR:-$root/build}
document=${1:-$root/tests/data/formats/samples/illustrator88.eps}
echo "$(date -u '+%Y-%m-%d %H:%M UTC'), load average before: $(cut -d' ' -f1-3 /proc/loadavg)"
xvfb-run --auto-servernum --server-args="-screen 0 1280x1024x24" dbus-run-session -- \
    "$build/bench/bench_application" "$build/Tolvane.app/Contents/Linux/Tolvane" \
    "$build/bench/bench_minimal_window" "$document"
echo "load average after: $(cut -d' ' -f1-3 /proc/loadavg)"
