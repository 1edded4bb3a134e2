// SPDX-License-Identifier: GPL-3.0-or-later
#include "PdfPageRenderer.h"

#include "MemoryBudget.h"
#include "PagePixels.h"
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

    void renderInto(std::vector<PreviewPage>& pages, const std::vector<double>& resolutions,
        Poppler::Document& document, int first, int step)
    {
        for (int index = first; index < int(pages.size()); index += step) {
            const std::unique_ptr<Poppler::Page> page(document.page(index));
            PreviewPage& out = pages[size_t(index)];
            if (!page)
                continue;
            const double resolution = resolutions[size_t(index)];
            const QImage image = page->renderToImage(resolution, resolution);
            if (!image.isNull()) {
                // A light level: pages are written once and shown at once.
                out.encoded = encodePng(image, 1);
                out.encodedFormat = QStringLiteral("png");
            }
        }
    }

    std::unique_ptr<Poppler::Document> load(const QString& file)
    {
        std::unique_ptr<Poppler::Document> document(Poppler::Document::load(file));
        if (document)
            prepare(*document);
        return document;
    }

}

std::vector<PreviewPage> renderPdfPages(
    const QString& file, int count, double dpi, double mostPixelsASide)
{
    std::vector<PreviewPage> pages(size_t(std::max(count, 0)));
    const std::unique_ptr<Poppler::Document> first = load(file);
    if (!first)
        return pages;
    std::vector<QSizeF> sizes;
    for (int index = 0; index < count; ++index) {
        const std::unique_ptr<Poppler::Page> page(first->page(index));
        sizes.push_back(page ? page->pageSizeF() : QSizeF());
        pages[size_t(index)].sizePoints = sizes.back();
    }
    const PagePlan plan
        = planPages(sizes, dpi, mostPixelsASide, addressSpaceLeft(), QThread::idealThreadCount());
    if (plan.threads == 1) {
        renderInto(pages, plan.dpi, *first, 0, 1);
        return pages;
    }
    std::vector<std::thread> workers;
    for (int worker = 0; worker < plan.threads; ++worker) {
        workers.emplace_back([&, worker] {
            try {
                const std::unique_ptr<Poppler::Document> own = worker == 0 ? nullptr : load(file);
                Poppler::Document* document = worker == 0 ? first.get() : own.get();
                if (document)
                    renderInto(pages, plan.dpi, *document, worker, plan.threads);
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
