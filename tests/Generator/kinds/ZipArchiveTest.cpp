// SPDX-License-Identifier: GPL-3.0-or-later
#include "ZipArchive.h"

#include "TestEnvironment.h"
#include "ZipFileBuilder.h"

#include <gtest/gtest.h>

using namespace Preview::Kinds;
using Formats::FormatError;

namespace {

QByteArray text(int size, char fill = 'a')
{
    QByteArray bytes;
    for (int i = 0; i < size; ++i)
        bytes.append(char(fill + i % 7));
    return bytes;
}

}

TEST(ZipArchive, readsStoredAndDeflatedEntries)
{
    const QByteArray xml = "<Fonts>" + text(5000) + "</Fonts>";
    const QByteArray zip = ZipFileBuilder()
                               .stored(QStringLiteral("mimetype"), "application/test")
                               .deflated(QStringLiteral("Resources/Fonts.xml"), xml)
                               .deflated(QStringLiteral("empty.xml"), QByteArray())
                               .stored(QStringLiteral("Ünïcode name.txt"), "u")
                               .bytes();
    auto archive = ZipArchive::open(zip);
    ASSERT_TRUE(archive.ok()) << archive.reason().toStdString();
    ZipArchive zipArchive = std::move(archive).value();
    ASSERT_EQ(zipArchive.entries().size(), 4u);
    EXPECT_EQ(zipArchive.entries()[1].method, 8);
    EXPECT_LT(zipArchive.entries()[1].compressedSize, xml.size());

    EXPECT_EQ(*zipArchive.read(u"mimetype"), QByteArray("application/test"));
    EXPECT_EQ(*zipArchive.read(u"Resources/Fonts.xml"), xml);
    EXPECT_EQ(*zipArchive.read(u"empty.xml"), QByteArray());
    EXPECT_EQ(*zipArchive.read(QStringLiteral("Ünïcode name.txt")), QByteArray("u"));
    EXPECT_EQ(zipArchive.read(u"missing.xml").error(), FormatError::DamagedFile);
}

TEST(ZipArchive, readsTheIdmlSample)
{
    const QByteArray idml = TestEnvironment::readFile(
        TestEnvironment::dataPath(QStringLiteral("formats/samples/idml-4-pages-layers.idml")));
    auto archive = ZipArchive::open(idml);
    ASSERT_TRUE(archive.ok()) << archive.reason().toStdString();
    ZipArchive zipArchive = std::move(archive).value();
    EXPECT_EQ(zipArchive.entries().size(), 18u);
    EXPECT_EQ(zipArchive.entries().front().name, QStringLiteral("mimetype"));
    const auto metadata = zipArchive.read(u"META-INF/metadata.xml");
    ASSERT_TRUE(metadata.ok()) << metadata.reason().toStdString();
    EXPECT_EQ(*metadata,
        TestEnvironment::readFile(TestEnvironment::dataPath(
            QStringLiteral("formats/samples/idml-4-pages-layers.metadata.xml"))));
}

struct BrokenArchiveCase {
    const char* name;
    QByteArray bytes;
    FormatError openError; // NotThisKind... or, when the archive opens, the error of reading
    bool opens;
};

void PrintTo(const BrokenArchiveCase& c, std::ostream* out) { *out << c.name; }

class BrokenArchives : public testing::TestWithParam<BrokenArchiveCase> { };

TEST_P(BrokenArchives, failWithTheirKindOfError)
{
    const BrokenArchiveCase& c = GetParam();
    auto archive = ZipArchive::open(c.bytes);
    if (!c.opens) {
        ASSERT_FALSE(archive.ok());
        EXPECT_EQ(archive.error(), c.openError) << archive.reason().toStdString();
        return;
    }
    ASSERT_TRUE(archive.ok()) << archive.reason().toStdString();
    ZipArchive zipArchive = std::move(archive).value();
    ASSERT_FALSE(zipArchive.entries().empty());
    const auto contents = zipArchive.read(zipArchive.entries().back());
    ASSERT_FALSE(contents.ok());
    EXPECT_EQ(contents.error(), c.openError) << contents.reason().toStdString();
}

namespace {

const QByteArray Big = text(200000);
const QByteArray GoodZip = ZipFileBuilder()
                               .stored(QStringLiteral("a"), "abc")
                               .deflated(QStringLiteral("b"), Big)
                               .bytes();

QByteArray zipWithDataCut()
{
    // Keep the directory but zero the middle of the deflated data: inflate fails or the CRC does.
    QByteArray bytes = GoodZip;
    const qsizetype dataStart = bytes.indexOf("PK\x03\x04", 4) + 30 + 1;
    for (qsizetype i = dataStart + 10; i < dataStart + 200; ++i)
        bytes[i] = '\xff';
    return bytes;
}

QByteArray tooManyEntries()
{
    ZipFileBuilder builder;
    for (int i = 0; i < 10001; ++i)
        builder.stored(QStringLiteral("e%1").arg(i), QByteArray());
    return builder.bytes();
}

}

INSTANTIATE_TEST_SUITE_P(ZipArchive, BrokenArchives,
    testing::Values(
        BrokenArchiveCase { "notAZip", "hello, world", FormatError::NotThisKind, false },
        BrokenArchiveCase { "cutBeforeItsDirectory", GoodZip.left(GoodZip.size() - 40),
            FormatError::DamagedFile, false },
        BrokenArchiveCase {
            "cutToTheFirstEntry", GoodZip.left(40), FormatError::DamagedFile, false },
        BrokenArchiveCase {
            "corruptDeflateData", zipWithDataCut(), FormatError::DamagedFile, true },
        BrokenArchiveCase { "wrongCrc",
            ZipFileBuilder().deflated(QStringLiteral("x"), Big).declareCrc(1).bytes(),
            FormatError::DamagedFile, true },
        BrokenArchiveCase { "inflatesToLessThanDeclared",
            ZipFileBuilder().deflated(QStringLiteral("x"), Big).declareSize(300000).bytes(),
            FormatError::DamagedFile, true },
        // A bomb: a small declared size over data that inflates on and on. Reading stops at
        // the declared size instead of following the data.
        BrokenArchiveCase { "bombInflatesPastItsDeclaredSize",
            ZipFileBuilder()
                .deflated(QStringLiteral("bomb"), QByteArray(8 * 1024 * 1024, '\0'))
                .declareSize(1000)
                .bytes(),
            FormatError::UnsupportedVariant, true },
        BrokenArchiveCase { "declaresMoreThanTheLimit",
            ZipFileBuilder()
                .deflated(QStringLiteral("huge"), QByteArray(1000, '\0'))
                .declareSize(0xF0000000)
                .bytes(),
            FormatError::UnsupportedVariant, true },
        BrokenArchiveCase {
            "moreEntriesThanTheLimit", tooManyEntries(), FormatError::UnsupportedVariant, false }),
    [](const auto& info) { return std::string(info.param.name); });

TEST(ZipArchive, stopsOnceTheTotalLimitIsReached)
{
    ZipLimits limits;
    limits.maxTotalSize = 250000;
    auto archive = ZipArchive::open(ZipFileBuilder()
                                        .deflated(QStringLiteral("one"), Big)
                                        .deflated(QStringLiteral("two"), Big)
                                        .bytes(),
        limits);
    ASSERT_TRUE(archive.ok());
    ZipArchive zipArchive = std::move(archive).value();
    EXPECT_TRUE(zipArchive.read(u"one").ok());
    EXPECT_EQ(zipArchive.read(u"two").error(), FormatError::UnsupportedVariant);
}
