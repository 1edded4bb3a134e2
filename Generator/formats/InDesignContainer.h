// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "ParseResult.h"

#include <QByteArray>
#include <QByteArrayView>
#include <cstdint>
#include <vector>

class QIODevice;

namespace Formats {

// The container of an InDesign document or template: two master pages of 4096 bytes at the
// start, each opening with the same 16-byte GUID and "DOCUMENT"; the one with the higher
// sequence number is current. Its page count says where the database pages end and the
// contiguous object stream begins. Each contiguous object is a 32-byte header (a GUID, the
// object's id and class, the length of its data, a checksum), the data, and a 32-byte trailer
// that repeats the header under another GUID. The document's XMP is the object whose data is a
// 4-byte length in the stream's byte order followed by an XMP packet. The numbers of the master
// page and of the object headers are little-endian whatever the stream's byte order.
struct InDesignObject {
    qint64 offset = 0; // of the header
    std::uint32_t objectId = 0;
    std::uint32_t classId = 0;
    std::uint32_t length = 0; // of the data between header and trailer
};

struct InDesignContainer {
    enum class ByteOrder { LittleEndian, BigEndian };

    ByteOrder byteOrder = ByteOrder::LittleEndian;
    int currentMasterPage = 0; // 0 or 1
    std::uint64_t sequenceNumber = 0;
    std::uint32_t pageCount = 0; // the database pages before the object stream
    std::vector<InDesignObject> objects;
    QByteArray xmp; // the packet itself, without its length prefix; empty when there is none
    // Set when the object stream breaks off after the XMP was read: the XMP is still good.
    bool streamDamaged = false;
};

// Walks the structure of a device opened for reading; reads the master pages, the object
// headers and the XMP object, nothing else. No GUID header is "not this kind"; a master page,
// page count or object stream that does not hold together before the XMP is found is damaged.
ParseResult<InDesignContainer> walkInDesignContainer(QIODevice& device);
ParseResult<InDesignContainer> walkInDesignContainer(QByteArrayView bytes);

// The first bytes of every InDesign document and template.
QByteArrayView inDesignHeaderGuid();

}
