// SPDX-License-Identifier: GPL-3.0-or-later
#include "XmpPacketScanner.h"

#include <QByteArray>
#include <gtest/gtest.h>

using namespace Formats;

namespace {

const QByteArray Packet
    = "<?xpacket begin='' id='W5M0MpCehiHzreSzNTczkc9d'?><x:xmpmeta xmlns:x='adobe:ns:meta/'/>"
      "<?xpacket end='w'?>";
const QByteArray Bare = "<x:xmpmeta xmlns:x='adobe:ns:meta/'></x:xmpmeta>";

struct ScanCase {
    const char* name;
    QByteArray bytes;
    // Each found packet as offset, length and whether it was terminated.
    std::vector<XmpPacketRange> expected;
};

class XmpPacketScan : public testing::TestWithParam<ScanCase> { };

TEST_P(XmpPacketScan, findsThePackets)
{
    const std::vector<XmpPacketRange> found = findXmpPackets(GetParam().bytes);
    ASSERT_EQ(found.size(), GetParam().expected.size());
    for (std::size_t i = 0; i < found.size(); ++i) {
        SCOPED_TRACE(i);
        EXPECT_EQ(found[i].offset, GetParam().expected[i].offset);
        EXPECT_EQ(found[i].length, GetParam().expected[i].length);
        EXPECT_EQ(found[i].terminated, GetParam().expected[i].terminated);
    }
}

const qsizetype P = Packet.size();
const qsizetype B = Bare.size();

INSTANTIATE_TEST_SUITE_P(Cases, XmpPacketScan,
    testing::Values(ScanCase { "none", "%PDF-1.4 nothing here <?xpacket", {} },
        ScanCase { "one", "abc" + Packet + "def", { { 3, P, true } } },
        ScanCase { "two", Packet + "--" + Packet, { { 0, P, true }, { P + 2, P, true } } },
        // A packet that lost its trailer runs to the next packet, which is found whole.
        ScanCase { "unterminatedBeforeGood", "<?xpacket begin='' junk" + Packet,
            { { 0, 23, false }, { 23, P, true } } },
        ScanCase { "unterminatedAtEnd", "xx<?xpacket begin='' tail", { { 2, 23, false } } },
        ScanCase { "bareElement", "%!PS\n" + Bare + "\n", { { 5, B, true } } },
        ScanCase { "bareElementInsidePacketIsNotAnother", Packet, { { 0, P, true } } },
        ScanCase { "bareAfterPacket", Packet + Bare, { { 0, P, true }, { P, B, true } } },
        ScanCase {
            "bareWithoutClosing", "<x:xmpmeta xmlns:x='adobe:ns:meta/'>", { { 0, 36, false } } },
        ScanCase { "olderMetaElement", "<x:xapmeta xmlns:x='adobe:ns:meta/'/></x:xapmeta>",
            { { 0, 49, true } } }),
    [](const testing::TestParamInfo<ScanCase>& info) { return std::string(info.param.name); });

}

// Many packet openings without any trailer: each is found once and the scan stays linear.
TEST(XmpPacketScanner, handlesManyUnterminatedPackets)
{
    QByteArray bytes;
    for (int i = 0; i < 20000; ++i)
        bytes += "<?xpacket begin=<x:xmpmeta ";
    const auto packets = findXmpPackets(bytes);
    ASSERT_EQ(packets.size(), 20000u);
    EXPECT_FALSE(packets.back().terminated);
    EXPECT_EQ(packets.back().offset + packets.back().length, bytes.size());
}
