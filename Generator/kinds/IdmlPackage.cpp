// SPDX-License-Identifier: GPL-3.0-or-later
#include "IdmlPackage.h"

#include "IdmlResources.h"

namespace Preview::Kinds {

namespace {

    bool isPartWithLinks(const QString& name)
    {
        return name.endsWith(u".xml")
            && (name.startsWith(u"Spreads/") || name.startsWith(u"Stories/")
                || name.startsWith(u"MasterSpreads/"));
    }

}

Formats::ParseResult<InterchangeParts> readIdmlPackage(QByteArrayView bytes, ZipLimits limits)
{
    auto opened = ZipArchive::open(bytes, limits);
    if (!opened)
        return opened.failure();
    ZipArchive archive = std::move(opened).value();
    // Packages name their kind in a first entry "mimetype".
    const ZipEntry* mimetypeEntry = archive.find(u"mimetype");
    const auto mimetype = mimetypeEntry ? archive.read(*mimetypeEntry)
                                        : Formats::ParseResult<QByteArray>(QByteArray());
    if (!mimetype || mimetype->trimmed() != IdmlMimeType)
        return Formats::fail(Formats::FormatError::NotThisKind,
            QStringLiteral("a ZIP archive, but not an IDML package"));

    InterchangeParts parts;
    // Reads one part; only a part beyond the limits stops the whole package.
    std::optional<Formats::ParseFailure> refused;
    const auto readPart = [&](const ZipEntry& entry) -> std::optional<QByteArray> {
        auto contents = archive.read(entry);
        if (contents)
            return std::move(contents).value();
        if (contents.error() == Formats::FormatError::UnsupportedVariant)
            refused = contents.failure();
        else
            parts.problems.append(contents.reason());
        return std::nullopt;
    };
    const auto noteProblem = [&](const ZipEntry& entry, const QString& problem) {
        if (!problem.isEmpty())
            parts.problems.append(QStringLiteral("%1: %2").arg(entry.name, problem));
    };

    for (const ZipEntry& entry : archive.entries()) {
        if (refused)
            break;
        QString problem;
        if (entry.name == u"META-INF/metadata.xml") {
            if (const auto xml = readPart(entry)) {
                auto xmp = Formats::extractXmp(*xml);
                if (xmp)
                    parts.xmp = std::move(xmp).value();
                else
                    problem = xmp.reason();
            }
        } else if (entry.name == u"Resources/Fonts.xml") {
            if (const auto xml = readPart(entry))
                parts.fonts = idmlFonts(*xml, &problem);
        } else if (entry.name == u"Resources/Graphic.xml") {
            if (const auto xml = readPart(entry))
                parts.colors = idmlColors(*xml, &problem);
        } else if (isPartWithLinks(entry.name)) {
            if (entry.name.startsWith(u"Spreads/"))
                ++parts.spreadCount;
            if (const auto xml = readPart(entry)) {
                for (const QString& uri : idmlLinkUris(*xml, &problem)) {
                    if (!parts.linkUris.contains(uri))
                        parts.linkUris.append(uri);
                }
            }
        }
        noteProblem(entry, problem);
    }
    if (refused)
        return *refused;
    return parts;
}

}
