// SPDX-License-Identifier: GPL-3.0-or-later
// Sample files: tests/data/formats/samples (see tests/data/README.md for their origins).
#include "DscComments.h"

#include "FormatsTestData.h"

#include <QtEndian>

using namespace Formats;

namespace {

DscDocument parsed(const QByteArray& bytes)
{
    const auto result = parseDscComments(bytes);
    EXPECT_TRUE(result.ok()) << result.reason().toStdString();
    return result.ok() ? result.value() : DscDocument();
}

// A document using most comments, written with "\n" and turned into each line ending.
const QByteArray FullDocument = R"(%!PS-Adobe-3.0 EPSF-3.0
%%Title: (Poster \(final\) \344)
%%Creator: Layout 2.0
%%BoundingBox: (atend)
%%HiResBoundingBox: 0 0 0 0
%%Pages: (atend)
%%DocumentFonts: Helvetica Times-Roman
%%+ Courier
%%DocumentNeededResources: font Helvetica-Bold procset Adobe_Util 1.0 0
%%+ font (Minion Pro)
%%DocumentSuppliedResources: procset Adobe_AGM 2.0 0
%%+ font MyriadPro-Regular
%%DocumentCustomColors: (PANTONE 185 C) (Varnish)
%%CMYKCustomColor: 0 0.91 0.76 0 (PANTONE 185 C) 1 0 0 0 (Deep Cyan)
%%RGBCustomColor: 0.5 0.25 1 (Screen Violet)
%%DocumentFonts: (atend)
%%EndComments
%%BeginPreview: 8 2 1 2
% FF00
% 0F
%%EndPreview
%%BeginProlog
%%Title: Not the title
%%EndProlog
%%BeginDocument: (placed.eps)
%!PS-Adobe-3.0 EPSF-3.0
%%Title: Inner
%%BoundingBox: 1 2 3 4
%%DocumentFonts: InnerFont
%%Trailer
%%EOF
%%EndDocument
%%BeginBinary: 24
%%BeginDocument:(x)%%EOF
showpage
%%Trailer
%%BoundingBox: 10 20 300.5 400
%%Pages: 2
%%DocumentFonts: Palatino
%%EOF
%%Trailer
%%Pages: 99
%%DocumentFonts: AfterTheEnd
)";

}

class DscLineEndings : public testing::TestWithParam<const char*> { };

TEST_P(DscLineEndings, readTheSameComments)
{
    QByteArray bytes = FullDocument;
    bytes.replace("\n", GetParam());
    const DscDocument document = parsed(bytes);
    EXPECT_TRUE(document.encapsulated);
    EXPECT_EQ(document.versionLine, QStringLiteral("%!PS-Adobe-3.0 EPSF-3.0"));
    EXPECT_EQ(document.title, QStringLiteral("Poster (final) ä"));
    EXPECT_EQ(document.creator, QStringLiteral("Layout 2.0"));
    ASSERT_TRUE(document.boundingBox.has_value());
    EXPECT_EQ(document.boundingBox->right, 300.5);
    EXPECT_EQ(document.boundingBox->top, 400);
    ASSERT_TRUE(document.hiResBoundingBox.has_value());
    EXPECT_TRUE(document.hiResBoundingBox->isEmpty());
    ASSERT_TRUE(document.usableBoundingBox().has_value());
    EXPECT_EQ(document.usableBoundingBox()->left, 10);
    EXPECT_EQ(document.pages, 2);
    EXPECT_EQ(document.documentFonts,
        (QStringList { "Helvetica", "Times-Roman", "Courier", "Palatino" }));
    EXPECT_EQ(document.neededFonts, (QStringList { "Helvetica-Bold", "Minion Pro" }));
    EXPECT_EQ(document.suppliedFonts, QStringList { "MyriadPro-Regular" });
    EXPECT_EQ(document.fonts().size(), 7);

    ASSERT_EQ(document.customColors.size(), 4u);
    EXPECT_EQ(document.customColors[0].name, QStringLiteral("PANTONE 185 C"));
    EXPECT_EQ(document.customColors[0].model, DscCustomColor::Model::Cmyk);
    EXPECT_EQ(document.customColors[0].values, (std::vector<double> { 0, 0.91, 0.76, 0 }));
    EXPECT_EQ(document.customColors[1].name, QStringLiteral("Varnish"));
    EXPECT_EQ(document.customColors[1].model, DscCustomColor::Model::Unspecified);
    EXPECT_EQ(document.customColors[2].name, QStringLiteral("Deep Cyan"));
    EXPECT_EQ(document.customColors[3].model, DscCustomColor::Model::Rgb);
    EXPECT_EQ(document.customColors[3].values, (std::vector<double> { 0.5, 0.25, 1 }));

    ASSERT_TRUE(document.preview.has_value());
    EXPECT_EQ(document.preview->width, 8);
    EXPECT_EQ(document.preview->height, 2);
    EXPECT_EQ(document.preview->data, QByteArray("\xFF\x00\x0F", 3));
    EXPECT_EQ(document.nestedDocuments, 1);
}

INSTANTIATE_TEST_SUITE_P(Endings, DscLineEndings, testing::Values("\n", "\r", "\r\n"),
    [](const testing::TestParamInfo<const char*>& info) {
        return std::string(info.param[0] == '\n' ? "LF" : info.param[1] ? "CRLF" : "CR");
    });

TEST(DscComments, headerEndsAtTheFirstLineOfCode)
{
    const DscDocument document
        = parsed("%!PS-Adobe-2.0\n%%Creator: First\n/x 1 def\n%%Title: Late\n%%Creator: Second\n");
    EXPECT_FALSE(document.encapsulated);
    EXPECT_EQ(document.creator, QStringLiteral("First"));
    EXPECT_TRUE(document.title.isNull());
}

TEST(DscComments, headerWithoutAtEndKeepsTheFirstValue)
{
    const DscDocument document
        = parsed("%!PS-Adobe-3.0\n%%BoundingBox: 1 1 5 5\n%%EndComments\n%%Trailer\n%%BoundingBox: "
                 "0 0 9 9\n%%EOF\n");
    ASSERT_TRUE(document.boundingBox.has_value());
    EXPECT_EQ(document.boundingBox->right, 5);
}

TEST(DscComments, numbersMustBeFinite)
{
    const DscDocument document = parsed("%!PS-Adobe-3.0\n%%BoundingBox: nan 0 1 1\n%%Pages: inf\n"
                                        "%%BeginBinary: nan\n%%Title: After\n");
    EXPECT_FALSE(document.boundingBox.has_value());
    EXPECT_FALSE(document.pages.has_value());
    EXPECT_EQ(document.title, QStringLiteral("After"));
}

TEST(DscComments, dataSectionCountedInLines)
{
    const DscDocument document
        = parsed("%!PS-Adobe-3.0\n%%BeginData: 2 ASCII Lines\n%%Title: A\n%%Title: B\n"
                 "%%Title: C\n");
    EXPECT_EQ(document.title, QStringLiteral("C"));
}

static QByteArray binaryHeader(std::uint32_t psOffset, std::uint32_t psLength,
    std::uint32_t tiffOffset = 0, std::uint32_t tiffLength = 0)
{
    QByteArray header("\xC5\xD0\xD3\xC6", 4);
    for (std::uint32_t value : { psOffset, psLength, 0u, 0u, tiffOffset, tiffLength }) {
        QByteArray field(4, '\0');
        qToLittleEndian(value, field.data());
        header += field;
    }
    return header + QByteArray("\xFF\xFF", 2);
}

// A binary header's sections must lie within the file and hold PostScript where it says.
TEST(DscComments, refusesWithTheKindOfError)
{
    const std::pair<QByteArray, FormatError> cases[] = {
        { "GIF89a", FormatError::NotThisKind },
        { QByteArray("\xC5\xD0\xD3\xC6\x1E\0\0", 7), FormatError::DamagedFile },
        { binaryHeader(30, 1000) + "%!PS", FormatError::DamagedFile },
        { binaryHeader(30, 4, 34, 500) + "%!PS", FormatError::DamagedFile },
        { binaryHeader(30, 4) + "junk", FormatError::DamagedFile },
    };
    for (const auto& [bytes, error] : cases) {
        const auto result = parseDscComments(bytes);
        ASSERT_FALSE(result.ok()) << bytes.toHex().toStdString();
        EXPECT_EQ(result.error(), error) << bytes.toHex().toStdString();
        EXPECT_FALSE(result.reason().isEmpty());
    }
}

TEST(DscComments, binaryHeaderWithTiffPreview)
{
    const QByteArray postScript = "%!PS-Adobe-3.0 EPSF-3.0\r\n%%BoundingBox: 0 0 10 20\r\n";
    const QByteArray tiff("II*\0tiff", 8);
    const DscDocument document
        = parsed(binaryHeader(30, postScript.size(), 30 + postScript.size(), tiff.size())
            + postScript + tiff);
    ASSERT_TRUE(document.binaryHeader.has_value());
    EXPECT_EQ(document.binaryHeader->tiff.offset, 30u + postScript.size());
    EXPECT_FALSE(document.binaryHeader->metafile.present());
    EXPECT_EQ(document.postScriptOffset, 30);
    EXPECT_EQ(document.postScriptLength, postScript.size());
    ASSERT_TRUE(document.boundingBox.has_value());
    EXPECT_EQ(document.boundingBox->top, 20);
}

TEST(DscSamples, illustratorEpsWithBinaryHeader)
{
    const DscDocument document = parsed(formatSample(QStringLiteral("samples/illustrator24.eps")));
    ASSERT_TRUE(document.binaryHeader.has_value());
    EXPECT_EQ(document.postScriptOffset, 32);
    EXPECT_EQ(document.postScriptLength, 331532);
    // Not the creator of the private data after the end of the document.
    EXPECT_EQ(document.creator, QStringLiteral("Adobe Illustrator(R) 24.1"));
    ASSERT_TRUE(document.boundingBox.has_value());
    EXPECT_FALSE(document.usableBoundingBox().has_value());
}

TEST(DscSamples, nestedDocumentsKeepTheirComments)
{
    const DscDocument document
        = parsed(formatSample(QStringLiteral("samples/postscript-exiftool.eps")));
    EXPECT_EQ(document.title, QStringLiteral("c.eps"));
    EXPECT_EQ(document.creator, QStringLiteral("Adobe Photoshop Version 7.0.1"));
    ASSERT_TRUE(document.boundingBox.has_value());
    EXPECT_EQ(document.boundingBox->right, 8);
    ASSERT_TRUE(document.hiResBoundingBox.has_value());
    EXPECT_EQ(document.hiResBoundingBox->top, 8);
    EXPECT_EQ(document.nestedDocuments, 3);
}
