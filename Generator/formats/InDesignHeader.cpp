// SPDX-License-Identifier: GPL-3.0-or-later
#include "InDesignHeader.h"

#include "ByteReader.h"

namespace Formats {

namespace {

    constexpr qsizetype PageSize = 4096;
    constexpr char HeaderGuid[]
        = "\x06\x06\xED\xF5\xD8\x1D\x46\xE5\xBD\x31\xEF\xE7\xFE\x74\xB7\x1D";

    // Offsets within a master page.
    constexpr qsizetype MagicOffset = 16; // "DOCUMENT"
    constexpr qsizetype ByteOrderOffset = 24; // 1 little-endian, 2 big-endian
    constexpr qsizetype SequenceOffset = 264; // 64-bit, little-endian whatever the byte order
    constexpr qsizetype PageCountOffset = 280; // 32-bit, likewise

    ParseFailure damaged(const QString& why)
    {
        return fail(FormatError::DamagedFile, QStringLiteral("InDesign: %1").arg(why));
    }

    std::optional<InDesignHeader> readMasterPage(QByteArrayView page)
    {
        if (!page.startsWith(inDesignHeaderGuid()) || page.sliced(MagicOffset, 8) != "DOCUMENT")
            return std::nullopt;
        const char order = page[ByteOrderOffset];
        if (order != 1 && order != 2)
            return std::nullopt;
        InDesignHeader master;
        master.byteOrder = order == 1 ? InDesignHeader::ByteOrder::LittleEndian
                                      : InDesignHeader::ByteOrder::BigEndian;
        master.sequenceNumber
            = ByteReader(page.sliced(SequenceOffset), ByteReader::Order::LittleEndian)
                  .u64()
                  .value_or(0);
        master.pageCount = ByteReader(page.sliced(PageCountOffset), ByteReader::Order::LittleEndian)
                               .u32()
                               .value_or(0);
        return master;
    }

}

QByteArrayView inDesignHeaderGuid() { return QByteArrayView(HeaderGuid, 16); }

ParseResult<InDesignHeader> checkInDesignHeader(QByteArrayView bytes)
{
    if (!bytes.startsWith(inDesignHeaderGuid()))
        return fail(FormatError::NotThisKind, QStringLiteral("InDesign: no document header"));
    if (bytes.size() < 2 * PageSize)
        return damaged(QStringLiteral("the master pages are cut short"));
    const auto first = readMasterPage(bytes.first(PageSize));
    const auto second = readMasterPage(bytes.sliced(PageSize, PageSize));
    if (!first && !second)
        return damaged(QStringLiteral("neither master page is valid"));
    const bool secondIsCurrent
        = !first || (second && second->sequenceNumber > first->sequenceNumber);
    InDesignHeader header = secondIsCurrent ? *second : *first;
    header.currentMasterPage = secondIsCurrent ? 1 : 0;
    if (header.pageCount < 2 || qint64(header.pageCount) * PageSize > bytes.size())
        return damaged(
            QStringLiteral("the file is shorter than its %1 pages").arg(header.pageCount));
    return header;
}

}
