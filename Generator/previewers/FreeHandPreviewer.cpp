// SPDX-License-Identifier: GPL-3.0-or-later
#include "FreeHandPreviewer.h"

#include "DocumentFile.h"
#include "FreeHandDocument.h"
#include "KindContent.h"
#include "SvgPages.h"

#include <QFileInfo>

namespace Preview {

namespace {
    // The longer side of a drawn page, in pixels: sharp on a large screen, still quick to draw.
    constexpr int PagePixels = 2000;
}

Formats::ParseResult<PreviewContent> FreeHandPreviewer::preview(
    const QString& file, const VTPreviewSettings& settings)
{
    const auto opened = DocumentFile::open(file);
    if (!opened)
        return opened.failure();
    const DocumentFile& mapped = **opened;
    const auto svgPages = Formats::freeHandSvgPages(mapped.bytes());
    if (!svgPages)
        return svgPages.failure();

    PreviewContent content;
    content.title = QFileInfo(file).fileName();
    content.kindName = QStringLiteral("FreeHand document");
    content.pageCount = int(svgPages->size());
    QStringList families;
    std::vector<PreviewPage> pages;
    for (const QByteArray& svg : *svgPages) {
        for (const QString& family : svgFontFamilies(svg)) {
            if (!families.contains(family))
                families.append(family);
        }
        if (int(pages.size()) >= settings.pageLimit())
            continue;
        PreviewPage page;
        page.label = QStringLiteral("Page %1").arg(pages.size() + 1);
        page.sizePoints = svgSizePoints(svg);
        page.image = renderSvg(svg, PagePixels);
        if (page.image.isNull())
            content.notes.append(QStringLiteral("Page %1 cannot be drawn").arg(pages.size() + 1));
        pages.push_back(std::move(page));
    }
    for (const QString& family : families) {
        PreviewFont font;
        font.family = family;
        content.fonts.push_back(font);
    }
    takePages(content, std::move(pages), settings);
    return content;
}

}
