// SPDX-License-Identifier: GPL-3.0-or-later
#include "QXUtilities.h"

#include "Bundle.h"
#include "ProcessInfo.h"

#include <QStringList>
#include <QtEndian>

namespace {

// A slot for a cached dictionary and the switch that would use it. The switch stays off: the
// system can change under a running process (and the override is read on every call), so each
// call builds the dictionary anew and the slot stays empty.
constexpr bool cacheOperatingSystemVersionInfo = false;
QVariantMap _qxOperatingSystemVersionInfo;

const QString majorKey = QStringLiteral("major");
const QString minorKey = QStringLiteral("minor");
const QString patchKey = QStringLiteral("patch");
const QString versionStringKey = QStringLiteral("versionString");
const QString fullVersionStringKey = QStringLiteral("fullVersionString");

}

QVariantMap QXOperatingSystemVersionInfoFrom(const QString& fullDescription, QXVersion numbers)
{
    QString versionString;
    const QStringList pieces = fullDescription.split(u' ', Qt::KeepEmptyParts);
    // Split at every single blank, so "Version  1" gives an empty second piece, which is kept.
    const bool describedVersion = !fullDescription.isNull() && pieces.size() >= 2;
    if (describedVersion)
        versionString = pieces.at(1);
    else {
        // The trailing dot, and the dropped patch when there is one, are long-standing output
        // that callers may have matched on; they stay as they are.
        versionString = numbers.patch > 0
            ? QStringLiteral("%1.%2.").arg(numbers.major).arg(numbers.minor)
            : QStringLiteral("%1.%2.%3.").arg(numbers.major).arg(numbers.minor).arg(numbers.patch);
    }
    QVariantMap info {
        { majorKey, QVariant::fromValue<qint64>(numbers.major) },
        { minorKey, QVariant::fromValue<qint64>(numbers.minor) },
        { patchKey, QVariant::fromValue<qint64>(numbers.patch) },
        { versionStringKey, versionString },
    };
    if (!fullDescription.isNull())
        info.insert(fullVersionStringKey, fullDescription);
    return info;
}

QVariantMap QXOperatingSystemVersionInfo()
{
    if (cacheOperatingSystemVersionInfo && !_qxOperatingSystemVersionInfo.isEmpty())
        return _qxOperatingSystemVersionInfo;
    const QVariantMap info = QXOperatingSystemVersionInfoFrom(
        ProcessInfo::processInfo().operatingSystemVersionString(),
        QXVersionCurrentOperatingSystem());
    if (cacheOperatingSystemVersionInfo)
        _qxOperatingSystemVersionInfo = info;
    return info;
}

QString QXOperatingSystemVersion()
{
    return QXOperatingSystemVersionInfo().value(versionStringKey).toString();
}

QString QXOperatingSystemFullVersion()
{
    return QXOperatingSystemVersionInfo().value(fullVersionStringKey).toString();
}

qint64 QXOperatingSystemMajorVersion()
{
    return QXOperatingSystemVersionInfo().value(majorKey).toLongLong();
}

qint64 QXOperatingSystemMinorVersion()
{
    return QXOperatingSystemVersionInfo().value(minorKey).toLongLong();
}

qint64 QXOperatingSystemPatchVersion()
{
    return QXOperatingSystemVersionInfo().value(patchKey).toLongLong();
}

int QXOperatingSystemCompareToVersion(qint64 major, qint64 minor, qint64 patch)
{
    const qint64 systemMajor = QXOperatingSystemMajorVersion();
    const qint64 systemMinor = QXOperatingSystemMinorVersion();
    const qint64 systemPatch = QXOperatingSystemPatchVersion();
    if (major != systemMajor)
        return major > systemMajor ? 1 : -1;
    if (minor != systemMinor)
        return minor > systemMinor ? 1 : -1;
    if (patch != systemPatch)
        return patch > systemPatch ? 1 : -1;
    return 0;
}

bool QXOperatingSystemIsGreaterThanVersion(qint64 major, qint64 minor, qint64 patch)
{
    return QXOperatingSystemCompareToVersion(major, minor, patch) > 0;
}

bool QXOperatingSystemIsGreaterThanOrEqualToVersion(qint64 major, qint64 minor, qint64 patch)
{
    return QXOperatingSystemCompareToVersion(major, minor, patch) >= 0;
}

bool QXOperatingSystemIsEqualToVersion(qint64 major, qint64 minor, qint64 patch)
{
    return QXOperatingSystemCompareToVersion(major, minor, patch) == 0;
}

bool QXOperatingSystemIsLessThanOrEqualToVersion(qint64 major, qint64 minor, qint64 patch)
{
    return QXOperatingSystemCompareToVersion(major, minor, patch) < 1;
}

bool QXOperatingSystemIsLessThanVersion(qint64 major, qint64 minor, qint64 patch)
{
    return QXOperatingSystemCompareToVersion(major, minor, patch) < 0;
}

bool QXOperatingSystemIsOrBetweenVersions(qint64 firstMajor, qint64 firstMinor, qint64 firstPatch,
    qint64 secondMajor, qint64 secondMinor, qint64 secondPatch)
{
    return QXOperatingSystemCompareToVersion(firstMajor, firstMinor, firstPatch) >= 0
        && QXOperatingSystemCompareToVersion(secondMajor, secondMinor, secondPatch) <= 0;
}

QString QXApplicationVersion()
{
    const QVariantMap info = Bundle::mainBundle().infoDictionary();
    const auto found = info.constFind(QStringLiteral("CFBundleShortVersionString"));
    return found == info.constEnd() ? QString() : found->toString();
}

std::int32_t OSHostByteOrder()
{
    if constexpr (Q_BYTE_ORDER == Q_LITTLE_ENDIAN)
        return OSLittleEndian;
    else if constexpr (Q_BYTE_ORDER == Q_BIG_ENDIAN)
        return OSBigEndian;
    else
        return OSUnknownByteOrder;
}

CFByteOrder CFByteOrderGetCurrent()
{
    switch (OSHostByteOrder()) {
    case OSLittleEndian:
        return CFByteOrderLittleEndian;
    case OSBigEndian:
        return CFByteOrderBigEndian;
    default:
        return CFByteOrderUnknown;
    }
}
