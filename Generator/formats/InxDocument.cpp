// SPDX-License-Identifier: GPL-3.0-or-later
#include "InxDocument.h"

#include <QXmlStreamReader>

namespace Formats {

namespace {

    QString attribute(const QXmlStreamReader& reader, QLatin1String name)
    {
        return inxText(reader.attributes().value(name).toString());
    }

    InterchangeColor inxColor(const QXmlStreamReader& reader)
    {
        const QString space = attribute(reader, QLatin1String("clsp")).toUpper();
        const QString mode = attribute(reader, QLatin1String("clmd"));
        // The values are written in the units of the application's colour panel, as in IDML.
        return { attribute(reader, QLatin1String("pnam")),
            mode == u"prss"       ? QStringLiteral("Process")
                : mode == u"spot" ? QStringLiteral("Spot")
                                  : mode,
            space.endsWith(u"RGB")       ? QStringLiteral("RGB")
                : space.endsWith(u"LAB") ? QStringLiteral("LAB")
                                         : space,
            inxNumbers(reader.attributes().value(QLatin1String("clvl")).toString()) };
    }

    InterchangeFont inxFont(const QXmlStreamReader& reader)
    {
        InterchangeFont font;
        font.postScriptName = attribute(reader, QLatin1String("fPSN"));
        font.family = attribute(reader, QLatin1String("fFam"));
        font.style = attribute(reader, QLatin1String("fSty"));
        const QString type = attribute(reader, QLatin1String("fnTp"));
        font.type = type == u"ftTT" ? QStringLiteral("TrueType") : type;
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

ParseResult<InterchangeParts> readInxDocument(QByteArrayView bytes)
{
    QXmlStreamReader reader(bytes.toByteArray());
    bool sawAid = false;
    bool inRoot = false;
    bool inMetadata = false;
    QByteArray packet;
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
        if (inMetadata && token == QXmlStreamReader::Characters)
            packet += reader.text().toUtf8();
        if (token == QXmlStreamReader::EndElement && reader.name() == u"cMep")
            inMetadata = false;
        if (token != QXmlStreamReader::StartElement)
            continue;
        if (reader.name() == u"cMep") {
            inMetadata = true;
        } else if (reader.name() == u"colr") {
            // pvis b_f: a colour InDesign keeps hidden, as the IDML Visible="false".
            if (reader.attributes().value(QLatin1String("pvis")) != u"b_f"
                && !attribute(reader, QLatin1String("pnam")).isEmpty())
                parts.colors.push_back(inxColor(reader));
        } else if (reader.name() == u"FonT") {
            InterchangeFont font = inxFont(reader);
            if (!font.postScriptName.isEmpty() || !font.family.isEmpty())
                parts.fonts.push_back(std::move(font));
        }
    }
    if (!sawAid || !inRoot)
        return fail(FormatError::NotThisKind,
            QStringLiteral("INX: no InDesign interchange header before the document element"));
    if (reader.hasError())
        parts.problems.append(QStringLiteral("the XML breaks off at line %1: %2")
                                  .arg(reader.lineNumber())
                                  .arg(reader.errorString()));
    // exempi has no handler for INX: the packet is found here, as the character data of the
    // document's metadata element, and read by exempi's parser.
    if (!packet.trimmed().isEmpty()) {
        auto xmp = parseXmpPacket(packet);
        if (xmp)
            parts.xmp = std::move(xmp).value();
        else
            parts.problems.append(QStringLiteral("metadata: %1").arg(xmp.reason()));
    }
    return parts;
}

}
