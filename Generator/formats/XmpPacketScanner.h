// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArrayView>
#include <vector>

namespace Formats {

struct XmpPacketRange {
    qsizetype offset = 0;
    qsizetype length = 0;
    bool terminated = false; // ends with its trailer, or its closing x:xmpmeta tag
};

// Finds the XMP packets in a buffer by their text: "<?xpacket begin=" up to the end of the next
// "<?xpacket end=...?>", and bare "<x:xmpmeta" (or the older "<x:xapmeta") elements that stand
// outside any packet. A packet whose trailer is missing runs to the next packet or to the end
// of the buffer. In buffer order; the work is linear in the size of the buffer.
std::vector<XmpPacketRange> findXmpPackets(QByteArrayView bytes);

}
