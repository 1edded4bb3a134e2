// SPDX-License-Identifier: GPL-3.0-or-later
#include "KindContent.h"

#include "XmpPanels.h"

#include <QDir>
#include <QFileInfo>
#include <QUrl>
#include <algorithm>

namespace Preview {

QString noPagePreviewsNote() { return QStringLiteral("This document holds no page previews"); }

void takePages(
    PreviewContent& content, std::vector<PreviewPage> pages, const VTPreviewSettings& settings)
{
    const int total = std::max(content.pageCount, int(pages.size()));
    const int limit = std::max(1, settings.pageLimit());
    if (int(pages.size()) > limit)
        pages.resize(limit);
    content.pagesLeftOut = std::max(0, total - int(pages.size()));
    content.pages = std::move(pages);
    if (content.pages.empty())
        content.notes.append(noPagePreviewsNote());
}

PreviewLink linkFromUri(const QString& uri, const QString& documentPath)
{
    const QUrl url(uri);
    const bool local = url.isLocalFile() || url.scheme().isEmpty();
    QString path = url.isLocalFile() ? url.toLocalFile() : uri;
    if (local && QDir::isRelativePath(path))
        path = QFileInfo(documentPath).dir().filePath(path);
    PreviewLink link;
    link.path = local ? QDir::cleanPath(path) : uri;
    link.exists = local && QFileInfo::exists(link.path);
    return link;
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
