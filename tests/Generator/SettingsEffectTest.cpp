// SPDX-License-Identifier: GPL-3.0-or-later
// Each setting of the preferences store changes the page the generator writes.
#include "GeneratorProcess.h"
#include "PropertyList.h"
#include "VistrelUtilities.h"

#include <gtest/gtest.h>

using namespace GeneratorProcess;

namespace {

QString fivePages() { return generatorData("illustrator-like-5-pages.ai"); }

struct EffectCase {
    const char* name;
    QVariantMap preferences;
    QStringList present; // texts the page holds
    QStringList absent; // texts it does not hold
    QString file = fivePages();
};

class SettingEffect : public testing::TestWithParam<EffectCase> { };

TEST_P(SettingEffect, ShowsInThePage)
{
    const EffectCase& c = GetParam();
    QString error;
    ASSERT_TRUE(PropertyList::writeXmlAtomically(c.preferences, VTPreferencesPath(), &error))
        << error.toStdString();
    const QString html = previewPage(c.file);
    for (const QString& text : c.present)
        EXPECT_TRUE(html.contains(text)) << "missing: " << text.toStdString();
    for (const QString& text : c.absent)
        EXPECT_FALSE(html.contains(text)) << "present: " << text.toStdString();
}

const QString FontsPanel = QStringLiteral("<section class=\"panel fonts\">");
const QString LinksPanel = QStringLiteral("<section class=\"panel links\">");
const QString SwatchesPanel = QStringLiteral("<section class=\"panel swatches\">");
const QString Hint = QStringLiteral("Double-click opens the document in its own application.");

// Settings whose effects do not touch each other share a run.
INSTANTIATE_TEST_SUITE_P(Settings, SettingEffect,
    testing::Values(
        EffectCase { "NoFileShowsEverything", {},
            { FontsPanel, LinksPanel, SwatchesPanel, Hint, "<script>", "background-white",
                "page-5.png", "class=\"swatch-list\"", "font-family:&#39;Nimbus Sans&#39;" },
            { "not shown" } },
        EffectCase { "PanelsHiddenPageLimitBlackByTagNoLoupe",
            { { showFontsInPreview, false }, { showImageLinksInPreview, false },
                { showColorSwatchesInPreview, false }, { maximumNumberOfPagesPreviewed, qint64(2) },
                { imageBackgroundColorName, QStringLiteral("Black") },
                { imageBackgroundColorTag, qint64(3) }, { VTPUseLoupe, false },
                { warnAboutDoubleClicksInPreview, false } },
            { "page-2.png", "3 more pages are not shown: the preview shows at most 2 pages.",
                "<body class=\"background-black\">" },
            { FontsPanel, LinksPanel, SwatchesPanel, "page-3.png", "<script>", Hint } },
        EffectCase { "FirstPageOnlyCheckerboardChipsPlainFonts",
            { { TLPreviewMode, qint64(1) }, { imageBackgroundColorTag, qint64(0) },
                { illustratorColorSwatchModeInPreview, qint64(0) },
                { showWYSIWYGFontsInPreview, false } },
            { "page-1.png", "4 more pages are not shown: the preview shows at most the first page.",
                "<body class=\"background-none\">", "<div class=\"chips\">",
                "<span>Warm Red &amp; &lt;Co&gt;</span>", FontsPanel },
            { "page-2.png", "swatch-list", "font-family:&#39;" } },
        EffectCase { "ArtboardsSideBySide", { { TLPrefIllustratorSpreadMode, qint64(1) } },
            { "<div class=\"spread\">\n<figure><img src=\"page-1.png\" alt=\"Artboard 1\" "
              "style=\"width:816px\">"
              "<figcaption>Artboard 1</figcaption></figure>\n<figure><img src=\"page-2.png\"" },
            {} },
        // A store with a foreign version marker is not read, and the preview still made.
        EffectCase { "ForeignVersionMarker",
            { { QStringLiteral("Preferences Version"), qint64(2) },
                { maximumNumberOfPagesPreviewed, qint64(1) } },
            { "page-5.png" }, {} },
        EffectCase { "EmbeddedPreviewPastTheThreshold",
            { { preferEmbeddedPreviewForPreviewFileSizeThreshold, 0.5f } },
            { "page-1.jpg", "preview picture embedded in the file" }, { "page-1.png" },
            generatorData("illustrator-normal.ai") }),
    [](const auto& info) { return std::string(info.param.name); });

}
