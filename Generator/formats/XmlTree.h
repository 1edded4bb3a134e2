// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArrayView>
#include <QString>
#include <optional>
#include <vector>

namespace Formats {

// An element of a small XML document with its names resolved to namespace URIs. Metadata is
// looked up in it by URI, so the prefixes a writer chose do not matter.
struct XmlNode {
    struct Attribute {
        QString namespaceUri;
        QString name;
        QString value;
    };

    QString namespaceUri;
    QString name; // the local name
    QString text; // the element's own character data, all pieces joined
    std::vector<Attribute> attributes;
    std::vector<XmlNode> children;

    bool is(QStringView uri, QStringView localName) const
    {
        return name == localName && namespaceUri == uri;
    }
    const XmlNode* child(QStringView uri, QStringView localName) const;
    std::optional<QString> attribute(QStringView uri, QStringView localName) const;
};

struct XmlTree {
    XmlNode root;
    // False when the XML breaks off or turns malformed inside the root element: the tree then
    // holds what came before, the elements still open included.
    bool complete = true;
    QString error; // why it is incomplete, in one line
};

// Parses the first element of bytes and everything inside it; whatever follows that element
// (padding, a packet trailer, other data) is not read. Returns nothing when no element starts,
// or when the elements nest deeper, or are more, than metadata ever has; error then says why.
std::optional<XmlTree> parseXmlTree(QByteArrayView bytes, QString* error = nullptr);

}
