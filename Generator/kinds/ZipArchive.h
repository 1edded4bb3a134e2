// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "ParseResult.h"

#include <QByteArray>
#include <QByteArrayView>
#include <QString>
#include <cstdint>
#include <vector>

namespace Preview::Kinds {

// What a package may hold before we stop reading it. A package whose entries would inflate past
// these is refused rather than read in part: a zip bomb declares small sizes or none at all.
struct ZipLimits {
    qsizetype maxEntries = 10000;
    qint64 maxEntrySize = 64 * 1024 * 1024; // one inflated entry
    qint64 maxTotalSize = 256 * 1024 * 1024; // everything read from one archive
};

struct ZipEntry {
    QString name;
    std::uint16_t method = 0; // 0 stored, 8 deflated
    std::uint16_t flags = 0;
    std::uint32_t crc = 0;
    qint64 compressedSize = 0;
    qint64 uncompressedSize = 0;
    qint64 localHeaderOffset = 0;
};

// Reads the entries of a ZIP archive held in memory: the central directory, then one entry at a
// time, stored or deflated, each checked against its CRC. No ZIP64, no encryption: the packages
// we read never need them. The bytes must outlive the archive.
class ZipArchive {
public:
    // No end record and no local header at the start: not a ZIP archive. A directory that does
    // not hold together, or more entries than the limits allow: damaged.
    static Formats::ParseResult<ZipArchive> open(QByteArrayView bytes, ZipLimits limits = {});

    const std::vector<ZipEntry>& entries() const { return m_entries; }
    const ZipEntry* find(QStringView name) const;

    // The entry's contents. Entries larger than the limits, or whose data inflates to more than
    // they declare, are refused; a wrong CRC or data cut short is damaged.
    Formats::ParseResult<QByteArray> read(const ZipEntry& entry);
    Formats::ParseResult<QByteArray> read(QStringView name);

private:
    ZipArchive(QByteArrayView bytes, ZipLimits limits)
        : m_bytes(bytes)
        , m_limits(limits)
    {
    }

    QByteArrayView m_bytes;
    ZipLimits m_limits;
    std::vector<ZipEntry> m_entries;
    qint64 m_readSoFar = 0;
};

}
