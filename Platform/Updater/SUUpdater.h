// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "SUUpdateChecker.h"

#include <QDateTime>
#include <QNetworkAccessManager>
#include <QObject>
#include <QPointer>
#include <QTimer>
#include <QUrl>

class SUUpdaterDelegate;
class SUUserDriver;
class UserDefaults;

// The application's updater. It keeps its settings in the user defaults under the keys below,
// checks the feed on a schedule while automatic checks are on, and on request. What a check finds
// goes to the delegate and, where the user must see it, to the user driver; without a driver it
// is only logged.
//
// Settings are read from the user defaults first and, for the shared updater, then from the main
// bundle's information dictionary, so that the bundle can give the defaults.
class SUUpdater : public QObject {
    Q_OBJECT
public:
    static constexpr const char* enableAutomaticChecksKey = "SUEnableAutomaticChecks";
    static constexpr const char* automaticallyUpdateKey = "SUAutomaticallyUpdate";
    static constexpr const char* scheduledCheckIntervalKey = "SUScheduledCheckInterval";
    static constexpr const char* lastCheckTimeKey = "SULastCheckTime";
    static constexpr const char* feedURLKey = "SUFeedURL";
    static constexpr double defaultUpdateCheckInterval = 86400;
    // Scheduled checks never come closer together than this, whatever the setting says.
    static constexpr double minimumUpdateCheckInterval = 3600;
    static constexpr int defaultRequestTimeout = 30000;

    // The updater of the main bundle, over the standard user defaults; created on first use and
    // kept for the life of the process.
    static SUUpdater* sharedUpdater();

    // An updater over other defaults that knows no bundle: the running version is given and the
    // feed address must be set.
    SUUpdater(UserDefaults& defaults, const QString& hostVersion, QObject* parent = nullptr);
    ~SUUpdater() override;

    // Not owned; must outlive its use here or be unset first.
    SUUpdaterDelegate* delegate() const { return m_delegate; }
    void setDelegate(SUUpdaterDelegate* delegate) { m_delegate = delegate; }
    SUUserDriver* userDriver() const { return m_userDriver; }
    void setUserDriver(SUUserDriver* driver) { m_userDriver = driver; }

    // "SUEnableAutomaticChecks", false when set nowhere.
    bool automaticallyChecksForUpdates() const;
    void setAutomaticallyChecksForUpdates(bool automaticallyChecks);
    // "SUAutomaticallyUpdate", false when set nowhere.
    bool automaticallyDownloadsUpdates() const;
    void setAutomaticallyDownloadsUpdates(bool automaticallyDownloads);
    // "SUScheduledCheckInterval" in seconds; a day when set nowhere or not positive.
    double updateCheckInterval() const;
    void setUpdateCheckInterval(double seconds);
    // "SULastCheckTime": when the last check finished; invalid before the first one.
    QDateTime lastUpdateCheckDate() const;
    // When the schedule checks next; invalid while automatic checks are off.
    QDateTime nextUpdateCheckDate() const { return m_nextCheck; }

    // "SUFeedURL" of the main bundle unless set here (the setting is not stored).
    QUrl feedURL() const;
    void setFeedURL(const QUrl& url) { m_feedURL = url; }
    // The running version compared with the feed's: the main bundle's "CFBundleVersion", else
    // its "CFBundleShortVersionString", unless set here.
    QString hostVersion() const;
    void setHostVersion(const QString& version) { m_hostVersion = version; }
    // Compared with the items' minimum system versions; the running system unless set here.
    QString hostSystemVersion() const { return m_systemVersion; }
    void setHostSystemVersion(const QString& version) { m_systemVersion = version; }
    // Milliseconds a feed request may take before the check fails.
    int requestTimeout() const { return m_requestTimeout; }
    void setRequestTimeout(int milliseconds) { m_requestTimeout = milliseconds; }

    bool updateInProgress() const { return m_checker != nullptr; }

    // A check the user asked for: every outcome is shown.
    void checkForUpdates();
    // A quiet check: shown only when it finds an update; errors are only logged.
    void checkForUpdatesInBackground();
    // Plans the next scheduled check from the settings. Runs by itself when the updater is made
    // and whenever one of its settings changes.
    void resetUpdateCycle();

signals:
    // Emitted on every assignment through the setters, also when the value does not change.
    void automaticallyChecksForUpdatesChanged(bool automaticallyChecks);
    void automaticallyDownloadsUpdatesChanged(bool automaticallyDownloads);
    // Every check ends with this, after the delegate and the driver were told.
    void updateCheckFinished();

private:
    SUUpdater(UserDefaults& defaults, bool usesMainBundle, QObject* parent);
    QVariant hostObject(const char* key) const;
    bool hostBool(const char* key) const;
    QString hostDisplayVersion() const;
    QList<QVariantMap> feedParameters();
    void startCheck(bool userInitiated);
    void checkFinished(const SUUpdateCheckResult& result);
    void scheduledCheckDue();

    UserDefaults& m_defaults;
    const bool m_usesMainBundle;
    SUUpdaterDelegate* m_delegate = nullptr;
    SUUserDriver* m_userDriver = nullptr;
    QUrl m_feedURL;
    QString m_hostVersion;
    QString m_systemVersion;
    int m_requestTimeout = defaultRequestTimeout;
    QNetworkAccessManager m_network;
    QPointer<SUUpdateChecker> m_checker;
    bool m_checkIsUserInitiated = false;
    QTimer m_scheduleTimer;
    QDateTime m_nextCheck;
};
