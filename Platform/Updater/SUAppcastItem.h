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
    QString minimumSystemVersion;
    QString dateString;

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
};
