// SPDX-License-Identifier: GPL-3.0-or-later
#include "FuzzEntryPoints.h"

#include "DscComments.h"
#include "FileKindSniffer.h"
#include "IdmlPackage.h"
#include "InxDocument.h"
#include "SwatchExchange.h"
#include "XmpMetadata.h"
#include "ZipArchive.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

namespace FuzzEntryPoints {

namespace {

    QByteArrayView view(const std::uint8_t* data, std::size_t size)
    {
        return QByteArrayView(reinterpret_cast<const char*>(data), qsizetype(size));
    }

    // A failure always carries a one-line reason.
    template <typename T> bool failureIsExplained(const Formats::ParseResult<T>& result)
    {
        return result.ok() || (!result.reason().isEmpty() && !result.reason().contains(u'\n'));
    }

    bool swatchesHold(const std::vector<Formats::AseSwatch>& swatches)
    {
        for (const Formats::AseSwatch& swatch : swatches) {
            if (swatch.modelCode.size() != 4)
                return false;
            if (swatch.model != Formats::AseColorModel::Unknown
                && int(swatch.values.size()) != Formats::aseComponentCount(swatch.model))
                return false;
        }
        return true;
    }

    bool groupsHold(const std::vector<Formats::AseGroup>& groups, int depth)
    {
        if (depth > 64)
            return false;
        for (const Formats::AseGroup& group : groups) {
            if (!swatchesHold(group.swatches) || !groupsHold(group.groups, depth + 1))
                return false;
        }
        return true;
    }

    bool metadataHolds(const Formats::XmpMetadata& metadata, std::size_t size)
    {
        qsizetype imageBytes = 0;
        for (const Formats::XmpThumbnail& thumbnail : metadata.thumbnails)
            imageBytes += thumbnail.image.size();
        // Base64 only ever shrinks what it encodes.
        return std::size_t(imageBytes) <= size;
    }

    bool swatchExchange(const std::uint8_t* data, std::size_t size)
    {
        const auto result = Formats::parseSwatchExchange(view(data, size));
        if (!result)
            return failureIsExplained(result);
        // Every block takes at least six bytes.
        return swatchesHold(result->swatches) && groupsHold(result->groups, 1) && size >= 12;
    }

    bool xmpPacket(const std::uint8_t* data, std::size_t size)
    {
        const auto result = Formats::parseXmpPacket(view(data, size));
        return result ? metadataHolds(*result, size) : failureIsExplained(result);
    }

    // exempi's file handlers, which choose themselves by the bytes of a file without a telling
    // name: PDF, PostScript, EPS, InDesign, or packet scanning.
    bool xmpFile(const std::uint8_t* data, std::size_t size)
    {
        static QTemporaryDir folder;
        const QString path = folder.filePath(QStringLiteral("document"));
        QFile file(path);
        if (!file.open(QIODevice::WriteOnly | QIODevice::Truncate)
            || file.write(reinterpret_cast<const char*>(data), qint64(size)) != qint64(size))
            return true; // nothing to test without the file
        file.close();
        const auto result = Formats::readXmpOfFile(path);
        return result ? metadataHolds(*result, size) : failureIsExplained(result);
    }

    bool dscComments(const std::uint8_t* data, std::size_t size)
    {
        const auto result = Formats::parseDscComments(view(data, size));
        // The sniffer reads the same kind of bytes and must not trip on them either.
        Formats::sniffFileKind(view(data, size), QStringLiteral("fuzz.eps"));
        if (!result)
            return failureIsExplained(result);
        const Formats::DscDocument& document = *result;
        return document.postScriptOffset >= 0
            && std::size_t(document.postScriptOffset + document.postScriptLength) <= size
            && (!document.preview || std::size_t(document.preview->data.size()) <= size)
            && document.nestedDocuments >= 0;
    }

    bool zip(const std::uint8_t* data, std::size_t size)
    {
        Formats::ZipLimits limits;
        limits.maxTotalSize = 16 * 1024 * 1024;
        const auto result = Formats::readZip(
            view(data, size), [](const QString&) { return true; }, limits);
        if (!result)
            return failureIsExplained(result);
        qint64 total = 0;
        for (const auto& [name, contents] : result->entries)
            total += contents.size();
        return total <= limits.maxTotalSize && result->names.size() <= limits.maxEntries;
    }

    bool interchangePartsHold(const Formats::ParseResult<Formats::InterchangeParts>& result)
    {
        if (!result)
            return failureIsExplained(result);
        for (const QString& problem : result->problems) {
            if (problem.isEmpty())
                return false;
        }
        return result->spreadCount >= 0;
    }

    bool idml(const std::uint8_t* data, std::size_t size)
    {
        Formats::ZipLimits limits;
        limits.maxTotalSize = 16 * 1024 * 1024;
        Formats::isIdmlPackage(view(data, size));
        return interchangePartsHold(Formats::readIdmlPackage(view(data, size), limits));
    }

    bool inx(const std::uint8_t* data, std::size_t size)
    {
        return interchangePartsHold(Formats::readInxDocument(view(data, size)));
    }

}

std::vector<Target> targets()
{
    std::vector<Target> all { { "swatch_exchange", swatchExchange },
        { "dsc_comments", dscComments }, { "xmp", xmpPacket }, { "xmp_file", xmpFile },
        { "zip", zip }, { "idml", idml }, { "inx", inx } };
    for (Target& target : optionalTargets())
        all.push_back(std::move(target));
    return all;
}

EntryPoint entryPoint(const std::string& name)
{
    for (const Target& target : targets()) {
        if (target.name == name)
            return target.run;
    }
    return nullptr;
}

}
