// SPDX-License-Identifier: GPL-3.0-or-later
#include "SwatchExchangePreviewer.h"

#include "DocumentFile.h"
#include "SwatchExchange.h"
#include "SwatchSheet.h"

#include <QFileInfo>

namespace Preview {

namespace {

    Formats::ParseResult<Formats::AseDocument> readSwatches(const QString& file)
    {
        const auto opened = DocumentFile::open(file);
        if (!opened)
            return opened.failure();
        const DocumentFile& mapped = **opened;
        return Formats::parseSwatchExchange(mapped.bytes());
    }

    int swatchCount(const std::vector<PreviewSwatchGroup>& groups)
    {
        int count = 0;
        for (const PreviewSwatchGroup& group : groups)
            count += int(group.swatches.size());
        return count;
    }

}

Formats::ParseResult<PreviewContent> SwatchExchangePreviewer::preview(
    const QString& file, const VTPreviewSettings&)
{
    const auto document = readSwatches(file);
    if (!document)
        return document.failure();

    PreviewContent content;
    content.title = QFileInfo(file).fileName();
    content.kindName = QStringLiteral("Swatch Exchange file");
    content.swatchGroups = swatchGroups(*document);
    content.facts.push_back(
        { QStringLiteral("Swatches"), QString::number(swatchCount(content.swatchGroups)) });
    content.facts.push_back({ QStringLiteral("Version"),
        QStringLiteral("%1.%2").arg(document->majorVersion).arg(document->minorVersion) });

    const SwatchSheet sheet = drawSwatchSheet(*document, content.title);
    PreviewPage page;
    page.encoded = sheet.svg;
    page.encodedFormat = QStringLiteral("svg");
    page.label = QStringLiteral("Swatches");
    page.sizePoints = sheet.size * 0.75; // CSS pixels of 1/96 inch to points of 1/72
    content.pages.push_back(std::move(page));
    content.pageCount = 1;
    return content;
}

Formats::ParseResult<QImage> SwatchExchangePreviewer::thumbnail(
    const QString& file, int maxSize, const VTPreviewSettings&)
{
    const auto document = readSwatches(file);
    if (!document)
        return document.failure();
    QImage mosaic = drawSwatchMosaic(*document, maxSize);
    if (mosaic.isNull())
        return Formats::fail(Formats::FormatError::UnsupportedVariant,
            QStringLiteral("the file holds no swatch to draw a thumbnail of"));
    return mosaic;
}

}
