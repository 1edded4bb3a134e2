// SPDX-License-Identifier: GPL-3.0-or-later
#include "ZipArchive.h"

#include "TestEnvironment.h"
#include "ZipFileBuilder.h"

#include <gtest/gtest.h>

using namespace Formats;

namespace {

QByteArray text(int size, char fill = 'a')
{
    QByteArray bytes;
    for (int i = 0; i < size; ++i)
        bytes.append(char(fill + i % 7));
    return bytes;
}

}

ParseResult<ZipContents> readAll(const QByteArray& zip, ZipLimits limits = {})
{
    return readZip(zip, [](const QString&) { return true; }, limits);
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
    const auto contents = readZip(zip, [](const QString& name) { return name != u"mimetype"; });
    ASSERT_TRUE(contents.ok()) << contents.reason().toStdString();
    EXPECT_EQ(contents->names,
        QStringList({ "mimetype", "Resources/Fonts.xml", "empty.xml", "Ünïcode name.txt" }));
    EXPECT_EQ(contents->entries.count(QStringLiteral("mimetype")), 0u);
    EXPECT_EQ(contents->entries.at(QStringLiteral("Resources/Fonts.xml")), xml);
    EXPECT_EQ(contents->entries.at(QStringLiteral("empty.xml")), QByteArray());
    EXPECT_EQ(contents->entries.at(QStringLiteral("Ünïcode name.txt")), QByteArray("u"));
}

TEST(ZipArchive, readsTheIdmlSample)
{
    const QByteArray idml = TestEnvironment::readFile(
        TestEnvironment::dataPath(QStringLiteral("formats/samples/idml-4-pages-layers.idml")));
    const auto contents = readAll(idml);
    ASSERT_TRUE(contents.ok()) << contents.reason().toStdString();
    EXPECT_EQ(contents->names.size(), 18);
    EXPECT_EQ(contents->names.front(), QStringLiteral("mimetype"));
    EXPECT_EQ(contents->entries.at(QStringLiteral("META-INF/metadata.xml")),
        TestEnvironment::readFile(TestEnvironment::dataPath(
            QStringLiteral("formats/samples/idml-4-pages-layers.metadata.xml"))));
}

struct BrokenArchiveCase {
    const char* name;
    QByteArray bytes;
    // The archive's error, or none when only the entry is unreadable (a problem of its own).
    std::optional<FormatError> error;
};

void PrintTo(const BrokenArchiveCase& c, std::ostream* out) { *out << c.name; }

class BrokenArchives : public testing::TestWithParam<BrokenArchiveCase> { };

TEST_P(BrokenArchives, failWithTheirKindOfError)
{
    const BrokenArchiveCase& c = GetParam();
    const auto contents = readAll(c.bytes);
    if (c.error) {
        ASSERT_FALSE(contents.ok());
        EXPECT_EQ(contents.error(), *c.error) << contents.reason().toStdString();
        return;
    }
    ASSERT_TRUE(contents.ok()) << contents.reason().toStdString();
    EXPECT_EQ(contents->problems.size(), 1) << contents->problems.join(u'\n').toStdString();
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
        BrokenArchiveCase { "notAZip", "hello, world", FormatError::NotThisKind },
        BrokenArchiveCase {
            "cutBeforeItsDirectory", GoodZip.left(GoodZip.size() - 40), FormatError::DamagedFile },
        BrokenArchiveCase { "cutToTheFirstEntry", GoodZip.left(40), FormatError::DamagedFile },
        BrokenArchiveCase { "corruptDeflateData", zipWithDataCut(), std::nullopt },
        BrokenArchiveCase { "wrongCrc",
            ZipFileBuilder().deflated(QStringLiteral("x"), Big).declareCrc(1).bytes(),
            std::nullopt },
        // A bomb: a small declared size over data that inflates on and on. Reading stops at
        // the declared size instead of following the data.
        BrokenArchiveCase { "bombInflatesPastItsDeclaredSize",
            ZipFileBuilder()
                .deflated(QStringLiteral("bomb"), QByteArray(8 * 1024 * 1024, '\0'))
                .declareSize(1000)
                .bytes(),
            FormatError::UnsupportedVariant },
        BrokenArchiveCase { "declaresMoreThanTheLimit",
            ZipFileBuilder()
                .deflated(QStringLiteral("huge"), QByteArray(1000, '\0'))
                .declareSize(0xF0000000)
                .bytes(),
            FormatError::UnsupportedVariant },
        BrokenArchiveCase {
            "moreEntriesThanTheLimit", tooManyEntries(), FormatError::UnsupportedVariant }),
    [](const auto& info) { return std::string(info.param.name); });

// Every byte inflated counts, also when many entries of the directory share the same data.
TEST(ZipArchive, stopsOnceTheTotalLimitIsReached)
{
    ZipLimits limits;
    limits.maxTotalSize = 250000;
    const auto contents = readAll(ZipFileBuilder()
                                      .deflated(QStringLiteral("one"), Big)
                                      .deflated(QStringLiteral("two"), Big)
                                      .bytes(),
        limits);
    ASSERT_FALSE(contents.ok());
    EXPECT_EQ(contents.error(), FormatError::UnsupportedVariant);
}
