#!/usr/bin/env bash
# SPDX-License-Identifier: GPL-3.0-or-later
# show-headless.sh BUILD FILE: under an X server without a screen, opens FILE in Tolvane, waits
# for its window, takes a screenshot of it and ends Tolvane. Run by run-main.sh inside xvfb-run.
set -euo pipefail
build=$1
file=$2
name=$(basename "$file")
out="$build/screenshots"
mkdir -p "$out"

# A home of its own, where the copy in the build folder does not first offer to move itself
# into the Applications folder, and whose desktop registration goes away afterwards.
home=$(mktemp -d)
export HOME="$home" XDG_DATA_HOME="$home/.local/share" XDG_CONFIG_HOME="$home/.config"
"$build/Tolvane.app/Contents/Linux/tolvane-defaults" write app.tolvane.Tolvane \
    moveToApplicationsFolderAlertSuppress -bool true

"$build/Tolvane.app/Contents/Linux/Tolvane" "$file" &
pid=$!
# Waited for, so that the X server does not go away while Tolvane is still quitting.
trap 'kill $pid 2>/dev/null && wait $pid 2>/dev/null; rm -rf "$home"' EXIT

for _ in $(seq 1 150); do
    # xwininfo fails now and then when a window goes away while it walks the tree: try again.
    window=$(xwininfo -root -tree 2>/dev/null |
        awk -v name="\"$name\"" 'index($0, name) { print $1; exit }') || true
    [ -n "$window" ] && break
    sleep 0.2
done
if [ -z "${window:-}" ]; then
    echo "Tolvane did not show a window for $name" >&2
    exit 1
fi
sleep 2 # let the preview finish drawing
"$build/tests/tools/tolvane-screenshot" "$out/main-window.png"
echo "Tolvane shows \"$name\" in window $window; screenshot: $out/main-window.png"
