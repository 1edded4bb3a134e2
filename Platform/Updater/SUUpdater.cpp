// SPDX-License-Identifier: GPL-3.0-or-later
#include "SUUpdater.h"

#include "Bundle.h"
#include "Localization.h"
#include "PrivilegedExecutor.h"
#include "ProcessInfo.h"
#include "SUBundleInstaller.h"
#include "SUUpdaterDelegate.h"
#include "SUVersionComparison.h"
#include "SystemLog.h"
#include "UserDefaults.h"

#include <QCoreApplication>
#include <QFileInfo>
#include <QRandomGenerator>
#include <QStandardPaths>
#include <algorithm>
#include <climits>
#include <exception>

namespace {

QString runningSystemVersion()
{
    const NSOperatingSystemVersion version = ProcessInfo::processInfo().operatingSystemVersion();
    return QStringLiteral("%1.%2.%3")
        .arg(version.majorVersion)
        .arg(version.minorVersion)
        .arg(version.patchVersion);
}

}

SUUpdater* SUUpdater::sharedUpdater()
{
    // Never destroyed: it lives as long as the process, like the defaults it writes to.
    static SUUpdater* const shared
        = new SUUpdater(UserDefaults::standardUserDefaults(), true, nullptr);
    return shared;
}

SUUpdater::SUUpdater(UserDefaults& defaults, const QString& hostVersion, QObject* parent)
    : SUUpdater(defaults, false, parent)
{
    m_hostVersion = hostVersion;
}

SUUpdater::SUUpdater(UserDefaults& defaults, bool usesMainBundle, QObject* parent)
    : QObject(parent)
    , m_defaults(defaults)
    , m_usesMainBundle(usesMainBundle)
    , m_systemVersion(runningSystemVersion())
{
    m_scheduleTimer.setSingleShot(true);
    connect(&m_scheduleTimer, &QTimer::timeout, this, &SUUpdater::scheduledCheckDue);
    connect(&m_defaults, &UserDefaults::changed, this, [this](const QString& key) {
        if (key == QLatin1String(enableAutomaticChecksKey)
            || key == QLatin1String(scheduledCheckIntervalKey)
            || key == QLatin1String(lastCheckTimeKey))
            resetUpdateCycle();
    });
}

SUUpdater::~SUUpdater() = default;

QVariant SUUpdater::hostObject(const char* key) const
{
    const QString name = QLatin1String(key);
    const QVariant stored = m_defaults.objectForKey(name);
    if (stored.isValid() || !m_usesMainBundle)
        return stored;
    return Bundle::mainBundle().objectForInfoDictionaryKey(name);
}

bool SUUpdater::hostBool(const char* key) const
{
    const QString name = QLatin1String(key);
    if (m_defaults.objectForKey(name).isValid())
        return m_defaults.boolForKey(name);
    const QVariant value = hostObject(key);
    if (value.typeId() == QMetaType::QString) {
        const QString text = value.toString().trimmed().toLower();
        return text.startsWith(u'y') || text.startsWith(u't') || text.toInt() != 0;
    }
    return value.toBool();
}

bool SUUpdater::automaticallyChecksForUpdates() const { return hostBool(enableAutomaticChecksKey); }

void SUUpdater::setAutomaticallyChecksForUpdates(bool automaticallyChecks)
{
    m_defaults.setBool(automaticallyChecks, QLatin1String(enableAutomaticChecksKey));
    emit automaticallyChecksForUpdatesChanged(automaticallyChecks);
}

bool SUUpdater::automaticallyDownloadsUpdates() const { return hostBool(automaticallyUpdateKey); }

void SUUpdater::setAutomaticallyDownloadsUpdates(bool automaticallyDownloads)
{
    m_defaults.setBool(automaticallyDownloads, QLatin1String(automaticallyUpdateKey));
    emit automaticallyDownloadsUpdatesChanged(automaticallyDownloads);
}

double SUUpdater::updateCheckInterval() const
{
    const QVariant value = hostObject(scheduledCheckIntervalKey);
    bool ok = false;
    const double seconds = value.toDouble(&ok);
    return ok && seconds > 0 ? seconds : defaultUpdateCheckInterval;
}

void SUUpdater::setUpdateCheckInterval(double seconds)
{
    m_defaults.setDouble(seconds, QLatin1String(scheduledCheckIntervalKey));
}

QDateTime SUUpdater::lastUpdateCheckDate() const
{
    const QVariant value = m_defaults.objectForKey(QLatin1String(lastCheckTimeKey));
    return value.typeId() == QMetaType::QDateTime ? value.toDateTime() : QDateTime();
}

QUrl SUUpdater::feedURL() const
{
    if (!m_feedURL.isEmpty() || !m_usesMainBundle)
        return m_feedURL;
    return QUrl(Bundle::mainBundle()
                    .objectForInfoDictionaryKey(QLatin1String(feedURLKey))
                    .toString()
                    .trimmed());
}

QString SUUpdater::hostVersion() const
{
    if (!m_hostVersion.isEmpty() || !m_usesMainBundle)
        return m_hostVersion;
    const Bundle& bundle = Bundle::mainBundle();
    const QString version
        = bundle.objectForInfoDictionaryKey(QStringLiteral("CFBundleVersion")).toString();
    if (!version.isEmpty())
        return version;
    return bundle.objectForInfoDictionaryKey(QStringLiteral("CFBundleShortVersionString"))
        .toString();
}

QString SUUpdater::hostDisplayVersion() const
{
    if (m_usesMainBundle && m_hostVersion.isEmpty()) {
        const QString shortVersion
            = Bundle::mainBundle()
                  .objectForInfoDictionaryKey(QStringLiteral("CFBundleShortVersionString"))
                  .toString();
        if (!shortVersion.isEmpty())
            return shortVersion;
    }
    return hostVersion();
}

QList<QVariantMap> SUUpdater::feedParameters()
{
    if (!m_delegate)
        return {};
    // We send no profile of our own, so the delegate is told so. A delegate that throws loses its
    // parameters for this request, not the check.
    try {
        return m_delegate->feedParametersForUpdater(this, false);
    } catch (const std::exception& exception) {
        NSLog(QStringLiteral("ERROR -- The update feed parameters could not be made: %1")
                  .arg(QString::fromLocal8Bit(exception.what())));
    } catch (...) {
        NSLog(QStringLiteral("ERROR -- The update feed parameters could not be made."));
    }
    return {};
}

void SUUpdater::checkForUpdates() { startCheck(true); }

void SUUpdater::checkForUpdatesInBackground() { startCheck(false); }

void SUUpdater::startCheck(bool userInitiated)
{
    if (m_checker) {
        // The check under way answers the user as if they had started it.
        m_checkIsUserInitiated = m_checkIsUserInitiated || userInitiated;
        return;
    }
    m_checkIsUserInitiated = userInitiated;
    const QUrl feed = feedURL();
    if (!feed.isValid() || feed.isRelative()) {
        SUUpdateCheckResult result;
        result.error.kind = SUUpdaterError::NoFeedURL;
        checkFinished(result);
        return;
    }
    m_checker = new SUUpdateChecker(m_network, this);
    connect(m_checker, &SUUpdateChecker::finished, this, &SUUpdater::checkFinished);
    m_checker->start(SUUpdateChecker::parameterizedFeedURL(feed, feedParameters()), hostVersion(),
        m_systemVersion, rollout(userInitiated), m_requestTimeout);
}

SUAppcastRollout SUUpdater::rollout(bool userInitiated)
{
    // Someone who asks for updates gets them at once.
    if (userInitiated)
        return {};
    const QString key = QLatin1String(updateGroupKey);
    const QVariant stored = m_defaults.objectForKey(key);
    bool known = false;
    int group = stored.toInt(&known);
    if (!known || group < 0 || group >= SUAppcastRollout::groupCount) {
        group = int(QRandomGenerator::global()->bounded(SUAppcastRollout::groupCount));
        m_defaults.setInteger(group, key);
    }
    return { group, QDateTime::currentDateTimeUtc(), hostVersion() };
}

void SUUpdater::checkFinished(const SUUpdateCheckResult& result)
{
    if (m_checker) {
        m_checker->deleteLater();
        m_checker = nullptr;
    }
    const bool userInitiated = m_checkIsUserInitiated;
    // Failed checks count too, so that an unreachable server is not asked again at once.
    m_defaults.setObject(QDateTime::currentDateTimeUtc(), QLatin1String(lastCheckTimeKey));

    switch (result.outcome) {
    case SUUpdateCheckResult::UpdateFound: {
        NSLog(QStringLiteral("INFO -- Update available: version %1")
                  .arg(result.item.displayVersion()));
        if (m_delegate)
            m_delegate->didFindValidUpdate(this, result.item);
        const SUUpdateFound found = updateFound(result.item, userInitiated);
        if (m_driver) {
            // One installation at a time; the one waiting for the quit is shown again on request.
            if (userInitiated && m_userDriver && m_driver->stage() == SUUpdateDriver::Stage::Ready)
                prepareForQuit(updateFound(m_driver->item(), true));
        } else if (!userInitiated && !found.critical && found.installable
            && automaticallyDownloadsUpdates() && !needsPrivileges(hostBundlePath())) {
            prepareForQuit(found);
        } else if (m_userDriver) {
            const SUAppcastItem item = result.item;
            m_userDriver->showUpdateFound(found, [this, item](SUUpdateAlertChoice choice) {
                if (choice == SUUpdateAlertChoice::Install)
                    installUpdate(item);
            });
        }
        break;
    }
    case SUUpdateCheckResult::NoUpdateFound:
        if (m_delegate)
            m_delegate->updaterDidNotFindUpdate(this);
        if (userInitiated && m_userDriver)
            m_userDriver->showUpdateNotFound(
                hostDisplayVersion(), noteOnOtherSystem(result.newerItemForOtherSystem));
        break;
    case SUUpdateCheckResult::Failed:
        NSLog(QStringLiteral("WARNING -- Update check failed: %1")
                  .arg(result.error.localizedDescription()));
        if (m_delegate)
            m_delegate->didAbortWithError(this, result.error);
        if (userInitiated && m_userDriver)
            m_userDriver->showUpdaterError(result.error);
        break;
    }
    emit updateCheckFinished();
}

void SUUpdater::startUpdater()
{
    if (m_started)
        return;
    m_started = true;
    SUUpdateDriver::removeUnfinishedDownloads(downloadFolder());
    const QString bundle = hostBundlePath();
    if (!bundle.isEmpty() && !needsPrivileges(bundle))
        SUBundleInstaller::removeLeftovers(bundle);
    resetUpdateCycle();
}

void SUUpdater::resetUpdateCycle()
{
    m_scheduleTimer.stop();
    m_nextCheck = QDateTime();
    if (!m_started || !automaticallyChecksForUpdates())
        return;
    const qint64 interval
        = qint64(std::max(updateCheckInterval(), double(minimumUpdateCheckInterval)));
    const QDateTime now = QDateTime::currentDateTimeUtc();
    QDateTime last = lastUpdateCheckDate();
    if (!last.isValid()) {
        // A first start counts as a check: the first scheduled one comes a whole interval later,
        // so that a new user is not greeted by a request before they have seen the application.
        last = now;
        m_defaults.setObject(now, QLatin1String(lastCheckTimeKey));
    }
    if (last > now) // the clock was set back: wait a whole interval from now
        m_nextCheck = now.addSecs(interval);
    else
        m_nextCheck = last.addSecs(interval);
    const qint64 delay = std::clamp(now.msecsTo(m_nextCheck), qint64(0), qint64(INT_MAX));
    m_scheduleTimer.start(int(delay));
}

void SUUpdater::scheduledCheckDue()
{
    // Long waits are cut to what a timer can hold; wake up and wait for the rest.
    if (QDateTime::currentDateTimeUtc() < m_nextCheck) {
        resetUpdateCycle();
        return;
    }
    checkForUpdatesInBackground();
}

QString SUUpdater::hostBundlePath() const
{
    if (!m_hostBundlePath.isEmpty() || !m_usesMainBundle)
        return m_hostBundlePath;
    return Bundle::mainBundle().bundlePath();
}

QString SUUpdater::installerPath() const
{
    if (!m_installerPath.isEmpty() || !m_usesMainBundle)
        return m_installerPath;
    return Bundle::mainBundle().contentsPath() + QStringLiteral("/Linux/")
        + QLatin1String(installerName);
}

QString SUUpdater::downloadFolder() const
{
    if (!m_downloadFolder.isEmpty())
        return m_downloadFolder;
    const QString owner
        = m_usesMainBundle ? Bundle::mainBundle().bundleIdentifier() : m_defaults.domain();
    return QStandardPaths::writableLocation(QStandardPaths::GenericCacheLocation) + QLatin1Char('/')
        + owner + QStringLiteral("/Updates");
}

QString SUUpdater::busName() const
{
    if (m_busName || !m_usesMainBundle)
        return m_busName.value_or(QString());
    return Bundle::mainBundle().bundleIdentifier();
}

bool SUUpdater::needsPrivileges(const QString& bundlePath)
{
    // Renaming a folder into another one needs both the folder and the one that holds it.
    const QFileInfo bundle(bundlePath);
    return (bundle.exists() && !bundle.isWritable())
        || !QFileInfo(bundle.absolutePath()).isWritable();
}

SUUpdateFound SUUpdater::updateFound(const SUAppcastItem& item, bool userInitiated) const
{
    SUUpdateFound found { item, hostDisplayVersion(), item.displayVersion(), item.downloadPageURL(),
        userInitiated };
    found.critical = item.isCriticalFor(hostVersion());
    found.installable = item.fileURL.isValid() && !item.fileURL.isRelative();
    return found;
}

QString SUUpdater::noteOnOtherSystem(const std::optional<SUAppcastItem>& item) const
{
    if (!item)
        return {};
    const QString application = QCoreApplication::applicationName();
    if (!item->minimumSystemVersion.isEmpty()
        && SUVersionComparison::compareVersions(m_systemVersion, item->minimumSystemVersion) < 0)
        return NSLocalizedString(
            "%1 %2 is available, but it needs system version %3 or later; this system is %4.")
            .arg(application, item->displayVersion(), item->minimumSystemVersion, m_systemVersion);
    return NSLocalizedString("%1 %2 is available, but it runs only on system versions up to %3; "
                             "this system is %4.")
        .arg(application, item->displayVersion(), item->maximumSystemVersion, m_systemVersion);
}

SUUpdateDriver* SUUpdater::makeDriver(const SUAppcastItem& item)
{
    SUInstallHost host;
    host.bundlePath = hostBundlePath();
    host.installerPath = installerPath();
    host.downloadFolder = downloadFolder();
    host.busName = busName();
    host.stallTimeoutMs = m_requestTimeout;
    if (needsPrivileges(host.bundlePath))
        host.executor = m_executor.value_or(PrivilegedExecutor::shared());
    m_driver = new SUUpdateDriver(m_network, host, item, this);
    connect(m_driver, &SUUpdateDriver::failed, this, [this](const SUUpdaterError& error) {
        m_driver->deleteLater();
        if (std::exchange(m_relaunchAnnounced, false))
            emit relaunchFailed();
        NSLog(QStringLiteral("%1 -- The update was not installed: %2")
                  .arg(error.kind == SUUpdaterError::Canceled ? QStringLiteral("INFO")
                                                              : QStringLiteral("ERROR"),
                      error.localizedDescription()));
        emit updateInstallationFailed(error);
    });
    connect(m_driver, &SUUpdateDriver::willRelaunch, this, [this] {
        m_relaunchAnnounced = true;
        emit willRelaunchApplication();
    });
    connect(m_driver, &SUUpdateDriver::relaunched, this, [this] {
        NSLog(QStringLiteral("INFO -- Version %1 is installed and started")
                  .arg(m_driver->item().displayVersion()));
        m_driver->deleteLater();
        if (m_userDriver)
            m_userDriver->dismissUpdateInstallation();
        // The new copy runs: this process ends whatever its windows say.
        QCoreApplication::exit(0);
    });
    return m_driver;
}

void SUUpdater::showInstallation(SUUpdateDriver* driver)
{
    connect(driver, &SUUpdateDriver::failed, this, [this](const SUUpdaterError& error) {
        if (!m_userDriver)
            return;
        m_userDriver->dismissUpdateInstallation();
        if (error.kind != SUUpdaterError::Canceled)
            m_userDriver->showUpdaterError(error);
    });
    connect(driver, &SUUpdateDriver::downloadProgress, this, [this](qint64 received, qint64 total) {
        if (m_userDriver)
            m_userDriver->showDownloadProgress(received, total);
    });
    connect(driver, &SUUpdateDriver::stageChanged, this, [this](SUUpdateDriver::Stage stage) {
        if (!m_userDriver)
            return;
        switch (stage) {
        case SUUpdateDriver::Stage::Verifying:
            m_userDriver->showInstallStatus(NSLocalizedString("Verifying update…"), true);
            break;
        case SUUpdateDriver::Stage::Preparing:
            m_userDriver->showInstallStatus(NSLocalizedString("Extracting update…"), true);
            break;
        case SUUpdateDriver::Stage::Installing:
        case SUUpdateDriver::Stage::Relaunching:
            m_userDriver->showInstallStatus(NSLocalizedString("Installing update…"), false);
            break;
        default:
            break;
        }
    });
}

void SUUpdater::installUpdate(const SUAppcastItem& item)
{
    if (m_driver) {
        // One prepared in the background needs only to be put in place.
        if (m_driver->stage() == SUUpdateDriver::Stage::Ready) {
            showInstallation(m_driver);
            m_driver->installAndRelaunch();
        }
        return;
    }
    SUUpdateDriver* driver = makeDriver(item);
    showInstallation(driver);
    connect(driver, &SUUpdateDriver::readyToInstall, driver, &SUUpdateDriver::installAndRelaunch);
    if (m_userDriver)
        m_userDriver->showDownloadStarted([driver = QPointer(driver)] {
            if (driver)
                driver->cancel();
        });
    driver->start();
}

void SUUpdater::prepareForQuit(const SUUpdateFound& update)
{
    SUUpdateDriver* driver = m_driver ? m_driver.data() : makeDriver(update.item);
    const auto announce = [this, update, driver = QPointer(driver)] {
        NSLog(QStringLiteral("INFO -- Version %1 is ready and will be installed when %2 quits")
                  .arg(update.newVersion, QCoreApplication::applicationName()));
        emit updateReadyToInstallAtQuit();
        if (!m_userDriver)
            return;
        m_userDriver->showReadyToInstallAtQuit(update, [this, driver](bool installNow) {
            if (!installNow || !driver || driver->stage() != SUUpdateDriver::Stage::Ready)
                return;
            showInstallation(driver);
            driver->installAndRelaunch();
        });
    };
    if (driver->stage() == SUUpdateDriver::Stage::Ready) {
        announce();
        return;
    }
    connect(driver, &SUUpdateDriver::readyToInstall, this, announce);
    driver->start();
}

void SUUpdater::applicationWillTerminate()
{
    if (!m_driver || m_driver->stage() != SUUpdateDriver::Stage::Ready)
        return;
    SUUpdaterError error;
    if (m_driver->installNow(&error))
        NSLog(QStringLiteral("INFO -- Version %1 is installed")
                  .arg(m_driver->item().displayVersion()));
    else
        NSLog(QStringLiteral("ERROR -- The update was not installed: %1")
                  .arg(error.localizedDescription()));
    delete m_driver.data();
}
