// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>
#include <QVariantMap>
#include <optional>

// The generator's own update check: it asks the maker's update CGI (the XML form of the update
// request, see VistrelUpdateURL.h) whether a newer build of the installed generator exists, reads
// the property-list answer and tells the user in alert panels (AlertPanel.h). The server decides;
// the client only checks that the answer names a version and a download page.
//
// Every check blocks its caller until the answer is in, while the caller's event loop keeps
// running; the alerts need the main thread.

// Keys of the update answer.
inline const QString QXSoftwareUpdateFoundUpdateKey
    = QStringLiteral("QXSoftwareUpdateFoundUpdateKey");
inline const QString QXSoftwareUpdateNewVersionKey
    = QStringLiteral("QXSoftwareUpdateNewVersionKey");
inline const QString QXSoftwareUpdateDownloadURLKey
    = QStringLiteral("QXSoftwareUpdateDownloadURLKey");
// Offered to callers; the checker neither reads nor writes them.
inline const QString lastUpdateVersion = QStringLiteral("Last Update Version");
inline const QString lastUpdateRelease = QStringLiteral("Last Update Release");

class VistrelAutoUpdate {
public:
    // The GET's time limit unless set otherwise.
    static constexpr int defaultRequestTimeLimit = 30000;

    // The process-wide checker, made on first use (not locked: main thread only).
    static VistrelAutoUpdate* sharedAutoUpdate();
    // Drops the process-wide checker; the next one starts with lastUpdateTime 0.
    static void invalidateAutoUpdate();

    // Replaces the preview settings' file with exactly the given entries and "Preferences
    // Version" = "2.0", under the file's lock (PreferencesFile.h); false, writing nothing, for no
    // dictionary or a failed write (which is logged). Throws NSException, as VTUserDefaults()
    // does, when the file's version marker is not text.
    bool writePrefsFileWithInfo(const std::optional<QVariantMap>& info);

    // Whether the update host is reachable now (SCNetworkReachability.h); two names, one test.
    bool hostAvailable();
    bool connectedToInternet();

    QString updateHost();
    // The request built from the generator installed at this moment (VTInstalledPluginPath()),
    // always through the shared checker, whichever object is asked.
    QString updateURLString();
    QString updateURLStringForXML();
    // The update page: "&form=HTTP&ref=menu".
    QString updateURLStringForHTTP();

    // A quiet check when "Update Frequency" days (of the preview settings, fractions honoured)
    // have passed since the last answered one. Throws NSException as VTUserDefaults() does.
    void autoCheckForUpdate();
    // Checks and shows the alerts: a new version always (OK opens its download page), being up to
    // date when showNone, failing to check when showError. True when the server answered.
    bool checkForUpdateAndShowNone(bool showNone, bool showError, bool isAuto);
    // Checks without alerts: the whole answer when it offers a new version, else nothing.
    std::optional<QVariantMap> dictionaryForCheckForUpdateAndIsAuto(bool isAuto);

    // Seconds since 1970 of the last answered check; 0 before the first. Never stored.
    void setLastUpdateTime(double time) { _lastUpdateTime = time; }
    double lastUpdateTime() const { return _lastUpdateTime; }

    void setRequestTimeLimit(int milliseconds) { _requestTimeLimit = milliseconds; }
    int requestTimeLimit() const { return _requestTimeLimit; }

private:
    // The answer's dictionary, or nothing when there was no answer.
    std::optional<QVariantMap> updateAnswer(bool isAuto);

    double _lastUpdateTime = 0;
    int _requestTimeLimit = defaultRequestTimeLimit;
};

// <user Library>/Preferences/app.tolvane.VistrelPro.update.plist
QString VTAUPreferencesPath();
// The checker's own defaults: "Update Frequency" = 7.
QVariantMap VTAUDefaults();
// The generator's own preferences file (<user Library>/Preferences/app.tolvane.VistrelPro.plist,
// not the one above) completed with VTDefaults(), not with VTAUDefaults().
QVariantMap VTAUUserDefaults();
