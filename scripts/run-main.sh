#!/usr/bin/env bash
# SPDX-License-Identifier: GPL-3.0-or-later
# Sets up a fresh machine, builds, and opens a sample design file in Tolvane. On a machine without
# a display it runs under Xvfb, waits for the document window, saves a screenshot of it to
# build/screenshots/main-window.png and closes Tolvane again.
set -euo pipefail
root=$(cd "$(dirname "$0")/.." && pwd)
build=${TOLVANE_BUILD_DIR:-$root/build}
sample=${1:-$root/tests/data/generator/illustrator-normal.ai}

"$root/scripts/build.sh"
app="$build/Tolvane.app/Contents/Linux/Tolvane"

if [ -n "${DISPLAY:-}" ]; then
    exec "$app" "$sample"
fi

# A desktop session has a runtime folder; a bare headless shell often has none.
if [ -z "${XDG_RUNTIME_DIR:-}" ]; then
    XDG_RUNTIME_DIR=$(mktemp -d)
    export XDG_RUNTIME_DIR
    trap 'rm -rf "$XDG_RUNTIME_DIR"' EXIT
fi
xvfb-run --auto-servernum --server-args="-screen 0 1280x1024x24" \
    dbus-run-session -- "$root/scripts/show-headless.sh" "$build" "$sample"
