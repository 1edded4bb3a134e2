// SPDX-License-Identifier: GPL-3.0-or-later
#include "HtmlPanels.h"

#include "SwatchColor.h"

#include <QFileInfo>
#include <QRegularExpression>
#include <QUrl>

namespace Preview::Html {

namespace {

    QString valueText(double value)
    {
        return QString::number(value, 'f', 3).remove(QRegularExpression(QStringLiteral("\\.?0+$")));
    }

    // How the values of a swatch read in its own model: percent for CMYK and gray, 0..255 for RGB.
    QString valuesText(const PreviewSwatch& swatch)
    {
        const QString model = swatch.model.toUpper();
        QStringList parts;
        if (model == u"CMYK" && swatch.values.size() >= 4) {
            const char* letters = "CMYK";
            for (int i = 0; i < 4; ++i)
                parts.append(QStringLiteral("%1 %2%")
                                 .arg(QChar::fromLatin1(letters[i]))
                                 .arg(qRound(swatch.values[size_t(i)] * 100)));
        } else if (model == u"RGB" && swatch.values.size() >= 3) {
            const char* letters = "RGB";
            for (int i = 0; i < 3; ++i)
                parts.append(QStringLiteral("%1 %2")
                                 .arg(QChar::fromLatin1(letters[i]))
                                 .arg(qRound(swatch.values[size_t(i)] * 255)));
        } else if (model == u"LAB" && swatch.values.size() >= 3) {
            const char* letters[] = { "L", "a", "b" };
            for (int i = 0; i < 3; ++i)
                parts.append(QStringLiteral("%1 %2").arg(
                    QLatin1StringView(letters[i]), valueText(swatch.values[size_t(i)])));
        } else if ((model == u"GRAY" || model == u"GREY") && !swatch.values.empty()) {
            parts.append(QStringLiteral("K %1%").arg(qRound(swatch.values[0] * 100)));
        } else {
            for (double value : swatch.values)
                parts.append(valueText(value));
        }
        return parts.join(u", ");
    }

    QString marks(const PreviewSwatch& swatch)
    {
        QStringList words;
        if (swatch.global)
            words.append(QStringLiteral("global"));
        if (swatch.spot)
            words.append(QStringLiteral("spot"));
        if (swatch.process)
            words.append(QStringLiteral("process"));
        return words.join(u", ");
    }

    QString chip(const PreviewSwatch& swatch)
    {
        const QColor color = swatchDisplayColor(swatch);
        if (!color.isValid())
            return QStringLiteral("<span class=\"chip unknown\"></span>");
        return QStringLiteral("<span class=\"chip\" style=\"background:%1\"></span>")
            .arg(color.name());
    }

    // A family name as a CSS string: only characters that cannot end the string or the attribute.
    QString cssFamily(const QString& family)
    {
        QString safe;
        for (QChar c : family) {
            if (c.isLetterOrNumber() || c == u' ' || c == u'-' || c == u'_' || c == u'.')
                safe.append(c);
        }
        return safe.trimmed();
    }

}

QString escape(const QString& text)
{
    return text.toHtmlEscaped().replace(u'\'', QStringLiteral("&#39;"));
}

QString percentEscape(const QString& text)
{
    return QString::fromLatin1(QUrl::toPercentEncoding(text));
}

QString revealImageUrl(const QString& path)
{
    return QStringLiteral("tolvane://reveal/image?path=") + percentEscape(path);
}

QString revealFontUrl(const QStringList& paths)
{
    if (paths.isEmpty())
        return {};
    QString url = QStringLiteral("tolvane://reveal/font?path=") + percentEscape(paths.first());
    for (qsizetype i = 1; i < paths.size(); ++i)
        url += QStringLiteral("&path%1=").arg(i) + percentEscape(paths[i]);
    return url;
}

QString fontsPanel(const std::vector<PreviewFont>& fonts, bool wysiwyg)
{
    if (fonts.empty())
        return {};
    QString html = QStringLiteral("<section class=\"panel fonts\">\n<h2>Fonts (%1)</h2>\n<table>\n"
                                  "<tr><th>Name</th><th>Family</th><th>Style</th><th>Kind</th>"
                                  "<th>File</th><th>Status</th></tr>\n")
                       .arg(fonts.size());
    QStringList installedFiles;
    for (const PreviewFont& font : fonts) {
        const QString family = cssFamily(font.family);
        const QString style = wysiwyg && font.installed() && !family.isEmpty()
            ? QStringLiteral(" style=\"font-family:&#39;%1&#39;\"").arg(family)
            : QString();
        const QString name = font.name.isEmpty() ? font.family : font.name;
        html += QStringLiteral("<tr><td%1>%2</td><td>%3</td><td>%4</td><td>%5</td><td>%6</td>")
                    .arg(style, escape(name), escape(font.family), escape(font.style),
                        escape(font.kind), escape(font.fileName));
        html += font.installed() ? QStringLiteral("<td class=\"installed\">installed</td></tr>\n")
                                 : QStringLiteral("<td class=\"missing\">missing</td></tr>\n");
        for (const QString& file : font.installedFiles) {
            if (!installedFiles.contains(file))
                installedFiles.append(file);
        }
    }
    html += QStringLiteral("</table>\n");
    if (!installedFiles.isEmpty())
        html += QStringLiteral("<p><a href=\"%1\">Show the installed font files</a></p>\n")
                    .arg(escape(revealFontUrl(installedFiles)));
    return html + QStringLiteral("</section>\n");
}

QString linksPanel(const std::vector<PreviewLink>& links)
{
    if (links.empty())
        return {};
    QString html
        = QStringLiteral("<section class=\"panel links\">\n<h2>Linked files (%1)</h2>\n<ul>\n")
              .arg(links.size());
    for (const PreviewLink& link : links) {
        const QString name
            = escape(QFileInfo(link.path).fileName().isEmpty() ? link.path
                                                               : QFileInfo(link.path).fileName());
        if (link.exists)
            html += QStringLiteral("<li><a href=\"%1\" title=\"%2\">%3</a></li>\n")
                        .arg(escape(revealImageUrl(link.path)), escape(link.path), name);
        else
            html += QStringLiteral(
                "<li class=\"missing\" title=\"%1\">%2 <span>(missing)</span></li>\n")
                        .arg(escape(link.path), name);
    }
    return html + QStringLiteral("</ul>\n</section>\n");
}

QString swatchesPanel(const std::vector<PreviewSwatchGroup>& groups, VTSwatchMode mode)
{
    size_t count = 0;
    for (const PreviewSwatchGroup& group : groups)
        count += group.swatches.size();
    if (count == 0)
        return {};
    QString html
        = QStringLiteral("<section class=\"panel swatches\">\n<h2>Colour swatches (%1)</h2>\n")
              .arg(count);
    for (const PreviewSwatchGroup& group : groups) {
        if (group.swatches.empty())
            continue;
        if (!group.name.isEmpty())
            html += QStringLiteral("<h3>%1</h3>\n").arg(escape(group.name));
        if (mode == VTSwatchMode::Chips) {
            html += QStringLiteral("<div class=\"chips\">\n");
            for (const PreviewSwatch& swatch : group.swatches)
                html += QStringLiteral(
                    "<div class=\"swatch\" title=\"%1\">%2<span>%3</span></div>\n")
                            .arg(escape(QStringLiteral("%1 %2")
                                            .arg(swatch.model, valuesText(swatch))
                                            .trimmed()),
                                chip(swatch), escape(swatch.name));
            html += QStringLiteral("</div>\n");
        } else {
            html += QStringLiteral("<table class=\"swatch-list\">\n");
            for (const PreviewSwatch& swatch : group.swatches)
                html += QStringLiteral(
                    "<tr><td>%1</td><td>%2</td><td>%3</td><td>%4</td><td>%5</td></tr>\n")
                            .arg(chip(swatch), escape(swatch.name), escape(swatch.model),
                                escape(valuesText(swatch)), escape(marks(swatch)));
            html += QStringLiteral("</table>\n");
        }
    }
    return html + QStringLiteral("</section>\n");
}

}
