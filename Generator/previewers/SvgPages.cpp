// SPDX-License-Identifier: GPL-3.0-or-later
#include "SvgPages.h"

#include <QPainter>
#include <QSvgRenderer>
#include <QXmlStreamReader>

namespace Preview {

namespace {

    void addFamilies(QStringList& families, QStringView list)
    {
        for (QStringView family : list.split(u',')) {
            family = family.trimmed();
            if (family.size() >= 2 && (family.front() == u'\'' || family.front() == u'"')
                && family.back() == family.front())
                family = family.sliced(1, family.size() - 2);
            if (!family.isEmpty() && !families.contains(family))
                families.append(family.toString());
        }
    }

    // The font-family property of a style attribute ("font-family:'Arial'; font-size:12pt").
    void addStyleFamilies(QStringList& families, QStringView style)
    {
        for (QStringView declaration : style.split(u';')) {
            const qsizetype colon = declaration.indexOf(u':');
            if (colon > 0 && declaration.first(colon).trimmed() == u"font-family")
                addFamilies(families, declaration.sliced(colon + 1));
        }
    }

}

QStringList svgFontFamilies(const QByteArray& svg)
{
    QStringList families;
    QXmlStreamReader reader(svg);
    while (!reader.atEnd()) {
        if (reader.readNext() != QXmlStreamReader::StartElement)
            continue;
        const QXmlStreamAttributes attributes = reader.attributes();
        if (attributes.hasAttribute(QLatin1String("font-family")))
            addFamilies(families, attributes.value(QLatin1String("font-family")));
        if (attributes.hasAttribute(QLatin1String("style")))
            addStyleFamilies(families, attributes.value(QLatin1String("style")));
    }
    return families;
}

QSizeF svgSizePoints(const QByteArray& svg)
{
    QSvgRenderer renderer(svg);
    if (!renderer.isValid())
        return {};
    // The renderer sizes documents at 90 pixels an inch.
    return QSizeF(renderer.defaultSize()) * (72.0 / 90.0);
}

QImage renderSvg(const QByteArray& svg, int maxPixels)
{
    QSvgRenderer renderer(svg);
    const QSize own = renderer.defaultSize();
    if (!renderer.isValid() || own.isEmpty() || maxPixels <= 0)
        return {};
    QSize size = own * 2;
    if (size.width() > maxPixels || size.height() > maxPixels)
        size.scale(maxPixels, maxPixels, Qt::KeepAspectRatio);
    QImage image(size.expandedTo(QSize(1, 1)), QImage::Format_ARGB32);
    image.fill(Qt::white);
    QPainter painter(&image);
    renderer.render(&painter);
    return image;
}

}
