// SPDX-License-Identifier: GPL-3.0-or-later
#include "XmpPacketScanner.h"

#include <algorithm>

namespace Formats {

namespace {

    // Finds a marker at or after a position, remembering the last hit so that repeated
    // searches from growing positions read every byte of the buffer at most once.
    class MarkerSearch {
    public:
        MarkerSearch(QByteArrayView bytes, QByteArrayView marker)
            : m_bytes(bytes)
            , m_marker(marker)
        {
        }
        qsizetype from(qsizetype position)
        {
            if (m_exhausted)
                return -1;
            if (m_hit >= position)
                return m_hit;
            m_hit = m_bytes.indexOf(m_marker, position);
            m_exhausted = m_hit < 0;
            return m_hit;
        }

    private:
        QByteArrayView m_bytes;
        QByteArrayView m_marker;
        qsizetype m_hit = -1;
        bool m_exhausted = false;
    };

    void findWrappedPackets(QByteArrayView bytes, std::vector<XmpPacketRange>& packets)
    {
        MarkerSearch begins(bytes, "<?xpacket begin=");
        MarkerSearch ends(bytes, "<?xpacket end=");
        MarkerSearch closings(bytes, "?>");
        qsizetype position = 0;
        for (qsizetype begin = begins.from(position); begin >= 0; begin = begins.from(position)) {
            const qsizetype next = begins.from(begin + 1);
            const qsizetype end = ends.from(begin);
            const qsizetype close = end >= 0 ? closings.from(end) : -1;
            if (close >= 0 && (next < 0 || close < next)) {
                packets.push_back({ begin, close + 2 - begin, true });
                position = close + 2;
            } else {
                const qsizetype stop = next >= 0 ? next : bytes.size();
                packets.push_back({ begin, stop - begin, false });
                position = stop;
            }
        }
    }

    // The end of the packet that holds offset, or -1. The packets are in order and do not overlap.
    qsizetype endOfPacketHolding(const std::vector<XmpPacketRange>& packets, qsizetype offset)
    {
        auto after = std::upper_bound(packets.begin(), packets.end(), offset,
            [](qsizetype value, const XmpPacketRange& packet) { return value < packet.offset; });
        if (after == packets.begin())
            return -1;
        const XmpPacketRange& packet = *std::prev(after);
        return offset < packet.offset + packet.length ? packet.offset + packet.length : -1;
    }

    void findBareElements(QByteArrayView bytes, QByteArrayView open, QByteArrayView close,
        const std::vector<XmpPacketRange>& wrapped, std::vector<XmpPacketRange>& packets)
    {
        MarkerSearch starts(bytes, open);
        MarkerSearch ends(bytes, close);
        qsizetype position = 0;
        for (qsizetype start = starts.from(position); start >= 0; start = starts.from(position)) {
            if (const qsizetype packetEnd = endOfPacketHolding(wrapped, start); packetEnd >= 0) {
                position = packetEnd;
                continue;
            }
            const qsizetype end = ends.from(start);
            const qsizetype stop = end >= 0 ? end + close.size() : bytes.size();
            packets.push_back({ start, stop - start, end >= 0 });
            position = stop;
        }
    }

}

std::vector<XmpPacketRange> findXmpPackets(QByteArrayView bytes)
{
    std::vector<XmpPacketRange> packets;
    findWrappedPackets(bytes, packets);
    const std::vector<XmpPacketRange> wrapped = packets;
    findBareElements(bytes, "<x:xmpmeta", "</x:xmpmeta>", wrapped, packets);
    findBareElements(bytes, "<x:xapmeta", "</x:xapmeta>", wrapped, packets);
    std::sort(packets.begin(), packets.end(),
        [](const XmpPacketRange& a, const XmpPacketRange& b) { return a.offset < b.offset; });
    return packets;
}

}
