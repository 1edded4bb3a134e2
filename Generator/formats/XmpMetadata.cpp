// SPDX-License-Identifier: GPL-3.0-or-later
#include "XmpMetadata.h"

#include "XmlTree.h"
#include "XmpPacketScanner.h"

#include <cmath>

namespace Formats {

namespace {

    namespace Ns {
        constexpr QStringView Meta = u"adobe:ns:meta/";
        constexpr QStringView Rdf = u"http://www.w3.org/1999/02/22-rdf-syntax-ns#";
        constexpr QStringView Xmp = u"http://ns.adobe.com/xap/1.0/";
        constexpr QStringView XmpGImg = u"http://ns.adobe.com/xap/1.0/g/img/";
        constexpr QStringView XmpMM = u"http://ns.adobe.com/xap/1.0/mm/";
        constexpr QStringView XmpTPg = u"http://ns.adobe.com/xap/1.0/t/pg/";
        constexpr QStringView XmpG = u"http://ns.adobe.com/xap/1.0/g/";
        constexpr QStringView StFnt = u"http://ns.adobe.com/xap/1.0/sType/Font#";
        constexpr QStringView StRef = u"http://ns.adobe.com/xap/1.0/sType/ResourceRef#";
        constexpr QStringView StMfs = u"http://ns.adobe.com/xap/1.0/sType/ManifestItem#";
    }

    constexpr QStringView ComponentNames[] = { u"cyan", u"magenta", u"yellow", u"black", u"red",
        u"green", u"blue", u"L", u"A", u"B", u"tint", u"gray" };

    // The fields of an RDF structure, whichever of its spellings the writer chose: child
    // elements under rdf:parseType="Resource", a nested rdf:Description, or attributes.
    class Fields {
    public:
        explicit Fields(const XmlNode* node)
            : m_node(node)
        {
            if (m_node) {
                if (const XmlNode* description = m_node->child(Ns::Rdf, u"Description"))
                    m_node = description;
            }
        }

        const XmlNode* node(QStringView uri, QStringView name) const
        {
            return m_node ? m_node->child(uri, name) : nullptr;
        }

        std::optional<QString> value(QStringView uri, QStringView name) const
        {
            if (const XmlNode* element = node(uri, name))
                return element->text.trimmed();
            return m_node ? m_node->attribute(uri, name) : std::nullopt;
        }

        QString text(QStringView uri, QStringView name) const
        {
            return value(uri, name).value_or(QString());
        }

        std::optional<double> number(QStringView uri, QStringView name) const
        {
            bool ok = false;
            const double result = text(uri, name).toDouble(&ok);
            return ok && std::isfinite(result) ? std::optional<double>(result) : std::nullopt;
        }

        int integer(QStringView uri, QStringView name) const
        {
            return int(std::clamp(number(uri, name).value_or(0.0), -1e9, 1e9));
        }

        // The items of an rdf:Seq, rdf:Bag or rdf:Alt held by a property.
        std::vector<const XmlNode*> items(QStringView uri, QStringView name) const
        {
            std::vector<const XmlNode*> result;
            const XmlNode* property = node(uri, name);
            if (!property)
                return result;
            for (const XmlNode& container : property->children) {
                if (container.namespaceUri != Ns::Rdf)
                    continue;
                for (const XmlNode& item : container.children) {
                    if (item.is(Ns::Rdf, u"li"))
                        result.push_back(&item);
                }
            }
            return result;
        }

    private:
        const XmlNode* m_node;
    };

    // The top-level properties, spread over any number of rdf:Description elements.
    class Properties {
    public:
        explicit Properties(const XmlNode& rdf)
        {
            for (const XmlNode& node : rdf.children) {
                if (node.is(Ns::Rdf, u"Description"))
                    m_descriptions.emplace_back(&node);
            }
        }

        template <typename Read>
        auto first(Read read) const -> decltype(read(std::declval<const Fields&>()))
        {
            for (const Fields& description : m_descriptions) {
                if (auto found = read(description))
                    return found;
            }
            return {};
        }

        std::vector<const XmlNode*> items(QStringView uri, QStringView name) const
        {
            std::vector<const XmlNode*> result;
            for (const Fields& description : m_descriptions) {
                const auto found = description.items(uri, name);
                result.insert(result.end(), found.begin(), found.end());
            }
            return result;
        }

    private:
        std::vector<Fields> m_descriptions;
    };

    XmpSwatch readSwatch(const Fields& fields)
    {
        XmpSwatch swatch;
        swatch.name = fields.text(Ns::XmpG, u"swatchName");
        swatch.mode = fields.text(Ns::XmpG, u"mode");
        swatch.type = fields.text(Ns::XmpG, u"type");
        for (QStringView component : ComponentNames) {
            if (const auto value = fields.number(Ns::XmpG, component))
                swatch.components.push_back({ component.toString(), *value });
        }
        return swatch;
    }

    std::vector<XmpSwatch> readSwatches(const std::vector<const XmlNode*>& items)
    {
        std::vector<XmpSwatch> swatches;
        for (const XmlNode* item : items)
            swatches.push_back(readSwatch(Fields(item)));
        return swatches;
    }

    XmpFont readFont(const Fields& fields)
    {
        XmpFont font;
        font.fontName = fields.text(Ns::StFnt, u"fontName");
        font.fontFamily = fields.text(Ns::StFnt, u"fontFamily");
        font.fontFace = fields.text(Ns::StFnt, u"fontFace");
        font.fontType = fields.text(Ns::StFnt, u"fontType");
        font.fontFileName = fields.text(Ns::StFnt, u"fontFileName");
        font.versionString = fields.text(Ns::StFnt, u"versionString");
        font.composite
            = fields.text(Ns::StFnt, u"composite").compare(u"true", Qt::CaseInsensitive) == 0;
        return font;
    }

    XmpLink readLink(const Fields& fields)
    {
        XmpLink link;
        link.linkForm = fields.text(Ns::StMfs, u"linkForm");
        const Fields reference(fields.node(Ns::StMfs, u"reference"));
        link.filePath = reference.text(Ns::StRef, u"filePath");
        link.documentId = reference.text(Ns::StRef, u"documentID");
        link.instanceId = reference.text(Ns::StRef, u"instanceID");
        return link;
    }

    XmpThumbnail readThumbnail(const Fields& fields, int pageNumber)
    {
        XmpThumbnail thumbnail;
        thumbnail.pageNumber = pageNumber;
        thumbnail.width = fields.integer(Ns::XmpGImg, u"width");
        thumbnail.height = fields.integer(Ns::XmpGImg, u"height");
        thumbnail.format = fields.text(Ns::XmpGImg, u"format");
        thumbnail.image = QByteArray::fromBase64(fields.text(Ns::XmpGImg, u"image").toLatin1());
        return thumbnail;
    }

    const XmlNode* findRdf(const XmlNode& root)
    {
        if (root.is(Ns::Rdf, u"RDF"))
            return &root;
        if (root.is(Ns::Meta, u"xmpmeta") || root.is(Ns::Meta, u"xapmeta"))
            return root.child(Ns::Rdf, u"RDF");
        return nullptr;
    }

}

std::optional<double> XmpSwatch::component(QStringView componentName) const
{
    for (const XmpColorComponent& entry : components) {
        if (entry.name == componentName)
            return entry.value;
    }
    return std::nullopt;
}

ParseResult<XmpMetadata> parseXmpPacket(QByteArrayView packet)
{
    QString error;
    const std::optional<XmlTree> tree = parseXmlTree(packet, &error);
    if (!tree)
        return fail(FormatError::DamagedFile,
            QStringLiteral("XMP packet is not well-formed: %1").arg(error));
    const XmlNode* rdf = findRdf(tree->root);
    if (!rdf) {
        return fail(FormatError::DamagedFile,
            tree->complete
                ? QStringLiteral("XMP packet holds no RDF")
                : QStringLiteral("XMP packet breaks off before its RDF: %1").arg(tree->error));
    }

    const Properties properties(*rdf);
    XmpMetadata metadata;
    metadata.complete = tree->complete;
    metadata.creatorTool
        = properties.first([](const Fields& f) { return f.value(Ns::Xmp, u"CreatorTool"); })
              .value_or(QString());
    metadata.pageCount = properties.first([](const Fields& f) -> std::optional<int> {
        const auto pages = f.number(Ns::XmpTPg, u"NPages");
        return pages && *pages >= 0 && *pages < 1e9 ? std::optional<int>(int(*pages))
                                                    : std::nullopt;
    });
    for (const XmlNode* item : properties.items(Ns::XmpTPg, u"Fonts"))
        metadata.fonts.push_back(readFont(Fields(item)));
    for (const XmlNode* item : properties.items(Ns::XmpTPg, u"SwatchGroups")) {
        const Fields group(item);
        metadata.swatchGroups.push_back(
            { group.text(Ns::XmpG, u"groupName"), group.integer(Ns::XmpG, u"groupType"),
                readSwatches(group.items(Ns::XmpG, u"Colorants")) });
    }
    metadata.colorants = readSwatches(properties.items(Ns::XmpTPg, u"Colorants"));
    for (const XmlNode* item : properties.items(Ns::XmpMM, u"Manifest"))
        metadata.links.push_back(readLink(Fields(item)));
    for (const XmlNode* item : properties.items(Ns::Xmp, u"Thumbnails"))
        metadata.thumbnails.push_back(readThumbnail(Fields(item), 0));
    for (const XmlNode* item : properties.items(Ns::Xmp, u"PageInfo")) {
        const Fields page(item);
        metadata.thumbnails.push_back(readThumbnail(page, page.integer(Ns::XmpTPg, u"PageNumber")));
    }
    return metadata;
}

ParseResult<XmpMetadata> extractXmp(QByteArrayView bytes)
{
    const std::vector<XmpPacketRange> packets = findXmpPackets(bytes);
    if (packets.empty())
        return fail(FormatError::NotThisKind, QStringLiteral("no XMP packet"));
    std::optional<XmpMetadata> partial;
    std::optional<ParseFailure> lastFailure;
    for (auto packet = packets.rbegin(); packet != packets.rend(); ++packet) {
        auto result = parseXmpPacket(bytes.sliced(packet->offset, packet->length));
        if (!result) {
            if (!lastFailure)
                lastFailure = result.failure();
            continue;
        }
        XmpMetadata metadata = std::move(result).value();
        metadata.packetOffset = packet->offset;
        if (metadata.complete)
            return metadata;
        if (!partial)
            partial = std::move(metadata);
    }
    if (partial)
        return *std::move(partial);
    return *lastFailure;
}

}
