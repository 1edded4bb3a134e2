// SPDX-License-Identifier: GPL-3.0-or-later
// EPS previews of files made here: comments become panels, the embedded preview takes over when
// the PostScript does not draw, and Ghostscript runs in its safe mode.
#include "GeneratorProcess.h"
#include "TestEnvironment.h"

#include <QFile>
#include <QFileInfo>
#include <QImage>
#include <cstring>
#include <gtest/gtest.h>
#include <tuple>

using namespace GeneratorProcess;

namespace {

// A 72 × 36 pt EPS with two fonts, a custom colour and a 16 × 2 EPSI preview (left half black)
// unless left out.
QByteArray epsWith(const QByteArray& drawing, bool withPreview = true)
{
    const QByteArray preview = "%%BeginPreview: 16 2 1 2\n%FF00\n%FF00\n%%EndPreview\n";
    return QByteArray("%!PS-Adobe-3.0 EPSF-3.0\n"
                      "%%Creator: Tolvane tests\n"
                      "%%Title: (Little <b>box</b>)\n"
                      "%%BoundingBox: 0 0 72 36\n"
                      "%%DocumentFonts: NimbusSans-Regular TolvaneGone-Italic\n"
                      "%%DocumentCustomColors: (Gold Spot)\n"
                      "%%CMYKCustomColor: 0 0.2 0.6 0.2 (Gold Spot)\n"
                      "%%EndComments\n")
        + (withPreview ? preview : QByteArray()) + drawing + "\nshowpage\n%%EOF\n";
}

const QByteArray Box = "0 0 1 setrgbcolor 0 0 72 36 rectfill";

QString writeEps(const QByteArray& bytes)
{
    const QString path = TestEnvironment::home() + QStringLiteral("/documents/box.eps");
    TestEnvironment::writeFile(path, bytes);
    return path;
}

TEST(PostScriptPreview, CommentsFillTheFactsAndPanels)
{
    const QString html = previewPage(
        writeEps(epsWith(Box)), out(), { "--uti", "com.adobe.encapsulated-postscript" });
    EXPECT_TRUE(
        html.contains(QStringLiteral("<dt>Title</dt><dd>Little &lt;b&gt;box&lt;/b&gt;</dd>")));
    EXPECT_TRUE(html.contains(QStringLiteral("<dt>Size</dt><dd>72 × 36 pt (25.4 × 12.7 mm)</dd>")));
    EXPECT_TRUE(html.contains(QStringLiteral(">NimbusSans-Regular</td>")));
    EXPECT_TRUE(html.contains(QStringLiteral("<td>TolvaneGone-Italic</td><td></td><td></td><td></"
                                             "td><td></td><td class=\"missing\">missing</td>")));
    EXPECT_TRUE(html.contains(QStringLiteral(
        "<td>Gold Spot</td><td>CMYK</td><td>C 0%, M 20%, Y 60%, K 20%</td><td>spot</td>")));
    EXPECT_TRUE(html.contains(QStringLiteral("alt=\"Artwork\"")));
}

TEST(PostScriptPreview, GhostscriptMayNotWriteFiles)
{
    const QString target = TestEnvironment::home() + QStringLiteral("/written-by-postscript");
    QByteArray drawing
        = Box + "\n(" + target.toUtf8() + ") (w) file dup (owned) writestring closefile";
    // Without the embedded preview the failure shows as it is.
    const Outcome run
        = runGenerator({ "preview", writeEps(epsWith(drawing, false)), "--out", out() });
    EXPECT_EQ(run.exitCode, 4) << run.standardError.toStdString();
    EXPECT_FALSE(QFileInfo::exists(target));
}

// Ghostscript that runs out of processor time (the limit the caller set, which it inherits) is
// no reason to fail a file that carries its own preview picture.
TEST(PostScriptPreview, EmbeddedPreviewWhenGhostscriptRunsOutOfTime)
{
    const QString html = previewPage(writeEps(epsWith("{ } loop")), out(), {}, { .cpuSeconds = 5 });
    EXPECT_TRUE(html.contains(QStringLiteral("alt=\"Embedded preview\"")));
    EXPECT_TRUE(html.contains(QStringLiteral("could not be drawn (Ghostscript stopped")))
        << html.toStdString();
}

// A stand-in for Ghostscript, first on PATH, that prints 400 MB before its error: kept whole and
// copied once, more than the 600 MB of address space the caller gives the generator.
TEST(PostScriptPreview, OnlyTheLastOfGhostscriptsMessagesAreKept)
{
    const QString bin = TestEnvironment::home() + QStringLiteral("/fake-bin");
    TestEnvironment::writeFile(bin + "/gs",
        "#!/bin/sh\n# SPDX-License-Identifier: GPL-3.0-or-later\n"
        "head -c 400000000 /dev/zero >&2\necho >&2\necho 'Error: /typecheck in --flood--' >&2\n"
        "exit 1\n");
    QFile::setPermissions(bin + "/gs", QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    const Outcome run = runGenerator({ "preview", writeEps(epsWith(Box, false)), "--out", out() },
        { .environment =
                [&bin](QProcessEnvironment& environment) {
                    environment.insert("PATH", bin + ":" + environment.value("PATH"));
                },
            .addressSpaceBytes = 600 << 20 });
    EXPECT_EQ(run.exitCode, 4);
    EXPECT_EQ(run.standardError,
        "damaged file: the PostScript does not draw: Error: /typecheck in --flood--\n");
}

QByteArray withoutProcSets(QByteArray eps)
{
    // The native files of Illustrator 5 name the procedure sets they need and leave them out.
    const qsizetype begin = eps.indexOf("%%BeginResource: procset");
    const qsizetype end = eps.lastIndexOf("%%EndResource") + qsizetype(strlen("%%EndResource"));
    eps.remove(begin, end - begin);
    return eps.replace("%%DocumentSuppliedResources", "%%DocumentNeededResources");
}

// Variants of a real Illustrator 5.5 EPS (tests/data/generator/tk-logo.eps), each drawn or
// refused with the status it deserves and a word of why.
TEST(RealEps, IsDrawnOrRefusedForWhatItIs)
{
    const QByteArray logo = TestEnvironment::readFile(generatorData("tk-logo.eps"));
    QByteArray plain = logo;
    // As some print drivers write: no EPSF version on the first line, no showpage.
    plain.replace("%!PS-Adobe-3.0 EPSF-3.0", "%!PS-Adobe-3.0")
        .replace("gsave annotatepage grestore showpage", "");
    const std::tuple<QByteArray, int, const char*> cases[] = {
        { logo, 0, "" },
        { logo.left(16000), 4, "cut short" },
        { plain, 0, "" },
        { withoutProcSets(logo), 5, "Adobe_IllustratorA_AI5" },
    };
    int index = 0;
    for (const auto& [eps, status, message] : cases) {
        SCOPED_TRACE(index);
        const QString folder = out() + QString::number(++index);
        const Outcome run = runGenerator({ "preview", writeEps(eps), "--out", folder });
        EXPECT_EQ(run.exitCode, status) << run.standardError.toStdString();
        EXPECT_TRUE(run.standardError.contains(QLatin1String(message)))
            << run.standardError.toStdString();
        if (status == 0) {
            const QImage picture(folder + QStringLiteral("/page-1.png"));
            ASSERT_FALSE(picture.isNull());
            // The logo is drawn, not a blank page.
            EXPECT_GT(qAlpha(picture.pixel(picture.width() / 2, picture.height() / 2)), 0);
        }
    }
}

}
