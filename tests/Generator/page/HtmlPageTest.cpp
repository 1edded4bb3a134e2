// SPDX-License-Identifier: GPL-3.0-or-later
// The preview page for fixed content, against golden files, and the escaping it relies on.
#include "HtmlPage.h"

#include "HtmlPanels.h"
#include "TestEnvironment.h"

#include <QCryptographicHash>
#include <QFile>
#include <QRegularExpression>
#include <gtest/gtest.h>

using namespace Preview;

namespace {

// A document whose texts try to break out of the page.
PreviewContent hostileDocument()
{
    PreviewContent content;
    content.title = QStringLiteral("Poster <script>alert(1)</script>.ai");
    content.kindName = QStringLiteral("Illustrator document");
    content.facts = { { QStringLiteral("Size"), QStringLiteral("612 × 792 pt") },
        { QStringLiteral("Creator"), QStringLiteral("\"Tool\" & 'Sons' <b>") } };
    for (int i = 1; i <= 3; ++i) {
        PreviewPage page;
        page.encoded = QByteArray("png");
        page.encodedFormat = QStringLiteral("png");
        page.label = QStringLiteral("Artboard %1").arg(i);
        page.sizePoints = QSizeF(612, 792);
        page.spread = i <= 2 ? 0 : 1;
        content.pages.push_back(page);
    }
    content.pageCount = 7;
    content.pagesLeftOut = 4;
    content.spreadMode = VTSpreadMode::Spreads;
    content.fonts = {
        { "Nimbus-Bold", "Nimbus Sans", "Bold", "Type 1", "nimbus.pfb",
            { "/usr/share/fonts/a b/Nimbus Bold.pfb" } },
        { "Evil\"><img src=x>", "Evil'); background:url(http://x)", "", "", "",
            { "/fonts/évil&.otf" } },
        { "Gone-Regular", "Gone", "Regular", "OpenType", "gone.otf", {} },
    };
    content.links = { { QStringLiteral("/Volumes/Work/Photo #1 & more.tif"), true },
        { QStringLiteral("/missing/<b>away</b>.psd"), false } };
    PreviewSwatch red { "Red <1>", "CMYK", { 0, 1, 1, 0 }, false, false, true, {} };
    PreviewSwatch spot { "Gold", "LAB", { 80, 5, 60 }, true, true, false, {} };
    PreviewSwatch gray { "Mid", "Gray", { 0.5 }, false, false, true, {} };
    PreviewSwatch odd { "Odd", "HKS", { 12 }, false, false, false, {} };
    content.swatchGroups
        = { { QString(), { red } }, { QStringLiteral("Group & Co"), { spot, gray, odd } } };
    content.notes = { QStringLiteral("A note with <angle> brackets.") };
    return content;
}

std::vector<QString> pictureNames() { return { "page-1.png", "page-2.png", "" }; }

// TOLVANE_UPDATE_GOLDEN=1 rewrites the golden files from the current output.
TEST(GoldenPage, MatchesTheGoldenFile)
{
    // The footer's update link describes the machine; no generator is installed in the test's
    // home.
    qputenv("TOLVANE_SYSTEM_VERSION", "10.6.8");
    qunsetenv("TOLVANE_UPDATE_HOST");
    VTPreviewSettings compact;
    compact.previewMode = VTPreviewMode::Grid;
    compact.swatchMode = VTSwatchMode::Chips;
    compact.background = VTBackgroundColor::None;
    compact.useLoupe = false;
    compact.warnAboutDoubleClicks = false;
    compact.showWysiwygFonts = false;
    compact.showImageLinks = false;
    const std::pair<const char*, VTPreviewSettings> cases[]
        = { { "DefaultSettings", VTPreviewSettings {} }, { "GridChipsCheckerboard", compact } };
    for (const auto& [name, settings] : cases) {
        SCOPED_TRACE(name);
        const QString html = htmlPage(hostileDocument(), settings, pictureNames());
        const QString golden
            = QStringLiteral(TOLVANE_GOLDEN_DIR "/%1.html").arg(QLatin1StringView(name));
        if (qEnvironmentVariableIsSet("TOLVANE_UPDATE_GOLDEN")) {
            QFile file(golden);
            ASSERT_TRUE(file.open(QIODevice::WriteOnly | QIODevice::Truncate));
            file.write(html.toUtf8());
        }
        EXPECT_EQ(html.toStdString(), TestEnvironment::readFile(golden).toStdString());
    }
}

// No text of the document becomes markup, and the page's policy admits its one script (the
// loupe's) by its hash alone.
TEST(HtmlPage, DocumentTextNeverBecomesMarkup)
{
    const QString html = htmlPage(hostileDocument(), VTPreviewSettings {}, pictureNames());
    for (const char* raw : { "<script>alert", "<img src=x>", "<b>", "<angle>", "<1>" })
        EXPECT_FALSE(html.contains(QLatin1StringView(raw))) << raw;
    // A family name set as the font of its row keeps only what cannot end the CSS string.
    EXPECT_TRUE(html.contains(
        QStringLiteral("<td style=\"font-family:&#39;Evil backgroundurlhttpx&#39;\">")));

    static const QRegularExpression script(
        QStringLiteral("<script>(.*?)</script>"), QRegularExpression::DotMatchesEverythingOption);
    QStringList hashes;
    for (auto it = script.globalMatch(html); it.hasNext();)
        hashes.append(QString::fromLatin1(
            QCryptographicHash::hash(it.next().captured(1).toUtf8(), QCryptographicHash::Sha256)
                .toBase64()));
    ASSERT_EQ(hashes.size(), 1);
    static const QRegularExpression policy(QStringLiteral("script-src ([^;\"]*)"));
    EXPECT_EQ(policy.match(html).captured(1), QStringLiteral("'sha256-%1'").arg(hashes.first()));
}

TEST(RevealFontUrl, NamesThePathsInOrder)
{
    EXPECT_EQ(Html::revealFontUrl({ "/f/a b.otf", "/f/é.ttf", "/f/c&d.pfb" }),
        QStringLiteral(
            "tolvane://reveal/"
            "font?path=%2Ff%2Fa%20b.otf&path1=%2Ff%2F%C3%A9.ttf&path2=%2Ff%2Fc%26d.pfb"));
    EXPECT_TRUE(Html::revealFontUrl({}).isEmpty());
}

}
