// SPDX-License-Identifier: GPL-3.0-or-later
#include "InterchangePreviewer.h"

#include "DocumentFile.h"
#include "IdmlPackage.h"
#include "InxDocument.h"
#include "KindContent.h"
#include "LinkedFiles.h"

#include <QFileInfo>

namespace Preview {

namespace {

    // The word a font type is shown with: "OpenTypeCFF" is "OpenType CFF", "Type1" is "Type 1".
    QString fontKindName(const QString& fontType)
    {
        if (fontType == u"OpenTypeCFF")
            return QStringLiteral("OpenType CFF");
        if (fontType == u"OpenTypeTT")
            return QStringLiteral("OpenType TrueType");
        if (fontType == u"Type1")
            return QStringLiteral("Type 1");
        return fontType;
    }

    PreviewFont previewFont(const Formats::InterchangeFont& source)
    {
        PreviewFont font;
        font.name = source.postScriptName;
        font.family = source.family;
        font.style = source.style;
        font.kind = fontKindName(source.type);
        return font;
    }

    // The application's units to PreviewSwatch's: CMYK from percent, RGB from 0..255.
    PreviewSwatch previewSwatch(const Formats::InterchangeColor& color)
    {
        PreviewSwatch swatch;
        swatch.name = color.name;
        swatch.spot = color.model == u"Spot";
        swatch.process = color.model == u"Process";
        swatch.model = color.space;
        const double scale = color.space == u"CMYK" ? 100 : color.space == u"RGB" ? 255 : 1;
        for (double value : color.values)
            swatch.values.push_back(value / scale);
        return swatch;
    }

    PreviewContent contentOf(const Formats::InterchangeParts& parts, const QString& file,
        const QString& kindName, const VTPreviewSettings& settings)
    {
        PreviewContent content;
        content.title = QFileInfo(file).fileName();
        content.kindName = kindName;
        content.pageCount = parts.pageCount;
        if (parts.xmp) {
            addXmpContent(content, *parts.xmp, file, settings);
        } else {
            content.spreadMode = settings.inDesignSpreadMode;
            takePages(content, {}, settings);
        }
        if (parts.spreadCount > 0)
            content.facts.push_back(
                { QStringLiteral("Spreads"), QString::number(parts.spreadCount) });
        // The XML lists every font and swatch of the document; the metadata only those in use.
        if (!parts.fonts.empty()) {
            content.fonts.clear();
            for (const Formats::InterchangeFont& font : parts.fonts)
                content.fonts.push_back(previewFont(font));
        }
        if (!parts.colors.empty()) {
            PreviewSwatchGroup group;
            for (const Formats::InterchangeColor& color : parts.colors)
                group.swatches.push_back(previewSwatch(color));
            content.swatchGroups = { group };
        }
        std::vector<PreviewLink> links;
        for (const QString& uri : parts.linkUris)
            links.push_back(linkedFile(uri, file));
        addLinks(links, content.links);
        content.links = std::move(links);
        for (const QString& problem : parts.problems)
            content.notes.append(QStringLiteral("Not read: %1").arg(problem));
        return content;
    }

}

Formats::ParseResult<PreviewContent> InterchangePreviewer::preview(
    const QString& file, const VTPreviewSettings& settings)
{
    const auto opened = DocumentFile::open(file);
    if (!opened)
        return opened.failure();
    const DocumentFile& mapped = **opened;
    const bool package = mapped.bytes().startsWith("PK");
    auto parts = package ? Formats::readIdmlPackage(mapped.bytes())
                         : Formats::readInxDocument(mapped.bytes());
    if (!parts)
        return parts.failure();
    return contentOf(*parts, file,
        package ? QStringLiteral("InDesign Markup document")
                : QStringLiteral("InDesign interchange document"),
        settings);
}

}
