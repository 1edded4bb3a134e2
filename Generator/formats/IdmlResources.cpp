// SPDX-License-Identifier: GPL-3.0-or-later
#include "IdmlResources.h"

#include <QXmlStreamReader>

namespace Formats {

namespace {

    // IDML writes "$ID/" for a name left empty.
    bool isUnnamed(const QString& name) { return name.isEmpty() || name == u"$ID/"; }

    // Calls visit for every start element; notes a reader error in *problem.
    template <typename Visit>
    void forEachElement(const QByteArray& xml, QString* problem, Visit visit)
    {
        QXmlStreamReader reader(xml);
        while (!reader.atEnd()) {
            if (reader.readNext() == QXmlStreamReader::StartElement)
                visit(reader);
        }
        if (reader.hasError() && problem)
            *problem
                = QStringLiteral("line %1: %2").arg(reader.lineNumber()).arg(reader.errorString());
    }

    QString attribute(const QXmlStreamReader& reader, QLatin1String name)
    {
        return reader.attributes().value(name).toString();
    }

}

std::vector<InterchangeFont> idmlFonts(const QByteArray& xml, QString* problem)
{
    std::vector<InterchangeFont> fonts;
    forEachElement(xml, problem, [&](const QXmlStreamReader& reader) {
        if (reader.name() != u"Font")
            return;
        InterchangeFont font;
        font.postScriptName = attribute(reader, QLatin1String("PostScriptName"));
        font.family = attribute(reader, QLatin1String("FontFamily"));
        font.style = attribute(reader, QLatin1String("FontStyleName"));
        font.type = attribute(reader, QLatin1String("FontType"));
        if (isUnnamed(font.postScriptName))
            font.postScriptName.clear();
        if (!font.postScriptName.isEmpty() || !font.family.isEmpty())
            fonts.push_back(std::move(font));
    });
    return fonts;
}

std::vector<double> colorValues(const QString& text)
{
    std::vector<double> values;
    for (const QString& part : text.split(u' ', Qt::SkipEmptyParts)) {
        bool ok = false;
        const double value = part.toDouble(&ok);
        if (!ok)
            break;
        values.push_back(value);
    }
    return values;
}

std::vector<InterchangeColor> idmlColors(const QByteArray& xml, QString* problem)
{
    std::vector<InterchangeColor> colors;
    forEachElement(xml, problem, [&](const QXmlStreamReader& reader) {
        if (reader.name() != u"Color")
            return;
        const QString name = attribute(reader, QLatin1String("Name"));
        // Hidden swatches are the inks InDesign keeps for itself and colours of objects that
        // were never made swatches; the swatches panel does not list them either.
        if (isUnnamed(name) || attribute(reader, QLatin1String("Visible")) == u"false")
            return;
        colors.push_back({ name, attribute(reader, QLatin1String("Model")),
            attribute(reader, QLatin1String("Space")),
            colorValues(attribute(reader, QLatin1String("ColorValue"))) });
    });
    return colors;
}

int idmlPageCount(const QByteArray& xml, QString* problem)
{
    int pages = 0;
    forEachElement(xml, problem, [&](const QXmlStreamReader& reader) {
        if (reader.name() == u"Page")
            ++pages;
    });
    return pages;
}

QStringList idmlLinkUris(const QByteArray& xml, QString* problem)
{
    QStringList uris;
    forEachElement(xml, problem, [&](const QXmlStreamReader& reader) {
        if (reader.name() != u"Link")
            return;
        const QString uri = attribute(reader, QLatin1String("LinkResourceURI"));
        if (!uri.isEmpty() && !uris.contains(uri))
            uris.append(uri);
    });
    return uris;
}

}
