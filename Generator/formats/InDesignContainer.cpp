// SPDX-License-Identifier: GPL-3.0-or-later
#include "InDesignContainer.h"

#include "ByteReader.h"

#include <QBuffer>
#include <QIODevice>

namespace Formats {

namespace {

    constexpr qint64 PageSize = 4096;
    constexpr qint64 ObjectHeaderSize = 32;
    constexpr char HeaderGuid[]
        = "\x06\x06\xED\xF5\xD8\x1D\x46\xE5\xBD\x31\xEF\xE7\xFE\x74\xB7\x1D";
    constexpr char ObjectHeaderGuid[]
        = "\xDE\x39\x39\x79\x51\x88\x4B\x6C\x8E\x63\xEE\xF8\xAE\xE0\xDD\x38";
    constexpr char ObjectTrailerGuid[]
        = "\xFD\xCE\xDB\x70\xF7\x86\x4B\x4F\xA4\xD3\xC7\x28\xB3\x41\x71\x06";
    constexpr QByteArrayView PacketStart("<?xpacket begin=");

    // Offsets within a master page.
    constexpr qsizetype MagicOffset = 16; // "DOCUMENT"
    constexpr qsizetype ByteOrderOffset = 24; // 1 little-endian, 2 big-endian
    constexpr qsizetype SequenceOffset = 264; // 64-bit
    constexpr qsizetype PageCountOffset = 280; // 32-bit

    ParseFailure damaged(const QString& why)
    {
        return fail(FormatError::DamagedFile, QStringLiteral("InDesign: %1").arg(why));
    }

    QByteArray readAt(QIODevice& device, qint64 offset, qint64 length)
    {
        if (offset < 0 || length < 0 || offset > device.size() || !device.seek(offset))
            return {};
        return device.read(length);
    }

    struct MasterPage {
        bool valid = false;
        InDesignContainer::ByteOrder byteOrder = InDesignContainer::ByteOrder::LittleEndian;
        std::uint64_t sequence = 0;
        std::uint32_t pageCount = 0;
    };

    MasterPage readMasterPage(QByteArrayView page)
    {
        MasterPage master;
        if (page.size() < PageSize || !page.startsWith(inDesignHeaderGuid())
            || page.sliced(MagicOffset, 8) != "DOCUMENT")
            return master;
        const char order = page[ByteOrderOffset];
        if (order != 1 && order != 2)
            return master;
        master.byteOrder = order == 1 ? InDesignContainer::ByteOrder::LittleEndian
                                      : InDesignContainer::ByteOrder::BigEndian;
        ByteReader sequence(page.sliced(SequenceOffset), ByteReader::Order::LittleEndian);
        master.sequence = sequence.u64().value_or(0);
        ByteReader pages(page.sliced(PageCountOffset), ByteReader::Order::LittleEndian);
        master.pageCount = pages.u32().value_or(0);
        master.valid = true;
        return master;
    }

    struct ObjectHeader {
        bool present = false; // the GUID matched
        InDesignObject object;
    };

    ObjectHeader parseObjectHeader(QByteArrayView bytes, QByteArrayView guid, qint64 offset)
    {
        ObjectHeader header;
        if (bytes.size() < ObjectHeaderSize || !bytes.startsWith(guid))
            return header;
        ByteReader reader(bytes.sliced(16), ByteReader::Order::LittleEndian);
        header.present = true;
        header.object.offset = offset;
        header.object.objectId = reader.u32().value_or(0);
        header.object.classId = reader.u32().value_or(0);
        header.object.length = reader.u32().value_or(0);
        return header;
    }

    // Reads the data of an object when it is an XMP packet with its length prefix.
    QByteArray readXmpObject(
        QIODevice& device, const InDesignObject& object, InDesignContainer::ByteOrder order)
    {
        const qint64 dataOffset = object.offset + ObjectHeaderSize;
        const QByteArray start = readAt(device, dataOffset, 4 + PacketStart.size());
        if (start.size() < 4 + PacketStart.size()
            || !QByteArrayView(start).sliced(4).startsWith(PacketStart))
            return {};
        ByteReader reader(start,
            order == InDesignContainer::ByteOrder::BigEndian ? ByteReader::Order::BigEndian
                                                             : ByteReader::Order::LittleEndian);
        const std::uint32_t length = reader.u32().value_or(0);
        if (qint64(length) + 4 > qint64(object.length))
            return {};
        return readAt(device, dataOffset + 4, length);
    }

}

QByteArrayView inDesignHeaderGuid() { return QByteArrayView(HeaderGuid, 16); }

ParseResult<InDesignContainer> walkInDesignContainer(QIODevice& device)
{
    const QByteArray masters = readAt(device, 0, 2 * PageSize);
    if (!masters.startsWith(inDesignHeaderGuid()))
        return fail(FormatError::NotThisKind, QStringLiteral("InDesign: no document header"));
    if (masters.size() < 2 * PageSize)
        return damaged(QStringLiteral("the master pages are cut short"));

    const MasterPage first = readMasterPage(QByteArrayView(masters).first(PageSize));
    const MasterPage second = readMasterPage(QByteArrayView(masters).sliced(PageSize));
    if (!first.valid && !second.valid)
        return damaged(QStringLiteral("neither master page is valid"));
    InDesignContainer container;
    container.currentMasterPage
        = !first.valid || (second.valid && second.sequence > first.sequence) ? 1 : 0;
    const MasterPage& current = container.currentMasterPage == 0 ? first : second;
    container.byteOrder = current.byteOrder;
    container.sequenceNumber = current.sequence;
    container.pageCount = current.pageCount;

    const qint64 size = device.size();
    qint64 position = qint64(current.pageCount) * PageSize;
    if (current.pageCount < 2 || position > size)
        return damaged(
            QStringLiteral("the file is shorter than its %1 pages").arg(current.pageCount));

    // Each object moves the walk forward by at least 64 bytes, so the walk ends with the file.
    while (position + ObjectHeaderSize <= size) {
        const ObjectHeader header = parseObjectHeader(readAt(device, position, ObjectHeaderSize),
            QByteArrayView(ObjectHeaderGuid, 16), position);
        if (!header.present)
            break; // the stream ends; what follows is padding
        const qint64 trailerOffset = position + ObjectHeaderSize + header.object.length;
        const ObjectHeader trailer
            = parseObjectHeader(readAt(device, trailerOffset, ObjectHeaderSize),
                QByteArrayView(ObjectTrailerGuid, 16), trailerOffset);
        if (!trailer.present || trailer.object.length != header.object.length) {
            container.streamDamaged = true;
            break;
        }
        container.objects.push_back(header.object);
        if (container.xmp.isEmpty())
            container.xmp = readXmpObject(device, header.object, container.byteOrder);
        position = trailerOffset + ObjectHeaderSize;
    }
    if (container.streamDamaged && container.xmp.isEmpty())
        return damaged(QStringLiteral("the object stream breaks off at byte %1").arg(position));
    return container;
}

ParseResult<InDesignContainer> walkInDesignContainer(QByteArrayView bytes)
{
    QByteArray copy = bytes.toByteArray();
    QBuffer buffer(&copy);
    buffer.open(QIODevice::ReadOnly);
    return walkInDesignContainer(buffer);
}

}
