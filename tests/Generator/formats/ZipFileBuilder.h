// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QString>
#include <cstdint>
#include <vector>

// Writes ZIP archives of deflated entries, with the lies a damaged or hostile archive tells.
class ZipFileBuilder {
public:
    ZipFileBuilder& deflated(const QString& name, const QByteArray& contents);
    // The last entry declares another uncompressed size, or another CRC, than its data has.
    ZipFileBuilder& declareSize(std::uint32_t size);
    ZipFileBuilder& declareCrc(std::uint32_t crc);

    QByteArray bytes() const;

private:
    struct Entry {
        QByteArray name;
        QByteArray data;
        std::uint32_t crc;
        std::uint32_t size;
    };
    std::vector<Entry> m_entries;
};
