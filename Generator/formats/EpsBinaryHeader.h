// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "ParseResult.h"

#include <QByteArrayView>
#include <cstdint>

namespace Formats {

// The 30-byte header that DOS-style EPS files put before their PostScript: the signature
// C5 D0 D3 C6, then little-endian offsets and lengths of the PostScript, of a Windows metafile
// preview and of a TIFF preview, and a checksum.
struct EpsBinaryHeader {
    struct Section {
        std::uint32_t offset = 0;
        std::uint32_t length = 0;
        bool present() const { return length > 0; }
    };

    Section postScript;
    Section metafile;
    Section tiff;
    std::uint16_t checksum = 0;
};

bool hasEpsBinarySignature(QByteArrayView bytes);

// Not this kind without the signature; damaged when the header is cut short or a section lies
// outside the file. The file's size is that of the bytes unless given (the bytes may be its
// head only).
ParseResult<EpsBinaryHeader> readEpsBinaryHeader(QByteArrayView bytes, qint64 fileSize = -1);

}
