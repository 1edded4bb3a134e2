// SPDX-License-Identifier: GPL-3.0-or-later
// InDesign documents, packages and interchange files. Samples: tests/data/formats/samples and
// tests/data/kinds (origins in tests/data/README.md).
#include "KindsTestData.h"
#include "PreviewerTable.h"

#include <gtest/gtest.h>

using namespace Preview;
using namespace KindsTestData;

namespace {

PreviewContent contentOf(const QString& path, const VTPreviewSettings& settings = {})
{
    return contentAs(Formats::FileKind::Idml, path, settings);
}

const QString NoPagePreviews = QStringLiteral("This document holds no page previews");

QString fontText(const PreviewFont& font)
{
    return QStringList { font.name, font.family, font.style, font.kind }.join(u'|');
}

const PreviewSwatch* swatchNamed(const PreviewContent& content, const QString& name)
{
    for (const PreviewSwatchGroup& group : content.swatchGroups) {
        for (const PreviewSwatch& swatch : group.swatches) {
            if (swatch.name == name)
                return &swatch;
        }
    }
    return nullptr;
}

}

TEST(IdmlPreview, pageThumbnailsFromTheMetadata)
{
    const PreviewContent content
        = contentOf(samplePath(QStringLiteral("formats/samples/idml-4-pages-layers.idml")));
    EXPECT_EQ(content.kindName, QStringLiteral("InDesign Markup document"));
    ASSERT_EQ(content.pages.size(), 2u);
    for (const PreviewPage& page : content.pages) {
        EXPECT_TRUE(page.encoded.startsWith("\xFF\xD8\xFF"));
        EXPECT_FALSE(page.picture().isNull());
    }
    // The spreads hold four pages; the metadata has pictures of two of them.
    EXPECT_EQ(content.pageCount, 4);
    EXPECT_TRUE(
        content.notes.contains(QStringLiteral("Pages 3 and 4 have no preview in the document.")))
        << content.notes.join(u'|').toStdString();
    EXPECT_EQ(content.spreadMode, VTSpreadMode::Spreads); // the InDesign spread mode's default

    VTPreviewSettings onePage;
    onePage.maximumPages = 1;
    const PreviewContent firstOnly = contentOf(
        samplePath(QStringLiteral("formats/samples/idml-4-pages-layers.idml")), onePage);
    EXPECT_EQ(firstOnly.pages.size(), 1u);
    EXPECT_EQ(firstOnly.pagesLeftOut, 1);
}

// The real package links to a photo by the absolute path of the machine it was made on; in a
// packaged job, the photo is found in the job's Links folder.
TEST(IdmlPreview, fontsColoursAndLinksFromTheXml)
{
    const QString job = fileWith(QStringLiteral("job/article.idml"),
        TestEnvironment::readFile(samplePath(QStringLiteral("kinds/idml-article-1photo.idml"))));
    const PreviewContent content = contentOf(job);
    // Fonts.xml lists 26 fonts; the metadata only the 14 the text uses.
    ASSERT_EQ(content.fonts.size(), 26u);
    EXPECT_EQ(fontText(content.fonts[0]), "MinionPro-BoldCn|Minion Pro|Bold Cond|OpenType CFF");

    ASSERT_EQ(content.swatchGroups.size(), 1u);
    // The visible, named swatches; Cyan, Magenta, Yellow and the unnamed colours are hidden.
    EXPECT_EQ(content.swatchGroups[0].swatches.size(), 9u);
    EXPECT_EQ(swatchNamed(content, QStringLiteral("Cyan")), nullptr);
    const PreviewSwatch* blue = swatchNamed(content, QStringLiteral("C=100 M=90 Y=10 K=0"));
    ASSERT_NE(blue, nullptr);
    EXPECT_EQ(blue->values, (std::vector<double> { 1.0, 0.9, 0.1, 0.0 }));
    EXPECT_FALSE(blue->spot);

    ASSERT_EQ(content.links.size(), 1u);
    EXPECT_EQ(content.links[0].path,
        QStringLiteral("/Users/stan/Dropbox/Projets/Slashdev/SimpleIDML/repos/git/simpleidml/"
                       "tests/regressiontests/IDML/media/default.jpg"));
    EXPECT_FALSE(content.links[0].exists);
    EXPECT_EQ(content.pages.size(), 1u);

    const QString photo = fileWith(QStringLiteral("job/Links/default.jpg"), "jpeg");
    const PreviewContent packaged = contentOf(job);
    ASSERT_EQ(packaged.links.size(), 1u);
    EXPECT_TRUE(packaged.links[0].exists);
    EXPECT_EQ(packaged.links[0].path, photo);
}

TEST(InxPreview, coloursFontsAndLinksOfTheSample)
{
    const PreviewContent content
        = contentOf(samplePath(QStringLiteral("formats/samples/interchange-exiftool.inx")));
    EXPECT_EQ(content.kindName, QStringLiteral("InDesign interchange document"));
    const PreviewSwatch* black = swatchNamed(content, QStringLiteral("Black"));
    ASSERT_NE(black, nullptr);
    EXPECT_EQ(black->model, QStringLiteral("CMYK"));
    EXPECT_EQ(black->values, (std::vector<double> { 0, 0, 0, 1 }));
    EXPECT_TRUE(black->process);

    ASSERT_EQ(content.fonts.size(), 1u);
    EXPECT_EQ(fontText(content.fonts[0]), "Times-Roman|Times|Regular|TrueType");

    // The sample's only thumbnail lost its picture data.
    EXPECT_TRUE(content.pages.empty());
    EXPECT_TRUE(content.notes.contains(NoPagePreviews));
}

TEST(InDesignPreview, documentWithoutThumbnailsIsACardWithItsPanels)
{
    // The real packet follows a stale, damaged one in the database pages.
    const QString path = samplePath(QStringLiteral("formats/samples/indesign15.indd"));
    const PreviewContent content = contentAs(Formats::FileKind::InDesign, path);
    EXPECT_FALSE(previewerForKind(Formats::FileKind::InDesign)->thumbnail(path, 128, {}).ok());
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
    ASSERT_EQ(content.swatchGroups[0].swatches.size(), 3u);
    EXPECT_EQ(content.swatchGroups[0].swatches[0].name, QStringLiteral("Black"));
    EXPECT_EQ(content.swatchGroups[0].swatches[0].model, QStringLiteral("CMYK"));
}
