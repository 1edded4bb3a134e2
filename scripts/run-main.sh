#!/usr/bin/env bash
# SPDX-License-Identifier: GPL-3.0-or-later
# Sets up a fresh machine, builds, and shows the preview settings of the current user as the
# preview generator sees them.
set -euo pipefail
root=$(cd "$(dirname "$0")/.." && pwd)
build=${TOLVANE_BUILD_DIR:-$root/build}

"$root/scripts/build.sh"
"$build/Tolvane.app/Contents/Linux/tolvane-defaults" read-merged
