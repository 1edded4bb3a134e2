// SPDX-License-Identifier: GPL-3.0-or-later
#include "IdmlPackage.h"

#include "IdmlResources.h"

namespace Formats {

namespace {

    const QString MimetypeEntry = QStringLiteral("mimetype");
    const QString DesignMap = QStringLiteral("designmap.xml");
    const QString Metadata = QStringLiteral("META-INF/metadata.xml");
    const QString Fonts = QStringLiteral("Resources/Fonts.xml");
    const QString Graphic = QStringLiteral("Resources/Graphic.xml");

    bool isPartWithLinks(const QString& name)
    {
        return name.endsWith(u".xml")
            && (name.startsWith(u"Spreads/") || name.startsWith(u"Stories/")
                || name.startsWith(u"MasterSpreads/"));
    }

    bool isIdml(const ZipContents& zip)
    {
        const auto mimetype = zip.entries.find(MimetypeEntry);
        if (mimetype != zip.entries.end())
            return mimetype->second.trimmed() == IdmlMimeType;
        return zip.names.contains(DesignMap);
    }

}

bool isIdmlPackage(QByteArrayView bytes)
{
    const auto zip = readZip(bytes, [](const QString& name) { return name == MimetypeEntry; });
    return zip && isIdml(*zip);
}

ParseResult<InterchangeParts> readIdmlPackage(QByteArrayView bytes, ZipLimits limits)
{
    const auto zip = readZip(
        bytes,
        [](const QString& name) {
            return name == MimetypeEntry || name == Metadata || name == Fonts || name == Graphic
                || isPartWithLinks(name);
        },
        limits);
    if (!zip)
        return zip.failure();
    if (!isIdml(*zip))
        return fail(
            FormatError::NotThisKind, QStringLiteral("a ZIP archive, but not an IDML package"));

    InterchangeParts parts;
    parts.problems = zip->problems;
    const auto noteProblem = [&](const QString& name, const QString& problem) {
        if (!problem.isEmpty())
            parts.problems.append(QStringLiteral("%1: %2").arg(name, problem));
    };
    for (const QString& name : zip->names) {
        if (name.startsWith(u"Spreads/") && name.endsWith(u".xml"))
            ++parts.spreadCount;
        const auto entry = zip->entries.find(name);
        if (entry == zip->entries.end())
            continue;
        const QByteArray& xml = entry->second;
        QString problem;
        if (name == Metadata) {
            // The packet is the whole part; exempi's parser reads it as it stands.
            auto xmp = parseXmpPacket(xml);
            if (xmp)
                parts.xmp = std::move(xmp).value();
            else
                problem = xmp.reason();
        } else if (name == Fonts) {
            parts.fonts = idmlFonts(xml, &problem);
        } else if (name == Graphic) {
            parts.colors = idmlColors(xml, &problem);
        } else if (isPartWithLinks(name)) {
            if (name.startsWith(u"Spreads/"))
                parts.pageCount += idmlPageCount(xml);
            for (const QString& uri : idmlLinkUris(xml, &problem)) {
                if (!parts.linkUris.contains(uri))
                    parts.linkUris.append(uri);
            }
        }
        noteProblem(name, problem);
    }
    return parts;
}

}
