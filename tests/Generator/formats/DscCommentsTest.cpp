// SPDX-License-Identifier: GPL-3.0-or-later
// Sample files: tests/data/formats/samples (see tests/data/README.md for their origins).
#include "DscComments.h"

#include "TestEnvironment.h"

#include <QtEndian>
#include <gtest/gtest.h>

using namespace Formats;

namespace {

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

TEST(DscLineEndings, readTheSameComments)
{
    for (const char* ending : { "\n", "\r", "\r\n" }) {
        SCOPED_TRACE(QByteArray(ending).toHex().toStdString());
        const auto result = parseDscComments(QByteArray(FullDocument).replace("\n", ending));
        ASSERT_TRUE(result.ok()) << result.reason().toStdString();
        const DscDocument& document = result.value();
        EXPECT_TRUE(document.encapsulated);
        EXPECT_EQ(document.title, QStringLiteral("Poster (final) ä"));
        EXPECT_EQ(document.creator, QStringLiteral("Layout 2.0"));
        ASSERT_TRUE(document.boundingBox.has_value());
        EXPECT_EQ(document.boundingBox->right, 300.5);
        ASSERT_TRUE(document.usableBoundingBox().has_value());
        EXPECT_EQ(document.usableBoundingBox()->left, 10);
        EXPECT_EQ(document.pages, 2);
        EXPECT_EQ(document.documentFonts,
            (QStringList { "Helvetica", "Times-Roman", "Courier", "Palatino" }));
        EXPECT_EQ(document.neededFonts, (QStringList { "Helvetica-Bold", "Minion Pro" }));
        EXPECT_EQ(document.suppliedFonts, QStringList { "MyriadPro-Regular" });

        ASSERT_EQ(document.customColors.size(), 4u);
        EXPECT_EQ(document.customColors[0].model, DscCustomColor::Model::Cmyk);
        EXPECT_EQ(document.customColors[0].values, (std::vector<double> { 0, 0.91, 0.76, 0 }));
        EXPECT_EQ(document.customColors[1].model, DscCustomColor::Model::Unspecified);
        EXPECT_EQ(document.customColors[3].model, DscCustomColor::Model::Rgb);
        EXPECT_EQ(document.customColors[3].values, (std::vector<double> { 0.5, 0.25, 1 }));

        ASSERT_TRUE(document.preview.has_value());
        EXPECT_EQ(document.preview->width, 8);
        EXPECT_EQ(document.preview->data, QByteArray("\xFF\x00\x0F", 3));
        EXPECT_EQ(document.nestedDocuments, 1);
    }
}

// A binary header with a PostScript section and no others.
static QByteArray binaryHeader(std::uint32_t psOffset, std::uint32_t psLength)
{
    QByteArray header("\xC5\xD0\xD3\xC6", 4);
    for (std::uint32_t value : { psOffset, psLength, 0u, 0u, 0u, 0u }) {
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
        { binaryHeader(30, 4) + "junk", FormatError::DamagedFile },
    };
    for (const auto& [bytes, error] : cases) {
        const auto result = parseDscComments(bytes);
        ASSERT_FALSE(result.ok()) << bytes.toHex().toStdString();
        EXPECT_EQ(result.error(), error) << bytes.toHex().toStdString();
        EXPECT_FALSE(result.reason().isEmpty());
    }
}
