// SPDX-License-Identifier: GPL-3.0-or-later
#include "QXVersionInfo.h"

#include "ProcessInfo.h"
#include "StringValues.h"

#include <QStringList>
#include <mutex>

QXVersion QXVersionMake(qint64 major, qint64 minor, qint64 patch)
{
    return QXVersion { major, minor, patch };
}

// There is no legacy system enquiry to prefer here: the process information is the one source.
QXVersion QXVersionCurrentOperatingSystem()
{
    const NSOperatingSystemVersion version = ProcessInfo::processInfo().operatingSystemVersion();
    return QXVersionMake(version.majorVersion, version.minorVersion, version.patchVersion);
}

QXVersion QXVersionCurrentApplication() { return QXVersion {}; }

int QXVersionCompare(QXVersion a, QXVersion b)
{
    if (a.major != b.major)
        return a.major < b.major ? -1 : 1;
    if (a.minor != b.minor)
        return a.minor < b.minor ? -1 : 1;
    if (a.patch != b.patch)
        return a.patch < b.patch ? -1 : 1;
    return 0;
}

bool QXVersionIsGreaterThanVersion(QXVersion a, QXVersion b) { return QXVersionCompare(a, b) == 1; }

bool QXVersionIsGreaterThanOrEqualToVersion(QXVersion a, QXVersion b)
{
    const int result = QXVersionCompare(a, b);
    return result == 1 || result == 0;
}

bool QXVersionIsEqualToVersion(QXVersion a, QXVersion b) { return QXVersionCompare(a, b) == 0; }

bool QXVersionIsLessThanOrEqualToVersion(QXVersion a, QXVersion b)
{
    const int result = QXVersionCompare(a, b);
    return result == -1 || result == 0;
}

bool QXVersionIsLessThanVersion(QXVersion a, QXVersion b) { return QXVersionCompare(a, b) == -1; }

QString NSStringFromQXVersion(QXVersion version)
{
    return NSStringFromQXVersionIncludingZeroPatch(false, version);
}

QString NSStringFromQXVersionIncludingZeroPatch(bool includeZeroPatch, QXVersion version)
{
    if (!includeZeroPatch && version.patch < 1)
        return QStringLiteral("%1.%2").arg(version.major).arg(version.minor);
    return QStringLiteral("%1.%2.%3").arg(version.major).arg(version.minor).arg(version.patch);
}

QXVersion QXVersionFromString(const QString& text)
{
    QXVersion version;
    const QStringList components
        = text.isNull() ? QStringList() : text.split(u'.', Qt::KeepEmptyParts);
    if (components.size() >= 1)
        version.major = StringValues::integerValue(components.at(0));
    if (components.size() >= 2)
        version.minor = StringValues::integerValue(components.at(1));
    if (components.size() >= 3)
        version.patch = StringValues::integerValue(components.at(2));
    return version;
}

const QXVersionInfo& QXVersionInfo::sharedVersionInfo()
{
    static std::once_flag once;
    static const QXVersionInfo* instance = nullptr;
    std::call_once(once, [] { instance = new QXVersionInfo(); });
    return *instance;
}

QXVersionInfo::QXVersionInfo()
    : _currentOperatingSystemVersion(QXVersionCurrentOperatingSystem())
{
}
