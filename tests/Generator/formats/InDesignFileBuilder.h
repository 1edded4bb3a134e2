// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <cstdint>

// Writes the container of an InDesign document: two master pages, database pages up to the
// declared page count, and a contiguous object stream, for cases no sample file has.
class InDesignFileBuilder {
public:
    InDesignFileBuilder& bigEndian(bool big);
    InDesignFileBuilder& sequenceNumbers(std::uint64_t first, std::uint64_t second);
    // The page count each master page declares (2 or more puts the stream after the masters).
    InDesignFileBuilder& pageCounts(std::uint32_t first, std::uint32_t second);
    InDesignFileBuilder& breakMasterPage(int index);
    // Bytes in the database pages, e.g. a stale packet a scan would find.
    InDesignFileBuilder& databaseBytes(const QByteArray& bytes);
    InDesignFileBuilder& object(const QByteArray& data);
    InDesignFileBuilder& xmpObject(const QByteArray& packet);
    // Raw bytes after the objects written so far.
    InDesignFileBuilder& raw(const QByteArray& bytes);

    QByteArray bytes() const;

private:
    QByteArray masterPage(std::uint64_t sequence, std::uint32_t pages) const;

    bool m_bigEndian = false;
    std::uint64_t m_sequences[2] = { 2, 1 };
    std::uint32_t m_pageCounts[2] = { 3, 3 };
    int m_broken = -1;
    QByteArray m_database;
    QByteArray m_stream;
};
