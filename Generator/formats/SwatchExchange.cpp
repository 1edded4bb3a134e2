// SPDX-License-Identifier: GPL-3.0-or-later
#include "SwatchExchange.h"

#include "ByteReader.h"

namespace Formats {

namespace {

    constexpr std::uint16_t GroupStart = 0xC001;
    constexpr std::uint16_t GroupEnd = 0xC002;
    constexpr std::uint16_t ColorEntry = 0x0001;
    // Deeper nesting than this is not something any writer produces.
    constexpr int MaximumGroupDepth = 64;

    ParseFailure damaged(const QString& why)
    {
        return fail(FormatError::DamagedFile, QStringLiteral("Swatch Exchange: %1").arg(why));
    }

    AseColorModel modelFromCode(QByteArrayView code)
    {
        if (code == "CMYK")
            return AseColorModel::Cmyk;
        if (code == "RGB ")
            return AseColorModel::Rgb;
        if (code == "LAB ")
            return AseColorModel::Lab;
        if (code == "Gray")
            return AseColorModel::Gray;
        return AseColorModel::Unknown;
    }

    // A name: its length in UTF-16 code units including the terminating zero, then the units.
    std::optional<QString> readName(ByteReader& reader)
    {
        const auto units = reader.u16();
        if (!units)
            return std::nullopt;
        const auto raw = reader.bytes(qsizetype(*units) * 2);
        if (!raw)
            return std::nullopt;
        QString name;
        name.reserve(*units);
        for (qsizetype i = 0; i + 1 < raw->size(); i += 2) {
            const char16_t unit
                = char16_t((std::uint8_t(raw->at(i)) << 8) | std::uint8_t(raw->at(i + 1)));
            if (unit == 0)
                break;
            name.append(QChar(unit));
        }
        return name;
    }

    std::optional<AseSwatch> readSwatch(ByteReader& block)
    {
        AseSwatch swatch;
        const auto name = readName(block);
        const auto code = block.bytes(4);
        if (!name || !code)
            return std::nullopt;
        swatch.name = *name;
        swatch.modelCode = code->toByteArray();
        swatch.model = modelFromCode(*code);
        // An unknown model's component count is unknown: take every number before the type.
        const qsizetype count = swatch.model == AseColorModel::Unknown
            ? std::max<qsizetype>(0, (block.remaining() - 2) / 4)
            : aseComponentCount(swatch.model);
        for (qsizetype i = 0; i < count; ++i) {
            const auto value = block.f32();
            if (!value)
                return std::nullopt;
            swatch.values.push_back(*value);
        }
        const auto type = block.u16();
        if (!type)
            return std::nullopt;
        swatch.type = AseSwatchType(*type);
        return swatch;
    }

    class GroupStack {
    public:
        explicit GroupStack(AseDocument& document)
            : m_document(document)
        {
        }
        int depth() const { return int(m_open.size()); }
        void open(QString name) { m_open.push_back(AseGroup { std::move(name), {}, {} }); }
        void close()
        {
            AseGroup group = std::move(m_open.back());
            m_open.pop_back();
            (m_open.empty() ? m_document.groups : m_open.back().groups).push_back(std::move(group));
        }
        void closeAll()
        {
            while (!m_open.empty())
                close();
        }
        void add(AseSwatch swatch)
        {
            (m_open.empty() ? m_document.swatches : m_open.back().swatches)
                .push_back(std::move(swatch));
        }

    private:
        AseDocument& m_document;
        std::vector<AseGroup> m_open;
    };

}

int aseComponentCount(AseColorModel model)
{
    switch (model) {
    case AseColorModel::Cmyk:
        return 4;
    case AseColorModel::Rgb:
    case AseColorModel::Lab:
        return 3;
    case AseColorModel::Gray:
        return 1;
    case AseColorModel::Unknown:
        return 0;
    }
    return 0;
}

ParseResult<AseDocument> parseSwatchExchange(QByteArrayView bytes)
{
    static constexpr QByteArrayView Magic("ASEF");
    if (!Magic.startsWith(bytes.first(std::min<qsizetype>(bytes.size(), 4))))
        return fail(FormatError::NotThisKind, QStringLiteral("Swatch Exchange: no ASEF signature"));

    ByteReader reader(bytes);
    reader.skip(4);
    const auto major = reader.u16();
    const auto minor = reader.u16();
    const auto blockCount = reader.u32();
    if (!major || !minor || !blockCount)
        return damaged(QStringLiteral("the header is cut short"));
    if (*major != 1)
        return fail(FormatError::UnsupportedVariant,
            QStringLiteral("Swatch Exchange: version %1.%2").arg(*major).arg(*minor));

    AseDocument document;
    document.majorVersion = *major;
    document.minorVersion = *minor;
    GroupStack groups(document);
    // Every block takes at least six bytes, so a hostile count ends with the data.
    for (std::uint32_t index = 0; index < *blockCount; ++index) {
        const auto kind = reader.u16();
        const auto length = reader.u32();
        if (!kind || !length)
            return damaged(
                QStringLiteral("block %1 of %2 is missing").arg(index + 1).arg(*blockCount));
        const auto body = reader.bytes(qsizetype(*length));
        if (!body)
            return damaged(QStringLiteral("block %1 is cut short").arg(index + 1));
        ByteReader block(*body);
        switch (*kind) {
        case GroupStart: {
            if (groups.depth() >= MaximumGroupDepth)
                return fail(FormatError::UnsupportedVariant,
                    QStringLiteral("Swatch Exchange: groups nested too deeply"));
            // Some writers give a group start no name at all.
            const auto name = block.atEnd() ? std::optional<QString>(QString()) : readName(block);
            if (!name)
                return damaged(
                    QStringLiteral("the name of group block %1 is cut short").arg(index + 1));
            groups.open(*name);
            break;
        }
        case GroupEnd:
            if (groups.depth() > 0)
                groups.close();
            break;
        case ColorEntry: {
            auto swatch = readSwatch(block);
            if (!swatch)
                return damaged(QStringLiteral("colour block %1 is cut short").arg(index + 1));
            groups.add(std::move(*swatch));
            break;
        }
        default:
            break; // blocks of kinds we do not know are skipped by their length
        }
    }
    groups.closeAll();
    return document;
}

}
