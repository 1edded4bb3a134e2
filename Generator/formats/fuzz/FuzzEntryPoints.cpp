// SPDX-License-Identifier: GPL-3.0-or-later
#include "FuzzEntryPoints.h"

#include "DscComments.h"
#include "FileKindSniffer.h"
#include "InDesignContainer.h"
#include "SwatchExchange.h"
#include "XmpMetadata.h"

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
        return metadata.packetOffset >= 0 && std::size_t(metadata.packetOffset) <= size
            && std::size_t(imageBytes) <= size;
    }

}

bool swatchExchange(const std::uint8_t* data, std::size_t size)
{
    const auto result = Formats::parseSwatchExchange(view(data, size));
    if (!result)
        return failureIsExplained(result);
    // Every block takes at least six bytes.
    return swatchesHold(result->swatches) && groupsHold(result->groups, 1) && size >= 12;
}

bool inDesignContainer(const std::uint8_t* data, std::size_t size)
{
    const auto result = Formats::walkInDesignContainer(view(data, size));
    if (!result)
        return failureIsExplained(result);
    qint64 previousEnd = qint64(result->pageCount) * 4096;
    for (const Formats::InDesignObject& object : result->objects) {
        const qint64 end = object.offset + 64 + object.length;
        if (object.offset < previousEnd || end > qint64(size))
            return false;
        previousEnd = end;
    }
    if (std::size_t(result->xmp.size()) > size)
        return false;
    if (!result->xmp.isEmpty()) {
        const auto xmp = Formats::parseXmpPacket(result->xmp);
        return failureIsExplained(xmp) && (!xmp || metadataHolds(*xmp, size));
    }
    return true;
}

bool xmp(const std::uint8_t* data, std::size_t size)
{
    const auto result = Formats::extractXmp(view(data, size));
    if (!result)
        return failureIsExplained(result);
    return metadataHolds(*result, size);
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

}
