// SPDX-License-Identifier: GPL-3.0-or-later
#include "IdmlResources.h"

#include <QXmlStreamReader>

namespace Preview::Kinds {

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

QString fontKindName(const QString& fontType)
{
    if (fontType == u"OpenTypeCFF")
        return QStringLiteral("OpenType CFF");
    if (fontType == u"OpenTypeTT")
        return QStringLiteral("OpenType TrueType");
    if (fontType == u"Type1")
        return QStringLiteral("Type 1");
    if (fontType == u"TrueType")
        return QStringLiteral("TrueType");
    return fontType;
}

std::vector<PreviewFont> idmlFonts(const QByteArray& xml, QString* problem)
{
    std::vector<PreviewFont> fonts;
    forEachElement(xml, problem, [&](const QXmlStreamReader& reader) {
        if (reader.name() != u"Font")
            return;
        PreviewFont font;
        font.name = attribute(reader, QLatin1String("PostScriptName"));
        font.family = attribute(reader, QLatin1String("FontFamily"));
        font.style = attribute(reader, QLatin1String("FontStyleName"));
        font.kind = fontKindName(attribute(reader, QLatin1String("FontType")));
        if (isUnnamed(font.name))
            font.name.clear();
        if (!font.name.isEmpty() || !font.family.isEmpty())
            fonts.push_back(std::move(font));
    });
    return fonts;
}

PreviewSwatch idmlSwatch(
    const QString& name, const QString& model, const QString& space, const QString& colorValue)
{
    PreviewSwatch swatch;
    swatch.name = name;
    swatch.spot = model == u"Spot";
    swatch.process = model == u"Process";
    double scale = 1;
    if (space == u"CMYK") {
        swatch.model = QStringLiteral("CMYK");
        scale = 100;
    } else if (space == u"RGB") {
        swatch.model = QStringLiteral("RGB");
        scale = 255;
    } else if (space == u"LAB") {
        swatch.model = QStringLiteral("LAB");
    } else {
        swatch.model = space;
    }
    for (const QString& part : colorValue.split(u' ', Qt::SkipEmptyParts)) {
        bool ok = false;
        const double value = part.toDouble(&ok);
        if (!ok)
            break;
        swatch.values.push_back(value / scale);
    }
    return swatch;
}

std::vector<PreviewSwatch> idmlColors(const QByteArray& xml, QString* problem)
{
    std::vector<PreviewSwatch> colors;
    forEachElement(xml, problem, [&](const QXmlStreamReader& reader) {
        if (reader.name() != u"Color")
            return;
        const QString name = attribute(reader, QLatin1String("Name"));
        // Hidden swatches are the inks InDesign keeps for itself and colours of objects that
        // were never made swatches; the swatches panel does not list them either.
        if (isUnnamed(name) || attribute(reader, QLatin1String("Visible")) == u"false")
            return;
        colors.push_back(idmlSwatch(name, attribute(reader, QLatin1String("Model")),
            attribute(reader, QLatin1String("Space")),
            attribute(reader, QLatin1String("ColorValue"))));
    });
    return colors;
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
