// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "SUAppcastItem.h"

#include <QByteArray>
#include <QList>
#include <QString>
#include <optional>

// An update feed: an RSS document whose items carry their versions and downloads in the
// namespace below (resolved by its URI, whatever prefix the document binds it to).
class SUAppcast {
public:
    static constexpr const char* sparkleNamespace
        = "http://www.andymatuschak.org/xml-namespaces/sparkle";

    // Parses a feed. Malformed XML, a document that is not an RSS feed, or a feed without any
    // item that carries a version gives nothing and says why in *error.
    static std::optional<SUAppcast> fromData(const QByteArray& data, QString* error = nullptr);

    // The items that carry a version, in the feed's order.
    const QList<SUAppcastItem>& items() const { return m_items; }

    // The newest item by SUVersionComparison (the first of equals) among those whose
    // minimumSystemVersion the given system meets; nothing when none qualifies.
    std::optional<SUAppcastItem> bestItem(const QString& systemVersion) const;

private:
    QList<SUAppcastItem> m_items;
};
