// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QSizeF>
#include <cstdint>
#include <vector>

namespace Preview {

// How large the pages of a document are drawn, settled before any is drawn: each page at the
// wanted resolution, lowered (with no floor) so that neither side passes the most pixels a side,
// all pages together lowered alike to at most MostPixelsTogether, and each lowered further when
// even one page would not fit the memory left. As many pages are drawn at once as that memory
// holds, at most as many as there are processors and four.
struct PagePlan {
    std::vector<double> dpi; // per page
    int threads = 1;
};

inline constexpr double MostPixelsTogether = 128e6;
// What drawing a page costs in memory for each of its pixels: poppler's bitmap, its copy as an
// image and the encoder's rows.
inline constexpr double DrawingBytesPerPixel = 12;

PagePlan planPages(const std::vector<QSizeF>& sizesPoints, double dpi, double mostPixelsASide,
    std::uint64_t memoryLeft, int processors);

// The resolution at which neither side of a page passes the most pixels a side (no floor).
double pageDpi(const QSizeF& sizePoints, double dpi, double mostPixelsASide);
// The pixels of a page drawn at a resolution.
double pagePixels(const QSizeF& sizePoints, double dpi);

}
