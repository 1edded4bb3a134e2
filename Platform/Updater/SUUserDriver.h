// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "SUAppcastItem.h"
#include "SUUpdaterError.h"

#include <QString>
#include <QUrl>

// A newer version found by a check, as it is to be shown.
struct SUUpdateFound {
    SUAppcastItem item;
    // The running version, as people know it.
    QString currentVersion;
    // The version on offer, as people know it.
    QString newVersion;
    // What opening the download page must open.
    QUrl downloadPage;
    // True when the user asked for the check; false for a scheduled or background check.
    bool userInitiated = false;
};

// Shows what the updater decided. The updater calls it only for what the user must see: a found
// update from any check; "up to date" and errors only from checks the user started. The windows
// implement it; tests record the calls.
class SUUserDriver {
public:
    virtual ~SUUserDriver() = default;

    // A check the user started found nothing newer than currentVersion.
    virtual void showUpdateNotFound(const QString& currentVersion) = 0;
    // A newer version is available: show its version and release notes (the item's description,
    // else its release-notes page) and offer a button that opens update.downloadPage.
    virtual void showUpdateFound(const SUUpdateFound& update) = 0;
    // A check the user started failed; error.localizedDescription() says why.
    virtual void showUpdaterError(const SUUpdaterError& error) = 0;
};
