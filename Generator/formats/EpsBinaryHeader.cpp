// SPDX-License-Identifier: GPL-3.0-or-later
#include "EpsBinaryHeader.h"

#include "ByteReader.h"

namespace Formats {

namespace {
    constexpr QByteArrayView Signature("\xC5\xD0\xD3\xC6");
    constexpr qsizetype HeaderSize = 30;

    bool fits(const EpsBinaryHeader::Section& section, qint64 size)
    {
        return !section.present()
            || (section.offset >= HeaderSize && qint64(section.offset) + section.length <= size);
    }
}

bool hasEpsBinarySignature(QByteArrayView bytes) { return bytes.startsWith(Signature); }

ParseResult<EpsBinaryHeader> readEpsBinaryHeader(QByteArrayView bytes, qint64 fileSize)
{
    const qint64 size = fileSize >= 0 ? fileSize : bytes.size();
    if (!hasEpsBinarySignature(bytes))
        return fail(FormatError::NotThisKind, QStringLiteral("EPS: no binary header"));
    ByteReader reader(bytes, ByteReader::Order::LittleEndian);
    reader.skip(Signature.size());
    EpsBinaryHeader header;
    for (EpsBinaryHeader::Section* section :
        { &header.postScript, &header.metafile, &header.tiff }) {
        const auto offset = reader.u32();
        const auto length = reader.u32();
        if (!offset || !length)
            return fail(
                FormatError::DamagedFile, QStringLiteral("EPS: the binary header is cut short"));
        *section = { *offset, *length };
    }
    const auto checksum = reader.u16();
    if (!checksum)
        return fail(
            FormatError::DamagedFile, QStringLiteral("EPS: the binary header is cut short"));
    header.checksum = *checksum;
    if (!header.postScript.present())
        return fail(
            FormatError::DamagedFile, QStringLiteral("EPS: the binary header names no PostScript"));
    if (!fits(header.postScript, size))
        return fail(FormatError::DamagedFile,
            QStringLiteral("EPS: the PostScript section lies outside the file"));
    if (!fits(header.metafile, size) || !fits(header.tiff, size))
        return fail(FormatError::DamagedFile,
            QStringLiteral("EPS: a preview section lies outside the file"));
    return header;
}

}
