// SPDX-License-Identifier: GPL-3.0-or-later
#include "XmpPanels.h"

#include "LinkedFiles.h"

#include <QDir>
#include <QFileInfo>
#include <QImage>
#include <QUrl>

namespace Preview {

namespace {

    double scaled(const Formats::XmpSwatch& swatch, QStringView name, double divisor)
    {
        return swatch.component(name).value_or(0) / divisor;
    }

    PreviewSwatch swatchFromXmp(const Formats::XmpSwatch& source)
    {
        PreviewSwatch swatch;
        swatch.name = source.name;
        const QString mode = source.mode.toUpper();
        if (mode == u"CMYK") {
            swatch.model = QStringLiteral("CMYK");
            for (QStringView name : { u"cyan", u"magenta", u"yellow", u"black" })
                swatch.values.push_back(scaled(source, name, 100));
        } else if (mode == u"RGB") {
            swatch.model = QStringLiteral("RGB");
            for (QStringView name : { u"red", u"green", u"blue" })
                swatch.values.push_back(scaled(source, name, 255));
        } else if (mode == u"LAB") {
            swatch.model = QStringLiteral("LAB");
            for (QStringView name : { u"L", u"A", u"B" })
                swatch.values.push_back(scaled(source, name, 1));
        } else if (mode == u"GRAY") {
            swatch.model = QStringLiteral("Gray");
            swatch.values.push_back(scaled(source, u"gray", 100));
        } else {
            swatch.model = source.mode;
            for (const Formats::XmpColorComponent& component : source.components)
                swatch.values.push_back(component.value);
        }
        const QString type = source.type.toUpper();
        swatch.spot = type == u"SPOT";
        swatch.process = type == u"PROCESS";
        return swatch;
    }

}

std::vector<PreviewFont> fontsFromXmp(const Formats::XmpMetadata& xmp)
{
    std::vector<PreviewFont> fonts;
    for (const Formats::XmpFont& source : xmp.fonts) {
        PreviewFont font;
        font.name = source.fontName;
        font.family = source.fontFamily;
        font.style = source.fontFace;
        font.kind = source.fontType;
        font.fileName = source.fontFileName;
        fonts.push_back(font);
    }
    return fonts;
}

std::vector<PreviewLink> linksFromXmp(const Formats::XmpMetadata& xmp, const QString& documentPath)
{
    std::vector<PreviewLink> links;
    for (const Formats::XmpLink& source : xmp.links) {
        if (source.filePath.isEmpty())
            continue;
        links.push_back(linkedFile(source.filePath, documentPath));
    }
    return links;
}

std::vector<PreviewSwatchGroup> swatchGroupsFromXmp(const Formats::XmpMetadata& xmp)
{
    std::vector<PreviewSwatchGroup> groups;
    // InDesign lists its swatches as the document's colorants, Illustrator in swatch groups.
    if (xmp.swatchGroups.empty() && !xmp.colorants.empty()) {
        PreviewSwatchGroup swatches;
        for (const Formats::XmpSwatch& swatch : xmp.colorants)
            swatches.swatches.push_back(swatchFromXmp(swatch));
        groups.push_back(swatches);
    }
    for (const Formats::XmpSwatchGroup& source : xmp.swatchGroups) {
        PreviewSwatchGroup group;
        group.name = source.name;
        for (const Formats::XmpSwatch& swatch : source.swatches)
            group.swatches.push_back(swatchFromXmp(swatch));
        groups.push_back(group);
    }
    return groups;
}

std::vector<PreviewPage> thumbnailPagesFromXmp(const Formats::XmpMetadata& xmp)
{
    std::vector<PreviewPage> documentThumbnail;
    std::vector<PreviewPage> pageThumbnails;
    for (const Formats::XmpThumbnail& thumbnail : xmp.thumbnails) {
        if (QImage::fromData(thumbnail.image).isNull())
            continue;
        PreviewPage page;
        page.encoded = thumbnail.image;
        page.encodedFormat = thumbnail.format.compare(u"PNG", Qt::CaseInsensitive) == 0
            ? QStringLiteral("png")
            : QStringLiteral("jpg");
        if (thumbnail.pageNumber > 0) {
            page.label = QStringLiteral("Page %1").arg(thumbnail.pageNumber);
            page.pageNumber = thumbnail.pageNumber;
            pageThumbnails.push_back(page);
        } else {
            page.label = QStringLiteral("Embedded preview");
            documentThumbnail.push_back(page);
        }
    }
    if (!pageThumbnails.empty())
        return pageThumbnails;
    documentThumbnail.resize(std::min<size_t>(documentThumbnail.size(), 1));
    return documentThumbnail;
}

void addXmpPanels(
    PreviewContent& content, const Formats::XmpMetadata& xmp, const QString& documentPath)
{
    content.fonts = fontsFromXmp(xmp);
    content.links = linksFromXmp(xmp, documentPath);
    content.swatchGroups = swatchGroupsFromXmp(xmp);
    if (!xmp.creatorTool.isEmpty())
        content.facts.push_back({ QStringLiteral("Creator"), xmp.creatorTool });
}

}
