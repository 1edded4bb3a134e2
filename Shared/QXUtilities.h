// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "QXVersionInfo.h"

#include <QString>
#include <QVariantMap>
#include <cstdint>

// The running system as a dictionary: "major", "minor", "patch" (qint64), "versionString" and,
// when the system describes itself, "fullVersionString". Built anew on every call.
QVariantMap QXOperatingSystemVersionInfo();
// The same dictionary made from a given description and numbers. The version string is the
// second blank-separated piece of the description; without one it is made from the numbers,
// with a trailing dot ("10.13." when the patch is above 0, else "10.13.0."). A null description
// leaves out "fullVersionString".
QVariantMap QXOperatingSystemVersionInfoFrom(const QString& fullDescription, QXVersion numbers);

// Each reads one key of a freshly built dictionary; a missing number reads as 0.
QString QXOperatingSystemVersion();
QString QXOperatingSystemFullVersion();
qint64 QXOperatingSystemMajorVersion();
qint64 QXOperatingSystemMinorVersion();
qint64 QXOperatingSystemPatchVersion();

// Compares the GIVEN version against the running system: 1 when the given one is newer, -1
// when it is older. So QXOperatingSystemIsGreaterThanOrEqualToVersion(10, 9, 0) holds on
// 10.9.0 and older systems, the opposite of the QXVersion predicates. Callers rely on this.
int QXOperatingSystemCompareToVersion(qint64 major, qint64 minor, qint64 patch);
bool QXOperatingSystemIsGreaterThanVersion(qint64 major, qint64 minor, qint64 patch);
bool QXOperatingSystemIsGreaterThanOrEqualToVersion(qint64 major, qint64 minor, qint64 patch);
bool QXOperatingSystemIsEqualToVersion(qint64 major, qint64 minor, qint64 patch);
bool QXOperatingSystemIsLessThanOrEqualToVersion(qint64 major, qint64 minor, qint64 patch);
bool QXOperatingSystemIsLessThanVersion(qint64 major, qint64 minor, qint64 patch);
// True when the system lies between the second version (below) and the first (above), both
// inclusive.
bool QXOperatingSystemIsOrBetweenVersions(qint64 firstMajor, qint64 firstMinor, qint64 firstPatch,
    qint64 secondMajor, qint64 secondMinor, qint64 secondPatch);

// The main bundle's "CFBundleShortVersionString" as it stands; a null QString when absent.
QString QXApplicationVersion();

enum : std::int32_t {
    OSUnknownByteOrder = 0,
    OSLittleEndian = 1,
    OSBigEndian = 2,
};

enum CFByteOrder : long {
    CFByteOrderUnknown = 0,
    CFByteOrderLittleEndian = 1,
    CFByteOrderBigEndian = 2,
};

// The byte order of the processor this program is built for.
std::int32_t OSHostByteOrder();
CFByteOrder CFByteOrderGetCurrent();
