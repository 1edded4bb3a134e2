// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "SUAppcastItem.h"
#include "SUUpdaterError.h"

#include <QString>
#include <QUrl>
#include <functional>

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
    // The update fixes something the running version must not go on without.
    bool critical = false;
    // The update can be installed here (it has an archive to download); otherwise only its page
    // can be opened.
    bool installable = false;
};

// The user's answer to a found update.
enum class SUUpdateAlertChoice { Install, RemindLater };

// Shows what the updater decided. The updater calls it only for what the user must see: a found
// update from any check; "up to date" and errors only from checks and installations the user
// started. The windows implement it; tests record the calls. Replies may come at any later time
// from the event loop, or never (a window closed otherwise counts as "later").
class SUUserDriver {
public:
    virtual ~SUUserDriver() = default;

    // A check the user started found nothing newer than currentVersion; note, when not empty,
    // says more (a newer version that needs another system).
    virtual void showUpdateNotFound(const QString& currentVersion, const QString& note) = 0;
    // A newer version is available: show its version and release notes (the item's description,
    // else its release-notes page) and offer to install it, or, when it is not installable, a
    // button that opens update.downloadPage.
    virtual void showUpdateFound(
        const SUUpdateFound& update, std::function<void(SUUpdateAlertChoice)> reply)
        = 0;
    // A check or installation the user started failed; error.localizedDescription() says why.
    virtual void showUpdaterError(const SUUpdaterError& error) = 0;

    // The installation the user asked for has begun: show its progress, with a cancel button
    // that calls cancel.
    virtual void showDownloadStarted(std::function<void()> cancel) = 0;
    // Bytes received so far of total (0 when unknown).
    virtual void showDownloadProgress(qint64 received, qint64 total) = 0;
    // A step after the download ("Verifying…", "Installing…"); whether it may still be canceled.
    virtual void showInstallStatus(const QString& status, bool cancelable) = 0;
    // The installation ended (installed, failed or canceled): close its progress.
    virtual void dismissUpdateInstallation() = 0;

    // An update was downloaded and verified in the background and will be installed when the
    // application quits; the reply true installs it now and relaunches.
    virtual void showReadyToInstallAtQuit(
        const SUUpdateFound& update, std::function<void(bool installNow)> reply)
        = 0;
};
