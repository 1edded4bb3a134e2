// SPDX-License-Identifier: GPL-3.0-or-later
#include "VistrelAutoUpdate.h"

#include "AlertPanel.h"
#include "Bundle.h"
#include "Localization.h"
#include "PreferencesFile.h"
#include "PropertyList.h"
#include "SCNetworkReachability.h"
#include "SearchPaths.h"
#include "StringValues.h"
#include "SystemLog.h"
#include "URLConnection.h"
#include "VistrelUpdateURL.h"
#include "VistrelUtilities.h"
#include "Workspace.h"

#include <QDateTime>
#include <limits>

namespace {

VistrelAutoUpdate* _sau = nullptr;

// The generator's preferences domain, which names its files.
const QString pluginPreferencesDomain = QStringLiteral("app.tolvane.VistrelPro");

double now() { return QDateTime::currentMSecsSinceEpoch() / 1000.0; }

QString userPreferencesFolder(bool expandTilde)
{
    return NSSearchPathForDirectoriesInDomains(NSLibraryDirectory, NSUserDomainMask, expandTilde)
               .value(0)
        + QStringLiteral("/Preferences/");
}

// A boolean, a number or "YES"/"NO" text, read the way the platform's objects answer boolValue.
bool boolValue(const QVariant& value)
{
    if (value.typeId() == QMetaType::QString)
        return StringValues::boolValue(value.toString());
    return value.canConvert<double>() && value.toDouble() != 0;
}

// The numeric value of a setting; text reads its leading number (0 when none), and anything that
// holds no number at all reads as NaN, which no comparison accepts.
double numericValue(const QVariant& value)
{
    if (value.typeId() == QMetaType::QString)
        return StringValues::doubleValue(value.toString());
    switch (value.typeId()) {
    case QMetaType::Bool:
    case QMetaType::Int:
    case QMetaType::LongLong:
    case QMetaType::Double:
    case QMetaType::Float:
        return value.toDouble();
    default:
        return std::numeric_limits<double>::quiet_NaN();
    }
}

// Present and not the empty string.
bool isFilledIn(const QVariant& value)
{
    return value.isValid() && !(value.typeId() == QMetaType::QString && value.toString().isEmpty());
}

bool offersNewVersion(const QVariantMap& answer)
{
    return boolValue(answer.value(QXSoftwareUpdateFoundUpdateKey))
        && isFilledIn(answer.value(QXSoftwareUpdateNewVersionKey))
        && isFilledIn(answer.value(QXSoftwareUpdateDownloadURLKey));
}

// The installed generator's name as the alerts show it: localised when it can be.
QString pluginDisplayName()
{
    const auto bundle = Bundle::bundleWithPath(VTInstalledPluginPath());
    if (!bundle)
        return QStringLiteral("(null)");
    const QString key = QStringLiteral("CFBundleName");
    const QVariant localized = bundle->localizedInfoDictionary().value(key);
    const QVariant name = localized.isValid() ? localized : bundle->infoDictionary().value(key);
    return name.isValid() ? name.toString() : QStringLiteral("(null)");
}

long runAlert(const QString& title, const QString& message, const QString& defaultButton,
    const QString& alternateButton = QString())
{
    return NSRunAlertPanel(title, message, defaultButton, alternateButton, QString());
}

}

VistrelAutoUpdate* VistrelAutoUpdate::sharedAutoUpdate()
{
    if (!_sau)
        _sau = new VistrelAutoUpdate();
    return _sau;
}

void VistrelAutoUpdate::invalidateAutoUpdate()
{
    delete _sau;
    _sau = nullptr;
}

bool VistrelAutoUpdate::writePrefsFileWithInfo(const std::optional<QVariantMap>& info)
{
    if (!info)
        return false;
    QVariantMap contents = *info;
    contents.insert(QStringLiteral("Preferences Version"), QStringLiteral("2.0"));
    QString error;
    const bool written = PreferencesFile::update(
        VTPreferencesPath(),
        [&contents](const std::optional<QVariantMap>&) {
            // The merged settings are read and deliberately not copied: the file holds only what
            // the caller passes. Reading them still refuses a file whose version marker is
            // damaged.
            VTUserDefaults();
            return contents;
        },
        &error);
    if (!written)
        NSLog(QStringLiteral("ERROR -- the preview settings were not written: %1").arg(error));
    return written;
}

bool VistrelAutoUpdate::hostAvailable()
{
    // A staging host may carry a port, which is no part of the name.
    const QByteArray name = QUrl(QStringLiteral("//") + updateHost()).host().toLocal8Bit();
    SCNetworkConnectionFlags flags = 0;
    SCNetworkCheckReachabilityByName(name.constData(), &flags);
    return (flags & kSCNetworkFlagsReachable) && !(flags & kSCNetworkFlagsConnectionRequired);
}

bool VistrelAutoUpdate::connectedToInternet() { return hostAvailable(); }

QString VistrelAutoUpdate::updateHost() { return VTUpdateHost(); }

QString VistrelAutoUpdate::updateURLString()
{
    const auto bundle = Bundle::bundleWithPath(VTInstalledPluginPath());
    const std::optional<QVariantMap> info
        = bundle ? std::optional(bundle->infoDictionary()) : std::nullopt;
    return VTUpdateURLStringWithHost(sharedAutoUpdate()->updateHost(), info);
}

QString VistrelAutoUpdate::updateURLStringForXML()
{
    return sharedAutoUpdate()->updateURLString() + QStringLiteral("&form=XML");
}

QString VistrelAutoUpdate::updateURLStringForHTTP()
{
    return sharedAutoUpdate()->updateURLString() + QStringLiteral("&form=HTTP&ref=menu");
}

void VistrelAutoUpdate::autoCheckForUpdate()
{
    const QVariant frequency = VTUserDefaults().value(updateFrequency);
    if (!frequency.isValid())
        return;
    const double elapsed = now() - lastUpdateTime();
    if (elapsed >= numericValue(frequency) * 86400.0)
        checkForUpdateAndShowNone(false, false, true);
}

std::optional<QVariantMap> VistrelAutoUpdate::updateAnswer(bool isAuto)
{
    if (!connectedToInternet())
        return std::nullopt;
    const QString url = updateURLStringForXML()
        + (isAuto ? QStringLiteral("&ref=auto") : QStringLiteral("&ref=menu"));
    const std::optional<QByteArray> body
        = URLConnection::sendSynchronousRequest(QUrl(url), _requestTimeLimit);
    if (!body)
        return std::nullopt;
    const std::optional<QVariant> answer = PropertyList::fromData(*body);
    if (!answer || answer->typeId() != QMetaType::QVariantMap)
        return std::nullopt;
    return answer->toMap();
}

bool VistrelAutoUpdate::checkForUpdateAndShowNone(bool showNone, bool showError, bool isAuto)
{
    const QString name = pluginDisplayName();
    const std::optional<QVariantMap> answer = updateAnswer(isAuto);
    if (!answer) {
        if (showError)
            runAlert(NSLocalizedString(QStringLiteral("Unable to check for update")),
                NSLocalizedString(
                    QStringLiteral("%1 was unable to check for an update online. Please make sure "
                                   "you have a valid connection to the internet and try again."))
                    .arg(name),
                NSLocalizedString(QStringLiteral("OK")));
        return false;
    }

    if (offersNewVersion(*answer)) {
        const long choice = runAlert(
            NSLocalizedString(QStringLiteral("A New Version is available")),
            NSLocalizedString(QStringLiteral("A new version of %1, version %2, is available. Would "
                                             "you like to download the new version now?"))
                .arg(name, answer->value(QXSoftwareUpdateNewVersionKey).toString()),
            NSLocalizedString(QStringLiteral("OK")), NSLocalizedString(QStringLiteral("Cancel")));
        if (choice == NSAlertDefaultReturn)
            NSWorkspace::sharedWorkspace().openURL(
                QUrl(answer->value(QXSoftwareUpdateDownloadURLKey).toString(), QUrl::StrictMode));
    } else if (showNone) {
        runAlert(NSLocalizedString(QStringLiteral("Your Software is up-to-date")),
            NSLocalizedString(QStringLiteral("You have the most recent version of %1.")).arg(name),
            NSLocalizedString(QStringLiteral("OK")));
    }
    setLastUpdateTime(now());
    return true;
}

std::optional<QVariantMap> VistrelAutoUpdate::dictionaryForCheckForUpdateAndIsAuto(bool isAuto)
{
    std::optional<QVariantMap> answer = updateAnswer(isAuto);
    if (!answer)
        return std::nullopt;
    setLastUpdateTime(now());
    if (!offersNewVersion(*answer))
        return std::nullopt;
    return answer;
}

QString VTAUPreferencesPath()
{
    return userPreferencesFolder(true) + pluginPreferencesDomain + QStringLiteral(".update.plist");
}

QVariantMap VTAUDefaults() { return { { updateFrequency, qint64(7) } }; }

QVariantMap VTAUUserDefaults()
{
    const QString path = stringByExpandingTildeInPath(
        userPreferencesFolder(false) + pluginPreferencesDomain + QStringLiteral(".plist"));
    QVariantMap result = PropertyList::readDictionary(path).value_or(QVariantMap());
    const QVariantMap defaults = VTDefaults();
    for (auto it = defaults.begin(); it != defaults.end(); ++it) {
        if (!result.contains(it.key()) && it.value().isValid())
            result.insert(it.key(), it.value());
    }
    return result;
}
