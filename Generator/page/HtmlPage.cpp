// SPDX-License-Identifier: GPL-3.0-or-later
#include "HtmlPage.h"

#include "HtmlPanels.h"
#include "HtmlStyle.h"
#include "VistrelUpdateURL.h"

#include <cmath>

namespace Preview {

using Html::escape;

namespace {

    QString backgroundClass(VTBackgroundColor background)
    {
        switch (background) {
        case VTBackgroundColor::None:
            return QStringLiteral("background-none");
        case VTBackgroundColor::Gray:
            return QStringLiteral("background-gray");
        case VTBackgroundColor::Black:
            return QStringLiteral("background-black");
        case VTBackgroundColor::White:
            break;
        }
        return QStringLiteral("background-white");
    }

    QString header(const PreviewContent& content)
    {
        QString html = QStringLiteral("<header>\n<h1>%1</h1>\n").arg(escape(content.title));
        if (!content.kindName.isEmpty())
            html += QStringLiteral("<p class=\"kind\">%1</p>\n").arg(escape(content.kindName));
        if (!content.facts.empty()) {
            html += QStringLiteral("<dl class=\"facts\">\n");
            for (const PreviewFact& fact : content.facts)
                html += QStringLiteral("<dt>%1</dt><dd>%2</dd>\n")
                            .arg(escape(fact.label), escape(fact.value));
            html += QStringLiteral("</dl>\n");
        }
        return html + QStringLiteral("</header>\n");
    }

    QString figure(const PreviewPage& page, const QString& pictureFile, bool naturalSize)
    {
        if (pictureFile.isEmpty())
            return QStringLiteral("<figure><p class=\"note\">This page could not be drawn.</p>"
                                  "<figcaption>%1</figcaption></figure>\n")
                .arg(escape(page.label));
        // Pages are drawn at twice the screen's 96 pixels per inch: shown at their size in points
        // times 4/3, they are sharp on high-density screens.
        QString width;
        if (naturalSize && page.sizePoints.width() > 0)
            width = QStringLiteral(" style=\"width:%1px\"")
                        .arg(std::lround(page.sizePoints.width() * 4 / 3));
        return QStringLiteral(
            "<figure><img src=\"%1\" alt=\"%2\"%3><figcaption>%2</figcaption></figure>\n")
            .arg(escape(pictureFile), escape(page.label), width);
    }

    QString pages(const PreviewContent& content, const VTPreviewSettings& settings,
        const std::vector<QString>& pictureFiles)
    {
        const bool grid = settings.previewMode == VTPreviewMode::Grid;
        size_t shown = content.pages.size();
        if (settings.previewMode == VTPreviewMode::FirstPage)
            shown = std::min<size_t>(shown, 1);
        QString html = grid ? QStringLiteral("<main class=\"pages grid\">\n")
                            : QStringLiteral("<main class=\"pages\">\n");
        const bool spreads = content.spreadMode == VTSpreadMode::Spreads && !grid;
        for (size_t i = 0; i < shown;) {
            size_t end = i + 1;
            if (spreads && content.pages[i].spread >= 0) {
                while (end < shown && content.pages[end].spread == content.pages[i].spread)
                    ++end;
            }
            if (!grid)
                html += QStringLiteral("<div class=\"spread\">\n");
            for (; i < end; ++i)
                html += figure(
                    content.pages[i], i < pictureFiles.size() ? pictureFiles[i] : QString(), !grid);
            if (!grid)
                html += QStringLiteral("</div>\n");
        }
        html += QStringLiteral("</main>\n");
        const int leftOut = content.pagesLeftOut + int(content.pages.size() - shown);
        if (leftOut > 0)
            html += QStringLiteral(
                "<p class=\"left-out\">%1 more %2 not shown: the preview shows at most %3.</p>\n")
                        .arg(QString::number(leftOut),
                            leftOut == 1 ? QStringLiteral("page is") : QStringLiteral("pages are"),
                            settings.pageLimit() == 1
                                ? QStringLiteral("the first page")
                                : QStringLiteral("%1 pages").arg(settings.pageLimit()));
        return html;
    }

}

QString htmlPage(const PreviewContent& content, const VTPreviewSettings& settings,
    const std::vector<QString>& pictureFiles)
{
    QString html = QStringLiteral(
        "<!DOCTYPE html>\n<html lang=\"en\">\n<head>\n<meta charset=\"utf-8\">\n"
        "<meta name=\"color-scheme\" content=\"light dark\">\n"
        "<meta http-equiv=\"Content-Security-Policy\" content=\"default-src 'none'; img-src 'self' "
        "file: data:; style-src 'unsafe-inline'; script-src 'unsafe-inline'\">\n");
    html += QStringLiteral("<title>%1</title>\n<style>%2</style>\n</head>\n<body class=\"%3\">\n")
                .arg(escape(content.title), Html::styleSheet(),
                    backgroundClass(settings.background));
    html += header(content);
    if (settings.warnAboutDoubleClicks)
        html += QStringLiteral(
            "<p class=\"hint\">Double-click opens the document in its own application.</p>\n");
    for (const QString& note : content.notes)
        html += QStringLiteral("<p class=\"note\">%1</p>\n").arg(escape(note));
    if (!content.pages.empty() || content.pagesLeftOut > 0)
        html += pages(content, settings, pictureFiles);
    if (settings.showFonts)
        html += Html::fontsPanel(content.fonts, settings.showWysiwygFonts);
    if (settings.showImageLinks)
        html += Html::linksPanel(content.links);
    if (settings.showColorSwatches)
        html += Html::swatchesPanel(content.swatchGroups, settings.swatchMode);
    html += QStringLiteral("<footer><a href=\"%1\">Preview settings</a> · <a href=\"%2\">Check for "
                           "Vistrel Pro updates</a></footer>\n")
                .arg(Html::SettingsUrl, escape(VTUpdateURLStringForHTTP()));
    if (settings.useLoupe && !content.pages.empty())
        html += QStringLiteral("<div id=\"loupe\"></div>\n<script>%1</script>\n")
                    .arg(Html::loupeScript());
    return html + QStringLiteral("</body>\n</html>\n");
}

}
