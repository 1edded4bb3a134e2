// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QString>
#include <cstdint>
#include <vector>

// Writes ZIP archives entry by entry, with the lies a damaged or hostile archive tells.
class ZipFileBuilder {
public:
    ZipFileBuilder& stored(const QString& name, const QByteArray& contents);
    ZipFileBuilder& deflated(const QString& name, const QByteArray& contents);
    // The last entry declares another uncompressed size, or another CRC, than its data has.
    ZipFileBuilder& declareSize(std::uint32_t size);
    ZipFileBuilder& declareCrc(std::uint32_t crc);

    QByteArray bytes() const;

    static QByteArray deflate(const QByteArray& contents); // raw deflate, no zlib header

private:
    struct Entry {
        QByteArray name;
        std::uint16_t method;
        QByteArray data;
        std::uint32_t crc;
        std::uint32_t size;
    };
    std::vector<Entry> m_entries;
};
