// SPDX-License-Identifier: GPL-3.0-or-later
#include "XmlTree.h"

#include <QXmlStreamReader>

namespace Formats {

namespace {
    constexpr int MaximumDepth = 128;
    constexpr qsizetype MaximumElements = 1'000'000;
}

const XmlNode* XmlNode::child(QStringView uri, QStringView localName) const
{
    for (const XmlNode& node : children) {
        if (node.is(uri, localName))
            return &node;
    }
    return nullptr;
}

std::optional<QString> XmlNode::attribute(QStringView uri, QStringView localName) const
{
    for (const Attribute& attribute : attributes) {
        if (attribute.name == localName && attribute.namespaceUri == uri)
            return attribute.value;
    }
    return std::nullopt;
}

std::optional<XmlTree> parseXmlTree(QByteArrayView bytes, QString* error)
{
    QXmlStreamReader reader(bytes.toByteArray());
    XmlTree tree;
    XmlNode& root = tree.root;
    // The chain of open elements, innermost last; each points into its parent's children, which
    // do not move while a child is open because only the innermost element gains children.
    std::vector<XmlNode*> open;
    qsizetype elements = 0;
    auto failWith = [&](const QString& why) -> std::optional<XmlTree> {
        if (error)
            *error = why;
        return std::nullopt;
    };

    while (!reader.atEnd()) {
        switch (reader.readNext()) {
        case QXmlStreamReader::StartElement: {
            if (int(open.size()) >= MaximumDepth)
                return failWith(QStringLiteral("elements nested too deeply"));
            if (++elements > MaximumElements)
                return failWith(QStringLiteral("too many elements"));
            XmlNode node;
            node.namespaceUri = reader.namespaceUri().toString();
            node.name = reader.name().toString();
            for (const QXmlStreamAttribute& attribute : reader.attributes()) {
                node.attributes.push_back({ attribute.namespaceUri().toString(),
                    attribute.name().toString(), attribute.value().toString() });
            }
            if (open.empty()) {
                root = std::move(node);
                open.push_back(&root);
            } else {
                open.back()->children.push_back(std::move(node));
                open.push_back(&open.back()->children.back());
            }
            break;
        }
        case QXmlStreamReader::EndElement:
            open.pop_back();
            if (open.empty())
                return tree;
            break;
        case QXmlStreamReader::Characters:
            if (!open.empty())
                open.back()->text += reader.text();
            break;
        default:
            break;
        }
    }
    if (open.empty())
        return failWith(reader.hasError() ? reader.errorString() : QStringLiteral("no element"));
    tree.complete = false;
    tree.error = reader.hasError() ? reader.errorString()
                                   : QStringLiteral("the root element is not closed");
    return tree;
}

}
