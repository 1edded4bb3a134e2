// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "PreviewContent.h"

#include <QString>
#include <vector>

namespace Preview {

// Draws pages [0, count) of a PDF as PNG-encoded pictures, each at the wanted resolution within
// the bounds of planPages (PagePixels.h), settled from the pages' sizes before any is drawn. The
// pages are shared out among as many threads as the plan allows, each with a document of its
// own, since one poppler document draws one page at a time.
std::vector<PreviewPage> renderPdfPages(
    const QString& file, int count, double dpi, double mostPixelsASide);

}
