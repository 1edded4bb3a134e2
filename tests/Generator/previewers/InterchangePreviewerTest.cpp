// SPDX-License-Identifier: GPL-3.0-or-later
// Samples: tests/data/formats/samples and tests/data/kinds (origins in tests/data/README.md).
#include "IdmlPackage.h"
#include "IdmlResources.h"
#include "InxDocument.h"
#include "KindsTestData.h"
#include "PreviewerTable.h"
#include "ZipFileBuilder.h"

#include <gtest/gtest.h>

using namespace Preview;
using namespace KindsTestData;
using Formats::FormatError;

namespace {

Formats::ParseResult<PreviewContent> previewed(
    const QString& path, const VTPreviewSettings& settings = {})
{
    return previewAs(Formats::FileKind::Idml, path, settings);
}

PreviewContent contentOf(const QString& path, const VTPreviewSettings& settings = {})
{
    return contentAs(Formats::FileKind::Idml, path, settings);
}

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

QByteArray idmlWith(const QString& partName, const QByteArray& part)
{
    return ZipFileBuilder()
        .stored(QStringLiteral("mimetype"),
            QByteArray(Formats::IdmlMimeType.data(), Formats::IdmlMimeType.size()))
        .deflated(partName, part)
        .bytes();
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
    EXPECT_EQ(content.pagesLeftOut, 0);
    EXPECT_FALSE(content.notes.contains(QStringLiteral("This document holds no page previews")));
    // The spreads hold four pages; the metadata has pictures of two of them.
    EXPECT_EQ(content.pageCount, 4);
    EXPECT_TRUE(
        content.notes.contains(QStringLiteral("Pages 3 and 4 have no preview in the document.")))
        << content.notes.join(u'|').toStdString();
    EXPECT_EQ(content.spreadMode, VTSpreadMode::Spreads); // the InDesign spread mode's default

    const PreviewContent firstOnly = contentOf(
        samplePath(QStringLiteral("formats/samples/idml-4-pages-layers.idml")), withPageLimit(1));
    EXPECT_EQ(firstOnly.pages.size(), 1u);
    EXPECT_EQ(firstOnly.pagesLeftOut, 1);
}

// Tools that zip a package again put its "mimetype" entry anywhere: the package is one by its
// content, without a type identifier.
TEST(IdmlPreview, aPackageZippedAgainIsRecognisedByItsContent)
{
    const QByteArray original = sample(QStringLiteral("formats/samples/idml-4-pages-layers.idml"));
    const auto entries = Formats::readZip(original, [](const QString&) { return true; });
    ASSERT_TRUE(entries.ok()) << entries.reason().toStdString();
    ZipFileBuilder rezipped;
    for (auto name = entries->names.crbegin(); name != entries->names.crend(); ++name)
        rezipped.deflated(*name, entries->entries.at(*name));
    const QString file = fileWith(QStringLiteral("rezipped.idml"), rezipped.bytes());
    const auto kind = chooseFileKind(file, QString());
    ASSERT_TRUE(kind.ok()) << kind.reason().toStdString();
    EXPECT_EQ(*kind, Formats::FileKind::Idml);
    EXPECT_EQ(contentOf(file).pages.size(), 2u);
}

// The real package links to a photo by the absolute path of the machine it was made on; in a
// packaged job, the photo is found in the job's Links folder.
TEST(IdmlPreview, fontsColoursAndLinksFromTheXml)
{
    const QString job = fileWith(QStringLiteral("job/article.idml"),
        sample(QStringLiteral("kinds/idml-article-1photo.idml")));
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
    EXPECT_EQ(blue->model, QStringLiteral("CMYK"));
    EXPECT_EQ(blue->values, (std::vector<double> { 1.0, 0.9, 0.1, 0.0 }));
    EXPECT_TRUE(blue->process);
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

TEST(IdmlPreview, aLinkBesideTheDocumentExists)
{
    const QByteArray spread
        = R"(<Spread><Rectangle><Image><Link Self="u1" LinkResourceURI="file:photo%20one.jpg"/>)"
          R"(</Image></Rectangle><Link LinkResourceURI="file:///nowhere/else.tif"/></Spread>)";
    const QString path = fileWith(
        QStringLiteral("doc.idml"), idmlWith(QStringLiteral("Spreads/Spread_u1.xml"), spread));
    fileWith(QStringLiteral("photo one.jpg"), "jpeg");
    const PreviewContent content = contentOf(path);
    ASSERT_EQ(content.links.size(), 2u);
    EXPECT_EQ(content.links[0].path, TestEnvironment::home() + QStringLiteral("/photo one.jpg"));
    EXPECT_TRUE(content.links[0].exists);
    EXPECT_EQ(content.links[1].path, QStringLiteral("/nowhere/else.tif"));
    EXPECT_FALSE(content.links[1].exists);
    EXPECT_TRUE(content.notes.contains(QStringLiteral("This document holds no page previews")));
}

TEST(IdmlPreview, hostileAndForeignPackagesAreRefused)
{
    const std::pair<QByteArray, FormatError> cases[] = {
        { ZipFileBuilder()
                .stored(QStringLiteral("mimetype"), "application/vnd.adobe.indesign-idml-package")
                .deflated(QStringLiteral("Resources/Fonts.xml"), QByteArray(4 * 1024 * 1024, ' '))
                .declareSize(100)
                .bytes(),
            FormatError::UnsupportedVariant },
        { ZipFileBuilder().stored(QStringLiteral("mimetype"), "application/epub+zip").bytes(),
            FormatError::NotThisKind },
        { sample(QStringLiteral("kinds/idml-article-1photo.idml")).left(20000),
            FormatError::DamagedFile },
    };
    for (const auto& [bytes, error] : cases) {
        const auto result = previewed(fileWith(QStringLiteral("hostile.idml"), bytes));
        ASSERT_FALSE(result.ok());
        EXPECT_EQ(result.error(), error) << result.reason().toStdString();
    }
}

TEST(IdmlPreview, aBrokenPartKeepsWhatCameBeforeAndSaysSo)
{
    const QByteArray graphic
        = R"(<idPkg:Graphic xmlns:idPkg="urn:p">)"
          R"(<Color Name="Ink" Model="Spot" Space="RGB" ColorValue="255 128 0"/>)"
          R"(<Color Name="Cut" Model=)";
    const PreviewContent content = contentOf(fileWith(
        QStringLiteral("broken.idml"), idmlWith(QStringLiteral("Resources/Graphic.xml"), graphic)));
    const PreviewSwatch* ink = swatchNamed(content, QStringLiteral("Ink"));
    ASSERT_NE(ink, nullptr);
    EXPECT_TRUE(ink->spot);
    EXPECT_EQ(ink->values, (std::vector<double> { 1.0, 128.0 / 255, 0.0 }));
    ASSERT_EQ(content.notes.filter(QStringLiteral("Resources/Graphic.xml")).size(), 1);
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
    EXPECT_TRUE(content.notes.contains(QStringLiteral("This document holds no page previews")));
}

TEST(InxPreview, aCutDocumentShowsWhatCameBefore)
{
    const QByteArray whole = sample(QStringLiteral("formats/samples/interchange-exiftool.inx"));
    const QByteArray cut = whole.left(whole.indexOf("<fFam") + 10);
    const PreviewContent content = contentOf(fileWith(QStringLiteral("cut.inx"), cut));
    EXPECT_NE(swatchNamed(content, QStringLiteral("Black")), nullptr);
    EXPECT_EQ(content.notes.filter(QStringLiteral("Not read: the XML breaks off")).size(), 1);
}

TEST(InxPreview, xmlWithoutTheInterchangeHeaderIsAnotherKind)
{
    const char* documents[] = {
        "<?xml version=\"1.0\"?><docu/><?aid style=\"33\"?>", // the header after the element
        "plain text",
    };
    for (const char* document : documents) {
        const auto result = previewed(fileWith(QStringLiteral("other.inx"), document));
        ASSERT_FALSE(result.ok()) << document;
        EXPECT_EQ(result.error(), FormatError::NotThisKind) << document;
    }
}

TEST(InxValues, typedValuesAndLists)
{
    EXPECT_EQ(Formats::inxText(QStringLiteral("c_Times")), QStringLiteral("Times"));
    EXPECT_EQ(Formats::inxText(QStringLiteral("rk_English: USA")), QStringLiteral("English: USA"));
    EXPECT_EQ(Formats::inxText(QStringLiteral("c_Under_score")), QStringLiteral("Under_score"));
    EXPECT_EQ(Formats::inxText(QStringLiteral("k_")), QString());
    EXPECT_EQ(Formats::inxText(QStringLiteral("untagged")), QStringLiteral("untagged"));

    EXPECT_EQ(Formats::inxNumbers(QStringLiteral("x_3_D_50_D_-20_D_30.5")),
        (std::vector<double> { 50, -20, 30.5 }));
    EXPECT_TRUE(Formats::inxNumbers(QStringLiteral("x_0")).empty());
    EXPECT_TRUE(Formats::inxNumbers(QStringLiteral("x_2_D_1")).empty()); // fewer than it says
    EXPECT_TRUE(Formats::inxNumbers(QStringLiteral("x_1_D_one")).empty());
    EXPECT_TRUE(Formats::inxNumbers(QStringLiteral("D_5")).empty());
}
