// SPDX-License-Identifier: GPL-3.0-or-later
// Samples: tests/data/formats/samples (origins in tests/data/README.md).
#include "InDesignFileBuilder.h"
#include "KindsTestData.h"
#include "PreviewerTable.h"

#include <gtest/gtest.h>

using namespace Preview;
using namespace KindsTestData;
using Formats::FormatError;

namespace {

Formats::ParseResult<PreviewContent> previewed(
    const QString& path, const VTPreviewSettings& settings = {})
{
    return previewAs(Formats::FileKind::InDesign, path, settings);
}

PreviewContent contentOf(const QString& path, const VTPreviewSettings& settings = {})
{
    return contentAs(Formats::FileKind::InDesign, path, settings);
}

// The metadata of the IDML sample, whose two page thumbnails an InDesign document carries the
// same way.
QByteArray packetWithPageThumbnails()
{
    const QByteArray xml
        = sample(QStringLiteral("formats/samples/idml-4-pages-layers.metadata.xml"));
    return xml.mid(xml.indexOf("<?xpacket begin="));
}

const QString NoPagePreviews = QStringLiteral("This document holds no page previews");

}

TEST(InDesignPreview, documentWithoutThumbnailsIsACardWithItsPanels)
{
    // The real packet follows a stale, damaged one in the database pages.
    const PreviewContent content
        = contentOf(samplePath(QStringLiteral("formats/samples/indesign15.indd")));
    EXPECT_EQ(content.title, QStringLiteral("indesign15.indd"));
    EXPECT_EQ(content.kindName, QStringLiteral("InDesign document"));
    EXPECT_TRUE(content.pages.empty());
    EXPECT_TRUE(content.notes.contains(NoPagePreviews));
    ASSERT_EQ(content.fonts.size(), 3u);
    EXPECT_EQ(content.fonts[0].name, QStringLiteral("MinionPro-Regular"));
    bool creatorShown = false;
    for (const PreviewFact& fact : content.facts)
        creatorShown |= fact.value == u"Adobe InDesign 15.0 (Macintosh)";
    EXPECT_TRUE(creatorShown);
    // InDesign writes its swatches as the colorants of the XMP.
    ASSERT_EQ(content.swatchGroups.size(), 1u);
    QStringList swatches;
    for (const PreviewSwatch& swatch : content.swatchGroups[0].swatches)
        swatches.append(swatch.name);
    EXPECT_EQ(swatches, QStringList({ "Black", "Paper", "Registration" }));
    EXPECT_EQ(content.swatchGroups[0].swatches[0].model, QStringLiteral("CMYK"));
}

// A template is named so.
TEST(InDesignPreview, pageThumbnailsBecomePages)
{
    const QString path = fileWith(QStringLiteral("layout.indt"),
        InDesignFileBuilder().xmpObject(packetWithPageThumbnails()).bytes());
    const PreviewContent content = contentOf(path);
    EXPECT_EQ(content.kindName, QStringLiteral("InDesign template"));
    ASSERT_EQ(content.pages.size(), 2u);
    for (const PreviewPage& page : content.pages) {
        EXPECT_EQ(page.encodedFormat.toLower(), QStringLiteral("jpg"));
        EXPECT_FALSE(page.picture().isNull());
    }
    EXPECT_FALSE(content.notes.contains(NoPagePreviews));
    EXPECT_EQ(content.fonts.size(), 14u);

    const PreviewContent firstOnly = contentOf(path, withPageLimit(1));
    EXPECT_EQ(firstOnly.pages.size(), 1u);
    EXPECT_EQ(firstOnly.pagesLeftOut, 1);

    const auto thumbnail = previewerForKind(Formats::FileKind::InDesign)->thumbnail(path, 64, {});
    ASSERT_TRUE(thumbnail.ok()) << thumbnail.reason().toStdString();
    EXPECT_LE(std::max(thumbnail->width(), thumbnail->height()), 64);
}

// A big-endian container without thumbnails, and one without metadata at all.
TEST(InDesignPreview, aContainerWithoutPagePreviewsSaysSo)
{
    const PreviewContent bigEndian
        = contentOf(samplePath(QStringLiteral("formats/samples/indesign-exiftool.indd")));
    EXPECT_TRUE(bigEndian.pages.empty());
    EXPECT_TRUE(bigEndian.notes.contains(NoPagePreviews));
    const PreviewContent content = contentOf(fileWith(
        QStringLiteral("bare.indd"), InDesignFileBuilder().object("not metadata").bytes()));
    EXPECT_TRUE(content.pages.empty());
    EXPECT_TRUE(content.notes.contains(NoPagePreviews));
    EXPECT_TRUE(content.fonts.empty());
}

TEST(InDesignPreview, noThumbnailWithoutPagePreviews)
{
    const auto thumbnail
        = previewerForKind(Formats::FileKind::InDesign)
              ->thumbnail(samplePath(QStringLiteral("formats/samples/indesign15.indd")), 128, {});
    EXPECT_FALSE(thumbnail.ok());
}

TEST(InDesignPreview, filesOfOtherKindsAndCutFilesFail)
{
    const QByteArray whole = sample(QStringLiteral("formats/samples/indesign-exiftool.indd"));
    struct Case {
        const char* name;
        QByteArray bytes;
        FormatError error;
    };
    const Case cases[] = {
        { "garbage", QByteArray(9000, 'x'), FormatError::NotThisKind },
        { "cutInTheMasterPages", whole.left(5000), FormatError::DamagedFile },
    };
    for (const Case& c : cases) {
        const auto result = previewed(fileWith(QStringLiteral("case.indd"), c.bytes));
        ASSERT_FALSE(result.ok()) << c.name;
        EXPECT_EQ(result.error(), c.error) << c.name << ": " << result.reason().toStdString();
    }
}
