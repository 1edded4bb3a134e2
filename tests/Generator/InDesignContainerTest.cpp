// SPDX-License-Identifier: GPL-3.0-or-later
// Sample files: tests/data/formats/samples (see tests/data/README.md for their origins).
#include "InDesignContainer.h"

#include "FormatsTestData.h"
#include "InDesignFileBuilder.h"
#include "XmpMetadata.h"
#include "XmpPacketScanner.h"

#include <QBuffer>
#include <QtEndian>

using namespace Formats;

namespace {

QByteArray packet(const char* creator)
{
    return QByteArray("<?xpacket begin='' id='W5M0MpCehiHzreSzNTczkc9d'?><x:xmpmeta "
                      "xmlns:x='adobe:ns:meta/'>"
                      "<rdf:RDF xmlns:rdf='http://www.w3.org/1999/02/22-rdf-syntax-ns#'>"
                      "<rdf:Description xmlns:xmp='http://ns.adobe.com/xap/1.0/' xmp:CreatorTool='")
        + creator + "'/></rdf:RDF></x:xmpmeta><?xpacket end='w'?>";
}

InDesignContainer walked(const QByteArray& bytes)
{
    const auto result = walkInDesignContainer(bytes);
    EXPECT_TRUE(result.ok()) << result.reason().toStdString();
    return result.ok() ? result.value() : InDesignContainer();
}

QString creatorOf(const QByteArray& xmp)
{
    const auto metadata = parseXmpPacket(xmp);
    return metadata.ok() ? metadata->creatorTool
                         : QStringLiteral("(no XMP: %1)").arg(metadata.reason());
}

}

TEST(InDesignSamples, littleEndianDocumentSkipsTheStalePacket)
{
    const QByteArray file = formatSample(QStringLiteral("samples/indesign15.indd"));
    const InDesignContainer container = walked(file);
    EXPECT_EQ(container.byteOrder, InDesignContainer::ByteOrder::LittleEndian);
    EXPECT_EQ(container.currentMasterPage, 0);
    EXPECT_EQ(container.sequenceNumber, 5u);
    EXPECT_EQ(container.pageCount, 205u);
    ASSERT_FALSE(container.objects.empty());
    EXPECT_EQ(container.objects[0].offset, 205 * 4096);
    EXPECT_FALSE(container.streamDamaged);
    EXPECT_TRUE(container.xmp.startsWith("<?xpacket begin="));
    EXPECT_TRUE(container.xmp.endsWith("<?xpacket end=\"w\"?>"));

    const auto metadata = parseXmpPacket(container.xmp);
    ASSERT_TRUE(metadata.ok()) << metadata.reason().toStdString();
    EXPECT_EQ(metadata->creatorTool, QStringLiteral("Adobe InDesign 15.0 (Macintosh)"));
    ASSERT_EQ(metadata->fonts.size(), 3u);
    EXPECT_EQ(metadata->fonts[0].fontName, QStringLiteral("MinionPro-Regular"));
    EXPECT_TRUE(metadata->fonts[1].fontName.isEmpty());
    EXPECT_EQ(metadata->fonts[1].fontFace, QStringLiteral("Bold"));
    ASSERT_EQ(metadata->colorants.size(), 3u);
    EXPECT_EQ(metadata->colorants[2].name, QStringLiteral("Registration"));

    // What a scan of the whole file would meet first: the stale packet, in the database pages.
    const auto packets = findXmpPackets(file);
    ASSERT_GE(packets.size(), 2u);
    EXPECT_LT(packets.front().offset, 205 * 4096);
    EXPECT_FALSE(
        parseXmpPacket(QByteArrayView(file).sliced(packets.front().offset, packets.front().length))
            .ok());
}

TEST(InDesignSamples, bigEndianMinimalContainer)
{
    const InDesignContainer container
        = walked(formatSample(QStringLiteral("samples/indesign-exiftool.indd")));
    EXPECT_EQ(container.byteOrder, InDesignContainer::ByteOrder::BigEndian);
    EXPECT_EQ(container.pageCount, 2u);
    ASSERT_EQ(container.objects.size(), 1u);
    EXPECT_EQ(container.objects[0].length, 0x565u);
    EXPECT_EQ(container.xmp.size(), 0x561);
    EXPECT_TRUE(parseXmpPacket(container.xmp).ok());
}

TEST(InDesignSamples, readsFromADevice)
{
    QByteArray file = formatSample(QStringLiteral("samples/indesign-exiftool.indd"));
    QBuffer device(&file);
    ASSERT_TRUE(device.open(QIODevice::ReadOnly));
    const auto result = walkInDesignContainer(device);
    ASSERT_TRUE(result.ok());
    EXPECT_EQ(result->xmp.size(), 0x561);
}

struct MasterPageCase {
    const char* name;
    InDesignFileBuilder builder;
    int currentMasterPage;
    const char* creator;
};

class InDesignMasterPages : public testing::TestWithParam<MasterPageCase> { };

TEST_P(InDesignMasterPages, theNewerValidPageLeads)
{
    const InDesignContainer container = walked(GetParam().builder.bytes());
    EXPECT_EQ(container.currentMasterPage, GetParam().currentMasterPage);
    EXPECT_EQ(creatorOf(container.xmp), QString::fromLatin1(GetParam().creator));
}

// The stream sits after the page count of the current master page; an object at the other
// master page's count would be missed.
INSTANTIATE_TEST_SUITE_P(Cases, InDesignMasterPages,
    testing::Values(
        MasterPageCase { "firstNewer",
            InDesignFileBuilder().sequenceNumbers(9, 8).pageCounts(3, 4).xmpObject(packet("A")), 0,
            "A" },
        MasterPageCase { "secondNewer",
            InDesignFileBuilder().sequenceNumbers(8, 9).pageCounts(4, 3).xmpObject(packet("B")), 1,
            "B" },
        MasterPageCase { "firstBroken",
            InDesignFileBuilder()
                .sequenceNumbers(9, 8)
                .pageCounts(4, 3)
                .breakMasterPage(0)
                .xmpObject(packet("C")),
            1, "C" },
        MasterPageCase { "secondBroken",
            InDesignFileBuilder()
                .sequenceNumbers(1, 9)
                .pageCounts(3, 4)
                .breakMasterPage(1)
                .xmpObject(packet("D")),
            0, "D" },
        MasterPageCase { "bigEndianStream",
            InDesignFileBuilder().bigEndian(true).xmpObject(packet("E")), 0, "E" },
        MasterPageCase { "xmpAfterOtherObjects",
            InDesignFileBuilder()
                .object("first object")
                .object(QByteArray(100, 'x'))
                .xmpObject(packet("F")),
            0, "F" }),
    [](const testing::TestParamInfo<MasterPageCase>& info) {
        return std::string(info.param.name);
    });

TEST(InDesignContainer, findsNoPacketOutsideTheObjectStream)
{
    const QByteArray file
        = InDesignFileBuilder().databaseBytes(packet("Stale")).object("no metadata here").bytes();
    const InDesignContainer container = walked(file);
    EXPECT_EQ(container.objects.size(), 1u);
    EXPECT_TRUE(container.xmp.isEmpty());
}

TEST(InDesignContainer, keepsTheXmpWhenTheStreamBreaksOffLater)
{
    const QByteArray file = InDesignFileBuilder()
                                .xmpObject(packet("Kept"))
                                .raw(QByteArray::fromHex("de393979"
                                                         "51884b6c8e63eef8aee0dd38")
                                    + QByteArray(16, '\x7F'))
                                .bytes();
    const InDesignContainer container = walked(file);
    EXPECT_TRUE(container.streamDamaged);
    EXPECT_EQ(creatorOf(container.xmp), QStringLiteral("Kept"));
}

TEST(InDesignContainer, ignoresAnXmpLengthThatOverrunsItsObject)
{
    QByteArray data(4, '\0');
    qToLittleEndian<std::uint32_t>(100000, data.data());
    const InDesignContainer container
        = walked(InDesignFileBuilder().object(data + packet("Overrun")).bytes());
    EXPECT_EQ(container.objects.size(), 1u);
    EXPECT_TRUE(container.xmp.isEmpty());
}

static QByteArray withPageCount(QByteArray file, std::uint32_t pages)
{
    for (int page = 0; page < 2; ++page)
        qToLittleEndian(pages, file.data() + page * 4096 + 280);
    return file;
}

struct InDesignFailureCase {
    const char* name;
    QByteArray bytes;
    FormatError error;
};

class InDesignFailure : public testing::TestWithParam<InDesignFailureCase> { };

TEST_P(InDesignFailure, isReportedWithAReason)
{
    const auto result = walkInDesignContainer(GetParam().bytes);
    ASSERT_FALSE(result.ok());
    EXPECT_EQ(result.error(), GetParam().error);
    EXPECT_FALSE(result.reason().isEmpty());
}

INSTANTIATE_TEST_SUITE_P(Cases, InDesignFailure,
    testing::Values(InDesignFailureCase { "empty", QByteArray(), FormatError::NotThisKind },
        InDesignFailureCase { "otherFile", QByteArray(9000, 'a'), FormatError::NotThisKind },
        InDesignFailureCase { "onlyFirstMasterPage", InDesignFileBuilder().bytes().first(5000),
            FormatError::DamagedFile },
        InDesignFailureCase { "bothMasterPagesBroken",
            InDesignFileBuilder().breakMasterPage(0).bytes().replace(4096 + 16, 8, "BROKEN!!"),
            FormatError::DamagedFile },
        InDesignFailureCase { "pagesBeyondTheFile",
            withPageCount(InDesignFileBuilder().bytes(), 1'000'000), FormatError::DamagedFile },
        InDesignFailureCase { "pageCountTooSmall", withPageCount(InDesignFileBuilder().bytes(), 1),
            FormatError::DamagedFile },
        InDesignFailureCase { "objectRunsPastTheEnd",
            InDesignFileBuilder().xmpObject(packet("Cut")).bytes().chopped(40),
            FormatError::DamagedFile }),
    [](const testing::TestParamInfo<InDesignFailureCase>& info) {
        return std::string(info.param.name);
    });
