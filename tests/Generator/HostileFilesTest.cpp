// SPDX-License-Identifier: GPL-3.0-or-later
// The generator against documents made to exhaust it, written by hostile/make-hostile-files.py:
// whatever their size or count, it ends on its own, within its bounds, with a page or one line.
#include "GeneratorProcess.h"
#include "TestEnvironment.h"

#include <QDir>
#include <QImage>
#include <QProcess>
#include <gtest/gtest.h>
#include <tuple>

using namespace GeneratorProcess;

namespace {

// Far more processor time than any of these takes with the work linear, far less than the
// minutes the same work takes when it grows with the square of the count.
constexpr int ProcessorSeconds = 20;

QString hostileFile(const QString& writer, const QString& name)
{
    const QString folder = TestEnvironment::home() + QStringLiteral("/hostile");
    QProcess script;
    script.start(QStringLiteral("python3"),
        { QStringLiteral(TOLVANE_HOSTILE_FILES_SCRIPT), folder, writer });
    EXPECT_TRUE(script.waitForFinished(120000));
    EXPECT_EQ(script.exitCode(), 0) << script.readAllStandardError().toStdString();
    return folder + QLatin1Char('/') + name;
}

// Eight pages of a million points a side: each drawn at most 4000 pixels a side, all at once
// within the memory there is, and no thumbnail drawn larger first.
TEST(HostileFiles, HugePagesAreDrawnWithinThePixelBounds)
{
    const QString file = hostileFile("huge-pages", "huge-pages.ai");
    previewPage(file);
    const QStringList pictures = QDir(out()).entryList({ "page-*.png" });
    ASSERT_EQ(pictures.size(), 8);
    for (const QString& picture : pictures) {
        const QSize size = QImage(out() + "/" + picture).size();
        EXPECT_LE(std::max(size.width(), size.height()), 4000) << picture.toStdString();
        EXPECT_GE(std::max(size.width(), size.height()), 1000) << picture.toStdString();
    }
    const QString thumbnail = TestEnvironment::home() + QStringLiteral("/t.png");
    ASSERT_EQ(runGenerator({ "thumbnail", file, "--size", "128", "--out", thumbnail }).exitCode, 0);
    EXPECT_EQ(QImage(thumbnail).size(), QSize(128, 128));
}

// Hundreds of thousands of links, fonts, colours or pages: read in linear time, shown in capped
// panels that say how many more there are.
TEST(HostileCounts, AreReadInLinearTimeAndShownInCappedPanels)
{
    const std::tuple<QString, QString, QString> cases[] = {
        { "many-links", "many-links.idml", "199000 more linked files not shown" },
        { "many-fonts", "many-fonts.eps", "99000 more fonts not shown" },
        { "many-pages", "many-pages.ai", "" },
        { "million-swatches", "million-swatches.ase", "999000 more swatches not shown" },
    };
    for (const auto& [writer, file, shown] : cases) {
        SCOPED_TRACE(file.toStdString());
        const QString html = previewPage(hostileFile(writer, file), out() + u'-' + writer, {},
            { .cpuSeconds = ProcessorSeconds });
        EXPECT_TRUE(html.contains(shown)) << html.size();
        // The page stays small enough to show, whatever the count.
        EXPECT_LT(html.size(), 2 * 1000 * 1000);
    }
}

// Files past the 2 GiB the generator may map: an EPS shows its own preview picture, read from
// the windows of the file that hold it; a package read whole says the limit.
TEST(HostileFiles, FilesOfGigabytesShowTheirPreviewOrSayTheLimit)
{
    EXPECT_TRUE(previewPage(hostileFile("huge-eps", "huge.eps"))
                    .contains(QStringLiteral("alt=\"Embedded preview\"")));
    EXPECT_EQ(QImage(out() + "/page-1.png").size(), QSize(16, 2));

    const QString idml = hostileFile("huge-idml", "huge.idml");
    for (const QStringList& type :
        { QStringList {}, QStringList { "--uti", "com.adobe.indesign-interchange" } }) {
        const Outcome refused
            = runGenerator(QStringList { "preview", idml, "--out", out() + "2" } + type);
        EXPECT_EQ(refused.exitCode, 5);
        EXPECT_EQ(refused.standardError,
            "unsupported variant: the file is 2.2 GB large; files of "
            "this kind are read up to 500 MB\n");
    }
}

}
