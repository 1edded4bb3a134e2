// SPDX-License-Identifier: GPL-3.0-or-later
#include "SwatchSheet.h"

#include "SwatchColor.h"

#include <QPainter>
#include <algorithm>
#include <cmath>

namespace Preview {

using Formats::AseColorModel;
using Formats::AseDocument;
using Formats::AseGroup;
using Formats::AseSwatch;
using Formats::AseSwatchType;

namespace {

    // Sheet geometry, in CSS pixels.
    constexpr double Margin = 24;
    constexpr double TitleHeight = 40;
    constexpr double HeadingHeight = 32;
    constexpr double Indent = 20;
    constexpr double ChipWidth = 150;
    constexpr double ChipHeight = 90;
    constexpr double TileWidth = 170;
    constexpr double TileHeight = 160;
    constexpr int Columns = 5;
    constexpr double SheetWidth = 2 * Margin + Columns * TileWidth + 2 * Indent;

    // 12.5, 100, 0: at most one decimal, none when it is zero.
    QString shortNumber(double value)
    {
        double rounded = std::round(value * 10) / 10;
        if (rounded == 0)
            rounded = 0; // no "-0"
        return QString::number(rounded, 'g', 12);
    }

    QString percent(double unit) { return shortNumber(unit * 100) + u'%'; }

    // Control characters are not allowed in XML, even escaped; names from a file may hold them.
    QString escaped(QString text)
    {
        text.removeIf([](QChar c) { return c.unicode() < 0x20; });
        return text.toHtmlEscaped();
    }

    class SheetWriter {
    public:
        QByteArray svg;
        double y = Margin;
        int chipsLeft = 0;
        int leftOut = 0;

        void text(double x, double baseline, const QString& content, const char* style)
        {
            svg += QStringLiteral("<text x=\"%1\" y=\"%2\" %3>%4</text>\n")
                       .arg(x)
                       .arg(baseline)
                       .arg(QLatin1String(style), escaped(content))
                       .toUtf8();
        }

        void chip(double x, double top, const PreviewSwatch& swatch)
        {
            const QColor color = swatchDisplayColor(swatch);
            if (color.isValid()) {
                svg += QStringLiteral("<rect x=\"%1\" y=\"%2\" width=\"%3\" height=\"%4\" "
                                      "fill=\"%5\" stroke=\"#999\"/>\n")
                           .arg(x)
                           .arg(top)
                           .arg(ChipWidth)
                           .arg(ChipHeight)
                           .arg(color.name())
                           .toUtf8();
            } else {
                // A model we cannot show: an empty chip, crossed out.
                svg += QStringLiteral("<rect x=\"%1\" y=\"%2\" width=\"%3\" height=\"%4\" "
                                      "fill=\"#fff\" stroke=\"#999\"/><path d=\"M%1 %5L%6 %2\" "
                                      "stroke=\"#999\"/>\n")
                           .arg(x)
                           .arg(top)
                           .arg(ChipWidth)
                           .arg(ChipHeight)
                           .arg(top + ChipHeight)
                           .arg(x + ChipWidth)
                           .toUtf8();
            }
            if (swatch.global) {
                // The corner mark the design applications give global swatches.
                svg += QStringLiteral("<path d=\"M%1 %2h-18l18 -18z\" fill=\"#fff\" "
                                      "stroke=\"#999\"/>\n")
                           .arg(x + ChipWidth)
                           .arg(top + ChipHeight)
                           .toUtf8();
            }
            if (swatch.spot) {
                svg += QStringLiteral("<circle cx=\"%1\" cy=\"%2\" r=\"6\" fill=\"#fff\" "
                                      "stroke=\"#999\"/>\n")
                           .arg(x + ChipWidth - 12)
                           .arg(top + 12)
                           .toUtf8();
            }
            text(x, top + ChipHeight + 18, swatch.name, "class=\"name\"");
            double line = top + ChipHeight + 34;
            for (const QString& description : swatchDescription(swatch)) {
                text(x, line, description, "class=\"value\"");
                line += 15;
            }
        }

        void swatches(const std::vector<AseSwatch>& list, double left)
        {
            int column = 0;
            for (const AseSwatch& swatch : list) {
                if (chipsLeft == 0) {
                    ++leftOut;
                    continue;
                }
                --chipsLeft;
                chip(left + column * TileWidth, y, previewSwatch(swatch));
                if (++column == Columns) {
                    column = 0;
                    y += TileHeight;
                }
            }
            if (column != 0)
                y += TileHeight;
        }

        void group(const AseGroup& group, int depth)
        {
            if (chipsLeft == 0) {
                // Past the last chip the groups are only counted.
                swatches(group.swatches, 0);
                for (const AseGroup& inner : group.groups)
                    this->group(inner, depth);
                return;
            }
            --chipsLeft; // a heading takes room too: think of a file of empty groups
            const double left = Margin + depth * Indent;
            text(left, y + 22, group.name.isEmpty() ? QStringLiteral("Unnamed group") : group.name,
                "class=\"group\"");
            y += HeadingHeight;
            if (group.swatches.empty() && group.groups.empty()) {
                text(left, y + 14, QStringLiteral("No swatches"), "class=\"empty\"");
                y += 28;
            }
            swatches(group.swatches, left);
            for (const AseGroup& inner : group.groups)
                this->group(inner, std::min(depth + 1, 2));
        }
    };

}

PreviewSwatch previewSwatch(const AseSwatch& swatch)
{
    PreviewSwatch result;
    result.name = swatch.name;
    result.global = swatch.type == AseSwatchType::Global;
    result.spot = swatch.type == AseSwatchType::Spot;
    result.process = !result.spot;
    result.values.assign(swatch.values.begin(), swatch.values.end());
    switch (swatch.model) {
    case AseColorModel::Cmyk:
        result.model = QStringLiteral("CMYK");
        break;
    case AseColorModel::Rgb:
        result.model = QStringLiteral("RGB");
        break;
    case AseColorModel::Lab:
        result.model = QStringLiteral("LAB");
        if (!result.values.empty())
            result.values[0] *= 100;
        break;
    case AseColorModel::Gray:
        result.model = QStringLiteral("Gray");
        if (!result.values.empty())
            result.values[0] = 1 - result.values[0];
        break;
    case AseColorModel::Unknown:
        result.model = QString::fromLatin1(swatch.modelCode).trimmed();
        break;
    }
    return result;
}

std::vector<PreviewSwatchGroup> swatchGroups(const AseDocument& document)
{
    std::vector<PreviewSwatchGroup> groups;
    const auto toPanel = [](const std::vector<AseSwatch>& swatches) {
        std::vector<PreviewSwatch> list;
        for (const AseSwatch& swatch : swatches)
            list.push_back(previewSwatch(swatch));
        return list;
    };
    if (!document.swatches.empty())
        groups.push_back({ QString(), toPanel(document.swatches) });
    const auto add = [&](const auto& self, const AseGroup& group, const QString& path) -> void {
        groups.push_back({ path, toPanel(group.swatches) });
        for (const AseGroup& inner : group.groups)
            self(self, inner, path + QStringLiteral(" / ") + inner.name);
    };
    for (const AseGroup& group : document.groups)
        add(add, group, group.name);
    return groups;
}

QStringList swatchDescription(const PreviewSwatch& swatch)
{
    QString heading = swatch.model.isEmpty() ? QStringLiteral("Unknown model") : swatch.model;
    if (swatch.global)
        heading += QStringLiteral(" · Global");
    if (swatch.spot)
        heading += QStringLiteral(" · Spot");
    const auto& v = swatch.values;
    QString values;
    if (swatch.model == u"CMYK" && v.size() >= 4) {
        values = QStringLiteral("C %1 M %2 Y %3 K %4")
                     .arg(percent(v[0]), percent(v[1]), percent(v[2]), percent(v[3]));
    } else if (swatch.model == u"RGB" && v.size() >= 3) {
        const auto byte
            = [](double unit) { return int(std::lround(std::clamp(unit, 0.0, 1.0) * 255)); };
        const QString hex = QStringLiteral("#%1%2%3")
                                .arg(byte(v[0]), 2, 16, QLatin1Char('0'))
                                .arg(byte(v[1]), 2, 16, QLatin1Char('0'))
                                .arg(byte(v[2]), 2, 16, QLatin1Char('0'))
                                .toUpper();
        values = QStringLiteral("R %1 G %2 B %3 · %4")
                     .arg(byte(v[0]))
                     .arg(byte(v[1]))
                     .arg(byte(v[2]))
                     .arg(hex);
    } else if (swatch.model == u"LAB" && v.size() >= 3) {
        values = QStringLiteral("L %1 a %2 b %3")
                     .arg(shortNumber(v[0]), shortNumber(v[1]), shortNumber(v[2]));
    } else if (swatch.model == u"Gray" && !v.empty()) {
        values = QStringLiteral("Gray %1").arg(percent(v[0]));
    } else {
        QStringList numbers;
        for (const double value : v)
            numbers.append(QString::number(value, 'g', 6));
        values = numbers.join(u' ');
    }
    return values.isEmpty() ? QStringList { heading } : QStringList { heading, values };
}

SwatchSheet drawSwatchSheet(const AseDocument& document, const QString& title, int maxChips)
{
    SheetWriter writer;
    writer.chipsLeft = std::max(0, maxChips);
    writer.text(Margin, writer.y + 24, title, "class=\"title\"");
    writer.y += TitleHeight;
    if (!document.swatches.empty()) {
        if (!document.groups.empty()) {
            writer.text(Margin, writer.y + 22, QStringLiteral("Not in a group"), "class=\"group\"");
            writer.y += HeadingHeight;
        }
        writer.swatches(document.swatches, Margin);
    }
    for (const AseGroup& group : document.groups)
        writer.group(group, 0);
    if (document.swatches.empty() && document.groups.empty()) {
        writer.text(Margin, writer.y + 14, QStringLiteral("No swatches"), "class=\"empty\"");
        writer.y += 28;
    }
    if (writer.leftOut > 0) {
        writer.text(Margin, writer.y + 14,
            QStringLiteral("%1 more swatches are not drawn here").arg(writer.leftOut),
            "class=\"empty\"");
        writer.y += 28;
    }
    const double height = writer.y + Margin;
    SwatchSheet sheet;
    sheet.size = QSizeF(SheetWidth, height);
    sheet.svg
        = QStringLiteral("<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
                         "<svg xmlns=\"http://www.w3.org/2000/svg\" width=\"%1\" height=\"%2\" "
                         "viewBox=\"0 0 %1 %2\">\n"
                         "<style>text{font-family:sans-serif;fill:#222}"
                         ".title{font-size:20px;font-weight:bold}"
                         ".group{font-size:16px;font-weight:bold}"
                         ".name{font-size:13px;font-weight:bold}"
                         ".value{font-size:11px;fill:#555}"
                         ".empty{font-size:12px;font-style:italic;fill:#777}</style>\n"
                         "<rect width=\"100%\" height=\"100%\" fill=\"#fff\"/>\n")
              .arg(SheetWidth)
              .arg(height)
              .toUtf8()
        + writer.svg + "</svg>\n";
    return sheet;
}

QImage drawSwatchMosaic(const AseDocument& document, int size)
{
    std::vector<QColor> colors;
    const auto collect = [&](const auto& self, const std::vector<AseSwatch>& swatches,
                             const std::vector<AseGroup>& groups) -> void {
        for (const AseSwatch& swatch : swatches) {
            const QColor color = swatchDisplayColor(previewSwatch(swatch));
            colors.push_back(color.isValid() ? color : QColor(Qt::lightGray));
        }
        for (const AseGroup& group : groups)
            self(self, group.swatches, group.groups);
    };
    collect(collect, document.swatches, document.groups);
    if (colors.empty() || size <= 0)
        return {};
    const int columns = std::min(8, int(std::ceil(std::sqrt(double(colors.size())))));
    const int shown = std::min<int>(int(colors.size()), columns * columns);
    const int rows = (shown + columns - 1) / columns;
    QImage image(size, size, QImage::Format_ARGB32);
    image.fill(Qt::white);
    QPainter painter(&image);
    const double cell = double(size) / columns;
    const double top = (size - rows * cell) / 2;
    for (int index = 0; index < shown; ++index) {
        const QRectF rect((index % columns) * cell, top + (index / columns) * cell, cell, cell);
        painter.fillRect(rect.adjusted(1, 1, -1, -1), colors[index]);
    }
    return image;
}

}
