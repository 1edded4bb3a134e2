// SPDX-License-Identifier: GPL-3.0-or-later
#include "ZipArchive.h"

#include "ZipFileBuilder.h"

#include <gtest/gtest.h>
#include <optional>

using namespace Formats;

namespace {

ParseResult<ZipContents> readAll(const QByteArray& zip, ZipLimits limits = {})
{
    return readZip(
        zip, [](const QString&) { return true; }, limits);
}

// Keeps the directory but spoils the middle of the second entry's data: inflate fails or the CRC
// does.
QByteArray withDataSpoiled(QByteArray bytes)
{
    const qsizetype dataStart = bytes.indexOf("PK\x03\x04", 4) + 30 + 1;
    for (qsizetype i = dataStart + 10; i < dataStart + 200; ++i)
        bytes[i] = '\xff';
    return bytes;
}

// An archive that cannot be read fails with its kind of error; an entry that cannot be read is a
// problem of its own (no error). A bomb, a small declared size over data that inflates on and on,
// stops at the declared size instead of following the data.
TEST(ZipArchive, brokenArchivesFailWithTheirKindOfError)
{
    const QByteArray big = QByteArray("abcdefg").repeated(30000);
    const QByteArray good = ZipFileBuilder()
                                .deflated(QStringLiteral("a"), "abc")
                                .deflated(QStringLiteral("b"), big)
                                .bytes();
    ZipFileBuilder tooMany;
    for (int i = 0; i < 10001; ++i)
        tooMany.deflated(QStringLiteral("e%1").arg(i), QByteArray());
    const std::pair<QByteArray, std::optional<FormatError>> cases[] = {
        { "hello, world", FormatError::NotThisKind },
        { good.left(good.size() - 40), FormatError::DamagedFile },
        { good.left(40), FormatError::DamagedFile },
        { withDataSpoiled(good), std::nullopt },
        { ZipFileBuilder().deflated(QStringLiteral("x"), big).declareCrc(1).bytes(), std::nullopt },
        { ZipFileBuilder()
                .deflated(QStringLiteral("bomb"), QByteArray(8 * 1024 * 1024, '\0'))
                .declareSize(1000)
                .bytes(),
            FormatError::UnsupportedVariant },
        { ZipFileBuilder()
                .deflated(QStringLiteral("huge"), QByteArray(1000, '\0'))
                .declareSize(0xF0000000)
                .bytes(),
            FormatError::UnsupportedVariant },
        { tooMany.bytes(), FormatError::UnsupportedVariant },
    };
    int index = 0;
    for (const auto& [bytes, error] : cases) {
        SCOPED_TRACE(++index);
        const auto contents = readAll(bytes);
        if (error) {
            ASSERT_FALSE(contents.ok());
            EXPECT_EQ(contents.error(), *error) << contents.reason().toStdString();
        } else {
            ASSERT_TRUE(contents.ok()) << contents.reason().toStdString();
            EXPECT_EQ(contents->problems.size(), 1) << contents->problems.join(u'\n').toStdString();
        }
    }

    // Every byte inflated counts, also when many entries of the directory share the same data.
    ZipLimits limits;
    limits.maxTotalSize = 250000;
    const auto total = readAll(ZipFileBuilder()
                                   .deflated(QStringLiteral("one"), big)
                                   .deflated(QStringLiteral("two"), big)
                                   .bytes(),
        limits);
    ASSERT_FALSE(total.ok());
    EXPECT_EQ(total.error(), FormatError::UnsupportedVariant);
}

}
