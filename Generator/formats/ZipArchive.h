// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "ParseResult.h"

#include <QByteArray>
#include <QByteArrayView>
#include <QString>
#include <QStringList>
#include <functional>
#include <map>

namespace Formats {

// What a package may hold before we stop reading it. A package whose entries would inflate past
// these is refused rather than read in part: a zip bomb declares small sizes or none at all, or
// lets many entries of the directory share the same data, so every byte inflated counts.
struct ZipLimits {
    qsizetype maxEntries = 10000;
    qint64 maxEntrySize = 64 * 1024 * 1024; // one inflated entry
    qint64 maxTotalSize = 256 * 1024 * 1024; // everything inflated from one archive
};

struct ZipContents {
    QStringList names; // every entry, in the order of the central directory
    std::map<QString, QByteArray> entries; // the entries asked for that could be read
    // Entries asked for that could not be read (a wrong checksum, data cut short), one line each.
    QStringList problems;
};

// Reads a ZIP archive held in memory through libarchive, by its central directory: the names of
// all entries and the contents of those `wanted` asks for. Bytes that are not a ZIP archive are
// not this kind; an archive cut short or whose directory does not hold together is damaged; one
// past the limits, encrypted or of a compression libarchive lacks is an unsupported variant.
ParseResult<ZipContents> readZip(QByteArrayView bytes,
    const std::function<bool(const QString& name)>& wanted, ZipLimits limits = {});

}
