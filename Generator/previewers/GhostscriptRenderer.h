// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "ParseResult.h"

#include <QByteArray>
#include <QElapsedTimer>
#include <QProcess>
#include <QString>

namespace Preview {

struct GhostscriptJob {
    int dpi = 144;
    bool epsCrop = true; // crop to the bounding box instead of a paper size
    int timeLimitMs = 20000;
    // Shows the page after the program, for programs that never show theirs (it costs a second
    // page, which is left out).
    bool showPageAtEnd = false;
};

// Draws the first page of a PostScript file with Ghostscript, run as a program of its own in its
// safe mode, on a transparent background. Ghostscript reads the file itself, at its own speed (of
// a DOS binary EPS only the PostScript section, which it finds by the header), and the PNG comes
// back on stdout, so nothing is written to disk. A program that does not draw is a damaged file;
// a missing, crashing or slow Ghostscript throws RenderingFailure.
Formats::ParseResult<QByteArray> renderPostScript(const QString& file, const GhostscriptJob& job);

// The same, started at once and waited for later, so that the document is read meanwhile.
// Dropping a run stops Ghostscript.
class GhostscriptRun {
public:
    GhostscriptRun(const QString& file, const GhostscriptJob& job);
    ~GhostscriptRun();
    GhostscriptRun(const GhostscriptRun&) = delete;
    GhostscriptRun& operator=(const GhostscriptRun&) = delete;

    Formats::ParseResult<QByteArray> result();

private:
    GhostscriptJob m_job;
    QProcess m_process;
    QElapsedTimer m_clock;
};

}
