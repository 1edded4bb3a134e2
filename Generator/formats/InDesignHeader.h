// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "ParseResult.h"

#include <QByteArrayView>
#include <cstdint>

namespace Formats {

// The two master pages of 4096 bytes that open an InDesign document or template, each starting
// with the same 16-byte GUID and "DOCUMENT"; the one with the higher sequence number is current.
// (exempi finds the XMP in the object stream behind them.)
struct InDesignHeader {
    enum class ByteOrder { LittleEndian, BigEndian };
    ByteOrder byteOrder = ByteOrder::LittleEndian;
    int currentMasterPage = 0; // 0 or 1
    std::uint64_t sequenceNumber = 0;
    std::uint32_t pageCount = 0; // the database pages before the object stream
};

// The first bytes of every InDesign document and template.
QByteArrayView inDesignHeaderGuid();

// No GUID is "not this kind"; master pages cut short, neither of them valid, or a page count the
// file is too short for, damaged.
ParseResult<InDesignHeader> checkInDesignHeader(QByteArrayView bytes);

}
