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

InDesignFileBuilder& InDesignFileBuilder::bigEndian(bool big)
{
    m_bigEndian = big;
    return *this;
}

InDesignFileBuilder& InDesignFileBuilder::sequenceNumbers(std::uint64_t first, std::uint64_t second)
{
    m_sequences[0] = first;
    m_sequences[1] = second;
    return *this;
}

InDesignFileBuilder& InDesignFileBuilder::pageCounts(std::uint32_t first, std::uint32_t second)
{
    m_pageCounts[0] = first;
    m_pageCounts[1] = second;
    return *this;
}

InDesignFileBuilder& InDesignFileBuilder::breakMasterPage(int index)
{
    m_broken = index;
    return *this;
}

InDesignFileBuilder& InDesignFileBuilder::databaseBytes(const QByteArray& bytes)
{
    m_database = bytes;
    return *this;
}

InDesignFileBuilder& InDesignFileBuilder::object(const QByteArray& data)
{
    m_stream += objectHeader(ObjectGuid, std::uint32_t(data.size())) + data
        + objectHeader(TrailerGuid, std::uint32_t(data.size()));
    return *this;
}

InDesignFileBuilder& InDesignFileBuilder::xmpObject(const QByteArray& packet)
{
    QByteArray length(4, '\0');
    if (m_bigEndian)
        qToBigEndian(std::uint32_t(packet.size()), length.data());
    else
        qToLittleEndian(std::uint32_t(packet.size()), length.data());
    return object(length + packet);
}

InDesignFileBuilder& InDesignFileBuilder::raw(const QByteArray& bytes)
{
    m_stream += bytes;
    return *this;
}

QByteArray InDesignFileBuilder::masterPage(std::uint64_t sequence, std::uint32_t pages) const
{
    QByteArray page(4096, '\0');
    page.replace(0, 16, HeaderGuid);
    page.replace(16, 8, "DOCUMENT");
    page[24] = m_bigEndian ? 2 : 1;
    page.replace(264, 8, littleEndian(sequence));
    page.replace(280, 4, littleEndian(pages));
    return page;
}

QByteArray InDesignFileBuilder::bytes() const
{
    QByteArray file;
    for (int i = 0; i < 2; ++i) {
        QByteArray page = masterPage(m_sequences[i], m_pageCounts[i]);
        if (m_broken == i)
            page.replace(16, 8, "BROKEN!!");
        file += page;
    }
    // The stream starts after the page count of whichever master page is current.
    const int current = m_broken == 0 || (m_broken != 1 && m_sequences[1] > m_sequences[0]) ? 1 : 0;
    QByteArray database = m_database;
    database.resize(std::max<qsizetype>(0, qsizetype(m_pageCounts[current]) * 4096 - 8192), '\0');
    return file + database + m_stream;
}
