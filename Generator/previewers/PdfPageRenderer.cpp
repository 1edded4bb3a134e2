// SPDX-License-Identifier: GPL-3.0-or-later
#include "PdfPageRenderer.h"

#include "PngEncoding.h"

#include <QThread>
#include <algorithm>
#include <memory>
#include <poppler-qt6.h>
#include <thread>

namespace Preview {

namespace {

    void prepare(Poppler::Document& document)
    {
        document.setRenderHint(Poppler::Document::Antialiasing);
        document.setRenderHint(Poppler::Document::TextAntialiasing);
        // Artboards and pages are paper: drawn on poppler's paper colour, white, so that dark
        // artwork shows on any backdrop.
    }

    void renderInto(std::vector<PreviewPage>& pages, Poppler::Document& document, int first,
        int step, double dpi, double maxPixels)
    {
        for (int index = first; index < int(pages.size()); index += step) {
            const std::unique_ptr<Poppler::Page> page(document.page(index));
            PreviewPage& out = pages[size_t(index)];
            if (!page)
                continue;
            out.sizePoints = page->pageSizeF();
            const double resolution = pageDpi(out.sizePoints, dpi, maxPixels);
            const QImage image = page->renderToImage(resolution, resolution);
            if (!image.isNull()) {
                // A light level: pages are written once and shown at once.
                out.encoded = encodePng(image, 1);
                out.encodedFormat = QStringLiteral("png");
            }
        }
    }

}

double pageDpi(const QSizeF& sizePoints, double dpi, double maxPixels)
{
    const double side = std::max(sizePoints.width(), sizePoints.height());
    if (side <= 0)
        return dpi;
    return std::clamp(maxPixels * 72 / side, 1.0, dpi);
}

std::vector<PreviewPage> renderPdfPages(
    const QString& file, int count, double dpi, double maxPixels)
{
    std::vector<PreviewPage> pages(size_t(std::max(count, 0)));
    const int threads = std::clamp(std::min(QThread::idealThreadCount(), 4), 1, std::max(count, 1));
    if (threads == 1) {
        std::unique_ptr<Poppler::Document> own(Poppler::Document::load(file));
        if (own) {
            prepare(*own);
            renderInto(pages, *own, 0, 1, dpi, maxPixels);
        }
        return pages;
    }
    std::vector<std::thread> workers;
    for (int worker = 0; worker < threads; ++worker) {
        workers.emplace_back([&, worker] {
            try {
                std::unique_ptr<Poppler::Document> own(Poppler::Document::load(file));
                if (!own)
                    return;
                prepare(*own);
                renderInto(pages, *own, worker, threads, dpi, maxPixels);
            } catch (const std::bad_alloc&) {
                // Memory ran out under the process's limit: the pages of this worker stay empty.
            }
        });
    }
    for (std::thread& worker : workers)
        worker.join();
    return pages;
}

}
