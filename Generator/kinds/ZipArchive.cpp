// SPDX-License-Identifier: GPL-3.0-or-later
#include "ZipArchive.h"

#include "ByteReader.h"

#include <zlib.h>

namespace Preview::Kinds {

using Formats::ByteReader;
using Formats::FormatError;
using Formats::ParseFailure;

namespace {

    constexpr std::uint32_t LocalHeaderSignature = 0x04034b50;
    constexpr std::uint32_t CentralHeaderSignature = 0x02014b50;
    constexpr std::uint32_t EndSignature = 0x06054b50;
    constexpr qsizetype EndRecordSize = 22;
    constexpr qsizetype LocalHeaderSize = 30;
    constexpr qsizetype CentralHeaderSize = 46;
    constexpr qsizetype MaxCommentSize = 0xFFFF;
    constexpr std::uint16_t EncryptedFlag = 0x0001;
    constexpr std::uint16_t Utf8NamesFlag = 0x0800;

    ParseFailure damaged(const QString& why)
    {
        return Formats::fail(FormatError::DamagedFile, QStringLiteral("ZIP: %1").arg(why));
    }

    ParseFailure unsupported(const QString& why)
    {
        return Formats::fail(FormatError::UnsupportedVariant, QStringLiteral("ZIP: %1").arg(why));
    }

    // The end record is the last thing in the file but for its comment, so it is looked for
    // backwards from the end, over at most the longest comment.
    qsizetype findEndRecord(QByteArrayView bytes)
    {
        const qsizetype last = bytes.size() - EndRecordSize;
        const qsizetype first = std::max<qsizetype>(0, last - MaxCommentSize);
        for (qsizetype at = last; at >= first; --at) {
            if (bytes[at] == 'P' && bytes[at + 1] == 'K' && bytes[at + 2] == 5
                && bytes[at + 3] == 6)
                return at;
        }
        return -1;
    }

    Formats::ParseResult<QByteArray> inflateRaw(
        QByteArrayView data, qint64 expectedSize, const QString& name)
    {
        QByteArray out(qsizetype(expectedSize), Qt::Uninitialized);
        z_stream stream {};
        if (inflateInit2(&stream, -MAX_WBITS) != Z_OK)
            return damaged(QStringLiteral("cannot start inflating %1").arg(name));
        stream.next_in = reinterpret_cast<Bytef*>(const_cast<char*>(data.data()));
        stream.avail_in = uInt(data.size());
        stream.next_out = reinterpret_cast<Bytef*>(out.data());
        stream.avail_out = uInt(out.size());
        int status = inflate(&stream, Z_FINISH);
        if (status != Z_STREAM_END && stream.avail_out == 0) {
            // The declared size is reached but the stream goes on: see whether it really holds
            // more, which a bomb would, without ever keeping more than one byte of it.
            char extra = 0;
            stream.next_out = reinterpret_cast<Bytef*>(&extra);
            stream.avail_out = 1;
            status = inflate(&stream, Z_FINISH);
            if (stream.avail_out == 0) {
                inflateEnd(&stream);
                return unsupported(
                    QStringLiteral("%1 inflates to more than the %2 bytes it declares")
                        .arg(name)
                        .arg(expectedSize));
            }
        }
        const qint64 produced = qint64(stream.total_out);
        inflateEnd(&stream);
        if (status != Z_STREAM_END)
            return damaged(QStringLiteral("the data of %1 is cut short or corrupt").arg(name));
        if (produced != expectedSize)
            return damaged(QStringLiteral("%1 inflates to %2 bytes, not the %3 it declares")
                               .arg(name)
                               .arg(produced)
                               .arg(expectedSize));
        return out;
    }

}

Formats::ParseResult<ZipArchive> ZipArchive::open(QByteArrayView bytes, ZipLimits limits)
{
    const qsizetype endAt = findEndRecord(bytes);
    if (endAt < 0) {
        if (bytes.startsWith("PK\x03\x04"))
            return damaged(QStringLiteral("the archive is cut short: it has no end record"));
        return Formats::fail(FormatError::NotThisKind, QStringLiteral("not a ZIP archive"));
    }
    ByteReader end(bytes.sliced(endAt), ByteReader::Order::LittleEndian);
    end.skip(4);
    const auto disk = end.u16();
    const auto directoryDisk = end.u16();
    end.skip(2);
    const auto count = end.u16();
    const auto directorySize = end.u32();
    const auto directoryOffset = end.u32();
    if (!directoryOffset)
        return damaged(QStringLiteral("the end record is cut short"));
    if (*disk != 0 || *directoryDisk != 0)
        return unsupported(QStringLiteral("archives split over several files are not read"));
    if (*count == 0xFFFF || *directoryOffset == 0xFFFFFFFF)
        return unsupported(QStringLiteral("ZIP64 archives are not read"));
    if (qint64(*count) > limits.maxEntries)
        return unsupported(QStringLiteral("%1 entries are more than the %2 we read")
                               .arg(*count)
                               .arg(limits.maxEntries));
    if (qint64(*directoryOffset) + qint64(*directorySize) > endAt)
        return damaged(QStringLiteral("the central directory lies outside the archive"));

    ZipArchive archive(bytes, limits);
    ByteReader directory(
        bytes.sliced(*directoryOffset, *directorySize), ByteReader::Order::LittleEndian);
    for (int index = 0; index < *count; ++index) {
        if (directory.remaining() < CentralHeaderSize || directory.u32() != CentralHeaderSignature)
            return damaged(
                QStringLiteral("entry %1 of the central directory is broken").arg(index));
        ZipEntry entry;
        directory.skip(4);
        entry.flags = *directory.u16();
        entry.method = *directory.u16();
        directory.skip(4);
        entry.crc = *directory.u32();
        entry.compressedSize = *directory.u32();
        entry.uncompressedSize = *directory.u32();
        const std::uint16_t nameLength = *directory.u16();
        const std::uint16_t extraLength = *directory.u16();
        const std::uint16_t commentLength = *directory.u16();
        directory.skip(8);
        entry.localHeaderOffset = *directory.u32();
        const auto name = directory.bytes(nameLength);
        if (!name || !directory.skip(qsizetype(extraLength) + commentLength))
            return damaged(
                QStringLiteral("entry %1 of the central directory is cut short").arg(index));
        entry.name
            = (entry.flags & Utf8NamesFlag) ? QString::fromUtf8(*name) : QString::fromLatin1(*name);
        archive.m_entries.push_back(std::move(entry));
    }
    return archive;
}

const ZipEntry* ZipArchive::find(QStringView name) const
{
    for (const ZipEntry& entry : m_entries) {
        if (entry.name == name)
            return &entry;
    }
    return nullptr;
}

Formats::ParseResult<QByteArray> ZipArchive::read(QStringView name)
{
    const ZipEntry* entry = find(name);
    if (!entry)
        return damaged(QStringLiteral("the package has no %1").arg(name));
    return read(*entry);
}

Formats::ParseResult<QByteArray> ZipArchive::read(const ZipEntry& entry)
{
    if (entry.flags & EncryptedFlag)
        return unsupported(QStringLiteral("%1 is encrypted").arg(entry.name));
    if (entry.uncompressedSize > m_limits.maxEntrySize
        || m_readSoFar + entry.uncompressedSize > m_limits.maxTotalSize)
        return unsupported(QStringLiteral("%1 is larger (%2 bytes) than we read")
                               .arg(entry.name)
                               .arg(entry.uncompressedSize));
    if (entry.localHeaderOffset > m_bytes.size() - LocalHeaderSize)
        return damaged(QStringLiteral("the header of %1 lies outside the archive").arg(entry.name));
    ByteReader local(m_bytes.sliced(entry.localHeaderOffset), ByteReader::Order::LittleEndian);
    if (local.u32() != LocalHeaderSignature)
        return damaged(QStringLiteral("the header of %1 is missing").arg(entry.name));
    local.skip(22);
    const std::uint16_t nameLength = *local.u16();
    const std::uint16_t extraLength = *local.u16();
    const qint64 dataAt = entry.localHeaderOffset + LocalHeaderSize + nameLength + extraLength;
    if (dataAt + entry.compressedSize > m_bytes.size())
        return damaged(QStringLiteral("the data of %1 is cut short").arg(entry.name));
    const QByteArrayView data = m_bytes.sliced(dataAt, entry.compressedSize);

    Formats::ParseResult<QByteArray> contents = QByteArray();
    if (entry.method == 0) {
        if (entry.compressedSize != entry.uncompressedSize)
            return damaged(QStringLiteral("the sizes of stored %1 differ").arg(entry.name));
        contents = data.toByteArray();
    } else if (entry.method == 8) {
        contents = inflateRaw(data, entry.uncompressedSize, entry.name);
    } else {
        return unsupported(
            QStringLiteral("%1 is compressed with method %2").arg(entry.name).arg(entry.method));
    }
    if (!contents)
        return contents;
    const auto crc
        = crc32(0, reinterpret_cast<const Bytef*>(contents->constData()), uInt(contents->size()));
    if (crc != entry.crc)
        return damaged(QStringLiteral("%1 fails its checksum").arg(entry.name));
    m_readSoFar += contents->size();
    return contents;
}

}
