// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "SUAppcastItem.h"

#include <QByteArray>
#include <QDateTime>
#include <QList>
#include <QString>
#include <functional>
#include <optional>

// Which of the updates a phased rollout has reached: an installation belongs to one of
// SUAppcastRollout::groupCount groups, and an update with a rollout interval reaches group g that
// many intervals after its publication date. Critical updates, updates without a date, and
// checks outside the rollout (group -1, a check the user started) are not held back.
struct SUAppcastRollout {
    static constexpr int groupCount = 7;
    int group = -1;
    QDateTime now;
    // Critical updates are critical for this version.
    QString hostVersion;

    bool reaches(const SUAppcastItem& item) const;
};

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

    // The newest item by SUVersionComparison (the first of equals) among those whose system
    // bounds hold the given system and that the rollout has reached; nothing when none qualifies.
    std::optional<SUAppcastItem> bestItem(
        const QString& systemVersion, const SUAppcastRollout& rollout = {}) const;
    // The newest item, whatever system it needs.
    std::optional<SUAppcastItem> newestItem() const;

private:
    std::optional<SUAppcastItem> newest(
        const std::function<bool(const SUAppcastItem&)>& accepts) const;

    QList<SUAppcastItem> m_items;
};
