// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QDateTime>
#include <QString>
#include <QUrl>

// One <item> of an update feed.
struct SUAppcastItem {
    QString title;
    // The build version compared with the running one (sparkle:version on the item or on its
    // enclosure) and the version shown to people (sparkle:shortVersionString).
    QString versionString;
    QString displayVersionString;
    // Release notes: inline text or HTML from <description>, or a page to load.
    QString itemDescription;
    QUrl releaseNotesURL;
    // The item's <link>: the page from which people download the update by hand.
    QUrl infoURL;
    // The systems the update runs on (sparkle:minimumSystemVersion, sparkle:maximumSystemVersion),
    // each bound inclusive; empty for no bound.
    QString minimumSystemVersion;
    QString maximumSystemVersion;
    QString dateString;
    // <sparkle:criticalUpdate/>: critical for every older version, or, with its sparkle:version
    // attribute, only for those older than that one.
    bool criticalUpdate = false;
    QString criticalUpdateVersion;
    // sparkle:phasedRolloutInterval in seconds (0: none): the update reaches one more of the
    // rollout groups each interval after its publication date.
    qint64 phasedRolloutInterval = 0;

    QUrl fileURL;
    qint64 contentLength = 0;
    QString mimeType;
    QString edSignature;

    // The version for people: the short version when the feed gives one, else the build version.
    QString displayVersion() const
    {
        return displayVersionString.isEmpty() ? versionString : displayVersionString;
    }
    // Where "download" takes the user: the item's page, else the file itself.
    QUrl downloadPageURL() const { return infoURL.isValid() ? infoURL : fileURL; }
    // <pubDate> as a date (RFC 2822); invalid when missing or unreadable.
    QDateTime date() const;
    bool isCriticalFor(const QString& hostVersion) const;
    // The system version lies within the item's bounds.
    bool supportsSystem(const QString& systemVersion) const;
};
