// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "PreviewContent.h"

#include <QString>
#include <vector>

namespace Preview {

// The resolution a page is drawn at: dpi, lowered so that neither side passes maxPixels.
double pageDpi(const QSizeF& sizePoints, double dpi, double maxPixels);

// Draws pages [0, count) of a PDF as PNG-encoded pictures. The pages are shared out among a few
// threads, each with a document of its own, since one poppler document draws one page at a time.
std::vector<PreviewPage> renderPdfPages(
    const QString& file, int count, double dpi, double maxPixels);

}
