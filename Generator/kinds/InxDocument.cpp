// SPDX-License-Identifier: GPL-3.0-or-later
#include "InxDocument.h"

#include "IdmlResources.h"

#include <QXmlStreamReader>

namespace Preview::Kinds {

namespace {

    QString attribute(const QXmlStreamReader& reader, QLatin1String name)
    {
        return inxText(reader.attributes().value(name).toString());
    }

    PreviewSwatch inxSwatch(const QXmlStreamReader& reader)
    {
        const QString space = attribute(reader, QLatin1String("clsp")).toUpper();
        const QString mode = attribute(reader, QLatin1String("clmd"));
        QStringList values;
        for (const double value :
            inxNumbers(reader.attributes().value(QLatin1String("clvl")).toString()))
            values.append(QString::number(value, 'g', 10));
        // The values are written in the units of the application's colour panel, as in IDML.
        const QString model = space.endsWith(u"RGB") ? QStringLiteral("RGB")
            : space.endsWith(u"LAB")                 ? QStringLiteral("LAB")
                                                     : space;
        PreviewSwatch swatch = idmlSwatch(attribute(reader, QLatin1String("pnam")),
            mode == u"prss"       ? QStringLiteral("Process")
                : mode == u"spot" ? QStringLiteral("Spot")
                                  : mode,
            model, values.join(u' '));
        return swatch;
    }

    PreviewFont inxFont(const QXmlStreamReader& reader)
    {
        PreviewFont font;
        font.name = attribute(reader, QLatin1String("fPSN"));
        font.family = attribute(reader, QLatin1String("fFam"));
        font.style = attribute(reader, QLatin1String("fSty"));
        const QString type = attribute(reader, QLatin1String("fnTp"));
        font.kind = type == u"ftTT" ? QStringLiteral("TrueType") : type;
        return font;
    }

}

QString inxText(const QString& value)
{
    const qsizetype tagEnd = value.indexOf(u'_');
    if (tagEnd <= 0 || tagEnd > 3)
        return value;
    return value.mid(tagEnd + 1);
}

std::vector<double> inxNumbers(const QString& value)
{
    const QStringList parts = value.split(u'_');
    if (parts.size() < 2 || parts[0] != u"x")
        return {};
    bool ok = false;
    const int count = parts[1].toInt(&ok);
    if (!ok || count < 0 || parts.size() != 2 + 2 * qsizetype(count))
        return {};
    std::vector<double> numbers;
    for (int index = 0; index < count; ++index) {
        const double number = parts[3 + 2 * index].toDouble(&ok);
        if (!ok)
            return {};
        numbers.push_back(number);
    }
    return numbers;
}

Formats::ParseResult<InterchangeParts> readInxDocument(QByteArrayView bytes)
{
    QXmlStreamReader reader(bytes.toByteArray());
    bool sawAid = false;
    bool inRoot = false;
    InterchangeParts parts;
    while (!reader.atEnd()) {
        const auto token = reader.readNext();
        if (!inRoot) {
            if (token == QXmlStreamReader::ProcessingInstruction
                && reader.processingInstructionTarget() == u"aid")
                sawAid = true;
            if (token == QXmlStreamReader::StartElement) {
                if (!sawAid)
                    break;
                inRoot = true;
            }
            continue;
        }
        if (token != QXmlStreamReader::StartElement)
            continue;
        if (reader.name() == u"colr") {
            // pvis b_f: a colour InDesign keeps hidden, as the IDML Visible="false".
            if (reader.attributes().value(QLatin1String("pvis")) != u"b_f"
                && !attribute(reader, QLatin1String("pnam")).isEmpty())
                parts.colors.push_back(inxSwatch(reader));
        } else if (reader.name() == u"FonT") {
            PreviewFont font = inxFont(reader);
            if (!font.name.isEmpty() || !font.family.isEmpty())
                parts.fonts.push_back(std::move(font));
        }
    }
    if (!sawAid || !inRoot)
        return Formats::fail(Formats::FormatError::NotThisKind,
            QStringLiteral("INX: no InDesign interchange header before the document element"));
    if (reader.hasError())
        parts.problems.append(QStringLiteral("the XML breaks off at line %1: %2")
                                  .arg(reader.lineNumber())
                                  .arg(reader.errorString()));
    // The metadata packet stands in the XML as character data, so it is found by its text.
    auto xmp = Formats::extractXmp(bytes);
    if (xmp)
        parts.xmp = std::move(xmp).value();
    else if (xmp.error() != Formats::FormatError::NotThisKind)
        parts.problems.append(QStringLiteral("metadata: %1").arg(xmp.reason()));
    return parts;
}

}
