// SPDX-License-Identifier: GPL-3.0-or-later
#include "ZipFileBuilder.h"

#include <QtEndian>
#include <zlib.h>

namespace {

// Little-endian, as the ZIP format stores its numbers.
template <typename T> void put(QByteArray& out, T value)
{
    char bytes[sizeof(T)];
    qToLittleEndian(value, bytes);
    out.append(bytes, sizeof(T));
}

void put16(QByteArray& out, std::uint16_t value) { put(out, value); }
void put32(QByteArray& out, std::uint32_t value) { put(out, value); }

// Raw deflate, no zlib header, as ZIP entries hold it.
QByteArray rawDeflate(const QByteArray& contents)
{
    z_stream stream {};
    deflateInit2(&stream, Z_BEST_COMPRESSION, Z_DEFLATED, -MAX_WBITS, 9, Z_DEFAULT_STRATEGY);
    QByteArray out(int(deflateBound(&stream, uLong(contents.size()))), Qt::Uninitialized);
    stream.next_in = reinterpret_cast<Bytef*>(const_cast<char*>(contents.constData()));
    stream.avail_in = uInt(contents.size());
    stream.next_out = reinterpret_cast<Bytef*>(out.data());
    stream.avail_out = uInt(out.size());
    ::deflate(&stream, Z_FINISH);
    out.truncate(qsizetype(stream.total_out));
    deflateEnd(&stream);
    return out;
}

}

ZipFileBuilder& ZipFileBuilder::deflated(const QString& name, const QByteArray& contents)
{
    const auto crc
        = crc32(0, reinterpret_cast<const Bytef*>(contents.constData()), uInt(contents.size()));
    m_entries.push_back({ name.toUtf8(), rawDeflate(contents), std::uint32_t(crc),
        std::uint32_t(contents.size()) });
    return *this;
}

ZipFileBuilder& ZipFileBuilder::declareSize(std::uint32_t size)
{
    m_entries.back().size = size;
    return *this;
}

ZipFileBuilder& ZipFileBuilder::declareCrc(std::uint32_t crc)
{
    m_entries.back().crc = crc;
    return *this;
}

QByteArray ZipFileBuilder::bytes() const
{
    QByteArray out;
    QByteArray directory;
    for (const Entry& entry : m_entries) {
        const std::uint32_t offset = std::uint32_t(out.size());
        const auto header = [&](QByteArray& to, bool central) {
            put32(to, central ? 0x02014b50 : 0x04034b50);
            if (central)
                put16(to, 20); // made by
            put16(to, 20); // needed
            put16(to, 0x0800); // UTF-8 names
            put16(to, 8); // deflated
            put32(to, 0); // time and date
            put32(to, entry.crc);
            put32(to, std::uint32_t(entry.data.size()));
            put32(to, entry.size);
            put16(to, std::uint16_t(entry.name.size()));
            put16(to, 0); // extra
            if (central) {
                put16(to, 0); // comment
                put16(to, 0); // disk
                put16(to, 0); // internal attributes
                put32(to, 0); // external attributes
                put32(to, offset);
            }
            to.append(entry.name);
        };
        header(out, false);
        out.append(entry.data);
        header(directory, true);
    }
    const std::uint32_t directoryOffset = std::uint32_t(out.size());
    out.append(directory);
    put32(out, 0x06054b50);
    put16(out, 0);
    put16(out, 0);
    put16(out, std::uint16_t(m_entries.size()));
    put16(out, std::uint16_t(m_entries.size()));
    put32(out, std::uint32_t(directory.size()));
    put32(out, directoryOffset);
    put16(out, 0);
    return out;
}
