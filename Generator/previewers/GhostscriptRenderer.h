// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "ParseResult.h"

#include <QByteArray>
#include <QByteArrayView>

namespace Preview {

struct GhostscriptJob {
    int dpi = 144;
    bool epsCrop = true; // crop to the bounding box instead of a paper size
    int timeLimitMs = 20000;
};

// Draws the first page of a PostScript program with Ghostscript, run as a program of its own
// in its safe mode, on a transparent background: the program goes in on stdin and the PNG comes
// back on stdout, so nothing is written to disk. A program that does not draw is a damaged file; a
// missing, crashing or slow Ghostscript throws RenderingFailure.
Formats::ParseResult<QByteArray> renderPostScript(
    QByteArrayView postScript, const GhostscriptJob& job);

}
