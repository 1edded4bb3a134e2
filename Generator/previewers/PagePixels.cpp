// SPDX-License-Identifier: GPL-3.0-or-later
#include "PagePixels.h"

#include <algorithm>
#include <cmath>

namespace Preview {

double pageDpi(const QSizeF& sizePoints, double dpi, double mostPixelsASide)
{
    const double side = std::max(sizePoints.width(), sizePoints.height());
    if (!(side > 0))
        return dpi;
    return std::min(dpi, mostPixelsASide * 72 / side);
}

double pagePixels(const QSizeF& sizePoints, double dpi)
{
    const double width = std::max(sizePoints.width(), 0.0) * dpi / 72;
    const double height = std::max(sizePoints.height(), 0.0) * dpi / 72;
    // poppler draws at least one pixel each way.
    return std::max(std::ceil(width), 1.0) * std::max(std::ceil(height), 1.0);
}

PagePlan planPages(const std::vector<QSizeF>& sizesPoints, double dpi, double mostPixelsASide,
    std::uint64_t memoryLeft, int processors)
{
    PagePlan plan;
    double together = 0;
    for (const QSizeF& size : sizesPoints) {
        plan.dpi.push_back(pageDpi(size, dpi, mostPixelsASide));
        together += pagePixels(size, plan.dpi.back());
    }
    // Pixels grow with the square of the resolution.
    if (together > MostPixelsTogether) {
        const double scale = std::sqrt(MostPixelsTogether / together);
        for (double& resolution : plan.dpi)
            resolution *= scale;
    }
    // Half of what is left is for drawing; the rest for the pictures kept and the page.
    const double drawingBytes = double(memoryLeft) / 2;
    for (size_t i = 0; i < sizesPoints.size(); ++i) {
        const double bytes = pagePixels(sizesPoints[i], plan.dpi[i]) * DrawingBytesPerPixel;
        if (bytes > drawingBytes)
            plan.dpi[i] *= std::sqrt(drawingBytes / bytes);
    }
    double largest = 1;
    for (size_t i = 0; i < sizesPoints.size(); ++i)
        largest = std::max(largest, pagePixels(sizesPoints[i], plan.dpi[i]) * DrawingBytesPerPixel);
    const int fitting = int(std::min(drawingBytes / largest, 64.0));
    plan.threads = std::clamp(std::min({ fitting, processors, 4, int(sizesPoints.size()) }), 1, 4);
    return plan;
}

}
