// SPDX-License-Identifier: GPL-3.0-or-later
// The generator's command line, end to end: the executable in its bundle, run as a process.
#include "GeneratorProcess.h"
#include "PropertyList.h"
#include "TestEnvironment.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QImage>
#include <QRegularExpression>
#include <QUrl>
#include <functional>
#include <gtest/gtest.h>

using namespace GeneratorProcess;

namespace {

const QString IllustratorUti = QStringLiteral("com.adobe.illustrator.ai-image");
const QString EpsUti = QStringLiteral("com.adobe.encapsulated-postscript");

QString copyToHome(const QString& source, const QString& name, qsizetype keepBytes = -1)
{
    QByteArray bytes = TestEnvironment::readFile(source);
    if (keepBytes >= 0)
        bytes.truncate(keepBytes);
    const QString path = TestEnvironment::home() + QStringLiteral("/documents/") + name;
    TestEnvironment::writeFile(path, bytes);
    return path;
}

QStringList pictureLinks(const QString& html)
{
    QStringList links;
    static const QRegularExpression source(QStringLiteral("<img src=\"([^\"]+)\""));
    for (auto it = source.globalMatch(html); it.hasNext();)
        links.append(it.next().captured(1));
    return links;
}

struct KindCase {
    const char* name;
    QString file; // a path, or a name under the test's home made by prepare
    QString uti;
    QString kindName;
    int pages;
    QString pictureSuffix;
};

// The Illustrator 88 EPS named as an Illustrator document: the PostScript of older versions.
QString postScriptIllustrator() { return copyToHome(formatsSample("illustrator88.eps"), "old.ai"); }

class PreviewOfEachKind : public testing::TestWithParam<KindCase> { };

TEST_P(PreviewOfEachKind, WritesThePageAndItsPicturesIntoTheFolderOnly)
{
    const KindCase& c = GetParam();
    const QString file = c.file.isEmpty() ? postScriptIllustrator() : c.file;
    const QString out = TestEnvironment::home() + QStringLiteral("/out");
    const QString work = TestEnvironment::home() + QStringLiteral("/work");
    QDir().mkpath(work);
    const QStringList homeBefore = filesBelow(TestEnvironment::home());

    const Outcome run = runGenerator({ "preview", file, "--uti", c.uti, "--out", out }, work);

    ASSERT_EQ(run.exitCode, 0) << run.standardError.toStdString();
    EXPECT_TRUE(run.standardError.isEmpty()) << run.standardError.toStdString();
    const QString html = QString::fromUtf8(TestEnvironment::readFile(out + "/index.html"));
    EXPECT_TRUE(html.contains(QStringLiteral("<p class=\"kind\">%1</p>").arg(c.kindName)))
        << html.left(2000).toStdString();
    const QStringList pictures = pictureLinks(html);
    ASSERT_EQ(pictures.size(), c.pages);
    for (const QString& picture : pictures) {
        EXPECT_TRUE(picture.endsWith(c.pictureSuffix)) << picture.toStdString();
        EXPECT_FALSE(QImage(out + "/" + picture).isNull()) << picture.toStdString();
    }
    // Nothing but the page and its pictures, no temporary files, nothing elsewhere in the home.
    QStringList expected = pictures;
    expected.append(QStringLiteral("index.html"));
    expected.sort();
    EXPECT_EQ(filesBelow(out), expected);
    QStringList homeAfter = filesBelow(TestEnvironment::home());
    homeAfter.removeIf([](const QString& path) { return path.startsWith(u"out/"); });
    EXPECT_EQ(homeAfter, homeBefore);
}

INSTANTIATE_TEST_SUITE_P(Kinds, PreviewOfEachKind,
    testing::Values(KindCase { "IllustratorWithPdfContent", generatorData("illustrator-normal.ai"),
                        IllustratorUti, "Illustrator document", 1, ".png" },
        KindCase { "IllustratorSavedWithoutPdfContent",
            generatorData("illustrator-without-pdf-content.ai"), IllustratorUti,
            "Illustrator document", 1, ".jpg" },
        KindCase { "PdfSavedByIllustratorWithoutType", generatorData("illustrator-saved-as.pdf"),
            "", "PDF saved by Illustrator", 1, ".png" },
        KindCase { "IllustratorWithFiveArtboards", generatorData("illustrator-like-5-pages.ai"),
            IllustratorUti, "Illustrator document", 5, ".png" },
        KindCase { "EpsWithBinaryHeader", formatsSample("illustrator24.eps"), EpsUti,
            "Encapsulated PostScript", 1, ".png" },
        KindCase { "EpsOfIllustrator88", formatsSample("illustrator88.eps"), EpsUti,
            "Encapsulated PostScript", 1, ".png" },
        KindCase { "EpsWithNestedDocuments", formatsSample("postscript-exiftool.eps"), "",
            "Encapsulated PostScript", 1, ".png" },
        KindCase { "IllustratorPostScript", "", IllustratorUti, "Illustrator document (PostScript)",
            1, ".png" }),
    [](const auto& info) { return std::string(info.param.name); });

TEST(PreviewLinks, AnExistingLinkedFileLinksToTheApplication)
{
    const QString document
        = copyToHome(generatorData("illustrator-like-5-pages.ai"), "Mes documents/poster.ai");
    TestEnvironment::writeFile(
        TestEnvironment::home() + "/documents/Mes documents/links/photo one.png", "png");
    const Outcome run
        = runGenerator({ "preview", document, "--out", TestEnvironment::home() + "/out" });
    ASSERT_EQ(run.exitCode, 0) << run.standardError.toStdString();
    const QString html
        = QString::fromUtf8(TestEnvironment::readFile(TestEnvironment::home() + "/out/index.html"));
    const QString escapedHome
        = QString::fromLatin1(QUrl::toPercentEncoding(TestEnvironment::home()));
    EXPECT_TRUE(html.contains(
        QStringLiteral("<a href=\"tolvane://reveal/image?path=%1%2Fdocuments%2FMes%20documents"
                       "%2Flinks%2Fphoto%20one.png\"")
            .arg(escapedHome)))
        << html.toStdString();
    EXPECT_TRUE(html.contains(QStringLiteral("missing image.tif <span>(missing)</span>")));
}

struct FailureCase {
    const char* name;
    std::function<QStringList()> arguments;
    int exitCode;
    QString words; // the start of the one line on stderr
};

QString garbage(const char* name)
{
    const QString path = TestEnvironment::home() + QStringLiteral("/documents/") + name;
    TestEnvironment::writeFile(
        path, QByteArray("just some words, and then \x01\x02\x03 bytes\n").repeated(40));
    return path;
}

// The document saved without PDF content, with its thumbnails made unreadable: nothing to show.
QString out() { return TestEnvironment::home() + QStringLiteral("/out"); }

class FailingRun : public testing::TestWithParam<FailureCase> { };

TEST_P(FailingRun, ExitsWithItsStatusAndOneLineWhy)
{
    const FailureCase& c = GetParam();
    const Outcome run = runGenerator(c.arguments());
    EXPECT_EQ(run.exitCode, c.exitCode) << run.standardError.toStdString();
    EXPECT_TRUE(run.standardError.startsWith(c.words + QStringLiteral(": ")))
        << run.standardError.toStdString();
    EXPECT_EQ(run.standardError.count(u'\n'), 1) << run.standardError.toStdString();
    EXPECT_TRUE(filesBelow(out()).isEmpty()) << filesBelow(out()).join(u' ').toStdString();
}

INSTANTIATE_TEST_SUITE_P(Statuses, FailingRun,
    testing::Values(FailureCase { "GarbageClaimedAsIllustrator",
                        [] {
                            return QStringList { "preview", garbage("notes.ai"), "--uti",
                                IllustratorUti, "--out", out() };
                        },
                        3, "not a file of this kind" },
        FailureCase { "GarbageWithoutType",
            [] {
                return QStringList { "preview", garbage("notes.bin"), "--out", out() };
            },
            3, "not a file of this kind" },
        FailureCase { "SwatchFileClaimedAsEps",
            [] {
                return QStringList { "preview",
                    TestEnvironment::dataPath("formats/ase/one-color.ase"), "--uti", EpsUti,
                    "--out", out() };
            },
            3, "not a file of this kind" },
        FailureCase { "IllustratorCutInHalf",
            [] {
                return QStringList { "preview",
                    copyToHome(generatorData("illustrator-normal.ai"), "half.ai", 700000), "--uti",
                    IllustratorUti, "--out", out() };
            },
            4, "damaged file" },
        FailureCase { "BinaryEpsCutShort",
            [] {
                return QStringList { "preview",
                    copyToHome(formatsSample("illustrator24.eps"), "cut.eps", 4000), "--uti",
                    EpsUti, "--out", out() };
            },
            4, "damaged file" },
        FailureCase { "ThumbnailOfACutIllustrator",
            [] {
                return QStringList { "thumbnail",
                    copyToHome(generatorData("illustrator-saved-as.pdf"), "cut.pdf", 5000),
                    "--size", "64", "--out", out() + "/t.png" };
            },
            4, "damaged file" },
        FailureCase { "NoArguments", [] { return QStringList {}; }, 2, "usage" },
        FailureCase { "PreviewWithoutOutput",
            [] {
                return QStringList { "preview", generatorData("illustrator-normal.ai") };
            },
            2, "usage" },
        FailureCase { "ThumbnailWithoutSize",
            [] {
                return QStringList { "thumbnail", generatorData("illustrator-normal.ai"), "--out",
                    out() + "/t.png" };
            },
            2, "usage" },
        FailureCase { "ThumbnailOfSizeZero",
            [] {
                return QStringList { "thumbnail", generatorData("illustrator-normal.ai"), "--size",
                    "0", "--out", out() + "/t.png" };
            },
            2, "usage" },
        FailureCase { "UnknownOption",
            [] {
                return QStringList { "preview", generatorData("illustrator-normal.ai"), "--verbose",
                    "--out", out() };
            },
            2, "usage" },
        FailureCase { "MissingFile",
            [] {
                return QStringList { "preview", TestEnvironment::home() + "/nowhere.ai", "--out",
                    out() };
            },
            1, "failed" }),
    [](const auto& info) { return std::string(info.param.name); });

struct ThumbnailCase {
    const char* name;
    std::function<QString()> file;
    int size;
    bool fills; // the picture is large enough to fill the size on its longer side
};

class ThumbnailOfEachKind : public testing::TestWithParam<ThumbnailCase> { };

TEST_P(ThumbnailOfEachKind, FitsTheSize)
{
    const ThumbnailCase& c = GetParam();
    const QString png = TestEnvironment::home() + QStringLiteral("/thumbnails/t.png");
    QDir().mkpath(TestEnvironment::home() + QStringLiteral("/thumbnails"));
    const Outcome run
        = runGenerator({ "thumbnail", c.file(), "--size", QString::number(c.size), "--out", png });
    ASSERT_EQ(run.exitCode, 0) << run.standardError.toStdString();
    const QImage image(png, "PNG");
    ASSERT_FALSE(image.isNull());
    EXPECT_LE(std::max(image.width(), image.height()), c.size);
    if (c.fills) {
        EXPECT_GE(std::max(image.width(), image.height()), c.size - 2);
    }
    // Opaque, so that it shows on a dark file-manager background too.
    EXPECT_FALSE(image.hasAlphaChannel());
    EXPECT_EQ(filesBelow(TestEnvironment::home() + QStringLiteral("/thumbnails")),
        QStringList { "t.png" });
}

// Artboards are white paper: around the artwork the picture is opaque white, not transparent.
TEST(PreviewPictures, ArtboardsAreDrawnOnPaper)
{
    const QString out = TestEnvironment::home() + QStringLiteral("/out");
    const Outcome run
        = runGenerator({ "preview", generatorData("illustrator-like-5-pages.ai"), "--out", out });
    ASSERT_EQ(run.exitCode, 0) << run.standardError.toStdString();
    const QImage page(out + QStringLiteral("/page-1.png"));
    ASSERT_FALSE(page.isNull());
    EXPECT_EQ(page.pixel(2, 2), qRgba(255, 255, 255, 255));
}

INSTANTIATE_TEST_SUITE_P(Kinds, ThumbnailOfEachKind,
    testing::Values(ThumbnailCase { "IllustratorPdf",
                        [] { return generatorData("illustrator-like-5-pages.ai"); }, 128, true },
        ThumbnailCase { "IllustratorWithoutPdfContent",
            [] { return generatorData("illustrator-without-pdf-content.ai"); }, 64, true },
        ThumbnailCase { "Eps", [] { return formatsSample("illustrator88.eps"); }, 100, true },
        ThumbnailCase {
            "IllustratorPostScript", [] { return postScriptIllustrator(); }, 256, true },
        ThumbnailCase {
            "TinyEps", [] { return formatsSample("postscript-exiftool.eps"); }, 512, false }),
    [](const auto& info) { return std::string(info.param.name); });

TEST(GeneratorBundle, DeclaresEveryTypeItPreviews)
{
    const auto info = PropertyList::readDictionary(QStringLiteral(VISTREL_INFO_PLIST));
    ASSERT_TRUE(info.has_value());
    EXPECT_EQ(
        info->value("CFBundleIdentifier"), QVariant(QStringLiteral("app.tolvane.VistrelPro")));
    EXPECT_EQ(QFileInfo(QStringLiteral(VISTREL_EXECUTABLE)).fileName(),
        info->value("CFBundleExecutable").toString());
    for (const char* key : { "CFBundleName", "CFBundleShortVersionString", "CFBundleVersion",
             "QXReleaseVersion", "QXReleaseStage" })
        EXPECT_FALSE(info->value(key).toString().isEmpty()) << key;

    const QVariantList documentTypes = info->value("CFBundleDocumentTypes").toList();
    ASSERT_EQ(documentTypes.size(), 1);
    const QVariantList contentTypes = documentTypes[0].toMap().value("LSItemContentTypes").toList();
    QStringList declared;
    for (const QVariant& type : contentTypes)
        declared.append(type.toString());
    for (const char* identifier : { "com.adobe.illustrator.ai-image",
             "com.adobe.illustrator.ait-template", "dyn.ah62d4rv4ge80c4py",
             "com.adobe.indesign-document", "com.adobe.indesign.indd-document",
             "dyn.ah62d4rv4gk8yw5wequ", "dyn.ah62d4rv4ge80w5xequ", "dyn.ah62d4rv4ge8xa",
             "com.adobe.indesign-template", "com.adobe.indesign.indt-template",
             "dyn.ah62d4rv4ge80w5xesu", "com.adobe.indesign-interchange",
             "com.adobe.indesign.inx-interchange", "com.adobe.encapsulated-postscript",
             "com.macromedia.freehand.fh11-image", "com.adobe.ase-file", "dyn.ah62d4rv4ge80c65f" })
        EXPECT_TRUE(declared.contains(QLatin1StringView(identifier))) << identifier;

    QStringList extensions;
    for (const QVariant& type : info->value("UTImportedTypeDeclarations").toList()) {
        const QVariantMap declaration = type.toMap();
        EXPECT_TRUE(declared.contains(declaration.value("UTTypeIdentifier").toString()));
        EXPECT_FALSE(declaration.value("UTTypeDescription").toString().isEmpty());
        for (const QVariant& extension : declaration.value("UTTypeTagSpecification")
                                             .toMap()
                                             .value("public.filename-extension")
                                             .toList())
            extensions.append(extension.toString());
    }
    for (const char* extension : { "ai", "ait", "indd", "indt", "inx", "idml", "eps", "epsf", "fh",
             "fh3", "fh7", "fh11", "ft11", "ase" })
        EXPECT_TRUE(extensions.contains(QLatin1StringView(extension))) << extension;
}

}
