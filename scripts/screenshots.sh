#!/usr/bin/env bash
# SPDX-License-Identifier: GPL-3.0-or-later
# Takes screenshots of Tolvane's windows under Xvfb, for a person to look at: the document window,
# the preferences window at each pane, the about window, a preview of each kind of file, and the
# welcome panel with a page and with the page that comes with Tolvane.
# Pictures go to build/screenshots/.
# Usage: scripts/screenshots.sh [DOCUMENT]   (after a build)
set -euo pipefail
root=$(cd "$(dirname "$0")/.." && pwd)
build=${TOLVANE_BUILD_DIR:-$root/build}
document=${1:-$root/tests/data/generator/illustrator-normal.ai}

if [ -z "${SCREENSHOTS_INSIDE:-}" ]; then
    export SCREENSHOTS_INSIDE=1
    exec xvfb-run --auto-servernum --server-args="-screen 0 1280x1024x24" \
        dbus-run-session -- "$0" "$@"
fi

out="$build/screenshots"
app="$build/Tolvane.app/Contents/Linux/Tolvane"
shot="$build/tests/tools/tolvane-screenshot"
mkdir -p "$out"
home=$(mktemp -d)
export HOME="$home" XDG_DATA_HOME="$home/.local/share" XDG_CONFIG_HOME="$home/.config"
export QT_QPA_PLATFORM=xcb
trap 'kill $pid 2>/dev/null || true; rm -rf "$home"' EXIT

window_of() {
    for _ in $(seq 1 100); do
        id=$(xdotool search --onlyvisible --name "$1" 2>/dev/null | head -n 1 || true)
        if [ -n "$id" ]; then echo "$id"; return 0; fi
        sleep 0.2
    done
    echo "no window \"$1\"" >&2
    return 1
}

"$app" "$document" &
pid=$!
window_of "$(basename "$document")" >/dev/null
sleep 3
"$shot" "$out/document-window.png"

for pane in about settings quicklook; do
    "$app" "tolvane://settings/$pane"
    sleep 1.5
    "$shot" "$out/preferences-$pane.png"
done

# The about window runs modally: open it from the Help menu of the document window (there is no
# window manager to give the window the keyboard, so click the menu; its last item is "About").
# (Look the window up again: showing a web page can give it a new native window.)
doc=$(window_of "$(basename "$document")")
eval "$(xwininfo -id "$doc" | awk '/Absolute upper-left X/ { print "x=" $4 } /Absolute upper-left Y/ { print "y=" $4 }')"
xdotool mousemove $((x + 160)) $((y + 8)) click 1
sleep 0.5
xdotool key Up Return
sleep 1.5
"$shot" "$out/about-window.png"
xdotool key Escape

# A preview of each kind, each in its own window, opened by later launches.
data="$root/tests/data"
for file in generator/illustrator-like-5-pages.ai formats/samples/illustrator88.eps \
    formats/samples/postscript-exiftool.eps formats/samples/indesign15.indd \
    formats/samples/idml-4-pages-layers.idml formats/samples/interchange-exiftool.inx \
    formats/ase/sampler.ase; do
    name=$(basename "$file")
    "$app" "$data/$file"
    window_of "$name" >/dev/null
    sleep 3
    "$shot" "$out/preview-${name%.*}-${name##*.}.png"
done

# Files from other languages and tools: a document saved without PDF content whose notice is in
# German (as the generator's tests make it from the real one), German and Japanese swatch names
# (shown as a grid of small pages, so that the swatch panel is in view), a FreeHand 1 drawing.
work="$home/documents"
mkdir -p "$work"
python3 - "$data/generator/illustrator-without-pdf-content.ai" "$work/ohne-pdf-inhalt.ai" <<'PY'
import sys
data = open(sys.argv[1], "rb").read()
begin = data.index(b"BT", data.index(b"/Subtype/Form"))
end = data.rindex(b"ET", 0, data.index(b"endstream", begin)) + 2
notice = (b"BT\n/T1_0 1 Tf\n12 0 0 -12 -103 -61 Tm\n(Dies ist eine Adobe Illustrator-Datei, "
          b"die ohne PDF-Inhalt gespeichert wurde.) Tj\nET")
open(sys.argv[2], "wb").write(data[:begin] + notice.ljust(end - begin) + data[end:])
PY
defaults="$build/Tolvane.app/Contents/Linux/tolvane-defaults"
"$defaults" write app.tolvane.Tolvane "Preview Mode" -int 2
for file in "$work/ohne-pdf-inhalt.ai" "$data/generator/illustrator-like-names.ai" \
    "$data/kinds/freehand1.fh"; do
    name=$(basename "$file")
    # The names' swatch panel comes first, the fonts and links panels hidden.
    shown=$([ "$name" = illustrator-like-names.ai ] && echo false || echo true)
    "$defaults" write app.tolvane.Tolvane "Show Fonts In Preview" -bool "$shown"
    "$defaults" write app.tolvane.Tolvane "Show Image Links In Preview" -bool "$shown"
    "$app" "$file"
    window_of "$name" >/dev/null
    sleep 3
    "$shot" "$out/preview-${name%.*}-${name##*.}.png"
done

# A thumbnail as a file manager shows it on a dark background.
generator="$build/Tolvane.app/Contents/Library/QuickLook/Vistrel Pro.qlgenerator/Contents/Linux/vistrel-pro"
"$generator" thumbnail "$data/generator/illustrator-like-5-pages.ai" --size 256 \
    --out "$out/thumbnail-illustrator-like-5-pages.png"

# The welcome panel: the end-to-end tests point a copy of the bundle at a server of their own and
# take the pictures. Their copy must not hand its launch over to the instance above.
kill $pid
wait $pid || true
TOLVANE_SCREENSHOTS="$out" "$build/tests/Tolvane/end_to_end_tests" \
    --gtest_filter='WelcomePanel.LinksToTheWelcomeSiteStayAndOthersLeave:WelcomePanel.TheFallbackPageShowsWhenTheServerIsDown' \
    >/dev/null
echo "screenshots in $out"
