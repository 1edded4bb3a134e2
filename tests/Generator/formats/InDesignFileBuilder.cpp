// SPDX-License-Identifier: GPL-3.0-or-later
#include "InDesignFileBuilder.h"

#include <QtEndian>

namespace {

const QByteArray HeaderGuid("\x06\x06\xED\xF5\xD8\x1D\x46\xE5\xBD\x31\xEF\xE7\xFE\x74\xB7\x1D", 16);
const QByteArray ObjectGuid("\xDE\x39\x39\x79\x51\x88\x4B\x6C\x8E\x63\xEE\xF8\xAE\xE0\xDD\x38", 16);
const QByteArray TrailerGuid(
    "\xFD\xCE\xDB\x70\xF7\x86\x4B\x4F\xA4\xD3\xC7\x28\xB3\x41\x71\x06", 16);

template <typename T> QByteArray littleEndian(T value)
{
    QByteArray bytes(sizeof(T), '\0');
    qToLittleEndian(value, bytes.data());
    return bytes;
}

QByteArray objectHeader(const QByteArray& guid, std::uint32_t length)
{
    return guid + littleEndian<std::uint32_t>(0x80000001) + littleEndian<std::uint32_t>(0xC0000000)
        + littleEndian<std::uint32_t>(length) + littleEndian<std::uint32_t>(0xFFFFFFFF);
}

}

InDesignFileBuilder& InDesignFileBuilder::object(const QByteArray& data)
{
    m_stream += objectHeader(ObjectGuid, std::uint32_t(data.size())) + data
        + objectHeader(TrailerGuid, std::uint32_t(data.size()));
    return *this;
}

InDesignFileBuilder& InDesignFileBuilder::xmpObject(const QByteArray& packet)
{
    return object(littleEndian(std::uint32_t(packet.size())) + packet);
}

QByteArray InDesignFileBuilder::bytes() const
{
    QByteArray file;
    for (const std::uint64_t sequence : { 2, 1 }) {
        QByteArray page(4096, '\0');
        page.replace(0, 16, HeaderGuid);
        page.replace(16, 8, "DOCUMENT");
        page[24] = 1; // little-endian
        page.replace(264, 8, littleEndian(sequence));
        page.replace(280, 4, littleEndian<std::uint32_t>(3));
        file += page;
    }
    return file + QByteArray(4096, '\0') + m_stream;
}
