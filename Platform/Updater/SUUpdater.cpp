// SPDX-License-Identifier: GPL-3.0-or-later
#include "SUUpdater.h"

#include "Bundle.h"
#include "ProcessInfo.h"
#include "SUUpdaterDelegate.h"
#include "SUUserDriver.h"
#include "SystemLog.h"
#include "UserDefaults.h"

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
    // The first scheduled check waits for the event loop, so that the application can finish
    // launching and set its delegate first.
    QTimer::singleShot(0, this, &SUUpdater::resetUpdateCycle);
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
        m_systemVersion, m_requestTimeout);
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
        if (m_userDriver)
            m_userDriver->showUpdateFound({ result.item, hostDisplayVersion(),
                result.item.displayVersion(), result.item.downloadPageURL(), userInitiated });
        break;
    }
    case SUUpdateCheckResult::NoUpdateFound:
        if (m_delegate)
            m_delegate->updaterDidNotFindUpdate(this);
        if (userInitiated && m_userDriver)
            m_userDriver->showUpdateNotFound(hostDisplayVersion());
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

void SUUpdater::resetUpdateCycle()
{
    m_scheduleTimer.stop();
    m_nextCheck = QDateTime();
    if (!automaticallyChecksForUpdates())
        return;
    const qint64 interval
        = qint64(std::max(updateCheckInterval(), double(minimumUpdateCheckInterval)));
    const QDateTime now = QDateTime::currentDateTimeUtc();
    const QDateTime last = lastUpdateCheckDate();
    if (!last.isValid())
        m_nextCheck = now;
    else if (last > now) // the clock was set back: wait a whole interval from now
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
