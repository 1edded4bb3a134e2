// SPDX-License-Identifier: GPL-3.0-or-later
// A real FreeHand 1 drawing (tests/data/kinds/freehand1.fh).
#include "KindsTestData.h"
#include "PreviewerTable.h"

#include <gtest/gtest.h>

using namespace Preview;
using namespace KindsTestData;

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
