// SPDX-License-Identifier: GPL-3.0-or-later
#include "InterchangePreviewer.h"

#include "DocumentFile.h"
#include "IdmlPackage.h"
#include "InxDocument.h"
#include "KindContent.h"
#include "KindPreviewers.h"

#include <QFileInfo>

namespace Preview::Kinds {

namespace {

    PreviewContent contentOf(const InterchangeParts& parts, const QString& file,
        const QString& kindName, const PreviewSettings& settings)
    {
        PreviewContent content;
        content.title = QFileInfo(file).fileName();
        content.kindName = kindName;
        if (parts.xmp) {
            addXmpContent(content, *parts.xmp, file, settings);
        } else {
            content.spreadMode = SpreadMode(settings.inDesignSpreadMode);
            takePages(content, {}, settings);
        }
        if (parts.spreadCount > 0)
            content.facts.push_back(
                { QStringLiteral("Spreads"), QString::number(parts.spreadCount) });
        // The XML lists every font and swatch of the document; the metadata only those in use.
        if (!parts.fonts.empty())
            content.fonts = parts.fonts;
        if (!parts.colors.empty())
            content.swatchGroups = { PreviewSwatchGroup { QString(), parts.colors } };
        std::vector<PreviewLink> links;
        for (const QString& uri : parts.linkUris)
            links.push_back(linkFromUri(uri, file));
        addLinks(links, content.links);
        content.links = std::move(links);
        for (const QString& problem : parts.problems)
            content.notes.append(QStringLiteral("Not read: %1").arg(problem));
        return content;
    }

}

Formats::ParseResult<PreviewContent> InterchangePreviewer::preview(
    const QString& file, const PreviewSettings& settings)
{
    const auto opened = DocumentFile::open(file);
    if (!opened)
        return opened.failure();
    const DocumentFile& mapped = **opened;
    const bool package = mapped.bytes().startsWith("PK");
    auto parts = package ? readIdmlPackage(mapped.bytes()) : readInxDocument(mapped.bytes());
    if (!parts)
        return parts.failure();
    return contentOf(*parts, file,
        package ? QStringLiteral("InDesign Markup document")
                : QStringLiteral("InDesign interchange document"),
        settings);
}

std::unique_ptr<Previewer> createInterchangePreviewer()
{
    return std::make_unique<InterchangePreviewer>();
}

}
