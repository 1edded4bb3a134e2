// SPDX-License-Identifier: GPL-3.0-or-later
// A real FreeHand 1 drawing (tests/data/kinds/freehand1.fh), the refusals, and the SVG half of the
// drawing.
#include "KindsTestData.h"
#include "PreviewerTable.h"
#include "SvgPages.h"

#include <gtest/gtest.h>

using namespace Preview;
using namespace KindsTestData;
using Formats::FormatError;

// FreeHand 1 and 2 are read by libmwaw, the later versions by libfreehand.
TEST(FreeHandPreview, aFreeHand1DrawingIsDrawn)
{
    const QString file = samplePath(QStringLiteral("kinds/freehand1.fh"));
    const auto kind = chooseFileKind(file, QString());
    ASSERT_TRUE(kind.ok()) << kind.reason().toStdString();
    EXPECT_EQ(*kind, Formats::FileKind::FreeHand);
    const auto content = previewerForKind(Formats::FileKind::FreeHand)->preview(file, {});
    ASSERT_TRUE(content.ok()) << content.reason().toStdString();
    ASSERT_EQ(content->pages.size(), 1u);
    const QImage page = content->pages[0].picture();
    ASSERT_FALSE(page.isNull());
    // A US letter page, with black ink on it.
    EXPECT_NEAR(content->pages[0].sizePoints.width(), 612, 1);
    EXPECT_LT(page.convertToFormat(QImage::Format_Grayscale8)
                  .scaled(1, 1, Qt::IgnoreAspectRatio, Qt::SmoothTransformation)
                  .pixelColor(0, 0)
                  .value(),
        250);
    ASSERT_FALSE(content->fonts.empty());
    EXPECT_EQ(content->fonts[0].family, QStringLiteral("Times New Roman"));
}

TEST(FreeHandPreview, refusesWhatItCannotRead)
{
    struct Case {
        const char* name;
        QByteArray bytes;
        FormatError error;
    };
    const Case cases[] = {
        { "garbage", QByteArray(4096, '\x5a'), FormatError::NotThisKind },
        { "swatchExchange", QByteArray("ASEF\0\1\0\0\0\0\0\0", 12), FormatError::NotThisKind },
        // The signature of a FreeHand document with nothing readable behind it.
        { "signatureOnly", QByteArray("AGD3") + QByteArray(600, '\0'), FormatError::DamagedFile },
        { "freeHand3SignatureOnly", QByteArray("FH3") + QByteArray(600, '\x01'),
            FormatError::DamagedFile },
    };
    for (const Case& c : cases) {
        const auto result = previewerForKind(Formats::FileKind::FreeHand)
                                ->preview(fileWith(QStringLiteral("case.fh11"), c.bytes), {});
        ASSERT_FALSE(result.ok()) << c.name;
        EXPECT_EQ(result.error(), c.error) << c.name << ": " << result.reason().toStdString();
    }
}

TEST(FreeHandSvg, fontFamiliesOfAPage)
{
    const QByteArray svg = R"(<svg:svg xmlns:svg="http://www.w3.org/2000/svg">
        <svg:text font-family="Helvetica">a</svg:text>
        <svg:text font-family="'Times New Roman', serif">b</svg:text>
        <svg:g style="fill:#000; font-family: &quot;Futura&quot; ;font-size:12pt">
          <svg:text font-family="Helvetica">c</svg:text>
        </svg:g>
        <svg:rect style="fill:red"/>
    </svg:svg>)";
    EXPECT_EQ(svgFontFamilies(svg),
        (QStringList { QStringLiteral("Helvetica"), QStringLiteral("Times New Roman"),
            QStringLiteral("serif"), QStringLiteral("Futura") }));
    EXPECT_TRUE(svgFontFamilies("<svg:svg xmlns:svg=\"http://www.w3.org/2000/svg\"/>").isEmpty());
}

TEST(FreeHandSvg, pagesDrawOnWhiteWithinTheirSize)
{
    // What libfreehand writes: the svg: prefix, a size in inches and a viewBox in points.
    const QByteArray page = R"(<svg:svg xmlns:svg="http://www.w3.org/2000/svg" width="2in" )"
                            R"(height="1in" viewBox="0 0 144 72">)"
                            R"(<svg:rect x="0" y="0" width="72" height="72" fill="#0000ff"/>)"
                            R"(</svg:svg>)";
    EXPECT_NEAR(svgSizePoints(page).width(), 144, 0.5);
    EXPECT_NEAR(svgSizePoints(page).height(), 72, 0.5);

    const QImage large = renderSvg(page, 4000);
    ASSERT_FALSE(large.isNull());
    EXPECT_EQ(large.size(), QSize(360, 180)); // twice its own size at most
    EXPECT_EQ(QColor(large.pixel(10, 10)), QColor(Qt::blue));
    EXPECT_EQ(QColor(large.pixel(350, 10)), QColor(Qt::white));

    const QImage small = renderSvg(page, 100);
    EXPECT_EQ(small.size(), QSize(100, 50));

    EXPECT_TRUE(renderSvg("not svg", 100).isNull());
}
