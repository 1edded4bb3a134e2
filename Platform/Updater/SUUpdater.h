// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "SUUpdateChecker.h"
#include "SUUpdateDriver.h"
#include "SUUserDriver.h"

#include <QDateTime>
#include <QNetworkAccessManager>
#include <QObject>
#include <QPointer>
#include <QTimer>
#include <QUrl>

class PrivilegedExecutor;
class SUUpdaterDelegate;
class UserDefaults;

// The application's updater. It keeps its settings in the user defaults under the keys below,
// checks the feed on a schedule while automatic checks are on, and on request. What a check finds
// goes to the delegate and, where the user must see it, to the user driver; without a driver it
// is only logged. A found update is installed when the user asks for it (then the application
// relaunches), or, with "SUAutomaticallyUpdate", downloaded and verified in the background and
// installed when the application quits (SUUpdateDriver does the steps).
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
    static constexpr const char* publicEDKeyKey = "SUPublicEDKey";
    // The installation's phased-rollout group, drawn once.
    static constexpr const char* updateGroupKey = "SUUpdateGroupIdentifier";
    static constexpr const char* installerName = "tolvane-update-installer";
    static constexpr double defaultUpdateCheckInterval = 86400;
    // Scheduled checks never come closer together than this, whatever the setting says.
    static constexpr double minimumUpdateCheckInterval = 3600;
    static constexpr int defaultRequestTimeout = 30000;

    // The updater of the main bundle, over the standard user defaults; created on first use and
    // kept for the life of the process.
    static SUUpdater* sharedUpdater();

    // An updater over other defaults that knows no bundle: the running version is given, and the
    // feed address and, to install, the bundle and the installer must be set.
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
    // Milliseconds a feed request may take before the check fails, and that a download may go
    // without receiving anything.
    int requestTimeout() const { return m_requestTimeout; }
    void setRequestTimeout(int milliseconds) { m_requestTimeout = milliseconds; }

    // Where updates are installed: the main bundle unless set here. Its Info.plist gives the key
    // that update signatures are checked with ("SUPublicEDKey").
    QString hostBundlePath() const;
    void setHostBundlePath(const QString& path) { m_hostBundlePath = path; }
    // The installer program; the main bundle's Contents/Linux/tolvane-update-installer unless set.
    QString installerPath() const;
    void setInstallerPath(const QString& path) { m_installerPath = path; }
    // Where archives are downloaded; <user cache>/<bundle identifier>/Updates unless set.
    QString downloadFolder() const;
    void setDownloadFolder(const QString& folder) { m_downloadFolder = folder; }
    // The bus name a relaunched copy takes; the main bundle's identifier unless set here (empty:
    // a copy that started counts as relaunched).
    QString busName() const;
    void setBusName(const QString& name) { m_busName = name; }
    // Runs the installer for a bundle whose folder the user cannot write (pkexec unless set).
    void setPrivilegedExecutor(const PrivilegedExecutor* executor) { m_executor = executor; }

    bool updateInProgress() const { return m_checker != nullptr; }
    // The installation under way or waiting for the application to quit; none otherwise.
    SUUpdateDriver* installation() const { return m_driver; }

    // A check the user asked for: every outcome is shown.
    void checkForUpdates();
    // A quiet check: shown only when it finds an update; errors are only logged.
    void checkForUpdatesInBackground();
    // Starts the schedule; the application calls it once launching has finished, so that no
    // scheduled check runs during the launch sequence or an alert of it. Until then no check
    // starts on its own. Clears what an earlier process left unfinished.
    void startUpdater();
    // Downloads, verifies and installs the update, showing the progress, and relaunches.
    void installUpdate(const SUAppcastItem& item);
    // The event loop has ended: installs the update prepared for this moment, if there is one.
    void applicationWillTerminate();
    // Plans the next scheduled check from the settings, once the updater has been started. Runs
    // by itself whenever one of the settings changes.
    void resetUpdateCycle();

signals:
    // Emitted on every assignment through the setters, also when the value does not change.
    void automaticallyChecksForUpdatesChanged(bool automaticallyChecks);
    void automaticallyDownloadsUpdatesChanged(bool automaticallyDownloads);
    // Every check ends with this, after the delegate and the driver were told.
    void updateCheckFinished();
    // The bundle was replaced and the new copy starts: the process gives up its bus name.
    void willRelaunchApplication();
    // The new copy did not start and the old bundle is back: the process takes its name back.
    void relaunchFailed();
    // An installation ended without installing (failed or canceled).
    void updateInstallationFailed(const SUUpdaterError& error);
    // An update was prepared in the background and waits for the application to quit.
    void updateReadyToInstallAtQuit();

private:
    SUUpdater(UserDefaults& defaults, bool usesMainBundle, QObject* parent);
    QVariant hostObject(const char* key) const;
    bool hostBool(const char* key) const;
    QString hostDisplayVersion() const;
    QList<QVariantMap> feedParameters();
    void startCheck(bool userInitiated);
    void checkFinished(const SUUpdateCheckResult& result);
    void scheduledCheckDue();
    static bool needsPrivileges(const QString& bundlePath);
    SUUpdateFound updateFound(const SUAppcastItem& item, bool userInitiated) const;
    QString noteOnOtherSystem(const std::optional<SUAppcastItem>& item) const;
    SUAppcastRollout rollout(bool userInitiated);
    SUUpdateDriver* makeDriver(const SUAppcastItem& item);
    void showInstallation(SUUpdateDriver* driver);
    void prepareForQuit(const SUUpdateFound& update);

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
    bool m_started = false;
    QTimer m_scheduleTimer;
    QDateTime m_nextCheck;
    QString m_hostBundlePath;
    QString m_installerPath;
    QString m_downloadFolder;
    std::optional<QString> m_busName;
    std::optional<const PrivilegedExecutor*> m_executor;
    QPointer<SUUpdateDriver> m_driver;
    bool m_relaunchAnnounced = false;
};
