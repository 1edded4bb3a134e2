// SPDX-License-Identifier: GPL-3.0-or-later
#include "KindContent.h"

#include "XmpPanels.h"

#include <QDir>
#include <QFileInfo>
#include <QUrl>
#include <algorithm>

namespace Preview {

QString noPagePreviewsNote() { return QStringLiteral("This document holds no page previews"); }

namespace {

    // "Pages 3 and 4 have no preview in the document.", "Page 2 has ...", "Pages 2, 5 and 7 ..."
    QString withoutPictureNote(int pageCount, const std::vector<PreviewPage>& pages)
    {
        QStringList missing;
        for (int number = 1; number <= pageCount && missing.size() < 50; ++number) {
            const bool shown = std::any_of(pages.begin(), pages.end(),
                [number](const PreviewPage& page) { return page.pageNumber == number; });
            if (!shown)
                missing.append(QString::number(number));
        }
        if (missing.isEmpty())
            return {};
        if (missing.size() == 1)
            return QStringLiteral("Page %1 has no preview in the document.").arg(missing.first());
        const QString last = missing.takeLast();
        return QStringLiteral("Pages %1 and %2 have no preview in the document.")
            .arg(missing.join(QStringLiteral(", ")), last);
    }

}

void takePages(
    PreviewContent& content, std::vector<PreviewPage> pages, const VTPreviewSettings& settings)
{
    const bool numbered = !pages.empty()
        && std::all_of(pages.begin(), pages.end(),
            [](const PreviewPage& page) { return page.pageNumber > 0; });
    // Pages the document holds no picture of are named, not counted as left out by the limit.
    if (numbered && content.pageCount > int(pages.size()))
        content.notes.append(withoutPictureNote(content.pageCount, pages));
    const int total = numbered ? int(pages.size()) : std::max(content.pageCount, int(pages.size()));
    const int limit = std::max(1, settings.pageLimit());
    if (int(pages.size()) > limit)
        pages.resize(limit);
    content.pagesLeftOut = std::max(0, total - int(pages.size()));
    content.pages = std::move(pages);
    if (content.pages.empty())
        content.notes.append(noPagePreviewsNote());
}

void addLinks(std::vector<PreviewLink>& links, const std::vector<PreviewLink>& more)
{
    for (const PreviewLink& link : more) {
        const bool listed = std::any_of(links.begin(), links.end(),
            [&](const PreviewLink& known) { return known.path == link.path; });
        if (!listed)
            links.push_back(link);
    }
}

void addXmpContent(PreviewContent& content, const Formats::XmpMetadata& xmp,
    const QString& documentPath, const VTPreviewSettings& settings)
{
    addXmpPanels(content, xmp, documentPath);
    if (xmp.pageCount && *xmp.pageCount > 0)
        content.pageCount = *xmp.pageCount;
    content.spreadMode = settings.inDesignSpreadMode;
    takePages(content, thumbnailPagesFromXmp(xmp), settings);
}

}
