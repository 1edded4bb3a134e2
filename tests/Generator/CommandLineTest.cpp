// SPDX-License-Identifier: GPL-3.0-or-later
// The generator's command line, end to end: the executable in its bundle, run as a process.
#include "GeneratorProcess.h"
#include "TestEnvironment.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QImage>
#include <QProcess>
#include <QRegularExpression>
#include <QUrl>
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

// Each kind's page and thumbnail, written into their own files only: no temporary files, nothing
// elsewhere in the home, not even the runtime folder Qt makes without XDG_RUNTIME_DIR.
TEST(EachKind, WritesItsPageAndThumbnailAndNothingElse)
{
    struct Case {
        QString file;
        QString uti;
        const char* kindName;
        int pages;
        const char* pictureSuffix;
        int thumbnailSize; // 0: none made
    };
    const Case cases[] = {
        { generatorData("illustrator-normal.ai"), IllustratorUti, "Illustrator document", 1, ".png",
            128 },
        { generatorData("illustrator-without-pdf-content.ai"), IllustratorUti,
            "Illustrator document", 1, ".jpg", 64 },
        { generatorData("illustrator-saved-as.pdf"), "", "PDF saved by Illustrator", 1, ".png", 0 },
        { generatorData("illustrator-like-5-pages.ai"), IllustratorUti, "Illustrator document", 5,
            ".png", 0 },
        { formatsSample("illustrator24.eps"), EpsUti, "Encapsulated PostScript", 1, ".png", 0 },
        { formatsSample("illustrator88.eps"), EpsUti, "Encapsulated PostScript", 1, ".png", 100 },
        // The largest thumbnail there is.
        { formatsSample("postscript-exiftool.eps"), "", "Encapsulated PostScript", 1, ".png",
            4096 },
        // The Illustrator 88 EPS named as an Illustrator document: the PostScript of older
        // versions.
        { copyToHome(formatsSample("illustrator88.eps"), "old.ai"), IllustratorUti,
            "Illustrator document (PostScript)", 1, ".png", 256 },
    };
    const QString work = TestEnvironment::home() + QStringLiteral("/work");
    QDir().mkpath(work);
    const QStringList homeBefore = filesBelow(TestEnvironment::home());
    const RunOptions options { .workingFolder = work,
        .environment = [](QProcessEnvironment& environment) {
            environment.remove(QStringLiteral("XDG_RUNTIME_DIR"));
        } };
    int index = 0;
    for (const Case& c : cases) {
        SCOPED_TRACE(c.file.toStdString());
        const QString folder = out() + QString::number(++index);
        const Outcome run
            = runGenerator({ "preview", c.file, "--uti", c.uti, "--out", folder }, options);
        ASSERT_EQ(run.exitCode, 0) << run.standardError.toStdString();
        EXPECT_TRUE(run.standardError.isEmpty()) << run.standardError.toStdString();
        const QString html = page(folder);
        EXPECT_TRUE(html.contains(QStringLiteral("<p class=\"kind\">%1</p>").arg(c.kindName)));
        QStringList pictures;
        static const QRegularExpression source(QStringLiteral("<img src=\"([^\"]+)\""));
        for (auto it = source.globalMatch(html); it.hasNext();)
            pictures.append(it.next().captured(1));
        ASSERT_EQ(pictures.size(), c.pages);
        for (const QString& picture : pictures) {
            EXPECT_TRUE(picture.endsWith(QLatin1StringView(c.pictureSuffix)));
            EXPECT_FALSE(QImage(folder + "/" + picture).isNull()) << picture.toStdString();
        }
        pictures.append(QStringLiteral("index.html"));
        pictures.sort();
        EXPECT_EQ(filesBelow(folder), pictures);
        if (c.thumbnailSize == 0)
            continue;

        const QString png = folder + QStringLiteral("-thumbnail/t.png");
        QDir().mkpath(QFileInfo(png).path());
        ASSERT_EQ(runGenerator({ "thumbnail", c.file, "--size", QString::number(c.thumbnailSize),
                                   "--out", png },
                      options)
                      .exitCode,
            0);
        const QImage image(png, "PNG");
        const int longer = std::max(image.width(), image.height());
        EXPECT_LE(longer, c.thumbnailSize);
        // The pictures fill the thumbnail on its longer side, but for the largest size.
        EXPECT_GE(longer, c.thumbnailSize < 4096 ? c.thumbnailSize - 2 : 1);
        // Opaque, so that it shows on a dark file-manager background too.
        EXPECT_FALSE(image.hasAlphaChannel());
        EXPECT_EQ(filesBelow(QFileInfo(png).path()), QStringList { "t.png" });
    }
    QStringList homeAfter = filesBelow(TestEnvironment::home());
    homeAfter.removeIf([](const QString& path) { return path.startsWith(u"out"); });
    EXPECT_EQ(homeAfter, homeBefore);
    EXPECT_EQ(QDir(TestEnvironment::home() + QStringLiteral("/tmp"))
                  .entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot),
        QStringList());
}

// A linked file that exists links to the application, artboards are white paper.
TEST(PreviewPage, LinksExistingFilesAndDrawsArtboardsOnPaper)
{
    const QString document
        = copyToHome(generatorData("illustrator-like-5-pages.ai"), "Mes documents/poster.ai");
    TestEnvironment::writeFile(
        TestEnvironment::home() + "/documents/Mes documents/links/photo one.png", "png");
    const QString html = previewPage(document);
    const QString escapedHome
        = QString::fromLatin1(QUrl::toPercentEncoding(TestEnvironment::home()));
    EXPECT_TRUE(html.contains(
        QStringLiteral("<a href=\"tolvane://reveal/image?path=%1%2Fdocuments%2FMes%20documents"
                       "%2Flinks%2Fphoto%20one.png\"")
            .arg(escapedHome)))
        << html.toStdString();
    EXPECT_TRUE(html.contains(QStringLiteral("missing image.tif <span>(missing)</span>")));
    const QImage picture(out() + QStringLiteral("/page-1.png"));
    ASSERT_FALSE(picture.isNull());
    EXPECT_EQ(picture.pixel(2, 2), qRgba(255, 255, 255, 255));
}

// A file already in the output, a link to a file elsewhere, is replaced; what it pointed to is
// never written.
TEST(OutputFiles, LinksAlreadyThereAreReplacedNotWrittenThrough)
{
    const QString victim = TestEnvironment::home() + QStringLiteral("/victim.txt");
    TestEnvironment::writeFile(victim, "precious");
    QDir().mkpath(out());
    const QStringList names { "index.html", "page-1.png", "t.png" };
    for (const QString& name : names)
        ASSERT_TRUE(QFile::link(victim, out() + "/" + name));

    const QString eps = formatsSample("illustrator88.eps");
    EXPECT_EQ(runGenerator({ "preview", eps, "--out", out() }).exitCode, 0);
    EXPECT_EQ(
        runGenerator({ "thumbnail", eps, "--size", "32", "--out", out() + "/t.png" }).exitCode, 0);

    // The thumbnail is opaque, on white where the drawing leaves the page transparent.
    EXPECT_EQ(QImage(out() + "/t.png").pixel(0, 0), qRgb(255, 255, 255));
    EXPECT_EQ(TestEnvironment::readFile(victim), "precious");
    for (const QString& name : names)
        EXPECT_FALSE(QFileInfo(out() + "/" + name).isSymLink()) << name.toStdString();
    EXPECT_EQ(filesBelow(out()), names);
}

// Qt's own options (-platform, -reverse) are never read from the generator's command line, after
// "--" even "--x.ai" is a file, and a name from an older system, in Latin-1 (not UTF-8), is still
// the file.
TEST(FileArguments, NamesThatLookLikeOptionsOrAreNotUtf8AreFiles)
{
    const QString folder = TestEnvironment::home() + QStringLiteral("/documents");
    for (const QString name : { "-platform", "-reverse", "--x.ai" }) {
        SCOPED_TRACE(name.toStdString());
        copyToHome(formatsSample("illustrator88.eps"), name);
        const QString out = TestEnvironment::home() + QStringLiteral("/out-") + name;
        QStringList arguments { "preview", "--uti", EpsUti, "--out", out, "--", name };
        if (!name.startsWith(u"--"))
            arguments.remove(5);
        const Outcome run = runGenerator(arguments, { .workingFolder = folder });
        EXPECT_EQ(run.exitCode, 0) << run.standardError.toStdString();
        EXPECT_TRUE(page(out).contains(QStringLiteral("<h1>%1</h1>").arg(name)));
    }
    EXPECT_EQ(
        runGenerator({ "preview", "--x.ai", "--out", out() }, { .workingFolder = folder }).exitCode,
        2);

    // The name reaches the file and the generator byte for byte through the shell's printf.
    QProcess process;
    process.start(QStringLiteral("/bin/sh"),
        { "-c",
            "f=\"$1/$(printf 'Gr\\374\\337e.eps')\"; cp \"$2\" \"$f\" && exec \"$0\" preview "
            "\"$f\" --out \"$3\"",
            QStringLiteral(VISTREL_EXECUTABLE), folder, formatsSample("illustrator88.eps"),
            out() });
    ASSERT_TRUE(process.waitForFinished(60000));
    EXPECT_EQ(process.exitCode(), 0) << process.readAllStandardError().toStdString();
    EXPECT_TRUE(page().contains(QStringLiteral("<h1>Gr\uFFFD\uFFFDe.eps</h1>")));
}

// Each failure has its status (runGenerator checks that its words start the one line) and writes
// nothing.
TEST(FailingRun, ExitsWithItsStatusAndWritesNothing)
{
    const QString garbage = TestEnvironment::home() + QStringLiteral("/documents/notes.ai");
    TestEnvironment::writeFile(
        garbage, QByteArray("just some words, and then \x01\x02\x03 bytes\n").repeated(40));
    const QString thumbnail = out() + QStringLiteral("/t.png");
    const QString ai = generatorData("illustrator-normal.ai");
    const std::pair<QStringList, int> cases[] = {
        { { "preview", garbage, "--uti", IllustratorUti, "--out", out() }, 3 },
        { { "preview", TestEnvironment::dataPath("formats/ase/one-color.ase"), "--uti", EpsUti,
              "--out", out() },
            3 },
        { { "preview", copyToHome(ai, "half.ai", 700000), "--uti", IllustratorUti, "--out", out() },
            4 },
        { { "thumbnail", copyToHome(generatorData("illustrator-saved-as.pdf"), "cut.pdf", 5000),
              "--size", "64", "--out", thumbnail },
            4 },
        { {}, 2 },
        { { "preview", ai }, 2 },
        { { "thumbnail", ai, "--size", "0", "--out", thumbnail }, 2 },
        { { "preview", ai, "--verbose", "--out", out() }, 2 },
        { { "preview", TestEnvironment::home() + "/nowhere.ai", "--out", out() }, 1 },
    };
    for (const auto& [arguments, status] : cases) {
        SCOPED_TRACE(arguments.join(u' ').toStdString());
        EXPECT_EQ(runGenerator(arguments).exitCode, status);
        EXPECT_TRUE(filesBelow(out()).isEmpty());
    }
}

}
